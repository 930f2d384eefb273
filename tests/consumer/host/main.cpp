// From a model file to a screenshot, with the umbrella header and the installed library alone, in a
// host whose own headers bear the names of the engine's.

#include <cstdio>
#include <cstring>
#include <vector>

#include "api.h"
#include "math/vec3.h"
#include "renderer/renderer.h"
#include "scene/node.h"

#include <orvex/orvex.h>

using namespace orvex;

namespace {

constexpr int width = 64;
constexpr int height = 48;

constexpr char shader[] = "[Vertex_Shader]\n"
                          "#version 150\n"
                          "in vec4 orvex_Position;\n"
                          "uniform mat4 orvex_ModelViewProjectionMatrix;\n"
                          "void main()\n"
                          "{\n"
                          "    gl_Position = orvex_ModelViewProjectionMatrix * orvex_Position;\n"
                          "}\n"
                          "[Pixel_Shader]\n"
                          "#version 150\n"
                          "out vec4 color;\n"
                          "void main()\n"
                          "{\n"
                          "    color = vec4(1.0, 0.5, 0.0, 1.0);\n"
                          "}\n";

bool expect(bool condition, const char* what) {
    if (!condition)
        std::fprintf(stderr, "host: %s\n", what);
    return condition;
}

void show(const char* line, void*) {
    std::fprintf(stderr, "%s\n", line);
}

bool open_window(RenderWindow* window) {
    RenderWindow_ExtraData request;
    request.gl_major = 3;
    request.gl_minor = 2;
    request.depth_bits = 24;
    return window->initialize(nullptr, nullptr, width, height, "Off", nullptr, &request);
}

void draw(Renderer* renderer, Camera* camera, Model* model) {
    camera->bind(renderer, true, true, true, true, true);
    renderer->clear_color_depth_buffers(0.0f, 0.0f, 1.0f, 1.0f, 1.0f);
    model->update(0.016f, nullptr);
    model->render(renderer, nullptr);
}

/// Whether a pixel of the frame has this colour; half a step of green may go either way.
bool pixel_is(Renderer* renderer, int x, int y, int r, int g, int b) {
    int size = 0, w = 0, h = 0;
    renderer->get_color_buffer_size(&size, &w, &h);
    std::vector<unsigned char> frame(static_cast<std::size_t>(size));
    renderer->get_color_buffer(frame.data());
    const unsigned char* const pixel = &frame[static_cast<std::size_t>((y * w + x) * 4)];
    return pixel[0] == r && (pixel[1] == g || pixel[1] == g + 1) && pixel[2] == b;
}

/// Frames of a model with a program, then the screenshot.
bool draw_model(Renderer* renderer, RenderWindow* window, Model* model, const char* screenshot) {
    GpuProgram* const program = GpuProgramMgr::get()->create_gpu_program_from_memory(
        renderer, shader, std::strlen(shader), "flat");
    if (!expect(program && program->is_valid(), "the program doesn't compile"))
        return false;
    for (unsigned long i = 0; i < model->get_num_materials(); ++i)
        model->get_material_by_index(i)->set_gpu_program(program);
    model->set_opengl_2_3_rendering_states(false, model);

    auto* const camera = new Camera;
    camera->set_viewport(0, 0, width, height);
    camera->build_projection_persp(60.0f, float(width) / float(height), 0.1f, 100.0f, true);
    camera->set_view_params(vec4(0.0f, 0.0f, 3.0f, 1.0f), vec4(0.0f, 0.0f, 0.0f, 1.0f),
                            vec4(0.0f, 1.0f, 0.0f, 0.0f), true);
    for (int frame = 0; frame < 3; ++frame) {
        draw(renderer, camera, model);
        if (frame < 2)
            window->display_framebuffer();
    }
    const bool drawn =
        expect(pixel_is(renderer, width / 2, height / 2, 255, 127, 0), "no model in the middle") &&
        expect(pixel_is(renderer, 0, 0, 0, 0, 255), "no background in the corner");
    const bool written = expect(TextureMgr::get()->do_screenshot(renderer, screenshot),
                                "the screenshot can't be written");
    camera->release(nullptr, nullptr);
    return drawn && written;
}

bool run(Renderer* renderer, const char* directory, const char* screenshot) {
    RenderWindow* const window = renderer->create_render_window();
    if (!expect(open_window(window), "no OpenGL context") ||
        !expect(renderer->start(), "the renderer doesn't start"))
        return false;
    Model* const model = aux::load_model_from_file("square.obj", directory, directory);
    if (!expect(model, "the model doesn't load"))
        return false;
    const bool ok = draw_model(renderer, window, model, screenshot);
    model->kill(renderer, nullptr);
    MaterialMgr::get()->release_all_resources(renderer, nullptr);
    GpuProgramMgr::get()->release_all_resources(renderer, nullptr);
    renderer->stop();
    renderer->kill_all_render_windows();
    return ok;
}

} // namespace

int main(int argc, char** argv) {
    if (!expect(argc == 3, "usage: host <directory of square.obj>/ <screenshot>"))
        return 2;
    core::start("", true, show, nullptr);
    Renderer* const renderer = Kernel::get()->load_core_opengl_renderer_plugin(true);
    renderer->initialize();
    host::Renderer own;
    const host::Node node{&own};
    const bool ok = expect(node.renderer->eye.api == host::Api::of_the_host, "its own headers") &&
                    run(renderer, argv[1], argv[2]);
    core::stop("host ends.");
    return ok ? 0 : 1;
}
