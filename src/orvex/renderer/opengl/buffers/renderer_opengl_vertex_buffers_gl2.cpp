#include "orvex/renderer/opengl/private/renderer_opengl.h"

#include <cstring>
#include <memory>
#include <new>

#include "orvex/renderer/opengl/buffers/private/client_pointers.h"
#include "orvex/renderer/opengl/gl/private/gl_debug.h"

namespace orvex {

using namespace mesh_buffers;

namespace {

bool has_gl2_entries(const ORVEX_Renderer_OpenGL_Func& gl) {
    return gl.glGenBuffers && gl.glBindBuffer && gl.glBufferData && gl.glBufferSubData &&
           gl.glEnableVertexAttribArray && gl.glDisableVertexAttribArray &&
           gl.glVertexAttribPointer;
}

/// Binds the vertex buffer, making it or making it anew when the record needs another size.
/// @return true if its contents are to be uploaded whole
bool bind_vertices(const Context& context, MeshData& mesh, unsigned long bytes, int renderer_id) {
    const ORVEX_Renderer_OpenGL_Func& gl = context.gl;
    const unsigned long allocated = mesh.gpu_state.vertex_buffer_bytes;
    const bool is_new = mesh.vertex_buffer_id == 0;
    if (is_new) {
        gl.glGenBuffers(1, &mesh.vertex_buffer_id);
        mesh.renderer_id = renderer_id;
    }
    gl.glBindBuffer(GL_ARRAY_BUFFER, mesh.vertex_buffer_id);
    if (!is_new && (allocated == 0 || allocated == bytes))
        return false;
    label_gl_object(gl, GL_BUFFER, mesh.vertex_buffer_id, "vertices");
    gl.glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(bytes), nullptr,
                    vertex_usage(context, mesh));
    mesh.gpu_state.vertex_buffer_bytes = bytes;
    return true;
}

/// Uploads the records in a call of `bytes`, which on the frame of creation covers the user
/// attributes as well; what lies behind the records is sent as zeros.
void upload_records(const Context& context, MeshData& mesh, unsigned long bytes) {
    const unsigned long vertex_bytes = mesh.get_vertex_elt_size() * mesh.num_vertices;
    if (bytes <= vertex_bytes) {
        upload(context, 0, bytes, mesh.get_vertex_ptr());
        return;
    }
    const std::unique_ptr<unsigned char[]> padded(new (std::nothrow) unsigned char[bytes]());
    if (!padded) {
        upload(context, 0, vertex_bytes, mesh.get_vertex_ptr());
        return;
    }
    std::memcpy(padded.get(), mesh.get_vertex_ptr(), vertex_bytes);
    upload(context, 0, bytes, padded.get());
}

void point_interleaved(const Context& context, ClientArrays& arrays, MeshData& mesh) {
    const auto stride = static_cast<GLsizei>(mesh.get_vertex_elt_size());
    const Attributes attributes = attributes_of(mesh);
    unsigned long offset = 0;
    for (int i = at_position; i <= at_tangent; ++i) {
        const Attribute& attribute = attributes[static_cast<unsigned long>(i)];
        if (attribute.element_size > 0)
            point_client_attribute(context, arrays, i, attribute.location,
                                   {mesh.vertex_buffer_id, mesh.num_vertices, attribute.dim, stride,
                                    buffer_offset(offset)});
        offset += attribute.element_size;
    }
    for (unsigned long i = 0; i < mesh.num_user_attribs; ++i) {
        const VertexAttribArray& user = mesh.user_attribs[i];
        if (user.attrib_location >= 0)
            point_client_generic(context, arrays, user.attrib_location,
                                 {mesh.vertex_buffer_id, mesh.num_vertices, user.get_vector_dim(),
                                  stride, buffer_offset(offset)});
        offset += user.get_element_size();
    }
}

/// A normal of four floats is read as three in steps of its size.
GLsizei separate_stride(int index, const Attribute& attribute) {
    if (index == at_normal && attribute.dim != 3)
        return static_cast<GLsizei>(attribute.element_size);
    return 0;
}

void point_separate(const Context& context, ClientArrays& arrays, MeshData& mesh,
                    const Attributes& attributes) {
    unsigned long offset = 0;
    for (int i = at_position; i <= at_tangent; ++i) {
        const Attribute& attribute = attributes[static_cast<unsigned long>(i)];
        if (attribute.data)
            point_client_attribute(context, arrays, i, attribute.location,
                                   {mesh.vertex_buffer_id, mesh.num_vertices, attribute.dim,
                                    separate_stride(i, attribute), buffer_offset(offset)});
        offset += block_bytes(mesh, attribute);
    }
    for (unsigned long i = 0; i < mesh.num_user_attribs; ++i) {
        const VertexAttribArray& user = mesh.user_attribs[i];
        if (user.attrib_location >= 0)
            point_client_generic(context, arrays, user.attrib_location,
                                 {mesh.vertex_buffer_id, mesh.num_vertices, user.get_vector_dim(),
                                  0, buffer_offset(offset)});
        offset += user_block_bytes(mesh);
    }
}

/// Binds the index buffer, making it or filling it as needed.
void bind_faces(const Context& context, MeshData& mesh) {
    const void* const faces = face_list(mesh);
    if (!faces)
        return;
    const ORVEX_Renderer_OpenGL_Func& gl = context.gl;
    const auto bytes = static_cast<GLsizeiptr>(face_list_bytes(mesh));
    unsigned long& allocated = mesh.gpu_state.index_buffer_bytes;
    if (mesh.index_buffer_id == 0) {
        gl.glGenBuffers(1, &mesh.index_buffer_id);
        gl.glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, mesh.index_buffer_id);
        label_gl_object(gl, GL_BUFFER, mesh.index_buffer_id, "faces");
        gl.glBufferData(GL_ELEMENT_ARRAY_BUFFER, bytes, faces, index_usage(context, mesh));
        allocated = face_list_bytes(mesh);
        return;
    }
    gl.glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, mesh.index_buffer_id);
    if (allocated != 0 && allocated != face_list_bytes(mesh)) {
        gl.glBufferData(GL_ELEMENT_ARRAY_BUFFER, bytes, nullptr, index_usage(context, mesh));
        allocated = face_list_bytes(mesh);
        mesh.faces_need_update = true;
    }
    if (mesh.faces_need_update) {
        gl.glBufferSubData(GL_ELEMENT_ARRAY_BUFFER, 0, bytes, faces);
        mesh.faces_need_update = false;
    }
}

