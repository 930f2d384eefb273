#include "orvex/overlays/font.h"

#include <algorithm>
#include <memory>
#include <string>

#include <GL/gl.h>
#include <gtest/gtest.h>

#include "orvex/assets/images/codecs/image_codec_stb.h"
#include "orvex/assets/textures/texture.h"
#include "orvex/assets/textures/texture_mgr.h"
#include "orvex/geometry/mesh/mesh.h"
#include "orvex/gpu/gpu_program.h"
#include "orvex/gpu/gpu_program_mgr.h"
#include "orvex/math/vec4.h"
#include "orvex/overlays/private/font_state.h"
#include "orvex/renderer/opengl/private/renderer_opengl.h"
#include "orvex/renderer/records/mesh_data.h"
#include "orvex/scene/camera.h"
#include "overlay_frame.h"
#include "tests/orvex/renderer/opengl/buffers/vertex_buffers_fixture.h"
#include "tests/support/gl_context.h"
#include "tests/support/gl_recorder.h"
#include "tests/support/picture.h"

namespace orvex_test {

using namespace orvex;
namespace {

const std::string data = ORVEX_TEST_DATA_DIR "/../examples/data/";

constexpr int width = 1280;
constexpr int height = 720;

const char* const fixed_vertex_shader = R"(#version 120
uniform mat4 orvex_ModelViewProjectionMatrix;
varying vec4 color;
varying vec2 uv;
void main() {
    color = gl_Color;
    uv = gl_MultiTexCoord0.xy;
    gl_Position = orvex_ModelViewProjectionMatrix * gl_Vertex;
}
)";

const char* const fixed_pixel_shader = R"(#version 120
uniform sampler2D sheet;
varying vec4 color;
varying vec2 uv;
void main() {
    gl_FragColor = vec4(color.rgb, color.a * texture2D(sheet, uv).r);
}
)";

const char* const generic_vertex_shader = R"(#version 150
in vec4 orvex_Position;
in vec4 orvex_Color;
in vec4 orvex_TexCoord0;
uniform mat4 orvex_ModelViewProjectionMatrix;
out vec4 color;
out vec2 uv;
void main() {
    color = orvex_Color;
    uv = orvex_TexCoord0.xy;
    gl_Position = orvex_ModelViewProjectionMatrix * orvex_Position;
}
)";

const char* const generic_pixel_shader = R"(#version 150
uniform sampler2D sheet;
in vec4 color;
in vec2 uv;
out vec4 pixel;
void main() {
    pixel = vec4(color.rgb, color.a * texture(sheet, uv).r);
}
)";

/// A frame of 1280 by 720 in pixels with y counted down, a program that blends text into it, and a
/// font with the sheet of the examples.
class FontDrawing : public testing::TestWithParam<Profile> {
protected:
    FontDrawing()
        : context(GetParam(), width, height) {
        renderer.start();
        codec->add_ref();
        TextureMgr::get()->register_image_codec_plugin(codec);
        const bool core = is_core_context();
        program = GpuProgramMgr::get()->create_gpu_program_from_shaders(
            &renderer, core ? generic_vertex_shader : fixed_vertex_shader,
            core ? generic_pixel_shader : fixed_pixel_shader, nullptr, nullptr, nullptr, nullptr,
            "text");
        EXPECT_TRUE(program->is_valid()) << program->get_shader_error_messages();
        font->set_opengl_2_3_rendering_states(!core, nullptr);
        EXPECT_TRUE(font->bm_load_charset((data + "dejavu_sans_24.xml").c_str()));
        EXPECT_TRUE(font->bm_load_charset_texture(
            &renderer, (data + font->bm_get_charset_image_filename()).c_str()));
        camera->set_viewport(0, 0, width, height);
        camera->set_view_params(vec4(0.0f, 0.0f, 1.0f, 1.0f), vec4(0.0f, 0.0f, 0.0f, 1.0f),
                                vec4(0.0f, 1.0f, 0.0f, 1.0f), true);
        camera->build_projection_ortho(0.0f, width, -height, 0.0f, 0.0f, 2.0f, true);
        forget_calls();
    }
    ~FontDrawing() override {
        font->kill(&renderer, nullptr);
        camera->kill(nullptr, nullptr);
        GpuProgramMgr::get()->release_resource(&renderer, program, nullptr);
        EXPECT_EQ(TextureMgr::get()->get_num_resources(), 0u);
        TextureMgr::get()->stop(nullptr);
        EXPECT_EQ(codec->release(), 0);
        EXPECT_NO_GL_ERROR();
    }

