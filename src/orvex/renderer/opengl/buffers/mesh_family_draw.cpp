#include "orvex/renderer/opengl/buffers/private/mesh_buffers.h"
#include "orvex/renderer/opengl/buffers/private/mesh_family.h"
#include "orvex/renderer/opengl/state/private/gl_state.h"
#include "orvex/renderer/records/mesh_types.h"

// The draws of meshes: each kind is one call. Which kind is chosen by the first that applies: quad
// edges, vertices without faces, a subset of the faces, faces. The path of client arrays knows
// neither subsets nor instances, and draws faces as triangles whatever the tessellation says.

namespace orvex {

using namespace mesh_buffers;

namespace {

/// Below two the plain calls do the same: the first instance applies.
constexpr unsigned long fewest_instances = 2;

bool draws_quad_edges(const MeshData& mesh) {
    return mesh.render_wireframe_quad && mesh.quad_edge_buffer_id != 0;
}

void draw_quad_edges(const MeshData& mesh) {
    glDrawElements(GL_LINES, static_cast<GLsizei>(mesh.num_quad_edges), GL_UNSIGNED_INT, nullptr);
}

GLenum primitive_of(const MeshData& mesh) {
    return mesh.tessellation_state ? GL_PATCHES : GL_TRIANGLES;
}

GLsizei vertex_count(const MeshData& mesh) {
    return static_cast<GLsizei>(mesh.draw_end_vertex - mesh.draw_start_vertex);
}

GLsizei index_count(const MeshData& mesh) {
    return static_cast<GLsizei>(mesh.num_faces * 3);
}

unsigned long index_size(const MeshData& mesh) {
    return mesh.index_bits == 16 ? 2 : 4;
}

/// In 32 bits on purpose: the run of a subset without faces wraps to none.
unsigned int index_count(const MaterialSubset& subset) {
    return (subset.last_face - subset.first_face + 1) * 3;
}

/// Whether a buffer of so many bytes, 0 for unknown, has elements of a size up to an end.
bool holds(unsigned long bytes, unsigned long end, unsigned long size) {
    return bytes == 0 || end <= bytes / size;
}

} // namespace

/// Without the buffers that an indexed call reads, the driver would read address zero; and the
/// record may say more by now than what the last prepare found.
bool MeshFamily::can_draw_indexed(const MeshData& mesh, unsigned int elements) const {
    const ContextState& context = state.context();
    return context.prepared_mesh == &mesh && mesh.vertex_buffer_id != 0 && elements != 0 &&
           context.prepared_elements == elements;
}

bool MeshFamily::can_draw_quad_edges(const MeshData& mesh) const {
    return can_draw_indexed(mesh, mesh.quad_edge_buffer_id) &&
           holds(mesh.gpu_state.quad_edge_buffer_bytes, mesh.num_quad_edges, sizeof(unsigned int));
}

bool MeshFamily::can_draw_faces(const MeshData& mesh) const {
    return can_draw_indexed(mesh, mesh.index_buffer_id) &&
           holds(mesh.gpu_state.index_buffer_bytes, mesh.num_faces, 3 * index_size(mesh));
}

void MeshFamily::draw_vertices(const MeshData& mesh, GLenum primitive) const {
    glDrawArrays(primitive, static_cast<GLint>(mesh.draw_start_vertex), vertex_count(mesh));
}

void MeshFamily::draw_instanced_vertices(const MeshData& mesh, GLenum primitive) const {
    if (mesh.num_instances >= fewest_instances && state.gl.glDrawArraysInstancedARB)
        state.gl.glDrawArraysInstancedARB(primitive, static_cast<GLint>(mesh.draw_start_vertex),
                                          vertex_count(mesh),
                                          static_cast<GLsizei>(mesh.num_instances));
    else
        draw_vertices(mesh, primitive);
}

void MeshFamily::draw_subset(const MeshData& mesh, GLenum primitive) const {
    if (!state.gl.glDrawRangeElements)
        return;
    const MaterialSubset& subset = *mesh.current_subset;
    const unsigned int count = index_count(subset);
    const unsigned long first = subset.first_face * 3UL;
    if (!holds(mesh.gpu_state.index_buffer_bytes, first + count, index_size(mesh)))
        return;
    state.gl.glDrawRangeElements(primitive, 0, static_cast<GLuint>(mesh.num_vertices - 1),
                                 static_cast<GLsizei>(count), index_type(mesh),
                                 buffer_offset(first * index_size(mesh)));
}

void MeshFamily::draw_faces(const MeshData& mesh, GLenum primitive) const {
    glDrawElements(primitive, index_count(mesh), index_type(mesh), nullptr);
}

void MeshFamily::draw_instanced_faces(const MeshData& mesh, GLenum primitive) const {
    if (mesh.num_instances >= fewest_instances && state.gl.glDrawElementsInstancedARB)
        state.gl.glDrawElementsInstancedARB(primitive, index_count(mesh), index_type(mesh), nullptr,
                                            static_cast<GLsizei>(mesh.num_instances));
    else
        draw_faces(mesh, primitive);
}

bool MeshFamily::vertex_buffer_draw_gl3(MeshData* mesh) {
    const GLenum primitive = primitive_of(*mesh);
    const bool has_array = mesh->vertex_array_id != 0;
    if (draws_quad_edges(*mesh)) {
        if (has_array && can_draw_quad_edges(*mesh))
            draw_quad_edges(*mesh);
    } else if (mesh->num_faces == 0) {
        draw_instanced_vertices(*mesh, primitive);
    } else if (has_array && can_draw_faces(*mesh)) {
        if (mesh->current_subset)
            draw_subset(*mesh, primitive);
        else
            draw_instanced_faces(*mesh, primitive);
    }
    return true;
}

bool MeshFamily::vertex_buffer_draw_gl2(MeshData* mesh) {
    if (draws_quad_edges(*mesh)) {
        if (can_draw_quad_edges(*mesh))
            draw_quad_edges(*mesh);
    } else if (mesh->num_faces == 0) {
        draw_vertices(*mesh, primitive_of(*mesh));
    } else if (can_draw_faces(*mesh)) {
        draw_faces(*mesh, GL_TRIANGLES);
    }
    return true;
}

} // namespace orvex
