#pragma once

#include <cstdint>

#include "orvex/assets/models/3ds/private/lib3ds_records.h"

struct Lib3dsMesh;

namespace orvex::lib3ds {

/// The normals of the corners of a mesh's first faces, none of which may be in a smoothing group:
/// to the bit those of `lib3ds_mesh_calculate_vertex_normals`, which looks for neighbours first.
/// @param[out] normals  three for each face
void fill_unsmoothed_normals(const Lib3dsMesh& mesh, std::uint32_t num_faces,
                             Lib3dsFloat3* normals);

} // namespace orvex::lib3ds
