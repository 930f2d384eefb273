// A model in a window of GLFW. The mouse goes around it, its wheel comes nearer, and so do the
// arrow keys, by the engine's keyboard; Escape ends it: window [MODEL]

#include <algorithm>
#include <cstdio>
#include <string>

#include <orvex/orvex.h>
#include <orvex_kit/kit.h>
#include <orvex_kit/windows/glfw.h>

using namespace orvex;

/// What the user does with it.
struct Hand {
    kit::Orbit orbit;
    Keyboard keyboard;
    double x = 0.0;
    double y = 0.0;

    bool is_down(KeyCode key) { return keyboard.is_key_down(key); }
};

static Hand& hand_of(GLFWwindow* window) {
    return *static_cast<Hand*>(glfwGetWindowUserPointer(window));
}

/// The keyboard takes the key codes of X11, which are GLFW's scan codes there; on Wayland those lie
/// 8 lower. Escape, which has the code 9, tells which they are.
static void on_key(GLFWwindow* window, int, int scancode, int action, int) {
    static const int offset = 9 - glfwGetKeyScancode(GLFW_KEY_ESCAPE);
    Hand& hand = hand_of(window);
    hand.keyboard.set_virtual_key_state(scancode + offset, action != GLFW_RELEASE);
    if (hand.is_down(KEY_ESCAPE))
        glfwSetWindowShouldClose(window, GLFW_TRUE);
}

static void on_move(GLFWwindow* window, double x, double y) {
    Hand& hand = hand_of(window);
    if (glfwGetMouseButton(window, GLFW_MOUSE_BUTTON_LEFT) == GLFW_PRESS)
        hand.orbit.turn(x - hand.x, y - hand.y);
    hand.x = x;
    hand.y = y;
}

static void on_wheel(GLFWwindow* window, double, double notches) {
    hand_of(window).orbit.zoom(notches);
}

/// Waits until something happens, or goes on at once while a key is held.
static void wait(Hand& hand) {
    kit::OrbitKeys held;
    held.left = hand.is_down(KEY_LEFT);
    held.right = hand.is_down(KEY_RIGHT);
    held.up = hand.is_down(KEY_UP);
    held.down = hand.is_down(KEY_DOWN);
    // A wait is no part of a turn.
    if (hand.orbit.move(held, std::min(glfwGetTime(), 0.1)))
        glfwPollEvents();
    else
        glfwWaitEvents();
}

static int show(GLFWwindow* window, const std::string& path) {
    const kit::Engine engine;
    kit::GlfwView host(window);
    kit::Model model(path);
    if (!model) {
        std::fprintf(stderr, "%s\n", model.reason().c_str());
        return 1;
    }
    Hand hand;
    hand.orbit.frame(model.extent());
    hand.keyboard.init();
    glfwSetWindowUserPointer(window, &hand);
    glfwSetKeyCallback(window, on_key);
    glfwSetCursorPosCallback(window, on_move);
    glfwSetScrollCallback(window, on_wheel);
    while (!glfwWindowShouldClose(window) && host.reason().empty()) {
        glfwSetTime(0.0);
        host.frame([&](kit::View& view) {
            view.begin(hand.orbit.camera({view.width(), view.height()}));
            view.add(model, hand.orbit.place().angle);
            view.end();
        });
        wait(hand);
    }
    std::fputs(host.reason().c_str(), stderr);
    return host.reason().empty() ? 0 : 1;
}

int main(int argc, char** argv) {
    glfwInit();
    glfwWindowHint(GLFW_CONTEXT_VERSION_MAJOR, 3);
    glfwWindowHint(GLFW_CONTEXT_VERSION_MINOR, 2);
    glfwWindowHint(GLFW_OPENGL_PROFILE, GLFW_OPENGL_CORE_PROFILE);
    GLFWwindow* const window = glfwCreateWindow(640, 480, "orvex", nullptr, nullptr);
    if (!window)
        std::fputs("no window with OpenGL 3.2\n", stderr);
    const int result = window ? show(window, argc > 1 ? argv[1] : "lighthouse.obj") : 1;
    glfwTerminate();
    return result;
}
