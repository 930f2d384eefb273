#pragma once

/// @file
/// Zeros by their sign, which a comparison doesn't see.

#include <bit>
#include <cstdint>

namespace orvex {

inline bool is_positive_zero(float value) noexcept {
    return std::bit_cast<std::uint32_t>(value) == 0;
}

} // namespace orvex
