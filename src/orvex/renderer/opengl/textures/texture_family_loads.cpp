// Each load goes the same way: the limits, the pixels, a texture on a unit, the upload, the sampler
// settings, and the marks on the record.

#include "orvex/renderer/opengl/textures/private/texture_family.h"

#include <algorithm>

#include "orvex/renderer/opengl/gl/private/gl_debug.h"
#include "orvex/renderer/opengl/gl/private/gl_enums.h"
#include "orvex/renderer/opengl/textures/private/texture_parameters.h"
#include "orvex/renderer/opengl/textures/private/texture_pixels.h"
#include "orvex/renderer/opengl/textures/private/texture_unit_family.h"
#include "orvex/renderer/records/texture_data.h"
#include "orvex/renderer/renderer.h"

namespace orvex {

bool TextureFamily::can_load(const TextureData* texture) const {
    return gl.glActiveTexture &&
           (!texture->gen_mipmaps || texture->type == TEXTURE_TYPE_1D || gl.glGenerateMipmap);
}

bool TextureFamily::start_load(TextureData* texture, GLenum target, unsigned long unit) {
    // What a failed load left behind goes; an id that somebody else made isn't ours to delete.
    if (texture->opengl_texture_id_generated && texture->opengl_texture_id != 0)
        glDeleteTextures(1, &texture->opengl_texture_id);
    texture->opengl_texture_id = 0;

    // A new texture on the unit, or on the last one there is
    RendererOpenGLCtx& ctx = state.ctx;
    const unsigned long last = ctx.num_texture_units > 0 ? ctx.num_texture_units - 1 : 0;
    units.activate(std::min(unit, last));
    glGenTextures(1, &texture->opengl_texture_id);
    texture->opengl_texture_id_generated = texture->opengl_texture_id != 0;
    texture->opengl_texture_id_borrowed = false;
    if (texture->opengl_texture_id == 0) {
        state.k_log_error("texture loading failed (no memory for a GL object)");
        return false;
    }
    glBindTexture(target, texture->opengl_texture_id);
    label_gl_object(gl, GL_TEXTURE, texture->opengl_texture_id, "texture");
    ctx.set_texture_unit(unit, texture->opengl_texture_id);
    texture->renderer_id = state.renderer_id();
    glTexParameterf(target, GL_TEXTURE_MAX_ANISOTROPY_EXT, texture->anisotropy);
    return true;
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

void TextureFamily::make_mipmaps(const TextureData* texture, GLenum target) const {
    gl.glGenerateMipmap(target);
    if (loads_linear(texture))
        set_texture_filters(target, GL_LINEAR, GL_LINEAR_MIPMAP_LINEAR);
    else
        set_texture_filters(target, GL_NEAREST, GL_NEAREST_MIPMAP_NEAREST);
}

void TextureFamily::set_up_2d_levels(const TextureData* texture) const {
    if (texture->gen_mipmaps) {
        make_mipmaps(texture, GL_TEXTURE_2D);
        return;
    }
    limit_to_base_level(GL_TEXTURE_2D);
    set_plain_filters(texture, GL_TEXTURE_2D);
}

namespace {

bool has_pixels(const TextureData& texture) {
    const Image& image =
        texture.type == TEXTURE_TYPE_CUBE ? texture.cubemap_faces[0].image : texture;
    return image.get_u8_ptr() || image.get_f32_ptr();
}

} // namespace

bool TextureFamily::load(TextureData* texture, unsigned long unit) {
    if (!texture || !has_pixels(*texture))
        return false;
    switch (texture->type) {
    case TEXTURE_TYPE_1D:
        return load_1d(texture, unit);
    case TEXTURE_TYPE_CUBE:
        return load_cube(texture, unit);
    default:
        return load_2d(texture, unit);
    }
}

bool TextureFamily::load_1d(TextureData* texture, unsigned long unit) {
    if (!texture || texture->type != TEXTURE_TYPE_1D)
        return false;
    state.look_at_context();
    enter_context(*texture);
    if (texture->loaded_in_gpu_memory)
        return true;
    const unsigned long width = texture->get_width();
    if (width > state.ctx.max_texture_size) {
        state.k_log_error("texture loading failed (texture size must be <= %d)",
                          static_cast<int>(state.ctx.max_texture_size));
        return false;
    }
    const TexturePixels pixels = texture_pixels_to_load(*texture, texture->get_pixel_format());
    if (!can_load(texture) || !pixels.has(width, 1))
        return false;

    if (!start_load(texture, GL_TEXTURE_1D, unit))
        return false;
    glPixelStorei(GL_UNPACK_ALIGNMENT, unpack_alignment(width));
    glTexImage1D(GL_TEXTURE_1D, 0, pixels.gl.internal_format, static_cast<GLsizei>(width), 0,
                 pixels.gl.format, pixels.gl.type, pixels.data);
    limit_to_base_level(GL_TEXTURE_1D);
    glTexParameteri(GL_TEXTURE_1D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    // The filters go to the unit's 2D texture, whichever it is; the 1D one keeps GL's own.
    set_plain_filters(texture, GL_TEXTURE_2D);

    finish_load(texture);
    state.k_log_debug("texture 1D loaded ok (GL id=%d, size=%d)",
                      static_cast<int>(texture->opengl_texture_id), static_cast<int>(width));
    return true;
}

bool TextureFamily::load_2d(TextureData* texture, unsigned long unit) {
    if (!texture || texture->type != TEXTURE_TYPE_2D)
        return false;
    state.look_at_context();
    enter_context(*texture);
    if (texture->loaded_in_gpu_memory)
        return true;
    const unsigned long width = texture->get_width();
    const unsigned long height = texture->get_height();
    if (std::max(width, height) > state.ctx.max_texture_size) {
        const auto limit = static_cast<int>(state.ctx.max_texture_size);
        state.k_log_error("texture loading failed (texture size must be <= %dx%d)", limit, limit);
        return false;
    }
    const TexturePixels pixels = texture_pixels_to_load(*texture, texture->get_pixel_format());
    if (!can_load(texture) || !pixels.has(width, height))
        return false;

    if (!start_load(texture, GL_TEXTURE_2D, unit))
        return false;
    glPixelStorei(GL_UNPACK_ALIGNMENT, unpack_alignment(width));
    glTexImage2D(GL_TEXTURE_2D, 0, pixels.gl.internal_format, static_cast<GLsizei>(width),
                 static_cast<GLsizei>(height), 0, pixels.gl.format, pixels.gl.type, pixels.data);
    set_up_2d_levels(texture);
    renderer.set_texture_addressing_mode(texture, texture->addressing_mode);

    finish_load(texture);
    state.k_log_debug("texture loaded ok (GL id=%d, size=%dx%d)",
                      static_cast<int>(texture->opengl_texture_id), static_cast<int>(width),
                      static_cast<int>(height));
    return true;
}

namespace {

constexpr GLenum cube_directions[] = {GL_TEXTURE_WRAP_S, GL_TEXTURE_WRAP_T, GL_TEXTURE_WRAP_R};

} // namespace

bool TextureFamily::load_cube(TextureData* texture, unsigned long unit) {
    if (!texture || texture->type != TEXTURE_TYPE_CUBE)
        return false;
    state.look_at_context();
    enter_context(*texture);
    if (texture->loaded_in_gpu_memory)
        return true;
    const unsigned long size = texture->get_cubemap_size();
    if (size > state.ctx.max_texture_size) {
        const auto limit = static_cast<int>(state.ctx.max_texture_size);
        state.k_log_error("cube texture loading failed (texture size must be <= %dx%d)", limit,
                          limit);
        return false;
    }
    if (!can_load(texture))
        return false;

    // A face without pixels ends the load; the next one deletes what this one has made.
    if (!start_load(texture, GL_TEXTURE_CUBE_MAP, unit))
        return false;
    for (int face = 0; face < num_cube_faces; ++face)
        if (!load_cube_face(texture, static_cast<CUBEMAP_FACE>(face)))
            return false;
    for (const GLenum wrap : cube_directions)
        glTexParameteri(GL_TEXTURE_CUBE_MAP, wrap, GL_CLAMP_TO_EDGE);
    if (texture->gen_mipmaps)
        make_mipmaps(texture, GL_TEXTURE_CUBE_MAP);
    else
        set_plain_filters(texture, GL_TEXTURE_CUBE_MAP);

    finish_load(texture);
    state.k_log_debug("cube texture loaded ok (GL id=%d, size=%dx%d)",
                      static_cast<int>(texture->opengl_texture_id), static_cast<int>(size),
                      static_cast<int>(size));
    return true;
}

bool TextureFamily::load_cube_face(TextureData* texture, CUBEMAP_FACE face) {
    if (!texture || texture->opengl_texture_id == 0 || !is_cube_face(face))
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

} // namespace orvex
