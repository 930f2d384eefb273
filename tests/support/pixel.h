#pragma once

/// @file
/// Single pixels of the current context's frame, by their red, green and blue bytes.

#include <array>

#include <GL/gl.h>

namespace orvex_test {

using Pixel = std::array<int, 3>;

inline constexpr Pixel black = {0, 0, 0};
inline constexpr Pixel white = {255, 255, 255};
inline constexpr Pixel red = {255, 0, 0};
inline constexpr Pixel green = {0, 255, 0};
inline constexpr Pixel blue = {0, 0, 255};
inline constexpr Pixel yellow = {255, 255, 0};
inline constexpr Pixel magenta = {255, 0, 255};
inline constexpr Pixel cyan = {0, 255, 255};

/// From the lower left corner, in pixels.
inline Pixel pixel_at(int x, int y) {
    unsigned char bytes[4] = {};
    glReadPixels(x, y, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, bytes);
    return {bytes[0], bytes[1], bytes[2]};
}

} // namespace orvex_test
