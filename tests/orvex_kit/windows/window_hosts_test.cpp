// Hosts of every toolkit show the picture that a view off screen has, frame by frame, in every
// size, and find their context as it was.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/keysym.h>

#include "orvex_kit/engine.h"
#include "tests/examples/host_course.h"
#include "tests/orvex_kit/turning_torus.h"
#include "tests/orvex_kit/windows/cycles.h"
#include "tests/orvex_kit/windows/wayland_screen.h"
#include "tests/support/picture.h"
#include "tests/support/temp_dir.h"
#include "tests/support/x_window.h"

namespace orvex_test {

namespace {

namespace kit = orvex::kit;

constexpr int frames = 6;
constexpr int ahead = 7; ///< the second of two windows

struct Host {
    std::string name;
    std::vector<std::string> command;
    kit::Path path = kit::Path::gl3;
    bool has_two = false;         ///< a second window is some frames ahead
    bool replaces = false;        ///< w takes the view into another window
    double scale = 1.0;           ///< pixels in a unit of the toolkit's
    bool asks_the_screen = false; ///< for its scale
};

void PrintTo(const Host& host, std::ostream* out) {
    *out << host.name;
}

/// What a view off screen has, as opaque as a screen.
Picture expected(kit::Path path, int number, int width, int height) {
    const kit::Engine engine;
    kit::ViewOptions options;
    options.path = path;
    kit::View view(width, height, options);
    TurningTorus().draw(view, number);
    kit::Picture drawn;
    EXPECT_EQ(view.read(drawn).reason(), "");
    Picture picture(width, height);
    for (int y = 0; y < drawn.height(); ++y)
        std::copy_n(drawn.row<std::uint8_t>(y), 4 * width, picture.at(0, y));
    return opaque(picture);
}

class WindowHosts : public testing::TestWithParam<Host> {
protected:
    void SetUp() override {
        ASSERT_NO_FATAL_FAILURE(begin_host_session(folder.path()));
        setenv("GDK_SCALE", scale().c_str(), 1);
        setenv("QT_SCALE_FACTOR", scale().c_str(), 1);
        tell_density(GetParam().asks_the_screen ? GetParam().scale : 1.0);
    }

    /// What toolkits without a setting of their own ask an X server for.
    static void tell_density(double scale) {
        const std::string text = "Xft.dpi:\t" + std::to_string(std::lround(96.0 * scale)) + "\n";
        Display* const display = x_connection();
        XChangeProperty(display, DefaultRootWindow(display), XA_RESOURCE_MANAGER, XA_STRING, 8,
                        PropModeReplace, reinterpret_cast<const unsigned char*>(text.data()),
                        static_cast<int>(text.size()));
        XSync(display, False);
    }

    /// As a toolkit reads it, without a fraction where it has none.
    static std::string scale() {
        std::ostringstream text;
        text << GetParam().scale;
        return text.str();
    }

    static HostCourse course();

