// The eye goes around a target. Each move changes the place, and the limits then take it back to
// what they allow.

#include "orvex_kit/orbit.h"

#include <algorithm>
#include <cmath>

#include "orvex_kit/private/vector3.h"

namespace orvex::kit {

namespace {

constexpr double degree = 0.017453292519943295;
constexpr double opening = 35.0; // that of the framing

double tangent_of_half_opening() {
    return std::tan(opening / 2 * degree);
}

} // namespace

void Orbit::frame(const Extent& extent, const Angle& from) {
    constexpr int views_of_a_turn = 36;
    const Aim aim = turning_aim(extent, from, {1, 1}, views_of_a_turn);
    first = {extent.middle, aim.distance, from};
    reset();
    keep_within();
}

void Orbit::turn(double right, double down) noexcept {
    constexpr double degrees_per_unit = 0.25;
    turn_by(-right * degrees_per_unit, down * degrees_per_unit);
}

void Orbit::turn_by(double azimuth, double elevation) noexcept {
    if (!std::isfinite(azimuth) || !std::isfinite(elevation))
        return;
    Angle& angle = now.angle;
    angle.azimuth = static_cast<float>(std::remainder(double(angle.azimuth) + azimuth, 360.0));
    angle.elevation = static_cast<float>(double(angle.elevation) + elevation);
    keep_within();
}

void Orbit::pan(double right, double down, const Screen& screen) noexcept {
    const double units = screen.height / screen.scale;
    const double shown = 2 * double(now.distance) * tangent_of_half_opening();
    shift_by(-right * shown / units, down * shown / units);
}

void Orbit::shift_by(double right, double up) noexcept {
    if (!std::isfinite(right) || !std::isfinite(up))
        return;
    const Axes axes = axes_of(now.angle);
    const Vector3 way = vector3_of(axes.right) * right + vector3_of(axes.up) * up;
    now.target = vec4_of(vector3_of(now.target) + way, 1.0f);
    keep_within();
}

void Orbit::zoom(double notches) noexcept {
    recede(std::pow(0.9, notches));
}

void Orbit::recede(double factor) noexcept {
    if (!(factor >= 0.0))
        return;
    now.distance = static_cast<float>(std::min(double(now.distance) * factor, 1e30));
    keep_within();
}

bool Orbit::move(const OrbitKeys& held, double seconds) noexcept {
    if (!(seconds >= 0.0 && std::isfinite(seconds)))
        return false;
    constexpr double degrees_per_second = 90.0;
    const int right = held.right - held.left;
    const int up = held.up - held.down;
    const int away = held.farther - held.nearer;
    if (held.pans) {
        const double way = double(now.distance) * tangent_of_half_opening() * seconds;
        shift_by(right * way, up * way);
    } else {
        turn_by(right * degrees_per_second * seconds, up * degrees_per_second * seconds);
    }
    recede(std::pow(2.0, away * seconds));
    return right != 0 || up != 0 || away != 0;
}

void Orbit::go_to(const OrbitPlace& place) noexcept {
    const bool is_sound = is_finite(vector3_of(place.target)) && place.distance > 0.0f &&
                          std::isfinite(place.distance) && std::isfinite(place.angle.azimuth) &&
                          std::isfinite(place.angle.elevation);
    if (!is_sound)
        return;
    now = place;
    keep_within();
}

void Orbit::set_limits(const OrbitLimits& new_limits) noexcept {
    const OrbitLimits& l = new_limits;
    const bool is_sound = l.lowest >= -90.0f && l.lowest <= l.highest && l.highest <= 90.0f &&
                          l.nearest > 0.0f && l.nearest <= l.farthest && l.farthest <= 1e6f &&
                          l.reach >= 0.0f && l.reach <= 1e6f;
    if (!is_sound)
        return;
    limits = new_limits;
    keep_within();
}

void Orbit::keep_within() noexcept {
    now.angle.elevation = std::clamp(now.angle.elevation, limits.lowest, limits.highest);
    now.distance =
        std::clamp(now.distance, first.distance * limits.nearest, first.distance * limits.farthest);
    const Vector3 middle = vector3_of(first.target);
    const Vector3 away = vector3_of(now.target) - middle;
    const double reach = double(first.distance) * double(limits.reach);
    if (length(away) > reach)
        now.target = vec4_of(middle + away * (reach / length(away)), 1.0f);
}

Camera Orbit::camera(const Screen& screen) const noexcept {
    const Axes axes = axes_of(now.angle);
    const Vector3 target = vector3_of(now.target);
    const Vector3 eye = target + vector3_of(axes.toward) * double(now.distance);
    const double taller = std::max(1.0, double(screen.height) / double(screen.width));
    Camera camera;
    camera.look_at(vec4_of(eye, 1.0f), vec4_of(target, 1.0f), axes.up);
    camera.set_opening(
        static_cast<float>(2 * std::atan(tangent_of_half_opening() * taller) / degree));
    // Wherever the target went, all of the model lies before the far plane.
    const float way = first.distance * (1.0f + limits.reach);
    camera.set_clip(now.distance / 100, std::max(now.distance * 10, now.distance + way));
    return camera;
}

} // namespace orvex::kit
