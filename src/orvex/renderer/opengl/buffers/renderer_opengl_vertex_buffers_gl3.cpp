#include "orvex/renderer/opengl/private/renderer_opengl.h"

#include <algorithm>

#include "orvex/renderer/opengl/buffers/private/mesh_buffers.h"
#include "orvex/renderer/opengl/gl/private/gl_debug.h"

namespace orvex {

using namespace mesh_buffers;

namespace {

bool has_buffer_entries(const ORVEX_Renderer_OpenGL_Func& gl) {
    return gl.glGenBuffers && gl.glBindBuffer && gl.glBufferData && gl.glBufferSubData;
}

bool has_gl3_entries(const ORVEX_Renderer_OpenGL_Func& gl) {
    return has_buffer_entries(gl) && gl.glGenVertexArrays && gl.glBindVertexArray &&
           gl.glEnableVertexAttribArray && gl.glVertexAttribPointer;
}

struct InstanceArray {
    VertexAttribArray& array;
    bool& need_update;
};

std::array<InstanceArray, 5> instance_arrays(MeshData& mesh) {
    return {{{mesh.instance_positions, mesh.instance_positions_need_update},
             {mesh.instance_rotations, mesh.instance_rotations_need_update},
             {mesh.instance_scales, mesh.instance_scales_need_update},
             {mesh.instance_colors, mesh.instance_colors_need_update},
             {mesh.instance_miscs, mesh.instance_miscs_need_update}}};
}

unsigned long instance_block_bytes(const MeshData& mesh) {
    return mesh.num_instances * sizeof(vec4);
}

void allocate_instances(const Context& context, MeshData& mesh, unsigned long bytes) {
    context.gl.glBindBuffer(GL_ARRAY_BUFFER, mesh.instance_buffer_id);
    label_gl_object(context.gl, GL_BUFFER, mesh.instance_buffer_id, "instances");
    context.gl.glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(bytes), nullptr,
                            GL_DYNAMIC_DRAW);
    context.gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
    mesh.gpu_state.instance_buffer_bytes = bytes;
}

/// Makes the instance buffer, or makes it anew when the record needs another size.
void size_instance_buffer(const Context& context, MeshData& mesh) {
    unsigned long bytes = 0;
    for (const InstanceArray& instances : instance_arrays(mesh))
        bytes += instances.array.data ? instance_block_bytes(mesh) : 0;
    if (bytes == 0)
        return;
    if (mesh.instance_buffer_id == 0) {
        context.gl.glGenBuffers(1, &mesh.instance_buffer_id);
        allocate_instances(context, mesh, bytes);
        return;
    }
    const unsigned long allocated = mesh.gpu_state.instance_buffer_bytes;
    if (allocated == 0 || allocated == bytes)
        return;
    allocate_instances(context, mesh, bytes);
    for (const InstanceArray& instances : instance_arrays(mesh))
        instances.need_update = true;
    mesh.gpu_state.vertex_array_stale = true;
}

void upload_instances(const Context& context, MeshData& mesh) {
    if (mesh.num_instances == 0)
        return;
    size_instance_buffer(context, mesh);
    const auto arrays = instance_arrays(mesh);
    const bool dirty = std::any_of(arrays.begin(), arrays.end(),
                                   [](const InstanceArray& a) { return a.need_update; });
    if (mesh.instance_buffer_id == 0 || !dirty)
        return;
    context.gl.glBindBuffer(GL_ARRAY_BUFFER, mesh.instance_buffer_id);
    unsigned long offset = 0;
    for (const InstanceArray& instances : arrays) {
        const bool upload_it = instances.need_update;
        instances.need_update = false;
        if (!instances.array.data)
            continue;
        if (upload_it)
            upload(context, offset, instance_block_bytes(mesh), instances.array.data);
        offset += instance_block_bytes(mesh);
    }
    context.gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
}

/// Makes the index buffer's store for what the record holds now, and fills it with `data`.
void allocate_faces(const Context& context, MeshData& mesh, const void* data) {
    const unsigned long bytes = face_list_bytes(mesh);
    context.gl.glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, mesh.index_buffer_id);
    label_gl_object(context.gl, GL_BUFFER, mesh.index_buffer_id, "faces");
    context.gl.glBufferData(GL_ELEMENT_ARRAY_BUFFER, static_cast<GLsizeiptr>(bytes), data,
                            index_usage(context, mesh));
    context.gl.glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
    mesh.gpu_state.index_buffer_bytes = bytes;
}