    TempDir folder;
};

HostCourse WindowHosts::course() {
    HostCourse course;
    course.frames = frames;
    course.grows_at = 2;
    course.shrinks_at = 4;
    course.replaced_at = GetParam().replaces ? frames - 1 : -1;
    course.second_ahead = GetParam().has_two ? ahead : -1;
    course.name = "window_host";
    course.wanted = [path = GetParam().path](int number, int width, int height) {
        return expected(path, number, width, height);
    };
    return course;
}

TEST_P(WindowHosts, show_the_picture_of_a_view_off_screen) {
    std::vector<std::string> command = GetParam().command;
    command.emplace_back(GetParam().path == kit::Path::gl3 ? "gl3" : "gl2");
    WindowProgram program(command, Leaks::passed_over);
    ASSERT_TRUE(program.has_window()) << program.get_output();
    play(program, course());
    hit(program, XK_Escape);
    EXPECT_EQ(program.exit_code(), 0) << program.get_output();
    EXPECT_EQ(program.get_output().find("a frame changed"), std::string::npos)
        << program.get_output();
}

std::vector<Host> on_both_paths() {
    std::vector<Host> hosts;
    for (const kit::Path path : {kit::Path::gl3, kit::Path::gl2}) {
        const std::string suffix = path == kit::Path::gl3 ? "_gl3" : "_gl2";
        hosts.push_back({"glfw" + suffix, {HOST_GLFW}, path, true});
        hosts.push_back({"sdl2" + suffix, {HOST_SDL2}, path});
        hosts.push_back({"qt6_widget" + suffix, {HOST_QT6_WIDGET}, path, false, true});
        hosts.push_back({"qt6_window" + suffix, {HOST_QT6_WINDOW}, path});
    }
    // GTK makes core contexts alone.
    hosts.push_back({"gtk4", {HOST_GTK4}, kit::Path::gl3, false, true});
    return hosts;
}

std::string host_name(const testing::TestParamInfo<Host>& info) {
    return info.param.name;
}

class CycledHosts : public WindowHosts {
protected:
    static int pixels(int units) { return static_cast<int>(std::lround(units * GetParam().scale)); }
};

TEST_P(CycledHosts, hold_no_more_after_cycles_of_resize_and_hide) {
    const char* const path = GetParam().path == kit::Path::gl3 ? "gl3" : "gl2";
    WindowProgram program({GetParam().command[0], path, scale()}, Leaks::passed_over);
    ASSERT_TRUE(program.has_window()) << program.get_output();
    const int width = pixels(Cycles::last_width);
    const int height = pixels(Cycles::last_height);
    const Picture last = expected(GetParam().path, Cycles::last_frame, width, height);
    bool is_seen = false;
    // Each wait has its end; that of many cycles comes later.
    for (int waits = 0; waits <= cycle_count() / 100 && !is_seen; ++waits)
        is_seen = program.wait_until([&](const Picture& seen) {
            program.turn_to_last_window();
            return seen == last;
        });
    EXPECT_TRUE(is_seen);
    program.move_pointer(150, 90);
    program.press_button(1);
    program.release_button(1);
    hit(program, XK_Escape);
    EXPECT_EQ(program.exit_code(), 0) << program.get_output();
    EXPECT_EQ(program.get_output().find("a frame changed"), std::string::npos)
        << program.get_output();
    const std::string pressed =
        "pressed on 150 90 of " + std::to_string(width) + "x" + std::to_string(height) + "\n";
    EXPECT_NE(program.get_output().find(pressed), std::string::npos) << program.get_output();
    if (std::getenv("ORVEX_CYCLES"))
        std::printf("%s", program.get_output().c_str());
}

std::vector<Host> that_cycle() {
    std::vector<Host> hosts;
    for (const kit::Path path : {kit::Path::gl3, kit::Path::gl2}) {
        const std::string suffix = path == kit::Path::gl3 ? "_gl3" : "_gl2";
        hosts.push_back({"glfw" + suffix, {CYCLES_GLFW}, path});
        hosts.push_back({"sdl2" + suffix, {CYCLES_SDL2}, path});
        hosts.push_back({"qt6_widget" + suffix, {CYCLES_QT6_WIDGET}, path});
        hosts.push_back({"qt6_window" + suffix, {CYCLES_QT6_WINDOW}, path});
    }
    hosts.push_back({"gtk3", {CYCLES_GTK3}, kit::Path::gl3});
    hosts.push_back({"gtk4", {CYCLES_GTK4}, kit::Path::gl3});
    return hosts;
}

/// On screens with more pixels in a unit than one.
std::vector<Host> on_fine_screens() {
    const auto host = [](const char* name, const char* program, double scale) {
        Host result{name, {program}};
        result.scale = scale;
        return result;
    };
    Host glfw = host("glfw", CYCLES_GLFW, 2.0);
    glfw.asks_the_screen = true;
    return {glfw,
            host("gtk3", CYCLES_GTK3, 2.0),
            host("gtk4", CYCLES_GTK4, 2.0),
            host("qt6_widget_2", CYCLES_QT6_WIDGET, 2.0),
            host("qt6_widget_1_5", CYCLES_QT6_WIDGET, 1.5),
            host("qt6_window_1_5", CYCLES_QT6_WINDOW, 1.5)};
}

/// Where a toolkit tells the scale by the screen, and the compositor puts the pixels there.
TEST(WaylandHosts, have_more_pixels_on_a_fine_screen) {
    const Picture wanted =
        expected(kit::Path::gl3, 0, 2 * HostCourse::width, 2 * HostCourse::height);
    WaylandScreen screen(2);
    screen.start({HOST_GTK4, "gl3"},
                 {"GDK_BACKEND=wayland", "GDK_SCALE", "GSETTINGS_BACKEND=memory", "GTK_A11Y=none"});
    EXPECT_TRUE(screen.shows(wanted));
    if (HasFailure())
        write_png(ORVEX_TEST_OUTPUT_DIR "/wayland_host_seen.png", screen.seen());
}

INSTANTIATE_TEST_SUITE_P(of, CycledHosts, testing::ValuesIn(that_cycle()), host_name);
INSTANTIATE_TEST_SUITE_P(on_fine_screens, CycledHosts, testing::ValuesIn(on_fine_screens()),
                         host_name);
INSTANTIATE_TEST_SUITE_P(of, WindowHosts, testing::ValuesIn(on_both_paths()), host_name);

} // namespace

} // namespace orvex_test
