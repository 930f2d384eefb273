#pragma once

/// @file
/// Files that a model's file names.

#include <string>
#include <string_view>

#include "orvex_formats/private/input_file.h"

namespace orvex::formats {

/// Where a file lies that another one names, or why it isn't read.
struct Beside {
    std::string path;
    std::string mistake;     ///< empty where `path` may be opened
    bool is_missing = false; ///< the mistake is no other than that there is no such file
};

/// Finds a file in the folder of a model's file, or below it. Names that lead elsewhere are
/// mistakes: from the root, by "..", by a drive or a scheme, through a link.
/// @param model  the path of the model's file; empty for one in memory, which has no folder
/// @param name   as it is meant, without escapes
Beside find_beside(const std::string& model, std::string_view name);

/// The same of an opened file: one from an archive has what it names there, and `path` is the name
/// in the archive.
Beside find_beside(const InputFile& model, std::string_view name);

/// Opens what `find_beside` or `ArchivedFiles::find` has found.
/// @throw Refusal
InputFile open_beside(const InputFile& model, const std::string& path);

/// A URI's path with its percent signs resolved.
/// @return false where one isn't followed by two digits
bool unescape_uri(std::string_view uri, std::string& name);

} // namespace orvex::formats
