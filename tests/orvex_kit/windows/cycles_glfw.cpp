// Cycles of resize and hide in GLFW: cycles_glfw (gl3|gl2) [SCALE].

#include <cmath>

#include "cycles.h"
#include "orvex_kit/windows/glfw.h"
#include "window_host.h"

using namespace orvex;

namespace {

struct Host {
    orvex_test::Cycles& cycles;
    GLFWwindow* window;
    kit::GlfwView host;
    bool ends = false;

    Host(orvex_test::Cycles& cycles, const kit::ViewOptions& options)
        : cycles(cycles)
        , window(open())
        , host(window, options) {
        glfwSetWindowUserPointer(window, this);
        glfwSetKeyCallback(window, [](GLFWwindow* window, int key, int, int, int) {
            static_cast<Host*>(glfwGetWindowUserPointer(window))->ends = key == GLFW_KEY_ESCAPE;
        });
        glfwSetMouseButtonCallback(window, [](GLFWwindow* window, int, int action, int) {
            const Host& self = *static_cast<Host*>(glfwGetWindowUserPointer(window));
            double x = 0.0;
            double y = 0.0;
            glfwGetCursorPos(window, &x, &y);
            if (action == GLFW_PRESS)
                self.cycles.press(self.host.screen(), x, y);
        });
    }
    /// Of a size that GLFW takes times the screen's scale.
    static GLFWwindow* open() {
        glfwWindowHint(GLFW_SCALE_TO_MONITOR, GLFW_TRUE);
        return glfwCreateWindow(orvex_test::Cycles::width, orvex_test::Cycles::height, "cycles",
                                nullptr, nullptr);
    }
    /// On X11 later sizes are in pixels.
    void resize(int width, int height) {
        float across = 1.0f;
        float down = 1.0f;
        glfwGetWindowContentScale(window, &across, &down);
        glfwSetWindowSize(window, static_cast<int>(std::lround(static_cast<float>(width) * across)),
                          static_cast<int>(std::lround(static_cast<float>(height) * down)));
    }
    void hide() { glfwHideWindow(window); }
    void show() { glfwShowWindow(window); }
    void change(int) {}
    void turn() {
        glfwWaitEventsTimeout(0.002);
        glfwMakeContextCurrent(window);
        const StateWatch watch;
        host.frame([&](kit::View& view) { cycles.draw(view); });
    }
};

} // namespace

int main(int argc, char** argv) {
    if (!glfwInit())
        return 1;
    int code = 1;
    {
        const kit::Engine engine;
        orvex_test::Cycles cycles = cycles_of(argc, argv);
        Host host(cycles, options_of(argc, argv));
        code = cycles.run(host);
    }
    glfwTerminate();
    return code;
}
