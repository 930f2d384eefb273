#include "panel.h"

#include <cmath>

using namespace orvex;

namespace {

constexpr unsigned long num_samples = 120;
constexpr unsigned long num_lights = 24;
constexpr int graph_left = 30;
constexpr int graph_bottom = 30;
constexpr int graph_width = 300;
constexpr int graph_height = 100;
constexpr float pixels_per_millisecond = 3.0f;

// Decoders drop alpha: the sheet is white on black, and its brightness is the opacity.
const char* const glyphs_vertex = R"(
uniform mat4 orvex_ModelViewProjectionMatrix;
OUT vec4 tint;
OUT vec2 uv;
void main() {
    gl_Position = orvex_ModelViewProjectionMatrix * POSITION;
    tint = VERTEX_COLOR;
    uv = TEXCOORD;
}
)";
const char* const glyphs_pixel = R"(
uniform sampler2D sheet;
IN vec4 tint;
IN vec2 uv;
void main() { COLOR = vec4(tint.rgb, tint.a * SAMPLE(sheet, uv).r); }
)";

/// A ring around a disc, smooth at its edges and transparent elsewhere.
Texture* make_logo(Renderer* renderer) {
    constexpr unsigned long size = 64;
    Texture* const logo = TextureMgr::get()->create_texture_2d(size, size, PF_RGBA_U8);
    for (unsigned long y = 0; y < size; ++y)
        for (unsigned long x = 0; x < size; ++x) {
            const float right = static_cast<float>(x) - 31.5f;
            const float up = static_cast<float>(y) - 31.5f;
            const float radius = std::sqrt(right * right + up * up);
            const float ring = std::fmin(1.0f, std::fmax(0.0f, 6.5f - std::fabs(radius - 24.0f)));
            const float disc = std::fmin(1.0f, std::fmax(0.0f, 11.0f - radius));
            const float warmth = up / 31.5f;
            logo->set_texel_2d(x, y,
                               vec4(255.0f, 150.0f + 60.0f * warmth, 40.0f + 200.0f * disc,
                                    235.0f * std::fmax(ring, disc)));
        }
    TextureMgr::get()->upload_to_renderer(renderer, logo, 0);
    return logo;
}

Texture* make_shade(Renderer* renderer) {
    Texture* const shade = TextureMgr::get()->create_texture_2d(1, 1, PF_RGBA_U8);
    shade->set_texel_2d(0, 0, vec4(10.0f, 16.0f, 24.0f, 150.0f));
    TextureMgr::get()->upload_to_renderer(renderer, shade, 0);
    return shade;
}

/// Green, then yellow, then red; dark from the level on.
vec4 light_color(unsigned long light, float level) {
    const float place = static_cast<float>(light) / num_lights;
    if (place >= level)
        return vec4(0.12f, 0.15f, 0.18f, 1.0f);
    if (place < 0.6f)
        return vec4(0.2f, 0.9f, 0.35f, 1.0f);
    return place < 0.85f ? vec4(0.95f, 0.85f, 0.2f, 1.0f) : vec4(0.95f, 0.25f, 0.2f, 1.0f);
}

} // namespace

Panel::Panel(OffScreen& the_stage, const std::string& data_folder)
    : stage(the_stage)
    , colored(stage.make_colored_program("colored", 7.0f))
    , glyphs(stage.make_program("glyphs", glyphs_vertex, glyphs_pixel))
    , pixels(new Camera)
    , letters(new Camera)
    , graph(new Graph2d)
    , strip(new MadLedBar)
    , points(new MadLedBar)
    , font(new Font)
    , logo(make_logo(stage.renderer))
    , shade(make_shade(stage.renderer)) {
    const auto width = static_cast<float>(stage.width);
    const auto height = static_cast<float>(stage.height);
    pixels->set_viewport(0, 0, stage.width, stage.height);
    pixels->build_projection_ortho(-width / 2, width / 2, -height / 2, height / 2, 1.0f, 100.0f,
                                   true);
    letters->set_viewport(0, 0, stage.width, stage.height);
    letters->build_projection_ortho(0.0f, width, -height, 0.0f, 1.0f, 100.0f, true);
    make_graph();
    make_meters();
    axes.init(stage.renderer);
    const std::string sheet = data_folder + "dejavu_sans_24.xml";
    loaded = font->bm_load_charset(sheet.c_str()) &&
             font->bm_load_charset_texture(
                 stage.renderer, (data_folder + font->bm_get_charset_image_filename()).c_str());
    font->set_opengl_2_3_rendering_states(!stage.gl3, nullptr);
    font->set_viewport_info(0, 0, stage.width, stage.height);
}

Panel::~Panel() {
    axes.cleanup(stage.renderer);
    hud.cleanup(stage.renderer);
    for (Object* const object :
         {static_cast<Object*>(graph), static_cast<Object*>(strip), static_cast<Object*>(points),
          static_cast<Object*>(font), static_cast<Object*>(pixels), static_cast<Object*>(letters)})
        object->kill(stage.renderer, nullptr);
    TextureMgr::get()->release_texture(stage.renderer, logo, nullptr);
    TextureMgr::get()->release_texture(stage.renderer, shade, nullptr);
}

