#pragma once

/// @file
/// STL, the triangles of machines that print and mill.

#include "orvex_formats/private/draft.h"
#include "orvex_formats/private/input_file.h"

namespace orvex::formats {

/// Reads both kinds, which are told apart by what the file's size says of the count in it: many
/// binary files begin as texts do, with "solid". Equal vertices become one. A binary file may have
/// colours in the attributes of its triangles, of either convention: where the head says "COLOR="
/// red stands in the low bits and a set high bit means the head's colour, else blue stands there
/// and a set high bit says that there is a colour.
/// @throw Refusal
Draft read_stl(const InputFile& file);

} // namespace orvex::formats
