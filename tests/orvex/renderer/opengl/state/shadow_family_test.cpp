#include "orvex/renderer/opengl/private/renderer_opengl.h"

#include <string>

#include <gtest/gtest.h>

#include "orvex/renderer/records/gpu_program_data.h"
#include "orvex/renderer/records/gpu_program_uniform.h"
#include "tests/support/gl_context.h"
#include "tests/support/gl_recorder.h"
#include "tests/support/stub_render_target.h"

namespace orvex_test {

using namespace orvex;
namespace {

class ShadowMapping : public GlCompatibilityTest {
protected:
    ShadowMapping() {
        renderer.start();
        glGenTextures(1, &target.depth_texture);
        recorder.clear();
    }
    ~ShadowMapping() override { glDeleteTextures(1, &target.depth_texture); }

    GlRecorder recorder;
    RendererOpenGL renderer;
    StubRenderTarget target;
};

TEST_F(ShadowMapping, prepares_and_finishes_the_light_pass) {
    mat4 matrix;
    renderer.shadow_mapping_prepare_light_pass(&target, 3, matrix, matrix, nullptr);
    EXPECT_EQ(recorder.take(),
              GlCalls({"glEnable(GL_DEPTH_TEST)", "glDepthMask(false)", "glDepthFunc(GL_EQUAL)",
                       "glActiveTexture(GL_TEXTURE3)",
                       "glBindTexture(GL_TEXTURE_2D, " + std::to_string(target.depth_texture) + ")",
                       "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_COMPARE_MODE, "
                       "GL_COMPARE_R_TO_TEXTURE)",
                       "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_COMPARE_FUNC, GL_LEQUAL)",
                       "glTexParameteri(GL_TEXTURE_2D, GL_DEPTH_TEXTURE_MODE, GL_LUMINANCE)"}));
    renderer.shadow_mapping_finish_light_pass(&target, 3);
    EXPECT_EQ(recorder.take(),
              GlCalls({"glActiveTexture(GL_TEXTURE3)",
                       "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_COMPARE_MODE, 0)",
                       "glEnable(GL_DEPTH_TEST)", "glDepthMask(true)", "glDepthFunc(GL_LEQUAL)"}));
    GLint func = 0;
    glGetIntegerv(GL_DEPTH_FUNC, &func);
    EXPECT_EQ(func, GL_LEQUAL);
    renderer.shadow_mapping_disable_zpass_states();
    glGetIntegerv(GL_DEPTH_FUNC, &func);
    EXPECT_EQ(func, GL_LESS);
}

TEST_F(ShadowMapping, does_nothing_without_a_target_or_texture_units) {
    mat4 matrix;
    GpuProgramData program;
    renderer.shadow_mapping_prepare_light_pass(nullptr, 0, matrix, matrix, &program);
    renderer.shadow_mapping_finish_light_pass(nullptr, 0);
    renderer.gl.glActiveTexture = nullptr;
    renderer.shadow_mapping_prepare_light_pass(&target, 0, matrix, matrix, &program);
    renderer.shadow_mapping_finish_light_pass(&target, 0);
    EXPECT_TRUE(recorder.calls().empty());
    EXPECT_EQ(program.find_uniform("TextureMatrix"), nullptr);
}

// With nothing but the bias, clip space -1..1 becomes the texture's 0..1: the matrix is written
// column by column, so that the halves that move it stand in the last four numbers.
TEST_F(ShadowMapping, records_the_way_from_clip_space_to_the_texture) {
    GpuProgramData program;
    mat4 identity;
    renderer.set_view_matrix(identity, false);
    recorder.clear();
    renderer.shadow_mapping_prepare_light_pass(&target, 0, identity, identity, &program);
    EXPECT_EQ(recorder.count("glUniformMatrix4fv"), 0) << "recorded, not sent";
    GpuProgramUniform* const uniform = program.find_uniform("TextureMatrix");
    ASSERT_NE(uniform, nullptr);
    const float bias[16] = {0.5f, 0, 0, 0, 0, 0.5f, 0, 0, 0, 0, 0.5f, 0, 0.5f, 0.5f, 0.5f, 1};
    const mat4& recorded = uniform->m4f;
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(recorded.ptr()[i], bias[i]) << i;
}

TEST_F(ShadowMapping, multiplies_bias_projection_view_and_the_inverse_of_the_stored_view) {
    GpuProgramData program;
    mat4 projection(2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 1);
    mat4 view(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 1, 2, 3, 1);
    mat4 stored(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 5, 0, 0, 1);
    renderer.set_view_matrix(stored, false);
    renderer.shadow_mapping_prepare_light_pass(&target, 0, projection, view, &program);
    const mat4 bias(0.5f, 0, 0, 0, 0, 0.5f, 0, 0, 0, 0, 0.5f, 0, 0.5f, 0.5f, 0.5f, 1);
    const mat4 expected =
        bias * projection * view * mat4(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, -5, 0, 0, 1);
    ASSERT_NE(program.find_uniform("TextureMatrix"), nullptr);
    const mat4& recorded = program.find_uniform("TextureMatrix")->m4f;
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(recorded.ptr()[i], expected.ptr()[i]) << i;
}

} // namespace
} // namespace orvex_test
