#pragma once

/// @file
/// Opening a model's own file, compressed or not.

#include <cstdint>
#include <string>
#include <vector>

#include "orvex_formats/private/input_file.h"

namespace orvex::formats {

/// A model's file as its reader sees it.
struct ModelFile {
    InputFile file;
    std::uint64_t stored_size;      ///< of what lies on the disk
    std::vector<std::string> notes; ///< what of a compressed file wasn't read
};

/// Opens a file. One that is compressed by gzip, and the one model of a zip archive, is inflated
/// into memory first, and has the path that it would have beside the archive; what else lies in
/// that is for the model's reader to ask. An archive that is a model itself stays as it is.
/// @param format  the reader's, as "STL": files of which an archive says that they are of another
///                aren't inflated for it; empty: of any
/// @throw Refusal
ModelFile open_model_file(const std::string& path, const std::string& format);

} // namespace orvex::formats
