#pragma once

#include <bit>
#include <cstdint>
#include <random>

#include <gtest/gtest.h>

#include "orvex/math/mat4.h"
#include "orvex/math/quat.h"
#include "orvex/math/to_text.h"
#include "orvex/math/vec4.h"

/// @file
/// Comparisons to the last bit, and numbers to compare with.

namespace orvex_test {

using namespace orvex;

inline std::uint32_t bits(float value) {
    return std::bit_cast<std::uint32_t>(value);
}

inline void expect_vec3(const vec3& v, float x, float y, float z) {
    EXPECT_EQ(bits(v.x), bits(x)) << v << " for " << vec3(x, y, z);
    EXPECT_EQ(bits(v.y), bits(y)) << v << " for " << vec3(x, y, z);
    EXPECT_EQ(bits(v.z), bits(z)) << v << " for " << vec3(x, y, z);
}

inline void expect_vec4(const vec4& v, float x, float y, float z, float w) {
    expect_vec3(v.get_vec3(), x, y, z);
    EXPECT_EQ(bits(v.w), bits(w)) << v << " for " << vec4(x, y, z, w);
}

inline void expect_quat(const quat& q, float x, float y, float z, float w) {
    expect_vec4(vec4(q.x, q.y, q.z, q.w), x, y, z, w);
}

inline void expect_quat(const quat& q, const quat& expected) {
    expect_quat(q, expected.x, expected.y, expected.z, expected.w);
}

inline void expect_mat4(const mat4& a, const mat4& expected) {
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(bits(a.m[i]), bits(expected.m[i]))
            << "m[" << i << "] of " << a << " for " << expected;
}

/// Each element is its own index.
inline const mat4 counted(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15);

inline quat turn(float degrees, const vec4& axis) {
    quat q;
    return q.from_axis_angle(degrees, axis, false);
}

/// Numbers between -10 and 10, the same ones in each run.
class Numbers {
public:
    float next() { return distribution(engine); }
    vec4 point() { return vec4(next(), next(), next(), 1.0f); }
    mat4 matrix() {
        mat4 a;
        for (float& value : a.m)
            value = next();
        return a;
    }
    quat unit_quat() { return quat(next(), next(), next(), next()).normalize(); }

private:
    std::mt19937 engine{20130927};
    std::uniform_real_distribution<float> distribution{-10.0f, 10.0f};
};

} // namespace orvex_test
