#include "orvex/renderer/opengl/buffers/private/buffer_family.h"

#include "orvex/renderer/opengl/buffers/private/buffer_store.h"
#include "orvex/renderer/opengl/gl/private/gl_enums.h"
#include "orvex/renderer/opengl/state/private/gl_state.h"

// Each operation asks for all its entry points before its first call, and gives its failure result
// without one of them. A buffer that was made is left unbound.

namespace orvex {

namespace {

constexpr unsigned long counter_bytes = 4;

BUFFER_OBJECT_USAGE forced_or(BUFFER_OBJECT_USAGE forced, BUFFER_OBJECT_USAGE asked) {
    return forced != BUFFER_USAGE_DEFAULT ? forced : asked;
}

bool can_make_buffers(const ORVEX_Renderer_OpenGL_Func& gl) {
    return has_entries(gl.glGenBuffers, gl.glBindBuffer, gl.glBufferData);
}

bool bind_buffer(const ORVEX_Renderer_OpenGL_Func& gl, GLenum target, GLuint id) {
    if (!gl.glBindBuffer)
        return false;
    gl.glBindBuffer(target, id);
    return true;
}

bool bind_buffer_base(const ORVEX_Renderer_OpenGL_Func& gl, GLenum target, GLuint binding,
                      GLuint id) {
    if (!gl.glBindBufferBase)
        return false;
    gl.glBindBufferBase(target, binding, id);
    return true;
}

/// Makes a buffer by its id.
unsigned int make(const ORVEX_Renderer_OpenGL_Func& gl, GLenum target, const char* use,
                  unsigned long size, BUFFER_OBJECT_USAGE usage, const void* data) {
    return create_buffer(gl, target, use, size, data, gl_buffer_usage(usage));
}

void* map_range(const ORVEX_Renderer_OpenGL_Func& gl, GLenum target, unsigned long offset,
                unsigned long length, GLbitfield access) {
    return gl.glMapBufferRange(target, static_cast<GLintptr>(offset),
                               static_cast<GLsizeiptr>(length), access);
}

} // namespace

// Vertex buffers

void BufferFamily::force_vertex_usage(BUFFER_OBJECT_USAGE vertex_usage,
                                      BUFFER_OBJECT_USAGE index_usage) {
    state.forced_vertex_usage = vertex_usage;
    state.forced_index_usage = index_usage;
}

unsigned int BufferFamily::create_vertices(unsigned long size, BUFFER_OBJECT_USAGE usage) {
    if (!can_make_buffers(state.gl))
        return 0;
    const unsigned int id = make(state.gl, GL_ARRAY_BUFFER, "vertex buffer", size,
                                 forced_or(state.forced_vertex_usage, usage), nullptr);
    state.gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
    return id;
}

bool BufferFamily::kill_vertices(unsigned int id) {
    if (id == 0 || !state.gl.glDeleteBuffers)
        return false;
    state.look_at_context();
    delete_buffer(state, id);
    return true;
}

bool BufferFamily::invalidate_vertices(unsigned int id, unsigned long size,
                                       BUFFER_OBJECT_USAGE usage) {
    const ORVEX_Renderer_OpenGL_Func& gl = state.gl;
    if (id == 0 || !has_entries(gl.glBindBuffer, gl.glBufferData))
        return false;
    gl.glBindBuffer(GL_ARRAY_BUFFER, id);
    gl.glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(size), nullptr,
                    gl_buffer_usage(forced_or(state.forced_vertex_usage, usage)));
    gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
    return true;
}

void* BufferFamily::map_vertices(unsigned int id) {
    if (id == 0 || !has_entries(state.gl.glBindBuffer, state.gl.glMapBuffer))
        return nullptr;
    state.gl.glBindBuffer(GL_ARRAY_BUFFER, id);
    return state.gl.glMapBuffer(GL_ARRAY_BUFFER, GL_WRITE_ONLY);
}

bool BufferFamily::unmap_vertices(unsigned int id) {
    const ORVEX_Renderer_OpenGL_Func& gl = state.gl;
    if (id == 0 || !has_entries(gl.glBindBuffer, gl.glUnmapBuffer))
        return false;
    // Something may have bound another buffer since the map, and this one would stay mapped.
    gl.glBindBuffer(GL_ARRAY_BUFFER, id);
    gl.glUnmapBuffer(GL_ARRAY_BUFFER);
    gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
    return true;
}

// Shader storage buffers

void BufferFamily::force_storage_usage(BUFFER_OBJECT_USAGE usage) {
    state.forced_storage_usage = usage;
}

unsigned int BufferFamily::create_storage(unsigned long size, BUFFER_OBJECT_USAGE usage,
                                          void* data) {
    if (!can_make_buffers(state.gl))
        return 0;
    const unsigned int id = make(state.gl, GL_SHADER_STORAGE_BUFFER, "storage", size,
                                 forced_or(state.forced_storage_usage, usage), data);
    state.gl.glBindBuffer(GL_SHADER_STORAGE_BUFFER, 0);
    return id;
}

