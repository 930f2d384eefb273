// Text from a sheet of glyphs: text folder/ picture.jpg

#include <string>

#include "off_screen.h"

using namespace orvex;

namespace {

const char* const glyphs = R"([Vertex_Shader]
#version 150
in vec4 orvex_Position;
in vec4 orvex_Color;
in vec4 orvex_TexCoord0;
uniform mat4 orvex_ModelViewProjectionMatrix;
out vec4 tint;
out vec2 uv;
void main() {
    tint = orvex_Color;
    uv = orvex_TexCoord0.xy;
    gl_Position = orvex_ModelViewProjectionMatrix * vec4(orvex_Position.xyz, 1.0);
}
[Pixel_Shader]
#version 150
uniform sampler2D sheet;
in vec4 tint;
in vec2 uv;
out vec4 color;
void main() { color = vec4(tint.rgb, tint.a * texture(sheet, uv).r); }
)";

/// Where each glyph lies on the sheet, and the sheet.
Font* load_font(Renderer* renderer, const std::string& folder) {
    Font* font = new Font;
    if (font->bm_load_charset((folder + "dejavu_sans_24.xml").c_str()) &&
        font->bm_load_charset_texture(renderer,
                                      (folder + font->bm_get_charset_image_filename()).c_str()))
        return font;
    font->kill(renderer, nullptr);
    return nullptr;
}

/// A unit is a pixel, and y counts down from the top.
void look_at_pixels(Renderer* renderer, float width, float height) {
    Camera* camera = new Camera;
    camera->set_viewport(0, 0, static_cast<int>(width), static_cast<int>(height));
    camera->build_projection_ortho(0.0f, width, -height, 0.0f, 1.0f, 100.0f, true);
    camera->bind(renderer, true, true, true, true, false);
    camera->release(nullptr, nullptr);
}

/// All texts of a frame are one draw call.
void draw(Renderer* renderer, Font* font, GpuProgram* program) {
    font->bm_draw_reset();
    font->bm_draw_text_2d(20, 20, 1.0f, 1.0f, 1.0f, 1.0f, "Hello, orvex!");
    font->bm_draw_text_2d(20, 60, 1.0f, 0.8f, 0.3f, 1.0f, "0123456789 (+-*/=)");
    font->bm_draw_text_3d(20.0f, -100.0f, 0.0f, 0.5f, 0.9f, 1.0f, 1.0f, "This one is placed in 3D");
    font->bm_update_vb(renderer, false);

    renderer->set_blend_factors(BLEND_FACTOR_SRC_ALPHA, BLEND_FACTOR_ONE_MINUS_SRC_ALPHA);
    renderer->set_blend_state(true);
    renderer->set_depth_test_state(false);
    program->bind(renderer);
    program->set_uniform_1i(renderer, "sheet", 0);
    font->bm_get_charset_texture()->bind(renderer, 0);
    font->bm_render_vb(renderer);
    program->unbind(renderer);
    renderer->set_depth_test_state(true);
    renderer->set_blend_state(false);
}

} // namespace

int main(int argc, char** argv) {
    OffScreen stage(true, 400, 150);
    Font* font = stage.started && argc > 2 ? load_font(stage.renderer, argv[1]) : nullptr;
    if (!font)
        return 1;
    GpuProgram* program = GpuProgramMgr::get()->create_gpu_program_from_memory(
        stage.renderer, glyphs, std::strlen(glyphs), "glyphs");
    look_at_pixels(stage.renderer, 400, 150);
    stage.renderer->clear_color_depth_buffers(0.1f, 0.12f, 0.15f, 1.0f, 1.0f);
    draw(stage.renderer, font, program);
    const bool ok = stage.write(argv[2]);
    font->kill(stage.renderer, nullptr);
    return ok ? 0 : 1;
}
