#include "orvex/renderer/opengl/gl/private/gl_enums.h"

#include <cstddef>

#include <GL/glext.h>

// Tables that are indexed by the engine's enumerations. A value outside one takes the row that the
// header tells.

namespace orvex {

namespace {

template<std::size_t count>
GLenum look_up(const GLenum (&table)[count], int value, GLenum other) {
    const auto index = static_cast<std::size_t>(value);
    return index < count ? table[index] : other;
}

} // namespace

GLenum gl_blend_factor(RENDERER_BLEND_FACTOR factor) {
    static constexpr GLenum table[] = {GL_ZERO,
                                       GL_ONE,
                                       GL_SRC_ALPHA,
                                       GL_ONE_MINUS_DST_ALPHA,
                                       GL_ONE_MINUS_DST_COLOR,
                                       GL_ONE_MINUS_SRC_ALPHA,
                                       GL_DST_COLOR,
                                       GL_DST_ALPHA,
                                       GL_SRC_COLOR,
                                       GL_ONE_MINUS_SRC_COLOR};
    return look_up(table, factor, GL_ONE);
}

GLenum gl_cmp_func(RENDERER_CMP_FUNC func) {
    static constexpr GLenum table[] = {GL_NEVER,  GL_LESS,  GL_LEQUAL,   GL_GREATER,
                                       GL_GEQUAL, GL_EQUAL, GL_NOTEQUAL, GL_ALWAYS};
    return look_up(table, func, GL_LESS);
}

GLenum gl_polygon_face(RENDERER_POLYGON_FACE face) {
    static constexpr GLenum table[] = {GL_BACK, GL_FRONT, GL_FRONT_AND_BACK};
    return look_up(table, face, GL_FRONT_AND_BACK);
}

GLenum gl_polygon_mode(RENDERER_POLYGON_MODE mode) {
    static constexpr GLenum table[] = {GL_POINT, GL_LINE, GL_FILL};
    return look_up(table, mode, GL_FILL);
}

GLenum gl_buffer_usage(BUFFER_OBJECT_USAGE usage) {
    static constexpr GLenum table[] = {GL_STATIC_DRAW,  GL_STATIC_DRAW,  GL_STATIC_READ,
                                       GL_DYNAMIC_DRAW, GL_DYNAMIC_READ, GL_STREAM_DRAW,
                                       GL_STREAM_READ};
    return look_up(table, usage, GL_STATIC_DRAW);
}

GLenum gl_addressing_mode(SAMPLER_ADDRESSING_MODE mode) {
    static constexpr GLenum table[] = {GL_CLAMP_TO_EDGE, GL_REPEAT, GL_CLAMP_TO_EDGE,
                                       GL_MIRRORED_REPEAT};
    return look_up(table, mode, GL_CLAMP_TO_EDGE);
}

GLenum gl_shader_type(GPU_SHADER_TYPE type) {
    static constexpr GLenum table[] = {GL_VERTEX_SHADER,          GL_FRAGMENT_SHADER,
                                       GL_GEOMETRY_SHADER,        GL_TESS_CONTROL_SHADER,
                                       GL_TESS_EVALUATION_SHADER, GL_COMPUTE_SHADER};
    return look_up(table, type, 0);
}

GLenum gl_data_access(DATA_ACCESS_TYPE access) {
    static constexpr GLenum table[] = {GL_READ_WRITE, GL_WRITE_ONLY, GL_READ_ONLY};
    return look_up(table, access, GL_READ_WRITE);
}

GLenum gl_cubemap_face(CUBEMAP_FACE face) {
    return GL_TEXTURE_CUBE_MAP_POSITIVE_X + static_cast<GLenum>(face);
}

GLbitfield gl_memory_barriers(unsigned int bits) {
    static constexpr GLbitfield table[] = {GL_VERTEX_ATTRIB_ARRAY_BARRIER_BIT,
                                           GL_ELEMENT_ARRAY_BARRIER_BIT,
                                           GL_UNIFORM_BARRIER_BIT,
                                           GL_TEXTURE_FETCH_BARRIER_BIT,
                                           GL_SHADER_IMAGE_ACCESS_BARRIER_BIT,
                                           GL_COMMAND_BARRIER_BIT,
                                           GL_PIXEL_BUFFER_BARRIER_BIT,
                                           GL_TEXTURE_UPDATE_BARRIER_BIT,
                                           GL_BUFFER_UPDATE_BARRIER_BIT,
                                           GL_FRAMEBUFFER_BARRIER_BIT,
                                           GL_TRANSFORM_FEEDBACK_BARRIER_BIT,
                                           GL_ATOMIC_COUNTER_BARRIER_BIT,
                                           GL_SHADER_STORAGE_BARRIER_BIT};
    if (bits == MEMORY_BARRIER_ALL)
        return GL_ALL_BARRIER_BITS;
    GLbitfield translated = 0;
    for (unsigned int i = 0; i < sizeof(table) / sizeof(table[0]); ++i)
        if ((bits >> i & 1U) != 0)
            translated |= table[i];
    return translated;
}

GlPixelFormat gl_pixel_format(PIXEL_FORMAT format) {
    switch (format) {
    case PF_RGB_U8:
        return {GL_RGBA8, GL_RGB, GL_UNSIGNED_BYTE, true};
    case PF_BGR_U8:
        return {GL_RGBA8, GL_BGR, GL_UNSIGNED_BYTE, true};
    case PF_RGBA_U8:
        return {GL_RGBA8, GL_RGBA, GL_UNSIGNED_BYTE, true};
    case PF_BGRA_U8:
        return {GL_RGBA8, GL_BGRA, GL_UNSIGNED_BYTE, true};
    case PF_RGB_F32:
        return {GL_RGB32F, GL_RGB, GL_FLOAT, true};
    case PF_RGBA_F32:
        return {GL_RGBA32F, GL_RGBA, GL_FLOAT, true};
    case PF_R_F32:
        return {GL_R32F, GL_RED, GL_FLOAT, true};
    case PF_RGB_F16:
        return {GL_RGB16F, GL_RGB, GL_FLOAT, true};
    case PF_RGBA_F16:
        return {GL_RGBA16F, GL_RGBA, GL_FLOAT, true};
    case PF_R_F16:
        return {GL_R16F, GL_RED, GL_FLOAT, true};
    case PF_NONE:
        break;
    }
    return {GL_RGBA8, GL_RGBA, GL_UNSIGNED_BYTE, false};
}

} // namespace orvex
