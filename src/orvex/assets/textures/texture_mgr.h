#pragma once

/// @file
/// TextureMgr: the registry of textures, and the way to the image codecs.

#include <memory>

#include "orvex/api.h"
#include "orvex/fwd.h"
#include "orvex/renderer/renderer_types.h"
#include "orvex/scene/resource_mgr.h"

namespace orvex {

/// The process-wide registry of textures, and the door through which image codecs decode files and
/// memory blocks and write images.
///
/// Made on first use, never destroyed. The kernel starts it with a null renderer, registers the
/// codecs, and stops it. It holds one reference on each texture and on each codec, and a second one
/// on the default codec, which is the first registered one with "stb" in its name and the only one
/// that writes.
///
/// A file is offered to the codec that decoded the last one, then to all codecs in their order; the
/// extension plays no part and the path is used as it is. Loading a file twice gives two textures.
/// The flag of the load operations is the codecs' mirror flag: with false the decoder's memory
/// becomes the texture's pixels as it stands, with true they are copied and mirrored. That memory
/// goes back to its codec when the texture is released, ends, or takes other decoded pixels.
///
/// Nothing is logged: failures are false or null, and the caller words the message. Nothing locks:
/// one thread at a time may be in here. Operations without a renderer may run on any thread, those
/// with one belong on the renderer's thread.
///
/// @code
/// Texture* texture = TextureMgr::get()->create_texture_2d_from_file("brick.png", false);
/// TextureMgr::get()->upload_to_renderer(renderer, texture, 0);
/// TextureMgr::get()->do_screenshot(renderer, "frame.jpg");
/// @endcode
class ORVEX_API TextureMgr : public ResourceMgr {
public:
    /// The one manager, made at the first call.
    static TextureMgr* get();

    TextureMgr(const TextureMgr&) = delete;
    TextureMgr& operator=(const TextureMgr&) = delete;
    ~TextureMgr() override;

    /// @return true
    bool start(Renderer* renderer) override;
    /// Releases all textures, then gives the codecs back. @return true
    bool stop(Renderer* renderer) override;

    /// @name Image codecs
    /// @{

    /// Appends a codec and adds a reference. The first one with "stb" in its name becomes the
    /// default codec, with a second reference.
    /// @return false for null
    bool register_image_codec_plugin(ImageCodec* codec);
    /// Registers every image codec that the plugin manager holds. @return how many
    unsigned long register_all_image_codec_plugins();
    /// Releases the default codec and every registered one. @return true
    bool unregister_all_image_codec_plugins();
    /// @}

    /// @name Making textures
    /// Each is registered; the caller adds a reference of its own if it keeps it.
    /// @{

    /// An empty texture: type 2D, no pixels.
    Texture* create_texture();
    /// Never null: a texture that couldn't be given pixels comes without.
    /// @param size  in pixels; see `Texture::create_1d`
    Texture* create_texture_1d(unsigned long size, PIXEL_FORMAT format);
    /// As `create_texture_1d`, for 2D; sizes in pixels.
    Texture* create_texture_2d(unsigned long width, unsigned long height, PIXEL_FORMAT format);
    /// As `create_texture_1d`, for six faces of `size` by `size` pixels.
    Texture* create_texture_cube(unsigned long size, PIXEL_FORMAT format);

    /// Null if the file can't be decoded or for a null name.
    Texture* create_texture_2d_from_file(const char* filename, bool flag);
    /// Null if the block can't be decoded, is null or has no size.
    Texture* create_texture_2d_from_memory(const unsigned char* bytes, unsigned long size,
                                           bool flag);
    /// Null if any of the six files can't be decoded, or for a null list.
    Texture* create_texture_cube_from_files(const char* const* filenames, bool flag);
    /// Null if any of the six blocks can't be decoded, or for a null list.
    Texture* create_texture_cube_from_memory(const unsigned char* const* blocks,
                                             const unsigned long* sizes, bool flag);

    /// A texture that stands for a colour texture of a render target; see
    /// `Texture::init_color_texture_from_render_target`. Never null.
    Texture* create_color_texture_from_render_target(RenderTarget* target, unsigned long index);
    /// A texture that stands for the depth texture of a render target. Never null.
    Texture* create_depth_texture_from_render_target(RenderTarget* target);

