/// @file
/// PluginMgr. Each entry of the registry counts one reference. A plugin may end at any time, also
/// in the middle of an operation here, when its own `stop` gives it up: the registry hears of each
/// end and drops the entry, so that no entry dangles.

#include "orvex/base/plugin_mgr.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "orvex/base/log_mgr.h"
#include "orvex/base/private/misuse.h"
#include "orvex/base/private/plugin_end.h"
#include "orvex/platform/private/loaded_library.h"

namespace orvex {

struct PluginMgr::PluginsMgrData {
    std::vector<Plugin*> plugins;
    std::string current_plugin_dir;

    bool holds(const Plugin* plugin) const {
        return std::find(plugins.begin(), plugins.end(), plugin) != plugins.end();
    }

    class Watch;
    Watch* watches = nullptr; ///< the innermost
};

/// Tells whether a plugin still lives while its own code runs. Watches stand inside each other, as
/// the calls do that they are made in.
class PluginMgr::PluginsMgrData::Watch {
public:
    Watch(PluginsMgrData& data, Plugin* plugin)
        : data(data)
        , outer(std::exchange(data.watches, this))
        , plugin(plugin) {}
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;
    ~Watch() { data.watches = outer; }

    /// Null once the plugin has ended.
    Plugin* get() const { return plugin; }

    static void forget(PluginsMgrData& data, const Plugin* ended) {
        for (Watch* watch = data.watches; watch; watch = watch->outer)
            if (watch->plugin == ended)
                watch->plugin = nullptr;
    }

