#include "renderer/opengl/renderer_opengl.h"

namespace orvex {

bool RendererOpenGL::vertex_buffer_prepare(MeshData*) {
    return false;
}

bool RendererOpenGL::vertex_buffer_prepare_separate_arrays(MeshData*) {
    return false;
}

bool RendererOpenGL::vertex_buffer_draw(MeshData*) {
    return false;
}

bool RendererOpenGL::vertex_buffer_draw_with_shader_effect(MeshData*, GpuProgramData*) {
    return false;
}

bool RendererOpenGL::vertex_buffer_finish(MeshData*) {
    return false;
}

bool RendererOpenGL::vertex_buffer_kill(MeshData*) {
    return false;
}

bool RendererOpenGL::vertex_buffer_resize(MeshData*) {
    return false;
}

void RendererOpenGL::force_buffer_object_usage(BUFFER_OBJECT_USAGE, BUFFER_OBJECT_USAGE) {}

unsigned int RendererOpenGL::vertex_buffer_create(unsigned long, BUFFER_OBJECT_USAGE) {
    return 0;
}

bool RendererOpenGL::vertex_buffer_kill(unsigned int) {
    return false;
}

bool RendererOpenGL::vertex_buffer_invalidate(unsigned int, unsigned long, BUFFER_OBJECT_USAGE) {
    return false;
}

void* RendererOpenGL::vertex_buffer_map(unsigned int) {
    return nullptr;
}

bool RendererOpenGL::vertex_buffer_unmap(unsigned int) {
    return false;
}

} // namespace orvex
