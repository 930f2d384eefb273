// On a driver of OpenGL 2.1.

#include <gtest/gtest.h>

#include <GL/gl.h>

#include "orvex_kit/engine.h"
#include "orvex_kit/layers.h"
#include "orvex_kit/text.h"
#include "orvex_kit/windows/host_view.h"
#include "tests/support/gl_context.h"
#include "view_frame.h"

namespace orvex_test {

namespace {

using namespace orvex::kit;

TEST(View, tells_which_path_an_old_driver_draws) {
    const Engine engine;
    const View view(8, 8);
    EXPECT_FALSE(view);
    EXPECT_EQ(view.failure(), ViewFailure::old_driver);
    EXPECT_EQ(view.reason(), "this driver offers OpenGL 2.1: ask for path gl2");
    ViewOptions options;
    options.path = Path::gl2;
    View other(8, 8, options);
    ASSERT_TRUE(other) << other.reason();
    EXPECT_EQ(pixel_at(empty_frame(other), 4, 4), (Pixel{43, 48, 56, 255}));
}

TEST(View, tells_that_an_old_driver_draws_no_layers) {
    const Engine engine;
    ViewOptions options;
    options.path = Path::gl2;
    View view(8, 8, options);
    std::vector<orvex::kit::Picture> pictures;
    EXPECT_EQ(draw_layers(view, orvex::kit::Camera(), {}, {Layer::depth}, pictures).reason(),
              "this driver has no shading language 1.50 on path gl2: ask for path gl3");
    EXPECT_EQ(draw_layers(view, orvex::kit::Camera(), {}, {Layer::color}, pictures).reason(), "");
}

TEST(Text, tells_that_its_program_doesnt_compile) {
    const Engine engine;
    ViewOptions options;
    options.path = Path::gl2;
    View view(8, 8, options);
    ASSERT_TRUE(view) << view.reason();
    Text text(*view.renderer(), Path::gl3);
    EXPECT_FALSE(text);
    const std::string reason =
        "the program of texts doesn't compile: text: error: GLSL 1.50 is not supported";
    EXPECT_EQ(text.reason().substr(0, reason.size()), reason);
    text.add("A", 1, 1);
    EXPECT_TRUE(text.draw(8, 8)) << "nothing";
    EXPECT_TRUE(Text(view)) << "the other path draws";
}

TEST(View, tells_which_path_a_hosts_context_draws) {
    const Engine engine;
    const GlContext host(Profile::gl_2_1, 8, 8);
    const View view(CurrentContext(), 8, 8);
    EXPECT_FALSE(view);
    EXPECT_EQ(view.failure(), ViewFailure::old_driver);
    EXPECT_EQ(view.reason(), "the host's context offers OpenGL 2.1: ask for path gl2");
}

TEST(HostView, leaves_the_states_of_an_old_context) {
    const Engine engine;
    const GlContext host(Profile::gl_2_1, 8, 8);
    glEnable(GL_BLEND);
    glDisable(GL_DITHER);
    glDepthFunc(GL_GREATER);
    glMatrixMode(GL_PROJECTION);
    ViewOptions options;
    options.path = Path::gl2;
    HostView view(options);
    EXPECT_TRUE(view.frame(8, 8, [](View& shown) {
        EXPECT_EQ(pixel_at(empty_frame(shown), 4, 4), (Pixel{43, 48, 56, 255}));
    })) << view.reason();
    view.leave();
    GLint values[2] = {};
    glGetIntegerv(GL_DEPTH_FUNC, &values[0]);
    glGetIntegerv(GL_MATRIX_MODE, &values[1]);
    EXPECT_TRUE(glIsEnabled(GL_BLEND));
    EXPECT_FALSE(glIsEnabled(GL_DITHER));
    EXPECT_EQ(values[0], GL_GREATER);
    EXPECT_EQ(values[1], GL_PROJECTION);
    EXPECT_NO_GL_ERROR();
}

} // namespace

} // namespace orvex_test
