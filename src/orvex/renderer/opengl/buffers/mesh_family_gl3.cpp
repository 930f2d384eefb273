#include "orvex/renderer/opengl/buffers/private/mesh_buffers.h"
#include "orvex/renderer/opengl/buffers/private/mesh_family.h"
#include "orvex/renderer/opengl/buffers/private/mesh_instances.h"
#include "orvex/renderer/opengl/buffers/private/record_contexts.h"
#include "orvex/renderer/opengl/buffers/private/vertex_array.h"
#include "orvex/renderer/opengl/state/private/gl_state.h"

// Meshes by generic attributes. A prepare uploads what is dirty, unbinding each buffer again, and
// binds the vertex array object last; its pointers are recorded once, when it is made. With nothing
// dirty a prepare is a chain of tests and one call.

namespace orvex {

using namespace mesh_buffers;

namespace {

void upload_faces(const GlState& state, MeshData& mesh) {
    const void* const faces = face_list(mesh);
    if (!faces) {
        mesh.faces_need_update = false;
        return;
    }
    BufferStore store = face_store(state, mesh);
    const unsigned long bytes = face_list_bytes(mesh);
    if (store.fits(bytes) && !mesh.faces_need_update)
        return;
    state.release_vertex_array();
    if (!store.fits(bytes)) {
        // A new buffer takes its faces as it is made.
        const bool is_new = !store.exists();
        store.allocate(bytes, is_new ? faces : nullptr, index_usage(state, mesh));
        if (!store.exists())
            return;
        store.unbind();
        if (!is_new)
            mesh.faces_need_update = true;
    }
    if (!mesh.faces_need_update)
        return;
    store.bind();
    store.upload_bound(0, bytes, faces);
    store.unbind();
    mesh.faces_need_update = false;
}

/// The element buffer that the coming draw reads, 0 for none.
unsigned int drawn_elements(const MeshData& mesh) {
    if (mesh.render_wireframe_quad && mesh.quad_edge_buffer_id != 0)
        return mesh.quad_edge_buffer_id;
    return mesh.index_buffer_id;
}

/// Binds the element buffer inside the bound vertex array.
void bind_elements(const GlState& state, MeshData& mesh) {
    const unsigned int elements = drawn_elements(mesh);
    if (elements == 0)
        return;
    state.gl.glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, elements);
    mesh.gpu_state.vertex_array_element_buffer = elements;
}

/// Which of the two layouts the vertex buffer has, see mesh_buffers.h.
enum class Layout { interleaved, separate };

/// Records the pointers of a vertex array that was just made.
void record_vertex_array(const GlState& state, MeshData& mesh, Layout layout) {
    const auto point = [&state](const MeshArray& array) {
        if (array.location >= 0)
            point_attribute(state.gl, array.location, array.dim, array.stride, array.offset);
    };
    mesh.gpu_state.vertex_array_element_buffer = 0;
    if (layout == Layout::separate)
        visit_separate(mesh, attributes_of(mesh), point);
    else
        visit_interleaved(mesh, attributes_of(mesh), point);
    point_instances(state, mesh);
    bind_elements(state, mesh);
}

/// Everything behind the vertices, the same for both layouts.
/// @return whether all of it is there
bool prepare_rest(const GlState& state, MeshData& mesh, Layout layout) {
    const bool has_instances = upload_instances(state, mesh);
    upload_faces(state, mesh);
    if (wants_quad_edges(mesh))
        upload_quad_edges(state, mesh);
    if (!has_instances || !has_element_buffers(mesh))
        return refuse_draws(state, &mesh);
    check_instances(mesh);
    const bool is_new = bind_vertex_array(state, mesh);
    if (mesh.vertex_array_id == 0)
        return refuse_draws(state, &mesh);
    // What the array of a host holds is the host's affair.
    const bool is_recorded_here = vertex_array_of(state.gl, mesh).is_recorded_here();
    if (is_new)
        record_vertex_array(state, mesh, layout);
    else if (is_recorded_here && mesh.gpu_state.vertex_array_element_buffer != drawn_elements(mesh))
        bind_elements(state, mesh);
    state.context().prepared_elements =
        is_recorded_here ? mesh.gpu_state.vertex_array_element_buffer : drawn_elements(mesh);
    return true;
}

void size_interleaved(const GlState& state, MeshData& mesh) {
    BufferStore store = vertex_store(state, mesh);
    const unsigned long bytes = record_bytes(mesh) + user_blocks_bytes(mesh);
    if (store.fits(bytes))
        return;
    if (store.allocate(bytes, nullptr, vertex_usage(state, mesh.vertex_buffer_usage)))
        mesh.renderer_id = state.renderer_id();
    store.unbind();
    raise_all_flags(mesh);
}

/// Makes the vertex buffer with all its blocks, or makes it anew when the record needs another
/// size. The blocks of a buffer of another size lie elsewhere, so the vertex array is outdated too.
void size_separate(const GlState& state, MeshData& mesh) {
    BufferStore store = vertex_store(state, mesh);
    const unsigned long bytes = separate_bytes(mesh);
    if (store.fits(bytes))
        return;
    const bool is_new =
        store.allocate(bytes, nullptr, vertex_usage(state, mesh.vertex_buffer_usage));
    if (!store.exists())
        return;
    if (is_new) {
        mesh.renderer_id = state.renderer_id();
        upload_blocks(state, mesh, attributes_of(mesh), Blocks::all);
    } else {
        raise_all_flags(mesh);
        outdate_arrays(mesh);
    }
    store.unbind();
}

} // namespace