void upload_faces(const Context& context, MeshData& mesh) {
    const void* const faces = face_list(mesh);
    if (!faces) {
        mesh.faces_need_update = false;
        return;
    }
    const unsigned long allocated = mesh.gpu_state.index_buffer_bytes;
    if (mesh.index_buffer_id == 0) {
        context.gl.glGenBuffers(1, &mesh.index_buffer_id);
        allocate_faces(context, mesh, faces);
    } else if (allocated != 0 && allocated != face_list_bytes(mesh)) {
        allocate_faces(context, mesh, nullptr);
        mesh.faces_need_update = true;
    }
    if (!mesh.faces_need_update)
        return;
    context.gl.glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, mesh.index_buffer_id);
    context.gl.glBufferSubData(GL_ELEMENT_ARRAY_BUFFER, 0,
                               static_cast<GLsizeiptr>(face_list_bytes(mesh)), faces);
    context.gl.glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
    mesh.faces_need_update = false;
}

void point_attribute(const Context& context, int location, unsigned int dim, unsigned long stride,
                     unsigned long offset) {
    context.gl.glEnableVertexAttribArray(static_cast<GLuint>(location));
    context.gl.glVertexAttribPointer(static_cast<GLuint>(location), static_cast<GLint>(dim),
                                     GL_FLOAT, GL_FALSE, static_cast<GLsizei>(stride),
                                     buffer_offset(offset));
}

/// Pointers into records. Those of user attributes follow the record's own attributes and keep its
/// stride, as they always did; hosts that use them keep separate arrays.
void point_interleaved(const Context& context, MeshData& mesh, const Attributes& attributes) {
    const unsigned long stride = mesh.get_vertex_elt_size();
    unsigned long offset = 0;
    for (const Attribute& attribute : attributes) {
        if (attribute.element_size > 0 && attribute.location >= 0)
            point_attribute(context, attribute.location, attribute.dim, stride, offset);
        offset += attribute.element_size;
    }
    for (unsigned long i = 0; i < mesh.num_user_attribs; ++i) {
        const VertexAttribArray& user = mesh.user_attribs[i];
        if (user.attrib_location >= 0)
            point_attribute(context, user.attrib_location, user.get_vector_dim(), stride, offset);
        offset += user.get_element_size();
    }
}

void point_separate(const Context& context, MeshData& mesh, const Attributes& attributes) {
    unsigned long offset = 0;
    for (const Attribute& attribute : attributes) {
        if (attribute.data && attribute.location >= 0)
            point_attribute(context, attribute.location, attribute.dim, 0, offset);
        offset += block_bytes(mesh, attribute);
    }
    for (unsigned long i = 0; i < mesh.num_user_attribs; ++i) {
        const VertexAttribArray& user = mesh.user_attribs[i];
        if (user.attrib_location >= 0)
            point_attribute(context, user.attrib_location, user.get_vector_dim(), 0, offset);
        offset += user_block_bytes(mesh);
    }
}

void point_instances(const Context& context, MeshData& mesh) {
    if (mesh.num_instances == 0 || mesh.instance_buffer_id == 0 ||
        !context.gl.glVertexAttribDivisorARB)
        return;
    context.gl.glBindBuffer(GL_ARRAY_BUFFER, mesh.instance_buffer_id);
    unsigned long offset = 0;
    for (const InstanceArray& instances : instance_arrays(mesh)) {
        if (!instances.array.data)
            continue;
        const int location = instances.array.attrib_location;
        if (location >= 0) {
            point_attribute(context, location, 4, 0, offset);
            context.gl.glVertexAttribDivisorARB(static_cast<GLuint>(location), 1);
        }
        offset += instance_block_bytes(mesh);
    }
}

