#pragma once

/// @file
/// `GpuProgramMgr`, which makes and holds GPU programs.

#include "orvex/api.h"
#include "orvex/fwd.h"
#include "orvex/renderer/renderer_types.h"
#include "orvex/scene/resource_mgr.h"

namespace orvex {

/// Makes and holds the GPU programs of the process.
///
/// One object, made on first use and never destroyed. It holds one reference on each program; see
/// `ResourceMgr` for finding and releasing them. Not locked: for the thread whose graphics context
/// is current.
///
/// @code
/// const char* const vertex_text = "void main() { gl_Position = vec4(0.0, 0.0, 0.0, 1.0); }";
/// const char* const pixel_text = "void main() { gl_FragColor = vec4(1.0); }";
/// orvex::GpuProgramMgr* programs = orvex::GpuProgramMgr::get();
/// orvex::GpuProgram* program = programs->create_gpu_program_from_shaders(
///     renderer, vertex_text, pixel_text, nullptr, nullptr, nullptr, nullptr, "phong");
/// if (!program->is_valid())
///     programs->release_resource(renderer, program, nullptr);
/// @endcode
class ORVEX_API GpuProgramMgr : public ResourceMgr {
public:
    /// Returns the one manager.
    static GpuProgramMgr* get();

    GpuProgramMgr(const GpuProgramMgr&) = delete;
    GpuProgramMgr& operator=(const GpuProgramMgr&) = delete;

    /// Returns true; nothing is needed before the first program.
    bool start(Renderer* renderer) override;
    /// Releases every program that the renderer may release, with null every one. Returns true.
    bool stop(Renderer* renderer) override;

    /// Makes a program with a name (null keeps the node's own) and no stages, and adds it.
    GpuProgram* create_gpu_program(const char* name);
    /// Adds a program made by the host and takes a reference. Returns false for null.
    bool add_gpu_program(GpuProgram* program);

    /// @name Making a program from texts
    /// Each makes a program and loads it with the `init` operation of the same name. The program is
    /// returned even when it doesn't load: ask `GpuProgram::is_valid`. With a null renderer none
    /// loads. What the compiler said is in `GpuProgram::get_shader_error_messages`; that text is
    /// empty where nothing was compiled, as for a file that can't be read, and a text that has
    /// neither the marker of a compute stage nor those of both a vertex and a pixel stage.
    /// @{

    /// From a file in the format of `GpuProgram::load_from_memory`.
    GpuProgram* create_gpu_program_from_file(Renderer* renderer, const char* path,
                                             const char* name);
    /// From a text with section markers.
    /// @param size  most characters to read; a terminator ends the text earlier. 0 loads nothing
    GpuProgram* create_gpu_program_from_memory(Renderer* renderer, const char* text,
                                               unsigned long size, const char* name);
    /// From one terminated text per stage; null for a stage that isn't wanted.
    GpuProgram* create_gpu_program_from_shaders(Renderer* renderer, const char* vertex,
                                                const char* pixel, const char* geometry,
                                                const char* tess_control, const char* tess_eval,
                                                const char* compute, const char* name);
    /// From a Direct3D effect. OpenGL has no such stage: the program is never valid there.
    GpuProgram* create_gpu_program_from_effect(Renderer* renderer, const char* effect_text,
                                               const char* name);
    /// @}

    /// @name Loading a program that exists
    /// Each names the program (null keeps its name), loads it, stores the result as its valid
    /// state, adds it to the manager and returns the result. A null program returns false.
    /// @{

    /// From a file in the format of `GpuProgram::load_from_memory`.
    bool init_gpu_program_from_file(Renderer* renderer, GpuProgram* program, const char* path,
                                    const char* name);
    /// From a text with section markers.
    /// @param size  as for `create_gpu_program_from_memory`; 0 returns false
    bool init_gpu_program_from_memory(Renderer* renderer, GpuProgram* program, const char* text,
                                      unsigned long size, const char* name);
    /// Loads every text that isn't null, and doesn't stop at a failure; true if all loaded, with no
    /// text at all too. The message of a stage that doesn't compile is logged as an error.
    bool init_gpu_program_from_shaders(Renderer* renderer, GpuProgram* program, const char* vertex,
                                       const char* pixel, const char* geometry,
                                       const char* tess_control, const char* tess_eval,
                                       const char* compute, const char* name);
    /// From a Direct3D effect; false for a null text.
    bool init_gpu_program_from_effect(Renderer* renderer, GpuProgram* program,
                                      const char* effect_text, const char* name);
    /// @}

private:
    GpuProgramMgr();
    ~GpuProgramMgr() override;

    bool finish_init(GpuProgram* program, bool loaded);
    bool load_stage(Renderer* renderer, GpuProgram* program, GPU_SHADER_TYPE type, const char* text,
                    const char* error);

    static GpuProgramMgr* m_ptr_instance;
};

} // namespace orvex
