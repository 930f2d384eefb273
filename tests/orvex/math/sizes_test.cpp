#include "orvex/math/private/sizes.h"

#include <gtest/gtest.h>

namespace orvex_test {
namespace {

using namespace orvex;

TEST(Sizes, products_and_sums_that_fit_are_exact) {
    EXPECT_EQ(saturating_product(6, 7), 42u);
    EXPECT_EQ(saturating_product(2, 3, 7), 42u);
    EXPECT_EQ(saturating_product(largest_size, 1), largest_size);
    EXPECT_EQ(saturating_sum(40, 2), 42u);
    EXPECT_EQ(saturating_sum(largest_size, 0), largest_size);
}

TEST(Sizes, what_does_not_fit_becomes_the_largest) {
    EXPECT_EQ(saturating_product(largest_size, 2), largest_size);
    EXPECT_EQ(saturating_product(1ul << 32, 1ul << 32), largest_size);
    EXPECT_EQ(saturating_product(1ul << 22, 1ul << 22, 1ul << 22), largest_size);
    EXPECT_EQ(saturating_sum(largest_size, 1), largest_size);
    EXPECT_EQ(saturating_sum(largest_size - 1, 2), largest_size);
}

TEST(Sizes, nothing_times_anything_is_nothing) {
    EXPECT_EQ(saturating_product(0, largest_size), 0u);
    EXPECT_EQ(saturating_product(0, largest_size, largest_size), 0u);
}

} // namespace
} // namespace orvex_test
