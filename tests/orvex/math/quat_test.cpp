#include "orvex/math/quat.h"

#include <cmath>
#include <limits>
#include <vector>

#include "exact.h"

namespace orvex_test {

using namespace orvex;

namespace {

constexpr float factor = 0.017453292f;

TEST(Quat, defaults_to_the_identity) {
    expect_quat(quat(), 0.0f, 0.0f, 0.0f, 1.0f);
    quat q(1.0f, 2.0f, 3.0f, 4.0f);
    expect_quat(q, 1.0f, 2.0f, 3.0f, 4.0f);
    expect_quat(q.identity(), 0.0f, 0.0f, 0.0f, 1.0f);
}

TEST(Quat, copies_and_sets) {
    const quat constant(1.0f, 2.0f, 3.0f, 4.0f);
    quat q;
    q = constant;
    expect_quat(q, 1.0f, 2.0f, 3.0f, 4.0f);
    expect_quat(q.set(5.0f, 6.0f, 7.0f, 8.0f), 5.0f, 6.0f, 7.0f, 8.0f);
}

TEST(Quat, negate_touches_all_four_conjugate_three) {
    quat q(1.0f, 2.0f, 3.0f, 4.0f);
    expect_quat(q.negate(), -1.0f, -2.0f, -3.0f, -4.0f);
    expect_quat(q.conjugate(), 1.0f, 2.0f, 3.0f, -4.0f);
}

TEST(Quat, normalize_multiplies_by_one_reciprocal) {
    quat q(1.0f, 2.0f, 3.0f, 4.0f);
    const float scale = 1.0f / std::sqrt(30.0f);
    expect_quat(q.normalize(), 1.0f * scale, 2.0f * scale, 3.0f * scale, 4.0f * scale);
}

TEST(Quat, normalize_leaves_unit_and_tiny_lengths) {
    const quat unit(0.0f, 1.0f, 0.0f, 0.0f);
    quat q = unit;
    expect_quat(q.normalize(), unit);
    const float below = std::nextafter(1e-7f, 0.0f);
    quat tiny(0.0f, 0.0f, below, 0.0f);
    expect_quat(tiny.normalize(), 0.0f, 0.0f, below, 0.0f);
    EXPECT_EQ(bits(1e-7f), 0x33D6BF95u);
}

TEST(Quat, normalize_takes_the_smallest_length_itself) {
    quat q(0.0f, 1e-7f, 0.0f, 0.0f);
    const float length = std::sqrt(1e-7f * 1e-7f);
    ASSERT_FALSE(length < 1e-7f);
    expect_quat(q.normalize(), 0.0f, 1e-7f * (1.0f / length), 0.0f, 0.0f);
}

TEST(Quat, from_axis_angle_takes_degrees_and_halves_them) {
    quat q;
    q.from_axis_angle(90.0f, vec4::UNIT_Y_AXIS, false);
    quat expected(0.0f, std::sin(90.0f * factor * 0.5f), 0.0f, std::cos(90.0f * factor * 0.5f));
    expect_quat(q, expected.normalize());
    EXPECT_NEAR(q.y, std::sqrt(0.5f), 1e-7f);
}

TEST(Quat, from_axis_angle_normalizes_the_whole_quaternion_flag_or_not) {
    quat with, without;
    with.from_axis_angle(90.0f, 0.0f, 2.0f, 0.0f, true);
    without.from_axis_angle(90.0f, 0.0f, 2.0f, 0.0f, false);
    expect_quat(with, without);
    const float half = 90.0f * factor * 0.5f;
    expect_quat(with, quat(0.0f, 2.0f * std::sin(half), 0.0f, std::cos(half)).normalize());
    EXPECT_NEAR(with.w / with.y, 0.5f, 1e-6f);
}

TEST(Quat, from_euler_is_y_times_x_times_z) {
    quat x, y, z, q;
    x.from_axis_angle(20.0f, vec4::UNIT_X_AXIS, false);
    y.from_axis_angle(-35.0f, vec4::UNIT_Y_AXIS, false);
    z.from_axis_angle(70.0f, vec4::UNIT_Z_AXIS, false);
    quat expected = (y * x) * z;
    expect_quat(q.from_euler(20.0f, -35.0f, 70.0f), expected.normalize());
}

TEST(Quat, from_euler_has_the_bits_of_the_three_turns_for_every_angle) {
    std::vector<float> angles = {0.0f,
                                 -0.0f,
                                 1e-45f,
                                 -1e-40f,
                                 1e-20f,
                                 90.0f,
                                 -180.0f,
                                 360.0f,
                                 720.0f,
                                 1e10f,
                                 3e38f,
                                 std::numeric_limits<float>::infinity(),
                                 -std::numeric_limits<float>::infinity(),
                                 std::numeric_limits<float>::quiet_NaN()};
    Numbers numbers;
    for (int i = 0; i < 8; ++i)
        angles.push_back(40.0f * numbers.next());
    for (const float x : angles)
        for (const float y : angles)
            for (const float z : angles) {
                quat expected = (turn(y, vec4::UNIT_Y_AXIS) * turn(x, vec4::UNIT_X_AXIS)) *
                                turn(z, vec4::UNIT_Z_AXIS);
                expected.normalize();
                const quat q = quat().from_euler(x, y, z);
                // Of what is no number, there is no more to ask.
                if (std::isnan(expected.w))
                    EXPECT_TRUE(std::isnan(q.x) && std::isnan(q.y) && std::isnan(q.z) &&
                                std::isnan(q.w));
                else
                    expect_quat(q, expected);
            }
}

TEST(Quat, to_euler_gives_radians_for_turns_given_in_degrees) {
    for (const float degrees : {-80.0f, -30.0f, 0.0f, 15.0f, 60.0f}) {
        float first, second, third;
        quat().from_euler(degrees, 0.0f, 0.0f).to_euler(&first, &second, &third);
        EXPECT_NEAR(first, degrees * factor, 1e-6f);
        quat().from_euler(0.0f, degrees, 0.0f).to_euler(&first, &second, &third);
        EXPECT_NEAR(second, degrees * factor, 1e-5f);
        quat().from_euler(0.0f, 0.0f, degrees).to_euler(&first, &second, &third);
        EXPECT_NEAR(third, degrees * factor, 1e-6f);
    }
}

TEST(Quat, to_euler_keeps_its_formulas) {
    Numbers numbers;
    for (int i = 0; i < 1000; ++i) {
        const quat q = numbers.unit_quat();
        const float x = q.x, y = q.y, z = q.z, w = q.w;
        float first, second, third;
        q.to_euler(&first, &second, &third);
        EXPECT_EQ(bits(first),
                  bits(std::atan2(2.0f * (y * z + x * w), -x * x - y * y + z * z + w * w)));
        EXPECT_EQ(bits(second), bits(std::asin(-2.0f * (x * z - y * w))));
        EXPECT_EQ(bits(third),
                  bits(std::atan2(2.0f * (x * y + z * w), x * x - y * y - z * z + w * w)));
    }
}

TEST(Quat, to_euler_does_not_clamp_the_sine) {
    float second = 0.0f;
    quat(0.0f, 1.0f, 0.0f, 1.0f).to_euler(nullptr, &second, nullptr);
    EXPECT_TRUE(std::isnan(second));
}

TEST(Quat, to_euler_passes_over_null) {
    const quat q(0.0f, 0.0f, 0.0f, 1.0f);
    float value = 9.0f;
    q.to_euler(nullptr, nullptr, nullptr);
    q.to_euler(&value, nullptr, nullptr);
    EXPECT_EQ(value, 0.0f);
    value = 9.0f;
    q.to_euler(nullptr, nullptr, &value);
    EXPECT_EQ(value, 0.0f);
}

TEST(Quat, from_vector_rotation_takes_one_vector_to_the_other) {
    quat q;
    const float d = vec4::UNIT_X_AXIS.dot(vec4::UNIT_Y_AXIS);
    const float s = std::sqrt((1.0f + d) * 2.0f);
    expect_quat(q.from_vector_rotation(vec4::UNIT_X_AXIS, vec4::UNIT_Y_AXIS),
                quat(0.0f, 0.0f, 1.0f / s, 0.5f * s).normalize());
    const vec4 turned = q * vec4::UNIT_X_AXIS;
    EXPECT_NEAR(turned.x, 0.0f, 1e-6f);
    EXPECT_NEAR(turned.y, 1.0f, 1e-6f);
}

TEST(Quat, from_vector_rotation_of_equal_vectors_is_the_identity) {
    quat q(1.0f, 2.0f, 3.0f, 4.0f);
    expect_quat(q.from_vector_rotation(vec4::UNIT_X_AXIS, vec4::UNIT_X_AXIS), quat());
}

TEST(Quat, from_vector_rotation_of_opposite_vectors_is_not_finite) {
    quat q;
    q.from_vector_rotation(vec4::UNIT_X_AXIS, vec4(-1.0f, 0.0f, 0.0f, 1.0f));
    EXPECT_FALSE(std::isfinite(q.x));
}

TEST(Quat, product_is_hamiltons) {
    const quat a(2.0f, 3.0f, 5.0f, 7.0f), b(11.0f, 13.0f, 17.0f, 19.0f);
    expect_quat(a * b, 7 * 11 + 2 * 19 + 3 * 17 - 5 * 13, 7 * 13 - 2 * 17 + 3 * 19 + 5 * 11,
                7 * 17 + 2 * 13 - 3 * 11 + 5 * 19, 7 * 19 - 2 * 11 - 3 * 13 - 5 * 17);
}

TEST(Quat, product_keeps_its_order_of_evaluation) {
    Numbers numbers;
    for (int i = 0; i < 1000; ++i) {
        const quat a = numbers.unit_quat(), b = numbers.unit_quat();
        expect_quat(a * b, ((a.w * b.x + a.x * b.w) + a.y * b.z) - a.z * b.y,
                    ((a.w * b.y - a.x * b.z) + a.y * b.w) + a.z * b.x,
                    ((a.w * b.z + a.x * b.y) - a.y * b.x) + a.z * b.w,
                    ((a.w * b.w - a.x * b.x) - a.y * b.y) - a.z * b.z);
    }
}

TEST(Quat, product_in_place_changes_nothing_and_gives_the_scalar_first) {
    const quat a(2.0f, 3.0f, 5.0f, 7.0f), b(11.0f, 13.0f, 17.0f, 19.0f);
    const quat product = a * b;
    const quat result = a *= b;
    expect_quat(result, product.w, product.x, product.y, product.z);
    expect_quat(a, 2.0f, 3.0f, 5.0f, 7.0f);
}

TEST(Quat, turns_a_vector_with_w3) {
    quat q;
    q.from_axis_angle(90.0f, vec4::UNIT_Z_AXIS, false);
    for (const float w : {0.0f, 1.0f, 5.0f}) {
        const vec4 turned = q * vec4(1.0f, 0.0f, 0.0f, w);
        EXPECT_NEAR(turned.x, 0.0f, 1e-6f);
        EXPECT_NEAR(turned.y, 1.0f, 1e-6f);
        EXPECT_NEAR(turned.z, 0.0f, 1e-6f);
        EXPECT_EQ(turned.w, 3.0f);
    }
}

TEST(Quat, turns_a_vector_in_the_order_of_its_two_cross_products) {
    Numbers numbers;
    for (int i = 0; i < 1000; ++i) {
        const quat q = numbers.unit_quat();
        const vec4 v = numbers.point();
        const vec4 axis(q.x, q.y, q.z, 1.0f);
        const vec4 uv = axis.cross(v), uuv = axis.cross(uv);
        const float twice = 2.0f * q.w;
        expect_vec4(q * v, (v.x + uv.x * twice) + uuv.x * 2.0f, (v.y + uv.y * twice) + uuv.y * 2.0f,
                    (v.z + uv.z * twice) + uuv.z * 2.0f, 3.0f);
    }
}

} // namespace

} // namespace orvex_test
