#pragma once

/// @file
/// Plugin: the base of everything that can be replaced at run time.

#include <memory>

#include "orvex/api.h"
#include "orvex/fwd.h"

namespace orvex {

/// What kind of plugin this is. Values outside the list are free for hosts.
enum PLUGIN_TYPE : int {
    PLUGIN_TYPE_NONE = 0,        ///< not told
    PLUGIN_TYPE_RENDERER = 1,    ///< a `Renderer`
    PLUGIN_TYPE_IMAGE_CODEC = 3, ///< an `ImageCodec`
    PLUGIN_TYPE_LOADER_3D = 5    ///< a `Loader3D`
};

/// A renderer, image codec, 3D loader or other replaceable part, with its identity and life cycle.
///
/// Made with `new`, by the engine or by the entry point of a shared library, and owned by
/// reference count: `PluginMgr` holds one reference, and `release` of the last one destroys the
/// plugin in the module that made it. A fresh plugin has no reference.
///
/// Created, inserted, initialized, started, stopped, terminated, released: that is its life. The
/// base operations only keep the two flags; a concrete plugin calls or replaces them. Concrete
/// plugins set their type in their constructor.
///
/// Nothing here is locked: plugins belong to the host's main thread.
///
/// @code
/// class Sensors : public orvex::Plugin {}; // overrides what it does at its start and its end
/// extern "C" orvex::Plugin* orvex_create_plugin() { return new Sensors; }
/// extern "C" void orvex_destroy_plugin(orvex::Plugin* plugin) { delete plugin; }
/// @endcode
class ORVEX_API Plugin {
public:
    /// Takes the next id and the calling thread.
    Plugin();
    Plugin(const Plugin&) = delete;
    Plugin& operator=(const Plugin&) = delete;
    virtual ~Plugin();

    /// Logs "Plugin(name - id:id) - text" at information level, printf-style, the text cut at 1,023
    /// characters. A null format does nothing, here and below.
    virtual void tracef(const char* format, ...) ORVEX_PRINTF(2, 3);
    /// `tracef` at warning level.
    virtual void tracef_warning(const char* format, ...) ORVEX_PRINTF(2, 3);
    /// `tracef` at error level.
    virtual void tracef_error(const char* format, ...) ORVEX_PRINTF(2, 3);
    /// `tracef` at debug level.
    virtual void tracef_debug(const char* format, ...) ORVEX_PRINTF(2, 3);

    /// Notes that the plugin is initialized; further calls do nothing.
    /// @return true; a concrete plugin may fail
    virtual bool initialize();
    /// Takes back `initialize`; nothing unless initialized.
    /// @return true
    virtual bool terminate();
    /// Notes that the plugin is started; further calls do nothing.
    /// @return true; a concrete plugin may fail
    virtual bool start();
    /// Takes back `start`; nothing unless started.
    /// @return true
    virtual bool stop();

    /// Unique in the process.
    int get_id() const;
    /// The same as `get_id`.
    int getid() const;

    /// Texts are copied, null is ignored, and what exceeds the field is cut. The pointers of the
    /// getters stay valid for the life of the plugin.
    void set_name(const char* name); ///< at most 127 characters
    const char* get_name() const;    ///< empty at first
    /// The path that the plugin was loaded from, empty for one that was built in.
    void set_full_filename(const char* filename);  ///< at most 1,023 characters
    const char* get_full_filename() const;         ///< empty at first
    void set_description(const char* description); ///< at most 255 characters
    const char* get_description() const;           ///< empty at first
    void set_author(const char* author);           ///< at most 127 characters
    const char* get_author() const;                ///< empty at first
    void set_build_info(const char* build_info);   ///< at most 127 characters
    const char* get_build_info() const;            ///< empty at first

    /// The plugin's own version; 0.0.0 at first.
    void set_version(int major, int minor, int patch);
    int get_version_major() const; ///< the first number of `set_version`
    int get_version_minor() const; ///< the second number of `set_version`
    int get_version_patch() const; ///< the third number of `set_version`

    /// What the registry files the plugin under; a subclass sets it in its constructor.
    void set_type(PLUGIN_TYPE type);
    PLUGIN_TYPE get_type() const; ///< `PLUGIN_TYPE_NONE` unless set

    /// Marks a renderer that `Kernel::load_core_opengl_renderer_plugin(false)` may give out.
    void set_core_plugin_state(bool state);
    bool get_core_plugin_state() const; ///< false unless set

    /// The references counted so far; 0 for a new plugin. `PluginMgr::insert_plugin` adds one.
    int get_ref() const;
    /// Adds one reference.
    void add_ref();
    /// Takes one reference off without destroying the plugin; never goes below 0.
    void dec_ref();
    /// Takes one reference off and destroys the plugin when none is left: through
    /// `orvex_destroy_plugin` of its module, which is closed afterwards, or with `delete`. A module
    /// without that entry point is closed and its plugin left as it is.
    /// @return the references left; at 0 the plugin is gone
    int release();

    /// The handle of the shared library, null for a plugin that was built in.
    void set_dynlib_handle(void* handle);
    void* get_dynlib_handle() const; ///< null unless set

    /// The thread that built the plugin, or that last called `update_thread`.
    Thread* get_thread();
    const Thread* get_thread() const; ///< never null
    /// The same as `get_thread`.
    Thread* get_thread_ptr();
    const Thread* get_thread_ptr() const; ///< the same as `get_thread`
    /// Binds the plugin to the calling thread.
    void update_thread();
    /// Whether the calling thread is the one of `get_thread`.
    [[nodiscard]] bool check_thread() const;

    /// The private record, which the engine alone defines.
    struct PluginData;

protected:
    bool initialized = false; ///< `initialize` has run
    bool started = false;     ///< `start` has run

private:
    std::unique_ptr<PluginData> data;
};

} // namespace orvex

/// Entry points of a shared library that is a plugin; the library defines both.

/// Builds a new plugin; null means failure.
extern "C" ORVEX_API orvex::Plugin* orvex_create_plugin();

/// Destroys a plugin that `orvex_create_plugin` of the same library built.
extern "C" ORVEX_API void orvex_destroy_plugin(orvex::Plugin* plugin);
