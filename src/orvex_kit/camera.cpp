// The camera as a value. Two systems of axes meet here: the engine's camera has y up and looks
// along -z, that of computer vision has y down and looks along z. Poses and intrinsics are of the
// second kind; only `apply` knows the first.

#include "orvex_kit/camera.h"

#include <algorithm>
#include <cmath>

#include <orvex/math/mat4.h>
#include <orvex/math/quat.h>
#include <orvex/scene/camera.h>

#include "orvex_kit/private/rotation.h"
#include "orvex_kit/private/vector3.h"

namespace orvex::kit {

namespace {

constexpr double degree = 0.017453292519943295;

Pose pose_of(const Rotation& rotation, const Vector3& eye) {
    Pose pose{};
    for (std::size_t row = 0; row < 3; ++row) {
        const Vector3& axis = rotation[row];
        pose[row] = {axis.x, axis.y, axis.z, -dot(axis, eye)};
    }
    pose[3] = {0.0, 0.0, 0.0, 1.0};
    return pose;
}

Rotation rotation_of(const Pose& pose) {
    Rotation rotation;
    for (std::size_t row = 0; row < 3; ++row)
        rotation[row] = {pose[row][0], pose[row][1], pose[row][2]};
    return rotation;
}

Vector3 shift_of(const Pose& pose) {
    return {pose[0][3], pose[1][3], pose[2][3]};
}

Vector3 eye_of(const Pose& pose) {
    const Rotation rotation = rotation_of(pose);
    return (rotation[0] * pose[0][3] + rotation[1] * pose[1][3] + rotation[2] * pose[2][3]) * -1.0;
}

/// A direction upward that isn't the one that is looked along.
vec4 upward(const vec4& wanted, const Vector3& forward) {
    const Vector3 up = vector3_of(wanted);
    const double size = length(up);
    const auto leans = [&forward](const Vector3& axis) {
        return length(cross(axis, forward)) > 1e-4;
    };
    if (!(size > 0.0) || !std::isfinite(size))
        return leans({0, 1, 0}) ? vec4(0, 1, 0, 0) : vec4(0, 0, 1, 0);
    if (!leans(up * (1.0 / size)))
        return leans({0, 0, 1}) ? vec4(0, 0, 1, 0) : vec4(0, 1, 0, 0);
    // Of length 1 or nearly so it goes to the engine as it is.
    return std::abs(size - 1.0) < 1e-3 ? wanted : vec4_of(up * (1.0 / size), 0.0f);
}

} // namespace

Camera::Camera() noexcept {
    look_at(vec4(0, 0, 10, 1), vec4(0, 0, 0, 1));
}

void Camera::look_at(const vec4& eye, const vec4& at, const vec4& new_up) noexcept {
    const Vector3 stand = vector3_of(eye);
    const Vector3 way = vector3_of(at) - stand;
    // The engine squares it in single precision.
    const double squared = dot(way, way);
    if (!is_finite(stand) || !(squared > 1e-37 && squared < 1e38))
        return;
    const Vector3 forward = normalized(way);
    looks = true;
    from = vec4(eye.x, eye.y, eye.z, 1.0f);
    target = vec4(at.x, at.y, at.z, 1.0f);
    up = upward(new_up, forward);
    const Vector3 right = normalized(cross(forward, vector3_of(up)));
    placed = pose_of({right, cross(forward, right), forward}, stand);
}

Outcome Camera::set_pose(const Pose& pose) {
    for (const auto& row : pose)
        for (const double number : row)
            if (!std::isfinite(number))
                return Outcome::failure("a pose holds a number that isn't finite");
    if (pose[3] != std::array<double, 4>{0.0, 0.0, 0.0, 1.0})
        return Outcome::failure("the last row of a pose isn't 0 0 0 1");
    const std::optional<Rotation> straight = straightened(rotation_of(pose));
    if (!straight)
        return Outcome::failure("the left three columns of a pose are no rotation: its rows have "
                                "length 1 and stand at right angles, and it mirrors nothing");
    looks = false;
    placed = pose;
    for (std::size_t row = 0; row < 3; ++row)
        placed[row] = {(*straight)[row].x, (*straight)[row].y, (*straight)[row].z, pose[row][3]};
    return Outcome::success();
}

Pose Camera::pose() const noexcept {
    return placed;
}

vec4 Camera::eye() const noexcept {
    return looks ? from : vec4_of(eye_of(placed), 1.0f);
}

void Camera::set_opening(float degrees) noexcept {
    if (!(degrees > 0.0f && degrees < 180.0f))
        return;
    kind = Kind::opening;
    opening_degrees = degrees;
}

Outcome Camera::set_intrinsics(const Intrinsics& k) {
    for (const auto& row : k)
        for (const double number : row)
            if (!std::isfinite(number))
                return Outcome::failure("intrinsics hold a number that isn't finite");
    if (k[1][0] != 0.0 || k[2] != std::array<double, 3>{0.0, 0.0, 1.0})
        return Outcome::failure("intrinsics are fx s cx, 0 fy cy, 0 0 1, row by row");
    if (!(k[0][0] > 0.0 && k[1][1] > 0.0))
        return Outcome::failure("fx and fy of intrinsics are above 0");
    kind = Kind::measured;
    measured = k;
    return Outcome::success();
}

void Camera::set_parallel(float height) noexcept {
    if (!(height > 0.0f && std::isfinite(height)))
        return;
    kind = Kind::parallel;
    span = height;
}

void Camera::set_clip(float near, float far) noexcept {
    if (!(near > 0.0f && near < far && std::isfinite(far)))
        return;
    near_plane = near;
    far_plane = far;
}

std::optional<Intrinsics> Camera::intrinsics(int width, int height) const noexcept {
    if (kind == Kind::parallel)
        return std::nullopt;
    if (kind == Kind::measured)
        return measured;
    const double f = height / 2.0 / std::tan(double(opening_degrees) * degree / 2);
    return Intrinsics{{{f, 0.0, width / 2.0}, {0.0, f, height / 2.0}, {0.0, 0.0, 1.0}}};
}

std::optional<ScreenPoint> Camera::project(const vec4& point, const Screen& screen) const noexcept {
    const Vector3 seen = turned(rotation_of(placed), vector3_of(point)) + shift_of(placed);
    if (!(seen.z > 0.0))
        return std::nullopt;
    double x = 0.0;
    double y = 0.0;
    if (const std::optional<Intrinsics> k = intrinsics(screen.width, screen.height)) {
        x = ((*k)[0][0] * seen.x + (*k)[0][1] * seen.y) / seen.z + (*k)[0][2];
        y = (*k)[1][1] * seen.y / seen.z + (*k)[1][2];
    } else {
        const double pixels = screen.height / double(span);
        x = screen.width / 2.0 + seen.x * pixels;
        y = screen.height / 2.0 + seen.y * pixels;
    }
    return ScreenPoint{x / screen.scale, y / screen.scale, seen.z};
}

Ray Camera::ray(double x, double y, const Screen& screen) const noexcept {
    const double u = x * screen.scale;
    const double v = y * screen.scale;
    const Rotation rotation = rotation_of(placed);
    if (const std::optional<Intrinsics> k = intrinsics(screen.width, screen.height)) {
        const double down = (v - (*k)[1][2]) / (*k)[1][1];
        const double right = (u - (*k)[0][2] - (*k)[0][1] * down) / (*k)[0][0];
        const Vector3 way = rotation[0] * right + rotation[1] * down + rotation[2];
        return {eye(), vec4_of(normalized(way), 0.0f)};
    }
    const double units = double(span) / screen.height;
    const Vector3 aside = rotation[0] * ((u - screen.width / 2.0) * units) +
                          rotation[1] * ((v - screen.height / 2.0) * units);
    return {vec4_of(eye_of(placed) + aside, 1.0f), vec4_of(rotation[2], 0.0f)};
}

void Camera::apply(orvex::Camera& camera, int width, int height) const {
    camera.set_viewport(0, 0, width, height);
    put_projection(camera, width, height);
    put_view(camera);
}

void Camera::put_projection(orvex::Camera& camera, int width, int height) const {
    const float aspect = static_cast<float>(width) / static_cast<float>(height);
    if (kind == Kind::parallel) {
        const float across = span * aspect / 2;
        camera.build_projection_ortho(-across, across, -span / 2, span / 2, near_plane, far_plane,
                                      true);
        return;
    }
    if (kind == Kind::opening) {
        camera.build_projection_persp(opening_degrees, aspect, near_plane, far_plane, true);
        return;
    }
    // The angle that comes nearest is there for those who ask the engine's camera.
    const double degrees = 2 * std::atan(height / 2.0 / measured[1][1]) / degree;
    camera.build_projection_persp(static_cast<float>(degrees), aspect, near_plane, far_plane, true);
    mat4 projection = camera.get_projection_matrix();
    projection.m[0] = static_cast<float>(2 * measured[0][0] / width);
    projection.m[4] = static_cast<float>(-2 * measured[0][1] / width);
    projection.m[5] = static_cast<float>(2 * measured[1][1] / height);
    projection.m[8] = static_cast<float>(1 - 2 * measured[0][2] / width);
    projection.m[9] = static_cast<float>(2 * measured[1][2] / height - 1);
    camera.set_projection_matrix(projection);
}

namespace {

/// A pose as the engine keeps it: by columns, y up, and looking along -z.
mat4 view_of(const Pose& pose) {
    constexpr double signs[] = {1.0, -1.0, -1.0, 1.0};
    mat4 view;
    for (std::size_t row = 0; row < 4; ++row)
        for (std::size_t column = 0; column < 4; ++column)
            view.m[column * 4 + row] = static_cast<float>(signs[row] * pose[row][column]);
    return view;
}

/// Whether both turn alike, but for rounding.
bool turn_alike(const mat4& a, const mat4& b) {
    for (const int i : {0, 1, 2, 4, 5, 6, 8, 9, 10})
        if (!(std::abs(a.m[i] - b.m[i]) < 1e-5f))
            return false;
    return true;
}

} // namespace

void Camera::put_view(orvex::Camera& camera) const {
    const mat4 exact = view_of(placed);
    if (looks) {
        const bool was_level = camera.get_rotate_around_fixed_yaw_axis();
        camera.set_rotate_around_fixed_yaw_axis(true);
        // The up vector of the view counts from the next turn on.
        camera.set_up(up);
        camera.set_view_params(from, target, up, true);
        camera.set_rotate_around_fixed_yaw_axis(was_level);
        if (turn_alike(camera.get_view_matrix(), exact))
            return;
    }
    // Half turns get lost in the engine's quaternions of axes. The inverse and the product of the
    // matrices are made of the exact one, for the update has marked them.
    const Rotation axes = rotation_of(placed);
    const Quaternion q = quaternion_of({axes[0], axes[1] * -1.0, axes[2] * -1.0});
    camera.set_position(eye());
    camera.set_orientation(quat(static_cast<float>(q.x), static_cast<float>(q.y),
                                static_cast<float>(q.z), static_cast<float>(q.w)));
    camera.update_view_matrix();
    camera.set_view_matrix(exact);
}

} // namespace orvex::kit
