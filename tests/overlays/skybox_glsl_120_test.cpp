// The skybox's programs for OpenGL 2 where the driver takes `inverse` in GLSL 1.20. The driver is
// told so once for the process, so these tests have a program of their own.

#include "skybox_picture.h"

using namespace orvex;
using namespace orvex_test;

namespace {

class SkyboxPicturesInGlsl120 : public testing::Test {
protected:
    SkyboxPicturesInGlsl120() { EXPECT_TRUE(load_colors(stage, *sky)); }
    ~SkyboxPicturesInGlsl120() override {
        EXPECT_EQ(sky->release(stage.renderer.get(), nullptr), 0);
        EXPECT_NO_GL_ERROR();
    }

    GlContext context{Profile::compatibility};
    OverlayStage stage;
    Skybox* sky = new Skybox;
};

TEST_F(SkyboxPicturesInGlsl120, show_each_face_in_its_direction) {
    expect_each_face_in_its_direction(stage, *sky);
    EXPECT_TRUE(stage.log.messages().empty()) << stage.log.messages().back();
}

TEST_F(SkyboxPicturesInGlsl120, show_the_neighbours_around_the_middle) {
    expect_neighbours_around_the_middle(stage, *sky);
}

TEST_F(SkyboxPicturesInGlsl120, are_drawn_by_client_arrays) {
    draw_sky(stage, *sky, vec4(0.0f, 0.0f, -1.0f, 0.0f));
    stage.recorder->clear();
    sky->render(stage.renderer.get(), nullptr);
    EXPECT_EQ(stage.recorder->count("glVertexPointer"), 1);
    EXPECT_EQ(stage.recorder->count("glBindVertexArray"), 0);
    EXPECT_EQ(stage.recorder->count("glLoadMatrixf"), 4) << "by the skybox, then by its quad";
}

} // namespace
