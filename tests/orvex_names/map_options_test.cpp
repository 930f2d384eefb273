#include <cstddef>
#include <string>

#include <gtest/gtest.h>

#include <orvex_names/map_options.h>

namespace orvex_test {

namespace {

using orvex::names::MapOption;
using orvex::names::take_map_option;

/// An option as it was understood, and what is left behind it.
std::string told(std::string_view text) {
    MapOption option;
    if (!take_map_option(text, option))
        return "none|" + std::string(text);
    std::string sentence(option.word);
    for (int i = 0; i < option.num_numbers; ++i)
        sentence += " " + std::to_string(option.numbers[static_cast<std::size_t>(i)]);
    return sentence + (option.is_on ? " on|" : "|") + std::string(text);
}

TEST(MapOptionsTest, an_option_takes_its_values) {
    EXPECT_EQ(told("-s 2 3 4 wall.png"), "-s 2.000000 3.000000 4.000000|wall.png");
    EXPECT_EQ(told("-bm .5 wall.png"), "-bm 0.500000|wall.png");
    EXPECT_EQ(told("-clamp on wall.png"), "-clamp on|wall.png");
    EXPECT_EQ(told("-clamp off wall.png"), "-clamp|wall.png");
    EXPECT_EQ(told("-mm 0 1\t a b.png "), "-mm 0.000000 1.000000|a b.png");
    EXPECT_EQ(told("-type sphere wall.png"), "-type|wall.png");
    EXPECT_EQ(told("  -o +1 wall.png"), "-o 1.000000|wall.png");
}

TEST(MapOptionsTest, a_name_is_left_behind_the_values) {
    EXPECT_EQ(told("-o 1 2 3"), "-o 1.000000 2.000000|3");
    EXPECT_EQ(told("-bm 0.5"), "-bm|0.5");
    EXPECT_EQ(told("-s 1 2x"), "-s 1.000000|2x");
    EXPECT_EQ(told("-s"), "-s|");
}

TEST(MapOptionsTest, numbers_are_finite_and_whole_words) {
    EXPECT_EQ(told("-s 1e999 2 wall.png"), "-s|wall.png");
    EXPECT_EQ(told("-s nan inf wall.png"), "-s|inf wall.png");
    EXPECT_EQ(told("-s 1e-60 wall.png"), "-s 0.000000|wall.png");
    EXPECT_EQ(told("-s 1,5 wall.png"), "-s|wall.png");
    EXPECT_EQ(told("-s +-1 wall.png"), "-s|wall.png");
    EXPECT_EQ(told("-o 1 0x2 wall.png"), "-o 1.000000|0x2 wall.png");
}

TEST(MapOptionsTest, what_is_no_option_stays_as_it_was) {
    EXPECT_EQ(told("wall.png"), "none|wall.png");
    EXPECT_EQ(told(" -x 2 wall.png "), "none| -x 2 wall.png ");
    EXPECT_EQ(told("-S 2 wall.png"), "none|-S 2 wall.png");
    EXPECT_EQ(told(""), "none|");
    EXPECT_EQ(told("  "), "none|  ");
}

} // namespace

} // namespace orvex_test
