#pragma once

/// @file
/// What the draw paths of point pools and polylines share: one buffer and one vertex array.

#include "orvex/renderer/opengl/buffers/private/mesh_buffers.h"

namespace orvex::point_buffers {

using mesh_buffers::Context;

/// The GL objects of a record and what is remembered about them, seen through its fields.
struct Objects {
    unsigned int& buffer;
    unsigned int& vertex_array;
    unsigned long& bytes;          ///< size of the buffer, 0 for unknown
    unsigned int& recorded_buffer; ///< buffer that the vertex array points into
    bool& stale;                   ///< the vertex array is to be recorded anew
    int& renderer_id;
};

/// Of a point pool or a polyline.
template<class Record>
Objects objects_of(Record& record) {
    return {record.vertex_buffer_id,
            record.vertex_array_id,
            record.gpu_state.vertex_buffer_bytes,
            record.gpu_state.vertex_array_vertex_buffer,
            record.gpu_state.vertex_array_stale,
            record.renderer_id};
}

/// Bytes of its vertices as interleaved records.
template<class Record>
unsigned long record_bytes(const Record& record) {
    return record.num_vertices * sizeof(Vertex);
}

bool has_buffer_entries(const ORVEX_Renderer_OpenGL_Func& gl);
bool has_gl2_entries(const ORVEX_Renderer_OpenGL_Func& gl);
bool has_gl3_entries(const ORVEX_Renderer_OpenGL_Func& gl);

/// Whether there is no buffer yet, or one that is known to have another size.
bool needs_storage(const Objects& objects, unsigned long bytes);

/// Makes the buffer if there is none, gives it storage, filled from `data` unless that is null, and
/// leaves it bound.
void allocate(const Context& context, const Objects& objects, unsigned long bytes, const void* data,
              GLenum usage, int renderer_id);

/// Binds the vertex array, or makes it.
/// @return true if it was made: it is bound, and its pointers are to be recorded
bool bind_vertex_array(const Context& context, const Objects& objects);

/// Enables a generic attribute and points it into the bound buffer.
void point_attribute(const Context& context, int location, int dim, unsigned long stride,
                     unsigned long offset);

/// Deletes the vertex array; the buffer is the caller's.
void delete_vertex_array(const Context& context, const Objects& objects);

} // namespace orvex::point_buffers
