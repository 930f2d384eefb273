#pragma once

/// @file
/// OFF, polygons as plain lists.

#include "orvex_formats/private/draft.h"
#include "orvex_formats/private/input_file.h"

namespace orvex::formats {

/// Reads texts whose first word is OFF, with what may stand before it: ST, C and N for coordinates,
/// colours and normals of the vertices. Faces may have colours of their own behind their corners.
/// @throw Refusal
Draft read_off(const InputFile& file);

} // namespace orvex::formats
