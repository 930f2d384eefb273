#pragma once

#include "orvex/api.h"
#include "orvex/fwd.h"
#include "orvex/math/vec4.h"

#include <type_traits>

namespace orvex {

/// A 4×4 matrix of floats, column by column: a transform, a projection or a view.
///
/// A plain value: copied freely, owned by whoever holds it, with no thread of its own. The element
/// at row r, column c is `m[c * 4 + r]`, so `m[12]`, `m[13]` and `m[14]` hold a translation and the
/// 16 floats go to OpenGL without a transposition. Vectors are columns: `M * v` is the product with
/// a vector, and `A * B` applies B first, then A. Angles are in degrees.
///
/// Operations that write the matrix return it, so that calls chain.
///
/// @code
/// orvex::mat4 projection, view;
/// projection.buildRHPerspectiveProjectionMatrix(60.0f, 4.0f / 3.0f, 0.1f, 100.0f, 1e-5f);
/// view.buildRHUVNCameraMatrix(eye, orvex::vec4::ZERO, orvex::vec4::UNIT_Y_AXIS);
/// const orvex::vec4 clip = projection * view * position;
/// @endcode
class ORVEX_API mat4 {
public:
    float m[16]; ///< column by column

    /// Makes the identity.
    constexpr mat4() noexcept
        : mat4(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1) {}
    /// Makes a matrix of 16 values in storage order: the first four are the first column.
    constexpr mat4(float m0, float m1, float m2, float m3, float m4, float m5, float m6, float m7,
                   float m8, float m9, float m10, float m11, float m12, float m13, float m14,
                   float m15) noexcept
        : m{m0, m1, m2, m3, m4, m5, m6, m7, m8, m9, m10, m11, m12, m13, m14, m15} {}
    constexpr mat4(const mat4&) = default;  ///< all 16 elements
    mat4& operator=(const mat4&) = default; ///< all 16 elements

    /// Copies 16 floats.
    /// @param values  the elements in storage order; null changes nothing
    mat4& operator=(const float* values) noexcept { return from_float_array(values); }
    /// Copies 16 floats.
    /// @param values  the elements in storage order; null changes nothing
    mat4& from_float_array(const float* values) noexcept;
    /// Copies the 16 floats out.
    /// @param[out] values  room for 16 floats; null is ignored
    void to_float_array(float* values) const noexcept;
    /// The first of the 16 floats; valid as long as this matrix.
    [[nodiscard]] float* ptr() noexcept { return m; }
    /// The first of the 16 floats; valid as long as this matrix.
    [[nodiscard]] const float* ptr() const noexcept { return m; }

    /// The product this · b: each column of the result is this applied to that column of `b`.
    [[nodiscard]] mat4 concat(const mat4& b) const noexcept;
    /// The product this · b, as `concat`.
    [[nodiscard]] mat4 operator*(const mat4& b) const noexcept { return concat(b); }
    /// The product this · v with all four components of `v`.
    [[nodiscard]] vec4 operator*(const vec4& v) const noexcept;

    /// Makes this the identity.
    mat4& identity() noexcept { return *this = mat4(); }

    /// Makes this a translation, the whole matrix.
    mat4& init_translate(float x, float y, float z) noexcept;
    /// Makes this a translation by the first three components of `v`.
    mat4& init_translate(const vec4& v) noexcept { return init_translate(v.x, v.y, v.z); }
    /// Makes this a translation by the first three components of `v`; null changes nothing.
    mat4& init_translate(const vec4* v) noexcept { return v ? init_translate(*v) : *this; }
    /// Sets the translation, and `m[15]` to 1; the rest stays.
    mat4& set_translate(float x, float y, float z) noexcept;

    /// Makes this a scaling, the whole matrix.
    mat4& init_scale(float x, float y, float z) noexcept;
    /// Makes this a scaling by the first three components of `v`.
    mat4& init_scale(const vec4& v) noexcept { return init_scale(v.x, v.y, v.z); }
    /// Makes this a scaling by the first three components of `v`; null changes nothing.
    mat4& init_scale(const vec4* v) noexcept { return v ? init_scale(*v) : *this; }
    /// Sets `m[0]`, `m[5]` and `m[10]`; the rest stays.
    mat4& set_scale(float x, float y, float z) noexcept;

