#include "orvex/renderer/opengl/private/renderer_opengl.h"

// The programs and vertex attributes of the contract, handed on to their families.

namespace orvex {

// Stages

bool RendererOpenGL::gpu_program_load_shader_from_memory(GpuProgramData* program,
                                                         GPU_SHADER_TYPE type, const char* source,
                                                         unsigned long size) {
    return programs.load_stage(program, type, source, size);
}

bool RendererOpenGL::gpu_program_get_shader_compile_status(GPU_SHADER_TYPE type, const char* source,
                                                           char* message,
                                                           unsigned long message_size) {
    return programs.shaders.compiles(type, source, message, message_size);
}

bool RendererOpenGL::gpu_program_update_shader(GpuProgramData* program, GPU_SHADER_TYPE type,
                                               const char* source, unsigned long size) {
    return programs.replace_stage(program, type, source, size);
}

unsigned int RendererOpenGL::_gpu_program_create_gl_shader(GPU_SHADER_TYPE type) {
    return programs.shaders.make(type);
}

const char* RendererOpenGL::_gpu_program_get_shader_info_log(unsigned int shader) {
    return programs.shaders.log(shader);
}

// Programs

bool RendererOpenGL::gpu_program_recreate_program(GpuProgramData* program) {
    return programs.remake(program);
}

bool RendererOpenGL::gpu_program_kill(GpuProgramData* program) {
    return programs.kill(program);
}

bool RendererOpenGL::gpu_program_link(GpuProgramData* program) {
    return programs.link(program);
}

const char* RendererOpenGL::_gpu_program_get_info_log(unsigned int program) {
    return programs.log(program);
}

bool RendererOpenGL::gpu_program_activate(GpuProgramData* program) {
    return programs.activate(program);
}

bool RendererOpenGL::gpu_program_deactivate(GpuProgramData*) {
    return programs.deactivate();
}

GpuProgramData* RendererOpenGL::gpu_program_get_active_program() {
    return ctx.active_program;
}

bool RendererOpenGL::gpu_program_get_validate_status(GpuProgramData* program) {
    return programs.validate(program);
}

bool RendererOpenGL::gpu_program_run_compute(GpuProgramData* program, unsigned int x,
                                             unsigned int y, unsigned int z) {
    return programs.dispatch(program, x, y, z);
}

// Vertex attributes

int RendererOpenGL::gpu_program_get_vertex_attrib_location(GpuProgramData* program,
                                                           const char* name) {
    return attributes.location(program, name);
}

bool RendererOpenGL::gpu_program_bind_vertex_attrib_location(GpuProgramData* program,
                                                             const char* name, int location) {
    return attributes.bind_location(program, name, location);
}

int RendererOpenGL::_bind_core_vertex_attrib_location_v2(GpuProgramData* program, const char* name,
                                                         int index) {
    return attributes.move(program, name, index);
}

int RendererOpenGL::_bind_core_vertex_attrib_location(GpuProgramData* program, unsigned int index) {
    return attributes.move_standard(program, index);
}

bool RendererOpenGL::gpu_program_update_core_vertex_attrib_locations(GpuProgramData* program) {
    return attributes.move_core(program);
}

bool RendererOpenGL::gpu_program_update_instancing_vertex_attrib_locations(
    GpuProgramData* program) {
    return attributes.move_instancing(program);
}

bool RendererOpenGL::gpu_program_update_instancing_vertex_attrib_locations_mesh(
    GpuProgramData* program, MeshData* mesh) {
    return attributes.match_instancing(program, mesh);
}

bool RendererOpenGL::gpu_program_update_user_vertex_attrib_locations_mesh(GpuProgramData* program,
                                                                          MeshData* mesh) {
    return attributes.look_up_user(program, mesh);
}

bool RendererOpenGL::gpu_program_update_user_vertex_attrib_locations_polyline(
    GpuProgramData* program, PolylineData* polyline) {
    return attributes.look_up_user(program, polyline);
}

} // namespace orvex
