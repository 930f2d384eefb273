#pragma once

/// @file
/// `RenderTarget`, a framebuffer with its storage.

#include "orvex/api.h"
#include "orvex/fwd.h"
#include "orvex/renderer/renderer_types.h"

namespace orvex {

/// An off-screen drawing surface: a framebuffer with its colour and depth storage.
///
/// `Renderer::create_render_target` makes one, empty; the renderer lists and owns it, and
/// `Renderer::kill_render_target` ends it. The GL objects belong to the target and are deleted by
/// `kill` alone: the destructor deletes none.
///
/// Sizes are in pixels, the origin is the lower left. Everything runs on the thread that holds the
/// graphics context. In another context than that of the create the target is made once more, in
/// the same form and with the last size, when it is activated or its ids are asked for: what was
/// drawn into it stays where it was drawn, unless the contexts share, and ids are those of the
/// current context. Parameters without a name are taken and not used. Sizes are 1 to
/// `Renderer::get_max_texture_size`: with others the framebuffer stays incomplete, and a create
/// returns false.
///
/// A create on a target that has objects kills them first. One that returns false leaves what it
/// made until `kill`. Nothing goes to the log.
///
/// A create leaves the texture unit of its last colour texture active; units of the others, and
/// after a `resize` the active one, still hold the target's own textures. A program that samples a
/// unit which nobody set while it draws into the target reads what it writes, with any result: bind
/// every unit that a program samples.
///
/// @code
/// RenderTarget* target = renderer->create_render_target();
/// if (target->create_target(256, 256, PF_RGBA_U8, false, true, true, 0)) {
///     target->activate();
///     // draw
///     target->deactivate();
/// }
/// @endcode
class ORVEX_API RenderTarget {
public:
    /// Takes the next id; makes no objects of the API.
    RenderTarget();
    virtual ~RenderTarget();
    RenderTarget(const RenderTarget&) = delete;
    RenderTarget& operator=(const RenderTarget&) = delete;

    /// Returns the id, unique in the process, by which the renderer finds the target.
    int get_id() const { return id; }
    /// Same as `get_id`.
    int getid() const { return id; }
    /// Returns the width in pixels; 0 before the first create.
    int get_width() const { return width; }
    /// Returns the height in pixels; 0 before the first create.
    int get_height() const { return height; }
    /// Returns the samples per pixel; below 1 for a target without multisampling, which the
    /// rectangle and the depth forms always are.
    int get_samples() const { return samples; }
    /// Returns the API that the target belongs to; 1 for OpenGL.
    ORVEX_API3D get_api3d() const { return api3d; }

    /// Makes a target of render buffers, which can be drawn to and copied, but neither sampled nor
    /// read back: copy it into a target with textures first.
    /// @param format       pixel format of the colour buffers; `PF_BGR_U8` and `PF_BGRA_U8` are no
    ///                     storage of render buffers, and the framebuffer stays incomplete
    /// @param num_buffers  colour buffers, lowered to 8
    /// @param samples      samples per pixel, lowered to what the API offers; below 1 for none
    /// @return whether the framebuffer is complete; if not, `get_error_str` tells why
    virtual bool create_render_buffer_target(int width, int height, PIXEL_FORMAT format, bool,
                                             unsigned long num_buffers, bool, int samples) = 0;

    /// Makes a target with one colour texture and a depth texture.
    /// @param format   pixel format of the colour textures. Drivers needn't draw into floats of
    ///                 three channels (`PF_RGB_F32`, `PF_RGB_F16`): take four.
    /// @param linear   linear filtering of the textures; nearest otherwise and with samples
    /// @param clamp    clamp outside the texture, to its border's black: with `linear` dark seams.
    ///                 Repeat otherwise, and always in a core profile, which doesn't know the mode
    ///                 that is asked for.
    /// @param samples  samples per pixel; below 1 for plain textures
    /// @return whether the framebuffer is complete; if not, `get_error_str` tells why
    virtual bool create_target(int width, int height, PIXEL_FORMAT format, bool, bool linear,
                               bool clamp, int samples) = 0;

    /// `create_target` with several colour textures.
    /// @param num_textures  colour textures, lowered to 8
    virtual bool create_target_v2(int width, int height, PIXEL_FORMAT format,
                                  unsigned long num_textures, bool, bool linear, bool clamp,
                                  int samples) = 0;

    /// `create_target` with rectangle textures, whose coordinates are in pixels. The API has none
    /// with samples: they aren't kept, and the framebuffer stays incomplete.
    virtual bool create_target_rect(int width, int height, PIXEL_FORMAT format, bool, bool linear,
                                    bool clamp, int samples) = 0;

