#pragma once

/// @file
/// The factors that take degrees to radians. Single precision throughout: results are promised to
/// the last bit.

#include <bit>

namespace orvex {

inline constexpr float degrees_to_radians = 0.017453292f;      ///< π/180
inline constexpr float degrees_to_half_radians = 0.008726646f; ///< π/360, for half an opening angle

static_assert(std::bit_cast<unsigned int>(degrees_to_radians) == 0x3C8EFA35u);
static_assert(std::bit_cast<unsigned int>(degrees_to_half_radians) == 0x3C0EFA35u);

} // namespace orvex
