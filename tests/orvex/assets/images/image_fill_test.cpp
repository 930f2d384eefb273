#include <algorithm>
#include <climits>
#include <cstdlib>
#include <vector>

#include <gtest/gtest.h>

#include "orvex/math/math.h"
#include "orvex/math/vec3.h"
#include "orvex/math/vec3u8.h"
#include "orvex/math/vec4.h"
#include "orvex/math/vec4u8.h"
#include "orvex/renderer/records/image.h"

namespace orvex_test {

using namespace orvex;
namespace {

using Bytes = std::vector<unsigned char>;
using Floats = std::vector<float>;

const PIXEL_FORMAT flippable[] = {PF_RGB_U8,  PF_BGR_U8,  PF_RGBA_U8,
                                  PF_BGRA_U8, PF_RGB_F32, PF_RGBA_F32};

bool is_u8(PIXEL_FORMAT format) {
    return format <= PF_BGRA_U8;
}

unsigned long channels(const Image& image) {
    const auto size = static_cast<unsigned long>(image.get_pixel_format_size());
    return is_u8(image.pixel_format) ? size : size / sizeof(float);
}

/// Numbers every channel of an image.
void number_channels(Image& image) {
    const unsigned long count = image.width * image.height * channels(image);
    for (unsigned long i = 0; i < count; ++i)
        if (is_u8(image.pixel_format))
            image.pixmap_u8[i] = static_cast<unsigned char>(i);
        else
            image.pixmap_f32[i] = static_cast<float>(i);
}

/// The first channel of every pixel, as the number of the pixel that stood there before.
std::vector<unsigned long> pixel_order(const Image& image) {
    std::vector<unsigned long> order;
    const unsigned long stride = channels(image);
    for (unsigned long i = 0; i < image.width * image.height; ++i) {
        const float first =
            is_u8(image.pixel_format) ? image.pixmap_u8[i * stride] : image.pixmap_f32[i * stride];
        const float last = is_u8(image.pixel_format) ? image.pixmap_u8[(i + 1) * stride - 1]
                                                     : image.pixmap_f32[(i + 1) * stride - 1];
        EXPECT_EQ(last - first, static_cast<float>(stride - 1));
        order.push_back(static_cast<unsigned long>(first) / stride);
    }
    return order;
}

using Order = std::vector<unsigned long>;

TEST(ImageFlip, turns_rows_upside_down_in_every_format) {
    for (const PIXEL_FORMAT format : flippable) {
        SCOPED_TRACE(format);
        Image image;
        image.create(2, 3, 1, format, true);
        number_channels(image);
        EXPECT_TRUE(image.flip_vertical());
        EXPECT_EQ(pixel_order(image), (Order{4, 5, 2, 3, 0, 1}));
        EXPECT_EQ(image.pixel_format, format);
    }
}

TEST(ImageFlip, mirrors_columns_in_every_format) {
    for (const PIXEL_FORMAT format : flippable) {
        SCOPED_TRACE(format);
        Image image;
        image.create(3, 2, 1, format, true);
        number_channels(image);
        EXPECT_TRUE(image.flip_horizontal());
        EXPECT_EQ(pixel_order(image), (Order{2, 1, 0, 5, 4, 3}));
    }
}

TEST(ImageFlip, exchanges_even_rows_and_columns_in_pairs) {
    Image image;
    image.create(2, 2, 1, PF_RGB_U8, true);
    number_channels(image);
    EXPECT_TRUE(image.flip_vertical());
    EXPECT_EQ(pixel_order(image), (Order{2, 3, 0, 1}));
    EXPECT_TRUE(image.flip_horizontal());
    EXPECT_EQ(pixel_order(image), (Order{3, 2, 1, 0}));
}

TEST(ImageFlip, of_a_single_row_or_column_changes_nothing) {
    Image row;
    row.create(3, 1, 1, PF_RGB_U8, true);
    number_channels(row);
    EXPECT_TRUE(row.flip_vertical());
    EXPECT_EQ(pixel_order(row), (Order{0, 1, 2}));

    Image column;
    column.create(1, 3, 1, PF_RGBA_F32, true);
    number_channels(column);
    EXPECT_TRUE(column.flip_horizontal());
    EXPECT_EQ(pixel_order(column), (Order{0, 1, 2}));
}

TEST(ImageFlip, refuses_other_formats) {
    for (const int value : {0, 7, 8, 9, 10, 11, -1}) {
        Image image;
        image.create(2, 2, 1, PF_R_F32, true);
        image.pixel_format = static_cast<PIXEL_FORMAT>(value);
        EXPECT_FALSE(image.flip_vertical()) << value;
        EXPECT_FALSE(image.flip_horizontal()) << value;
    }
}

using Flip = bool (Image::*)();

const Flip layout_flips[] = {
    &Image::_flip_vertical_rgb_u8,    &Image::_flip_vertical_rgba_u8,
    &Image::_flip_vertical_rgb_f32,   &Image::_flip_vertical_rgba_f32,
    &Image::_flip_horizontal_rgb_u8,  &Image::_flip_horizontal_rgba_u8,
    &Image::_flip_horizontal_rgb_f32, &Image::_flip_horizontal_rgba_f32,
};

TEST(ImageFlip, needs_the_owned_buffer_of_its_layout) {
    for (const Flip flip : layout_flips) {
        Image image;
        image.width = image.height = 2;
        EXPECT_FALSE((image.*flip)());
    }
}

TEST(ImageFlip, of_a_layout_larger_than_the_buffer_writes_nothing) {
    Image image;
    image.create(2, 2, 1, PF_RGB_U8, true);
    image.create(2, 2, 1, PF_RGB_F32, true);
    EXPECT_TRUE(image._flip_vertical_rgb_u8());
    EXPECT_FALSE(image._flip_vertical_rgba_u8());
    EXPECT_FALSE(image._flip_horizontal_rgba_u8());
    EXPECT_TRUE(image._flip_horizontal_rgb_f32());
    EXPECT_FALSE(image._flip_vertical_rgba_f32());
    EXPECT_FALSE(image._flip_horizontal_rgba_f32());
    image.width = image.height = ULONG_MAX;
    for (const Flip flip : layout_flips)
        EXPECT_FALSE((image.*flip)());
}

TEST(ImageFlip, of_external_rgb_pixels_works_on_a_copy) {
    for (const PIXEL_FORMAT format : {PF_RGB_U8, PF_BGR_U8}) {
        unsigned char external[6] = {0, 1, 2, 3, 4, 5};
        Image image;
        image.width = 2;
        image.height = 1;
        image.pixel_format = format;
        image.pixmap_external = external;
        EXPECT_TRUE(image.flip_horizontal());
        ASSERT_NE(image.pixmap_u8, nullptr);
        EXPECT_EQ(Bytes(image.pixmap_u8, image.pixmap_u8 + 6), (Bytes{3, 4, 5, 0, 1, 2}));
        EXPECT_EQ(Bytes(external, external + 6), (Bytes{0, 1, 2, 3, 4, 5}));
        EXPECT_EQ(image.pixmap_external, external);
        EXPECT_EQ(image.pixel_format, PF_RGB_U8);
        EXPECT_EQ(image.depth, 1u);
        EXPECT_EQ(image.get_u8_ptr(), image.pixmap_u8);
    }
}

TEST(ImageFlip, of_external_rgb_pixels_turns_the_copy_upside_down) {
    unsigned char external[6] = {0, 1, 2, 3, 4, 5};
    Image image;
    image.width = 1;
    image.height = 2;
    image.pixel_format = PF_RGB_U8;
    image.pixmap_external = external;
    EXPECT_TRUE(image.flip_vertical());
    EXPECT_EQ(Bytes(image.pixmap_u8, image.pixmap_u8 + 6), (Bytes{3, 4, 5, 0, 1, 2}));
}

TEST(ImageFlip, of_external_rgba_pixels_fails) {
    unsigned char external[8] = {};
    Image image;
    image.width = 2;
    image.height = 1;
    image.pixel_format = PF_RGBA_U8;
    image.pixmap_external = external;
    EXPECT_FALSE(image.flip_horizontal());
    EXPECT_FALSE(image.flip_vertical());
    EXPECT_EQ(image.pixmap_u8, nullptr);
}

// -------------------------------------------------------------------------------- fill and copy

TEST(ImageFill, writes_one_colour_to_every_pixel_of_the_layout) {
    Image image;
    image.create(2, 1, 1, PF_RGB_U8, true);
    EXPECT_TRUE(image.fill_color_rgb_u8(1, 2, 3));
    EXPECT_EQ(Bytes(image.pixmap_u8, image.pixmap_u8 + 6), (Bytes{1, 2, 3, 1, 2, 3}));

    image.create(2, 1, 1, PF_RGBA_U8, true);
    EXPECT_TRUE(image.fill_color_rgba_u8(1, 2, 3, 4));
    EXPECT_EQ(Bytes(image.pixmap_u8, image.pixmap_u8 + 8), (Bytes{1, 2, 3, 4, 1, 2, 3, 4}));

    image.create(2, 1, 1, PF_RGB_F32, true);
    EXPECT_TRUE(image.fill_color_rgb_f32(1, 2, 3));
    EXPECT_EQ(Floats(image.pixmap_f32, image.pixmap_f32 + 6), (Floats{1, 2, 3, 1, 2, 3}));

    image.create(2, 1, 1, PF_RGBA_F32, true);
    EXPECT_TRUE(image.fill_color_rgba_f32(1, 2, 3, 4));
    EXPECT_EQ(Floats(image.pixmap_f32, image.pixmap_f32 + 8), (Floats{1, 2, 3, 4, 1, 2, 3, 4}));
}

TEST(ImageFill, looks_at_neither_format_nor_depth) {
    Image image;
    image.create(1, 1, 2, PF_RGBA_U8, true);
    EXPECT_TRUE(image.fill_color_rgb_u8(7, 8, 9));
    EXPECT_EQ(Bytes(image.pixmap_u8, image.pixmap_u8 + 8), (Bytes{7, 8, 9, 1, 255, 255, 0, 1}));
}

TEST(ImageFill, needs_a_large_enough_owned_buffer) {
    unsigned char external[4] = {};
    Image image;
    image.width = image.height = 1;
    image.pixmap_external = external;
    EXPECT_FALSE(image.fill_color_rgb_u8(1, 2, 3));
    EXPECT_FALSE(image.fill_color_rgba_u8(1, 2, 3, 4));
    EXPECT_FALSE(image.fill_color_rgb_f32(1, 2, 3));
    EXPECT_FALSE(image.fill_color_rgba_f32(1, 2, 3, 4));

    image.create(1, 1, 1, PF_RGB_U8, true);
    image.create(1, 1, 1, PF_RGB_F32, true);
    EXPECT_FALSE(image.fill_color_rgba_u8(1, 2, 3, 4));
    EXPECT_FALSE(image.fill_color_rgba_f32(1, 2, 3, 4));
    EXPECT_EQ(Bytes(image.pixmap_u8, image.pixmap_u8 + 3), (Bytes{0, 0, 0}));
    EXPECT_EQ(Floats(image.pixmap_f32, image.pixmap_f32 + 3), (Floats{0, 0, 0}));
}

TEST(ImageFill, trusts_a_buffer_that_a_host_stored) {
    Image image;
    image.width = image.height = 1;
    image.pixel_format = PF_RGB_U8;
    image.pixmap_u8 = new unsigned char[4]{};
    EXPECT_TRUE(image.fill_color_rgba_u8(1, 2, 3, 4));
    EXPECT_EQ(image.pixmap_u8[3], 4);
    image.width = image.height = ULONG_MAX;
    EXPECT_FALSE(image.fill_color_rgba_u8(1, 2, 3, 4));
}

TEST(ImageUpdatePixmap, copies_whole_pixels_of_the_layout) {
    const unsigned char bytes[8] = {1, 2, 3, 4, 5, 6, 7, 8};
    const float floats[8] = {1, 2, 3, 4, 5, 6, 7, 8};
    Image image;
    image.create(2, 1, 1, PF_RGBA_U8, true);
    EXPECT_TRUE(image.update_pixmap_rgba_u8(bytes));
    EXPECT_EQ(Bytes(image.pixmap_u8, image.pixmap_u8 + 8), Bytes(bytes, bytes + 8));
    image.fill_color_rgba_u8(0, 0, 0, 0);
    EXPECT_TRUE(image.update_pixmap_rgb_u8(bytes));
    EXPECT_EQ(Bytes(image.pixmap_u8, image.pixmap_u8 + 8), (Bytes{1, 2, 3, 4, 5, 6, 0, 0}));

    image.create(2, 1, 1, PF_RGBA_F32, true);
    EXPECT_TRUE(image.update_pixmap_rgb_f32(floats));
    EXPECT_EQ(Floats(image.pixmap_f32, image.pixmap_f32 + 8), (Floats{1, 2, 3, 4, 5, 6, 0, 0}));
    EXPECT_TRUE(image.update_pixmap_rgba_f32(floats));
    EXPECT_EQ(Floats(image.pixmap_f32, image.pixmap_f32 + 8), Floats(floats, floats + 8));
}

TEST(ImageUpdatePixmap, refuses_null_and_a_buffer_that_is_missing_or_too_small) {
    const float pixels[4] = {1, 1, 1, 1};
    Image image;
    image.width = image.height = 1;
    for (const void* source :
         {static_cast<const void*>(nullptr), static_cast<const void*>(pixels)}) {
        EXPECT_FALSE(image.update_pixmap_rgb_u8(source));
        EXPECT_FALSE(image.update_pixmap_rgba_u8(source));
        EXPECT_FALSE(image.update_pixmap_rgb_f32(source));
        EXPECT_FALSE(image.update_pixmap_rgba_f32(source));
    }
    image.create(1, 1, 1, PF_RGB_U8, true);
    image.create(1, 1, 1, PF_RGB_F32, true);
    EXPECT_FALSE(image.update_pixmap_rgb_u8(nullptr));
    EXPECT_FALSE(image.update_pixmap_rgb_f32(nullptr));
    EXPECT_FALSE(image.update_pixmap_rgba_u8(pixels));
    EXPECT_FALSE(image.update_pixmap_rgba_f32(pixels));
    EXPECT_EQ(image.pixmap_u8[0], 0);
    EXPECT_EQ(image.pixmap_f32[0], 0.0f);
}

// -------------------------------------------------------------------------------- noise

/// The places that the generator gives, in the order in which the noise draws them.
Order noise_places(unsigned long width, unsigned long height, unsigned long count,
                   unsigned int seed) {
    Order places;
    Math::srnd(seed);
    for (unsigned long i = 0; i < count; ++i) {
        const float x = Math::rnd(0, static_cast<float>(width));
        const float y = Math::rnd(0, static_cast<float>(height));
        places.push_back(static_cast<unsigned long>(y) * width + static_cast<unsigned long>(x));
    }
    std::sort(places.begin(), places.end());
    places.erase(std::unique(places.begin(), places.end()), places.end());
    return places;
}

Order places_of(const Image& image, float color) {
    Order places;
    const unsigned long stride = channels(image);
    for (unsigned long i = 0; i < image.width * image.height; ++i) {
        const float first =
            is_u8(image.pixel_format) ? image.pixmap_u8[i * stride] : image.pixmap_f32[i * stride];
        if (first == color)
            places.push_back(i);
    }
    return places;
}

TEST(ImageNoise, scatters_the_second_colour_over_the_first_in_every_format) {
    for (const PIXEL_FORMAT format : flippable) {
        SCOPED_TRACE(format);
        Image image;
        image.create(8, 4, 1, format, true);
        EXPECT_TRUE(image.fill_with_noise(10, vec4(0.25f, 0, 0, 0), vec4(0.5f, 1, 0, 0.25f), 7));
        const bool u8 = is_u8(format);
        EXPECT_EQ(places_of(image, u8 ? 127.0f : 0.5f), noise_places(8, 4, 10, 7));
        EXPECT_EQ(places_of(image, u8 ? 63.0f : 0.25f).size(),
                  32 - noise_places(8, 4, 10, 7).size());
    }
}

TEST(ImageNoise, writes_all_channels_of_both_colours) {
    Image image;
    image.create(1, 1, 1, PF_RGBA_U8, true);
    EXPECT_TRUE(image.fill_with_noise(0, vec4(0.1f, 0.2f, 0.3f, 0.4f), vec4(), 1));
    EXPECT_EQ(Bytes(image.pixmap_u8, image.pixmap_u8 + 4), (Bytes{25, 51, 76, 102}));
    EXPECT_TRUE(image.fill_with_noise(1, vec4(), vec4(1, 0.5f, 2, 0.25f), 1));
    EXPECT_EQ(Bytes(image.pixmap_u8, image.pixmap_u8 + 4), (Bytes{255, 127, 254, 63}));
    image.create(1, 1, 1, PF_RGBA_F32, true);
    EXPECT_TRUE(image.fill_with_noise(1, vec4(), vec4(1, 0.5f, 2, 0.25f), 1));
    EXPECT_EQ(Floats(image.pixmap_f32, image.pixmap_f32 + 4), (Floats{1, 0.5f, 2, 0.25f}));
}

TEST(ImageNoise, draws_at_most_one_point_per_pixel) {
    Image image;
    image.create(4, 4, 1, PF_RGB_U8, true);
    EXPECT_TRUE(image.fill_with_noise(ULONG_MAX, vec4(0, 0, 0, 0), vec4(1, 1, 1, 1), 3));
    const int next = rand();
    EXPECT_EQ(places_of(image, 255.0f), noise_places(4, 4, 16, 3));
    Math::srnd(3);
    for (int i = 0; i < 32; ++i)
        rand();
    EXPECT_EQ(next, rand());
}

TEST(ImageNoise, gives_the_same_image_for_the_same_seed) {
    Image a, b, c;
    for (Image* image : {&a, &b, &c})
        image->create(16, 16, 1, PF_RGB_U8, true);
    a.fill_with_noise(60, vec4(0, 0, 0, 0), vec4(1, 1, 1, 1), 5);
    b.fill_with_noise(60, vec4(0, 0, 0, 0), vec4(1, 1, 1, 1), 5);
    c.fill_with_noise(60, vec4(0, 0, 0, 0), vec4(1, 1, 1, 1), 6);
    EXPECT_EQ(places_of(a, 255), places_of(b, 255));
    EXPECT_NE(places_of(a, 255), places_of(c, 255));
}

TEST(ImageNoise, has_a_form_for_every_layout_that_does_not_look_at_the_format) {
    Image image;
    image.create(1, 1, 1, PF_RGBA_U8, true);
    EXPECT_TRUE(image.fill_with_noise_rgb_u8(1, vec3u8(), vec3u8(1, 2, 3), 1));
    EXPECT_EQ(Bytes(image.pixmap_u8, image.pixmap_u8 + 4), (Bytes{1, 2, 3, 1}));
    EXPECT_TRUE(image.fill_with_noise_rgba_u8(1, vec4u8(), vec4u8(4, 5, 6, 7), 1));
    EXPECT_EQ(Bytes(image.pixmap_u8, image.pixmap_u8 + 4), (Bytes{4, 5, 6, 7}));
    image.create(1, 1, 1, PF_RGBA_F32, true);
    EXPECT_TRUE(image.fill_with_noise_rgb_f32(1, vec3(), vec3(1, 2, 3), 1));
    EXPECT_EQ(Floats(image.pixmap_f32, image.pixmap_f32 + 4), (Floats{1, 2, 3, 0}));
    EXPECT_TRUE(image.fill_with_noise_rgba_f32(1, vec4(), vec4(4, 5, 6, 7), 1));
    EXPECT_EQ(Floats(image.pixmap_f32, image.pixmap_f32 + 4), (Floats{4, 5, 6, 7}));
}

TEST(ImageNoise, refuses_other_formats_and_missing_pixels) {
    for (const int value : {0, 7, 8, 9, 10, 11, -1}) {
        Image image;
        image.create(1, 1, 1, PF_RGBA_U8, true);
        image.create(1, 1, 1, PF_RGBA_F32, true);
        image.pixel_format = static_cast<PIXEL_FORMAT>(value);
        EXPECT_FALSE(image.fill_with_noise(1, vec4(), vec4(), 1)) << value;
    }
    for (const PIXEL_FORMAT format : flippable) {
        Image image;
        image.width = image.height = 1;
        image.pixel_format = format;
        EXPECT_FALSE(image.fill_with_noise(1, vec4(), vec4(), 1)) << format;
    }
}

} // namespace
} // namespace orvex_test
