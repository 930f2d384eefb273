#include "label.h"

#include <filesystem>

#include <orvex/orvex.h>

using namespace orvex;

namespace {

constexpr int margin = 10;
constexpr int line_height = 29;

const char vertex_text[] = R"(#version 150
in vec4 orvex_Position, orvex_Color, orvex_TexCoord0;
uniform mat4 orvex_ModelViewProjectionMatrix;
out vec4 color;
out vec2 uv;
void main()
{
    color = orvex_Color;
    uv = orvex_TexCoord0.xy;
    gl_Position = orvex_ModelViewProjectionMatrix * vec4(orvex_Position.xyz, 1.0);
}
)";

// The sheet is white on black: how white it is tells how much of a pixel a glyph covers.
const char pixel_text[] = R"(#version 150
uniform sampler2D sheet;
in vec4 color;
in vec2 uv;
out vec4 pixel;
void main() { pixel = vec4(color.rgb, color.a * texture(sheet, uv).r); }
)";

} // namespace

Label::Label(Renderer* renderer, const std::string& font_file)
    : renderer(renderer)
    , camera(new Camera)
    , font(new Font)
    , program(GpuProgramMgr::get()->create_gpu_program_from_shaders(
          renderer, vertex_text, pixel_text, nullptr, nullptr, nullptr, nullptr, "label")) {
    font->set_opengl_2_3_rendering_states(false, nullptr);
    const std::filesystem::path folder = std::filesystem::path(font_file).parent_path();
    ready = font->bm_load_charset(font_file.c_str()) &&
            font->bm_load_charset_texture(renderer,
                                          (folder / font->bm_get_charset_image_filename()).c_str());
    // The text's plane is the camera's own.
    camera->set_position(vec4(0.0f, 0.0f, 0.0f, 1.0f));
}

Label::~Label() {
    camera->release(nullptr, nullptr);
    font->kill(renderer, nullptr);
}

void Label::queue(int x, int y, const std::vector<std::string>& lines) {
    for (const std::string& line : lines) {
        font->bm_draw_text_2d(x, y, 0.9f, 0.9f, 0.85f, 1.0f, line.c_str());
        y += line_height;
    }
}

void Label::draw(int width, int height, const std::vector<std::string>& upper,
                 const std::vector<std::string>& lower) {
    font->bm_draw_reset();
    queue(margin, margin, upper);
    queue(margin, height - margin - line_height * static_cast<int>(lower.size()), lower);
    font->bm_update_vb(renderer, false);

    camera->set_viewport(0, 0, width, height);
    camera->build_projection_ortho(0.0f, static_cast<float>(width), static_cast<float>(-height),
                                   0.0f, -1.0f, 1.0f, true);
    camera->bind(renderer, true, true, true, true, false);
    renderer->set_blend_factors(BLEND_FACTOR_SRC_ALPHA, BLEND_FACTOR_ONE_MINUS_SRC_ALPHA);
    renderer->set_blend_state(true);
    program->bind(renderer);
    program->set_uniform_1i(renderer, "sheet", 0);
    font->bm_get_charset_texture()->bind(renderer, 0);
    font->bm_render_vb(renderer);
    program->unbind(renderer);
    renderer->set_blend_state(false);
}