/// The element buffer that the coming draw reads, 0 for none.
unsigned int drawn_elements(const MeshData& mesh) {
    if (mesh.render_wireframe_quad && mesh.quad_edge_buffer_id != 0)
        return mesh.quad_edge_buffer_id;
    return mesh.index_buffer_id;
}

void bind_elements(const Context& context, MeshData& mesh) {
    const unsigned int elements = drawn_elements(mesh);
    if (elements == 0)
        return;
    context.gl.glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, elements);
    mesh.gpu_state.vertex_array_element_buffer = elements;
}

/// Whether a vertex array made here points elsewhere than it should.
bool must_record_anew(const MeshData& mesh) {
    const MeshDataGpuState& state = mesh.gpu_state;
    return state.vertex_array_stale || (state.vertex_array_vertex_buffer != 0 &&
                                        state.vertex_array_vertex_buffer != mesh.vertex_buffer_id);
}

/// Binds the vertex array if it can be used as it is. One that a host made is never changed.
bool bind_vertex_array(const Context& context, MeshData& mesh) {
    if (mesh.vertex_array_id == 0)
        return false;
    if (must_record_anew(mesh)) {
        if (context.gl.glDeleteVertexArrays)
            context.gl.glDeleteVertexArrays(1, &mesh.vertex_array_id);
        mesh.vertex_array_id = 0;
        return false;
    }
    context.gl.glBindVertexArray(mesh.vertex_array_id);
    const bool made_here = mesh.gpu_state.vertex_array_vertex_buffer != 0;
    if (made_here && mesh.gpu_state.vertex_array_element_buffer != drawn_elements(mesh))
        bind_elements(context, mesh);
    return true;
}

using PointVertices = void (*)(const Context&, MeshData&, const Attributes&);

void record_vertex_array(const Context& context, MeshData& mesh, PointVertices point_vertices) {
    context.gl.glGenVertexArrays(1, &mesh.vertex_array_id);
    context.gl.glBindVertexArray(mesh.vertex_array_id);
    label_gl_object(context.gl, GL_VERTEX_ARRAY, mesh.vertex_array_id, "vertex array");
    context.gl.glBindBuffer(GL_ARRAY_BUFFER, mesh.vertex_buffer_id);
    mesh.gpu_state.vertex_array_vertex_buffer = mesh.vertex_buffer_id;
    mesh.gpu_state.vertex_array_element_buffer = 0;
    mesh.gpu_state.vertex_array_stale = false;
    point_vertices(context, mesh, attributes_of(mesh));
    point_instances(context, mesh);
    bind_elements(context, mesh);
}

/// Everything behind the vertices, the same for both layouts.
void prepare_rest(const Context& context, MeshData& mesh, PointVertices point_vertices) {
    upload_instances(context, mesh);
    upload_faces(context, mesh);
    upload_quad_edges(context, mesh);
    if (!bind_vertex_array(context, mesh))
        record_vertex_array(context, mesh, point_vertices);
}

/// Makes the store of the vertex buffer, and leaves the buffer bound.
void allocate_vertices(const Context& context, MeshData& mesh, unsigned long bytes) {
    context.gl.glBindBuffer(GL_ARRAY_BUFFER, mesh.vertex_buffer_id);
    label_gl_object(context.gl, GL_BUFFER, mesh.vertex_buffer_id, "vertices");
    context.gl.glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(bytes), nullptr,
                            vertex_usage(context, mesh));
    mesh.gpu_state.vertex_buffer_bytes = bytes;
}

bool has_other_size(const MeshData& mesh, unsigned long bytes) {
    const unsigned long allocated = mesh.gpu_state.vertex_buffer_bytes;
    return allocated != 0 && allocated != bytes;
}

void size_interleaved(const Context& context, MeshData& mesh, int renderer_id) {
    const unsigned long bytes =
        mesh.get_vertex_elt_size() * mesh.num_vertices + user_blocks_bytes(mesh);
    if (mesh.vertex_buffer_id == 0) {
        context.gl.glGenBuffers(1, &mesh.vertex_buffer_id);
        mesh.renderer_id = renderer_id;
    } else if (!has_other_size(mesh, bytes)) {
        return;
    }
    allocate_vertices(context, mesh, bytes);
    set_vertex_flags(mesh, true);
    raise_user_flags(mesh);
    context.gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
}

