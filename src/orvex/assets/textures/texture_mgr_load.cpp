// Loading: a source, which is a file or a block of memory, is offered to the codec that decoded the
// last one and then to all in their order, and the first that decodes it fills a texture, a face,
// or the GPU's copy alone.

#include "orvex/assets/textures/texture_mgr.h"

#include "orvex/assets/textures/private/decoded_pixels.h"
#include "orvex/assets/textures/private/texture_mgr_data.h"
#include "orvex/assets/textures/texture.h"
#include "orvex/base/image_codec.h"
#include "orvex/base/private/misuse.h"
#include "orvex/renderer/private/debug_name.h"
#include "orvex/renderer/records/private/image_access.h"
#include "orvex/renderer/records/texture_data.h"
#include "orvex/renderer/renderer.h"

namespace orvex {

namespace {

/// One picture, in a file or in memory, that any codec may try.
class Source {
public:
    Source(const char* filename, bool flag)
        : filename(filename)
        , flag(flag) {}
    Source(const unsigned char* bytes, unsigned long size, bool flag)
        : bytes(bytes)
        , size(size)
        , flag(flag) {}

    bool exists() const { return filename || (bytes && size > 0); }

    /// A codec that tells only width and height means one slice.
    bool decode(ImageCodec& codec, Image& image) const {
        if (!ask(codec, image))
            return false;
        if (image.depth == 0)
            image.depth = 1;
        return true;
    }

private:
    bool ask(ImageCodec& codec, Image& image) const {
        if (filename)
            return codec.load_image_from_file(&image, filename, flag);
        // Codecs take a pointer to non-const, and only read.
        return codec.load_image_from_memory(&image, const_cast<unsigned char*>(bytes), size, flag);
    }

