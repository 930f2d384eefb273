// The same visualizers on a context that reports 2.1. The driver settles the version once for the
// process, so these tests have a program of their own.

#include "orvex/overlays/tripod_visualizer.h"

#include <gtest/gtest.h>

#include "orvex/renderer/opengl/private/renderer_opengl.h"
#include "tests/orvex/geometry/mesh/owned_mesh.h"
#include "tests/support/gl_context.h"
#include "tests/support/gl_recorder.h"
#include "tripod_picture.h"

namespace orvex_test {

using namespace orvex;

namespace {

class TripodPicturesBelow3 : public testing::Test {
protected:
    TripodPicturesBelow3() { renderer.start(); }
    ~TripodPicturesBelow3() override {
        of_camera.cleanup(&renderer);
        of_object.cleanup(&renderer);
        EXPECT_NO_GL_ERROR();
    }

    GlContext context{Profile::gl_2_1};
    GlRecorder recorder;
    RendererOpenGL renderer;
    aux::TripodVisualizerCamera of_camera;
    aux::TripodVisualizerObject of_object;
};

TEST_F(TripodPicturesBelow3, show_how_a_camera_is_turned) {
    ASSERT_TRUE(of_camera.init(&renderer));
    expect_axes_of_a_camera(renderer, of_camera);
}

TEST_F(TripodPicturesBelow3, show_the_axes_of_an_object) {
    ASSERT_TRUE(of_object.init(&renderer));
    expect_axes_of_an_object(renderer, of_object, true);
}

TEST_F(TripodPicturesBelow3, are_drawn_by_client_arrays_with_fixed_matrices) {
    ASSERT_TRUE(of_camera.init(&renderer));
    const Owned<Camera> camera(new Camera);
    of_camera.render(&renderer, camera.get(), 10, 20, 100, 100);
    recorder.clear();
    of_camera.render(&renderer, camera.get(), 10, 20, 100, 100);
    const std::string projection =
        "glLoadMatrixf([2.41421, 0, 0, 0, 0, 2.41421, 0, 0, 0, 0, -1.0202, -1, 0, 0, -2.0202, 0])";
    const GlCalls expected = {
        "glViewport(10, 20, 100, 100)",
        "glMatrixMode(GL_PROJECTION)",
        projection,
        "glMatrixMode(GL_MODELVIEW)",
        "glLoadMatrixf([1, 0, -0, 0, -0, 1, 0, 0, 0, 0, 1, 0, -0, -0, -3, 1])",
        "glUseProgram(1)",
        "glMatrixMode(GL_PROJECTION)",
        projection,
        "glMatrixMode(GL_MODELVIEW)",
        "glLoadMatrixf([1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, -3, 1])",
        "glUniformMatrix4fv(0, 1, false, [2.41421, 0, 0, 0, 0, 2.41421, 0, 0, 0, 0, -1.0202, -1, "
        "0, 0, 1.0404, 3])",
        "glDrawArrays(GL_LINES, 0, 6)",
    };
    EXPECT_EQ(take_commands_but_for_arrays(recorder), expected)
        << "matrices come from the camera's bind, then from the drawing";
}

} // namespace

} // namespace orvex_test
