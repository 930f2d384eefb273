#pragma once

/// @file
/// The shader objects of the stages of GPU programs.

#include <vector>

#include "orvex/renderer/opengl/state/private/gl_state.h"

namespace orvex {

/// Makes and compiles shader objects, and reads what the compiler says. Whose they are then is the
/// caller's affair.
class ShaderFamily {
public:
    /// @param state  outlives the object
    explicit ShaderFamily(const GlState& state)
        : gl(state.gl) {}

    /// @return whether the context has all that a compilation calls
    bool can_compile() const;

    /// Makes a shader object of a stage; 0 for a type without one.
    GLuint make(GPU_SHADER_TYPE type) const;
    /// Names a shader object after its stage, for frame debuggers.
    void label(GLuint shader, GPU_SHADER_TYPE type) const;
    /// Gives a shader its source and compiles it. Only after `can_compile`.
    bool compile(GLuint shader, const char* source) const;

    /// @return the log of a shader, null for none; valid until the next log is read
    const char* log(GLuint shader);
    /// Keeps a shader's log, if it has one, in the program's record.
    void keep_log(GpuProgramData* program, GPU_SHADER_TYPE type, GLuint shader);

    /// Compiles a source on trial, for no program.
    /// @param message       takes the log of a failure, or an empty text; null for none
    /// @param message_size  its bytes, with the terminator; 0 writes nothing
    /// @return whether it compiles; false for a null source
    bool compiles(GPU_SHADER_TYPE type, const char* source, char* message,
                  unsigned long message_size);

private:
    const ORVEX_Renderer_OpenGL_Func& gl;
    std::vector<char> log_buffer; // grows, and is used again
};

} // namespace orvex
