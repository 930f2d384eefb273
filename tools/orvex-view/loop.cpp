#include "loop.h"

#include <algorithm>

#include <orvex/renderer/renderer.h>

using namespace orvex::kit;

namespace {

/// How often files are looked at, in seconds.
constexpr double look_interval = 0.25;

/// Draws a frame. @return whether there was one to draw
bool draw_frame(Viewer& viewer, ViewerWindow& window) {
    return window.frame([&](View& view) {
        const double begin = window.now();
        viewer.draw(view);
        // What was asked for is part of a frame once it is done, and waiting for a screen isn't.
        if (viewer.is_measuring())
            view.renderer()->finish_pipeline();
        const double end = window.now();
        viewer.count_frame(end - begin, end);
    });
}

} // namespace

std::string run(Viewer& viewer, ViewerWindow& window) {
    double last_look = window.now();
    double last_move = last_look;
    bool was_moving = false;
    std::string title;
    while (!viewer.is_ended()) {
        if (title != viewer.window_title())
            window.set_title(title = viewer.window_title());
        const bool is_hidden = viewer.needs_frame() && !draw_frame(viewer, window);
        if (!window.reason().empty())
            return window.reason();
        const bool goes_on = !is_hidden && (viewer.is_moving() || viewer.is_measuring());
        window.wait(goes_on ? 0.0 : look_interval);
        const double now = window.now();
        // A key that went down just now moves from here on.
        if (was_moving)
            viewer.advance(std::min(now - last_move, 0.1));
        was_moving = viewer.is_moving();
        last_move = now;
        if (now - last_look >= look_interval) {
            viewer.look_at_files();
            last_look = now;
        }
    }
    return "";
}
