#pragma once

/// @file
/// Pictures in the statements of material libraries.

#include <string>
#include <string_view>

#include <orvex/assets/materials/physical_material.h>

namespace orvex::formats {

/// A picture and the options in front of its name that say how it lies.
struct MapStatement {
    std::string name; ///< as it stands, without quotes
    float offset_u = 0.0f, offset_v = 0.0f;
    float scale_u = 1.0f, scale_v = 1.0f;
    float strength = 1.0f; ///< of bumps
    bool is_clamped = false;

    PhysicalTexture texture() const;
};

/// Reads what stands behind the keyword. Options that say nothing about where the picture lies are
/// passed over; a name may have blanks.
MapStatement read_map(std::string_view text);

} // namespace orvex::formats
