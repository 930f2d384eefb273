// The program of the page on windows, used as somebody at the screen would.

#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include <orvex_kit/kit.h>

#include "tests/examples/window_program.h"
#include "tests/support/picture.h"
#include "tests/support/x_server.h"

namespace orvex_test {

namespace {

namespace kit = orvex::kit;

const std::string program = GUIDE_PROGRAMS "guide_own_window";
const std::string model_file = GUIDE_DATA "lighthouse.obj";

/// What the window is to show when the mouse was drawn so far to the right.
Picture frame_after(double right) {
    const kit::Engine engine;
    kit::View view(480, 360);
    kit::Model model(model_file);
    kit::Orbit orbit(model.extent());
    orbit.turn(right, 0.0);
    view.begin(orbit.camera({480, 360}));
    view.add(model);
    view.end();
    kit::Picture drawn;
    EXPECT_EQ(view.read(drawn).reason(), "");
    Picture picture(drawn.width(), drawn.height());
    for (int y = 0; y < drawn.height(); ++y)
        std::memcpy(picture.at(0, y), drawn.row_data(y), drawn.row_bytes());
    return picture;
}

TEST(GuideWindow, shows_the_model_and_turns_it_with_the_mouse) {
    ASSERT_FALSE(XServer::get().display().empty()) << "no X server";
    const Picture at_first = frame_after(0.0);
    const Picture turned = frame_after(80.0);
    EXPECT_NE(at_first, turned);

    WindowProgram window({program, model_file}, Leaks::passed_over);
    ASSERT_TRUE(window.has_window()) << window.get_output();
    EXPECT_TRUE(window.wait_until([&](const Picture& seen) { return seen == at_first; }));
    window.move_pointer(100, 100);
    window.press_button(1);
    window.move_pointer(180, 100);
    window.release_button(1);
    EXPECT_TRUE(window.wait_until([&](const Picture& seen) { return seen == turned; }));
    window.close();
    EXPECT_EQ(window.exit_code(), 0);
    EXPECT_EQ(window.get_output(), "");
}

TEST(GuideWindow, tells_that_a_model_cant_be_read) {
    ASSERT_FALSE(XServer::get().display().empty()) << "no X server";
    WindowProgram window({program, "/none.obj"}, Leaks::passed_over);
    EXPECT_EQ(window.exit_code(), 1);
    EXPECT_EQ(window.get_output(), "/none.obj: No such file or directory\n");
}

} // namespace

} // namespace orvex_test
