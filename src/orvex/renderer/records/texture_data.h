#pragma once

#include <vector>

#include "orvex/api.h"
#include "orvex/fwd.h"
#include "orvex/renderer/records/image.h"

namespace orvex {

/// Kind of a texture. The engine itself makes 1D, 2D and cube textures; the others can be bound.
enum TEXTURE_TYPE : int {
    TEXTURE_TYPE_1D = 1,             ///< one row of texels
    TEXTURE_TYPE_2D = 2,             ///< rows of texels
    TEXTURE_TYPE_3D = 3,             ///< slices of rows
    TEXTURE_TYPE_CUBE = 4,           ///< six square faces
    TEXTURE_TYPE_2D_MULTISAMPLE = 5, ///< several samples a texel, as in a render target
    TEXTURE_TYPE_RECTANGLE = 6       ///< rows of texels, read by coordinates in pixels
};

/// One face of a cube texture.
struct TextureCubeMapFace {
    bool enabled = true; ///< free for a host; the engine reads every face
    Image image;         ///< pixels of the face
};

/// The GL texture of a record in one group of contexts that share.
struct TextureObject {
    unsigned long long group = 0; ///< number of the group; 0 for none
    unsigned int id = 0;          ///< GL name
    bool generated = false;       ///< as in the record
    bool borrowed = false;        ///< as in the record
    bool outdated = false;        ///< pixels were sent elsewhere since
};

/// What a texture is made of: its pixels in CPU memory and what the renderer keeps for it.
///
/// Made by `Texture`, shared between textures and counted by them; the last texture that drops it
/// frees its pixels at once and deletes it at its own end. A record handed to
/// `Texture::_set_texture_data` by a host therefore comes from `new`. The pixels of a 1D or 2D
/// texture are the `Image` that this record is; those of a cube are its faces, of one size and one
/// format, those of face 0.
///
/// The pixels belong to the thread that works on them; the renderer's fields are touched on its
/// thread only. Nothing locks.
struct ORVEX_API TextureData : Image {
    /// One image each, indexed by `CUBEMAP_FACE`.
    TextureCubeMapFace cubemap_faces[6];
    /// Set by the renderer after a load.
    bool loaded_in_gpu_memory = false;
    /// The CPU pixels are newer than the GPU's.
    bool needs_gpu_update = true;
    /// A `TEXTURE_TYPE`.
    int type = TEXTURE_TYPE_2D;
    /// Whether an upload builds a mip chain.
    bool gen_mipmaps = true;
    SAMPLER_FILTERING_MODE filtering_mode = FILTERING_LINEAR;    ///< read at an upload
    SAMPLER_ADDRESSING_MODE addressing_mode = ADDRESSING_REPEAT; ///< read at an upload
    float anisotropy = 1.0f; ///< degree, 1 for none; read at an upload
    /// Format word of the back end; 6408 stands for RGBA.
    int gl_format = 6408;
    unsigned int opengl_texture_id = 0;     ///< GL name, 0 for none
    unsigned long long bindless_handle = 0; ///< made by `Renderer::bindless_texture_make_resident`
    /// The id was made by the back end, which may delete it when it loads anew.
    bool opengl_texture_id_generated = false;
    /// The id is a render target's, which alone deletes it.
    bool opengl_texture_id_borrowed = false;
    unsigned long long gl_group = 0;    ///< number of the group of contexts that has the GL name
    unsigned char gl_group_kinship = 0; ///< how its contexts are known; 0: not at all
    std::vector<TextureObject> gl_elsewhere; ///< the GL names in other groups
    /// Id of the renderer that loaded the texture; 0 for none.
    int renderer_id = 0;
    /// How many textures share this record.
    int ref_count = 0;

    /// Type 2D, linear, repeated, with mipmaps; no pixels and no user.
    TextureData();
    TextureData(const TextureData&) = delete;
    TextureData& operator=(const TextureData&) = delete;
    ~TextureData() override;

    /// One more texture shares this record.
    void inc_ref();
    /// Never goes below 0.
    void dec_ref();
    int get_ref() const; ///< how many textures share this record

    /// Frees the owned buffers of the six faces and of the base image. @return true
    bool cleanup();
    /// Frees the owned buffers of the six faces. @return true
    bool cleanup_cubemap_data();

    bool is_loaded_in_gpu_memory() const; ///< whether the renderer loaded it
    /// Noted by the renderer; it loads and frees nothing by itself.
    void set_loaded_in_gpu_memory_state(bool loaded);

    /// Stores a GL texture that somebody else made, and clears `needs_gpu_update`. The renderer's
    /// unload deletes it.
    void set_opengl_texture_id(unsigned int id);

    /// @name Sizes of the base image.
    /// @{
    unsigned long get_width() const;  ///< pixels
    unsigned long get_height() const; ///< rows
    unsigned long get_depth() const;  ///< slices; 1 in what the engine makes
    /// @}

    /// Width of face 0, which is the edge of the whole cube.
    unsigned long get_cubemap_size() const;
    /// Format of the base image; for a cube texture that of face 0.
    PIXEL_FORMAT get_pixel_format() const;

    /// Converts the base image. For a cube texture it converts all six faces, and the result is
    /// true whatever they return.
    bool update_pixel_format(PIXEL_FORMAT format);

    /// Noise on the base image; see `Image::fill_with_noise`.
    bool fill_with_noise(unsigned long count, const vec4& color_a, const vec4& color_b,
                         unsigned int seed);

    /// The 8-bit pixels of the base image, owned or external, or null.
    unsigned char* get_pixmap_u8_ptr() const;
    /// The float pixels of the base image, or null.
    float* get_pixmap_f32_ptr() const;

private:
    friend class Texture;

    /// The texture that dropped this record last and will delete it, and the next one it keeps.
    Texture* parked_in = nullptr;
    TextureData* next_parked = nullptr;
};

} // namespace orvex
