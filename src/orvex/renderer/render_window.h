#pragma once

/// @file
/// The engine's handle on one drawable surface with a graphics context.

#include <memory>
#include <string>
#include <vector>

#include "orvex/api.h"

namespace orvex {

/// What a host asks of a context, before it is made.
///
/// A plain record that the host fills and hands to `RenderWindow::initialize`. Nothing keeps a
/// pointer to it after the call.
struct RenderWindow_ExtraData {
    /// Wanted major version. Below 3 asks for a compatibility context, from 3 on for a core context
    /// of at least 3.2. A version that the driver doesn't have is no failure.
    int gl_major = 2;
    /// Wanted minor version.
    int gl_minor = 1;
    /// Written by the two operations that create a context: true when `gl_major` is at least 3.
    bool core_profile = false;
    /// Leave out renderers that drive no screen. Has no effect on Linux.
    bool no_offline_renderers = false;
    /// Ask for the software renderer. Without one a normal context is made.
    bool software_renderer = false;
    /// Wanted depth bits. A wish: 32 falls back to 24, then to 16.
    int depth_bits = 32;
    /// Wanted stencil bits, 0 for none, honoured by `RenderWindow::osx_create_cocoa_nsgl_context`
    /// only.
    int stencil_bits = 0;
    /// Wanted colour bits: 16 gives 5/6/5, 24 gives 8/8/8, anything else 8/8/8/8.
    int color_bits = 32;
    /// Ask for a robust context, which tells when the driver was reset. A wish: where the driver
    /// has none, and for a parent of the other kind, it gives way. Contexts share with their like
    /// only: give false for a window with whose context a plain one of the host's is to share.
    bool reset_notification = true;
    /// The device that draws off screen, named as `ORVEX_GL_DEVICE` names one; it stands above
    /// that. Null or empty for what the environment says. Read during the call, and like the
    /// environment without effect on windows that have a drawable, a connection or a parent.
    const char* device = nullptr;
};

/// One device that off-screen windows can be drawn by, as `RenderWindow::list_devices` finds it.
struct RenderWindow_Device {
    int index = 0;         ///< from 0, in the system's order
    std::string driver;    ///< its name, or the maker's; empty for a device that is refused
    std::string node;      ///< such as "/dev/dri/renderD128"; empty for software
    std::string pci;       ///< place on the bus, such as "0000:01:00.0"; empty where there is none
    bool software = false; ///< the processor draws
    std::string refusal;   ///< why it can't be used, in words; empty if it can
};

/// One drawable surface of the host, or an off-screen one, with a graphics context attached.
///
/// Made by `Renderer::create_render_window`, which keeps and owns it, and ended by
/// `Renderer::kill_render_window` or with the renderer. The engine makes no system window: the host
/// passes a native drawable, and keeps it alive until the render window is terminated. On Linux the
/// drawable is an X11 window id or a `wl_egl_window*` cast to a pointer; null gives an off-screen
/// surface. Sizes are in pixels.
///
/// At the end the render window goes first, then the system's window, then the connection to the
/// display: a driver that finds its X11 window gone raises an X error, whose handler ends the
/// process unless the host has set another. A child process that was forked off after the first
/// context must not touch OpenGL: the driver's threads are not in it, and a call may wait for ever.
///
/// A context is current on one thread at a time. Operations that touch the context belong to the
/// thread on which it is current; `apply_context(false)` there and `apply_context(true)` elsewhere
/// moves it. Records of vertex arrays and framebuffers live in the context in which they were made
/// and are not shared between windows; textures, buffers and programs are shared with `parent`.
///
/// @code
/// orvex::RenderWindow* window = renderer->create_render_window();
/// if (window->initialize(nullptr, nullptr, 800, 600, "Off", nullptr, nullptr))
///     renderer->start(); // the window's context is current
/// @endcode
///
/// With `ORVEX_GL_DEBUG=1` in the environment (anything but nothing and "0") contexts are made for
/// debugging: the driver checks each call, and what it says goes to the log, high severity as an
/// error, medium as a warning, low as an information, notifications as debug lines, each before the
/// call that caused it returns; and GL objects bear the name of the node or resource they are made
/// for, such as "teapot (vertices)", for frame debuggers to show. A context of the host's keeps the
/// host's own listener. The log's callback must not draw then. Without KHR_debug, and by default,
/// nothing of this happens and no call is made for it.
///
/// Off-screen windows are drawn by the first device that can, processors of graphics before
/// software, unless `ORVEX_GL_DEVICE` in the environment chooses one: by its index in
/// `list_devices`, by its PCI path ("0000:01:00.0" or "01:00.0"), or as "software"; or
/// `RenderWindow_ExtraData::device`, for one window and without the environment. A device that
/// isn't there or is refused is a failure then, and the log has an error line with the reason.
/// Windows on the screen, and those that were given a connection, are drawn by the device of their
/// display. A debug line tells the device of each new context, and a warning the processors of
/// graphics that were passed over for software.
///
/// A driver that is reset takes every context with it. Contexts are made robust where the driver
/// can (`RenderWindow_ExtraData::reset_notification`), and are asked once a frame: when it is
/// shown, when it is read (`Renderer::get_color_buffer`) and in `Renderer::reset_render_states`,
/// which is where a context of the host's is asked. A loss is told in the log, as an error, once a
/// context. From then on operations that draw, upload or bind programs and render targets give
/// their failure values while that context is current, and others draw on. The host calls
/// `initialize` again, or makes and adopts another context, and loads its programs anew; meshes,
/// points, lines and textures with pixels come along by themselves.
///
/// The operations whose names begin with `osx_` are the layer under `initialize`, `apply_context`,
/// `display_framebuffer` and `vsync`, for hosts that need more than these.
class ORVEX_API RenderWindow {
public:
    RenderWindow(const RenderWindow&) = delete;
    RenderWindow& operator=(const RenderWindow&) = delete;
    /// Frees the record. A back end ends its context too.
    virtual ~RenderWindow();

