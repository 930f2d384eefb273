#include "orvex/renderer/opengl/textures/private/texture_family.h"

#include <algorithm>

#include "orvex/renderer/opengl/gl/private/gl_enums.h"
#include "orvex/renderer/opengl/textures/private/pixel_packing.h"
#include "orvex/renderer/opengl/textures/private/texture_parameters.h"
#include "orvex/renderer/opengl/textures/private/texture_pixels.h"
#include "orvex/renderer/opengl/textures/private/texture_unit_family.h"
#include "orvex/renderer/records/texture_data.h"
#include "orvex/renderer/renderer.h"

// Nothing here binds a texture. An update counts the pixels before OpenGL reads them; sampler
// settings go out as they are told, whatever the record says.

namespace orvex {

// Updates

namespace {

unsigned long as_size(int value) {
    return static_cast<unsigned long>(std::max(value, 0));
}

/// What the texture has in other contexts is to be loaded anew there.
void mark_updated(TextureData& texture) {
    texture.needs_gpu_update = false;
    for (TextureObject& object : texture.gl_elsewhere)
        object.outdated = true;
}

} // namespace

bool TextureFamily::update_1d(TextureData* texture, int x, int width) const {
    if (!texture || texture->type != TEXTURE_TYPE_1D)
        return false;
    const TexturePixels pixels = texture_pixels_to_update(*texture, texture->get_pixel_format());
    if (!pixels.has(as_size(width), 1))
        return false;
    if (pixels.data) {
        glPixelStorei(GL_UNPACK_ALIGNMENT, unpack_alignment(as_size(width)));
        glTexSubImage1D(GL_TEXTURE_1D, 0, x, width, pixels.gl.format, pixels.gl.type, pixels.data);
    }
    mark_updated(*texture);
    return true;
}

bool TextureFamily::update_2d(TextureData* texture, int x, int y, int width, int height) const {
    if (!texture || texture->type != TEXTURE_TYPE_2D)
        return false;
    const TexturePixels pixels = texture_pixels_to_update(*texture, texture->get_pixel_format());
    if (!pixels.has(as_size(width), as_size(height)))
        return false;
    if (pixels.data) {
        glPixelStorei(GL_UNPACK_ALIGNMENT, unpack_alignment(as_size(width)));
        glTexSubImage2D(GL_TEXTURE_2D, 0, x, y, width, height, pixels.gl.format, pixels.gl.type,
                        pixels.data);
    }
    mark_updated(*texture);
    return true;
}

bool TextureFamily::update_2d_pixels(TextureData* texture, int x, int y, int width, int height,
                                     PIXEL_FORMAT format, const void* pixels) const {
    if (!texture || !pixels || texture->type != TEXTURE_TYPE_2D ||
        (texture->gen_mipmaps && !gl.glGenerateMipmap) || PixelUnpacking::current().from_buffer)
        return false;
    const GlPixelFormat source = gl_pixel_format_to_update(format);
    if (source.known) {
        glPixelStorei(GL_UNPACK_ALIGNMENT, unpack_alignment(as_size(width)));
        glTexSubImage2D(GL_TEXTURE_2D, 0, x, y, width, height, source.format, source.type, pixels);
    }
    mark_updated(*texture);
    // The sampler settings go out once more, as after a load.
    glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MAX_ANISOTROPY_EXT, texture->anisotropy);
    set_up_2d_levels(texture);
    return true;
}

bool TextureFamily::update_cube(TextureData* texture) const {
    for (int face = 0; face < num_cube_faces; ++face)
        if (!update_cube_face(texture, static_cast<CUBEMAP_FACE>(face)))
            return false;
    return true;
}

bool TextureFamily::update_cube_face(TextureData* texture, CUBEMAP_FACE face) const {
    if (!texture || texture->type != TEXTURE_TYPE_CUBE || !is_cube_face(face))
        return false;
    const unsigned long size = texture->get_cubemap_size();
    const TexturePixels pixels =
        texture_pixels_to_update(texture->cubemap_faces[face].image, texture->get_pixel_format());
    if (!pixels.has(size, size))
        return false;
    if (pixels.data) {
        glPixelStorei(GL_UNPACK_ALIGNMENT, unpack_alignment(size));
        glTexSubImage2D(gl_cubemap_face(face), 0, 0, 0, static_cast<GLsizei>(size),
                        static_cast<GLsizei>(size), pixels.gl.format, pixels.gl.type, pixels.data);
    }
    mark_updated(*texture);
    return true;
}

// Sampler settings

void TextureFamily::set_addressing_mode(const TextureData* texture,
                                        SAMPLER_ADDRESSING_MODE mode) const {
    const GLenum target = gl_texture_target(texture);
    const auto wrap = static_cast<GLint>(gl_addressing_mode(mode));
    glTexParameteri(target, GL_TEXTURE_WRAP_S, wrap);
    glTexParameteri(target, GL_TEXTURE_WRAP_T, wrap);
}

void TextureFamily::set_filtering_mode(const TextureData* texture,
                                       SAMPLER_FILTERING_MODE mode) const {
    if (!texture)
        return;
    const GLenum target = gl_texture_target(texture);
    switch (mode) {
    case FILTERING_NEAREST:
        return set_texture_filters(target, GL_NEAREST, GL_NEAREST);
    case FILTERING_TRILINEAR:
        return set_texture_filters(target, GL_LINEAR, GL_LINEAR_MIPMAP_LINEAR);
    case FILTERING_LINEAR:
        break;
    }
    set_texture_filters(target, GL_LINEAR, GL_LINEAR);
}

void TextureFamily::set_anisotropy(const TextureData* texture, float value) const {
    const float sent = std::max(1.0f, std::min(value, renderer.get_max_texture_anisotropy()));
    glTexParameterf(gl_texture_target(texture), GL_TEXTURE_MAX_ANISOTROPY_EXT, sent);
}

} // namespace orvex
