#include "stage.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <new>
#include <vector>

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

namespace {

RenderWindow_ExtraData request_for(bool gl3) {
    RenderWindow_ExtraData request;
    request.gl_major = gl3 ? 3 : 2;
    request.gl_minor = gl3 ? 2 : 1;
    request.depth_bits = 24;
    return request;
}

/// Whether a software driver, with the compiler in it, finds room.
bool is_room_for_a_driver() {
    constexpr std::size_t needed = std::size_t{256} << 20;
    return std::unique_ptr<char[]>(new (std::nothrow) char[needed]) != nullptr;
}

} // namespace

/// Tells a driver that is too old from none, and from one that finds no memory.
std::string Stage::reason_for_no_context() {
    RenderWindow_ExtraData old = request_for(false);
    RenderWindow* const other = renderer->create_render_window();
    if (other->initialize(nullptr, nullptr, 16, 16, "Off", nullptr, &old))
        return "no OpenGL 3.2 context: the driver offers less; --path gl2 draws with OpenGL 2.1";
    if (!is_room_for_a_driver())
        return "no OpenGL context: there isn't enough memory for a driver";
    return "no OpenGL context: no driver is found; the package libgl1-mesa-dri has one";
}

std::string Stage::open(int new_width, int new_height, bool gl3) {
    width = new_width;
    height = new_height;
    renderer = Kernel::get()->load_core_opengl_renderer_plugin(true);
    renderer->initialize();
    window = renderer->create_render_window();
    RenderWindow_ExtraData request = request_for(gl3);
    if (!window->initialize(nullptr, nullptr, width, height, "Off", nullptr, &request))
        return reason_for_no_context();
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
           " with " + std::to_string(offered) +
           " samples per pixel (--samples 0 needs none): " + target->get_error_str();
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

bool Stage::shows_only(const Color& color) const {
    int size = 0, across = 0, down = 0;
    renderer->get_color_buffer_size(&size, &across, &down);
    std::vector<unsigned char> pixels(static_cast<std::size_t>(size));
    renderer->get_color_buffer(pixels.data());
    // A driver rounds as it likes.
    const auto is_near = [](unsigned char value, float wanted) {
        return std::abs(static_cast<float>(value) - wanted * 255.0f) <= 1.0f;
    };
    for (std::size_t i = 0; i + 3 < pixels.size(); i += 4)
        if (!is_near(pixels[i], color.r) || !is_near(pixels[i + 1], color.g) ||
            !is_near(pixels[i + 2], color.b))
            return false;
    return true;
}
