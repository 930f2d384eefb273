#pragma once

/// @file
/// The uniforms of GPU programs: those that are sent at once, and those that wait in a program's
/// table.
///
/// A value by name costs a question for the location at each call, which is why the engine's own
/// values go through the table: there a location is asked for until it is found, and kept until the
/// next link. The table is walked twice per drawn object, so nothing here allocates.

#include "orvex/renderer/opengl/state/private/gl_state.h"
#include "orvex/renderer/records/gpu_program_data.h"

namespace orvex {

/// Sends uniforms to the program that is active; none of the operations activates one. Whatever the
/// context has no entry for isn't sent.
class UniformFamily {
public:
    /// @param state  outlives the object
    explicit UniformFamily(const GlState& state)
        : state(state)
        , gl(state.gl) {}

    /// @return the location, -1 for a null argument and for a name that the program doesn't use
    int location(const GpuProgramData* program, const char* name) const;

    /// @name Values by name
    /// Each asks for the location of `name`, and sends nothing to a program that lacks it. A null
    /// program or name is passed over, and so is a null array, which isn't even asked for.
    /// @{

    /// Calls `entry`, one of the table's, with the location and the values.
    template<class Entry, class... Values>
    void set(const GpuProgramData* program, const char* name, Entry entry, Values... values) const {
        if (!program || !name || !has_entries(gl.glGetUniformLocation, entry))
            return;
        const GLint found = gl.glGetUniformLocation(program->gl_program, name);
        if (found >= 0)
            entry(found, values...);
    }
    template<class Entry, class Value>
    void set_array(const GpuProgramData* program, const char* name, Entry entry, int count,
                   const Value* values) const {
        if (values)
            set(program, name, entry, count, values);
    }
    /// Matrices go as they stand, column by column.
    template<class Entry>
    void set_matrices(const GpuProgramData* program, const char* name, Entry entry, int count,
                      const float* values) const {
        if (values)
            set(program, name, entry, count, GLboolean(GL_FALSE), values);
    }
    /// @}

    /// @name The table of a program
    /// False for null.
    /// @{

    /// Asks for the locations that aren't known, unless that was done since the last change.
    bool look_up(GpuProgramData* program) const;
    /// Asks for the locations that aren't known and sends what was set since the last walk.
    bool send_table(GpuProgramData* program) const;
    /// @}

private:
    const GlState& state;
    const ORVEX_Renderer_OpenGL_Func& gl;
};

/// @name Numbers behind the types of the setters
/// @{

inline const int* gl_numbers(const int* values) {
    return values;
}
inline const float* gl_numbers(const float* values) {
    return values;
}
inline const double* gl_numbers(const double* values) {
    return values;
}
inline const GLuint64* gl_numbers(const unsigned long long* values) {
    static_assert(sizeof(GLuint64) == sizeof(unsigned long long));
    return reinterpret_cast<const GLuint64*>(values);
}
inline const float* gl_numbers(const vec2* values) {
    return reinterpret_cast<const float*>(values);
}
inline const float* gl_numbers(const vec3* values) {
    return reinterpret_cast<const float*>(values);
}
inline const float* gl_numbers(const vec4* values) {
    return reinterpret_cast<const float*>(values);
}
/// @}

} // namespace orvex
