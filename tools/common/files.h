#pragma once

#include <cstddef>
#include <string>

/// The folder of a file with its slash, as the loaders put it before names; empty without one.
std::string folder_of(const std::string& path);

/// Where the suffix of a file begins, as in "a.b/c.obj" at its last dot; its end without one.
std::size_t suffix_of(const std::string& path);
/// Whether a file has that suffix, which is given in lower case with its dot, in any case.
bool has_suffix(const std::string& path, const char* suffix);

/// Why a file can't be read, as "none.obj: No such file or directory"; empty if it can.
std::string mistake_in_reading(const std::string& path);
