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

#include <X11/Xlib.h>
#include <X11/keysym.h>

#include "orvex_kit/engine.h"
#include "tests/examples/window_program.h"
#include "tests/orvex_kit/turning_torus.h"
#include "tests/orvex_kit/windows/cycles.h"
#include "tests/support/picture.h"
#include "tests/support/temp_dir.h"
#include "tests/support/x_server.h"
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
    bool has_two = false;  ///< a second window is some frames ahead
    bool replaces = false; ///< w takes the view into another window
    double scale = 1.0;    ///< pixels in a unit of the toolkit's
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
    for (std::size_t i = 3; i < picture.pixels.size(); i += 4)
        picture.pixels[i] = 255;
    return picture;
}

class WindowHosts : public testing::TestWithParam<Host> {
protected:
    void SetUp() override {
        ASSERT_FALSE(XServer::get().display().empty()) << "no X server";
        // A key that is held on a machine that is busy counts once all the same.
        XAutoRepeatOff(x_connection());
        XSync(x_connection(), False);
        // No toolkit is to miss a session, or to choose another one.
        setenv("XDG_RUNTIME_DIR", folder.path().c_str(), 1);
        setenv("NO_AT_BRIDGE", "1", 1);
        setenv("GSETTINGS_BACKEND", "memory", 1);
        setenv("GTK_A11Y", "none", 1);
        setenv("GDK_BACKEND", "x11", 1);
        setenv("QT_QPA_PLATFORM", "xcb", 1);
        setenv("GDK_SCALE", scale().c_str(), 1);
        setenv("QT_SCALE_FACTOR", scale().c_str(), 1);
    }

    /// As a toolkit reads it, without a fraction where it has none.
    static std::string scale() {
        std::ostringstream text;
        text << GetParam().scale;
        return text.str();
    }

    static testing::AssertionResult shows(WindowProgram& program, int number, int width,
                                          int height) {
        const Picture wanted = expected(GetParam().path, number, width, height);
        if (program.wait_until([&](const Picture& seen) { return seen == wanted; }))
            return testing::AssertionSuccess();
        write_png(ORVEX_TEST_OUTPUT_DIR "/window_host_seen.png", program.pixels());
        write_png(ORVEX_TEST_OUTPUT_DIR "/window_host_wanted.png", wanted);
        return testing::AssertionFailure()
               << "frame " << number << " in " << width << " by " << height
               << " pixels isn't seen; " << program.get_output() << "; "
               << ORVEX_TEST_OUTPUT_DIR "/window_host_seen.png";
    }

    static void hit(WindowProgram& program, unsigned long key) {
        program.press_key(key);
        program.release_key(key);
    }

    static void play(WindowProgram& program);

    TempDir folder;
};

void WindowHosts::play(WindowProgram& program) {
    int width = 200;
    int height = 150;
    for (int number = 0; number < frames; ++number) {
        ASSERT_TRUE(shows(program, number, width, height));
        if (number == 2 || number == 4) {
            width += number == 2 ? 61 : -61;
            height += number == 2 ? 32 : -32;
            program.resize(width, height);
            ASSERT_TRUE(shows(program, number, width, height));
        }
        if (number == frames - 1 && GetParam().replaces) {
            hit(program, XK_w);
            ASSERT_TRUE(program.turn_to_window(1)) << program.get_output();
            ASSERT_TRUE(shows(program, number, program.get_width(), program.get_height()));
            width = program.get_width();
            height = program.get_height();
        }
        if (GetParam().has_two) {
            program.turn_to_window(1);
            ASSERT_TRUE(shows(program, number + ahead, 200, 150));
            program.turn_to_window(0);
        }
        hit(program, XK_space);
    }
}

TEST_P(WindowHosts, show_the_picture_of_a_view_off_screen) {
    std::vector<std::string> command = GetParam().command;
    command.emplace_back(GetParam().path == kit::Path::gl3 ? "gl3" : "gl2");
    WindowProgram program(command, Leaks::passed_over);
    ASSERT_TRUE(program.has_window()) << program.get_output();
    play(program);
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
    return {host("gtk3", CYCLES_GTK3, 2.0), host("gtk4", CYCLES_GTK4, 2.0),
            host("qt6_widget_2", CYCLES_QT6_WIDGET, 2.0),
            host("qt6_widget_1_5", CYCLES_QT6_WIDGET, 1.5),
            host("qt6_window_1_5", CYCLES_QT6_WINDOW, 1.5)};
}

INSTANTIATE_TEST_SUITE_P(of, CycledHosts, testing::ValuesIn(that_cycle()), host_name);
INSTANTIATE_TEST_SUITE_P(on_fine_screens, CycledHosts, testing::ValuesIn(on_fine_screens()),
                         host_name);
INSTANTIATE_TEST_SUITE_P(of, WindowHosts, testing::ValuesIn(on_both_paths()), host_name);

} // namespace

} // namespace orvex_test
