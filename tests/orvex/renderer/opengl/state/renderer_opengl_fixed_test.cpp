#include "orvex/renderer/opengl/private/renderer_opengl.h"

#include <algorithm>
#include <iterator>
#include <string>

#include <gtest/gtest.h>

#include "orvex/math/vec4.h"
#include "orvex/renderer/records/gpu_program_data.h"
#include "orvex/renderer/records/gpu_program_uniform.h"
#include "tests/support/gl_context.h"
#include "tests/support/gl_recorder.h"
#include "tests/support/stub_render_target.h"

namespace orvex_test {

using namespace orvex;
namespace {

class FixedPipeline : public GlCompatibilityTest {
protected:
    FixedPipeline() {
        renderer.start();
        recorder.clear();
    }

    GlRecorder recorder;
    RendererOpenGL renderer;
};

const float ramp[16] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
const std::string ramp_text = "[1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16]";

TEST_F(FixedPipeline, loads_the_matrices_that_are_set_to_be_applied) {
    mat4 matrix;
    matrix = ramp;
    renderer.set_projection_matrix(matrix, true);
    EXPECT_EQ(recorder.take(),
              GlCalls({"glMatrixMode(GL_PROJECTION)", "glLoadMatrixf(" + ramp_text + ")"}));
    renderer.set_view_matrix(matrix, true);
    EXPECT_EQ(recorder.take(),
              GlCalls({"glMatrixMode(GL_MODELVIEW)", "glLoadMatrixf(" + ramp_text + ")"}));
    EXPECT_EQ(renderer.get_projection_matrix().ptr()[15], 16.0f);
    EXPECT_EQ(renderer.get_view_matrix().ptr()[15], 16.0f);
}

TEST_F(FixedPipeline, loads_the_given_matrices_only) {
    float m[16];
    std::copy(std::begin(ramp), std::end(ramp), m);
    const std::string load = "glLoadMatrixf(" + ramp_text + ")";
    const std::string multiply = "glMultMatrixf(" + ramp_text + ")";
    struct Row {
        float* projection;
        float* view;
        float* model;
        float* texture;
        GlCalls calls;
    };
    const Row rows[] = {
        {nullptr, nullptr, nullptr, nullptr, {}},
        {m, nullptr, nullptr, nullptr, {"glMatrixMode(GL_PROJECTION)", load}},
        {nullptr, m, nullptr, nullptr, {"glMatrixMode(GL_MODELVIEW)", load}},
        {nullptr, nullptr, m, nullptr, {"glMatrixMode(GL_MODELVIEW)", multiply}},
        {nullptr, m, m, nullptr, {"glMatrixMode(GL_MODELVIEW)", load, multiply}},
        {nullptr, nullptr, nullptr, m, {"glMatrixMode(GL_TEXTURE)", load}},
        {m,
         m,
         m,
         m,
         {"glMatrixMode(GL_PROJECTION)", load, "glMatrixMode(GL_MODELVIEW)", load, multiply,
          "glMatrixMode(GL_TEXTURE)", load}},
    };
    for (const Row& row : rows) {
        renderer.gl2_matrix_load(row.projection, row.view, row.model, row.texture);
        EXPECT_EQ(recorder.take(), row.calls);
    }
}

TEST_F(FixedPipeline, loads_the_chosen_identities) {
    renderer.gl2_matrix_load_identity(true, true, true);
    EXPECT_EQ(recorder.take(), GlCalls({"glMatrixMode(GL_PROJECTION)", "glLoadIdentity()",
                                        "glMatrixMode(GL_MODELVIEW)", "glLoadIdentity()",
                                        "glMatrixMode(GL_TEXTURE)", "glLoadIdentity()"}));
    renderer.gl2_matrix_load_identity(false, true, false);
    EXPECT_EQ(recorder.take(), GlCalls({"glMatrixMode(GL_MODELVIEW)", "glLoadIdentity()"}));
    renderer.gl2_matrix_load_identity(false, false, false);
    EXPECT_TRUE(recorder.calls().empty());
}

TEST_F(FixedPipeline, sets_stipple_and_draws_lines) {
    renderer.set_line_stipple(3, 0x00FF);
    EXPECT_EQ(recorder.take(), GlCalls({"glLineStipple(3, 255)"}));
    EXPECT_EQ(renderer.ctx.line_stipple_factor, 3);
    EXPECT_EQ(renderer.ctx.line_stipple_pattern, 255);
    renderer.set_line_width(2.5f);
    EXPECT_EQ(recorder.take(), GlCalls({"glLineWidth(2.5)"}));
    EXPECT_EQ(renderer.ctx.line_width, 2.5f);
    renderer.render_line(vec4(1, 2, 3, 1), vec4(0.25f, 0.5f, 0.75f, 1), vec4(4, 5, 6, 1),
                         vec4(1, 0, 0, 0.5f));
    EXPECT_EQ(recorder.take(), GlCalls({"glBegin(GL_LINES)", "glColor4fv([0.25, 0.5, 0.75, 1])",
                                        "glVertex4fv([1, 2, 3, 1])", "glColor4fv([1, 0, 0, 0.5])",
                                        "glVertex4fv([4, 5, 6, 1])", "glEnd()"}));
}

TEST_F(FixedPipeline, sets_lights) {
    const vec4 a(1, 0, 0, 1);
    const vec4 d(0, 1, 0, 1);
    const vec4 s(0, 0, 1, 0.5f);
    const std::string ambient = "glLightfv(GL_LIGHT2, GL_AMBIENT, [1, 0, 0, 1])";
    const std::string diffuse = "glLightfv(GL_LIGHT2, GL_DIFFUSE, [0, 1, 0, 1])";
    const std::string specular = "glLightfv(GL_LIGHT2, GL_SPECULAR, [0, 0, 1, 0.5])";
    renderer.light_set_colors(2, a, d, s);
    EXPECT_EQ(recorder.take(), GlCalls({ambient, diffuse, specular}));
    renderer.light_set_ambient(2, a);
    EXPECT_EQ(recorder.take(), GlCalls({ambient}));
    renderer.light_set_diffuse(2, d);
    EXPECT_EQ(recorder.take(), GlCalls({diffuse}));
    renderer.light_set_specular(2, s);
    EXPECT_EQ(recorder.take(), GlCalls({specular}));
}

TEST_F(FixedPipeline, sets_materials_of_both_sides) {
    const vec4 a(1, 0, 0, 1);
    const vec4 d(0, 1, 0, 1);
    const vec4 s(0, 0, 1, 0.5f);
    const std::string ambient = "glMaterialfv(GL_FRONT_AND_BACK, GL_AMBIENT, [1, 0, 0, 1])";
    const std::string diffuse = "glMaterialfv(GL_FRONT_AND_BACK, GL_DIFFUSE, [0, 1, 0, 1])";
    const std::string specular = "glMaterialfv(GL_FRONT_AND_BACK, GL_SPECULAR, [0, 0, 1, 0.5])";
    const std::string shininess = "glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, 64)";
    renderer.material_set_colors(a, d, s, 64.0f);
    EXPECT_EQ(recorder.take(), GlCalls({ambient, diffuse, specular, shininess}));
    renderer.material_set_ambient(a);
    EXPECT_EQ(recorder.take(), GlCalls({ambient}));
    renderer.material_set_diffuse(d);
    EXPECT_EQ(recorder.take(), GlCalls({diffuse}));
    renderer.material_set_specular(s);
    EXPECT_EQ(recorder.take(), GlCalls({specular}));
    renderer.material_set_shininess(64.0f);
    EXPECT_EQ(recorder.take(), GlCalls({shininess}));
}

// Core contexts refuse the fixed pipeline, each call alone, and nothing is put in its place.
TEST(FixedPipelineInCore, is_sent_all_the_same) {
    const GlContext context(Profile::core);
    GlRecorder recorder;
    RendererOpenGL renderer;
    renderer.start();
    recorder.clear();
    mat4 matrix;
    renderer.set_projection_matrix(matrix, true);
    EXPECT_EQ(recorder.take_names(), GlCalls({"glMatrixMode", "glLoadMatrixf"}));
    EXPECT_EQ(renderer.get_opengl_error(), static_cast<unsigned int>(GL_INVALID_OPERATION));
    renderer.set_line_stipple(1, 1);
    while (renderer.get_opengl_error() != 0) {
    }
    renderer.set_blend_state(true);
    EXPECT_NO_GL_ERROR();
}

// Shadow mapping.

class ShadowMapping : public FixedPipeline {
protected:
    ShadowMapping() {
        glGenTextures(1, &target.depth_texture);
        recorder.clear();
    }
    ~ShadowMapping() override { glDeleteTextures(1, &target.depth_texture); }

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
