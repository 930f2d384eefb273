#include "tests/examples/host_course.h"

#include <cstdlib>

#include <X11/Xlib.h>
#include <X11/keysym.h>
#include <gtest/gtest.h>

#include "tests/support/x_server.h"
#include "tests/support/x_window.h"

namespace orvex_test {

void begin_host_session(const std::string& folder) {
    ASSERT_FALSE(XServer::get().display().empty()) << "no X server";
    // A key that is held on a machine that is busy counts once all the same.
    XAutoRepeatOff(x_connection());
    XSync(x_connection(), False);
    setenv("XDG_RUNTIME_DIR", folder.c_str(), 1);
    setenv("NO_AT_BRIDGE", "1", 1);
    setenv("GSETTINGS_BACKEND", "memory", 1);
    setenv("GTK_A11Y", "none", 1);
    setenv("GDK_BACKEND", "x11", 1);
    setenv("QT_QPA_PLATFORM", "xcb", 1);
}

Picture opaque(Picture picture) {
    for (std::size_t i = 3; i < picture.pixels.size(); i += 4)
        picture.pixels[i] = 255;
    return picture;
}

void hit(WindowProgram& program, unsigned long key) {
    program.press_key(key);
    program.release_key(key);
}

namespace {

/// A window on its course.
class Player {
public:
    Player(WindowProgram& program, const HostCourse& course)
        : program(program)
        , course(course) {}

    void play();

private:
    WindowProgram& program;
    const HostCourse& course;
    int width = HostCourse::width;
    int height = HostCourse::height;

    testing::AssertionResult shows(int number, int across, int down) const;
    bool changes_at(int number) const {
        return number == course.grows_at || number == course.shrinks_at ||
               number == course.replaced_at;
    }
    void change(int number);
    void play(int number);
};

testing::AssertionResult Player::shows(int number, int across, int down) const {
    const Picture wanted = course.wanted(number, across, down);
    if (program.wait_until([&](const Picture& seen) { return seen == wanted; }))
        return testing::AssertionSuccess();
    const std::string files = ORVEX_TEST_OUTPUT_DIR "/" + course.name;
    write_png(files + "_seen.png", program.pixels());
    write_png(files + "_wanted.png", wanted);
    return testing::AssertionFailure()
           << "frame " << number << " in " << across << " by " << down << " pixels isn't seen; "
           << program.get_output() << "; " << files << "_seen.png";
}

void Player::change(int number) {
    if (number == course.grows_at || number == course.shrinks_at) {
        const int sign = number == course.grows_at ? 1 : -1;
        width += sign * 61;
        height += sign * 32;
        program.resize(width, height);
    }
    if (number == course.replaced_at) {
        hit(program, XK_w);
        ASSERT_TRUE(program.turn_to_window(1)) << program.get_output();
        width = program.get_width();
        height = program.get_height();
    }
}

void Player::play(int number) {
    ASSERT_TRUE(shows(number, width, height));
    if (changes_at(number)) {
        ASSERT_NO_FATAL_FAILURE(change(number));
        ASSERT_TRUE(shows(number, width, height));
    }
    if (course.second_ahead >= 0) {
        program.turn_to_window(1);
        ASSERT_TRUE(shows(number + course.second_ahead, HostCourse::width, HostCourse::height));
        program.turn_to_window(0);
    }
}

void Player::play() {
    for (int number = 0; number < course.frames; ++number) {
        if (number > 0)
            hit(program, XK_space);
        ASSERT_NO_FATAL_FAILURE(play(number));
    }
}

} // namespace

void play(WindowProgram& program, const HostCourse& course) {
    Player(program, course).play();
}

} // namespace orvex_test
