// What is drawn around a scene and over it: a sky; the axes of the camera; a graph of the last
// frame times; a meter of lights; panels and a title: overlays [gl2]

#include <cmath>
#include <cstdio>
#include <string>

#include <orvex/orvex.h>
#include <orvex_kit/kit.h>

using namespace orvex;

constexpr int width = 960;
constexpr int height = 540;
constexpr float right = width / 2.0f; // from the middle
constexpr float top = height / 2.0f;

static const char paint_text[] = R"([Vertex_Shader]
uniform mat4 orvex_ModelViewProjectionMatrix;
OUT vec4 paint;
void main() {
    gl_Position = orvex_ModelViewProjectionMatrix * POSITION;
    gl_PointSize = 9.0;
    paint = VERTEX_COLOR;
}
[Pixel_Shader]
IN vec4 paint;
void main() { COLOR = paint; }
)";

/// Its programs for OpenGL 2 need a driver that takes `inverse` in GLSL 1.20: the newer ones are
/// taken wherever they can be.
static kit::Ref<Skybox> make_sky(Renderer* renderer) {
    int major = 0;
    int minor = 0;
    renderer->get_opengl_version(&major, &minor);
    kit::Ref<Skybox> sky = kit::make<Skybox>();
    sky->set_opengl_2_3_rendering_states(major < 3, nullptr);
    const char* const files[] = {"sky_px.png", "sky_nx.png", "sky_py.png",
                                 "sky_ny.png", "sky_pz.png", "sky_nz.png"};
    if (!sky->load_all_faces_from_files(renderer, files, PF_RGB_U8))
        return nullptr;
    sky->get_cubemap()->bind(renderer, 0);
    sky->get_cubemap()->set_addressing_mode(renderer, ADDRESSING_CLAMP);
    return sky;
}

/// Behind everything, without a mark in the depth buffer.
static void draw_sky(Renderer* renderer, Skybox& sky) {
    renderer->set_depth_buffer_writing_state(false);
    sky.render(renderer, nullptr);
    renderer->set_depth_buffer_writing_state(true);
    sky.get_cubemap_gpu_program()->unbind(renderer);
}

/// A dark pane that shows what is behind it.
static void draw_panels(Renderer* renderer) {
    Texture* const shade = TextureMgr::get()->create_texture_2d(1, 1, PF_RGBA_U8);
    shade->set_texel_2d(0, 0, vec4(10, 16, 24, 150));
    TextureMgr::get()->upload_to_renderer(renderer, shade, 0);
    aux::Hud hud;
    for (const int left : {16, width - 316})
        hud.render(renderer, shade, left, 16, 300, 130, true, BLEND_FACTOR_SRC_ALPHA,
                   BLEND_FACTOR_ONE_MINUS_SRC_ALPHA);
    hud.cleanup(renderer);
}

/// Pixels, with the origin in the middle of the picture.
static void bind_pixels(kit::View& view) {
    const auto camera = kit::make<Camera>();
    camera->set_viewport(0, 0, width, height);
    camera->build_projection_ortho(-right, right, -top, top, 1, 100, true);
    camera->bind(view.renderer(), true, true, true, true, view.path() == kit::Path::gl2);
}

/// Frames of about 16 milliseconds, with a hitch now and then.
static kit::Ref<Graph2d> make_graph() {
    auto graph = kit::make<Graph2d>();
    graph->set_x_axis_positions(vec4(30, 30, 0, 1), vec4(300, 30, 0, 1));
    graph->set_y_axis_positions(vec4(30, 30, 0, 1), vec4(30, 110, 0, 1));
    graph->create_curve(120);
    graph->set_curve_color(0, 0.5f, 0.95f, 0.6f, 1.0f);
    graph->set_viewport(0, 0, width, height);
    for (int frame = 0; frame < 120; ++frame) {
        const auto t = static_cast<float>(frame);
        const float hitch = frame % 37 == 20 ? 12.0f : 0.0f;
        const float milliseconds = 16 + 2 * std::sin(0.35f * t) + std::sin(1.7f * t) + hitch;
        graph->add_curve_scalar(0, 2.5f * milliseconds);
    }
    graph->sync_curve_scalars(0);
    return graph;
}

/// Lights in a row: green, then yellow, and dark from the level on.
static kit::Ref<MadLedBar> make_meter(kit::Path path) {
    constexpr unsigned long lights = 24;
    auto meter = kit::make<MadLedBar>();
    meter->initialize(vec3(0, 0, 0), vec3(270, 0, 0), lights);
    meter->set_position(right - 296, 66 - top, 0);
    meter->set_opengl_2_3_rendering_states(path == kit::Path::gl2, nullptr);
    for (unsigned long i = 0; i < lights; ++i)
        meter->set_led_color(i, i >= 20  ? vec4(0.12f, 0.15f, 0.18f, 1)
                                : i < 12 ? vec4(0.2f, 0.9f, 0.35f, 1)
                                         : vec4(0.95f, 0.85f, 0.2f, 1));
    return meter;
}

static void draw_panel_contents(kit::View& view, kit::Program& program) {
    bind_pixels(view);
    program.gpu()->bind(view.renderer());
    make_graph()->render(view.renderer(), nullptr);
    make_meter(view.path())->render(view.renderer(), nullptr);
    program.gpu()->unbind(view.renderer());

    kit::Text text(view);
    kit::TextStyle style;
    style.size = 22;
    text.add("frame time", 30, height - 140, style);
    text.add("level", width - 301, height - 140, style);
    style.size = 36;
    text.add("The lighthouse, and what lies over it", 30, 20, style);
    text.draw(width, height);
}

int main(int argc, char**) {
    const kit::Engine engine;
    kit::View view(width, height, {argc > 1 ? kit::Path::gl2 : kit::Path::gl3});
    kit::Model model("lighthouse.obj");
    kit::Program program = kit::Program::from_text(view, paint_text, "paint");
    const kit::Ref<Skybox> sky = program ? make_sky(view.renderer()) : nullptr;
    aux::TripodVisualizerCamera axes;
    if (!model || !sky || !axes.init(view.renderer())) {
        std::fprintf(stderr, "%s%s\n", program.reason().c_str(), model.reason().c_str());
        return 1;
    }
    kit::Camera eye;
    eye.look_at({11, 6, 18.5f, 1}, {0, 2.4f, 0, 1});
    eye.set_opening(46);
    const auto camera = kit::make<Camera>();
    eye.apply(*camera, width, height);

    view.begin(*camera);
    draw_sky(view.renderer(), *sky);
    view.add(model);
    draw_panels(view.renderer());
    view.renderer()->set_depth_test_state(false);
    axes.render(view.renderer(), camera.get(), width - 120, height - 120, 110, 110);
    draw_panel_contents(view, program);
    view.end();
    axes.cleanup(view.renderer());

    const kit::Outcome written = view.write("overlays.jpg");
    if (!written)
        std::fprintf(stderr, "%s\n", written.reason().c_str());
    return written ? 0 : 1;
}
