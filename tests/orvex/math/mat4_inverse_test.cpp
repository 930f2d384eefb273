#include <cmath>

#include "exact.h"

namespace orvex_test {

using namespace orvex;

namespace {

/// The nine elements that remain in storage order without column c and row r.
void remaining(const mat4& a, int c, int r, float (&out)[9]) {
    int n = 0;
    for (int column = 0; column < 4; ++column)
        for (int row = 0; row < 4; ++row)
            if (column != c && row != r)
                out[n++] = a.m[column * 4 + row];
}

/// One element after another, with the functions for determinants.
mat4 plain_inverse(const mat4& a) {
    mat4 result;
    for (int c = 0; c < 4; ++c) {
        for (int r = 0; r < 4; ++r) {
            float e[9];
            remaining(a, c, r, e);
            const float minor = det3x3(e[0], e[1], e[2], e[3], e[4], e[5], e[6], e[7], e[8]);
            result.m[r * 4 + c] = (c + r) % 2 ? -minor : minor;
        }
    }
    const float det =
        a.m[0] * result.m[0] + a.m[1] * result.m[4] + a.m[2] * result.m[8] + a.m[3] * result.m[12];
    if (det == 0.0f)
        return mat4();
    const float scale = 1.0f / det;
    for (float& element : result.m)
        element *= scale;
    return result;
}

TEST(Determinants, keep_their_order_of_evaluation) {
    Numbers numbers;
    for (int i = 0; i < 1000; ++i) {
        const mat4 n = numbers.matrix();
        const float* e = n.m;
        EXPECT_EQ(bits(det2x2(e[0], e[1], e[2], e[3])), bits(e[0] * e[3] - e[2] * e[1]));
        const float expected =
            (e[0] * (e[4] * e[8] - e[7] * e[5]) - e[3] * (e[1] * e[8] - e[7] * e[2])) +
            e[6] * (e[1] * e[5] - e[4] * e[2]);
        EXPECT_EQ(bits(det3x3(e[0], e[1], e[2], e[3], e[4], e[5], e[6], e[7], e[8])),
                  bits(expected));
    }
}

TEST(Determinants, minor_takes_its_elements_by_index_pairs) {
    Numbers numbers;
    const mat4 a = numbers.matrix();
    const float* m = a.m;
    EXPECT_EQ(bits(MINOR(a, 0, 2, 3, 1, 2, 3)),
              bits(det3x3(m[1], m[2], m[3], m[9], m[10], m[11], m[13], m[14], m[15])));
    EXPECT_EQ(bits(MINOR(a, 1, 1, 1, 0, 1, 2)),
              bits(det3x3(m[4], m[5], m[6], m[4], m[5], m[6], m[4], m[5], m[6])));
}

TEST(Determinants, minor_of_an_index_that_is_none_is_zero) {
    const mat4 a = Numbers().matrix();
    for (const int wrong : {-1, 4, 1000}) {
        EXPECT_EQ(MINOR(a, wrong, 1, 2, 0, 1, 2), 0.0f);
        EXPECT_EQ(MINOR(a, 0, wrong, 2, 0, 1, 2), 0.0f);
        EXPECT_EQ(MINOR(a, 0, 1, wrong, 0, 1, 2), 0.0f);
        EXPECT_EQ(MINOR(a, 0, 1, 2, wrong, 1, 2), 0.0f);
        EXPECT_EQ(MINOR(a, 0, 1, 2, 0, wrong, 2), 0.0f);
        EXPECT_EQ(MINOR(a, 0, 1, 2, 0, 1, wrong), 0.0f);
    }
}

TEST(Mat4Inverse, is_that_of_the_plain_cofactors) {
    Numbers numbers;
    for (int i = 0; i < 2000; ++i) {
        mat4 a = numbers.matrix();
        const mat4 expected = plain_inverse(a);
        mat4& result = a.inverse();
        EXPECT_EQ(&result, &a);
        expect_mat4(a, expected);
    }
}

TEST(Mat4Inverse, by_value_has_the_same_bits_and_leaves_the_matrix) {
    Numbers numbers;
    for (int i = 0; i < 100; ++i) {
        const mat4 a = numbers.matrix();
        const mat4 before = a;
        mat4 expected = a;
        expected.inverse();
        expect_mat4(a.inverted(), expected);
        mat4 to;
        a.invert_to(to);
        expect_mat4(to, expected);
        expect_mat4(a, before);
        to = a;
        to.invert_to(to);
        expect_mat4(to, expected);
    }
    mat4 flat;
    flat.init_scale(1.0f, 0.0f, 1.0f);
    expect_mat4(flat.inverted(), mat4());
    flat.invert_to(flat);
    expect_mat4(flat, mat4());
}

TEST(Mat4Inverse, undoes_a_transform) {
    mat4 move, turn, scale;
    move.init_translate(3.0f, -4.0f, 5.0f);
    turn.init_rotate_y(33.0f);
    scale.init_scale(2.0f, 3.0f, 4.0f);
    const mat4 a = move * turn * scale;
    mat4 b = a;
    const mat4 product = b.inverse() * a;
    for (int i = 0; i < 16; ++i)
        EXPECT_NEAR(product.m[i], i % 5 == 0 ? 1.0f : 0.0f, 1e-6f);
}

TEST(Mat4Inverse, of_a_singular_matrix_is_the_identity) {
    mat4 zero_column(0, 0, 0, 0, 5, 6, 7, 8, 1, 2, 9, 4, 4, 3, 2, 1);
    expect_mat4(zero_column.inverse(), mat4());
    mat4 flat;
    flat.init_scale(1.0f, 0.0f, 1.0f);
    expect_mat4(flat.inverse(), mat4());
}

TEST(Mat4Inverse, has_no_tolerance_for_small_determinants) {
    mat4 a;
    a.init_scale(1e-10f, 1e-10f, 1e-10f);
    const float minor = 1e-10f * 1e-10f;
    const float det = 1e-10f * minor;
    ASSERT_NE(det, 0.0f);
    a.inverse();
    EXPECT_EQ(bits(a.m[0]), bits(minor * (1.0f / det)));
}

TEST(Mat4Inverse, of_numbers_that_are_none_is_none) {
    mat4 a;
    a.m[6] = std::nanf("");
    a.inverse();
    EXPECT_TRUE(std::isnan(a.m[0]));
}

TEST(Mat4Adjoint, reads_what_it_has_already_written) {
    Numbers numbers;
    const int others[4][3] = {{1, 2, 3}, {0, 2, 3}, {0, 1, 3}, {0, 1, 2}};
    for (int n = 0; n < 100; ++n) {
        mat4 a = numbers.matrix();
        for (float& value : a.m)
            value *= 0.1f;
        float e[16];
        a.to_float_array(e);
        for (int i = 0; i < 4; ++i) {
            for (int j = 0; j < 4; ++j) {
                const int *r = others[j], *c = others[i];
                const float minor =
                    det3x3(e[r[0] * 4 + c[0]], e[r[0] * 4 + c[1]], e[r[0] * 4 + c[2]],
                           e[r[1] * 4 + c[0]], e[r[1] * 4 + c[1]], e[r[1] * 4 + c[2]],
                           e[r[2] * 4 + c[0]], e[r[2] * 4 + c[1]], e[r[2] * 4 + c[2]]);
                e[i * 4 + j] = (i + j) % 2 ? -minor : minor;
            }
        }
        mat4& result = a.adjoint();
        EXPECT_EQ(&result, &a);
        mat4 expected;
        expect_mat4(a, expected.from_float_array(e));
    }
}

TEST(Mat4Adjoint, differs_from_that_of_a_copy) {
    mat4 a(1, 2, 3, 4, 2, 1, 4, 3, 5, 3, 1, 2, 1, 0, 2, 1);
    const float second_of_a_copy = -MINOR(a, 0, 2, 3, 1, 2, 3);
    const float first = MINOR(a, 1, 2, 3, 1, 2, 3);
    a.adjoint();
    EXPECT_EQ(a.m[0], first);
    EXPECT_EQ(a.m[1], second_of_a_copy); // reads m[1..3] before any of them is written
    mat4 b(1, 2, 3, 4, 2, 1, 4, 3, 5, 3, 1, 2, 1, 0, 2, 1);
    const float third_of_a_copy = MINOR(b, 0, 1, 3, 1, 2, 3);
    EXPECT_NE(a.m[2], third_of_a_copy);
}

} // namespace

} // namespace orvex_test
