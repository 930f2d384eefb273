#pragma once

/// @file
/// Files for what is put aside.

#include <string>

namespace batch {

/// The folder for files that nobody keeps, by TMPDIR.
std::string folder_for_files();

/// Opens a new file there that has no name, and is gone when it is closed. @return -1, with errno,
/// if there is no place
int open_unnamed_file();

} // namespace batch
