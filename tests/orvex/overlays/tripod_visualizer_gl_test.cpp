#include "orvex/overlays/tripod_visualizer.h"

#include <gtest/gtest.h>

#include "orvex/gpu/gpu_program_mgr.h"
#include "other_text.h"
#include "tests/orvex/geometry/mesh/owned_mesh.h"
#include "tests/orvex/renderer/opengl/buffers/vertex_buffers_fixture.h"
#include "tests/support/log_capture.h"
#include "tripod_picture.h"

namespace orvex_test {

using namespace orvex;

namespace {

/// On both profiles: whatever the profile, the version picks generic attributes.
class TripodPictures : public VertexBuffersTest {
protected:
    void TearDown() override {
        of_camera.cleanup(renderer.get());
        of_object.cleanup(renderer.get());
        drain_errors_of_fixed_matrices(*recorder);
        VertexBuffersTest::TearDown();
    }

    int current_program() {
        const GlRecorderPause pause(*recorder);
        int program = 0;
        glGetIntegerv(GL_CURRENT_PROGRAM, &program);
        return program;
    }

    aux::TripodVisualizerCamera of_camera;
    aux::TripodVisualizerObject of_object;
    Owned<Camera> camera{new Camera};
};
ORVEX_BOTH_PROFILES(TripodPictures);

TEST_P(TripodPictures, show_how_a_camera_is_turned) {
    ASSERT_TRUE(of_camera.init(renderer.get()));
    EXPECT_EQ(current_program(), 0);
    expect_axes_of_a_camera(*renderer, of_camera);
}

TEST_P(TripodPictures, show_the_axes_of_an_object) {
    ASSERT_TRUE(of_object.init(renderer.get()));
    expect_axes_of_an_object(*renderer, of_object, false);
}

const GlCalls fixed_matrices_of_the_corner = {
    "glMatrixMode(GL_PROJECTION)",
    "glLoadMatrixf([2.41421, 0, 0, 0, 0, 2.41421, 0, 0, 0, 0, -1.0202, -1, 0, 0, -2.0202, 0])",
    "glMatrixMode(GL_MODELVIEW)",
    "glLoadMatrixf([1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, -3, 1])"};

TEST_P(TripodPictures, of_a_camera_are_drawn_by_these_calls_and_leave_this_state) {
    ASSERT_TRUE(of_camera.init(renderer.get()));
    of_camera.render(renderer.get(), camera.get(), 10, 20, 100, 100);
    recorder->clear();
    of_camera.render(renderer.get(), camera.get(), 10, 20, 90, 80);
    const int program = current_program();
    ASSERT_NE(program, 0) << "it stays active";
    EXPECT_EQ(
        take_commands(*recorder),
        joined({{"glViewport(10, 20, 90, 80)", call("glUseProgram(%d)", program)},
                fixed_matrices_of_the_corner,
                {"glUniformMatrix4fv(0, 1, false, [2.41421, 0, 0, 0, 0, 2.41421, 0, 0, 0, 0, "
                 "-1.0202, -1, 0, 0, 1.0404, 3])",
                 "glBindVertexArray(1)", "glDrawArrays(GL_LINES, 0, 6)", "glBindVertexArray(0)"}}));
    int viewport[4] = {};
    renderer->get_viewport(&viewport[0], &viewport[1], &viewport[2], &viewport[3]);
    EXPECT_EQ(viewport[2], 90) << "it isn't put back";
    EXPECT_EQ(renderer->get_view_matrix().m[14], -3.0f) << "nor is the view";
}

TEST_P(TripodPictures, of_an_object_are_drawn_by_these_calls) {
    ASSERT_TRUE(of_object.init(renderer.get()));
    const Owned<Object> object(new Object);
    object->set_position(1.0f, 2.0f, 3.0f);
    renderer->get_projection_matrix() = mat4();
    renderer->get_view_matrix() = mat4();
    of_object.render(renderer.get(), object.get());
    recorder->clear();
    of_object.render(renderer.get(), object.get());
    const std::string identity = "[1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1]";
    const std::string moved = "[1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 1, 2, 3, 1]";
    EXPECT_EQ(
        take_commands(*recorder),
        (GlCalls{call("glUseProgram(%d)", current_program()), "glMatrixMode(GL_PROJECTION)",
                 "glLoadMatrixf(" + identity + ")", "glMatrixMode(GL_MODELVIEW)",
                 "glLoadMatrixf(" + moved + ")", "glUniformMatrix4fv(0, 1, false, " + moved + ")",
                 "glBindVertexArray(1)", "glDrawArrays(GL_LINES, 0, 6)", "glBindVertexArray(0)"}));
}

TEST_P(TripodPictures, send_their_lines_once) {
    ASSERT_TRUE(of_camera.init(renderer.get()));
    for (int i = 0; i < 3; ++i)
        of_camera.render(renderer.get(), camera.get(), 10, 20, 100, 100);
    EXPECT_EQ(recorder->count("glBufferSubData"), 1);
}

TEST_P(TripodPictures, end_with_everything_they_made) {
    ASSERT_TRUE(of_camera.init(renderer.get()));
    of_camera.render(renderer.get(), camera.get(), 10, 20, 100, 100);
    recorder->clear();
    of_camera.cleanup(renderer.get());
    EXPECT_EQ(recorder->count("glDeleteProgram"), 1);
    EXPECT_EQ(recorder->count("glDeleteVertexArrays"), 1);
    EXPECT_EQ(recorder->count("glDeleteBuffers"), 1);
    EXPECT_EQ(GpuProgramMgr::get()->get_num_resources(), 0u);
}

TEST_P(TripodPictures, take_texts_of_the_host) {
    const OtherText other(aux::orvex_tripod_viz_ps_gl3,
                          "#version 150\nout vec4 pixel;\nvoid main() { pixel = vec4(0, 0, 1, "
                          "1); }");
    ASSERT_TRUE(of_camera.init(renderer.get()));
    clear_frame();
    of_camera.render(renderer.get(), camera.get(), 100, 20, 100, 100);
    EXPECT_TRUE(shows(blue, 185, 70));
}

TEST_P(TripodPictures, report_a_text_that_does_not_compile) {
    const OtherText other(aux::orvex_tripod_viz_ps_gl3, "#version 150\nnonsense");
    const LogCapture log;
    EXPECT_FALSE(of_camera.init(renderer.get()));
    ASSERT_FALSE(log.messages().empty());
    EXPECT_EQ(log.messages().back().rfind(
                  "<*> - tripod visualizer GPU program error: \nPixel shader error: ", 0),
              0u)
        << log.messages().back();
    EXPECT_EQ(GpuProgramMgr::get()->get_num_resources(), 0u);
    recorder->clear();
    of_camera.render(renderer.get(), camera.get(), 100, 20, 100, 100);
    EXPECT_TRUE(recorder->take().empty());
}

TEST_P(TripodPictures, report_texts_that_do_not_fit_each_other) {
    const OtherText other(aux::orvex_tripod_viz_ps_gl3,
                          "#version 150\nin vec2 Vertex_Color;\nout vec4 pixel;\nvoid main() { "
                          "pixel = Vertex_Color.xyxy; }");
    const LogCapture log;
    EXPECT_FALSE(of_object.init(renderer.get()));
    ASSERT_FALSE(log.messages().empty());
    EXPECT_EQ(log.messages().back(),
              "<*> - unable to create the GPU program for the tripod visualizer.");
    EXPECT_EQ(GpuProgramMgr::get()->get_num_resources(), 0u);
}

} // namespace

} // namespace orvex_test
