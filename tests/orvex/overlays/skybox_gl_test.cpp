#include "orvex/overlays/skybox.h"

#include <algorithm>

#include "orvex/gpu/gpu_program.h"
#include "other_text.h"
#include "skybox_picture.h"

namespace orvex_test {

using namespace orvex;

namespace {

const vec4 ahead(0.0f, 0.0f, -1.0f, 0.0f);

class SkyboxPictures : public OverlayPictureTest {
protected:
    void SetUp() override {
        OverlayPictureTest::SetUp();
        sky = new Skybox;
        sky->set_opengl_2_3_rendering_states(false, nullptr);
        ASSERT_TRUE(load_colors(*stage, *sky));
        stage->clear();
    }
    void TearDown() override {
        EXPECT_EQ(sky->release(stage->renderer.get(), nullptr), 0);
        OverlayPictureTest::TearDown();
    }

    Skybox* sky = nullptr;
};
ORVEX_BOTH_PROFILES(SkyboxPictures);

TEST_P(SkyboxPictures, show_each_face_in_its_direction) {
    expect_each_face_in_its_direction(*stage, *sky);
}

TEST_P(SkyboxPictures, show_the_neighbours_around_the_middle) {
    expect_neighbours_around_the_middle(*stage, *sky);
}

TEST_P(SkyboxPictures, are_the_same_wherever_the_skybox_is_put) {
    draw_sky(*stage, *sky, vec4(1.0f, 0.3f, -1.0f, 0.0f));
    const Picture before = stage->frame();
    sky->set_position(5.0f, 6.0f, 7.0f);
    sky->set_orientation_euler_xyz(10.0f, 20.0f, 30.0f);
    stage->clear();
    draw_sky(*stage, *sky, vec4(1.0f, 0.3f, -1.0f, 0.0f));
    EXPECT_EQ(stage->frame(), before);
}

TEST_P(SkyboxPictures, are_the_same_as_long_as_the_quad_covers_the_screen) {
    draw_sky(*stage, *sky, ahead, 130.0f);
    const Picture before = stage->frame();
    sky->resize(2.0f, 2.0f);
    stage->clear();
    draw_sky(*stage, *sky, ahead, 130.0f);
    EXPECT_TRUE(is_near(stage->frame(), before, {.largest = 0, .share = 0.02}))
        << "an edge between faces may fall to either pixel";
    sky->resize(1.0f, 1.0f);
    stage->clear();
    draw_sky(*stage, *sky, ahead, 130.0f);
    EXPECT_EQ(stage->pixel(128, 128), cyan);
    EXPECT_EQ(stage->pixel(60, 128), black) << "it covers half of each axis now";
    EXPECT_NE(stage->pixel(68, 128), black);
}

TEST_P(SkyboxPictures, are_replaced_with_the_cube_map) {
    draw_sky(*stage, *sky, ahead);
    const std::string file = stage->write_plain("white.png", white);
    ASSERT_TRUE(sky->load_all_faces_from_files(stage->renderer.get(), file.c_str(), file.c_str(),
                                               file.c_str(), file.c_str(), file.c_str(),
                                               file.c_str(), PF_RGBA_U8));
    stage->clear();
    draw_sky(*stage, *sky, ahead);
    EXPECT_EQ(stage->pixel(128, 128), white);
}

TEST_P(SkyboxPictures, hide_what_lies_in_the_far_half_of_the_depth_range) {
    stage->renderer->clear_color_depth_buffers(0.0f, 0.0f, 0.0f, 1.0f, 0.4f);
    draw_sky(*stage, *sky, ahead);
    EXPECT_EQ(stage->pixel(128, 128), black) << "the depth test is the host's";
    stage->renderer->clear_color_depth_buffers(0.0f, 0.0f, 0.0f, 1.0f, 0.6f);
    draw_sky(*stage, *sky, ahead);
    EXPECT_EQ(stage->pixel(128, 128), cyan);
    float depth = 0.0f;
    glReadPixels(128, 128, 1, 1, GL_DEPTH_COMPONENT, GL_FLOAT, &depth);
    EXPECT_NEAR(depth, 0.5f, 1e-6f) << "and so is its writing";
}

TEST_P(SkyboxPictures, are_drawn_by_these_calls_and_leave_everything_else_alone) {
    draw_sky(*stage, *sky, ahead);
    stage->renderer->set_viewport(0, 0, 256, 256);
    stage->renderer->get_projection_matrix() = mat4();
    stage->renderer->get_view_matrix() = mat4();
    sky->render(stage->renderer.get(), nullptr);
    stage->recorder->clear();
    sky->render(stage->renderer.get(), nullptr);
    const std::string program = std::to_string(stage->asked(GL_CURRENT_PROGRAM));
    const std::string identity = "[1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1]";
    const GlCalls expected = {
        "glUseProgram(" + program + ")",
        "glActiveTexture(GL_TEXTURE0)",
        "glBindTexture(GL_TEXTURE_CUBE_MAP, 1)",
        "glMatrixMode(GL_PROJECTION)",
        "glLoadMatrixf(" + identity + ")",
        "glMatrixMode(GL_MODELVIEW)",
        "glLoadMatrixf(" + identity + ")",
        "glUniformMatrix4fv(1, 1, false, " + identity + ")",
        "glUniformMatrix4fv(0, 1, false, " + identity + ")",
        "glBindVertexArray(1)",
        "glDrawElements(GL_TRIANGLES, 6, GL_UNSIGNED_SHORT, 0)",
        "glBindVertexArray(0)",
    };
    EXPECT_EQ(stage->commands(), expected);
}

TEST_P(SkyboxPictures, come_from_a_program_of_the_host) {
    GpuProgram* const program = stage->programs.create_gpu_program_from_shaders(
        stage->renderer.get(), orvex_skybox_vs_gl3,
        "#version 150\nout vec4 pixel;\nvoid main() { pixel = vec4(1.0); }", nullptr, nullptr,
        nullptr, nullptr, "host's");
    sky->set_cubemap_gpu_program(program);
    draw_sky(*stage, *sky, ahead);
    EXPECT_EQ(stage->pixel(5, 250), white);
    EXPECT_EQ(stage->programs.get_num_resources(), 1u);
    sky->set_cubemap_gpu_program(nullptr);
    stage->programs.release_resource(stage->renderer.get(), program, nullptr);
}

TEST_P(SkyboxPictures, end_with_everything_they_made) {
    draw_sky(*stage, *sky, ahead);
    stage->recorder->clear();
    sky->_cleanup(stage->renderer.get());
    for (const char* const call : {"glDeleteProgram", "glDeleteTextures", "glDeleteVertexArrays"})
        EXPECT_EQ(stage->recorder->count(call), 1) << call;
    EXPECT_GE(stage->recorder->count("glDeleteBuffers"), 1);
}

/// The pair for OpenGL 2 on a driver that goes by the letter of GLSL 1.20, which has no `inverse`.
TEST_P(SkyboxPictures, stay_away_where_the_driver_refuses_the_program) {
    sky->set_opengl_2_3_rendering_states(true, nullptr);
    stage->clear(magenta);
    const Picture before = stage->frame();
    for (int frame = 0; frame < 2; ++frame) {
        stage->recorder->clear();
        draw_sky(*stage, *sky, ahead);
        EXPECT_EQ(stage->recorder->count("glDrawElements"), 0);
        EXPECT_EQ(stage->asked(GL_CURRENT_PROGRAM), 0);
        EXPECT_EQ(stage->frame(), before) << "the frame is intact";
    }
    const GlCalls& lines = stage->log.messages();
    EXPECT_TRUE(std::any_of(lines.begin(), lines.end(), [](const std::string& line) {
        return line.rfind("<*> GPU program orvex_skybox_gl2_prog - Vertex shader error: ", 0) == 0;
    }));

    // The engine is, too: the next one that the driver takes draws.
    stage->drain_errors();
    sky->set_cubemap_gpu_program(nullptr);
    sky->set_opengl_2_3_rendering_states(false, nullptr);
    draw_sky(*stage, *sky, ahead);
    EXPECT_EQ(stage->pixel(128, 128), cyan);
    stage->programs.release_all_resources(stage->renderer.get(), nullptr);
}

} // namespace

} // namespace orvex_test
