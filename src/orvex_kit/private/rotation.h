#pragma once

/// @file
/// Rotations as three axes and as quaternions, in double precision.

#include <array>
#include <optional>

#include "orvex_kit/private/vector3.h"

namespace orvex::kit {

/// The rows of a rotation: the axes that it turns to x, y and z, as they lie before.
using Rotation = std::array<Vector3, 3>;

inline Vector3 turned(const Rotation& rotation, const Vector3& v) {
    return {dot(rotation[0], v), dot(rotation[1], v), dot(rotation[2], v)};
}

/// A rotation that rounding has bent. @return nothing for what is none, by more than 0.01
std::optional<Rotation> straightened(const Rotation& rotation);

/// A rotation as four numbers, of length 1.
struct Quaternion {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    double w = 1.0;
};

/// The rotation that takes x, y and z to the axes.
Quaternion quaternion_of(const Rotation& axes);
/// The opposite.
Rotation rotation_of(const Quaternion& q);
/// The turn from one to another by the shorter way: its axis, as long as its angle in radians.
Vector3 turn_between(const Quaternion& from, const Quaternion& to);
/// A rotation turned on.
Quaternion turned_by(const Quaternion& q, const Vector3& turn);
/// From one to another by the shorter way. @param part  0 to 1
Quaternion between(const Quaternion& from, const Quaternion& to, double part);

} // namespace orvex::kit
