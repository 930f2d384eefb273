#include "orvex/scene/tripod.h"

#include <type_traits>

#include "tests/orvex/math/exact.h"

namespace orvex_test {

using namespace orvex;

namespace {

/// translation · rotation · scale.
mat4 composed(const vec4& position, const quat& orientation, const vec4& scale) {
    mat4 t, r, s;
    return t.init_translate(position) * r.from_quat(orientation) * s.init_scale(scale);
}

TEST(Tripod, starts_with_no_transform) {
    Tripod tripod;
    expect_vec4(tripod.get_position(), 0.0f, 0.0f, 0.0f, 1.0f);
    expect_vec4(tripod.get_scale(), 1.0f, 1.0f, 1.0f, 1.0f);
    expect_vec4(tripod.get_orientation_euler_angles(), 0.0f, 0.0f, 0.0f, 1.0f);
    expect_quat(tripod.get_orientation(), quat());
    expect_mat4(tripod.get_transform(), mat4());
}

TEST(Tripod, is_not_copied) {
    EXPECT_FALSE(std::is_copy_constructible_v<Tripod>);
    EXPECT_FALSE(std::is_copy_assignable_v<Tripod>);
    EXPECT_TRUE(std::has_virtual_destructor_v<Tripod>);
}

TEST(Tripod, stores_positions) {
    Tripod tripod;
    tripod.set_position(1.0f, 2.0f, 3.0f);
    expect_vec4(tripod.get_position(), 1.0f, 2.0f, 3.0f, 1.0f);
    tripod.set_position(1.0f, 2.0f, 3.0f, 4.0f);
    expect_vec4(tripod.get_position(), 1.0f, 2.0f, 3.0f, 4.0f);
    tripod.set_position(vec4(5.0f, 6.0f, 7.0f, 8.0f));
    expect_vec4(tripod.get_position(), 5.0f, 6.0f, 7.0f, 8.0f);
    EXPECT_EQ(tripod.get_position_ptr()[3], 8.0f);
    EXPECT_EQ(tripod.get_position_vec4_ptr(), &tripod.get_position());
    expect_mat4(tripod.get_transform(), mat4().init_translate(5.0f, 6.0f, 7.0f));
}

TEST(Tripod, stores_scales) {
    Tripod tripod;
    tripod.set_scale(vec4(5.0f, 6.0f, 7.0f, 8.0f));
    expect_vec4(tripod.get_scale(), 5.0f, 6.0f, 7.0f, 8.0f);
    EXPECT_EQ(tripod.get_scale_ptr()[3], 8.0f);
    EXPECT_EQ(tripod.get_scale_vec4_ptr(), &tripod.get_scale());
    tripod.set_scale(2.0f, 3.0f, 4.0f);
    expect_vec4(tripod.get_scale(), 2.0f, 3.0f, 4.0f, 1.0f);
    expect_mat4(tripod.get_transform(), mat4().init_scale(2.0f, 3.0f, 4.0f));
}

TEST(Tripod, euler_angles_multiply_in_the_order_xyz) {
    Tripod tripod;
    tripod.set_orientation_euler_angles(20.0f, -35.0f, 70.0f);
    expect_vec4(tripod.get_orientation_euler_angles(), 20.0f, -35.0f, 70.0f, 1.0f);
    quat x, y, z;
    x.from_euler(20.0f, 0.0f, 0.0f);
    y.from_euler(0.0f, -35.0f, 0.0f);
    z.from_euler(0.0f, 0.0f, 70.0f);
    expect_quat(tripod.get_orientation(), x * y * z);
    expect_mat4(tripod.get_transform(), composed(vec4::ZERO, x * y * z, vec4::ONE));
}

TEST(Tripod, has_the_bits_of_all_three_turns_and_matrices_for_every_angle) {
    const float angles[] = {0.0f, -0.0f, 1e-45f, -1e-40f, 90.0f, -35.0f, 180.0f, 360.0f, -1e10f};
    const vec4 position(-0.0f, -2.5f, 3.0f, 1.0f);
    const vec4 scale(-1.0f, 0.0f, 0.3f, 1.0f);
    for (const float x : angles)
        for (const float y : angles)
            for (const float z : angles) {
                quat turn_x, turn_y, turn_z;
                turn_x.from_euler(x, 0.0f, 0.0f);
                turn_y.from_euler(0.0f, y, 0.0f);
                turn_z.from_euler(0.0f, 0.0f, z);
                Tripod tripod;
                tripod.set_position(position);
                tripod.set_scale(scale);
                tripod.set_orientation_euler_angles(x, y, z);
                expect_mat4(tripod.get_transform(),
                            composed(position, turn_x * turn_y * turn_z, scale));
                expect_quat(tripod.get_orientation(), turn_x * turn_y * turn_z);
            }
}

TEST(Tripod, an_orientation_stands_against_angles_stored_before) {
    Tripod tripod;
    tripod.set_orientation_euler_angles(20.0f, -35.0f, 70.0f);
    const quat q = turn(40.0f, vec4::UNIT_X_AXIS);
    tripod.set_orientation(q);
    tripod.update_orientation();
    expect_quat(tripod.get_orientation(), q);
    expect_vec4(tripod.get_orientation_euler_angles(), 20.0f, -35.0f, 70.0f, 1.0f);
    expect_mat4(tripod.get_transform(), composed(vec4::ZERO, q, vec4::ONE));
}

TEST(Tripod, angles_stand_against_an_orientation_stored_before) {
    Tripod tripod;
    tripod.set_orientation(turn(40.0f, vec4::UNIT_X_AXIS));
    tripod.set_orientation_euler_angles(0.0f, 90.0f, 0.0f);
    expect_quat(tripod.get_orientation(), quat() * quat().from_euler(0.0f, 90.0f, 0.0f) * quat());
}

TEST(Tripod, scale_comes_before_translation) {
    Tripod tripod;
    tripod.set_scale(2.0f, 2.0f, 2.0f);
    tripod.set_position(1.0f, 0.0f, 0.0f);
    expect_mat4(tripod.get_transform(), mat4(2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 1, 0, 0, 1));
}

TEST(Tripod, matrix_is_translation_times_rotation_times_scale) {
    Tripod tripod;
    const quat q = turn(33.0f, vec4::UNIT_Y_AXIS);
    const vec4 position(1.0f, -2.0f, 3.0f, 1.0f), scale(2.0f, 0.5f, 3.0f, 1.0f);
    tripod.set_position(position);
    tripod.set_orientation(q);
    tripod.set_scale(scale);
    const mat4 expected = composed(position, q, scale);
    expect_mat4(tripod.get_transform(), expected);
    EXPECT_EQ(tripod.get_transform_ptr(), tripod.get_transform().m);
    EXPECT_EQ(tripod.get_transform_mat4_ptr(), &tripod.get_transform());
}

TEST(Tripod, each_getter_of_the_matrix_brings_it_up_to_date) {
    Tripod tripod;
    tripod.set_position(1.0f, 0.0f, 0.0f);
    EXPECT_EQ(tripod.get_transform_ptr()[12], 1.0f);
    tripod.set_position(2.0f, 0.0f, 0.0f);
    EXPECT_EQ(tripod.get_transform_mat4_ptr()->m[12], 2.0f);
    tripod.set_position(3.0f, 0.0f, 0.0f);
    EXPECT_EQ(tripod.get_transform().m[12], 3.0f);
}

TEST(Tripod, a_stored_matrix_stands_until_the_next_setter) {
    Tripod tripod;
    tripod.set_position(1.0f, 2.0f, 3.0f);
    tripod.set_transform(counted);
    expect_mat4(tripod.get_transform(), counted);
    tripod.update_transform();
    expect_mat4(tripod.get_transform(), counted);
    expect_vec4(tripod.get_position(), 1.0f, 2.0f, 3.0f, 1.0f);
    tripod.set_scale(4.0f, 5.0f, 6.0f);
    expect_mat4(tripod.get_transform(), mat4(4, 0, 0, 0, 0, 5, 0, 0, 0, 0, 6, 0, 1, 2, 3, 1));
}

TEST(Tripod, a_stored_matrix_may_come_as_floats) {
    Tripod tripod;
    tripod.set_transform(counted.m);
    expect_mat4(tripod.get_transform(), counted);
}

TEST(Tripod, no_floats_mark_nothing) {
    Tripod tripod;
    tripod.set_position(1.0f, 2.0f, 3.0f);
    tripod.set_transform(nullptr);
    expect_mat4(tripod.get_transform(), mat4().init_translate(1.0f, 2.0f, 3.0f));
}

TEST(Tripod, writing_through_a_pointer_counts_from_the_next_setter_on) {
    Tripod tripod;
    tripod.update_transform();
    tripod.get_position_ptr()[0] = 9.0f;
    expect_mat4(tripod.get_transform(), mat4());
    tripod.set_scale(1.0f, 1.0f, 1.0f);
    EXPECT_EQ(tripod.get_transform().m[12], 9.0f);
}

TEST(Tripod, that_is_constant_computes_what_it_is_asked_for) {
    Tripod tripod;
    const Tripod& constant = tripod;
    tripod.set_position(1.0f, 2.0f, 3.0f);
    tripod.set_orientation_euler_angles(0.0f, 90.0f, 0.0f);
    const mat4 expected = composed(constant.get_position(), constant.get_orientation(), vec4::ONE);
    expect_mat4(constant.get_transform(), expected);
    EXPECT_EQ(constant.get_transform_ptr(), tripod.get_transform_ptr());
    EXPECT_EQ(constant.get_transform_mat4_ptr(), tripod.get_transform_mat4_ptr());
    EXPECT_EQ(constant.get_position_ptr(), tripod.get_position_ptr());
    EXPECT_EQ(constant.get_position_vec4_ptr(), &constant.get_position());
    EXPECT_EQ(constant.get_scale_ptr(), tripod.get_scale_ptr());
    EXPECT_EQ(constant.get_scale_vec4_ptr(), &constant.get_scale());
}

} // namespace

} // namespace orvex_test
