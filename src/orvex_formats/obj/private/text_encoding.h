#pragma once

/// @file
/// Texts that begin with a mark of how they are written, or have two bytes a letter.

#include <cstdint>
#include <optional>
#include <vector>

#include "orvex_formats/private/input_file.h"

namespace orvex::formats {

/// Where a text in UTF-8 begins, behind its mark if it has one.
std::uint64_t begin_of_text(const InputFile& file);

/// A text in UTF-16 of either order, with a mark or told by the zeros between its first letters, as
/// UTF-8. Halves of letters become question marks.
/// @return none for every other file
/// @throw Refusal, std::bad_alloc
std::optional<std::vector<unsigned char>> from_utf16(const InputFile& file);

} // namespace orvex::formats
