// The camera: parameters and matrices, each matrix with a mark that says it is out of date.
//
//   fov, aspect, near, far --> projection --+--> view-projection
//   position, orientation  --> view --------+--> inverse view
//
// A setter writes and marks, a getter computes what is marked. Which setter marks what is
// behaviour that hosts rely on, with its gaps: a projection built or stored at once leaves the
// product of both matrices as it was, and the inverse of the projection is computed once.
//
// Turns compose on the left: the orientation takes the camera's axes to the world, and the view
// is its transpose with the eye's position taken back.

#include "orvex/scene/camera.h"

#include <cmath>
#include <cstdint>

#include "orvex/base/private/misuse.h"
#include "orvex/math/mat4.h"
#include "orvex/math/quat.h"
#include "orvex/math/vec4.h"
#include "orvex/renderer/renderer.h"
#include "orvex/scene/private/node_data.h"
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

    /// Builds what a changed parameter asks for; an orthographic matrix stands as it is.
    bool update_projection() {
        if (!projection_dirty || !is_perspective)
            return false;
        build_perspective();
        view_projection_dirty = true;
        return true;
    }

    /// The rows are the camera's axes, so that the view undoes its turn; the last column then
    /// undoes its way from the origin.
    bool update_view() {
        if (!view_dirty)
            return false;
        vec4 x, y, z;
        mat4().from_quaternion_to_axes(orientation, x, y, z);
        view_matrix = mat4(x.x, y.x, z.x, 0, x.y, y.y, z.y, 0, x.z, y.z, z.z, 0, -position.dot(x),
                           -position.dot(y), -position.dot(z), 1);
        view_dirty = false;
        inv_view_dirty = true;
        view_projection_dirty = true;
        return true;
    }

    mat4& fresh_projection() {
        update_projection();
        return projection_matrix;
    }

    mat4& fresh_view() {
        update_view();
        return view_matrix;
    }

    /// Nothing raises the mark again: the inverse is that of the first call for the camera's whole
    /// life.
    mat4& first_inverse_projection() {
        update_projection();
        if (inv_projection_dirty) {
            inv_projection_matrix = projection_matrix;
            inv_projection_matrix.inverse();
            inv_projection_dirty = false;
        }
        return inv_projection_matrix;
    }

    mat4& fresh_inverse_view() {
        update_view();
        if (inv_view_dirty) {
            inv_view_matrix = view_matrix;
            inv_view_matrix.inverse();
            inv_view_dirty = false;
        }
        return inv_view_matrix;
    }

    mat4& fresh_view_projection() {
        update_projection();
        update_view();
        if (view_projection_dirty) {
            view_projection_matrix = projection_matrix * view_matrix;
            view_projection_dirty = false;
        }
        return view_projection_matrix;
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
    : data(std::make_unique<CameraData>()) {
    set_type(NODE_TYPE_CAMERA);
    NodeData::of(*this).kind = this;
}

Camera::~Camera() = default;

Camera* Camera::from_node(Node* node) {
    return node_as<Camera>(node);
}

void Camera::set_viewport(int x, int y, int width, int height) {
    data->viewport.set(x, y, width, height);
}

void Camera::set_viewport(const Viewport& viewport) {
    data->viewport = viewport;
}

Viewport& Camera::get_viewport() {
    return data->viewport;
}

const Viewport& Camera::get_viewport() const {
    return data->viewport;
}

Viewport* Camera::get_viewport_ptr() {
    return &data->viewport;
}

const Viewport* Camera::get_viewport_ptr() const {
    return &data->viewport;
}

void Camera::set_fov(float degrees) {
    if (!(degrees > 0.0f && degrees < 180.0f))
        misuse("Camera::set_fov", "an angle outside 0 to 180 degrees");
    data->fov = degrees;
    data->tanfovdiv2 = tangent_of_half(degrees);
    data->mark_perspective();
}

float Camera::get_fov() const {
    return data->fov;
}

float Camera::get_tanfovdiv2() const {
    return data->tanfovdiv2;
}

void Camera::set_znear(float distance) {
    if (!(distance > 0.0f))
        misuse("Camera::set_znear", "a plane that is not before the eye");
    data->znear = distance;
    data->mark_perspective();
}

float Camera::get_znear() const {
    return data->znear;
}

void Camera::set_zfar(float distance) {
    data->zfar = distance;
    data->mark_perspective();
}

float Camera::get_zfar() const {
    return data->zfar;
}

void Camera::set_aspect(float ratio) {
    if (!(ratio > 0.0f))
        misuse("Camera::set_aspect", "a ratio that is not above 0");
    data->aspect = ratio;
    data->mark_perspective();
}

float Camera::get_aspect() const {
    return data->aspect;
}

void Camera::set_proj_rh_state(bool state) {
    data->proj_rh_state = state;
}

void Camera::build_projection_persp(float fov, float aspect, float znear, float zfar, bool rh) {
    data->fov = fov;
    data->tanfovdiv2 = tangent_of_half(fov);
    data->aspect = aspect;
    data->znear = znear;
    data->zfar = zfar;
    data->proj_rh_state = rh;
    data->is_perspective = true;
    data->build_perspective();
}

void Camera::build_projection_ortho(float left, float right, float bottom, float top, float znear,
                                    float zfar, bool rh) {
    mat4& projection = data->projection_matrix;
    if (rh)
        projection.buildRHOrthographicProjectionMatrix(left, right, bottom, top, znear, zfar);
    else
        projection.buildLHOrthographicProjectionMatrix(left, right, bottom, top, znear, zfar);
    data->proj_rh_state = rh;
    data->is_perspective = false;
    data->projection_dirty = false;
}

bool Camera::is_perspective_projection() const {
    return data->is_perspective;
}

bool Camera::is_ortho_projection() const {
    return !data->is_perspective;
}

bool Camera::update_projection_matrix() {
    return data->update_projection();
}

void Camera::set_projection_matrix(const mat4& projection) {
    data->projection_matrix = projection;
    data->projection_dirty = false;
}

mat4& Camera::get_projection_matrix() {
    return data->fresh_projection();
}

const mat4& Camera::get_projection_matrix() const {
    return data->fresh_projection();
}

mat4* Camera::get_projection_matrix_ptr() {
    return &get_projection_matrix();
}

const mat4* Camera::get_projection_matrix_ptr() const {
    return &get_projection_matrix();
}

float* Camera::get_projection_matrix_float_ptr() {
    return get_projection_matrix().ptr();
}

const float* Camera::get_projection_matrix_float_ptr() const {
    return get_projection_matrix().ptr();
}

mat4& Camera::get_inv_projection_matrix() {
    return data->first_inverse_projection();
}

const mat4& Camera::get_inv_projection_matrix() const {
    return data->first_inverse_projection();
}

void Camera::set_view_rh_state(bool state) {
    data->view_rh_state = state;
}

void Camera::set_position(const vec4& position) {
    Object::set_position(position);
    data->position = position;
    data->view_dirty = true;
}

void Camera::set_lookat(const vec4& target) {
    data->lookat = target;
    vec4 direction;
    if (target.w == 1.0f)
        direction = target - data->position;
    else if (target.w == 0.0f)
        direction = target;
    update_direction(direction);
}

void Camera::update_direction(const vec4& direction) {
    if (direction == vec4::ZERO) {
        misuse("Camera::update_direction", "a direction of no length");
        return;
    }
    vec4 z = -direction;
    z.normalize();
    set_orientation(data->rotate_around_fixed_yaw_axis ? data->level_orientation(z)
                                                       : data->nearest_orientation(z));
}

void Camera::set_up(const vec4& up) {
    data->up = up;
    data->fixed_yaw_axis = up;
    data->view_dirty = true;
}

void Camera::set_view_params(const vec4& position, const vec4& lookat, const vec4& up, bool rh) {
    set_position(position);
    set_lookat(lookat);
    set_up(up);
    data->view_rh_state = rh;
    data->view_dirty = true;
}

bool Camera::update_view_matrix() {
    return update_view_matrix_v2();
}

bool Camera::update_view_matrix_v2() {
    return data->update_view();
}

void Camera::set_view_matrix(const mat4& view) {
    data->view_matrix = view;
    data->view_dirty = false;
}

mat4& Camera::get_view_matrix() {
    return data->fresh_view();
}

const mat4& Camera::get_view_matrix() const {
    return data->fresh_view();
}

mat4* Camera::get_view_matrix_ptr() {
    return &get_view_matrix();
}

const mat4* Camera::get_view_matrix_ptr() const {
    return &get_view_matrix();
}

float* Camera::get_view_matrix_float_ptr() {
    return get_view_matrix().ptr();
}

const float* Camera::get_view_matrix_float_ptr() const {
    return get_view_matrix().ptr();
}

mat4& Camera::get_inv_view_matrix() {
    return data->fresh_inverse_view();
}

const mat4& Camera::get_inv_view_matrix() const {
    return data->fresh_inverse_view();
}

mat4& Camera::get_view_projection_matrix() {
    return data->fresh_view_projection();
}

const mat4& Camera::get_view_projection_matrix() const {
    return data->fresh_view_projection();
}

void Camera::set_rotate_around_fixed_yaw_axis(bool state) {
    data->rotate_around_fixed_yaw_axis = state;
}

bool Camera::get_rotate_around_fixed_yaw_axis() const {
    return data->rotate_around_fixed_yaw_axis;
}

void Camera::rotate(const quat& q) {
    set_orientation(q * data->orientation);
}

void Camera::rotate(float degrees, const vec4& axis) {
    quat q;
    rotate(q.from_axis_angle(degrees, axis, false));
}

void Camera::set_orientation(const quat& orientation) {
    data->orientation = orientation;
    data->view_dirty = true;
}

const quat& Camera::get_orientation() const {
    return data->orientation;
}

void Camera::get_orientation_matrix(mat4& rotation) const {
    rotation.from_quat(data->orientation);
}

vec4 Camera::get_view_vector() const {
    return data->orientation * -vec4::UNIT_Z_AXIS;
}

vec4 Camera::get_up_vector() const {
    return data->orientation * vec4::UNIT_Y_AXIS;
}

void Camera::set_pitch(float degrees) {
    rotate(degrees, data->orientation * vec4::UNIT_X_AXIS);
    data->pitch_yaw_roll.x = degrees;
}

float Camera::get_pitch() const {
    return data->pitch_yaw_roll.x;
}

void Camera::set_yaw(float degrees) {
    rotate(degrees, data->rotate_around_fixed_yaw_axis ? data->fixed_yaw_axis
                                                       : data->orientation * vec4::UNIT_Y_AXIS);
    data->pitch_yaw_roll.y = degrees;
}

float Camera::get_yaw() const {
    return data->pitch_yaw_roll.y;
}

void Camera::set_roll(float degrees) {
    rotate(degrees, data->orientation * vec4::UNIT_Z_AXIS);
    data->pitch_yaw_roll.z = degrees;
}

float Camera::get_roll() const {
    return data->pitch_yaw_roll.z;
}

void Camera::init_rotate_position_around_point(float pitch, float yaw, int a, int b) {
    data->orbit_pitch = pitch;
    data->orbit_yaw = yaw;
    data->orbit_last_a = a;
    data->orbit_last_b = b;
}

void Camera::rotate_position_around_point_by_mouse(const vec4& /*point*/, int a, int b,
                                                   float speed) {
    const std::int64_t da = std::int64_t{a} - data->orbit_last_a;
    const std::int64_t db = std::int64_t{b} - data->orbit_last_b;
    data->orbit_last_a = a;
    data->orbit_last_b = b;

    // The angles reached; a pitch at its limit turns nothing, not even the yaw.
    data->orbit_yaw = data->orbit_yaw - static_cast<float>(db) * speed;
    data->orbit_pitch = data->orbit_pitch + static_cast<float>(da) * speed;
    if (data->orbit_pitch >= data->pitch_limit_max) {
        data->orbit_pitch = data->pitch_limit_max;
        return;
    }
    if (data->orbit_pitch <= data->pitch_limit_min) {
        data->orbit_pitch = data->pitch_limit_min;
        return;
    }
    set_yaw(data->orbit_yaw);
    set_pitch(data->orbit_pitch);
}

void Camera::set_pitch_angle_limits(float max, float min) {
    data->pitch_limit_max = max;
    data->pitch_limit_min = min;
}

// The renderer gets copies, since it takes matrices it may write.
void Camera::bind(Renderer* renderer, bool viewport, bool scissor, bool projection, bool view,
                  bool load_fixed_matrices) {
    if (!renderer) {
        misuse("Camera::bind", "a null renderer");
        return;
    }
    const Viewport area = data->viewport;
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
