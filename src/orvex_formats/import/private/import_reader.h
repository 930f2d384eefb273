#pragma once

/// @file
/// Formats that the importer reads.

#include <optional>

#include "orvex_formats/private/draft.h"
#include "orvex_formats/private/importer.h"
#include "orvex_formats/private/input_file.h"

namespace orvex::formats {

/// What the importer reads and no reader of ours does, as "AC, DAE, FBX".
const char* imported_formats();

/// Reads a file whose name ends as that of one of these formats. Pictures that it names are looked
/// for in its own folder, or below it, alone: of a name that leads elsewhere the last part counts.
/// @param time  in seconds, of the file's first animation; none: at rest
/// @throw Refusal
Draft read_imported(const InputFile& file, std::optional<float> time);

/// The same by another program.
Draft read_imported_by(const Importer& importer, const InputFile& file,
                       std::optional<float> time = {});

} // namespace orvex::formats
