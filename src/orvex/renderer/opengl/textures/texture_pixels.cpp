#include "orvex/renderer/opengl/textures/private/texture_pixels.h"

#include <GL/glext.h>

#include "orvex/renderer/opengl/textures/private/pixel_packing.h"
#include "orvex/renderer/records/private/image_access.h"

namespace orvex {

namespace {

unsigned long pixel_size(const GlPixelFormat& gl) {
    const unsigned long channel_size = gl.type == GL_UNSIGNED_BYTE ? 1 : sizeof(GLfloat);
    switch (gl.format) {
    case GL_RED:
        return channel_size;
    case GL_RGB:
    case GL_BGR:
        return channel_size * 3;
    default:
        return channel_size * 4;
    }
}

TexturePixels source_of(const Image& image, const GlPixelFormat& gl) {
    if (!gl.known)
        return {gl, nullptr, 0};
    if (gl.type == GL_UNSIGNED_BYTE)
        return {gl, image.get_u8_ptr(), ImageAccess::readable_u8_bytes(image)};
    return {gl, image.get_f32_ptr(), ImageAccess::f32_capacity(image)};
}

} // namespace

bool TexturePixels::has(unsigned long width, unsigned long height) const {
    const PixelUnpacking unpacking = PixelUnpacking::current();
    if (unpacking.from_buffer)
        return false;
    const auto alignment = static_cast<unsigned long>(unpack_alignment(width));
    return !data || unpacking.reach_of(width, height, pixel_size(gl), alignment) <= bytes;
}

TexturePixels texture_pixels_to_load(const Image& image, PIXEL_FORMAT format) {
    return source_of(image, gl_pixel_format(format));
}

TexturePixels texture_pixels_to_update(const Image& image, PIXEL_FORMAT format) {
    return source_of(image, gl_pixel_format_to_update(format));
}

GlPixelFormat gl_pixel_format_to_update(PIXEL_FORMAT format) {
    const bool half_float = format == PF_RGB_F16 || format == PF_RGBA_F16 || format == PF_R_F16;
    return gl_pixel_format(half_float ? PF_NONE : format);
}

int unpack_alignment(unsigned long width) {
    if (width % 4 == 0)
        return 4;
    return width % 2 == 0 ? 2 : 1;
}

} // namespace orvex
