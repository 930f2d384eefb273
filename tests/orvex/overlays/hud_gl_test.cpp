#include "orvex/overlays/hud.h"

#include "hud_picture.h"
#include "orvex/assets/textures/texture.h"
#include "other_text.h"

namespace orvex_test {

using namespace orvex;

namespace {

class HudPictures : public OverlayPictureTest {
protected:
    void TearDown() override {
        hud.cleanup(stage->renderer.get());
        OverlayPictureTest::TearDown();
    }

    void init(const Color& color = red) {
        ASSERT_TRUE(
            hud.init_texture(stage->renderer.get(), stage->write_plain("logo.png", color).c_str()));
        stage->clear();
    }

    void draw(int x, int y, int width, int height) { draw_hud(*stage, hud, x, y, width, height); }

    aux::Hud hud;
};
ORVEX_BOTH_PROFILES(HudPictures);

TEST_P(HudPictures, have_their_first_row_at_the_bottom_of_two_places) {
    expect_first_row_at_the_bottom_of_two_places(*stage, hud);
}

TEST_P(HudPictures, show_a_texture_of_the_host) {
    Texture* const texture = stage->textures.create_texture_2d(2, 2, PF_RGBA_U8);
    for (unsigned long i = 0; i < 4; ++i)
        texture->set_texel_2d(i % 2, i / 2, vec4(0.0f, 255.0f, 0.0f, 255.0f));
    ASSERT_TRUE(texture->upload(stage->renderer.get()));
    stage->clear();
    hud.render(stage->renderer.get(), texture, 0, 0, 8, 8, false, BLEND_FACTOR_ONE,
               BLEND_FACTOR_ONE);
    EXPECT_EQ(stage->pixel(4, 4), green);
    EXPECT_EQ(stage->pixel(9, 4), black);
    stage->textures.release_texture(stage->renderer.get(), texture, nullptr);
}

TEST_P(HudPictures, are_mixed_with_the_frame_by_their_factors) {
    init(red);
    stage->clear(green);
    hud.render(stage->renderer.get(), 0, 0, 32, 32, true, BLEND_FACTOR_ONE, BLEND_FACTOR_ONE);
    EXPECT_EQ(stage->pixel(8, 8), yellow);
    hud.render(stage->renderer.get(), 64, 0, 32, 32, false, BLEND_FACTOR_ONE, BLEND_FACTOR_ONE);
    EXPECT_EQ(stage->pixel(72, 8), red);
}

TEST_P(HudPictures, lie_on_top_of_what_is_nearer) {
    init(red);
    stage->renderer->clear_color_depth_buffers(0.0f, 0.0f, 1.0f, 1.0f, 0.0f);
    draw(0, 0, 256, 256);
    EXPECT_EQ(stage->pixel(128, 128), red);
}

TEST_P(HudPictures, are_drawn_by_these_calls) {
    init();
    draw(1, 2, 30, 40);
    stage->recorder->clear();
    stage->renderer->set_viewport(5, 6, 70, 80);
    stage->recorder->clear();
    hud.render(stage->renderer.get(), 10, 20, 64, 32, true, BLEND_FACTOR_SRC_ALPHA,
               BLEND_FACTOR_ONE_MINUS_SRC_ALPHA);
    const std::string program = std::to_string(stage->asked(GL_CURRENT_PROGRAM));
    const GlCalls expected = {
        "glDisable(GL_CULL_FACE)",
        "glCullFace(GL_BACK)",
        "glPolygonMode(GL_FRONT_AND_BACK, GL_FILL)",
        "glDisable(GL_MULTISAMPLE)",
        "glPolygonOffset(0, 0)",
        "glDisable(GL_DEPTH_TEST)",
        "glEnable(GL_BLEND)",
        "glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA)",
        "glEnable(GL_SCISSOR_TEST)",
        "glViewport(10, 20, 64, 32)",
        "glScissor(10, 20, 64, 32)",
        "glUseProgram(" + program + ")",
        "glActiveTexture(GL_TEXTURE0)",
        "glBindTexture(GL_TEXTURE_2D, 1)",
        "glUniformMatrix4fv(0, 1, false, [1, 0, 0, 0, 0, -1, 0, 0, 0, 0, 1, 0, 0, 0, -1, 1])",
        "glBindVertexArray(1)",
        "glDrawElements(GL_TRIANGLES, 6, GL_UNSIGNED_SHORT, 0)",
        "glBindVertexArray(0)",
        "glDisable(GL_SCISSOR_TEST)",
        "glDisable(GL_BLEND)",
        "glEnable(GL_DEPTH_TEST)",
        "glViewport(5, 6, 70, 80)",
    };
    EXPECT_EQ(stage->commands(), expected);
}

TEST_P(HudPictures, leave_the_frame_state_as_told) {
    init();
    for (const bool before : {false, true}) {
        stage->renderer->set_viewport(5, 6, 70, 80);
        stage->renderer->set_depth_test_state(before);
        stage->renderer->set_blend_state(before);
        stage->renderer->set_scissor_state(before);
        stage->renderer->rasterizer_set_cull_state(true);
        stage->renderer->rasterizer_set_polygon_mode(POLYGON_FACE_FRONT_AND_BACK,
                                                     POLYGON_MODE_LINE);
        stage->renderer->rasterizer_apply_state();
        draw(0, 0, 8, 8);
        EXPECT_TRUE(stage->enabled(GL_DEPTH_TEST));
        EXPECT_FALSE(stage->enabled(GL_BLEND));
        EXPECT_FALSE(stage->enabled(GL_SCISSOR_TEST));
        EXPECT_FALSE(stage->enabled(GL_CULL_FACE)) << "not put back";
        int viewport[4] = {};
        stage->renderer->get_viewport(&viewport[0], &viewport[1], &viewport[2], &viewport[3]);
        EXPECT_EQ(std::vector<int>(viewport, viewport + 4), (std::vector<int>{5, 6, 70, 80}));
        GLint mode[2] = {};
        glGetIntegerv(GL_POLYGON_MODE, mode);
        EXPECT_EQ(mode[0], GL_FILL) << "not put back";
        EXPECT_NE(stage->asked(GL_CURRENT_PROGRAM), 0) << "its program stays in use";
    }
}

TEST_P(HudPictures, end_with_everything_they_made) {
    init();
    draw(0, 0, 8, 8);
    stage->recorder->clear();
    hud.cleanup(stage->renderer.get());
    for (const char* const call : {"glDeleteProgram", "glDeleteTextures", "glDeleteVertexArrays"})
        EXPECT_EQ(stage->recorder->count(call), 1) << call;
    EXPECT_EQ(stage->recorder->count("glDeleteShader"), 2);
    EXPECT_GE(stage->recorder->count("glDeleteBuffers"), 1);
}

TEST_P(HudPictures, fail_with_the_compilers_words) {
    init();
    const OtherText pixel(aux::orvex_hud_tex_ortho_proj_ps_gl3, "#version 150\nnonsense");
    const Picture before = stage->frame();
    draw(0, 0, 8, 8);
    ASSERT_FALSE(stage->log.messages().empty());
    EXPECT_EQ(
        stage->log.messages().back().rfind(
            "<*> - orvex_hud_tex_ortho_proj_XXXX GPU program error: \nPixel shader error: ", 0),
        0u)
        << stage->log.messages().back();
    EXPECT_EQ(stage->frame(), before);
}

TEST_P(HudPictures, fail_where_the_stages_do_not_fit) {
    init();
    const OtherText pixel(aux::orvex_hud_tex_ortho_proj_ps_gl3,
                          "#version 150\nin vec2 Vertex_UV;\nout vec4 pixel;\nvoid main() { pixel "
                          "= Vertex_UV.xyxy; }");
    draw(0, 0, 8, 8);
    EXPECT_EQ(stage->log.messages().back(),
              "<*> - unable to create the GPU program orvex_hud_tex_ortho_proj_XXXX.");
}

} // namespace

} // namespace orvex_test
