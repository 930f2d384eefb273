#pragma once

/// @file
/// The life of a vertex array object, for every kind of record.
///
/// A view through the fields of a record, as a `BufferStore` is. The array remembers which vertex
/// buffer its pointers were recorded over; when the record has another one by now, or says that the
/// pointers no longer fit, the array is made anew. One that a host made, over no buffer known here,
/// is never changed.

#include "orvex/renderer/opengl/state/private/gl_state.h"

namespace orvex {

/// One vertex array object, seen through the fields of its record.
class VertexArray {
public:
    /// @param gl               has to live as long as this
    /// @param id               the record's field, 0 for no array
    /// @param recorded_buffer  the record's field for the buffer that it points into, 0 for unknown
    /// @param stale            the record's field: it is to be recorded anew
    VertexArray(const ORVEX_Renderer_OpenGL_Func& gl, unsigned int& id,
                unsigned int& recorded_buffer, bool& stale)
        : gl(gl)
        , id(id)
        , recorded_buffer(recorded_buffer)
        , stale(stale) {}

    /// @return whether its pointers were recorded here
    bool is_recorded_here() const { return recorded_buffer != 0; }

    /// @return whether it can be bound as it is
    bool stands(unsigned int buffer) const { return id != 0 && !must_record_anew(buffer); }

    /// Binds it as it is, or makes it, with the buffer bound for the pointers to come.
    /// @param buffer  the record's vertex buffer
    /// @return true if it was made: its pointers are to be recorded. Where the context has no
    ///         memory for it nothing is bound, and its id stays 0
    bool bind(unsigned int buffer) {
        if (!stands(buffer))
            return make(buffer);
        gl.glBindVertexArray(id);
        return false;
    }

    /// Deletes it if there is one, and if the context can.
    void destroy();

private:
    bool must_record_anew(unsigned int buffer) const {
        return stale || (recorded_buffer != 0 && recorded_buffer != buffer);
    }
    bool make(unsigned int buffer);

    const ORVEX_Renderer_OpenGL_Func& gl;
    unsigned int& id;
    unsigned int& recorded_buffer;
    bool& stale;
};

/// The array of a mesh, a polyline or a point pool.
template<class Record>
VertexArray vertex_array_of(const ORVEX_Renderer_OpenGL_Func& gl, Record& record) {
    return {gl, record.vertex_array_id, record.gpu_state.vertex_array_vertex_buffer,
            record.gpu_state.vertex_array_stale};
}

/// Binds the array of a record for its draw, see `VertexArray::bind`.
template<class Record>
bool bind_vertex_array(const GlState& state, Record& record) {
    VertexArray array = vertex_array_of(state.gl, record);
    if (!array.stands(record.vertex_buffer_id))
        state.bound().take_off_array();
    else if (state.bound().resume_array(record.vertex_array_id))
        return false;
    const bool is_new = array.bind(record.vertex_buffer_id);
    state.bound().array_was_bound();
    state.context().bound_array = record.vertex_array_id;
    return is_new;
}

/// Deletes the array of a record that is killed.
template<class Record>
void delete_vertex_array(const GlState& state, Record& record) {
    unsigned int& bound = state.context().bound_array;
    if (bound == record.vertex_array_id)
        bound = 0;
    vertex_array_of(state.gl, record).destroy();
}

/// Enables a generic attribute of the bound array and points it into the bound buffer.
/// @param dim     floats
/// @param stride  bytes, 0 for elements one behind the other
/// @param offset  bytes
void point_attribute(const ORVEX_Renderer_OpenGL_Func& gl, int location, unsigned int dim,
                     unsigned long stride, unsigned long offset);

} // namespace orvex
