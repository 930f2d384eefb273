// The example with a window on an X server of the test's own: keys are hit, the pointer is moved,
// and the window's pixels are compared with the same frame drawn off screen.

#include <algorithm>
#include <functional>
#include <string>

#include <gtest/gtest.h>

#include <X11/keysym.h>

#include <orvex_kit/kit.h>

#include "tests/support/picture.h"
#include "tests/support/x_server.h"
#include "window_program.h"

namespace orvex_test {

namespace {

namespace kit = orvex::kit;

const std::string model_file = EXAMPLE_DATA "/lighthouse.obj";

/// The frame that a window of that size is to show, once the model was turned. Screens know no
/// opacity.
Picture frame_of(int width, int height, const std::function<void(kit::Orbit&)>& turn) {
    const kit::Engine engine;
    kit::View view(width, height);
    kit::Model model(model_file);
    kit::Orbit orbit(model.extent());
    turn(orbit);
    view.begin(orbit.camera({width, height}));
    view.add(model, orbit.place().angle);
    view.end();
    kit::Picture drawn;
    EXPECT_EQ(view.read(drawn).reason(), "");
    Picture picture(width, height);
    for (int y = 0; y < drawn.height(); ++y)
        std::copy_n(drawn.row<std::uint8_t>(y), 4 * width, picture.at(0, y));
    for (std::size_t i = 3; i < picture.pixels.size(); i += 4)
        picture.pixels[i] = 255;
    return picture;
}

void leave_as_framed(kit::Orbit&) {}

class WindowExample : public testing::Test {
protected:
    void SetUp() override { ASSERT_FALSE(XServer::get().display().empty()) << "no X server"; }

    static testing::AssertionResult shows(WindowProgram& program, const Picture& expected) {
        if (program.wait_until([&](const Picture& seen) { return seen == expected; }))
            return testing::AssertionSuccess();
        write_png(ORVEX_TEST_OUTPUT_DIR "/window_seen.png", program.pixels());
        write_png(ORVEX_TEST_OUTPUT_DIR "/window_wanted.png", expected);
        return testing::AssertionFailure()
               << program.get_output() << "; " ORVEX_TEST_OUTPUT_DIR << "/window_seen.png";
    }
};

TEST_F(WindowExample, shows_the_model_and_ends_with_escape) {
    const Picture expected = frame_of(640, 480, leave_as_framed);
    WindowProgram program({WINDOW, model_file}, Leaks::passed_over);
    ASSERT_TRUE(program.has_window()) << program.get_output();
    EXPECT_TRUE(shows(program, expected));
    program.press_key(XK_Escape);
    program.release_key(XK_Escape);
    EXPECT_EQ(program.exit_code(), 0);
    EXPECT_EQ(program.get_output(), "");
}

TEST_F(WindowExample, follows_the_size_of_the_window_and_ends_when_it_is_closed) {
    const Picture expected = frame_of(400, 300, leave_as_framed);
    WindowProgram program({WINDOW, model_file}, Leaks::passed_over);
    ASSERT_TRUE(program.has_window()) << program.get_output();
    program.resize(400, 300);
    EXPECT_TRUE(shows(program, expected));
    program.close();
    EXPECT_EQ(program.exit_code(), 0);
    EXPECT_EQ(program.get_output(), "");
}

TEST_F(WindowExample, goes_around_with_the_mouse_and_comes_nearer_with_its_wheel) {
    const Picture first = frame_of(640, 480, leave_as_framed);
    const Picture turned = frame_of(640, 480, [](kit::Orbit& orbit) { orbit.turn(80, 30); });
    const Picture nearer = frame_of(640, 480, [](kit::Orbit& orbit) {
        orbit.turn(80, 30);
        orbit.zoom(1);
    });
    WindowProgram program({WINDOW, model_file}, Leaks::passed_over);
    ASSERT_TRUE(program.has_window()) << program.get_output();
    EXPECT_TRUE(shows(program, first));
    program.move_pointer(200, 100);
    program.press_button(1);
    program.move_pointer(280, 130);
    EXPECT_TRUE(shows(program, turned));
    program.release_button(1);
    program.press_button(4);
    program.release_button(4);
    EXPECT_TRUE(shows(program, nearer));
    program.close();
    EXPECT_EQ(program.exit_code(), 0);
}

TEST_F(WindowExample, goes_around_while_an_arrow_is_held_and_then_stays) {
    WindowProgram program({WINDOW, model_file}, Leaks::passed_over);
    ASSERT_TRUE(program.has_window()) << program.get_output();
    EXPECT_TRUE(shows(program, frame_of(640, 480, leave_as_framed)));
    for (const unsigned long key : {XK_Left, XK_Right, XK_Up, XK_Down}) {
        Picture before = program.pixels();
        int changes = 0;
        program.press_key(key);
        EXPECT_TRUE(program.wait_until([&](const Picture& seen) {
            changes += seen != before;
            before = seen;
            return changes >= 3;
        }));
        program.release_key(key);
        int equal_looks = 0;
        EXPECT_TRUE(program.wait_until([&](const Picture& seen) {
            equal_looks = seen == before ? equal_looks + 1 : 0;
            before = seen;
            return equal_looks == 20;
        }));
    }
    program.press_key(XK_Escape);
    EXPECT_EQ(program.exit_code(), 0);
    program.release_key(XK_Escape);
}

TEST_F(WindowExample, tells_that_a_model_cant_be_read) {
    WindowProgram program({WINDOW, "/none.obj"}, Leaks::passed_over);
    EXPECT_EQ(program.exit_code(), 1);
    EXPECT_EQ(program.get_output(), "/none.obj: No such file or directory\n");
}

} // namespace

} // namespace orvex_test
