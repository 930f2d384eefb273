#include "renderer/opengl/renderer_opengl.h"

namespace orvex {

bool RendererOpenGL::reset_all_texture_units() {
    return false;
}

bool RendererOpenGL::reset_texture_unit(unsigned long) {
    return false;
}

bool RendererOpenGL::texture_bind(TextureData*, unsigned long) {
    return false;
}

bool RendererOpenGL::texture_activate(TextureData*, unsigned long) {
    return false;
}

bool RendererOpenGL::texture_activate_rt(unsigned int, unsigned long) {
    return false;
}

bool RendererOpenGL::texture_activate_rt_ms(unsigned int, unsigned long) {
    return false;
}

bool RendererOpenGL::texture_activate_rect_rt(unsigned int, unsigned long) {
    return false;
}

bool RendererOpenGL::texture_unload(TextureData*) {
    return false;
}

bool RendererOpenGL::texture_1d_load(TextureData*, unsigned long) {
    return false;
}

bool RendererOpenGL::texture_1d_update(TextureData*, int, int) {
    return false;
}

bool RendererOpenGL::texture_2d_load(TextureData*, unsigned long) {
    return false;
}

bool RendererOpenGL::texture_2d_update(TextureData*, int, int, int, int) {
    return false;
}

bool RendererOpenGL::texture_2d_update_pixmap(TextureData*, int, int, int, int, PIXEL_FORMAT,
                                              void*) {
    return false;
}

bool RendererOpenGL::texture_cube_load(TextureData*, unsigned long) {
    return false;
}

bool RendererOpenGL::texture_cube_update(TextureData*) {
    return false;
}

void RendererOpenGL::set_texture_anisotropy(TextureData*, float) {}

void RendererOpenGL::set_texture_addressing_mode(TextureData*, SAMPLER_ADDRESSING_MODE) {}

void RendererOpenGL::set_texture_filtering_mode(TextureData*, SAMPLER_FILTERING_MODE) {}

bool RendererOpenGL::texture_2d_read_pixmap_rgb_u8(TextureData*) {
    return false;
}

bool RendererOpenGL::texture_2d_read_pixmap_rgba_u8(TextureData*) {
    return false;
}

void RendererOpenGL::set_texture1d_state(bool) {}

void RendererOpenGL::set_texture2d_state(bool) {}

void RendererOpenGL::set_texture3d_state(bool) {}

void RendererOpenGL::set_texture_cube_state(bool) {}

void RendererOpenGL::set_texture_state(TextureData*, bool) {}

bool RendererOpenGL::image_texture_bind(TextureData*, unsigned long, DATA_ACCESS_TYPE) {
    return false;
}

bool RendererOpenGL::image_texture_activate(TextureData*, unsigned long, DATA_ACCESS_TYPE) {
    return false;
}

bool RendererOpenGL::bindless_texture_make_resident(TextureData*) {
    return false;
}

bool RendererOpenGL::bindless_texture_make_non_resident(TextureData*) {
    return false;
}

} // namespace orvex
