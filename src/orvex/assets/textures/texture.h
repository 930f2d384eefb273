#pragma once

/// @file
/// Texture: pixels of the CPU and the GPU, as a resource.

#include "orvex/api.h"
#include "orvex/fwd.h"
#include "orvex/renderer/renderer_types.h"
#include "orvex/scene/resource.h"

namespace orvex {

/// A texture: a resource that holds a `TextureData`, alone or together with other textures.
///
/// `TextureMgr` makes and registers textures; a host may also make one with `new` and let any of
/// the manager's load operations register it. Whoever keeps one adds a reference and releases it
/// later. The end of the last texture that shares a record gives decoded pixels back to their
/// codec, frees the owned ones, and unloads the GPU copy if the release came with a renderer; with
/// a null renderer the GPU copy stays behind.
///
/// There are two stages. The CPU stage (`load_*`, `create_*`, conversions, flips, texels) takes no
/// renderer and may run on any thread, one at a time. The GPU stage (whatever takes a renderer)
/// runs on the renderer's thread with its context current. A null renderer there gives false,
/// except where it is told what it means.
///
/// After `cleanup_texture_data` there is no record until the next one is set: getters then give 0
/// or null, and operations give false.
///
/// @code
/// Texture* texture = TextureMgr::get()->create_texture_2d_from_file("brick.png", false);
/// texture->upload(renderer);
/// texture->bind(renderer, 0);
/// TextureMgr::get()->release_texture(renderer, texture, nullptr);
/// @endcode
class ORVEX_API Texture : public Resource {
public:
    /// Makes a record of its own, of type 2D and without pixels.
    Texture();
    /// Drops the record with a null renderer, and deletes the records that ended with this texture.
    ~Texture() override;

    /// The node as a texture, decided by what its constructor noted, and not by type information,
    /// which classes of hosts and plugins may lack.
    /// @return null for null, and for a node that is none
    static Texture* from_node(Node* node);

    /// @name Virtual operations
    /// @{

    /// Takes over an image as the texture's pixels; see `Image::operator=`. External pixels are
    /// then shared with `image`, and the texture is who gives them back to the codec: where several
    /// textures took the same ones, the last of them. External pixels that the texture had before
    /// are given back.
    /// @return true; false for null
    virtual bool load_from_image(Image* image);
    /// The same for one face of a cube. The type of the texture is not touched.
    /// @return true; false for null or a face outside 0 to 5
    virtual bool load_cubemap_face_image(CUBEMAP_FACE face, Image* image);

    /// Makes it a 1D texture with fresh pixels; see `Image::create`.
    /// @param size  pixels; 0 gives a texture without any. A size whose bytes can't be counted is
    ///              refused; one that finds no memory throws `std::bad_alloc`
    /// @return false if the image can't be created; the type then stays
    virtual bool create_1d(unsigned long size, PIXEL_FORMAT format);
    /// Makes it a 2D texture with fresh pixels.
    /// @param width,height  pixels, as the size of `create_1d`
    /// @return false if the image can't be created; the type then stays
    virtual bool create_2d(unsigned long width, unsigned long height, PIXEL_FORMAT format);
    /// Makes it a cube texture with six fresh faces.
    /// @param size  of an edge in pixels, as that of `create_1d`
    /// @return true, whatever the faces return
    virtual bool create_cubemap(unsigned long size, PIXEL_FORMAT format);

    /// Stands for the colour texture of a render target, to which it goes on belonging. Always the
    /// target's first colour texture: `index` is not read.
    /// @return false for null
    virtual bool init_color_texture_from_render_target(RenderTarget* target, unsigned long index);
    /// Stands for the depth texture of a render target, to which it goes on belonging.
    /// @return false for null
    virtual bool init_depth_texture_from_render_target(RenderTarget* target);

