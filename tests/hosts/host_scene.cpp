#include "host_scene.h"

#include <cmath>
#include <cstring>

#include <orvex/orvex.h>

#include "host_classes.h"

using namespace orvex;

namespace {

constexpr int target_size = 96;
constexpr unsigned long curve_points = 32;

const char* const normal_text = R"([Vertex_Shader]
#version 150
in vec4 orvex_Position;
in vec4 orvex_Normal;
uniform mat4 orvex_ModelViewProjectionMatrix;
out vec3 normal;
void main() {
    normal = orvex_Normal.xyz;
    gl_Position = orvex_ModelViewProjectionMatrix * vec4(orvex_Position.xyz, 1.0);
}
[Pixel_Shader]
#version 150
in vec3 normal;
out vec4 color;
void main() { color = vec4(0.5 + 0.5 * normalize(normal), 1.0); }
)";

const char* const picture_text = R"([Vertex_Shader]
#version 150
in vec4 orvex_Position;
in vec4 orvex_TexCoord0;
uniform mat4 orvex_ModelViewProjectionMatrix;
out vec2 uv;
void main() {
    uv = orvex_TexCoord0.xy;
    gl_Position = orvex_ModelViewProjectionMatrix * vec4(orvex_Position.xyz, 1.0);
}
[Pixel_Shader]
#version 150
uniform sampler2D picture;
uniform sampler2D checker;
in vec2 uv;
out vec4 color;
void main() { color = vec4(texture(picture, uv).rgb * texture(checker, 2.0 * uv).rgb, 1.0); }
)";

const char* const color_text = R"([Vertex_Shader]
#version 150
in vec4 orvex_Position;
in vec4 orvex_Color;
uniform mat4 orvex_ModelViewProjectionMatrix;
out vec4 vertex_color;
void main() {
    vertex_color = orvex_Color;
    gl_Position = orvex_ModelViewProjectionMatrix * vec4(orvex_Position.xyz, 1.0);
}
[Pixel_Shader]
#version 150
in vec4 vertex_color;
out vec4 color;
void main() { color = vec4(vertex_color.rgb, 1.0); }
)";

void show_log_line(const char* line, void*) {
    for (const char* const marker : {" <*> ", " <!> "})
        if (std::strstr(line, marker))
            std::fprintf(stderr, "%s\n", line);
}

} // namespace

HostScene::HostScene(bool core_profile)
    : core(core_profile) {
    core::start("", true, show_log_line, nullptr);
    renderer = Kernel::get()->load_core_opengl_renderer_plugin(true);
    renderer->initialize();
    make_nodes();
    make_scene();
    make_checker();
    GpuProgramMgr& programs = *GpuProgramMgr::get();
    normals = programs.create_gpu_program("normals");
    pictures = programs.create_gpu_program("pictures");
    colors = programs.create_gpu_program("colors");
}

HostScene::~HostScene() {
    for (View& view : views)
        leave(view.window);
    SceneMgr::get()->kill_scene(renderer, scene);
    camera->release(nullptr, nullptr);
    for (Node* const node : {static_cast<Node*>(ring), static_cast<Node*>(panel),
                             static_cast<Node*>(box), static_cast<Node*>(curve)})
        node->kill(renderer, nullptr);
    TextureMgr::get()->release_all_textures(renderer, nullptr);
    GpuProgramMgr::get()->release_all_resources(renderer, nullptr);
    renderer->stop();
    renderer->kill_all_render_windows();
    core::stop("done");
}

void HostScene::make_nodes() {
    camera = new Camera;
    ring = new MeshTorus;
    ring->set_build_params(2.2f, 0.8f, 32);
    ring->build(nullptr);
    panel = new MeshQuad;
    panel->set_build_params(4.0f, 4.0f);
    panel->build(nullptr);
    box = new MeshBox;
    box->set_build_params(1.5f, 1.5f, 1.5f, 1, 1, 1);
    box->set_opengl_2_3_rendering_states(true, nullptr);
    box->build(nullptr);
    box->set_vertices_color(vec4(0.9f, 0.6f, 0.1f, 1.0f), nullptr);
    curve = new Polyline;
    curve->initialize(curve_points, LINE_RENDER_MODE_LINE_STRIP);
    curve->set_vertices_color(0.2f, 1.0f, 0.3f, 1.0f);
    if (core)
        for (Object* const object :
             {static_cast<Object*>(ring), static_cast<Object*>(panel), static_cast<Object*>(curve)})
            object->set_use_fixed_mvp_matrices_state(false, nullptr);
}

/// By a loader and nodes of the host's own.
void HostScene::make_scene() {
    PluginMgr::get()->insert_plugin(new TentLoader);
    tent = aux::load_model_from_file("tent", "", "");
    if (core)
        tent->set_use_fixed_mvp_matrices_state(false, tent);
    Object* const stand = new Object;
    turntable = new Turntable;
    turntable->add_child(tent->get_child(0));
    stand->add_child(turntable);
    scene = SceneMgr::get()->create_scene();
    scene->add_node(stand);
}

void HostScene::make_checker() {
    constexpr unsigned long size = 8;
    checker = TextureMgr::get()->create_texture_2d(size, size, PF_RGBA_U8);
    for (unsigned long y = 0; y < size; ++y)
        for (unsigned long x = 0; x < size; ++x)
            checker->set_texel_2d(x, y,
                                  (x + y) % 2 ? vec4(255, 255, 255, 255) : vec4(90, 140, 220, 255));
}

