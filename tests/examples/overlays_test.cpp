// Runs the example of overlays on both paths and looks at what it writes. Raster text shows on one
// of them only, so that they have a picture each.

#include "example_picture.h"

namespace orvex_test {

namespace {

TEST(OverlaysExample, shows_everything_with_raster_text_on_the_path_of_client_arrays) {
    orvex_test::expect_example_picture(OVERLAYS, "gl2", "overlays_gl2");
}

TEST(OverlaysExample, shows_everything_else_on_the_path_of_generic_attributes) {
    orvex_test::expect_example_picture(OVERLAYS, "gl3", "overlays_gl3");
}

} // namespace

} // namespace orvex_test
