#pragma once

/// @file
/// What the next prepare has to send of a mesh that was drawn before. The first prepare of a store
/// sends everything, flags or not.

#include "orvex/renderer/records/mesh_data.h"

namespace orvex::mesh_upload {

/// The vertices were written anew, every attribute of them.
inline void mark_vertices(MeshData& store) {
    const bool drawn_before = store.vertex_buffer_id != 0;
    store.positions_need_update |= drawn_before;
    store.normals_need_update |= drawn_before;
    store.tangents_need_update |= drawn_before;
    store.colors_need_update |= drawn_before;
    store.uv0_need_update |= drawn_before;
    store.uv1_need_update |= drawn_before;
}

/// The faces were, and the outlines of cells.
inline void mark_faces(MeshData& store) {
    store.faces_need_update |= store.index_buffer_id != 0;
    store.quad_edges_need_update |= store.quad_edge_buffer_id != 0;
}

} // namespace orvex::mesh_upload
