#pragma once

/// @file
/// Which way is up.

namespace orvex::kit {

/// The direction of a model's space that points up.
enum class UpAxis {
    automatic, ///< y, or in a 3DS file the axis along which the model stands
    x,
    y,
    z,
    minus_x,
    minus_y,
    minus_z
};

} // namespace orvex::kit
