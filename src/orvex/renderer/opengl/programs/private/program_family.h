#pragma once

/// @file
/// GPU programs: their stages, their link, and which of them is active.
///
/// A fresh program has `core_attribs_pending` and `instancing_attribs_pending` set. Its first
/// activation links it, moves the standard attributes that it declares to their locations, and
/// links again if one was moved. From then on an activation is one call, and the walk over the
/// uniforms.

#include <vector>

#include "orvex/renderer/opengl/programs/private/attribute_family.h"
#include "orvex/renderer/opengl/programs/private/shader_family.h"
#include "orvex/renderer/opengl/programs/private/uniform_family.h"
#include "orvex/renderer/opengl/state/private/gl_state.h"

namespace orvex {

/// Makes, links, activates and deletes program objects. The names of the objects stand in the
/// records; a failure returns false and leaves its reason in the record's logs.
class ProgramFamily {
public:
    /// @param state       holds the active program; all three outlive the object
    /// @param attributes  moves the attributes of a program that is activated
    /// @param uniforms    sends what waits in its table
    ProgramFamily(GlState& state, const AttributeFamily& attributes, const UniformFamily& uniforms);
    ProgramFamily(const ProgramFamily&) = delete;
    ProgramFamily& operator=(const ProgramFamily&) = delete;
    /// Lets the active program's record forget this renderer. No call is made.
    ~ProgramFamily();

    /// @name Stages
    /// False for a null record or source, a size of 0, and a source that doesn't compile, whose log
    /// is kept.
    /// @{

    /// Compiles a stage and attaches it. The first one makes the program object, and fixes its
    /// thread. A stage loaded before stays attached and links along.
    bool load_stage(GpuProgramData* program, GPU_SHADER_TYPE type, const char* source,
                    unsigned long size);
    /// Puts another source in the place of a stage's. After a failure the program goes on as it
    /// was; after a success it is linked at its next activation.
    bool replace_stage(GpuProgramData* program, GPU_SHADER_TYPE type, const char* source,
                       unsigned long size);
    /// @}

    /// @name Life of a program
    /// False for null.
    /// @{

    /// Makes the program object anew from the stages that are there; false without one.
    bool remake(GpuProgramData* program) const;
    /// Links the program unless it is linked. The locations of its uniforms are forgotten.
    bool link(GpuProgramData* program);
    /// Asks the driver whether the program can run in the present state.
    bool validate(const GpuProgramData* program) const;
    /// Sends the uniforms and runs the compute stage of whichever program is active.
    bool dispatch(GpuProgramData* program, unsigned int x, unsigned int y, unsigned int z) const;
    /// Deletes the program and its stages; the active one is deactivated first. False without a
    /// program object.
    bool kill(GpuProgramData* program);
    /// @}

    /// Links the program if need be, makes it the active one, and sends its uniforms. Null
    /// deactivates.
    /// @return false, with the former program still active, if it can't be linked
    bool activate(GpuProgramData* program);
    /// Activates no program.
    /// @return true
    bool deactivate();

    /// @return the log of a program, null for none; valid until the next log is read
    const char* log(GLuint program);

    ShaderFamily shaders; ///< of the stages

private:
    void enter_context(GpuProgramData& program) const;
    bool has_objects_here(const GpuProgramData& program) const;
    void tell_link_failure(GpuProgramData& program) const;
    bool can_make_programs() const;
    void delete_stages(GpuProgramData& program) const;
    void make_program_object(GpuProgramData* program) const;
    void set_active(GpuProgramData* program);

    GlState& state;
    const ORVEX_Renderer_OpenGL_Func& gl;
    const AttributeFamily& attributes;
    const UniformFamily& uniforms;
    std::vector<char> log_buffer; // grows, and is used again
};

} // namespace orvex
