#include "orvex/scene/camera.h"

#include <cmath>
#include <cstdint>

#include "orvex/math/mat4.h"
#include "orvex/math/quat.h"
#include "orvex/math/vec4.h"
#include "orvex/renderer/renderer.h"
#include "orvex/scene/viewport.h"

namespace orvex {

namespace {

constexpr float projection_epsilon = 0.00001f;

/// The tangent of half an angle in degrees: the argument in single precision, the tangent in
/// double.
float tangent_of_half(float degrees) {
    const float radians = degrees * 0.5f * 0.017453292f;
    return static_cast<float>(std::tan(static_cast<double>(radians)));
}

} // namespace

struct Camera::CameraData {
    Viewport viewport;

    float fov = 60.0f;
    float tanfovdiv2 = tangent_of_half(60.0f);
    float aspect = 1.7777778f;
    float znear = 1.0f;
    float zfar = 1000.0f;
    bool is_perspective = true;
    bool projection_dirty = true;
    mat4 projection_matrix;
    bool proj_rh_state = true;

    mat4 view_matrix;
    mat4 inv_view_matrix;
    mat4 inv_projection_matrix;
    bool view_rh_state = true;
    mat4 view_projection_matrix;
    bool view_projection_dirty = true;

    bool rotate_around_fixed_yaw_axis = true;
    vec4 fixed_yaw_axis = vec4::UNIT_Y_AXIS;
    quat orientation;
    vec4 pitch_yaw_roll; ///< x, y, z: the last step given to each setter

    float orbit_yaw = 0.0f;
    float orbit_pitch = 0.0f;
    int orbit_last_a = 0;
    int orbit_last_b = 0;
    float pitch_limit_max = 80.0f;
    float pitch_limit_min = -80.0f;

    vec4 position{0.0f, 0.0f, 10.0f, 1.0f};
    vec4 lookat;
    vec4 up{0.0f, 1.0f, 0.0f, 0.0f};
    bool view_dirty = true;
    bool inv_view_dirty = true;
    bool inv_projection_dirty = true;

    /// A parameter of the perspective changed.
    void mark_perspective() {
        projection_dirty = true;
        is_perspective = true;
    }

    void build_perspective() {
        if (proj_rh_state)
            projection_matrix.buildRHPerspectiveProjectionMatrix(fov, aspect, znear, zfar,
                                                                 projection_epsilon);
        else
            projection_matrix.buildLHPerspectiveProjectionMatrix(fov, aspect, znear, zfar);
        projection_dirty = false;
    }

    /// The orientation whose negative Z axis is -z, with the fixed yaw axis upright.
    quat level_orientation(const vec4& z) const {
        vec4 x = fixed_yaw_axis.cross(z);
        x.normalize();
        vec4 y = z.cross(x);
        y.normalize();
        quat q;
        mat4().from_axes_to_quaternion(x, y, z, q);
        return q;
    }

