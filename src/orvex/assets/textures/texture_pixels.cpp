// What a host does to the pixels of a texture, and what comes back from the GPU. An edit that
// worked marks the pixels as newer where the next bind is to send them.

#include "orvex/assets/textures/texture.h"

#include <algorithm>
#include <memory>

#include "orvex/math/private/pixel_math.h"
#include "orvex/math/vec4.h"
#include "orvex/renderer/records/private/image_access.h"
#include "orvex/renderer/records/texture_data.h"
#include "orvex/renderer/render_target.h"
#include "orvex/renderer/renderer.h"

namespace orvex {

namespace {

/// Tells the next bind to send the pixels if an edit worked.
bool mark_newer(TextureData* data, bool edited) {
    if (edited)
        data->needs_gpu_update = true;
    return edited;
}

} // namespace

bool Texture::update_pixel_format(PIXEL_FORMAT format) {
    return record && mark_newer(record, record->update_pixel_format(format));
}

bool Texture::flip_horizontal() {
    return record && record->flip_horizontal();
}

bool Texture::flip_vertical() {
    return record && record->flip_vertical();
}

bool Texture::fill_with_noise(unsigned long count, const vec4& color_a, const vec4& color_b,
                              unsigned int seed) {
    return record && record->fill_with_noise(count, color_a, color_b, seed);
}

bool Texture::set_texel_1d(unsigned long index, const vec4& color) {
    return record && mark_newer(record, record->set_pixel_1d(index, color));
}

bool Texture::set_texel_1d_v2(unsigned long index, const float* color) {
    return record && mark_newer(record, record->set_pixel_1d_v2(index, color));
}

bool Texture::set_texel_2d(unsigned long x, unsigned long y, const vec4& color) {
    return record && mark_newer(record, record->set_pixel_2d(x, y, color));
}

bool Texture::set_texel_2d_v2(unsigned long x, unsigned long y, const float* color) {
    return record && mark_newer(record, record->set_pixel_2d_v2(x, y, color));
}

bool Texture::update_pixmap_rgb_u8(const void* pixels) {
    return record && mark_newer(record, record->update_pixmap_rgb_u8(pixels));
}

bool Texture::update_pixmap_rgba_u8(const void* pixels) {
    return record && mark_newer(record, record->update_pixmap_rgba_u8(pixels));
}

bool Texture::update_pixmap_rgb_f32(const void* pixels) {
    return record && mark_newer(record, record->update_pixmap_rgb_f32(pixels));
}

bool Texture::update_pixmap_rgba_f32(const void* pixels) {
    return record && mark_newer(record, record->update_pixmap_rgba_f32(pixels));
}

// -------------------------------------------------------------------------------- read-back

namespace {

unsigned long as_size(int value) {
    return static_cast<unsigned long>(std::max(value, 0));
}

/// Whether the 8-bit pixels can take `bytes` as they are. Only the width is compared, with both
/// sizes of what is read.
bool can_take(const TextureData& data, unsigned long width, unsigned long height,
              unsigned long bytes) {
    return data.get_width() == width && data.get_width() == height && data.get_u8_ptr() &&
           ImageAccess::readable_u8_bytes(data) >= bytes;
}

/// What a render target writes; null without memory for it.
struct ReadPixels {
    unsigned long bytes;
    std::unique_ptr<unsigned char[]> data;

    explicit ReadPixels(unsigned long size)
        : bytes(size)
        , data(ImageAccess::zeroed_bytes(size)) {}
};

/// What was read, in the order of its bytes, cut or followed by zeros to the size of the pixels.
void copy_what_fits(unsigned char* pixels, unsigned long bytes, const ReadPixels& read) {
    const unsigned long copied = std::min(bytes, read.bytes);
    std::copy_n(read.data.get(), copied, pixels);
    std::fill_n(pixels + copied, bytes - copied, static_cast<unsigned char>(0));
}

} // namespace

bool Texture::update_pixmap_rgb_u8_from_render_target(RenderTarget* target, unsigned long) {
    if (!target || !record)
        return false;
    const ReadPixels read(target->get_read_back_size(3));
    if (!read.data)
        return false;
    const unsigned long edge = as_size(target->get_width());
    const unsigned long bytes = edge * edge * 3;
    if (record->get_height() != edge || !can_take(*record, edge, edge, bytes))
        record->create(edge, edge, 1, PF_RGB_U8, true);
    if (!target->read_color_pixmap_rgb_u8(read.data.get()))
        return false;
    copy_what_fits(record->get_pixmap_u8_ptr(), bytes, read);
    return true;
}

bool Texture::update_pixmap_rgba_u8_from_render_target(RenderTarget* target, unsigned long) {
    if (!target || !record)
        return false;
    const ReadPixels read(target->get_read_back_size(4));
    if (!read.data)
        return false;
    const unsigned long edge = as_size(target->get_width());
    const unsigned long bytes = edge * edge * 4;
    if (record->get_height() != edge || !can_take(*record, edge, edge, bytes)) {
        record->create(edge, edge, 1, PF_RGBA_U8, false);
        record->type = TEXTURE_TYPE_2D;
    }
    if (!target->read_color_pixmap_rgba_u8(read.data.get()))
        return false;
    copy_what_fits(record->get_pixmap_u8_ptr(), bytes, read);
    return true;
}

bool Texture::update_pixmap_rgba_u8_from_framebuffer(Renderer* renderer) {
    if (!renderer || !record)
        return false;
    int size = 0, framebuffer_width = 0, framebuffer_height = 0;
    renderer->get_color_buffer_size(&size, &framebuffer_width, &framebuffer_height);
    const unsigned long width = as_size(framebuffer_width);
    const unsigned long height = as_size(framebuffer_height);
    const unsigned long bytes = width * height * 4;
    if (!can_take(*record, width, height, bytes)) {
        record->create(width, height, 1, PF_RGBA_U8, false);
        record->type = TEXTURE_TYPE_2D;
    }
    renderer->get_color_buffer(record->get_pixmap_u8_ptr());
    return true;
}

} // namespace orvex
