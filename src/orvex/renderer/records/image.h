#pragma once

#include "orvex/api.h"
#include "orvex/fwd.h"
#include "orvex/renderer/renderer_types.h"

namespace orvex {

/// The CPU pixel buffer: a plain record of pixels with a few operations on them.
///
/// Anyone makes one, on the stack or as a member; a `TextureData` is one, and so is each of its
/// cube faces. Decoding and encoding are the image codecs' affair.
///
/// Pixel (x, y) has the index `y * width + x`; rows are not padded. Formats 1 to 4 have 8 bits per
/// channel and live in `pixmap_u8` or `pixmap_external`, formats 5 to 7 are floats and live in
/// `pixmap_f32`. Both owned buffers come from `new[]` and are freed by `cleanup`. The memory behind
/// `pixmap_external` belongs to the codec that decoded it: an image never frees it, and only the
/// codec's `free_image_resources` does. Where an owned 8-bit buffer and an external one stand side
/// by side, the owned one wins on every read.
///
/// The fields are public and may be written. An image remembers how many bytes it allocated for a
/// buffer of its own and refuses, with false and nothing written, any operation that would leave
/// that buffer. A buffer that a host stored itself is trusted to be large enough.
///
/// No lock: one image belongs to one thread at a time. Nothing is logged. An allocation that throws
/// passes through.
///
/// @code
/// Image image;
/// image.create(64, 64, 1, PF_RGB_U8, true);
/// image.fill_color_rgb_u8(255, 128, 0);
/// image.flip_vertical();
/// @endcode
class ORVEX_API Image {
public:
    unsigned long width = 0;                  ///< pixels per row
    unsigned long height = 0;                 ///< rows
    unsigned long depth = 0;                  ///< slices; 1 in every image the engine makes
    PIXEL_FORMAT pixel_format = PF_NONE;      ///< layout of a pixel
    unsigned char* pixmap_u8 = nullptr;       ///< 8-bit pixels, owned
    float* pixmap_f32 = nullptr;              ///< float pixels, owned
    unsigned char* pixmap_external = nullptr; ///< 8-bit pixels that a codec decoded and owns

    /// No size, no format, no pixels.
    Image() = default;
    /// Starts empty and assigns.
    Image(const Image& other);
    /// Runs `cleanup`.
    virtual ~Image();

    /// Takes over sizes and format, then one store of `other`, the first it has of these:
    ///
    /// 1. `pixmap_u8`: a copy of `width * height * depth` pixels of its format;
    /// 2. `pixmap_f32`: a copy in a buffer of four times that many bytes;
    /// 3. otherwise the pointer `pixmap_external`: both images then share the codec's memory, and
    ///    this is how decoded pixels travel without being copied. An own 8-bit buffer that is too
    ///    small for the new sizes is freed, a large enough one stays and keeps winning.
    ///
    /// What the source's buffer doesn't hold is zero in the copy. The other store stays as it was.
    /// A size past the largest unsigned value saturates, and the allocation throws. Assigning an
    /// image to itself does nothing.
    Image& operator=(const Image& other);

    /// Frees and nulls both owned buffers; the external pointer stays. @return true
    bool cleanup();

    /// Bytes per pixel: 3, 4, 12, 16 or 4 for formats 1 to 7, 0 for anything else.
    int get_pixel_format_size() const;

    /// The 8-bit pixels: the owned ones if there are any, else the external ones, else null.
    unsigned char* get_u8_ptr() const;
    /// The float pixels, or null.
    float* get_f32_ptr() const;

    /// Frees and nulls `pixmap_u8`.
    void _delete_u8_ptr();
    /// Frees and nulls `pixmap_f32`.
    void _delete_f32_ptr();

