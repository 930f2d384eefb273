#pragma once

/// @file
/// PLY, what scanners of things write.

#include "orvex_formats/private/draft.h"
#include "orvex_formats/private/input_file.h"

namespace orvex::formats {

/// Reads text and both orders of bytes. Vertices may have normals, colours and coordinates, under
/// any of the names that are in use; faces are polygons or strips, and may have colours of their
/// own and coordinates at their corners. Pictures are named by comments, "TextureFile name". A file
/// without faces is a cloud.
/// @throw Refusal
Draft read_ply(const InputFile& file);

} // namespace orvex::formats