/// Uploads dirty user attributes. Without an upload of the vertices before it the first block falls
/// on the start of the buffer, and the flags stay raised: that is how this layout has always been.
void upload_interleaved_users(const Context& context, MeshData& mesh, unsigned long vertex_bytes) {
    unsigned long offset = 0;
    unsigned long size = vertex_bytes;
    for (unsigned long i = 0; i < mesh.num_user_attribs; ++i) {
        offset += size;
        size = user_block_bytes(mesh);
        if (!mesh.user_attribs[i].need_update)
            continue;
        context.gl.glBindBuffer(GL_ARRAY_BUFFER, mesh.vertex_buffer_id);
        upload_user(context, mesh, offset, mesh.user_attribs[i]);
        context.gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
    }
}

} // namespace

bool RendererOpenGL::vertex_buffer_prepare_gl3(MeshData* mesh) {
    if (mesh->separate_vertex_arrays)
        return vertex_buffer_prepare_separate_arrays_gl3(mesh);
    const void* const vertices = mesh->get_vertex_ptr();
    if (mesh->num_vertices == 0 || !vertices || !has_gl3_entries(gl))
        return false;
    const Context context{gl, forced_vertex_usage, forced_index_usage};
    size_interleaved(context, *mesh, getid());

    unsigned long uploaded = 0;
    if (any_vertex_flag(*mesh)) {
        uploaded = mesh->get_vertex_elt_size() * mesh->num_vertices;
        gl.glBindBuffer(GL_ARRAY_BUFFER, mesh->vertex_buffer_id);
        upload(context, 0, uploaded, vertices);
        set_vertex_flags(*mesh, false);
        gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
    }
    upload_interleaved_users(context, *mesh, uploaded);
    prepare_rest(context, *mesh, point_interleaved);
    return true;
}

namespace {

/// Uploads the blocks of separate arrays: all of them, or the dirty ones, whose flags it lowers.
void upload_separate(const Context& context, MeshData& mesh, const Attributes& attributes,
                     bool all) {
    unsigned long offset = 0;
    for (const Attribute& attribute : attributes) {
        const unsigned long bytes = block_bytes(mesh, attribute);
        if (bytes > 0 && (all || *attribute.need_update))
            upload(context, offset, bytes, attribute.data);
        if (!all)
            *attribute.need_update = false;
        offset += bytes;
    }
    for (unsigned long i = 0; i < mesh.num_user_attribs; ++i) {
        VertexAttribArray& user = mesh.user_attribs[i];
        if (all || user.need_update)
            upload_user(context, mesh, offset, user);
        if (!all)
            user.need_update = false;
        offset += user_block_bytes(mesh);
    }
}

/// Makes the vertex buffer with all its blocks, or makes it anew when the record needs another
/// size. The blocks of a buffer of another size lie elsewhere, so the vertex array is outdated too.
void size_separate(const Context& context, MeshData& mesh, const Attributes& attributes,
                   int renderer_id) {
    const unsigned long bytes = separate_bytes(mesh, attributes);
    if (mesh.vertex_buffer_id == 0) {
        context.gl.glGenBuffers(1, &mesh.vertex_buffer_id);
        mesh.renderer_id = renderer_id;
        allocate_vertices(context, mesh, bytes);
        upload_separate(context, mesh, attributes, true);
        context.gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
        return;
    }
    if (!has_other_size(mesh, bytes))
        return;
    allocate_vertices(context, mesh, bytes);
    context.gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
    set_vertex_flags(mesh, true);
    raise_user_flags(mesh);
    mesh.gpu_state.vertex_array_stale = true;
}

} // namespace