bool HostScene::load_programs() {
    GpuProgramMgr& programs = *GpuProgramMgr::get();
    bool loaded = true;
    const auto load = [&](GpuProgram* program, const char* text, const char* name) {
        loaded = programs.init_gpu_program_from_memory(renderer, program, text, std::strlen(text),
                                                       name) &&
                 loaded;
    };
    load(normals, normal_text, "normals");
    load(pictures, picture_text, "pictures");
    load(colors, color_text, "colors");
    return loaded;
}

bool HostScene::enter(RenderWindow* window, bool has_programs) {
    if (!started)
        started = renderer->start();
    if (!started || (!has_programs && !load_programs()))
        return false;
    View* const view = view_of(nullptr);
    if (!view)
        return false;
    view->window = window;
    view->target = renderer->create_render_target();
    if (!view->target->create_target(target_size, target_size, PF_RGBA_U8, false, true, false, 0))
        return false;
    // On a core context the making of a target leaves an error, which isn't a frame's.
    renderer->get_opengl_error();
    view->picture = Kernel::get()->create_color_texture_from_render_target(view->target, 0);
    view->hud = new aux::Hud;
    return checker->upload(renderer);
}

void HostScene::leave(RenderWindow* window) {
    View* const view = window ? view_of(window) : nullptr;
    if (!view)
        return;
    view->hud->cleanup(renderer);
    delete view->hud;
    TextureMgr::get()->release_texture(renderer, view->picture, nullptr);
    renderer->kill_render_target(view->target);
    *view = View();
}

HostScene::View* HostScene::view_of(RenderWindow* window) {
    for (View& view : views)
        if (view.window == window)
            return &view;
    return nullptr;
}

void HostScene::look(int width, int height) {
    camera->set_viewport(0, 0, width, height);
    camera->build_projection_persp(45.0f, static_cast<float>(width) / static_cast<float>(height),
                                   0.1f, 100.0f, true);
    camera->set_view_params(vec4(0, 3, 6, 1), vec4(0, 0, 0, 1), vec4(0, 1, 0, 0), true);
    camera->bind(renderer, true, true, true, true, !core);
}

/// Its pass ends at the framebuffer that stands for the window.
void HostScene::draw_ring(const View& view, int frame) {
    view.target->activate();
    look(target_size, target_size);
    renderer->clear_color_depth_buffers(0.3f, 0.1f, 0.1f, 1.0f, 1.0f);
    ring->set_orientation_euler_xyz(static_cast<float>(11 * frame), 0.0f, 20.0f);
    normals->bind(renderer);
    ring->render(renderer, nullptr);
    normals->unbind(renderer);
    view.target->deactivate();
}

void HostScene::draw_panel(const View& view, int frame) {
    panel->set_orientation_euler_xyz(-20.0f, static_cast<float>(5 * frame), 0.0f);
    view.picture->bind(renderer, 0);
    checker->bind(renderer, 1);
    pictures->bind(renderer);
    pictures->set_uniform_1i(renderer, "picture", 0);
    pictures->set_uniform_1i(renderer, "checker", 1);
    panel->render(renderer, nullptr);
    pictures->unbind(renderer);
    checker->unbind(renderer, 1);
    view.picture->unbind(renderer, 0);
}

/// New vertices in each frame.
void HostScene::draw_curve(int frame) {
    for (unsigned long i = 0; i < curve_points; ++i) {
        const float along = static_cast<float>(i) / (curve_points - 1);
        const float height = std::sin(9.0f * along + 0.4f * static_cast<float>(frame));
        curve->set_vertex_position(i, 6.0f * along - 3.0f, height, 1.5f);
    }
    colors->bind(renderer);
    curve->render(renderer, nullptr);
    colors->unbind(renderer);
}

void HostScene::draw_scene(int frame) {
    CountingSceneRenderer counting;
    SceneRenderer& drawing = counting;
    turntable->update(static_cast<float>(13 * frame), nullptr);
    normals->bind(renderer);
    drawing.render_scene(renderer, scene, nullptr, nullptr);
    normals->unbind(renderer);
    if (counting.rendered != 1)
        std::fputs("the host's own renderer of scenes was passed over\n", stderr);
}

/// By the fixed pipeline, which contexts of the core profile haven't got.
void HostScene::draw_box(int frame) {
    box->set_orientation_euler_xyz(30.0f, static_cast<float>(-9 * frame), 0.0f);
    box->render(renderer, nullptr);
}

void HostScene::draw(RenderWindow* window, int frame, int width, int height) {
    const View* const view = view_of(window);
    if (!view || width < 1 || height < 1)
        return;
    renderer->reset_render_states();
    draw_ring(*view, frame);
    look(width, height);
    renderer->clear_color_depth_buffers(0.1f, 0.12f, 0.15f, 1.0f, 1.0f);
    draw_panel(*view, frame);
    draw_curve(frame);
    draw_scene(frame);
    if (!core)
        draw_box(frame);
    view->hud->render(renderer, checker, 8 + frame, 8, 40, 24, true, BLEND_FACTOR_ONE,
                      BLEND_FACTOR_ZERO);
}
