#include "orvex/renderer/opengl/buffers/private/mesh_buffers.h"

#include <algorithm>

#include "orvex/renderer/opengl/gl/private/gl_debug.h"
#include "orvex/renderer/opengl/gl/private/gl_enums.h"

namespace orvex::mesh_buffers {

Attributes attributes_of(MeshData& mesh) {
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

namespace {

GLenum usage(BUFFER_OBJECT_USAGE forced, unsigned int& own) {
    if (own == 0)
        own = GL_STATIC_DRAW;
    return forced != BUFFER_USAGE_DEFAULT ? gl_buffer_usage(forced) : own;
}

} // namespace

GLenum vertex_usage(const Context& context, MeshData& mesh) {
    return vertex_usage(context, mesh.vertex_buffer_usage);
}

GLenum vertex_usage(const Context& context, unsigned int& record_usage) {
    return usage(context.forced_vertex_usage, record_usage);
}

GLenum index_usage(const Context& context, MeshData& mesh) {
    return usage(context.forced_index_usage, mesh.index_buffer_usage);
}

void raise_user_flags(MeshData& mesh) {
    for (unsigned long i = 0; i < mesh.num_user_attribs; ++i)
        mesh.user_attribs[i].need_update = true;
}

bool any_user_flag(const MeshData& mesh) {
    for (unsigned long i = 0; i < mesh.num_user_attribs; ++i)
        if (mesh.user_attribs[i].need_update)
            return true;
    return false;
}

unsigned long user_block_bytes(const MeshData& mesh) {
    return sizeof(vec4) * mesh.num_vertices;
}

unsigned long user_blocks_bytes(const MeshData& mesh) {
    return user_block_bytes(mesh) * mesh.num_user_attribs;
}

unsigned long user_bytes(const MeshData& mesh, const VertexAttribArray& attribute) {
    const unsigned long own = attribute.data ? sizeof(vec4) * attribute.num_elements : 0;
    return std::min(own, user_block_bytes(mesh));
}

unsigned long block_bytes(const MeshData& mesh, const Attribute& attribute) {
    return attribute.data ? attribute.element_size * mesh.num_vertices : 0;
}

unsigned long separate_bytes(const MeshData& mesh, const Attributes& attributes) {
    unsigned long bytes = user_blocks_bytes(mesh);
    for (const Attribute& attribute : attributes)
        bytes += block_bytes(mesh, attribute);
    return bytes;
}

void upload(const Context& context, unsigned long offset, unsigned long bytes, const void* data) {
    context.gl.glBufferSubData(GL_ARRAY_BUFFER, static_cast<GLintptr>(offset),
                               static_cast<GLsizeiptr>(bytes), data);
}

void upload_user(const Context& context, const MeshData& mesh, unsigned long offset,
                 const VertexAttribArray& attribute) {
    upload(context, offset, user_bytes(mesh, attribute), attribute.data);
}

const void* buffer_offset(unsigned long bytes) {
    return reinterpret_cast<const void*>(bytes);
}

GLenum index_type(const MeshData& mesh) {
    return mesh.index_bits == 16 ? GL_UNSIGNED_SHORT : GL_UNSIGNED_INT;
}

const void* face_list(const MeshData& mesh) {
    if (mesh.num_faces == 0)
        return nullptr;
    return mesh.index_bits == 16 ? static_cast<const void*>(mesh.faces_u16) : mesh.faces_u32;
}

unsigned long face_list_bytes(const MeshData& mesh) {
    return mesh.num_faces * (mesh.index_bits == 16 ? sizeof(FaceU16) : sizeof(FaceU32));
}

namespace {

void create_quad_edges(const Context& context, MeshData& mesh, unsigned long bytes) {
    context.gl.glGenBuffers(1, &mesh.quad_edge_buffer_id);
    context.gl.glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, mesh.quad_edge_buffer_id);
    label_gl_object(context.gl, GL_BUFFER, mesh.quad_edge_buffer_id, "quad edges");
    context.gl.glBufferData(GL_ELEMENT_ARRAY_BUFFER, static_cast<GLsizeiptr>(bytes),
                            mesh.quad_edges, index_usage(context, mesh));
    mesh.gpu_state.quad_edge_buffer_bytes = bytes;
}

} // namespace

void upload_quad_edges(const Context& context, MeshData& mesh) {
    if (!mesh.render_wireframe_quad || !mesh.quad_edges)
        return;
    const unsigned long bytes = mesh.num_quad_edges * sizeof(unsigned int);
    if (mesh.quad_edge_buffer_id == 0) {
        create_quad_edges(context, mesh, bytes);
        return;
    }
    const ORVEX_Renderer_OpenGL_Func& gl = context.gl;
    gl.glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, mesh.quad_edge_buffer_id);
    unsigned long& allocated = mesh.gpu_state.quad_edge_buffer_bytes;
    if (allocated != 0 && allocated != bytes) {
        gl.glBufferData(GL_ELEMENT_ARRAY_BUFFER, static_cast<GLsizeiptr>(bytes), nullptr,
                        index_usage(context, mesh));
        allocated = bytes;
        mesh.quad_edges_need_update = true;
    }
    if (mesh.quad_edges_need_update) {
        gl.glBufferSubData(GL_ELEMENT_ARRAY_BUFFER, 0, static_cast<GLsizeiptr>(bytes),
                           mesh.quad_edges);
        mesh.quad_edges_need_update = false;
    }
}

} // namespace orvex::mesh_buffers
