#include "orvex/scene/camera.h"

#include <climits>
#include <cmath>
#include <string>
#include <type_traits>
#include <vector>

#include "orvex/scene/viewport.h"
#include "tests/orvex/math/exact.h"
#include "tests/support/fake_renderer.h"

namespace orvex_test {

using namespace orvex;

namespace {

mat4 perspective(float fov, float aspect, float znear, float zfar) {
    mat4 p;
    return p.buildRHPerspectiveProjectionMatrix(fov, aspect, znear, zfar, 0.00001f);
}

/// The view of an eye with an orientation.
mat4 view_of(const vec4& eye, const quat& orientation) {
    mat4 r;
    vec4 x, y, z;
    r.from_quat(orientation).to_axes(x, y, z);
    return mat4(x.x, y.x, z.x, 0, x.y, y.y, z.y, 0, x.z, y.z, z.z, 0, -eye.dot(x), -eye.dot(y),
                -eye.dot(z), 1);
}

mat4 inverted(mat4 a) {
    return a.inverse();
}

void expect_direction(const vec4& v, float x, float y, float z) {
    EXPECT_NEAR(v.x, x, 1e-6f);
    EXPECT_NEAR(v.y, y, 1e-6f);
    EXPECT_NEAR(v.z, z, 1e-6f);
}

TEST(Camera, starts_as_a_perspective_ten_units_back) {
    Camera camera;
    EXPECT_EQ(camera.get_type(), NODE_TYPE_CAMERA);
    EXPECT_TRUE(camera.is_perspective_projection());
    EXPECT_FALSE(camera.is_ortho_projection());
    EXPECT_EQ(camera.get_fov(), 60.0f);
    EXPECT_EQ(bits(camera.get_tanfovdiv2()), bits(0.57735026f));
    EXPECT_EQ(bits(camera.get_aspect()), bits(16.0f / 9.0f));
    EXPECT_EQ(camera.get_znear(), 1.0f);
    EXPECT_EQ(camera.get_zfar(), 1000.0f);
    EXPECT_TRUE(camera.get_rotate_around_fixed_yaw_axis());
    EXPECT_EQ(camera.get_pitch(), 0.0f);
    EXPECT_EQ(camera.get_yaw(), 0.0f);
    EXPECT_EQ(camera.get_roll(), 0.0f);
    EXPECT_EQ(camera.get_viewport().width, 0);
    expect_quat(camera.get_orientation(), quat());
    expect_direction(camera.get_view_vector(), 0.0f, 0.0f, -1.0f);
    expect_direction(camera.get_up_vector(), 0.0f, 1.0f, 0.0f);
    expect_mat4(camera.get_projection_matrix(), perspective(60.0f, 1.7777778f, 1.0f, 1000.0f));
    expect_mat4(camera.get_view_matrix(), view_of(vec4(0, 0, 10, 1), quat()));
}

TEST(Camera, is_not_copied) {
    EXPECT_FALSE(std::is_copy_constructible_v<Camera>);
    EXPECT_FALSE(std::is_copy_assignable_v<Camera>);
}

TEST(Camera, keeps_a_viewport) {
    Camera camera;
    camera.set_viewport(1, 2, 3, 4);
    EXPECT_EQ(camera.get_viewport_ptr(), &camera.get_viewport());
    EXPECT_EQ(camera.get_viewport().x, 1);
    EXPECT_EQ(camera.get_viewport().height, 4);
    Viewport viewport;
    viewport.set(5, 6, 7, 8);
    camera.set_viewport(viewport);
    viewport.set(0, 0, 0, 0);
    EXPECT_EQ(camera.get_viewport().y, 6);
    EXPECT_EQ(camera.get_viewport().width, 7);
}

// ------------------------------------------------------------------------------ projection

TEST(CameraProjection, is_built_from_its_parameters_when_read) {
    Camera camera;
    camera.set_fov(45.0f);
    camera.set_aspect(1.25f);
    camera.set_znear(0.5f);
    camera.set_zfar(300.0f);
    EXPECT_EQ(camera.get_fov(), 45.0f);
    EXPECT_EQ(camera.get_aspect(), 1.25f);
    EXPECT_EQ(camera.get_znear(), 0.5f);
    EXPECT_EQ(camera.get_zfar(), 300.0f);
    const float half = 45.0f * 0.5f * 0.017453292f;
    EXPECT_EQ(bits(camera.get_tanfovdiv2()),
              bits(static_cast<float>(std::tan(static_cast<double>(half)))));
    EXPECT_TRUE(camera.update_projection_matrix());
    EXPECT_FALSE(camera.update_projection_matrix());
    expect_mat4(camera.get_projection_matrix(), perspective(45.0f, 1.25f, 0.5f, 300.0f));
    EXPECT_EQ(camera.get_projection_matrix_ptr(), &camera.get_projection_matrix());
    EXPECT_EQ(camera.get_projection_matrix_float_ptr(), camera.get_projection_matrix().m);
}

TEST(CameraProjection, each_setter_asks_for_a_new_matrix) {
    Camera camera;
    camera.update_projection_matrix();
    camera.set_fov(45.0f);
    EXPECT_TRUE(camera.update_projection_matrix());
    camera.set_aspect(1.25f);
    EXPECT_TRUE(camera.update_projection_matrix());
    camera.set_znear(0.5f);
    EXPECT_TRUE(camera.update_projection_matrix());
    camera.set_zfar(300.0f);
    EXPECT_TRUE(camera.update_projection_matrix());
}

TEST(CameraProjection, each_getter_brings_it_up_to_date) {
    Camera camera;
    camera.set_fov(45.0f);
    const mat4 expected = perspective(45.0f, 1.7777778f, 1.0f, 1000.0f);
    expect_mat4(*camera.get_projection_matrix_ptr(), expected);
    camera.set_fov(30.0f);
    EXPECT_EQ(camera.get_projection_matrix_float_ptr()[5],
              perspective(30.0f, 1.7777778f, 1.0f, 1000.0f).m[5]);
    camera.set_fov(45.0f);
    expect_mat4(camera.get_projection_matrix(), expected);
}

TEST(CameraProjection, may_have_its_far_plane_at_infinity) {
    Camera camera;
    camera.set_zfar(-1.0f);
    EXPECT_EQ(bits(camera.get_projection_matrix().m[10]), bits(0.00001f - 1.0f));
}

TEST(CameraProjection, handedness_counts_from_the_next_build_on) {
    Camera camera;
    camera.update_projection_matrix();
    camera.set_proj_rh_state(false);
    expect_mat4(camera.get_projection_matrix(), perspective(60.0f, 1.7777778f, 1.0f, 1000.0f));
    camera.set_fov(50.0f);
    mat4 expected;
    expected.buildLHPerspectiveProjectionMatrix(50.0f, 1.7777778f, 1.0f, 1000.0f);
    expect_mat4(camera.get_projection_matrix(), expected);
}

TEST(CameraProjection, perspective_is_built_at_once_with_its_parameters) {
    Camera camera;
    camera.build_projection_persp(50.0f, 2.0f, 0.25f, 80.0f, true);
    EXPECT_FALSE(camera.update_projection_matrix());
    EXPECT_EQ(camera.get_fov(), 50.0f);
    EXPECT_EQ(camera.get_aspect(), 2.0f);
    EXPECT_EQ(camera.get_znear(), 0.25f);
    EXPECT_EQ(camera.get_zfar(), 80.0f);
    Camera other;
    other.set_fov(50.0f);
    EXPECT_EQ(camera.get_tanfovdiv2(), other.get_tanfovdiv2());
    expect_mat4(camera.get_projection_matrix(), perspective(50.0f, 2.0f, 0.25f, 80.0f));

    camera.build_projection_persp(50.0f, 2.0f, 0.25f, 80.0f, false);
    mat4 left;
    expect_mat4(camera.get_projection_matrix(),
                left.buildLHPerspectiveProjectionMatrix(50.0f, 2.0f, 0.25f, 80.0f));
    camera.set_zfar(90.0f);
    expect_mat4(camera.get_projection_matrix(),
                left.buildLHPerspectiveProjectionMatrix(50.0f, 2.0f, 0.25f, 90.0f));
}

TEST(CameraProjection, orthographic_keeps_its_matrix_and_the_old_parameters) {
    for (const bool rh : {true, false}) {
        Camera camera;
        camera.build_projection_ortho(-2.0f, 3.0f, -4.0f, 5.0f, 0.5f, 60.0f, rh);
        EXPECT_TRUE(camera.is_ortho_projection());
        EXPECT_FALSE(camera.is_perspective_projection());
        EXPECT_FALSE(camera.update_projection_matrix());
        EXPECT_EQ(camera.get_znear(), 1.0f);
        EXPECT_EQ(camera.get_zfar(), 1000.0f);
        mat4 expected;
        expected.buildRHOrthographicProjectionMatrix(-2.0f, 3.0f, -4.0f, 5.0f, 0.5f, 60.0f);
        expect_mat4(camera.get_projection_matrix(), expected);
    }
}

TEST(CameraProjection, orthographic_keeps_its_handedness) {
    Camera camera;
    camera.build_projection_ortho(-2.0f, 3.0f, -4.0f, 5.0f, 0.5f, 60.0f, false);
    camera.set_fov(60.0f);
    mat4 left;
    expect_mat4(camera.get_projection_matrix(),
                left.buildLHPerspectiveProjectionMatrix(60.0f, 1.7777778f, 1.0f, 1000.0f));
}

TEST(CameraProjection, any_setter_turns_an_orthographic_camera_perspective_again) {
    Camera camera;
    camera.build_projection_ortho(-2.0f, 3.0f, -4.0f, 5.0f, 0.5f, 60.0f, true);
    camera.set_fov(45.0f);
    EXPECT_TRUE(camera.is_perspective_projection());
    expect_mat4(camera.get_projection_matrix(), perspective(45.0f, 1.7777778f, 1.0f, 1000.0f));
}

TEST(CameraProjection, a_given_matrix_stands_until_the_next_setter) {
    Camera camera;
    camera.set_projection_matrix(counted);
    EXPECT_FALSE(camera.update_projection_matrix());
    expect_mat4(camera.get_projection_matrix(), counted);
    camera.set_aspect(1.5f);
    expect_mat4(camera.get_projection_matrix(), perspective(60.0f, 1.5f, 1.0f, 1000.0f));
}

TEST(CameraProjection, a_given_matrix_keeps_an_orthographic_camera_orthographic) {
    Camera camera;
    camera.build_projection_ortho(-2.0f, 3.0f, -4.0f, 5.0f, 0.5f, 60.0f, true);
    camera.set_projection_matrix(counted);
    EXPECT_TRUE(camera.is_ortho_projection());
}

TEST(CameraProjection, inverse_is_computed_once_in_the_life_of_a_camera) {
    Camera camera;
    const mat4 expected = inverted(perspective(60.0f, 1.7777778f, 1.0f, 1000.0f));
    expect_mat4(camera.get_inv_projection_matrix(), expected);
    camera.set_fov(20.0f);
    expect_mat4(camera.get_inv_projection_matrix(), expected);
    camera.build_projection_ortho(-2.0f, 3.0f, -4.0f, 5.0f, 0.5f, 60.0f, true);
    expect_mat4(camera.get_inv_projection_matrix(), expected);
    camera.set_projection_matrix(counted);
    expect_mat4(camera.get_inv_projection_matrix(), expected);
}

// ------------------------------------------------------------------------------------ view

TEST(CameraView, follows_the_eye_and_not_the_transform_record) {
    Camera camera;
    camera.set_position(1.0f, 2.0f, 3.0f); // the object's form
    expect_vec4(camera.get_position(), 1.0f, 2.0f, 3.0f, 1.0f);
    expect_mat4(camera.get_view_matrix(), view_of(vec4(0, 0, 10, 1), quat()));
    camera.set_position(vec4(4.0f, 5.0f, 6.0f, 1.0f));
    expect_vec4(camera.get_position(), 4.0f, 5.0f, 6.0f, 1.0f);
    expect_mat4(camera.get_view_matrix(), view_of(vec4(4, 5, 6, 1), quat()));
}

TEST(CameraView, is_built_when_read_and_once) {
    Camera camera;
    EXPECT_TRUE(camera.update_view_matrix());
    EXPECT_FALSE(camera.update_view_matrix());
    EXPECT_FALSE(camera.update_view_matrix_v2());
    const quat q = turn(30.0f, vec4::UNIT_X_AXIS);
    camera.set_orientation(q);
    expect_quat(camera.get_orientation(), q);
    EXPECT_TRUE(camera.update_view_matrix_v2());
    expect_mat4(camera.get_view_matrix(), view_of(vec4(0, 0, 10, 1), q));
    EXPECT_EQ(camera.get_view_matrix_ptr(), &camera.get_view_matrix());
    EXPECT_EQ(camera.get_view_matrix_float_ptr(), camera.get_view_matrix().m);
}

TEST(CameraView, each_getter_brings_it_up_to_date) {
    Camera camera;
    camera.set_position(vec4(1, 0, 0, 1));
    EXPECT_EQ(camera.get_view_matrix_ptr()->m[12], -1.0f);
    camera.set_position(vec4(2, 0, 0, 1));
    EXPECT_EQ(camera.get_view_matrix_float_ptr()[12], -2.0f);
    camera.set_position(vec4(3, 0, 0, 1));
    EXPECT_EQ(camera.get_view_matrix().m[12], -3.0f);
}

TEST(CameraView, handedness_is_kept_without_effect) {
    Camera camera;
    const mat4 before = camera.get_view_matrix();
    camera.set_view_rh_state(false);
    EXPECT_FALSE(camera.update_view_matrix());
    expect_mat4(camera.get_view_matrix(), before);
}

TEST(CameraView, looks_at_a_point_for_w1) {
    Camera camera;
    camera.set_position(vec4(1.0f, 2.0f, 3.0f, 1.0f));
    camera.set_lookat(vec4(5.0f, 2.0f, 3.0f, 1.0f));
    expect_direction(camera.get_view_vector(), 1.0f, 0.0f, 0.0f);
    expect_direction(camera.get_up_vector(), 0.0f, 1.0f, 0.0f);
    const vec4 seen = camera.get_view_matrix() * vec4(5.0f, 2.0f, 3.0f, 1.0f);
    expect_direction(seen, 0.0f, 0.0f, -4.0f);
}

TEST(CameraView, looks_along_a_direction_for_w0) {
    Camera camera;
    camera.set_position(vec4(1.0f, 2.0f, 3.0f, 1.0f));
    camera.set_lookat(vec4(5.0f, 0.0f, 0.0f, 0.0f));
    expect_direction(camera.get_view_vector(), 1.0f, 0.0f, 0.0f);
}

TEST(CameraView, any_other_w_turns_nothing) {
    Camera camera;
    camera.update_view_matrix();
    for (const float w : {0.5f, 2.0f, -1.0f}) {
        camera.set_lookat(vec4(5.0f, 0.0f, 0.0f, w));
        expect_quat(camera.get_orientation(), quat());
        EXPECT_FALSE(camera.update_view_matrix());
    }
}

TEST(CameraView, looking_at_its_own_place_goes_on_with_a_zero_vector) {
    Camera camera;
    camera.set_orientation(turn(30.0f, vec4::UNIT_X_AXIS));
    camera.update_view_matrix();
    camera.set_lookat(vec4(0.0f, 0.0f, 10.0f, 1.0f));
    // All axes vanish; what remains of the rotation is no turn at all.
    expect_quat(camera.get_orientation(), quat());
    EXPECT_TRUE(camera.update_view_matrix());
}

TEST(CameraView, direction_equal_to_zero_is_ignored) {
    Camera camera;
    const quat q = turn(30.0f, vec4::UNIT_X_AXIS);
    camera.set_orientation(q);
    camera.update_view_matrix();
    camera.update_direction(vec4::ZERO);
    expect_quat(camera.get_orientation(), q);
    EXPECT_FALSE(camera.update_view_matrix());
}

TEST(CameraView, direction_keeps_the_horizon_level) {
    Camera camera;
    camera.update_direction(vec4(1.0f, -0.5f, 2.0f, 0.0f));
    vec4 z(-1.0f, 0.5f, -2.0f, 1.0f);
    z.normalize();
    vec4 x = vec4::UNIT_Y_AXIS.cross(z);
    x.normalize();
    vec4 y = z.cross(x);
    y.normalize();
    mat4 axes;
    quat expected;
    axes.from_axes_to_quaternion(x, y, z, expected);
    expect_quat(camera.get_orientation(), expected);
    EXPECT_NEAR((camera.get_orientation() * vec4::UNIT_X_AXIS).y, 0.0f, 1e-6f);
}

TEST(CameraView, free_direction_turns_by_the_shortest_way) {
    Camera camera;
    camera.set_rotate_around_fixed_yaw_axis(false);
    EXPECT_FALSE(camera.get_rotate_around_fixed_yaw_axis());
    const quat start = turn(30.0f, vec4::UNIT_Z_AXIS);
    camera.set_orientation(start);
    camera.update_direction(vec4(1.0f, -0.5f, 2.0f, 0.0f));
    mat4 r;
    vec4 x, y, z0;
    r.from_quaternion_to_axes(start, x, y, z0);
    vec4 z(-1.0f, 0.5f, -2.0f, 1.0f);
    z.normalize();
    quat expected;
    expected.from_vector_rotation(z0, z);
    expect_quat(camera.get_orientation(), expected * start);
    vec4 forward(1.0f, -0.5f, 2.0f, 0.0f);
    forward.normalize();
    expect_direction(camera.get_view_vector(), forward.x, forward.y, forward.z);
}

TEST(CameraView, free_direction_backwards_turns_half_about_the_own_y_axis) {
    Camera camera;
    camera.set_rotate_around_fixed_yaw_axis(false);
    camera.update_direction(vec4(0.0f, 0.0f, 1.0f, 0.0f));
    expect_quat(camera.get_orientation(), turn(180.0f, vec4::UNIT_Y_AXIS) * quat());
}

TEST(CameraView, up_counts_from_the_next_look_on) {
    Camera camera;
    camera.set_lookat(vec4(1.0f, 0.0f, 0.0f, 0.0f));
    const quat before = camera.get_orientation();
    camera.update_view_matrix();
    camera.set_up(vec4(0.0f, 0.0f, 1.0f, 0.0f));
    expect_quat(camera.get_orientation(), before);
    EXPECT_TRUE(camera.update_view_matrix());
    camera.set_lookat(vec4(1.0f, 0.0f, 0.0f, 0.0f));
    expect_direction(camera.get_up_vector(), 0.0f, 0.0f, 1.0f);
}

TEST(CameraView, parameters_together_look_before_they_take_the_new_up) {
    Camera camera, step_by_step;
    const vec4 eye(1.0f, 2.0f, 3.0f, 1.0f), at(4.0f, 4.0f, -5.0f, 1.0f), up(1.0f, 0.0f, 0.0f, 0.0f);
    camera.set_view_params(eye, at, up, false);
    step_by_step.set_position(eye);
    step_by_step.set_lookat(at);
    expect_quat(camera.get_orientation(), step_by_step.get_orientation());
    expect_mat4(camera.get_view_matrix(), step_by_step.get_view_matrix());
    expect_vec4(camera.get_position(), 1.0f, 2.0f, 3.0f, 1.0f);
    camera.set_lookat(at);
    step_by_step.set_up(up);
    step_by_step.set_lookat(at);
    expect_quat(camera.get_orientation(), step_by_step.get_orientation());
}

TEST(CameraView, a_given_matrix_stands_until_the_next_change) {
    Camera camera;
    camera.set_view_matrix(counted);
    EXPECT_FALSE(camera.update_view_matrix());
    expect_mat4(camera.get_view_matrix(), counted);
    camera.set_orientation(quat());
    expect_mat4(camera.get_view_matrix(), view_of(vec4(0, 0, 10, 1), quat()));
}

TEST(CameraView, inverse_follows_the_view) {
    Camera camera;
    expect_mat4(camera.get_inv_view_matrix(), inverted(camera.get_view_matrix()));
    camera.set_position(vec4(1.0f, 2.0f, 3.0f, 1.0f));
    expect_mat4(camera.get_inv_view_matrix(), inverted(camera.get_view_matrix()));
    EXPECT_NEAR(camera.get_inv_view_matrix().m[12], 1.0f, 1e-6f);
}

TEST(CameraView, inverse_does_not_follow_a_given_matrix) {
    Camera camera;
    const mat4 before = camera.get_inv_view_matrix();
    camera.set_view_matrix(counted);
    expect_mat4(camera.get_inv_view_matrix(), before);
}

TEST(CameraView, product_is_projection_times_view) {
    Camera camera;
    camera.set_position(vec4(1.0f, 2.0f, 3.0f, 1.0f));
    expect_mat4(camera.get_view_projection_matrix(),
                camera.get_projection_matrix() * camera.get_view_matrix());
    camera.set_fov(30.0f);
    expect_mat4(camera.get_view_projection_matrix(),
                camera.get_projection_matrix() * camera.get_view_matrix());
    camera.set_orientation(turn(10.0f, vec4::UNIT_Y_AXIS));
    expect_mat4(camera.get_view_projection_matrix(),
                camera.get_projection_matrix() * camera.get_view_matrix());
}

TEST(CameraView, product_does_not_follow_matrices_built_at_once_or_given) {
    Camera camera;
    const mat4 before = camera.get_view_projection_matrix();
    camera.build_projection_persp(20.0f, 1.0f, 1.0f, 10.0f, true);
    expect_mat4(camera.get_view_projection_matrix(), before);
    camera.build_projection_ortho(-1.0f, 1.0f, -1.0f, 1.0f, 1.0f, 10.0f, true);
    expect_mat4(camera.get_view_projection_matrix(), before);
    camera.set_projection_matrix(counted);
    camera.set_view_matrix(counted);
    expect_mat4(camera.get_view_projection_matrix(), before);
    camera.set_position(vec4(1.0f, 2.0f, 3.0f, 1.0f));
    expect_mat4(camera.get_view_projection_matrix(), counted * camera.get_view_matrix());
}

// ----------------------------------------------------------------------------- orientation

TEST(CameraOrientation, rotate_comes_after_the_orientation_so_far) {
    Camera camera;
    const quat first = turn(20.0f, vec4::UNIT_X_AXIS), second = turn(30.0f, vec4::UNIT_Y_AXIS);
    camera.rotate(first);
    expect_quat(camera.get_orientation(), first * quat());
    camera.rotate(second);
    expect_quat(camera.get_orientation(), second * (first * quat()));
    camera.rotate(30.0f, vec4::UNIT_Y_AXIS);
    expect_quat(camera.get_orientation(), second * (second * (first * quat())));
    EXPECT_TRUE(camera.update_view_matrix());
}

TEST(CameraOrientation, matrix_takes_the_upper_left_only) {
    Camera camera;
    const quat q = turn(20.0f, vec4::UNIT_X_AXIS);
    camera.set_orientation(q);
    mat4 a = counted, expected = counted;
    camera.get_orientation_matrix(a);
    expect_mat4(a, expected.from_quat(q));
}

TEST(CameraOrientation, vectors_are_those_of_the_orientation) {
    Camera camera;
    camera.set_orientation(turn(90.0f, vec4::UNIT_Y_AXIS));
    expect_direction(camera.get_view_vector(), -1.0f, 0.0f, 0.0f);
    camera.set_orientation(turn(90.0f, vec4::UNIT_X_AXIS));
    expect_direction(camera.get_up_vector(), 0.0f, 0.0f, 1.0f);
}

TEST(CameraOrientation, pitch_is_a_step_about_the_own_x_axis) {
    Camera camera;
    const quat start = turn(40.0f, vec4::UNIT_Z_AXIS);
    camera.set_orientation(start);
    camera.set_pitch(10.0f);
    const quat once = turn(10.0f, start * vec4::UNIT_X_AXIS) * start;
    expect_quat(camera.get_orientation(), once);
    camera.set_pitch(10.0f);
    expect_quat(camera.get_orientation(), turn(10.0f, once * vec4::UNIT_X_AXIS) * once);
    EXPECT_EQ(camera.get_pitch(), 10.0f);
}

TEST(CameraOrientation, yaw_is_a_step_about_the_fixed_axis) {
    Camera camera;
    const vec4 up(0.0f, 0.0f, 1.0f, 0.0f);
    const quat start = turn(40.0f, vec4::UNIT_X_AXIS);
    camera.set_orientation(start);
    camera.set_up(up);
    camera.set_yaw(15.0f);
    expect_quat(camera.get_orientation(), turn(15.0f, up) * start);
    EXPECT_EQ(camera.get_yaw(), 15.0f);
}

TEST(CameraOrientation, yaw_is_a_step_about_the_own_y_axis_without_a_fixed_one) {
    Camera camera;
    const quat start = turn(40.0f, vec4::UNIT_X_AXIS);
    camera.set_rotate_around_fixed_yaw_axis(false);
    camera.set_orientation(start);
    camera.set_yaw(15.0f);
    expect_quat(camera.get_orientation(), turn(15.0f, start * vec4::UNIT_Y_AXIS) * start);
}

TEST(CameraOrientation, roll_is_a_step_about_the_own_z_axis) {
    Camera camera;
    const quat start = turn(40.0f, vec4::UNIT_X_AXIS);
    camera.set_orientation(start);
    camera.set_roll(15.0f);
    expect_quat(camera.get_orientation(), turn(15.0f, start * vec4::UNIT_Z_AXIS) * start);
    EXPECT_EQ(camera.get_roll(), 15.0f);
}

// ------------------------------------------------------------------------------------ orbit

TEST(CameraOrbit, adds_the_way_of_the_mouse_and_turns_by_the_angles_reached) {
    Camera camera, expected;
    const vec4 nowhere(99.0f, 99.0f, 99.0f, 1.0f);
    camera.init_rotate_position_around_point(5.0f, 7.0f, 100, 200);
    camera.rotate_position_around_point_by_mouse(nowhere, 104, 206, 0.5f);
    expected.set_yaw(7.0f - 6.0f * 0.5f);
    expected.set_pitch(5.0f + 4.0f * 0.5f);
    expect_quat(camera.get_orientation(), expected.get_orientation());
    EXPECT_EQ(camera.get_yaw(), 4.0f);
    EXPECT_EQ(camera.get_pitch(), 7.0f);
    expect_vec4(camera.get_position(), 0.0f, 0.0f, 0.0f, 1.0f);
    expect_mat4(camera.get_view_matrix(), view_of(vec4(0, 0, 10, 1), camera.get_orientation()));

    camera.rotate_position_around_point_by_mouse(nowhere, 103, 206, 0.5f);
    expected.set_yaw(4.0f);
    expected.set_pitch(6.5f);
    expect_quat(camera.get_orientation(), expected.get_orientation());
}

TEST(CameraOrbit, past_a_limit_cuts_the_pitch_and_turns_nothing) {
    const struct {
        int way;
        float cut;
    } rows[] = {{1000, 80.0f}, {80, 80.0f}, {-80, -80.0f}, {-1000, -80.0f}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.way);
        Camera camera;
        camera.rotate_position_around_point_by_mouse(vec4::ZERO, row.way, 0, 1.0f);
        expect_quat(camera.get_orientation(), quat());
        EXPECT_EQ(camera.get_pitch(), 0.0f);
        // The next step starts from the limit.
        const int back = row.way > 0 ? -10 : 10;
        camera.rotate_position_around_point_by_mouse(vec4::ZERO, row.way + back, 0, 1.0f);
        EXPECT_EQ(camera.get_pitch(), row.cut + static_cast<float>(back));
    }
}

TEST(CameraOrbit, yaw_goes_on_at_a_limit) {
    Camera camera;
    camera.rotate_position_around_point_by_mouse(vec4::ZERO, 1000, 3, 1.0f);
    camera.rotate_position_around_point_by_mouse(vec4::ZERO, 990, 3, 1.0f);
    EXPECT_EQ(camera.get_yaw(), -3.0f);
}

TEST(CameraOrbit, limits_may_be_set) {
    Camera camera;
    camera.set_pitch_angle_limits(10.0f, -5.0f);
    camera.rotate_position_around_point_by_mouse(vec4::ZERO, 10, 0, 1.0f);
    EXPECT_EQ(camera.get_pitch(), 0.0f);
    camera.rotate_position_around_point_by_mouse(vec4::ZERO, 9, 0, 1.0f);
    EXPECT_EQ(camera.get_pitch(), 9.0f);
    camera.rotate_position_around_point_by_mouse(vec4::ZERO, -5, 0, 1.0f);
    EXPECT_EQ(camera.get_pitch(), 9.0f);
    camera.rotate_position_around_point_by_mouse(vec4::ZERO, -4, 0, 1.0f);
    EXPECT_EQ(camera.get_pitch(), -4.0f);
}

TEST(CameraOrbit, the_way_of_the_mouse_may_be_of_any_length) {
    Camera camera;
    camera.init_rotate_position_around_point(0.0f, 0.0f, INT_MIN, INT_MIN);
    camera.rotate_position_around_point_by_mouse(vec4::ZERO, INT_MAX, INT_MAX, 1e-9f);
    EXPECT_EQ(camera.get_pitch(), 4294967295.0f * 1e-9f);
    EXPECT_EQ(camera.get_yaw(), -4294967295.0f * 1e-9f);
}

// ------------------------------------------------------------------------------------- bind

class CameraBind : public testing::Test {
protected:
    CameraBind() { camera.set_viewport(1, 2, 300, 400); }

