/// @file
/// Projections and views.
///
/// The forms differ in where they round: one takes its tangent in single precision, two in double
/// precision before they round once. Their bits are promised, so each keeps the form it has.

#include "orvex/math/mat4.h"

#include <cmath>

#include "orvex/math/private/angle.h"

namespace orvex {

namespace {

constexpr float far_at_infinity = -1.0f;

/// The depth part of both right-handed perspective matrices. With the far plane at infinity the
/// limit of the usual terms is taken, moved by epsilon so that depth stays below 1.
void set_perspective_depth(mat4& p, float near, float far, float epsilon) {
    p.m[11] = -1.0f;
    if (far == far_at_infinity) {
        p.m[10] = epsilon - 1.0f;
        p.m[14] = near * (epsilon - 2.0f);
        return;
    }
    p.m[10] = -(far + near) / (far - near);
    p.m[14] = -2.0f * far * near / (far - near);
}

/// near · tan(radians), in double precision, then rounded.
float half_extent(float near, float radians) {
    return static_cast<float>(static_cast<double>(near) * std::tan(static_cast<double>(radians)));
}

mat4 zeros() {
    return mat4(0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
}

/// The view of an eye whose axes are u, v and n, with n the direction that maps to positive Z.
mat4 view_of(const vec4& eye, vec4 n, const vec4& up) {
    n.normalize();
    vec4 u = up.cross(n);
    u.normalize();
    const vec4 v = n.cross(u);
    return mat4(u.x, v.x, n.x, 0, u.y, v.y, n.y, 0, u.z, v.z, n.z, 0, -u.dot(eye), -v.dot(eye),
                -n.dot(eye), 1);
}

} // namespace

mat4& mat4::buildRHPerspectiveProjectionMatrix(float fov, float aspect, float near, float far,
                                               float epsilon) noexcept {
    const float t = std::tan(fov * degrees_to_half_radians);
    *this = zeros();
    m[5] = (2.0f * near) / (near * t + near * t);
    m[0] = m[5] / aspect;
    set_perspective_depth(*this, near, far, epsilon);
    return *this;
}

mat4& mat4::buildRHTwoFovPerspectiveProjectionMatrix(float fovx, float fovy, float aspect,
                                                     float near, float far,
                                                     float epsilon) noexcept {
    const float right = half_extent(near, fovx * degrees_to_half_radians);
    const float top = half_extent(near, fovy * degrees_to_half_radians);
    *this = zeros();
    m[0] = (2.0f * near) / (right + right) / aspect;
    m[5] = (2.0f * near) / (top + top);
    set_perspective_depth(*this, near, far, epsilon);
    return *this;
}

mat4& mat4::buildLHPerspectiveProjectionMatrix(float fov, float aspect, float near,
                                               float far) noexcept {
    const float h = half_extent(near, (fov / 2.0f) * degrees_to_half_radians);
    const float w = h * aspect;
    *this = zeros();
    m[0] = 2.0f * near / (w + w);
    m[5] = 2.0f * near / (h + h);
    m[8] = (w - w) / (w + w);
    m[9] = (h - h) / (h + h);
    m[10] = -(far + near) / (far - near);
    m[11] = 1.0f;
    m[14] = -2.0f * far * near / (far - near);
    return *this;
}

mat4& mat4::buildRHOrthographicProjectionMatrix(float left, float right, float bottom, float top,
                                                float near, float far) noexcept {
    *this = zeros();
    m[0] = 2.0f / (right - left);
    m[5] = 2.0f / (top - bottom);
    m[10] = -2.0f / (far - near);
    m[12] = -(right + left) / (right - left);
    m[13] = -(top + bottom) / (top - bottom);
    m[14] = -(far + near) / (far - near);
    m[15] = 1.0f;
    return *this;
}

mat4& mat4::buildLHOrthographicProjectionMatrix(float left, float right, float bottom, float top,
                                                float near, float far) noexcept {
    return buildRHOrthographicProjectionMatrix(left, right, bottom, top, near, far);
}

mat4& mat4::buildRHUVNCameraMatrix(const vec4& eye, const vec4& lookat, const vec4& up) noexcept {
    vec4 n;
    return *this = view_of(eye, n.make_vec(eye, lookat), up);
}

mat4& mat4::buildLHUVNCameraMatrix(const vec4& eye, const vec4& lookat, const vec4& up) noexcept {
    vec4 n;
    return *this = view_of(eye, n.make_vec(lookat, eye), up);
}

} // namespace orvex
