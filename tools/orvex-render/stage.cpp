#include "stage.h"

#include <algorithm>

#include <orvex/base/log.h>
#include <orvex/gpu/gpu_program.h>
#include <orvex/gpu/gpu_program_mgr.h>
#include <orvex/kernel/core.h>
#include <orvex/kernel/kernel.h>
#include <orvex/renderer/render_target.h>
#include <orvex/renderer/render_window.h>
#include <orvex/renderer/renderer.h>

#include "messages.h"

using namespace orvex;

Engine::Engine() {
    core::start("", true, take_log_line, nullptr);
    if (Log* const log = core::log_get_default(); log && get_wordiness() == Wordiness::verbose)
        log->set_trace_level_threshold(LOG_LEVEL_DEBUG);
}

Engine::~Engine() {
    core::stop("orvex-render ends.");
}

std::string Stage::open(int new_width, int new_height, bool gl3) {
    width = new_width;
    height = new_height;
    renderer = Kernel::get()->load_core_opengl_renderer_plugin(true);
    renderer->initialize();
    window = renderer->create_render_window();
    RenderWindow_ExtraData request;
    request.gl_major = gl3 ? 3 : 2;
    request.gl_minor = gl3 ? 2 : 1;
    request.depth_bits = 24;
    if (!window->initialize(nullptr, nullptr, width, height, "Off", nullptr, &request))
        return "no OpenGL context: is an EGL driver installed?";
    if (!renderer->start())
        return "the renderer doesn't start";
    return "";
}

Stage::~Stage() {
    if (!renderer)
        return;
    renderer->kill_all_render_targets();
    GpuProgramMgr::get()->release_all_resources(renderer, nullptr);
    renderer->stop();
    renderer->kill_all_render_windows();
}

GpuProgram* Stage::compile(const std::string& text, const char* name, std::string& mistake) {
    GpuProgram* const program = GpuProgramMgr::get()->create_gpu_program_from_memory(
        renderer, text.c_str(), text.size(), name);
    if (program->is_valid() && program->bind(renderer)) {
        program->unbind(renderer);
        return program;
    }
    mistake = std::string("the program '") + name +
              "' doesn't compile: " + program->get_shader_error_messages();
    return nullptr;
}

std::string Stage::use_samples(int wanted) {
    const int offered = std::min(wanted, renderer->get_GL_MAX_SAMPLES());
    if (offered < 2)
        return "";
    target = renderer->create_render_target();
    if (target->create_render_buffer_target(width, height, PF_RGBA_U8, false, 1, true, offered))
        return "";
    return std::string("no target of ") + std::to_string(width) + "x" + std::to_string(height) +
           " with " + std::to_string(offered) + " samples per pixel: " + target->get_error_str();
}

int Stage::samples() const {
    return target ? target->get_samples() : 0;
}

void Stage::begin_picture() {
    if (target)
        target->activate();
    renderer->rasterizer_set_msaa_state(target != nullptr);
    renderer->rasterizer_apply_state();
}

void Stage::resolve() {
    if (!target)
        return;
    target->deactivate();
    renderer->fbo_blit(target->get_fbo(), 0, 0, width, height, 0, 0, 0, width, height, true, false);
}
