// The same visualizers on a context that reports 2.1. The driver settles the version once for the
// process, so these tests have a program of their own.

#include "overlays/tripod_visualizer.h"

#include <gtest/gtest.h>

#include "geometry/owned_mesh.h"
#include "renderer/opengl/renderer_opengl.h"
#include "support/gl_context.h"
#include "support/gl_recorder.h"
#include "tripod_picture.h"

using namespace orvex;
using namespace orvex_test;

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
    EXPECT_EQ(recorder.count("glLoadMatrixf"), 4) << "by the camera's bind, then by the drawing";
    EXPECT_EQ(recorder.count("glVertexPointer"), 1);
    EXPECT_EQ(recorder.count("glBindVertexArray"), 0);
    EXPECT_EQ(recorder.count("glDrawArrays"), 1);
}

} // namespace
