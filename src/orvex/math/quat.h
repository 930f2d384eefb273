#pragma once

#include "orvex/api.h"
#include "orvex/fwd.h"

#include <type_traits>

namespace orvex {

/// A quaternion: an orientation as (x, y, z) and the scalar part w, which is stored last.
///
/// A plain value: copied freely, owned by whoever holds it, with no thread of its own. It is of
/// unit length where it stands for an orientation; the builders normalise, the products do not.
/// Angles are in degrees, except for what `to_euler` returns.
///
/// @code
/// orvex::quat turn;
/// turn.from_axis_angle(90.0f, orvex::vec4::UNIT_Y_AXIS, false);
/// const orvex::vec4 front = turn * orvex::vec4::UNIT_Z_AXIS; // (1, 0, 0); w carries no meaning
/// @endcode
class ORVEX_API quat {
public:
    float x; ///< offset 0
    float y; ///< offset 4
    float z; ///< offset 8
    float w; ///< offset 12, the scalar part

    /// Makes the identity, (0, 0, 0, 1).
    constexpr quat() noexcept
        : x(0.0f)
        , y(0.0f)
        , z(0.0f)
        , w(1.0f) {}
    /// Makes a quaternion of four components, the scalar part last.
    constexpr quat(float x, float y, float z, float w) noexcept
        : x(x)
        , y(y)
        , z(z)
        , w(w) {}
    constexpr quat(const quat&) = default;  ///< all four components
    quat& operator=(const quat&) = default; ///< all four components

    /// Sets the four components, the scalar part last.
    /// @return this quaternion
    quat& set(float new_x, float new_y, float new_z, float new_w) noexcept {
        x = new_x;
        y = new_y;
        z = new_z;
        w = new_w;
        return *this;
    }

    /// Makes this (0, 0, 0, 1).
    /// @return this quaternion
    quat& identity() noexcept { return set(0.0f, 0.0f, 0.0f, 1.0f); }
    /// Negates all four components: the same orientation.
    /// @return this quaternion
    quat& negate() noexcept { return set(-x, -y, -z, -w); }
    /// Negates x, y and z: the opposite turn, when the length is 1.
    /// @return this quaternion
    quat& conjugate() noexcept { return set(-x, -y, -z, w); }

    /// Scales to unit length. A length of exactly 1, or below 1e-7, changes nothing.
    /// @return this quaternion
    quat& normalize() noexcept;

    /// Makes this the turn by an angle about an axis, normalised as a whole quaternion.
    /// @param angle  degrees
    /// @param x,y,z  the axis; expected to be of unit length
    /// @param normalize_axis  has no effect on the result: the quaternion is made from the axis as
    ///                        given
    /// @return this quaternion
    quat& from_axis_angle(float angle, float x, float y, float z, bool normalize_axis) noexcept;
    /// The same, with the axis in the first three components of a vector.
    quat& from_axis_angle(float angle, const vec4& axis, bool normalize_axis) noexcept;

    /// Makes this the product (turn about Y · turn about X) · turn about Z, normalised.
    /// @param x,y,z  the three angles, in degrees
    /// @return this quaternion
    quat& from_euler(float x, float y, float z) noexcept;

    /// Three angles of this orientation, in radians, unlike everything else here. Inverts
    /// `from_euler` only for turns about a single axis.
    /// @param[out] first  about X; may be null
    /// @param[out] second  about Y; may be null; NaN where rounding carries its sine past 1
    /// @param[out] third  about Z; may be null
    void to_euler(float* first, float* second, float* third) const noexcept;

    /// Makes this the shortest turn that takes one unit vector to another.
    /// @param from,to  expected to be of unit length; exactly opposite ones give components
    ///                        that are not finite
    /// @return this quaternion
    quat& from_vector_rotation(const vec4& from, const vec4& to) noexcept;

    /// The Hamilton product this · b: the turn b, then this one.
    [[nodiscard]] quat operator*(const quat& b) const noexcept {
        return quat(w * b.x + x * b.w + y * b.z - z * b.y, w * b.y - x * b.z + y * b.w + z * b.x,
                    w * b.z + x * b.y - y * b.x + z * b.w, w * b.w - x * b.x - y * b.y - z * b.z);
    }

    /// The product this · b with its four components in the order (w, x, y, z), so that `x` of the
    /// result holds the scalar part and `w` holds z. Changes nothing, in spite of its name.
    [[nodiscard]] quat operator*=(const quat& b) const noexcept {
        const quat product = *this * b;
        return quat(product.w, product.x, product.y, product.z);
    }

    /// Turns a vector. The w of the result is always 3 and carries no meaning.
    [[nodiscard]] vec4 operator*(const vec4& v) const noexcept;
};

static_assert(sizeof(quat) == 16 && alignof(quat) == 4);
static_assert(std::is_trivially_copyable_v<quat> && std::is_standard_layout_v<quat>);

} // namespace orvex
