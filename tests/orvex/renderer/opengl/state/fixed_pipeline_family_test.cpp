#include "orvex/renderer/opengl/private/renderer_opengl.h"

#include <iterator>
#include <string>

#include <gtest/gtest.h>

#include "orvex/math/vec4.h"
#include "tests/support/gl_context.h"
#include "tests/support/gl_recorder.h"

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

} // namespace
} // namespace orvex_test
