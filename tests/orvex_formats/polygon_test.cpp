#include "orvex_formats/private/polygon.h"

#include <algorithm>
#include <cmath>
#include <ctime>
#include <limits>

#include <gtest/gtest.h>

namespace orvex_test {

namespace {

using namespace orvex;
using namespace orvex::formats;

struct Cut {
    std::vector<Triangle> triangles;
    bool is_proper = false;
};

Cut cut(const std::vector<vec3>& corners) {
    Cut made;
    made.is_proper = PolygonCutter().cut(corners, made.triangles);
    std::uint32_t last = 0;
    for (const Triangle& triangle : made.triangles)
        last = std::max({last, triangle[0], triangle[1], triangle[2]});
    EXPECT_LT(last, std::max<std::size_t>(corners.size(), 1));
    EXPECT_EQ(made.triangles.size(), corners.size() < 3 ? 0 : corners.size() - 2);
    return made;
}

double cross(const vec3& a, const vec3& b) {
    return double(a.x) * double(b.y) - double(a.y) * double(b.x);
}

/// Twice the area of a triangle that lies in the plane of z 0.
double area(const std::vector<vec3>& corners, const Triangle& triangle) {
    const vec3 &a = corners[triangle[0]], &b = corners[triangle[1]], &c = corners[triangle[2]];
    return cross(a, b) + cross(b, c) + cross(c, a);
}

double area_of_polygon(const std::vector<vec3>& corners) {
    double sum = 0.0;
    for (std::size_t i = 0; i < corners.size(); ++i)
        sum += cross(corners[i], corners[(i + 1) % corners.size()]);
    return sum;
}

/// Triangles that turn as the polygon does, and cover as much as it does: so none covers another.
void expect_exact_cover(const std::vector<vec3>& corners) {
    const Cut made = cut(corners);
    EXPECT_TRUE(made.is_proper);
    const double whole = area_of_polygon(corners);
    double sum = 0.0;
    for (const Triangle& triangle : made.triangles) {
        const double part = area(corners, triangle);
        EXPECT_GE(part * (whole < 0 ? -1 : 1), -1e-9);
        sum += part;
    }
    EXPECT_NEAR(sum, whole, std::abs(whole) * 1e-9);
}

std::vector<vec3> backwards(const std::vector<vec3>& corners) {
    return {corners.rbegin(), corners.rend()};
}

/// Starts at another corner.
std::vector<vec3> turned(const std::vector<vec3>& corners, std::size_t count) {
    std::vector<vec3> result(corners.begin() + static_cast<std::ptrdiff_t>(count), corners.end());
    result.insert(result.end(), corners.begin(),
                  corners.begin() + static_cast<std::ptrdiff_t>(count));
    return result;
}

void expect_exact_cover_from_each_corner(const std::vector<vec3>& corners) {
    for (std::size_t i = 0; i < corners.size(); ++i) {
        SCOPED_TRACE(i);
        expect_exact_cover(turned(corners, i));
        expect_exact_cover(backwards(turned(corners, i)));
    }
}

/// Teeth along the x axis: every second corner is a dent.
std::vector<vec3> comb(std::uint32_t num_corners) {
    std::vector<vec3> corners;
    for (std::uint32_t i = 0; i + 2 < num_corners; ++i)
        corners.emplace_back(static_cast<float>(i), i % 2 == 0 ? 0.0f : 5.0f, 0.0f);
    corners.emplace_back(static_cast<float>(num_corners), 10.0f, 0.0f);
    corners.emplace_back(-1.0f, 10.0f, 0.0f);
    return corners;
}

/// A band that winds round and round.
std::vector<vec3> spiral(std::uint32_t num_corners) {
    std::vector<vec3> corners;
    const std::uint32_t half = num_corners / 2;
    for (std::uint32_t i = 0; i < 2 * half; ++i) {
        const auto step = static_cast<double>(i < half ? i : 2 * half - 1 - i);
        const double angle = step * 0.1;
        const double radius = 1.0 + angle + (i < half ? 0.0 : 1.0);
        corners.emplace_back(static_cast<float>(radius * std::cos(angle)),
                             static_cast<float>(radius * std::sin(angle)), 0.0f);
    }
    return corners;
}

TEST(Polygon, that_is_convex_becomes_a_fan) {
    const Cut four = cut({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}});
    EXPECT_TRUE(four.is_proper);
    EXPECT_EQ(four.triangles, (std::vector<Triangle>{{0, 1, 2}, {0, 2, 3}}));
    const Cut five = cut({{0, 0, 0}, {2, 0, 0}, {3, 1, 0}, {1, 3, 0}, {-1, 1, 0}});
    EXPECT_TRUE(five.is_proper);
    EXPECT_EQ(five.triangles, (std::vector<Triangle>{{0, 1, 2}, {0, 2, 3}, {0, 3, 4}}));
}

TEST(Polygon, of_fewer_than_three_corners_is_nothing) {
    EXPECT_TRUE(cut({}).triangles.empty());
    EXPECT_TRUE(cut({{0, 0, 0}, {1, 0, 0}}).triangles.empty());
    EXPECT_EQ(cut({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}).triangles.size(), 1u);
}

TEST(Polygon, with_a_dent_is_covered_once) {
    expect_exact_cover_from_each_corner({{0, 0, 0}, {4, 0, 0}, {1, 1, 0}, {0, 4, 0}});
    expect_exact_cover_from_each_corner(
        {{0, 0, 0}, {6, 0, 0}, {6, 6, 0}, {4, 6, 0}, {4, 2, 0}, {2, 2, 0}, {2, 6, 0}, {0, 6, 0}});
    expect_exact_cover_from_each_corner(comb(21));
    expect_exact_cover_from_each_corner(spiral(100));
}

TEST(Polygon, with_corners_on_one_line_is_covered_once) {
    expect_exact_cover_from_each_corner({{0, 0, 0},
                                         {1, 0, 0},
                                         {2, 0, 0},
                                         {3, 0, 0},
                                         {3, 3, 0},
                                         {2, 3, 0},
                                         {2, 1, 0},
                                         {1, 1, 0},
                                         {1, 3, 0},
                                         {0, 3, 0}});
}

TEST(Polygon, with_a_hole_that_a_bridge_joins_is_covered_once) {
    // Twice the same corners: where the bridge begins, and where it ends.
    expect_exact_cover_from_each_corner({{0, 0, 0},
                                         {9, 0, 0},
                                         {9, 9, 0},
                                         {0, 9, 0},
                                         {0, 0, 0},
                                         {3, 3, 0},
                                         {3, 6, 0},
                                         {6, 6, 0},
                                         {6, 3, 0},
                                         {3, 3, 0}});
}

TEST(Polygon, with_a_hole_that_touches_a_corner_is_covered_once) {
    expect_exact_cover_from_each_corner({{0, 0, 0},
                                         {9, 0, 0},
                                         {6, 3, 0},
                                         {0, 0, 0},
                                         {3, 6, 0},
                                         {6, 3, 0},
                                         {9, 0, 0},
                                         {9, 9, 0},
                                         {0, 9, 0}});
}

TEST(Polygon, with_a_slit_is_covered_once) {
    expect_exact_cover_from_each_corner(
        {{0, 0, 0}, {6, 0, 0}, {6, 6, 0}, {4, 2, 0}, {6, 4, 0}, {4, 2, 0}});
    expect_exact_cover_from_each_corner(
        {{4, 4, 0}, {0, 4, 0}, {2, 2, 0}, {2, 4, 0}, {2, 2, 0}, {2, 0, 0}});
    expect_exact_cover_from_each_corner(
        {{4, 2, 0}, {6, 0, 0}, {4, 6, 0}, {6, 2, 0}, {4, 6, 0}, {0, 4, 0}});
}

TEST(Polygon, that_touches_itself_is_covered_once) {
    // Two squares that meet in the middle.
    expect_exact_cover_from_each_corner(
        {{0, 0, 0}, {2, 0, 0}, {2, 2, 0}, {4, 2, 0}, {4, 4, 0}, {2, 4, 0}, {2, 2, 0}, {0, 2, 0}});
}

TEST(Polygon, is_cut_whatever_way_it_faces) {
    const std::vector<vec3> flat = {{0, 0, 0}, {6, 0, 0}, {6, 6, 0}, {3, 1, 0}, {0, 6, 0}};
    const std::vector<Triangle> wanted = cut(flat).triangles;
    for (const bool is_turned : {false, true})
        for (int axis = 0; axis < 3; ++axis) {
            std::vector<vec3> corners;
            for (const vec3& corner : flat)
                corners.push_back(axis == 0   ? vec3(7, corner.x, corner.y)
                                  : axis == 1 ? vec3(corner.y, 7, corner.x)
                                              : vec3(corner.x, corner.y, 7));
            if (is_turned)
                corners = backwards(corners);
            const Cut made = cut(corners);
            EXPECT_TRUE(made.is_proper);
            if (!is_turned)
                EXPECT_EQ(made.triangles, wanted);
        }
}

TEST(Polygon, of_four_corners_whose_edges_cross_is_told) {
    const std::vector<std::vector<vec3>> bows = {
        {{0, 0, 0}, {4, 4, 0}, {4, 0, 0}, {0, 5, 0}},
        {{0, 0, 0}, {1, 1, 0}, {1, 0, 0}, {0, 1, 0}}, // of no area at all
        {{0, 3, 0}, {4, 3, 4}, {4, 3, 0}, {0, 3, 4}},
        {{0, 0, 0}, {1e-6f, 1e-6f, 0}, {1e-6f, 0, 0}, {0, 1e-6f, 0}},
        {{5e5f, 0, 0}, {5e5f + 4, 4, 0.01f}, {5e5f + 4, 0, 0}, {5e5f, 4, 0}}};
    for (std::size_t bow = 0; bow < bows.size(); ++bow)
        for (std::size_t i = 0; i < 4; ++i) {
            EXPECT_FALSE(cut(turned(bows[bow], i)).is_proper) << bow << ", " << i;
            EXPECT_FALSE(cut(backwards(turned(bows[bow], i))).is_proper) << bow << ", " << i;
        }
}

TEST(Polygon, of_four_corners_that_only_look_crossed_is_not_told) {
    const std::vector<std::vector<vec3>> quads = {
        {{0, 0, 0}, {4, 0, 1}, {4, 4, 0}, {0, 4, 1}},          // a saddle
        {{0, 0, 0}, {4, 4, 1}, {4, 0, 0}, {0, 4, 0}},          // its edges pass each other
        {{0, 0, 0}, {4, 4, 0}, {4, 4, 0}, {0, 5, 0}},          // a triangle
        {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {3, 0, 0}},          // a line
        {{0, 0, 0}, {4, 0, 0}, {1, 1, 0}, {0, 4, 0}},          // with a dent
        {{0, 0, 0}, {4, 0, 0}, {2, 0, 0}, {2, 4, 0}},          // it touches itself
        {{0, 0, 0}, {4, 0, 0}, {4, 1e-7f, 0}, {0, -1e-7f, 0}}, // as thin as rounding is
        {{0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}}};
    for (std::size_t quad = 0; quad < quads.size(); ++quad)
        for (std::size_t i = 0; i < 4; ++i)
            EXPECT_TRUE(cut(turned(quads[quad], i)).is_proper) << quad << ", " << i;
}

TEST(Polygon, that_winds_around_a_corner_more_than_once_is_told) {
    std::vector<vec3> corners = {{0, 0, 0}};
    for (int i = 0; i < 5; ++i) {
        const float angle = static_cast<float>(i) * 1.75f; // 100 degrees
        corners.emplace_back(std::cos(angle), std::sin(angle), 0.0f);
    }
    EXPECT_FALSE(cut(corners).is_proper);
    corners.pop_back(); // which was the one beyond a whole turn
    EXPECT_TRUE(cut(corners).is_proper);
}

TEST(Polygon, that_crosses_itself_is_told) {
    EXPECT_FALSE(cut({{0, 0, 0}, {6, 0, 0}, {6, 6, 0}, {2, -3, 0}, {1, -3, 0}}).is_proper);
    EXPECT_FALSE(cut({{0, 0, 0}, {4, 4, 0}, {4, 0, 0}, {0, 5, 0}, {-1, 5, 0}}).is_proper);
}

TEST(Polygon, without_area_or_with_places_that_are_no_numbers_is_a_fan) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float inf = std::numeric_limits<float>::infinity();
    for (const vec3& odd :
         {vec3(0, 0, 0), vec3(nan, 0, 0), vec3(0, inf, 0), vec3(-inf, nan, inf)}) {
        const Cut made = cut({odd, odd, {0, 0, 0}, {1, 0, 0}, {2, 0, 0}, odd});
        EXPECT_TRUE(made.is_proper);
        EXPECT_EQ(made.triangles[3], (Triangle{0, 4, 5}));
        EXPECT_EQ(cut({odd, {0, 0, 0}, {1, 0, 0}, {2, 0, 0}}).triangles[1], (Triangle{0, 2, 3}));
    }
    const float most = std::numeric_limits<float>::max();
    cut({{-most, -most, 0}, {most, -most, most}, {0, 0, 0}, {most, most, 0}, {-most, most, -most}});
}

TEST(Polygon, of_a_million_corners_takes_no_more_time_than_its_corners_are_worth) {
    std::vector<vec3> noise;
    std::uint32_t number = 1;
    const auto next = [&] {
        number = number * 1664525u + 1013904223u;
        return static_cast<float>(number >> 8);
    };
    for (int i = 0; i < 200000; ++i)
        noise.emplace_back(next(), next(), next());
    const std::clock_t begin = std::clock();
    EXPECT_TRUE(cut(comb(1000000)).is_proper);
    cut(spiral(200000));
    EXPECT_FALSE(cut(noise).is_proper);
    // The squares of their corners would take hours.
    EXPECT_LT(static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC, 60.0);
}

} // namespace

} // namespace orvex_test
