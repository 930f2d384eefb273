// Walks around a model in a GLFW window: viewer lighthouse.obj
//
//   arrows, or the mouse with its left button held   around the model
//   page up, page down, or the wheel                 nearer, further
//   home                                             back to the first view
//   W, A, T                                          lines, axes and text, on or off
//   Escape                                           ends it

#include <algorithm>
#include <cstdio>

#include <GLFW/glfw3.h>

#include "viewer.h"

namespace {

/// What the callbacks of the window reach.
struct Host {
    Viewer viewer;
    double pointer_x = 0.0;
    double pointer_y = 0.0;
};

Host& host_of(GLFWwindow* window) {
    return *static_cast<Host*>(glfwGetWindowUserPointer(window));
}

/// What Keyboard takes on Linux: the key codes of X11. On X11 these are GLFW's scan codes; on
/// Wayland GLFW's lie 8 lower. Escape, which has the code 9, tells which they are.
int key_code(int scancode) {
    static const int offset = 9 - glfwGetKeyScancode(GLFW_KEY_ESCAPE);
    return scancode + offset;
}

void on_key(GLFWwindow* window, int, int scancode, int action, int) {
    host_of(window).viewer.set_key(key_code(scancode), action != GLFW_RELEASE);
}

void on_pointer(GLFWwindow* window, double x, double y) {
    Host& host = host_of(window);
    if (glfwGetMouseButton(window, GLFW_MOUSE_BUTTON_LEFT) == GLFW_PRESS)
        host.viewer.drag(static_cast<float>(x - host.pointer_x),
                         static_cast<float>(y - host.pointer_y));
    host.pointer_x = x;
    host.pointer_y = y;
}

void on_wheel(GLFWwindow* window, double, double notches) {
    host_of(window).viewer.turn_wheel(static_cast<float>(notches));
}

GLFWwindow* open_window() {
    if (!glfwInit())
        return nullptr;
    glfwWindowHint(GLFW_CONTEXT_VERSION_MAJOR, 3);
    glfwWindowHint(GLFW_CONTEXT_VERSION_MINOR, 2);
    glfwWindowHint(GLFW_OPENGL_FORWARD_COMPAT, GLFW_TRUE);
    glfwWindowHint(GLFW_OPENGL_PROFILE, GLFW_OPENGL_CORE_PROFILE);
    GLFWwindow* const window = glfwCreateWindow(720, 540, "orvex viewer", nullptr, nullptr);
    if (window)
        glfwMakeContextCurrent(window);
    return window;
}

void listen(GLFWwindow* window, Host& host) {
    glfwSetWindowUserPointer(window, &host);
    glfwGetCursorPos(window, &host.pointer_x, &host.pointer_y);
    glfwSetKeyCallback(window, on_key);
    glfwSetCursorPosCallback(window, on_pointer);
    glfwSetScrollCallback(window, on_wheel);
    glfwSwapInterval(1);
}

/// Draws while something moves, and else when something happens.
void run(GLFWwindow* window, Viewer& viewer) {
    double before = glfwGetTime();
    bool moving = false;
    while (!glfwWindowShouldClose(window) && !viewer.is_ended()) {
        const double now = glfwGetTime();
        const double seconds = moving ? std::min(now - before, 0.1) : 0.0;
        before = now;
        moving = viewer.advance(static_cast<float>(seconds));
        int width = 0;
        int height = 0;
        glfwGetFramebufferSize(window, &width, &height);
        viewer.draw(width, height);
        glfwSwapBuffers(window);
        if (moving)
            glfwPollEvents();
        else
            glfwWaitEvents();
    }
}

int fail(const std::string& reason) {
    std::fprintf(stderr, "viewer: %s\n", reason.c_str());
    return 1;
}

int show(GLFWwindow* window, const char* model) {
    Host host;
    if (const std::string mistake = host.viewer.open(window, model); !mistake.empty())
        return fail(mistake);
    listen(window, host);
    run(window, host.viewer);
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: viewer MODEL\n", stderr);
        return 2;
    }
    GLFWwindow* const window = open_window();
    const int result = window ? show(window, argv[1]) : fail("no window");
    glfwTerminate();
    return result;
}
