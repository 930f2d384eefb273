#include "orvex/renderer/opengl/private/renderer_opengl.h"

#include "orvex/math/vec2.h"
#include "orvex/math/vec3.h"
#include "orvex/math/vec4.h"
#include "orvex/renderer/records/gpu_program_data.h"

// The setters that act at once, on the program that is active. Those by name ask the driver for the
// location at each call, which is why the engine's own uniforms go through the program's table.

namespace orvex {

namespace {

// Calls `entry` with the location of `name` and the values, if the program has such a uniform.
template<class Entry, class... Values>
void send(const ORVEX_Renderer_OpenGL_Func& gl, const GpuProgramData* program, const char* name,
          Entry entry, Values... values) {
    if (!program || !name || !has_entries(gl.glGetUniformLocation, entry))
        return;
    const GLint location = gl.glGetUniformLocation(program->gl_program, name);
    if (location >= 0)
        entry(location, values...);
}

// The same for an array; a null one isn't even asked for.
template<class Entry, class Value>
void send_array(const ORVEX_Renderer_OpenGL_Func& gl, const GpuProgramData* program,
                const char* name, Entry entry, int count, const Value* values) {
    if (values)
        send(gl, program, name, entry, count, values);
}

template<class Entry>
void send_matrices(const ORVEX_Renderer_OpenGL_Func& gl, const GpuProgramData* program,
                   const char* name, Entry entry, int count, const float* values) {
    if (values)
        send(gl, program, name, entry, count, GLboolean(GL_FALSE), values);
}

const float* floats(const vec2* vectors) {
    return reinterpret_cast<const float*>(vectors);
}

const float* floats(const vec3* vectors) {
    return reinterpret_cast<const float*>(vectors);
}

const float* floats(const vec4* vectors) {
    return reinterpret_cast<const float*>(vectors);
}

const GLuint64* handles(const unsigned long long* values) {
    static_assert(sizeof(GLuint64) == sizeof(unsigned long long));
    return reinterpret_cast<const GLuint64*>(values);
}

} // namespace

int RendererOpenGL::gpu_program_get_uniform_location(GpuProgramData* program, const char* name) {
    if (!program || !name || gl.glGetUniformLocation == nullptr)
        return -1;
    return gl.glGetUniformLocation(program->gl_program, name);
}

void RendererOpenGL::gpu_program_set_uniform_1i(GpuProgramData* program, const char* name,
                                                int value) {
    send(gl, program, name, gl.glUniform1i, value);
}

void RendererOpenGL::gpu_program_set_uniform_2i(GpuProgramData* program, const char* name, int x,
                                                int y) {
    send(gl, program, name, gl.glUniform2i, x, y);
}

void RendererOpenGL::gpu_program_set_uniform_3i(GpuProgramData* program, const char* name, int x,
                                                int y, int z) {
    send(gl, program, name, gl.glUniform3i, x, y, z);
}

void RendererOpenGL::gpu_program_set_uniform_4i(GpuProgramData* program, const char* name, int x,
                                                int y, int z, int w) {
    send(gl, program, name, gl.glUniform4i, x, y, z, w);
}

void RendererOpenGL::gpu_program_set_uniform_1f(GpuProgramData* program, const char* name,
                                                float value) {
    send(gl, program, name, gl.glUniform1f, value);
}

void RendererOpenGL::gpu_program_set_uniform_2f(GpuProgramData* program, const char* name, float x,
                                                float y) {
    send(gl, program, name, gl.glUniform2f, x, y);
}

void RendererOpenGL::gpu_program_set_uniform_3f(GpuProgramData* program, const char* name, float x,
                                                float y, float z) {
    send(gl, program, name, gl.glUniform3f, x, y, z);
}

void RendererOpenGL::gpu_program_set_uniform_4f(GpuProgramData* program, const char* name, float x,
                                                float y, float z, float w) {
    send(gl, program, name, gl.glUniform4f, x, y, z, w);
}

void RendererOpenGL::gpu_program_set_uniform_1d(GpuProgramData* program, const char* name,
                                                double value) {
    send(gl, program, name, gl.glUniform1d, value);
}

void RendererOpenGL::gpu_program_set_uniform_2d(GpuProgramData* program, const char* name, double x,
                                                double y) {
    send(gl, program, name, gl.glUniform2d, x, y);
}

void RendererOpenGL::gpu_program_set_uniform_3d(GpuProgramData* program, const char* name, double x,
                                                double y, double z) {
    send(gl, program, name, gl.glUniform3d, x, y, z);
}

void RendererOpenGL::gpu_program_set_uniform_4d(GpuProgramData* program, const char* name, double x,
                                                double y, double z, double w) {
    send(gl, program, name, gl.glUniform4d, x, y, z, w);
}

void RendererOpenGL::gpu_program_set_uniform_1ui(GpuProgramData* program, const char* name,
                                                 unsigned int value) {
    send(gl, program, name, gl.glUniform1ui, value);
}

void RendererOpenGL::gpu_program_set_uniform_2ui(GpuProgramData* program, const char* name,
                                                 unsigned int x, unsigned int y) {
    send(gl, program, name, gl.glUniform2ui, x, y);
}

void RendererOpenGL::gpu_program_set_uniform_3ui(GpuProgramData* program, const char* name,
                                                 unsigned int x, unsigned int y, unsigned int z) {
    send(gl, program, name, gl.glUniform3ui, x, y, z);
}

void RendererOpenGL::gpu_program_set_uniform_4ui(GpuProgramData* program, const char* name,
                                                 unsigned int x, unsigned int y, unsigned int z,
                                                 unsigned int w) {
    send(gl, program, name, gl.glUniform4ui, x, y, z, w);
}

void RendererOpenGL::gpu_program_set_uniform_1iv(GpuProgramData* program, const char* name,
                                                 int* values, int count) {
    send_array(gl, program, name, gl.glUniform1iv, count, values);
}

void RendererOpenGL::gpu_program_set_uniform_2iv(GpuProgramData* program, const char* name,
                                                 int* values, int count) {
    send_array(gl, program, name, gl.glUniform2iv, count, values);
}

void RendererOpenGL::gpu_program_set_uniform_3iv(GpuProgramData* program, const char* name,
                                                 int* values, int count) {
    send_array(gl, program, name, gl.glUniform3iv, count, values);
}

void RendererOpenGL::gpu_program_set_uniform_4iv(GpuProgramData* program, const char* name,
                                                 int* values, int count) {
    send_array(gl, program, name, gl.glUniform4iv, count, values);
}

void RendererOpenGL::gpu_program_set_uniform_1fv(GpuProgramData* program, const char* name,
                                                 float* values, int count) {
    send_array(gl, program, name, gl.glUniform1fv, count, values);
}

void RendererOpenGL::gpu_program_set_uniform_2fv(GpuProgramData* program, const char* name,
                                                 vec2* values, int count) {
    send_array(gl, program, name, gl.glUniform2fv, count, floats(values));
}

void RendererOpenGL::gpu_program_set_uniform_3fv(GpuProgramData* program, const char* name,
                                                 vec3* values, int count) {
    send_array(gl, program, name, gl.glUniform3fv, count, floats(values));
}

void RendererOpenGL::gpu_program_set_uniform_4fv(GpuProgramData* program, const char* name,
                                                 vec4* values, int count) {
    send_array(gl, program, name, gl.glUniform4fv, count, floats(values));
}

void RendererOpenGL::gpu_program_set_uniform_1dv(GpuProgramData* program, const char* name,
                                                 double* values, int count) {
    send_array(gl, program, name, gl.glUniform1dv, count, values);
}

void RendererOpenGL::gpu_program_set_uniform_2dv(GpuProgramData* program, const char* name,
                                                 double* values, int count) {
    send_array(gl, program, name, gl.glUniform2dv, count, values);
}

void RendererOpenGL::gpu_program_set_uniform_3dv(GpuProgramData* program, const char* name,
                                                 double* values, int count) {
    send_array(gl, program, name, gl.glUniform3dv, count, values);
}

void RendererOpenGL::gpu_program_set_uniform_4dv(GpuProgramData* program, const char* name,
                                                 double* values, int count) {
    send_array(gl, program, name, gl.glUniform4dv, count, values);
}

void RendererOpenGL::gpu_program_set_uniform_3x3fv(GpuProgramData* program, const char* name,
                                                   float* values, int count) {
    send_matrices(gl, program, name, gl.glUniformMatrix3fv, count, values);
}

void RendererOpenGL::gpu_program_set_uniform_4x4fv(GpuProgramData* program, const char* name,
                                                   float* values, int count) {
    send_matrices(gl, program, name, gl.glUniformMatrix4fv, count, values);
}

void RendererOpenGL::gpu_program_set_uniform_1ui64(GpuProgramData* program, const char* name,
                                                   unsigned long long value) {
    send(gl, program, name, gl.glUniformHandleui64ARB, GLuint64(value));
}

void RendererOpenGL::gpu_program_set_uniform_1ui64v(GpuProgramData* program, const char* name,
                                                    unsigned long long* values, int count) {
    send_array(gl, program, name, gl.glUniformHandleui64vARB, count, handles(values));
}

void RendererOpenGL::gpu_program_set_uniform_1i_loc(int location, int value) {
    if (gl.glUniform1i != nullptr)
        gl.glUniform1i(location, value);
}

void RendererOpenGL::gpu_program_set_uniform_2i_loc(int location, int x, int y) {
    if (gl.glUniform2i != nullptr)
        gl.glUniform2i(location, x, y);
}

void RendererOpenGL::gpu_program_set_uniform_3i_loc(int location, int x, int y, int z) {
    if (gl.glUniform3i != nullptr)
        gl.glUniform3i(location, x, y, z);
}

void RendererOpenGL::gpu_program_set_uniform_4i_loc(int location, int x, int y, int z, int w) {
    if (gl.glUniform4i != nullptr)
        gl.glUniform4i(location, x, y, z, w);
}

void RendererOpenGL::gpu_program_set_uniform_1f_loc(int location, float value) {
    if (gl.glUniform1f != nullptr)
        gl.glUniform1f(location, value);
}

void RendererOpenGL::gpu_program_set_uniform_2f_loc(int location, float x, float y) {
    if (gl.glUniform2f != nullptr)
        gl.glUniform2f(location, x, y);
}

void RendererOpenGL::gpu_program_set_uniform_3f(int location, float x, float y, float z) {
    if (gl.glUniform3f != nullptr)
        gl.glUniform3f(location, x, y, z);
}

void RendererOpenGL::gpu_program_set_uniform_4f_loc(int location, float x, float y, float z,
                                                    float w) {
    if (gl.glUniform4f != nullptr)
        gl.glUniform4f(location, x, y, z, w);
}

void RendererOpenGL::gpu_program_set_uniform_4fv_loc(int location, vec4* values, int count) {
    if (values && gl.glUniform4fv != nullptr)
        gl.glUniform4fv(location, count, floats(values));
}

void RendererOpenGL::gpu_program_set_uniform_3x3fv_loc(int location, float* values, int count) {
    if (values && gl.glUniformMatrix3fv != nullptr)
        gl.glUniformMatrix3fv(location, count, GL_FALSE, values);
}

void RendererOpenGL::gpu_program_set_uniform_4x4fv_loc(int location, float* values, int count) {
    if (values && gl.glUniformMatrix4fv != nullptr)
        gl.glUniformMatrix4fv(location, count, GL_FALSE, values);
}

void RendererOpenGL::gpu_program_set_uniform_ui64_loc(int location, unsigned long long value) {
    if (location >= 0 && gl.glUniformHandleui64ARB != nullptr)
        gl.glUniformHandleui64ARB(location, value);
}

void RendererOpenGL::gpu_program_set_uniform_ui64v_loc(int location, unsigned long count,
                                                       unsigned long long* values) {
    if (location >= 0 && values && gl.glUniformHandleui64vARB != nullptr)
        gl.glUniformHandleui64vARB(location, static_cast<GLsizei>(count), handles(values));
}

} // namespace orvex