    const char* filename = nullptr;
    const unsigned char* bytes = nullptr;
    unsigned long size = 0;
    bool flag;
};

/// Decodes into a temporary image that the texture then takes over.
/// @return whether the codec could decode; `*loaded` tells what the texture said
bool decode_into_texture(ImageCodec& codec, const Source& source, Texture& texture, bool* loaded) {
    Image image;
    if (!source.decode(codec, image))
        return false;
    *loaded = texture.load_from_image(&image);
    // A texture that didn't take over the decoder's memory leaves it to us.
    const Image* const now = texture.get_image_ptr();
    if (image.pixmap_external && (!now || now->pixmap_external != image.pixmap_external))
        codec.free_image_resources(&image);
    TextureMgr::get()->add_texture(&texture);
    return true;
}

} // namespace

/// The steps shared by files and memory blocks.
bool TextureMgr::Access::load_image(TextureMgr& mgr, Texture& texture, const auto& source) {
    bool loaded = false;
    ImageCodec* const codec = mgr.data->find_decoder([&](ImageCodec& candidate) {
        return decode_into_texture(candidate, source, texture, &loaded);
    });
    if (loaded)
        mgr.data->last_image_codec = codec;
    return loaded;
}

bool TextureMgr::load_image_from_file(Texture* texture, const char* filename, bool flag) {
    if (!texture || !texture->get_data_ptr() || !filename)
        return misuse("TextureMgr::load_image_from_file",
                      "a null file name, or no texture to fill");
    return TextureMgr::Access::load_image(*this, *texture, Source(filename, flag));
}

bool TextureMgr::load_texture_2d_from_file(Texture* texture, const char* filename, bool flag) {
    if (!load_image_from_file(texture, filename, flag))
        return false;
    texture->get_data_ptr()->type = TEXTURE_TYPE_2D;
    return true;
}

bool TextureMgr::load_texture_2d_from_memory(Texture* texture, const unsigned char* bytes,
                                             unsigned long size, bool flag) {
    const Source source(bytes, size, flag);
    if (!texture || !texture->get_data_ptr() || !source.exists())
        return misuse("TextureMgr::load_texture_2d_from_memory", "no bytes, or no texture to fill");
    texture->get_data_ptr()->type = TEXTURE_TYPE_2D;
    return TextureMgr::Access::load_image(*this, *texture, source);
}

// -------------------------------------------------------------------------------- cube faces

namespace {

/// The codec writes straight into the face, where earlier decoded pixels and an owned buffer that
/// is too small make room.
bool decode_into_face(ImageCodec& codec, const Source& source, Image& face) {
    unsigned char* const before = face.pixmap_external;
    if (!source.decode(codec, face))
        return false;
    if (face.pixmap_external != before) {
        ImageAccess::note_decoded(face);
        ImageAccess::drop_small_u8(face);
    }
    take_decoded_pixels(face, before);
    return true;
}

} // namespace

bool TextureMgr::Access::load_cubemap_face(TextureMgr& mgr, Texture* texture, CUBEMAP_FACE face,
                                           const auto& source) {
    Image* const image = texture ? texture->get_cubemap_image_ptr(face) : nullptr;
    if (!image || !source.exists())
        return misuse("TextureMgr::load_cubemap_face", "no picture, or no such face to fill");
    texture->get_data_ptr()->type = TEXTURE_TYPE_CUBE;
    ImageCodec* const codec = mgr.data->find_decoder(
        [&](ImageCodec& candidate) { return decode_into_face(candidate, source, *image); });
    if (codec)
        mgr.data->last_image_codec = codec;
    return codec;
}

bool TextureMgr::load_cubemap_face_from_file(Texture* texture, CUBEMAP_FACE face,
                                             const char* filename, bool flag) {
    return TextureMgr::Access::load_cubemap_face(*this, texture, face, Source(filename, flag));
}

bool TextureMgr::load_cubemap_face_from_memory(Texture* texture, CUBEMAP_FACE face,
                                               const unsigned char* block, unsigned long size,
                                               bool flag) {
    return TextureMgr::Access::load_cubemap_face(*this, texture, face, Source(block, size, flag));
}

namespace {

bool make_cube(Texture* texture) {
    TextureData* const data = texture ? texture->get_data_ptr() : nullptr;
    if (data)
        data->type = TEXTURE_TYPE_CUBE;
    return data;
}

constexpr int num_faces = 6;

} // namespace

bool TextureMgr::load_texture_cube_from_files(Texture* texture, const char* const* filenames,
                                              bool flag) {
    if (!filenames || !make_cube(texture))
        return misuse("TextureMgr::load_texture_cube_from_files",
                      "no names, or no texture to fill");
    for (int face = 0; face < num_faces; ++face)
        if (!load_cubemap_face_from_file(texture, static_cast<CUBEMAP_FACE>(face), filenames[face],
                                         flag))
            return false;
    return true;
}

bool TextureMgr::load_texture_cube_from_files(Texture* texture, const char* positive_x,
                                              const char* negative_x, const char* positive_y,
                                              const char* negative_y, const char* positive_z,
                                              const char* negative_z, bool flag) {
    const char* const filenames[num_faces] = {positive_x, negative_x, positive_y,
                                              negative_y, positive_z, negative_z};
    return load_texture_cube_from_files(texture, filenames, flag);
}

bool TextureMgr::load_texture_cube_from_memory(Texture* texture, const unsigned char* const* blocks,
                                               const unsigned long* sizes, bool flag) {
    if (!blocks || !sizes || !make_cube(texture))
        return misuse("TextureMgr::load_texture_cube_from_memory",
                      "no blocks, or no texture to fill");
    for (int face = 0; face < num_faces; ++face)
        if (!load_cubemap_face_from_memory(texture, static_cast<CUBEMAP_FACE>(face), blocks[face],
                                           sizes[face], flag))
            return false;
    return true;
}

// -------------------------------------------------------------------------------- new textures

namespace {

/// What a failed load leaves behind is released at once.
Texture* keep_if(bool loaded, TextureMgr& mgr, Texture* texture) {
    if (loaded)
        return texture;
    mgr.release_resource(nullptr, texture, nullptr);
    return nullptr;
}

} // namespace

Texture* TextureMgr::create_texture_2d_from_file(const char* filename, bool flag) {
    if (!filename)
        return nullptr;
    Texture* const texture = create_texture();
    return keep_if(load_texture_2d_from_file(texture, filename, flag), *this, texture);
}

Texture* TextureMgr::create_texture_2d_from_memory(const unsigned char* bytes, unsigned long size,
                                                   bool flag) {
    if (!bytes || size == 0)
        return nullptr;
    Texture* const texture = create_texture();
    return keep_if(load_texture_2d_from_memory(texture, bytes, size, flag), *this, texture);
}

Texture* TextureMgr::create_texture_cube_from_files(const char* const* filenames, bool flag) {
    if (!filenames)
        return nullptr;
    Texture* const texture = create_texture();
    return keep_if(load_texture_cube_from_files(texture, filenames, flag), *this, texture);
}

Texture* TextureMgr::create_texture_cube_from_memory(const unsigned char* const* blocks,
                                                     const unsigned long* sizes, bool flag) {
    if (!blocks || !sizes)
        return nullptr;
    Texture* const texture = create_texture();
    return keep_if(load_texture_cube_from_memory(texture, blocks, sizes, flag), *this, texture);
}

// -------------------------------------------------------------------------------- GPU memory

namespace {

/// Decodes, sends the 8-bit pixels, and gives the decoder's memory back at once: through the codec
/// that decoded before, or else through this one.
bool decode_into_gpu(ImageCodec& codec, ImageCodec* last, const Source& source, Renderer& renderer,
                     TextureData& data, bool* sent) {
    Image image;
    if (!source.decode(codec, image))
        return false;
    *sent = renderer.texture_2d_update_pixmap(&data, 0, 0, static_cast<int>(image.width),
                                              static_cast<int>(image.height), image.pixel_format,
                                              image.get_u8_ptr());
    if (!last || !last->free_image_resources(&image))
        codec.free_image_resources(&image);
    return true;
}

} // namespace

bool TextureMgr::update_gpu_memory_from_file(Renderer* renderer, Texture* texture,
                                             const char* filename, bool flag) {
    if (!renderer || !texture || !texture->get_data_ptr() || !filename)
        return misuse("TextureMgr::update_gpu_memory_from_file",
                      "a null renderer or name, or no texture to fill");
    const Source source(filename, flag);
    bool sent = false;
    ImageCodec* const codec = data->find_decoder([&](ImageCodec& candidate) {
        return decode_into_gpu(candidate, data->last_image_codec, source, *renderer,
                               *texture->get_data_ptr(), &sent);
    });
    if (codec)
        data->last_image_codec = codec;
    return sent;
}

bool TextureMgr::upload_to_renderer(Renderer* renderer, Texture* texture, unsigned long unit) {
    if (!renderer || !texture)
        return misuse("TextureMgr::upload_to_renderer", "a null renderer or texture");
    const DebugName name(*texture);
    switch (texture->get_type()) {
    case TEXTURE_TYPE_2D:
        return renderer->texture_2d_load(texture->get_data_ptr(), unit);
    case TEXTURE_TYPE_1D:
        return renderer->texture_1d_load(texture->get_data_ptr(), unit);
    case TEXTURE_TYPE_CUBE:
        return renderer->texture_cube_load(texture->get_data_ptr(), unit);
    default:
        return false;
    }
}

} // namespace orvex
