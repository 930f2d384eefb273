#include "orvex/renderer/opengl/buffers/private/mesh_family.h"

#include "orvex/renderer/opengl/buffers/private/mesh_buffers.h"
#include "orvex/renderer/opengl/buffers/private/record_contexts.h"

namespace orvex {

void MeshFamily::begin_prepare(MeshData& mesh) {
    enter_context(state, mesh);
    accept_draws(state, &mesh);
    // Client arrays would be pointed inside it, and its own uploads unbind what those keep.
    if (!mesh.use_generic_vertex_attribs)
        state.release_vertex_array();
    else
        state.bound().take_off_client_arrays();
    state.context().prepared_elements = 0;
}

bool MeshFamily::end_prepare(const MeshData& mesh, bool ready) {
    state.context().prepared_mesh = ready ? &mesh : nullptr;
    return ready;
}

bool MeshFamily::prepare(MeshData* mesh) {
    if (!mesh)
        return false;
    begin_prepare(*mesh);
    return end_prepare(*mesh, mesh->use_generic_vertex_attribs ? vertex_buffer_prepare_gl3(mesh)
                                                               : vertex_buffer_prepare_gl2(mesh));
}

bool MeshFamily::prepare_separate_arrays(MeshData* mesh) {
    if (!mesh)
        return false;
    begin_prepare(*mesh);
    return end_prepare(*mesh, mesh->use_generic_vertex_attribs
                                  ? vertex_buffer_prepare_separate_arrays_gl3(mesh)
                                  : vertex_buffer_prepare_separate_arrays_gl2(mesh));
}

bool MeshFamily::draw(MeshData* mesh) {
    if (!mesh || !state.can_draw())
        return false;
    if (is_refused(state, mesh))
        return false;
    state.bound().take_off_held();
    return mesh->use_generic_vertex_attribs ? vertex_buffer_draw_gl3(mesh)
                                            : vertex_buffer_draw_gl2(mesh);
}

bool MeshFamily::finish(MeshData* mesh) {
    if (!mesh)
        return false;
    state.follow_context();
    state.context().prepared_mesh = nullptr;
    return mesh->use_generic_vertex_attribs ? vertex_buffer_finish_gl3(mesh)
                                            : vertex_buffer_finish_gl2(mesh);
}

bool MeshFamily::kill(MeshData* mesh) {
    // Objects are deleted on the thread of their context only.
    if (!mesh || Thread() != mesh->thread)
        return false;
    state.look_at_context();
    enter_context(state, *mesh);
    if (state.context().prepared_mesh == mesh)
        state.context().prepared_mesh = nullptr;
    return mesh->use_generic_vertex_attribs ? vertex_buffer_kill_gl3(mesh)
                                            : vertex_buffer_kill_gl2(mesh);
}

bool MeshFamily::resize(MeshData* mesh) {
    if (!mesh || mesh->separate_vertex_arrays || mesh->vertex_buffer_id == 0 ||
        !has_entries(state.gl.glBindBuffer, state.gl.glBufferData))
        return false;
    state.look_at_context();
    enter_context(state, *mesh);
    BufferStore store = mesh_buffers::vertex_store(state, *mesh);
    if (!store.exists())
        return false;
    store.bind();
    store.resize_bound(mesh_buffers::record_bytes(*mesh),
                       mesh_buffers::vertex_usage(state, mesh->vertex_buffer_usage));
    store.unbind();
    return true;
}

} // namespace orvex