bool MeshFamily::vertex_buffer_prepare_gl3(MeshData* mesh) {
    if (mesh->separate_vertex_arrays)
        return vertex_buffer_prepare_separate_arrays_gl3(mesh);
    const void* const vertices = mesh->get_vertex_ptr();
    if (mesh->num_vertices == 0 || !vertices || !state.can_draw_vertex_arrays())
        return false;
    size_interleaved(state, *mesh);
    if (mesh->vertex_buffer_id == 0)
        return refuse_draws(state, mesh);

    // One flag uploads all records.
    unsigned long uploaded = 0;
    if (any_vertex_flag(*mesh)) {
        const BufferStore store = vertex_store(state, *mesh);
        uploaded = record_bytes(*mesh);
        store.bind();
        store.upload_bound(0, uploaded, vertices);
        set_vertex_flags(*mesh, false);
        store.unbind();
    }
    upload_interleaved_users(state, *mesh, uploaded, Binding::each_binds);
    return prepare_rest(state, *mesh, Layout::interleaved);
}

bool MeshFamily::vertex_buffer_prepare_separate_arrays_gl3(MeshData* mesh) {
    // What an attribute is like is asked where something is uploaded: most objects stay as they
    // are.
    if (mesh->num_vertices == 0 || !has_separate_positions(*mesh) ||
        !state.can_draw_vertex_arrays())
        return false;
    size_separate(state, *mesh);
    if (mesh->vertex_buffer_id == 0)
        return refuse_draws(state, mesh);
    if (any_user_flag(*mesh) || any_vertex_flag(*mesh)) {
        const BufferStore store = vertex_store(state, *mesh);
        store.bind();
        upload_blocks(state, *mesh, attributes_of(*mesh), Blocks::dirty);
        store.unbind();
    }
    return prepare_rest(state, *mesh, Layout::separate);
}

bool MeshFamily::vertex_buffer_finish_gl3(MeshData*) {
    if (!state.gl.glBindVertexArray)
        return false;
    if (state.bound().hold_array())
        return true;
    state.gl.glBindVertexArray(0);
    state.context().bound_array = 0;
    return true;
}

bool MeshFamily::vertex_buffer_kill_gl3(MeshData* mesh) {
    if (!state.gl.glDeleteBuffers || (mesh->vertex_array_id != 0 && !state.gl.glDeleteVertexArrays))
        return false;
    delete_vertex_array(state, *mesh);
    delete_buffer(state, mesh->vertex_buffer_id);
    delete_buffer(state, mesh->instance_buffer_id);
    delete_buffer(state, mesh->index_buffer_id);
    bury_elsewhere(*mesh);
    // The quad edge buffer stays.
    MeshDataGpuState left;
    left.quad_edge_buffer_bytes = mesh->gpu_state.quad_edge_buffer_bytes;
    left.context = mesh->gpu_state.context;
    left.group = mesh->gpu_state.group;
    mesh->gpu_state = left;
    return true;
}

} // namespace orvex
