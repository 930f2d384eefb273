#include "orvex/renderer/opengl/buffers/private/buffer_store.h"

#include "orvex/renderer/opengl/gl/private/gl_debug.h"

namespace orvex {

bool BufferStore::allocate(unsigned long wanted, const void* data, GLenum usage) {
    const bool is_new = !exists();
    if (is_new)
        gl.glGenBuffers(1, &id);
    if (!exists())
        return false;
    bind();
    label_gl_object(gl, GL_BUFFER, id, use);
    gl.glBufferData(target, static_cast<GLsizeiptr>(wanted), data, usage);
    bytes = wanted;
    return is_new;
}

void BufferStore::resize_bound(unsigned long wanted, GLenum usage) {
    gl.glBufferData(target, static_cast<GLsizeiptr>(wanted), nullptr, usage);
    bytes = wanted;
}

unsigned int create_buffer(const ORVEX_Renderer_OpenGL_Func& gl, GLenum target, const char* use,
                           unsigned long bytes, const void* data, GLenum usage) {
    unsigned int id = 0;
    unsigned long allocated = 0;
    BufferStore(gl, target, use, id, allocated).allocate(bytes, data, usage);
    return id;
}

bool refuse_draws(const GlState& state, const void* record) {
    state.context().refused_record = record;
    return false;
}

void delete_buffer(GlState& state, unsigned int& id) {
    if (id == 0)
        return;
    ContextState& context = state.context();
    if (context.client_arrays.reads(id)) {
        // They are no part of the vertex array of an unfinished prepare, which comes back.
        const unsigned int array = context.bound_array;
        state.release_vertex_array();
        context.client_arrays.forget_buffer(state.gl, id);
        context.bound_array = array;
        if (array != 0)
            state.gl.glBindVertexArray(array);
    }
    state.gl.glDeleteBuffers(1, &id);
    id = 0;
}

} // namespace orvex
