#include "orvex/renderer/opengl/buffers/private/mesh_buffers.h"

#include <algorithm>

#include "orvex/renderer/opengl/gl/private/gl_enums.h"
#include "orvex/renderer/opengl/state/private/gl_state.h"

// Both draw paths of meshes stand on this file. What a call sequence here leaves bound is part of
// its meaning: the headers say it, and the recorded calls of the tests hold it.

namespace orvex::mesh_buffers {

namespace {

/// Of a store that is exactly a `MeshData`.
Attribute attribute_of(const VertexAttribArray& array, int location, bool& need_update) {
    return {array.data, array.get_element_size(), array.get_vector_dim(), location, &need_update};
}

} // namespace

Attributes attributes_of(MeshData& mesh) {
    if (is_plain_store(mesh))
        return {
            {attribute_of(mesh.position, mesh.position_attrib_location, mesh.positions_need_update),
             attribute_of(mesh.color, mesh.color_attrib_location, mesh.colors_need_update),
             attribute_of(mesh.normal, mesh.normal_attrib_location, mesh.normals_need_update),
             attribute_of(mesh.uv0, mesh.uv0_attrib_location, mesh.uv0_need_update),
             attribute_of(mesh.uv1, mesh.uv1_attrib_location, mesh.uv1_need_update),
             attribute_of(mesh.tangent, mesh.tangent_attrib_location, mesh.tangents_need_update)}};
    return {{{mesh.get_position_ptr(), mesh.get_position_elt_size(), mesh.get_position_vector_dim(),
              mesh.position_attrib_location, &mesh.positions_need_update},
             {mesh.get_color_ptr(), mesh.get_color_elt_size(), mesh.get_color_vector_dim(),
              mesh.color_attrib_location, &mesh.colors_need_update},
             {mesh.get_normal_ptr(), mesh.get_normal_elt_size(), mesh.get_normal_vector_dim(),
              mesh.normal_attrib_location, &mesh.normals_need_update},
             {mesh.get_uv0_ptr(), mesh.get_uv0_elt_size(), mesh.get_uv0_vector_dim(),
              mesh.uv0_attrib_location, &mesh.uv0_need_update},
             {mesh.get_uv1_ptr(), mesh.get_uv1_elt_size(), mesh.get_uv1_vector_dim(),
              mesh.uv1_attrib_location, &mesh.uv1_need_update},
             {mesh.get_tangent_ptr(), mesh.get_tangent_elt_size(), mesh.get_tangent_vector_dim(),
              mesh.tangent_attrib_location, &mesh.tangents_need_update}}};
}

// Usages

namespace {

/// The forced usage wins, and the record keeps its own all the same.
GLenum usage(BUFFER_OBJECT_USAGE forced, unsigned int& own) {
    if (own == 0)
        own = GL_STATIC_DRAW;
    return forced != BUFFER_USAGE_DEFAULT ? gl_buffer_usage(forced) : own;
}

} // namespace

GLenum vertex_usage(const GlState& state, unsigned int& record_usage) {
    return usage(state.forced_vertex_usage, record_usage);
}

GLenum index_usage(const GlState& state, MeshData& mesh) {
    return usage(state.forced_index_usage, mesh.index_buffer_usage);
}

// Flags

void raise_all_flags(MeshData& mesh) {
    set_vertex_flags(mesh, true);
    for (unsigned long i = 0; i < mesh.num_user_attribs; ++i)
        mesh.user_attribs[i].need_update = true;
}

// Sizes

unsigned long record_bytes(MeshData& mesh) {
    return mesh.get_vertex_elt_size() * mesh.num_vertices;
}

namespace {

/// The bytes of a vertex in all separate arrays.
unsigned long separate_vertex_bytes(MeshData& mesh) {
    unsigned long bytes = 0;
    if (is_plain_store(mesh)) {
        for (const VertexAttribArray* const array :
             {&mesh.position, &mesh.color, &mesh.normal, &mesh.uv0, &mesh.uv1, &mesh.tangent})
            bytes += array->data ? array->get_element_size() : 0;
        return bytes;
    }
    if (mesh.get_position_ptr())
        bytes += mesh.get_position_elt_size();
    if (mesh.get_color_ptr())
        bytes += mesh.get_color_elt_size();
    if (mesh.get_normal_ptr())
        bytes += mesh.get_normal_elt_size();
    if (mesh.get_uv0_ptr())
        bytes += mesh.get_uv0_elt_size();
    if (mesh.get_uv1_ptr())
        bytes += mesh.get_uv1_elt_size();
    if (mesh.get_tangent_ptr())
        bytes += mesh.get_tangent_elt_size();
    return bytes;
}

} // namespace

unsigned long separate_bytes(MeshData& mesh) {
    return user_blocks_bytes(mesh) + separate_vertex_bytes(mesh) * mesh.num_vertices;
}

// Uploads

namespace {

/// Uploads a user attribute's own array, or what of it fits its block.
void upload_user(const BufferStore& store, const MeshData& mesh, unsigned long offset,
                 const VertexAttribArray& user) {
    const unsigned long own = user.data ? sizeof(vec4) * user.num_elements : 0;
    store.upload_bound(offset, std::min(own, user_block_bytes(mesh)), user.data);
}

} // namespace

void upload_interleaved_users(const GlState& state, MeshData& mesh, unsigned long vertex_bytes,
                              Binding binding) {
    const BufferStore store = vertex_store(state, mesh);
    unsigned long offset = 0;
    unsigned long size = vertex_bytes;
    for (unsigned long i = 0; i < mesh.num_user_attribs; ++i) {
        offset += size;
        size = user_block_bytes(mesh);
        if (!mesh.user_attribs[i].need_update)
            continue;
        if (binding == Binding::each_binds)
            store.bind();
        upload_user(store, mesh, offset, mesh.user_attribs[i]);
        if (binding == Binding::each_binds)
            store.unbind();
    }
}

void upload_blocks(const GlState& state, MeshData& mesh, const Attributes& attributes,
                   Blocks which) {
    const bool all = which == Blocks::all;
    const BufferStore store = vertex_store(state, mesh);
    unsigned long offset = 0;
    for (const Attribute& attribute : attributes) {
        const unsigned long bytes = block_bytes(mesh, attribute);
        if (bytes > 0 && (all || *attribute.need_update))
            store.upload_bound(offset, bytes, attribute.data);
        if (!all)
            *attribute.need_update = false;
        offset += bytes;
    }
    for (unsigned long i = 0; i < mesh.num_user_attribs; ++i) {
        VertexAttribArray& user = mesh.user_attribs[i];
        if (all || user.need_update)
            upload_user(store, mesh, offset, user);
        if (!all)
            user.need_update = false;
        offset += user_block_bytes(mesh);
    }
}

// Indices

void upload_quad_edges(const GlState& state, MeshData& mesh) {
    BufferStore store(state.gl, GL_ELEMENT_ARRAY_BUFFER, "quad edges", mesh.quad_edge_buffer_id,
                      mesh.gpu_state.quad_edge_buffer_bytes);
    const unsigned long bytes = mesh.num_quad_edges * sizeof(unsigned int);
    state.release_vertex_array();
    // A new buffer takes its edges as it is made, and its flag stays as it is.
    if (!store.exists()) {
        store.allocate(bytes, mesh.quad_edges, index_usage(state, mesh));
        return;
    }
    store.bind();
    if (store.has_other_size(bytes)) {
        store.resize_bound(bytes, index_usage(state, mesh));
        mesh.quad_edges_need_update = true;
    }
    if (mesh.quad_edges_need_update) {
        store.upload_bound(0, bytes, mesh.quad_edges);
        mesh.quad_edges_need_update = false;
    }
}

} // namespace orvex::mesh_buffers
