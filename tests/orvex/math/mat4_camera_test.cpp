#include <cmath>

#include "exact.h"

namespace orvex_test {

using namespace orvex;

namespace {

constexpr float half_factor = 0.008726646f;
const mat4 zeros(0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);

TEST(Mat4Projection, angles_are_halved_by_a_single_factor) {
    EXPECT_EQ(bits(half_factor), 0x3C0EFA35u);
}

TEST(Mat4Projection, right_handed_perspective) {
    const float fov = 60.0f, aspect = 1.5f, near = 0.3f, far = 900.0f;
    // Read at run time: the compiler's own tangent of a constant may differ in the last bit.
    const volatile float half_angle = fov * half_factor;
    const float t = std::tan(half_angle);
    mat4 expected = zeros;
    expected.m[0] = (2.0f * near) / (near * t + near * t) / aspect;
    expected.m[5] = (2.0f * near) / (near * t + near * t);
    expected.m[10] = -(far + near) / (far - near);
    expected.m[11] = -1.0f;
    expected.m[14] = -2.0f * far * near / (far - near);
    mat4 p = counted;
    mat4& result = p.buildRHPerspectiveProjectionMatrix(fov, aspect, near, far, 1e-5f);
    EXPECT_EQ(&result, &p);
    expect_mat4(p, expected);
    EXPECT_NEAR(static_cast<double>(p.m[5]), 1.0 / std::tan(M_PI / 6.0), 1e-6);
}

TEST(Mat4Projection, right_handed_perspective_with_far_at_infinity) {
    mat4 p = counted;
    p.buildRHPerspectiveProjectionMatrix(60.0f, 1.5f, 0.3f, -1.0f, 1e-5f);
    EXPECT_EQ(bits(p.m[10]), bits(1e-5f - 1.0f));
    EXPECT_EQ(bits(p.m[14]), bits(0.3f * (1e-5f - 2.0f)));
    EXPECT_EQ(p.m[11], -1.0f);
    EXPECT_EQ(p.m[15], 0.0f);
}

TEST(Mat4Projection, only_minus_one_is_infinity) {
    mat4 p;
    const float far = std::nextafter(-1.0f, 0.0f);
    p.buildRHPerspectiveProjectionMatrix(60.0f, 1.5f, 0.3f, far, 1e-5f);
    EXPECT_EQ(bits(p.m[10]), bits(-(far + 0.3f) / (far - 0.3f)));
}

TEST(Mat4Projection, right_handed_perspective_with_two_angles) {
    const float aspect = 1.5f, near = 0.3f, far = 900.0f;
    const float right =
        static_cast<float>(double(near) * std::tan(static_cast<double>(80.0f * half_factor)));
    const float top =
        static_cast<float>(double(near) * std::tan(static_cast<double>(50.0f * half_factor)));
    mat4 expected = zeros;
    expected.m[0] = (2.0f * near) / (right + right) / aspect;
    expected.m[5] = (2.0f * near) / (top + top);
    expected.m[10] = -(far + near) / (far - near);
    expected.m[11] = -1.0f;
    expected.m[14] = -2.0f * far * near / (far - near);
    mat4 p = counted;
    expect_mat4(p.buildRHTwoFovPerspectiveProjectionMatrix(80.0f, 50.0f, aspect, near, far, 1e-5f),
                expected);
    p.buildRHTwoFovPerspectiveProjectionMatrix(80.0f, 50.0f, aspect, near, -1.0f, 1e-5f);
    EXPECT_EQ(bits(p.m[10]), bits(1e-5f - 1.0f));
    EXPECT_EQ(bits(p.m[14]), bits(near * (1e-5f - 2.0f)));
}

TEST(Mat4Projection, left_handed_perspective_halves_the_angle_twice) {
    const float aspect = 1.5f, near = 0.3f, far = 900.0f;
    const float h = static_cast<float>(double(near) *
                                       std::tan(static_cast<double>((60.0f / 2.0f) * half_factor)));
    const float w = h * aspect;
    mat4 expected = zeros;
    expected.m[0] = 2.0f * near / (w + w);
    expected.m[5] = 2.0f * near / (h + h);
    expected.m[10] = -(far + near) / (far - near);
    expected.m[11] = 1.0f;
    expected.m[14] = -2.0f * far * near / (far - near);
    mat4 p = counted;
    expect_mat4(p.buildLHPerspectiveProjectionMatrix(60.0f, aspect, near, far), expected);
    EXPECT_NEAR(static_cast<double>(p.m[5]), 1.0 / std::tan(M_PI / 12.0), 1e-5);
}

TEST(Mat4Projection, left_handed_perspective_knows_no_infinity) {
    mat4 p;
    p.buildLHPerspectiveProjectionMatrix(60.0f, 1.5f, 0.3f, -1.0f);
    EXPECT_EQ(bits(p.m[10]), bits(-(-1.0f + 0.3f) / (-1.0f - 0.3f)));
}

TEST(Mat4Projection, orthographic) {
    mat4 expected = zeros;
    expected.m[0] = 2.0f / (7.0f - -3.0f);
    expected.m[5] = 2.0f / (5.0f - -2.0f);
    expected.m[10] = -2.0f / (100.0f - 0.5f);
    expected.m[12] = -(7.0f + -3.0f) / (7.0f - -3.0f);
    expected.m[13] = -(5.0f + -2.0f) / (5.0f - -2.0f);
    expected.m[14] = -(100.0f + 0.5f) / (100.0f - 0.5f);
    expected.m[15] = 1.0f;
    mat4 p = counted;
    expect_mat4(p.buildRHOrthographicProjectionMatrix(-3.0f, 7.0f, -2.0f, 5.0f, 0.5f, 100.0f),
                expected);
}

TEST(Mat4Projection, orthographic_is_the_same_for_both_hands) {
    Numbers numbers;
    for (int i = 0; i < 100; ++i) {
        const mat4 n = numbers.matrix();
        mat4 right = counted, left;
        right.buildRHOrthographicProjectionMatrix(n.m[0], n.m[1], n.m[2], n.m[3], n.m[4], n.m[5]);
        left.buildLHOrthographicProjectionMatrix(n.m[0], n.m[1], n.m[2], n.m[3], n.m[4], n.m[5]);
        expect_mat4(left, right);
    }
}

mat4 view_from(const vec4& eye, vec4 n, const vec4& up) {
    n.normalize();
    vec4 u = up.cross(n);
    u.normalize();
    const vec4 v = n.cross(u);
    mat4 view;
    view.m[0] = u.x, view.m[4] = u.y, view.m[8] = u.z;
    view.m[1] = v.x, view.m[5] = v.y, view.m[9] = v.z;
    view.m[2] = n.x, view.m[6] = n.y, view.m[10] = n.z;
    view.m[12] = -u.dot(eye), view.m[13] = -v.dot(eye), view.m[14] = -n.dot(eye);
    return view;
}

TEST(Mat4View, looks_from_the_eye_along_negative_z) {
    const vec4 eye(1.0f, 2.0f, 3.0f, 1.0f), at(-4.0f, 0.5f, 2.0f, 1.0f), up(0.1f, 2.0f, 0.0f, 0.0f);
    mat4 view = counted;
    mat4& result = view.buildRHUVNCameraMatrix(eye, at, up);
    EXPECT_EQ(&result, &view);
    expect_mat4(view, view_from(eye, vec4().make_vec(eye, at), up));
    const vec4 seen = view * at;
    EXPECT_NEAR(seen.x, 0.0f, 1e-5f);
    EXPECT_NEAR(seen.y, 0.0f, 1e-5f);
    EXPECT_LT(seen.z, 0.0f);
}

TEST(Mat4View, the_left_handed_one_looks_along_positive_z) {
    const vec4 eye(1.0f, 2.0f, 3.0f, 1.0f), at(-4.0f, 0.5f, 2.0f, 1.0f), up(0.1f, 2.0f, 0.0f, 0.0f);
    mat4 view = counted;
    expect_mat4(view.buildLHUVNCameraMatrix(eye, at, up),
                view_from(eye, vec4().make_vec(at, eye), up));
    EXPECT_GT((view * at).z, 0.0f);
}

} // namespace

} // namespace orvex_test
