#include "orvex/renderer/opengl/textures/private/texture_unit_family.h"

#include "orvex/renderer/opengl/gl/private/gl_enums.h"
#include "orvex/renderer/records/texture_data.h"

// Every bind is written down, then sent: the unit first, then the texture.

namespace orvex {

GLenum gl_texture_target(const TextureData* texture) {
    switch (texture ? texture->type : TEXTURE_TYPE_2D) {
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

namespace {

// Those that the fixed pipeline has switches for
constexpr GLenum switched_targets[] = {GL_TEXTURE_1D, GL_TEXTURE_2D, GL_TEXTURE_3D,
                                       GL_TEXTURE_CUBE_MAP, GL_TEXTURE_RECTANGLE};

} // namespace

void TextureUnitFamily::activate(unsigned long unit) {
    ctx.active_texture_unit = unit;
    gl.glActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(unit));
}

bool TextureUnitFamily::bind_id(GLenum target, GLuint id, unsigned long unit) {
    if (unit >= ctx.num_texture_units || id == 0 || !gl.glActiveTexture)
        return false;
    ctx.set_texture_unit(unit, id);
    BoundState& bound = state.bound();
    if (bound.resume_texture(target, id, unit)) {
        ctx.active_texture_unit = unit;
        return true;
    }
    bound.make_room(target, unit);
    activate(unit);
    glBindTexture(target, id);
    bound.texture_was_bound(target, id, unit);
    return true;
}

bool TextureUnitFamily::bind(const TextureData* texture, unsigned long unit) {
    if (texture)
        return bind_id(gl_texture_target(texture), texture->opengl_texture_id, unit);
    if (!gl.glActiveTexture)
        return false;
    ctx.set_texture_unit(unit, 0);
    if (state.bound().hold_texture(unit)) {
        ctx.active_texture_unit = unit;
        return true;
    }
    activate(unit);
    for (const GLenum target : bound_texture_targets)
        glBindTexture(target, 0);
    state.bound().unit_was_cleared(unit);
    return true;
}

bool TextureUnitFamily::reset(unsigned long unit) {
    if (unit >= ctx.num_texture_units || !gl.glActiveTexture)
        return false;

    // Textures, with their switches in the fixed pipeline
    ctx.set_texture_unit(unit, 0);
    activate(unit);
    for (const GLenum target : switched_targets) {
        glBindTexture(target, 0);
        glDisable(target);
    }

    // The image
    if (gl.glBindImageTexture)
        gl.glBindImageTexture(static_cast<GLuint>(unit), 0, 0, GL_FALSE, 0, GL_READ_WRITE, GL_R32F);
    activate(0);

    // Coordinates of the fixed pipeline
    if (gl.glClientActiveTexture) {
        gl.glClientActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(unit));
        glDisableClientState(GL_TEXTURE_COORD_ARRAY);
    }
    return true;
}

void TextureUnitFamily::set_state(GLenum target, bool enabled) const {
    if (enabled)
        glEnable(target);
    else
        glDisable(target);
}

namespace {

// Four of these name an order of channels, which the API refuses for images.
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

bool TextureUnitFamily::bind_image(TextureData* texture, unsigned long unit,
                                   DATA_ACCESS_TYPE access) const {
    if (!gl.glBindImageTexture)
        return false;
    const auto image_unit = static_cast<GLuint>(unit);
    if (!texture) {
        gl.glBindImageTexture(image_unit, 0, 0, GL_FALSE, 0, GL_WRITE_ONLY, GL_R32F);
        return true;
    }
    if (unit >= ctx.num_texture_units || texture->opengl_texture_id == 0)
        return false;
    gl.glBindImageTexture(image_unit, texture->opengl_texture_id, 0, GL_FALSE, 0,
                          gl_data_access(access), image_format(texture->get_pixel_format()));
    return true;
}

} // namespace orvex
