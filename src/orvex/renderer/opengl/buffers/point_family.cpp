#include "orvex/renderer/opengl/buffers/private/point_family.h"

#include "orvex/renderer/opengl/buffers/private/client_pointers.h"
#include "orvex/renderer/opengl/buffers/private/record_buffers.h"
#include "orvex/renderer/opengl/gl/private/gl_enums.h"
#include "orvex/renderer/records/vertex_pool_data.h"

// A prepare leaves the buffer (gl2) or the vertex array (gl3) bound and the point switches on; the
// finish takes both back.

namespace orvex {

namespace {

constexpr unsigned long separate_point_bytes = sizeof(vec3) + sizeof(vec4);
constexpr int tangent_location = 5;

GLenum pool_usage(const GlState& state, const VertexPoolData& pool) {
    const BUFFER_OBJECT_USAGE forced = state.forced_vertex_usage;
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
bool make_buffer(const GlState& state, VertexPoolData& pool, unsigned long bytes,
                 const void* points) {
    if (vertex_store_of(state, pool).fits(bytes) && !has_other_layout(pool))
        return false;
    allocate_vertices(state, pool, bytes, points, pool_usage(state, pool));
    // Blocks and records lie elsewhere than those of the buffer before.
    if (pool.separate_vertex_arrays || pool.gpu_state.separate)
        outdate_arrays(pool);
    pool.gpu_state.separate = pool.separate_vertex_arrays;
    return true;
}

bool make_record_buffer(const GlState& state, VertexPoolData& pool) {
    return make_buffer(state, pool, record_bytes(pool), pool.vertices);
}

/// Makes the buffer of a separate pool, whose blocks arrive with the next update.
void make_block_buffer(const GlState& state, VertexPoolData& pool) {
    if (!make_buffer(state, pool, pool.num_vertices * separate_point_bytes, nullptr))
        return;
    pool.positions_need_update = true;
    pool.colors_need_update = true;
}

/// Uploads the records into the bound buffer.
void upload_records(const GlState& state, VertexPoolData& pool) {
    vertex_store_of(state, pool).upload_bound(0, record_bytes(pool), pool.vertices);
    pool.vertices_need_update = false;
}

/// Binds the buffer and uploads the blocks that are dirty.
void upload_blocks(const GlState& state, VertexPoolData& pool) {
    const BufferStore store = vertex_store_of(state, pool);
    store.bind();
    if (pool.positions_need_update)
        store.upload_bound(0, positions_bytes(pool), pool.position.data);
    pool.positions_need_update = false;
    if (pool.colors_need_update)
        store.upload_bound(positions_bytes(pool), pool.num_vertices * sizeof(vec4),
                           pool.color.data);
    pool.colors_need_update = false;
}

/// Points one array of the fixed pipeline into a pool's buffer.
void point_array(GlState& state, const VertexPoolData& pool, AttributeIndex index, unsigned int dim,
                 unsigned long stride, unsigned long offset) {
    point_client_attribute(state, index, -1,
                           {pool.vertex_buffer_id, pool.num_vertices, dim, stride, offset});
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

bool PointFamily::prepare(VertexPoolData* pool) {
    if (!pool)
        return false;
    begin_other_prepare(state, *pool);
    return pool->use_generic_vertex_attribs ? _vertex_pool_render_prepare_gl3(pool)
                                            : _vertex_pool_render_prepare_gl2(pool);
}

bool PointFamily::draw(VertexPoolData* pool) {
    if (!pool || !state.can_draw() || is_refused(state, pool))
        return false;
    const int first = pool->render_start_offset;
    const int rest = static_cast<int>(static_cast<long>(pool->num_vertices) - first);
    glDrawArrays(GL_POINTS, first,
                 pool->render_num_vertices >= 1 ? pool->render_num_vertices : rest);
    return true;
}

bool PointFamily::finish(VertexPoolData* pool) {
    if (!pool)
        return false;
    state.context().prepared_mesh = nullptr;
    return pool->use_generic_vertex_attribs ? _vertex_pool_render_finish_gl3(pool)
                                            : _vertex_pool_render_finish_gl2(pool);
}

bool PointFamily::kill(VertexPoolData* pool) {
    if (!pool || !can_delete_objects(state, *pool))
        return false;
    delete_objects(state, *pool);
    return true;
}

// By client arrays

bool PointFamily::_vertex_pool_render_prepare_gl2(VertexPoolData* pool) {
    if (pool->separate_vertex_arrays)
        return _vertex_pool_render_prepare_separate_arrays_gl2(pool);
    if (!pool->has_points() || !state.can_draw_client_arrays())
        return false;
    make_record_buffer(state, *pool);
    if (pool->vertex_buffer_id == 0)
        return refuse_draws(state, pool);
    vertex_store_of(state, *pool).bind();
    if (pool->vertices_need_update)
        upload_records(state, *pool);

    state.context().client_arrays.begin_prepare();
    point_array(state, *pool, at_position, 4, sizeof(Vertex), offsetof(Vertex, position));
    if (pool->has_color)
        point_array(state, *pool, at_color, 4, sizeof(Vertex), offsetof(Vertex, color));
    if (pool->has_normal)
        point_array(state, *pool, at_normal, 4, sizeof(Vertex), offsetof(Vertex, normal));
    state.context().client_arrays.end_prepare(state.gl, pool->num_vertices);
    enable_point_state(true);
    return true;
}

bool PointFamily::_vertex_pool_render_prepare_separate_arrays_gl2(VertexPoolData* pool) {
    if (!pool->has_points() || !state.can_draw_client_arrays())
        return false;
    make_block_buffer(state, *pool);
    if (pool->vertex_buffer_id == 0)
        return refuse_draws(state, pool);
    upload_blocks(state, *pool);

    state.context().client_arrays.begin_prepare();
    point_array(state, *pool, at_position, 3, 0, 0);
    point_array(state, *pool, at_color, 4, 0, positions_bytes(*pool));
    state.context().client_arrays.end_prepare(state.gl, pool->num_vertices);
    enable_point_state(true);
    return true;
}

bool PointFamily::_vertex_pool_render_finish_gl2(VertexPoolData* pool) {
    const ORVEX_Renderer_OpenGL_Func& gl = state.gl;
    if (!has_entries(gl.glBindBuffer, gl.glDisableVertexAttribArray))
        return false;
    state.release_vertex_array();
    disable_point_state();
    ClientArrays& arrays = state.context().client_arrays;
    arrays.disable(gl, ClientArray::vertex);
    if (pool->separate_vertex_arrays) {
        arrays.disable(gl, ClientArray::color);
    } else {
        if (pool->has_color)
            arrays.disable(gl, ClientArray::color);
        if (pool->has_normal)
            arrays.disable(gl, ClientArray::normal);
        if (pool->has_tangent)
            arrays.disable_generic(gl, tangent_location);
    }
    gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
    return true;
}

// By a vertex array object

bool PointFamily::_vertex_pool_render_prepare_gl3(VertexPoolData* pool) {
    if (pool->separate_vertex_arrays)
        return _vertex_pool_render_prepare_separate_arrays_gl3(pool);
    if (!pool->has_points() || !state.can_draw_vertex_arrays())
        return false;
    const BufferStore store = vertex_store_of(state, *pool);
    const bool is_new = make_record_buffer(state, *pool);
    if (!store.exists())
        return refuse_draws(state, pool);
    if (is_new)
        store.unbind();
    if (pool->vertices_need_update) {
        store.bind();
        upload_records(state, *pool);
        store.unbind();
    }

    if (bind_vertex_array(state, *pool)) {
        point_attribute(state.gl, 0, 4, sizeof(Vertex), offsetof(Vertex, position));
        if (pool->has_color)
            point_attribute(state.gl, 1, 4, sizeof(Vertex), offsetof(Vertex, color));
        if (pool->has_normal)
            point_attribute(state.gl, 2, 4, sizeof(Vertex), offsetof(Vertex, normal));
    }
    if (pool->vertex_array_id == 0)
        return refuse_draws(state, pool);
    enable_point_state(false);
    return true;
}

bool PointFamily::_vertex_pool_render_prepare_separate_arrays_gl3(VertexPoolData* pool) {
    if (!pool->has_points() || !state.can_draw_vertex_arrays())
        return false;
    make_block_buffer(state, *pool);
    if (pool->vertex_buffer_id == 0)
        return refuse_draws(state, pool);
    // It stays bound: nothing but the vertex array matters to the draw.
    upload_blocks(state, *pool);
    if (bind_vertex_array(state, *pool)) {
        point_attribute(state.gl, 0, 3, 0, 0);
        point_attribute(state.gl, 1, 4, 0, positions_bytes(*pool));
    }
    if (pool->vertex_array_id == 0)
        return refuse_draws(state, pool);
    enable_point_state(false);
    return true;
}

bool PointFamily::_vertex_pool_render_finish_gl3(VertexPoolData*) {
    if (!state.gl.glBindVertexArray)
        return false;
    disable_point_state();
    state.gl.glBindVertexArray(0);
    state.context().bound_array = 0;
    return true;
}

} // namespace orvex
