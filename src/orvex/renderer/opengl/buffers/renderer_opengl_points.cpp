#include "orvex/renderer/opengl/private/renderer_opengl.h"

#include "orvex/renderer/opengl/buffers/private/client_pointers.h"
#include "orvex/renderer/opengl/buffers/private/point_buffers.h"
#include "orvex/renderer/opengl/gl/private/gl_enums.h"
#include "orvex/renderer/records/vertex_pool_data.h"

// Point pools. Generic attributes have the fixed numbers 0 for positions, 1 for colours and 2 for
// normals, whatever the program says. A separate pool's buffer holds a block of positions, three
// floats each, and behind it a block of colours, four floats each.

namespace orvex {

using namespace point_buffers;
using mesh_buffers::buffer_offset;
using mesh_buffers::upload;

namespace {

constexpr unsigned long SEPARATE_POINT_BYTES = sizeof(vec3) + sizeof(vec4);
constexpr int TANGENT_LOCATION = 5;

GLenum pool_usage(const Context& context, const VertexPoolData& pool) {
    const BUFFER_OBJECT_USAGE forced = context.forced_vertex_usage;
    return gl_buffer_usage(forced != BUFFER_USAGE_DEFAULT ? forced : pool.buffer_usage);
}

unsigned long positions_bytes(const VertexPoolData& pool) {
    return pool.num_vertices * sizeof(vec3);
}

bool has_other_layout(const VertexPoolData& pool) {
    return pool.gpu_state.vertex_buffer_bytes != 0 &&
           pool.gpu_state.separate != pool.separate_vertex_arrays;
}

/// Makes the buffer when there is none that fits, and leaves it bound then.
/// @return true if it was made
bool make_buffer(const Context& context, VertexPoolData& pool, unsigned long bytes,
                 const void* points, int renderer_id) {
    if (!needs_storage(objects_of(pool), bytes) && !has_other_layout(pool))
        return false;
    allocate(context, objects_of(pool), bytes, points, pool_usage(context, pool), renderer_id);
    // Blocks and records lie elsewhere than those of the buffer before.
    if (pool.vertex_array_id != 0 && (pool.separate_vertex_arrays || pool.gpu_state.separate))
        pool.gpu_state.vertex_array_stale = true;
    pool.gpu_state.separate = pool.separate_vertex_arrays;
    return true;
}

bool make_record_buffer(const Context& context, VertexPoolData& pool, int renderer_id) {
    return make_buffer(context, pool, record_bytes(pool), pool.vertices, renderer_id);
}

/// Makes the buffer of a separate pool, whose blocks arrive with the next update.
void make_block_buffer(const Context& context, VertexPoolData& pool, int renderer_id) {
    if (!make_buffer(context, pool, pool.num_vertices * SEPARATE_POINT_BYTES, nullptr, renderer_id))
        return;
    pool.positions_need_update = true;
    pool.colors_need_update = true;
}

void upload_blocks(const Context& context, VertexPoolData& pool) {
    context.gl.glBindBuffer(GL_ARRAY_BUFFER, pool.vertex_buffer_id);
    if (pool.positions_need_update)
        upload(context, 0, positions_bytes(pool), pool.position.data);
    pool.positions_need_update = false;
    if (pool.colors_need_update)
        upload(context, positions_bytes(pool), pool.num_vertices * sizeof(vec4), pool.color.data);
    pool.colors_need_update = false;
}

void enable_point_state(bool sprites) {
    if (sprites)
        glEnable(GL_POINT_SPRITE);
    glEnable(GL_PROGRAM_POINT_SIZE);
}

void disable_point_state() {
    glDisable(GL_PROGRAM_POINT_SIZE);
    glDisable(GL_POINT_SPRITE);
}

} // namespace

bool RendererOpenGL::vertex_pool_render(VertexPoolData* pool) {
    vertex_pool_render_prepare(pool);
    vertex_pool_render_draw(pool);
    vertex_pool_render_finish(pool);
    return true;
}

bool RendererOpenGL::vertex_pool_render_prepare(VertexPoolData* pool) {
    if (!pool)
        return false;
    prepared_mesh = nullptr;
    return pool->use_generic_vertex_attribs ? _vertex_pool_render_prepare_gl3(pool)
                                            : _vertex_pool_render_prepare_gl2(pool);
}

bool RendererOpenGL::vertex_pool_render_draw(VertexPoolData* pool) {
    if (!pool)
        return false;
    const int first = pool->render_start_offset;
    const int rest = static_cast<int>(static_cast<long>(pool->num_vertices) - first);
    glDrawArrays(GL_POINTS, first,
                 pool->render_num_vertices >= 1 ? pool->render_num_vertices : rest);
    return true;
}

bool RendererOpenGL::vertex_pool_render_finish(VertexPoolData* pool) {
    if (!pool)
        return false;
    prepared_mesh = nullptr;
    return pool->use_generic_vertex_attribs ? _vertex_pool_render_finish_gl3(pool)
                                            : _vertex_pool_render_finish_gl2(pool);
}

bool RendererOpenGL::vertex_pool_kill(VertexPoolData* pool) {
    if (!pool || !gl.glDeleteBuffers || (pool->vertex_array_id != 0 && !gl.glDeleteVertexArrays))
        return false;
    const Context context{gl, forced_vertex_usage, forced_index_usage};
    delete_vertex_array(context, objects_of(*pool));
    pool->vertex_buffer_id = delete_buffer(pool->vertex_buffer_id);
    pool->gpu_state = {};
    return true;
}

void RendererOpenGL::vertex_pool_memory_barriers() {
    memory_barrier(MEMORY_BARRIER_VERTEX_ATTRIB_ARRAY | MEMORY_BARRIER_SHADER_STORAGE);
}

namespace {

/// One array of the fixed pipeline over a pool's buffer.
void point_array(const Context& context, ClientArrays& arrays, const VertexPoolData& pool,
                 mesh_buffers::AttributeIndex index, unsigned int dim, unsigned long stride,
                 unsigned long offset) {
    mesh_buffers::point_client_attribute(context, arrays, index, -1,
                                         {pool.vertex_buffer_id, pool.num_vertices, dim,
                                          static_cast<GLsizei>(stride), buffer_offset(offset)});
}

} // namespace

bool RendererOpenGL::_vertex_pool_render_prepare_gl2(VertexPoolData* pool) {
    if (pool->separate_vertex_arrays)
        return _vertex_pool_render_prepare_separate_arrays_gl2(pool);
    if (!pool->has_points() || !has_gl2_entries(gl))
        return false;
    const Context context{gl, forced_vertex_usage, forced_index_usage};
    make_record_buffer(context, *pool, getid());
    gl.glBindBuffer(GL_ARRAY_BUFFER, pool->vertex_buffer_id);
    if (pool->vertices_need_update)
        upload(context, 0, record_bytes(*pool), pool->vertices);
    pool->vertices_need_update = false;

    client_arrays.begin_prepare();
    point_array(context, client_arrays, *pool, mesh_buffers::at_position, 4, sizeof(Vertex),
                offsetof(Vertex, position));
    if (pool->has_color)
        point_array(context, client_arrays, *pool, mesh_buffers::at_color, 4, sizeof(Vertex),
                    offsetof(Vertex, color));
    if (pool->has_normal)
        point_array(context, client_arrays, *pool, mesh_buffers::at_normal, 4, sizeof(Vertex),
                    offsetof(Vertex, normal));
    client_arrays.end_prepare(gl, pool->num_vertices);
    enable_point_state(true);
    return true;
}

bool RendererOpenGL::_vertex_pool_render_prepare_separate_arrays_gl2(VertexPoolData* pool) {
    if (!pool->has_points() || !has_gl2_entries(gl))
        return false;
    const Context context{gl, forced_vertex_usage, forced_index_usage};
    make_block_buffer(context, *pool, getid());
    upload_blocks(context, *pool);

    client_arrays.begin_prepare();
    point_array(context, client_arrays, *pool, mesh_buffers::at_position, 3, 0, 0);
    point_array(context, client_arrays, *pool, mesh_buffers::at_color, 4, 0,
                positions_bytes(*pool));
    client_arrays.end_prepare(gl, pool->num_vertices);
    enable_point_state(true);
    return true;
}

bool RendererOpenGL::_vertex_pool_render_finish_gl2(VertexPoolData* pool) {
    if (!gl.glBindBuffer || !gl.glDisableVertexAttribArray)
        return false;
    disable_point_state();
    client_arrays.disable(gl, ClientArray::vertex);
    if (pool->separate_vertex_arrays) {
        client_arrays.disable(gl, ClientArray::color);
    } else {
        if (pool->has_color)
            client_arrays.disable(gl, ClientArray::color);
        if (pool->has_normal)
            client_arrays.disable(gl, ClientArray::normal);
        if (pool->has_tangent)
            client_arrays.disable_generic(gl, TANGENT_LOCATION);
    }
    gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
    return true;
}

bool RendererOpenGL::_vertex_pool_render_prepare_gl3(VertexPoolData* pool) {
    if (pool->separate_vertex_arrays)
        return _vertex_pool_render_prepare_separate_arrays_gl3(pool);
    if (!pool->has_points() || !has_gl3_entries(gl))
        return false;
    const Context context{gl, forced_vertex_usage, forced_index_usage};
    if (make_record_buffer(context, *pool, getid()))
        gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
    if (pool->vertices_need_update) {
        gl.glBindBuffer(GL_ARRAY_BUFFER, pool->vertex_buffer_id);
        upload(context, 0, record_bytes(*pool), pool->vertices);
        pool->vertices_need_update = false;
        gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
    }
    if (bind_vertex_array(context, objects_of(*pool))) {
        point_attribute(context, 0, 4, sizeof(Vertex), offsetof(Vertex, position));
        if (pool->has_color)
            point_attribute(context, 1, 4, sizeof(Vertex), offsetof(Vertex, color));
        if (pool->has_normal)
            point_attribute(context, 2, 4, sizeof(Vertex), offsetof(Vertex, normal));
    }
    enable_point_state(false);
    return true;
}

bool RendererOpenGL::_vertex_pool_render_prepare_separate_arrays_gl3(VertexPoolData* pool) {
    if (!pool->has_points() || !has_gl3_entries(gl))
        return false;
    const Context context{gl, forced_vertex_usage, forced_index_usage};
    make_block_buffer(context, *pool, getid());
    upload_blocks(context, *pool);
    if (bind_vertex_array(context, objects_of(*pool))) {
        point_attribute(context, 0, 3, 0, 0);
        point_attribute(context, 1, 4, 0, positions_bytes(*pool));
    }
    enable_point_state(false);
    return true;
}

bool RendererOpenGL::_vertex_pool_render_finish_gl3(VertexPoolData*) {
    if (!gl.glBindVertexArray)
        return false;
    disable_point_state();
    gl.glBindVertexArray(0);
    return true;
}

} // namespace orvex
