#pragma once

/// @file
/// What lies in a folder.

#include <string>
#include <vector>

namespace orvex {

/// @return the names of all that lies in a folder, in order, those with a leading dot included, but
/// for
///         "." and ".."; none where there is no such folder
/// @throw std::bad_alloc  where the standard library's walk ends the process
std::vector<std::string> names_in_folder(const std::string& folder);

} // namespace orvex