    void forget_calls() {
        recorder.set_recording(false);
        forget_gl_errors();
        recorder.set_recording(true);
        recorder.clear();
    }

    void begin_frame() {
        renderer.clear_color_depth_buffers(0.0f, 0.0f, 0.0f, 1.0f, 1.0f);
        camera->bind(&renderer, true, true, true, true, GetParam() == Profile::compatibility);
        renderer.rasterizer_set_cull_state(false);
        renderer.rasterizer_apply_state();
        renderer.set_depth_test_state(false);
        renderer.set_blend_state(true);
        renderer.set_blend_factors(BLEND_FACTOR_SRC_ALPHA, BLEND_FACTOR_ONE_MINUS_SRC_ALPHA);
        program->bind(&renderer);
        font->bm_get_charset_texture()->bind(&renderer, 0);
        program->set_uniform_1i(&renderer, "sheet", 0);
        font->bm_draw_reset();
        recorder.clear();
    }

    void draw(bool use_map) {
        EXPECT_TRUE(font->bm_update_vb(&renderer, use_map));
        font->bm_render_vb(&renderer);
    }

    /// Every call that draws anything.
    GlCalls draw_calls() {
        GlCalls found;
        for (const std::string& call : recorder.calls())
            if (call.rfind("glDraw", 0) == 0 || call.rfind("glMultiDraw", 0) == 0 ||
                call.rfind("glBegin(", 0) == 0)
                found.push_back(call);
        return found;
    }

    Picture frame() {
        const GlRecorderPause pause(recorder);
        return read_frame(width, height);
    }

    /// What a white text in pixels should look like, with the pixels of the sheet as they are.
    void blit(Picture& picture, int x, int y, const std::string& text) {
        const Picture upside_down = *read_picture(data + "dejavu_sans_24.png");
        for (const char c : text) {
            const BMCharDescriptor& glyph =
                Font::State::of(*font).bm_charset->glyph(static_cast<signed char>(c));
            for (int row = 0; row < glyph.height; ++row) {
                for (int column = 0; column < glyph.width; ++column) {
                    const int sheet_row = upside_down.height - 1 - (glyph.y + row);
                    const unsigned char value = *upside_down.at(glyph.x + column, sheet_row);
                    unsigned char* const pixel =
                        picture.at(x + glyph.xoffset + column, y + glyph.yoffset + row);
                    std::fill_n(pixel, 3, std::max(pixel[0], value));
                }
            }
            x += glyph.xadvance;
        }
    }

    static Picture black() {
        Picture picture(width, height);
        for (std::size_t i = 3; i < picture.pixels.size(); i += 4)
            picture.pixels[i] = 255;
        return picture;
    }

    GlContext context;
    GlRecorder recorder;
    RendererOpenGL renderer;
    ImageCodecStb* codec = new ImageCodecStb;
    GpuProgram* program = nullptr;
    Camera* camera = new Camera;
    Font* font = new Font;
};

ORVEX_BOTH_PROFILES(FontDrawing);

/// Largest difference of red, green or blue.
int color_difference(Picture a, Picture b) {
    for (std::size_t i = 3; i < a.pixels.size(); i += 4)
        a.pixels[i] = b.pixels[i] = 255;
    return difference_of(a, b).largest;
}

bool queue(Font& font, int x, int y, const std::string& text) {
    return font.bm_draw_text_2d(x, y, 1.0f, 1.0f, 1.0f, 1.0f, text.c_str());
}

