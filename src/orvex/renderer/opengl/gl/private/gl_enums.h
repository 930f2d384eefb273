#pragma once

/// @file
/// What the engine's enumerations mean to OpenGL. Pure functions; a value outside an enumeration
/// takes the row told as the other one.

#include <GL/gl.h>

#include "orvex/renderer/renderer_types.h"

namespace orvex {

/// Factor of `glBlendFunc`; other: `GL_ONE`.
GLenum gl_blend_factor(RENDERER_BLEND_FACTOR factor);

/// Comparison of `glDepthFunc`; other: `GL_LESS`.
GLenum gl_cmp_func(RENDERER_CMP_FUNC func);

/// Side of `glCullFace` and `glPolygonMode`; other: `GL_FRONT_AND_BACK`.
GLenum gl_polygon_face(RENDERER_POLYGON_FACE face);

/// Mode of `glPolygonMode`; other: `GL_FILL`.
GLenum gl_polygon_mode(RENDERER_POLYGON_MODE mode);

/// Usage of `glBufferData`; other: `GL_STATIC_DRAW`.
GLenum gl_buffer_usage(BUFFER_OBJECT_USAGE usage);

/// Wrap mode of a texture; other: `GL_CLAMP_TO_EDGE`.
GLenum gl_addressing_mode(SAMPLER_ADDRESSING_MODE mode);

/// Stage of `glCreateShader`; 0 for a value without a stage.
GLenum gl_shader_type(GPU_SHADER_TYPE type);

/// Access of `glBindImageTexture`; other: `GL_READ_WRITE`.
GLenum gl_data_access(DATA_ACCESS_TYPE access);

/// Target of a face of a cube map. Nothing is checked: the face is added to the first one.
GLenum gl_cubemap_face(CUBEMAP_FACE face);

/// Translates `MEMORY_BARRIER_BITS` one by one. 8192 alone means all barriers, and is dropped in a
/// mix, as any unknown bit is.
GLbitfield gl_memory_barriers(unsigned int bits);

/// How pixels of a format are uploaded.
struct GlPixelFormat {
    GLint internal_format;
    GLenum format;
    GLenum type;
    bool known; ///< false: the format isn't in the table, and a null pointer is uploaded
};

/// The formats of a texture upload; other: `GL_RGBA8`, `GL_RGBA`, `GL_UNSIGNED_BYTE`, not known.
GlPixelFormat gl_pixel_format(PIXEL_FORMAT format);

} // namespace orvex
