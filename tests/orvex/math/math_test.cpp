#include "orvex/math/math.h"

#include <cmath>
#include <cstdlib>

#include "exact.h"

namespace orvex_test {

using namespace orvex;

namespace {

const vec4 p0(0.0f, 0.0f, 0.0f, 1.0f), p1(4.0f, 0.0f, 0.0f, 1.0f), p2(0.0f, 4.0f, 0.0f, 1.0f);
const vec4 down(0.0f, 0.0f, -1.0f, 1.0f), up(0.0f, 0.0f, 1.0f, 1.0f);

struct RayRow {
    const char* name;
    vec4 origin, dir;
    bool hit;
    float t;
};

const RayRow ray_rows[] = {
    {"inside", vec4(1, 1, 5, 1), down, true, 5.0f},
    {"inside, from the back", vec4(1, 1, -5, 1), up, true, 5.0f},
    {"behind the origin", vec4(1, 1, 5, 1), up, true, -5.0f},
    {"long direction", vec4(1, 1, 5, 1), vec4(0, 0, -10, 1), true, 0.5f},
    {"on the first corner", vec4(0, 0, 5, 1), down, true, 5.0f},
    {"on the second corner", vec4(4, 0, 5, 1), down, true, 5.0f},
    {"on the third corner", vec4(0, 4, 5, 1), down, true, 5.0f},
    {"on the long edge", vec4(2, 2, 5, 1), down, true, 5.0f},
    {"past the long edge", vec4(2.1f, 2, 5, 1), down, false, 5.0f},
    {"left of the triangle", vec4(-0.1f, 1, 5, 1), down, false, 5.0f},
    {"below the triangle", vec4(1, -0.1f, 5, 1), down, false, 5.0f},
    {"w plays no part", vec4(1, 1, 5, 77), vec4(0, 0, -1, 55), true, 5.0f},
};

TEST(MathRayTriangle, hits_and_misses) {
    for (const RayRow& row : ray_rows) {
        SCOPED_TRACE(row.name);
        float t = 123.0f;
        EXPECT_EQ(Math::ray_triangle_intersection(row.origin, row.dir, p0, p1, p2, &t), row.hit);
        EXPECT_FLOAT_EQ(t, row.t);
        EXPECT_EQ(Math::ray_triangle_intersection(row.origin, row.dir, p0, p1, p2, nullptr),
                  row.hit);
        EXPECT_EQ(Math::ray_triangle_intersection(row.origin, row.dir, p0, p2, p1, nullptr),
                  row.hit);
    }
}

TEST(MathRayTriangle, parallel_to_the_plane_misses_and_stores_t) {
    float t = 123.0f;
    EXPECT_FALSE(
        Math::ray_triangle_intersection(vec4(1, 1, 5, 1), vec4(1, 0, 0, 1), p0, p1, p2, &t));
    EXPECT_FALSE(std::isfinite(t));
    t = 123.0f;
    EXPECT_FALSE(
        Math::ray_triangle_intersection(vec4(1, 1, 0, 1), vec4(1, 0, 0, 1), p0, p1, p2, &t));
    EXPECT_TRUE(std::isnan(t));
}

TEST(MathRayTriangle, keeps_its_order_of_evaluation) {
    Numbers numbers;
    for (int i = 0; i < 2000; ++i) {
        const vec4 origin = numbers.point(), dir = numbers.point();
        const vec4 a = numbers.point(), b = numbers.point(), c = numbers.point();
        const vec4 e1 = a - b, e2 = a - c, s = a - origin;
        const vec4 e2_dir = e2.cross(dir), e1_s = e1.cross(s);
        const float det = e1.dot(e2_dir);
        const float beta = dir.dot(e1_s) / det, gamma = s.dot(e2_dir) / det;
        const float sum = beta + gamma;
        const bool hit = double(beta) >= 0.0 && double(gamma) >= 0.0 && double(beta) <= 1.0 &&
                         double(gamma) <= 1.0 && double(sum) <= 1.0;
        float t = 0.0f;
        EXPECT_EQ(Math::ray_triangle_intersection(origin, dir, a, b, c, &t), hit);
        EXPECT_EQ(bits(t), bits(-e2.dot(e1_s) / det));
    }
}

TEST(MathRaySphere, hits_and_misses) {
    const vec4 center(1.0f, 2.0f, 3.0f, 1.0f);
    EXPECT_TRUE(Math::check_ray_sphere_intersection(vec4(1, 2, 10, 1), down, center, 1.0f));
    EXPECT_TRUE(Math::check_ray_sphere_intersection(vec4(1, 2, 3, 1), down, center, 1.0f));
    EXPECT_TRUE(Math::check_ray_sphere_intersection(vec4(2, 2, 10, 1), down, center, 1.0f));
    EXPECT_FALSE(Math::check_ray_sphere_intersection(vec4(2.01f, 2, 10, 1), down, center, 1.0f));
}

TEST(MathRaySphere, a_sphere_behind_the_origin_is_hit) {
    EXPECT_TRUE(Math::check_ray_sphere_intersection(vec4(0, 0, 10, 1), up, vec4::ZERO, 1.0f));
}

TEST(MathRaySphere, radius_zero_through_the_center_is_hit) {
    EXPECT_TRUE(Math::check_ray_sphere_intersection(vec4(0, 0, 10, 1), down, vec4::ZERO, 0.0f));
}

TEST(MathRaySphere, numbers_that_are_none_hit) {
    const vec4 nowhere(std::nanf(""), 0.0f, 0.0f, 1.0f);
    EXPECT_TRUE(Math::check_ray_sphere_intersection(nowhere, down, vec4::ZERO, 1.0f));
}

TEST(MathRaySphere, keeps_its_order_of_evaluation) {
    Numbers numbers;
    for (int i = 0; i < 2000; ++i) {
        const vec4 origin = numbers.point(), dir = numbers.point(), center = numbers.point();
        const float radius = numbers.next();
        const vec4 l = origin - center;
        const float a = dir.dot(dir);
        const float b = (2.0f * l.x * dir.x + 2.0f * l.y * dir.y) + 2.0f * l.z * dir.z;
        const float c = l.dot(l) - radius * radius;
        const bool miss = 0.0f > b * b - 4.0f * a * c;
        EXPECT_EQ(Math::check_ray_sphere_intersection(origin, dir, center, radius), !miss);
    }
}

TEST(MathRandom, follows_the_shared_source) {
    Math::srnd(42);
    const float first = Math::rnd(-2.0f, 5.0f), second = Math::rnd(10.0f, 20.0f);
    std::srand(42);
    const float step = std::bit_cast<float>(0x30000000u);
    EXPECT_EQ(step, 1.0f / 2147483648.0f);
    EXPECT_EQ(bits(first), bits(-2.0f + ((5.0f - -2.0f) * step) * static_cast<float>(std::rand())));
    EXPECT_EQ(bits(second),
              bits(10.0f + ((20.0f - 10.0f) * step) * static_cast<float>(std::rand())));
}

TEST(MathRandom, stays_between_its_bounds) {
    Math::srnd(7);
    for (int i = 0; i < 10000; ++i) {
        const float value = Math::rnd(-1.0f, 3.0f);
        EXPECT_GE(value, -1.0f);
        EXPECT_LE(value, 3.0f);
    }
}

} // namespace

} // namespace orvex_test
