#pragma once

/// @file
/// What the draw paths of meshes share: the attributes of a store as data, and the upload of
/// everything that isn't bound to one path.

#include <array>

#include "orvex/renderer/opengl/gl/private/gl_functions.h"
#include "orvex/renderer/records/mesh_data.h"
#include "orvex/renderer/renderer_types.h"

namespace orvex::mesh_buffers {

/// The API and the usages that a host forces on new buffers.
struct Context {
    const ORVEX_Renderer_OpenGL_Func& gl;
    BUFFER_OBJECT_USAGE forced_vertex_usage;
    BUFFER_OBJECT_USAGE forced_index_usage;
};

/// One vertex attribute of a store.
struct Attribute {
    void* data;                ///< its separate array, or null
    unsigned int element_size; ///< bytes, 0 if the format lacks it
    unsigned int dim;          ///< floats
    int location;              ///< generic attribute index, -1 for none
    bool* need_update;
};

/// A store's attributes in the order they have in the vertex buffer and in a record.
using Attributes = std::array<Attribute, 6>;

/// The place of an attribute in `Attributes`.
enum AttributeIndex { at_position, at_color, at_normal, at_uv0, at_uv1, at_tangent };

Attributes attributes_of(MeshData& mesh);

/// Usage of a new vertex buffer; writes the static default into a record that asks for none.
GLenum vertex_usage(const Context& context, MeshData& mesh);
/// The same for the usage of another kind of record.
GLenum vertex_usage(const Context& context, unsigned int& record_usage);
/// The same for buffers of indices.
GLenum index_usage(const Context& context, MeshData& mesh);

/// Whether any of the six attribute flags of a mesh or a polyline is raised.
template<class Store>
bool any_vertex_flag(const Store& store) {
    return store.positions_need_update || store.normals_need_update || store.tangents_need_update ||
           store.colors_need_update || store.uv0_need_update || store.uv1_need_update;
}

/// Raises or lowers all six.
template<class Store>
void set_vertex_flags(Store& store, bool state) {
    store.positions_need_update = state;
    store.normals_need_update = state;
    store.tangents_need_update = state;
    store.colors_need_update = state;
    store.uv0_need_update = state;
    store.uv1_need_update = state;
}

/// Raises `need_update` of every user attribute.
void raise_user_flags(MeshData& mesh);
bool any_user_flag(const MeshData& mesh);

/// Bytes of the block of one user attribute. Its own array may be shorter, see `user_bytes`.
unsigned long user_block_bytes(const MeshData& mesh);
/// Bytes of all of them.
unsigned long user_blocks_bytes(const MeshData& mesh);
/// Bytes of a user attribute's own array, at most those of its block.
unsigned long user_bytes(const MeshData& mesh, const VertexAttribArray& attribute);

/// Bytes of an attribute's separate array.
unsigned long block_bytes(const MeshData& mesh, const Attribute& attribute);
/// Bytes of all separate arrays, with the user attributes.
unsigned long separate_bytes(const MeshData& mesh, const Attributes& attributes);

/// `glBufferSubData` on the bound array buffer.
void upload(const Context& context, unsigned long offset, unsigned long bytes, const void* data);
/// The same for a user attribute; its block starts at `offset`.
void upload_user(const Context& context, const MeshData& mesh, unsigned long offset,
                 const VertexAttribArray& attribute);

/// An offset into a buffer, as the pointer operations want it.
const void* buffer_offset(unsigned long bytes);

/// `GL_UNSIGNED_SHORT` or `GL_UNSIGNED_INT`.
GLenum index_type(const MeshData& mesh);

/// The face list in the store's width; null if there are no faces.
const void* face_list(const MeshData& mesh);
/// Bytes of the face list.
unsigned long face_list_bytes(const MeshData& mesh);

/// Creates the quad edge buffer, uploads what is dirty, and leaves it bound. Does nothing unless
/// the quad edges are what is drawn.
void upload_quad_edges(const Context& context, MeshData& mesh);

} // namespace orvex::mesh_buffers
