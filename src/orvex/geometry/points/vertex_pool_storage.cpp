/// @file
/// The GPU buffer of a pool in the hands of the host and of compute programs. One buffer serves
/// drawing and storage: whoever ends it or makes it anew tells the store, so that the next draw
/// sets the vertex array up again instead of reading a buffer that is gone.

#include "orvex/geometry/points/vertex_pool.h"

#include "orvex/base/private/misuse.h"
#include "orvex/renderer/private/debug_name.h"
#include "orvex/renderer/records/vertex_pool_data.h"
#include "orvex/renderer/renderer.h"

namespace orvex {

void* VertexPool::map_vertex_buffer(Renderer* renderer) {
    if (!renderer)
        return nullptr;
    data->mapped_vertex_buffer = renderer->vertex_buffer_map(data->vertex_buffer_id);
    return data->mapped_vertex_buffer;
}

bool VertexPool::unmap_vertex_buffer(Renderer* renderer) {
    if (!renderer)
        return false;
    renderer->vertex_buffer_unmap(data->vertex_buffer_id);
    return true;
}

void* VertexPool::get_mapped_vertex_buffer() const {
    return data->mapped_vertex_buffer;
}

namespace {

unsigned long record_bytes(const VertexPoolData& store) {
    return store.num_vertices * sizeof(Vertex);
}

/// The vertex array may point into a buffer that is gone, and whose name may come again.
void forget_buffer(VertexPoolData& store) {
    store.gpu_state.vertex_buffer_bytes = 0;
    store.gpu_state.separate = false;
    store.gpu_state.vertex_array_stale = store.vertex_array_id != 0;
}

} // namespace

bool VertexPool::shader_storage_init(Renderer* renderer, BUFFER_OBJECT_USAGE usage) {
    if (!renderer)
        return misuse("VertexPool::shader_storage_init", "a null renderer");
    if (data->separate_vertex_arrays || !data->has_points())
        return misuse("VertexPool::shader_storage_init", "a separate or empty pool");
    // A buffer of an earlier call, or of an earlier draw, would have no owner left.
    shader_storage_cleanup(renderer);
    data->buffer_usage = usage;
    const DebugName name(*this);
    data->vertex_buffer_id =
        renderer->shader_storage_buffer_create(record_bytes(*data), usage, data->vertices);
    if (data->vertex_buffer_id == 0)
        return false;
    data->renderer_id = renderer->getid();
    data->gpu_state.vertex_buffer_bytes = record_bytes(*data);
    return true;
}

bool VertexPool::shader_storage_cleanup(Renderer* renderer) {
    if (data->separate_vertex_arrays || !renderer)
        return misuse("VertexPool::shader_storage_cleanup", "a separate pool, or a null renderer");
    if (data->vertex_buffer_id == 0)
        return true;
    renderer->shader_storage_buffer_kill(data->vertex_buffer_id);
    data->vertex_buffer_id = 0;
    forget_buffer(*data);
    return true;
}

void* VertexPool::shader_storage_buffer_map(Renderer* renderer) {
    if (data->separate_vertex_arrays || !renderer)
        return nullptr;
    data->mapped_vertex_buffer =
        renderer->shader_storage_buffer_map_range(data->vertex_buffer_id, 0, record_bytes(*data));
    return data->mapped_vertex_buffer;
}

bool VertexPool::shader_storage_buffer_unmap(Renderer* renderer) {
    return renderer && renderer->shader_storage_buffer_unmap(data->vertex_buffer_id);
}

bool VertexPool::shader_storage_buffer_bind(Renderer* renderer) {
    if (data->separate_vertex_arrays || !renderer || data->vertex_buffer_id == 0)
        return false;
    return renderer->shader_storage_buffer_bind(data->vertex_buffer_id);
}

bool VertexPool::shader_storage_buffer_bind_base(Renderer* renderer, unsigned int index) {
    if (data->separate_vertex_arrays || !renderer || data->vertex_buffer_id == 0)
        return false;
    return renderer->shader_storage_buffer_bind_base(data->vertex_buffer_id, index);
}

bool VertexPool::shader_storage_buffer_unbind(Renderer* renderer) {
    return renderer && renderer->shader_storage_buffer_bind(0);
}

void VertexPool::apply_memory_barriers(Renderer* renderer) {
    if (renderer)
        renderer->vertex_pool_memory_barriers();
}

} // namespace orvex
