#pragma once

/// @file
/// A view in a window of GLFW 3.

#include <GLFW/glfw3.h>

#include "orvex_kit/windows/swapped_view.h"

namespace orvex::kit {

/// What a view draws on in GLFW.
struct GlfwSurface {
    GLFWwindow* window; ///< the host's

    static GlfwSurface current() { return {glfwGetCurrentContext()}; } ///< what is drawn on now
    explicit operator bool() const { return window != nullptr; }       ///< whether there is one
    void make_current() const { glfwMakeContextCurrent(window); }      ///< on this thread
    void swap() const { glfwSwapBuffers(window); }                     ///< shows what was drawn
    /// Its size in pixels, and how many of them are a unit of the mouse's places.
    Screen screen() const {
        Screen screen{0, 0};
        int units = 0;
        glfwGetFramebufferSize(window, &screen.width, &screen.height);
        glfwGetWindowSize(window, &units, nullptr);
        if (units > 0 && screen.width > 0)
            screen.scale = static_cast<double>(screen.width) / units;
        return screen;
    }
};

/// A view in a window that GLFW made with a context of OpenGL, which it leaves as it was. For
/// `Path::gl3` that is one of 3.2 or later (`GLFW_CONTEXT_VERSION_MAJOR`). Ends before the window,
/// on its thread.
///
/// @code
/// kit::GlfwView host(window);
/// while (!glfwWindowShouldClose(window)) {
///     host.frame([&](kit::View& view) { view.draw(model); });
///     glfwWaitEvents();
/// }
/// @endcode
class GlfwView : public SwappedView<GlfwSurface> {
public:
    /// @param window   lives longer
    /// @param options  0 samples where the window was asked for some (`GLFW_SAMPLES`)
    explicit GlfwView(GLFWwindow* window, const ViewOptions& options = {})
        : SwappedView({window}, options) {}
};

} // namespace orvex::kit
