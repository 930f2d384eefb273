#pragma once

/// @file
/// Normals where a file has none.

#include "orvex_formats/private/draft.h"

namespace orvex::formats {

/// Gives a surface without normals smooth ones, but for edges: where two faces of a vertex differ
/// by more than 45 degrees it becomes two vertices. Larger faces weigh more. What has no area, or a
/// place that is no finite number, has no say; a vertex of such alone looks along z.
void add_normals(Surface& surface);

} // namespace orvex::formats
