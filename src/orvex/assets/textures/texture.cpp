// A texture and its record. A record that its last texture drops is emptied at once but lives,
// parked, until that texture ends, since somebody may still look at it; decoded pixels go through
// decoded_pixels.h, which knows who else holds them.

#include "orvex/assets/textures/texture.h"

#include "orvex/assets/textures/private/decoded_pixels.h"
#include "orvex/renderer/private/debug_name.h"
#include "orvex/renderer/records/texture_data.h"
#include "orvex/renderer/render_target.h"
#include "orvex/renderer/renderer.h"
#include "orvex/scene/node.h"
#include "orvex/scene/private/node_data.h"

namespace orvex {

Texture::Texture() {
    set_type(NODE_TYPE_TEXTURE);
    note_drawn_by_engine(*this);
    NodeData::of(*this).kind = this;
    init_texture_data(nullptr);
}

Texture::~Texture() {
    _set_texture_data(nullptr, nullptr);
    while (parked) {
        TextureData* const ended = parked;
        unpark(ended);
        delete ended;
    }
}

Texture* Texture::from_node(Node* node) {
    return node_as<Texture>(node);
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
    return record ? record->renderer_id : 0;
}

// -------------------------------------------------------------------------------- the record

bool Texture::_set_texture_data(Renderer* renderer, TextureData* data) {
    TextureData* const old = record;
    if (old)
        old->dec_ref();
    if (old && old->get_ref() == 0)
        end_record(renderer, old, data);
    record = data;
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
    data->parked_in = this;
    data->next_parked = parked;
    parked = data;
}

void Texture::unpark(TextureData* data) {
    if (!data->parked_in)
        return;
    TextureData** link = &data->parked_in->parked;
    while (*link != data)
        link = &(*link)->next_parked;
    *link = data->next_parked;
    data->next_parked = nullptr;
    data->parked_in = nullptr;
}

bool Texture::share_texture_data(Renderer* renderer, Texture* other) {
    return other && _set_texture_data(renderer, other->record);
}

bool Texture::init_texture_data(Renderer* renderer) {
    return _set_texture_data(renderer, new TextureData);
}

bool Texture::cleanup_texture_data(Renderer* renderer) {
    return _set_texture_data(renderer, nullptr);
}

TextureData* Texture::get_data_ptr() const {
    return record;
}

Image* Texture::get_image_ptr() const {
    return record;
}

Image* Texture::get_cubemap_image_ptr(CUBEMAP_FACE face) const {
    if (!record || face < CUBEMAP_FACE_POSITIVE_X || face > CUBEMAP_FACE_NEGATIVE_Z)
        return nullptr;
    return &record->cubemap_faces[face].image;
}

unsigned long Texture::get_width() const {
    return record ? record->get_width() : 0;
}

unsigned long Texture::get_height() const {
    return record ? record->get_height() : 0;
}

unsigned long Texture::get_depth() const {
    return record ? record->get_depth() : 0;
}

unsigned long Texture::get_cubemap_size() const {
    return record ? record->get_cubemap_size() : 0;
}

int Texture::get_type() const {
    return record ? record->type : 0;
}

PIXEL_FORMAT Texture::get_pixel_format() const {
    return record ? record->get_pixel_format() : PF_NONE;
}

unsigned char* Texture::get_pixmap_u8_ptr() const {
    return record ? record->get_pixmap_u8_ptr() : nullptr;
}

float* Texture::get_pixmap_f32_ptr() const {
    return record ? record->get_pixmap_f32_ptr() : nullptr;
}

void Texture::set_video_stream_data(void* data) {
    video_stream_data = data;
}

void* Texture::get_video_stream_data() const {
    return video_stream_data;
}

// -------------------------------------------------------------------------------- new pixels

bool Texture::load_from_image(Image* image) {
    return take_over(record, image);
}

bool Texture::load_cubemap_face_image(CUBEMAP_FACE face, Image* image) {
    return take_over(get_cubemap_image_ptr(face), image);
}

bool Texture::create_1d(unsigned long size, PIXEL_FORMAT format) {
    if (!record || !record->create(size, 1, 1, format, true))
        return false;
    record->type = TEXTURE_TYPE_1D;
    return true;
}

bool Texture::create_2d(unsigned long width, unsigned long height, PIXEL_FORMAT format) {
    if (!record || !record->create(width, height, 1, format, true))
        return false;
    record->type = TEXTURE_TYPE_2D;
    return true;
}

bool Texture::create_cubemap(unsigned long size, PIXEL_FORMAT format) {
    if (!record)
        return false;
    for (TextureCubeMapFace& face : record->cubemap_faces)
        face.image.create(size, size, 1, format, true);
    record->type = TEXTURE_TYPE_CUBE;
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
    return target && borrow(record, target->get_color_tex_id_opengl(0));
}

bool Texture::init_depth_texture_from_render_target(RenderTarget* target) {
    return target && borrow(record, target->get_depth_tex_id_opengl());
}

bool Texture::upload(Renderer* renderer) {
    if (!renderer || !record)
        return false;
    const DebugName name(*this);
    switch (record->type) {
    case TEXTURE_TYPE_1D:
        return renderer->texture_1d_load(record, 0);
    case TEXTURE_TYPE_2D:
        return renderer->texture_2d_load(record, 0);
    case TEXTURE_TYPE_CUBE:
        return renderer->texture_cube_load(record, 0);
    default:
        return false;
    }
}

bool Texture::unload(Renderer* renderer) {
    return renderer && record && renderer->texture_unload(record);
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
    if (!renderer || !record)
        return false;
    const bool sent = send_pixels(renderer, record);
    record->needs_gpu_update = false;
    return sent;
}

bool Texture::bind(Renderer* renderer, unsigned long unit) {
    if (!renderer)
        return false;
    renderer->texture_bind(record, unit);
    if (record && record->needs_gpu_update)
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
    return renderer && record && renderer->image_texture_bind(record, unit, access);
}

bool Texture::image_unbind(Renderer* renderer, unsigned long unit) {
    return renderer && renderer->image_texture_bind(nullptr, unit, DATA_ACCESS_WRITE_ONLY);
}

void Texture::set_filtering_mode(Renderer* renderer, SAMPLER_FILTERING_MODE mode) {
    if (!record)
        return;
    record->filtering_mode = mode;
    if (renderer)
        renderer->set_texture_filtering_mode(record, mode);
}

void Texture::set_addressing_mode(Renderer* renderer, SAMPLER_ADDRESSING_MODE mode) {
    if (!record)
        return;
    record->addressing_mode = mode;
    if (renderer)
        renderer->set_texture_addressing_mode(record, mode);
}

void Texture::set_anisotropy(Renderer* renderer, float anisotropy) {
    if (!record)
        return;
    record->anisotropy = anisotropy;
    if (renderer)
        renderer->set_texture_anisotropy(record, anisotropy);
}

void Texture::gen_mipmaps(bool enabled) {
    if (record)
        record->gen_mipmaps = enabled;
}

} // namespace orvex
