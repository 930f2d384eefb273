#include "orvex/renderer/opengl/programs/private/uniform_family.h"

#include <algorithm>
#include <climits>
#include <vector>

#include "orvex/renderer/records/gpu_program_uniform.h"
#include "orvex/renderer/records/private/uniform_kinds.h"

// The table of a program, walked at each bind: what is unknown is looked up, what is marked is sent
// by the kind of its record, and each record that was met is unmarked.

namespace orvex {

int UniformFamily::location(const GpuProgramData* program, const char* name) const {
    if (!program || !name || !gl.glGetUniformLocation)
        return -1;
    return gl.glGetUniformLocation(program->gl_program, name);
}

bool UniformFamily::look_up(GpuProgramData* program) const {
    if (!program)
        return false;
    if (program->uniforms_optimized)
        return true;
    if (!gl.glGetUniformLocation)
        return false;
    for (unsigned long i = 0; i < program->num_uniforms; ++i) {
        GpuProgramUniform* const uniform = program->uniforms[i];
        if (uniform && uniform->location < 0) {
            uniform->location = gl.glGetUniformLocation(program->gl_program, uniform->name);
            uniform->dirty = true;
        }
    }
    program->uniforms_optimized = true;
    return true;
}

namespace {

template<class Entry, class... Values>
void send(Entry entry, Values... values) {
    if (entry)
        entry(values...);
}

// Setters of another kind or width may have changed the count since: what isn't there isn't sent.
template<class Entry, class Value>
void send_array(Entry entry, const GpuProgramUniform& uniform, const std::vector<Value>& array,
                int components) {
    const int stored = static_cast<int>(std::min<std::size_t>(array.size(), INT_MAX));
    const int count = std::min(uniform.count, stored / components);
    if (count > 0)
        send(entry, uniform.location, count, gl_numbers(array.data()));
}

const float* numbers_of(const float* matrix) {
    return matrix;
}

const float* numbers_of(const mat4& matrix) {
    return matrix.m;
}

// The numbers of a field, as arguments.
#define ORVEX_VECTOR_1(v) (v).x
#define ORVEX_VECTOR_2(v) (v).x, (v).y
#define ORVEX_VECTOR_3(v) (v).x, (v).y, (v).z
#define ORVEX_VECTOR_4(v) (v).x, (v).y, (v).z, (v).w
#define ORVEX_WORDS_1(v) (v)[0]
#define ORVEX_WORDS_2(v) (v)[0], (v)[1]
#define ORVEX_WORDS_3(v) (v)[0], (v)[1], (v)[2]
#define ORVEX_WORDS_4(v) (v)[0], (v)[1], (v)[2], (v)[3]
// The entries of matrices are named after their sides.
#define ORVEX_MATRIX_ENTRY_9 glUniformMatrix3fv
#define ORVEX_MATRIX_ENTRY_16 glUniformMatrix4fv

#define ORVEX_SEND_VALUE(kind, KIND, Type, components, field)                                      \
    case GPU_SHADER_UNIFORM_##KIND:                                                                \
        send(gl.glUniform##kind, u.location, ORVEX_VECTOR_##components(u.field));                  \
        break;
#define ORVEX_SEND_WORDS(kind, KIND, Type, components, field)                                      \
    case GPU_SHADER_UNIFORM_##KIND:                                                                \
        send(gl.glUniform##kind, u.location, ORVEX_WORDS_##components(u.field));                   \
        break;
#define ORVEX_SEND_HANDLE(kind, KIND, Type, components, field)                                     \
    case GPU_SHADER_UNIFORM_##KIND:                                                                \
        send(gl.glUniformHandleui64ARB, u.location, GLuint64(u.field));                            \
        break;
#define ORVEX_SEND_ARRAY(kind, KIND, Type, components, field)                                      \
    case GPU_SHADER_UNIFORM_##KIND:                                                                \
        send_array(gl.glUniform##kind, u, u.field, components);                                    \
        break;
#define ORVEX_SEND_HANDLES(kind, KIND, Type, components, field)                                    \
    case GPU_SHADER_UNIFORM_##KIND:                                                                \
        send_array(gl.glUniformHandleui64vARB, u, u.field, components);                            \
        break;
#define ORVEX_SEND_MATRIX(kind, KIND, Type, components, field)                                     \
    case GPU_SHADER_UNIFORM_##KIND:                                                                \
        send(gl.ORVEX_MATRIX_ENTRY_##components, u.location, 1, GLboolean(GL_FALSE),               \
             numbers_of(u.field));                                                                 \
        break;
#define ORVEX_SEND_NOTHING(kind, KIND, Type, components, field)                                    \
    case GPU_SHADER_UNIFORM_##KIND:                                                                \
        break;

// By the type that the record was made with, which a later setter of another kind leaves.
void send_record(const ORVEX_Renderer_OpenGL_Func& gl, const GpuProgramUniform& u) {
    switch (u.type) {
        // NOLINTNEXTLINE(bugprone-branch-clone): each kind of the list has a branch.
        ORVEX_UNIFORM_KINDS(ORVEX_SEND_VALUE, ORVEX_SEND_WORDS, ORVEX_SEND_HANDLE, ORVEX_SEND_ARRAY,
                            ORVEX_SEND_HANDLES, ORVEX_SEND_MATRIX, ORVEX_SEND_NOTHING)
    // No setter makes records of these.
    case GPU_SHADER_UNIFORM_2UI64V:
    case GPU_SHADER_UNIFORM_3UI64V:
    case GPU_SHADER_UNIFORM_4UI64V:
        break;
    }
}

#undef ORVEX_SEND_NOTHING
#undef ORVEX_SEND_MATRIX
#undef ORVEX_SEND_HANDLES
#undef ORVEX_SEND_ARRAY
#undef ORVEX_SEND_HANDLE
#undef ORVEX_SEND_WORDS
#undef ORVEX_SEND_VALUE
#undef ORVEX_MATRIX_ENTRY_16
#undef ORVEX_MATRIX_ENTRY_9
#undef ORVEX_WORDS_4
#undef ORVEX_WORDS_3
#undef ORVEX_WORDS_2
#undef ORVEX_WORDS_1
#undef ORVEX_VECTOR_4
#undef ORVEX_VECTOR_3
#undef ORVEX_VECTOR_2
#undef ORVEX_VECTOR_1

} // namespace

bool UniformFamily::send_table(GpuProgramData* program) const {
    if (!program)
        return false;
    state.bound().take_off_program();
    // Names that the program doesn't have are asked for at each bind, but for a stretch in which
    // nobody can have linked it again.
    const unsigned long stretch = state.bound().stretch();
    if (stretch == 0 || program->asked_in_stretch != stretch) {
        program->uniforms_optimized = false;
        look_up(program);
        program->asked_in_stretch = stretch;
    }
    for (unsigned long i = 0; i < program->num_uniforms && program->uniforms[i]; ++i) {
        GpuProgramUniform& uniform = *program->uniforms[i];
        if (!uniform.dirty)
            continue;
        if (uniform.location >= 0)
            send_record(gl, uniform);
        uniform.dirty = false;
    }
    return true;
}

} // namespace orvex
