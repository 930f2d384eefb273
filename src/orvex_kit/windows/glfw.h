#pragma once

/// @file
/// A view in a window of GLFW 3.

#include <string>
#include <utility>

#include <GLFW/glfw3.h>

#include "orvex_kit/windows/host_view.h"

namespace orvex::kit {

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
class GlfwView {
public:
    /// @param window   lives longer
    /// @param options  0 samples where the window was asked for some (`GLFW_SAMPLES`)
    explicit GlfwView(GLFWwindow* window, const ViewOptions& options = {})
        : window(window)
        , host(options) {}
    /// Ends the view in its own context.
    ~GlfwView() {
        const Current current(window);
        host.leave();
    }
    GlfwView(const GlfwView&) = delete;
    GlfwView& operator=(const GlfwView&) = delete;

    /// Draws a frame in the window's size and shows it. Another context that is current stays so.
    /// @param draw  called with the `View`
    /// @return whether there was one to draw; a hidden window has none
    template<class Draw>
    bool frame(Draw&& draw) {
        const Current current(window);
        int width = 0;
        int height = 0;
        glfwGetFramebufferSize(window, &width, &height);
        if (!host.frame(width, height, std::forward<Draw>(draw)))
            return false;
        glfwSwapBuffers(window);
        return true;
    }

    View& view() { return host.view(); }                        ///< empty before the first frame
    const std::string& reason() const { return host.reason(); } ///< why there was no frame

private:
    /// Makes a window's context current, and the one before at the end.
    class Current {
    public:
        explicit Current(GLFWwindow* window)
            : before(glfwGetCurrentContext()) {
            glfwMakeContextCurrent(window);
        }
        ~Current() {
            if (before)
                glfwMakeContextCurrent(before);
        }
        Current(const Current&) = delete;
        Current& operator=(const Current&) = delete;

    private:
        GLFWwindow* before;
    };

    GLFWwindow* window;
    HostView host;
};

} // namespace orvex::kit