TEST_P(FontDrawing, shows_the_sheets_pixels_as_they_are) {
    const std::string text = "The quick brown fox jumps over 13 lazy dogs.";
    for (const bool use_map : {false, true}) {
        begin_frame();
        EXPECT_TRUE(queue(*font, 30, 50, text));
        EXPECT_TRUE(queue(*font, 700, 600, "~{Agj|}"));
        draw(use_map);
        Picture expected = black();
        blit(expected, 30, 50, text);
        blit(expected, 700, 600, "~{Agj|}");
        EXPECT_GT(difference_of(expected, black()).largest, 200) << "there is something to see";
        // The blend rounds once.
        EXPECT_LE(color_difference(frame(), expected), 1) << (use_map ? "mapped" : "uploaded");
    }
    EXPECT_NO_GL_ERROR();
}

TEST_P(FontDrawing, shows_the_text_of_this_frame_alone) {
    for (const bool use_map : {true, false}) {
        for (const char* text : {"first and longer", "next"}) {
            begin_frame();
            EXPECT_TRUE(queue(*font, 30, 50, text));
            draw(use_map);
        }
        Picture expected = black();
        blit(expected, 30, 50, "next");
        EXPECT_LE(color_difference(frame(), expected), 1);
    }
}

TEST_P(FontDrawing, shows_a_sheet_that_was_stored_upright_once_it_is_turned) {
    Texture* const sheet = font->bm_get_charset_texture();
    const auto turn = [&] {
        return sheet->flip_vertical() && sheet->unload(&renderer) && sheet->upload(&renderer);
    };
    EXPECT_TRUE(turn());
    begin_frame();
    EXPECT_TRUE(queue(*font, 30, 50, "text"));
    draw(false);
    Picture expected = black();
    blit(expected, 30, 50, "text");
    EXPECT_GT(color_difference(frame(), expected), 100) << "now it is the wrong way round";

    EXPECT_TRUE(turn());
    begin_frame();
    EXPECT_TRUE(queue(*font, 30, 50, "text"));
    draw(false);
    EXPECT_LE(color_difference(frame(), expected), 1);
}

TEST_P(FontDrawing, shows_a_sheet_that_is_turned_before_its_upload) {
    const std::string file = data + font->bm_get_charset_image_filename();
    EXPECT_TRUE(font->bm_load_charset_texture(nullptr, file.c_str()));
    Texture* const sheet = font->bm_get_charset_texture();
    EXPECT_TRUE(sheet->flip_vertical());
    EXPECT_TRUE(TextureMgr::get()->upload_to_renderer(&renderer, sheet, 0));
    begin_frame();
    EXPECT_TRUE(queue(*font, 30, 50, "text"));
    draw(false);
    Picture expected = black();
    blit(expected, 30, 50, "text");
    EXPECT_GT(color_difference(frame(), expected), 100) << "this one was stored turned";

    EXPECT_TRUE(font->bm_load_charset_texture(nullptr, file.c_str()));
    EXPECT_TRUE(
        TextureMgr::get()->upload_to_renderer(&renderer, font->bm_get_charset_texture(), 0));
    begin_frame();
    EXPECT_TRUE(queue(*font, 30, 50, "text"));
    draw(false);
    EXPECT_LE(color_difference(frame(), expected), 1);
}

TEST_P(FontDrawing, shows_colors_and_the_scale) {
    begin_frame();
    font->bm_set_scale(3.0f);
    EXPECT_TRUE(font->bm_draw_text_2d(100, 100, 1.0f, 0.0f, 0.0f, 1.0f, "|"));
    EXPECT_TRUE(font->bm_draw_text_3d(300.0f, -100.0f, 0.5f, 0.0f, 1.0f, 0.0f, 0.5f, "|"));
    draw(false);
    const BMCharDescriptor& bar = Font::State::of(*font).bm_charset->glyph('|');
    const Picture picture = frame();
    const int y = 100 + 3 * (bar.yoffset + bar.height / 2);
    const int x = 3 * bar.xoffset + 3 * bar.width / 2;
    EXPECT_EQ(picture.at(100 + x, y)[0], 255);
    EXPECT_EQ(picture.at(100 + x, y)[1], 0);
    EXPECT_EQ(picture.at(300 + x, y)[0], 0);
    EXPECT_NEAR(picture.at(300 + x, y)[1], 128, 1);
    const int end = 100 + 3 * (bar.yoffset + bar.height);
    EXPECT_EQ(picture.at(100 + x, end - 2)[0], 255);
    EXPECT_EQ(picture.at(100 + x, end + 1)[0], 0);
}