    /// Makes the GPU texture, on unit 0, by the type: 1D, 2D or cube.
    /// @return the renderer's result; false for other types
    virtual bool upload(Renderer* renderer);
    /// Deletes the GPU texture. @return the renderer's result
    virtual bool unload(Renderer* renderer);
    /// Sends the CPU pixels to the GPU texture, which has to be bound, and lowers
    /// `needs_gpu_update` whether or not that worked.
    /// @return the renderer's result; false for types other than 1D, 2D and cube
    virtual bool gpu_memory_update(Renderer* renderer);

    /// Binds the texture to a unit, and sends the CPU pixels if they are newer.
    /// @param unit  from 0; the renderer says what it does with one that isn't there
    /// @return true with a renderer, even if it could not bind
    virtual bool bind(Renderer* renderer, unsigned long unit);
    /// Leaves the unit without any texture. @return the renderer's result
    virtual bool unbind(Renderer* renderer, unsigned long unit);
    /// Calls `bind`.
    virtual bool activate(Renderer* renderer, unsigned long unit);

    /// Calls `image_bind`.
    virtual bool image_activate(Renderer* renderer, unsigned long unit, DATA_ACCESS_TYPE access);
    /// Binds level 0 to an image unit of shaders. Drivers take float formats 6 and 7.
    /// @param unit  from 0; one that the driver doesn't have is an error of its own
    /// @return the renderer's result
    virtual bool image_bind(Renderer* renderer, unsigned long unit, DATA_ACCESS_TYPE access);
    /// Leaves the image unit without a texture. @return the renderer's result
    virtual bool image_unbind(Renderer* renderer, unsigned long unit);
    /// @}

    /// Hook: a fresh record in place of the present one.
    bool _init(Renderer* renderer) override;
    /// Hook: drops the record.
    bool _cleanup(Renderer* renderer) override;
    /// Id of the renderer that loaded the record; 0 for none.
    int get_renderer_id() override;

    /// Puts another record, or none, in place of the present one. If this texture was the last of
    /// the old record, its decoded pixels go back to their codec, the GPU copy is unloaded when a
    /// renderer is given, and its buffers are freed. The record itself is deleted together with
    /// this texture.
    /// @param data  made with `new`; null for none
    /// @return true
    bool _set_texture_data(Renderer* renderer, TextureData* data);
    /// Shares the record of `other`. @return false for null
    bool share_texture_data(Renderer* renderer, Texture* other);
    /// Installs a fresh record. @return true
    bool init_texture_data(Renderer* renderer);
    /// Drops the record. @return true
    bool cleanup_texture_data(Renderer* renderer);

    /// @name The record and what stands in it
    /// @{

    /// Shared with other textures perhaps; null after `cleanup_texture_data`.
    TextureData* get_data_ptr() const;
    /// The record as an image.
    Image* get_image_ptr() const;
    /// The image of a face; null for a face outside 0 to 5.
    Image* get_cubemap_image_ptr(CUBEMAP_FACE face) const;
    unsigned long get_width() const;  ///< of the base image, pixels
    unsigned long get_height() const; ///< of the base image, rows
    unsigned long get_depth() const;  ///< of the base image, slices
    /// Edge of the cube: the width of face 0.
    unsigned long get_cubemap_size() const;
    /// A `TEXTURE_TYPE`. It hides the type tag of the node, which `Node::get_type` gives.
    int get_type() const;
    /// Format of the pixels; of face 0 for a cube.
    PIXEL_FORMAT get_pixel_format() const;
    /// 8-bit pixels of the base image, its own or the codec's; null if there are none.
    unsigned char* get_pixmap_u8_ptr() const;
    /// Float pixels of the base image; null if there are none.
    float* get_pixmap_f32_ptr() const;
    /// @}

    /// @name Pixels back from the GPU
    /// @{

