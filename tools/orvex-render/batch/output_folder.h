#pragma once

/// @file
/// Outputs stay in their folder.

#include <string>

#include "batch/entry.h"

namespace batch {

/// Why a file isn't a place for an output: a folder or a link stands there, or a link or a file is
/// among its folders. Folders that aren't there yet are fine.
/// @param folder  the output folder, which may be a link itself; empty is the current one
/// @param name    of the file, within that folder
/// @return a sentence without a stop; empty if it is a place
std::string mistake_in_place(const std::string& folder, const std::string& name);

/// Makes the folders for an output, without following a link below the output folder.
/// @return what went wrong, as a sentence without a stop; empty if nothing did
std::string make_folders(const std::string& folder, const std::string& name);

} // namespace batch
