#include <cmath>

#include "exact.h"
#include "orvex/fwd.h"
#include "orvex/math/mat4d.h"
#include "orvex/math/vec2.h"
#include "orvex/math/vec3.h"
#include "orvex/math/vec3u8.h"
#include "orvex/math/vec4d.h"
#include "orvex/math/vec4i.h"
#include "orvex/math/vec4u8.h"

namespace orvex_test {

using namespace orvex;

namespace {

TEST(Vec2, defaults_to_zero) {
    vec2 v;
    EXPECT_EQ(v.x, 0.0f);
    EXPECT_EQ(v.y, 0.0f);
}

TEST(Vec2, set_and_construct) {
    vec2 v;
    v.set(1.0f, 2.0f);
    EXPECT_EQ(v.x, 1.0f);
    EXPECT_EQ(v.y, 2.0f);
    v._construct();
    EXPECT_EQ(v.x, 0.0f);
    EXPECT_EQ(v.y, 0.0f);
}

TEST(Vec3, defaults_to_zero) {
    expect_vec3(vec3(), 0.0f, 0.0f, 0.0f);
}

TEST(Vec3, copies_and_sets) {
    const vec3 constant(1.0f, 2.0f, 3.0f);
    vec3 v;
    v = constant;
    expect_vec3(v, 1.0f, 2.0f, 3.0f);
    expect_vec3(vec3(constant), 1.0f, 2.0f, 3.0f);
    expect_vec3(v.set(4.0f, 5.0f, 6.0f), 4.0f, 5.0f, 6.0f);
    v._construct();
    expect_vec3(v, 0.0f, 0.0f, 0.0f);
}

TEST(Vec3, sums_and_differences) {
    const vec3 constant(1.0f, 2.0f, 3.0f);
    vec3 v(10.0f, 20.0f, 30.0f);
    expect_vec3(constant + v, 11.0f, 22.0f, 33.0f);
    expect_vec3(v + constant, 11.0f, 22.0f, 33.0f);
    expect_vec3(constant - v, -9.0f, -18.0f, -27.0f);
    expect_vec3(v - constant, 9.0f, 18.0f, 27.0f);
    expect_vec3(vec3(10.0f, 20.0f, 30.0f) - constant, 9.0f, 18.0f, 27.0f);
    v += constant;
    expect_vec3(v, 11.0f, 22.0f, 33.0f);
}

TEST(Vec3, scaled) {
    const vec3 constant(1.0f, 2.0f, 3.0f);
    expect_vec3(constant * 2.0f, 2.0f, 4.0f, 6.0f);
    vec3 v = constant;
    v *= 3.0f;
    expect_vec3(v, 3.0f, 6.0f, 9.0f);
}

TEST(Vec3, cross_is_right_handed) {
    expect_vec3(vec3(1.0f, 0.0f, 0.0f).cross(vec3(0.0f, 1.0f, 0.0f)), 0.0f, 0.0f, 1.0f);
    expect_vec3(vec3(1.0f, 2.0f, 3.0f).cross(vec3(-2.0f, 5.0f, 7.0f)), -1.0f, -13.0f, 9.0f);
}

TEST(Vec3, length_and_normalize) {
    vec3 v(2.0f, 3.0f, 6.0f);
    EXPECT_EQ(v.length(), 7.0f);
    const float scale = 1.0f / 7.0f;
    expect_vec3(v.normalize(), 2.0f * scale, 3.0f * scale, 6.0f * scale);
    vec3 zero;
    expect_vec3(zero.normalize(), 0.0f, 0.0f, 0.0f);
    vec3 tiny(1e-30f, -1e-30f, 0.0f);
    expect_vec3(tiny.normalize(), 0.0f, 0.0f, 0.0f);
}

TEST(Vec3, is_equal_within_a_closed_interval) {
    const vec3 center(1.0f, 2.0f, 3.0f);
    EXPECT_TRUE(center.is_equal(center, 0.0f));
    for (float vec3::*component : {&vec3::x, &vec3::y, &vec3::z}) {
        for (const float sign : {-1.0f, 1.0f}) {
            vec3 v = center;
            v.*component += sign * 0.25f;
            EXPECT_TRUE(v.is_equal(center, 0.25f));
            v.*component = std::nextafter(v.*component, sign * 100.0f);
            EXPECT_FALSE(v.is_equal(center, 0.25f));
        }
    }
}

TEST(Vec3u8, defaults_and_copies) {
    vec3u8 v;
    EXPECT_TRUE(v.x == 0 && v.y == 0 && v.z == 0);
    const vec3u8 other(1, 2, 255);
    v = other;
    EXPECT_TRUE(v.x == 1 && v.y == 2 && v.z == 255);
}

TEST(Vec4u8, defaults_to_w1) {
    const vec4u8 v;
    EXPECT_TRUE(v.x == 0 && v.y == 0 && v.z == 0 && v.w == 1);
}

TEST(Vec4u8, differs_when_any_byte_differs) {
    const vec4u8 v(1, 2, 3, 4);
    vec4u8 copy;
    copy = v;
    EXPECT_FALSE(v != copy);
    EXPECT_TRUE(v != vec4u8(0, 2, 3, 4));
    EXPECT_TRUE(v != vec4u8(1, 0, 3, 4));
    EXPECT_TRUE(v != vec4u8(1, 2, 0, 4));
    EXPECT_TRUE(v != vec4u8(1, 2, 3, 0));
}

TEST(Vec4i, defaults_to_w1) {
    const vec4i v;
    EXPECT_TRUE(v.x == 0 && v.y == 0 && v.z == 0 && v.w == 1);
}

TEST(Vec4d, defaults_to_w1) {
    const vec4d v;
    EXPECT_TRUE(v.x == 0.0 && v.y == 0.0 && v.z == 0.0 && v.w == 1.0);
}

TEST(Mat4d, defaults_to_the_identity_and_copies_doubles) {
    double values[16];
    for (int i = 0; i < 16; ++i)
        values[i] = i + 0.5;
    mat4d a;
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(a.m[i], i % 5 == 0 ? 1.0 : 0.0);
    a = values;
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(a.m[i], values[i]);
    a = static_cast<const double*>(nullptr);
    EXPECT_EQ(a.m[7], 7.5);
    a.identity();
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(a.m[i], i % 5 == 0 ? 1.0 : 0.0);
}

} // namespace

} // namespace orvex_test
