#include "orvex/overlays/graph2d.h"

#include <cstring>

#include <gtest/gtest.h>

#include "line_program.h"
#include "orvex/geometry/lines/curve.h"
#include "orvex/gpu/gpu_program.h"
#include "orvex/scene/camera.h"
#include "overlay_frame.h"
#include "tests/orvex/geometry/mesh/owned_mesh.h"
#include "tests/orvex/renderer/opengl/buffers/vertex_buffers_fixture.h"

namespace orvex_test {

using namespace orvex;

namespace {

vec4 point(float x, float y) {
    return vec4(x, y, 0.0f, 1.0f);
}

/// The middle of a pixel, where a line surely falls on it.
vec4 middle_of(int x, int y) {
    return point(static_cast<float>(x) + 0.5f, static_cast<float>(y) + 0.5f);
}

/// A graph over a frame of 256 by 256 pixels: axes from pixel (20, 20), a red one to the right and
/// a green one upwards, 200 pixels long, and a blue curve of four points.
class GraphStage : protected RecordedRenderer {
protected:
    void build() {
        camera->set_viewport(0, 0, 256, 256);
        camera->build_projection_ortho(-128.0f, 128.0f, -128.0f, 128.0f, 1.0f, 100.0f, true);
        graph->set_viewport(0, 0, 256, 256);
        graph->set_x_axis_positions(middle_of(20, 20), middle_of(220, 20));
        graph->set_y_axis_positions(middle_of(20, 20), middle_of(20, 220));
        graph->set_x_axis_color(vec4(1.0f, 0.0f, 0.0f, 1.0f), vec4(1.0f, 0.0f, 0.0f, 1.0f));
        graph->set_y_axis_color(vec4(0.0f, 1.0f, 0.0f, 1.0f), vec4(0.0f, 1.0f, 0.0f, 1.0f));
        graph->create_curve(4);
        graph->set_curve_color(0, 0.0f, 0.0f, 1.0f, 1.0f);
    }

    void feed(float value) {
        graph->add_curve_scalar(0, value);
        graph->sync_curve_scalars(0);
    }

    /// @return what the graph called, but for questions
    GlCalls draw_frame() {
        {
            const GlRecorderPause pause(*recorder);
            glClearColor(0.0f, 0.0f, 0.0f, 1.0f);
            glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
            camera->bind(renderer.get(), true, true, true, true, false);
        }
        recorder->clear();
        graph->render(renderer.get(), nullptr);
        return take_commands(*recorder);
    }

    void expect_scrolling() {
        feed(50.0f);
        feed(50.0f);
        draw_frame();
        EXPECT_EQ(pixel_at(200, 20), red);
        EXPECT_EQ(pixel_at(20, 200), green);
        EXPECT_EQ(pixel_at(50, 70), blue);
        EXPECT_EQ(pixel_at(100, 70), black) << "no sample got there yet";
        EXPECT_EQ(pixel_at(221, 20), black);
        feed(50.0f);
        feed(50.0f);
        draw_frame();
        EXPECT_EQ(pixel_at(150, 70), blue);
        EXPECT_EQ(pixel_at(171, 70), black);
        for (int i = 0; i < 3; ++i)
            feed(100.0f);
        draw_frame();
        EXPECT_EQ(pixel_at(30, 80), blue) << "up from the last of the first four samples";
        EXPECT_EQ(pixel_at(50, 70), black);
        EXPECT_EQ(pixel_at(100, 120), blue);
        EXPECT_EQ(pixel_at(150, 120), blue);
    }

    Owned<Camera> camera{new Camera};
    Graph2d* graph = new Graph2d;
};

class GraphInAProgram : public GlTest, protected GraphStage {
protected:
    void SetUp() override {
        GlTest::SetUp();
        start();
        build();
        program = new GpuProgram;
        ASSERT_TRUE(program->load_from_memory(renderer.get(), line_program_text,
                                              std::strlen(line_program_text)));
        ASSERT_TRUE(program->bind(renderer.get()));
    }

