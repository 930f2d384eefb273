#include "orvex/renderer/opengl/private/renderer_opengl.h"

#include <algorithm>

#include "orvex/renderer/opengl/gl/private/gl_debug.h"
#include "orvex/renderer/opengl/gl/private/gl_enums.h"
#include "orvex/renderer/opengl/textures/private/texture_parameters.h"
#include "orvex/renderer/opengl/textures/private/texture_pixels.h"
#include "orvex/renderer/records/texture_data.h"

namespace orvex {

// Loads

bool RendererOpenGL::can_load_texture(TextureData* texture) const {
    return gl.glActiveTexture != nullptr &&
           (!texture->gen_mipmaps || texture->type == TEXTURE_TYPE_1D ||
            gl.glGenerateMipmap != nullptr);
}

void RendererOpenGL::start_texture_load(TextureData* texture, unsigned int target,
                                        unsigned long unit) {
    // What a failed load left behind goes; an id that somebody else made isn't ours to delete.
    if (texture->opengl_texture_id_generated && texture->opengl_texture_id != 0)
        glDeleteTextures(1, &texture->opengl_texture_id);
    const unsigned long last = ctx.num_texture_units > 0 ? ctx.num_texture_units - 1 : 0;
    activate_texture_unit(std::min(unit, last));
    glGenTextures(1, &texture->opengl_texture_id);
    texture->opengl_texture_id_generated = true;
    texture->opengl_texture_id_borrowed = false;
    glBindTexture(target, texture->opengl_texture_id);
    label_gl_object(gl, GL_TEXTURE, texture->opengl_texture_id, "texture");
    ctx.set_texture_unit(unit, texture->opengl_texture_id);
    texture->renderer_id = getid();
    glTexParameterf(target, GL_TEXTURE_MAX_ANISOTROPY_EXT, texture->anisotropy);
}

namespace {

void finish_load(TextureData* texture) {
    texture->loaded_in_gpu_memory = true;
    texture->needs_gpu_update = false;
}

// Only linear counts here: trilinear filtering acts as nearest until it is set once more.
bool loads_linear(const TextureData* texture) {
    return texture->filtering_mode == FILTERING_LINEAR;
}

void set_plain_filters(const TextureData* texture, GLenum target) {
    const GLint filter = loads_linear(texture) ? GL_LINEAR : GL_NEAREST;
    set_texture_filters(target, filter, filter);
}

} // namespace

void RendererOpenGL::make_mipmaps(TextureData* texture, unsigned int target) {
    gl.glGenerateMipmap(target);
    if (loads_linear(texture))
        set_texture_filters(target, GL_LINEAR, GL_LINEAR_MIPMAP_LINEAR);
    else
        set_texture_filters(target, GL_NEAREST, GL_NEAREST_MIPMAP_NEAREST);
}

void RendererOpenGL::set_up_texture_2d_levels(TextureData* texture) {
    if (texture->gen_mipmaps) {
        make_mipmaps(texture, GL_TEXTURE_2D);
        return;
    }
    limit_to_base_level(GL_TEXTURE_2D);
    set_plain_filters(texture, GL_TEXTURE_2D);
}

bool RendererOpenGL::texture_1d_load(TextureData* texture, unsigned long unit) {
    if (texture == nullptr || texture->type != TEXTURE_TYPE_1D)
        return false;
    if (texture->loaded_in_gpu_memory)
        return true;
    const unsigned long width = texture->get_width();
    if (width > ctx.max_texture_size) {
        k_log_error("texture loading failed (texture size must be <= %d)",
                    static_cast<int>(ctx.max_texture_size));
        return false;
    }
    const TexturePixels pixels = texture_pixels_to_load(*texture, texture->get_pixel_format());
    if (!can_load_texture(texture) || !pixels.has(width, 1))
        return false;
    start_texture_load(texture, GL_TEXTURE_1D, unit);
    glPixelStorei(GL_UNPACK_ALIGNMENT, unpack_alignment(width));
    glTexImage1D(GL_TEXTURE_1D, 0, pixels.gl.internal_format, static_cast<GLsizei>(width), 0,
                 pixels.gl.format, pixels.gl.type, pixels.data);
    limit_to_base_level(GL_TEXTURE_1D);
    glTexParameteri(GL_TEXTURE_1D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    // The filters go to the unit's 2D texture, whichever it is; the 1D one keeps GL's own.
    set_plain_filters(texture, GL_TEXTURE_2D);
    finish_load(texture);
    k_log_debug("texture 1D loaded ok (GL id=%d, size=%d)",
                static_cast<int>(texture->opengl_texture_id), static_cast<int>(width));
    return true;
}

bool RendererOpenGL::texture_2d_load(TextureData* texture, unsigned long unit) {
    if (texture == nullptr || texture->type != TEXTURE_TYPE_2D)
        return false;
    if (texture->loaded_in_gpu_memory)
        return true;
    const unsigned long width = texture->get_width();
    const unsigned long height = texture->get_height();
    if (width > ctx.max_texture_size || height > ctx.max_texture_size) {
        const auto limit = static_cast<int>(ctx.max_texture_size);
        k_log_error("texture loading failed (texture size must be <= %dx%d)", limit, limit);
        return false;
    }
    const TexturePixels pixels = texture_pixels_to_load(*texture, texture->get_pixel_format());
    if (!can_load_texture(texture) || !pixels.has(width, height))
        return false;
    start_texture_load(texture, GL_TEXTURE_2D, unit);
    glPixelStorei(GL_UNPACK_ALIGNMENT, unpack_alignment(width));
    glTexImage2D(GL_TEXTURE_2D, 0, pixels.gl.internal_format, static_cast<GLsizei>(width),
                 static_cast<GLsizei>(height), 0, pixels.gl.format, pixels.gl.type, pixels.data);
    set_up_texture_2d_levels(texture);
    set_texture_addressing_mode(texture, texture->addressing_mode);
    finish_load(texture);
    k_log_debug("texture loaded ok (GL id=%d, size=%dx%d)",
                static_cast<int>(texture->opengl_texture_id), static_cast<int>(width),
                static_cast<int>(height));
    return true;
}

namespace {

constexpr int num_faces = 6;

} // namespace

bool RendererOpenGL::texture_cube_load(TextureData* texture, unsigned long unit) {
    if (texture == nullptr || texture->type != TEXTURE_TYPE_CUBE)
        return false;
    if (texture->loaded_in_gpu_memory)
        return true;
    const unsigned long size = texture->get_cubemap_size();
    if (size > ctx.max_texture_size) {
        const auto limit = static_cast<int>(ctx.max_texture_size);
        k_log_error("cube texture loading failed (texture size must be <= %dx%d)", limit, limit);
        return false;
    }
    if (!can_load_texture(texture))
        return false;
    start_texture_load(texture, GL_TEXTURE_CUBE_MAP, unit);
    for (int face = 0; face < num_faces; ++face)
        if (!texture_cube_load_face(texture, static_cast<CUBEMAP_FACE>(face), unit))
            return false;
    for (const GLenum wrap : {GL_TEXTURE_WRAP_S, GL_TEXTURE_WRAP_T, GL_TEXTURE_WRAP_R})
        glTexParameteri(GL_TEXTURE_CUBE_MAP, wrap, GL_CLAMP_TO_EDGE);
    if (texture->gen_mipmaps)
        make_mipmaps(texture, GL_TEXTURE_CUBE_MAP);
    else
        set_plain_filters(texture, GL_TEXTURE_CUBE_MAP);
    finish_load(texture);
    k_log_debug("cube texture loaded ok (GL id=%d, size=%dx%d)",
                static_cast<int>(texture->opengl_texture_id), static_cast<int>(size),
                static_cast<int>(size));
    return true;
}

bool RendererOpenGL::texture_cube_load_face(TextureData* texture, CUBEMAP_FACE face,
                                            unsigned long) {
    if (texture == nullptr || texture->opengl_texture_id == 0)
        return false;
    const unsigned long size = texture->get_cubemap_size();
    const TexturePixels pixels =
        texture_pixels_to_load(texture->cubemap_faces[face].image, texture->get_pixel_format());
    if (!pixels.has(size, size))
        return false;
    glPixelStorei(GL_UNPACK_ALIGNMENT, unpack_alignment(size));
    glTexImage2D(gl_cubemap_face(face), 0, pixels.gl.internal_format, static_cast<GLsizei>(size),
                 static_cast<GLsizei>(size), 0, pixels.gl.format, pixels.gl.type, pixels.data);
    return true;
}

// Updates

namespace {

unsigned long as_size(int value) {
    return static_cast<unsigned long>(std::max(value, 0));
}

} // namespace

bool RendererOpenGL::texture_1d_update(TextureData* texture, int x, int width) {
    if (texture == nullptr || texture->type != TEXTURE_TYPE_1D)
        return false;
    const TexturePixels pixels = texture_pixels_to_update(*texture, texture->get_pixel_format());
    if (!pixels.has(as_size(width), 1))
        return false;
    if (pixels.data != nullptr) {
        glPixelStorei(GL_UNPACK_ALIGNMENT, unpack_alignment(as_size(width)));
        glTexSubImage1D(GL_TEXTURE_1D, 0, x, width, pixels.gl.format, pixels.gl.type, pixels.data);
    }
    texture->needs_gpu_update = false;
    return true;
}

bool RendererOpenGL::texture_2d_update(TextureData* texture, int y, int x, int width, int height) {
    if (texture == nullptr || texture->type != TEXTURE_TYPE_2D)
        return false;
    const TexturePixels pixels = texture_pixels_to_update(*texture, texture->get_pixel_format());
    if (!pixels.has(as_size(width), as_size(height)))
        return false;
    if (pixels.data != nullptr) {
        glPixelStorei(GL_UNPACK_ALIGNMENT, unpack_alignment(as_size(width)));
        glTexSubImage2D(GL_TEXTURE_2D, 0, x, y, width, height, pixels.gl.format, pixels.gl.type,
                        pixels.data);
    }
    texture->needs_gpu_update = false;
    return true;
}

bool RendererOpenGL::texture_2d_update_pixmap(TextureData* texture, int y, int x, int width,
                                              int height, PIXEL_FORMAT format, void* pixels) {
    if (texture == nullptr || pixels == nullptr || texture->type != TEXTURE_TYPE_2D ||
        (texture->gen_mipmaps && gl.glGenerateMipmap == nullptr))
        return false;
    const GlPixelFormat source = gl_pixel_format_to_update(format);
    if (source.known) {
        glPixelStorei(GL_UNPACK_ALIGNMENT, unpack_alignment(as_size(width)));
        glTexSubImage2D(GL_TEXTURE_2D, 0, x, y, width, height, source.format, source.type, pixels);
    }
    texture->needs_gpu_update = false;
    glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MAX_ANISOTROPY_EXT, texture->anisotropy);
    set_up_texture_2d_levels(texture);
    return true;
}

bool RendererOpenGL::texture_cube_update(TextureData* texture) {
    for (int face = 0; face < num_faces; ++face)
        if (!texture_cube_update_face(texture, static_cast<CUBEMAP_FACE>(face)))
            return false;
    return true;
}

bool RendererOpenGL::texture_cube_update_face(TextureData* texture, CUBEMAP_FACE face) {
    if (texture == nullptr || texture->type != TEXTURE_TYPE_CUBE)
        return false;
    const unsigned long size = texture->get_cubemap_size();
    const TexturePixels pixels =
        texture_pixels_to_update(texture->cubemap_faces[face].image, texture->get_pixel_format());
    if (!pixels.has(size, size))
        return false;
    if (pixels.data != nullptr) {
        glPixelStorei(GL_UNPACK_ALIGNMENT, unpack_alignment(size));
        glTexSubImage2D(gl_cubemap_face(face), 0, 0, 0, static_cast<GLsizei>(size),
                        static_cast<GLsizei>(size), pixels.gl.format, pixels.gl.type, pixels.data);
    }
    texture->needs_gpu_update = false;
    return true;
}

// Sampler settings

void RendererOpenGL::set_texture_addressing_mode(TextureData* texture,
                                                 SAMPLER_ADDRESSING_MODE mode) {
    const GLenum target = _get_gl_texture_target(texture);
    const auto wrap = static_cast<GLint>(gl_addressing_mode(mode));
    glTexParameteri(target, GL_TEXTURE_WRAP_S, wrap);
    glTexParameteri(target, GL_TEXTURE_WRAP_T, wrap);
}

void RendererOpenGL::set_texture_filtering_mode(TextureData* texture, SAMPLER_FILTERING_MODE mode) {
    if (texture == nullptr)
        return;
    const GLenum target = _get_gl_texture_target(texture);
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

void RendererOpenGL::set_texture_anisotropy(TextureData* texture, float value) {
    const float sent = std::max(1.0f, std::min(value, get_max_texture_anisotropy()));
    glTexParameterf(_get_gl_texture_target(texture), GL_TEXTURE_MAX_ANISOTROPY_EXT, sent);
}

} // namespace orvex
