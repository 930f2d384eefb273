#pragma once

#include <vector>

#include "orvex/renderer/records/mesh_types.h"
#include "orvex/renderer/records/vertex.h"

namespace orvex {

/// What a host listed for the next build of a mesh.
struct MeshBuildUserGeometryData {
    std::vector<Vertex> vertices;
    std::vector<FaceU32> faces32;
    std::vector<FaceU16> faces16; ///< never filled: every face comes with 32-bit indices
};

} // namespace orvex