    void TearDown() override {
        graph->kill(renderer.get(), nullptr);
        program->unbind(renderer.get());
        program->kill(renderer.get(), nullptr);
        drain_errors_of_fixed_matrices(*recorder);
        GlTest::TearDown();
    }

    GpuProgram* program = nullptr;
};
ORVEX_BOTH_PROFILES(GraphInAProgram);

TEST_P(GraphInAProgram, scrolls) {
    expect_scrolling();
}

const GlCalls fixed_matrices = {
    "glMatrixMode(GL_PROJECTION)",
    "glLoadMatrixf([0.0078125, 0, 0, 0, 0, 0.0078125, 0, 0, 0, 0, -0.020202, 0, -0, -0, "
    "-1.0202, 1])",
    "glMatrixMode(GL_MODELVIEW)",
    "glLoadMatrixf([1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, -10, 1])",
};

/// What a line sends whose vertices changed, but for questions.
GlCalls drawing_of(unsigned int id, int vertices, int drawn) {
    return joined({fixed_matrices,
                   {
                       "glUniformMatrix4fv(0, 1, false, [0.0078125, 0, 0, 0, 0, 0.0078125, 0, 0, "
                       "0, 0, -0.020202, 0, 0, 0, -0.818182, 1])",
                       call("glBindBuffer(GL_ARRAY_BUFFER, %u)", id),
                       call("glBufferSubData(GL_ARRAY_BUFFER, 0, %d, ptr)", 96 * vertices),
                       "glBindBuffer(GL_ARRAY_BUFFER, 0)",
                       call("glBindVertexArray(%u)", id),
                       call("glDrawArrays(GL_LINE_STRIP, 0, %d)", drawn),
                       "glBindVertexArray(0)",
                   }});
}

// Three lines and nothing else: the state of the renderer isn't touched.
TEST_P(GraphInAProgram, draws_both_axes_then_the_curve_by_these_calls) {
    feed(50.0f);
    feed(60.0f);
    draw_frame();
    feed(70.0f);
    EXPECT_EQ(draw_frame(),
              joined({drawing_of(1, 2, 2), drawing_of(1, 2, 2), drawing_of(2, 4, 3)}));
}

TEST_P(GraphInAProgram, gives_its_buffers_back) {
    feed(50.0f);
    draw_frame();
    graph->cleanup(renderer.get(), nullptr);
    EXPECT_EQ(recorder->count("glDeleteBuffers"), 2);
    EXPECT_EQ(recorder->count("glDeleteVertexArrays"), 2);
    for (const std::string& one : draw_frame())
        EXPECT_NE(one.rfind("glDraw", 0), 0u) << "nothing is left to draw, but " << one;
}

class GraphOfTheFixedPipeline : public GlCompatibilityTest, protected GraphStage {
protected:
    void SetUp() override {
        start();
        build();
    }

    void TearDown() override {
        graph->kill(renderer.get(), nullptr);
        GlCompatibilityTest::TearDown();
    }
};

TEST_F(GraphOfTheFixedPipeline, scrolls) {
    expect_scrolling();
}

TEST_F(GraphOfTheFixedPipeline, draws_both_axes_then_the_curve_by_these_calls) {
    feed(50.0f);
    feed(60.0f);
    draw_frame();
    const GlCalls line = joined(
        {fixed_matrices,
         {"glBufferSubData(GL_ARRAY_BUFFER, 0, 192, ptr)", "glDrawArrays(GL_LINE_STRIP, 0, 2)"}});
    graph->render(renderer.get(), nullptr);
    EXPECT_EQ(take_commands_but_for_arrays(*recorder),
              joined({line, line, fixed_matrices, {"glDrawArrays(GL_LINE_STRIP, 0, 2)"}}));
}

} // namespace

} // namespace orvex_test
