#pragma once

/// @file
/// Sizes that can't wrap around: what doesn't fit becomes the largest size, which no memory can
/// have, so that the check or the allocation behind it refuses it.

#include <climits>

namespace orvex {

/// The size that stands for all that can't be expressed.
inline constexpr unsigned long largest_size = ULONG_MAX;

inline unsigned long saturating_product(unsigned long a, unsigned long b) {
    unsigned long product = 0;
    return __builtin_mul_overflow(a, b, &product) ? largest_size : product;
}

inline unsigned long saturating_product(unsigned long a, unsigned long b, unsigned long c) {
    return saturating_product(saturating_product(a, b), c);
}

inline unsigned long saturating_sum(unsigned long a, unsigned long b) {
    unsigned long sum = 0;
    return __builtin_add_overflow(a, b, &sum) ? largest_size : sum;
}

} // namespace orvex
