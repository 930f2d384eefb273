#include "model_stage.h"

#include <cstdio>
#include <cstring>
#include <filesystem>

#include <orvex/orvex.h>

#include "model_view.h"
#include "shader.h"

using namespace orvex;

namespace {

void show_log_line(char const* line, void*) {
    for (char const* const marker : {" <*> ", " <!> "})
        if (std::strstr(line, marker))
            std::fprintf(stderr, "%s\n", line);
}

} // namespace

ModelStage::ModelStage()
    : camera(new Camera) {
    core::start("", true, show_log_line, nullptr);
    renderer = Kernel::get()->load_core_opengl_renderer_plugin(true);
    renderer->initialize();
    window = renderer->create_render_window();
}

ModelStage::~ModelStage() {
    view.reset();
    camera->release(nullptr, nullptr);
    GpuProgramMgr::get()->release_all_resources(renderer, nullptr);
    renderer->stop();
    renderer->kill_all_render_windows();
    core::stop("done");
}

bool ModelStage::start() {
    if (!renderer->start())
        return false;
    const std::string text = shader_text(true);
    program = GpuProgramMgr::get()->create_gpu_program_from_memory(renderer, text.c_str(),
                                                                   text.size(), "model");
    return program->is_valid();
}

std::string ModelStage::load(std::string const& path) {
    if (!start())
        return "this context can't draw a model";
    // The loaders put the folder right before each name, with nothing between them.
    const std::filesystem::path file(path);
    const std::string folder = file.has_parent_path() ? file.parent_path().string() + "/" : "";
    Model* const model =
        aux::load_model_from_file(file.filename().c_str(), folder.c_str(), folder.c_str());
    if (!model)
        return path + ": no loader can read it as a model";
    view = std::make_unique<ModelView>(renderer, model);
    view->load_textures(folder, nullptr);
    if (file.extension() == ".3ds")
        view->smooth_normals();
    view->use_program(program, true);
    return {};
}

void ModelStage::draw(int width, int height) {
    if (width < 1 || height < 1)
        return;
    view->frame(*camera, width, height);
    draw(*camera);
}

void ModelStage::draw(Camera& eye) {
    eye.bind(renderer, true, true, true, true, false);
    renderer->clear_color_depth_buffers(0.17f, 0.19f, 0.22f, 1.0f, 1.0f);
    view->draw();
}
