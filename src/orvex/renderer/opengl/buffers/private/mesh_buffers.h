#pragma once

/// @file
/// What the two draw paths of meshes share: the arrays of a store as data, where they lie in its
/// vertex buffer, and the uploads that don't differ.
///
/// The vertex buffer has one of two layouts, and user attributes stand behind the others:
///
///   interleaved  | position color normal uv0 uv1 tangent | next record ... | user 0 | user 1 |
///   separate     | positions | colors | normals | uv0 | uv1 | tangents | user 0 | user 1 |
///
/// What a store's format lacks has no bytes in either.

#include <algorithm>
#include <array>

#include "orvex/renderer/opengl/buffers/private/buffer_store.h"
#include "orvex/renderer/opengl/buffers/private/client_pointers.h"
#include "orvex/renderer/records/mesh_data.h"
#include "orvex/renderer/records/private/plain_store.h"
#include "orvex/renderer/renderer_types.h"

namespace orvex::mesh_buffers {

/// One vertex attribute of a store.
struct Attribute {
    void* data;                ///< its separate array, or null
    unsigned int element_size; ///< bytes, 0 if the format lacks it
    unsigned int dim;          ///< floats
    int location;              ///< generic attribute index, -1 for none
    bool* need_update;
};

/// A store's attributes in the order of `AttributeIndex`.
using Attributes = std::array<Attribute, at_tangent + 1>;

Attributes attributes_of(MeshData& mesh);

/// @return whether a store has separate arrays
inline bool has_separate_positions(MeshData& mesh) {
    return (is_plain_store(mesh) ? mesh.position.data : mesh.get_position_ptr()) != nullptr;
}

/// Usage of a new vertex buffer; writes the static default into a record that asks for none.
GLenum vertex_usage(const GlState& state, unsigned int& record_usage);
/// The same for buffers of indices.
GLenum index_usage(const GlState& state, MeshData& mesh);

/// @name The buffers of a mesh
/// @{

inline BufferStore vertex_store(const GlState& state, MeshData& mesh) {
    return {state.gl, GL_ARRAY_BUFFER, "vertices", mesh.vertex_buffer_id,
            mesh.gpu_state.vertex_buffer_bytes};
}
inline BufferStore face_store(const GlState& state, MeshData& mesh) {
    return {state.gl, GL_ELEMENT_ARRAY_BUFFER, "faces", mesh.index_buffer_id,
            mesh.gpu_state.index_buffer_bytes};
}
/// @}

/// Whether any of the six attribute flags of a mesh or a polyline is raised.
template<class Store>
bool any_vertex_flag(const Store& store) {
    return store.positions_need_update || store.normals_need_update || store.tangents_need_update ||
           store.colors_need_update || store.uv0_need_update || store.uv1_need_update;
}

/// Raises or lowers all six.
template<class Store>
void set_vertex_flags(Store& store, bool raised) {
    store.positions_need_update = raised;
    store.normals_need_update = raised;
    store.tangents_need_update = raised;
    store.colors_need_update = raised;
    store.uv0_need_update = raised;
    store.uv1_need_update = raised;
}

/// Raises the six flags and those of the user attributes: all of the store is to be uploaded.
void raise_all_flags(MeshData& mesh);
/// Whether the flag of a user attribute is raised.
inline bool any_user_flag(const MeshData& mesh) {
    return std::any_of(mesh.user_attribs, mesh.user_attribs + mesh.num_user_attribs,
                       [](const VertexAttribArray& user) { return user.need_update; });
}

/// @name Sizes in bytes
/// @{

/// All interleaved records.
unsigned long record_bytes(MeshData& mesh);
/// The block of one user attribute. Its own array may be shorter: the rest of the block stays.
inline unsigned long user_block_bytes(const MeshData& mesh) {
    return sizeof(vec4) * mesh.num_vertices;
}
/// The blocks of all user attributes.
inline unsigned long user_blocks_bytes(const MeshData& mesh) {
    return user_block_bytes(mesh) * mesh.num_user_attribs;
}
/// An attribute's separate array.
inline unsigned long block_bytes(const MeshData& mesh, const Attribute& attribute) {
    return attribute.data ? attribute.element_size * mesh.num_vertices : 0;
}
/// All separate arrays, with the user attributes.
unsigned long separate_bytes(MeshData& mesh);
/// The face list.
inline unsigned long face_list_bytes(const MeshData& mesh) {
    return mesh.num_faces * (mesh.index_bits == 16 ? sizeof(FaceU16) : sizeof(FaceU32));
}
/// @}

/// Whether uploads find the vertex buffer bound, or bind it, each for itself, and unbind it again.
enum class Binding { is_bound, each_binds };

/// Uploads the dirty user attributes of an interleaved store behind `vertex_bytes` of records, and
/// leaves their flags raised. With 0 for those the first block falls on the start of the buffer:
/// that is how this layout has always been.
void upload_interleaved_users(const GlState& state, MeshData& mesh, unsigned long vertex_bytes,
                              Binding binding);

/// Which blocks of separate arrays an upload takes.
enum class Blocks {
    all,  ///< all, and the flags stay
    dirty ///< those whose flag is raised; all flags are lowered
};

/// Uploads the blocks of separate arrays into the bound buffer.
void upload_blocks(const GlState& state, MeshData& mesh, const Attributes& attributes,
                   Blocks which);

/// In place of an `AttributeIndex`: a user attribute.
constexpr int at_user = -1;

/// Where one array of a store lies in its vertex buffer.
struct MeshArray {
    int index;                  ///< an `AttributeIndex`, or `at_user`
    int location;               ///< generic attribute index, -1 for none
    unsigned int dim;           ///< floats
    unsigned long element_size; ///< bytes
    unsigned long stride;       ///< bytes, 0 for elements one behind the other
    unsigned long offset;       ///< bytes
};

/// Calls `visit(MeshArray)` for each array of interleaved records that the format has, and for each
/// user attribute with a location. Those of user attributes follow the record's own and keep its
/// stride, as they always did; hosts that use them keep separate arrays.
template<class Visit>
void visit_interleaved(MeshData& mesh, const Attributes& attributes, Visit visit) {
    const unsigned long stride = mesh.get_vertex_elt_size();
    unsigned long offset = 0;
    int index = at_position;
    for (const Attribute& attribute : attributes) {
        if (attribute.element_size > 0)
            visit(MeshArray{index, attribute.location, attribute.dim, attribute.element_size,
                            stride, offset});
        offset += attribute.element_size;
        ++index;
    }
    for (unsigned long i = 0; i < mesh.num_user_attribs; ++i) {
        const VertexAttribArray& user = mesh.user_attribs[i];
        if (user.attrib_location >= 0)
            visit(MeshArray{at_user, user.attrib_location, user.get_vector_dim(),
                            user.get_element_size(), stride, offset});
        offset += user.get_element_size();
    }
}

/// The same for the separate arrays that the store has.
template<class Visit>
void visit_separate(MeshData& mesh, const Attributes& attributes, Visit visit) {
    unsigned long offset = 0;
    int index = at_position;
    for (const Attribute& attribute : attributes) {
        if (attribute.data)
            visit(MeshArray{index, attribute.location, attribute.dim, attribute.element_size, 0,
                            offset});
        offset += block_bytes(mesh, attribute);
        ++index;
    }
    for (unsigned long i = 0; i < mesh.num_user_attribs; ++i) {
        const VertexAttribArray& user = mesh.user_attribs[i];
        if (user.attrib_location >= 0)
            visit(MeshArray{at_user, user.attrib_location, user.get_vector_dim(),
                            user.get_element_size(), 0, offset});
        offset += user_block_bytes(mesh);
    }
}

/// `GL_UNSIGNED_SHORT` or `GL_UNSIGNED_INT`.
inline GLenum index_type(const MeshData& mesh) {
    return mesh.index_bits == 16 ? GL_UNSIGNED_SHORT : GL_UNSIGNED_INT;
}

/// The face list in the store's width; null if there are no faces.
inline const void* face_list(const MeshData& mesh) {
    if (mesh.num_faces == 0)
        return nullptr;
    return mesh.index_bits == 16 ? static_cast<const void*>(mesh.faces_u16) : mesh.faces_u32;
}

/// @return whether the quad edges are to be drawn, and there are some
inline bool wants_quad_edges(const MeshData& mesh) {
    return mesh.render_wireframe_quad && mesh.quad_edges;
}

/// Creates the quad edge buffer, uploads what is dirty, and leaves it bound. Only where the quad
/// edges are drawn.
void upload_quad_edges(const GlState& state, MeshData& mesh);

/// @return whether faces and edges that are there have buffers by now
inline bool has_element_buffers(const MeshData& mesh) {
    return (!face_list(mesh) || mesh.index_buffer_id != 0) &&
           (!wants_quad_edges(mesh) || mesh.quad_edge_buffer_id != 0);
}

} // namespace orvex::mesh_buffers
