#pragma once

/// @file
/// Three numbers in double precision, for the mathematics of cameras.

#include <cmath>

#include <orvex/math/vec4.h>

namespace orvex::kit {

struct Vector3 {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;

    Vector3 operator+(const Vector3& b) const { return {x + b.x, y + b.y, z + b.z}; }
    Vector3 operator-(const Vector3& b) const { return {x - b.x, y - b.y, z - b.z}; }
    Vector3 operator*(double factor) const { return {x * factor, y * factor, z * factor}; }
};

inline Vector3 vector3_of(const orvex::vec4& v) {
    return {double(v.x), double(v.y), double(v.z)};
}

/// @param w  1 for a point, 0 for a direction
inline orvex::vec4 vec4_of(const Vector3& v, float w) {
    return {static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z), w};
}

inline double dot(const Vector3& a, const Vector3& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

inline Vector3 cross(const Vector3& a, const Vector3& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

inline double length(const Vector3& v) {
    return std::sqrt(dot(v, v));
}

/// Not of one without a length.
inline Vector3 normalized(const Vector3& v) {
    return v * (1.0 / length(v));
}

inline bool is_finite(const Vector3& v) {
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

} // namespace orvex::kit
