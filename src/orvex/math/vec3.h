#pragma once

#include "orvex/api.h"

#include <cmath>
#include <type_traits>

namespace orvex {

/// Three floats: a point, a direction or a colour without alpha.
///
/// A plain value: copied freely, owned by whoever holds it, with no invariant and no thread of its
/// own. Units are the caller's.
///
/// @code
/// const orvex::vec3 up(0.0f, 1.0f, 0.0f);
/// const orvex::vec3 side = up.cross(orvex::vec3(0.0f, 0.0f, 1.0f)); // (1, 0, 0)
/// @endcode
class ORVEX_API vec3 {
public:
    float x; ///< offset 0
    float y; ///< offset 4
    float z; ///< offset 8

    /// Makes (0, 0, 0).
    constexpr vec3() noexcept
        : x(0.0f)
        , y(0.0f)
        , z(0.0f) {}
    /// Makes a vector of three components.
    constexpr vec3(float x, float y, float z) noexcept
        : x(x)
        , y(y)
        , z(z) {}
    constexpr vec3(const vec3&) = default;  ///< all three components
    vec3& operator=(const vec3&) = default; ///< all three components

    /// Sets the default value, (0, 0, 0), in memory that no constructor has run on.
    void _construct() noexcept { set(0.0f, 0.0f, 0.0f); }

    /// Sets the three components.
    /// @return this vector
    vec3& set(float new_x, float new_y, float new_z) noexcept {
        x = new_x;
        y = new_y;
        z = new_z;
        return *this;
    }

    /// The sum, as a new vector.
    [[nodiscard]] vec3 operator+(const vec3& b) const noexcept {
        return vec3(x + b.x, y + b.y, z + b.z);
    }
    /// The difference, as a new vector. Taken for a left operand that is not const; a const one
    /// takes the free operator, with the same result.
    [[nodiscard]] vec3 operator-(const vec3& b) noexcept { return vec3(x - b.x, y - b.y, z - b.z); }

    /// Adds `b`.
    vec3& operator+=(const vec3& b) noexcept { return set(x + b.x, y + b.y, z + b.z); }
    /// Scales by `factor`.
    vec3& operator*=(float factor) noexcept { return set(x * factor, y * factor, z * factor); }

    /// The right-handed cross product this × b.
    [[nodiscard]] vec3 cross(const vec3& b) const noexcept {
        return vec3(y * b.z - z * b.y, z * b.x - x * b.z, x * b.y - y * b.x);
    }

    /// The length.
    [[nodiscard]] float length() const noexcept { return std::sqrt(x * x + y * y + z * z); }

    /// Scales to unit length. A vector whose squared length is exactly 0 becomes (0, 0, 0).
    /// @return this vector
    vec3& normalize() noexcept {
        const float squared = x * x + y * y + z * z;
        if (squared == 0.0f)
            return set(0.0f, 0.0f, 0.0f);
        return *this *= 1.0f / std::sqrt(squared);
    }

    /// Compares with a tolerance.
    /// @return true when each component lies in the closed interval [b - eps, b + eps]
    [[nodiscard]] bool is_equal(const vec3& b, float eps) const noexcept {
        return is_within(x, b.x, eps) && is_within(y, b.y, eps) && is_within(z, b.z, eps);
    }

private:
    static bool is_within(float value, float center, float eps) noexcept {
        return value >= center - eps && value <= center + eps;
    }
};

/// The difference, as a new vector.
[[nodiscard]] inline vec3 operator-(const vec3& a, const vec3& b) noexcept {
    return vec3(a.x - b.x, a.y - b.y, a.z - b.z);
}

/// The scaled vector.
[[nodiscard]] inline vec3 operator*(const vec3& a, float factor) noexcept {
    return vec3(a.x * factor, a.y * factor, a.z * factor);
}

static_assert(sizeof(vec3) == 12 && alignof(vec3) == 4);
static_assert(std::is_trivially_copyable_v<vec3> && std::is_standard_layout_v<vec3>);

} // namespace orvex
