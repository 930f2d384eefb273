#pragma once

/// @file
/// The instance buffer of a mesh: one block of four floats per instance for each array that the
/// store has, in the order positions, rotations, scales, colours, others. It is always made for
/// data that changes, and no usage can be forced on it.

#include "orvex/renderer/records/mesh_data.h"

namespace orvex {

struct GlState;

namespace mesh_buffers {

/// Makes the instance buffer, or makes it anew for another size, and uploads the dirty blocks.
/// Leaves nothing bound.
/// @return false if there is no buffer for the instances that the store has
bool upload_instances(const GlState& state, MeshData& mesh);

/// Before the vertex array is bound: one that points to other instances than those that are there
/// by now, or to none, is to be recorded anew.
void check_instances(MeshData& mesh);

/// Records the pointers of the blocks into the bound vertex array, one element per instance.
void point_instances(const GlState& state, MeshData& mesh);

} // namespace mesh_buffers

} // namespace orvex
