#include "orvex/renderer/opengl/private/renderer_opengl.h"

#include <algorithm>
#include <cstring>
#include <memory>

#include "orvex/renderer/opengl/gl/private/gl_enums.h"
#include "orvex/renderer/opengl/textures/private/pixel_packing.h"
#include "orvex/renderer/records/private/image_access.h"
#include "orvex/renderer/records/texture_data.h"

namespace orvex {

unsigned int RendererOpenGL::_get_gl_texture_target(TextureData* texture) {
    switch (texture != nullptr ? texture->type : TEXTURE_TYPE_2D) {
    case TEXTURE_TYPE_1D:
        return GL_TEXTURE_1D;
    case TEXTURE_TYPE_3D:
        return GL_TEXTURE_3D;
    case TEXTURE_TYPE_CUBE:
        return GL_TEXTURE_CUBE_MAP;
    case TEXTURE_TYPE_2D_MULTISAMPLE:
        return GL_TEXTURE_2D_MULTISAMPLE;
    case TEXTURE_TYPE_RECTANGLE:
        return GL_TEXTURE_RECTANGLE;
    default:
        return GL_TEXTURE_2D;
    }
}

bool RendererOpenGL::texture_unload(TextureData* texture) {
    if (texture == nullptr || texture->opengl_texture_id == 0)
        return false;
    _remove_texture_id(texture->opengl_texture_id);
    if (!texture->opengl_texture_id_borrowed)
        glDeleteTextures(1, &texture->opengl_texture_id);
    texture->opengl_texture_id = 0;
    texture->opengl_texture_id_generated = false;
    texture->opengl_texture_id_borrowed = false;
    texture->loaded_in_gpu_memory = false;
    return true;
}

// Units

void RendererOpenGL::activate_texture_unit(unsigned long unit) {
    ctx.active_texture_unit = unit;
    gl.glActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(unit));
}

bool RendererOpenGL::bind_texture_id(unsigned int target, unsigned int id, unsigned long unit) {
    if (unit >= ctx.num_texture_units || id == 0 || gl.glActiveTexture == nullptr)
        return false;
    ctx.set_texture_unit(unit, id);
    activate_texture_unit(unit);
    glBindTexture(target, id);
    return true;
}

bool RendererOpenGL::texture_bind(TextureData* texture, unsigned long unit) {
    if (texture != nullptr)
        return bind_texture_id(_get_gl_texture_target(texture), texture->opengl_texture_id, unit);
    if (gl.glActiveTexture == nullptr)
        return false;
    ctx.set_texture_unit(unit, 0);
    activate_texture_unit(unit);
    for (const GLenum target : {GL_TEXTURE_1D, GL_TEXTURE_2D, GL_TEXTURE_2D_MULTISAMPLE,
                                GL_TEXTURE_3D, GL_TEXTURE_CUBE_MAP, GL_TEXTURE_RECTANGLE})
        glBindTexture(target, 0);
    return true;
}

bool RendererOpenGL::texture_activate(TextureData* texture, unsigned long unit) {
    return texture_bind(texture, unit);
}

bool RendererOpenGL::texture_activate_rt(unsigned int id, unsigned long unit) {
    return bind_texture_id(GL_TEXTURE_2D, id, unit);
}

bool RendererOpenGL::texture_activate_rt_ms(unsigned int id, unsigned long unit) {
    return bind_texture_id(GL_TEXTURE_2D_MULTISAMPLE, id, unit);
}

bool RendererOpenGL::texture_activate_rect_rt(unsigned int id, unsigned long unit) {
    return bind_texture_id(GL_TEXTURE_RECTANGLE, id, unit);
}

bool RendererOpenGL::reset_texture_unit(unsigned long unit) {
    if (unit >= ctx.num_texture_units || gl.glActiveTexture == nullptr)
        return false;
    ctx.set_texture_unit(unit, 0);
    activate_texture_unit(unit);
    for (const GLenum target :
         {GL_TEXTURE_1D, GL_TEXTURE_2D, GL_TEXTURE_3D, GL_TEXTURE_CUBE_MAP, GL_TEXTURE_RECTANGLE}) {
        glBindTexture(target, 0);
        glDisable(target);
    }
    if (gl.glBindImageTexture != nullptr)
        gl.glBindImageTexture(static_cast<GLuint>(unit), 0, 0, GL_FALSE, 0, GL_READ_WRITE, GL_R32F);
    activate_texture_unit(0);
    if (gl.glClientActiveTexture != nullptr) {
        gl.glClientActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(unit));
        glDisableClientState(GL_TEXTURE_COORD_ARRAY);
    }
    return true;
}

bool RendererOpenGL::reset_all_texture_units() {
    if (gl.glActiveTexture == nullptr)
        return false;
    for (unsigned long unit = 0; unit < ctx.num_texture_units; ++unit)
        reset_texture_unit(unit);
    activate_texture_unit(0);
    return true;
}

// Switches of the fixed pipeline

namespace {

void set_state(GLenum target, bool enabled) {
    if (enabled)
        glEnable(target);
    else
        glDisable(target);
}

} // namespace

