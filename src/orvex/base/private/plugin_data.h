#pragma once

/// @file
/// The private record of a plugin, and what the engine knows of its class.

#include <cstdarg>

#include "orvex/base/global_id.h"
#include "orvex/base/log.h"
#include "orvex/base/plugin.h"
#include "orvex/base/thread.h"
#include "orvex/base/thread_lock.h"

namespace orvex {

struct Plugin::PluginData {
    static PluginData& of(const Plugin& plugin) { return *plugin.data; }

    /// The plugin as one of the engine's own bases, set by the constructor of that base. Types can
    /// be set by anyone, and a class of a host's may have been built without type information: both
    /// leave these alone.
    Renderer* renderer = nullptr;
    ImageCodec* image_codec = nullptr;
    Loader3D* loader_3d = nullptr;

    int id = GenId();
    char name[128] = {};
    char full_filename[1024] = {};
    char description[256] = {};
    char author[128] = {};
    char build_info[128] = {};
    int version_major = 0;
    int version_minor = 0;
    int version_patch = 0;
    PLUGIN_TYPE type = PLUGIN_TYPE_NONE;
    bool core_plugin_state = false;
    int ref = 0;
    ThreadLock lock;
    Thread thread;
    void* dynlib_handle = nullptr;

    void trace(LOG_LEVEL level, const char* format, va_list arguments) const ORVEX_PRINTF(3, 0);
};

/// The plugin as a renderer, null if it is none.
inline Renderer* plugin_as_renderer(const Plugin& plugin) {
    return Plugin::PluginData::of(plugin).renderer;
}

/// The plugin as a codec, null if it is none.
inline ImageCodec* plugin_as_image_codec(const Plugin& plugin) {
    return Plugin::PluginData::of(plugin).image_codec;
}

/// The plugin as a loader, null if it is none.
inline Loader3D* plugin_as_loader_3d(const Plugin& plugin) {
    return Plugin::PluginData::of(plugin).loader_3d;
}

} // namespace orvex