    /// Makes this a turn about the X axis, right-handed.
    /// @param angle  degrees
    mat4& init_rotate_x(float angle) noexcept;
    /// Makes this a turn about the Y axis, right-handed.
    /// @param angle  degrees
    mat4& init_rotate_y(float angle) noexcept;
    /// Makes this a turn about the Z axis, right-handed.
    /// @param angle  degrees
    mat4& init_rotate_z(float angle) noexcept;
    /// Makes this a turn about an axis, right-handed.
    /// @param angle  degrees
    /// @param axis  of any length; it is normalised in place, and the caller sees it so
    mat4& init_rotateAxis(float angle, vec4& axis) noexcept;
    /// Makes this the rotation of three Euler angles.
    /// @param a  about X, in degrees
    /// @param b  about Y, in degrees; against the right-hand rule
    /// @param c  about Z, in degrees
    mat4& init_eulerAngleYXZ(float a, float b, float c) noexcept;

    /// Writes the rotation of a unit quaternion into the upper left 3×3; the fourth row and column
    /// stay.
    mat4& from_quat(const quat& q) noexcept;
    /// The rotation of the upper left 3×3, as a unit quaternion.
    /// @param[in,out] q  receives it. For a half turn about an axis near Z, where no element but
    ///                   `m[10]` is large, y is not written before the whole is normalised: it
    ///                   keeps what the caller left there.
    void to_quat(quat& q) const noexcept;
    /// Makes this the identity with the three vectors as its first three columns.
    mat4& from_axes(const vec4& x, const vec4& y, const vec4& z) noexcept;
    /// The first three columns.
    /// @param[out] x,y,z  receive them; their w stays
    void to_axes(vec4& x, vec4& y, vec4& z) const noexcept;
    /// `from_axes` on this matrix, then `to_quat`.
    void from_axes_to_quaternion(const vec4& x, const vec4& y, const vec4& z, quat& q) noexcept;
    /// `from_quat` on this matrix, then `to_axes`.
    void from_quaternion_to_axes(const quat& q, vec4& x, vec4& y, vec4& z) noexcept;

    /// Swaps rows and columns, in place.
    mat4& transpose() noexcept;
    /// Inverts in place, by cofactors in single precision. A determinant of exactly 0 gives the
    /// identity; there is no tolerance.
    mat4& inverse() noexcept;
    /// The inverse, to the bit of `inverse`; this stays. The quicker form for a host that is built
    /// for one processor: such a host copies a matrix by one wide store, which `inverse` would wait
    /// for.
    [[nodiscard]] mat4 inverted() const noexcept {
        mat4 result(no_values{});
        invert_to(result);
        return result;
    }
    /// Writes the inverse, to the bit of `inverse`, to `result`, which may be this.
    void invert_to(mat4& result) const noexcept;
    /// Replaces the elements one after another, in storage order, with their signed minors. Each
    /// minor is read from the matrix that is being overwritten, so only the first one is that of
    /// the matrix before the call.
    mat4& adjoint() noexcept;

