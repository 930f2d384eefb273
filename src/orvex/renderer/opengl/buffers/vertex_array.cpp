#include "orvex/renderer/opengl/buffers/private/vertex_array.h"

#include "orvex/renderer/opengl/buffers/private/client_pointers.h"
#include "orvex/renderer/opengl/gl/private/gl_debug.h"

namespace orvex {

bool VertexArray::make(unsigned int buffer) {
    destroy();
    gl.glGenVertexArrays(1, &id);
    if (id == 0)
        return false;
    gl.glBindVertexArray(id);
    label_gl_object(gl, GL_VERTEX_ARRAY, id, "vertex array");
    gl.glBindBuffer(GL_ARRAY_BUFFER, buffer);
    recorded_buffer = buffer;
    return true;
}

void VertexArray::destroy() {
    if (id != 0 && gl.glDeleteVertexArrays)
        gl.glDeleteVertexArrays(1, &id);
    id = 0;
    recorded_buffer = 0;
    stale = false;
}

void point_attribute(const ORVEX_Renderer_OpenGL_Func& gl, int location, unsigned int dim,
                     unsigned long stride, unsigned long offset) {
    gl.glEnableVertexAttribArray(static_cast<GLuint>(location));
    gl.glVertexAttribPointer(static_cast<GLuint>(location), static_cast<GLint>(dim), GL_FLOAT,
                             GL_FALSE, static_cast<GLsizei>(stride), buffer_offset(offset));
}

} // namespace orvex
