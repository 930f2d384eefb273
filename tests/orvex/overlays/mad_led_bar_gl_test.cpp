#include "orvex/overlays/mad_led_bar.h"

#include <cstring>

#include "orvex/gpu/gpu_program.h"
#include "orvex/math/vec3.h"
#include "orvex/scene/camera.h"
#include "overlay_gl_fixture.h"
#include "tests/orvex/geometry/mesh/owned_mesh.h"

namespace orvex_test {

using namespace orvex;

namespace {

constexpr const char* program_text = R"([Vertex_Shader]
#version 150
in vec4 orvex_Position;
in vec4 orvex_Color;
uniform mat4 orvex_ModelViewProjectionMatrix;
out vec4 v_color;
void main() {
    gl_Position = orvex_ModelViewProjectionMatrix * orvex_Position;
    gl_PointSize = 9.0;
    v_color = orvex_Color;
}
[Pixel_Shader]
#version 150
in vec4 v_color;
out vec4 pixel;
void main() { pixel = v_color; }
)";

/// A camera above the origin: X to the right, Z down, 64 pixels a unit.
class MadLedBarPictures : public OverlayPictureTest {
protected:
    void SetUp() override {
        OverlayPictureTest::SetUp();
        program = new GpuProgram;
        ASSERT_TRUE(program->load_from_memory(stage->renderer.get(), program_text,
                                              std::strlen(program_text)));
        ASSERT_TRUE(program->bind(stage->renderer.get()));
        bind_camera();
        bar->set_opengl_2_3_rendering_states(false, nullptr);
        stage->drain_errors();
        stage->clear();
    }
    void TearDown() override {
        EXPECT_EQ(bar->release(stage->renderer.get(), nullptr), 0);
        EXPECT_EQ(program->release(stage->renderer.get(), nullptr), 0);
        OverlayPictureTest::TearDown();
    }

    void bind_camera() {
        const Owned<Camera> camera(new Camera);
        camera->set_viewport(0, 0, 256, 256);
        camera->build_projection_ortho(-2.0f, 2.0f, -2.0f, 2.0f, 0.1f, 10.0f, true);
        camera->set_rotate_around_fixed_yaw_axis(false);
        camera->set_position(vec4(0.0f, 5.0f, 0.0f, 1.0f));
        camera->update_direction(vec4(0.0f, -1.0f, 0.0f, 0.0f));
        camera->bind(stage->renderer.get(), true, true, true, true, false);
    }

    void render() {
        stage->clear();
        bar->render(stage->renderer.get(), nullptr);
    }

    /// The pixel at a place in the plane XZ.
    Color at(float x, float z) {
        return stage->pixel(128 + static_cast<int>(64.0f * x), 127 - static_cast<int>(64.0f * z));
    }

