#pragma once

/// @file
/// The enumerations that travel through the renderer contract. Their values are fixed: records
/// store them, hosts cast to them, and every back end maps them by the rule told at each one.
///
/// All of them have `int` behind them, so that a value outside the list is a legal value that takes
/// the row told as "other".

#include "api.h"

namespace orvex {

/// Identifies a graphics API. The renderer and its render targets say 1 for OpenGL; a render window
/// reports the major version of its context under the same word.
using ORVEX_API3D = int;

/// Factor of the blend equation. The order is the engine's own, never an API's.
enum RENDERER_BLEND_FACTOR : int {
    BLEND_FACTOR_ZERO = 0,
    BLEND_FACTOR_ONE = 1, ///< also the meaning of any other value
    BLEND_FACTOR_SRC_ALPHA = 2,
    BLEND_FACTOR_ONE_MINUS_DST_ALPHA = 3,
    BLEND_FACTOR_ONE_MINUS_DST_COLOR = 4,
    BLEND_FACTOR_ONE_MINUS_SRC_ALPHA = 5,
    BLEND_FACTOR_DST_COLOR = 6,
    BLEND_FACTOR_DST_ALPHA = 7,
    BLEND_FACTOR_SRC_COLOR = 8,
    BLEND_FACTOR_ONE_MINUS_SRC_COLOR = 9
};

/// Comparison of the depth test.
enum RENDERER_CMP_FUNC : int {
    CMP_NEVER = 0,
    CMP_LESS = 1, ///< also the meaning of any other value
    CMP_LEQUAL = 2,
    CMP_GREATER = 3,
    CMP_GEQUAL = 4,
    CMP_EQUAL = 5,
    CMP_NOTEQUAL = 6,
    CMP_ALWAYS = 7
};

/// Side of a polygon.
enum RENDERER_POLYGON_FACE : int {
    POLYGON_FACE_BACK = 0,
    POLYGON_FACE_FRONT = 1,
    POLYGON_FACE_FRONT_AND_BACK = 2 ///< also the meaning of any other value
};

/// How the inside of a polygon is drawn.
enum RENDERER_POLYGON_MODE : int {
    POLYGON_MODE_POINT = 0,
    POLYGON_MODE_LINE = 1,
    POLYGON_MODE_FILL = 2 ///< also the meaning of any other value
};

/// Layout of one pixel in memory. Images hold 1 to 7; textures and render targets know 8 to 10 too,
/// whose pixels are floats in memory and half floats in the texture.
enum PIXEL_FORMAT : int {
    PF_NONE = 0,
    PF_RGB_U8 = 1,
    PF_BGR_U8 = 2,
    PF_RGBA_U8 = 3,
    PF_BGRA_U8 = 4,
    PF_RGB_F32 = 5,
    PF_RGBA_F32 = 6,
    PF_R_F32 = 7,
    PF_RGB_F16 = 8,
    PF_RGBA_F16 = 9,
    PF_R_F16 = 10
};

/// Returns the pixel format with the value `i` for 1 to 6, and `PF_NONE` for any other integer, 7
/// included.
ORVEX_API PIXEL_FORMAT ConvertInt2Pf(int i);

/// How the content of a buffer will change and be used.
enum BUFFER_OBJECT_USAGE : int {
    BUFFER_USAGE_DEFAULT = 0,     ///< no preference, and "not forced" where a usage can be forced
    BUFFER_USAGE_STATIC_DRAW = 1, ///< also the meaning of any other value
    BUFFER_USAGE_STATIC_READ = 2,
    BUFFER_USAGE_DYNAMIC_DRAW = 3,
    BUFFER_USAGE_DYNAMIC_READ = 4,
    BUFFER_USAGE_STREAM_DRAW = 5,
    BUFFER_USAGE_STREAM_READ = 6
};

/// What a sampler gives outside the texture.
enum SAMPLER_ADDRESSING_MODE : int {
    ADDRESSING_REPEAT = 1,
    ADDRESSING_CLAMP = 2, ///< clamp to the edge; also the meaning of any other value
    ADDRESSING_MIRROR = 3
};

/// How a sampler reads between texels.
enum SAMPLER_FILTERING_MODE : int {
    FILTERING_NEAREST = 1,
    FILTERING_LINEAR = 2, ///< also the meaning of any other value
    FILTERING_TRILINEAR = 3
};

/// A stage of a GPU program. It indexes every array of a program record that has one entry per
/// stage; those arrays have `GPU_SHADER_TYPE_COUNT` places.
enum GPU_SHADER_TYPE : int {
    GPU_SHADER_VERTEX = 0,
    GPU_SHADER_PIXEL = 1,
    GPU_SHADER_GEOMETRY = 2,
    GPU_SHADER_TESS_CONTROL = 3,
    GPU_SHADER_TESS_EVAL = 4,
    GPU_SHADER_COMPUTE = 5,
    GPU_SHADER_NONE = 6,  ///< a place without a stage
    GPU_SHADER_EFFECT = 7 ///< a Direct3D effect; no OpenGL stage
};

/// Number of places in an array with one entry per stage.
inline constexpr int GPU_SHADER_TYPE_COUNT = 8;

/// Returns the word that stands for a stage in messages ("Vertex", "Tessellation control", ...).
/// Never null; the text is empty for `GPU_SHADER_NONE` and for any value outside the list.
ORVEX_API char const* GetGpuShaderTypeLabel(GPU_SHADER_TYPE type);

/// What a shader may do with an image bound for it.
enum DATA_ACCESS_TYPE : int {
    DATA_ACCESS_READ_WRITE = 0, ///< also the meaning of any other value
    DATA_ACCESS_WRITE_ONLY = 1,
    DATA_ACCESS_READ_ONLY = 2
};

/// Face of a cube map.
enum CUBEMAP_FACE : int {
    CUBEMAP_FACE_POSITIVE_X = 0,
    CUBEMAP_FACE_NEGATIVE_X = 1,
    CUBEMAP_FACE_POSITIVE_Y = 2,
    CUBEMAP_FACE_NEGATIVE_Y = 3,
    CUBEMAP_FACE_POSITIVE_Z = 4,
    CUBEMAP_FACE_NEGATIVE_Z = 5
};

/// Bits for `Renderer::memory_barrier`, combined with `|`. They are the engine's own and are
/// translated one by one.
enum MEMORY_BARRIER_BITS : int {
    MEMORY_BARRIER_VERTEX_ATTRIB_ARRAY = 1,
    MEMORY_BARRIER_ELEMENT_ARRAY = 2,
    MEMORY_BARRIER_UNIFORM = 4,
    MEMORY_BARRIER_TEXTURE_FETCH = 8,
    MEMORY_BARRIER_SHADER_IMAGE_ACCESS = 16,
    MEMORY_BARRIER_COMMAND = 32,
    MEMORY_BARRIER_PIXEL_BUFFER = 64,
    MEMORY_BARRIER_TEXTURE_UPDATE = 128,
    MEMORY_BARRIER_BUFFER_UPDATE = 256,
    MEMORY_BARRIER_FRAMEBUFFER = 512,
    MEMORY_BARRIER_TRANSFORM_FEEDBACK = 1024,
    MEMORY_BARRIER_ATOMIC_COUNTER = 2048,
    MEMORY_BARRIER_SHADER_STORAGE = 4096,
    MEMORY_BARRIER_ALL = 8192 ///< alone: every barrier; dropped in a mix with other bits
};

} // namespace orvex
