#include <cstring>
#include <memory>
#include <new>

#include "orvex/renderer/opengl/buffers/private/mesh_buffers.h"
#include "orvex/renderer/opengl/buffers/private/mesh_family.h"
#include "orvex/renderer/opengl/buffers/private/record_contexts.h"
#include "orvex/renderer/opengl/state/private/gl_state.h"

// Meshes by client arrays. Every prepare binds the buffers and points the arrays anew, and leaves
// both for the draw; the finish unbinds the buffers and disables some of the arrays. The instance
// arrays are ignored here, and no vertex array object is made.

namespace orvex {

using namespace mesh_buffers;

namespace {

/// Binds a buffer, unless it is the one that is held.
void bind_for_arrays(const GlState& state, const BufferStore& store) {
    BoundState& bound = state.bound();
    if (bound.resume_buffer(store.bound_to(), store.name()))
        return;
    store.bind();
    bound.buffer_was_bound(store.bound_to(), store.name());
}

/// Binds the vertex buffer, making it or making it anew when the record needs another size; all of
/// its contents are to be uploaded then.
void bind_vertices(const GlState& state, MeshData& mesh, unsigned long bytes) {
    BufferStore store = vertex_store(state, mesh);
    if (store.fits(bytes)) {
        bind_for_arrays(state, store);
        return;
    }
    state.bound().take_off_client_arrays();
    // Where it was, the vertex array of the other path points into blocks that lie elsewhere now.
    if (store.allocate(bytes, nullptr, vertex_usage(state, mesh.vertex_buffer_usage)))
        mesh.renderer_id = state.renderer_id();
    else
        outdate_arrays(mesh);
    state.bound().buffer_was_bound(GL_ARRAY_BUFFER, mesh.vertex_buffer_id);
    raise_all_flags(mesh);
}

/// Uploads the records in a call of `bytes`, which on the frame of creation covers the user
/// attributes as well; what lies behind the records is sent as zeros.
void upload_records(const GlState& state, MeshData& mesh, unsigned long bytes) {
    const BufferStore store = vertex_store(state, mesh);
    const unsigned long vertex_bytes = record_bytes(mesh);
    if (bytes <= vertex_bytes) {
        store.upload_bound(0, bytes, mesh.get_vertex_ptr());
        return;
    }
    const std::unique_ptr<unsigned char[]> padded(new (std::nothrow) unsigned char[bytes]());
    if (!padded) {
        store.upload_bound(0, vertex_bytes, mesh.get_vertex_ptr());
        return;
    }
    std::memcpy(padded.get(), mesh.get_vertex_ptr(), vertex_bytes);
    store.upload_bound(0, bytes, padded.get());
}

/// Points one array of the fixed pipeline, or a generic one for user attributes.
void point_client_array(GlState& state, const MeshData& mesh, const MeshArray& array) {
    const ClientPlace place = {mesh.vertex_buffer_id, mesh.num_vertices, array.dim, array.stride,
                               array.offset};
    if (array.index == at_user)
        point_client_generic(state, array.location, place);
    else
        point_client_attribute(state, array.index, array.location, place);
}

/// Binds the index buffer, making it or filling it as needed.
void bind_faces(const GlState& state, MeshData& mesh) {
    const void* const faces = face_list(mesh);
    if (!faces)
        return;
    BufferStore store = face_store(state, mesh);
    const unsigned long bytes = face_list_bytes(mesh);
    if (!store.exists()) {
        store.allocate(bytes, faces, index_usage(state, mesh));
        state.bound().buffer_was_bound(GL_ELEMENT_ARRAY_BUFFER, mesh.index_buffer_id);
        return;
    }
    bind_for_arrays(state, store);
    if (store.has_other_size(bytes)) {
        store.resize_bound(bytes, index_usage(state, mesh));
        mesh.faces_need_update = true;
    }
    if (mesh.faces_need_update) {
        store.upload_bound(0, bytes, faces);
        mesh.faces_need_update = false;
    }
}

/// Binds what an indexed draw reads: the edges in the place of the faces, if they are drawn.
void bind_elements(const GlState& state, MeshData& mesh) {
    bind_faces(state, mesh);
    unsigned int bound = face_list(mesh) ? mesh.index_buffer_id : 0;
    if (wants_quad_edges(mesh)) {
        upload_quad_edges(state, mesh);
        bound = mesh.quad_edge_buffer_id;
        state.bound().buffer_was_bound(GL_ELEMENT_ARRAY_BUFFER, bound);
    }
    state.context().prepared_elements = bound;
}

} // namespace

bool MeshFamily::vertex_buffer_prepare_gl2(MeshData* mesh) {
    if (mesh->separate_vertex_arrays)
        return vertex_buffer_prepare_separate_arrays_gl2(mesh);
    if (mesh->num_vertices == 0 || !mesh->get_vertex_ptr() || !state.can_draw_client_arrays())
        return false;
    const unsigned long vertex_bytes = record_bytes(*mesh);
    const unsigned long all_bytes = vertex_bytes + user_blocks_bytes(*mesh);
    const bool is_new = mesh->vertex_buffer_id == 0;
    bind_vertices(state, *mesh, all_bytes);
    if (mesh->vertex_buffer_id == 0)
        return refuse_draws(state, mesh);

    // On the frame of creation both calls below go by the size of the whole buffer: the user
    // attributes miss it then, and arrive with the next frame.
    const unsigned long size = is_new ? all_bytes : vertex_bytes;
    if (any_vertex_flag(*mesh)) {
        upload_records(state, *mesh, size);
        set_vertex_flags(*mesh, false);
    }
    upload_interleaved_users(state, *mesh, size, Binding::is_bound);

    state.context().client_arrays.begin_prepare();
    visit_interleaved(*mesh, attributes_of(*mesh),
                      [&](const MeshArray& array) { point_client_array(state, *mesh, array); });
    if (state.context().client_arrays.end_prepare(state.gl, mesh->num_vertices))
        state.bound().client_array_was_held();
    bind_elements(state, *mesh);
    return has_element_buffers(*mesh) || refuse_draws(state, mesh);
}

bool MeshFamily::vertex_buffer_prepare_separate_arrays_gl2(MeshData* mesh) {
    const Attributes attributes = attributes_of(*mesh);
    if (mesh->num_vertices == 0 || !attributes[at_position].data || !state.can_draw_client_arrays())
        return false;
    // A new store takes every block at once: its flags are all raised.
    bind_vertices(state, *mesh, separate_bytes(*mesh));
    if (mesh->vertex_buffer_id == 0)
        return refuse_draws(state, mesh);
    if (any_vertex_flag(*mesh) || any_user_flag(*mesh))
        upload_blocks(state, *mesh, attributes, Blocks::dirty);

    state.context().client_arrays.begin_prepare();
    visit_separate(*mesh, attributes, [&](MeshArray array) {
        // A normal of four floats is read as three in steps of its size.
        if (array.index == at_normal && array.dim != 3)
            array.stride = array.element_size;
        point_client_array(state, *mesh, array);
    });
    if (state.context().client_arrays.end_prepare(state.gl, mesh->num_vertices))
        state.bound().client_array_was_held();
    bind_elements(state, *mesh);
    return has_element_buffers(*mesh) || refuse_draws(state, mesh);
}

bool MeshFamily::vertex_buffer_finish_gl2(MeshData* mesh) {
    const ORVEX_Renderer_OpenGL_Func& gl = state.gl;
    if (!has_entries(gl.glBindBuffer, gl.glDisableVertexAttribArray))
        return false;
    state.release_vertex_array();
    if (!state.bound().hold_buffers()) {
        gl.glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
        gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
    }
    ClientArrays& arrays = state.context().client_arrays;
    bool is_held = arrays.disable(gl, ClientArray::vertex);
    // An interleaved store has none of these pointers: its arrays stay enabled until the next
    // prepare points them elsewhere.
    const bool is_plain = is_plain_store(*mesh);
    if (is_plain ? mesh->color.data : mesh->get_color_ptr())
        is_held |= arrays.disable(gl, ClientArray::color);
    if (is_plain ? mesh->normal.data : mesh->get_normal_ptr())
        is_held |= arrays.disable(gl, ClientArray::normal);
    if (is_plain ? mesh->uv1.data : mesh->get_uv1_ptr())
        is_held |= arrays.disable(gl, ClientArray::uv1);
    if (is_plain ? mesh->uv0.data : mesh->get_uv0_ptr())
        is_held |= arrays.disable(gl, ClientArray::uv0);
    for (unsigned long i = 0; i < mesh->num_user_attribs; ++i)
        if (mesh->user_attribs[i].attrib_location >= 0)
            is_held |= arrays.disable_generic(gl, mesh->user_attribs[i].attrib_location);
    if (is_held)
        state.bound().client_array_was_held();
    return true;
}

bool MeshFamily::vertex_buffer_kill_gl2(MeshData* mesh) {
    if (!state.gl.glDeleteBuffers)
        return false;
    delete_buffer(state, mesh->vertex_buffer_id);
    delete_buffer(state, mesh->instance_buffer_id);
    delete_buffer(state, mesh->index_buffer_id);
    delete_buffer(state, mesh->quad_edge_buffer_id);
    bury_elsewhere(*mesh);
    // The vertex array stays, over buffers that are gone and whose names may come again.
    MeshDataGpuState left;
    left.vertex_array_stale = mesh->vertex_array_id != 0;
    left.context = mesh->gpu_state.context;
    left.group = mesh->gpu_state.group;
    mesh->gpu_state = left;
    return true;
}

} // namespace orvex
