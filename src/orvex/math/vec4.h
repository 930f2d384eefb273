#pragma once

#include "orvex/api.h"
#include "orvex/math/vec2.h"
#include "orvex/math/vec3.h"

#include <cmath>
#include <type_traits>

namespace orvex {

/// Four floats: above all a point (w 1), also a direction, a colour or a plain record.
///
/// A plain value: copied freely, owned by whoever holds it, with no invariant and no thread of its
/// own. It holds nothing but its four floats, so arrays of it serve as vertex attributes as they
/// stand. Units are the caller's; angles are in degrees.
///
/// What happens to w differs from operation to operation, and callers rely on each rule. The sum in
/// particular comes in two forms that the left operand's constness tells apart: a const one takes
/// the free operator (w of the result 1), an lvalue that is not const or a temporary takes the
/// member (w summed).
///
/// @code
/// const orvex::vec4 eye(0.0f, 2.0f, 5.0f, 1.0f);
/// orvex::vec4 view;
/// view.make_vec(orvex::vec4::ZERO, eye).normalize(); // a direction: w is 0
/// @endcode
class ORVEX_API vec4 {
public:
    float x; ///< offset 0
    float y; ///< offset 4
    float z; ///< offset 8
    float w; ///< offset 12

    static const vec4 ZERO;        ///< (0, 0, 0, 1): the origin, a point
    static const vec4 ONE;         ///< (1, 1, 1, 1)
    static const vec4 UNIT_X_AXIS; ///< (1, 0, 0, 1)
    static const vec4 UNIT_Y_AXIS; ///< (0, 1, 0, 1)
    static const vec4 UNIT_Z_AXIS; ///< (0, 0, 1, 1)

    /// Makes (0, 0, 0, 1).
    constexpr vec4() noexcept
        : x(0.0f)
        , y(0.0f)
        , z(0.0f)
        , w(1.0f) {}
    /// Makes a vector of four components.
    constexpr vec4(float x, float y, float z, float w) noexcept
        : x(x)
        , y(y)
        , z(z)
        , w(w) {}
    /// Makes a point: w is 1.
    constexpr vec4(const vec3& b) noexcept
        : x(b.x)
        , y(b.y)
        , z(b.z)
        , w(1.0f) {}
    constexpr vec4(const vec4&) = default; ///< all four components, w included

    vec4& operator=(const vec4&) = default; ///< all four components, w included
    /// Copies three components; w becomes 1.
    vec4& operator=(const vec3& b) noexcept { return set(b.x, b.y, b.z, 1.0f); }
    /// Copies two components; z becomes 0, w becomes 1.
    vec4& operator=(const vec2& b) noexcept { return set(b.x, b.y, 0.0f, 1.0f); }

    /// Sets the default value, (0, 0, 0, 1), in memory that no constructor has run on.
    void _construct() noexcept { set(0.0f, 0.0f, 0.0f, 1.0f); }

    /// Sets the four components.
    /// @return this vector
    vec4& set(float new_x, float new_y, float new_z, float new_w) noexcept {
        x = new_x;
        y = new_y;
        z = new_z;
        w = new_w;
        return *this;
    }
    /// Copies all four components.
    /// @param b  the vector to copy; null is ignored
    /// @return this vector
    vec4& set(const vec4* b) noexcept {
        if (b)
            *this = *b;
        return *this;
    }

    /// The sum; w is the sum of both w. See the class on which sum is taken.
    [[nodiscard]] vec4 operator+(const vec4& b) noexcept {
        return vec4(x + b.x, y + b.y, z + b.z, w + b.w);
    }
    /// The difference; w is the difference of both w. The free operator gives the same.
    [[nodiscard]] vec4 operator-(const vec4& b) noexcept {
        return vec4(x - b.x, y - b.y, z - b.z, w - b.w);
    }
    /// The negated point: w is 1.
    [[nodiscard]] vec4 operator-() const noexcept { return vec4(-x, -y, -z, 1.0f); }
    /// The product component by component, w included.
    [[nodiscard]] vec4 operator*(const vec4& b) const noexcept {
        return vec4(x * b.x, y * b.y, z * b.z, w * b.w);
    }

