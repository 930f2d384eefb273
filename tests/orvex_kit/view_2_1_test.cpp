// On a driver of OpenGL 2.1.

#include <gtest/gtest.h>

#include "orvex_kit/engine.h"
#include "orvex_kit/layers.h"
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

TEST(View, tells_which_path_a_hosts_context_draws) {
    const Engine engine;
    const GlContext host(Profile::gl_2_1, 8, 8);
    const View view(CurrentContext(), 8, 8);
    EXPECT_FALSE(view);
    EXPECT_EQ(view.failure(), ViewFailure::old_driver);
    EXPECT_EQ(view.reason(), "the host's context offers OpenGL 2.1: ask for path gl2");
}

} // namespace

} // namespace orvex_test
