#include "values.h"

#include <gtest/gtest.h>

namespace orvex_test {

namespace {

TEST(Values, read_whole_numbers_whole) {
    EXPECT_EQ(whole_number_in("0", 0, 9), 0);
    EXPECT_EQ(whole_number_in("-7", -9, 9), -7);
    EXPECT_EQ(whole_number_in("9", 0, 9), 9);
    for (const char* word :
         {"", " 1", "1 ", "+1", "1.0", "0x1", "one", "10", "-1", "99999999999999999999"})
        EXPECT_FALSE(whole_number_in(word, 0, 9)) << word;
}

TEST(Values, read_numbers_whole) {
    EXPECT_EQ(number_in("1.5", 0.0f, 9.0f), 1.5f);
    EXPECT_EQ(number_in("-2", -9.0f, 9.0f), -2.0f);
    EXPECT_EQ(number_in("5e-1", 0.0f, 9.0f), 0.5f);
    for (const char* word : {"", "nan", "inf", "1e99", "1.5x", "1,5", "-0.1", "9.1"})
        EXPECT_FALSE(number_in(word, 0.0f, 9.0f)) << word;
}

TEST(Values, read_sizes) {
    const std::optional<Size> size = size_in("16384x1");
    ASSERT_TRUE(size.has_value());
    EXPECT_EQ(size->width, 16384);
    EXPECT_EQ(size->height, 1);
    for (const char* word : {"", "4", "x", "4x", "x4", "0x4", "4x0", "-4x5", "4x5x6", "16385x5",
                             "5x16385", "4X5", "4 x 5"})
        EXPECT_FALSE(size_in(word)) << word;
}

TEST(Values, read_colors) {
    struct Row {
        const char* word;
        int r, g, b;
    };
    for (const Row& row :
         {Row{"#123456", 0x12, 0x34, 0x56}, Row{"#aBC", 0xaa, 0xbb, 0xcc}, Row{"black", 0, 0, 0},
          Row{"white", 255, 255, 255}, Row{"gray", 128, 128, 128}, Row{"red", 255, 0, 0},
          Row{"green", 0, 128, 0}, Row{"blue", 0, 0, 255}, Row{"yellow", 255, 255, 0},
          Row{"cyan", 0, 255, 255}, Row{"magenta", 255, 0, 255}, Row{"orange", 255, 165, 0}}) {
        const std::optional<Color> color = color_in(row.word);
        ASSERT_TRUE(color.has_value()) << row.word;
        EXPECT_EQ(color->r, static_cast<float>(row.r) / 255.0f) << row.word;
        EXPECT_EQ(color->g, static_cast<float>(row.g) / 255.0f) << row.word;
        EXPECT_EQ(color->b, static_cast<float>(row.b) / 255.0f) << row.word;
    }
    for (const char* word : {"", "#", "#12", "#1234", "#12345", "#1234567", "#12345g", "#-12345",
                             "#+12", "123456", "Black", "blackish"})
        EXPECT_FALSE(color_in(word)) << word;
}

} // namespace

} // namespace orvex_test
