#include "orvex_kit/compare.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace orvex_test {

namespace {

using namespace orvex::kit;

constexpr float nan_value = std::numeric_limits<float>::quiet_NaN();
constexpr float infinite = std::numeric_limits<float>::infinity();

Picture make(int width, int height, int channels, Sample sample) {
    Picture picture;
    EXPECT_TRUE(picture.create(width, height, channels, sample));
    return picture;
}

TEST(Comparison, of_equal_pictures_finds_nothing) {
    const Picture picture = make(4, 3, 3, Sample::u8);
    const Comparison found = compare(picture, picture);
    EXPECT_TRUE(found.is_equal);
    EXPECT_EQ(found.reason, "");
    EXPECT_EQ(found.differing, 0u);
    EXPECT_EQ(found.largest, 0.0);
    EXPECT_EQ(found.width, 0);
    EXPECT_EQ(found.height, 0);
    EXPECT_TRUE(compare(Picture(), Picture()).is_equal);
}

TEST(Comparison, counts_and_surrounds_what_differs) {
    const Picture a = make(10, 8, 4, Sample::u8);
    Picture b = a;
    b.row<std::uint8_t>(2)[6 * 4 + 1] = 5;
    b.row<std::uint8_t>(2)[6 * 4 + 2] = 3;
    b.row<std::uint8_t>(5)[3 * 4 + 3] = 255;
    const Comparison found = compare(a, b);
    EXPECT_FALSE(found.is_equal);
    EXPECT_EQ(found.differing, 2u);
    EXPECT_EQ(found.largest, 255.0);
    EXPECT_EQ(found.left, 3);
    EXPECT_EQ(found.top, 2);
    EXPECT_EQ(found.width, 4);
    EXPECT_EQ(found.height, 4);
    EXPECT_EQ(found.reason, "2 of 80 pixels differ, by up to 255, within 4x4 at 3,2");
    b = a;
    b.row<std::uint8_t>(0)[0] = 1;
    EXPECT_EQ(compare(b, a).reason, "1 of 80 pixels differs, by up to 1, within 1x1 at 0,0");
}

TEST(Comparison, lets_samples_differ_up_to_a_limit) {
    const Picture a = make(2, 1, 1, Sample::u8);
    Picture b = a;
    b.row<std::uint8_t>(0)[0] = 3;
    b.row<std::uint8_t>(0)[1] = 4;
    EXPECT_TRUE(compare(a, b, {4.0}).is_equal);
    EXPECT_EQ(compare(a, b, {4.0}).largest, 4.0);
    EXPECT_EQ(compare(a, b, {3.0}).differing, 1u);
    EXPECT_EQ(compare(a, b, {3.0}).left, 1);
    EXPECT_FALSE(compare(a, b, {3.999}).is_equal);
}

TEST(Comparison, lets_a_share_of_pixels_differ) {
    const Picture a = make(4, 1, 1, Sample::u16);
    Picture b = a;
    b.row<std::uint16_t>(0)[2] = 65535;
    EXPECT_TRUE(compare(a, b, {0.0, 0.25}).is_equal);
    EXPECT_EQ(compare(a, b, {0.0, 0.25}).reason, "");
    EXPECT_EQ(compare(a, b, {0.0, 0.25}).differing, 1u);
    EXPECT_FALSE(compare(a, b, {0.0, 0.24}).is_equal);
}

TEST(Comparison, takes_limits_without_a_meaning_as_none) {
    const Picture a = make(1, 1, 1, Sample::u8);
    Picture b = a;
    EXPECT_TRUE(compare(a, b, {-1.0, -1.0}).is_equal);
    b.row<std::uint8_t>(0)[0] = 1;
    EXPECT_FALSE(compare(a, b, {-1.0, -1.0}).is_equal);
    EXPECT_FALSE(
        compare(a, b, {static_cast<double>(nan_value), static_cast<double>(nan_value)}).is_equal);
}

TEST(Comparison, of_floats_knows_nan_and_the_infinities) {
    const struct {
        float a, b;
        double difference;
    } rows[] = {
        {nan_value, nan_value, 0.0},     {infinite, infinite, 0.0},
        {-infinite, -infinite, 0.0},     {0.0f, -0.0f, 0.0},
        {nan_value, 1.0f, HUGE_VAL},     {1.0f, nan_value, HUGE_VAL},
        {nan_value, infinite, HUGE_VAL}, {infinite, -infinite, HUGE_VAL},
        {infinite, 1.0f, HUGE_VAL},      {1.5f, 1.0f, 0.5},
        {3.4e38f, -3.4e38f, 2 * 3.4e38},
    };
    for (const auto& row : rows) {
        Picture a = make(1, 1, 1, Sample::f32), b = a;
        a.row<float>(0)[0] = row.a;
        b.row<float>(0)[0] = row.b;
        if (row.difference > 1e38 && row.difference < HUGE_VAL)
            EXPECT_NEAR(compare(a, b).largest / row.difference, 1.0, 1e-6);
        else
            EXPECT_EQ(compare(a, b).largest, row.difference) << row.a << " " << row.b;
        EXPECT_EQ(compare(a, b).is_equal, row.difference == 0.0) << row.a << " " << row.b;
    }
}

TEST(Comparison, of_integers_doesnt_overflow) {
    Picture a = make(1, 1, 1, Sample::i32), b = a;
    a.row<std::int32_t>(0)[0] = std::numeric_limits<std::int32_t>::max();
    b.row<std::int32_t>(0)[0] = std::numeric_limits<std::int32_t>::min();
    EXPECT_EQ(compare(a, b).largest, 4294967295.0);
    EXPECT_EQ(compare(a, b).reason,
              "1 of 1 pixels differs, by up to 4294967295, within 1x1 at 0,0");
}

TEST(Comparison, tells_that_sizes_or_kinds_differ) {
    const Comparison found = compare(make(4, 3, 4, Sample::u8), make(3, 4, 1, Sample::f32));
    EXPECT_FALSE(found.is_equal);
    EXPECT_EQ(found.reason, "the pictures have 4x3 pixels, 4 channels, 8-bit and 3x4 pixels, 1 "
                            "channel, float");
    EXPECT_EQ(compare(Picture(), make(1, 1, 1, Sample::u8)).reason,
              "the pictures have no pixels and 1x1 pixels, 1 channel, 8-bit");
}

TEST(DifferencePicture, is_bright_where_pictures_differ) {
    const Picture a = make(4, 1, 3, Sample::f32);
    Picture b = a, shown;
    b.row<float>(0)[3] = 1.0f;
    b.row<float>(0)[7] = 2.0f;
    b.row<float>(0)[11] = nan_value;
    ASSERT_TRUE(show_difference(a, b, shown));
    EXPECT_EQ(shown.channels(), 1);
    EXPECT_EQ(shown.sample(), Sample::u8);
    const std::uint8_t* const row = shown.row<std::uint8_t>(0);
    EXPECT_EQ(row[0], 0);
    EXPECT_EQ(row[1], 160); // half of 64 to 255
    EXPECT_EQ(row[2], 255);
    EXPECT_EQ(row[3], 255);
    ASSERT_TRUE(show_difference(a, b, shown, {1.0}));
    EXPECT_EQ(shown.row<std::uint8_t>(0)[1], 0);
}

TEST(DifferencePicture, takes_the_place_of_one_of_the_two) {
    const Picture a = make(1, 1, 4, Sample::u8);
    Picture b = a;
    b.row<std::uint8_t>(0)[0] = 1;
    ASSERT_TRUE(show_difference(a, b, b));
    EXPECT_EQ(b.channels(), 1);
    EXPECT_EQ(b.row<std::uint8_t>(0)[0], 255);
}

TEST(DifferencePicture, isnt_made_of_what_cant_be_compared) {
    Picture shown = make(2, 2, 1, Sample::u8);
    EXPECT_EQ(
        show_difference(make(1, 1, 1, Sample::u8), make(1, 1, 1, Sample::u16), shown).reason(),
        "the pictures have 1x1 pixels, 1 channel, 8-bit and 1x1 pixels, 1 channel, 16-bit");
    EXPECT_FALSE(show_difference(Picture(), Picture(), shown));
    EXPECT_EQ(shown.width(), 2);
}

} // namespace

} // namespace orvex_test