    /// Reads a render target's first colour texture into the 8-bit pixels, as a square of the
    /// target's width: a lower target leaves zeros at the end, a higher one is cut. Rows come with
    /// the packing the API is set to, padded to multiples of 4 bytes unless the host changed that.
    /// `index` is not read.
    /// @return the target's result; false for null, and without memory for what is read
    bool update_pixmap_rgb_u8_from_render_target(RenderTarget* target, unsigned long index);
    /// The same with four channels; where the image has to be resized the texture becomes 2D.
    bool update_pixmap_rgba_u8_from_render_target(RenderTarget* target, unsigned long index);
    /// Reads the renderer's colour buffer into the 8-bit pixels as RGBA; where the image has to be
    /// resized the texture becomes 2D.
    /// @return true; false for null
    bool update_pixmap_rgba_u8_from_framebuffer(Renderer* renderer);
    /// @}

    /// @name CPU pixels
    /// Where pixels are marked as newer, the next `bind` sends them.
    /// @{

    /// Converts the pixels, of all faces for a cube; marks them as newer on success.
    bool update_pixel_format(PIXEL_FORMAT format);
    /// Mirrors the base image; the next `bind` doesn't send it.
    bool flip_horizontal();
    /// Turns the base image upside down; the next `bind` doesn't send it.
    bool flip_vertical();
    /// Noise on the base image; the next `bind` doesn't send it.
    bool fill_with_noise(unsigned long count, const vec4& color_a, const vec4& color_b,
                         unsigned int seed);

    /// Write one texel as `Image::set_pixel` does; marked as newer on success.
    /// @param index  below the number of pixels; false beyond
    bool set_texel_1d(unsigned long index, const vec4& color);
    /// The same from floats; null is false.
    bool set_texel_1d_v2(unsigned long index, const float* color);
    /// The same at column `x` of row `y`, of which only the pixel that they make is checked.
    bool set_texel_2d(unsigned long x, unsigned long y, const vec4& color);
    /// The same from floats; null is false.
    bool set_texel_2d_v2(unsigned long x, unsigned long y, const float* color);

    /// Copy all pixels from the caller as `Image::update_pixmap_rgb_u8` and its kin do; marked as
    /// newer on success.
    bool update_pixmap_rgb_u8(const void* pixels);
    /// The same with four bytes a pixel.
    bool update_pixmap_rgba_u8(const void* pixels);
    /// The same with three floats a pixel.
    bool update_pixmap_rgb_f32(const void* pixels);
    /// The same with four floats a pixel.
    bool update_pixmap_rgba_f32(const void* pixels);
    /// @}

    /// @name Sampler settings
    /// They are stored, and read at the next upload. With a renderer they also go at once to the
    /// texture that is bound now. An upload takes trilinear filtering as nearest, until it is set
    /// with a renderer.
    /// @{

    /// How texels are mixed; linear at first.
    void set_filtering_mode(Renderer* renderer, SAMPLER_FILTERING_MODE mode);
    /// What lies outside of 0 to 1; repeated at first.
    void set_addressing_mode(Renderer* renderer, SAMPLER_ADDRESSING_MODE mode);
    /// Degree of anisotropic filtering; 1, none, at first.
    /// @param anisotropy  from 1 up to what the driver offers; stored as given, and anything else
    /// is
    ///                    the driver's to refuse
    void set_anisotropy(Renderer* renderer, float anisotropy);
    /// @}

    /// Whether an upload builds a mip chain. At first it does.
    void gen_mipmaps(bool enabled);

    /// @name A free pointer for the host
    /// @{

    /// Stores the pointer; the engine never reads it.
    void set_video_stream_data(void* data);
    void* get_video_stream_data() const; ///< as set; null at first
    /// @}

private:
    void end_record(Renderer* renderer, TextureData* ended, TextureData* next);
    void park(TextureData* data);
    void unpark(TextureData* data);

    TextureData* record = nullptr;
    void* video_stream_data = nullptr;
    TextureData* parked = nullptr;
};

} // namespace orvex
