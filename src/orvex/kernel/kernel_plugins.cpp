/// @file
/// Kernel: the built-in plugins, those of hosts, and the search path. The registry owns every
/// plugin; the kernel keeps plain pointers to its two loaders, and forgets them before they end. A
/// built-in plugin belongs to its maker here until it is inserted, initialized and started.

#include "orvex/kernel/kernel.h"

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "orvex/assets/images/codecs/image_codec_stb.h"
#include "orvex/assets/models/3ds/loader_3d_lib3ds.h"
#include "orvex/assets/models/obj/loader_3d_obj.h"
#include "orvex/base/loader_3d.h"
#include "orvex/base/log_mgr.h"
#include "orvex/base/plugin_mgr.h"
#include "orvex/base/private/misuse.h"
#include "orvex/base/private/plugin_data.h"
#include "orvex/kernel/private/kernel_data.h"
#include "orvex/renderer/opengl/private/renderer_opengl.h"

namespace orvex {

NewPlugins::NewPlugins()
    : num_before(PluginMgr::get()->get_num_plugins()) {}

NewPlugins::~NewPlugins() {
    // The registry drops the entry of a plugin that ends.
    const PluginMgr* const registry = PluginMgr::get();
    while (!is_kept && registry->get_num_plugins() > num_before) {
        Plugin* const newest = registry->get_plugin_by_index(registry->get_num_plugins() - 1);
        newest->stop();
        newest->terminate();
        newest->release();
    }
}

bool Kernel::load_core_plugins() {
    NewPlugins plugins;
    load_core_image_codec_plugins();
    load_core_loader3d_plugins();
    return plugins.keep();
}

namespace {

/// If memory runs out in here the plugin ends, and leaves the registry with that.
template<class Kind>
Kind* run_core_plugin(Kernel& kernel, std::unique_ptr<Kind> plugin) {
    kernel.insert_core_plugin(plugin.get());
    plugin->initialize();
    plugin->start();
    return plugin.release();
}

} // namespace

bool Kernel::load_core_image_codec_plugins() {
    run_core_plugin(*this, std::make_unique<ImageCodecStb>());
    return true;
}

namespace {

std::unique_ptr<Loader3D> new_lib3ds_loader() {
#ifdef ORVEX_WITH_LIB3DS
    return std::make_unique<Loader3D_Lib3ds>();
#else
    LogMgr::get()->trace("orvex::Kernel - this build has no 3DS loader.");
    return nullptr;
#endif
}

} // namespace

bool Kernel::load_core_loader3d_plugins() {
    if (!loader_lib3ds) {
        if (std::unique_ptr<Loader3D> loader = new_lib3ds_loader())
            loader_lib3ds = run_core_plugin(*this, std::move(loader));
    }
    if (!loader_obj)
        loader_obj = run_core_plugin(*this, std::make_unique<Loader3D_OBJ>());
    return true;
}

Renderer* Kernel::load_core_opengl_renderer_plugin(bool create_new) {
    if (create_new) {
        auto renderer = std::make_unique<KeepingRendererOpenGL>();
        insert_core_plugin(renderer.get());
        return renderer.release();
    }
    // Only the first renderer is ever asked, however many there are.
    Plugin* const first = PluginMgr::get()->get_plugin_by_type(PLUGIN_TYPE_RENDERER, 0);
    return first && first->get_core_plugin_state() ? plugin_as_renderer(*first) : nullptr;
}

namespace {

constexpr char description_format[] = "%s: %s. By %s";

} // namespace

bool Kernel::insert_core_plugin(Plugin* plugin) {
    if (!plugin)
        return misuse("Kernel::insert_core_plugin", "a null plugin");
    PluginMgr::get()->insert_plugin(plugin);
    LogMgr* const log = LogMgr::get();
    log->tracef_debug("Core plugin (%s::%d) loaded ok.", plugin->get_name(), plugin->get_id());
    log->tracef_debug(description_format, plugin->get_name(), plugin->get_description(),
                      plugin->get_author());
    return true;
}

Renderer* Kernel::get_null_renderer() const {
    return nullptr;
}

namespace {

/// @param directories  a copy to walk: modules run their code on the way, and may change the path
int load_from_search_path(std::vector<std::string>&& directories, const char* filename,
                          bool force) {
    PluginMgr* const registry = PluginMgr::get();
    for (const std::string& directory : directories) {
        registry->set_current_plugin_dir(directory.c_str());
        const int id = registry->load_plugin((directory + filename).c_str(), force);
        if (id > 0)
            return id;
    }
    return -1;
}

} // namespace

Plugin* Kernel::load_plugin(const char* filename, bool force, bool use_search_path) {
    if (!filename) {
        misuse("Kernel::load_plugin", "a null file name");
        return nullptr;
    }
    // A search that finds nothing says nothing of its own.
    int id = -1;
    if (use_search_path) {
        id = load_from_search_path(std::vector(data->plugin_search_path), filename, force);
        if (id <= 0)
            return nullptr;
    } else {
        id = PluginMgr::get()->load_plugin(filename, force);
    }
    // The plugin may have ended in its own module's code.
    LogMgr* const log = LogMgr::get();
    Plugin* const plugin = PluginMgr::get()->get_plugin(id);
    if (!plugin) {
        log->tracef_debug("orvex::Kernel - Plugin (%s) not loaded.", filename);
        return nullptr;
    }
    plugin->set_core_plugin_state(false);
    log->tracef(description_format, plugin->get_name(), plugin->get_description(),
                plugin->get_author());
    return plugin;
}

/// Called for every plugin that ends, so that no loader is used after its end.
void Kernel::forget(Plugin* plugin) {
    if (loader_lib3ds == plugin)
        loader_lib3ds = nullptr;
    if (loader_obj == plugin)
        loader_obj = nullptr;
}

int Kernel::unload_plugin(int id) {
    Plugin* const plugin = PluginMgr::get()->get_plugin(id);
    if (plugin)
        forget(plugin);
    return PluginMgr::get()->unload_plugin(plugin);
}

int Kernel::unload_plugin(Plugin* plugin) {
    if (plugin)
        return unload_plugin(plugin->get_id());
    misuse("Kernel::unload_plugin", "a null plugin");
    return 0;
}

int Kernel::unload_all_plugins() {
    loader_lib3ds = nullptr;
    loader_obj = nullptr;
    return PluginMgr::get()->unload_all_plugins();
}

Plugin* Kernel::get_plugin(int id) const {
    return PluginMgr::get()->get_plugin(id);
}

namespace {

bool call_all(bool (Plugin::*operation)()) {
    PluginMgr* const registry = PluginMgr::get();
    for (unsigned long i = 0; i < registry->get_num_plugins(); ++i)
        (registry->get_plugin_by_index(i)->*operation)();
    return true;
}

} // namespace

bool Kernel::initialize_all_plugins() {
    return call_all(&Plugin::initialize);
}

bool Kernel::start_all_plugins() {
    return call_all(&Plugin::start);
}

bool Kernel::stop_all_plugins() {
    return call_all(&Plugin::stop);
}

bool Kernel::terminate_all_plugins() {
    return call_all(&Plugin::terminate);
}

bool Kernel::plugin_search_path_add_dir(const char* directory) {
    if (!directory)
        return misuse("Kernel::plugin_search_path_add_dir", "a null directory");
    data->plugin_search_path.emplace_back(directory);
    return true;
}

bool Kernel::plugin_search_path_remove_dir(const char* directory) {
    if (!directory)
        return misuse("Kernel::plugin_search_path_remove_dir", "a null directory");
    auto& path = data->plugin_search_path;
    const auto entry = std::find(path.begin(), path.end(), directory);
    if (entry == path.end())
        return misuse("Kernel::plugin_search_path_remove_dir", "a directory that isn't there");
    path.erase(entry);
    return true;
}

bool Kernel::plugin_search_path_get(char* buffer, unsigned long size) const {
    if (!buffer || size == 0)
        return misuse("Kernel::plugin_search_path_get", "no buffer");
    // One text of all entries.
    std::string text;
    for (const std::string& directory : data->plugin_search_path)
        text.append(directory).push_back(';');
    // Cut and filled up; the last byte of the buffer is left as it is.
    const std::size_t capacity = size - 1;
    const std::size_t length = std::min(text.size(), capacity);
    std::copy_n(text.begin(), length, buffer);
    std::fill(buffer + length, buffer + capacity, '\0');
    return true;
}

bool Kernel::plugin_search_path_clear() {
    data->plugin_search_path.clear();
    return true;
}

} // namespace orvex
