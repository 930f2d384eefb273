// Fonts, huds, graphs, visualizers, skyboxes, bars of lights, and the scanner.

#include "fuzz/api/operations.h"

namespace orvex_fuzz {

using namespace orvex;
using aux::Hud;

namespace {

template<class Type>
void make(World& world, Bytes&) {
    world.hold(new Type);
}

constexpr const char* charset =
    "<font><info padding=\"1,1,1,1\" spacing=\"1,1\"/>"
    "<common lineHeight=\"20\" base=\"15\" scaleW=\"64\" scaleH=\"64\"/>"
    "<pages><page id=\"0\" file=\"sheet.png\"/></pages><chars count=\"2\">"
    "<char id=\"97\" x=\"2\" y=\"3\" width=\"9\" height=\"10\" xoffset=\"1\" yoffset=\"2\" "
    "xadvance=\"11\"/>"
    "<char id=\"32\" x=\"0\" y=\"0\" width=\"0\" height=\"0\" xadvance=\"5\"/></chars></font>";

constexpr unsigned char sheet[] = {
    'B', 'M', 58, 0, 0, 0, 0, 0, 0, 0, 54, 0, 0, 0, 40, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 24,
    0,   0,   0,  0, 0, 4, 0, 0, 0, 0, 0,  0, 0, 0, 0,  0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 9, 8, 7, 0};

void load_font(World& world, Bytes& in) {
    Font* const font = world.reach<Font>(in);
    if (!font)
        return;
    font->bm_load_charset_from_memory(in.byte() < 200 ? charset : in.text());
    const unsigned long size = in.byte() < 200 ? sizeof sheet : in.below(sizeof sheet + 1);
    font->bm_load_charset_texture_from_memory(draw<Renderer*>(world, in), sheet, size);
}

void draw_text(World& world, Bytes& in) {
    Font* const font = world.reach<Font>(in);
    if (!font)
        return;
    font->bm_draw_text_2d(in.integer(), in.integer(), 1, 1, 1, 1, in.flag() ? "a a" : in.text());
    font->bm_update_vb(world.renderer, in.flag());
    font->bm_render_vb(world.renderer);
}

void print_text(World& world, Bytes& in) {
    Font* const font = world.reach<Font>(in);
    if (!font)
        return;
    auto* const renderer = draw<Renderer*>(world, in);
    auto* const window = draw<RenderWindow*>(world, in);
    if (in.flag())
        font->bitmap_font_linux_renderf(renderer, window, in.integer(), in.integer(), 1, 1, 1, 1,
                                        "%d", in.integer());
    else
        font->bitmap_font_linux_render(renderer, window, in.integer(), in.integer(), 1, 1, 1, 1,
                                       in.text(), in.size());
}

/// A skybox takes a second reference from its program, which is the manager's.
void give_program(World& world, Bytes& in) {
    Skybox* const sky = world.reach<Skybox>(in);
    if (!sky)
        return;
    GpuProgramMgr& programs = *GpuProgramMgr::get();
    sky->set_cubemap_gpu_program(
        in.flag() ? nullptr
                  : programs.create_gpu_program_from_shaders(world.renderer, orvex_skybox_vs_gl2,
                                                             orvex_skybox_ps_gl2, nullptr, nullptr,
                                                             nullptr, nullptr, "sky"));
}

/// A curve is its graph's, which is asked for it each time.
void set_curve(World& world, Bytes& in) {
    Graph2d* const graph = world.reach<Graph2d>(in);
    Curve* const curve = graph ? graph->get_curve(in.byte() % 4) : nullptr;
    if (!curve)
        return;
    curve->set_position(draw<vec4>(world, in));
    if (in.byte() % 4 == 0)
        graph->kill_curve(draw<Renderer*>(world, in), curve);
}

void scan_target(World& world, Bytes& in) {
    if (ArtifactScanner* const scanner = world.held<ArtifactScanner>(in))
        scanner->set_render_target(draw<RenderTarget*>(world, in));
}

constexpr Operation rows[] = {
    {"new Font", &make<Font>},
    {"Font::bm_load_charset_from_memory", &load_font},
    {"Font::bm_draw_text_2d", &draw_text},
    {"Font::bitmap_font_linux_render", &print_text},
    ORVEX_FUZZ_CALL(Font, bm_load_charset),
    ORVEX_FUZZ_CALL(Font, bm_get_charset_image_filename),
    ORVEX_FUZZ_CALL(Font, bm_load_charset_texture),
    ORVEX_FUZZ_CALL(Font, bm_release_charset_texture),
    ORVEX_FUZZ_CALL(Font, bm_set_scale),
    ORVEX_FUZZ_CALL(Font, bm_draw_reset),
    ORVEX_FUZZ_CALL(Font, bm_draw_text_3d),
    ORVEX_FUZZ_CALL(Font, bm_alloc_vb),
    ORVEX_FUZZ_CALL(Font, bm_update_vb),
    ORVEX_FUZZ_CALL(Font, bm_render_vb),
    ORVEX_FUZZ_CALL(Font, bm_free_vb),
    ORVEX_FUZZ_CALL(Font, set_viewport_info),

    ORVEX_FUZZ_CALL(Hud, init_texture),
    ORVEX_FUZZ_CALL_OF(
        Hud, render, void,
        (Renderer*, int, int, int, int, bool, RENDERER_BLEND_FACTOR, RENDERER_BLEND_FACTOR)),
    ORVEX_FUZZ_CALL_OF(Hud, render, void,
                       (Renderer*, Texture*, int, int, int, int, bool, RENDERER_BLEND_FACTOR,
                        RENDERER_BLEND_FACTOR)),
    ORVEX_FUZZ_CALL(Hud, cleanup),

    {"new Graph2d", &make<Graph2d>},
    {"Graph2d::get_curve", &set_curve},
    ORVEX_FUZZ_CALL(Graph2d, create_curve),
    ORVEX_FUZZ_CALL(Graph2d, create_curve),
    ORVEX_FUZZ_CALL(Graph2d, kill_all_curves),
    ORVEX_FUZZ_CALL(Graph2d, set_curve_color),
    ORVEX_FUZZ_CALL(Graph2d, add_curve_position),
    ORVEX_FUZZ_CALL(Graph2d, add_curve_scalar),
    ORVEX_FUZZ_CALL(Graph2d, sync_curve_scalars),
    ORVEX_FUZZ_CALL(Graph2d, curve_get_diff_points),
    ORVEX_FUZZ_CALL_OF(Graph2d, set_curve_value, bool, (unsigned long, unsigned long, const vec4&)),
    ORVEX_FUZZ_CALL(Graph2d, draw_curve),
    ORVEX_FUZZ_CALL(Graph2d, draw_all_curves),
    ORVEX_FUZZ_CALL(Graph2d, draw_axis),
    ORVEX_FUZZ_CALL(Graph2d, set_x_axis_positions),
    ORVEX_FUZZ_CALL(Graph2d, set_y_axis_positions),
    ORVEX_FUZZ_CALL(Graph2d, set_x_axis_color),
    ORVEX_FUZZ_CALL(Graph2d, enable_viewport),
    ORVEX_FUZZ_CALL(Graph2d, set_viewport),

    {"new MadLedBar", &make<MadLedBar>},
    ORVEX_FUZZ_CALL_OF(MadLedBar, initialize, bool, (const vec3&, const vec3&, unsigned long)),
    ORVEX_FUZZ_CALL_OF(MadLedBar, initialize, bool,
                       (const vec3&, const vec3&, unsigned long, float)),
    ORVEX_FUZZ_CALL_OF(MadLedBar, set_led_color, void, (unsigned long, const vec4&)),
    ORVEX_FUZZ_CALL(MadLedBar, _vp_update_leds_positions),
    ORVEX_FUZZ_CALL(MadLedBar, _plane_set_led_color),
    ORVEX_FUZZ_CALL(MadLedBar, _plane_set_led_normal),

    {"new Skybox", &make<Skybox>},
    {"Skybox::set_cubemap_gpu_program", &give_program},
    ORVEX_FUZZ_CALL_OF(Skybox, load_all_faces_from_files, bool,
                       (Renderer*, const char*, const char*, const char*, const char*, const char*,
                        const char*, PIXEL_FORMAT)),
    ORVEX_FUZZ_CALL(Skybox, resize),

    {"new ArtifactScanner", &make<ArtifactScanner>},
    {"ArtifactScanner::set_render_target", &scan_target},
    ORVEX_FUZZ_CALL(ArtifactScanner, run),
    ORVEX_FUZZ_CALL(ArtifactScanner, run),
    ORVEX_FUZZ_CALL(ArtifactScanner, find_artifacts),
    ORVEX_FUZZ_CALL(ArtifactScanner, is_there_artifact),
    ORVEX_FUZZ_CALL(ArtifactScanner, get_total_number_of_artifacts),
    ORVEX_FUZZ_CALL(ArtifactScanner, reset_ref_texture),
    ORVEX_FUZZ_CALL(ArtifactScanner, reset_artifacts_counters),
    ORVEX_FUZZ_CALL(ArtifactScanner, update_ref_texture),

    {"TripodVisualizerCamera::init", &Call<&aux::TripodVisualizerCamera::init>::play},
    {"TripodVisualizerCamera::render", &Call<&aux::TripodVisualizerCamera::render>::play},
    {"TripodVisualizerCamera::cleanup", &Call<&aux::TripodVisualizerCamera::cleanup>::play},
    {"TripodVisualizerObject::init", &Call<&aux::TripodVisualizerObject::init>::play},
    {"TripodVisualizerObject::render", &Call<&aux::TripodVisualizerObject::render>::play},
    {"TripodVisualizerObject::cleanup", &Call<&aux::TripodVisualizerObject::cleanup>::play},
};

} // namespace

std::span<const Operation> overlay_operations() {
    return rows;
}

} // namespace orvex_fuzz
