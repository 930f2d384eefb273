#include "orvex_kit/private/rotation.h"

#include <cmath>
#include <numbers>

#include <gtest/gtest.h>

namespace orvex_test {

using namespace orvex;
using namespace orvex::kit;

namespace {

/// A turn about an axis by its angle, as rows, after Rodrigues.
Rotation rotation_by(const Vector3& turn) {
    const double angle = length(turn);
    const Vector3 k = turn * (1.0 / angle);
    const double s = std::sin(angle), c = std::cos(angle), rest = 1.0 - c;
    return {Vector3{c + k.x * k.x * rest, k.x * k.y * rest - k.z * s, k.x * k.z * rest + k.y * s},
            Vector3{k.y * k.x * rest + k.z * s, c + k.y * k.y * rest, k.y * k.z * rest - k.x * s},
            Vector3{k.z * k.x * rest - k.y * s, k.z * k.y * rest + k.x * s, c + k.z * k.z * rest}};
}

Vector3 column(const Rotation& rows, int i) {
    const auto part = [i](const Vector3& v) { return i == 0 ? v.x : i == 1 ? v.y : v.z; };
    return {part(rows[0]), part(rows[1]), part(rows[2])};
}

/// First the right one, then the left one.
Rotation product(const Rotation& left, const Rotation& right) {
    Rotation result;
    for (std::size_t row = 0; row < 3; ++row)
        result[row] = {dot(left[row], column(right, 0)), dot(left[row], column(right, 1)),
                       dot(left[row], column(right, 2))};
    return result;
}

/// Its rows are the other's columns: quaternions here take the axes to x, y and z.
Rotation transposed(const Rotation& rows) {
    return {column(rows, 0), column(rows, 1), column(rows, 2)};
}

void expect_near(const Rotation& found, const Rotation& wanted) {
    for (std::size_t row = 0; row < 3; ++row) {
        EXPECT_NEAR(found[row].x, wanted[row].x, 1e-12) << "row " << row;
        EXPECT_NEAR(found[row].y, wanted[row].y, 1e-12) << "row " << row;
        EXPECT_NEAR(found[row].z, wanted[row].z, 1e-12) << "row " << row;
    }
}

/// Crooked ones of all sizes, so that no part of a product is 0.
const Vector3 turns[] = {
    {0.3, -0.7, 1.1}, {-1.9, 0.4, 0.2}, {0.1, 2.3, -0.6}, {-0.2, -0.3, -2.9}, {1e-3, 2e-3, -3e-3}};

TEST(KitRotation, is_the_same_as_axes_and_as_a_quaternion) {
    for (const Vector3& turn : turns) {
        const Rotation axes = rotation_by(turn);
        const Quaternion q = quaternion_of(axes);
        EXPECT_NEAR(q.x * q.x + q.y * q.y + q.z * q.z + q.w * q.w, 1.0, 1e-12);
        expect_near(rotation_of(q), axes);
    }
}

TEST(KitRotation, is_turned_on_as_axes_are) {
    for (const Vector3& first : turns)
        for (const Vector3& second : turns) {
            const Quaternion q = quaternion_of(rotation_by(first));
            const Rotation found = rotation_of(turned_by(q, second));
            const Rotation after = product(transposed(rotation_by(second)), rotation_by(first));
            expect_near(found, after);
        }
}

TEST(KitRotation, goes_from_one_to_another_by_the_shorter_way) {
    for (const Vector3& first : turns)
        for (const Vector3& second : turns) {
            const Quaternion from = quaternion_of(rotation_by(first));
            const Quaternion to = quaternion_of(rotation_by(second));
            const Vector3 turn = turn_between(from, to);
            EXPECT_LE(length(turn), std::numbers::pi + 1e-12);
            expect_near(rotation_of(turned_by(from, turn)), rotation_of(to));
            const Quaternion opposite{-to.x, -to.y, -to.z, -to.w};
            EXPECT_NEAR(length(turn_between(from, opposite)), length(turn), 1e-12)
                << "both signs are the same rotation";
            const Quaternion third = between(from, to, 1.0 / 3);
            EXPECT_NEAR(length(turn_between(from, third)), length(turn) / 3, 1e-12);
            EXPECT_NEAR(length(turn_between(third, to)), length(turn) * 2 / 3, 1e-12);
        }
}

} // namespace

} // namespace orvex_test