    /// Registers a texture. @return false for null
    bool add_texture(Texture* texture);
    /// @}

    /// @name Giving textures back
    /// @{

    /// Gives decoded pixels back to their codec if this is the last reference, then releases the
    /// texture as `release_resource` does.
    /// @return false for null
    bool release_texture(Renderer* renderer, Texture* texture, Thread* thread);
    /// The same for every texture that belongs to this renderer or to none; a null renderer takes
    /// all.
    /// @return true
    bool release_all_textures(Renderer* renderer, Thread* thread);
    /// @}

    /// @name Loading into a texture
    /// A texture that isn't registered yet is registered by success.
    /// @{

    /// Decodes a file into the texture. The type of the texture is not touched.
    /// @return false for null, and if no codec decodes the file
    bool load_image_from_file(Texture* texture, const char* filename, bool flag);
    /// The same, and makes it a 2D texture on success.
    bool load_texture_2d_from_file(Texture* texture, const char* filename, bool flag);
    /// Makes it a 2D texture, then decodes the block.
    /// @return false for null or no size, and if no codec decodes the block
    bool load_texture_2d_from_memory(Texture* texture, const unsigned char* bytes,
                                     unsigned long size, bool flag);

    /// Make it a cube texture, then decode the faces in the order of `CUBEMAP_FACE`. The first face
    /// that fails ends it and leaves the earlier ones loaded. Registering the texture is the
    /// caller's affair.
    /// @return false for null, and if a face can't be decoded
    bool load_texture_cube_from_files(Texture* texture, const char* const* filenames, bool flag);
    /// The same from six names in the order of the faces.
    bool load_texture_cube_from_files(Texture* texture, const char* positive_x,
                                      const char* negative_x, const char* positive_y,
                                      const char* negative_y, const char* positive_z,
                                      const char* negative_z, bool flag);
    /// The same from encoded files in memory: six blocks, and their sizes in bytes.
    bool load_texture_cube_from_memory(Texture* texture, const unsigned char* const* blocks,
                                       const unsigned long* sizes, bool flag);

    /// Make it a cube texture, then decode one face.
    /// @return false for null, no size or a face outside 0 to 5, and if no codec can decode it
    bool load_cubemap_face_from_file(Texture* texture, CUBEMAP_FACE face, const char* filename,
                                     bool flag);
    /// The same from an encoded file in memory.
    bool load_cubemap_face_from_memory(Texture* texture, CUBEMAP_FACE face,
                                       const unsigned char* block, unsigned long size, bool flag);
    /// @}

    /// @name GPU stage
    /// @{

    /// Makes the GPU texture by the texture's type, with `unit` as the unit to work on, from 0.
    /// @return the renderer's result; false for null and for types other than 1D, 2D and cube
    bool upload_to_renderer(Renderer* renderer, Texture* texture, unsigned long unit);
    /// Sends a decoded file to the texture's GPU copy, which has to be bound, and keeps none of it.
    /// Only 8-bit pixels are sent.
    /// @return the renderer's result; false for null, and if no codec decodes the file
    bool update_gpu_memory_from_file(Renderer* renderer, Texture* texture, const char* filename,
                                     bool flag);
    /// @}

    /// @name Writing
    /// @{

    /// Writes the pixels of a 2D texture through the default codec, as JPEG whatever the name says.
    /// A disk that is full on the way isn't noticed: who must know writes to another name, looks
    /// for the end of the picture (ff d9), and renames.
    /// @return the codec's result, for its own false for sides above 65,535; false without a
    /// default
    ///         codec, for null, and for other types
    bool write_texture_2d_to_file(Texture* texture, const char* filename);
    /// Writes the renderer's colour buffer, top row first, through the default codec. A full disk
    /// isn't noticed here either.
    /// @return the codec's result; false without a default codec and for null
    bool do_screenshot(Renderer* renderer, const char* filename);
    /// @}

    /// Opaque to hosts: the doors that the engine's own rooms use.
    struct Access;

private:
    struct TextureMgrData;

    TextureMgr();

    static TextureMgr* m_ptr_instance;
    std::unique_ptr<TextureMgrData> data;
};

} // namespace orvex
