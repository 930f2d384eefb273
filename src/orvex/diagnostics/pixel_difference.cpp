// Counts pixels that differ, for frames that hardly ever do: stretches are compared as memory
// first, and only one that isn't equal is counted pixel by pixel, while it is still in the
// nearest cache.

#include "orvex/diagnostics/private/pixel_difference.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace orvex {

namespace {

constexpr unsigned long pixel_size = 4;

// Of an even number of pixels, so that every stretch starts on one that the second step looks at;
// small enough that a stretch with a difference is still in the nearest cache when it is counted.
constexpr unsigned long stretch = 2048;

std::uint32_t pixel_at(const unsigned char* buffer, unsigned long index) {
    std::uint32_t pixel;
    std::memcpy(&pixel, buffer + index * pixel_size, pixel_size);
    return pixel;
}

template<unsigned long step>
unsigned long count_in_stretch(const unsigned char* a, const unsigned char* b,
                               unsigned long pixels) {
    std::uint32_t count = 0;
    for (unsigned long i = 0; i < pixels; i += step)
        count += pixel_at(a, i) != pixel_at(b, i) ? 1 : 0;
    return count;
}

/// Calls `found(a, b, pixels)` on each stretch that isn't equal, until it returns false.
template<class Found>
void for_each_difference(const unsigned char* a, const unsigned char* b, unsigned long pixels,
                         Found found) {
    for (unsigned long begin = 0; begin < pixels; begin += stretch) {
        const unsigned long length = std::min(stretch, pixels - begin);
        const unsigned char* const from_a = a + begin * pixel_size;
        const unsigned char* const from_b = b + begin * pixel_size;
        if (std::memcmp(from_a, from_b, length * pixel_size) != 0 && !found(from_a, from_b, length))
            return;
    }
}

unsigned long count_in_stretch(const unsigned char* a, const unsigned char* b, unsigned long pixels,
                               PixelStep step) {
    return step == PixelStep::every ? count_in_stretch<1>(a, b, pixels)
                                    : count_in_stretch<2>(a, b, pixels);
}

} // namespace

unsigned long count_different_pixels(const unsigned char* a, const unsigned char* b,
                                     unsigned long pixels, PixelStep step) {
    unsigned long count = 0;
    for_each_difference(a, b, pixels, [&](const auto* from_a, const auto* from_b, auto length) {
        count += count_in_stretch(from_a, from_b, length, step);
        return true;
    });
    return count;
}

bool has_different_pixel(const unsigned char* a, const unsigned char* b, unsigned long pixels,
                         PixelStep step) {
    bool found = false;
    for_each_difference(a, b, pixels, [&](const auto* from_a, const auto* from_b, auto length) {
        found = count_in_stretch(from_a, from_b, length, step) != 0;
        return !found;
    });
    return found;
}

} // namespace orvex
