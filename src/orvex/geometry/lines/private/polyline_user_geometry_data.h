#pragma once

#include <vector>

#include "orvex/renderer/records/vertex.h"

namespace orvex {

/// What a host listed for the next build of a polyline.
struct PolylineBuildUserGeometryData {
    std::vector<Vertex> vertices; ///< two for each line
};

} // namespace orvex