    /// The orientation whose negative Z axis is -z, reached by the shortest way.
    quat nearest_orientation(const vec4& z) const {
        vec4 x, y, z0;
        mat4().from_quaternion_to_axes(orientation, x, y, z0);
        quat r;
        if (-z == z0)
            r.from_axis_angle(180.0f, y, false);
        else
            r.from_vector_rotation(z0, z);
        return r * orientation;
    }
};

Camera::Camera()
    : camera_data(new CameraData) {
    set_type(NODE_TYPE_CAMERA);
}

Camera::~Camera() {
    delete camera_data;
}

void Camera::set_viewport(int x, int y, int width, int height) {
    camera_data->viewport.set(x, y, width, height);
}

void Camera::set_viewport(const Viewport& viewport) {
    camera_data->viewport = viewport;
}

Viewport& Camera::get_viewport() {
    return camera_data->viewport;
}

Viewport* Camera::get_viewport_ptr() {
    return &camera_data->viewport;
}

void Camera::set_fov(float degrees) {
    camera_data->fov = degrees;
    camera_data->tanfovdiv2 = tangent_of_half(degrees);
    camera_data->mark_perspective();
}

float Camera::get_fov() const {
    return camera_data->fov;
}

float Camera::get_tanfovdiv2() const {
    return camera_data->tanfovdiv2;
}

void Camera::set_znear(float distance) {
    camera_data->znear = distance;
    camera_data->mark_perspective();
}

float Camera::get_znear() const {
    return camera_data->znear;
}

void Camera::set_zfar(float distance) {
    camera_data->zfar = distance;
    camera_data->mark_perspective();
}

float Camera::get_zfar() const {
    return camera_data->zfar;
}

void Camera::set_aspect(float ratio) {
    camera_data->aspect = ratio;
    camera_data->mark_perspective();
}

float Camera::get_aspect() const {
    return camera_data->aspect;
}

void Camera::set_proj_rh_state(bool state) {
    camera_data->proj_rh_state = state;
}

void Camera::build_projection_persp(float fov, float aspect, float znear, float zfar, bool rh) {
    CameraData& data = *camera_data;
    data.fov = fov;
    data.tanfovdiv2 = tangent_of_half(fov);
    data.aspect = aspect;
    data.znear = znear;
    data.zfar = zfar;
    data.proj_rh_state = rh;
    data.is_perspective = true;
    data.build_perspective();
}

void Camera::build_projection_ortho(float left, float right, float bottom, float top, float znear,
                                    float zfar, bool rh) {
    CameraData& data = *camera_data;
    mat4& projection = data.projection_matrix;
    if (rh)
        projection.buildRHOrthographicProjectionMatrix(left, right, bottom, top, znear, zfar);
    else
        projection.buildLHOrthographicProjectionMatrix(left, right, bottom, top, znear, zfar);
    data.proj_rh_state = rh;
    data.is_perspective = false;
    data.projection_dirty = false;
}

bool Camera::is_perspective_projection() const {
    return camera_data->is_perspective;
}

bool Camera::is_ortho_projection() const {
    return !camera_data->is_perspective;
}

bool Camera::update_projection_matrix() {
    CameraData& data = *camera_data;
    if (!data.projection_dirty || !data.is_perspective)
        return false;
    data.build_perspective();
    data.view_projection_dirty = true;
    return true;
}

void Camera::set_projection_matrix(const mat4& projection) {
    camera_data->projection_matrix = projection;
    camera_data->projection_dirty = false;
}

mat4& Camera::get_projection_matrix() {
    update_projection_matrix();
    return camera_data->projection_matrix;
}

mat4* Camera::get_projection_matrix_ptr() {
    return &get_projection_matrix();
}

float* Camera::get_projection_matrix_float_ptr() {
    return get_projection_matrix().ptr();
}

// Nothing raises the flag again: the inverse is that of the first call for the camera's whole life.
mat4& Camera::get_inv_projection_matrix() {
    CameraData& data = *camera_data;
    update_projection_matrix();
    if (data.inv_projection_dirty) {
        data.inv_projection_matrix = data.projection_matrix;
        data.inv_projection_matrix.inverse();
        data.inv_projection_dirty = false;
    }
    return data.inv_projection_matrix;
}

void Camera::set_view_rh_state(bool state) {
    camera_data->view_rh_state = state;
}

void Camera::set_position(const vec4& position) {
    Object::set_position(position);
    camera_data->position = position;
    camera_data->view_dirty = true;
}

void Camera::set_lookat(const vec4& target) {
    CameraData& data = *camera_data;
    data.lookat = target;
    vec4 direction;
    if (target.w == 1.0f)
        direction = target - data.position;
    else if (target.w == 0.0f)
        direction = target;
    update_direction(direction);
}

void Camera::update_direction(const vec4& direction) {
    CameraData& data = *camera_data;
    if (direction == vec4::ZERO)
        return;
    vec4 z = -direction;
    z.normalize();
    set_orientation(data.rotate_around_fixed_yaw_axis ? data.level_orientation(z)
                                                      : data.nearest_orientation(z));
}

void Camera::set_up(const vec4& up) {
    camera_data->up = up;
    camera_data->fixed_yaw_axis = up;
    camera_data->view_dirty = true;
}

void Camera::set_view_params(const vec4& position, const vec4& lookat, const vec4& up, bool rh) {
    set_position(position);
    set_lookat(lookat);
    set_up(up);
    camera_data->view_rh_state = rh;
    camera_data->view_dirty = true;
}

bool Camera::update_view_matrix() {
    return update_view_matrix_v2();
}

bool Camera::update_view_matrix_v2() {
    CameraData& data = *camera_data;
    if (!data.view_dirty)
        return false;
    vec4 x, y, z;
    mat4().from_quaternion_to_axes(data.orientation, x, y, z);
    const vec4& eye = data.position;
    data.view_matrix = mat4(x.x, y.x, z.x, 0, x.y, y.y, z.y, 0, x.z, y.z, z.z, 0, -eye.dot(x),
                            -eye.dot(y), -eye.dot(z), 1);
    data.view_dirty = false;
    data.inv_view_dirty = true;
    data.view_projection_dirty = true;
    return true;
}

void Camera::set_view_matrix(const mat4& view) {
    camera_data->view_matrix = view;
    camera_data->view_dirty = false;
}

mat4& Camera::get_view_matrix() {
    update_view_matrix();
    return camera_data->view_matrix;
}

mat4* Camera::get_view_matrix_ptr() {
    return &get_view_matrix();
}

float* Camera::get_view_matrix_float_ptr() {
    return get_view_matrix().ptr();
}

mat4& Camera::get_inv_view_matrix() {
    CameraData& data = *camera_data;
    update_view_matrix();
    if (data.inv_view_dirty) {
        data.inv_view_matrix = data.view_matrix;
        data.inv_view_matrix.inverse();
        data.inv_view_dirty = false;
    }
    return data.inv_view_matrix;
}

mat4& Camera::get_view_projection_matrix() {
    CameraData& data = *camera_data;
    update_projection_matrix();
    update_view_matrix();
    if (data.view_projection_dirty) {
        data.view_projection_matrix = data.projection_matrix * data.view_matrix;
        data.view_projection_dirty = false;
    }
    return data.view_projection_matrix;
}

void Camera::set_rotate_around_fixed_yaw_axis(bool state) {
    camera_data->rotate_around_fixed_yaw_axis = state;
}

bool Camera::get_rotate_around_fixed_yaw_axis() const {
    return camera_data->rotate_around_fixed_yaw_axis;
}

void Camera::rotate(const quat& q) {
    set_orientation(q * camera_data->orientation);
}

void Camera::rotate(float degrees, const vec4& axis) {
    quat q;
    rotate(q.from_axis_angle(degrees, axis, false));
}

void Camera::set_orientation(const quat& orientation) {
    camera_data->orientation = orientation;
    camera_data->view_dirty = true;
}

const quat& Camera::get_orientation() const {
    return camera_data->orientation;
}

void Camera::get_orientation_matrix(mat4& rotation) const {
    rotation.from_quat(camera_data->orientation);
}

vec4 Camera::get_view_vector() const {
    return camera_data->orientation * -vec4::UNIT_Z_AXIS;
}

vec4 Camera::get_up_vector() const {
    return camera_data->orientation * vec4::UNIT_Y_AXIS;
}

void Camera::set_pitch(float degrees) {
    rotate(degrees, camera_data->orientation * vec4::UNIT_X_AXIS);
    camera_data->pitch_yaw_roll.x = degrees;
}

float Camera::get_pitch() const {
    return camera_data->pitch_yaw_roll.x;
}

void Camera::set_yaw(float degrees) {
    CameraData& data = *camera_data;
    rotate(degrees, data.rotate_around_fixed_yaw_axis ? data.fixed_yaw_axis
                                                      : data.orientation * vec4::UNIT_Y_AXIS);
    data.pitch_yaw_roll.y = degrees;
}

float Camera::get_yaw() const {
    return camera_data->pitch_yaw_roll.y;
}

void Camera::set_roll(float degrees) {
    rotate(degrees, camera_data->orientation * vec4::UNIT_Z_AXIS);
    camera_data->pitch_yaw_roll.z = degrees;
}

float Camera::get_roll() const {
    return camera_data->pitch_yaw_roll.z;
}

void Camera::init_rotate_position_around_point(float pitch, float yaw, int a, int b) {
    camera_data->orbit_pitch = pitch;
    camera_data->orbit_yaw = yaw;
    camera_data->orbit_last_a = a;
    camera_data->orbit_last_b = b;
}

void Camera::rotate_position_around_point_by_mouse(const vec4& /*point*/, int a, int b,
                                                   float speed) {
    CameraData& data = *camera_data;
    const std::int64_t da = std::int64_t{a} - data.orbit_last_a;
    const std::int64_t db = std::int64_t{b} - data.orbit_last_b;
    data.orbit_last_a = a;
    data.orbit_last_b = b;
    data.orbit_yaw = data.orbit_yaw - static_cast<float>(db) * speed;
    data.orbit_pitch = data.orbit_pitch + static_cast<float>(da) * speed;
    if (data.orbit_pitch >= data.pitch_limit_max) {
        data.orbit_pitch = data.pitch_limit_max;
        return;
    }
    if (data.orbit_pitch <= data.pitch_limit_min) {
        data.orbit_pitch = data.pitch_limit_min;
        return;
    }
    set_yaw(data.orbit_yaw);
    set_pitch(data.orbit_pitch);
}

void Camera::set_pitch_angle_limits(float max, float min) {
    camera_data->pitch_limit_max = max;
    camera_data->pitch_limit_min = min;
}

// The renderer gets copies, since it takes matrices it may write.
void Camera::bind(Renderer* renderer, bool viewport, bool scissor, bool projection, bool view,
                  bool load_fixed_matrices) {
    if (!renderer)
        return;
    const Viewport area = camera_data->viewport;
    if (viewport)
        renderer->set_viewport(area.x, area.y, area.width, area.height);
    if (scissor)
        renderer->set_scissor(area.x, area.y, area.width, area.height);
    if (projection) {
        mat4 copy = get_projection_matrix();
        renderer->set_projection_matrix(copy, load_fixed_matrices);
    }
    if (view) {
        mat4 copy = get_view_matrix();
        renderer->set_view_matrix(copy, load_fixed_matrices);
    }
}

} // namespace orvex
