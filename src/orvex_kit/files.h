#pragma once

/// @file
/// Names of files, and how to tell why a file can't be read.

#include <cstddef>
#include <string>
#include <string_view>

#include "orvex_kit/api.h"

namespace orvex::kit {

/// The folder of a file with its slash, as the loaders put it before names; empty without one.
ORVEX_KIT_API std::string folder_of(const std::string& path);

/// Where the suffix of a file begins, as in "a.b/c.obj" at its last dot; its end without one. A
/// name that begins with its only dot has none.
ORVEX_KIT_API std::size_t suffix_of(const std::string& path);
/// Whether a file has that suffix, which is given in lower case with its dot, in any case.
ORVEX_KIT_API bool has_suffix(const std::string& path, const char* suffix);

/// Why a file can't be read, as "none.obj: No such file or directory"; empty if it can. A folder,
/// what is no regular file, as a pipe, and a file without a byte can't. Any thread.
ORVEX_KIT_API std::string mistake_in_reading(const std::string& path);

/// A word of a file as a message quotes it: not long, and with nothing that a terminal would obey.
/// Any thread.
/// @return its first 40 bytes, with "..." behind if there are more, and `?` for each that is no
///         plain character of ASCII
ORVEX_KIT_API std::string quotable(std::string_view word);

} // namespace orvex::kit
