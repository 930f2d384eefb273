#include "orvex/renderer/opengl/buffers/private/point_buffers.h"

#include "orvex/renderer/opengl/gl/private/gl_debug.h"

namespace orvex::point_buffers {

bool has_buffer_entries(const ORVEX_Renderer_OpenGL_Func& gl) {
    return has_entries(gl.glGenBuffers, gl.glBindBuffer, gl.glBufferData, gl.glBufferSubData);
}

bool has_gl2_entries(const ORVEX_Renderer_OpenGL_Func& gl) {
    return has_buffer_entries(gl) &&
           has_entries(gl.glEnableVertexAttribArray, gl.glDisableVertexAttribArray,
                       gl.glVertexAttribPointer);
}

bool has_gl3_entries(const ORVEX_Renderer_OpenGL_Func& gl) {
    return has_buffer_entries(gl) &&
           has_entries(gl.glGenVertexArrays, gl.glBindVertexArray, gl.glEnableVertexAttribArray,
                       gl.glVertexAttribPointer);
}

bool needs_storage(const Objects& objects, unsigned long bytes) {
    return objects.buffer == 0 || (objects.bytes != 0 && objects.bytes != bytes);
}

void allocate(const Context& context, const Objects& objects, unsigned long bytes, const void* data,
              GLenum usage, int renderer_id) {
    const ORVEX_Renderer_OpenGL_Func& gl = context.gl;
    if (objects.buffer == 0) {
        gl.glGenBuffers(1, &objects.buffer);
        objects.renderer_id = renderer_id;
        // A vertex array from before points into a buffer that is gone, whose name may have come
        // again just now.
        objects.stale = objects.vertex_array != 0;
    }
    gl.glBindBuffer(GL_ARRAY_BUFFER, objects.buffer);
    label_gl_object(gl, GL_BUFFER, objects.buffer, "vertices");
    gl.glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(bytes), data, usage);
    objects.bytes = bytes;
}

namespace {

/// One that a host made, over no buffer known here, is never changed.
bool must_record_anew(const Objects& objects) {
    return objects.stale ||
           (objects.recorded_buffer != 0 && objects.recorded_buffer != objects.buffer);
}

} // namespace

bool bind_vertex_array(const Context& context, const Objects& objects) {
    if (objects.vertex_array != 0 && !must_record_anew(objects)) {
        context.gl.glBindVertexArray(objects.vertex_array);
        return false;
    }
    delete_vertex_array(context, objects);
    context.gl.glGenVertexArrays(1, &objects.vertex_array);
    context.gl.glBindVertexArray(objects.vertex_array);
    label_gl_object(context.gl, GL_VERTEX_ARRAY, objects.vertex_array, "vertex array");
    context.gl.glBindBuffer(GL_ARRAY_BUFFER, objects.buffer);
    objects.recorded_buffer = objects.buffer;
    return true;
}

void point_attribute(const Context& context, int location, int dim, unsigned long stride,
                     unsigned long offset) {
    context.gl.glEnableVertexAttribArray(static_cast<GLuint>(location));
    context.gl.glVertexAttribPointer(static_cast<GLuint>(location), dim, GL_FLOAT, GL_FALSE,
                                     static_cast<GLsizei>(stride),
                                     mesh_buffers::buffer_offset(offset));
}

void delete_vertex_array(const Context& context, const Objects& objects) {
    if (objects.vertex_array != 0 && context.gl.glDeleteVertexArrays)
        context.gl.glDeleteVertexArrays(1, &objects.vertex_array);
    objects.vertex_array = 0;
    objects.recorded_buffer = 0;
    objects.stale = false;
}

} // namespace orvex::point_buffers
