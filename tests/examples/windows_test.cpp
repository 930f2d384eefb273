// The examples that show one model in the windows of different toolkits: the window's own pixels
// against the same frame drawn off screen.

#include <algorithm>
#include <ostream>
#include <string>

#include <gtest/gtest.h>

#include <EGL/egl.h>
#include <X11/keysym.h>

#include <orvex/renderer/render_window.h>

#include "model_stage.h"
#include "tests/support/gl_context.h"
#include "tests/support/picture.h"
#include "tests/support/x_server.h"
#include "window_program.h"

namespace orvex_test {

namespace {

const std::string model = EXAMPLE_DATA "/lighthouse.obj";

/// An example, by the name of its toolkit.
struct Example {
    const char* name;
    const char* program;
    Leaks leaks;
    friend std::ostream& operator<<(std::ostream& out, const Example& example) {
        return out << example.name;
    }
};

/// Screens know no opacity.
Picture opaque(Picture picture) {
    for (std::size_t i = 3; i < picture.pixels.size(); i += 4)
        picture.pixels[i] = 255;
    return picture;
}

/// The frame that a window of that size is to show.
Picture frame_of(int width, int height) {
    GlContext context(Profile::core, width, height);
    ModelStage stage;
    EXPECT_TRUE(stage.window->osx_init_with_cocoa_nsgl_ctx(eglGetCurrentContext()));
    EXPECT_EQ(stage.load(model), "");
    stage.draw(width, height);
    return opaque(read_frame(width, height));
}

class WindowExample : public testing::TestWithParam<Example> {
protected:
    void SetUp() override { ASSERT_FALSE(XServer::get().display().empty()) << "no X server"; }

    std::vector<std::string> command() const { return {GetParam().program, model}; }
};

INSTANTIATE_TEST_SUITE_P(of, WindowExample,
                         testing::Values(Example{"glfw", WINDOW_GLFW, Leaks::passed_over},
                                         Example{"sdl2", WINDOW_SDL2, Leaks::passed_over},
                                         Example{"x11", WINDOW_X11, Leaks::looked_for}),
                         testing::PrintToStringParamName());

TEST_P(WindowExample, shows_the_model_and_ends_with_escape) {
    const Picture expected = frame_of(640, 480);
    WindowProgram program(command(), GetParam().leaks);
    ASSERT_TRUE(program.has_window()) << program.get_output();
    EXPECT_TRUE(program.wait_until([&](const Picture& seen) { return seen == expected; }))
        << program.get_output();
    program.press_key(XK_Escape);
    program.release_key(XK_Escape);
    EXPECT_EQ(program.exit_code(), 0);
    EXPECT_EQ(program.get_output(), "");
}

TEST_P(WindowExample, follows_the_size_of_the_window_and_ends_when_it_is_closed) {
    const Picture expected = frame_of(400, 300);
    EXPECT_TRUE(matches_golden("model_road", expected));
    WindowProgram program(command(), GetParam().leaks);
    ASSERT_TRUE(program.has_window()) << program.get_output();
    program.resize(400, 300);
    EXPECT_TRUE(program.wait_until([&](const Picture& seen) { return seen == expected; }))
        << program.get_output();
    program.close();
    EXPECT_EQ(program.exit_code(), 0);
    EXPECT_EQ(program.get_output(), "");
}

TEST(GlfwExample, goes_around_the_model_while_an_arrow_is_held_and_then_stays) {
    const Picture first = frame_of(640, 480);
    WindowProgram program({WINDOW_GLFW, model}, Leaks::passed_over);
    ASSERT_TRUE(program.has_window()) << program.get_output();
    EXPECT_TRUE(program.wait_until([&](const Picture& seen) { return seen == first; }))
        << program.get_output();
    for (const unsigned long key : {XK_Left, XK_Right}) {
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

TEST_P(WindowExample, tells_that_a_model_cant_be_read) {
    WindowProgram program({GetParam().program, "/none.obj"}, GetParam().leaks);
    EXPECT_EQ(program.exit_code(), 1);
    EXPECT_NE(program.get_output().find("/none.obj: No such file or directory"), std::string::npos)
        << program.get_output();
}

TEST_P(WindowExample, tells_how_it_is_called) {
    WindowProgram program({GetParam().program});
    EXPECT_EQ(program.exit_code(), 2);
    EXPECT_EQ(program.get_output(), "usage: window_" + std::string(GetParam().name) + " MODEL\n");
}

} // namespace

} // namespace orvex_test
