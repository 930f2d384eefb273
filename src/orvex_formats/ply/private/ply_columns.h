#pragma once

/// @file
/// What the properties of a PLY element mean, by their names.

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "orvex_formats/ply/private/ply_header.h"

namespace orvex::formats {

/// The numbers of a row that mean something, by their place here.
enum PlyColumn { column_x, column_nx = 3, column_red = 6, column_alpha = 9, column_u, column_v };
inline constexpr std::size_t num_ply_columns = 12;
using PlyValues = std::array<float, num_ply_columns>;

/// What a row has that says nothing: black would be a colour, full cover is none.
inline constexpr PlyValues no_ply_values = {0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0};

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
    bool has_normals() const { return has(column_nx, 3); }
    bool has_colors() const { return has(column_red, 3); }
    bool has_uvs() const { return has(column_u, 2); }
    /// Whether colours are fractions, or should be.
    bool has_float_colors() const { return has_colors() && are_colors_floats; }

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
    std::array<bool, num_ply_columns> is_there{};
    bool are_colors_floats = false;
    std::vector<std::string> others;
};

} // namespace orvex::formats
