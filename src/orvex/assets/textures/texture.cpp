#include "orvex/assets/textures/texture.h"

#include "orvex/renderer/private/debug_name.h"
#include "orvex/renderer/records/private/decoder_memory.h"
#include "orvex/renderer/records/texture_data.h"
#include "orvex/renderer/render_target.h"
#include "orvex/renderer/renderer.h"
#include "orvex/scene/node.h"

namespace orvex {

Texture::Texture() {
    set_type(NODE_TYPE_TEXTURE);
    init_texture_data(nullptr);
}

Texture::~Texture() {
    _set_texture_data(nullptr, nullptr);
    while (parked_) {
        TextureData* const ended = parked_;
        unpark(ended);
        delete ended;
    }
}

bool Texture::_init(Renderer* renderer) {
    Resource::_init(renderer);
    return init_texture_data(renderer);
}

bool Texture::_cleanup(Renderer* renderer) {
    cleanup_texture_data(renderer);
    return Resource::_cleanup(renderer);
}

int Texture::get_renderer_id() {
    return data_ ? data_->renderer_id : 0;
}

// -------------------------------------------------------------------------------- the record

bool Texture::_set_texture_data(Renderer* renderer, TextureData* data) {
    TextureData* const old = data_;
    if (old)
        old->dec_ref();
    if (old && old->get_ref() == 0)
        end_record(renderer, old, data);
    data_ = data;
    if (data) {
        unpark(data);
        data->inc_ref();
    }
    return true;
}

void Texture::end_record(Renderer* renderer, TextureData* ended, TextureData* next) {
    if (ended != next)
        give_back_decoded_pixels(*ended);
    if (renderer)
        renderer->texture_unload(ended);
    ended->cleanup();
    if (ended != next)
        park(ended);
}

/// Somebody may still look at a record that has ended, so it stays until its last texture goes.
void Texture::park(TextureData* data) {
    data->parked_in_ = this;
    data->next_parked_ = parked_;
    parked_ = data;
}

void Texture::unpark(TextureData* data) {
    if (!data->parked_in_)
        return;
    TextureData** link = &data->parked_in_->parked_;
    while (*link != data)
        link = &(*link)->next_parked_;
    *link = data->next_parked_;
    data->next_parked_ = nullptr;
    data->parked_in_ = nullptr;
}

bool Texture::share_texture_data(Renderer* renderer, Texture* other) {
    return other && _set_texture_data(renderer, other->data_);
}

bool Texture::init_texture_data(Renderer* renderer) {
    return _set_texture_data(renderer, new TextureData);
}

bool Texture::cleanup_texture_data(Renderer* renderer) {
    return _set_texture_data(renderer, nullptr);
}

TextureData* Texture::get_data_ptr() const {
    return data_;
}

Image* Texture::get_image_ptr() const {
    return data_;
}

Image* Texture::get_cubemap_image_ptr(CUBEMAP_FACE face) const {
    if (!data_ || face < CUBEMAP_FACE_POSITIVE_X || face > CUBEMAP_FACE_NEGATIVE_Z)
        return nullptr;
    return &data_->cubemap_faces[face].image;
}

unsigned long Texture::get_width() const {
    return data_ ? data_->get_width() : 0;
}

unsigned long Texture::get_height() const {
    return data_ ? data_->get_height() : 0;
}

unsigned long Texture::get_depth() const {
    return data_ ? data_->get_depth() : 0;
}

unsigned long Texture::get_cubemap_size() const {
    return data_ ? data_->get_cubemap_size() : 0;
}

int Texture::get_type() const {
    return data_ ? data_->type : 0;
}

PIXEL_FORMAT Texture::get_pixel_format() const {
    return data_ ? data_->get_pixel_format() : PF_NONE;
}

unsigned char* Texture::get_pixmap_u8_ptr() const {
    return data_ ? data_->get_pixmap_u8_ptr() : nullptr;
}

float* Texture::get_pixmap_f32_ptr() const {
    return data_ ? data_->get_pixmap_f32_ptr() : nullptr;
}

void Texture::set_video_stream_data(void* data) {
    video_stream_data_ = data;
}

void* Texture::get_video_stream_data() const {
    return video_stream_data_;
}

// -------------------------------------------------------------------------------- new pixels

namespace {

/// Decoded pixels change hands with the assignment; those that were there go back to their codec.
bool take_over(Image* target, const Image* source) {
    if (!target || !source)
        return false;
    unsigned char* const before = target->pixmap_external;
    *target = *source;
    take_decoded_pixels(*target, before);
    return true;
}

} // namespace

bool Texture::load_from_image(Image* image) {
    return take_over(data_, image);
}

bool Texture::load_cubemap_face_image(CUBEMAP_FACE face, Image* image) {
    return take_over(get_cubemap_image_ptr(face), image);
}

bool Texture::create_1d(unsigned long size, PIXEL_FORMAT format) {
    if (!data_ || !data_->create(size, 1, 1, format, true))
        return false;
    data_->type = TEXTURE_TYPE_1D;
    return true;
}

bool Texture::create_2d(unsigned long width, unsigned long height, PIXEL_FORMAT format) {
    if (!data_ || !data_->create(width, height, 1, format, true))
        return false;
    data_->type = TEXTURE_TYPE_2D;
    return true;
}

bool Texture::create_cubemap(unsigned long size, PIXEL_FORMAT format) {
    if (!data_)
        return false;
    for (TextureCubeMapFace& face : data_->cubemap_faces)
        face.image.create(size, size, 1, format, true);
    data_->type = TEXTURE_TYPE_CUBE;
    return true;
}

// -------------------------------------------------------------------------------- GPU stage

namespace {

/// The GL texture stays the render target's: this record only names it.
bool borrow(TextureData* data, unsigned int id) {
    if (!data)
        return false;
    data->set_opengl_texture_id(id);
    data->opengl_texture_id_borrowed = true;
    data->set_loaded_in_gpu_memory_state(true);
    return true;
}

} // namespace

bool Texture::init_color_texture_from_render_target(RenderTarget* target, unsigned long) {
    return target && borrow(data_, target->get_color_tex_id_opengl(0));
}

bool Texture::init_depth_texture_from_render_target(RenderTarget* target) {
    return target && borrow(data_, target->get_depth_tex_id_opengl());
}

bool Texture::upload(Renderer* renderer) {
    if (!renderer || !data_)
        return false;
    const DebugName name(*this);
    switch (data_->type) {
    case TEXTURE_TYPE_1D:
        return renderer->texture_1d_load(data_, 0);
    case TEXTURE_TYPE_2D:
        return renderer->texture_2d_load(data_, 0);
    case TEXTURE_TYPE_CUBE:
        return renderer->texture_cube_load(data_, 0);
    default:
        return false;
    }
}

bool Texture::unload(Renderer* renderer) {
    return renderer && data_ && renderer->texture_unload(data_);
}

namespace {

bool send_pixels(Renderer* renderer, TextureData* data) {
    const int width = static_cast<int>(data->get_width());
    const int height = static_cast<int>(data->get_height());
    switch (data->type) {
    case TEXTURE_TYPE_1D:
        return renderer->texture_1d_update(data, 0, width);
    case TEXTURE_TYPE_2D:
        return renderer->texture_2d_update(data, 0, 0, width, height);
    case TEXTURE_TYPE_CUBE:
        return renderer->texture_cube_update(data);
    default:
        return false;
    }
}

} // namespace

bool Texture::gpu_memory_update(Renderer* renderer) {
    if (!renderer || !data_)
        return false;
    const bool sent = send_pixels(renderer, data_);
    data_->needs_gpu_update = false;
    return sent;
}

bool Texture::bind(Renderer* renderer, unsigned long unit) {
    if (!renderer)
        return false;
    renderer->texture_bind(data_, unit);
    if (data_ && data_->needs_gpu_update)
        gpu_memory_update(renderer);
    return true;
}

bool Texture::unbind(Renderer* renderer, unsigned long unit) {
    return renderer && renderer->texture_bind(nullptr, unit);
}

bool Texture::activate(Renderer* renderer, unsigned long unit) {
    return bind(renderer, unit);
}

bool Texture::image_activate(Renderer* renderer, unsigned long unit, DATA_ACCESS_TYPE access) {
    return image_bind(renderer, unit, access);
}

bool Texture::image_bind(Renderer* renderer, unsigned long unit, DATA_ACCESS_TYPE access) {
    return renderer && data_ && renderer->image_texture_bind(data_, unit, access);
}

bool Texture::image_unbind(Renderer* renderer, unsigned long unit) {
    return renderer && renderer->image_texture_bind(nullptr, unit, DATA_ACCESS_WRITE_ONLY);
}

void Texture::set_filtering_mode(Renderer* renderer, SAMPLER_FILTERING_MODE mode) {
    if (!data_)
        return;
    data_->filtering_mode = mode;
    if (renderer)
        renderer->set_texture_filtering_mode(data_, mode);
}

void Texture::set_addressing_mode(Renderer* renderer, SAMPLER_ADDRESSING_MODE mode) {
    if (!data_)
        return;
    data_->addressing_mode = mode;
    if (renderer)
        renderer->set_texture_addressing_mode(data_, mode);
}

void Texture::set_anisotropy(Renderer* renderer, float anisotropy) {
    if (!data_)
        return;
    data_->anisotropy = anisotropy;
    if (renderer)
        renderer->set_texture_anisotropy(data_, anisotropy);
}

void Texture::gen_mipmaps(bool enabled) {
    if (data_)
        data_->gen_mipmaps = enabled;
}

} // namespace orvex
