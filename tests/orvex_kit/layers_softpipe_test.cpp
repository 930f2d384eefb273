// On a driver that draws nothing by programs that number faces.

#include <gtest/gtest.h>

#include "orvex_kit/engine.h"
#include "orvex_kit/layers.h"
#include "orvex_kit/picture.h"
#include "orvex_kit/view.h"
#include "view_frame.h"

namespace orvex_test {

namespace {

using namespace orvex::kit;

class SoftpipeLayersTest : public testing::TestWithParam<Path> {};
INSTANTIATE_TEST_SUITE_P(on, SoftpipeLayersTest, testing::Values(Path::gl3, Path::gl2), path_name);

TEST_P(SoftpipeLayersTest, are_refused_where_colours_are_not) {
    const Engine engine;
    ViewOptions options;
    options.path = GetParam();
    View view(8, 8, options);
    ASSERT_TRUE(view) << view.reason();
    const Camera camera = see_all({}, {}, {8, 8});
    std::vector<Picture> pictures;
    EXPECT_EQ(draw_layers(view, camera, {}, {Layer::color}, pictures).reason(), "");
    EXPECT_EQ(pixel_at(pictures.at(0), 4, 4), (Pixel{43, 48, 56, 255}));
    EXPECT_EQ(draw_layers(view, camera, {}, {Layer::face}, pictures).reason(),
              "the driver softpipe draws no layers: unset GALLIUM_DRIVER");
}

} // namespace

} // namespace orvex_test
