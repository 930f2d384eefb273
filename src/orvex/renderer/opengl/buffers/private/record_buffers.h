#pragma once

/// @file
/// What point pools and polylines share: one buffer of records and one vertex array.

#include "orvex/renderer/opengl/buffers/private/buffer_store.h"
#include "orvex/renderer/opengl/buffers/private/record_contexts.h"
#include "orvex/renderer/opengl/buffers/private/vertex_array.h"
#include "orvex/renderer/opengl/state/private/gl_state.h"
#include "orvex/renderer/records/vertex.h"

namespace orvex {

/// The vertex buffer of a point pool or a polyline.
template<class Record>
BufferStore vertex_store_of(const GlState& state, Record& record) {
    return {state.gl, GL_ARRAY_BUFFER, "vertices", record.vertex_buffer_id,
            record.gpu_state.vertex_buffer_bytes};
}

/// Bytes of its vertices as interleaved records.
template<class Record>
unsigned long record_bytes(const Record& record) {
    return record.num_vertices * sizeof(Vertex);
}

/// Gives its buffer, which is made if there is none, a store, and leaves it bound. The context may
/// have no memory for its name.
/// @param data  what fills it, or null
template<class Record>
void allocate_vertices(const GlState& state, Record& record, unsigned long bytes, const void* data,
                       GLenum usage) {
    if (!vertex_store_of(state, record).allocate(bytes, data, usage))
        return;
    record.renderer_id = state.renderer_id();
    // A vertex array from before points into a buffer that is gone, whose name may have come again
    // just now.
    outdate_arrays(record);
}

/// Whether the context can delete what the record holds.
template<class Record>
bool can_delete_objects(const GlState& state, const Record& record) {
    return state.gl.glDeleteBuffers &&
           (record.vertex_array_id == 0 || state.gl.glDeleteVertexArrays);
}

/// Deletes its vertex array and its buffer, here and elsewhere, and forgets what is remembered
/// about them.
template<class Record>
void delete_objects(GlState& state, Record& record) {
    state.look_at_context();
    enter_context(state, record);
    delete_vertex_array(state, record);
    delete_buffer(state, record.vertex_buffer_id);
    bury_elsewhere(record);
    record.gpu_state = {};
}

} // namespace orvex