    /// Stores the sizes, replaces the buffer of the store that `format` lives in, and sets the
    /// format. The other store and the external pointer stay. A fresh image of format 3 or 4 is
    /// yellow, (255, 255, 0) with alpha 1, whatever `zero_fill` says; the others are all zero with
    /// `zero_fill` and otherwise hold no particular pixels.
    /// @return false, with nothing changed, for a format outside 1 to 7; false, with the sizes
    ///         stored and the old buffer gone, if the number of bytes can't be expressed
    bool create(unsigned long width, unsigned long height, unsigned long depth, PIXEL_FORMAT format,
                bool zero_fill);

    /// @name The allocators behind `create`, one for each layout.
    /// @{

    /// Three bytes a pixel, format 1.
    bool _create_rgb_u8(unsigned long width, unsigned long height, unsigned long depth,
                        bool zero_fill);
    /// Four bytes a pixel, format 3; yellow, whatever `zero_fill` says.
    bool _create_rgba_u8(unsigned long width, unsigned long height, unsigned long depth,
                         bool zero_fill);
    /// Three floats a pixel, format 5.
    bool _create_rgb_f32(unsigned long width, unsigned long height, unsigned long depth,
                         bool zero_fill);
    /// Four floats a pixel, format 6.
    bool _create_rgba_f32(unsigned long width, unsigned long height, unsigned long depth,
                          bool zero_fill);
    /// One float a pixel, format 7.
    bool _create_r_f32(unsigned long width, unsigned long height, unsigned long depth,
                       bool zero_fill);
    /// @}

    /// Converts the `width * height` pixels to another format. Channels are copied by position: red
    /// and blue never change places, and between formats 1 and 2, or 3 and 4, only the format field
    /// changes. A float becomes the low byte of `trunc(f * 255.0)`, unclamped, and a byte becomes
    /// `b / 255.0`. Missing green and blue are 0. Alpha is always full in the result, whatever the
    /// source had. External pixels stay where they are, so `get_u8_ptr` still gives them after a
    /// conversion to floats.
    /// @return true at once for the present format; false, with nothing changed, if either format
    /// is
    ///         outside 1 to 7 or the image has too few pixels
    bool update_pixel_format(PIXEL_FORMAT format);

    /// @name Copy `width * height` pixels of 3, 4, 12 or 16 bytes from the caller.
    /// They go into the owned buffer of that store; the image's format is not looked at.
    /// @return false for a null source, and without a large enough owned buffer
    /// @{
    bool update_pixmap_rgb_u8(const void* pixels);   ///< 3 bytes a pixel, into `pixmap_u8`
    bool update_pixmap_rgba_u8(const void* pixels);  ///< 4 bytes a pixel, into `pixmap_u8`
    bool update_pixmap_rgb_f32(const void* pixels);  ///< 12 bytes a pixel, into `pixmap_f32`
    bool update_pixmap_rgba_f32(const void* pixels); ///< 16 bytes a pixel, into `pixmap_f32`
    /// @}

    /// @name Write one colour to `width * height` pixels of 3, 4, 12 or 16 bytes.
    /// They go into the owned buffer of that store; format and depth are not looked at.
    /// @return false without a large enough owned buffer
    /// @{

    /// Three bytes a pixel, into `pixmap_u8`.
    bool fill_color_rgb_u8(unsigned char r, unsigned char g, unsigned char b);
    /// Four bytes a pixel, into `pixmap_u8`.
    bool fill_color_rgba_u8(unsigned char r, unsigned char g, unsigned char b, unsigned char a);
    /// Three floats a pixel, into `pixmap_f32`.
    bool fill_color_rgb_f32(float r, float g, float b);
    /// Four floats a pixel, into `pixmap_f32`.
    bool fill_color_rgba_f32(float r, float g, float b, float a);
    /// @}

    /// Turns the image upside down. An RGB image that has external pixels only first gets its own
    /// copy of them, becomes format 1, and leaves the external ones to the codec.
    /// @return false for formats 0 and 7 and others outside 1 to 6, and without the pixels
    bool flip_vertical();
    /// Mirrors the image left to right; otherwise like `flip_vertical`.
    bool flip_horizontal();

