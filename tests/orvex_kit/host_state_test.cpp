// What a host finds in its context after a frame of the kit's, and what the frame shows whatever
// the host had set.

#include <algorithm>
#include <vector>

#include <dlfcn.h>

#define GL_GLEXT_PROTOTYPES // tests ask the driver straight
#include <GL/gl.h>
#include <GL/glext.h>
#include <gtest/gtest.h>

#include "gl_states.h"
#include "orvex_kit/compare.h"
#include "orvex_kit/engine.h"
#include "orvex_kit/host_state.h"
#include "tests/support/gl_context.h"
#include "turning_torus.h"
#include "view_frame.h"

namespace {

constexpr int endless = 10'000;
/// How often a lost context was asked for an error; below 0 while none is lost.
int times_asked = -1;

} // namespace

/// Stands before the driver's own: a context that is lost says so whenever it is asked.
extern "C" GLenum glGetError() {
    static const auto of_driver = reinterpret_cast<GLenum (*)()>(dlsym(RTLD_NEXT, "glGetError"));
    return times_asked >= 0 && ++times_asked < endless ? GL_CONTEXT_LOST : of_driver();
}

namespace orvex_test {

namespace {

using namespace orvex::kit;

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
        glDepthRange(0.5, 0.25);
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
    const GlStates before = states_here(profile() == Profile::compatibility);
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
    for (const auto& [name, values] : states_here(profile() == Profile::compatibility))
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

TEST_P(HostStateTest, is_as_in_a_fresh_context_within) {
    const GlContext host(profile(), 32, 32);
    const GlStates fresh = states_here(false);
    StrangeHost().set(profile());
    forget_gl_errors();
    const HostState kept;
    GlStates within = states_here(false);
    EXPECT_GE(within.size(), 80u);
    within.erase("GL_VIEWPORT"); // of the framebuffer that is drawn into
    within.erase("GL_SCISSOR_BOX");
    // A fresh mask may be told as that of the bits that there are.
    for (const char* const mask : {"GL_STENCIL_VALUE_MASK", "GL_STENCIL_BACK_VALUE_MASK",
                                   "GL_STENCIL_WRITEMASK", "GL_STENCIL_BACK_WRITEMASK"})
        EXPECT_GE(within.extract(mask).mapped(), fresh.at(mask)) << mask;
    for (const auto& [name, values] : within)
        EXPECT_EQ(values, fresh.at(name)) << name;
}

TEST_P(HostStateTest, turns_each_switch_as_a_fresh_context_has_it_and_back) {
    const GlContext host(profile(), 32, 32);
    std::vector<GLenum> names = {GL_BLEND,
                                 GL_COLOR_LOGIC_OP,
                                 GL_CULL_FACE,
                                 GL_DEPTH_TEST,
                                 GL_DITHER,
                                 GL_LINE_SMOOTH,
                                 GL_MULTISAMPLE,
                                 GL_POLYGON_OFFSET_FILL,
                                 GL_POLYGON_OFFSET_LINE,
                                 GL_POLYGON_OFFSET_POINT,
                                 GL_POLYGON_SMOOTH,
                                 GL_SAMPLE_ALPHA_TO_COVERAGE,
                                 GL_SAMPLE_ALPHA_TO_ONE,
                                 GL_SAMPLE_COVERAGE,
                                 GL_SCISSOR_TEST,
                                 GL_STENCIL_TEST,
                                 GL_CLIP_DISTANCE0,
                                 GL_CLIP_DISTANCE1,
                                 GL_CLIP_DISTANCE2,
                                 GL_CLIP_DISTANCE3,
                                 GL_CLIP_DISTANCE4,
                                 GL_CLIP_DISTANCE5,
                                 GL_PROGRAM_POINT_SIZE,
                                 GL_FRAMEBUFFER_SRGB,
                                 GL_RASTERIZER_DISCARD,
                                 GL_PRIMITIVE_RESTART,
                                 GL_DEPTH_CLAMP,
                                 GL_SAMPLE_MASK,
                                 GL_TEXTURE_CUBE_MAP_SEAMLESS};
    if (profile() == Profile::compatibility)
        names.insert(names.end(),
                     {GL_ALPHA_TEST, GL_COLOR_MATERIAL, GL_COLOR_SUM, GL_FOG, GL_INDEX_LOGIC_OP,
                      GL_LIGHTING, GL_NORMALIZE, GL_LINE_STIPPLE, GL_POINT_SMOOTH, GL_POINT_SPRITE,
                      GL_TEXTURE_1D, GL_TEXTURE_2D, GL_POLYGON_STIPPLE, GL_RESCALE_NORMAL,
                      GL_TEXTURE_3D, GL_TEXTURE_CUBE_MAP, GL_VERTEX_PROGRAM_TWO_SIDE});
    const auto are_on = [&names] {
        std::vector<bool> on;
        for (const GLenum name : names)
            on.push_back(glIsEnabled(name) == GL_TRUE);
        return on;
    };
    const std::vector<bool> fresh = are_on();
    std::vector<bool> turned = fresh;
    turned.flip();
    for (std::size_t i = 0; i < names.size(); ++i)
        if (turned[i])
            glEnable(names[i]);
        else
            glDisable(names[i]);
    ASSERT_EQ(are_on(), turned);
    EXPECT_NO_GL_ERROR();
    {
        const HostState kept;
        EXPECT_EQ(are_on(), fresh);
    }
    EXPECT_EQ(are_on(), turned);
    EXPECT_NO_GL_ERROR();
}

TEST_P(HostStateTest, takes_the_textures_of_all_units_away_and_brings_them_back) {
    struct Target {
        GLenum name, binding;
    };
    constexpr Target targets[] = {{GL_TEXTURE_1D, GL_TEXTURE_BINDING_1D},
                                  {GL_TEXTURE_2D, GL_TEXTURE_BINDING_2D},
                                  {GL_TEXTURE_3D, GL_TEXTURE_BINDING_3D},
                                  {GL_TEXTURE_CUBE_MAP, GL_TEXTURE_BINDING_CUBE_MAP},
                                  {GL_TEXTURE_2D_ARRAY, GL_TEXTURE_BINDING_2D_ARRAY},
                                  {GL_TEXTURE_RECTANGLE, GL_TEXTURE_BINDING_RECTANGLE},
                                  {GL_TEXTURE_2D_MULTISAMPLE, GL_TEXTURE_BINDING_2D_MULTISAMPLE}};
    const GlContext host(profile(), 32, 32);
    const auto bound = [&] {
        std::vector<GLint> names;
        for (const GLenum unit : {GL_TEXTURE0, GL_TEXTURE1, GL_TEXTURE5}) {
            glActiveTexture(unit);
            for (const Target& target : targets)
                glGetIntegerv(target.binding, &names.emplace_back());
            glGetIntegerv(GL_SAMPLER_BINDING, &names.emplace_back());
        }
        return names;
    };
    for (const GLuint unit : {0u, 1u, 5u}) {
        glActiveTexture(GL_TEXTURE0 + unit);
        for (const Target& target : targets) {
            GLuint texture = 0;
            glGenTextures(1, &texture);
            glBindTexture(target.name, texture);
        }
        GLuint sampler = 0;
        glGenSamplers(1, &sampler);
        glBindSampler(unit, sampler);
    }
    const std::vector<GLint> before = bound();
    EXPECT_EQ(std::count(before.begin(), before.end(), 0), 0);
    {
        const HostState kept;
        const std::vector<GLint> within = bound();
        EXPECT_EQ(within, std::vector<GLint>(before.size(), 0));
    }
    EXPECT_EQ(bound(), before);
    EXPECT_NO_GL_ERROR();
}

TEST_P(HostStateTest, ends_where_a_lost_context_has_errors_without_end) {
    const GlContext host(profile(), 32, 32);
    {
        const HostState kept;
        times_asked = 0;
    }
    EXPECT_GT(times_asked, 0);
    EXPECT_LT(times_asked, endless);
    times_asked = -1;
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

TEST(HostState, takes_nothing_off_stacks_that_the_host_has_filled) {
    const GlContext host(Profile::compatibility, 32, 32);
    const auto number = [](GLenum name) {
        GLint result = 0;
        glGetIntegerv(name, &result);
        return result;
    };
    while (number(GL_ATTRIB_STACK_DEPTH) < number(GL_MAX_ATTRIB_STACK_DEPTH))
        glPushAttrib(GL_CURRENT_BIT);
    while (number(GL_CLIENT_ATTRIB_STACK_DEPTH) < number(GL_MAX_CLIENT_ATTRIB_STACK_DEPTH))
        glPushClientAttrib(GL_CLIENT_PIXEL_STORE_BIT);
    EXPECT_NO_THROW(HostState());
    EXPECT_EQ(number(GL_ATTRIB_STACK_DEPTH), number(GL_MAX_ATTRIB_STACK_DEPTH));
    EXPECT_EQ(number(GL_CLIENT_ATTRIB_STACK_DEPTH), number(GL_MAX_CLIENT_ATTRIB_STACK_DEPTH));
    EXPECT_NO_GL_ERROR();
}

} // namespace

} // namespace orvex_test
