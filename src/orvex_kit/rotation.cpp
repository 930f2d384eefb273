#include "orvex_kit/private/rotation.h"

#include <algorithm>
#include <cmath>

namespace orvex::kit {

std::optional<Rotation> straightened(const Rotation& rotation) {
    constexpr double bend = 0.01;
    for (std::size_t i = 0; i < 3; ++i) {
        const double aslant = dot(rotation[i], rotation[(i + 1) % 3]);
        if (!(std::abs(length(rotation[i]) - 1.0) <= bend && std::abs(aslant) <= bend))
            return std::nullopt;
    }
    if (dot(cross(rotation[0], rotation[1]), rotation[2]) < 0.0)
        return std::nullopt;
    // What is straight to the last digits stays as it is.
    const Vector3 forward = normalized(rotation[2]);
    const Vector3 right = normalized(cross(rotation[1], forward));
    const Rotation straight{right, cross(forward, right), forward};
    double most = 0.0;
    for (std::size_t i = 0; i < 3; ++i)
        most = std::max(most, length(straight[i] - rotation[i]));
    return most < 1e-12 ? rotation : straight;
}

namespace {

Quaternion scaled(const Quaternion& q, double factor) {
    return {q.x * factor, q.y * factor, q.z * factor, q.w * factor};
}

double dot(const Quaternion& a, const Quaternion& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z + a.w * b.w;
}

Quaternion normalized(const Quaternion& q) {
    return scaled(q, 1.0 / std::sqrt(dot(q, q)));
}

} // namespace

// The four squares come from the diagonal. The largest gives its number by a root, and the others
// by a division that loses nothing.
Quaternion quaternion_of(const Rotation& axes) {
    const auto& [x, y, z] = axes;
    const double squares[] = {1 + x.x - y.y - z.z, 1 - x.x + y.y - z.z, 1 - x.x - y.y + z.z,
                              1 + x.x + y.y + z.z};
    Quaternion q;
    switch (std::max_element(squares, squares + 4) - squares) {
    case 0:
        q = {squares[0], x.y + y.x, z.x + x.z, y.z - z.y};
        break;
    case 1:
        q = {x.y + y.x, squares[1], y.z + z.y, z.x - x.z};
        break;
    case 2:
        q = {z.x + x.z, y.z + z.y, squares[2], x.y - y.x};
        break;
    default:
        q = {y.z - z.y, z.x - x.z, x.y - y.x, squares[3]};
        break;
    }
    return normalized(q);
}

Rotation rotation_of(const Quaternion& q) {
    const auto& [x, y, z, w] = q;
    return {Vector3{1 - 2 * (y * y + z * z), 2 * (x * y + w * z), 2 * (x * z - w * y)},
            Vector3{2 * (x * y - w * z), 1 - 2 * (x * x + z * z), 2 * (y * z + w * x)},
            Vector3{2 * (x * z + w * y), 2 * (y * z - w * x), 1 - 2 * (x * x + y * y)}};
}

namespace {

Quaternion product(const Quaternion& a, const Quaternion& b) {
    return {a.w * b.x + a.x * b.w + a.y * b.z - a.z * b.y,
            a.w * b.y - a.x * b.z + a.y * b.w + a.z * b.x,
            a.w * b.z + a.x * b.y - a.y * b.x + a.z * b.w,
            a.w * b.w - a.x * b.x - a.y * b.y - a.z * b.z};
}

} // namespace

Vector3 turn_between(const Quaternion& from, const Quaternion& to) {
    Quaternion q = product({-from.x, -from.y, -from.z, from.w}, to);
    // Both signs of a quaternion are the same rotation; this one is the shorter way.
    if (q.w < 0.0)
        q = scaled(q, -1.0);
    const Vector3 axis{q.x, q.y, q.z};
    const double sine = length(axis);
    return sine < 1e-300 ? Vector3{} : axis * (2.0 * std::atan2(sine, q.w) / sine);
}

Quaternion turned_by(const Quaternion& q, const Vector3& turn) {
    const double angle = length(turn);
    if (angle < 1e-300)
        return q;
    const Vector3 axis = turn * (std::sin(angle / 2) / angle);
    return normalized(product(q, {axis.x, axis.y, axis.z, std::cos(angle / 2)}));
}

Quaternion between(const Quaternion& from, const Quaternion& to, double part) {
    return turned_by(from, turn_between(from, to) * part);
}

} // namespace orvex::kit
