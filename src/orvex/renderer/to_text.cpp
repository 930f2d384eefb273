#include "orvex/renderer/to_text.h"

// No switch has a default, so that the compiler reports an enumerator that is forgotten here.

namespace orvex {

namespace {

constexpr const char* unknown = "?";

} // namespace

#define ORVEX_NAME(enumerator)                                                                     \
    case enumerator:                                                                               \
        return #enumerator;

const char* to_text(RENDERER_BLEND_FACTOR value) noexcept {
    switch (value) {
        ORVEX_NAME(BLEND_FACTOR_ZERO)
        ORVEX_NAME(BLEND_FACTOR_ONE)
        ORVEX_NAME(BLEND_FACTOR_SRC_ALPHA)
        ORVEX_NAME(BLEND_FACTOR_ONE_MINUS_DST_ALPHA)
        ORVEX_NAME(BLEND_FACTOR_ONE_MINUS_DST_COLOR)
        ORVEX_NAME(BLEND_FACTOR_ONE_MINUS_SRC_ALPHA)
        ORVEX_NAME(BLEND_FACTOR_DST_COLOR)
        ORVEX_NAME(BLEND_FACTOR_DST_ALPHA)
        ORVEX_NAME(BLEND_FACTOR_SRC_COLOR)
        ORVEX_NAME(BLEND_FACTOR_ONE_MINUS_SRC_COLOR)
    }
    return unknown;
}

const char* to_text(RENDERER_CMP_FUNC value) noexcept {
    switch (value) {
        ORVEX_NAME(CMP_NEVER)
        ORVEX_NAME(CMP_LESS)
        ORVEX_NAME(CMP_LEQUAL)
        ORVEX_NAME(CMP_GREATER)
        ORVEX_NAME(CMP_GEQUAL)
        ORVEX_NAME(CMP_EQUAL)
        ORVEX_NAME(CMP_NOTEQUAL)
        ORVEX_NAME(CMP_ALWAYS)
    }
    return unknown;
}

const char* to_text(RENDERER_POLYGON_FACE value) noexcept {
    switch (value) {
        ORVEX_NAME(POLYGON_FACE_BACK)
        ORVEX_NAME(POLYGON_FACE_FRONT)
        ORVEX_NAME(POLYGON_FACE_FRONT_AND_BACK)
    }
    return unknown;
}

const char* to_text(RENDERER_POLYGON_MODE value) noexcept {
    switch (value) {
        ORVEX_NAME(POLYGON_MODE_POINT)
        ORVEX_NAME(POLYGON_MODE_LINE)
        ORVEX_NAME(POLYGON_MODE_FILL)
    }
    return unknown;
}

const char* to_text(PIXEL_FORMAT value) noexcept {
    switch (value) {
        ORVEX_NAME(PF_NONE)
        ORVEX_NAME(PF_RGB_U8)
        ORVEX_NAME(PF_BGR_U8)
        ORVEX_NAME(PF_RGBA_U8)
        ORVEX_NAME(PF_BGRA_U8)
        ORVEX_NAME(PF_RGB_F32)
        ORVEX_NAME(PF_RGBA_F32)
        ORVEX_NAME(PF_R_F32)
        ORVEX_NAME(PF_RGB_F16)
        ORVEX_NAME(PF_RGBA_F16)
        ORVEX_NAME(PF_R_F16)
    }
    return unknown;
}

const char* to_text(BUFFER_OBJECT_USAGE value) noexcept {
    switch (value) {
        ORVEX_NAME(BUFFER_USAGE_DEFAULT)
        ORVEX_NAME(BUFFER_USAGE_STATIC_DRAW)
        ORVEX_NAME(BUFFER_USAGE_STATIC_READ)
        ORVEX_NAME(BUFFER_USAGE_DYNAMIC_DRAW)
        ORVEX_NAME(BUFFER_USAGE_DYNAMIC_READ)
        ORVEX_NAME(BUFFER_USAGE_STREAM_DRAW)
        ORVEX_NAME(BUFFER_USAGE_STREAM_READ)
    }
    return unknown;
}

const char* to_text(SAMPLER_ADDRESSING_MODE value) noexcept {
    switch (value) {
        ORVEX_NAME(ADDRESSING_REPEAT)
        ORVEX_NAME(ADDRESSING_CLAMP)
        ORVEX_NAME(ADDRESSING_MIRROR)
    }
    return unknown;
}

const char* to_text(SAMPLER_FILTERING_MODE value) noexcept {
    switch (value) {
        ORVEX_NAME(FILTERING_NEAREST)
        ORVEX_NAME(FILTERING_LINEAR)
        ORVEX_NAME(FILTERING_TRILINEAR)
    }
    return unknown;
}

const char* to_text(GPU_SHADER_TYPE value) noexcept {
    switch (value) {
        ORVEX_NAME(GPU_SHADER_VERTEX)
        ORVEX_NAME(GPU_SHADER_PIXEL)
        ORVEX_NAME(GPU_SHADER_GEOMETRY)
        ORVEX_NAME(GPU_SHADER_TESS_CONTROL)
        ORVEX_NAME(GPU_SHADER_TESS_EVAL)
        ORVEX_NAME(GPU_SHADER_COMPUTE)
        ORVEX_NAME(GPU_SHADER_NONE)
        ORVEX_NAME(GPU_SHADER_EFFECT)
    }
    return unknown;
}

const char* to_text(DATA_ACCESS_TYPE value) noexcept {
    switch (value) {
        ORVEX_NAME(DATA_ACCESS_READ_WRITE)
        ORVEX_NAME(DATA_ACCESS_WRITE_ONLY)
        ORVEX_NAME(DATA_ACCESS_READ_ONLY)
    }
    return unknown;
}

const char* to_text(CUBEMAP_FACE value) noexcept {
    switch (value) {
        ORVEX_NAME(CUBEMAP_FACE_POSITIVE_X)
        ORVEX_NAME(CUBEMAP_FACE_NEGATIVE_X)
        ORVEX_NAME(CUBEMAP_FACE_POSITIVE_Y)
        ORVEX_NAME(CUBEMAP_FACE_NEGATIVE_Y)
        ORVEX_NAME(CUBEMAP_FACE_POSITIVE_Z)
        ORVEX_NAME(CUBEMAP_FACE_NEGATIVE_Z)
    }
    return unknown;
}

const char* to_text(MEMORY_BARRIER_BITS value) noexcept {
    switch (value) {
        ORVEX_NAME(MEMORY_BARRIER_VERTEX_ATTRIB_ARRAY)
        ORVEX_NAME(MEMORY_BARRIER_ELEMENT_ARRAY)
        ORVEX_NAME(MEMORY_BARRIER_UNIFORM)
        ORVEX_NAME(MEMORY_BARRIER_TEXTURE_FETCH)
        ORVEX_NAME(MEMORY_BARRIER_SHADER_IMAGE_ACCESS)
        ORVEX_NAME(MEMORY_BARRIER_COMMAND)
        ORVEX_NAME(MEMORY_BARRIER_PIXEL_BUFFER)
        ORVEX_NAME(MEMORY_BARRIER_TEXTURE_UPDATE)
        ORVEX_NAME(MEMORY_BARRIER_BUFFER_UPDATE)
        ORVEX_NAME(MEMORY_BARRIER_FRAMEBUFFER)
        ORVEX_NAME(MEMORY_BARRIER_TRANSFORM_FEEDBACK)
        ORVEX_NAME(MEMORY_BARRIER_ATOMIC_COUNTER)
        ORVEX_NAME(MEMORY_BARRIER_SHADER_STORAGE)
        ORVEX_NAME(MEMORY_BARRIER_ALL)
    }
    return unknown;
}

const char* to_text(VERTEX_FORMAT value) noexcept {
    switch (value) {
        ORVEX_NAME(VERTEX_FORMAT_96)
        ORVEX_NAME(VERTEX_FORMAT_64)
        ORVEX_NAME(VERTEX_FORMAT_32)
        ORVEX_NAME(VERTEX_FORMAT_PHYSX_CLOTH)
    }
    return unknown;
}

const char* to_text(LINE_RENDER_MODE value) noexcept {
    switch (value) {
        ORVEX_NAME(LINE_RENDER_MODE_LINES)
        ORVEX_NAME(LINE_RENDER_MODE_LINE_STRIP)
        ORVEX_NAME(LINE_RENDER_MODE_LINE_LOOP)
    }
    return unknown;
}

const char* to_text(PARTICLE_EMITTER_TYPE value) noexcept {
    switch (value) { ORVEX_NAME(PARTICLE_EMITTER_POINT) }
    return unknown;
}

const char* to_text(PARTICLE_ACTION_TYPE value) noexcept {
    switch (value) { ORVEX_NAME(PARTICLE_ACTION_GRAVITY) }
    return unknown;
}

const char* to_text(GPU_SHADER_UNIFORM value) noexcept {
    switch (value) {
        ORVEX_NAME(GPU_SHADER_UNIFORM_1I)
        ORVEX_NAME(GPU_SHADER_UNIFORM_2I)
        ORVEX_NAME(GPU_SHADER_UNIFORM_3I)
        ORVEX_NAME(GPU_SHADER_UNIFORM_4I)
        ORVEX_NAME(GPU_SHADER_UNIFORM_1IV)
        ORVEX_NAME(GPU_SHADER_UNIFORM_2IV)
        ORVEX_NAME(GPU_SHADER_UNIFORM_3IV)
        ORVEX_NAME(GPU_SHADER_UNIFORM_4IV)
        ORVEX_NAME(GPU_SHADER_UNIFORM_1F)
        ORVEX_NAME(GPU_SHADER_UNIFORM_2F)
        ORVEX_NAME(GPU_SHADER_UNIFORM_3F)
        ORVEX_NAME(GPU_SHADER_UNIFORM_4F)
        ORVEX_NAME(GPU_SHADER_UNIFORM_1FV)
        ORVEX_NAME(GPU_SHADER_UNIFORM_2FV)
        ORVEX_NAME(GPU_SHADER_UNIFORM_3FV)
        ORVEX_NAME(GPU_SHADER_UNIFORM_4FV)
        ORVEX_NAME(GPU_SHADER_UNIFORM_1D)
        ORVEX_NAME(GPU_SHADER_UNIFORM_2D)
        ORVEX_NAME(GPU_SHADER_UNIFORM_3D)
        ORVEX_NAME(GPU_SHADER_UNIFORM_4D)
        ORVEX_NAME(GPU_SHADER_UNIFORM_1DV)
        ORVEX_NAME(GPU_SHADER_UNIFORM_2DV)
        ORVEX_NAME(GPU_SHADER_UNIFORM_3DV)
        ORVEX_NAME(GPU_SHADER_UNIFORM_4DV)
        ORVEX_NAME(GPU_SHADER_UNIFORM_3X3F)
        ORVEX_NAME(GPU_SHADER_UNIFORM_4X4F)
        ORVEX_NAME(GPU_SHADER_UNIFORM_3X3D)
        ORVEX_NAME(GPU_SHADER_UNIFORM_4X4D)
        ORVEX_NAME(GPU_SHADER_UNIFORM_1UI)
        ORVEX_NAME(GPU_SHADER_UNIFORM_2UI)
        ORVEX_NAME(GPU_SHADER_UNIFORM_3UI)
        ORVEX_NAME(GPU_SHADER_UNIFORM_4UI)
        ORVEX_NAME(GPU_SHADER_UNIFORM_1UI64)
        ORVEX_NAME(GPU_SHADER_UNIFORM_1UI64V)
        ORVEX_NAME(GPU_SHADER_UNIFORM_2UI64V)
        ORVEX_NAME(GPU_SHADER_UNIFORM_3UI64V)
        ORVEX_NAME(GPU_SHADER_UNIFORM_4UI64V)
    }
    return unknown;
}

const char* to_text(MESH_PLANE_BORDER_TYPE value) noexcept {
    switch (value) {
        ORVEX_NAME(MESH_PLANE_BORDER_X_MIN)
        ORVEX_NAME(MESH_PLANE_BORDER_X_MAX)
        ORVEX_NAME(MESH_PLANE_BORDER_Z_MIN)
        ORVEX_NAME(MESH_PLANE_BORDER_Z_MAX)
        ORVEX_NAME(MESH_PLANE_BORDER_Y_MIN)
        ORVEX_NAME(MESH_PLANE_BORDER_Y_MAX)
    }
    return unknown;
}

const char* to_text(TEXTURE_TYPE value) noexcept {
    switch (value) {
        ORVEX_NAME(TEXTURE_TYPE_1D)
        ORVEX_NAME(TEXTURE_TYPE_2D)
        ORVEX_NAME(TEXTURE_TYPE_3D)
        ORVEX_NAME(TEXTURE_TYPE_CUBE)
        ORVEX_NAME(TEXTURE_TYPE_2D_MULTISAMPLE)
        ORVEX_NAME(TEXTURE_TYPE_RECTANGLE)
    }
    return unknown;
}

const char* to_text(KEYBOARD_LAYOUT value) noexcept {
    switch (value) {
        ORVEX_NAME(KEYBOARD_LAYOUT_X11)
        ORVEX_NAME(KEYBOARD_LAYOUT_MACINTOSH)
    }
    return unknown;
}

#undef ORVEX_NAME

} // namespace orvex
