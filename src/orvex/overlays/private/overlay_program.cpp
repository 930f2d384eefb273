#include "orvex/overlays/private/overlay_program.h"

#include "orvex/base/log_mgr.h"
#include "orvex/gpu/gpu_program.h"
#include "orvex/gpu/gpu_program_mgr.h"

namespace orvex {

namespace {

void report_invalid(GpuProgram& program, const char* what) {
    const char* const messages = program.get_shader_error_messages();
    if (messages[0] != '\0')
        LogMgr::get()->tracef_error("%s error: %s", what, messages);
    else
        LogMgr::get()->tracef_error("%s has erros", what);
}

bool is_usable(Renderer& renderer, GpuProgram& program, const OverlayProgramTexts& texts) {
    if (!program.is_valid()) {
        report_invalid(program, texts.invalid);
        return false;
    }
    if (program.activate(&renderer))
        return true;
    LogMgr::get()->trace_error(texts.not_active);
    return false;
}

} // namespace

GpuProgram* make_overlay_program(Renderer& renderer, const char* vertex, const char* pixel,
                                 const OverlayProgramTexts& texts) {
    GpuProgramMgr* const programs = GpuProgramMgr::get();
    GpuProgram* const program = programs->create_gpu_program_from_shaders(
        &renderer, vertex, pixel, nullptr, nullptr, nullptr, nullptr, texts.name);
    if (is_usable(renderer, *program, texts))
        return program;
    programs->release_resource(&renderer, program, nullptr);
    return nullptr;
}

} // namespace orvex
