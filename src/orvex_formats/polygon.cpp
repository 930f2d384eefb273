// A corner is an ear when it is convex and no other corner lies in the triangle with its
// neighbours. Only dents can lie there, corners that aren't convex: they are found by a grid, so
// that an ear of a large polygon needn't be compared with all of them. Whatever a file holds, so
// much work is done for a corner, and no more; what is left then becomes a fan.

#include "orvex_formats/private/polygon.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace orvex::formats {

namespace {

/// Areas this much smaller than the whole come of rounding.
constexpr double smallest_share = 1e-6;
constexpr std::uint64_t most_work_per_corner = 40;

void add_fan(std::size_t num_corners, std::vector<Triangle>& triangles) {
    for (std::uint32_t i = 2; i < num_corners; ++i)
        triangles.push_back({0, i - 1, i});
}

struct Wide3 {
    double x, y, z;
};

Wide3 between(const vec3& from, const vec3& to) {
    return {double(to.x) - double(from.x), double(to.y) - double(from.y),
            double(to.z) - double(from.z)};
}

Wide3 cross(const Wide3& a, const Wide3& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

/// Whether two triangles that share the edge from a to c lie on both sides of it: as a rule, for
/// four corners need not lie in a plane.
bool is_diagonal(const vec3& a, const vec3& b, const vec3& c, const vec3& d) {
    const Wide3 diagonal = between(a, c);
    const Wide3 left = cross(between(a, b), diagonal);
    const Wide3 right = cross(diagonal, between(a, d));
    return left.x * right.x + left.y * right.y + left.z * right.z >= 0.0;
}

double dot(const Wide3& a, const Wide3& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

/// How far a place in a plane lies from a line, below 0 on its other side; 0 where rounding might
/// have made it. @param axis  the one that the plane leaves out
double distance_of(const vec3& place, const vec3& from, const vec3& to, int axis) {
    const Wide3 way = between(from, to), there = between(from, place);
    const auto parts = [axis](const Wide3& vector) {
        return axis == 0   ? std::pair(vector.y, vector.z)
               : axis == 1 ? std::pair(vector.z, vector.x)
                           : std::pair(vector.x, vector.y);
    };
    const auto [way_x, way_y] = parts(way);
    const auto [there_x, there_y] = parts(there);
    const double first = way_x * there_y, second = way_y * there_x;
    constexpr double rounding = 4e-16;
    const bool is_sure = std::abs(first - second) > rounding * (std::abs(first) + std::abs(second));
    return is_sure ? (first - second) / std::hypot(way_x, way_y) : 0.0;
}

/// Whether two edges meet between their ends, and don't only look so: where they are apart by no
/// more than a small part of what their ends reach beyond each other.
bool do_cross(const vec3& a, const vec3& b, const vec3& c, const vec3& d) {
    const Wide3 first = between(a, b), second = between(c, d), normal = cross(first, second);
    const double x = std::abs(normal.x), y = std::abs(normal.y), z = std::abs(normal.z);
    const int axis = x > y && x > z ? 0 : y > z ? 1 : 2;
    const double of_c = distance_of(c, a, b, axis), of_d = distance_of(d, a, b, axis);
    const double of_a = distance_of(a, c, d, axis), of_b = distance_of(b, c, d, axis);
    if (!(of_a * of_b < 0.0 && of_c * of_d < 0.0))
        return false;
    constexpr double thinnest = 1e-4, least_flat = 0.05;
    const double reach = std::min({std::abs(of_a), std::abs(of_b), std::abs(of_c), std::abs(of_d)});
    const double longest = std::sqrt(std::max(dot(first, first), dot(second, second)));
    const double apart = std::abs(dot(between(a, c), normal)) / std::sqrt(dot(normal, normal));
    return reach > thinnest * longest && apart <= least_flat * reach;
}

/// Most polygons are such, and need no room. @return whether it doesn't cross itself
bool cut_four(std::span<const vec3> corners, std::vector<Triangle>& triangles) {
    const vec3 &a = corners[0], &b = corners[1], &c = corners[2], &d = corners[3];
    const bool is_first = is_diagonal(a, b, c, d);
    if (is_first || !is_diagonal(b, c, d, a)) {
        add_fan(4, triangles);
        return is_first || !(do_cross(a, b, c, d) || do_cross(b, c, d, a));
    }
    triangles.push_back({1, 2, 3});
    triangles.push_back({1, 3, 0});
    return true;
}

} // namespace

bool PolygonCutter::cut(std::span<const vec3> corners, std::vector<Triangle>& triangles) {
    if (corners.size() <= 3) {
        add_fan(corners.size(), triangles);
        return true;
    }
    if (corners.size() == 4)
        return cut_four(corners, triangles);
    const Normal normal = normal_of(corners);
    const double length = std::abs(normal.x) + std::abs(normal.y) + std::abs(normal.z);
    const bool has_area = length > 0.0 && std::isfinite(length);
    if (has_area)
        flatten(corners, normal);
    if (!has_area || is_fan_right()) {
        add_fan(corners.size(), triangles);
        return true;
    }
    fill_grid();
    return cut_ears(triangles);
}

PolygonCutter::Normal PolygonCutter::normal_of(std::span<const vec3> corners) {
    Normal normal;
    for (std::size_t i = 2; i < corners.size(); ++i) {
        const Wide3 part =
            cross(between(corners[0], corners[i - 1]), between(corners[0], corners[i]));
        normal.x += part.x;
        normal.y += part.y;
        normal.z += part.z;
    }
    return normal;
}

/// Leaves out the axis that the polygon faces most, so that it turns counter-clockwise.
void PolygonCutter::flatten(std::span<const vec3> corners, const Normal& normal) {
    const double x = std::abs(normal.x), y = std::abs(normal.y), z = std::abs(normal.z);
    const int axis = x > y && x > z ? 0 : y > z ? 1 : 2;
    const bool is_mirrored = (axis == 0 ? normal.x : axis == 1 ? normal.y : normal.z) < 0.0;
    const auto count = static_cast<std::uint32_t>(corners.size());
    plane.assign(count, {});
    for (std::uint32_t i = 0; i < count; ++i) {
        const vec3& place = corners[i];
        Corner& corner = plane[i];
        corner.x = double(axis == 0 ? place.y : axis == 1 ? place.z : place.x);
        corner.y = double(axis == 0 ? place.z : axis == 1 ? place.x : place.y);
        if (is_mirrored)
            std::swap(corner.x, corner.y);
        corner.previous = i == 0 ? count - 1 : i - 1;
        corner.next = i + 1 == count ? 0 : i + 1;
    }
    for (std::uint32_t i = 0; i < count; ++i)
        plane[i].is_dent = !(turn(plane[i].previous, i, plane[i].next) > 0.0);
    rounding =
        std::max({std::abs(normal.x), std::abs(normal.y), std::abs(normal.z)}) * smallest_share;
}

/// Twice the area of a triangle, above 0 if it turns counter-clockwise.
double PolygonCutter::turn(std::uint32_t a, std::uint32_t b, std::uint32_t c) const {
    return (plane[b].x - plane[a].x) * (plane[c].y - plane[a].y) -
           (plane[b].y - plane[a].y) * (plane[c].x - plane[a].x);
}

/// Whether all corners are seen from the first one, in their order, in less than a whole turn.
bool PolygonCutter::is_fan_right() const {
    const auto count = static_cast<std::uint32_t>(plane.size());
    double wrong = 0.0;
    for (std::uint32_t i = 2; i < count; ++i)
        wrong -= std::min(turn(0, i - 1, i), 0.0);
    if (wrong > rounding)
        return false;
    bool is_beyond_half = false;
    for (std::uint32_t i = 2; i < count; ++i) {
        const double side = turn(0, 1, i);
        if (is_beyond_half && side > rounding)
            return false;
        is_beyond_half = is_beyond_half || side < -rounding;
    }
    return true;
}

// --- The grid

namespace {

/// So many cells along two sides that there are as many as wanted, nearly square ones.
std::size_t cells_along(double side, double other_side, std::size_t wanted) {
    const double count = std::sqrt(static_cast<double>(wanted) * side / other_side);
    return count >= 1.0 ? static_cast<std::size_t>(std::min(count, double(wanted))) : 1;
}

} // namespace

std::size_t PolygonCutter::Side::cell_of(double place) const {
    const double cell = (place - low) / width * static_cast<double>(num_cells);
    return cell > 0.0 ? static_cast<std::size_t>(std::min(cell, double(num_cells - 1))) : 0;
}

void PolygonCutter::fill_grid() {
    const auto [left, right] = std::minmax_element(
        plane.begin(), plane.end(), [](const auto& a, const auto& b) { return a.x < b.x; });
    const auto [bottom, top] = std::minmax_element(
        plane.begin(), plane.end(), [](const auto& a, const auto& b) { return a.y < b.y; });
    const auto num_dents = static_cast<std::size_t>(std::count_if(
        plane.begin(), plane.end(), [](const Corner& corner) { return corner.is_dent; }));
    columns = {left->x, right->x - left->x, 1};
    rows = {bottom->y, top->y - bottom->y, 1};
    columns.num_cells = cells_along(columns.width, rows.width, num_dents);
    rows.num_cells = cells_along(rows.width, columns.width, num_dents);

    // Counts what each cell holds, then fills the cells from their ends.
    cells.assign(rows.num_cells * columns.num_cells + 1, 0);
    dents.resize(num_dents);
    const auto cell = [this](const Corner& corner) {
        return rows.cell_of(corner.y) * columns.num_cells + columns.cell_of(corner.x);
    };
    for (const Corner& corner : plane)
        if (corner.is_dent)
            ++cells[cell(corner)];
    for (std::size_t i = 1; i < cells.size(); ++i)
        cells[i] += cells[i - 1];
    for (std::uint32_t i = 0; i < plane.size(); ++i)
        if (plane[i].is_dent)
            dents[--cells[cell(plane[i])]] = i;
}

// --- Ears

/// Whether another corner lies in the triangle of an ear, or on its edge if that is forbidden.
bool PolygonCutter::is_in_the_way(std::uint32_t other, std::uint32_t ear,
                                  Strictness strictness) const {
    const Corner& corner = plane[ear];
    if (!plane[other].is_left || other == ear || other == corner.previous || other == corner.next)
        return false;
    const auto is_same_place = [&](std::uint32_t a) {
        return plane[a].x == plane[other].x && plane[a].y == plane[other].y;
    };
    // Polygons with holes pass the same place more than once.
    if (is_same_place(ear))
        return reaches_into(other, ear);
    if (is_same_place(corner.previous) || is_same_place(corner.next))
        return false;
    const double a = turn(corner.previous, ear, other);
    const double b = turn(ear, corner.next, other);
    const double c = turn(corner.next, corner.previous, other);
    if (strictness == Strictness::proper)
        return a >= 0.0 && b >= 0.0 && c >= 0.0;
    return a > 0.0 && b > 0.0 && c > 0.0;
}

/// Whether what a dent at the place of an ear leaves out reaches into the ear's triangle.
bool PolygonCutter::reaches_into(std::uint32_t other, std::uint32_t ear) const {
    const Corner& dent = plane[other];
    const Corner& corner = plane[ear];
    if (turn(dent.previous, other, dent.next) > 0.0)
        return false; // it was a dent before others were cut off
    const auto is_in_ear = [&](std::uint32_t to) {
        return turn(corner.previous, ear, to) > 0.0 && turn(ear, corner.next, to) > 0.0;
    };
    if (is_in_ear(dent.previous) || is_in_ear(dent.next))
        return true;
    // The edges enclose the triangle's, or lie on them: a direction within it tells.
    const auto direction_to = [&](std::uint32_t to) {
        const double x = plane[to].x - corner.x, y = plane[to].y - corner.y;
        const double length = std::hypot(x, y);
        return std::pair(x / length, y / length);
    };
    const std::pair<double, double> a = direction_to(corner.previous);
    const std::pair<double, double> b = direction_to(corner.next);
    const auto is_right_of = [&](double x, double y) {
        return x * (a.second + b.second) - y * (a.first + b.first) < 0.0;
    };
    return is_right_of(corner.x - plane[dent.previous].x, corner.y - plane[dent.previous].y) &&
           is_right_of(plane[dent.next].x - corner.x, plane[dent.next].y - corner.y);
}

bool PolygonCutter::is_ear(std::uint32_t corner, Strictness strictness) {
    if (strictness == Strictness::anything)
        return true;
    const Corner& middle = plane[corner];
    const double area = turn(middle.previous, corner, middle.next);
    if (strictness == Strictness::proper ? !(area > 0.0) : area < 0.0)
        return false;
    const Corner& a = plane[middle.previous];
    const Corner& b = plane[middle.next];
    const std::size_t left = columns.cell_of(std::min({a.x, middle.x, b.x}));
    const std::size_t right = columns.cell_of(std::max({a.x, middle.x, b.x}));
    const std::size_t bottom = rows.cell_of(std::min({a.y, middle.y, b.y}));
    const std::size_t top = rows.cell_of(std::max({a.y, middle.y, b.y}));
    for (std::size_t row = bottom; row <= top; ++row) {
        // The cells of a row stand one behind the other.
        const std::uint32_t begin = cells[row * columns.num_cells + left];
        const std::uint32_t end = cells[row * columns.num_cells + right + 1];
        work_left -= std::min<std::uint64_t>(work_left, 1);
        for (std::uint32_t i = begin; i < end && work_left > 0; ++i, --work_left)
            if (is_in_the_way(dents[i], corner, strictness))
                return false;
    }
    return true;
}

/// @return the corner to look at next
std::uint32_t PolygonCutter::cut_off(std::uint32_t corner, std::vector<Triangle>& triangles) {
    Corner& ear = plane[corner];
    triangles.push_back({ear.previous, corner, ear.next});
    wrong_area -= std::min(turn(ear.previous, corner, ear.next), 0.0);
    ear.is_left = false;
    plane[ear.previous].next = ear.next;
    plane[ear.next].previous = ear.previous;
    return ear.next;
}

bool PolygonCutter::cut_ears(std::vector<Triangle>& triangles) {
    auto left = static_cast<std::uint32_t>(plane.size());
    work_left = left * std::min<std::uint64_t>(left, most_work_per_corner);
    Strictness strictness = Strictness::proper;
    wrong_area = 0.0;
    std::uint32_t corner = 0;
    for (std::uint32_t num_tried = 0; left > 3;) {
        if (work_left == 0)
            strictness = Strictness::anything;
        if (is_ear(corner, strictness)) {
            corner = cut_off(corner, triangles);
            --left;
            num_tried = 0;
            if (work_left > 0)
                strictness = Strictness::proper;
            continue;
        }
        // No corner is an ear: what touches itself is allowed next, then what crosses itself.
        corner = plane[corner].next;
        work_left -= std::min<std::uint64_t>(work_left, 1);
        if (++num_tried == left) {
            strictness =
                strictness == Strictness::proper ? Strictness::touching : Strictness::anything;
            num_tried = 0;
        }
    }
    cut_off(corner, triangles);
    return wrong_area <= rounding;
}

} // namespace orvex::formats
