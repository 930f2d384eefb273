#pragma once

/// @file
/// Cutting polygons into triangles.

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "orvex_formats/private/draft.h"

namespace orvex::formats {

/// Cuts polygons, concave ones too. It keeps its room between polygons; one object serves one
/// thread at a time.
class PolygonCutter {
public:
    /// Appends the triangles of a polygon, turned as the polygon is: always two fewer than it has
    /// corners, none for fewer than three corners. A fan around the first corner where that is
    /// right; otherwise ears are cut off. What has no area, or a place that is no finite number, is
    /// a fan. The time grows with the number of corners, not with its square.
    /// @param corners         their places in order; 2^32 - 1 at most
    /// @param[out] triangles  with places in the list of corners
    /// @return false where some triangles had to be turned the other way: of a polygon that crosses
    ///         itself, or is so winding that it would take too long. Of four corners, which often
    ///         lie in no plane, only two edges that meet between their ends are told.
    /// @throw std::bad_alloc
    bool cut(std::span<const vec3> corners, std::vector<Triangle>& triangles);

private:
    /// A corner in the plane of the polygon.
    struct Corner {
        double x = 0.0, y = 0.0;
        std::uint32_t previous = 0, next = 0; ///< of those that are left
        bool is_left = true;
        bool is_dent = false; ///< no strictly convex corner: one that may lie in an ear
    };

    /// One of the two directions of the grid.
    struct Side {
        double low = 0.0, width = 1.0;
        std::size_t num_cells = 1;

        std::size_t cell_of(double place) const;
    };
    /// As long as twice the polygon's area.
    struct Normal {
        double x = 0.0, y = 0.0, z = 0.0;
    };
    /// Which corners are ears.
    enum class Strictness {
        proper,   ///< those whose triangles no other corner touches
        touching, ///< those whose triangles no other corner lies in
        anything
    };

    static Normal normal_of(std::span<const vec3> corners);
    void flatten(std::span<const vec3> corners, const Normal& normal);
    bool is_fan_right() const;
    void fill_grid();
    bool cut_ears(std::vector<Triangle>& triangles);
    bool is_ear(std::uint32_t corner, Strictness strictness);
    bool is_in_the_way(std::uint32_t other, std::uint32_t ear, Strictness strictness) const;
    bool reaches_into(std::uint32_t other, std::uint32_t ear) const;
    double turn(std::uint32_t a, std::uint32_t b, std::uint32_t c) const;
    std::uint32_t cut_off(std::uint32_t corner, std::vector<Triangle>& triangles);

    std::vector<Corner> plane;
    // A grid over the plane: for each cell where its dents begin in the list of dents.
    std::vector<std::uint32_t> cells;
    std::vector<std::uint32_t> dents;
    Side columns, rows;
    double rounding = 0.0;       ///< an area that is as good as none
    double wrong_area = 0.0;     ///< of triangles that are turned the other way
    std::uint64_t work_left = 0; ///< how many cells and corners may still be looked at
};

} // namespace orvex::formats
