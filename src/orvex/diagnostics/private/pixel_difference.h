#pragma once

/// @file
/// How many pixels of two buffers differ. Equal stretches, the usual case, cost what `memcmp`
/// costs.

namespace orvex {

/// Which pixels are looked at, in the order of memory.
enum class PixelStep {
    every,  ///< all
    second, ///< 0, 2, 4 and so on
};

/// Counts the pixels of four bytes that differ in any of them.
/// @param a, b    buffers of `pixels` times four bytes; null only for none
unsigned long count_different_pixels(const unsigned char* a, const unsigned char* b,
                                     unsigned long pixels, PixelStep step);

/// Whether any pixel differs; ends at the first stretch that has one.
bool has_different_pixel(const unsigned char* a, const unsigned char* b, unsigned long pixels,
                         PixelStep step);

} // namespace orvex
