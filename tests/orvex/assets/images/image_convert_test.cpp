#include <climits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orvex/renderer/records/image.h"

namespace orvex_test {

using namespace orvex;
namespace {

using Values = std::vector<float>;

bool is_u8(PIXEL_FORMAT format) {
    return format >= PF_RGB_U8 && format <= PF_BGRA_U8;
}

/// A row of pixels with the given channel values.
void make_image(Image& image, PIXEL_FORMAT format, const Values& channels) {
    image.pixel_format = format;
    const auto pixel_size = static_cast<unsigned long>(image.get_pixel_format_size());
    const unsigned long channel_size = is_u8(format) ? 1 : sizeof(float);
    ASSERT_TRUE(image.create(channels.size() * channel_size / pixel_size, 1, 1, format, false));
    for (unsigned long i = 0; i < channels.size(); ++i)
        if (is_u8(format))
            image.pixmap_u8[i] = static_cast<unsigned char>(channels[i]);
        else
            image.pixmap_f32[i] = channels[i];
}

Values channels_of(const Image& image) {
    const unsigned long bytes =
        image.width * image.height * static_cast<unsigned long>(image.get_pixel_format_size());
    if (is_u8(image.pixel_format))
        return {image.get_u8_ptr(), image.get_u8_ptr() + bytes};
    return {image.pixmap_f32, image.pixmap_f32 + bytes / sizeof(float)};
}

constexpr float third = static_cast<float>(51 / 255.0); // the byte 51 as a channel

struct Conversion {
    PIXEL_FORMAT from;
    PIXEL_FORMAT to;
    Values source;
    Values expected;
};

const Conversion conversions[] = {
    {PF_RGBA_U8, PF_RGB_U8, {1, 2, 3, 4, 5, 6, 7, 8}, {1, 2, 3, 5, 6, 7}},
    {PF_RGB_F32, PF_RGB_U8, {0.5f, 1, 0, 2, 0.999f, -1}, {127, 255, 0, 254, 254, 1}},
    {PF_RGBA_F32, PF_RGB_U8, {0.5f, 1, 0, 0.25f}, {127, 255, 0}},
    {PF_R_F32, PF_RGB_U8, {0.5f, 1}, {127, 0, 0, 255, 0, 0}},

    {PF_RGB_U8, PF_RGBA_U8, {1, 2, 3, 4, 5, 6}, {1, 2, 3, 255, 4, 5, 6, 255}},
    {PF_RGB_F32, PF_RGBA_U8, {0.5f, 1, 0}, {127, 255, 0, 255}},
    {PF_RGBA_F32, PF_RGBA_U8, {0.5f, 0.5f, 0.5f, 0.5f}, {127, 127, 127, 255}},
    {PF_R_F32, PF_RGBA_U8, {0.5f}, {127, 0, 0, 255}},

    {PF_RGB_U8, PF_RGB_F32, {0, 51, 255}, {0, third, 1}},
    {PF_RGBA_U8, PF_RGB_F32, {0, 51, 255, 9}, {0, third, 1}},
    {PF_RGBA_F32, PF_RGB_F32, {1, 2, 3, 4}, {1, 2, 3}},
    {PF_R_F32, PF_RGB_F32, {7}, {7, 0, 0}},

    {PF_RGB_U8, PF_RGBA_F32, {0, 51, 255}, {0, third, 1, 1}},
    {PF_RGBA_U8, PF_RGBA_F32, {0, 51, 255, 9}, {0, third, 1, 1}},
    {PF_RGB_F32, PF_RGBA_F32, {1, 2, 3}, {1, 2, 3, 1}},
    {PF_R_F32, PF_RGBA_F32, {7}, {7, 0, 0, 1}},

    {PF_RGB_U8, PF_R_F32, {51, 2, 3, 255, 0, 0}, {third, 1}},
    {PF_RGBA_U8, PF_R_F32, {51, 2, 3, 4}, {third}},
    {PF_RGB_F32, PF_R_F32, {7, 8, 9, 10, 11, 12}, {7, 10}},
    {PF_RGBA_F32, PF_R_F32, {7, 8, 9, 10}, {7}},
};

TEST(ImageConvert, copies_channels_by_position_between_all_layouts) {
    for (const Conversion& row : conversions) {
        SCOPED_TRACE(std::to_string(row.from) + " to " + std::to_string(row.to));
        Image image;
        make_image(image, row.from, row.source);
        EXPECT_TRUE(image.update_pixel_format(row.to));
        EXPECT_EQ(image.pixel_format, row.to);
        EXPECT_EQ(channels_of(image), row.expected);
        EXPECT_EQ(image.pixmap_u8 != nullptr, is_u8(row.to));
        EXPECT_EQ(image.pixmap_f32 != nullptr, !is_u8(row.to));
    }
}

TEST(ImageConvert, treats_the_two_orders_of_a_class_alike) {
    Image image;
    make_image(image, PF_BGR_U8, {1, 2, 3});
    EXPECT_TRUE(image.update_pixel_format(PF_BGRA_U8));
    EXPECT_EQ(image.pixel_format, PF_BGRA_U8);
    EXPECT_EQ(channels_of(image), (Values{1, 2, 3, 255}));
}

TEST(ImageConvert, within_a_class_only_the_format_field_changes) {
    const PIXEL_FORMAT rows[][2] = {{PF_RGB_U8, PF_BGR_U8},
                                    {PF_BGR_U8, PF_RGB_U8},
                                    {PF_RGBA_U8, PF_BGRA_U8},
                                    {PF_BGRA_U8, PF_RGBA_U8}};
    for (const auto& row : rows) {
        Image image;
        make_image(image, row[0], {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12});
        unsigned char* const pixels = image.pixmap_u8;
        EXPECT_TRUE(image.update_pixel_format(row[1]));
        EXPECT_EQ(image.pixel_format, row[1]);
        EXPECT_EQ(image.pixmap_u8, pixels);
        EXPECT_EQ(channels_of(image), (Values{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}));
    }
}

TEST(ImageConvert, to_the_present_format_is_true_at_once) {
    Image empty;
    EXPECT_TRUE(empty.update_pixel_format(PF_NONE));
    Image image;
    make_image(image, PF_RGBA_F32, {1, 2, 3, 4});
    float* const pixels = image.pixmap_f32;
    EXPECT_TRUE(image.update_pixel_format(PF_RGBA_F32));
    EXPECT_EQ(image.pixmap_f32, pixels);
}

TEST(ImageConvert, refuses_formats_it_does_not_handle) {
    for (const int value : {0, 8, 9, 10, 11, -1}) {
        Image image;
        make_image(image, PF_RGB_U8, {1, 2, 3});
        EXPECT_FALSE(image.update_pixel_format(static_cast<PIXEL_FORMAT>(value))) << value;
        EXPECT_EQ(image.pixel_format, PF_RGB_U8);
        EXPECT_EQ(channels_of(image), (Values{1, 2, 3}));
        image.pixel_format = static_cast<PIXEL_FORMAT>(value);
        EXPECT_FALSE(image.update_pixel_format(PF_RGBA_U8)) << value;
    }
}

TEST(ImageConvert, without_pixels_changes_nothing) {
    for (const PIXEL_FORMAT from : {PF_RGB_U8, PF_R_F32}) {
        for (const PIXEL_FORMAT to : {PF_BGR_U8, PF_RGBA_F32}) {
            Image image;
            image.width = image.height = 1;
            image.pixel_format = from;
            EXPECT_FALSE(image.update_pixel_format(to));
            EXPECT_EQ(image.pixel_format, from);
            EXPECT_EQ(image.get_u8_ptr(), nullptr);
            EXPECT_EQ(image.get_f32_ptr(), nullptr);
        }
    }
}

TEST(ImageConvert, with_too_few_pixels_changes_nothing) {
    Image image;
    make_image(image, PF_RGB_U8, {1, 2, 3});
    image.width = 2;
    EXPECT_FALSE(image.update_pixel_format(PF_RGBA_U8));
    image.width = image.height = ULONG_MAX;
    EXPECT_FALSE(image.update_pixel_format(PF_RGBA_U8));
    EXPECT_EQ(image.pixel_format, PF_RGB_U8);
}

TEST(ImageConvert, keeps_external_pixels_where_they_are) {
    unsigned char external[3] = {51, 255, 0};
    Image image;
    image.width = image.height = 1;
    image.pixel_format = PF_RGB_U8;
    image.pixmap_external = external;
    EXPECT_TRUE(image.update_pixel_format(PF_RGBA_F32));
    EXPECT_EQ(channels_of(image), (Values{third, 1, 0, 1}));
    EXPECT_EQ(image.get_u8_ptr(), external);
    EXPECT_TRUE(image.update_pixel_format(PF_RGBA_U8));
    EXPECT_EQ(channels_of(image), (Values{51, 255, 0, 255}));
    EXPECT_EQ(image.pixmap_external, external);
}

TEST(ImageConvert, knows_the_size_of_external_pixels_after_the_image_has_grown) {
    unsigned char external[3] = {51, 255, 0};
    Image image;
    image.width = image.height = 1;
    image.pixel_format = PF_RGB_U8;
    image.pixmap_external = external;
    ASSERT_TRUE(image.create(100, 100, 1, PF_RGB_U8, true));
    image.cleanup();
    EXPECT_EQ(image.get_u8_ptr(), external);
    EXPECT_FALSE(image.update_pixel_format(PF_RGBA_U8));
    EXPECT_FALSE(image.flip_vertical());
    EXPECT_FALSE(image.flip_horizontal());
}

TEST(ImageConvert, replaces_an_old_buffer_in_the_store_it_fills) {
    Image image;
    make_image(image, PF_RGB_U8, {9, 9, 9});
    make_image(image, PF_RGB_F32, {1, 0, 1});
    EXPECT_TRUE(image.update_pixel_format(PF_RGB_U8));
    EXPECT_EQ(channels_of(image), (Values{255, 0, 255}));
    EXPECT_EQ(image.pixmap_f32, nullptr);
}

TEST(ImageConvert, ignores_slices_beyond_the_first) {
    Image image;
    ASSERT_TRUE(image.create(1, 1, 2, PF_RGB_U8, true));
    EXPECT_TRUE(image.update_pixel_format(PF_RGBA_U8));
    EXPECT_EQ(image.depth, 2u);
    const Image copy(image);
    const std::vector<unsigned char> bytes(copy.pixmap_u8, copy.pixmap_u8 + 8);
    EXPECT_EQ(bytes, (std::vector<unsigned char>{0, 0, 0, 255, 0, 0, 0, 0}));
}

TEST(ImageConvert, brings_every_byte_through_floats_and_back) {
    Values all(258);
    for (unsigned long i = 0; i < all.size(); ++i)
        all[i] = static_cast<float>(i % 256);
    Image image;
    make_image(image, PF_RGB_U8, all);
    EXPECT_TRUE(image.update_pixel_format(PF_RGB_F32));
    EXPECT_TRUE(image.update_pixel_format(PF_RGB_U8));
    EXPECT_EQ(channels_of(image), all);
}

TEST(ImageConvert, gives_zero_for_floats_that_have_no_integer) {
    Image image;
    make_image(image, PF_RGB_F32, {__builtin_nanf(""), __builtin_inff(), -1e38f});
    EXPECT_TRUE(image.update_pixel_format(PF_RGB_U8));
    EXPECT_EQ(channels_of(image), (Values{0, 0, 0}));
}

} // namespace
} // namespace orvex_test
