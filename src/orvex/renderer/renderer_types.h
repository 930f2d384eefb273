#pragma once

/// @file
/// The enumerations that travel through the renderer contract. Their values are fixed: records
/// store them, hosts cast to them, and every back end maps them by the rule told at each one.
///
/// All of them have `int` behind them, so that a value outside the list is a legal value that takes
/// the row told as "other".

#include "orvex/api.h"

namespace orvex {

/// Identifies a graphics API. The renderer and its render targets say 1 for OpenGL; a render window
/// reports the major version of its context under the same word.
using ORVEX_API3D = int;

/// Factor of the blend equation. The order is the engine's own, never an API's.
enum RENDERER_BLEND_FACTOR : int {
    BLEND_FACTOR_ZERO = 0,                ///< 0
    BLEND_FACTOR_ONE = 1,                 ///< 1; also the meaning of any other value
    BLEND_FACTOR_SRC_ALPHA = 2,           ///< alpha of the new colour
    BLEND_FACTOR_ONE_MINUS_DST_ALPHA = 3, ///< 1 less alpha of the old colour
    BLEND_FACTOR_ONE_MINUS_DST_COLOR = 4, ///< 1 less the old colour, channel by channel
    BLEND_FACTOR_ONE_MINUS_SRC_ALPHA = 5, ///< 1 less alpha of the new colour
    BLEND_FACTOR_DST_COLOR = 6,           ///< the old colour, channel by channel
    BLEND_FACTOR_DST_ALPHA = 7,           ///< alpha of the old colour
    BLEND_FACTOR_SRC_COLOR = 8,           ///< the new colour, channel by channel
    BLEND_FACTOR_ONE_MINUS_SRC_COLOR = 9  ///< 1 less the new colour, channel by channel
};

/// Comparison of the depth test.
enum RENDERER_CMP_FUNC : int {
    CMP_NEVER = 0,    ///< lets nothing through
    CMP_LESS = 1,     ///< lets through what is nearer; also the meaning of any other value
    CMP_LEQUAL = 2,   ///< lets through what is nearer or as near
    CMP_GREATER = 3,  ///< lets through what is farther
    CMP_GEQUAL = 4,   ///< lets through what is farther or as near
    CMP_EQUAL = 5,    ///< lets through what is as near
    CMP_NOTEQUAL = 6, ///< lets through what is nearer or farther
    CMP_ALWAYS = 7    ///< lets everything through
};

/// Side of a polygon.
enum RENDERER_POLYGON_FACE : int {
    POLYGON_FACE_BACK = 0,          ///< clockwise to the viewer
    POLYGON_FACE_FRONT = 1,         ///< counter-clockwise to the viewer
    POLYGON_FACE_FRONT_AND_BACK = 2 ///< both; also the meaning of any other value
};

/// How the inside of a polygon is drawn.
enum RENDERER_POLYGON_MODE : int {
    POLYGON_MODE_POINT = 0, ///< its corners
    POLYGON_MODE_LINE = 1,  ///< its edges
    POLYGON_MODE_FILL = 2   ///< all of it; also the meaning of any other value
};

/// Layout of one pixel in memory. Images hold 1 to 7; textures and render targets know 8 to 10 too,
/// whose pixels are floats in memory and half floats in the texture.
enum PIXEL_FORMAT : int {
    PF_NONE = 0,     ///< no pixels, or no preference
    PF_RGB_U8 = 1,   ///< 3 bytes: red, green, blue
    PF_BGR_U8 = 2,   ///< 3 bytes: blue, green, red
    PF_RGBA_U8 = 3,  ///< 4 bytes: red, green, blue, alpha
    PF_BGRA_U8 = 4,  ///< 4 bytes: blue, green, red, alpha
    PF_RGB_F32 = 5,  ///< 3 floats, 12 bytes
    PF_RGBA_F32 = 6, ///< 4 floats, 16 bytes
    PF_R_F32 = 7,    ///< 1 float, 4 bytes
    PF_RGB_F16 = 8,  ///< 3 half floats in the texture
    PF_RGBA_F16 = 9, ///< 4 half floats in the texture
    PF_R_F16 = 10    ///< 1 half float in the texture
};

/// Returns the pixel format with the value `i` for 1 to 6, and `PF_NONE` for any other integer, 7
/// included.
[[nodiscard]] ORVEX_API PIXEL_FORMAT ConvertInt2Pf(int i);

/// How the content of a buffer will change and be used.
enum BUFFER_OBJECT_USAGE : int {
    BUFFER_USAGE_DEFAULT = 0,      ///< no preference, and "not forced" where a usage can be forced
    BUFFER_USAGE_STATIC_DRAW = 1,  ///< written once, drawn often; also any other value
    BUFFER_USAGE_STATIC_READ = 2,  ///< written once, read back by the host
    BUFFER_USAGE_DYNAMIC_DRAW = 3, ///< written again and again, drawn many times
    BUFFER_USAGE_DYNAMIC_READ = 4, ///< written again and again, read back by the host
    BUFFER_USAGE_STREAM_DRAW = 5,  ///< written for a draw or a few
    BUFFER_USAGE_STREAM_READ = 6   ///< written once, read back a few times
};

/// What a sampler gives outside the texture.
enum SAMPLER_ADDRESSING_MODE : int {
    ADDRESSING_REPEAT = 1, ///< the texture over and over
    ADDRESSING_CLAMP = 2,  ///< clamp to the edge; also the meaning of any other value
    ADDRESSING_MIRROR = 3  ///< the texture over and over, every other time mirrored
};

/// How a sampler reads between texels.
enum SAMPLER_FILTERING_MODE : int {
    FILTERING_NEAREST = 1,  ///< the nearest texel
    FILTERING_LINEAR = 2,   ///< a mix of the nearest texels; also the meaning of any other value
    FILTERING_TRILINEAR = 3 ///< a mix of texels, and of the two nearest mip levels
};

/// A stage of a GPU program. It indexes every array of a program record that has one entry per
/// stage; those arrays have `GPU_SHADER_TYPE_COUNT` places.
enum GPU_SHADER_TYPE : int {
    GPU_SHADER_VERTEX = 0,       ///< once a vertex
    GPU_SHADER_PIXEL = 1,        ///< once a pixel
    GPU_SHADER_GEOMETRY = 2,     ///< once a primitive
    GPU_SHADER_TESS_CONTROL = 3, ///< once a corner of a patch
    GPU_SHADER_TESS_EVAL = 4,    ///< once a vertex made of a patch
    GPU_SHADER_COMPUTE = 5,      ///< outside of drawing
    GPU_SHADER_NONE = 6,         ///< a place without a stage
    GPU_SHADER_EFFECT = 7        ///< a Direct3D effect; no OpenGL stage
};

/// Number of places in an array with one entry per stage.
inline constexpr int GPU_SHADER_TYPE_COUNT = 8;

/// Returns the word that stands for a stage in messages ("Vertex", "Tessellation control", ...).
/// Never null; the text is empty for `GPU_SHADER_NONE` and for any value outside the list.
[[nodiscard]] ORVEX_API const char* GetGpuShaderTypeLabel(GPU_SHADER_TYPE type);

/// What a shader may do with an image bound for it.
enum DATA_ACCESS_TYPE : int {
    DATA_ACCESS_READ_WRITE = 0, ///< loads and stores; also the meaning of any other value
    DATA_ACCESS_WRITE_ONLY = 1, ///< no loads
    DATA_ACCESS_READ_ONLY = 2   ///< no stores
};

/// Face of a cube map.
enum CUBEMAP_FACE : int {
    CUBEMAP_FACE_POSITIVE_X = 0, ///< seen towards +X
    CUBEMAP_FACE_NEGATIVE_X = 1, ///< seen towards -X
    CUBEMAP_FACE_POSITIVE_Y = 2, ///< seen towards +Y
    CUBEMAP_FACE_NEGATIVE_Y = 3, ///< seen towards -Y
    CUBEMAP_FACE_POSITIVE_Z = 4, ///< seen towards +Z
    CUBEMAP_FACE_NEGATIVE_Z = 5  ///< seen towards -Z
};

/// Bits for `Renderer::memory_barrier`, combined with `|`. They are the engine's own and are
/// translated one by one.
enum MEMORY_BARRIER_BITS : int {
    MEMORY_BARRIER_VERTEX_ATTRIB_ARRAY = 1,   ///< vertices fetched from buffers
    MEMORY_BARRIER_ELEMENT_ARRAY = 2,         ///< indices fetched from buffers
    MEMORY_BARRIER_UNIFORM = 4,               ///< uniform blocks
    MEMORY_BARRIER_TEXTURE_FETCH = 8,         ///< texels fetched by samplers
    MEMORY_BARRIER_SHADER_IMAGE_ACCESS = 16,  ///< images that shaders load and store
    MEMORY_BARRIER_COMMAND = 32,              ///< draw commands read from buffers
    MEMORY_BARRIER_PIXEL_BUFFER = 64,         ///< pixels that travel through buffers
    MEMORY_BARRIER_TEXTURE_UPDATE = 128,      ///< textures written and read by the host
    MEMORY_BARRIER_BUFFER_UPDATE = 256,       ///< buffers written, read and mapped by the host
    MEMORY_BARRIER_FRAMEBUFFER = 512,         ///< attachments of framebuffers
    MEMORY_BARRIER_TRANSFORM_FEEDBACK = 1024, ///< vertices recorded by transform feedback
    MEMORY_BARRIER_ATOMIC_COUNTER = 2048,     ///< atomic counters
    MEMORY_BARRIER_SHADER_STORAGE = 4096,     ///< shader storage buffers
    MEMORY_BARRIER_ALL = 8192 ///< alone: every barrier; dropped in a mix with other bits
};

} // namespace orvex
