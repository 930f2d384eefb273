#include "orvex/kernel/kernel.h"

#include <algorithm>
#include <string>
#include <vector>

#include "orvex/assets/images/codecs/image_codec_stb.h"
#include "orvex/assets/models/3ds/loader_3d_lib3ds.h"
#include "orvex/assets/models/obj/loader_3d_obj.h"
#include "orvex/base/loader_3d.h"
#include "orvex/base/log_mgr.h"
#include "orvex/base/plugin_mgr.h"
#include "orvex/kernel/private/kernel_data.h"
#include "orvex/renderer/opengl/private/renderer_opengl.h"

namespace orvex {

bool Kernel::load_core_plugins() {
    load_core_image_codec_plugins();
    load_core_loader3d_plugins();
    return true;
}

namespace {

void run_core_plugin(Kernel& kernel, Plugin* plugin) {
    kernel.insert_core_plugin(plugin);
    plugin->initialize();
    plugin->start();
}

} // namespace

bool Kernel::load_core_image_codec_plugins() {
    run_core_plugin(*this, new ImageCodecStb);
    return true;
}

namespace {

Loader3D* new_lib3ds_loader() {
#ifdef ORVEX_WITH_LIB3DS
    return new Loader3D_Lib3ds;
#else
    LogMgr::get()->trace("orvex::Kernel - this build has no 3DS loader.");
    return nullptr;
#endif
}

} // namespace

bool Kernel::load_core_loader3d_plugins() {
    if (!loader_lib3ds) {
        Loader3D* const loader = new_lib3ds_loader();
        if (loader)
            run_core_plugin(*this, loader);
        loader_lib3ds = loader;
    }
    if (!loader_obj) {
        auto* const loader = new Loader3D_OBJ;
        run_core_plugin(*this, loader);
        loader_obj = loader;
    }
    return true;
}

Renderer* Kernel::load_core_opengl_renderer_plugin(bool create_new) {
    if (create_new) {
        auto* const renderer = new RendererOpenGL;
        insert_core_plugin(renderer);
        return renderer;
    }
    // Only the first renderer is ever asked, however many there are.
    Plugin* const first = PluginMgr::get()->get_plugin_by_type(PLUGIN_TYPE_RENDERER, 0);
    return first && first->get_core_plugin_state() ? dynamic_cast<Renderer*>(first) : nullptr;
}

namespace {

constexpr char description_format[] = "%s: %s. By %s";

} // namespace

bool Kernel::insert_core_plugin(Plugin* plugin) {
    if (!plugin)
        return false;
    PluginMgr::get()->insert_plugin(plugin);
    LogMgr* const log = LogMgr::get();
    log->tracef_debug("Core plugin (%s::%d) loaded ok.", plugin->get_name(), plugin->get_id());
    log->tracef_debug(description_format, plugin->get_name(), plugin->get_description(),
                      plugin->get_author());
    return true;
}

Renderer* Kernel::get_null_renderer() {
    return nullptr;
}

namespace {

int load_from_search_path(const std::vector<std::string>& directories, const char* filename,
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
    if (!filename)
        return nullptr;
    int id = -1;
    if (use_search_path) {
        id = load_from_search_path(data->plugin_search_path, filename, force);
        if (id <= 0)
            return nullptr;
    } else {
        id = PluginMgr::get()->load_plugin(filename, force);
    }
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
    return plugin ? unload_plugin(plugin->get_id()) : 0;
}

int Kernel::unload_all_plugins() {
    loader_lib3ds = nullptr;
    loader_obj = nullptr;
    return PluginMgr::get()->unload_all_plugins();
}

Plugin* Kernel::get_plugin(int id) {
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
        return false;
    data->plugin_search_path.emplace_back(directory);
    return true;
}

bool Kernel::plugin_search_path_remove_dir(const char* directory) {
    if (!directory)
        return false;
    auto& path = data->plugin_search_path;
    const auto entry = std::find(path.begin(), path.end(), directory);
    if (entry == path.end())
        return false;
    path.erase(entry);
    return true;
}

bool Kernel::plugin_search_path_get(char* buffer, unsigned long size) {
    if (!buffer || size == 0)
        return false;
    std::string text;
    for (const std::string& directory : data->plugin_search_path)
        text.append(directory).push_back(';');
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