/// Uploads dirty user attributes behind the vertices; their flags stay raised.
void upload_interleaved_users(const Context& context, MeshData& mesh, unsigned long vertex_bytes) {
    unsigned long offset = 0;
    unsigned long size = vertex_bytes;
    for (unsigned long i = 0; i < mesh.num_user_attribs; ++i) {
        offset += size;
        size = user_block_bytes(mesh);
        if (mesh.user_attribs[i].need_update)
            upload_user(context, mesh, offset, mesh.user_attribs[i]);
    }
}

} // namespace

bool RendererOpenGL::vertex_buffer_prepare_gl2(MeshData* mesh) {
    if (mesh->separate_vertex_arrays)
        return vertex_buffer_prepare_separate_arrays_gl2(mesh);
    if (mesh->num_vertices == 0 || !mesh->get_vertex_ptr() || !has_gl2_entries(gl))
        return false;
    const Context context{gl, forced_vertex_usage, forced_index_usage};
    const unsigned long vertex_bytes = mesh->get_vertex_elt_size() * mesh->num_vertices;
    const unsigned long all_bytes = vertex_bytes + user_blocks_bytes(*mesh);
    const bool is_new = mesh->vertex_buffer_id == 0;
    if (bind_vertices(context, *mesh, all_bytes, getid())) {
        set_vertex_flags(*mesh, true);
        raise_user_flags(*mesh);
    }
    // On the frame of creation both calls below go by the size of the whole buffer: the user
    // attributes miss it then, and arrive with the next frame.
    const unsigned long size = is_new ? all_bytes : vertex_bytes;
    if (any_vertex_flag(*mesh)) {
        upload_records(context, *mesh, size);
        set_vertex_flags(*mesh, false);
    }
    upload_interleaved_users(context, *mesh, size);

    client_arrays.begin_prepare();
    point_interleaved(context, client_arrays, *mesh);
    client_arrays.end_prepare(gl, mesh->num_vertices);
    bind_faces(context, *mesh);
    upload_quad_edges(context, *mesh);
    return true;
}

