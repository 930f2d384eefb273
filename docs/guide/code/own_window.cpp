// A model in a window of GLFW, turned by the mouse: own_window model.obj

#include <cstdio>

#include <orvex_kit/kit.h>
#include <orvex_kit/windows/glfw.h>

using namespace orvex;

namespace {

/// What the mouse moves.
struct Hand {
    kit::Orbit orbit;
    double x = 0.0; ///< where the mouse was last
    double y = 0.0;
};

Hand& hand_of(GLFWwindow* window) {
    return *static_cast<Hand*>(glfwGetWindowUserPointer(window));
}

void on_move(GLFWwindow* window, double x, double y) {
    Hand& hand = hand_of(window);
    if (glfwGetMouseButton(window, GLFW_MOUSE_BUTTON_LEFT) == GLFW_PRESS)
        hand.orbit.turn(x - hand.x, y - hand.y);
    hand.x = x;
    hand.y = y;
}

void on_wheel(GLFWwindow* window, double, double notches) {
    hand_of(window).orbit.zoom(notches);
}

/// Everything of the kit ends before the window does.
int show(GLFWwindow* window, const char* path) {
    const kit::Engine engine;
    kit::Model model(path);
    if (!model) {
        std::fprintf(stderr, "%s\n", model.reason().c_str());
        return 1;
    }
    Hand hand;
    hand.orbit.frame(model.extent());
    glfwSetWindowUserPointer(window, &hand);
    glfwSetCursorPosCallback(window, on_move);
    glfwSetScrollCallback(window, on_wheel);

    kit::GlfwView host(window);
    while (!glfwWindowShouldClose(window)) {
        host.frame([&](kit::View& view) {
            view.begin(hand.orbit.camera({view.width(), view.height()}));
            view.add(model);
            view.end();
        });
        if (!host.reason().empty())
            std::fprintf(stderr, "%s\n", host.reason().c_str());
        glfwWaitEvents();
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2 || !glfwInit())
        return 1;
    glfwWindowHint(GLFW_CONTEXT_VERSION_MAJOR, 3);
    glfwWindowHint(GLFW_CONTEXT_VERSION_MINOR, 2);
    glfwWindowHint(GLFW_OPENGL_PROFILE, GLFW_OPENGL_CORE_PROFILE);
    GLFWwindow* window = glfwCreateWindow(480, 360, "orvex", nullptr, nullptr);
    const int result = window ? show(window, argv[1]) : 1;
    glfwTerminate();
    return result;
}
