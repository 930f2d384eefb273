#pragma once

#include <algorithm>

#include "orvex_kit/picture.h"

namespace orvex::kit {

/// Swaps the rows: the renderer gives the last one first.
inline void turn_upside_down(Picture& picture) {
    for (int top = 0, bottom = picture.height() - 1; top < bottom; ++top, --bottom)
        std::swap_ranges(picture.row_data(top), picture.row_data(top) + picture.row_bytes(),
                         picture.row_data(bottom));
}

} // namespace orvex::kit
