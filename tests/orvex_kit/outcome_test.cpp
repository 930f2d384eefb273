#include "orvex_kit/outcome.h"

#include <gtest/gtest.h>

namespace orvex_test {

namespace {

using orvex::kit::Outcome;

TEST(Outcome, is_true_when_all_went_well) {
    EXPECT_TRUE(Outcome());
    EXPECT_TRUE(Outcome::success());
    EXPECT_EQ(Outcome::success().reason(), "");
}

TEST(Outcome, is_false_with_its_reason) {
    const Outcome outcome = Outcome::failure("can't write a.png: no room");
    EXPECT_FALSE(outcome);
    EXPECT_EQ(outcome.reason(), "can't write a.png: no room");
}

TEST(Outcome, is_false_without_a_reason_too) {
    EXPECT_FALSE(Outcome::failure(""));
    EXPECT_EQ(Outcome::failure("").reason(), "it failed, and nobody said why");
}

} // namespace

} // namespace orvex_test
