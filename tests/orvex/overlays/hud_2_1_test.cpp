// The hud on a context that reports 2.1. The driver settles the version once for the process, so
// these tests have a program of their own.

#include <algorithm>

#include "hud_picture.h"

namespace orvex_test {

using namespace orvex;

namespace {

class HudPicturesBelow3 : public testing::Test {
protected:
    ~HudPicturesBelow3() override {
        hud.cleanup(stage.renderer.get());
        EXPECT_NO_GL_ERROR();
    }

    GlContext context{Profile::gl_2_1};
    OverlayStage stage;
    aux::Hud hud;
};

TEST_F(HudPicturesBelow3, have_their_first_row_at_the_bottom_of_two_places) {
    expect_first_row_at_the_bottom_of_two_places(stage, hud);
}

TEST_F(HudPicturesBelow3, are_drawn_by_client_arrays_with_fixed_matrices) {
    ASSERT_TRUE(hud.init_texture(stage.renderer.get(), stage.write_plain("a.png", red).c_str()));
    draw_hud(stage, hud, 0, 0, 8, 8);
    stage.renderer->set_viewport(5, 6, 70, 80);
    stage.recorder->clear();
    draw_hud(stage, hud, 0, 0, 8, 8);
    const GlCalls expected = {
        "glDisable(GL_CULL_FACE)",
        "glCullFace(GL_BACK)",
        "glPolygonMode(GL_FRONT_AND_BACK, GL_FILL)",
        "glDisable(GL_MULTISAMPLE)",
        "glPolygonOffset(0, 0)",
        "glDisable(GL_DEPTH_TEST)",
        "glDisable(GL_BLEND)",
        "glEnable(GL_SCISSOR_TEST)",
        "glViewport(0, 0, 8, 8)",
        "glScissor(0, 0, 8, 8)",
        "glUseProgram(" + std::to_string(stage.asked(GL_CURRENT_PROGRAM)) + ")",
        "glActiveTexture(GL_TEXTURE0)",
        "glBindTexture(GL_TEXTURE_2D, 1)",
        "glMatrixMode(GL_PROJECTION)",
        "glLoadMatrixf([1, 0, 0, 0, 0, -1, 0, 0, 0, 0, 1, 0, -0, 0, 0, 1])",
        "glMatrixMode(GL_MODELVIEW)",
        "glLoadMatrixf([1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, -1, 1])",
        "glUniformMatrix4fv(0, 1, false, [1, 0, 0, 0, 0, -1, 0, 0, 0, 0, 1, 0, 0, 0, -1, 1])",
        "glDrawElements(GL_TRIANGLES, 6, GL_UNSIGNED_SHORT, 0)",
        "glDisable(GL_SCISSOR_TEST)",
        "glDisable(GL_BLEND)",
        "glEnable(GL_DEPTH_TEST)",
        "glViewport(5, 6, 70, 80)",
    };
    const GlCalls calls = stage.recorder->calls();
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "glVertexPointer(4, GL_FLOAT, 96, 0)"), 1)
        << "interleaved";
    EXPECT_EQ(take_commands_but_for_arrays(*stage.recorder), expected)
        << "the matrices come from the quad, not from the camera";
}

} // namespace

} // namespace orvex_test