void* BufferFamily::map_storage(unsigned int id) {
    if (id == 0 || !has_entries(state.gl.glBindBuffer, state.gl.glMapBuffer))
        return nullptr;
    state.gl.glBindBuffer(GL_SHADER_STORAGE_BUFFER, id);
    return state.gl.glMapBuffer(GL_SHADER_STORAGE_BUFFER, GL_READ_WRITE);
}

void* BufferFamily::map_storage_range(unsigned int id, unsigned long offset, unsigned long length) {
    if (id == 0 || !has_entries(state.gl.glBindBuffer, state.gl.glMapBufferRange))
        return nullptr;
    state.gl.glBindBuffer(GL_SHADER_STORAGE_BUFFER, id);
    return map_range(state.gl, GL_SHADER_STORAGE_BUFFER, offset, length,
                     GL_MAP_WRITE_BIT | GL_MAP_INVALIDATE_BUFFER_BIT);
}

bool BufferFamily::unmap_storage(unsigned int id) {
    if (id == 0 || !has_entries(state.gl.glBindBuffer, state.gl.glUnmapBuffer))
        return false;
    // Anything may have been bound since the map; without this, the buffer would stay mapped.
    state.gl.glBindBuffer(GL_SHADER_STORAGE_BUFFER, id);
    return state.gl.glUnmapBuffer(GL_SHADER_STORAGE_BUFFER) == GL_TRUE;
}

bool BufferFamily::bind_storage(unsigned int id) {
    return bind_buffer(state.gl, GL_SHADER_STORAGE_BUFFER, id);
}

bool BufferFamily::bind_storage_base(unsigned int id, unsigned int binding) {
    return bind_buffer_base(state.gl, GL_SHADER_STORAGE_BUFFER, binding, id);
}

// Atomic counters

void BufferFamily::force_counter_usage(BUFFER_OBJECT_USAGE usage) {
    state.forced_atomic_usage = usage;
}

unsigned int BufferFamily::create_counters(unsigned long num_counters, BUFFER_OBJECT_USAGE usage,
                                           unsigned int binding, void* data) {
    const ORVEX_Renderer_OpenGL_Func& gl = state.gl;
    if (!can_make_buffers(gl) || !gl.glBindBufferBase)
        return 0;
    // Forcing takes effect only together with that of shader storage buffers.
    const bool forced = state.forced_storage_usage != BUFFER_USAGE_DEFAULT;
    const unsigned int id =
        make(gl, GL_ATOMIC_COUNTER_BUFFER, "counters", num_counters * counter_bytes,
             forced ? state.forced_atomic_usage : usage, data);
    if (id == 0)
        return 0;
    gl.glBindBufferBase(GL_ATOMIC_COUNTER_BUFFER, binding, id);
    gl.glBindBuffer(GL_ATOMIC_COUNTER_BUFFER, 0);
    return id;
}

bool BufferFamily::kill_counters(unsigned int id) {
    return kill_vertices(id); // arrays may point into any buffer
}

bool BufferFamily::bind_counters(unsigned int id) {
    return bind_buffer(state.gl, GL_ATOMIC_COUNTER_BUFFER, id);
}

bool BufferFamily::bind_counters_base(unsigned int id, unsigned int binding) {
    return bind_buffer_base(state.gl, GL_ATOMIC_COUNTER_BUFFER, binding, id);
}

bool BufferFamily::set_counter(unsigned int value, unsigned long index) {
    if (!state.gl.glBufferSubData)
        return false;
    state.gl.glBufferSubData(GL_ATOMIC_COUNTER_BUFFER, static_cast<GLintptr>(index * counter_bytes),
                             counter_bytes, &value);
    return true;
}

unsigned int BufferFamily::get_counter(unsigned long index) {
    GLuint value = 0;
    if (state.gl.glGetBufferSubData)
        state.gl.glGetBufferSubData(GL_ATOMIC_COUNTER_BUFFER,
                                    static_cast<GLintptr>(index * counter_bytes), counter_bytes,
                                    &value);
    return value;
}

void* BufferFamily::map_counters(unsigned int id) {
    if (id == 0 || !state.gl.glMapBuffer)
        return nullptr;
    return state.gl.glMapBuffer(GL_ATOMIC_COUNTER_BUFFER, GL_READ_WRITE);
}

void* BufferFamily::map_counters_range(unsigned int id, unsigned long offset,
                                       unsigned long length) {
    if (id == 0 || !state.gl.glMapBufferRange)
        return nullptr;
    return map_range(state.gl, GL_ATOMIC_COUNTER_BUFFER, offset, length,
                     GL_MAP_WRITE_BIT | GL_MAP_INVALIDATE_BUFFER_BIT | GL_MAP_UNSYNCHRONIZED_BIT);
}

bool BufferFamily::unmap_counters(unsigned int id) {
    if (id == 0 || !state.gl.glUnmapBuffer)
        return false;
    return state.gl.glUnmapBuffer(GL_ATOMIC_COUNTER_BUFFER) == GL_TRUE;
}

void BufferFamily::memory_barrier(unsigned int bits) {
    if (state.gl.glMemoryBarrier)
        state.gl.glMemoryBarrier(gl_memory_barriers(bits));
}

} // namespace orvex
