// What the contract asks of buffers by id and of uniform buffers, handed to their families.

#include "orvex/renderer/opengl/private/renderer_opengl.h"

namespace orvex {

// Vertex buffers

void RendererOpenGL::force_buffer_object_usage(BUFFER_OBJECT_USAGE vertex_usage,
                                               BUFFER_OBJECT_USAGE index_usage) {
    buffers.force_vertex_usage(vertex_usage, index_usage);
}

unsigned int RendererOpenGL::vertex_buffer_create(unsigned long size, BUFFER_OBJECT_USAGE usage) {
    return buffers.create_vertices(size, usage);
}

bool RendererOpenGL::vertex_buffer_kill(unsigned int id) {
    return buffers.kill_vertices(id);
}

bool RendererOpenGL::vertex_buffer_invalidate(unsigned int id, unsigned long size,
                                              BUFFER_OBJECT_USAGE usage) {
    return buffers.invalidate_vertices(id, size, usage);
}

void* RendererOpenGL::vertex_buffer_map(unsigned int id) {
    return buffers.map_vertices(id);
}

bool RendererOpenGL::vertex_buffer_unmap(unsigned int id) {
    return buffers.unmap_vertices(id);
}

// Shader storage buffers

void RendererOpenGL::force_shader_storage_buffer_object_usage(BUFFER_OBJECT_USAGE usage) {
    buffers.force_storage_usage(usage);
}

unsigned int RendererOpenGL::shader_storage_buffer_create(unsigned long size,
                                                          BUFFER_OBJECT_USAGE usage, void* data) {
    return buffers.create_storage(size, usage, data);
}

bool RendererOpenGL::shader_storage_buffer_kill(unsigned int id) {
    // The vertices of a point pool may lie in it, and arrays point there.
    return buffers.kill_vertices(id);
}

void* RendererOpenGL::shader_storage_buffer_map(unsigned int id) {
    return buffers.map_storage(id);
}

void* RendererOpenGL::shader_storage_buffer_map_range(unsigned int id, unsigned long offset,
                                                      unsigned long length) {
    return buffers.map_storage_range(id, offset, length);
}

bool RendererOpenGL::shader_storage_buffer_unmap(unsigned int id) {
    return buffers.unmap_storage(id);
}

bool RendererOpenGL::shader_storage_buffer_bind(unsigned int id) {
    return buffers.bind_storage(id);
}

bool RendererOpenGL::shader_storage_buffer_bind_base(unsigned int id, unsigned int binding) {
    return buffers.bind_storage_base(id, binding);
}

void RendererOpenGL::memory_barrier(unsigned int bits) {
    buffers.memory_barrier(bits);
}

// Atomic counters

void RendererOpenGL::atomic_counter_force_buffer_object_usage(BUFFER_OBJECT_USAGE usage) {
    buffers.force_counter_usage(usage);
}

unsigned int RendererOpenGL::atomic_counter_create_buffer(unsigned long num_counters,
                                                          BUFFER_OBJECT_USAGE usage,
                                                          unsigned int binding, void* data) {
    return buffers.create_counters(num_counters, usage, binding, data);
}

bool RendererOpenGL::atomic_counter_kill_buffer(unsigned int id) {
    return buffers.kill_counters(id);
}

bool RendererOpenGL::atomic_counter_buffer_bind(unsigned int id) {
    return buffers.bind_counters(id);
}

bool RendererOpenGL::atomic_counter_set_value(unsigned int, unsigned int value,
                                              unsigned long index) {
    return buffers.set_counter(value, index);
}

unsigned int RendererOpenGL::atomic_counter_get_value(unsigned int, unsigned long index) {
    return buffers.get_counter(index);
}

void* RendererOpenGL::atomic_counter_buffer_map(unsigned int id) {
    return buffers.map_counters(id);
}

void* RendererOpenGL::atomic_counter_buffer_map_range(unsigned int id, unsigned long offset,
                                                      unsigned long length) {
    return buffers.map_counters_range(id, offset, length);
}

bool RendererOpenGL::atomic_counter_buffer_unmap(unsigned int id) {
    return buffers.unmap_counters(id);
}

bool RendererOpenGL::atomic_counter_buffer_bind_base(unsigned int id, unsigned int binding) {
    return buffers.bind_counters_base(id, binding);
}

// Uniform buffers

void RendererOpenGL::force_uniform_buffer_object_usage(BUFFER_OBJECT_USAGE usage) {
    uniform_buffers.force_usage(usage);
}

bool RendererOpenGL::uniform_buffer_initialize(UniformBufferData* block, unsigned int program) {
    return uniform_buffers.initialize(block, program);
}

bool RendererOpenGL::uniform_buffer_kill(UniformBufferData* block) {
    return uniform_buffers.kill(block);
}

void* RendererOpenGL::uniform_buffer_map(UniformBufferData* block) {
    return uniform_buffers.map(block);
}

void* RendererOpenGL::uniform_buffer_map_range(UniformBufferData* block, unsigned long offset,
                                               unsigned long length) {
    return uniform_buffers.map_range(block, offset, length);
}

bool RendererOpenGL::uniform_buffer_unmap(UniformBufferData* block) {
    return uniform_buffers.unmap(block);
}

bool RendererOpenGL::uniform_buffer_bind(UniformBufferData* block) {
    return uniform_buffers.bind(block);
}

bool RendererOpenGL::uniform_buffer_bind_base(UniformBufferData* block) {
    return uniform_buffers.bind_base(block);
}

bool RendererOpenGL::uniform_buffer_unbind(UniformBufferData* block) {
    return uniform_buffers.unbind(block);
}

} // namespace orvex
