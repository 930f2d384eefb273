// The image's life, its pixel buffers and single pixels. Sizes are multiplied without wrapping
// around: what can't be expressed is refused before any memory is asked for.

#include "orvex/renderer/records/image.h"

#include <algorithm>
#include <climits>
#include <cstring>

#include "orvex/math/private/pixel_math.h"
#include "orvex/math/private/sizes.h"
#include "orvex/math/vec4.h"
#include "orvex/renderer/records/private/image_access.h"
#include "orvex/renderer/records/private/pixel_store.h"

namespace orvex {

Image::Image(const Image& other) {
    *this = other;
}

Image::~Image() {
    cleanup();
    if (holder.pixels)
        end_hold(*this);
}

namespace {

/// A copy has the size that the sizes ask for and takes what the source really holds.
void copy_and_zero_rest(void* target, unsigned long target_bytes, const void* source,
                        unsigned long source_bytes) {
    const unsigned long copied = std::min(target_bytes, source_bytes);
    std::memcpy(target, source, copied);
    std::memset(static_cast<unsigned char*>(target) + copied, 0, target_bytes - copied);
}

void copy_u8(Image& target, const Image& source) {
    const unsigned long bytes = ImageAccess::claimed_bytes(target);
    ImageAccess::allocate_u8(target, bytes);
    copy_and_zero_rest(target.pixmap_u8, bytes, source.pixmap_u8,
                       ImageAccess::held_u8_bytes(source));
}

/// The size in bytes is taken as a number of floats, so that float pixels come in a buffer four
/// times as large as they need.
void copy_f32(Image& target, const Image& source) {
    const unsigned long bytes =
        saturating_product(ImageAccess::claimed_bytes(target), sizeof(float));
    ImageAccess::allocate_f32(target, bytes);
    copy_and_zero_rest(target.pixmap_f32, bytes, source.pixmap_f32,
                       ImageAccess::held_f32_bytes(source));
}

} // namespace

Image& Image::operator=(const Image& other) {
    if (this == &other)
        return *this;
    KeepExternalSize keep(*this);
    const unsigned long external_bytes = ImageAccess::external_bytes(other);
    width = other.width;
    height = other.height;
    depth = other.depth;
    pixel_format = other.pixel_format;
    if (other.pixmap_u8) {
        copy_u8(*this, other);
    } else if (other.pixmap_f32) {
        copy_f32(*this, other);
    } else {
        pixmap_external = other.pixmap_external;
        keep.replace(external_bytes);
        if (pixmap_external)
            ImageAccess::drop_small_u8(*this);
    }
    return *this;
}

bool Image::cleanup() {
    _delete_u8_ptr();
    _delete_f32_ptr();
    return true;
}

int Image::get_pixel_format_size() const {
    return bytes_per_pixel(pixel_format);
}

unsigned char* Image::get_u8_ptr() const {
    return pixmap_u8 ? pixmap_u8 : pixmap_external;
}

float* Image::get_f32_ptr() const {
    return pixmap_f32;
}

void Image::_delete_u8_ptr() {
    ImageAccess::adopt_u8(*this, nullptr, 0);
}

void Image::_delete_f32_ptr() {
    ImageAccess::adopt_f32(*this, nullptr, 0);
}

namespace {

void store_sizes(Image& image, unsigned long width, unsigned long height, unsigned long depth) {
    image.width = width;
    image.height = height;
    image.depth = depth;
}

/// The steps that all layouts share.
bool create_pixels(Image& image, PIXEL_FORMAT format, bool zero_fill) {
    const bool u8 = is_u8_format(format);
    u8 ? image._delete_u8_ptr() : image._delete_f32_ptr();
    const unsigned long bytes =
        saturating_product(saturating_product(image.width, image.height, image.depth),
                           static_cast<unsigned long>(bytes_per_pixel(format)));
    if (bytes == largest_size)
        return false;
    u8 ? ImageAccess::allocate_u8(image, bytes) : ImageAccess::allocate_f32(image, bytes);
    image.pixel_format = format;
    if (zero_fill)
        std::memset(u8 ? static_cast<void*>(image.pixmap_u8) : image.pixmap_f32, 0, bytes);
    return true;
}

} // namespace

bool Image::_create_rgb_u8(unsigned long new_width, unsigned long new_height,
                           unsigned long new_depth, bool zero_fill) {
    const KeepExternalSize keep(*this);
    store_sizes(*this, new_width, new_height, new_depth);
    return create_pixels(*this, PF_RGB_U8, zero_fill);
}

bool Image::_create_rgba_u8(unsigned long new_width, unsigned long new_height,
                            unsigned long new_depth, bool zero_fill) {
    const KeepExternalSize keep(*this);
    store_sizes(*this, new_width, new_height, new_depth);
    if (!create_pixels(*this, PF_RGBA_U8, zero_fill))
        return false;
    // Fresh RGBA pixels are yellow on purpose: what nobody painted catches the eye.
    constexpr unsigned char yellow[4] = {255, 255, 0, 1};
    const unsigned long pixels = width * height * depth;
    for (unsigned long i = 0; i < pixels; ++i)
        std::memcpy(pixmap_u8 + i * sizeof yellow, yellow, sizeof yellow);
    return true;
}

bool Image::_create_rgb_f32(unsigned long new_width, unsigned long new_height,
                            unsigned long new_depth, bool zero_fill) {
    const KeepExternalSize keep(*this);
    store_sizes(*this, new_width, new_height, new_depth);
    return create_pixels(*this, PF_RGB_F32, zero_fill);
}

bool Image::_create_rgba_f32(unsigned long new_width, unsigned long new_height,
                             unsigned long new_depth, bool zero_fill) {
    const KeepExternalSize keep(*this);
    store_sizes(*this, new_width, new_height, new_depth);
    return create_pixels(*this, PF_RGBA_F32, zero_fill);
}

bool Image::_create_r_f32(unsigned long new_width, unsigned long new_height,
                          unsigned long new_depth, bool zero_fill) {
    const KeepExternalSize keep(*this);
    store_sizes(*this, new_width, new_height, new_depth);
    return create_pixels(*this, PF_R_F32, zero_fill);
}

bool Image::create(unsigned long new_width, unsigned long new_height, unsigned long new_depth,
                   PIXEL_FORMAT format, bool zero_fill) {
    const KeepExternalSize keep(*this);
    switch (format) {
    case PF_RGB_U8:
    case PF_BGR_U8:
        if (!_create_rgb_u8(new_width, new_height, new_depth, zero_fill))
            return false;
        pixel_format = format;
        return true;
    case PF_RGBA_U8:
    case PF_BGRA_U8:
        if (!_create_rgba_u8(new_width, new_height, new_depth, zero_fill))
            return false;
        pixel_format = format;
        return true;
    case PF_RGB_F32:
        return _create_rgb_f32(new_width, new_height, new_depth, zero_fill);
    case PF_RGBA_F32:
        return _create_rgba_f32(new_width, new_height, new_depth, zero_fill);
    case PF_R_F32:
        return _create_r_f32(new_width, new_height, new_depth, zero_fill);
    case PF_NONE:
    case PF_RGB_F16:
    case PF_RGBA_F16:
    case PF_R_F16:
        return false;
    }
    return false;
}

bool Image::set_pixel(unsigned long index, const vec4& color) {
    const float channels[4] = {color.x, color.y, color.z, color.w};
    return set_pixel_v2(index, channels);
}

bool Image::set_pixel_1d(unsigned long index, const vec4& color) {
    return set_pixel(index, color);
}

bool Image::set_pixel_1d_v2(unsigned long index, const float* color) {
    return set_pixel_v2(index, color);
}

namespace {

/// Index of a pixel; one that can't be expressed is past every image.
unsigned long linear_index(unsigned long x, unsigned long y, unsigned long width) {
    return saturating_sum(saturating_product(y, width), x);
}

} // namespace

bool Image::set_pixel_2d(unsigned long x, unsigned long y, const vec4& color) {
    return set_pixel(linear_index(x, y, width), color);
}

bool Image::set_pixel_2d_v2(unsigned long x, unsigned long y, const float* color) {
    return set_pixel_v2(linear_index(x, y, width), color);
}

namespace {

bool holds_pixel(unsigned long capacity, unsigned long index, unsigned long pixel_size) {
    return index < capacity / pixel_size;
}

bool set_pixel_u8(Image& image, unsigned long index, const float* color) {
    if (!is_u8_format(image.pixel_format))
        return false;
    const auto channels = static_cast<unsigned long>(image.get_pixel_format_size());
    if (!holds_pixel(ImageAccess::u8_capacity(image), index, channels))
        return false;
    std::transform(color, color + channels, image.pixmap_u8 + index * channels,
                   [](float channel) { return byte_from_float(static_cast<double>(channel)); });
    return true;
}

bool set_pixel_f32(Image& image, unsigned long index, const float* color) {
    if (image.pixel_format != PF_RGB_F32 && image.pixel_format != PF_RGBA_F32)
        return false;
    const auto pixel_size = static_cast<unsigned long>(image.get_pixel_format_size());
    if (!holds_pixel(ImageAccess::f32_capacity(image), index, pixel_size))
        return false;
    std::memcpy(image.pixmap_f32 + index * pixel_size / sizeof(float), color, pixel_size);
    return true;
}

} // namespace

bool Image::set_pixel_v2(unsigned long index, const float* color) {
    if (!color || index >= saturating_product(width, height, depth))
        return false;
    if (pixmap_u8)
        return set_pixel_u8(*this, index, color);
    return pixmap_f32 && set_pixel_f32(*this, index, color);
}

} // namespace orvex
