// A scene whose window is replaced: host_replaced_window (core|compatibility) (glx|egl|engine)
// [FILE]
//
// The space bar shows the next frame, w closes the window and opens another one, Escape ends it.

#include <memory>

#include <GLFW/glfw3.h>
#include <orvex/renderer/renderer.h>

#include "host_glfw.h"
#include "host_scene.h"

namespace {

int fail(const char* reason) {
    std::fprintf(stderr, "host_replaced_window: %s\n", reason);
    return 1;
}

bool replace(HostWindow& window, HostWishes& wishes) {
    wishes.replaces = false;
    window.leave();
    window.close();
    return window.open(0, nullptr);
}

int show(const HostRoad& road, HostRecord& record) {
    auto scene = std::make_unique<HostScene>(road.core);
    HostWindow window(road, *scene, scene->renderer->create_render_window());
    HostWishes wishes;
    bool open = window.open(0, nullptr);
    do {
        if (wishes.replaces)
            open = replace(window, wishes);
        if (!open)
            break;
        listen(window.glfw, wishes);
        window.draw(wishes.frame, record);
    } while (wait(wishes));
    // The engine stops while the context is still there.
    scene.reset();
    return open ? 0 : fail("no window to draw in");
}

} // namespace

int main(int argc, char** argv) {
    HostRoad road;
    if (argc < 3 || !road.read(argv[2], argv[1]))
        return fail("(core|compatibility) (glx|egl|engine) [FILE]");
    if (!glfwInit())
        return fail("no display");
    HostRecord record(argc > 3 ? argv[3] : nullptr);
    const int result = show(road, record);
    glfwTerminate();
    return result;
}
