#include "orvex/renderer/records/image.h"

#include <climits>
#include <cstring>
#include <new>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orvex/math/vec4.h"
#include "orvex/renderer/records/private/image_access.h"

namespace orvex_test {

using namespace orvex;
namespace {

using Bytes = std::vector<unsigned char>;
using Floats = std::vector<float>;

constexpr unsigned long beyond_any_memory = 1ul << 62;

Bytes u8_pixels(const Image& image, unsigned long count) {
    return {image.get_u8_ptr(), image.get_u8_ptr() + count};
}

Floats f32_pixels(const Image& image, unsigned long count) {
    return {image.pixmap_f32, image.pixmap_f32 + count};
}

PIXEL_FORMAT format_value(int value) {
    return static_cast<PIXEL_FORMAT>(value);
}

TEST(Image, starts_without_sizes_format_or_pixels) {
    const Image image;
    EXPECT_EQ(image.width, 0u);
    EXPECT_EQ(image.height, 0u);
    EXPECT_EQ(image.depth, 0u);
    EXPECT_EQ(image.pixel_format, PF_NONE);
    EXPECT_EQ(image.pixmap_u8, nullptr);
    EXPECT_EQ(image.pixmap_f32, nullptr);
    EXPECT_EQ(image.pixmap_external, nullptr);
    EXPECT_EQ(image.get_u8_ptr(), nullptr);
    EXPECT_EQ(image.get_f32_ptr(), nullptr);
    EXPECT_EQ(image.get_pixel_format_size(), 0);
}

TEST(Image, tells_the_bytes_per_pixel_of_every_format) {
    const int sizes[] = {0, 3, 3, 4, 4, 12, 16, 4, 0, 0, 0, 0};
    for (int value = 0; value < 12; ++value) {
        Image image;
        image.pixel_format = format_value(value);
        EXPECT_EQ(image.get_pixel_format_size(), sizes[value]) << "format " << value;
    }
    Image image;
    image.pixel_format = format_value(-1);
    EXPECT_EQ(image.get_pixel_format_size(), 0);
}

TEST(Image, reads_its_own_bytes_before_the_external_ones) {
    unsigned char external[3] = {1, 2, 3};
    Image image;
    image.pixmap_external = external;
    EXPECT_EQ(image.get_u8_ptr(), external);
    image.create(1, 1, 1, PF_RGB_U8, true);
    EXPECT_EQ(image.get_u8_ptr(), image.pixmap_u8);
    EXPECT_EQ(image.pixmap_external, external);
}

TEST(Image, cleanup_frees_what_it_owns_and_leaves_the_external_pixels) {
    unsigned char external[3] = {1, 2, 3};
    Image image;
    image.create(1, 1, 1, PF_RGB_U8, true);
    image.create(1, 1, 1, PF_RGB_F32, true);
    image.pixmap_external = external;
    EXPECT_TRUE(image.cleanup());
    EXPECT_EQ(image.pixmap_u8, nullptr);
    EXPECT_EQ(image.pixmap_f32, nullptr);
    EXPECT_EQ(image.pixmap_external, external);
    EXPECT_EQ(image.width, 1u);
    EXPECT_TRUE(image.cleanup());
}

TEST(Image, deletes_one_store_at_a_time) {
    Image image;
    image.create(1, 1, 1, PF_RGB_U8, true);
    image.create(1, 1, 1, PF_R_F32, true);
    image._delete_u8_ptr();
    EXPECT_EQ(image.pixmap_u8, nullptr);
    EXPECT_NE(image.pixmap_f32, nullptr);
    image._delete_f32_ptr();
    EXPECT_EQ(image.pixmap_f32, nullptr);
}

// -------------------------------------------------------------------------------- create

TEST(ImageCreate, allocates_zeroed_pixels_in_the_store_of_the_format) {
    const struct {
        PIXEL_FORMAT format;
        bool u8;
        unsigned long channels;
    } rows[] = {
        {PF_RGB_U8, true, 3},    {PF_BGR_U8, true, 3}, {PF_RGB_F32, false, 3},
        {PF_RGBA_F32, false, 4}, {PF_R_F32, false, 1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.format);
        Image image;
        EXPECT_TRUE(image.create(4, 3, 2, row.format, true));
        EXPECT_EQ(image.width, 4u);
        EXPECT_EQ(image.height, 3u);
        EXPECT_EQ(image.depth, 2u);
        EXPECT_EQ(image.pixel_format, row.format);
        EXPECT_EQ(image.pixmap_u8 != nullptr, row.u8);
        EXPECT_EQ(image.pixmap_f32 != nullptr, !row.u8);
        const unsigned long channels = 24 * row.channels;
        if (row.u8)
            EXPECT_EQ(u8_pixels(image, channels), Bytes(channels, 0));
        else
            EXPECT_EQ(f32_pixels(image, channels), Floats(channels, 0.0f));
    }
}

TEST(ImageCreate, gives_fresh_rgba_pixels_a_yellow_of_alpha_one) {
    Bytes yellow;
    for (int i = 0; i < 16; ++i)
        yellow.insert(yellow.end(), {255, 255, 0, 1});
    for (const PIXEL_FORMAT format : {PF_RGBA_U8, PF_BGRA_U8}) {
        for (const bool zero_fill : {true, false}) {
            Image image;
            EXPECT_TRUE(image.create(4, 4, 1, format, zero_fill));
            EXPECT_EQ(image.pixel_format, format);
            EXPECT_EQ(u8_pixels(image, 64), yellow) << format << " " << zero_fill;
        }
    }
}

TEST(ImageCreate, paints_every_slice_yellow) {
    Image image;
    ASSERT_TRUE(image.create(1, 1, 3, PF_RGBA_U8, true));
    EXPECT_EQ(u8_pixels(image, 12), (Bytes{255, 255, 0, 1, 255, 255, 0, 1, 255, 255, 0, 1}));
}

TEST(ImageCreate, refuses_other_formats_and_leaves_every_field_alone) {
    for (const int value : {0, 8, 9, 10, 11, -1}) {
        SCOPED_TRACE(value);
        Image image;
        image.create(2, 3, 1, PF_RGB_U8, true);
        unsigned char* const pixels = image.pixmap_u8;
        EXPECT_FALSE(image.create(4, 4, 1, format_value(value), true));
        EXPECT_EQ(image.width, 2u);
        EXPECT_EQ(image.height, 3u);
        EXPECT_EQ(image.depth, 1u);
        EXPECT_EQ(image.pixel_format, PF_RGB_U8);
        EXPECT_EQ(image.pixmap_u8, pixels);
    }
}

TEST(ImageCreate, leaves_the_other_store_and_the_external_pixels_alone) {
    unsigned char external[3] = {};
    Image image;
    image.pixmap_external = external;
    image.create(1, 1, 1, PF_R_F32, true);
    float* const floats = image.pixmap_f32;
    image.create(2, 2, 1, PF_RGB_U8, true);
    unsigned char* const bytes = image.pixmap_u8;
    EXPECT_EQ(image.pixmap_f32, floats);
    image.create(2, 2, 1, PF_RGB_F32, true);
    EXPECT_EQ(image.pixmap_u8, bytes);
    EXPECT_EQ(image.pixmap_external, external);
}

TEST(ImageCreate, stores_sizes_and_drops_the_buffer_when_the_size_cannot_be_expressed) {
    for (const PIXEL_FORMAT format : {PF_RGB_U8, PF_RGBA_U8}) {
        Image image;
        image.create(2, 2, 1, PF_RGB_U8, true);
        EXPECT_FALSE(image.create(beyond_any_memory, beyond_any_memory, 2, format, true));
        EXPECT_EQ(image.width, beyond_any_memory);
        EXPECT_EQ(image.height, beyond_any_memory);
        EXPECT_EQ(image.depth, 2u);
        EXPECT_EQ(image.pixel_format, PF_RGB_U8);
        EXPECT_EQ(image.pixmap_u8, nullptr);
    }
}

TEST(ImageCreate, lets_a_failed_allocation_throw_and_owns_nothing_afterwards) {
    Image image;
    image.create(2, 2, 1, PF_RGB_U8, true);
    EXPECT_THROW(image.create(beyond_any_memory, 1, 1, PF_RGB_U8, true), std::bad_alloc);
    EXPECT_EQ(image.pixmap_u8, nullptr);
    EXPECT_EQ(image.pixel_format, PF_RGB_U8);
    EXPECT_EQ(image.width, beyond_any_memory);
}

TEST(ImageCreate, of_an_empty_size_owns_a_buffer_that_holds_no_pixel) {
    Image image;
    EXPECT_TRUE(image.create(4, 4, 0, PF_RGB_U8, true));
    EXPECT_NE(image.pixmap_u8, nullptr);
    EXPECT_FALSE(image.fill_color_rgb_u8(1, 2, 3));
    EXPECT_FALSE(image.set_pixel(0, vec4(1, 2, 3, 4)));
}

TEST(ImageCreate, has_an_allocator_for_every_layout) {
    const struct {
        bool (Image::*create)(unsigned long, unsigned long, unsigned long, bool);
        PIXEL_FORMAT format;
    } rows[] = {
        {&Image::_create_rgb_u8, PF_RGB_U8},   {&Image::_create_rgba_u8, PF_RGBA_U8},
        {&Image::_create_rgb_f32, PF_RGB_F32}, {&Image::_create_rgba_f32, PF_RGBA_F32},
        {&Image::_create_r_f32, PF_R_F32},
    };
    for (const auto& row : rows) {
        Image image;
        EXPECT_TRUE((image.*row.create)(2, 2, 1, true));
        EXPECT_EQ(image.pixel_format, row.format);
        EXPECT_FALSE((image.*row.create)(beyond_any_memory, beyond_any_memory, 1, true));
        EXPECT_EQ(image.get_u8_ptr(), nullptr);
        EXPECT_EQ(image.get_f32_ptr(), nullptr);
    }
}

// -------------------------------------------------------------------------------- copies

TEST(ImageCopy, copies_bytes_of_every_slice) {
    Image source;
    source.create(2, 1, 2, PF_RGB_U8, false);
    for (unsigned char i = 0; i < 12; ++i)
        source.pixmap_u8[i] = i;
    const Image copy(source);
    EXPECT_EQ(copy.width, 2u);
    EXPECT_EQ(copy.height, 1u);
    EXPECT_EQ(copy.depth, 2u);
    EXPECT_EQ(copy.pixel_format, PF_RGB_U8);
    EXPECT_NE(copy.pixmap_u8, source.pixmap_u8);
    EXPECT_EQ(u8_pixels(copy, 12), u8_pixels(source, 12));
}

TEST(ImageCopy, gives_float_pixels_a_buffer_four_times_as_large) {
    Image source;
    source.create(1, 1, 1, PF_RGBA_F32, false);
    source.fill_color_rgba_f32(1, 2, 3, 4);
    const Image copy(source);
    EXPECT_EQ(f32_pixels(copy, 16), (Floats{1, 2, 3, 4, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
    const Image second(copy);
    EXPECT_EQ(f32_pixels(second, 16), f32_pixels(copy, 16));
}

TEST(ImageCopy, reads_no_more_of_a_hosts_buffer_than_the_image_claims) {
    Image source;
    source.width = source.height = source.depth = 1;
    source.pixel_format = PF_RGB_F32;
    source.pixmap_f32 = new float[3]{5, 6, 7};
    const Image copy(source);
    EXPECT_EQ(f32_pixels(copy, 12), (Floats{5, 6, 7, 0, 0, 0, 0, 0, 0, 0, 0, 0}));

    source.pixel_format = PF_RGB_U8;
    source.pixmap_u8 = new unsigned char[3]{8, 9, 10};
    const Image bytes(source);
    EXPECT_EQ(u8_pixels(bytes, 3), (Bytes{8, 9, 10}));
}

TEST(ImageCopy, prefers_bytes_to_floats_and_leaves_the_other_store_alone) {
    Image source;
    source.create(1, 1, 1, PF_R_F32, true);
    source.create(1, 1, 1, PF_RGB_U8, true);
    Image target;
    target.create(2, 2, 1, PF_RGB_F32, true);
    float* const floats = target.pixmap_f32;
    target = source;
    EXPECT_NE(target.pixmap_u8, nullptr);
    EXPECT_EQ(target.pixmap_f32, floats);

    source._delete_u8_ptr();
    unsigned char* const bytes = target.pixmap_u8;
    target = source;
    EXPECT_EQ(target.pixmap_u8, bytes);
    EXPECT_NE(target.pixmap_f32, nullptr);
}

TEST(ImageCopy, zeroes_what_the_source_does_not_hold) {
    Image source;
    source.create(1, 1, 1, PF_RGB_U8, true);
    source.fill_color_rgb_u8(7, 8, 9);
    source.height = 3;
    const Image copy(source);
    EXPECT_EQ(u8_pixels(copy, 9), (Bytes{7, 8, 9, 0, 0, 0, 0, 0, 0}));
}

TEST(ImageCopy, shares_external_pixels) {
    unsigned char external[12] = {};
    Image source;
    source.width = source.height = 2;
    source.depth = 1;
    source.pixel_format = PF_RGB_U8;
    source.pixmap_external = external;
    Image copy;
    copy = source;
    EXPECT_EQ(copy.pixmap_external, external);
    EXPECT_EQ(copy.pixmap_u8, nullptr);
    EXPECT_EQ(copy.get_u8_ptr(), external);
    EXPECT_EQ(copy.width, 2u);
}

TEST(ImageCopy, frees_an_own_buffer_that_is_too_small_for_the_external_pixels_it_would_hide) {
    unsigned char external[12] = {};
    Image source;
    source.width = source.height = 2;
    source.pixel_format = PF_RGB_U8;
    source.pixmap_external = external;

    Image small;
    small.create(1, 1, 1, PF_RGB_U8, true);
    small = source;
    EXPECT_EQ(small.pixmap_u8, nullptr);
    EXPECT_EQ(small.get_u8_ptr(), external);

    Image large;
    large.create(2, 2, 1, PF_RGB_U8, true);
    unsigned char* const own = large.pixmap_u8;
    large = source;
    EXPECT_EQ(large.get_u8_ptr(), own);
    EXPECT_EQ(large.pixmap_external, external);
}

TEST(ImageCopy, of_an_empty_image_takes_its_null_external_pointer) {
    unsigned char external[12] = {};
    Image target;
    target.pixmap_external = external;
    target.create(2, 2, 1, PF_RGB_U8, true);
    target = Image();
    EXPECT_EQ(target.pixmap_external, nullptr);
    EXPECT_EQ(target.width, 0u);
    EXPECT_EQ(target.pixel_format, PF_NONE);
    EXPECT_NE(target.pixmap_u8, nullptr);
}

TEST(ImageCopy, to_itself_changes_nothing) {
    Image image;
    image.create(2, 2, 1, PF_RGB_F32, true);
    float* const pixels = image.pixmap_f32;
    Image& same = image;
    image = same;
    EXPECT_EQ(image.pixmap_f32, pixels);
}

TEST(ImageCopy, throws_when_the_size_saturates_and_owns_nothing_afterwards) {
    Image source;
    source.create(1, 1, 1, PF_RGB_U8, true);
    source.width = source.height = ULONG_MAX / 2;
    Image target;
    target.create(1, 1, 1, PF_RGB_U8, true);
    EXPECT_THROW(target = source, std::bad_alloc);
    EXPECT_EQ(target.pixmap_u8, nullptr);

    Image floats;
    floats.create(1, 1, 1, PF_R_F32, true);
    floats.width = ULONG_MAX / 8;
    EXPECT_THROW(target = floats, std::bad_alloc);
    EXPECT_EQ(target.pixmap_f32, nullptr);
}

// -------------------------------------------------------------------------------- one pixel

TEST(ImageSetPixel, truncates_to_bytes_without_scaling) {
    Image image;
    image.create(2, 1, 1, PF_RGB_U8, true);
    EXPECT_TRUE(image.set_pixel(1, vec4(255.9f, 1.0f, 256.5f, 0.0f)));
    EXPECT_EQ(u8_pixels(image, 6), (Bytes{0, 0, 0, 255, 1, 0}));
}

TEST(ImageSetPixel, writes_as_many_channels_as_the_format_has) {
    const float color[4] = {10, 20, 30, 40};
    const struct {
        PIXEL_FORMAT format;
        bool written;
        Floats expected;
    } rows[] = {
        {PF_RGB_U8, true, {10, 20, 30}},
        {PF_BGR_U8, true, {10, 20, 30}},
        {PF_RGBA_U8, true, {10, 20, 30, 40}},
        {PF_BGRA_U8, true, {10, 20, 30, 40}},
        {PF_RGB_F32, true, {10, 20, 30}},
        {PF_RGBA_F32, true, {10, 20, 30, 40}},
        {PF_R_F32, false, {0}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.format);
        Image image;
        image.create(1, 1, 1, row.format, true);
        EXPECT_EQ(image.set_pixel_v2(0, color), row.written);
        Floats pixel(row.expected.size());
        for (unsigned long c = 0; c < pixel.size(); ++c)
            pixel[c] = image.pixmap_u8 ? image.pixmap_u8[c] : image.pixmap_f32[c];
        EXPECT_EQ(pixel, row.expected);
    }
}

TEST(ImageSetPixel, refuses_formats_that_do_not_fit_the_store) {
    Image image;
    image.create(1, 1, 1, PF_RGB_U8, true);
    image.pixel_format = PF_RGB_F32;
    EXPECT_FALSE(image.set_pixel(0, vec4(1, 2, 3, 4)));
    image.cleanup();
    image.create(1, 1, 1, PF_RGB_F32, true);
    image.pixel_format = PF_RGB_U8;
    EXPECT_FALSE(image.set_pixel(0, vec4(1, 2, 3, 4)));
}

TEST(ImageSetPixel, refuses_null_an_index_outside_and_missing_pixels) {
    Image image;
    image.create(2, 2, 2, PF_RGBA_F32, true);
    EXPECT_FALSE(image.set_pixel_v2(0, nullptr));
    EXPECT_FALSE(image.set_pixel_1d_v2(0, nullptr));
    EXPECT_FALSE(image.set_pixel_2d_v2(0, 0, nullptr));
    EXPECT_TRUE(image.set_pixel(7, vec4()));
    EXPECT_FALSE(image.set_pixel(8, vec4()));
    EXPECT_FALSE(image.set_pixel(ULONG_MAX, vec4()));
    image.cleanup();
    EXPECT_FALSE(image.set_pixel(0, vec4()));
    unsigned char external[12] = {};
    image.pixmap_external = external;
    image.pixel_format = PF_RGB_U8;
    EXPECT_FALSE(image.set_pixel(0, vec4()));
}

TEST(ImageSetPixel, checks_the_linear_index_only) {
    Image image;
    image.create(2, 2, 1, PF_RGBA_F32, true);
    EXPECT_TRUE(image.set_pixel_2d(3, 0, vec4(1, 2, 3, 4)));
    EXPECT_EQ(image.pixmap_f32[12], 1.0f);
    EXPECT_FALSE(image.set_pixel_2d(2, 1, vec4()));
    EXPECT_FALSE(image.set_pixel_2d(1, ULONG_MAX, vec4()));
    EXPECT_FALSE(image.set_pixel_2d(ULONG_MAX, 1, vec4()));
}

TEST(ImageSetPixel, reaches_the_same_pixel_by_all_its_forms) {
    const vec4 color(1, 2, 3, 4);
    const float channels[4] = {1, 2, 3, 4};
    const struct {
        const char* name;
        bool (*set)(Image&, const vec4&, const float*);
    } rows[] = {
        {"set_pixel", [](Image& i, const vec4& c, const float*) { return i.set_pixel(3, c); }},
        {"set_pixel_1d",
         [](Image& i, const vec4& c, const float*) { return i.set_pixel_1d(3, c); }},
        {"set_pixel_2d",
         [](Image& i, const vec4& c, const float*) { return i.set_pixel_2d(1, 1, c); }},
        {"set_pixel_v2",
         [](Image& i, const vec4&, const float* c) { return i.set_pixel_v2(3, c); }},
        {"set_pixel_1d_v2",
         [](Image& i, const vec4&, const float* c) { return i.set_pixel_1d_v2(3, c); }},
        {"set_pixel_2d_v2",
         [](Image& i, const vec4&, const float* c) { return i.set_pixel_2d_v2(1, 1, c); }},
    };
    for (const auto& row : rows) {
        Image image;
        image.create(2, 2, 1, PF_RGBA_F32, true);
        EXPECT_TRUE(row.set(image, color, channels)) << row.name;
        Floats expected(16, 0.0f);
        std::copy(channels, channels + 4, expected.begin() + 12);
        EXPECT_EQ(f32_pixels(image, 16), expected) << row.name;
    }
}

TEST(ImageSetPixel, stays_inside_a_buffer_that_is_smaller_than_the_sizes_say) {
    Image image;
    image.create(2, 1, 1, PF_RGB_U8, true);
    image.pixel_format = PF_RGBA_U8;
    EXPECT_TRUE(image.set_pixel(0, vec4()));
    EXPECT_FALSE(image.set_pixel(1, vec4()));
    image.height = 100;
    EXPECT_FALSE(image.set_pixel(99, vec4()));

    Image floats;
    floats.create(2, 1, 1, PF_RGB_F32, true);
    floats.height = 100;
    const unsigned long held = ImageAccess::f32_capacity(floats) / (3 * sizeof(float));
    EXPECT_TRUE(floats.set_pixel(held - 1, vec4()));
    EXPECT_FALSE(floats.set_pixel(held, vec4()));
}

TEST(ImageSetPixel, gives_zero_for_what_has_no_integer) {
    Image image;
    image.create(1, 1, 1, PF_RGB_U8, true);
    EXPECT_TRUE(image.set_pixel(0, vec4(__builtin_nanf(""), __builtin_inff(), 1e30f, 0)));
    EXPECT_EQ(u8_pixels(image, 3), (Bytes{0, 0, 0}));
    EXPECT_TRUE(image.set_pixel(0, vec4(-1.0f, -0.5f, 258.0f, 0)));
    EXPECT_EQ(u8_pixels(image, 3), (Bytes{255, 0, 2}));
}

TEST(ExternalPixels, keep_their_size_when_a_copy_takes_them_over) {
    unsigned char pixels[12] = {};
    Image image;
    image.width = image.height = 2;
    image.pixel_format = PF_RGB_U8;
    image.pixmap_external = pixels;
    ImageAccess::note_external(image, sizeof pixels);
    Image copy;
    copy = image;
    copy.height = 100;
    EXPECT_EQ(ImageAccess::external_bytes(copy), sizeof pixels);
    EXPECT_FALSE(copy.flip_vertical()) << "it would read what isn't there";
}

} // namespace
} // namespace orvex_test
