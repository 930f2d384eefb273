#pragma once

/// @file
/// The seam between the render window's logic and the window system under it.

#include <memory>
#include <string>
#include <vector>

#include "orvex/renderer/render_window.h"

namespace orvex {

class PlatformContext;

/// The kinds of context that can be asked for.
enum CONTEXT_PROFILE : int {
    CONTEXT_PROFILE_LEGACY = 0x1000,
    CONTEXT_PROFILE_CORE_3_2 = 0x3200,
};

/// A context that is wanted, with its surface.
struct ContextRequest {
    CONTEXT_PROFILE profile = CONTEXT_PROFILE_LEGACY;
    int gl_major = 2;          ///< read in a core request only
    int gl_minor = 1;          ///< read in a core request only
    bool double_buffer = true; ///< a wish; where every surface has a back buffer it is one anyway
    bool software_renderer = false;
    int color_bits = 32;
    int depth_bits = 32; ///< a wish: 32 falls back to 24, then 16
    int stencil_bits = 0;
    int samples = 0;                  ///< a minimum; 0 is no multisampling
    void* display = nullptr;          ///< native display connection, null for the default
    void* view = nullptr;             ///< native drawable, null for an off-screen surface
    int width = 0;                    ///< of an off-screen surface, in pixels
    int height = 0;                   ///< of an off-screen surface, in pixels
    PlatformContext* share = nullptr; ///< context to share objects with
    bool debug = false;               ///< a wish: the driver checks calls and tells of mistakes
    bool robust = true; ///< a wish: stray reads are harmless, and a reset of the driver is told
    /// The context that gives way to this one, and may have its surface on the same drawable; null
    /// for none. It ends after the new one was made, and is whole if none could be.
    PlatformContext* former = nullptr;
    /// The device for an off-screen surface, as hosts name it; null for what the environment says.
    const char* device = nullptr;
};

/// One native context with its surface.
///
/// Made by a `WindowPlatform` and owned by the render window. Destroying it destroys the native
/// context and surface, unless the host made them; the host's stay as they are, current or not.
class PlatformContext {
public:
    PlatformContext() = default;
    PlatformContext(const PlatformContext&) = delete;
    PlatformContext& operator=(const PlatformContext&) = delete;
    /// Releases the context first if it is current on the calling thread and not the host's.
    virtual ~PlatformContext() = default;

    /// @return the native handle, never null
    virtual void* handle() const = 0;
    /// @return what the window system calls the context, whatever a host does; never null
    virtual const void* native() const = 0;
    /// @return whether the context is current on the calling thread
    virtual bool is_current() const = 0;
    /// @return what draws, in words; empty where the system doesn't tell
    virtual std::string device() const { return {}; }
    /// Makes the context current on the calling thread.
    virtual bool make_current() = 0;
    /// Releases whatever context is current on the calling thread.
    virtual bool release_current() = 0;
    /// Shows the back buffer, whether or not the context is current.
    /// @return false when the system says that the context is lost
    virtual bool present() = 0;
    /// Sets the swap interval, now or when the context is next made current.
    virtual void set_swap_interval(int interval) = 0;
    /// Takes up a new size. Surfaces of native drawables follow them by themselves.
    /// @return false when no surface of that size can be had: the former one stays
    virtual bool resize(int width, int height) = 0;
};

/// What a window system does for the back end. `set_window_platform` replaces the system's own, as
/// tests do.
class WindowPlatform {
public:
    WindowPlatform() = default;
    WindowPlatform(const WindowPlatform&) = delete;
    WindowPlatform& operator=(const WindowPlatform&) = delete;
    virtual ~WindowPlatform() = default;

    /// Chooses a configuration and makes a context and its surface, without making it current.
    /// @return null when there is no such configuration, context or surface
    virtual std::unique_ptr<PlatformContext> create_context(const ContextRequest& request) = 0;
    /// Wraps the context that is current on the calling thread.
    /// @param handle  what the host calls it
    /// @return null when none is current
    virtual std::unique_ptr<PlatformContext> adopt_current_context(void* handle) = 0;
    /// The native handle of the context that is current on the calling thread, whoever made it;
    /// null without one, and where the platform can't say.
    virtual const void* current_context() { return nullptr; }
    /// The devices that off-screen contexts can be made on, and why not. Those of a system that
    /// has no choice are none.
    virtual std::vector<RenderWindow_Device> list_devices() { return {}; }
    /// The version of the window-system interface.
    virtual void get_version(int& major, int& minor) = 0;
    /// The address under which the process's OpenGL serves a name. A non-null answer says nothing
    /// about support: systems hand out stubs for names they have never heard of.
    virtual void* get_proc_address(const char* name) = 0;
};

/// @return the platform in use
WindowPlatform& window_platform();
/// Replaces the platform, for all windows and look-ups from here on.
/// @param platform  must outlive its use; null goes back to the system's own
void set_window_platform(WindowPlatform* platform);
/// @return the system's own platform, made on first use and never destroyed
WindowPlatform& native_window_platform();

} // namespace orvex