void Panel::make_graph() {
    const vec4 corner(graph_left, graph_bottom, 0.0f, 1.0f);
    graph->set_x_axis_positions(corner, vec4(graph_left + graph_width, graph_bottom, 0.0f, 1.0f));
    graph->set_y_axis_positions(corner, vec4(graph_left, graph_bottom + graph_height, 0.0f, 1.0f));
    graph->create_curve(num_samples);
    graph->set_curve_color(0, 0.5f, 0.95f, 0.6f, 1.0f);
    graph->set_viewport(0, 0, stage.width, stage.height);
}

void Panel::add_frame_time(float milliseconds) {
    graph->add_curve_scalar(0, milliseconds * pixels_per_millisecond);
    graph->sync_curve_scalars(0);
}

/// The strip lies flat and is turned towards the viewer; the points count from the same place.
void Panel::make_meters() {
    const vec3 start(0.0f, 0.0f, 0.0f);
    const vec3 end(240.0f, 0.0f, 0.0f);
    strip->initialize(start, end, num_lights, 12.0f);
    strip->set_orientation_euler_xyz(90.0f, 0.0f, 0.0f);
    strip->set_position(0.0f, 62.0f - static_cast<float>(stage.height) / 2, 0.0f);
    points->initialize(start, end, num_lights);
    points->set_position(-115.0f, 34.0f - static_cast<float>(stage.height) / 2, 0.0f);
    for (MadLedBar* const meter : {strip, points})
        meter->set_opengl_2_3_rendering_states(!stage.gl3, nullptr);
}

void Panel::set_levels(float left, float right) {
    for (unsigned long i = 0; i < num_lights; ++i) {
        strip->set_led_color(i, light_color(i, left));
        points->set_led_color(i, light_color(i, right));
    }
}

void Panel::queue_texts() {
    font->bm_draw_reset();
    font->bm_set_scale(1.0f);
    font->bm_draw_text_2d(96, 24, 1.0f, 1.0f, 1.0f, 1.0f, "The lighthouse, and what lies over it");
    font->bm_draw_text_2d(30, stage.height - 172, 0.5f, 0.95f, 0.6f, 1.0f, "frame time");
    font->bm_draw_text_2d(stage.width / 2 - 120, stage.height - 112, 0.95f, 0.85f, 0.2f, 1.0f,
                          "levels");
    font->bm_update_vb(stage.renderer, false);
}

void Panel::draw_backgrounds() {
    const auto lay = [this](Texture* texture, int x, int y, int width, int height) {
        hud.render(stage.renderer, texture, x, y, width, height, true, BLEND_FACTOR_SRC_ALPHA,
                   BLEND_FACTOR_ONE_MINUS_SRC_ALPHA);
    };
    lay(shade, 16, 16, 324, 166);
    lay(shade, stage.width / 2 - 132, 16, 264, 106);
    lay(shade, 16, stage.height - 72, 560, 56);
    lay(logo, 24, stage.height - 72, 56, 56);
}

void Panel::draw_lines_and_lights() {
    pixels->bind(stage.renderer, true, true, true, true, !stage.gl3);
    colored->bind(stage.renderer);
    graph->render(stage.renderer, nullptr);
    strip->render(stage.renderer, nullptr);
    points->render(stage.renderer, nullptr);
    colored->unbind(stage.renderer);
}

/// All texts of the sheet are one draw call. Raster text has no program, so that only a
/// compatibility context has it.
void Panel::draw_texts() {
    Renderer* const renderer = stage.renderer;
    queue_texts();
    letters->bind(renderer, true, true, true, true, !stage.gl3);
    renderer->set_blend_factors(BLEND_FACTOR_SRC_ALPHA, BLEND_FACTOR_ONE_MINUS_SRC_ALPHA);
    renderer->set_blend_state(true);
    glyphs->bind(renderer);
    glyphs->set_uniform_1i(renderer, "sheet", 0);
    font->bm_get_charset_texture()->bind(renderer, 0);
    font->bm_render_vb(renderer);
    font->bm_get_charset_texture()->unbind(renderer, 0);
    glyphs->unbind(renderer);
    renderer->set_blend_state(false);
    if (!stage.gl3)
        font->bitmap_font_linux_renderf(renderer, stage.window, stage.width - 300, 30, 0.05f, 0.1f,
                                        0.15f, 1.0f, "raster text: %lu lights, %d x %d pixels",
                                        num_lights, stage.width, stage.height);
}

void Panel::draw(Camera* scene_camera) {
    draw_backgrounds();
    stage.renderer->set_depth_test_state(false);
    axes.render(stage.renderer, scene_camera, stage.width - 120, 10, 110, 110);
    draw_lines_and_lights();
    draw_texts();
    stage.renderer->set_depth_test_state(true);
}