bool RendererOpenGL::vertex_buffer_prepare_separate_arrays_gl3(MeshData* mesh) {
    const Attributes attributes = attributes_of(*mesh);
    if (mesh->num_vertices == 0 || !attributes[at_position].data || !has_gl3_entries(gl))
        return false;
    const Context context{gl, forced_vertex_usage, forced_index_usage};
    size_separate(context, *mesh, attributes, getid());
    if (any_user_flag(*mesh) || any_vertex_flag(*mesh)) {
        gl.glBindBuffer(GL_ARRAY_BUFFER, mesh->vertex_buffer_id);
        upload_separate(context, *mesh, attributes, false);
        gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
    }
    prepare_rest(context, *mesh, point_separate);
    return true;
}

bool RendererOpenGL::vertex_buffer_draw_gl3(MeshData* mesh) {
    const GLenum primitive = mesh->tessellation_state ? GL_PATCHES : GL_TRIANGLES;
    const GLenum type = index_type(*mesh);
    const auto instances = static_cast<GLsizei>(mesh->num_instances);
    // Without the buffers that an indexed call reads, the driver would read address zero.
    const bool prepared =
        prepared_mesh == mesh && mesh->vertex_buffer_id != 0 && mesh->vertex_array_id != 0;
    const auto num_indices = static_cast<GLsizei>(mesh->num_faces * 3);

    if (mesh->render_wireframe_quad && mesh->quad_edge_buffer_id != 0) {
        if (prepared)
            glDrawElements(GL_LINES, static_cast<GLsizei>(mesh->num_quad_edges), GL_UNSIGNED_INT,
                           nullptr);
        return true;
    }
    if (mesh->num_faces == 0) {
        const auto first = static_cast<GLint>(mesh->draw_start_vertex);
        const auto count = static_cast<GLsizei>(mesh->draw_end_vertex - mesh->draw_start_vertex);
        if (mesh->num_instances >= 2 && gl.glDrawArraysInstancedARB)
            gl.glDrawArraysInstancedARB(primitive, first, count, instances);
        else
            glDrawArrays(primitive, first, count);
        return true;
    }
    if (!prepared || mesh->index_buffer_id == 0)
        return true;
    if (const MaterialSubset* const subset = mesh->current_subset) {
        // In 32 bits on purpose: the run of a subset without faces wraps to none.
        const unsigned int count = (subset->last_face - subset->first_face + 1) * 3;
        const unsigned long index_size = mesh->index_bits == 16 ? 2 : 4;
        if (gl.glDrawRangeElements)
            gl.glDrawRangeElements(primitive, 0, static_cast<GLuint>(mesh->num_vertices - 1),
                                   static_cast<GLsizei>(count), type,
                                   buffer_offset(subset->first_face * 3 * index_size));
    } else if (mesh->num_instances >= 2 && gl.glDrawElementsInstancedARB) {
        gl.glDrawElementsInstancedARB(primitive, num_indices, type, nullptr, instances);
    } else {
        glDrawElements(primitive, num_indices, type, nullptr);
    }
    return true;
}

bool RendererOpenGL::vertex_buffer_finish_gl3(MeshData*) {
    if (!gl.glBindVertexArray)
        return false;
    gl.glBindVertexArray(0);
    return true;
}

bool RendererOpenGL::vertex_buffer_kill_gl3(MeshData* mesh) {
    if (!gl.glDeleteBuffers || (mesh->vertex_array_id != 0 && !gl.glDeleteVertexArrays))
        return false;
    if (mesh->vertex_array_id != 0)
        gl.glDeleteVertexArrays(1, &mesh->vertex_array_id);
    mesh->vertex_array_id = 0;
    mesh->vertex_buffer_id = delete_buffer(mesh->vertex_buffer_id);
    mesh->instance_buffer_id = delete_buffer(mesh->instance_buffer_id);
    mesh->index_buffer_id = delete_buffer(mesh->index_buffer_id);
    // The quad edge buffer stays.
    const unsigned long quad_edge_buffer_bytes = mesh->gpu_state.quad_edge_buffer_bytes;
    mesh->gpu_state = {};
    mesh->gpu_state.quad_edge_buffer_bytes = quad_edge_buffer_bytes;
    return true;
}

} // namespace orvex
