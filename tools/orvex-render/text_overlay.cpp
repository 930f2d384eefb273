// A text over the picture: the font first, its own or a file, then the lines at their place.

#include "text_overlay.h"

#include <algorithm>
#include <fstream>
#include <iterator>

#include <orvex/assets/textures/texture.h>
#include <orvex/gpu/gpu_program.h>
#include <orvex/math/vec4.h>
#include <orvex/overlays/font.h>
#include <orvex/renderer/renderer.h>
#include <orvex/scene/camera.h>
#include <orvex_kit/files.h>

#include "builtin_font.h"

using namespace orvex;
using namespace orvex::kit;

TextOverlay::TextOverlay(Renderer* renderer, GpuProgram* program, bool gl3)
    : renderer(renderer)
    , program(program)
    , font(new Font)
    , camera(new orvex::Camera)
    , gl3(gl3) {
    font->set_opengl_2_3_rendering_states(!gl3, nullptr);
}

TextOverlay::~TextOverlay() {
    camera->release(nullptr, nullptr);
    font->kill(renderer, nullptr);
}

std::string TextOverlay::load(const std::string& path) {
    return path.empty() ? load_builtin() : load_file(path);
}

std::string TextOverlay::load_builtin() {
    metrics = metrics_of(builtin_charset);
    const bool loaded =
        font->bm_load_charset_from_memory(builtin_charset) &&
        font->bm_load_charset_texture_from_memory(renderer, builtin_sheet, builtin_sheet_size);
    return loaded ? "" : "the built-in font doesn't load";
}

std::string TextOverlay::load_file(const std::string& path) {
    const std::string mistake = mistake_in_reading(path);
    if (!mistake.empty())
        return mistake;
    std::ifstream file(path, std::ios::binary);
    const std::string charset{std::istreambuf_iterator<char>(file), {}};
    metrics = metrics_of(charset);
    if (!font->bm_load_charset_from_memory(charset.c_str()) || metrics.line_height <= 0)
        return path + ": no BMFont XML with a line height";
    const std::string sheet = folder_of(path) + font->bm_get_charset_image_filename();
    if (!font->bm_load_charset_texture(renderer, sheet.c_str()))
        return path + ": its sheet " + sheet + " can't be read as a picture";
    read_files = {path, sheet};
    return "";
}

std::vector<std::string> lines_of(const std::string& text) {
    std::vector<std::string> lines(1);
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool is_escape = text[i] == '\\' && i + 1 < text.size() && text[i + 1] == 'n';
        if (is_escape || text[i] == '\n')
            lines.emplace_back();
        else
            lines.back() += text[i];
        i += is_escape ? 1 : 0;
    }
    return lines;
}

bool TextOverlay::has_room_for(const std::string& text, const Setting& setting) const {
    const std::vector<std::string> lines = lines_of(text);
    const float scale =
        static_cast<float>(setting.line_height) / static_cast<float>(metrics.line_height);
    const float height = static_cast<float>(setting.line_height) * static_cast<float>(lines.size());
    bool fits = height <= static_cast<float>(setting.height);
    for (const std::string& line : lines)
        fits = fits && static_cast<float>(metrics.width_of(line)) * scale <=
                           static_cast<float>(setting.width);
    return fits;
}

bool TextOverlay::draw(const std::string& text, const Setting& setting) {
    font->bm_draw_reset();
    const float shift = std::max(1.0f, static_cast<float>(setting.line_height) / 16.0f);
    const bool fits = queue(text, setting, shift, {0.0f, 0.0f, 0.0f}, 0.6f) &&
                      queue(text, setting, 0.0f, setting.color, 1.0f);
    draw_queue(setting);
    return fits;
}

bool TextOverlay::queue(const std::string& text, const Setting& setting, float shift,
                        const Color& color, float opacity) {
    const float line_height = static_cast<float>(setting.line_height);
    const float scale = line_height / static_cast<float>(metrics.line_height);
    const float margin = line_height / 2;
    const std::vector<std::string> lines = lines_of(text);
    const float room =
        static_cast<float>(setting.height) - 2 * margin - line_height * float(lines.size());
    float top = margin + room * setting.place.down + shift;
    font->bm_set_scale(scale);
    for (const std::string& line : lines) {
        const float length = static_cast<float>(metrics.width_of(line)) * scale;
        const float free = static_cast<float>(setting.width) - 2 * margin - length;
        const float left = margin + free * setting.place.across + shift;
        if (!font->bm_draw_text_3d(left, -top, 0.0f, color.r, color.g, color.b, opacity,
                                   line.c_str()))
            return false;
        top += line_height;
    }
    return true;
}

void TextOverlay::draw_queue(const Setting& setting) {
    const float width = static_cast<float>(setting.width);
    const float height = static_cast<float>(setting.height);
    camera->set_viewport(0, 0, setting.width, setting.height);
    camera->build_projection_ortho(0.0f, width, -height, 0.0f, -1.0f, 1.0f, true);
    camera->set_position(vec4(0.0f, 0.0f, 0.0f, 1.0f));
    camera->bind(renderer, true, true, true, true, !gl3);
    renderer->set_depth_test_state(false);
    renderer->set_blend_factors(BLEND_FACTOR_SRC_ALPHA, BLEND_FACTOR_ONE_MINUS_SRC_ALPHA);
    renderer->set_blend_state(true);
    renderer->rasterizer_set_polygon_mode(POLYGON_FACE_FRONT_AND_BACK, POLYGON_MODE_FILL);
    renderer->rasterizer_apply_state();

    font->bm_update_vb(renderer, false);
    program->set_uniform_1i(nullptr, "sheet", 0);
    program->bind(renderer);
    font->bm_get_charset_texture()->bind(renderer, 0);
    font->bm_render_vb(renderer);
    program->unbind(renderer);

    renderer->set_blend_state(false);
    renderer->set_depth_test_state(true);
}
