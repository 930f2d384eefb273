#include "orvex/math/vec4.h"

#include <cmath>
#include <cstring>
#include <limits>

#include "exact.h"

namespace orvex_test {

using namespace orvex;

namespace {

// Static objects of this file that are built from the constants at load time.
const vec4 copied_at_load = vec4::ONE;

vec4 a() {
    return vec4(1.0f, 2.0f, 3.0f, 4.0f);
}
vec4 b() {
    return vec4(10.0f, 20.0f, 30.0f, 40.0f);
}

TEST(Vec4, defaults_to_the_origin) {
    vec4 v;
    expect_vec4(v, 0.0f, 0.0f, 0.0f, 1.0f);
    EXPECT_TRUE(v == vec4::ZERO);
}

TEST(Vec4, constants_all_carry_w1) {
    expect_vec4(vec4::ZERO, 0.0f, 0.0f, 0.0f, 1.0f);
    expect_vec4(vec4::ONE, 1.0f, 1.0f, 1.0f, 1.0f);
    expect_vec4(vec4::UNIT_X_AXIS, 1.0f, 0.0f, 0.0f, 1.0f);
    expect_vec4(vec4::UNIT_Y_AXIS, 0.0f, 1.0f, 0.0f, 1.0f);
    expect_vec4(vec4::UNIT_Z_AXIS, 0.0f, 0.0f, 1.0f, 1.0f);
}

TEST(Vec4, constants_are_there_for_static_objects_of_other_files) {
    expect_vec4(copied_at_load, 1.0f, 1.0f, 1.0f, 1.0f);
    static_assert(vec4::UNIT_X_AXIS.x == 1.0f);
}

TEST(Vec4, construct_sets_the_default_in_raw_memory) {
    unsigned char memory[16];
    std::memset(memory, 0xFF, sizeof(memory));
    vec4 v;
    std::memcpy(static_cast<void*>(&v), memory, sizeof(v));
    v._construct();
    expect_vec4(v, 0.0f, 0.0f, 0.0f, 1.0f);
}

TEST(Vec4, copies_all_four_components) {
    const vec4 constant = a();
    vec4 assigned, set_by_four, set_by_pointer;
    assigned = constant;
    expect_vec4(vec4(constant), 1.0f, 2.0f, 3.0f, 4.0f);
    expect_vec4(assigned, 1.0f, 2.0f, 3.0f, 4.0f);
    expect_vec4(set_by_four.set(1.0f, 2.0f, 3.0f, 4.0f), 1.0f, 2.0f, 3.0f, 4.0f);
    expect_vec4(set_by_pointer.set(&assigned), 1.0f, 2.0f, 3.0f, 4.0f);
}

TEST(Vec4, set_of_null_changes_nothing) {
    vec4 v = a();
    v.set(nullptr);
    expect_vec4(v, 1.0f, 2.0f, 3.0f, 4.0f);
}

TEST(Vec4, from_three_components_is_a_point) {
    const vec3 constant(5.0f, 6.0f, 7.0f);
    vec4 v = a();
    v = constant;
    expect_vec4(v, 5.0f, 6.0f, 7.0f, 1.0f);
    expect_vec4(vec4(constant), 5.0f, 6.0f, 7.0f, 1.0f);
}

TEST(Vec4, from_two_components_is_a_point_in_the_plane) {
    vec2 two;
    two.set(5.0f, 6.0f);
    vec4 v = a();
    v = two;
    expect_vec4(v, 5.0f, 6.0f, 0.0f, 1.0f);
}

TEST(Vec4, sum_with_a_const_left_operand_has_w1) {
    const vec4 constant = a();
    vec4 variable = b();
    expect_vec4(constant + variable, 11.0f, 22.0f, 33.0f, 1.0f);
    expect_vec4(constant + constant, 2.0f, 4.0f, 6.0f, 1.0f);
    expect_vec4(orvex::operator+(variable, constant), 11.0f, 22.0f, 33.0f, 1.0f);
}

TEST(Vec4, sum_with_a_left_operand_that_is_not_const_sums_w) {
    const vec4 constant = b();
    vec4 variable = a();
    expect_vec4(variable + constant, 11.0f, 22.0f, 33.0f, 44.0f);
    expect_vec4(variable + variable, 2.0f, 4.0f, 6.0f, 8.0f);
    expect_vec4(a() + constant, 11.0f, 22.0f, 33.0f, 44.0f);
}

TEST(Vec4, sum_of_two_points_has_w1_or_w2_by_the_operator_taken) {
    const vec4 constant = vec4::ONE;
    vec4 variable = vec4::ONE;
    EXPECT_EQ((constant + variable).w, 1.0f);
    EXPECT_EQ((variable + constant).w, 2.0f);
}

TEST(Vec4, adding_in_place_sums_w) {
    const vec4 constant = b();
    vec4 v = a();
    v += constant;
    expect_vec4(v, 11.0f, 22.0f, 33.0f, 44.0f);
    v += v;
    expect_vec4(v, 22.0f, 44.0f, 66.0f, 88.0f);
}

TEST(Vec4, difference_subtracts_w_whichever_operator_is_taken) {
    const vec4 constant = b();
    vec4 variable = a();
    expect_vec4(constant - variable, 9.0f, 18.0f, 27.0f, 36.0f);
    expect_vec4(variable - constant, -9.0f, -18.0f, -27.0f, -36.0f);
    expect_vec4(b() - variable, 9.0f, 18.0f, 27.0f, 36.0f);
    expect_vec4(orvex::operator-(variable, constant), -9.0f, -18.0f, -27.0f, -36.0f);
}

TEST(Vec4, negation_has_w1) {
    const vec4 constant = a();
    vec4 variable = a();
    expect_vec4(-constant, -1.0f, -2.0f, -3.0f, 1.0f);
    expect_vec4(-variable, -1.0f, -2.0f, -3.0f, 1.0f);
    expect_vec4(-a(), -1.0f, -2.0f, -3.0f, 1.0f);
}

TEST(Vec4, scaled_has_w1) {
    const vec4 constant = a();
    vec4 variable(1.0f, 2.0f, 3.0f, 1.0f);
    expect_vec4(constant * 2.0f, 2.0f, 4.0f, 6.0f, 1.0f);
    expect_vec4(variable * 2.0f, 2.0f, 4.0f, 6.0f, 1.0f);
    expect_vec4(a() * 2.0f, 2.0f, 4.0f, 6.0f, 1.0f);
}

TEST(Vec4, scaling_in_place_scales_w) {
    vec4 v(1.0f, 2.0f, 3.0f, 1.0f);
    v *= 2.0f;
    expect_vec4(v, 2.0f, 4.0f, 6.0f, 2.0f);
}

TEST(Vec4, product_by_components_multiplies_w) {
    const vec4 constant = a();
    vec4 variable = b();
    expect_vec4(constant * variable, 10.0f, 40.0f, 90.0f, 160.0f);
    expect_vec4(variable * constant, 10.0f, 40.0f, 90.0f, 160.0f);
    expect_vec4(a() * b(), 10.0f, 40.0f, 90.0f, 160.0f);
}

TEST(Vec4, equality_compares_all_four_components_exactly) {
    const vec4 constant = a();
    EXPECT_TRUE(constant == a());
    for (float vec4::*component : {&vec4::x, &vec4::y, &vec4::z, &vec4::w}) {
        vec4 other = a();
        other.*component = std::nextafter(other.*component, 100.0f);
        EXPECT_FALSE(constant == other);
        other.*component = std::numeric_limits<float>::quiet_NaN();
        EXPECT_FALSE(other == other);
    }
}

TEST(Vec4, cross_is_right_handed_with_w1) {
    vec4 x = vec4::UNIT_X_AXIS;
    x.w = 7.0f;
    expect_vec4(x.cross(vec4::UNIT_Y_AXIS), 0.0f, 0.0f, 1.0f, 1.0f);
    expect_vec4(vec4::UNIT_Y_AXIS.cross(vec4::UNIT_Z_AXIS), 1.0f, 0.0f, 0.0f, 1.0f);
    expect_vec4(vec4::UNIT_Z_AXIS.cross(vec4::UNIT_X_AXIS), 0.0f, 1.0f, 0.0f, 1.0f);
    expect_vec4(a().cross(vec4(-2.0f, 5.0f, 7.0f, 9.0f)), 2.0f * 7.0f - 3.0f * 5.0f,
                3.0f * -2.0f - 1.0f * 7.0f, 1.0f * 5.0f - 2.0f * -2.0f, 1.0f);
}

TEST(Vec4, dot_and_length_leave_out_w) {
    const vec4 constant(2.0f, 3.0f, 6.0f, 100.0f);
    EXPECT_EQ(constant.dot(b()), 20.0f + 60.0f + 180.0f);
    EXPECT_EQ(constant.length(), 7.0f);
}

TEST(Vec4, get_vec3_drops_w) {
    expect_vec3(a().get_vec3(), 1.0f, 2.0f, 3.0f);
}

TEST(Vec4, make_vec_is_a_direction_from_the_second_to_the_first) {
    vec4 v = a();
    vec4& result = v.make_vec(vec4(5.0f, 7.0f, 9.0f, 3.0f), vec4(1.0f, 1.0f, 1.0f, 8.0f));
    expect_vec4(v, 4.0f, 6.0f, 8.0f, 0.0f);
    EXPECT_EQ(&result, &v);
}

TEST(Vec4, normalize_keeps_w) {
    vec4 v(3.0f, 0.0f, 4.0f, 9.0f);
    const float scale = 1.0f / 5.0f;
    expect_vec4(v.normalize(), 3.0f * scale, 0.0f, 4.0f * scale, 9.0f);
}

TEST(Vec4, normalize_of_zero_keeps_zero_and_w) {
    vec4 v(0.0f, 0.0f, 0.0f, 5.0f);
    v.normalize();
    expect_vec4(v, 0.0f, 0.0f, 0.0f, 5.0f);
}

TEST(Vec4, normalize_of_a_length_whose_square_vanishes_gives_zero) {
    vec4 v(1e-30f, -1e-30f, 0.0f, 5.0f);
    v.normalize();
    expect_vec4(v, 0.0f, 0.0f, 0.0f, 5.0f);
}

TEST(Vec4, normalize_multiplies_by_one_reciprocal) {
    Numbers numbers;
    for (int i = 0; i < 1000; ++i) {
        vec4 v = numbers.point();
        const float scale = 1.0f / std::sqrt(v.x * v.x + v.y * v.y + v.z * v.z);
        const vec4 before = v;
        v.normalize();
        expect_vec4(v, before.x * scale, before.y * scale, before.z * scale, before.w);
    }
}

TEST(Vec4, clamp_raises_then_lowers_all_four) {
    vec4 v(-1.0f, 0.5f, 2.0f, 4.0f);
    expect_vec4(v.clamp(0.0f, 1.0f), 0.0f, 0.5f, 1.0f, 1.0f);
    vec4 crossed(-1.0f, 0.5f, 2.0f, 4.0f);
    expect_vec4(crossed.clamp(3.0f, 1.0f), 1.0f, 1.0f, 1.0f, 1.0f);
}

TEST(Vec4, rotate_z_turns_x_towards_y) {
    vec4 v(1.0f, 2.0f, 3.0f, 4.0f);
    const float c = std::cos(30.0f * 0.017453292f), s = std::sin(30.0f * 0.017453292f);
    expect_vec4(v.rotate_z(30.0f), 1.0f * c - 2.0f * s, 1.0f * s + 2.0f * c, 3.0f, 4.0f);
}

TEST(Vec4, rotate_y_turns_z_towards_x) {
    vec4 v(1.0f, 2.0f, 3.0f, 4.0f);
    const float c = std::cos(30.0f * 0.017453292f), s = std::sin(30.0f * 0.017453292f);
    expect_vec4(v.rotate_y(30.0f), 1.0f * c + 3.0f * s, 2.0f, -1.0f * s + 3.0f * c, 4.0f);
}

} // namespace

} // namespace orvex_test
