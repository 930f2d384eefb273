#include "fake_renderer.h"

namespace orvex_test {

bool FakeRenderer::gpu_program_kill(orvex::GpuProgramData* program) {
    record("gpu_program_kill", {text(program)});
    return result("gpu_program_kill");
}

bool FakeRenderer::gpu_program_load_shader_from_memory(orvex::GpuProgramData* program,
                                                       orvex::GPU_SHADER_TYPE type,
                                                       const char* source, unsigned long size) {
    record("gpu_program_load_shader_from_memory",
           {text(program), text(type), text(source), text(size)});
    return result("gpu_program_load_shader_from_memory");
}

bool FakeRenderer::gpu_program_activate(orvex::GpuProgramData* program) {
    record("gpu_program_activate", {text(program)});
    if (!result("gpu_program_activate"))
        return false;
    active_program = program;
    return result("gpu_program_activate");
}

bool FakeRenderer::gpu_program_deactivate(orvex::GpuProgramData* program) {
    record("gpu_program_deactivate", {text(program)});
    active_program = nullptr;
    return result("gpu_program_deactivate");
}

orvex::GpuProgramData* FakeRenderer::gpu_program_get_active_program() {
    record("gpu_program_get_active_program", {});
    return active_program;
}

bool FakeRenderer::gpu_program_update_core_vertex_attrib_locations(orvex::GpuProgramData* program) {
    record("gpu_program_update_core_vertex_attrib_locations", {text(program)});
    return result("gpu_program_update_core_vertex_attrib_locations");
}

bool FakeRenderer::gpu_program_update_user_vertex_attrib_locations_mesh(
    orvex::GpuProgramData* program, orvex::MeshData* mesh) {
    record("gpu_program_update_user_vertex_attrib_locations_mesh", {text(program), text(mesh)});
    return result("gpu_program_update_user_vertex_attrib_locations_mesh");
}

bool FakeRenderer::gpu_program_update_user_vertex_attrib_locations_polyline(
    orvex::GpuProgramData* program, orvex::PolylineData* polyline) {
    record("gpu_program_update_user_vertex_attrib_locations_polyline",
           {text(program), text(polyline)});
    return result("gpu_program_update_user_vertex_attrib_locations_polyline");
}

bool FakeRenderer::gpu_program_update_instancing_vertex_attrib_locations_mesh(
    orvex::GpuProgramData* program, orvex::MeshData* mesh) {
    record("gpu_program_update_instancing_vertex_attrib_locations_mesh",
           {text(program), text(mesh)});
    return result("gpu_program_update_instancing_vertex_attrib_locations_mesh");
}

bool FakeRenderer::gpu_program_update_instancing_vertex_attrib_locations(
    orvex::GpuProgramData* program) {
    record("gpu_program_update_instancing_vertex_attrib_locations", {text(program)});
    return result("gpu_program_update_instancing_vertex_attrib_locations");
}

bool FakeRenderer::gpu_program_link(orvex::GpuProgramData* program) {
    record("gpu_program_link", {text(program)});
    return result("gpu_program_link");
}

bool FakeRenderer::gpu_program_get_validate_status(orvex::GpuProgramData* program) {
    record("gpu_program_get_validate_status", {text(program)});
    return result("gpu_program_get_validate_status");
}

bool FakeRenderer::gpu_program_run_compute(orvex::GpuProgramData* program, unsigned int x,
                                           unsigned int y, unsigned int z) {
    record("gpu_program_run_compute", {text(program), text(x), text(y), text(z)});
    return result("gpu_program_run_compute");
}

bool FakeRenderer::gpu_program_get_shader_compile_status(orvex::GPU_SHADER_TYPE type,
                                                         const char* source, char* message,
                                                         unsigned long message_size) {
    record("gpu_program_get_shader_compile_status",
           {text(type), text(source), text(message), text(message_size)});
    return result("gpu_program_get_shader_compile_status");
}

bool FakeRenderer::gpu_program_recreate_program(orvex::GpuProgramData* program) {
    record("gpu_program_recreate_program", {text(program)});
    return result("gpu_program_recreate_program");
}

bool FakeRenderer::gpu_program_update_shader(orvex::GpuProgramData* program,
                                             orvex::GPU_SHADER_TYPE type, const char* source,
                                             unsigned long size) {
    record("gpu_program_update_shader", {text(program), text(type), text(source), text(size)});
    return result("gpu_program_update_shader");
}

int FakeRenderer::gpu_program_get_vertex_attrib_location(orvex::GpuProgramData* program,
                                                         const char* name) {
    record("gpu_program_get_vertex_attrib_location", {text(program), text(name)});
    return numbers.count("gpu_program_get_vertex_attrib_location")
               ? int(number("gpu_program_get_vertex_attrib_location"))
               : -1;
}

bool FakeRenderer::gpu_program_bind_vertex_attrib_location(orvex::GpuProgramData* program,
                                                           const char* name, int location) {
    record("gpu_program_bind_vertex_attrib_location", {text(program), text(name), text(location)});
    return result("gpu_program_bind_vertex_attrib_location");
}

int FakeRenderer::gpu_program_get_uniform_location(orvex::GpuProgramData* program,
                                                   const char* name) {
    record("gpu_program_get_uniform_location", {text(program), text(name)});
    return numbers.count("gpu_program_get_uniform_location")
               ? int(number("gpu_program_get_uniform_location"))
               : -1;
}

void FakeRenderer::gpu_program_set_uniform_1i(orvex::GpuProgramData* program, const char* name,
                                              int value) {
    record("gpu_program_set_uniform_1i", {text(program), text(name), text(value)});
}

void FakeRenderer::gpu_program_set_uniform_1f(orvex::GpuProgramData* program, const char* name,
                                              float value) {
    record("gpu_program_set_uniform_1f", {text(program), text(name), text(value)});
}

void FakeRenderer::gpu_program_set_uniform_2i(orvex::GpuProgramData* program, const char* name,
                                              int x, int y) {
    record("gpu_program_set_uniform_2i", {text(program), text(name), text(x), text(y)});
}

void FakeRenderer::gpu_program_set_uniform_2f(orvex::GpuProgramData* program, const char* name,
                                              float x, float y) {
    record("gpu_program_set_uniform_2f", {text(program), text(name), text(x), text(y)});
}

void FakeRenderer::gpu_program_set_uniform_3i(orvex::GpuProgramData* program, const char* name,
                                              int x, int y, int z) {
    record("gpu_program_set_uniform_3i", {text(program), text(name), text(x), text(y), text(z)});
}

void FakeRenderer::gpu_program_set_uniform_3f(orvex::GpuProgramData* program, const char* name,
                                              float x, float y, float z) {
    record("gpu_program_set_uniform_3f", {text(program), text(name), text(x), text(y), text(z)});
}

void FakeRenderer::gpu_program_set_uniform_4i(orvex::GpuProgramData* program, const char* name,
                                              int x, int y, int z, int w) {
    record("gpu_program_set_uniform_4i",
           {text(program), text(name), text(x), text(y), text(z), text(w)});
}

void FakeRenderer::gpu_program_set_uniform_1iv(orvex::GpuProgramData* program, const char* name,
                                               int* values, int count) {
    record("gpu_program_set_uniform_1iv", {text(program), text(name), text(values), text(count)});
}

void FakeRenderer::gpu_program_set_uniform_2iv(orvex::GpuProgramData* program, const char* name,
                                               int* values, int count) {
    record("gpu_program_set_uniform_2iv", {text(program), text(name), text(values), text(count)});
}

void FakeRenderer::gpu_program_set_uniform_3iv(orvex::GpuProgramData* program, const char* name,
                                               int* values, int count) {
    record("gpu_program_set_uniform_3iv", {text(program), text(name), text(values), text(count)});
}

void FakeRenderer::gpu_program_set_uniform_4iv(orvex::GpuProgramData* program, const char* name,
                                               int* values, int count) {
    record("gpu_program_set_uniform_4iv", {text(program), text(name), text(values), text(count)});
}

void FakeRenderer::gpu_program_set_uniform_4f(orvex::GpuProgramData* program, const char* name,
                                              float x, float y, float z, float w) {
    record("gpu_program_set_uniform_4f",
           {text(program), text(name), text(x), text(y), text(z), text(w)});
}

void FakeRenderer::gpu_program_set_uniform_1fv(orvex::GpuProgramData* program, const char* name,
                                               float* values, int count) {
    record("gpu_program_set_uniform_1fv", {text(program), text(name), text(values), text(count)});
}

void FakeRenderer::gpu_program_set_uniform_2fv(orvex::GpuProgramData* program, const char* name,
                                               orvex::vec2* values, int count) {
    record("gpu_program_set_uniform_2fv", {text(program), text(name), text(values), text(count)});
}

void FakeRenderer::gpu_program_set_uniform_3fv(orvex::GpuProgramData* program, const char* name,
                                               orvex::vec3* values, int count) {
    record("gpu_program_set_uniform_3fv", {text(program), text(name), text(values), text(count)});
}

void FakeRenderer::gpu_program_set_uniform_4fv(orvex::GpuProgramData* program, const char* name,
                                               orvex::vec4* values, int count) {
    record("gpu_program_set_uniform_4fv", {text(program), text(name), text(values), text(count)});
}

void FakeRenderer::gpu_program_set_uniform_1dv(orvex::GpuProgramData* program, const char* name,
                                               double* values, int count) {
    record("gpu_program_set_uniform_1dv", {text(program), text(name), text(values), text(count)});
}

void FakeRenderer::gpu_program_set_uniform_2dv(orvex::GpuProgramData* program, const char* name,
                                               double* values, int count) {
    record("gpu_program_set_uniform_2dv", {text(program), text(name), text(values), text(count)});
}

void FakeRenderer::gpu_program_set_uniform_3dv(orvex::GpuProgramData* program, const char* name,
                                               double* values, int count) {
    record("gpu_program_set_uniform_3dv", {text(program), text(name), text(values), text(count)});
}

void FakeRenderer::gpu_program_set_uniform_4dv(orvex::GpuProgramData* program, const char* name,
                                               double* values, int count) {
    record("gpu_program_set_uniform_4dv", {text(program), text(name), text(values), text(count)});
}

void FakeRenderer::gpu_program_set_uniform_3x3fv(orvex::GpuProgramData* program, const char* name,
                                                 float* values, int count) {
    record("gpu_program_set_uniform_3x3fv", {text(program), text(name), text(values), text(count)});
}

void FakeRenderer::gpu_program_set_uniform_4x4fv(orvex::GpuProgramData* program, const char* name,
                                                 float* values, int count) {
    record("gpu_program_set_uniform_4x4fv", {text(program), text(name), text(values), text(count)});
}

void FakeRenderer::gpu_program_set_uniform_1i_loc(int location, int value) {
    record("gpu_program_set_uniform_1i_loc", {text(location), text(value)});
}

void FakeRenderer::gpu_program_set_uniform_1f_loc(int location, float value) {
    record("gpu_program_set_uniform_1f_loc", {text(location), text(value)});
}

void FakeRenderer::gpu_program_set_uniform_2i_loc(int location, int x, int y) {
    record("gpu_program_set_uniform_2i_loc", {text(location), text(x), text(y)});
}

void FakeRenderer::gpu_program_set_uniform_2f_loc(int location, float x, float y) {
    record("gpu_program_set_uniform_2f_loc", {text(location), text(x), text(y)});
}

void FakeRenderer::gpu_program_set_uniform_3i_loc(int location, int x, int y, int z) {
    record("gpu_program_set_uniform_3i_loc", {text(location), text(x), text(y), text(z)});
}

void FakeRenderer::gpu_program_set_uniform_3f(int location, float x, float y, float z) {
    record("gpu_program_set_uniform_3f", {text(location), text(x), text(y), text(z)});
}

void FakeRenderer::gpu_program_set_uniform_4i_loc(int location, int x, int y, int z, int w) {
    record("gpu_program_set_uniform_4i_loc", {text(location), text(x), text(y), text(z), text(w)});
}

void FakeRenderer::gpu_program_set_uniform_4f_loc(int location, float x, float y, float z,
                                                  float w) {
    record("gpu_program_set_uniform_4f_loc", {text(location), text(x), text(y), text(z), text(w)});
}

void FakeRenderer::gpu_program_set_uniform_4fv_loc(int location, orvex::vec4* values, int count) {
    record("gpu_program_set_uniform_4fv_loc", {text(location), text(values), text(count)});
}

void FakeRenderer::gpu_program_set_uniform_3x3fv_loc(int location, float* values, int count) {
    record("gpu_program_set_uniform_3x3fv_loc", {text(location), text(values), text(count)});
}

void FakeRenderer::gpu_program_set_uniform_4x4fv_loc(int location, float* values, int count) {
    record("gpu_program_set_uniform_4x4fv_loc", {text(location), text(values), text(count)});
}

void FakeRenderer::gpu_program_set_uniform_1ui64(orvex::GpuProgramData* program, const char* name,
                                                 unsigned long long value) {
    record("gpu_program_set_uniform_1ui64", {text(program), text(name), text(value)});
}

void FakeRenderer::gpu_program_set_uniform_1ui64v(orvex::GpuProgramData* program, const char* name,
                                                  unsigned long long* values, int count) {
    record("gpu_program_set_uniform_1ui64v",
           {text(program), text(name), text(values), text(count)});
}

void FakeRenderer::gpu_program_set_uniform_ui64_loc(int location, unsigned long long value) {
    record("gpu_program_set_uniform_ui64_loc", {text(location), text(value)});
}

void FakeRenderer::gpu_program_set_uniform_ui64v_loc(int location, unsigned long count,
                                                     unsigned long long* values) {
    record("gpu_program_set_uniform_ui64v_loc", {text(location), text(count), text(values)});
}

void FakeRenderer::gpu_program_set_uniform_1ui(orvex::GpuProgramData* program, const char* name,
                                               unsigned int value) {
    record("gpu_program_set_uniform_1ui", {text(program), text(name), text(value)});
}

void FakeRenderer::gpu_program_set_uniform_2ui(orvex::GpuProgramData* program, const char* name,
                                               unsigned int x, unsigned int y) {
    record("gpu_program_set_uniform_2ui", {text(program), text(name), text(x), text(y)});
}

void FakeRenderer::gpu_program_set_uniform_3ui(orvex::GpuProgramData* program, const char* name,
                                               unsigned int x, unsigned int y, unsigned int z) {
    record("gpu_program_set_uniform_3ui", {text(program), text(name), text(x), text(y), text(z)});
}

void FakeRenderer::gpu_program_set_uniform_4ui(orvex::GpuProgramData* program, const char* name,
                                               unsigned int x, unsigned int y, unsigned int z,
                                               unsigned int w) {
    record("gpu_program_set_uniform_4ui",
           {text(program), text(name), text(x), text(y), text(z), text(w)});
}

void FakeRenderer::gpu_program_set_uniform_1d(orvex::GpuProgramData* program, const char* name,
                                              double value) {
    record("gpu_program_set_uniform_1d", {text(program), text(name), text(value)});
}

void FakeRenderer::gpu_program_set_uniform_2d(orvex::GpuProgramData* program, const char* name,
                                              double x, double y) {
    record("gpu_program_set_uniform_2d", {text(program), text(name), text(x), text(y)});
}

void FakeRenderer::gpu_program_set_uniform_3d(orvex::GpuProgramData* program, const char* name,
                                              double x, double y, double z) {
    record("gpu_program_set_uniform_3d", {text(program), text(name), text(x), text(y), text(z)});
}

void FakeRenderer::gpu_program_set_uniform_4d(orvex::GpuProgramData* program, const char* name,
                                              double x, double y, double z, double w) {
    record("gpu_program_set_uniform_4d",
           {text(program), text(name), text(x), text(y), text(z), text(w)});
}

bool FakeRenderer::gpu_program_bind_uniforms(orvex::GpuProgramData* program) {
    record("gpu_program_bind_uniforms", {text(program)});
    return result("gpu_program_bind_uniforms");
}

bool FakeRenderer::gpu_program_optimize(orvex::GpuProgramData* program) {
    record("gpu_program_optimize", {text(program)});
    return result("gpu_program_optimize");
}

} // namespace orvex_test
