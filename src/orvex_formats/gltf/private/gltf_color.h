#pragma once

/// @file
/// Colours, from light's numbers to those of screens.

#include <cmath>

namespace orvex::formats {

/// The engine's colours, and those of pictures, are as screens have them; the file's are linear.
/// @return from 0 to 1, whatever it is of; 0 for what is no number
inline float encoded_color(float linear) {
    if (!(linear > 0.0f))
        return 0.0f;
    if (linear >= 1.0f)
        return 1.0f;
    return linear <= 0.0031308f ? linear * 12.92f : 1.055f * std::pow(linear, 1.0f / 2.4f) - 0.055f;
}

} // namespace orvex::formats
