#include "orvex/base/plugin_mgr.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include <dlfcn.h>

#include "orvex/base/log_mgr.h"
#include "orvex/base/private/plugin_end.h"

namespace orvex {

struct PluginMgr::PluginsMgrData {
    std::vector<Plugin*> plugins;
    std::string current_plugin_dir;

    bool holds(const Plugin* plugin) const {
        return std::find(plugins.begin(), plugins.end(), plugin) != plugins.end();
    }
};

PluginMgr* PluginMgr::get() {
    static PluginMgr* const instance = new PluginMgr;
    return instance;
}

PluginMgr::PluginMgr()
    : data(new PluginsMgrData) {
    static PluginsMgrData* const registry = data;
    listen_to_plugin_ends([](Plugin* plugin) { std::erase(registry->plugins, plugin); });
}

PluginMgr::~PluginMgr() {
    delete data;
}

bool PluginMgr::insert_plugin(Plugin* plugin) {
    if (!plugin)
        return false;
    plugin->add_ref();
    data->plugins.push_back(plugin);
    return true;
}

int PluginMgr::remove_plugin(Plugin* plugin) {
    if (!plugin)
        return -1;
    const int id = plugin->get_id();
    const auto entry = std::find_if(data->plugins.begin(), data->plugins.end(),
                                    [id](const Plugin* other) { return other->get_id() == id; });
    if (entry == data->plugins.end())
        return 0;
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
    const char* const reason = dlerror();
    if (!reason)
        return;
    log->tracef_warning("orvex PluginMgr - unable to load plugin: %s", filename);
    log->tracef_debug("orvex::Kernel::load_plugin() - dlerror: %s", reason);
}

void log_missing_symbol(const char* filename) {
    LogMgr* const log = LogMgr::get();
    log->tracef_error("orvex PluginMgr - plugin creation failed for plugin: %s", filename);
    if (const char* const reason = dlerror())
        log->tracef_debug("orvex::Kernel::load_plugin() - dlsym error: %s", reason);
    else
        log->trace_debug(
            "orvex::Kernel::load_plugin() - dlsym error on orvex_create_plugin symbol");
}

/// Opens a module and has it build its plugin; closes it again on failure.
Plugin* create_from_module(const char* filename) {
    LogMgr* const log = LogMgr::get();
    log->tracef_debug("orvex::Kernel::load_plugin() - dlopen(%s)", filename);
    void* const module = dlopen(filename, RTLD_LAZY);
    if (!module) {
        log_failed_open(filename);
        return nullptr;
    }
    dlerror();
    void* const symbol = dlsym(module, "orvex_create_plugin");
    if (!symbol) {
        log_missing_symbol(filename);
        dlclose(module);
        return nullptr;
    }
    log->trace_debug("orvex::Kernel::load_plugin() - dlsym ok, orvex_create_plugin symbol found.");
    Plugin* const plugin = reinterpret_cast<decltype(&orvex_create_plugin)>(symbol)();
    if (plugin)
        plugin->set_dynlib_handle(module);
    else
        dlclose(module);
    return plugin;
}

constexpr std::size_t compared_filename_length = 1023;

} // namespace

int PluginMgr::load_plugin(const char* filename, bool force) {
    if (!filename)
        return -1;
    if (!force) {
        for (const Plugin* plugin : data->plugins)
            if (std::strncmp(plugin->get_full_filename(), filename, compared_filename_length) == 0)
                return plugin->get_id();
    }
    Plugin* const plugin = create_from_module(filename);
    if (!plugin)
        return -1;
    insert_plugin(plugin);
    plugin->set_full_filename(filename);
    LogMgr::get()->tracef_debug(
        "orvex::Kernel::load_plugin() - Plugin (%s::%d) loaded ok. Plugin filename: %s",
        plugin->get_name(), plugin->get_id(), filename);
    return plugin->get_id();
}

int PluginMgr::unload_plugin(Plugin* plugin) {
    if (!plugin)
        return -1;
    const std::string name = plugin->get_name();
    const int id = plugin->get_id();
    remove_plugin(plugin);
    plugin->stop();
    plugin->terminate();
    const int references = plugin->release();
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
        plugin->stop();
        plugin->terminate();
        data->plugins.erase(data->plugins.begin());
        const int references = plugin->release();
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
