// The same renderer on a context that reports 2.1. The driver settles the version once for the
// process, so these tests have a program of their own.

#include "orvex/renderer/opengl/private/renderer_opengl.h"

#include <gtest/gtest.h>

#include "orvex/renderer/opengl/gl/private/gl_support.h"
#include "tests/support/gl_context.h"
#include "tests/support/gl_recorder.h"

namespace orvex_test {

using namespace orvex;
namespace {

class OldContext : public testing::Test {
protected:
    OldContext() { renderer.start(); }
    ~OldContext() override { EXPECT_NO_GL_ERROR(); }

    GlContext context{Profile::gl_2_1};
    GlRecorder recorder;
    RendererOpenGL renderer;
};

TEST_F(OldContext, is_a_gl2_context) {
    EXPECT_EQ(renderer.get_api_version_major(), 2);
    EXPECT_EQ(renderer.get_api_version_minor(), 1);
    EXPECT_TRUE(renderer.gl2_context);
    EXPECT_FALSE(renderer.gl.core_profile);
    EXPECT_TRUE(renderer.gl.ready);
}

TEST_F(OldContext, reads_its_version_from_the_text) {
    recorder.clear();
    int major = 0;
    int minor = 0;
    EXPECT_TRUE(renderer.get_opengl_version(&major, &minor));
    EXPECT_EQ(major, 2);
    EXPECT_EQ(minor, 1);
    EXPECT_EQ(recorder.take(), GlCalls({"glGetString(GL_VERSION)"}));
}

TEST_F(OldContext, has_what_2_1_and_its_extensions_give) {
    const GlCapabilities capabilities = read_gl_capabilities();
    EXPECT_EQ(capabilities.major, 2);
    EXPECT_EQ(capabilities.minor, 1);
    EXPECT_TRUE(capabilities.compatibility);
    EXPECT_TRUE(capabilities.has_extension("GL_ARB_multitexture"));
    EXPECT_NE(renderer.gl.glUseProgram, nullptr);
    EXPECT_NE(renderer.gl.glClientActiveTexture, nullptr);
    EXPECT_EQ(renderer.gl.glGenVertexArrays != nullptr,
              capabilities.has_extension("GL_ARB_vertex_array_object"));
    EXPECT_EQ(renderer.gl.glUniform1d, nullptr);
    EXPECT_EQ(renderer.gl.glClearBufferfv, nullptr);
    EXPECT_EQ(renderer.gl.glGetStringi, nullptr);
}

TEST_F(OldContext, carries_on_with_its_state) {
    EXPECT_GT(renderer.ctx.max_texture_size, 0U);
    EXPECT_GT(renderer.ctx.num_texture_units, 0U);
    renderer.set_blend_state(true);
    EXPECT_TRUE(glIsEnabled(GL_BLEND));
    EXPECT_NE(renderer.get_renderer_gl_extensions_raw_string(), nullptr);
    EXPECT_TRUE(renderer.reset_render_states());
    EXPECT_FALSE(glIsEnabled(GL_BLEND));
}

} // namespace
} // namespace orvex_test