    /// @name The flips, one for each layout; the image's format is not looked at.
    /// @{
    bool _flip_vertical_rgb_u8();     ///< rows of 3 bytes a pixel
    bool _flip_vertical_rgba_u8();    ///< rows of 4 bytes a pixel
    bool _flip_vertical_rgb_f32();    ///< rows of 12 bytes a pixel
    bool _flip_vertical_rgba_f32();   ///< rows of 16 bytes a pixel
    bool _flip_horizontal_rgb_u8();   ///< pixels of 3 bytes
    bool _flip_horizontal_rgba_u8();  ///< pixels of 4 bytes
    bool _flip_horizontal_rgb_f32();  ///< pixels of 12 bytes
    bool _flip_horizontal_rgba_f32(); ///< pixels of 16 bytes
    /// @}

    /// Fills the image with `color_a`, then sets `count` random pixels, at most `width * height`,
    /// to `color_b`. The places come from the process-wide generator, seeded with `seed`; one place
    /// may be hit twice. Colours are scaled to the format: 1.0 is 255 in 8-bit images.
    /// @return false for formats outside 1 to 6, and without a large enough owned buffer
    bool fill_with_noise(unsigned long count, const vec4& color_a, const vec4& color_b,
                         unsigned int seed);

    /// @name The noise, one operation for each layout; the image's format is not looked at.
    /// @{

    /// Three bytes a pixel.
    bool fill_with_noise_rgb_u8(unsigned long count, const vec3u8& color_a, const vec3u8& color_b,
                                unsigned int seed);
    /// Four bytes a pixel.
    bool fill_with_noise_rgba_u8(unsigned long count, const vec4u8& color_a, const vec4u8& color_b,
                                 unsigned int seed);
    /// Three floats a pixel.
    bool fill_with_noise_rgb_f32(unsigned long count, const vec3& color_a, const vec3& color_b,
                                 unsigned int seed);
    /// Four floats a pixel.
    bool fill_with_noise_rgba_f32(unsigned long count, const vec4& color_a, const vec4& color_b,
                                  unsigned int seed);
    /// @}

    /// @name Write one pixel of an owned buffer.
    /// 8-bit channels take the truncated value as it is: 255.0 is full, and 1.0 is almost black.
    /// Channels beyond the format's are not read.
    /// @param index  below `width * height * depth`; in the 2D forms `y * width + x`, which is the
    ///               only thing that is checked
    /// @return false for an index outside, null, format 7, or without an owned buffer
    /// @{

    /// By index.
    bool set_pixel(unsigned long index, const vec4& color);
    /// As `set_pixel`.
    bool set_pixel_1d(unsigned long index, const vec4& color);
    /// By column and row.
    bool set_pixel_2d(unsigned long x, unsigned long y, const vec4& color);
    /// By index, from floats: as many as the format has channels.
    bool set_pixel_v2(unsigned long index, const float* color);
    /// As `set_pixel_v2`.
    bool set_pixel_1d_v2(unsigned long index, const float* color);
    /// By column and row, from floats: as many as the format has channels.
    bool set_pixel_2d_v2(unsigned long x, unsigned long y, const float* color);
    /// @}

    /// Opaque to hosts: what the engine's own rooms know of the memory behind the pointers.
    struct Access;

private:
    /// How many bytes lie behind a pointer. It says nothing as soon as the field holds another one.
    struct Allocation {
        const void* buffer = nullptr;
        unsigned long bytes = 0;
    };

    /// While a texture holds the external pixels: which, and the others that hold the same.
    struct Holder {
        unsigned char* pixels = nullptr;
        Image* previous = nullptr;
        Image* next = nullptr;
    };

    Allocation u8_allocation;
    Allocation f32_allocation;
    Allocation external;
    Holder holder;
};

} // namespace orvex
