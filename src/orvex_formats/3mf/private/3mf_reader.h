#pragma once

/// @file
/// 3MF, what is to be printed.

#include "orvex_formats/private/draft.h"
#include "orvex_formats/private/input_file.h"

namespace orvex::formats {

/// Reads what the file builds: each mesh where its item puts it, over components of any depth, with
/// base materials, groups of colours and pictures. Objects of further parts of the package are read
/// too. Numbers stay as they are, whatever the unit; z is up.
/// @throw Refusal
Draft read_3mf(const InputFile& file);

} // namespace orvex::formats
