// Cameras: records of the caller's, looked at and made those of the kit at each use.

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

#include "orvex_c/private/cameras.h"
#include "orvex_c/private/handles.h"
#include "orvex_c/private/records.h"

namespace orvex::c {

namespace {

/// Where every kit::Camera begins.
const float first_near = kit::Camera().near();
const float first_far = kit::Camera().far();

vec4 point_of(const double* numbers) {
    return vec4(static_cast<float>(numbers[0]), static_cast<float>(numbers[1]),
                static_cast<float>(numbers[2]), 1.0f);
}

kit::Pose pose_of(const double* numbers) {
    kit::Pose pose{};
    for (std::size_t i = 0; i < 16; ++i)
        pose[i / 4][i % 4] = numbers[i];
    return pose;
}

void put_stand(const orvex_camera& told, kit::Camera& camera) {
    require_choice(told.stand, ORVEX_STAND_POSE, "camera->stand");
    if (told.stand == ORVEX_STAND_POSE) {
        require_finite(told.pose, 16, "camera->pose");
        return require(camera.set_pose(pose_of(told.pose)), ORVEX_ERROR_ARGUMENT);
    }
    require_finite(told.eye, 3, "camera->eye");
    require_finite(told.target, 3, "camera->target");
    require_finite(told.up, 3, "camera->up");
    double way = 0.0;
    for (int i = 0; i < 3; ++i)
        way += std::pow(static_cast<double>(static_cast<float>(told.target[i])) -
                            static_cast<double>(static_cast<float>(told.eye[i])),
                        2.0);
    if (!(way > 1e-37 && way < 1e38))
        refuse_argument("the way from camera->eye to camera->target", number_text(std::sqrt(way)),
                        "they are apart, and no more than floats can tell");
    camera.look_at(point_of(told.eye), point_of(told.target), point_of(told.up));
}

void put_lens(const orvex_camera& told, kit::Camera& camera) {
    require_choice(told.lens, ORVEX_LENS_PARALLEL, "camera->lens");
    if (told.lens == ORVEX_LENS_INTRINSICS) {
        require_finite(told.intrinsics, 9, "camera->intrinsics");
        kit::Intrinsics intrinsics{};
        for (std::size_t i = 0; i < 9; ++i)
            intrinsics[i / 3][i % 3] = told.intrinsics[i];
        return require(camera.set_intrinsics(intrinsics), ORVEX_ERROR_ARGUMENT);
    }
    if (told.lens == ORVEX_LENS_PARALLEL) {
        if (!(static_cast<float>(told.height) > 0.0f) ||
            !std::isfinite(static_cast<float>(told.height)))
            refuse_argument("camera->height", number_text(told.height), "it is above 0 and finite");
        return camera.set_parallel(static_cast<float>(told.height));
    }
    if (!(told.fov >= 0.0 && static_cast<float>(told.fov) < 180.0f))
        refuse_argument("camera->fov", number_text(told.fov), "it is above 0 and below 180");
    if (told.fov > 0.0)
        camera.set_opening(static_cast<float>(told.fov));
}

bool has_planes(const orvex_camera& told) {
    return told.near_plane != 0.0 || told.far_plane != 0.0;
}

void put_planes(const orvex_camera& told, kit::Camera& camera) {
    if (!has_planes(told))
        return;
    const auto near = static_cast<float>(told.near_plane);
    const auto far = static_cast<float>(told.far_plane);
    if (!(near > 0.0f && near < far && std::isfinite(far)))
        refuse_argument("camera->near_plane and far_plane",
                        number_text(told.near_plane) + " and " + number_text(told.far_plane),
                        "0 < near_plane < far_plane, or both are 0");
    camera.set_clip(near, far);
}

/// Without planes that are automatic.
kit::Camera camera_of(const orvex_camera& told) {
    require_reserved(told.reserved, "camera");
    kit::Camera camera;
    put_stand(told, camera);
    put_lens(told, camera);
    put_planes(told, camera);
    return camera;
}

/// Planes around all models of which something is before the eye.
void fit_planes(kit::Camera& camera, const std::vector<kit::Model*>& models) {
    float near = std::numeric_limits<float>::max(), far = 0.0f;
    for (const kit::Model* const model : models) {
        kit::Camera one = camera;
        one.set_clip(first_near, first_far);
        kit::fit_clip(one, model->extent());
        // Those of a model behind the eye stay.
        if (one.near() == first_near && one.far() == first_far)
            continue;
        near = std::min(near, one.near());
        far = std::max(far, one.far());
    }
    camera.set_clip(first_near, first_far);
    if (far > 0.0f)
        camera.set_clip(std::max(near, far * 1e-4f), far);
}

float dot(const vec4& a, const vec4& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

/// The axis that is nearest to what is upward in the picture.
kit::UpAxis up_axis_in(const kit::Pose& pose) {
    const std::array<double, 3> up{-pose[1][0], -pose[1][1], -pose[1][2]};
    const auto most = std::max_element(
        up.begin(), up.end(), [](double a, double b) { return std::abs(a) < std::abs(b); });
    static constexpr kit::UpAxis axes[2][3] = {
        {kit::UpAxis::x, kit::UpAxis::y, kit::UpAxis::z},
        {kit::UpAxis::minus_x, kit::UpAxis::minus_y, kit::UpAxis::minus_z}};
    return axes[*most < 0.0][most - up.begin()];
}

/// Lights that go with the eye.
kit::Angle light_of(const kit::Camera& camera) {
    const kit::Pose pose = camera.pose();
    const kit::UpAxis up = up_axis_in(pose);
    const kit::Axes axes = kit::axes_of({0.0f, 0.0f, up});
    const vec4 toward(static_cast<float>(-pose[2][0]), static_cast<float>(-pose[2][1]),
                      static_cast<float>(-pose[2][2]), 0.0f);
    constexpr float degrees = 57.29578f;
    return {std::atan2(dot(toward, axes.right), dot(toward, axes.toward)) * degrees, 0.0f, up};
}

/// A record of the caller's that is to be filled in: nothing but its size is looked at.
orvex_camera fresh_camera(const orvex_camera* given) {
    require_pointer(given, "camera");
    size_told_by(given, "camera");
    return {};
}

orvex_camera camera_in(const orvex_camera* given) {
    require_pointer(given, "camera");
    return record_in(given, "camera");
}

} // namespace

kit::UpAxis up_axis_of(orvex_up_axis axis, const char* name) {
    require_choice(axis, ORVEX_UP_MINUS_Z, name);
    static constexpr kit::UpAxis axes[] = {
        kit::UpAxis::automatic, kit::UpAxis::x,       kit::UpAxis::y,      kit::UpAxis::z,
        kit::UpAxis::minus_x,   kit::UpAxis::minus_y, kit::UpAxis::minus_z};
    return axes[axis];
}

orvex_up_axis up_axis_of(kit::UpAxis axis) {
    switch (axis) {
    case kit::UpAxis::automatic:
        return ORVEX_UP_AUTOMATIC;
    case kit::UpAxis::x:
        return ORVEX_UP_X;
    case kit::UpAxis::y:
        return ORVEX_UP_Y;
    case kit::UpAxis::z:
        return ORVEX_UP_Z;
    case kit::UpAxis::minus_x:
        return ORVEX_UP_MINUS_X;
    case kit::UpAxis::minus_y:
        return ORVEX_UP_MINUS_Y;
    case kit::UpAxis::minus_z:
        return ORVEX_UP_MINUS_Z;
    }
    return ORVEX_UP_AUTOMATIC;
}

Seen seen_by(const orvex_camera* given, std::vector<kit::Model*> models) {
    const orvex_camera told = camera_in(given);
    Seen seen{std::move(models), camera_of(told), {}};
    if (!has_planes(told))
        fit_planes(seen.camera, seen.models);
    const kit::UpAxis up = up_axis_of(told.light_up, "camera->light_up");
    if (up == kit::UpAxis::automatic) {
        seen.lit_from = light_of(seen.camera);
        return seen;
    }
    require_finite(&told.light_azimuth, 1, "camera->light_azimuth");
    seen.lit_from = {static_cast<float>(told.light_azimuth), 0.0f, up};
    return seen;
}

} // namespace orvex::c

using namespace orvex::c;

orvex_result orvex_camera_look_at(const double* eye, const double* target, const double* up,
                                  double fov, orvex_camera* camera) {
    return guarded([&] {
        orvex_camera made = fresh_camera(camera);
        require_pointer(eye, "eye");
        require_pointer(target, "target");
        std::copy_n(eye, 3, made.eye);
        std::copy_n(target, 3, made.target);
        if (up)
            std::copy_n(up, 3, made.up);
        made.fov = fov;
        camera_of(made);
        record_out(made, camera, "camera");
    });
}

orvex_result orvex_camera_measured(const double* intrinsics, const double* pose,
                                   orvex_camera* camera) {
    return guarded([&] {
        orvex_camera made = fresh_camera(camera);
        require_pointer(intrinsics, "intrinsics");
        require_pointer(pose, "pose");
        std::copy_n(intrinsics, 9, made.intrinsics);
        std::copy_n(pose, 16, made.pose);
        made.stand = ORVEX_STAND_POSE;
        made.lens = ORVEX_LENS_INTRINSICS;
        camera_of(made);
        record_out(made, camera, "camera");
    });
}

namespace {

/// What all models have together.
kit::Extent extent_of(const std::vector<kit::Model*>& models) {
    if (models.size() == 1)
        return models.front()->extent();
    kit::Extent all;
    orvex::vec4 low, high;
    for (const kit::Model* const model : models)
        for (const orvex::vec4& point : model->extent().points) {
            if (all.points.empty())
                low = high = point;
            low = {std::min(low.x, point.x), std::min(low.y, point.y), std::min(low.z, point.z), 1};
            high = {std::max(high.x, point.x), std::max(high.y, point.y), std::max(high.z, point.z),
                    1};
            all.points.push_back(point);
        }
    all.middle = {low.x / 2 + high.x / 2, low.y / 2 + high.y / 2, low.z / 2 + high.z / 2, 1};
    return all;
}

kit::Aim aim_of(orvex_aim wanted, const kit::Extent& extent, const kit::Angle& angle,
                const kit::Lens& lens) {
    constexpr int views = 36;
    if (wanted == ORVEX_AIM_TURN)
        return kit::turning_aim(extent, {0.0f, angle.elevation, angle.up}, lens, views);
    return wanted == ORVEX_AIM_MIDDLE ? kit::middle_aim(extent, angle, lens)
                                      : kit::tight_aim(extent, angle, lens);
}

void require_factor(double number, const char* name) {
    if (!(number >= 0.0) || !std::isfinite(static_cast<float>(number)))
        refuse_argument(name, number_text(number), "it is above 0, or 0 for 1");
}

/// The record of a camera of the kit's that looks at something.
orvex_camera record_of(const kit::Camera& camera, const kit::Aim& aim, const kit::Angle& angle,
                       const orvex::vec4& middle) {
    const kit::Axes axes = kit::axes_of(angle);
    const orvex::vec4 eye = camera.eye();
    orvex_camera made{};
    made.fov = static_cast<double>(camera.opening());
    made.near_plane = static_cast<double>(camera.near());
    made.far_plane = static_cast<double>(camera.far());
    made.light_azimuth = static_cast<double>(angle.azimuth);
    made.light_up = up_axis_of(angle.up);
    const auto put = [](double* to, const orvex::vec4& from) {
        to[0] = static_cast<double>(from.x);
        to[1] = static_cast<double>(from.y);
        to[2] = static_cast<double>(from.z);
    };
    // As the kit itself moves from the middle, one axis after the other.
    orvex::vec4 target = middle;
    for (const auto& [axis, way] : {std::pair(axes.right, aim.right), std::pair(axes.up, aim.up)})
        target = orvex::vec4(target.x + axis.x * way, target.y + axis.y * way,
                             target.z + axis.z * way, 1.0f);
    put(made.eye, eye);
    put(made.target, target);
    put(made.up, axes.up);
    return made;
}

} // namespace

namespace {

/// The caller's wish, or that of those who have none.
orvex_orbit orbit_in(const orvex_orbit* given) {
    orvex_orbit told = record_in(given, "orbit");
    if (!given) {
        told.azimuth = static_cast<double>(kit::Angle().azimuth);
        told.elevation = static_cast<double>(kit::Angle().elevation);
    }
    require_finite(&told.azimuth, 1, "orbit->azimuth");
    require_finite(&told.elevation, 1, "orbit->elevation");
    require_choice(told.aim, ORVEX_AIM_TURN, "orbit->aim");
    require_factor(told.zoom, "orbit->zoom");
    require_factor(told.distance, "orbit->distance");
    return told;
}

float factor_of(double number) {
    return number == 0.0 ? 1.0f : static_cast<float>(number);
}

kit::Angle angle_of(const orvex_orbit& told, const kit::Model& first) {
    kit::Angle angle{static_cast<float>(told.azimuth), static_cast<float>(told.elevation),
                     up_axis_of(told.up, "orbit->up")};
    if (angle.up == kit::UpAxis::automatic)
        angle.up = first.up_axis();
    return angle;
}

} // namespace

orvex_result orvex_camera_orbit(const orvex_model* models, size_t count, int32_t width,
                                int32_t height, const orvex_orbit* orbit, orvex_camera* camera) {
    return guarded([&] {
        // What is wanted.
        fresh_camera(camera);
        const orvex_orbit told = orbit_in(orbit);
        require_sides(width, height);
        const std::vector<kit::Model*> seen = models_of(models, count);
        if (seen.empty())
            refuse_argument("count", "0", "there is nothing to look at");
        // From where, and from how far.
        const kit::Angle angle = angle_of(told, *seen.front());
        const kit::Extent extent = extent_of(seen);
        const kit::Lens lens{width, height, factor_of(told.zoom)};
        kit::Aim aim = aim_of(told.aim, extent, angle, lens);
        aim.distance *= factor_of(told.distance);
        const kit::Camera made = kit::aimed(extent, angle, lens, aim);
        record_out(record_of(made, aim, angle, extent.middle), camera, "camera");
    });
}

orvex_result orvex_camera_fit(orvex_camera* camera, const orvex_model* models, size_t count) {
    return guarded([&] {
        orvex_camera told = camera_in(camera);
        told.near_plane = told.far_plane = 0.0;
        kit::Camera seen = camera_of(told);
        fit_planes(seen, models_of(models, count));
        told.near_plane = static_cast<double>(seen.near());
        told.far_plane = static_cast<double>(seen.far());
        record_out(told, camera, "camera");
    });
}

orvex_result orvex_camera_matrix(const orvex_camera* camera, int32_t width, int32_t height,
                                 double* intrinsics) {
    return guarded([&] {
        const kit::Camera seen = camera_of(camera_in(camera));
        require_sides(width, height);
        require_pointer(intrinsics, "intrinsics");
        const std::optional<kit::Intrinsics> k = seen.intrinsics(width, height);
        if (!k)
            refuse(ORVEX_ERROR_ARGUMENT, "a camera without perspective has no intrinsics");
        for (std::size_t i = 0; i < 9; ++i)
            intrinsics[i] = (*k)[i / 3][i % 3];
    });
}

orvex_result orvex_camera_pose(const orvex_camera* camera, double* pose) {
    return guarded([&] {
        const kit::Camera seen = camera_of(camera_in(camera));
        require_pointer(pose, "pose");
        const kit::Pose made = seen.pose();
        for (std::size_t i = 0; i < 16; ++i)
            pose[i] = made[i / 4][i % 4];
    });
}

orvex_result orvex_camera_project(const orvex_camera* camera, int32_t width, int32_t height,
                                  const double* points, size_t count, double* seen) {
    return guarded([&] {
        const kit::Camera from = camera_of(camera_in(camera));
        require_sides(width, height);
        if (count == 0)
            return;
        require_pointer(points, "points");
        require_pointer(seen, "seen");
        for (std::size_t i = 0; i < count; ++i) {
            const double* const point = points + i * 3;
            const auto place =
                from.project({static_cast<float>(point[0]), static_cast<float>(point[1]),
                              static_cast<float>(point[2]), 1.0f},
                             {width, height});
            constexpr double nan = std::numeric_limits<double>::quiet_NaN();
            seen[i * 3] = place ? place->x : nan;
            seen[i * 3 + 1] = place ? place->y : nan;
            seen[i * 3 + 2] = place ? place->depth : nan;
        }
    });
}

orvex_result orvex_camera_ray(const orvex_camera* camera, int32_t width, int32_t height, double x,
                              double y, double* origin, double* direction) {
    return guarded([&] {
        const kit::Camera seen = camera_of(camera_in(camera));
        require_sides(width, height);
        const double place[] = {x, y};
        require_finite(place, 2, "x and y");
        require_pointer(origin, "origin");
        require_pointer(direction, "direction");
        const orvex::Ray ray = seen.ray(x, y, {width, height});
        const float from[] = {ray.origin.x, ray.origin.y, ray.origin.z};
        const float way[] = {ray.direction.x, ray.direction.y, ray.direction.z};
        std::copy_n(from, 3, origin);
        std::copy_n(way, 3, direction);
    });
}
