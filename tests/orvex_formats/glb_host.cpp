// A host of the engine alone: it loads a format's plugin by the registry, has it read a model,
// draws that, unloads the plugin and does it all again.
//
//     glb_host <plugin> <the same plugin, built for another version> <folder>/ <model>

#include <array>
#include <cstdio>
#include <vector>

#include <orvex/orvex.h>

using namespace orvex;

namespace {

constexpr int size = 64;

const char shader[] =
    "[Vertex_Shader]\nvarying vec3 n; void main() { n = gl_Normal; gl_Position = ftransform(); }\n"
    "[Pixel_Shader]\nvarying vec3 n; void main() { gl_FragColor = vec4(n, 1.0); }";

struct Screen {
    Renderer* renderer = nullptr;
    RenderTarget* target = nullptr;
    Camera* camera = nullptr;
    GpuProgram* program = nullptr;
};

bool open_screen(Screen& screen) {
    screen.renderer = Kernel::get()->load_core_opengl_renderer_plugin(true);
    screen.renderer->initialize();
    RenderWindow* const window = screen.renderer->create_render_window();
    if (!window->initialize(nullptr, nullptr, size, size, "", nullptr, nullptr) ||
        !screen.renderer->start())
        return false;
    screen.target = screen.renderer->create_render_target();
    screen.program = GpuProgramMgr::get()->create_gpu_program_from_memory(screen.renderer, shader,
                                                                          sizeof shader, "normals");
    screen.camera = new Camera;
    screen.camera->set_viewport(0, 0, size, size);
    screen.camera->build_projection_ortho(-1.0f, 1.0f, -1.0f, 1.0f, 1.0f, 10.0f, true);
    screen.camera->set_position(vec4(0.0f, 0.0f, 5.0f, 1.0f));
    return screen.target->create_target(size, size, PF_RGBA_U8, false, false, false, 0);
}

/// Tells the colours of two places, one of which the model covers.
void draw(Screen& screen, Model& model) {
    screen.target->activate();
    screen.camera->bind(screen.renderer, true, true, true, true, true);
    screen.renderer->clear_color_depth_buffers(0.0f, 0.0f, 0.0f, 1.0f, 1.0f);
    screen.program->bind(screen.renderer);
    model.render_geometry(screen.renderer);
    model.render(screen.renderer, nullptr);
    screen.program->unbind(screen.renderer);
    screen.target->deactivate();
    std::vector<std::array<unsigned char, 4>> pixels(std::size_t{size} * size);
    screen.target->read_color_pixmap_rgba_u8(pixels.data()->data());
    for (const std::size_t place : {std::size_t{50 * size + 36}, std::size_t{10 * size + 60}})
        std::printf("pixel %d %d %d\n", pixels[place][0], pixels[place][1], pixels[place][2]);
}

void show(Screen& screen, const char* plugin, const char* folder, const char* file) {
    const int id = PluginMgr::get()->load_plugin(plugin, false);
    const Plugin* const loader = PluginMgr::get()->get_plugin(id);
    std::printf("loaded %s\n", loader ? loader->get_name() : "nothing");
    Model* const model = aux::load_model_from_file(file, folder, folder);
    if (!model) {
        std::printf("no model\n");
        return;
    }
    std::printf("faces %lu\n", model->get_num_faces(model));
    draw(screen, *model);
    model->kill(screen.renderer, nullptr);
    MaterialMgr::get()->release_all_resources(nullptr, nullptr);
    PluginMgr::get()->unload_plugin(id);
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 5)
        return 2;
    core::start("", true, nullptr, nullptr);
    Screen screen;
    if (!open_screen(screen))
        return 1;
    std::printf("other version %d\n", PluginMgr::get()->load_plugin(argv[2], true));
    for (int i = 0; i < 2; ++i)
        show(screen, argv[1], argv[3], argv[4]);
    screen.camera->release(screen.renderer, nullptr);
    screen.renderer->kill_render_target(screen.target);
    core::stop("done");
    return 0;
}
