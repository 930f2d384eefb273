#pragma once

/// @file
/// The reader of OBJ files as programs write them.

#include "orvex_formats/obj/private/obj_blocks.h"
#include "orvex_formats/private/draft.h"

namespace orvex::formats {

/// Reads a text of vertices and faces, with its material libraries, which lie in its folder or
/// below it. Numbers of faces count from 1, or from -1 backwards. Polygons are cut into triangles,
/// concave ones too. A surface for each group, or object without groups; corners that name the same
/// entries are one vertex.
///
/// Normals that a file doesn't have are smooth within smoothing groups, flat where smoothing is
/// off, and by `add_normals` where nothing is said. Points become a cloud, polylines become lines.
///
/// A face that names an entry which isn't there is left out, with a note. Curved surfaces are left
/// out.
/// @throw Refusal, std::bad_alloc
Draft read_obj(const InputFile& file);
/// The same, cut in another way: of use to tests.
Draft read_obj(const InputFile& file, const ObjCutting& cutting);

} // namespace orvex::formats