    /// @return the process-wide unique id that the window got when it was made
    int get_id() const;
    /// @return the field `gl_ati_meminfo`, which only a back end or a host's subclass sets
    bool check_GL_ATI_meminfo() const;
    /// @return the width last given to `initialize` or `update_size`; 0 at first
    int get_width() const;
    /// @return the height last given to `initialize` or `update_size`; 0 at first
    int get_height() const;

    /// Makes the context and its surface, and makes the context current on the calling thread.
    ///
    /// The size, the bits and the thread are noted first, and stay noted when the rest fails.
    ///
    /// @param window  native display connection (X11 `Display*`, `wl_display*`); null takes the
    ///                default one, which serves X11 windows only. What waits in an X11 connection's
    ///                queue is sent first; with null the host sends the making of its window by
    ///                itself (`XSync`). EGL remembers the connection for the life of the process: a
    ///                host that closes it earlier first terminates EGL's display of it.
    /// @param view    native drawable; null makes an off-screen surface
    /// @param width   pixels; an off-screen surface takes below 1 as 1, and refuses sizes beyond
    ///                16384 unless the driver promises more
    /// @param height  as `width`
    /// @param msaa    "Off", "2X MSAA", "4X MSAA" or "8X MSAA", matched exactly. Null and any other
    ///                text mean no multisampling.
    /// @param parent  window to share textures, buffers and programs with, or null. Sharing works
    ///                within one native connection: an off-screen parent of windows on the screen
    ///                was given the same `window` as they, since with null it lies on a device of
    ///                its own, and they are refused. On Wayland both need a drawable, as it has no
    ///                off-screen surfaces.
    /// @param extra   the request; null asks for a record of defaults
    /// @return false when no configuration or no context could be had, with nothing logged unless
    ///         a device was chosen. A version that the driver can't give is no
    ///         failure: see `get_api_3d`.
    virtual bool initialize(void* window, void* view, int width, int height, const char* msaa,
                            RenderWindow* parent, RenderWindow_ExtraData* extra) = 0;
    /// Forgets the extension list and ends the context.
    /// @return the result of `osx_kill_context`
    virtual bool terminate() = 0;
    /// Makes the context current on the calling thread, or releases the thread's current context.
    /// A GLX context of the host's is made current over the host's own connection: on a second
    /// thread that needs `XInitThreads` before the connection is opened (libX11 below 1.8).
    /// @return false before a successful `initialize`, otherwise true, even if the system refused
    ///         because another thread holds the context or the surface is gone:
    ///         `osx_apply_context` tells
    virtual bool apply_context(bool state) = 0;
    /// Shows the frame.
    /// @return false always, though the frame was shown
    virtual bool display_framebuffer() = 0;
    /// Waits for the screen's refresh in `display_framebuffer`, or doesn't. On Wayland a window
    /// that nobody sees may wait for ever: give false for windows that may be hidden.
    /// @return true
    virtual bool vsync(bool state) = 0;
    /// Does nothing: contexts share from their creation on, through `parent` of `initialize`.
    /// @return false
    virtual bool share_ctx(RenderWindow* window) = 0;
    /// @return 2, 3 or 4: the major version that the driver gave, or that an adopted context has; 2
    ///         without a context, and when it can't be read
    virtual int get_api_3d() = 0;
    /// Compares with the version of the window's context.
    /// @param major,minor  any numbers
    /// @return true when that is equal or higher, by major and then minor number; false when it was
    ///         never read
    virtual bool is_opengl_version_supported(int major, int minor) = 0;
    /// Reads the version of the window's context while that is current, once: later calls give the
    /// same answer, until the next `initialize` or adoption.
    /// @param major,minor  where to write; either may be null
    /// @return false when no version can be read
    virtual bool get_opengl_version(int* major, int* minor) = 0;
    /// Looks a name up in the list of `build_opengl_extensions_list`, exactly and in its case.
    /// @return false for null, an unknown name, and before the list is built
    virtual bool check_opengl_extension(const char* name) = 0;
    /// Appends the names of the current context's extensions to the list. The engine never calls
    /// it.
    /// @return from OpenGL 3.0 on false, with a complete list; on older contexts whether the list
    ///         has entries. Read the list, not the result.
    virtual bool build_opengl_extensions_list() = 0;
    /// Empties the list. The counters keep their values.
    /// @return true
    virtual bool destroy_opengl_extensions_list() = 0;
    /// @return the size of the list
    virtual unsigned long get_num_opengl_extensions() = 0;
    /// @return the number of OpenGL's own extensions, counted when the list was built
    virtual int get_num_GL_extensions() = 0;
    /// @return 0
    virtual int get_num_WGL_extensions() = 0;
    /// @return 0
    virtual int get_num_GLX_extensions() = 0;
    /// @return the name at `index` of the list, which lives as long as the list; null beyond the
    /// end
    virtual const char* get_opengl_extension(unsigned long index) = 0;
    /// @return the native context, as `osx_get_cgl_ctx`
    virtual void* opengl_get_ctx() = 0;
    /// @return null
    virtual void* d3d_get_device() = 0;
    /// @return null
    virtual void* d3d11_get_device_ctx() = 0;
    /// Notes the size of the drawable. No context is touched: call `osx_update_context_cocoa` to
    /// let an off-screen surface follow. A window's surface follows the window by itself.
    /// @param width,height  pixels; any numbers are noted
    virtual void update_size(int width, int height) = 0;

