#include "orvex/renderer/records/texture_data.h"

#include "orvex/math/vec4.h"

namespace orvex {

TextureData::TextureData() = default;

TextureData::~TextureData() = default;

void TextureData::inc_ref() {
    ++ref_count;
}

void TextureData::dec_ref() {
    if (ref_count > 0)
        --ref_count;
}

int TextureData::get_ref() const {
    return ref_count;
}

bool TextureData::cleanup() {
    cleanup_cubemap_data();
    return Image::cleanup();
}

bool TextureData::cleanup_cubemap_data() {
    for (TextureCubeMapFace& face : cubemap_faces)
        face.image.cleanup();
    return true;
}

bool TextureData::is_loaded_in_gpu_memory() const {
    return loaded_in_gpu_memory;
}

void TextureData::set_loaded_in_gpu_memory_state(bool loaded) {
    loaded_in_gpu_memory = loaded;
}

void TextureData::set_opengl_texture_id(unsigned int id) {
    opengl_texture_id = id;
    opengl_texture_id_generated = false;
    opengl_texture_id_borrowed = false;
    needs_gpu_update = false;
    gl_group = 0; // that of the context in which it is met next
    gl_elsewhere.clear();
}

unsigned long TextureData::get_width() const {
    return width;
}

unsigned long TextureData::get_height() const {
    return height;
}

unsigned long TextureData::get_depth() const {
    return depth;
}

unsigned long TextureData::get_cubemap_size() const {
    return cubemap_faces[0].image.width;
}

PIXEL_FORMAT TextureData::get_pixel_format() const {
    return type == TEXTURE_TYPE_CUBE ? cubemap_faces[0].image.pixel_format : pixel_format;
}

bool TextureData::update_pixel_format(PIXEL_FORMAT format) {
    if (type != TEXTURE_TYPE_CUBE)
        return Image::update_pixel_format(format);
    for (TextureCubeMapFace& face : cubemap_faces)
        face.image.update_pixel_format(format);
    return true;
}

bool TextureData::fill_with_noise(unsigned long count, const vec4& color_a, const vec4& color_b,
                                  unsigned int seed) {
    return Image::fill_with_noise(count, color_a, color_b, seed);
}

unsigned char* TextureData::get_pixmap_u8_ptr() const {
    return get_u8_ptr();
}

float* TextureData::get_pixmap_f32_ptr() const {
    return get_f32_ptr();
}

} // namespace orvex
