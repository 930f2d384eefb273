#pragma once

/// @file
/// What holds of every viewpoint of a draft.

#include <array>
#include <cmath>
#include <cstddef>

#include "orvex_formats/private/draft.h"

namespace orvex::formats {

/// Has a viewpoint look from a place. What is upward need not stand at a right angle to where it
/// looks, and neither has to be a unit vector: nodes may be askew, and large or small.
/// @return whether it looks anywhere; else it is as it was
inline bool aim(Viewpoint& view, const vec3& eye, const vec3& forward, const vec3& up) {
    // Squares of small numbers are none in floats.
    using Vector = std::array<double, 3>;
    const auto dot = [](const Vector& a, const Vector& b) {
        return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
    };
    const auto make_unit = [&dot](Vector& vector) {
        const double length = std::sqrt(dot(vector, vector));
        for (double& part : vector)
            part /= length;
        return length > 0.0 && std::isfinite(length);
    };
    const auto vector_of = [](const vec3& vector) {
        return Vector{static_cast<double>(vector.x), static_cast<double>(vector.y),
                      static_cast<double>(vector.z)};
    };
    Vector ahead = vector_of(forward), above = vector_of(up);
    if (!std::isfinite(eye.x * eye.x + eye.y * eye.y + eye.z * eye.z) || !make_unit(ahead) ||
        !make_unit(above))
        return false;
    const double along = dot(ahead, above);
    for (std::size_t i = 0; i < 3; ++i)
        above[i] -= along * ahead[i];
    constexpr double rounding = 1e-12;
    if (dot(above, above) < rounding || !make_unit(above))
        return false;
    const auto floats_of = [](const Vector& vector) {
        return vec3(static_cast<float>(vector[0]), static_cast<float>(vector[1]),
                    static_cast<float>(vector[2]));
    };
    view.eye = eye;
    view.forward = floats_of(ahead);
    view.up = floats_of(above);
    return true;
}

/// Whether what a viewpoint sees has a width, a height and a depth.
inline bool sees_something(const Viewpoint& view) {
    const auto is_above_zero = [](float number) { return number > 0.0f && std::isfinite(number); };
    if (view.height != 0.0f)
        return is_above_zero(view.height) && is_above_zero(view.aspect) && view.near >= 0.0f &&
               view.far > view.near;
    return is_above_zero(view.opening) && view.opening < 180.0f && view.aspect >= 0.0f &&
           view.near > 0.0f && (view.far == 0.0f || view.far > view.near);
}

} // namespace orvex::formats