TEST_P(FontDrawing, shows_nothing_of_bytes_from_128_up) {
    begin_frame();
    EXPECT_TRUE(queue(*font, 30, 50, "a\xe9\xff\x80z"));
    draw(false);
    Picture expected = black();
    blit(expected, 30, 50, "az");
    EXPECT_LE(color_difference(frame(), expected), 1);
}

TEST_P(FontDrawing, draws_2000_glyphs_by_one_call) {
    const std::string line = "The quick brown fox jumps over 13 lazy dogs";
    for (const bool use_map : {false, true}) {
        begin_frame();
        int glyphs = 0;
        for (int i = 0; glyphs < 2000; ++i) {
            const std::string part = line.substr(0, static_cast<std::size_t>(2000 - glyphs));
            EXPECT_TRUE(queue(*font, 5 + 640 * (i % 2), 5 + 29 * (i / 2), part));
            glyphs += static_cast<int>(part.size());
        }
        EXPECT_EQ(glyphs, 2000);
        draw(use_map);
        EXPECT_EQ(draw_calls(), GlCalls{"glDrawArrays(GL_TRIANGLES, 0, 12000)"});
        EXPECT_GT(difference_of(frame(), black()).share, 0.05);
    }
    EXPECT_NO_GL_ERROR();
}

TEST_P(FontDrawing, draws_by_these_calls_and_leaves_the_state_alone) {
    begin_frame();
    EXPECT_TRUE(queue(*font, 30, 50, "one"));
    draw(true);
    recorder.clear();
    font->bm_render_vb(&renderer);
    const GlCalls matrices = {
        "glMatrixMode(GL_PROJECTION)",
        "glLoadMatrixf([0.0015625, 0, 0, 0, 0, 0.00277778, 0, 0, 0, 0, -1, 0, -1, 1, -1, 1])",
        "glMatrixMode(GL_MODELVIEW)",
        "glLoadMatrixf([1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, -1, 1])"};
    const GlCalls uniform = {"glUniformMatrix4fv(0, 1, false, [0.0015625, 0, 0, 0, 0, 0.00277778, "
                             "0, 0, 0, 0, -1, 0, -1, 1, 0, 1])"};
    const GlCalls draw_call = {"glDrawArrays(GL_TRIANGLES, 0, 18)"};
    EXPECT_EQ(take_commands_but_for_arrays(recorder),
              is_core_context()
                  ? joined({uniform, {"glBindVertexArray(1)"}, draw_call, {"glBindVertexArray(0)"}})
                  : joined({matrices, uniform, draw_call}));
}

TEST_P(FontDrawing, sends_whole_records_once_when_they_are_not_mapped) {
    begin_frame();
    EXPECT_TRUE(queue(*font, 30, 50, "one"));
    draw(false);
    begin_frame();
    EXPECT_TRUE(queue(*font, 30, 50, "two"));
    EXPECT_TRUE(font->bm_update_vb(&renderer, false));
    EXPECT_EQ(recorder.take(), GlCalls()) << "until it is drawn";
    font->bm_render_vb(&renderer);
    EXPECT_EQ(recorder.count("glBufferSubData") + recorder.count("glBufferData"), 1);
    EXPECT_EQ(recorder.count("glGenBuffers"), 0);
    recorder.clear();
    font->bm_render_vb(&renderer);
    EXPECT_EQ(recorder.count("glBufferSubData") + recorder.count("glBufferData"), 0);
}

