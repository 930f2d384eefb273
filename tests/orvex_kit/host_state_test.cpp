// What a host finds in its context after a frame of the kit's, and what the frame shows whatever
// the host had set.

#include <map>
#include <string>
#include <vector>

#define GL_GLEXT_PROTOTYPES // tests ask the driver straight
#include <GL/gl.h>
#include <GL/glext.h>
#include <gtest/gtest.h>

#include "orvex_kit/compare.h"
#include "orvex_kit/engine.h"
#include "orvex_kit/host_state.h"
#include "tests/support/gl_context.h"
#include "turning_torus.h"
#include "view_frame.h"

namespace orvex_test {

namespace {

using namespace orvex::kit;

struct StateName {
    const char* text;
    GLenum name;
};

#define STATE(name)                                                                                \
    { #name, name }

/// What a core context tells of.
constexpr StateName core_states[] = {STATE(GL_BLEND),
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
constexpr StateName fixed_states[] = {STATE(GL_ALPHA_TEST),
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

using States = std::map<std::string, std::vector<GLfloat>>;

States states_of(Profile profile) {
    States states;
    const auto read = [&](const StateName& state) {
        std::vector<GLfloat>& values = states[state.text];
        values.resize(16);
        glGetFloatv(state.name, values.data());
    };
    for (const StateName& state : core_states)
        read(state);
    for (const StateName& state : fixed_states)
        if (profile == Profile::compatibility)
            read(state);
    return states;
}

/// A host of strange habits: nothing is as a fresh context has it.
class StrangeHost {
public:
    void set(Profile profile) {
        set_tests();
        set_raster();
        bind();
        if (profile == Profile::compatibility)
            set_fixed();
        glEnable(GL_RASTERIZER_DISCARD);
    }

private:
    static void set_tests() {
        for (const GLenum name : {GL_BLEND, GL_COLOR_LOGIC_OP, GL_CULL_FACE, GL_SCISSOR_TEST,
                                  GL_STENCIL_TEST, GL_SAMPLE_COVERAGE, GL_CLIP_DISTANCE1,
                                  GL_PRIMITIVE_RESTART, GL_DEPTH_CLAMP, GL_POLYGON_OFFSET_LINE})
            glEnable(name);
        glDisable(GL_DEPTH_TEST);
        glDisable(GL_DITHER);
        glBlendFuncSeparate(GL_ZERO, GL_DST_ALPHA, GL_SRC_ALPHA, GL_ONE);
        glBlendEquationSeparate(GL_FUNC_SUBTRACT, GL_MAX);
        glBlendColor(0.1f, 0.2f, 0.3f, 0.4f);
        glColorMask(GL_TRUE, GL_FALSE, GL_TRUE, GL_FALSE);
        glDepthMask(GL_FALSE);
        glDepthFunc(GL_GREATER);
        glDepthRange(0.25, 0.5);
        glStencilFuncSeparate(GL_FRONT, GL_NEVER, 3, 5);
        glStencilFuncSeparate(GL_BACK, GL_LESS, 4, 6);
        glStencilOpSeparate(GL_FRONT, GL_INCR, GL_DECR, GL_INVERT);
        glStencilMaskSeparate(GL_BACK, 12);
        glLogicOp(GL_XOR);
        glSampleCoverage(0.5f, GL_TRUE);
    }
    static void set_raster() {
        glCullFace(GL_FRONT);
        glFrontFace(GL_CW);
        glPolygonMode(GL_FRONT_AND_BACK, GL_LINE);
        glPolygonOffset(2.0f, 3.0f);
        glPointSize(7.0f);
        glProvokingVertex(GL_FIRST_VERTEX_CONVENTION);
        glPrimitiveRestartIndex(2);
        glViewport(1, 2, 3, 4);
        glScissor(5, 6, 7, 8);
        glClearColor(0.5f, 0.25f, 0.125f, 1.0f);
        glClearDepth(0.75);
        glClearStencil(9);
        for (const GLenum name : {GL_PACK_ROW_LENGTH, GL_PACK_SKIP_ROWS, GL_UNPACK_ROW_LENGTH,
                                  GL_UNPACK_SKIP_PIXELS, GL_UNPACK_SWAP_BYTES})
            glPixelStorei(name, 1);
        glPixelStorei(GL_PACK_ALIGNMENT, 8);
        glPixelStorei(GL_UNPACK_ALIGNMENT, 2);
    }
    void bind() {
        glGenVertexArrays(1, &array);
        glBindVertexArray(array);
        glGenBuffers(4, buffers);
        const GLenum targets[] = {GL_ARRAY_BUFFER, GL_ELEMENT_ARRAY_BUFFER, GL_PIXEL_UNPACK_BUFFER,
                                  GL_PIXEL_PACK_BUFFER};
        for (int i = 0; i < 4; ++i) {
            glBindBuffer(targets[i], buffers[i]);
            glBufferData(targets[i], 64, nullptr, GL_STATIC_DRAW);
        }
        glBindBufferRange(GL_UNIFORM_BUFFER, 2, buffers[0], 0, 16);
        glGenTextures(3, textures);
        glActiveTexture(GL_TEXTURE3);
        glBindTexture(GL_TEXTURE_2D, textures[0]);
        glBindTexture(GL_TEXTURE_CUBE_MAP, textures[1]);
        glBindTexture(GL_TEXTURE_3D, textures[2]);
        glGenSamplers(1, &sampler);
        glBindSampler(3, sampler);
        glBindSampler(0, sampler);
        glGenRenderbuffers(1, &render_buffer);
        glBindRenderbuffer(GL_RENDERBUFFER, render_buffer);
        glUseProgram(program = glCreateProgram());
        glGetError(); // nothing is linked in it
    }
    static void set_fixed() {
        for (const GLenum name : {GL_ALPHA_TEST, GL_COLOR_MATERIAL, GL_FOG, GL_LIGHTING, GL_LIGHT0,
                                  GL_LINE_STIPPLE, GL_NORMALIZE, GL_POINT_SMOOTH, GL_TEXTURE_2D})
            glEnable(name);
        glAlphaFunc(GL_LESS, 0.1f);
        glColor4f(0.1f, 0.2f, 0.3f, 0.4f);
        glShadeModel(GL_FLAT);
        glLineStipple(3, 0x5555);
        glMatrixMode(GL_PROJECTION);
        glScalef(2.0f, 3.0f, 4.0f);
        glMatrixMode(GL_MODELVIEW);
        glTranslatef(1.0f, 2.0f, 3.0f);
        glMatrixMode(GL_TEXTURE);
        glScalef(0.5f, 0.5f, 0.5f);
        glEnableClientState(GL_COLOR_ARRAY);
    }

    GLuint array = 0, buffers[4] = {}, textures[3] = {};
    GLuint sampler = 0, render_buffer = 0, program = 0;
};

class HostStateTest : public testing::TestWithParam<Path> {
protected:
    static Profile profile() {
        return GetParam() == Path::gl3 ? Profile::core : Profile::compatibility;
    }
    ViewOptions options() const {
        ViewOptions result;
        result.path = GetParam();
        return result;
    }
    /// A frame, by itself off screen.
    Picture expected() {
        View view(32, 32, options());
        TurningTorus().draw(view, 1);
        return picture_of(view);
    }

    Engine engine;
};
INSTANTIATE_TEST_SUITE_P(on, HostStateTest, testing::Values(Path::gl3, Path::gl2), path_name);

TEST_P(HostStateTest, finds_at_least_80_states_as_they_were) {
    const GlContext host(profile(), 32, 32);
    StrangeHost().set(profile());
    const States before = states_of(profile());
    EXPECT_GE(before.size(), 80u);
    forget_gl_errors();
    {
        const HostState kept;
        View view(CurrentContext(), 32, 32, options());
        ASSERT_TRUE(view) << view.reason();
        TurningTorus torus;
        torus.draw(view, 0);
        EXPECT_EQ(view.resize(24, 20).reason(), "");
        torus.draw(view, 1);
    }
    for (const auto& [name, values] : states_of(profile()))
        EXPECT_EQ(values, before.at(name)) << name;
    EXPECT_NO_GL_ERROR();
}

TEST_P(HostStateTest, shows_the_same_picture_whatever_the_host_had_set) {
    const Picture wanted = expected();
    const GlContext host(profile(), 32, 32);
    StrangeHost().set(profile());
    forget_gl_errors();
    const HostState kept;
    View view(CurrentContext(), 32, 32, options());
    ASSERT_TRUE(view) << view.reason();
    TurningTorus().draw(view, 1);
    EXPECT_EQ(compare(picture_of(view), wanted).reason, "");
}

TEST(HostState, does_nothing_without_a_context) {
    EXPECT_NO_THROW(HostState());
}

TEST_P(HostStateTest, keeps_the_framebuffer_that_is_drawn_into) {
    const GlContext host(profile(), 32, 32);
    GLuint ids[2] = {};
    glGenFramebuffers(2, ids);
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, ids[0]);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, ids[1]);
    {
        const HostState kept;
        GLint drawn = 0;
        glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &drawn);
        EXPECT_EQ(static_cast<GLuint>(drawn), ids[0]);
        glBindFramebuffer(GL_FRAMEBUFFER, 0);
    }
    GLint read = 0;
    glGetIntegerv(GL_READ_FRAMEBUFFER_BINDING, &read);
    EXPECT_EQ(static_cast<GLuint>(read), ids[1]);
}

} // namespace

} // namespace orvex_test
