#pragma once

#include "orvex/api.h"

#include <type_traits>

namespace orvex {

/// A 4×4 matrix of doubles, column by column, for matrices read back from the renderer.
///
/// A plain value: copied freely, owned by whoever holds it, with no thread of its own. The element
/// at row r, column c is `m[c * 4 + r]`.
///
/// @code
/// orvex::mat4d view;
/// view = doubles_of_the_driver; // 16 of them
/// @endcode
class ORVEX_API mat4d {
public:
    double m[16]; ///< column by column

    /// Makes the identity.
    constexpr mat4d() noexcept
        : m{1.0, 0.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 0.0, 1.0} {}
    constexpr mat4d(const mat4d&) = default;  ///< all 16 elements
    mat4d& operator=(const mat4d&) = default; ///< all 16 elements

    /// Copies 16 doubles.
    /// @param values  the elements in storage order; null changes nothing
    /// @return this matrix
    mat4d& operator=(const double* values) noexcept;

    /// Makes this the identity.
    /// @return this matrix
    mat4d& identity() noexcept;
};

static_assert(sizeof(mat4d) == 128);
static_assert(std::is_trivially_copyable_v<mat4d> && std::is_standard_layout_v<mat4d>);

} // namespace orvex
