// Two windows of GLFW, the second of which is some frames ahead: host_glfw (gl3|gl2).

#include <memory>

#include "orvex_kit/windows/glfw.h"
#include "window_host.h"

using namespace orvex;

namespace {

int frame = 0;

struct HostWindow {
    GLFWwindow* window;
    kit::GlfwView host;
    orvex_test::TurningTorus torus;

    HostWindow(int left, const kit::ViewOptions& options)
        : window(glfwCreateWindow(200, 150, "a host", nullptr, nullptr))
        , host(window, options) {
        glfwSetWindowPos(window, left, 0);
        glfwSetKeyCallback(window, [](GLFWwindow* window, int key, int, int action, int) {
            frame += action == GLFW_PRESS && key == GLFW_KEY_SPACE;
            if (key == GLFW_KEY_ESCAPE)
                glfwSetWindowShouldClose(window, GLFW_TRUE);
        });
    }
    void draw(int number) {
        glfwMakeContextCurrent(window);
        const StateWatch watch;
        if (!host.frame([&](kit::View& view) { torus.draw(view, number); }))
            std::fprintf(stderr, "%s\n", host.reason().c_str());
    }
};

} // namespace

int main(int argc, char** argv) {
    if (!glfwInit())
        return 1;
    {
        const kit::Engine engine;
        HostWindow first(0, options_of(argc, argv));
        HostWindow second(300, options_of(argc, argv));
        while (!glfwWindowShouldClose(first.window) && !glfwWindowShouldClose(second.window)) {
            first.draw(frame);
            second.draw(frame + 7);
            glfwWaitEvents();
        }
    }
    glfwTerminate();
    return 0;
}
