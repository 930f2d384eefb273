// How many bytes lie behind the pointers of an image. A note counts only while the field still
// holds the pointer that it was made for; without one, a host's own pointer is taken at the image's
// word.

#include "orvex/renderer/records/private/image_access.h"

#include <climits>
#include <cstdint>
#include <new>
#include <utility>

#include "orvex/math/private/sizes.h"

namespace orvex {

namespace {

/// One below what a product of sizes saturates to: no size that can't be expressed ever fits.
constexpr unsigned long unlimited = ULONG_MAX - 1;

} // namespace

int bytes_per_pixel(PIXEL_FORMAT format) {
    constexpr int sizes[] = {0, 3, 3, 4, 4, 12, 16, 4};
    return format >= PF_RGB_U8 && format <= PF_R_F32 ? sizes[format] : 0;
}

bool is_u8_format(PIXEL_FORMAT format) {
    return format >= PF_RGB_U8 && format <= PF_BGRA_U8;
}

unsigned long ImageAccess::u8_capacity(const Image& image) {
    if (!image.pixmap_u8)
        return 0;
    return image.u8_allocation.buffer == image.pixmap_u8 ? image.u8_allocation.bytes : unlimited;
}

unsigned long ImageAccess::f32_capacity(const Image& image) {
    if (!image.pixmap_f32)
        return 0;
    return image.f32_allocation.buffer == image.pixmap_f32 ? image.f32_allocation.bytes : unlimited;
}

unsigned long ImageAccess::claimed_bytes(const Image& image) {
    return saturating_product(saturating_product(image.width, image.height, image.depth),
                              static_cast<unsigned long>(image.get_pixel_format_size()));
}

unsigned long ImageAccess::held_u8_bytes(const Image& image) {
    const unsigned long capacity = u8_capacity(image);
    return capacity == unlimited ? claimed_bytes(image) : capacity;
}

unsigned long ImageAccess::held_f32_bytes(const Image& image) {
    const unsigned long capacity = f32_capacity(image);
    return capacity == unlimited ? claimed_bytes(image) : capacity;
}

namespace {

/// Decoders deliver three channels; an image whose format has moved on to floats says no more.
unsigned long claimed_external_bytes(const Image& image) {
    const int pixel_size = is_u8_format(image.pixel_format) ? image.get_pixel_format_size() : 3;
    return saturating_product(image.width, image.height, static_cast<unsigned long>(pixel_size));
}

} // namespace

unsigned long ImageAccess::external_bytes(const Image& image) {
    if (!image.pixmap_external)
        return 0;
    return image.external.buffer == image.pixmap_external ? image.external.bytes
                                                          : claimed_external_bytes(image);
}

unsigned long ImageAccess::readable_u8_bytes(const Image& image) {
    return image.pixmap_u8 ? u8_capacity(image) : external_bytes(image);
}

unsigned long ImageAccess::readable_bytes(const Image& image, PIXEL_FORMAT format) {
    return is_u8_format(format) ? readable_u8_bytes(image) : f32_capacity(image);
}

namespace {

/// Not every compiler makes `new` refuse what no array can be, so that every allocator is asked for
/// something it could have.
void check_array_size(unsigned long bytes) {
    if (bytes > PTRDIFF_MAX)
        throw std::bad_array_new_length();
}

} // namespace

std::unique_ptr<unsigned char[]> ImageAccess::zeroed_bytes(unsigned long bytes) {
    if (bytes > PTRDIFF_MAX)
        return nullptr;
    return std::unique_ptr<unsigned char[]>(new (std::nothrow) unsigned char[bytes]());
}

void ImageAccess::allocate_u8(Image& image, unsigned long bytes) {
    image._delete_u8_ptr();
    check_array_size(bytes);
    adopt_u8(image, new unsigned char[bytes], bytes);
}

void ImageAccess::allocate_f32(Image& image, unsigned long bytes) {
    image._delete_f32_ptr();
    check_array_size(bytes);
    const unsigned long floats = bytes / sizeof(float) + (bytes % sizeof(float) != 0);
    adopt_f32(image, new float[floats], floats * sizeof(float));
}

void ImageAccess::adopt_u8(Image& image, unsigned char* buffer, unsigned long bytes) {
    delete[] std::exchange(image.pixmap_u8, buffer);
    image.u8_allocation = {buffer, bytes};
}

void ImageAccess::adopt_f32(Image& image, float* buffer, unsigned long bytes) {
    delete[] std::exchange(image.pixmap_f32, buffer);
    image.f32_allocation = {buffer, bytes};
}

void ImageAccess::note_external(Image& image, unsigned long bytes) {
    image.external = {image.pixmap_external, bytes};
}

void ImageAccess::note_decoded(Image& image) {
    note_external(image, image.pixmap_external ? claimed_external_bytes(image) : 0);
}

void ImageAccess::drop_small_u8(Image& image) {
    const unsigned long needed = saturating_product(
        image.width, image.height, static_cast<unsigned long>(image.get_pixel_format_size()));
    if (u8_capacity(image) < needed)
        image._delete_u8_ptr();
}

} // namespace orvex
