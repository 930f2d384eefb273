#pragma once

/// @file
/// What the properties of a PLY element mean, by their names.

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "orvex_formats/ply/private/ply_header.h"
#include "orvex_formats/private/polygon_shape.h"

namespace orvex::formats {

/// Which property is which number.
class PlyColumns {
public:
    /// Where a property goes.
    struct Place {
        int column = -1; ///< -1: nowhere
        float scale = 1.0f;
    };

    explicit PlyColumns(const PlyElement& element);

    Place of(std::size_t property) const { return places[property]; }

    bool has_positions() const { return has(column_x, 3); }
    bool has_colors() const { return has(column_red, 3); }
    ShapeParts parts() const { return {has(column_nx, 3), has_colors(), has(column_u, 2)}; }

    /// The names of the properties that go nowhere.
    const std::vector<std::string>& unknown() const { return others; }

private:
    bool has(int first, int count) const {
        bool all = true;
        for (int i = first; i < first + count; ++i)
            all = all && is_there[static_cast<std::size_t>(i)];
        return all;
    }

    std::vector<Place> places;
    std::array<bool, num_shape_columns> is_there{};
    std::vector<std::string> others;
};

} // namespace orvex::formats
