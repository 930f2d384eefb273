#pragma once

/// @file
/// Where the pixels of a texture call come from, and whether there are enough of them.

#include "orvex/renderer/opengl/gl/private/gl_enums.h"
#include "orvex/renderer/records/image.h"

namespace orvex {

/// Faces of a cube texture.
inline constexpr int num_cube_faces = 6;

/// @return whether a record of a cube texture has this face
inline bool is_cube_face(int face) {
    return face >= 0 && face < num_cube_faces;
}

/// The source of an upload. OpenGL reads as much as the size asks for, so whoever uploads asks
/// `has` first.
struct TexturePixels {
    GlPixelFormat gl;
    const void* data;    ///< null uploads no pixels
    unsigned long bytes; ///< that may be read behind `data`

    /// Whether `width * height` pixels may be read the way the context is set to; null pixels are
    /// never read. With a buffer of the host's bound for uploads there is nothing to read: the API
    /// would take the address for a place in it.
    bool has(unsigned long width, unsigned long height) const;
};

/// The pixels of an image for a load, which knows every format of the table.
TexturePixels texture_pixels_to_load(const Image& image, PIXEL_FORMAT format);

/// The same for an update, which takes the half-float formats like unknown ones: no pixels.
TexturePixels texture_pixels_to_update(const Image& image, PIXEL_FORMAT format);

/// How an update takes pixels of a format.
GlPixelFormat gl_pixel_format_to_update(PIXEL_FORMAT format);

/// Bytes that rows of this many pixels are a multiple of.
int unpack_alignment(unsigned long width);

} // namespace orvex
