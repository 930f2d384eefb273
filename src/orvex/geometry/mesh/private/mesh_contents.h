#pragma once

/// @file
/// What a store really holds: after a failed allocation it isn't what its counts say, and after a
/// build it isn't what the GPU has.

#include "orvex/renderer/records/mesh_data.h"
#include "orvex/renderer/records/private/mesh_upload.h"

namespace orvex::mesh_contents {

inline bool has_vertices(MeshData* store) {
    if (!store || store->num_vertices == 0)
        return false;
    return store->separate_vertex_arrays ? store->get_position_ptr() : store->get_vertex_ptr();
}

inline bool has_faces(const MeshData* store) {
    if (!store || store->num_faces == 0)
        return false;
    if (store->index_bits == 16)
        return store->faces_u16;
    return store->faces_u32;
}

/// Face i in either width; expects that there is one.
inline FaceU32 face_at(const MeshData& store, unsigned long i) {
    if (store.index_bits != 16)
        return store.faces_u32[i];
    const FaceU16& face = store.faces_u16[i];
    return {face.a, face.b, face.c};
}

/// After a build: a store that was drawn before has GPU buffers with the geometry before this one.
inline void mark_for_upload(MeshData& store) {
    mesh_upload::mark_vertices(store);
    mesh_upload::mark_faces(store);
}

} // namespace orvex::mesh_contents
