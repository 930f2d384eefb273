#pragma once

/// @file
/// Comparison of two pictures.

#include <cstddef>
#include <string>

#include "orvex_kit/api.h"
#include "orvex_kit/outcome.h"
#include "orvex_kit/picture.h"

namespace orvex::kit {

/// How far two pictures may be apart and still count as equal; by default not at all. What is
/// negative or NaN counts as 0.
struct CompareLimits {
    double largest = 0.0; ///< a pixel differs if one of its samples does by more, in its own unit
    double share = 0.0;   ///< of all pixels, which may differ, 0 to 1
};

/// How two pictures compare. Of pictures that differ in size or kind nothing but that is known.
struct Comparison {
    bool is_equal = false;     ///< within the limits
    std::string reason;        ///< a sentence about what differs; empty if equal
    std::size_t differing = 0; ///< pixels that differ
    double largest = 0.0;      ///< difference of any sample, of pixels that don't differ as well
    int left = 0;              ///< of the box around what differs, in pixels from the left
    int top = 0;               ///< of that box, in pixels from above
    int width = 0;             ///< of that box; 0 if nothing differs
    int height = 0;            ///< of that box; 0 if nothing differs
};

/// Compares two pictures sample by sample. A NaN equals a NaN and is infinitely far from a number;
/// an infinity equals itself. Two empty pictures are equal. Any thread.
ORVEX_KIT_API Comparison compare(const Picture& a, const Picture& b,
                                 const CompareLimits& limits = {});

/// Shows where two pictures differ: 8-bit, one channel, 0 where a pixel doesn't, else 64 to 255,
/// the brighter the further its samples are apart, compared with the largest difference that is
/// finite.
/// @param result  receives it; may be one of the two; stays as it was on failure
/// @return that sizes or kinds differ, that there are no pixels, or that memory ran out
ORVEX_KIT_API Outcome show_difference(const Picture& a, const Picture& b, Picture& result,
                                      const CompareLimits& limits = {});

} // namespace orvex::kit
