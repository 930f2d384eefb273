#include "renderer/opengl/renderer_opengl.h"

namespace orvex {

void RendererOpenGL::gpu_program_set_uniform_1i(GpuProgramData*, char const*, int) {}

void RendererOpenGL::gpu_program_set_uniform_1f(GpuProgramData*, char const*, float) {}

void RendererOpenGL::gpu_program_set_uniform_2i(GpuProgramData*, char const*, int, int) {}

void RendererOpenGL::gpu_program_set_uniform_2f(GpuProgramData*, char const*, float, float) {}

void RendererOpenGL::gpu_program_set_uniform_3i(GpuProgramData*, char const*, int, int, int) {}

void RendererOpenGL::gpu_program_set_uniform_3f(GpuProgramData*, char const*, float, float, float) {
}

void RendererOpenGL::gpu_program_set_uniform_4i(GpuProgramData*, char const*, int, int, int, int) {}

void RendererOpenGL::gpu_program_set_uniform_1iv(GpuProgramData*, char const*, int*, int) {}

void RendererOpenGL::gpu_program_set_uniform_2iv(GpuProgramData*, char const*, int*, int) {}

void RendererOpenGL::gpu_program_set_uniform_3iv(GpuProgramData*, char const*, int*, int) {}

void RendererOpenGL::gpu_program_set_uniform_4iv(GpuProgramData*, char const*, int*, int) {}

void RendererOpenGL::gpu_program_set_uniform_4f(GpuProgramData*, char const*, float, float, float,
                                                float) {}

void RendererOpenGL::gpu_program_set_uniform_1fv(GpuProgramData*, char const*, float*, int) {}

void RendererOpenGL::gpu_program_set_uniform_2fv(GpuProgramData*, char const*, vec2*, int) {}

void RendererOpenGL::gpu_program_set_uniform_3fv(GpuProgramData*, char const*, vec3*, int) {}

void RendererOpenGL::gpu_program_set_uniform_4fv(GpuProgramData*, char const*, vec4*, int) {}

void RendererOpenGL::gpu_program_set_uniform_1dv(GpuProgramData*, char const*, double*, int) {}

void RendererOpenGL::gpu_program_set_uniform_2dv(GpuProgramData*, char const*, double*, int) {}

void RendererOpenGL::gpu_program_set_uniform_3dv(GpuProgramData*, char const*, double*, int) {}

void RendererOpenGL::gpu_program_set_uniform_4dv(GpuProgramData*, char const*, double*, int) {}

void RendererOpenGL::gpu_program_set_uniform_3x3fv(GpuProgramData*, char const*, float*, int) {}

void RendererOpenGL::gpu_program_set_uniform_4x4fv(GpuProgramData*, char const*, float*, int) {}

void RendererOpenGL::gpu_program_set_uniform_1i_loc(int, int) {}

void RendererOpenGL::gpu_program_set_uniform_1f_loc(int, float) {}

void RendererOpenGL::gpu_program_set_uniform_2i_loc(int, int, int) {}

void RendererOpenGL::gpu_program_set_uniform_2f_loc(int, float, float) {}

void RendererOpenGL::gpu_program_set_uniform_3i_loc(int, int, int, int) {}

void RendererOpenGL::gpu_program_set_uniform_3f(int, float, float, float) {}

void RendererOpenGL::gpu_program_set_uniform_4i_loc(int, int, int, int, int) {}

void RendererOpenGL::gpu_program_set_uniform_4f_loc(int, float, float, float, float) {}

void RendererOpenGL::gpu_program_set_uniform_4fv_loc(int, vec4*, int) {}

void RendererOpenGL::gpu_program_set_uniform_3x3fv_loc(int, float*, int) {}

void RendererOpenGL::gpu_program_set_uniform_4x4fv_loc(int, float*, int) {}

void RendererOpenGL::gpu_program_set_uniform_1ui64(GpuProgramData*, char const*,
                                                   unsigned long long) {}

void RendererOpenGL::gpu_program_set_uniform_1ui64v(GpuProgramData*, char const*,
                                                    unsigned long long*, int) {}

void RendererOpenGL::gpu_program_set_uniform_ui64_loc(int, unsigned long long) {}

void RendererOpenGL::gpu_program_set_uniform_ui64v_loc(int, unsigned long, unsigned long long*) {}

void RendererOpenGL::gpu_program_set_uniform_1ui(GpuProgramData*, char const*, unsigned int) {}

void RendererOpenGL::gpu_program_set_uniform_2ui(GpuProgramData*, char const*, unsigned int,
                                                 unsigned int) {}

void RendererOpenGL::gpu_program_set_uniform_3ui(GpuProgramData*, char const*, unsigned int,
                                                 unsigned int, unsigned int) {}

void RendererOpenGL::gpu_program_set_uniform_4ui(GpuProgramData*, char const*, unsigned int,
                                                 unsigned int, unsigned int, unsigned int) {}

void RendererOpenGL::gpu_program_set_uniform_1d(GpuProgramData*, char const*, double) {}

void RendererOpenGL::gpu_program_set_uniform_2d(GpuProgramData*, char const*, double, double) {}

void RendererOpenGL::gpu_program_set_uniform_3d(GpuProgramData*, char const*, double, double,
                                                double) {}

void RendererOpenGL::gpu_program_set_uniform_4d(GpuProgramData*, char const*, double, double,
                                                double, double) {}

bool RendererOpenGL::gpu_program_bind_uniforms(GpuProgramData*) {
    return false;
}

bool RendererOpenGL::gpu_program_optimize(GpuProgramData*) {
    return false;
}

} // namespace orvex
