// Runs the examples of points and lines on both paths and looks at what they write.

#include <string>

#include "example_picture.h"

namespace orvex_test {

namespace {

class PointExample : public testing::TestWithParam<const char*> {};
INSTANTIATE_TEST_SUITE_P(on, PointExample, testing::Values("gl2", "gl3"),
                         [](const auto& row) { return std::string(row.param); });

TEST_P(PointExample, shows_points_before_and_after_a_compute_program_moved_them) {
    expect_example_picture(COMPUTE_POINTS, GetParam(), "compute_points");
}

} // namespace

} // namespace orvex_test