    /// Ends the context and its surface. A context that is current is released first if it is this
    /// window's own; a context of the host is left as it is. A second call finds nothing to do.
    /// @return true
    virtual bool osx_kill_context() = 0;
    /// Adopts the context that the host made and holds current on the calling thread, whatever made
    /// it. It is never destroyed here, and presenting it is the host's affair unless EGL knows it.
    /// The surface that is current now belongs to it: a host that changes the surface adopts the
    /// context again, and may do so in every frame. An adoption leaves a mark in the context, a
    /// vertex array object with a label, by which it is known again; without vertex arrays or
    /// KHR_debug, or after the host ended the mark, it counts as a new context, into which
    /// everything is uploaded again. Windows that adopt one context share its lock.
    /// @param context  the host's native context; the window's own stays what it is
    /// @return false for null, when no context is current, when the window's own is, and for a
    ///         context that the engine's OpenGL knows nothing of; what the window had stays
    virtual bool osx_init_with_cocoa_nsgl_ctx(void* context) = 0;
    /// Makes the context current on the calling thread, or releases what is current there.
    /// @return false without a context, and when the system refuses
    virtual bool osx_apply_context(bool state) = 0;
    /// Shows the frame. A software renderer's commands are flushed first. A context that is not
    /// current is made current for the call, and what was current is put back.
    /// @return false without a context
    virtual bool osx_display_framebuffer() = 0;
    /// Sets the swap interval to 1 or 0: now when the context is current, else when it next is.
    /// @return false without a context
    virtual bool osx_vsync(bool state) = 0;
    /// Takes up the size last noted by `update_size`. An off-screen surface is made anew and its
    /// pixels are lost.
    /// @return false without a context, and when no surface of that size can be had: the former
    ///         one stays
    virtual bool osx_update_current_virtual_screen_ctx() = 0;
    /// @return 0, or -1 without a context
    virtual int osx_get_current_virtual_screen() = 0;
    /// @return true for screen 0 with a context, false otherwise
    virtual bool osx_set_current_virtual_screen(int screen) = 0;
    /// @return 1, or -1 without a context
    virtual int osx_get_num_of_virtual_screens() = 0;
    /// @return the native context (on Linux an `EGLContext`, or what the host handed to
    ///         `osx_init_with_cocoa_nsgl_ctx`); null without one
    virtual void* osx_get_cgl_ctx() = 0;
    /// @return false: Linux has no multi-threaded OpenGL engine to turn on
    virtual bool osx_enable_multi_threaded_gl_engine(bool state) = 0;
    /// Takes or gives back the context's lock, for hosts that draw from two threads. The lock
    /// counts: the thread that holds it may take it again.
    /// @return false without a context, and for giving back what the thread doesn't hold
    virtual bool osx_lock_context(bool state) = 0;
    /// Makes a context and surface for `view`, without making it current. Parameters as in
    /// `initialize`; writes `core_profile` into `extra`. A context that the window had is ended
    /// once the new one exists.
    /// @return false when no configuration or no context could be had: the former one stays
    virtual bool osx_create_cgl_context(void* view, int width, int height, const char* msaa,
                                        RenderWindow* parent, RenderWindow_ExtraData* extra) = 0;
    /// As `osx_create_cgl_context`, and asks for `stencil_bits` too.
    virtual bool osx_create_cocoa_nsgl_context(void* view, int width, int height, const char* msaa,
                                               RenderWindow* parent,
                                               RenderWindow_ExtraData* extra) = 0;
    /// As `osx_apply_context`.
    virtual bool osx_apply_context_cocoa(bool state) = 0;
    /// As `osx_update_current_virtual_screen_ctx`. Call it after the drawable changed its size.
    virtual bool osx_update_context_cocoa() = 0;
    /// As `osx_display_framebuffer`.
    virtual bool osx_display_framebuffer_cocoa() = 0;
    /// As `osx_vsync`.
    virtual bool osx_vsync_cocoa(bool state) = 0;
    /// @return null: Linux has no second kind of context
    virtual void* osx_get_nsgl_ctx() = 0;

