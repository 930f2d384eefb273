#pragma once

/// @file
/// Bytes that are written as letters.

#include <cstddef>
#include <string_view>
#include <vector>

namespace orvex::formats {

/// Appends what a text stands for. Padding may be left away.
/// @return how many letters are right: all of them, or else the place of the first mistake, with
///         `bytes` left in any state
std::size_t decode_base64(std::string_view text, std::vector<unsigned char>& bytes);

} // namespace orvex::formats
