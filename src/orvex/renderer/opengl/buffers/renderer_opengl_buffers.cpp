#include "orvex/renderer/opengl/private/renderer_opengl.h"

#include "orvex/renderer/opengl/gl/private/gl_debug.h"
#include "orvex/renderer/opengl/gl/private/gl_enums.h"

// Shader storage and atomic counter buffers, by their ids, and the barrier between them.

namespace orvex {

namespace {

constexpr unsigned long COUNTER_SIZE = 4;

BUFFER_OBJECT_USAGE choose(BUFFER_OBJECT_USAGE forced, BUFFER_OBJECT_USAGE asked) {
    return forced != BUFFER_USAGE_DEFAULT ? forced : asked;
}

bool can_make_buffers(const ORVEX_Renderer_OpenGL_Func& gl) {
    return has_entries(gl.glGenBuffers, gl.glBindBuffer, gl.glBufferData);
}

bool kill_buffer(const ORVEX_Renderer_OpenGL_Func& gl, GLuint id) {
    if (id == 0 || gl.glDeleteBuffers == nullptr)
        return false;
    gl.glDeleteBuffers(1, &id);
    return true;
}

bool bind_buffer(const ORVEX_Renderer_OpenGL_Func& gl, GLenum target, GLuint id) {
    if (gl.glBindBuffer == nullptr)
        return false;
    gl.glBindBuffer(target, id);
    return true;
}

bool bind_buffer_base(const ORVEX_Renderer_OpenGL_Func& gl, GLenum target, GLuint binding,
                      GLuint id) {
    if (gl.glBindBufferBase == nullptr)
        return false;
    gl.glBindBufferBase(target, binding, id);
    return true;
}

// Makes a buffer and leaves it bound.
GLuint create_buffer(const ORVEX_Renderer_OpenGL_Func& gl, GLenum target, unsigned long size,
                     BUFFER_OBJECT_USAGE usage, const void* data) {
    GLuint id = 0;
    gl.glGenBuffers(1, &id);
    gl.glBindBuffer(target, id);
    label_gl_object(gl, GL_BUFFER, id, target == GL_ATOMIC_COUNTER_BUFFER ? "counters" : "storage");
    gl.glBufferData(target, static_cast<GLsizeiptr>(size), data, gl_buffer_usage(usage));
    return id;
}

void* map_range(const ORVEX_Renderer_OpenGL_Func& gl, GLenum target, unsigned long offset,
                unsigned long length, GLbitfield access) {
    return gl.glMapBufferRange(target, static_cast<GLintptr>(offset),
                               static_cast<GLsizeiptr>(length), access);
}

} // namespace

void RendererOpenGL::memory_barrier(unsigned int bits) {
    if (gl.glMemoryBarrier != nullptr)
        gl.glMemoryBarrier(gl_memory_barriers(bits));
}

void RendererOpenGL::force_shader_storage_buffer_object_usage(BUFFER_OBJECT_USAGE usage) {
    forced_storage_usage = usage;
}

unsigned int RendererOpenGL::shader_storage_buffer_create(unsigned long size,
                                                          BUFFER_OBJECT_USAGE usage, void* data) {
    if (!can_make_buffers(gl))
        return 0;
    const GLuint id = create_buffer(gl, GL_SHADER_STORAGE_BUFFER, size,
                                    choose(forced_storage_usage, usage), data);
    gl.glBindBuffer(GL_SHADER_STORAGE_BUFFER, 0);
    return id;
}

/// The vertices of a point pool may lie in it, and arrays point there.
bool RendererOpenGL::shader_storage_buffer_kill(unsigned int id) {
    return RendererOpenGL::vertex_buffer_kill(id);
}

void* RendererOpenGL::shader_storage_buffer_map(unsigned int id) {
    if (id == 0 || !has_entries(gl.glBindBuffer, gl.glMapBuffer))
        return nullptr;
    gl.glBindBuffer(GL_SHADER_STORAGE_BUFFER, id);
    return gl.glMapBuffer(GL_SHADER_STORAGE_BUFFER, GL_READ_WRITE);
}

void* RendererOpenGL::shader_storage_buffer_map_range(unsigned int id, unsigned long offset,
                                                      unsigned long length) {
    if (id == 0 || !has_entries(gl.glBindBuffer, gl.glMapBufferRange))
        return nullptr;
    gl.glBindBuffer(GL_SHADER_STORAGE_BUFFER, id);
    return map_range(gl, GL_SHADER_STORAGE_BUFFER, offset, length,
                     GL_MAP_WRITE_BIT | GL_MAP_INVALIDATE_BUFFER_BIT);
}

bool RendererOpenGL::shader_storage_buffer_unmap(unsigned int id) {
    if (id == 0 || !has_entries(gl.glBindBuffer, gl.glUnmapBuffer))
        return false;
    // Anything may have been bound since the map; without this, the buffer would stay mapped.
    gl.glBindBuffer(GL_SHADER_STORAGE_BUFFER, id);
    return gl.glUnmapBuffer(GL_SHADER_STORAGE_BUFFER) == GL_TRUE;
}

bool RendererOpenGL::shader_storage_buffer_bind(unsigned int id) {
    return bind_buffer(gl, GL_SHADER_STORAGE_BUFFER, id);
}

bool RendererOpenGL::shader_storage_buffer_bind_base(unsigned int id, unsigned int binding) {
    return bind_buffer_base(gl, GL_SHADER_STORAGE_BUFFER, binding, id);
}

void RendererOpenGL::atomic_counter_force_buffer_object_usage(BUFFER_OBJECT_USAGE usage) {
    forced_atomic_usage = usage;
}

unsigned int RendererOpenGL::atomic_counter_create_buffer(unsigned long num_counters,
                                                          BUFFER_OBJECT_USAGE usage,
                                                          unsigned int binding, void* data) {
    if (!can_make_buffers(gl) || gl.glBindBufferBase == nullptr)
        return 0;
    // Forcing takes effect only together with that of shader storage buffers.
    const bool forced = forced_storage_usage != BUFFER_USAGE_DEFAULT;
    const GLuint id = create_buffer(gl, GL_ATOMIC_COUNTER_BUFFER, num_counters * COUNTER_SIZE,
                                    forced ? forced_atomic_usage : usage, data);
    gl.glBindBufferBase(GL_ATOMIC_COUNTER_BUFFER, binding, id);
    gl.glBindBuffer(GL_ATOMIC_COUNTER_BUFFER, 0);
    return id;
}

bool RendererOpenGL::atomic_counter_kill_buffer(unsigned int id) {
    return kill_buffer(gl, id);
}

bool RendererOpenGL::atomic_counter_buffer_bind(unsigned int id) {
    return bind_buffer(gl, GL_ATOMIC_COUNTER_BUFFER, id);
}

bool RendererOpenGL::atomic_counter_set_value(unsigned int, unsigned int value,
                                              unsigned long index) {
    if (gl.glBufferSubData == nullptr)
        return false;
    gl.glBufferSubData(GL_ATOMIC_COUNTER_BUFFER, static_cast<GLintptr>(index * COUNTER_SIZE),
                       COUNTER_SIZE, &value);
    return true;
}

unsigned int RendererOpenGL::atomic_counter_get_value(unsigned int, unsigned long index) {
    GLuint value = 0;
    if (gl.glGetBufferSubData != nullptr) {
        gl.glGetBufferSubData(GL_ATOMIC_COUNTER_BUFFER, static_cast<GLintptr>(index * COUNTER_SIZE),
                              COUNTER_SIZE, &value);
    }
    return value;
}

void* RendererOpenGL::atomic_counter_buffer_map(unsigned int id) {
    if (id == 0 || gl.glMapBuffer == nullptr)
        return nullptr;
    return gl.glMapBuffer(GL_ATOMIC_COUNTER_BUFFER, GL_READ_WRITE);
}

void* RendererOpenGL::atomic_counter_buffer_map_range(unsigned int id, unsigned long offset,
                                                      unsigned long length) {
    if (id == 0 || gl.glMapBufferRange == nullptr)
        return nullptr;
    return map_range(gl, GL_ATOMIC_COUNTER_BUFFER, offset, length,
                     GL_MAP_WRITE_BIT | GL_MAP_INVALIDATE_BUFFER_BIT | GL_MAP_UNSYNCHRONIZED_BIT);
}

bool RendererOpenGL::atomic_counter_buffer_unmap(unsigned int id) {
    if (id == 0 || gl.glUnmapBuffer == nullptr)
        return false;
    return gl.glUnmapBuffer(GL_ATOMIC_COUNTER_BUFFER) == GL_TRUE;
}

bool RendererOpenGL::atomic_counter_buffer_bind_base(unsigned int id, unsigned int binding) {
    return bind_buffer_base(gl, GL_ATOMIC_COUNTER_BUFFER, binding, id);
}

} // namespace orvex