    /// Lists the devices that off-screen windows can be drawn by, and tries the driver of each. Any
    /// thread; no context is needed or touched.
    static std::vector<RenderWindow_Device> list_devices();

    /// Tells which framebuffer object stands for the window. Toolkits draw a widget into an object
    /// of their own: `Renderer::fbo_get_current_bound` tells its id at the begin of a frame, and as
    /// it may change with the widget's size, a host tells it each frame. While the window's context
    /// is current, everything that goes back to the window binds this object, and framebuffer 0 of
    /// the renderer's operations means it. Of several windows with one context the one told last
    /// counts.
    /// @param id  the API's id; 0, as at first, for the surface itself
    void set_framebuffer(unsigned int id);
    /// @return what `set_framebuffer` was told last; 0 at first
    unsigned int get_framebuffer() const;

    /// The private record, which the engine alone defines.
    struct RenderWindowData;

protected:
    /// Takes no window and no context yet: `initialize` does.
    RenderWindow();
    /// Stores what `get_width` and `get_height` return.
    void set_size(int width, int height);
    /// @return a number that is the higher the later `set_framebuffer` was called, among all
    ///         windows; 0 before
    unsigned long get_framebuffer_turn() const;

    /// Whether the context tells its free memory by GL_ATI_meminfo. Nothing in the engine sets it.
    bool gl_ati_meminfo = false;

private:
    std::unique_ptr<RenderWindowData> data;
};

} // namespace orvex
