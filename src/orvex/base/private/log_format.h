#pragma once

/// @file
/// The plain part of printf's language, which nearly all lines of a log are written in.

#include <cstdarg>
#include <cstddef>
#include <optional>

namespace orvex {

/// Writes what `std::vsnprintf` would, several times as fast: the conversions d, i, u, x, c, s and
/// f, with l, ll or z before those of integers and a precision before f, but no flags and no width.
/// The text ends with a 0.
/// @return the number of characters; nothing where the format holds anything else, the text doesn't
/// fit, or numbers aren't written as in the locale "C": then the buffer holds rubbish
std::optional<std::size_t> format_plainly(char* buffer, std::size_t size, const char* format,
                                          va_list arguments);

} // namespace orvex
