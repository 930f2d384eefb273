#include "model_stage.h"

#include <orvex/orvex.h>
#include <orvex_kit/look.h>

#include "log_lines.h"

using namespace orvex;
using namespace orvex::kit;

ModelStage::ModelStage()
    : camera(new orvex::Camera) {
    core::start("", true, show_log_line, nullptr);
    renderer = Kernel::get()->load_core_opengl_renderer_plugin(true);
    renderer->initialize();
    window = renderer->create_render_window();
}

ModelStage::~ModelStage() {
    scene = {};
    camera->release(nullptr, nullptr);
    GpuProgramMgr::get()->release_all_resources(renderer, nullptr);
    renderer->stop();
    renderer->kill_all_render_windows();
    core::stop("done");
}

std::string ModelStage::start() {
    if (!renderer->start())
        return "the renderer doesn't start on this context";
    const std::string text = model_shader(true);
    GpuProgram* const compiled = GpuProgramMgr::get()->create_gpu_program_from_memory(
        renderer, text.c_str(), text.size(), "model");
    if (!compiled->is_valid())
        return "this context can't draw a model";
    program = compiled;
    return {};
}

std::string ModelStage::load(const std::string& path) {
    if (!program)
        if (std::string mistake = start(); !mistake.empty())
            return mistake;
    scene = kit::Model(path);
    scene.stand_up();
    return scene.reason();
}

void ModelStage::draw(int width, int height, const Angle& from) {
    if (!scene || width < 1 || height < 1)
        return;
    draw(see_all(scene.extent(), from, {width, height}), width, height, from);
}

void ModelStage::draw(const kit::Camera& eye, int width, int height, const Angle& lit_from) {
    eye.apply(*camera, width, height);
    camera->bind(renderer, true, true, true, true, false);
    renderer->clear_color_depth_buffers(0.17f, 0.19f, 0.22f, 1.0f, 1.0f);
    if (program)
        scene.draw(*renderer, *program, Path::gl3, lit_from);
}
