#pragma once

/// @file
/// A view in a window of X11 that has no context of its own.

#include <cstdint>
#include <string>
#include <utility>

#include <X11/Xlib.h>

#include "orvex_kit/host_state.h"
#include "orvex_kit/view.h"

namespace orvex::kit {

/// A view in a plain window of X11, on a context that the view makes. Ends before the window, on
/// its thread. Another context that is current stays so.
///
/// @code
/// kit::X11View host(display, window);
/// host.frame([&](kit::View& view) { view.draw(model); });
/// @endcode
class X11View {
public:
    /// @param display,window  live longer; the window may get another parent
    X11View(::Display* display, ::Window window, const ViewOptions& options = {})
        : display(display)
        , window(window) {
        int width = 1;
        int height = 1;
        find_size(width, height);
        const HostContext kept;
        const NativeWindow native{display,
                                  reinterpret_cast<void*>(static_cast<std::uintptr_t>(window))};
        shown = View(native, width, height, options);
    }
    ~X11View() {
        const HostContext kept;
        shown = View();
    }
    X11View(const X11View&) = delete;
    X11View& operator=(const X11View&) = delete;

    /// Draws a frame in the window's size and shows it.
    /// @param draw  called with the `View`
    /// @return whether it was drawn
    template<class Draw>
    bool frame(Draw&& draw) {
        const HostContext kept;
        if (!follow())
            return false;
        std::forward<Draw>(draw)(shown);
        shown.present();
        return true;
    }

    View& view() { return shown; } ///< empty where there is none
    /// Why there was no frame.
    const std::string& reason() const { return shown ? refusal : shown.reason(); }

private:
    ::Display* display;
    ::Window window; // not the engine's
    View shown;
    std::string refusal;

    void find_size(int& width, int& height) const {
        XWindowAttributes attributes = {};
        if (!XGetWindowAttributes(display, window, &attributes))
            return;
        width = attributes.width;
        height = attributes.height;
    }

    bool follow() {
        if (!shown)
            return false;
        int width = shown.width();
        int height = shown.height();
        find_size(width, height);
        refusal.clear();
        if (width != shown.width() || height != shown.height())
            refusal = shown.resize(width, height).reason();
        return refusal.empty();
    }
};

} // namespace orvex::kit
