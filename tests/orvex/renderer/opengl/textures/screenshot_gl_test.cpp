#include <string>

#include <GL/gl.h>
#include <gtest/gtest.h>

#include "orvex/assets/images/codecs/image_codec_stb.h"
#include "orvex/assets/textures/texture.h"
#include "orvex/assets/textures/texture_mgr.h"
#include "orvex/renderer/opengl/private/renderer_opengl.h"
#include "orvex/renderer/records/image.h"
#include "tests/support/gl_context.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

using namespace orvex;
namespace {

/// A started renderer and the manager with the built-in codec.
class Screenshots : public orvex_test::GlTest {
protected:
    void SetUp() override {
        GlTest::SetUp();
        mgr.start(nullptr);
        mgr.register_image_codec_plugin(new ImageCodecStb);
        renderer.start();
        orvex_test::forget_gl_errors();
    }
    void TearDown() override {
        mgr.stop(nullptr);
        GlTest::TearDown();
    }

    /// Red below, blue above.
    void draw(int width, int height) {
        renderer.set_viewport(0, 0, width, height);
        renderer.clear_color_buffer(0, 0, 1, 1);
        renderer.set_scissor(0, 0, width, height / 2);
        renderer.set_scissor_state(true);
        renderer.clear_color_buffer(1, 0, 0, 1);
        renderer.set_scissor_state(false);
    }

    TextureMgr& mgr = *TextureMgr::get();
    RendererOpenGL renderer;
    TempDir dir;
};

ORVEX_BOTH_PROFILES(Screenshots);

TEST_P(Screenshots, stand_upright_in_their_colours) {
    for (const int size : {64, 128, 32}) {
        draw(size * 2, size);
        const std::string file = dir.file("shot.jpg");
        ASSERT_TRUE(mgr.do_screenshot(&renderer, file.c_str()));
        Texture* const shot = mgr.create_texture_2d_from_file(file.c_str(), false);
        ASSERT_NE(shot, nullptr);
        ASSERT_EQ(shot->get_width(), static_cast<unsigned long>(size * 2));
        ASSERT_EQ(shot->get_height(), static_cast<unsigned long>(size));
        const unsigned char* const top = shot->get_pixmap_u8_ptr();
        const unsigned char* const bottom = top + (size * 2 * size - 1) * 3;
        EXPECT_LE(top[0], 2) << "a flat block of JPEG keeps its colour to rounding";
        EXPECT_GE(top[2], 253);
        EXPECT_GE(bottom[0], 253);
        EXPECT_LE(bottom[2], 2);
    }
    EXPECT_NO_GL_ERROR();
}

TEST_P(Screenshots, fail_where_the_file_cannot_be_made) {
    draw(16, 16);
    EXPECT_FALSE(mgr.do_screenshot(&renderer, dir.path().c_str()));
    EXPECT_FALSE(mgr.do_screenshot(&renderer, dir.file("no/such/dir.jpg").c_str()));
}

TEST_P(Screenshots, can_go_into_a_texture_as_well) {
    draw(20, 10);
    Texture* const texture = mgr.create_texture();
    EXPECT_TRUE(texture->update_pixmap_rgba_u8_from_framebuffer(&renderer));
    EXPECT_EQ(texture->get_width(), 20u);
    EXPECT_EQ(texture->get_height(), 10u);
    const unsigned char* const pixels = texture->get_pixmap_u8_ptr();
    EXPECT_EQ(pixels[0], 255) << "the bottom row comes first";
    EXPECT_EQ(pixels[2], 0);
    EXPECT_EQ(pixels[20 * 10 * 4 - 2], 255);
    EXPECT_TRUE(mgr.upload_to_renderer(&renderer, texture, 0));
    EXPECT_TRUE(texture->bind(&renderer, 0));
    EXPECT_NO_GL_ERROR();
    EXPECT_TRUE(mgr.release_texture(&renderer, texture, nullptr));
}

} // namespace
} // namespace orvex_test
