#include "renderer/opengl/renderer_opengl.h"

namespace orvex {

bool RendererOpenGL::gpu_program_kill(GpuProgramData*) {
    return false;
}

bool RendererOpenGL::gpu_program_load_shader_from_memory(GpuProgramData*, GPU_SHADER_TYPE,
                                                         char const*, unsigned long) {
    return false;
}

bool RendererOpenGL::gpu_program_activate(GpuProgramData*) {
    return false;
}

bool RendererOpenGL::gpu_program_deactivate(GpuProgramData*) {
    return false;
}

GpuProgramData* RendererOpenGL::gpu_program_get_active_program() {
    return nullptr;
}

bool RendererOpenGL::gpu_program_update_core_vertex_attrib_locations(GpuProgramData*) {
    return false;
}

bool RendererOpenGL::gpu_program_update_user_vertex_attrib_locations_mesh(GpuProgramData*,
                                                                          MeshData*) {
    return false;
}

bool RendererOpenGL::gpu_program_update_user_vertex_attrib_locations_polyline(GpuProgramData*,
                                                                              PolylineData*) {
    return false;
}

bool RendererOpenGL::gpu_program_update_instancing_vertex_attrib_locations_mesh(GpuProgramData*,
                                                                                MeshData*) {
    return false;
}

bool RendererOpenGL::gpu_program_update_instancing_vertex_attrib_locations(GpuProgramData*) {
    return false;
}

bool RendererOpenGL::gpu_program_link(GpuProgramData*) {
    return false;
}

bool RendererOpenGL::gpu_program_get_validate_status(GpuProgramData*) {
    return false;
}

bool RendererOpenGL::gpu_program_run_compute(GpuProgramData*, unsigned int, unsigned int,
                                             unsigned int) {
    return false;
}

bool RendererOpenGL::gpu_program_get_shader_compile_status(GPU_SHADER_TYPE, char const*, char*,
                                                           unsigned long) {
    return false;
}

bool RendererOpenGL::gpu_program_recreate_program(GpuProgramData*) {
    return false;
}

bool RendererOpenGL::gpu_program_update_shader(GpuProgramData*, GPU_SHADER_TYPE, char const*,
                                               unsigned long) {
    return false;
}

int RendererOpenGL::gpu_program_get_vertex_attrib_location(GpuProgramData*, char const*) {
    return -1;
}

bool RendererOpenGL::gpu_program_bind_vertex_attrib_location(GpuProgramData*, char const*, int) {
    return false;
}

int RendererOpenGL::gpu_program_get_uniform_location(GpuProgramData*, char const*) {
    return -1;
}

} // namespace orvex
