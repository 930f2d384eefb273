#pragma once

/// @file
/// What holds of every draft that a reader makes, whatever the file said. For tests and fuzz
/// targets.

#include <cmath>
#include <cstddef>

#include "orvex_formats/private/draft.h"
#include "orvex_formats/private/viewpoint.h"

namespace orvex_test {

/// Whether a viewpoint looks somewhere, with what is upward at a right angle to that.
inline bool is_aimed(const orvex::formats::Viewpoint& view) {
    const auto dot = [](const orvex::vec3& a, const orvex::vec3& b) {
        return a.x * b.x + a.y * b.y + a.z * b.z;
    };
    constexpr float rounding = 1e-3f;
    return std::isfinite(dot(view.eye, view.eye)) &&
           std::abs(dot(view.forward, view.forward) - 1.0f) < rounding &&
           std::abs(dot(view.up, view.up) - 1.0f) < rounding &&
           std::abs(dot(view.forward, view.up)) < rounding;
}

/// Whether all lists fit each other, and no place lies past the end of its list.
inline bool holds_together(const orvex::formats::Draft& draft) {
    using namespace orvex::formats;
    const auto fits = [](std::size_t size, std::size_t count) {
        return size == 0 || size == count;
    };
    for (const Surface& surface : draft.surfaces) {
        const std::size_t vertices = surface.positions.size();
        const std::size_t triangles = surface.triangles.size();
        if (!fits(surface.normals.size(), vertices) || !fits(surface.colors.size(), vertices) ||
            !fits(surface.uvs[0].size(), vertices) || !fits(surface.uvs[1].size(), vertices) ||
            !fits(surface.triangle_materials.size(), triangles))
            return false;
        for (const Triangle& triangle : surface.triangles)
            for (const std::uint32_t corner : triangle)
                if (corner >= vertices)
                    return false;
        for (const std::uint32_t material : surface.triangle_materials)
            if (material != no_material && material >= draft.materials.size())
                return false;
    }
    for (const Cloud& cloud : draft.clouds)
        if (!fits(cloud.colors.size(), cloud.positions.size()))
            return false;
    for (const Lines& lines : draft.lines)
        if (lines.positions.size() % 2 != 0 || !fits(lines.colors.size(), lines.positions.size()))
            return false;
    for (const Viewpoint& view : draft.cameras)
        if (!sees_something(view) || !is_aimed(view))
            return false;
    return true;
}

} // namespace orvex_test
