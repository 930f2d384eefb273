// The hud on a context that reports 2.1. The driver settles the version once for the process, so
// these tests have a program of their own.

#include "hud_picture.h"

using namespace orvex;
using namespace orvex_test;

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
    stage.recorder->clear();
    draw_hud(stage, hud, 0, 0, 8, 8);
    EXPECT_EQ(stage.recorder->count("glLoadMatrixf"), 2) << "by the quad, not by the camera";
    EXPECT_EQ(stage.recorder->count("glVertexPointer"), 1);
    EXPECT_EQ(stage.recorder->count("glBindVertexArray"), 0);
    EXPECT_EQ(stage.recorder->count("glDrawElements"), 1);
}

} // namespace
