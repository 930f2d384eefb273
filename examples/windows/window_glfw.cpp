// A model in a GLFW window: window_glfw lighthouse.obj
//
// GLFW makes the window and its OpenGL context, and shows what was drawn; the engine adopts that
// context. So it works wherever GLFW does, on X11 and on Wayland alike. Escape ends it.

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

static void on_key(GLFWwindow* window, int key, int, int action, int) {
    if (key == GLFW_KEY_ESCAPE && action == GLFW_PRESS)
        glfwSetWindowShouldClose(window, GLFW_TRUE);
}

static int show(GLFWwindow* window, const char* model) {
    ModelStage stage;
    // The engine uses what is current; it only keeps the handle.
    if (!stage.window->osx_init_with_cocoa_nsgl_ctx(window))
        return fail("no context to adopt");
    if (const std::string mistake = stage.load(model); !mistake.empty())
        return fail(mistake);
    while (!glfwWindowShouldClose(window)) {
        int width = 0;
        int height = 0;
        glfwGetFramebufferSize(window, &width, &height);
        stage.window->update_size(width, height);
        stage.draw(width, height);
        glfwSwapBuffers(window);
        glfwWaitEvents();
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
    glfwSetKeyCallback(window, on_key);
    const int result = show(window, argv[1]);
    glfwTerminate();
    return result;
}
