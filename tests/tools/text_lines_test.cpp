#include <gtest/gtest.h>

#include "text_overlay.h"

namespace orvex_test {

namespace {

using Lines = std::vector<std::string>;

TEST(TextLines, end_at_line_feeds_and_at_their_escapes) {
    EXPECT_EQ(lines_of("one"), Lines{"one"});
    EXPECT_EQ(lines_of("a\\nb\nc"), (Lines{"a", "b", "c"}));
    EXPECT_EQ(lines_of("\\n"), (Lines{"", ""}));
    EXPECT_EQ(lines_of("a\\"), Lines{"a\\"});
    EXPECT_EQ(lines_of("a\\tb"), Lines{"a\\tb"});
    EXPECT_EQ(lines_of(""), Lines{""});
}

TEST(TextPlaces, have_names) {
    const std::optional<TextPlace> right = text_place_of("bottom-right");
    ASSERT_TRUE(right.has_value());
    EXPECT_EQ(right->across, 1.0f);
    EXPECT_EQ(right->down, 1.0f);
    const std::optional<TextPlace> center = text_place_of("center");
    ASSERT_TRUE(center.has_value());
    EXPECT_EQ(center->across, 0.5f);
    EXPECT_EQ(center->down, 0.5f);
    EXPECT_FALSE(text_place_of(""));
    EXPECT_FALSE(text_place_of("Top"));
}

} // namespace

} // namespace orvex_test
