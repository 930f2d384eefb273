#pragma once

/// @file
/// The step of a record from one context into another.
///
/// A record that is drawn in the context of its last draw finds its objects in its fields, at the
/// price of one comparison. In another one its vertex array is put aside, and so are its buffers
/// unless the two share; what it has there takes their place, or nothing, so that it is uploaded
/// as at its first draw. A change on the CPU is noted for the contexts that it didn't reach yet.

#include "orvex/renderer/opengl/buffers/private/buffer_store.h"
#include "orvex/renderer/opengl/state/private/gl_state.h"

namespace orvex {

/// Makes the fields of a record those of the current context, before anything is uploaded or
/// deleted. The overloads differ in nothing.
/// @{
void enter_context(GlState& state, MeshData& mesh);
void enter_context(GlState& state, PolylineData& polyline);
void enter_context(GlState& state, VertexPoolData& pool);
/// @}

/// Begins the prepare of a record that is no mesh: what was prepared before isn't any more.
template<class Record>
void begin_other_prepare(GlState& state, Record& record) {
    enter_context(state, record);
    accept_draws(state, &record);
    // Client arrays would be pointed inside it.
    if (!record.use_generic_vertex_attribs)
        state.release_vertex_array();
    state.context().prepared_mesh = nullptr;
}

/// The vertex arrays over the buffers of a record, in whatever context, are to be recorded anew.
/// @{
void outdate_arrays(MeshData& mesh);
void outdate_arrays(PolylineData& polyline);
void outdate_arrays(VertexPoolData& pool);
/// @}

/// Ends what a killed record has in other contexts, as soon as they are current again.
/// @{
void bury_elsewhere(MeshData& mesh);
void bury_elsewhere(PolylineData& polyline);
void bury_elsewhere(VertexPoolData& pool);
/// @}

} // namespace orvex
