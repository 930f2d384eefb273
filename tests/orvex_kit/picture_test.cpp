#include "orvex_kit/picture.h"

#include <cmath>
#include <limits>
#include <utility>

#include <gtest/gtest.h>

namespace orvex_test {

namespace {

using namespace orvex::kit;

constexpr float nan_value = std::numeric_limits<float>::quiet_NaN();

Picture make(int width, int height, int channels, Sample sample) {
    Picture picture;
    EXPECT_TRUE(picture.create(width, height, channels, sample));
    return picture;
}

TEST(Samples, have_sizes_and_names) {
    EXPECT_EQ(size_of(Sample::u8), 1u);
    EXPECT_EQ(size_of(Sample::u16), 2u);
    EXPECT_EQ(size_of(Sample::f32), 4u);
    EXPECT_EQ(size_of(Sample::i32), 4u);
    EXPECT_EQ(size_of(static_cast<Sample>(9)), 0u);
    EXPECT_STREQ(name_of(Sample::u8), "8-bit");
    EXPECT_STREQ(name_of(Sample::u16), "16-bit");
    EXPECT_STREQ(name_of(Sample::f32), "float");
    EXPECT_STREQ(name_of(Sample::i32), "32-bit integer");
    EXPECT_STREQ(name_of(static_cast<Sample>(9)), "unknown");
}

TEST(Picture, is_empty_at_first) {
    const Picture picture;
    EXPECT_TRUE(picture.is_empty());
    EXPECT_EQ(picture.width(), 0);
    EXPECT_EQ(picture.height(), 0);
    EXPECT_EQ(picture.channels(), 0);
    EXPECT_EQ(picture.row_bytes(), 0u);
    EXPECT_EQ(picture.size_bytes(), 0u);
    EXPECT_EQ(picture.data(), nullptr);
    EXPECT_EQ(picture.row_data(0), nullptr);
    EXPECT_EQ(picture.row<std::uint8_t>(0), nullptr);
}

TEST(Picture, has_zeros_in_tight_rows) {
    Picture picture = make(3, 2, 4, Sample::u16);
    EXPECT_EQ(picture.width(), 3);
    EXPECT_EQ(picture.height(), 2);
    EXPECT_EQ(picture.channels(), 4);
    EXPECT_EQ(picture.sample(), Sample::u16);
    EXPECT_EQ(picture.row_bytes(), 24u);
    EXPECT_EQ(picture.size_bytes(), 48u);
    EXPECT_EQ(picture.row_data(1), picture.row_data(0) + 24);
    EXPECT_EQ(picture.data(), picture.row_data(0));
    for (int i = 0; i < 24; ++i)
        EXPECT_EQ(picture.row<std::uint16_t>(0)[i], 0);
}

TEST(Picture, has_rows_of_its_own_type_alone) {
    Picture picture = make(2, 2, 1, Sample::f32);
    ASSERT_NE(picture.row<float>(1), nullptr);
    picture.row<float>(1)[1] = 0.5f;
    EXPECT_EQ(std::as_const(picture).row<float>(1)[1], 0.5f);
    EXPECT_EQ(picture.row<std::uint8_t>(1), nullptr);
    EXPECT_EQ(picture.row<std::uint16_t>(1), nullptr);
    EXPECT_EQ(picture.row<std::int32_t>(1), nullptr);
    EXPECT_EQ(picture.row<float>(-1), nullptr);
    EXPECT_EQ(picture.row<float>(2), nullptr);
    EXPECT_EQ(picture.row_data(-1), nullptr);
    EXPECT_EQ(std::as_const(picture).row_data(2), nullptr);
}

TEST(Picture, tells_which_size_or_kind_there_isnt_and_stays) {
    Picture picture = make(2, 1, 1, Sample::u8);
    picture.row<std::uint8_t>(0)[1] = 7;
    const struct {
        int width, height, channels;
        Sample sample;
        const char* reason;
    } rows[] = {
        {0, 1, 1, Sample::u8, "a picture of 0x1 pixels: sides go from 1 to 65535"},
        {1, -1, 1, Sample::u8, "a picture of 1x-1 pixels: sides go from 1 to 65535"},
        {65536, 1, 1, Sample::u8, "a picture of 65536x1 pixels: sides go from 1 to 65535"},
        {1, 2147483647, 1, Sample::u8,
         "a picture of 1x2147483647 pixels: sides go from 1 to 65535"},
        {1, 1, 0, Sample::u8, "a picture of 0 channels: there are 1 to 4"},
        {1, 1, 5, Sample::u8, "a picture of 5 channels: there are 1 to 4"},
        {1, 1, 1, static_cast<Sample>(9), "a picture of samples of an unknown kind"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(picture.create(row.width, row.height, row.channels, row.sample).reason(),
                  row.reason);
    EXPECT_EQ(picture.width(), 2);
    EXPECT_EQ(picture.row<std::uint8_t>(0)[1], 7);
}

TEST(Picture, may_be_as_long_as_told) {
    EXPECT_EQ(make(Picture::max_side, 1, 1, Sample::u8).size_bytes(), 65535u);
    EXPECT_EQ(make(1, Picture::max_side, 4, Sample::i32).size_bytes(), 65535u * 16);
}

TEST(Picture, is_copied_with_its_pixels) {
    Picture picture = make(2, 2, 1, Sample::u8);
    picture.row<std::uint8_t>(1)[1] = 7;
    Picture copy(picture);
    picture.row<std::uint8_t>(1)[1] = 8;
    EXPECT_EQ(copy.row<std::uint8_t>(1)[1], 7);
    Picture assigned = make(5, 5, 4, Sample::f32);
    assigned = copy;
    EXPECT_EQ(assigned, copy);
    Picture told;
    EXPECT_TRUE(told.copy_from(copy));
    EXPECT_EQ(told, copy);
    EXPECT_TRUE(told.copy_from(Picture()));
    EXPECT_TRUE(told.is_empty());
}

TEST(Picture, survives_its_assignment_to_itself) {
    Picture picture = make(2, 2, 1, Sample::u8);
    picture.row<std::uint8_t>(1)[1] = 7;
    Picture& same = picture;
    picture = same;
    EXPECT_EQ(picture.row<std::uint8_t>(1)[1], 7);
    picture = std::move(same);
    EXPECT_EQ(picture.row<std::uint8_t>(1)[1], 7);
    EXPECT_TRUE(picture.copy_from(same));
    EXPECT_EQ(picture.row<std::uint8_t>(1)[1], 7);
}

TEST(Picture, leaves_an_empty_one_where_it_is_moved_from) {
    Picture picture = make(2, 2, 3, Sample::f32);
    const void* const pixels = picture.data();
    const Picture moved(std::move(picture));
    EXPECT_EQ(moved.data(), pixels);
    EXPECT_EQ(moved.channels(), 3);
    EXPECT_TRUE(picture.is_empty()); // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(picture.width(), 0);
    EXPECT_EQ(picture.sample(), Sample::u8);
}

TEST(Picture, is_cleared) {
    Picture picture = make(2, 2, 3, Sample::f32);
    picture.clear();
    EXPECT_TRUE(picture.is_empty());
    EXPECT_EQ(picture, Picture());
}

TEST(Picture, gives_its_first_channels) {
    Picture picture = make(2, 1, 4, Sample::u8);
    for (int i = 0; i < 8; ++i)
        picture.row<std::uint8_t>(0)[i] = static_cast<std::uint8_t>(i);
    Picture colors;
    ASSERT_TRUE(colors.take_channels(picture, 3));
    EXPECT_EQ(colors.channels(), 3);
    EXPECT_EQ(colors.row<std::uint8_t>(0)[0], 0);
    EXPECT_EQ(colors.row<std::uint8_t>(0)[3], 4);
    EXPECT_EQ(colors.row<std::uint8_t>(0)[5], 6);
}

TEST(Picture, gets_a_full_alpha_with_the_channels_that_it_lacks) {
    Picture floats = make(1, 1, 1, Sample::f32);
    floats.row<float>(0)[0] = 0.25f;
    ASSERT_TRUE(floats.take_channels(floats, 4));
    const float* const pixel = floats.row<float>(0);
    EXPECT_EQ(pixel[0], 0.25f);
    EXPECT_EQ(pixel[1], 0.0f);
    EXPECT_EQ(pixel[2], 0.0f);
    EXPECT_EQ(pixel[3], 1.0f);
    Picture wide;
    ASSERT_TRUE(wide.take_channels(make(1, 1, 1, Sample::u16), 2));
    EXPECT_EQ(wide.row<std::uint16_t>(0)[1], 65535);
    ASSERT_TRUE(wide.take_channels(make(1, 1, 1, Sample::i32), 2));
    EXPECT_EQ(wide.row<std::int32_t>(0)[1], std::numeric_limits<std::int32_t>::max());
}

TEST(Picture, tells_which_channels_there_arent) {
    Picture picture = make(1, 1, 1, Sample::u8);
    EXPECT_EQ(picture.take_channels(Picture(), 1).reason(), "channels of an empty picture");
    EXPECT_EQ(picture.take_channels(picture, 5).reason(),
              "a picture of 5 channels: there are 1 to 4");
    EXPECT_EQ(picture.channels(), 1);
}

TEST(Picture, equals_what_has_the_same_samples) {
    Picture a = make(2, 1, 1, Sample::f32), b = a;
    EXPECT_EQ(a, b);
    a.row<float>(0)[0] = nan_value;
    EXPECT_NE(a, b);
    b.row<float>(0)[0] = -nan_value;
    EXPECT_EQ(a, b);
    b.row<float>(0)[1] = -0.0f;
    EXPECT_EQ(a, b);
    EXPECT_NE(a, Picture());
    EXPECT_NE(make(2, 1, 1, Sample::f32), make(1, 2, 1, Sample::f32));
    EXPECT_NE(make(2, 1, 1, Sample::f32), make(2, 1, 1, Sample::i32));
    EXPECT_NE(make(2, 1, 2, Sample::u8), make(2, 1, 1, Sample::u8));
    Picture ids = make(1, 1, 1, Sample::i32);
    ids.row<std::int32_t>(0)[0] = std::numeric_limits<std::int32_t>::min();
    EXPECT_NE(ids, make(1, 1, 1, Sample::i32));
    EXPECT_EQ(Picture(), Picture());
}

} // namespace

} // namespace orvex_test
