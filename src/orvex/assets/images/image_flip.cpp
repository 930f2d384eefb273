// The flips, in place and row by row. External pixels are copied first: they are the codec's, and
// other images may show them.

#include "orvex/renderer/records/image.h"

#include <algorithm>
#include <cstring>

#include "orvex/math/private/pixel_math.h"
#include "orvex/renderer/records/private/image_access.h"

namespace orvex {

namespace {

/// Swaps pixels or rows as plain bytes: a flip doesn't care what they mean.
void swap_bytes(unsigned char* a, unsigned char* b, unsigned long count) {
    std::swap_ranges(a, a + count, b);
}

bool flip_rows(unsigned char* pixels, unsigned long capacity, const Image& image,
               unsigned long pixel_size) {
    if (!pixels || capacity < saturating_product(image.width, image.height, pixel_size))
        return false;
    const unsigned long row = image.width * pixel_size;
    for (unsigned long i = 0; i < image.height / 2; ++i)
        swap_bytes(pixels + i * row, pixels + (image.height - 1 - i) * row, row);
    return true;
}

template<unsigned long PixelSize>
bool flip_columns(unsigned char* pixels, unsigned long capacity, const Image& image) {
    if (!pixels || capacity < saturating_product(image.width, image.height, PixelSize))
        return false;
    const unsigned long row = image.width * PixelSize;
    for (unsigned long y = 0; y < image.height; ++y) {
        unsigned char* const left = pixels + y * row;
        for (unsigned long x = 0; x < image.width / 2; ++x)
            swap_bytes(left + x * PixelSize, left + (image.width - 1 - x) * PixelSize, PixelSize);
    }
    return true;
}

/// External pixels are the codec's: an RGB flip works on a copy of its own.
bool own_rgb_pixels(Image& image) {
    if (image.pixmap_u8)
        return true;
    const unsigned long bytes = saturating_product(image.width, image.height, 3);
    if (!image.pixmap_external || ImageAccess::external_bytes(image) < bytes)
        return false;
    if (!image.create(image.width, image.height, 1, PF_RGB_U8, false))
        return false;
    std::memcpy(image.pixmap_u8, image.pixmap_external, bytes);
    return true;
}

unsigned char* f32_as_bytes(const Image& image) {
    return reinterpret_cast<unsigned char*>(image.pixmap_f32);
}

} // namespace

bool Image::_flip_vertical_rgb_u8() {
    return own_rgb_pixels(*this) && flip_rows(pixmap_u8, ImageAccess::u8_capacity(*this), *this, 3);
}

bool Image::_flip_vertical_rgba_u8() {
    return flip_rows(pixmap_u8, ImageAccess::u8_capacity(*this), *this, 4);
}

bool Image::_flip_vertical_rgb_f32() {
    return flip_rows(f32_as_bytes(*this), ImageAccess::f32_capacity(*this), *this, 12);
}

bool Image::_flip_vertical_rgba_f32() {
    return flip_rows(f32_as_bytes(*this), ImageAccess::f32_capacity(*this), *this, 16);
}

bool Image::_flip_horizontal_rgb_u8() {
    return own_rgb_pixels(*this) &&
           flip_columns<3>(pixmap_u8, ImageAccess::u8_capacity(*this), *this);
}

bool Image::_flip_horizontal_rgba_u8() {
    return flip_columns<4>(pixmap_u8, ImageAccess::u8_capacity(*this), *this);
}

bool Image::_flip_horizontal_rgb_f32() {
    return flip_columns<12>(f32_as_bytes(*this), ImageAccess::f32_capacity(*this), *this);
}

bool Image::_flip_horizontal_rgba_f32() {
    return flip_columns<16>(f32_as_bytes(*this), ImageAccess::f32_capacity(*this), *this);
}

bool Image::flip_vertical() {
    switch (pixel_format) {
    case PF_RGB_U8:
    case PF_BGR_U8:
        return _flip_vertical_rgb_u8();
    case PF_RGBA_U8:
    case PF_BGRA_U8:
        return _flip_vertical_rgba_u8();
    case PF_RGB_F32:
        return _flip_vertical_rgb_f32();
    case PF_RGBA_F32:
        return _flip_vertical_rgba_f32();
    case PF_NONE:
    case PF_R_F32:
    case PF_RGB_F16:
    case PF_RGBA_F16:
    case PF_R_F16:
        return false;
    }
    return false;
}

bool Image::flip_horizontal() {
    switch (pixel_format) {
    case PF_RGB_U8:
    case PF_BGR_U8:
        return _flip_horizontal_rgb_u8();
    case PF_RGBA_U8:
    case PF_BGRA_U8:
        return _flip_horizontal_rgba_u8();
    case PF_RGB_F32:
        return _flip_horizontal_rgb_f32();
    case PF_RGBA_F32:
        return _flip_horizontal_rgba_f32();
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
