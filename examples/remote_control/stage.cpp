#include "stage.h"

#include <filesystem>

#include <orvex/orvex.h>

#include "model_view.h"
#include "shader.h"

using namespace orvex;

Stage::Stage() = default;

bool Stage::open(int new_width, int new_height) {
    width = new_width;
    height = new_height;
    core::start("", true, nullptr, nullptr);
    renderer = Kernel::get()->load_core_opengl_renderer_plugin(true);
    renderer->initialize();
    camera = new Camera;
    camera->set_viewport(0, 0, width, height);
    return open_window() && load_program();
}

bool Stage::open_window() {
    RenderWindow_ExtraData request;
    request.gl_major = 3;
    request.gl_minor = 2;
    request.depth_bits = 24;
    window = renderer->create_render_window();
    if (window->initialize(nullptr, nullptr, width, height, "Off", nullptr, &request) &&
        renderer->start())
        return true;
    mistake = "no OpenGL context";
    return false;
}

bool Stage::load_program() {
    const std::string text = shader_text(true);
    program = GpuProgramMgr::get()->create_gpu_program_from_memory(renderer, text.c_str(),
                                                                   text.size(), "remote_control");
    if (program->is_valid() && program->bind(renderer)) {
        program->unbind(renderer);
        return true;
    }
    mistake = std::string("the shader doesn't compile:") + program->get_shader_error_messages();
    return false;
}

Stage::~Stage() {
    if (!renderer)
        return;
    view.reset();
    camera->release(nullptr, nullptr);
    GpuProgramMgr::get()->release_all_resources(renderer, nullptr);
    renderer->stop();
    renderer->kill_all_render_windows();
    core::stop("remote_control ends.");
}

std::string Stage::load(std::string const& path) {
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(path, ignored))
        return path + ": no such file";
    view.reset();
    model = nullptr;
    const std::size_t name = path.rfind('/') + 1; // npos + 1 is 0
    const std::string folder = path.substr(0, name);
    Model* const loaded =
        aux::load_model_from_file(path.c_str() + name, folder.c_str(), folder.c_str());
    if (!loaded)
        return path + ": no loader can read it as a model";
    model = loaded;
    angle_degrees = 0.0f;
    view = std::make_unique<ModelView>(renderer, model);
    view->load_textures(folder, nullptr);
    view->use_program(program, true);
    view->frame(*camera, width, height);
    return {};
}

void Stage::turn(float degrees) {
    angle_degrees += degrees;
    if (model)
        model->set_orientation_euler_xyz(0.0f, angle_degrees, 0.0f);
}

void Stage::draw() {
    camera->bind(renderer, true, true, true, true, false);
    renderer->clear_color_depth_buffers(0.17f, 0.19f, 0.22f, 1.0f, 1.0f);
    if (view)
        view->draw();
}

bool Stage::screenshot(std::string const& path) {
    draw();
    return TextureMgr::get()->do_screenshot(renderer, path.c_str());
}

void Stage::show() {
    window->display_framebuffer();
}