    /// Makes this a right-handed perspective projection, looking along negative Z.
    /// @param fov  vertical field of view, degrees
    /// @param aspect  width divided by height
    /// @param near,far  distances of the clip planes; a far of exactly -1 is at infinity
    /// @param epsilon  with far at infinity, keeps depth below 1; 1e-5 is a good value
    mat4& buildRHPerspectiveProjectionMatrix(float fov, float aspect, float near, float far,
                                             float epsilon) noexcept;
    /// The same with two fields of view. The horizontal one is divided by the aspect as well.
    /// @param fovx,fovy  degrees
    /// @param aspect  width divided by height
    /// @param near,far  distances of the clip planes; a far of exactly -1 is at infinity
    /// @param epsilon  with far at infinity, keeps depth below 1
    mat4& buildRHTwoFovPerspectiveProjectionMatrix(float fovx, float fovy, float aspect, float near,
                                                   float far, float epsilon) noexcept;
    /// Makes this a left-handed perspective projection, looking along positive Z.
    /// @param fov  twice the vertical field of view, degrees: the angle is halved twice
    /// @param aspect  width divided by height
    /// @param near,far  distances of the clip planes
    mat4& buildLHPerspectiveProjectionMatrix(float fov, float aspect, float near,
                                             float far) noexcept;
    /// Makes this a right-handed orthographic projection of the given box.
    mat4& buildRHOrthographicProjectionMatrix(float left, float right, float bottom, float top,
                                              float near, float far) noexcept;
    /// The very same matrix as the right-handed one.
    mat4& buildLHOrthographicProjectionMatrix(float left, float right, float bottom, float top,
                                              float near, float far) noexcept;
    /// Makes this the view of an eye that looks along its negative Z axis.
    /// @param eye  where the eye stands
    /// @param lookat  the point it looks at
    /// @param up  any direction not along the line of sight; need not be of unit length
    mat4& buildRHUVNCameraMatrix(const vec4& eye, const vec4& lookat, const vec4& up) noexcept;
    /// The same for an eye that looks along its positive Z axis.
    mat4& buildLHUVNCameraMatrix(const vec4& eye, const vec4& lookat, const vec4& up) noexcept;

private:
    /// For operations that write all of a matrix.
    struct no_values {};
    explicit mat4(no_values) noexcept {} // NOLINT(cppcoreguidelines-pro-type-member-init)
};

/// The determinant a·d - c·b.
[[nodiscard]] inline float det2x2(float a, float b, float c, float d) noexcept {
    return a * d - c * b;
}

/// The determinant of three rows, or three columns, a, b and c.
[[nodiscard]] inline float det3x3(float a1, float a2, float a3, float b1, float b2, float b3,
                                  float c1, float c2, float c3) noexcept {
    return a1 * det2x2(b2, b3, c2, c3) - b1 * det2x2(a2, a3, c2, c3) + c1 * det2x2(a2, a3, b2, b3);
}

/// The determinant of the nine elements `m[r * 4 + c]` at three r and three c.
/// @param r0,r1,r2,c0,c1,c2  0 to 3 each; anything else gives 0
[[nodiscard]] ORVEX_API float MINOR(const mat4& m, int r0, int r1, int r2, int c0, int c1,
                                    int c2) noexcept;

/// @cond
namespace detail {

/// One column of a matrix in a register. Each lane is rounded after every operation, in the order
/// the operations are written, as single floats are. Stands here, and not with the engine's other
/// lanes, because products are inlined into hosts, which see no private header.
typedef float column4 __attribute__((vector_size(16)));

inline column4 load_column(const float* from) noexcept {
    column4 column;
    __builtin_memcpy(&column, from, sizeof(column));
    return column;
}

inline column4 splat_column(float value) noexcept {
    return column4{value, value, value, value};
}

/// The sum of four columns, each times one component, from left to right.
inline column4 combine_columns(const column4 (&columns)[4], column4 factors) noexcept {
    return columns[0] * splat_column(factors[0]) + columns[1] * splat_column(factors[1]) +
           columns[2] * splat_column(factors[2]) + columns[3] * splat_column(factors[3]);
}

} // namespace detail
/// @endcond

inline mat4 mat4::concat(const mat4& b) const noexcept {
    const detail::column4 columns[4] = {detail::load_column(m), detail::load_column(m + 4),
                                        detail::load_column(m + 8), detail::load_column(m + 12)};
    mat4 product;
    for (int j = 0; j < 4; ++j) {
        const detail::column4 column =
            detail::combine_columns(columns, detail::load_column(b.m + j * 4));
        __builtin_memcpy(product.m + j * 4, &column, sizeof(column));
    }
    return product;
}

inline vec4 mat4::operator*(const vec4& v) const noexcept {
    const detail::column4 columns[4] = {detail::load_column(m), detail::load_column(m + 4),
                                        detail::load_column(m + 8), detail::load_column(m + 12)};
    const detail::column4 column = detail::combine_columns(columns, detail::load_column(&v.x));
    vec4 product;
    __builtin_memcpy(static_cast<void*>(&product), &column, sizeof(column));
    return product;
}

static_assert(sizeof(mat4) == 64 && alignof(mat4) == 4);
static_assert(std::is_trivially_copyable_v<mat4> && std::is_standard_layout_v<mat4>);

} // namespace orvex
