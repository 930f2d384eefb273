// Text, graphs, meters, quads, the sky and the axes.

#include "../scenarios.h"

namespace orvex_test {

using namespace orvex;

namespace {

void play_letters(Stage& stage, Path path) {
    stage.open_window(path);
    Font* const font = stage.make<Font>();
    const std::string sheet = example_data("dejavu_sans_24.xml");
    stage.get("bm_load_charset", [&] { return font->bm_load_charset(sheet.c_str()); });
    const std::string picture = example_data(font->bm_get_charset_image_filename());
    stage.get("bm_load_charset_texture",
              [&] { return font->bm_load_charset_texture(stage.renderer, picture.c_str()); });
    font->set_opengl_2_3_rendering_states(!stage.is_gl3(), nullptr);
    font->set_viewport_info(0, 0, Stage::size, Stage::size);
    Camera* const camera = stage.make<Camera>();
    camera->set_viewport(0, 0, Stage::size, Stage::size);
    camera->build_projection_ortho(0, Stage::size, -Stage::size, 0, 1, 100, true);
    GpuProgram* const program = stage.make_textured_program();
    stage.run("bm_draw_reset", [&] { font->bm_draw_reset(); });
    stage.get("bm_draw_text_2d", [&] { return font->bm_draw_text_2d(2, 8, 1, 1, 1, 1, "Hello,"); });
    stage.get("bm_draw_text_2d", [&] { return font->bm_draw_text_2d(2, 36, 1, 1, 1, 1, "you"); });
    stage.get("bm_update_vb", [&] { return font->bm_update_vb(stage.renderer, false); });
    stage.frame([&] {
        stage.begin(camera);
        program->bind(stage.renderer);
        program->set_uniform_1i(stage.renderer, "picture", 0);
        font->bm_get_charset_texture()->bind(stage.renderer, 0);
        font->bm_render_vb(stage.renderer);
        program->unbind(stage.renderer);
    });
    stage.end(font);
    stage.end(camera);
    stage.close();
}

/// What is drawn over a scene counts in pixels from the middle.
Camera* make_pixel_camera(Stage& stage) {
    Camera* const camera = stage.make<Camera>();
    camera->set_viewport(0, 0, Stage::size, Stage::size);
    constexpr float half = Stage::size / 2.0f;
    camera->build_projection_ortho(-half, half, -half, half, 1, 100, true);
    return camera;
}

} // namespace

void play_text(Stage& stage) {
    play_letters(stage, Path::gl3);
}

void play_text_gl2(Stage& stage) {
    play_letters(stage, Path::gl2);
}

void play_graph(Stage& stage) {
    stage.open_window(Path::gl3);
    Graph2d* const graph = stage.make<Graph2d>();
    graph->set_viewport(0, 0, Stage::size, Stage::size);
    graph->set_x_axis_positions(vec4(4, 4, 0, 1), vec4(60, 4, 0, 1));
    graph->set_y_axis_positions(vec4(4, 4, 0, 1), vec4(4, 60, 0, 1));
    stage.get("create_curve", [&] { return graph->create_curve(20); });
    stage.get("set_curve_color", [&] { return graph->set_curve_color(0, 0.5f, 1.0f, 0.5f, 1.0f); });
    for (int i = 0; i < 24; ++i)
        stage.get("add_curve_scalar",
                  [&] { return graph->add_curve_scalar(0, static_cast<float>(i * 7 % 50)); });
    stage.get("sync_curve_scalars", [&] { return graph->sync_curve_scalars(0); });
    GpuProgram* const program = stage.make_colored_program();
    Camera* const camera = make_pixel_camera(stage);
    stage.frame([&] {
        stage.begin(camera);
        stage.draw(program, graph);
    });
    stage.end(graph);
    stage.end(camera);
    stage.close();
}

void play_meters(Stage& stage) {
    stage.open_window(Path::gl3);
    MadLedBar* const strip = stage.make<MadLedBar>();
    MadLedBar* const dots = stage.make<MadLedBar>();
    stage.get("initialize",
              [&] { return strip->initialize(vec3(-20, 0, 0), vec3(20, 0, 0), 6, 8.0f); });
    stage.get("initialize", [&] { return dots->initialize(vec3(-20, 0, 0), vec3(20, 0, 0), 6); });
    strip->set_orientation_euler_xyz(90, 0, 0);
    for (MadLedBar* const meter : {strip, dots}) {
        stage.run("set_opengl_2_3_rendering_states",
                  [&] { meter->set_opengl_2_3_rendering_states(false, nullptr); });
        for (unsigned long i = 0; i < 6; ++i)
            meter->set_led_color(i, 1.0f, static_cast<float>(i) / 6.0f, 0.0f, 1.0f);
    }
    GpuProgram* const program = stage.make_colored_program();
    Camera* const camera = make_pixel_camera(stage);
    stage.frame([&] {
        stage.begin(camera);
        stage.draw(program, strip);
        stage.draw(program, dots);
    });
    stage.end(strip);
    stage.end(dots);
    stage.end(camera);
    stage.close();
}

void play_hud(Stage& stage) {
    stage.open_window(Path::gl3);
    aux::Hud* const hud = stage.make<aux::Hud>();
    const std::string picture = example_data("lighthouse_wood.png");
    stage.get("init_texture", [&] { return hud->init_texture(stage.renderer, picture.c_str()); });
    stage.frame([&] {
        stage.renderer->set_viewport(0, 0, Stage::size, Stage::size);
        stage.renderer->clear_color_depth_buffers(0.1f, 0.2f, 0.3f, 1, 1);
        hud->render(stage.renderer, 8, 8, 40, 40, false, BLEND_FACTOR_ONE, BLEND_FACTOR_ZERO);
    });
    stage.run_quietly("cleanup", [&] { hud->cleanup(stage.renderer); });
    stage.run_quietly("~Hud", [&] { delete hud; });
    stage.close();
}

void play_sky(Stage& stage) {
    stage.open_window(Path::gl3);
    Skybox* const sky = stage.make<Skybox>();
    sky->set_opengl_2_3_rendering_states(false, nullptr);
    std::string paths[6];
    const char* files[6];
    const char* const names[] = {"sky_px.png", "sky_nx.png", "sky_py.png",
                                 "sky_ny.png", "sky_pz.png", "sky_nz.png"};
    for (int face = 0; face < 6; ++face) {
        paths[face] = example_data(names[face]);
        files[face] = paths[face].c_str();
    }
    stage.get("load_all_faces_from_files",
              [&] { return sky->load_all_faces_from_files(stage.renderer, files, PF_RGB_U8); });
    Camera* const camera = stage.make_camera();
    stage.frame([&] {
        stage.begin(camera);
        sky->render(stage.renderer, nullptr);
    });
    stage.end(sky);
    stage.end(camera);
    stage.close();
}

void play_axes(Stage& stage) {
    stage.open_window(Path::gl3);
    aux::TripodVisualizerCamera* const axes = stage.make<aux::TripodVisualizerCamera>();
    stage.get("init", [&] { return axes->init(stage.renderer); });
    Camera* const camera = stage.make_camera();
    stage.frame([&] {
        stage.begin(camera);
        axes->render(stage.renderer, camera, 0, 0, Stage::size, Stage::size);
    });
    stage.run_quietly("cleanup", [&] { axes->cleanup(stage.renderer); });
    stage.run_quietly("~TripodVisualizerCamera", [&] { delete axes; });
    stage.end(camera);
    stage.close();
}

} // namespace orvex_test
