#include "orvex/renderer/opengl/private/renderer_opengl.h"

#include "orvex/renderer/opengl/buffers/private/mesh_buffers.h"
#include "orvex/renderer/opengl/gl/private/gl_debug.h"
#include "orvex/renderer/opengl/gl/private/gl_enums.h"

namespace orvex {

bool RendererOpenGL::vertex_buffer_prepare(MeshData* mesh) {
    if (!mesh)
        return false;
    const bool ready = mesh->get_use_generic_vertex_attribs_state()
                           ? vertex_buffer_prepare_gl3(mesh)
                           : vertex_buffer_prepare_gl2(mesh);
    prepared_mesh = ready ? mesh : nullptr;
    return ready;
}

bool RendererOpenGL::vertex_buffer_prepare_separate_arrays(MeshData* mesh) {
    if (!mesh)
        return false;
    const bool ready = mesh->get_use_generic_vertex_attribs_state()
                           ? vertex_buffer_prepare_separate_arrays_gl3(mesh)
                           : vertex_buffer_prepare_separate_arrays_gl2(mesh);
    prepared_mesh = ready ? mesh : nullptr;
    return ready;
}

bool RendererOpenGL::vertex_buffer_draw(MeshData* mesh) {
    if (!mesh)
        return false;
    return mesh->get_use_generic_vertex_attribs_state() ? vertex_buffer_draw_gl3(mesh)
                                                        : vertex_buffer_draw_gl2(mesh);
}

bool RendererOpenGL::vertex_buffer_draw_with_shader_effect(MeshData*, GpuProgramData*) {
    return false;
}

bool RendererOpenGL::vertex_buffer_finish(MeshData* mesh) {
    if (!mesh)
        return false;
    prepared_mesh = nullptr;
    return mesh->get_use_generic_vertex_attribs_state() ? vertex_buffer_finish_gl3(mesh)
                                                        : vertex_buffer_finish_gl2(mesh);
}

bool RendererOpenGL::vertex_buffer_kill(MeshData* mesh) {
    if (!mesh || Thread() != mesh->thread)
        return false;
    if (prepared_mesh == mesh)
        prepared_mesh = nullptr;
    return mesh->get_use_generic_vertex_attribs_state() ? vertex_buffer_kill_gl3(mesh)
                                                        : vertex_buffer_kill_gl2(mesh);
}

unsigned int RendererOpenGL::delete_buffer(unsigned int id) {
    if (id == 0)
        return 0;
    client_arrays.forget_buffer(gl, id);
    gl.glDeleteBuffers(1, &id);
    return 0;
}

namespace {

/// Gives the buffer that is bound to `GL_ARRAY_BUFFER` a new store, and unbinds it.
void allocate_bound(const ORVEX_Renderer_OpenGL_Func& gl, unsigned long size, GLenum usage) {
    gl.glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(size), nullptr, usage);
    gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
}

} // namespace

bool RendererOpenGL::vertex_buffer_resize(MeshData* mesh) {
    if (!mesh || mesh->separate_vertex_arrays || mesh->vertex_buffer_id == 0 || !gl.glBindBuffer ||
        !gl.glBufferData)
        return false;
    const mesh_buffers::Context context{gl, forced_vertex_usage, forced_index_usage};
    const unsigned long size = mesh->get_vertex_elt_size() * mesh->num_vertices;
    gl.glBindBuffer(GL_ARRAY_BUFFER, mesh->vertex_buffer_id);
    allocate_bound(gl, size, mesh_buffers::vertex_usage(context, *mesh));
    mesh->gpu_state.vertex_buffer_bytes = size;
    return true;
}

void RendererOpenGL::force_buffer_object_usage(BUFFER_OBJECT_USAGE vertex_usage,
                                               BUFFER_OBJECT_USAGE index_usage) {
    forced_vertex_usage = vertex_usage;
    forced_index_usage = index_usage;
}

namespace {

GLenum forced_or(BUFFER_OBJECT_USAGE forced, BUFFER_OBJECT_USAGE usage) {
    return gl_buffer_usage(forced != BUFFER_USAGE_DEFAULT ? forced : usage);
}

} // namespace

unsigned int RendererOpenGL::vertex_buffer_create(unsigned long size, BUFFER_OBJECT_USAGE usage) {
    if (!gl.glGenBuffers || !gl.glBindBuffer || !gl.glBufferData)
        return 0;
    unsigned int id = 0;
    gl.glGenBuffers(1, &id);
    gl.glBindBuffer(GL_ARRAY_BUFFER, id);
    label_gl_object(gl, GL_BUFFER, id, "vertex buffer");
    allocate_bound(gl, size, forced_or(forced_vertex_usage, usage));
    return id;
}

bool RendererOpenGL::vertex_buffer_kill(unsigned int id) {
    if (id == 0 || !gl.glDeleteBuffers)
        return false;
    delete_buffer(id);
    return true;
}

bool RendererOpenGL::vertex_buffer_invalidate(unsigned int id, unsigned long size,
                                              BUFFER_OBJECT_USAGE usage) {
    if (id == 0 || !gl.glBindBuffer || !gl.glBufferData)
        return false;
    gl.glBindBuffer(GL_ARRAY_BUFFER, id);
    allocate_bound(gl, size, forced_or(forced_vertex_usage, usage));
    return true;
}

void* RendererOpenGL::vertex_buffer_map(unsigned int id) {
    if (id == 0 || !gl.glBindBuffer || !gl.glMapBuffer)
        return nullptr;
    gl.glBindBuffer(GL_ARRAY_BUFFER, id);
    return gl.glMapBuffer(GL_ARRAY_BUFFER, GL_WRITE_ONLY);
}

bool RendererOpenGL::vertex_buffer_unmap(unsigned int id) {
    if (id == 0 || !gl.glBindBuffer || !gl.glUnmapBuffer)
        return false;
    // Something may have bound another buffer since the map, and this one would stay mapped.
    gl.glBindBuffer(GL_ARRAY_BUFFER, id);
    gl.glUnmapBuffer(GL_ARRAY_BUFFER);
    gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
    return true;
}

} // namespace orvex