    std::vector<std::string> bound(bool viewport, bool scissor, bool projection, bool view,
                                   bool fixed) {
        camera.bind(&renderer, viewport, scissor, projection, view, fixed);
        std::vector<std::string> names;
        for (const std::string& call : renderer.take_calls())
            names.push_back(call);
        return names;
    }

    orvex_test::FakeRenderer renderer;
    Camera camera;
};

TEST_F(CameraBind, hands_over_everything_in_order) {
    const std::vector<std::string> calls = bound(true, true, true, true, true);
    ASSERT_EQ(calls.size(), 4u);
    EXPECT_EQ(calls[0], "set_viewport(1, 2, 300, 400)");
    EXPECT_EQ(calls[1], "set_scissor(1, 2, 300, 400)");
    EXPECT_EQ(calls[2].substr(0, 22), "set_projection_matrix(");
    EXPECT_EQ(calls[2].substr(calls[2].size() - 6), " true)");
    EXPECT_EQ(calls[3].substr(0, 16), "set_view_matrix(");
    EXPECT_EQ(calls[3].substr(calls[3].size() - 6), " true)");
    expect_mat4(renderer.projection_matrix, camera.get_projection_matrix());
    expect_mat4(renderer.view_matrix, camera.get_view_matrix());
}

TEST_F(CameraBind, each_flag_is_for_one_step) {
    EXPECT_EQ(bound(true, false, false, false, true),
              std::vector<std::string>{"set_viewport(1, 2, 300, 400)"});
    EXPECT_EQ(bound(false, true, false, false, true),
              std::vector<std::string>{"set_scissor(1, 2, 300, 400)"});
    const auto projection = bound(false, false, true, false, false);
    ASSERT_EQ(projection.size(), 1u);
    EXPECT_EQ(projection[0].substr(0, 22), "set_projection_matrix(");
    EXPECT_EQ(projection[0].substr(projection[0].size() - 7), " false)");
    const auto view = bound(false, false, false, true, false);
    ASSERT_EQ(view.size(), 1u);
    EXPECT_EQ(view[0].substr(0, 16), "set_view_matrix(");
    EXPECT_EQ(view[0].substr(view[0].size() - 7), " false)");
}

TEST_F(CameraBind, with_no_flag_changes_nothing) {
    EXPECT_TRUE(bound(false, false, false, false, true).empty());
}

TEST_F(CameraBind, without_a_renderer_does_nothing) {
    camera.bind(nullptr, true, true, true, true, true);
    EXPECT_TRUE(camera.update_projection_matrix());
    EXPECT_TRUE(camera.update_view_matrix());
}

/// Writes into the matrices that it is given.
class WritingRenderer : public orvex_test::FakeRenderer {
public:
    void set_projection_matrix(mat4& matrix, bool) override { matrix.identity(); }
    void set_view_matrix(mat4& matrix, bool) override { matrix.identity(); }
};

TEST_F(CameraBind, hands_over_copies) {
    WritingRenderer writing;
    const mat4 projection = camera.get_projection_matrix(), view = camera.get_view_matrix();
    camera.bind(&writing, false, false, true, true, true);
    expect_mat4(camera.get_projection_matrix(), projection);
    expect_mat4(camera.get_view_matrix(), view);
}

TEST(Camera, that_is_constant_brings_its_matrices_up_to_date) {
    Camera camera;
    const Camera& constant = camera;
    camera.set_fov(45.0f);
    camera.set_position(vec4(1.0f, 2.0f, 3.0f, 1.0f));
    const mat4 projection = perspective(45.0f, 16.0f / 9.0f, 1.0f, 1000.0f);
    const mat4 view = view_of(vec4(1.0f, 2.0f, 3.0f, 1.0f), quat());
    mat4 inverse_projection = projection;
    expect_mat4(constant.get_view_projection_matrix(), mat4(projection) * view);
    expect_mat4(constant.get_projection_matrix(), projection);
    expect_mat4(constant.get_view_matrix(), view);
    expect_mat4(constant.get_inv_view_matrix(), inverted(view));
    expect_mat4(constant.get_inv_projection_matrix(), inverse_projection.inverse());
    EXPECT_EQ(constant.get_projection_matrix_ptr(), camera.get_projection_matrix_ptr());
    EXPECT_EQ(constant.get_projection_matrix_float_ptr(), camera.get_projection_matrix_float_ptr());
    EXPECT_EQ(constant.get_view_matrix_ptr(), camera.get_view_matrix_ptr());
    EXPECT_EQ(constant.get_view_matrix_float_ptr(), camera.get_view_matrix_float_ptr());
    EXPECT_EQ(constant.get_viewport_ptr(), &constant.get_viewport());
    EXPECT_EQ(constant.get_viewport_ptr(), camera.get_viewport_ptr());
}

} // namespace

} // namespace orvex_test
