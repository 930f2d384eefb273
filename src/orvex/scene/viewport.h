#pragma once

/// @file
/// `Viewport`, the rectangle of a window that a camera draws into.

#include "orvex/api.h"

namespace orvex {

/// A rectangle of the window, in pixels, with its origin at the lower left.
///
/// A value: each camera holds one, and copies are independent. It may be used on any thread, by one
/// at a time.
///
/// @code
/// orvex::Viewport viewport;
/// viewport.set(0, 0, 800, 600);
/// camera->set_viewport(viewport);
/// @endcode
class ORVEX_API Viewport {
public:
    int x = 0;      ///< left edge, pixels
    int y = 0;      ///< lower edge, pixels
    int width = 0;  ///< pixels
    int height = 0; ///< pixels

    /// All four are 0.
    Viewport();
    Viewport(const Viewport&) = default;            ///< all four numbers
    Viewport& operator=(const Viewport&) = default; ///< all four numbers
    virtual ~Viewport();

    /// Stores all four, in pixels.
    /// @param new_x,new_y  lower left corner, of either sign
    /// @param new_width,new_height  size; unchecked: a negative one is refused by the API when a
    ///                              camera is bound
    void set(int new_x, int new_y, int new_width, int new_height);
};

} // namespace orvex
