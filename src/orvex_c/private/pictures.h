#pragma once

/// @file
/// Pictures in the caller's memory.

#include <cstddef>

#include <orvex_kit/picture.h>
#include <orvex_kit/picture_file.h>

#include "orvex_c/orvex.h"

namespace orvex::c {

/// A copy of the caller's pixels.
kit::Picture picture_of(const orvex_picture* given, const char* name);
kit::PictureFileOptions file_options(const orvex_write_options* options);
/// The step from row to row, where 0 stands for no gaps; one that is too short is refused.
std::ptrdiff_t row_bytes_or_dense(std::ptrdiff_t row_bytes, std::ptrdiff_t needed,
                                  const char* name);

} // namespace orvex::c
