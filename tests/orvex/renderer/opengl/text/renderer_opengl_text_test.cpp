#include "orvex/renderer/opengl/private/renderer_opengl.h"

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orvex/renderer/records/font_data.h"
#include "tests/support/gl_context.h"
#include "tests/support/gl_recorder.h"
#include "tests/support/log_capture.h"

namespace orvex_test {

using namespace orvex;
namespace {

TEST(FontData, has_its_defaults) {
    const FontData font;
    EXPECT_STREQ(font.name, "Arial");
    EXPECT_EQ(font.size, 14U);
    EXPECT_EQ(font.viewport_x, 0);
    EXPECT_EQ(font.viewport_y, 0);
    EXPECT_EQ(font.viewport_width, 0);
    EXPECT_EQ(font.viewport_height, 0);
    EXPECT_EQ(font.renderer_id, 0);
}

class RasterText : public GlCompatibilityTest {
protected:
    RasterText() {
        font.viewport_width = 256;
        font.viewport_height = 256;
        renderer.start();
        recorder.clear();
    }

    // Pixels that aren't black, by rows from the bottom.
    struct Box {
        int left = 256;
        int right = -1;
        int bottom = 256;
        int top = -1;
        int count = 0;
        unsigned char color[3] = {};
    };

    Box drawn() {
        std::vector<unsigned char> pixels(256 * 256 * 4);
        glReadPixels(0, 0, 256, 256, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
        Box box;
        for (int y = 0; y < 256; ++y) {
            for (int x = 0; x < 256; ++x) {
                const unsigned char* const p = &pixels[static_cast<std::size_t>(y * 256 + x) * 4];
                if (p[0] + p[1] + p[2] == 0)
                    continue;
                box.left = std::min(box.left, x);
                box.right = std::max(box.right, x);
                box.bottom = std::min(box.bottom, y);
                box.top = std::max(box.top, y);
                ++box.count;
                std::copy(p, p + 3, box.color);
            }
        }
        return box;
    }

    void clear_frame() { renderer.clear_color_depth_buffers(0.0f, 0.0f, 0.0f, 1.0f, 1.0f); }

    bool write(int x, int y, const char* text, unsigned long length) {
        return renderer.font_bitmap_linux_render(&font, x, y, 1.0f, 0.5f, 0.0f, 1.0f, text, length);
    }

    GlRecorder recorder;
    RendererOpenGL renderer;
    FontData font;
};

GlCalls without_pixel_store(GlCalls calls) {
    // GLUT's own calls, which the recorder sees where the library binds to the program's symbols.
    calls.erase(
        std::remove_if(calls.begin(), calls.end(),
                       [](const std::string& call) { return call.rfind("glPixelStorei", 0) == 0; }),
        calls.end());
    return calls;
}

TEST_F(RasterText, is_drawn_at_its_pixel_without_a_display) {
    clear_frame();
    renderer.set_viewport(0, 0, 256, 256);
    EXPECT_TRUE(write(40, 60, "Hill", 4));
    const Box box = drawn();
    EXPECT_GT(box.count, 20);
    EXPECT_GE(box.left, 39);
    EXPECT_LT(box.right, 39 + 40);
    // The base line is at 256 - 14 - 60 - 1; 12 points of capital letters stand on it.
    EXPECT_EQ(box.bottom, 181);
    EXPECT_LT(box.top, 181 + 14);
    EXPECT_EQ(box.color[0], 255);
    EXPECT_NEAR(box.color[1], 128, 1);
    EXPECT_EQ(box.color[2], 0);
}

TEST_F(RasterText, sends_its_calls_in_order) {
    font.viewport_x = 5;
    font.viewport_y = 6;
    font.viewport_height = 100;
    font.size = 20;
    EXPECT_TRUE(write(10, 30, "A", 1));
    EXPECT_EQ(without_pixel_store(recorder.take()),
              GlCalls({"glDisable(GL_BLEND)", "glDisable(GL_DEPTH_TEST)", "glColor4f(1, 0.5, 0, 1)",
                       "glPushAttrib(GL_TRANSFORM_BIT | GL_VIEWPORT_BIT)",
                       "glMatrixMode(GL_PROJECTION)", "glLoadIdentity()",
                       "glMatrixMode(GL_MODELVIEW)", "glLoadIdentity()", "glViewport(14, 55, 0, 0)",
                       "glRasterPos4f(0, 0, 0, 1)", "glPopAttrib()", "glColor4f(1, 1, 1, 1)"}));
}

TEST_F(RasterText, leaves_blending_and_depth_test_off_without_a_shadow) {
    renderer.set_blend_state(true);
    renderer.set_depth_test_state(true);
    EXPECT_TRUE(write(10, 10, "A", 1));
    EXPECT_FALSE(glIsEnabled(GL_BLEND));
    EXPECT_FALSE(glIsEnabled(GL_DEPTH_TEST));
    EXPECT_TRUE(renderer.ctx.blend);
    EXPECT_TRUE(renderer.ctx.depth_test);
}

TEST_F(RasterText, keeps_viewport_and_matrix_mode) {
    renderer.set_viewport(1, 2, 30, 40);
    glMatrixMode(GL_TEXTURE);
    EXPECT_TRUE(write(10, 10, "A", 1));
    EXPECT_EQ(renderer.get_viewport_ptr()[2], 30);
    GLint mode = 0;
    glGetIntegerv(GL_MATRIX_MODE, &mode);
    EXPECT_EQ(mode, GL_TEXTURE);
}

TEST_F(RasterText, stays_valid_where_it_begins_outside_the_view) {
    clear_frame();
    EXPECT_TRUE(write(-4, 60, "WWW", 3));
    const Box box = drawn();
    EXPECT_GT(box.count, 10);
    EXPECT_EQ(box.left, 0);
}

TEST_F(RasterText, is_drawn_to_its_end_whatever_the_length) {
    clear_frame();
    EXPECT_TRUE(write(40, 60, "MMMM", 1));
    EXPECT_GT(drawn().right, 39 + 30);
}

TEST_F(RasterText, is_refused_without_font_text_or_length) {
    recorder.clear();
    EXPECT_FALSE(write(0, 0, "not empty", 0));
    EXPECT_FALSE(write(0, 0, nullptr, 4));
    EXPECT_FALSE(
        renderer.font_bitmap_linux_render(nullptr, 0, 0, 1.0f, 1.0f, 1.0f, 1.0f, "text", 4));
    EXPECT_FALSE(renderer.font_bitmap_linux_render_3d(nullptr, 0.0f, 0.0f, 0.0f, 1.0f, 1.0f, 1.0f,
                                                      1.0f, "text", 4));
    EXPECT_FALSE(renderer.font_bitmap_linux_render_3d(&font, 0.0f, 0.0f, 0.0f, 1.0f, 1.0f, 1.0f,
                                                      1.0f, nullptr, 4));
    EXPECT_FALSE(renderer.font_bitmap_linux_render_3d(&font, 0.0f, 0.0f, 0.0f, 1.0f, 1.0f, 1.0f,
                                                      1.0f, "text", 0));
    EXPECT_TRUE(recorder.calls().empty());
}

TEST_F(RasterText, is_drawn_for_every_character_code) {
    std::string all;
    for (int i = 1; i < 256; ++i)
        all += static_cast<char>(i);
    EXPECT_TRUE(write(0, 10, all.c_str(), all.size()));
    EXPECT_TRUE(write(0, 10, "", 1)) << "the length is the gate, not the text";
}

TEST_F(RasterText, is_drawn_at_a_point_of_the_scene) {
    clear_frame();
    renderer.set_viewport(0, 0, 256, 256);
    renderer.gl2_matrix_load_identity(true, true, false);
    recorder.clear();
    EXPECT_TRUE(renderer.font_bitmap_linux_render_3d(&font, 0.0f, 0.5f, 0.25f, 0.0f, 1.0f, 0.0f,
                                                     1.0f, "Hill", 4));
    EXPECT_EQ(without_pixel_store(recorder.take()),
              GlCalls({"glDisable(GL_BLEND)", "glDisable(GL_DEPTH_TEST)", "glColor4f(0, 1, 0, 1)",
                       "glRasterPos4f(0, 0.5, 0.25, 1)", "glColor4f(1, 1, 1, 1)"}));
    const Box box = drawn();
    EXPECT_GT(box.count, 20);
    EXPECT_GE(box.left, 128);
    EXPECT_EQ(box.bottom, 192);
    EXPECT_EQ(box.color[1], 255);
}

TEST_F(RasterText, is_missing_with_one_log_line_without_the_library) {
    LogCapture log;
    renderer.raster_text.characters = GlutText("libthere_is_no_such_library.so.7");
    EXPECT_FALSE(write(10, 10, "A", 1));
    EXPECT_FALSE(write(10, 10, "A", 1));
    EXPECT_FALSE(renderer.font_bitmap_linux_render_3d(&font, 0.0f, 0.0f, 0.0f, 1.0f, 1.0f, 1.0f,
                                                      1.0f, "A", 1));
    EXPECT_EQ(log.messages(),
              (std::vector<std::string>{"<!> OpenGL renderer - raster text can't be "
                                        "drawn: there is no GLUT library"}));
    EXPECT_TRUE(recorder.calls().empty());
}

TEST_F(RasterText, is_missing_with_a_library_of_another_kind) {
    LogCapture log;
    renderer.raster_text.characters = GlutText("libm.so.6");
    EXPECT_FALSE(write(10, 10, "A", 1));
    EXPECT_EQ(log.messages().size(), 1U);
}

TEST_F(RasterText, has_no_windows_form) {
    EXPECT_FALSE(renderer.font_bitmap_windows_create(&font));
    EXPECT_FALSE(renderer.font_bitmap_windows_kill(&font));
    EXPECT_FALSE(renderer.font_bitmap_windows_render(&font, 0, 0, 1, 1, 1, 1, "A", 1));
    EXPECT_FALSE(renderer.font_bitmap_windows_render_3d(&font, 0, 0, 0, 1, 1, 1, 1, "A", 1));
    EXPECT_FALSE(renderer.font_bitmap_windows_render_prepare(&font, 0, 0, 1, 1, 1, 1, "A", 1));
    EXPECT_FALSE(renderer.font_bitmap_windows_render_draw(&font, 0, 0, 1, 1, 1, 1, "A", 1));
    EXPECT_FALSE(renderer.font_bitmap_windows_render_finish(&font, 0, 0, 1, 1, 1, 1, "A", 1));
    EXPECT_TRUE(recorder.calls().empty());
}

TEST(RasterTextInCore, is_sent_and_refused_by_the_api) {
    const GlContext context(Profile::core);
    RendererOpenGL renderer;
    renderer.start();
    FontData font;
    EXPECT_TRUE(renderer.font_bitmap_linux_render(&font, 1, 1, 1.0f, 1.0f, 1.0f, 1.0f, "A", 1));
    EXPECT_EQ(renderer.get_opengl_error(), static_cast<unsigned int>(GL_INVALID_OPERATION));
    while (renderer.get_opengl_error() != 0) {
    }
    renderer.set_blend_state(false);
    EXPECT_NO_GL_ERROR();
}

} // namespace
} // namespace orvex_test
