// A host built without exceptions and without type information: host_plain (core|compatibility)
// [FILE]
//
// The space bar shows the next frame, Escape ends it.

#include <memory>

#include <GLFW/glfw3.h>
#include <orvex/renderer/renderer.h>

#include "host_glfw.h"
#include "host_scene.h"

#if defined(__cpp_exceptions) || defined(__cpp_rtti)
#error "This host is to be built without exceptions and without type information."
#endif

namespace {

int fail(const char* reason) {
    std::fprintf(stderr, "host_plain: %s\n", reason);
    return 1;
}

int show(const HostRoad& road, HostRecord& record) {
    auto scene = std::make_unique<HostScene>(road.core);
    HostWindow window(road, *scene, scene->renderer->create_render_window());
    const bool open = window.open(0, nullptr);
    HostWishes wishes;
    if (open) {
        listen(window.glfw, wishes);
        do
            window.draw(wishes.frame, record);
        while (wait(wishes));
    }
    scene.reset();
    return open ? 0 : fail("no window to draw in");
}

} // namespace

int main(int argc, char** argv) {
    HostRoad road;
    if (argc < 2 || !road.read("engine", argv[1]))
        return fail("(core|compatibility) [FILE]");
    if (!glfwInit())
        return fail("no display");
    HostRecord record(argc > 2 ? argv[2] : nullptr);
    const int result = show(road, record);
    glfwTerminate();
    return result;
}
