#include "orvex/renderer/opengl/private/renderer_opengl.h"

#include "orvex/math/vec2.h"
#include "orvex/math/vec3.h"
#include "orvex/math/vec4.h"
#include "orvex/renderer/records/private/uniform_kinds.h"

// The uniforms of the contract, handed on to their family. The setters act at once, on the program
// that is active; each kind of the list has one.

namespace orvex {

int RendererOpenGL::gpu_program_get_uniform_location(GpuProgramData* program, const char* name) {
    return uniforms.location(program, name);
}

bool RendererOpenGL::gpu_program_optimize(GpuProgramData* program) {
    return uniforms.look_up(program);
}

bool RendererOpenGL::gpu_program_bind_uniforms(GpuProgramData* program) {
    return uniforms.send_table(program);
}

// The entries of matrices are named after their sides.
#define ORVEX_MATRIX_ENTRY_9 glUniformMatrix3fv
#define ORVEX_MATRIX_ENTRY_16 glUniformMatrix4fv

// By name

// NOLINTBEGIN(bugprone-macro-parentheses): the argument is a type.
#define ORVEX_SET_VALUE(kind, KIND, Type, components, field)                                       \
    void RendererOpenGL::gpu_program_set_uniform_##kind(                                           \
        GpuProgramData* program, const char* name, ORVEX_UNIFORM_PARAMETERS_##components(Type)) {  \
        uniforms.set(program, name, gl.glUniform##kind, ORVEX_UNIFORM_ARGUMENTS_##components);     \
    }
#define ORVEX_SET_HANDLE(kind, KIND, Type, components, field)                                      \
    void RendererOpenGL::gpu_program_set_uniform_##kind(GpuProgramData* program, const char* name, \
                                                        Type value) {                              \
        uniforms.set(program, name, gl.glUniformHandleui64ARB, GLuint64(value));                   \
    }
#define ORVEX_SET_ARRAY(kind, KIND, Type, components, field)                                       \
    void RendererOpenGL::gpu_program_set_uniform_##kind(GpuProgramData* program, const char* name, \
                                                        Type* values, int count) {                 \
        uniforms.set_array(program, name, gl.glUniform##kind, count, gl_numbers(values));          \
    }
#define ORVEX_SET_HANDLES(kind, KIND, Type, components, field)                                     \
    void RendererOpenGL::gpu_program_set_uniform_##kind(GpuProgramData* program, const char* name, \
                                                        Type* values, int count) {                 \
        uniforms.set_array(program, name, gl.glUniformHandleui64vARB, count, gl_numbers(values));  \
    }
#define ORVEX_SET_MATRIX(kind, KIND, Type, components, field)                                      \
    void RendererOpenGL::gpu_program_set_uniform_##kind##v(                                        \
        GpuProgramData* program, const char* name, Type* values, int count) {                      \
        uniforms.set_matrices(program, name, gl.ORVEX_MATRIX_ENTRY_##components, count, values);   \
    }
// NOLINTEND(bugprone-macro-parentheses)

ORVEX_UNIFORM_KINDS(ORVEX_SET_VALUE, ORVEX_SET_VALUE, ORVEX_SET_HANDLE, ORVEX_SET_ARRAY,
                    ORVEX_SET_HANDLES, ORVEX_SET_MATRIX, ORVEX_NO_UNIFORM)

#undef ORVEX_SET_MATRIX
#undef ORVEX_SET_HANDLES
#undef ORVEX_SET_ARRAY
#undef ORVEX_SET_HANDLE
#undef ORVEX_SET_VALUE

// By location, which only the setters of handles look at

// NOLINTBEGIN(bugprone-macro-parentheses): the argument is a type.
#define ORVEX_SET_VALUE_AT(setter, kind, Type, components)                                         \
    void RendererOpenGL::gpu_program_set_uniform_##setter(                                         \
        int location, ORVEX_UNIFORM_PARAMETERS_##components(Type)) {                               \
        if (gl.glUniform##kind)                                                                    \
            gl.glUniform##kind(location, ORVEX_UNIFORM_ARGUMENTS_##components);                    \
    }
#define ORVEX_SET_ARRAY_AT(setter, kind, Type, components)                                         \
    void RendererOpenGL::gpu_program_set_uniform_##setter(int location, Type* values, int count) { \
        if (values && gl.glUniform##kind)                                                          \
            gl.glUniform##kind(location, count, gl_numbers(values));                               \
    }
#define ORVEX_SET_MATRIX_AT(setter, kind, Type, components)                                        \
    void RendererOpenGL::gpu_program_set_uniform_##setter(int location, Type* values, int count) { \
        if (values && gl.ORVEX_MATRIX_ENTRY_##components)                                          \
            gl.ORVEX_MATRIX_ENTRY_##components(location, count, GL_FALSE, values);                 \
    }
// NOLINTEND(bugprone-macro-parentheses)

ORVEX_UNIFORM_LOCATION_SETTERS(ORVEX_SET_VALUE_AT, ORVEX_SET_ARRAY_AT, ORVEX_SET_MATRIX_AT)

#undef ORVEX_SET_MATRIX_AT
#undef ORVEX_SET_ARRAY_AT
#undef ORVEX_SET_VALUE_AT
#undef ORVEX_MATRIX_ENTRY_16
#undef ORVEX_MATRIX_ENTRY_9

void RendererOpenGL::gpu_program_set_uniform_ui64_loc(int location, unsigned long long value) {
    if (location >= 0 && gl.glUniformHandleui64ARB)
        gl.glUniformHandleui64ARB(location, value);
}

void RendererOpenGL::gpu_program_set_uniform_ui64v_loc(int location, unsigned long count,
                                                       unsigned long long* values) {
    if (location >= 0 && values && gl.glUniformHandleui64vARB)
        gl.glUniformHandleui64vARB(location, static_cast<GLsizei>(count), gl_numbers(values));
}

} // namespace orvex