    GpuProgram* program = nullptr;
    MadLedBar* bar = new MadLedBar;
};
ORVEX_BOTH_PROFILES(MadLedBarPictures);

TEST_P(MadLedBarPictures, of_points_show_a_row_that_stops_before_its_end) {
    bar->initialize(vec3(-1.5f, 0.0f, 1.0f), vec3(1.5f, 0.0f, 1.0f), 3);
    bar->set_opengl_2_3_rendering_states(false, nullptr);
    bar->set_led_color(0, 1.0f, 0.0f, 0.0f, 1.0f);
    bar->set_led_color(1, 0.0f, 1.0f, 0.0f, 1.0f);
    for (int frame = 0; frame < 2; ++frame) {
        render();
        EXPECT_EQ(at(-1.5f, 1.0f), red);
        EXPECT_EQ(at(-0.5f, 1.0f), green);
        EXPECT_EQ(at(0.5f, 1.0f), white);
        EXPECT_EQ(at(1.5f, 1.0f), black);
        EXPECT_EQ(at(-0.5f, 0.0f), black);
    }
    bar->set_led_color(1, 0.0f, 0.0f, 1.0f, 1.0f);
    render();
    EXPECT_EQ(at(-0.5f, 1.0f), blue);
}

TEST_P(MadLedBarPictures, of_points_follow_the_bar) {
    bar->initialize(vec3(0.0f, 0.0f, 0.0f), vec3(1.0f, 0.0f, 0.0f), 1);
    bar->set_opengl_2_3_rendering_states(false, nullptr);
    bar->set_position(1.0f, 0.0f, -1.0f);
    render();
    EXPECT_EQ(at(1.0f, -1.0f), white);
    EXPECT_EQ(at(0.0f, 0.0f), black);
}

TEST_P(MadLedBarPictures, of_a_strip_fade_from_light_to_light) {
    bar->initialize(vec3(0.0f, 0.0f, 0.0f), vec3(3.0f, 0.0f, 0.0f), 3, 1.0f);
    bar->set_opengl_2_3_rendering_states(false, nullptr);
    bar->set_led_color(0, 0.0f, 0.0f, 0.0f, 1.0f);
    bar->set_led_color(1, 1.0f, 0.0f, 0.0f, 1.0f);
    bar->set_led_color(2, 1.0f, 0.0f, 0.0f, 1.0f);
    render();
    for (const float z : {-0.4f, 0.4f}) {
        EXPECT_GT(at(-1.45f, z)[1], 230) << "white from the build on";
        EXPECT_NEAR(at(-1.0f, z)[1], 127, 3);
        EXPECT_LT(at(-0.52f, z)[1], 10);
        EXPECT_NEAR(at(0.0f, z)[0], 127, 3);
        EXPECT_EQ(at(1.0f, z), red);
    }
    EXPECT_EQ(at(0.0f, 0.6f), black);
    EXPECT_EQ(at(1.6f, 0.0f), black);
}

TEST_P(MadLedBarPictures, of_both_forms_take_one_draw_call_each) {
    bar->initialize(vec3(-1.5f, 0.0f, 1.0f), vec3(1.5f, 0.0f, 1.0f), 3);
    bar->initialize(vec3(-1.5f, 0.0f, 1.0f), vec3(1.5f, 0.0f, 1.0f), 3, 0.5f);
    bar->set_opengl_2_3_rendering_states(false, nullptr);
    render();
    EXPECT_EQ(stage->recorder->count("glDrawArrays"), 1);
    EXPECT_EQ(stage->recorder->count("glDrawElements"), 1);
    render();
    EXPECT_EQ(stage->recorder->count("glBufferSubData"), 0) << "nothing changed";
}

TEST_P(MadLedBarPictures, of_both_forms_are_drawn_by_these_calls) {
    bar->initialize(vec3(-1.5f, 0.0f, 1.0f), vec3(1.5f, 0.0f, 1.0f), 3);
    bar->initialize(vec3(-1.5f, 0.0f, 1.0f), vec3(1.5f, 0.0f, 1.0f), 3, 0.5f);
    bar->set_opengl_2_3_rendering_states(false, nullptr);
    render();
    stage->recorder->clear();
    stage->renderer->get_projection_matrix() = mat4();
    stage->renderer->get_view_matrix() = mat4();
    bar->set_position(1.0f, 2.0f, 3.0f);
    bar->render(stage->renderer.get(), nullptr);
    const std::string matrix =
        "glUniformMatrix4fv(0, 1, false, [1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 1, 2, 3, 1])";
    const GlCalls expected = {
        matrix,
        "glBindVertexArray(1)",
        "glEnable(GL_PROGRAM_POINT_SIZE)",
        "glDrawArrays(GL_POINTS, 0, 3)",
        "glDisable(GL_PROGRAM_POINT_SIZE)",
        "glDisable(GL_POINT_SPRITE)",
        "glBindVertexArray(0)",
        matrix,
        "glBindVertexArray(2)",
        "glDrawElements(GL_TRIANGLES, 18, GL_UNSIGNED_SHORT, 0)",
        "glBindVertexArray(0)",
    };
    EXPECT_EQ(stage->commands(), expected);
}

TEST_P(MadLedBarPictures, end_with_everything_they_made) {
    bar->initialize(vec3(-1.5f, 0.0f, 1.0f), vec3(1.5f, 0.0f, 1.0f), 3);
    bar->initialize(vec3(-1.5f, 0.0f, 1.0f), vec3(1.5f, 0.0f, 1.0f), 3, 0.5f);
    bar->set_opengl_2_3_rendering_states(false, nullptr);
    render();
    const int arrays = stage->recorder->count("glGenVertexArrays");
    const int buffers = stage->recorder->count("glGenBuffers");
    ASSERT_EQ(arrays, 2);
    stage->recorder->clear();
    bar->_cleanup(stage->renderer.get());
    EXPECT_EQ(stage->recorder->count("glDeleteVertexArrays"), arrays);
    EXPECT_EQ(stage->recorder->count("glDeleteBuffers"), buffers);
}

} // namespace

} // namespace orvex_test
