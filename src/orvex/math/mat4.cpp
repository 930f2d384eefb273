/// @file
/// The matrices that transforms are built of, and their way to and from quaternions and axes.
///
/// Results are promised to the last bit: angles go through one factor in single precision, and
/// the order of the operations in each element is part of the result. Nothing here may be
/// contracted, reordered or widened.

#include "orvex/math/mat4.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "orvex/math/private/angle.h"
#include "orvex/math/private/turn_numbers.h"
#include "orvex/math/quat.h"

namespace orvex {

mat4& mat4::from_float_array(const float* values) noexcept {
    if (values)
        std::copy_n(values, 16, m);
    return *this;
}

void mat4::to_float_array(float* values) const noexcept {
    if (values)
        std::copy_n(m, 16, values);
}

mat4& mat4::init_translate(float x, float y, float z) noexcept {
    return identity().set_translate(x, y, z);
}

mat4& mat4::set_translate(float x, float y, float z) noexcept {
    m[12] = x;
    m[13] = y;
    m[14] = z;
    m[15] = 1.0f;
    return *this;
}

mat4& mat4::init_scale(float x, float y, float z) noexcept {
    return identity().set_scale(x, y, z);
}

mat4& mat4::set_scale(float x, float y, float z) noexcept {
    m[0] = x;
    m[5] = y;
    m[10] = z;
    return *this;
}

mat4& mat4::init_rotate_x(float angle) noexcept {
    const float radians = angle * degrees_to_radians;
    const float c = std::cos(radians);
    const float s = std::sin(radians);
    return *this = mat4(1, 0, 0, 0, 0, c, s, 0, 0, -s, c, 0, 0, 0, 0, 1);
}

mat4& mat4::init_rotate_y(float angle) noexcept {
    const float radians = angle * degrees_to_radians;
    const float c = std::cos(radians);
    const float s = std::sin(radians);
    return *this = mat4(c, 0, -s, 0, 0, 1, 0, 0, s, 0, c, 0, 0, 0, 0, 1);
}

mat4& mat4::init_rotate_z(float angle) noexcept {
    const float radians = angle * degrees_to_radians;
    const float c = std::cos(radians);
    const float s = std::sin(radians);
    return *this = mat4(c, s, 0, 0, -s, c, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1);
}

mat4& mat4::init_rotateAxis(float angle, vec4& axis) noexcept {
    axis.normalize();
    const float radians = angle * degrees_to_radians;
    const float c = std::cos(radians);
    const float s = std::sin(radians);
    const float t = 1.0f - c;
    const float x = axis.x, y = axis.y, z = axis.z;
    return *this = mat4(c + t * (x * x), t * x * y + s * z, t * x * z - s * y, 0, //
                        t * y * x - s * z, c + t * (y * y), t * y * z + s * x, 0, //
                        t * z * x + s * y, t * z * y - s * x, c + t * (z * z), 0, //
                        0, 0, 0, 1);
}

mat4& mat4::init_eulerAngleYXZ(float a, float b, float c) noexcept {
    const float ca = std::cos(a * degrees_to_radians), sa = std::sin(a * degrees_to_radians);
    const float cb = std::cos(b * degrees_to_radians), sb = std::sin(b * degrees_to_radians);
    const float cc = std::cos(c * degrees_to_radians), sc = std::sin(c * degrees_to_radians);
    return *this = mat4(cb * cc + sa * sb * sc, cb * sc - sa * sb * cc, ca * sb, 0,  //
                        -ca * sc, ca * cc, sa, 0,                                    //
                        sa * cb * sc - sb * cc, -sb * sc - sa * cb * cc, ca * cb, 0, //
                        0, 0, 0, 1);
}

mat4& mat4::from_quat(const quat& q) noexcept {
    const TurnNumbers turn(q);
    m[0] = turn.xx;
    m[1] = turn.yx;
    m[2] = turn.zx;
    m[4] = turn.xy;
    m[5] = turn.yy;
    m[6] = turn.zy;
    m[8] = turn.xz;
    m[9] = turn.yz;
    m[10] = turn.zz;
    return *this;
}

// Divides by the largest of the four components, which the diagonal tells.
void mat4::to_quat(quat& q) const noexcept {
    const float trace = m[0] + m[5] + m[10] + 1.0f;
    if (trace > 0.0f) {
        const float s = 2.0f * std::sqrt(trace);
        q.set((m[6] - m[9]) / s, (m[8] - m[2]) / s, (m[1] - m[4]) / s, 0.25f * s);
    } else if (m[0] > m[5] && m[0] > m[10]) {
        const float s = 2.0f * std::sqrt(1.0f + m[0] - m[5] - m[10]);
        q.set(0.25f * s, (m[1] + m[4]) / s, (m[8] + m[2]) / s, (m[6] - m[9]) / s);
    } else if (m[5] > m[10]) {
        const float s = 2.0f * std::sqrt(1.0f + m[5] - m[0] - m[10]);
        q.set((m[1] + m[4]) / s, 0.25f * s, (m[6] + m[9]) / s, (m[8] - m[2]) / s);
    } else {
        // y stays as the caller left it; see the header.
        const float s = 2.0f * std::sqrt(1.0f + m[10] - m[0] - m[5]);
        q.set((m[8] + m[2]) / s, q.y, 0.25f * s, (m[1] - m[4]) / s);
    }
    q.normalize();
}

mat4& mat4::from_axes(const vec4& x, const vec4& y, const vec4& z) noexcept {
    return *this = mat4(x.x, x.y, x.z, 0, y.x, y.y, y.z, 0, z.x, z.y, z.z, 0, 0, 0, 0, 1);
}

void mat4::to_axes(vec4& x, vec4& y, vec4& z) const noexcept {
    x.set(m[0], m[1], m[2], x.w);
    y.set(m[4], m[5], m[6], y.w);
    z.set(m[8], m[9], m[10], z.w);
}

void mat4::from_axes_to_quaternion(const vec4& x, const vec4& y, const vec4& z, quat& q) noexcept {
    from_axes(x, y, z).to_quat(q);
}

void mat4::from_quaternion_to_axes(const quat& q, vec4& x, vec4& y, vec4& z) noexcept {
    from_quat(q).to_axes(x, y, z);
}

mat4& mat4::transpose() noexcept {
    std::swap(m[1], m[4]);
    std::swap(m[2], m[8]);
    std::swap(m[3], m[12]);
    std::swap(m[6], m[9]);
    std::swap(m[7], m[13]);
    std::swap(m[11], m[14]);
    return *this;
}

} // namespace orvex
