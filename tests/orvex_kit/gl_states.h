#pragma once

/// @file
/// The states of an OpenGL context that tests compare before and after a frame.

#include <map>
#include <string>
#include <utility>
#include <vector>

#define GL_GLEXT_PROTOTYPES // tests ask the driver straight
#include <GL/gl.h>
#include <GL/glext.h>

namespace orvex_test {

struct StateName {
    const char* text;
    GLenum name;
};

#define STATE(name)                                                                                \
    { #name, name }

/// What a core context tells of.
inline constexpr StateName core_states[] = {STATE(GL_BLEND),
                                            STATE(GL_COLOR_LOGIC_OP),
                                            STATE(GL_CULL_FACE),
                                            STATE(GL_DEPTH_TEST),
                                            STATE(GL_DITHER),
                                            STATE(GL_LINE_SMOOTH),
                                            STATE(GL_MULTISAMPLE),
                                            STATE(GL_POLYGON_OFFSET_FILL),
                                            STATE(GL_POLYGON_OFFSET_LINE),
                                            STATE(GL_POLYGON_OFFSET_POINT),
                                            STATE(GL_POLYGON_SMOOTH),
                                            STATE(GL_SAMPLE_ALPHA_TO_COVERAGE),
                                            STATE(GL_SAMPLE_ALPHA_TO_ONE),
                                            STATE(GL_SAMPLE_COVERAGE),
                                            STATE(GL_SCISSOR_TEST),
                                            STATE(GL_STENCIL_TEST),
                                            STATE(GL_CLIP_DISTANCE0),
                                            STATE(GL_CLIP_DISTANCE1),
                                            STATE(GL_PROGRAM_POINT_SIZE),
                                            STATE(GL_FRAMEBUFFER_SRGB),
                                            STATE(GL_RASTERIZER_DISCARD),
                                            STATE(GL_PRIMITIVE_RESTART),
                                            STATE(GL_DEPTH_CLAMP),
                                            STATE(GL_SAMPLE_MASK),
                                            STATE(GL_TEXTURE_CUBE_MAP_SEAMLESS),
                                            STATE(GL_SAMPLE_SHADING),
                                            STATE(GL_PRIMITIVE_RESTART_FIXED_INDEX),
                                            STATE(GL_BLEND_SRC_RGB),
                                            STATE(GL_BLEND_SRC_ALPHA),
                                            STATE(GL_BLEND_DST_RGB),
                                            STATE(GL_BLEND_DST_ALPHA),
                                            STATE(GL_BLEND_EQUATION_RGB),
                                            STATE(GL_BLEND_EQUATION_ALPHA),
                                            STATE(GL_BLEND_COLOR),
                                            STATE(GL_COLOR_WRITEMASK),
                                            STATE(GL_DEPTH_WRITEMASK),
                                            STATE(GL_DEPTH_FUNC),
                                            STATE(GL_DEPTH_RANGE),
                                            STATE(GL_STENCIL_FUNC),
                                            STATE(GL_STENCIL_REF),
                                            STATE(GL_STENCIL_VALUE_MASK),
                                            STATE(GL_STENCIL_WRITEMASK),
                                            STATE(GL_STENCIL_FAIL),
                                            STATE(GL_STENCIL_PASS_DEPTH_FAIL),
                                            STATE(GL_STENCIL_PASS_DEPTH_PASS),
                                            STATE(GL_STENCIL_BACK_FUNC),
                                            STATE(GL_STENCIL_BACK_REF),
                                            STATE(GL_STENCIL_BACK_VALUE_MASK),
                                            STATE(GL_STENCIL_BACK_WRITEMASK),
                                            STATE(GL_STENCIL_BACK_FAIL),
                                            STATE(GL_STENCIL_BACK_PASS_DEPTH_FAIL),
                                            STATE(GL_STENCIL_BACK_PASS_DEPTH_PASS),
                                            STATE(GL_LOGIC_OP_MODE),
                                            STATE(GL_SAMPLE_COVERAGE_VALUE),
                                            STATE(GL_SAMPLE_COVERAGE_INVERT),
                                            STATE(GL_CULL_FACE_MODE),
                                            STATE(GL_FRONT_FACE),
                                            STATE(GL_POLYGON_MODE),
                                            STATE(GL_POLYGON_OFFSET_FACTOR),
                                            STATE(GL_POLYGON_OFFSET_UNITS),
                                            STATE(GL_LINE_WIDTH),
                                            STATE(GL_POINT_SIZE),
                                            STATE(GL_PROVOKING_VERTEX),
                                            STATE(GL_PRIMITIVE_RESTART_INDEX),
                                            STATE(GL_VIEWPORT),
                                            STATE(GL_SCISSOR_BOX),
                                            STATE(GL_COLOR_CLEAR_VALUE),
                                            STATE(GL_DEPTH_CLEAR_VALUE),
                                            STATE(GL_STENCIL_CLEAR_VALUE),
                                            STATE(GL_PACK_ALIGNMENT),
                                            STATE(GL_PACK_ROW_LENGTH),
                                            STATE(GL_PACK_SKIP_ROWS),
                                            STATE(GL_PACK_SKIP_PIXELS),
                                            STATE(GL_PACK_SWAP_BYTES),
                                            STATE(GL_UNPACK_ALIGNMENT),
                                            STATE(GL_UNPACK_ROW_LENGTH),
                                            STATE(GL_UNPACK_SKIP_ROWS),
                                            STATE(GL_UNPACK_SKIP_PIXELS),
                                            STATE(GL_UNPACK_IMAGE_HEIGHT),
                                            STATE(GL_UNPACK_SKIP_IMAGES),
                                            STATE(GL_UNPACK_SWAP_BYTES),
                                            STATE(GL_UNPACK_LSB_FIRST),
                                            STATE(GL_CURRENT_PROGRAM),
                                            STATE(GL_VERTEX_ARRAY_BINDING),
                                            STATE(GL_ARRAY_BUFFER_BINDING),
                                            STATE(GL_ELEMENT_ARRAY_BUFFER_BINDING),
                                            STATE(GL_DRAW_FRAMEBUFFER_BINDING),
                                            STATE(GL_READ_FRAMEBUFFER_BINDING),
                                            STATE(GL_RENDERBUFFER_BINDING),
                                            STATE(GL_DRAW_BUFFER),
                                            STATE(GL_READ_BUFFER),
                                            STATE(GL_PIXEL_PACK_BUFFER_BINDING),
                                            STATE(GL_PIXEL_UNPACK_BUFFER_BINDING),
                                            STATE(GL_UNIFORM_BUFFER_BINDING),
                                            STATE(GL_ACTIVE_TEXTURE),
                                            STATE(GL_TEXTURE_BINDING_2D),
                                            STATE(GL_TEXTURE_BINDING_CUBE_MAP),
                                            STATE(GL_TEXTURE_BINDING_3D),
                                            STATE(GL_SAMPLER_BINDING)};

/// What a compatibility context has besides.
inline constexpr StateName fixed_states[] = {STATE(GL_ALPHA_TEST),
                                             STATE(GL_ALPHA_TEST_FUNC),
                                             STATE(GL_COLOR_MATERIAL),
                                             STATE(GL_CURRENT_COLOR),
                                             STATE(GL_FOG),
                                             STATE(GL_FOG_COLOR),
                                             STATE(GL_LIGHTING),
                                             STATE(GL_LIGHT0),
                                             STATE(GL_LIGHT_MODEL_AMBIENT),
                                             STATE(GL_LINE_STIPPLE),
                                             STATE(GL_LINE_STIPPLE_PATTERN),
                                             STATE(GL_MATRIX_MODE),
                                             STATE(GL_MODELVIEW_MATRIX),
                                             STATE(GL_PROJECTION_MATRIX),
                                             STATE(GL_TEXTURE_MATRIX),
                                             STATE(GL_NORMALIZE),
                                             STATE(GL_POINT_SMOOTH),
                                             STATE(GL_POINT_SPRITE),
                                             STATE(GL_SHADE_MODEL),
                                             STATE(GL_TEXTURE_2D),
                                             STATE(GL_VERTEX_ARRAY),
                                             STATE(GL_COLOR_ARRAY),
                                             STATE(GL_ATTRIB_STACK_DEPTH),
                                             STATE(GL_CLIENT_ATTRIB_STACK_DEPTH)};

#undef STATE

/// By their names.
using GlStates = std::map<std::string, std::vector<GLfloat>>;

/// What the current context tells; what it doesn't have is left out.
inline GlStates states_here(bool is_compatible) {
    GlStates states;
    const auto read = [&](const StateName& state) {
        std::vector<GLfloat> values(16);
        glGetFloatv(state.name, values.data());
        if (glGetError() == GL_NO_ERROR)
            states.emplace(state.text, std::move(values));
    };
    for (const StateName& state : core_states)
        read(state);
    for (const StateName& state : fixed_states)
        if (is_compatible)
            read(state);
    return states;
}

} // namespace orvex_test
