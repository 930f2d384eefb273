#pragma once

/// @file
/// Channels of pixels: bytes of 0 to 255, and floats of 0 to 1.

#include "orvex/math/private/sizes.h"

namespace orvex {

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
