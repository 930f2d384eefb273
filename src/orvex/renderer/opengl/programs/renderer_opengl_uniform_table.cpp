#include "orvex/renderer/opengl/private/renderer_opengl.h"

#include <algorithm>
#include <climits>
#include <vector>

#include "orvex/renderer/records/gpu_program_data.h"
#include "orvex/renderer/records/gpu_program_uniform.h"

// The values that waited in a program's table. It is walked twice per drawn object, so nothing here
// allocates.

namespace orvex {

bool RendererOpenGL::gpu_program_optimize(GpuProgramData* program) {
    if (!program)
        return false;
    if (program->uniforms_optimized)
        return true;
    if (gl.glGetUniformLocation == nullptr)
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
    if (entry != nullptr)
        entry(values...);
}

// Setters of another kind or width may have changed the count since: what isn't there isn't sent.
template<class Entry, class Value>
void send_array(Entry entry, const GpuProgramUniform& uniform, const std::vector<Value>& array,
                int components) {
    const int stored = static_cast<int>(std::min<std::size_t>(array.size(), INT_MAX));
    const int count = std::min(uniform.count, stored / components);
    if (count > 0)
        send(entry, uniform.location, count, array.data());
}

void send_handles(const ORVEX_Renderer_OpenGL_Func& gl, const GpuProgramUniform& uniform) {
    const int stored = static_cast<int>(std::min<std::size_t>(uniform.ui64v.size(), INT_MAX));
    const int count = std::min(uniform.count, stored);
    if (count > 0) {
        send(gl.glUniformHandleui64vARB, uniform.location, count,
             reinterpret_cast<const GLuint64*>(uniform.ui64v.data()));
    }
}

// Types that no back end sends fall through.
void send(const ORVEX_Renderer_OpenGL_Func& gl, const GpuProgramUniform& u) {
    const GLint at = u.location;
    switch (u.type) {
    case GPU_SHADER_UNIFORM_1I:
        send(gl.glUniform1i, at, u.i.x);
        break;
    case GPU_SHADER_UNIFORM_2I:
        send(gl.glUniform2i, at, u.i.x, u.i.y);
        break;
    case GPU_SHADER_UNIFORM_3I:
        send(gl.glUniform3i, at, u.i.x, u.i.y, u.i.z);
        break;
    case GPU_SHADER_UNIFORM_4I:
        send(gl.glUniform4i, at, u.i.x, u.i.y, u.i.z, u.i.w);
        break;
    case GPU_SHADER_UNIFORM_1IV:
        send_array(gl.glUniform1iv, u, u.iv, 1);
        break;
    case GPU_SHADER_UNIFORM_2IV:
        send_array(gl.glUniform2iv, u, u.iv, 2);
        break;
    case GPU_SHADER_UNIFORM_3IV:
        send_array(gl.glUniform3iv, u, u.iv, 3);
        break;
    case GPU_SHADER_UNIFORM_4IV:
        send_array(gl.glUniform4iv, u, u.iv, 4);
        break;
    case GPU_SHADER_UNIFORM_1F:
        send(gl.glUniform1f, at, u.f.x);
        break;
    case GPU_SHADER_UNIFORM_2F:
        send(gl.glUniform2f, at, u.f.x, u.f.y);
        break;
    case GPU_SHADER_UNIFORM_3F:
        send(gl.glUniform3f, at, u.f.x, u.f.y, u.f.z);
        break;
    case GPU_SHADER_UNIFORM_4F:
        send(gl.glUniform4f, at, u.f.x, u.f.y, u.f.z, u.f.w);
        break;
    case GPU_SHADER_UNIFORM_1FV:
        send_array(gl.glUniform1fv, u, u.fv, 1);
        break;
    case GPU_SHADER_UNIFORM_2FV:
        send_array(gl.glUniform2fv, u, u.fv, 2);
        break;
    case GPU_SHADER_UNIFORM_3FV:
        send_array(gl.glUniform3fv, u, u.fv, 3);
        break;
    case GPU_SHADER_UNIFORM_4FV:
        send_array(gl.glUniform4fv, u, u.fv, 4);
        break;
    case GPU_SHADER_UNIFORM_1D:
        send(gl.glUniform1d, at, u.d.x);
        break;
    case GPU_SHADER_UNIFORM_2D:
        send(gl.glUniform2d, at, u.d.x, u.d.y);
        break;
    case GPU_SHADER_UNIFORM_3D:
        send(gl.glUniform3d, at, u.d.x, u.d.y, u.d.z);
        break;
    case GPU_SHADER_UNIFORM_4D:
        send(gl.glUniform4d, at, u.d.x, u.d.y, u.d.z, u.d.w);
        break;
    case GPU_SHADER_UNIFORM_1DV:
        send_array(gl.glUniform1dv, u, u.dv, 1);
        break;
    case GPU_SHADER_UNIFORM_2DV:
        send_array(gl.glUniform2dv, u, u.dv, 2);
        break;
    case GPU_SHADER_UNIFORM_3DV:
        send_array(gl.glUniform3dv, u, u.dv, 3);
        break;
    case GPU_SHADER_UNIFORM_4DV:
        send_array(gl.glUniform4dv, u, u.dv, 4);
        break;
    case GPU_SHADER_UNIFORM_3X3F:
        send(gl.glUniformMatrix3fv, at, 1, GLboolean(GL_FALSE), u.m3f);
        break;
    case GPU_SHADER_UNIFORM_4X4F:
        send(gl.glUniformMatrix4fv, at, 1, GLboolean(GL_FALSE), u.m4f.m);
        break;
    case GPU_SHADER_UNIFORM_1UI:
        send(gl.glUniform1ui, at, u.ui[0]);
        break;
    case GPU_SHADER_UNIFORM_2UI:
        send(gl.glUniform2ui, at, u.ui[0], u.ui[1]);
        break;
    case GPU_SHADER_UNIFORM_3UI:
        send(gl.glUniform3ui, at, u.ui[0], u.ui[1], u.ui[2]);
        break;
    case GPU_SHADER_UNIFORM_4UI:
        send(gl.glUniform4ui, at, u.ui[0], u.ui[1], u.ui[2], u.ui[3]);
        break;
    case GPU_SHADER_UNIFORM_1UI64:
        send(gl.glUniformHandleui64ARB, at, GLuint64(u.ui64));
        break;
    case GPU_SHADER_UNIFORM_1UI64V:
        send_handles(gl, u);
        break;
    case GPU_SHADER_UNIFORM_3X3D:
    case GPU_SHADER_UNIFORM_4X4D:
    case GPU_SHADER_UNIFORM_2UI64V:
    case GPU_SHADER_UNIFORM_3UI64V:
    case GPU_SHADER_UNIFORM_4UI64V:
        break;
    }
}

} // namespace

bool RendererOpenGL::gpu_program_bind_uniforms(GpuProgramData* program) {
    if (!program)
        return false;
    // Names that the program doesn't have are asked for at each bind.
    program->uniforms_optimized = false;
    gpu_program_optimize(program);
    for (unsigned long i = 0; i < program->num_uniforms && program->uniforms[i]; ++i) {
        GpuProgramUniform& uniform = *program->uniforms[i];
        if (uniform.dirty && uniform.location >= 0)
            send(gl, uniform);
        uniform.dirty = false;
    }
    return true;
}

} // namespace orvex