    /// Stops the plugin and terminates it, as long as it lives.
    void stop_and_terminate() const {
        if (plugin)
            plugin->stop();
        if (plugin)
            plugin->terminate();
    }

private:
    PluginsMgrData& data;
    Watch* const outer;
    Plugin* plugin;
};

PluginMgr* PluginMgr::get() {
    static PluginMgr* const instance = new PluginMgr;
    return instance;
}

PluginMgr::PluginMgr()
    : data(std::make_unique<PluginsMgrData>()) {
    listen_to_plugin_ends([](Plugin* plugin) {
        std::erase(get()->data->plugins, plugin);
        PluginsMgrData::Watch::forget(*get()->data, plugin);
    });
}

PluginMgr::~PluginMgr() = default;

bool PluginMgr::insert_plugin(Plugin* plugin) {
    if (!plugin)
        return misuse("PluginMgr::insert_plugin", "a null plugin");
    // The entry needs memory, the reference doesn't: without the one there is not the other.
    data->plugins.push_back(plugin);
    plugin->add_ref();
    return true;
}

int PluginMgr::remove_plugin(Plugin* plugin) {
    if (!plugin) {
        misuse("PluginMgr::remove_plugin", "a null plugin");
        return -1;
    }
    const int id = plugin->get_id();
    const auto entry = std::find_if(data->plugins.begin(), data->plugins.end(),
                                    [id](const Plugin* other) { return other->get_id() == id; });
    if (entry == data->plugins.end()) {
        misuse("PluginMgr::remove_plugin", "a plugin that isn't registered");
        return 0;
    }
    plugin->dec_ref();
    data->plugins.erase(entry);
    return 1;
}

void PluginMgr::set_current_plugin_dir(const char* directory) {
    data->current_plugin_dir = directory ? directory : "";
}

const char* PluginMgr::get_current_plugin_dir() const {
    return data->current_plugin_dir.c_str();
}

namespace {

void log_failed_open(const char* filename) {
    LogMgr* const log = LogMgr::get();
    log->tracef_warning("orvex PluginMgr - unable to load plugin: %s", filename);
    const char* const reason = OpenedModule::error_text();
    if (!reason)
        return;
    log->tracef_warning("orvex PluginMgr - unable to load plugin: %s", filename);
    log->tracef_debug("orvex::Kernel::load_plugin() - dlerror: %s", reason);
}

void log_missing_symbol(const char* filename) {
    LogMgr* const log = LogMgr::get();
    log->tracef_error("orvex PluginMgr - plugin creation failed for plugin: %s", filename);
    if (const char* const reason = OpenedModule::error_text())
        log->tracef_debug("orvex::Kernel::load_plugin() - dlsym error: %s", reason);
    else
        log->trace_debug(
            "orvex::Kernel::load_plugin() - dlsym error on orvex_create_plugin symbol");
}

/// Ends a plugin that wasn't handed over to anybody.
struct PluginRelease {
    void operator()(Plugin* plugin) const { plugin->release(); }
};
using NewPlugin = std::unique_ptr<Plugin, PluginRelease>;

/// Opens a module and has it build its plugin; closes it again on failure.
NewPlugin create_from_module(const char* filename) {
    LogMgr* const log = LogMgr::get();
    log->tracef_debug("orvex::Kernel::load_plugin() - dlopen(%s)", filename);
    OpenedModule module(filename);
    if (!module) {
        log_failed_open(filename);
        return nullptr;
    }
    const auto create = module.entry<decltype(orvex_create_plugin)>("orvex_create_plugin");
    if (!create) {
        log_missing_symbol(filename);
        return nullptr;
    }
    log->trace_debug("orvex::Kernel::load_plugin() - dlsym ok, orvex_create_plugin symbol found.");
    Plugin* const plugin = create();
    if (plugin)
        plugin->set_dynlib_handle(module.release());
    return NewPlugin(plugin);
}

constexpr std::size_t compared_filename_length = 1023;

} // namespace

int PluginMgr::load_plugin(const char* filename, bool force) {
    if (!filename) {
        misuse("PluginMgr::load_plugin", "a null file name");
        return -1;
    }
    if (!force) {
        for (const Plugin* plugin : data->plugins)
            if (std::strncmp(plugin->get_full_filename(), filename, compared_filename_length) == 0)
                return plugin->get_id();
    }
    NewPlugin plugin = create_from_module(filename);
    if (!plugin)
        return -1;
    insert_plugin(plugin.get());
    plugin->set_full_filename(filename);
    LogMgr::get()->tracef_debug(
        "orvex::Kernel::load_plugin() - Plugin (%s::%d) loaded ok. Plugin filename: %s",
        plugin->get_name(), plugin->get_id(), filename);
    return plugin.release()->get_id();
}

int PluginMgr::unload_plugin(Plugin* plugin) {
    if (!plugin) {
        misuse("PluginMgr::unload_plugin", "no such plugin");
        return -1;
    }
    // The object may be gone before its end is logged.
    const std::string name = plugin->get_name();
    const int id = plugin->get_id();
    const PluginsMgrData::Watch living(*data, plugin);
    remove_plugin(plugin);
    living.stop_and_terminate();
    const int references = living.get() ? plugin->release() : 0;
    if (references < 1)
        LogMgr::get()->tracef_debug("plugin %s (%d) unloaded.", name.c_str(), id);
    else
        LogMgr::get()->tracef_debug("plugin %s (%d) not unloaded: still referenced (%d).",
                                    name.c_str(), id, references);
    return references;
}

int PluginMgr::unload_plugin(int id) {
    return unload_plugin(get_plugin(id));
}

int PluginMgr::unload_plugins_by_type(PLUGIN_TYPE type) {
    std::vector<Plugin*> chosen;
    for (Plugin* plugin : data->plugins)
        if (plugin->get_type() == type)
            chosen.push_back(plugin);
    int unloaded = 0;
    for (Plugin* plugin : chosen) {
        // A plugin that stands in the list twice may have ended at its first turn.
        if (!data->holds(plugin))
            continue;
        unload_plugin(plugin);
        ++unloaded;
    }
    return unloaded;
}

int PluginMgr::unload_all_plugins() {
    int ended = 0;
    while (!data->plugins.empty()) {
        Plugin* const plugin = data->plugins.front();
        const std::string name = plugin->get_name();
        const int id = plugin->get_id();
        const PluginsMgrData::Watch living(*data, plugin);
        living.stop_and_terminate();
        // It may have left the registry by itself: then another stands first.
        const auto entry = std::find(data->plugins.begin(), data->plugins.end(), plugin);
        if (entry != data->plugins.end())
            data->plugins.erase(entry);
        const int references = living.get() ? plugin->release() : 0;
        if (references > 0) {
            LogMgr::get()->tracef_debug("Plugin %s (%d) not unloaded: still referenced (%d).",
                                        name.c_str(), id, references);
            continue;
        }
        LogMgr::get()->tracef_debug("plugin %s (%d) unloaded.", name.c_str(), id);
        ++ended;
    }
    return ended;
}

unsigned long PluginMgr::get_num_plugins() const {
    return data->plugins.size();
}

Plugin* PluginMgr::get_plugin_by_index(unsigned long index) const {
    return index < data->plugins.size() ? data->plugins[index] : nullptr;
}

Plugin* PluginMgr::get_plugin(int id) const {
    for (Plugin* plugin : data->plugins)
        if (plugin->get_id() == id)
            return plugin;
    return nullptr;
}

unsigned long PluginMgr::get_num_plugins_by_type(PLUGIN_TYPE type) const {
    unsigned long number = 0;
    for (const Plugin* plugin : data->plugins)
        if (plugin->get_type() == type)
            ++number;
    return number;
}

Plugin* PluginMgr::get_plugin_by_type(PLUGIN_TYPE type, unsigned long index) const {
    for (Plugin* plugin : data->plugins)
        if (plugin->get_type() == type && index-- == 0)
            return plugin;
    return nullptr;
}

} // namespace orvex
