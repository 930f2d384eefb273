#pragma once

/// @file
/// Where material libraries lie.

#include <string>
#include <string_view>
#include <vector>

#include "orvex_formats/private/input_file.h"

namespace orvex::formats {

/// The path of a library, in the folder of the model's file or below it and nowhere else: as the
/// name stands, in letters of the other case too, with slashes of either kind; of a path that leads
/// elsewhere its end.
/// @param model  the model's file; beside one in memory there is nothing, but in its archive
/// @return for `open_beside`; empty where there is no such regular file
std::string find_library(const InputFile& model, std::string_view name);

/// The names in the rest of a line "mtllib". Blanks part names or are part of one: whichever is
/// there decides, longer names first.
std::vector<std::string> library_names(const InputFile& model, std::string_view rest);

} // namespace orvex::formats
