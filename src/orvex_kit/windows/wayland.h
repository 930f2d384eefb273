#pragma once

/// @file
/// A view on a surface of Wayland.

#include <string>
#include <utility>

#include <wayland-client.h>
#include <wayland-egl.h>

#include <orvex/renderer/render_window.h>

#include "orvex_kit/host_state.h"
#include "orvex_kit/view.h"

namespace orvex::kit {

/// A view on a surface of Wayland that has a role, on a context that the view makes; the host links
/// `wayland-egl`. It waits for no screen, so that a surface that is hidden holds nobody up: the
/// host draws when the surface's frame callback tells. Ends before the surface, on its thread.
/// Another context that is current stays so.
///
/// @code
/// kit::WaylandView host(display, surface, 640, 480);
/// host.frame([&](kit::View& view) { view.draw(model); });
/// @endcode
class WaylandView {
public:
    /// @param display,surface  live longer
    /// @param width,height     in pixels: the surface's own units times its buffer scale
    WaylandView(wl_display* display, wl_surface* surface, int width, int height,
                const ViewOptions& options = {})
        : window(width < 1 || height < 1 ? nullptr : wl_egl_window_create(surface, width, height)) {
        const HostContext kept;
        // Null would stand for a view off screen.
        if (window)
            shown = View(NativeWindow{display, window}, width, height, options);
        if (shown)
            shown.window()->osx_vsync(false);
    }
    ~WaylandView() {
        const HostContext kept;
        shown = View();
        if (window)
            wl_egl_window_destroy(window);
    }
    WaylandView(const WaylandView&) = delete;
    WaylandView& operator=(const WaylandView&) = delete;

    /// Takes the size of a `configure` event; its own is right once more after a failure.
    /// @param width,height  in pixels, from 1
    Outcome resize(int width, int height) {
        const HostContext kept;
        if (shown && width > 0 && height > 0)
            wl_egl_window_resize(window, width, height, 0, 0);
        Outcome done = shown.resize(width, height);
        if (shown && !done)
            wl_egl_window_resize(window, shown.width(), shown.height(), 0, 0);
        return done;
    }

    /// Draws a frame and commits it to the surface.
    /// @param draw  called with the `View`
    /// @return whether it was drawn
    template<class Draw>
    bool frame(Draw&& draw) {
        const HostContext kept;
        if (!shown)
            return false;
        std::forward<Draw>(draw)(shown);
        shown.present();
        return true;
    }

    View& view() { return shown; } ///< empty where there is none
    /// Why there is none.
    const std::string& reason() const {
        static const std::string no_window = "a surface of Wayland has sides from 1";
        return window ? shown.reason() : no_window;
    }

private:
    wl_egl_window* window;
    View shown;
};

} // namespace orvex::kit