void RendererOpenGL::set_texture1d_state(bool state) {
    set_state(GL_TEXTURE_1D, state);
}

void RendererOpenGL::set_texture2d_state(bool state) {
    set_state(GL_TEXTURE_2D, state);
}

void RendererOpenGL::set_texture3d_state(bool state) {
    set_state(GL_TEXTURE_3D, state);
}

void RendererOpenGL::set_texture_cube_state(bool state) {
    set_state(GL_TEXTURE_CUBE_MAP, state);
}

void RendererOpenGL::set_texture_state(TextureData* texture, bool state) {
    set_state(_get_gl_texture_target(texture), state);
}

// Image units

namespace {

GLenum image_format(PIXEL_FORMAT format) {
    switch (format) {
    case PF_RGB_U8:
        return GL_RGB;
    case PF_BGR_U8:
        return GL_BGR;
    case PF_BGRA_U8:
        return GL_BGRA;
    case PF_RGB_F32:
        return GL_RGB32F;
    case PF_RGBA_F32:
        return GL_RGBA32F;
    case PF_R_F32:
        return GL_R32F;
    case PF_RGBA_U8:
    case PF_NONE:
    case PF_RGB_F16:
    case PF_RGBA_F16:
    case PF_R_F16:
        return GL_RGBA;
    }
    return GL_RGBA;
}

} // namespace

bool RendererOpenGL::image_texture_bind(TextureData* texture, unsigned long unit,
                                        DATA_ACCESS_TYPE access) {
    if (gl.glBindImageTexture == nullptr)
        return false;
    const auto image_unit = static_cast<GLuint>(unit);
    if (texture == nullptr) {
        gl.glBindImageTexture(image_unit, 0, 0, GL_FALSE, 0, GL_WRITE_ONLY, GL_R32F);
        return true;
    }
    if (unit >= ctx.num_texture_units || texture->opengl_texture_id == 0)
        return false;
    gl.glBindImageTexture(image_unit, texture->opengl_texture_id, 0, GL_FALSE, 0,
                          gl_data_access(access), image_format(texture->get_pixel_format()));
    return true;
}

bool RendererOpenGL::image_texture_activate(TextureData* texture, unsigned long unit,
                                            DATA_ACCESS_TYPE access) {
    return image_texture_bind(texture, unit, access);
}

// Bindless handles

bool RendererOpenGL::bindless_texture_make_resident(TextureData* texture) {
    if (!has_entries(gl.glMakeTextureHandleResidentARB, gl.glGetTextureHandleARB) ||
        texture == nullptr || texture->opengl_texture_id == 0)
        return false;
    texture->bindless_handle = gl.glGetTextureHandleARB(texture->opengl_texture_id);
    gl.glMakeTextureHandleResidentARB(texture->bindless_handle);
    return true;
}

bool RendererOpenGL::bindless_texture_make_non_resident(TextureData* texture) {
    if (gl.glMakeTextureHandleNonResidentARB == nullptr || texture == nullptr)
        return false;
    if (texture->bindless_handle != 0)
        gl.glMakeTextureHandleNonResidentARB(texture->bindless_handle);
    return true;
}

// Read-back

namespace {

unsigned long read_level_size(GLenum name) {
    GLint value = 0;
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, name, &value);
    return static_cast<unsigned long>(std::max(value, 0));
}

// How many bytes the API may write for the bound texture.
unsigned long packed_texture_size(unsigned long channels) {
    return PixelPacking::current().size_of(read_level_size(GL_TEXTURE_WIDTH),
                                           read_level_size(GL_TEXTURE_HEIGHT), channels);
}

} // namespace

bool RendererOpenGL::read_texture_2d(TextureData* texture, unsigned int format,
                                     unsigned long channels) {
    if (texture == nullptr || texture->type != TEXTURE_TYPE_2D ||
        texture->get_pixmap_u8_ptr() == nullptr)
        return false;
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glBindTexture(GL_TEXTURE_2D, texture->opengl_texture_id);
    const unsigned long size = packed_texture_size(channels);
    const unsigned long room = ImageAccess::readable_u8_bytes(*texture);
    if (size <= room) {
        glGetTexImage(GL_TEXTURE_2D, 0, format, GL_UNSIGNED_BYTE, texture->get_pixmap_u8_ptr());
        return true;
    }
    // The GPU's texture is larger than the CPU's pixels, which take what fits.
    const std::unique_ptr<unsigned char[]> scratch = ImageAccess::zeroed_bytes(size);
    if (scratch == nullptr)
        return false;
    glGetTexImage(GL_TEXTURE_2D, 0, format, GL_UNSIGNED_BYTE, scratch.get());
    std::memcpy(texture->get_pixmap_u8_ptr(), scratch.get(), room);
    return true;
}

bool RendererOpenGL::texture_2d_read_pixmap_rgb_u8(TextureData* texture) {
    return read_texture_2d(texture, GL_RGB, 3);
}

bool RendererOpenGL::texture_2d_read_pixmap_rgba_u8(TextureData* texture) {
    return read_texture_2d(texture, GL_RGBA, 4);
}

} // namespace orvex
