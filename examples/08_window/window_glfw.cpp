// A model in a GLFW window: window_glfw lighthouse.obj
//
// GLFW makes the window and its OpenGL context, and shows what was drawn; the engine adopts that
// context. So it works wherever GLFW does, on X11 and on Wayland alike. The engine's keyboard knows
// which keys are down: the left and right arrows go around the model while they are held, and
// Escape ends it.

#include <algorithm>
#include <cstdio>
#include <string>

#include <GLFW/glfw3.h>
#include <orvex/orvex.h>

#include "model_stage.h"

static int fail(const std::string& reason) {
    std::fprintf(stderr, "window_glfw: %s\n", reason.c_str());
    return 1;
}

static GLFWwindow* open_window() {
    if (!glfwInit())
        return nullptr;
    glfwWindowHint(GLFW_CONTEXT_VERSION_MAJOR, 3);
    glfwWindowHint(GLFW_CONTEXT_VERSION_MINOR, 2);
    glfwWindowHint(GLFW_OPENGL_FORWARD_COMPAT, GLFW_TRUE);
    glfwWindowHint(GLFW_OPENGL_PROFILE, GLFW_OPENGL_CORE_PROFILE);
    GLFWwindow* const window = glfwCreateWindow(640, 480, "orvex in GLFW", nullptr, nullptr);
    if (window)
        glfwMakeContextCurrent(window);
    return window;
}

/// What Keyboard takes on Linux: the key codes of X11. On X11 these are GLFW's scan codes; on
/// Wayland GLFW's lie 8 lower. Escape, which has the code 9, tells which they are.
static int key_code(int scancode) {
    static const int offset = 9 - glfwGetKeyScancode(GLFW_KEY_ESCAPE);
    return scancode + offset;
}

static void on_key(GLFWwindow* window, int, int scancode, int action, int) {
    auto& keyboard = *static_cast<orvex::Keyboard*>(glfwGetWindowUserPointer(window));
    keyboard.set_virtual_key_state(key_code(scancode), action != GLFW_RELEASE);
    if (keyboard.is_key_down(orvex::KEY_ESCAPE))
        glfwSetWindowShouldClose(window, GLFW_TRUE);
}

/// Which way the arrows go: 1 to the right, -1 to the left, 0 where none is held, or both are.
static int held_way(orvex::Keyboard& keyboard) {
    return int(keyboard.is_key_down(orvex::KEY_RIGHT)) - int(keyboard.is_key_down(orvex::KEY_LEFT));
}

/// Waits until something happens, or looks what has while an arrow is held.
/// @return the way around the model since the last call, in degrees
static float wait_for_events(orvex::Keyboard& keyboard) {
    const int way = held_way(keyboard);
    if (way == 0)
        glfwWaitEvents();
    else
        glfwPollEvents();
    // A wait is no part of a turn.
    const double seconds = way == 0 ? 0.0 : std::min(glfwGetTime(), 0.1);
    glfwSetTime(0.0);
    return static_cast<float>(way * seconds * 90.0);
}

static int show(GLFWwindow* window, const char* model) {
    orvex::Keyboard keyboard;
    keyboard.init();
    glfwSetWindowUserPointer(window, &keyboard);
    glfwSetKeyCallback(window, on_key);
    ModelStage stage;
    // The engine uses what is current; it only keeps the handle.
    if (!stage.window->osx_init_with_cocoa_nsgl_ctx(window))
        return fail("no context to adopt");
    if (const std::string mistake = stage.load(model); !mistake.empty())
        return fail(mistake);
    orvex::kit::Angle angle;
    while (!glfwWindowShouldClose(window)) {
        int width = 0;
        int height = 0;
        glfwGetFramebufferSize(window, &width, &height);
        stage.window->update_size(width, height);
        stage.draw(width, height, angle);
        glfwSwapBuffers(window);
        angle.azimuth += wait_for_events(keyboard);
    }
    return 0;
}

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: window_glfw MODEL\n", stderr);
        return 2;
    }
    GLFWwindow* const window = open_window();
    if (!window)
        return fail("no window");
    const int result = show(window, argv[1]);
    glfwTerminate();
    return result;
}
