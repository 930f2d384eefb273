#pragma once

#include <climits>

namespace orvex {

/// Product of sizes that stops at the largest unsigned value, which no buffer can have.
inline unsigned long saturating_product(unsigned long a, unsigned long b) {
    unsigned long product = 0;
    return __builtin_mul_overflow(a, b, &product) ? ULONG_MAX : product;
}

inline unsigned long saturating_product(unsigned long a, unsigned long b, unsigned long c) {
    return saturating_product(saturating_product(a, b), c);
}

/// Truncates to a 64-bit integer and keeps its low byte, so that values past 255 wrap. What has no
/// such integer, NaN included, is 0.
inline unsigned char byte_from_float(double value) {
    constexpr double limit = 9223372036854775808.0;
    if (!(value > -limit && value < limit))
        return 0;
    return static_cast<unsigned char>(static_cast<long long>(value) & 0xff);
}

/// A channel of a float image as a byte: 1.0 is 255.
inline unsigned char byte_from_channel(float channel) {
    return byte_from_float(static_cast<double>(channel) * 255.0);
}

/// A byte as a channel of a float image: 255 is 1.0.
inline float channel_from_byte(unsigned char byte) {
    return static_cast<float>(byte / 255.0);
}

} // namespace orvex
