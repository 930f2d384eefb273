// One scene in two windows: host_two_windows (core|compatibility) (glx|egl|engine) (shared|apart)
// [FILE]
//
// The second window is some frames ahead. The space bar shows the next frame in both, Escape ends
// the program.

#include <cstring>
#include <memory>

#include <GLFW/glfw3.h>
#include <orvex/renderer/renderer.h>

#include "host_glfw.h"
#include "host_scene.h"

namespace {

constexpr int ahead = 7;

int fail(const char* reason) {
    std::fprintf(stderr, "host_two_windows: %s\n", reason);
    return 1;
}

bool open_both(HostWindow& first, HostWindow& second, bool shared) {
    return first.open(0, nullptr) && second.open(300, shared ? &first : nullptr);
}

int show(const HostRoad& road, bool shared, HostRecord& record) {
    auto scene = std::make_unique<HostScene>(road.core);
    HostWindow first(road, *scene, scene->renderer->create_render_window());
    HostWindow second(road, *scene, scene->renderer->create_render_window());
    const bool open = open_both(first, second, shared);
    HostWishes wishes;
    if (open) {
        listen(first.glfw, wishes);
        listen(second.glfw, wishes);
        do {
            first.draw(wishes.frame, record);
            second.draw(wishes.frame + ahead, record);
        } while (wait(wishes));
        // The engine stops while a context is still there.
        first.leave();
        second.leave();
    }
    scene.reset();
    return open ? 0 : fail("no window to draw in");
}

} // namespace

int main(int argc, char** argv) {
    HostRoad road;
    if (argc < 4 || !road.read(argv[2], argv[1]))
        return fail("(core|compatibility) (glx|egl|engine) (shared|apart) [FILE]");
    if (!glfwInit())
        return fail("no display");
    HostRecord record(argc > 4 ? argv[4] : nullptr);
    const int result = show(road, std::strcmp(argv[3], "shared") == 0, record);
    glfwTerminate();
    return result;
}
