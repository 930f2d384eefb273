#include "host_glfw.h"

#include <cstdint>
#include <cstring>

#include <GLFW/glfw3.h>
#define GLFW_EXPOSE_NATIVE_X11
#include <GLFW/glfw3native.h>

#include <orvex/orvex.h>

#include "host_scene.h"

using orvex::RenderWindow;

bool HostRoad::read(const char* maker, const char* profile) {
    engine = std::strcmp(maker, "engine") == 0;
    egl = std::strcmp(maker, "egl") == 0;
    core = std::strcmp(profile, "core") == 0;
    return (engine || egl || std::strcmp(maker, "glx") == 0) &&
           (core || std::strcmp(profile, "compatibility") == 0);
}

HostWindow::HostWindow(const HostRoad& taken, HostScene& shown, RenderWindow* window)
    : road(taken)
    , scene(shown)
    , handle(window) {}

HostWindow::~HostWindow() {
    if (glfw)
        glfwDestroyWindow(glfw);
}

void HostWindow::hint() const {
    glfwDefaultWindowHints();
    if (road.engine)
        glfwWindowHint(GLFW_CLIENT_API, GLFW_NO_API);
    if (road.egl)
        glfwWindowHint(GLFW_CONTEXT_CREATION_API, GLFW_EGL_CONTEXT_API);
    if (!road.engine && road.core) {
        glfwWindowHint(GLFW_CONTEXT_VERSION_MAJOR, 3);
        glfwWindowHint(GLFW_CONTEXT_VERSION_MINOR, 2);
        glfwWindowHint(GLFW_OPENGL_PROFILE, GLFW_OPENGL_CORE_PROFILE);
    }
}

bool HostWindow::open(int left, const HostWindow* share) {
    hint();
    glfwWindowHint(GLFW_VISIBLE, GLFW_FALSE);
    GLFWwindow* const shares = share && !road.engine ? share->glfw : nullptr;
    glfw = glfwCreateWindow(200, 150, "a host", nullptr, shares);
    if (!glfw)
        return false;
    glfwSetWindowPos(glfw, left, 0);
    glfwShowWindow(glfw);
    return make_context(share) && scene.enter(handle, share != nullptr);
}

bool HostWindow::make_context(const HostWindow* share) {
    if (!road.engine) {
        glfwMakeContextCurrent(glfw);
        return handle->osx_init_with_cocoa_nsgl_ctx(glfw);
    }
    orvex::RenderWindow_ExtraData request;
    request.gl_major = road.core ? 3 : 2;
    request.gl_minor = road.core ? 2 : 1;
    void* const view = reinterpret_cast<void*>(static_cast<std::uintptr_t>(glfwGetX11Window(glfw)));
    return handle->initialize(glfwGetX11Display(), view, 200, 150, "Off",
                              share ? share->handle : nullptr, &request);
}

void HostWindow::leave() {
    make_current();
    scene.leave(handle);
}

void HostWindow::close() {
    // The engine's window ends before the toolkit's.
    handle->terminate();
    glfwDestroyWindow(glfw);
    glfw = nullptr;
}

void HostWindow::make_current() {
    if (road.engine)
        handle->apply_context(true);
    else
        glfwMakeContextCurrent(glfw);
}

void HostWindow::draw(int frame, HostRecord& record) {
    int width = 0;
    int height = 0;
    glfwGetFramebufferSize(glfw, &width, &height);
    make_current();
    handle->update_size(width, height);
    scene.draw(handle, frame, width, height);
    record.add(frame, width, height);
    disturb_states();
    if (road.engine)
        handle->display_framebuffer();
    else
        glfwSwapBuffers(glfw);
}

static HostWishes& wishes_of(GLFWwindow* window) {
    return *static_cast<HostWishes*>(glfwGetWindowUserPointer(window));
}

static void on_key(GLFWwindow* window, int key, int, int action, int) {
    if (action != GLFW_PRESS)
        return;
    HostWishes& wishes = wishes_of(window);
    wishes.frame += key == GLFW_KEY_SPACE;
    wishes.draws = wishes.draws || key == GLFW_KEY_SPACE;
    wishes.replaces = wishes.replaces || key == GLFW_KEY_W;
    wishes.ends = wishes.ends || key == GLFW_KEY_ESCAPE;
}

static void on_close(GLFWwindow* window) {
    wishes_of(window).ends = true;
}

static void on_refresh(GLFWwindow* window) {
    wishes_of(window).draws = true;
}

static void on_size(GLFWwindow* window, int, int) {
    wishes_of(window).draws = true;
}

void listen(GLFWwindow* window, HostWishes& wishes) {
    wishes.draws = true;
    glfwSetWindowUserPointer(window, &wishes);
    glfwSetKeyCallback(window, on_key);
    glfwSetWindowCloseCallback(window, on_close);
    glfwSetWindowRefreshCallback(window, on_refresh);
    glfwSetFramebufferSizeCallback(window, on_size);
}

bool wait(HostWishes& wishes) {
    wishes.draws = false;
    while (!wishes.draws && !wishes.replaces && !wishes.ends)
        glfwWaitEvents();
    return !wishes.ends;
}
