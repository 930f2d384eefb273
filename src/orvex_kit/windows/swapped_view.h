#pragma once

/// @file
/// A view in a window whose frames are shown by a swap: what the adapters of such toolkits share.

#include <string>
#include <utility>

#include "orvex_kit/camera.h"
#include "orvex_kit/windows/host_view.h"

namespace orvex::kit {

/// A view in a window of a toolkit, with the context that it made for it. `GlfwView` and `Sdl2View`
/// are such; a toolkit without an adapter is served by a class of a few lines.
///
/// @tparam Surface  the toolkit's window, as a value: `make_current()`, `screen()`, `swap()`, a
///                  static `current()`, and false where there is none
template<class Surface>
class SwappedView {
public:
    /// @param surface  a copy is kept: the window itself lives longer
    /// @param options  of the view; 0 samples where the window was asked for some
    SwappedView(const Surface& surface, const ViewOptions& options)
        : surface(surface)
        , host(options) {}
    /// Ends the view in its own context.
    ~SwappedView() {
        const Current current(surface);
        host.leave();
    }
    SwappedView(const SwappedView&) = delete;
    SwappedView& operator=(const SwappedView&) = delete;

    /// Draws a frame in the window's size and shows it. Another context that is current stays so.
    /// @param draw  called with the `View`
    /// @return whether there was one to draw; a hidden window has none
    template<class Draw>
    bool frame(Draw&& draw) {
        const Current current(surface);
        const Screen now = surface.screen();
        if (now.width != known.width || now.height != known.height)
            show_size(now);
        if (!host.frame(now.width, now.height, std::forward<Draw>(draw)))
            return false;
        surface.swap();
        return true;
    }

    /// What the mouse's places are counted in, for `Camera` and `Orbit`.
    Screen screen() const { return surface.screen(); }
    View& view() { return host.view(); }                        ///< empty before the first frame
    const std::string& reason() const { return host.reason(); } ///< why there was no frame

private:
    /// Makes a context current, and the one before at the end.
    class Current {
    public:
        explicit Current(const Surface& surface)
            : before(Surface::current()) {
            surface.make_current();
        }
        ~Current() {
            if (before)
                before.make_current();
        }
        Current(const Current&) = delete;
        Current& operator=(const Current&) = delete;

    private:
        Surface before;
    };

    Surface surface;
    HostView host;
    Screen known{0, 0}; ///< at the frame before

    /// Shows the background. A driver may look at a window's size after a swap alone.
    void show_size(const Screen& now) {
        known = now;
        const auto nothing = [](View& view) {
            view.begin(Camera());
            view.end();
        };
        if (host.frame(now.width, now.height, nothing))
            surface.swap();
    }
};

} // namespace orvex::kit
