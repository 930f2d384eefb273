#pragma once

/// @file
/// Arrays at an address of a chosen alignment. An `AlignedNew_*` takes one raw block, hands it out
/// through `raw` and returns the first aligned address in it; the matching `AlignedDelete_*` gives
/// the raw block back. The caller owns the block and keeps both pointers. Any thread may call.
///
/// - count: number of elements
/// - alignment: bytes, a power of two; below 1 counts as 1; one that is no power of two gives an
///   address inside the block with no promise on its alignment
/// - raw: receives the raw block; null keeps it from the caller, who then can't give it back
/// - result: the first element; null, with `*raw` null, when memory is short, and always where
///   `Is64BitApp` is false
///
/// @code
/// unsigned char* raw = nullptr;
/// orvex::vec4* points = orvex::AlignedNew_vec4(100, 16, &raw);
/// orvex::AlignedDelete_vec4(&points, 100, &raw);
/// @endcode

#include "orvex/api.h"
#include "orvex/fwd.h"

namespace orvex {

/// Elements are 0.
ORVEX_API unsigned int* AlignedNew_u32(unsigned long count, int alignment, unsigned char** raw);
/// Elements are (0, 0, 0, 1).
ORVEX_API vec4* AlignedNew_vec4(unsigned long count, int alignment, unsigned char** raw);
/// Elements are (0, 0, 0).
ORVEX_API vec3* AlignedNew_vec3(unsigned long count, int alignment, unsigned char** raw);
/// Elements are (0, 0).
ORVEX_API vec2* AlignedNew_vec2(unsigned long count, int alignment, unsigned char** raw);

/// Sets `*aligned` to null, frees `*raw` and sets it to null. Null arguments are passed over.
/// @param count  not used
ORVEX_API void AlignedDelete_u32(unsigned int** aligned, unsigned long count, unsigned char** raw);
/// As `AlignedDelete_u32`.
ORVEX_API void AlignedDelete_vec4(vec4** aligned, unsigned long count, unsigned char** raw);
/// As `AlignedDelete_u32`.
ORVEX_API void AlignedDelete_vec3(vec3** aligned, unsigned long count, unsigned char** raw);
/// As `AlignedDelete_u32`.
ORVEX_API void AlignedDelete_vec2(vec2** aligned, unsigned long count, unsigned char** raw);

} // namespace orvex
