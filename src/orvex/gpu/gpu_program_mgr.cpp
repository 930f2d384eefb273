#include "orvex/gpu/gpu_program_mgr.h"

#include <cstring>
#include <memory>

#include "orvex/base/log_mgr.h"
#include "orvex/base/private/misuse.h"
#include "orvex/gpu/gpu_program.h"
#include "orvex/renderer/records/gpu_program_data.h"

// Every road to a program is the same: make it, name it, load it, note the result, list it. The
// `create` operations begin with a new one, the `init` operations with the host's.

namespace orvex {

GpuProgramMgr* GpuProgramMgr::m_ptr_instance = nullptr;

GpuProgramMgr::GpuProgramMgr() = default;

GpuProgramMgr::~GpuProgramMgr() = default;

GpuProgramMgr* GpuProgramMgr::get() {
    static GpuProgramMgr* const instance = m_ptr_instance = new GpuProgramMgr;
    return instance;
}

bool GpuProgramMgr::start(Renderer* renderer) {
    return ResourceMgr::start(renderer);
}

bool GpuProgramMgr::stop(Renderer* renderer) {
    return ResourceMgr::stop(renderer);
}

GpuProgram* GpuProgramMgr::create_gpu_program(const char* name) {
    auto program = std::make_unique<GpuProgram>();
    program->set_name(name);
    add_gpu_program(program.get());
    return program.release();
}

bool GpuProgramMgr::add_gpu_program(GpuProgram* program) {
    return add_resource(program);
}

GpuProgram* GpuProgramMgr::create_gpu_program_from_file(Renderer* renderer, const char* path,
                                                        const char* name) {
    GpuProgram* const program = create_gpu_program(name);
    init_gpu_program_from_file(renderer, program, path, name);
    return program;
}

GpuProgram* GpuProgramMgr::create_gpu_program_from_memory(Renderer* renderer, const char* text,
                                                          unsigned long size, const char* name) {
    GpuProgram* const program = create_gpu_program(name);
    init_gpu_program_from_memory(renderer, program, text, size, name);
    return program;
}

GpuProgram* GpuProgramMgr::create_gpu_program_from_shaders(Renderer* renderer, const char* vertex,
                                                           const char* pixel, const char* geometry,
                                                           const char* tess_control,
                                                           const char* tess_eval,
                                                           const char* compute, const char* name) {
    GpuProgram* const program = create_gpu_program(name);
    init_gpu_program_from_shaders(renderer, program, vertex, pixel, geometry, tess_control,
                                  tess_eval, compute, name);
    return program;
}

GpuProgram* GpuProgramMgr::create_gpu_program_from_effect(Renderer* renderer,
                                                          const char* effect_text,
                                                          const char* name) {
    GpuProgram* const program = create_gpu_program(name);
    init_gpu_program_from_effect(renderer, program, effect_text, name);
    return program;
}

bool GpuProgramMgr::finish_init(GpuProgram* program, bool loaded) {
    program->set_valid_state(loaded);
    add_gpu_program(program);
    return loaded;
}

bool GpuProgramMgr::init_gpu_program_from_file(Renderer* renderer, GpuProgram* program,
                                               const char* path, const char* name) {
    if (!program)
        return misuse("GpuProgramMgr::init_gpu_program_from_file", "a null program");
    program->set_name(name);
    return finish_init(program, program->load_from_file(renderer, path));
}

bool GpuProgramMgr::init_gpu_program_from_memory(Renderer* renderer, GpuProgram* program,
                                                 const char* text, unsigned long size,
                                                 const char* name) {
    if (!program)
        return misuse("GpuProgramMgr::init_gpu_program_from_memory", "a null program");
    program->set_name(name);
    return finish_init(program, program->load_from_memory(renderer, text, size));
}

// Loads one stage of several; an absent text counts as loaded. `error` names the stage in the log.
bool GpuProgramMgr::load_stage(Renderer* renderer, GpuProgram* program, GPU_SHADER_TYPE type,
                               const char* text, const char* error) {
    if (!text || program->shader_load_from_memory(renderer, type, text, std::strlen(text)))
        return true;
    if (const char* const log = program->data->get_shader_info_log(type))
        LogMgr::get()->tracef_error("GPU program %s - %s error: %s", program->get_name(), error,
                                    log);
    return false;
}

bool GpuProgramMgr::init_gpu_program_from_shaders(Renderer* renderer, GpuProgram* program,
                                                  const char* vertex, const char* pixel,
                                                  const char* geometry, const char* tess_control,
                                                  const char* tess_eval, const char* compute,
                                                  const char* name) {
    if (!program)
        return misuse("GpuProgramMgr::init_gpu_program_from_shaders", "a null program");
    struct Stage {
        GPU_SHADER_TYPE type;
        const char* text;
        const char* error;
    };
    // In the order in which they are compiled, and so logged.
    const Stage stages[] = {
        {GPU_SHADER_VERTEX, vertex, "Vertex shader"},
        {GPU_SHADER_TESS_CONTROL, tess_control, "Tessellation control shader"},
        {GPU_SHADER_TESS_EVAL, tess_eval, "Tessellation eval shader"},
        {GPU_SHADER_GEOMETRY, geometry, "Geometry shader"},
        {GPU_SHADER_PIXEL, pixel, "Pixel shader"},
        {GPU_SHADER_COMPUTE, compute, "Compute shader"},
    };

    // A stage that fails doesn't keep the others from telling their own mistakes.
    program->set_name(name);
    bool loaded = true;
    for (const Stage& stage : stages)
        loaded = load_stage(renderer, program, stage.type, stage.text, stage.error) && loaded;
    return finish_init(program, loaded);
}

bool GpuProgramMgr::init_gpu_program_from_effect(Renderer* renderer, GpuProgram* program,
                                                 const char* effect_text, const char* name) {
    if (!program || !effect_text)
        return misuse("GpuProgramMgr::init_gpu_program_from_effect", "a null program or text");
    program->set_name(name);
    return finish_init(program,
                       load_stage(renderer, program, GPU_SHADER_EFFECT, effect_text, "D3D effect"));
}

} // namespace orvex
