#include "orvex/math/mat4.h"

#include <cmath>

#include "exact.h"

namespace orvex_test {

using namespace orvex;

namespace {

constexpr float factor = 0.017453292f;

const mat4 unit;

TEST(Mat4, defaults_to_the_identity) {
    mat4 a;
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(a.m[i], i % 5 == 0 ? 1.0f : 0.0f);
    a = counted;
    expect_mat4(a.identity(), unit);
}

TEST(Mat4, takes_its_values_in_storage_order) {
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(counted.m[i], static_cast<float>(i));
    EXPECT_EQ(counted.ptr(), counted.m);
    mat4 a;
    EXPECT_EQ(a.ptr(), a.m);
}

TEST(Mat4, copies_floats_in_and_out) {
    mat4 a;
    expect_mat4(a.from_float_array(counted.m), counted);
    mat4 b;
    b = static_cast<const float*>(counted.m);
    expect_mat4(b, counted);
    float out[16] = {};
    a.to_float_array(out);
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(out[i], static_cast<float>(i));
    mat4 c;
    c = counted;
    expect_mat4(c, counted);
}

TEST(Mat4, null_floats_change_nothing) {
    mat4 a = counted;
    a.from_float_array(nullptr);
    a = static_cast<const float*>(nullptr);
    a.to_float_array(nullptr);
    expect_mat4(a, counted);
}

TEST(Mat4, product_applies_the_right_matrix_first) {
    mat4 move, scale;
    move.init_translate(1.0f, 2.0f, 3.0f);
    scale.init_scale(10.0f, 10.0f, 10.0f);
    const vec4 v(1.0f, 1.0f, 1.0f, 1.0f);
    expect_vec4(move * scale * v, 11.0f, 12.0f, 13.0f, 1.0f);
    expect_vec4(scale * move * v, 20.0f, 30.0f, 40.0f, 1.0f);
}

TEST(Mat4, products_are_summed_from_left_to_right) {
    Numbers numbers;
    for (int n = 0; n < 1000; ++n) {
        const mat4 a = numbers.matrix(), b = numbers.matrix();
        mat4 expected;
        for (int j = 0; j < 4; ++j)
            for (int i = 0; i < 4; ++i)
                expected.m[j * 4 + i] = ((a.m[i] * b.m[j * 4] + a.m[4 + i] * b.m[j * 4 + 1]) +
                                         a.m[8 + i] * b.m[j * 4 + 2]) +
                                        a.m[12 + i] * b.m[j * 4 + 3];
        expect_mat4(a * b, expected);
        expect_mat4(a.concat(b), expected);
        const vec4 v(b.m[0], b.m[1], b.m[2], b.m[3]);
        expect_vec4(a * v, expected.m[0], expected.m[1], expected.m[2], expected.m[3]);
    }
}

TEST(Mat4, product_may_overwrite_its_operands) {
    Numbers numbers;
    const mat4 a = numbers.matrix();
    const mat4 square = a * a;
    mat4 b = a;
    b = b * b;
    expect_mat4(b, square);
}

TEST(Mat4, product_with_a_vector_takes_its_w) {
    mat4 move;
    move.init_translate(1.0f, 2.0f, 3.0f);
    expect_vec4(move * vec4(5.0f, 5.0f, 5.0f, 0.0f), 5.0f, 5.0f, 5.0f, 0.0f);
    expect_vec4(move * vec4(5.0f, 5.0f, 5.0f, 2.0f), 7.0f, 9.0f, 11.0f, 2.0f);
    vec4 variable(5.0f, 5.0f, 5.0f, 1.0f);
    expect_vec4(move * variable, 6.0f, 7.0f, 8.0f, 1.0f);
    expect_vec4(move * -variable, -4.0f, -3.0f, -2.0f, 1.0f);
}

TEST(Mat4, init_translate_writes_the_whole_matrix) {
    const mat4 expected(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 7, 8, 9, 1);
    const vec4 v(7.0f, 8.0f, 9.0f, 5.0f);
    mat4 a = counted, b = counted, c = counted;
    expect_mat4(a.init_translate(7.0f, 8.0f, 9.0f), expected);
    expect_mat4(b.init_translate(v), expected);
    expect_mat4(c.init_translate(&v), expected);
    expect_mat4(c.init_translate(nullptr), expected);
}

TEST(Mat4, set_translate_keeps_the_rest) {
    mat4 a = counted;
    expect_mat4(a.set_translate(70.0f, 80.0f, 90.0f),
                mat4(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 70, 80, 90, 1));
}

TEST(Mat4, init_scale_writes_the_whole_matrix) {
    const mat4 expected(7, 0, 0, 0, 0, 8, 0, 0, 0, 0, 9, 0, 0, 0, 0, 1);
    const vec4 v(7.0f, 8.0f, 9.0f, 5.0f);
    mat4 a = counted, b = counted, c = counted;
    expect_mat4(a.init_scale(7.0f, 8.0f, 9.0f), expected);
    expect_mat4(b.init_scale(v), expected);
    expect_mat4(c.init_scale(&v), expected);
    expect_mat4(c.init_scale(nullptr), expected);
}

TEST(Mat4, set_scale_keeps_the_rest) {
    mat4 a = counted;
    expect_mat4(a.set_scale(70.0f, 80.0f, 90.0f),
                mat4(70, 1, 2, 3, 4, 80, 6, 7, 8, 9, 90, 11, 12, 13, 14, 15));
}

TEST(Mat4, rotations_about_the_axes) {
    for (const float angle : {-120.0f, 0.0f, 30.0f, 90.0f, 500.0f}) {
        const float c = std::cos(angle * factor), s = std::sin(angle * factor);
        mat4 x = counted, y = counted, z = counted;
        expect_mat4(x.init_rotate_x(angle), mat4(1, 0, 0, 0, 0, c, s, 0, 0, -s, c, 0, 0, 0, 0, 1));
        expect_mat4(y.init_rotate_y(angle), mat4(c, 0, -s, 0, 0, 1, 0, 0, s, 0, c, 0, 0, 0, 0, 1));
        expect_mat4(z.init_rotate_z(angle), mat4(c, s, 0, 0, -s, c, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1));
    }
}

TEST(Mat4, rotation_about_any_axis_normalizes_the_callers_axis) {
    vec4 axis(3.0f, 0.0f, 4.0f, 9.0f);
    mat4 a = counted;
    a.init_rotateAxis(25.0f, axis);
    const float scale = 1.0f / 5.0f;
    expect_vec4(axis, 3.0f * scale, 0.0f, 4.0f * scale, 9.0f);

    const float c = std::cos(25.0f * factor), s = std::sin(25.0f * factor), t = 1.0f - c;
    const float x = axis.x, y = axis.y, z = axis.z;
    mat4 expected;
    expected.m[0] = c + t * (x * x);
    expected.m[4] = t * y * x - s * z;
    expected.m[8] = t * z * x + s * y;
    expected.m[1] = t * x * y + s * z;
    expected.m[5] = c + t * (y * y);
    expected.m[9] = t * z * y - s * x;
    expected.m[2] = t * x * z - s * y;
    expected.m[6] = t * y * z + s * x;
    expected.m[10] = c + t * (z * z);
    expect_mat4(a, expected);
}

TEST(Mat4, rotation_about_any_axis_agrees_with_those_about_the_axes) {
    mat4 any, one;
    vec4 x(2.0f, 0.0f, 0.0f, 1.0f), y(0.0f, 3.0f, 0.0f, 1.0f), z(0.0f, 0.0f, 4.0f, 1.0f);
    any.init_rotateAxis(40.0f, x);
    one.init_rotate_x(40.0f);
    for (int i = 0; i < 16; ++i)
        EXPECT_NEAR(any.m[i], one.m[i], 1e-6f);
    any.init_rotateAxis(40.0f, y);
    one.init_rotate_y(40.0f);
    for (int i = 0; i < 16; ++i)
        EXPECT_NEAR(any.m[i], one.m[i], 1e-6f);
    any.init_rotateAxis(40.0f, z);
    one.init_rotate_z(40.0f);
    for (int i = 0; i < 16; ++i)
        EXPECT_NEAR(any.m[i], one.m[i], 1e-6f);
}

TEST(Mat4, euler_angles_yxz) {
    mat4 r = counted;
    r.init_eulerAngleYXZ(20.0f, -35.0f, 70.0f);
    const float ca = std::cos(20.0f * factor), sa = std::sin(20.0f * factor);
    const float cb = std::cos(-35.0f * factor), sb = std::sin(-35.0f * factor);
    const float cc = std::cos(70.0f * factor), sc = std::sin(70.0f * factor);
    mat4 expected;
    expected.m[0] = cb * cc + sa * sb * sc;
    expected.m[4] = -ca * sc;
    expected.m[8] = sa * cb * sc - sb * cc;
    expected.m[1] = cb * sc - sa * sb * cc;
    expected.m[5] = ca * cc;
    expected.m[9] = -sb * sc - sa * cb * cc;
    expected.m[2] = ca * sb;
    expected.m[6] = sa;
    expected.m[10] = ca * cb;
    expect_mat4(r, expected);
}

TEST(Mat4, from_quat_writes_the_upper_left_only) {
    Numbers numbers;
    for (int n = 0; n < 100; ++n) {
        const quat q = numbers.unit_quat();
        const float x = q.x, y = q.y, z = q.z, w = q.w;
        mat4 a = counted, expected = counted;
        expected.m[0] = 1.0f - 2.0f * (y * y + z * z);
        expected.m[1] = 2.0f * (x * y + w * z);
        expected.m[2] = 2.0f * (x * z - w * y);
        expected.m[4] = 2.0f * (x * y - w * z);
        expected.m[5] = 1.0f - 2.0f * (x * x + z * z);
        expected.m[6] = 2.0f * (y * z + w * x);
        expected.m[8] = 2.0f * (x * z + w * y);
        expected.m[9] = 2.0f * (y * z - w * x);
        expected.m[10] = 1.0f - 2.0f * (x * x + y * y);
        expect_mat4(a.from_quat(q), expected);
    }
}

TEST(Mat4, from_quat_turns_as_the_quaternion_does) {
    Numbers numbers;
    for (int n = 0; n < 100; ++n) {
        const quat q = numbers.unit_quat();
        const vec4 v = numbers.point();
        mat4 a;
        const vec4 by_matrix = a.from_quat(q) * v, by_quat = q * v;
        EXPECT_NEAR(by_matrix.x, by_quat.x, 2e-5f);
        EXPECT_NEAR(by_matrix.y, by_quat.y, 2e-5f);
        EXPECT_NEAR(by_matrix.z, by_quat.z, 2e-5f);
    }
}

TEST(Mat4, to_quat_of_a_positive_trace) {
    mat4 a;
    a.init_rotate_y(60.0f);
    const float s = 2.0f * std::sqrt(a.m[0] + a.m[5] + a.m[10] + 1.0f);
    quat q;
    a.to_quat(q);
    expect_quat(q, quat(0.0f, (a.m[8] - a.m[2]) / s, 0.0f, 0.25f * s).normalize());
}

TEST(Mat4, to_quat_of_a_half_turn_about_x) {
    const mat4 a(1, 0, 0, 0, 0, -1, 0, 0, 0, 0, -1, 0, 0, 0, 0, 1);
    quat q(9.0f, 9.0f, 9.0f, 9.0f);
    a.to_quat(q);
    expect_quat(q, 1.0f, 0.0f, 0.0f, 0.0f);
}

TEST(Mat4, to_quat_of_a_half_turn_about_y) {
    const mat4 a(-1, 0, 0, 0, 0, 1, 0, 0, 0, 0, -1, 0, 0, 0, 0, 1);
    quat q(9.0f, 9.0f, 9.0f, 9.0f);
    a.to_quat(q);
    expect_quat(q, 0.0f, 1.0f, 0.0f, 0.0f);
}

TEST(Mat4, to_quat_of_a_half_turn_about_z_leaves_y_as_found) {
    mat4 a;
    a.init_rotate_z(180.0f);
    quat q(9.0f, 0.0f, 9.0f, 9.0f);
    a.to_quat(q);
    EXPECT_EQ(q.y, 0.0f);
    EXPECT_EQ(q.z, 1.0f);
    quat found(9.0f, 1.0f, 9.0f, 9.0f);
    mat4(-1, 0, 0, 0, 0, -1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1).to_quat(found);
    expect_quat(found, quat(0.0f, 1.0f, 1.0f, 0.0f).normalize());
}

TEST(Mat4, to_quat_keeps_the_formulas_of_all_four_branches) {
    Numbers numbers;
    int branches[4] = {};
    for (int n = 0; n < 2000; ++n) {
        const mat4 a = numbers.matrix();
        const float* m = a.m;
        quat expected(0.0f, 0.125f, 0.0f, 0.0f);
        if (m[0] + m[5] + m[10] + 1.0f > 0.0f) {
            const float s = 2.0f * std::sqrt(((m[0] + m[5]) + m[10]) + 1.0f);
            expected.set((m[6] - m[9]) / s, (m[8] - m[2]) / s, (m[1] - m[4]) / s, 0.25f * s);
            ++branches[0];
        } else if (m[0] > m[5] && m[0] > m[10]) {
            const float s = 2.0f * std::sqrt(((1.0f + m[0]) - m[5]) - m[10]);
            expected.set(0.25f * s, (m[1] + m[4]) / s, (m[8] + m[2]) / s, (m[6] - m[9]) / s);
            ++branches[1];
        } else if (m[5] > m[10]) {
            const float s = 2.0f * std::sqrt(((1.0f + m[5]) - m[0]) - m[10]);
            expected.set((m[1] + m[4]) / s, 0.25f * s, (m[6] + m[9]) / s, (m[8] - m[2]) / s);
            ++branches[2];
        } else {
            const float s = 2.0f * std::sqrt(((1.0f + m[10]) - m[0]) - m[5]);
            expected.set((m[8] + m[2]) / s, 0.125f, 0.25f * s, (m[1] - m[4]) / s);
            ++branches[3];
        }
        quat q(0.0f, 0.125f, 0.0f, 0.0f);
        a.to_quat(q);
        expect_quat(q, expected.normalize());
    }
    for (const int count : branches)
        EXPECT_GT(count, 100);
}

TEST(Mat4, axes_go_in_and_out_by_columns) {
    const vec4 x(1, 2, 3, 9), y(4, 5, 6, 9), z(7, 8, 10, 9);
    mat4 a = counted;
    expect_mat4(a.from_axes(x, y, z), mat4(1, 2, 3, 0, 4, 5, 6, 0, 7, 8, 10, 0, 0, 0, 0, 1));
    vec4 u(0, 0, 0, 11), v(0, 0, 0, 12), n(0, 0, 0, 13);
    a.to_axes(u, v, n);
    expect_vec4(u, 1, 2, 3, 11);
    expect_vec4(v, 4, 5, 6, 12);
    expect_vec4(n, 7, 8, 10, 13);
}

TEST(Mat4, axes_to_quaternion_and_back) {
    Numbers numbers;
    const quat q = numbers.unit_quat();
    mat4 a = counted, rotation = counted;
    vec4 x, y, z, u, v, n;
    a.from_quaternion_to_axes(q, x, y, z);
    expect_mat4(a, rotation.from_quat(q));
    rotation.to_axes(u, v, n);
    EXPECT_TRUE(x == u && y == v && z == n);

    quat back, expected;
    a.from_axes_to_quaternion(x, y, z, back);
    mat4 axes;
    expect_mat4(a, axes.from_axes(x, y, z));
    axes.to_quat(expected);
    expect_quat(back, expected);
}

TEST(Mat4, transpose_in_place) {
    mat4 a = counted;
    mat4& result = a.transpose();
    EXPECT_EQ(&result, &a);
    expect_mat4(a, mat4(0, 4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15));
}

} // namespace

} // namespace orvex_test