    /// Adds `b`, w included.
    vec4& operator+=(const vec4& b) noexcept { return set(x + b.x, y + b.y, z + b.z, w + b.w); }
    /// Scales by `factor`, w included.
    vec4& operator*=(float factor) noexcept {
        return set(x * factor, y * factor, z * factor, w * factor);
    }

    /// Compares all four components, with no tolerance. A NaN is unequal to everything.
    [[nodiscard]] bool operator==(const vec4& b) const noexcept {
        return x == b.x && y == b.y && z == b.z && w == b.w;
    }

    /// The right-handed cross product this × b of the first three components; w is 1.
    [[nodiscard]] vec4 cross(const vec4& b) const noexcept {
        return vec4(y * b.z - z * b.y, z * b.x - x * b.z, x * b.y - y * b.x, 1.0f);
    }
    /// The dot product of the first three components.
    [[nodiscard]] float dot(const vec4& b) const noexcept { return x * b.x + y * b.y + z * b.z; }
    /// The length of the first three components.
    [[nodiscard]] float length() const noexcept { return std::sqrt(dot(*this)); }
    /// The first three components.
    [[nodiscard]] vec3 get_vec3() const noexcept { return vec3(x, y, z); }

    /// Makes this the direction from `b` to `a`: a - b with w 0. The one operation that yields a
    /// direction.
    /// @return this vector
    vec4& make_vec(const vec4& a, const vec4& b) noexcept {
        return set(a.x - b.x, a.y - b.y, a.z - b.z, 0.0f);
    }

    /// Scales the first three components to unit length; w stays. A vector whose squared length is
    /// exactly 0 becomes (0, 0, 0, w).
    /// @return this vector
    vec4& normalize() noexcept {
        const float squared = dot(*this);
        if (squared == 0.0f)
            return set(0.0f, 0.0f, 0.0f, w);
        const float scale = 1.0f / std::sqrt(squared);
        return set(x * scale, y * scale, z * scale, w);
    }

    /// Raises each component, w included, to `lo`, then lowers it to `hi`.
    /// @return this vector
    vec4& clamp(float lo, float hi) noexcept {
        return set(clamped(x, lo, hi), clamped(y, lo, hi), clamped(z, lo, hi), clamped(w, lo, hi));
    }

    /// Turns about the Y axis, from Z towards X for a positive angle; w stays.
    /// @param angle  degrees
    /// @return this vector
    vec4& rotate_y(float angle) noexcept;
    /// Turns about the Z axis, from X towards Y for a positive angle; w stays.
    /// @param angle  degrees
    /// @return this vector
    vec4& rotate_z(float angle) noexcept;

private:
    static float clamped(float value, float lo, float hi) noexcept {
        if (value < lo)
            value = lo;
        return value > hi ? hi : value;
    }
};

/// The sum of two points: w is 1.
[[nodiscard]] inline vec4 operator+(const vec4& a, const vec4& b) noexcept {
    return vec4(a.x + b.x, a.y + b.y, a.z + b.z, 1.0f);
}

/// The difference; w is the difference of both w.
[[nodiscard]] inline vec4 operator-(const vec4& a, const vec4& b) noexcept {
    return vec4(a.x - b.x, a.y - b.y, a.z - b.z, a.w - b.w);
}

/// The scaled point: w is 1.
[[nodiscard]] inline vec4 operator*(const vec4& a, float factor) noexcept {
    return vec4(a.x * factor, a.y * factor, a.z * factor, 1.0f);
}

// Constants of the compiler, so that static objects of other files may use them while they are
// being built.
inline constexpr vec4 vec4::ZERO{0.0f, 0.0f, 0.0f, 1.0f};
inline constexpr vec4 vec4::ONE{1.0f, 1.0f, 1.0f, 1.0f};
inline constexpr vec4 vec4::UNIT_X_AXIS{1.0f, 0.0f, 0.0f, 1.0f};
inline constexpr vec4 vec4::UNIT_Y_AXIS{0.0f, 1.0f, 0.0f, 1.0f};
inline constexpr vec4 vec4::UNIT_Z_AXIS{0.0f, 0.0f, 1.0f, 1.0f};

static_assert(sizeof(vec4) == 16 && alignof(vec4) == 4);
static_assert(std::is_trivially_copyable_v<vec4> && std::is_standard_layout_v<vec4>);

} // namespace orvex