namespace {

/// Uploads the blocks of separate arrays whose flags are raised, and lowers the flags.
void upload_dirty_blocks(const Context& context, MeshData& mesh, const Attributes& attributes) {
    unsigned long offset = 0;
    for (const Attribute& attribute : attributes) {
        const unsigned long bytes = block_bytes(mesh, attribute);
        if (bytes > 0 && *attribute.need_update)
            upload(context, offset, bytes, attribute.data);
        *attribute.need_update = false;
        offset += bytes;
    }
    for (unsigned long i = 0; i < mesh.num_user_attribs; ++i) {
        VertexAttribArray& user = mesh.user_attribs[i];
        if (user.need_update)
            upload_user(context, mesh, offset, user);
        user.need_update = false;
        offset += user_block_bytes(mesh);
    }
}

} // namespace

bool RendererOpenGL::vertex_buffer_prepare_separate_arrays_gl2(MeshData* mesh) {
    const Attributes attributes = attributes_of(*mesh);
    if (mesh->num_vertices == 0 || !attributes[at_position].data || !has_gl2_entries(gl))
        return false;
    const Context context{gl, forced_vertex_usage, forced_index_usage};
    if (bind_vertices(context, *mesh, separate_bytes(*mesh, attributes), getid())) {
        // A new store takes every block at once.
        set_vertex_flags(*mesh, true);
        raise_user_flags(*mesh);
    }
    upload_dirty_blocks(context, *mesh, attributes);

    client_arrays.begin_prepare();
    point_separate(context, client_arrays, *mesh, attributes);
    client_arrays.end_prepare(gl, mesh->num_vertices);
    bind_faces(context, *mesh);
    upload_quad_edges(context, *mesh);
    return true;
}

bool RendererOpenGL::vertex_buffer_draw_gl2(MeshData* mesh) {
    // Without the buffers that an indexed call reads, the driver would read address zero.
    const bool prepared = prepared_mesh == mesh && mesh->vertex_buffer_id != 0;
    if (mesh->render_wireframe_quad && mesh->quad_edge_buffer_id != 0) {
        if (prepared)
            glDrawElements(GL_LINES, static_cast<GLsizei>(mesh->num_quad_edges), GL_UNSIGNED_INT,
                           nullptr);
        return true;
    }
    if (mesh->num_faces == 0) {
        glDrawArrays(mesh->tessellation_state ? GL_PATCHES : GL_TRIANGLES,
                     static_cast<GLint>(mesh->draw_start_vertex),
                     static_cast<GLsizei>(mesh->draw_end_vertex - mesh->draw_start_vertex));
        return true;
    }
    if (prepared && mesh->index_buffer_id != 0)
        glDrawElements(GL_TRIANGLES, static_cast<GLsizei>(mesh->num_faces * 3), index_type(*mesh),
                       nullptr);
    return true;
}

bool RendererOpenGL::vertex_buffer_finish_gl2(MeshData* mesh) {
    if (!gl.glBindBuffer || !gl.glDisableVertexAttribArray)
        return false;
    gl.glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
    gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
    client_arrays.disable(gl, ClientArray::vertex);
    // An interleaved store has none of these pointers: its arrays stay enabled until the next
    // prepare points them elsewhere.
    if (mesh->get_color_ptr())
        client_arrays.disable(gl, ClientArray::color);
    if (mesh->get_normal_ptr())
        client_arrays.disable(gl, ClientArray::normal);
    if (mesh->get_uv1_ptr())
        client_arrays.disable(gl, ClientArray::uv1);
    if (mesh->get_uv0_ptr())
        client_arrays.disable(gl, ClientArray::uv0);
    for (unsigned long i = 0; i < mesh->num_user_attribs; ++i)
        if (mesh->user_attribs[i].attrib_location >= 0)
            client_arrays.disable_generic(gl, mesh->user_attribs[i].attrib_location);
    return true;
}

bool RendererOpenGL::vertex_buffer_kill_gl2(MeshData* mesh) {
    if (!gl.glDeleteBuffers)
        return false;
    mesh->vertex_buffer_id = delete_buffer(mesh->vertex_buffer_id);
    mesh->instance_buffer_id = delete_buffer(mesh->instance_buffer_id);
    mesh->index_buffer_id = delete_buffer(mesh->index_buffer_id);
    mesh->quad_edge_buffer_id = delete_buffer(mesh->quad_edge_buffer_id);
    // The vertex array stays, over buffers that are gone and whose names may come again.
    mesh->gpu_state = {};
    mesh->gpu_state.vertex_array_stale = mesh->vertex_array_id != 0;
    return true;
}

} // namespace orvex