TEST_P(FontDrawing, maps_its_buffer_once_and_sends_nothing_else) {
    begin_frame();
    EXPECT_TRUE(queue(*font, 30, 50, "one"));
    draw(true);
    begin_frame();
    EXPECT_TRUE(queue(*font, 30, 50, "two"));
    EXPECT_TRUE(font->bm_update_vb(&renderer, true));
    const std::string bind =
        "glBindBuffer(GL_ARRAY_BUFFER, " +
        std::to_string(Font::State::of(*font).bm_mesh->get_mesh_data()->vertex_buffer_id) + ")";
    EXPECT_EQ(recorder.take(),
              (GlCalls{bind, "glMapBuffer(GL_ARRAY_BUFFER, GL_WRITE_ONLY)", bind,
                       "glUnmapBuffer(GL_ARRAY_BUFFER)", "glBindBuffer(GL_ARRAY_BUFFER, 0)"}));
    font->bm_render_vb(&renderer);
    EXPECT_EQ(recorder.count("glBufferSubData") + recorder.count("glBufferData"), 0);
    EXPECT_EQ(draw_calls().size(), 1u);
}

TEST_P(FontDrawing, makes_one_buffer_and_another_when_it_grows) {
    begin_frame();
    EXPECT_TRUE(font->bm_alloc_vb(&renderer, 1000));
    EXPECT_EQ(recorder.count("glGenBuffers"), 1);
    EXPECT_EQ(recorder.count("glDeleteBuffers"), 0);
    EXPECT_TRUE(draw_calls().empty());
    recorder.clear();
    EXPECT_TRUE(font->bm_alloc_vb(&renderer, 1001));
    EXPECT_EQ(recorder.count("glDeleteBuffers"), 1);
    EXPECT_EQ(recorder.count("glGenBuffers"), 1);
    recorder.clear();
    EXPECT_TRUE(font->bm_free_vb(&renderer));
    EXPECT_EQ(recorder.count("glDeleteBuffers"), 1);

    begin_frame();
    EXPECT_TRUE(queue(*font, 30, 50, "again"));
    draw(true);
    Picture expected = black();
    blit(expected, 30, 50, "again");
    EXPECT_LE(color_difference(frame(), expected), 1);
}

TEST_P(FontDrawing, draws_texts_without_a_character_as_nothing) {
    for (const bool use_map : {false, true}) {
        begin_frame();
        EXPECT_TRUE(queue(*font, 30, 50, ""));
        draw(use_map);
        EXPECT_EQ(color_difference(frame(), black()), 0);
    }
    EXPECT_NO_GL_ERROR();
}

TEST_P(FontDrawing, leaves_no_texture_and_no_buffer_behind) {
    begin_frame();
    EXPECT_TRUE(queue(*font, 30, 50, "text"));
    draw(false);
    recorder.clear();
    font->cleanup(&renderer, nullptr);
    EXPECT_EQ(recorder.count("glDeleteTextures"), 1);
    EXPECT_EQ(recorder.count("glDeleteBuffers"), 1);
}

// -------------------------------------------------------------------------------- raster text

class FontRasterDrawing : public GlCompatibilityTest {
protected:
    FontRasterDrawing() {
        renderer.start();
        font->set_viewport_info(0, 0, 256, 256);
        renderer.set_viewport(0, 0, 256, 256);
        renderer.clear_color_depth_buffers(0.0f, 0.0f, 0.0f, 1.0f, 1.0f);
    }
    ~FontRasterDrawing() override { font->kill(&renderer, nullptr); }

    GlRecorder recorder;
    RendererOpenGL renderer;
    Font* font = new Font;
};

TEST_F(FontRasterDrawing, is_readable_without_a_display) {
    RenderWindow* const window = renderer.create_render_window();
    EXPECT_TRUE(font->bitmap_font_linux_renderf(&renderer, window, 40, 60, 0.0f, 1.0f, 0.0f, 1.0f,
                                                "%s %d", "Hill", 13));
    const Picture picture = read_frame(256, 256);
    int drawn = 0;
    for (int y = 0; y < 256; ++y) {
        for (int x = 0; x < 256; ++x) {
            if (picture.at(x, y)[1] == 0)
                continue;
            ++drawn;
            // The base line lies 14, the size of the record, below y.
            EXPECT_GE(x, 39);
            EXPECT_LT(x, 39 + 60);
            EXPECT_LE(y, 60 + 14);
            EXPECT_GT(y, 60);
            EXPECT_EQ(picture.at(x, y)[0], 0);
        }
    }
    EXPECT_GT(drawn, 40);
    renderer.kill_render_window(window);
}

} // namespace
} // namespace orvex_test
