#include "orvex/renderer/opengl/private/renderer_opengl.h"

#include "orvex/renderer/opengl/gl/private/gl_debug.h"
#include "orvex/renderer/opengl/gl/private/gl_enums.h"
#include "orvex/renderer/records/uniform_buffer_data.h"

namespace orvex {

void RendererOpenGL::force_uniform_buffer_object_usage(BUFFER_OBJECT_USAGE usage) {
    forced_uniform_usage = usage;
}

void RendererOpenGL::bind_uniform_buffer(unsigned int id) {
    gl.glBindBuffer(GL_UNIFORM_BUFFER, id);
    bound_uniform_buffer = id;
}

bool RendererOpenGL::uniform_buffer_initialize(UniformBufferData* block, unsigned int program) {
    if (!block || !has_entries(gl.glGetUniformBlockIndex, gl.glGetActiveUniformBlockiv,
                               gl.glUniformBlockBinding, gl.glGenBuffers, gl.glDeleteBuffers,
                               gl.glBindBuffer, gl.glBufferData, gl.glBindBufferBase))
        return false;
    const GLuint index = gl.glGetUniformBlockIndex(program, block->name);
    if (index == GL_INVALID_INDEX)
        return false;
    uniform_buffer_kill(block);
    block->block_index = index;
    GLint size = 0;
    gl.glGetActiveUniformBlockiv(program, index, GL_UNIFORM_BLOCK_DATA_SIZE, &size);
    block->size = static_cast<unsigned int>(size);
    gl.glGenBuffers(1, &block->buffer);
    bind_uniform_buffer(block->buffer);
    label_gl_object(gl, GL_BUFFER, block->buffer, "uniforms");
    // Without a forced usage the buffer is for reading, whatever its name says.
    const BUFFER_OBJECT_USAGE usage = forced_uniform_usage != BUFFER_USAGE_DEFAULT
                                          ? forced_uniform_usage
                                          : BUFFER_USAGE_STATIC_READ;
    gl.glBufferData(GL_UNIFORM_BUFFER, size, nullptr, gl_buffer_usage(usage));
    gl.glBindBufferBase(GL_UNIFORM_BUFFER, block->binding, block->buffer);
    gl.glUniformBlockBinding(program, index, block->binding);
    bind_uniform_buffer(0);
    return true;
}

bool RendererOpenGL::uniform_buffer_kill(UniformBufferData* block) {
    if (!block || block->buffer == 0 || gl.glDeleteBuffers == nullptr)
        return false;
    gl.glDeleteBuffers(1, &block->buffer);
    if (bound_uniform_buffer == block->buffer)
        bound_uniform_buffer = 0;
    block->buffer = 0;
    block->bound = false;
    block->mapped = nullptr;
    block->mapped_size = 0;
    return true;
}

void* RendererOpenGL::uniform_buffer_map(UniformBufferData* block) {
    if (!block || block->buffer == 0 || !has_entries(gl.glBindBuffer, gl.glMapBuffer))
        return nullptr;
    uniform_buffer_bind(block);
    // A block that is bound stays so when another one is; what is mapped has to be this one's.
    if (bound_uniform_buffer != block->buffer)
        bind_uniform_buffer(block->buffer);
    block->mapped = gl.glMapBuffer(GL_UNIFORM_BUFFER, GL_WRITE_ONLY);
    block->mapped_size = block->mapped ? block->size : 0;
    return block->mapped;
}

void* RendererOpenGL::uniform_buffer_map_range(UniformBufferData* block, unsigned long offset,
                                               unsigned long length) {
    if (!block || block->buffer == 0 || gl.glMapBufferRange == nullptr)
        return nullptr;
    block->mapped = gl.glMapBufferRange(GL_UNIFORM_BUFFER, static_cast<GLintptr>(offset),
                                        static_cast<GLsizeiptr>(length),
                                        GL_MAP_WRITE_BIT | GL_MAP_INVALIDATE_BUFFER_BIT);
    block->mapped_size = block->mapped ? length : 0;
    return block->mapped;
}

bool RendererOpenGL::uniform_buffer_unmap(UniformBufferData* block) {
    if (!block)
        return false;
    block->mapped = nullptr;
    block->mapped_size = 0;
    if (block->buffer == 0 || !has_entries(gl.glBindBuffer, gl.glUnmapBuffer))
        return false;
    bind_uniform_buffer(block->buffer);
    return gl.glUnmapBuffer(GL_UNIFORM_BUFFER) == GL_TRUE;
}

bool RendererOpenGL::uniform_buffer_bind(UniformBufferData* block) {
    if (!block || block->buffer == 0 || gl.glBindBuffer == nullptr)
        return false;
    if (!block->bound) {
        bind_uniform_buffer(block->buffer);
        block->bound = true;
    }
    return true;
}

bool RendererOpenGL::uniform_buffer_bind_base(UniformBufferData* block) {
    if (!block || block->buffer == 0 || gl.glBindBufferBase == nullptr)
        return false;
    if (!block->bound) {
        gl.glBindBufferBase(GL_UNIFORM_BUFFER, block->binding, block->buffer);
        bound_uniform_buffer = block->buffer;
        block->bound = true;
    }
    return true;
}

bool RendererOpenGL::uniform_buffer_unbind(UniformBufferData* block) {
    if (!has_entries(gl.glBindBuffer, gl.glBindBufferBase))
        return false;
    if (block) {
        block->bound = false;
        gl.glBindBufferBase(GL_UNIFORM_BUFFER, block->binding, 0);
    }
    bind_uniform_buffer(0);
    return true;
}

} // namespace orvex
