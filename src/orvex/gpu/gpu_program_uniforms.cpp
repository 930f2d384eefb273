#include "orvex/gpu/gpu_program.h"

#include "orvex/math/vec2.h"
#include "orvex/math/vec3.h"
#include "orvex/math/vec4.h"
#include "orvex/renderer/records/gpu_program_data.h"
#include "orvex/renderer/renderer.h"

// With a renderer a value acts at once, on the program that is active then; without one it waits in
// this program's table.

namespace orvex {

bool GpuProgram::set_uniform_1i(Renderer* renderer, const char* name, int x) {
    if (!renderer)
        return data_->set_uniform_1i(name, x);
    renderer->gpu_program_set_uniform_1i(data_, name, x);
    return true;
}

bool GpuProgram::set_uniform_2i(Renderer* renderer, const char* name, int x, int y) {
    if (!renderer)
        return data_->set_uniform_2i(name, x, y);
    renderer->gpu_program_set_uniform_2i(data_, name, x, y);
    return true;
}

bool GpuProgram::set_uniform_3i(Renderer* renderer, const char* name, int x, int y, int z) {
    if (!renderer)
        return data_->set_uniform_3i(name, x, y, z);
    renderer->gpu_program_set_uniform_3i(data_, name, x, y, z);
    return true;
}

bool GpuProgram::set_uniform_4i(Renderer* renderer, const char* name, int x, int y, int z, int w) {
    if (!renderer)
        return data_->set_uniform_4i(name, x, y, z, w);
    renderer->gpu_program_set_uniform_4i(data_, name, x, y, z, w);
    return true;
}

bool GpuProgram::set_uniform_1f(Renderer* renderer, const char* name, float x) {
    if (!renderer)
        return data_->set_uniform_1f(name, x);
    renderer->gpu_program_set_uniform_1f(data_, name, x);
    return true;
}

bool GpuProgram::set_uniform_2f(Renderer* renderer, const char* name, float x, float y) {
    if (!renderer)
        return data_->set_uniform_2f(name, x, y);
    renderer->gpu_program_set_uniform_2f(data_, name, x, y);
    return true;
}

bool GpuProgram::set_uniform_3f(Renderer* renderer, const char* name, float x, float y, float z) {
    if (!renderer)
        return data_->set_uniform_3f(name, x, y, z);
    renderer->gpu_program_set_uniform_3f(data_, name, x, y, z);
    return true;
}

bool GpuProgram::set_uniform_4f(Renderer* renderer, const char* name, float x, float y, float z,
                                float w) {
    if (!renderer)
        return data_->set_uniform_4f(name, x, y, z, w);
    renderer->gpu_program_set_uniform_4f(data_, name, x, y, z, w);
    return true;
}

bool GpuProgram::set_uniform_1d(Renderer* renderer, const char* name, double x) {
    if (!renderer)
        return data_->set_uniform_1d(name, x);
    renderer->gpu_program_set_uniform_1d(data_, name, x);
    return true;
}

bool GpuProgram::set_uniform_2d(Renderer* renderer, const char* name, double x, double y) {
    if (!renderer)
        return data_->set_uniform_2d(name, x, y);
    renderer->gpu_program_set_uniform_2d(data_, name, x, y);
    return true;
}

bool GpuProgram::set_uniform_3d(Renderer* renderer, const char* name, double x, double y,
                                double z) {
    if (!renderer)
        return data_->set_uniform_3d(name, x, y, z);
    renderer->gpu_program_set_uniform_3d(data_, name, x, y, z);
    return true;
}

bool GpuProgram::set_uniform_4d(Renderer* renderer, const char* name, double x, double y, double z,
                                double w) {
    if (!renderer)
        return data_->set_uniform_4d(name, x, y, z, w);
    renderer->gpu_program_set_uniform_4d(data_, name, x, y, z, w);
    return true;
}

bool GpuProgram::set_uniform_1ui(Renderer* renderer, const char* name, unsigned int x) {
    if (!renderer)
        return data_->set_uniform_1ui(name, x);
    renderer->gpu_program_set_uniform_1ui(data_, name, x);
    return true;
}

bool GpuProgram::set_uniform_2ui(Renderer* renderer, const char* name, unsigned int x,
                                 unsigned int y) {
    if (!renderer)
        return data_->set_uniform_2ui(name, x, y);
    renderer->gpu_program_set_uniform_2ui(data_, name, x, y);
    return true;
}

bool GpuProgram::set_uniform_3ui(Renderer* renderer, const char* name, unsigned int x,
                                 unsigned int y, unsigned int z) {
    if (!renderer)
        return data_->set_uniform_3ui(name, x, y, z);
    renderer->gpu_program_set_uniform_3ui(data_, name, x, y, z);
    return true;
}

bool GpuProgram::set_uniform_4ui(Renderer* renderer, const char* name, unsigned int x,
                                 unsigned int y, unsigned int z, unsigned int w) {
    if (!renderer)
        return data_->set_uniform_4ui(name, x, y, z, w);
    renderer->gpu_program_set_uniform_4ui(data_, name, x, y, z, w);
    return true;
}

bool GpuProgram::set_uniform_1ui64(Renderer* renderer, const char* name, unsigned long long value) {
    if (!renderer)
        return data_->set_uniform_1ui64(name, value);
    renderer->gpu_program_set_uniform_1ui64(data_, name, value);
    return true;
}

bool GpuProgram::set_uniform_1iv(Renderer* renderer, const char* name, const int* values,
                                 int count) {
    if (!renderer)
        return data_->set_uniform_1iv(name, values, count);
    renderer->gpu_program_set_uniform_1iv(data_, name, const_cast<int*>(values), count);
    return true;
}

bool GpuProgram::set_uniform_2iv(Renderer* renderer, const char* name, const int* values,
                                 int count) {
    if (!renderer)
        return data_->set_uniform_2iv(name, values, count);
    renderer->gpu_program_set_uniform_2iv(data_, name, const_cast<int*>(values), count);
    return true;
}

bool GpuProgram::set_uniform_3iv(Renderer* renderer, const char* name, const int* values,
                                 int count) {
    if (!renderer)
        return data_->set_uniform_3iv(name, values, count);
    renderer->gpu_program_set_uniform_3iv(data_, name, const_cast<int*>(values), count);
    return true;
}

bool GpuProgram::set_uniform_4iv(Renderer* renderer, const char* name, const int* values,
                                 int count) {
    if (!renderer)
        return data_->set_uniform_4iv(name, values, count);
    renderer->gpu_program_set_uniform_4iv(data_, name, const_cast<int*>(values), count);
    return true;
}

bool GpuProgram::set_uniform_1fv(Renderer* renderer, const char* name, const float* values,
                                 int count) {
    if (!renderer)
        return data_->set_uniform_1fv(name, values, count);
    renderer->gpu_program_set_uniform_1fv(data_, name, const_cast<float*>(values), count);
    return true;
}

bool GpuProgram::set_uniform_2fv(Renderer* renderer, const char* name, const vec2* values,
                                 int count) {
    if (!renderer)
        return data_->set_uniform_2fv(name, values, count);
    renderer->gpu_program_set_uniform_2fv(data_, name, const_cast<vec2*>(values), count);
    return true;
}

bool GpuProgram::set_uniform_3fv(Renderer* renderer, const char* name, const vec3* values,
                                 int count) {
    if (!renderer)
        return data_->set_uniform_3fv(name, values, count);
    renderer->gpu_program_set_uniform_3fv(data_, name, const_cast<vec3*>(values), count);
    return true;
}

bool GpuProgram::set_uniform_4fv(Renderer* renderer, const char* name, const vec4* values,
                                 int count) {
    if (!renderer)
        return data_->set_uniform_4fv(name, values, count);
    renderer->gpu_program_set_uniform_4fv(data_, name, const_cast<vec4*>(values), count);
    return true;
}

bool GpuProgram::set_uniform_1dv(Renderer* renderer, const char* name, const double* values,
                                 int count) {
    if (!renderer)
        return data_->set_uniform_1dv(name, values, count);
    renderer->gpu_program_set_uniform_1dv(data_, name, const_cast<double*>(values), count);
    return true;
}

bool GpuProgram::set_uniform_2dv(Renderer* renderer, const char* name, const double* values,
                                 int count) {
    if (!renderer)
        return data_->set_uniform_2dv(name, values, count);
    renderer->gpu_program_set_uniform_2dv(data_, name, const_cast<double*>(values), count);
    return true;
}

bool GpuProgram::set_uniform_3dv(Renderer* renderer, const char* name, const double* values,
                                 int count) {
    if (!renderer)
        return data_->set_uniform_3dv(name, values, count);
    renderer->gpu_program_set_uniform_3dv(data_, name, const_cast<double*>(values), count);
    return true;
}

bool GpuProgram::set_uniform_4dv(Renderer* renderer, const char* name, const double* values,
                                 int count) {
    if (!renderer)
        return data_->set_uniform_4dv(name, values, count);
    renderer->gpu_program_set_uniform_4dv(data_, name, const_cast<double*>(values), count);
    return true;
}

bool GpuProgram::set_uniform_1ui64v(Renderer* renderer, const char* name,
                                    const unsigned long long* values, int count) {
    if (!renderer)
        return data_->set_uniform_1ui64v(name, values, count);
    renderer->gpu_program_set_uniform_1ui64v(data_, name, const_cast<unsigned long long*>(values),
                                             count);
    return true;
}

bool GpuProgram::set_uniform_3x3fv(Renderer* renderer, const char* name, const float* values,
                                   int count) {
    if (!renderer)
        return data_->set_uniform_3x3f(name, values);
    renderer->gpu_program_set_uniform_3x3fv(data_, name, const_cast<float*>(values), count);
    return true;
}

bool GpuProgram::set_uniform_4x4fv(Renderer* renderer, const char* name, const float* values,
                                   int count) {
    if (!renderer)
        return data_->set_uniform_4x4f(name, values);
    renderer->gpu_program_set_uniform_4x4fv(data_, name, const_cast<float*>(values), count);
    return true;
}

} // namespace orvex
