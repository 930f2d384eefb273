#pragma once

/// @file
/// A view in a window whose OpenGL context is a toolkit's. The adapters stand on it; a toolkit that
/// has none of its own is served by it alone.

#include <string>
#include <utility>

#include "orvex_kit/host_state.h"
#include "orvex_kit/view.h"

namespace orvex::kit {

/// A view on whatever context the host holds current at a frame. It begins with the first frame,
/// follows the size of the later ones, draws into the framebuffer that is bound, and leaves that
/// and the context's states as they were.
///
/// Needs an `Engine`. Where the context ends or another takes its place, `leave` comes before.
///
/// @code
/// kit::HostView host;
/// // in the toolkit's paint callback, with its context current:
/// host.frame(640, 480, [](kit::View& view) { view.begin(kit::Camera()); });
/// @endcode
class HostView {
public:
    /// @param options  of the view; 0 samples where the toolkit's framebuffer has samples itself
    explicit HostView(const ViewOptions& options = {})
        : options(options) {}
    HostView(const HostView&) = delete;
    HostView& operator=(const HostView&) = delete;

    /// A frame.
    /// @param width,height  of the framebuffer, in pixels: the toolkit's units times its scale.
    /// Below
    ///                      1, as of a hidden window, nothing is drawn
    /// @param draw          called with the `View`, which it draws a whole frame of
    /// @return whether it was drawn
    template<class Draw>
    bool frame(int width, int height, Draw&& draw) {
        if (width < 1 || height < 1 || !follow(width, height))
            return false;
        const HostState kept;
        std::forward<Draw>(draw)(shown);
        return true;
    }

    /// Ends the view while its context is still current; the next frame begins another. What was
    /// compiled for it is empty then.
    void leave() {
        if (!std::exchange(has_begun, false))
            return;
        const HostState kept;
        shown = View();
    }

    /// The view; empty before the first frame and where there is none.
    View& view() { return shown; }
    /// Why a frame wasn't drawn, until one is; empty for a hidden window.
    const std::string& reason() const { return shown ? refusal : shown.reason(); }

private:
    ViewOptions options;
    View shown;
    bool has_begun = false;
    std::string refusal;

    /// Another framebuffer may be bound in the meantime, so that the frame has states of its own.
    bool follow(int width, int height) {
        if (!has_begun) {
            const HostState kept;
            shown = View(CurrentContext(), width, height, options);
            has_begun = true;
        }
        refusal.clear();
        if (shown && (width != shown.width() || height != shown.height())) {
            const HostState kept;
            refusal = shown.resize(width, height).reason();
        }
        return shown && refusal.empty();
    }
};

} // namespace orvex::kit
