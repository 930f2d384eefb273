// The skybox's programs for OpenGL 2 where the driver takes `inverse` in GLSL 1.20. The driver is
// told so once for the process, so these tests have a program of their own.

#include "skybox_picture.h"

namespace orvex_test {

using namespace orvex;

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
    const std::string projection = "[1, 0, 0, 0, 0, 1, 0, 0, 0, 0, -1.002, -1, 0, 0, -0.2002, 0]";
    const std::string view = "[1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, -30, 20, -10, 1]";
    const GlCalls matrices = {"glMatrixMode(GL_PROJECTION)", "glLoadMatrixf(" + projection + ")",
                              "glMatrixMode(GL_MODELVIEW)", "glLoadMatrixf(" + view + ")"};
    EXPECT_EQ(take_commands_but_for_arrays(*stage.recorder),
              joined({{"glUseProgram(1)"},
                      matrices,
                      {"glActiveTexture(GL_TEXTURE0)", "glBindTexture(GL_TEXTURE_CUBE_MAP, 1)"},
                      matrices,
                      {"glUniformMatrix4fv(1, 1, false, " + projection + ")",
                       "glUniformMatrix4fv(0, 1, false, " + view + ")",
                       "glDrawElements(GL_TRIANGLES, 6, GL_UNSIGNED_SHORT, 0)"}}))
        << "matrices are loaded by the skybox, then by its quad";
}

} // namespace

} // namespace orvex_test
