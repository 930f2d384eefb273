// Pixels from the caller, one colour for all of them, and noise. Each asks first whether the buffer
// that the image owns has room for what its sizes claim.

#include "orvex/renderer/records/image.h"

#include <algorithm>
#include <cstring>

#include "orvex/math/math.h"
#include "orvex/math/private/pixel_math.h"
#include "orvex/math/vec3.h"
#include "orvex/math/vec3u8.h"
#include "orvex/math/vec4.h"
#include "orvex/math/vec4u8.h"
#include "orvex/renderer/records/private/image_access.h"

namespace orvex {

namespace {

/// Whether `width * height` pixels of `pixel_size` bytes fit behind a buffer.
bool fits(const void* buffer, unsigned long capacity, const Image& image,
          unsigned long pixel_size) {
    return buffer && saturating_product(image.width, image.height, pixel_size) <= capacity;
}

bool fits_u8(const Image& image, unsigned long pixel_size) {
    return fits(image.pixmap_u8, ImageAccess::u8_capacity(image), image, pixel_size);
}

bool fits_f32(const Image& image, unsigned long pixel_size) {
    return fits(image.pixmap_f32, ImageAccess::f32_capacity(image), image, pixel_size);
}

bool update_u8(Image& image, const void* pixels, unsigned long pixel_size) {
    if (!pixels || !fits_u8(image, pixel_size))
        return false;
    std::memmove(image.pixmap_u8, pixels, image.width * image.height * pixel_size);
    return true;
}

bool update_f32(Image& image, const void* pixels, unsigned long pixel_size) {
    if (!pixels || !fits_f32(image, pixel_size))
        return false;
    std::memmove(image.pixmap_f32, pixels, image.width * image.height * pixel_size);
    return true;
}

} // namespace

bool Image::update_pixmap_rgb_u8(const void* pixels) {
    return update_u8(*this, pixels, 3);
}

bool Image::update_pixmap_rgba_u8(const void* pixels) {
    return update_u8(*this, pixels, 4);
}

bool Image::update_pixmap_rgb_f32(const void* pixels) {
    return update_f32(*this, pixels, 12);
}

bool Image::update_pixmap_rgba_f32(const void* pixels) {
    return update_f32(*this, pixels, 16);
}

namespace {

template<unsigned long Channels, class Channel>
void fill(Channel* pixels, unsigned long count, const Channel (&color)[Channels]) {
    for (unsigned long i = 0; i < count; ++i)
        std::copy_n(color, Channels, pixels + i * Channels);
}

} // namespace

bool Image::fill_color_rgb_u8(unsigned char r, unsigned char g, unsigned char b) {
    if (!fits_u8(*this, 3))
        return false;
    fill(pixmap_u8, width * height, {r, g, b});
    return true;
}

bool Image::fill_color_rgba_u8(unsigned char r, unsigned char g, unsigned char b, unsigned char a) {
    if (!fits_u8(*this, 4))
        return false;
    fill(pixmap_u8, width * height, {r, g, b, a});
    return true;
}

bool Image::fill_color_rgb_f32(float r, float g, float b) {
    if (!fits_f32(*this, 12))
        return false;
    fill(pixmap_f32, width * height, {r, g, b});
    return true;
}

bool Image::fill_color_rgba_f32(float r, float g, float b, float a) {
    if (!fits_f32(*this, 16))
        return false;
    fill(pixmap_f32, width * height, {r, g, b, a});
    return true;
}

namespace {

/// Scatters a colour over an image that has been filled. The generator can give the upper bound
/// itself: a place in the row below the last one is drawn and then left out.
template<unsigned long Channels, class Channel>
void scatter(Channel* pixels, const Image& image, unsigned long count, unsigned int seed,
             const Channel (&color)[Channels]) {
    const unsigned long num_pixels = image.width * image.height;
    Math::srnd(seed);
    for (unsigned long i = 0; i < std::min(count, num_pixels); ++i) {
        const float x = Math::rnd(0, static_cast<float>(image.width));
        const float y = Math::rnd(0, static_cast<float>(image.height));
        const unsigned long index =
            static_cast<unsigned long>(y) * image.width + static_cast<unsigned long>(x);
        if (index < num_pixels)
            std::copy_n(color, Channels, pixels + index * Channels);
    }
}

} // namespace

bool Image::fill_with_noise_rgb_u8(unsigned long count, const vec3u8& color_a,
                                   const vec3u8& color_b, unsigned int seed) {
    if (!fill_color_rgb_u8(color_a.x, color_a.y, color_a.z))
        return false;
    scatter(pixmap_u8, *this, count, seed, {color_b.x, color_b.y, color_b.z});
    return true;
}

bool Image::fill_with_noise_rgba_u8(unsigned long count, const vec4u8& color_a,
                                    const vec4u8& color_b, unsigned int seed) {
    if (!fill_color_rgba_u8(color_a.x, color_a.y, color_a.z, color_a.w))
        return false;
    scatter(pixmap_u8, *this, count, seed, {color_b.x, color_b.y, color_b.z, color_b.w});
    return true;
}

bool Image::fill_with_noise_rgb_f32(unsigned long count, const vec3& color_a, const vec3& color_b,
                                    unsigned int seed) {
    if (!fill_color_rgb_f32(color_a.x, color_a.y, color_a.z))
        return false;
    scatter(pixmap_f32, *this, count, seed, {color_b.x, color_b.y, color_b.z});
    return true;
}

bool Image::fill_with_noise_rgba_f32(unsigned long count, const vec4& color_a, const vec4& color_b,
                                     unsigned int seed) {
    if (!fill_color_rgba_f32(color_a.x, color_a.y, color_a.z, color_a.w))
        return false;
    scatter(pixmap_f32, *this, count, seed, {color_b.x, color_b.y, color_b.z, color_b.w});
    return true;
}

namespace {

vec4u8 to_bytes(const vec4& color) {
    return {byte_from_channel(color.x), byte_from_channel(color.y), byte_from_channel(color.z),
            byte_from_channel(color.w)};
}

vec3u8 without_alpha(const vec4u8& color) {
    return {color.x, color.y, color.z};
}

vec3 without_alpha(const vec4& color) {
    return {color.x, color.y, color.z};
}

} // namespace

bool Image::fill_with_noise(unsigned long count, const vec4& color_a, const vec4& color_b,
                            unsigned int seed) {
    switch (pixel_format) {
    case PF_RGB_U8:
    case PF_BGR_U8:
        return fill_with_noise_rgb_u8(count, without_alpha(to_bytes(color_a)),
                                      without_alpha(to_bytes(color_b)), seed);
    case PF_RGBA_U8:
    case PF_BGRA_U8:
        return fill_with_noise_rgba_u8(count, to_bytes(color_a), to_bytes(color_b), seed);
    case PF_RGB_F32:
        return fill_with_noise_rgb_f32(count, without_alpha(color_a), without_alpha(color_b), seed);
    case PF_RGBA_F32:
        return fill_with_noise_rgba_f32(count, color_a, color_b, seed);
    case PF_NONE:
    case PF_R_F32:
    case PF_RGB_F16:
    case PF_RGBA_F16:
    case PF_R_F16:
        return false;
    }
    return false;
}

} // namespace orvex