    /// `create_target_v2` with rectangle textures.
    virtual bool create_target_rect_v2(int width, int height, PIXEL_FORMAT format,
                                       unsigned long num_textures, bool, bool linear, bool clamp,
                                       int samples) = 0;

    /// Makes a target with a depth texture alone.
    virtual bool create_target_depth(int width, int height, bool linear, bool) = 0;

    /// `create_target_depth` with a rectangle texture.
    virtual bool create_target_depth_rect(int width, int height, bool linear, bool) = 0;

    /// Fills one colour buffer of whatever framebuffer is bound now: activate the target first.
    /// @param index    draw buffer; one that isn't there is an error of the API's, and true
    /// @param r,g,b,a  0 to 1 where the buffer holds no floats; others are clamped
    /// @return false without the API's entry point
    virtual bool clear_color_buffer(int index, float r, float g, float b, float a) = 0;

    /// Fills the depth buffer of whatever framebuffer is bound now.
    /// @param depth  0 is near, 1 is far; what lies outside is clamped
    /// @return false without the API's entry point
    virtual bool clear_depth_buffer(float depth) = 0;

    /// Reads the first colour texture, bottom row first, three bytes a pixel, packed as the API is
    /// set to: each row padded to a multiple of four bytes, unless the host changed that. A row
    /// length and skips that a host left set hold here too.
    /// @param pixels  the caller's, with room for all rows as they are packed
    /// @return false for null, with samples (resolve it into a plain target first), without a
    ///         colour texture, and if the API refused the last size of it
    virtual bool read_color_pixmap_rgb_u8(unsigned char* pixels) = 0;

    /// Reads the first colour texture, bottom row first, four bytes a pixel.
    /// @param pixels  the caller's, with room for all rows
    /// @return as for RGB
    virtual bool read_color_pixmap_rgba_u8(unsigned char* pixels) = 0;

    /// Deletes every GL object of the target; the object itself stays and can be made again.
    /// @return true, a second time too; false while objects are left, because the renderer was
    ///         stopped: they stay until it has started again
    virtual bool kill() = 0;

    /// Directs drawing to the target; viewport and draw buffers stay. One without objects gets a
    /// framebuffer without attachments.
    /// @return false without the API
    virtual bool activate() = 0;

    /// Directs drawing to the window again: to its surface, or to the framebuffer that
    /// `RenderWindow::set_framebuffer` told. @return false without the API
    virtual bool deactivate() = 0;

    /// Gives every colour and depth buffer a new size; the content is lost. Whether the API takes
    /// the size isn't asked.
    /// @return false without the API
    virtual bool resize(int width, int height) = 0;

    /// @return framebuffer name, 0 for none
    virtual unsigned int get_fbo() = 0;

    /// Name of a colour texture, of the first one for an index below 0 or beyond the count; 0 if
    /// there is none.
    virtual unsigned int get_color_tex_id_opengl(int index) = 0;

    /// @return name of the depth texture, 0 for none
    virtual unsigned int get_depth_tex_id_opengl() = 0;

    /// Empties the text of `get_error_str`.
    virtual void clear_error_str() = 0;

    /// @return the error lines gathered so far, each ended by a carriage return and a line feed
    virtual const char* get_error_str() = 0;

    /// @return length of `get_error_str` in bytes
    virtual unsigned long get_error_str_size() = 0;

protected:
    friend Texture; ///< reads into memory of its own

    /// How many bytes a read-back may write now; the largest number if there is nothing of such a
    /// size. As it stands, rows padded to eight bytes, the widest alignment there is; a back end
    /// that packs in other ways overrides it.
    /// @param channels  bytes a pixel
    virtual unsigned long get_read_back_size(unsigned long channels);

public:
    /// Reads a colour texture as floats, bottom row first; of a float texture the very numbers. Red
    /// alone, or red, green and blue, or with alpha; of a texture of bytes 0 to 1. How the API is
    /// set to pack pixels doesn't matter, and stays.
    /// @param index       colour texture, from 0
    /// @param channels    of a pixel: 1, 3 or 4
    /// @param pixels      the caller's, with room for all rows
    /// @param row_length  pixels from the begin of one row to that of the next, from the width on;
    ///                    what lies between stays as it is
    /// @return false for null and numbers outside, with samples (resolve it into a plain target
    ///         first), without such a texture, if the API refused the last size of it, and of a
    ///         target that isn't the engine's
    virtual bool read_color_texture_f32(unsigned int index, unsigned int channels, float* pixels,
                                        unsigned long row_length);

protected:
    int id;                ///< what `get_id` gives
    int width = 0;         ///< pixels, written by a create and by `resize`
    int height = 0;        ///< pixels, as `width`
    int samples = 0;       ///< samples per pixel, written by a create
    ORVEX_API3D api3d = 0; ///< set by the back end
};

} // namespace orvex
