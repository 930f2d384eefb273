#pragma once

/// @file
/// The numbers of a quaternion's matrix, told once. Private.

#include "orvex/math/quat.h"

namespace orvex {

/// The upper left three rows and columns of the matrix of a turn. The order of the operations in
/// each is part of the result.
struct TurnNumbers {
    explicit TurnNumbers(const quat& q) noexcept
        : xx(1.0f - 2.0f * (q.y * q.y + q.z * q.z))
        , yx(2.0f * (q.x * q.y + q.w * q.z))
        , zx(2.0f * (q.x * q.z - q.w * q.y))
        , xy(2.0f * (q.x * q.y - q.w * q.z))
        , yy(1.0f - 2.0f * (q.x * q.x + q.z * q.z))
        , zy(2.0f * (q.y * q.z + q.w * q.x))
        , xz(2.0f * (q.x * q.z + q.w * q.y))
        , yz(2.0f * (q.y * q.z - q.w * q.x))
        , zz(1.0f - 2.0f * (q.x * q.x + q.y * q.y)) {}

    float xx, yx, zx; ///< the first column, from above
    float xy, yy, zy; ///< the second
    float xz, yz, zz; ///< the third
};

} // namespace orvex
