#include "orvex/scene/viewport.h"

#include <type_traits>

#include <gtest/gtest.h>

namespace orvex_test {

using orvex::Viewport;

namespace {

void expect_viewport(const Viewport& viewport, int x, int y, int width, int height) {
    EXPECT_EQ(viewport.x, x);
    EXPECT_EQ(viewport.y, y);
    EXPECT_EQ(viewport.width, width);
    EXPECT_EQ(viewport.height, height);
}

TEST(Viewport, starts_empty) {
    expect_viewport(Viewport(), 0, 0, 0, 0);
}

TEST(Viewport, stores_all_four_unchecked) {
    Viewport viewport;
    viewport.set(-1, 2, 800, -600);
    expect_viewport(viewport, -1, 2, 800, -600);
}

TEST(Viewport, copies_are_independent) {
    Viewport viewport;
    viewport.set(1, 2, 3, 4);
    Viewport copy(viewport), assigned;
    assigned = viewport;
    viewport.set(5, 6, 7, 8);
    expect_viewport(copy, 1, 2, 3, 4);
    expect_viewport(assigned, 1, 2, 3, 4);
    EXPECT_TRUE(std::has_virtual_destructor_v<Viewport>);
}

} // namespace

} // namespace orvex_test
