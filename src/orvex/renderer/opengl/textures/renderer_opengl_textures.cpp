#include "orvex/renderer/opengl/private/renderer_opengl.h"

// The textures and texture units of the contract, handed on to their families. An operation that
// only repeats another one stays here, so that a renderer that takes over the other takes over
// both.

namespace orvex {

// Loads

bool RendererOpenGL::texture_1d_load(TextureData* texture, unsigned long unit) {
    return textures.load_1d(texture, unit);
}

bool RendererOpenGL::texture_2d_load(TextureData* texture, unsigned long unit) {
    return textures.load_2d(texture, unit);
}

bool RendererOpenGL::texture_cube_load(TextureData* texture, unsigned long unit) {
    return textures.load_cube(texture, unit);
}

bool RendererOpenGL::texture_cube_load_face(TextureData* texture, CUBEMAP_FACE face,
                                            unsigned long) {
    return textures.load_cube_face(texture, face);
}

bool RendererOpenGL::texture_unload(TextureData* texture) {
    return textures.unload(texture);
}

// Updates. The contract has the offset of rows before that of columns.

bool RendererOpenGL::texture_1d_update(TextureData* texture, int x, int width) {
    return textures.update_1d(texture, x, width);
}

bool RendererOpenGL::texture_2d_update(TextureData* texture, int y, int x, int width, int height) {
    return textures.update_2d(texture, x, y, width, height);
}

bool RendererOpenGL::texture_2d_update_pixmap(TextureData* texture, int y, int x, int width,
                                              int height, PIXEL_FORMAT format, void* pixels) {
    return textures.update_2d_pixels(texture, x, y, width, height, format, pixels);
}

bool RendererOpenGL::texture_cube_update(TextureData* texture) {
    return textures.update_cube(texture);
}

bool RendererOpenGL::texture_cube_update_face(TextureData* texture, CUBEMAP_FACE face) {
    return textures.update_cube_face(texture, face);
}

// Sampler settings

void RendererOpenGL::set_texture_addressing_mode(TextureData* texture,
                                                 SAMPLER_ADDRESSING_MODE mode) {
    textures.set_addressing_mode(texture, mode);
}

void RendererOpenGL::set_texture_filtering_mode(TextureData* texture, SAMPLER_FILTERING_MODE mode) {
    textures.set_filtering_mode(texture, mode);
}

void RendererOpenGL::set_texture_anisotropy(TextureData* texture, float value) {
    textures.set_anisotropy(texture, value);
}

// Handles, read-back, ids

bool RendererOpenGL::bindless_texture_make_resident(TextureData* texture) {
    return textures.make_resident(texture);
}

bool RendererOpenGL::bindless_texture_make_non_resident(TextureData* texture) {
    return textures.make_non_resident(texture);
}

bool RendererOpenGL::texture_2d_read_pixmap_rgb_u8(TextureData* texture) {
    return textures.read_2d(texture, GL_RGB, 3);
}

bool RendererOpenGL::texture_2d_read_pixmap_rgba_u8(TextureData* texture) {
    return textures.read_2d(texture, GL_RGBA, 4);
}

bool RendererOpenGL::_add_texture_id(unsigned int id) {
    textures.add_id(id);
    return true;
}

bool RendererOpenGL::_remove_texture_id(unsigned int id) {
    return textures.remove_id(id);
}

unsigned int RendererOpenGL::_get_gl_texture_target(TextureData* texture) {
    return gl_texture_target(texture);
}

// Units

bool RendererOpenGL::texture_bind(TextureData* texture, unsigned long unit) {
    if (texture && textures.enter_context(*texture)) {
        const BoundStatePause pause(bound());
        textures.load(texture, unit);
    }
    return texture_units.bind(texture, unit);
}

bool RendererOpenGL::texture_activate(TextureData* texture, unsigned long unit) {
    return texture_bind(texture, unit);
}

bool RendererOpenGL::texture_activate_rt(unsigned int id, unsigned long unit) {
    return texture_units.bind_id(GL_TEXTURE_2D, id, unit);
}

bool RendererOpenGL::texture_activate_rt_ms(unsigned int id, unsigned long unit) {
    return texture_units.bind_id(GL_TEXTURE_2D_MULTISAMPLE, id, unit);
}

bool RendererOpenGL::texture_activate_rect_rt(unsigned int id, unsigned long unit) {
    return texture_units.bind_id(GL_TEXTURE_RECTANGLE, id, unit);
}

bool RendererOpenGL::reset_texture_unit(unsigned long unit) {
    return texture_units.reset(unit);
}

bool RendererOpenGL::reset_all_texture_units() {
    if (!gl.glActiveTexture)
        return false;
    for (unsigned long unit = 0; unit < ctx.num_texture_units; ++unit)
        reset_texture_unit(unit);
    texture_units.activate(0);
    return true;
}

void RendererOpenGL::set_texture1d_state(bool state) {
    texture_units.set_state(GL_TEXTURE_1D, state);
}

void RendererOpenGL::set_texture2d_state(bool state) {
    bound().settle_unit();
    texture_units.set_state(GL_TEXTURE_2D, state);
}

void RendererOpenGL::set_texture3d_state(bool state) {
    texture_units.set_state(GL_TEXTURE_3D, state);
}

void RendererOpenGL::set_texture_cube_state(bool state) {
    texture_units.set_state(GL_TEXTURE_CUBE_MAP, state);
}

void RendererOpenGL::set_texture_state(TextureData* texture, bool state) {
    texture_units.set_state(gl_texture_target(texture), state);
}

// Image units

bool RendererOpenGL::image_texture_bind(TextureData* texture, unsigned long unit,
                                        DATA_ACCESS_TYPE access) {
    return texture_units.bind_image(texture, unit, access);
}

bool RendererOpenGL::image_texture_activate(TextureData* texture, unsigned long unit,
                                            DATA_ACCESS_TYPE access) {
    return image_texture_bind(texture, unit, access);
}

} // namespace orvex
