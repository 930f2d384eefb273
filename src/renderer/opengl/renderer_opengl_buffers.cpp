#include "renderer/opengl/renderer_opengl.h"

namespace orvex {

void RendererOpenGL::force_shader_storage_buffer_object_usage(BUFFER_OBJECT_USAGE) {}

unsigned int RendererOpenGL::shader_storage_buffer_create(unsigned long, BUFFER_OBJECT_USAGE,
                                                          void*) {
    return 0;
}

bool RendererOpenGL::shader_storage_buffer_kill(unsigned int) {
    return false;
}

void* RendererOpenGL::shader_storage_buffer_map(unsigned int) {
    return nullptr;
}

void* RendererOpenGL::shader_storage_buffer_map_range(unsigned int, unsigned long, unsigned long) {
    return nullptr;
}

bool RendererOpenGL::shader_storage_buffer_unmap(unsigned int) {
    return false;
}

bool RendererOpenGL::shader_storage_buffer_bind(unsigned int) {
    return false;
}

bool RendererOpenGL::shader_storage_buffer_bind_base(unsigned int, unsigned int) {
    return false;
}

void RendererOpenGL::memory_barrier(unsigned int) {}

void RendererOpenGL::atomic_counter_force_buffer_object_usage(BUFFER_OBJECT_USAGE) {}

unsigned int RendererOpenGL::atomic_counter_create_buffer(unsigned long, BUFFER_OBJECT_USAGE,
                                                          unsigned int, void*) {
    return 0;
}

bool RendererOpenGL::atomic_counter_kill_buffer(unsigned int) {
    return false;
}

bool RendererOpenGL::atomic_counter_buffer_bind(unsigned int) {
    return false;
}

bool RendererOpenGL::atomic_counter_set_value(unsigned int, unsigned int, unsigned long) {
    return false;
}

unsigned int RendererOpenGL::atomic_counter_get_value(unsigned int, unsigned long) {
    return 0;
}

void* RendererOpenGL::atomic_counter_buffer_map(unsigned int) {
    return nullptr;
}

void* RendererOpenGL::atomic_counter_buffer_map_range(unsigned int, unsigned long, unsigned long) {
    return nullptr;
}

bool RendererOpenGL::atomic_counter_buffer_unmap(unsigned int) {
    return false;
}

bool RendererOpenGL::atomic_counter_buffer_bind_base(unsigned int, unsigned int) {
    return false;
}

bool RendererOpenGL::uniform_buffer_initialize(UniformBufferData*, unsigned int) {
    return false;
}

void RendererOpenGL::force_uniform_buffer_object_usage(BUFFER_OBJECT_USAGE) {}

bool RendererOpenGL::uniform_buffer_kill(UniformBufferData*) {
    return false;
}

void* RendererOpenGL::uniform_buffer_map(UniformBufferData*) {
    return nullptr;
}

void* RendererOpenGL::uniform_buffer_map_range(UniformBufferData*, unsigned long, unsigned long) {
    return nullptr;
}

bool RendererOpenGL::uniform_buffer_unmap(UniformBufferData*) {
    return false;
}

bool RendererOpenGL::uniform_buffer_bind(UniformBufferData*) {
    return false;
}

bool RendererOpenGL::uniform_buffer_bind_base(UniformBufferData*) {
    return false;
}

bool RendererOpenGL::uniform_buffer_unbind(UniformBufferData*) {
    return false;
}

} // namespace orvex
