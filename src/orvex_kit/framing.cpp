// Where the camera stands so that a model fills the picture: axes of the view first, then the aim
// that just holds every point, for one picture or for a whole turn.

#include "orvex_kit/framing.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "orvex_kit/private/vector3.h"

namespace orvex::kit {

namespace {

constexpr float opening_degrees = 35.0f;
constexpr float degree = 0.017453292f;

float dot(const vec4& a, const vec4& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

vec4 difference(const vec4& a, const vec4& b) {
    return vec4(a.x - b.x, a.y - b.y, a.z - b.z, 0.0f);
}

/// A direction of a model whose Y axis points up, in one that is turned another way.
vec4 turned_up(const vec4& v, UpAxis up) {
    switch (up) {
    case UpAxis::x:
        return vec4(v.y, -v.x, v.z, 0.0f);
    case UpAxis::automatic:
    case UpAxis::y:
        return v;
    case UpAxis::z:
        return vec4(v.x, -v.z, v.y, 0.0f);
    case UpAxis::minus_x:
        return vec4(-v.y, v.x, v.z, 0.0f);
    case UpAxis::minus_y:
        return vec4(v.x, -v.y, -v.z, 0.0f);
    case UpAxis::minus_z:
        return vec4(v.x, v.z, -v.y, 0.0f);
    }
    return v;
}

} // namespace

UpAxis standing_axis(const Extent& extent) {
    const auto on_lowest_hundredth = [&extent](float vec4::*axis, float sign) {
        float low = std::numeric_limits<float>::max();
        float high = std::numeric_limits<float>::lowest();
        for (const vec4& point : extent.points) {
            low = std::min(low, sign * (point.*axis));
            high = std::max(high, sign * (point.*axis));
        }
        const float ground = low + (high - low) * 0.01f;
        return std::count_if(extent.points.begin(), extent.points.end(),
                             [=](const vec4& point) { return sign * (point.*axis) <= ground; });
    };
    const bool is_clear =
        on_lowest_hundredth(&vec4::z, -1.0f) > 2 * on_lowest_hundredth(&vec4::y, 1.0f);
    return is_clear ? UpAxis::minus_z : UpAxis::y;
}

Axes axes_of(const Angle& angle) {
    const float around = angle.azimuth * degree;
    const float above = angle.elevation * degree;
    const vec4 right(std::cos(around), 0.0f, -std::sin(around), 0.0f);
    const vec4 up(-std::sin(above) * std::sin(around), std::cos(above),
                  -std::sin(above) * std::cos(around), 0.0f);
    const vec4 toward(std::cos(above) * std::sin(around), std::sin(above),
                      std::cos(above) * std::cos(around), 0.0f);
    return {turned_up(right, angle.up), turned_up(up, angle.up), turned_up(toward, angle.up)};
}

namespace {

/// A direction of the world as the camera sees it.
vec4 seen_from(const Axes& axes, const vec4& direction) {
    return vec4(dot(direction, axes.right), dot(direction, axes.up), dot(direction, axes.toward),
                0.0f);
}

float aspect_of(const Lens& lens) {
    return static_cast<float>(lens.width) / static_cast<float>(lens.height);
}

/// Half the opening upward, in radians, of a lens of zoom 1 or of its own.
float half_opening(float zoom) {
    return std::atan(std::tan(opening_degrees * degree / 2) / zoom);
}

/// The points as seen from the middle, with a side's slope: how far they reach to both sides of an
/// axis of the picture. A point touches the side of the view's pyramid when its distance from the
/// axis is to the rest of its way to the eye as the tangent of half the opening.
struct Reach {
    float tangent;
    float high = std::numeric_limits<float>::lowest();
    float low = std::numeric_limits<float>::lowest();

    void add(float aside, float toward) {
        high = std::max(high, aside + toward * tangent);
        low = std::max(low, -aside + toward * tangent);
    }
    /// The eye's distance with the axis moved to the middle of the reach, and left where it is.
    float tight_distance() const { return (high + low) / 2 / tangent; }
    float distance() const { return std::max(high, low) / tangent; }
    float shift() const { return (high - low) / 2; }
};

struct Reaches {
    Reach across;
    Reach upward;
    float nearest = std::numeric_limits<float>::lowest();

    /// What comes right at the eye, as the tip of a spear, touches no side of the picture: it stays
    /// behind the nearest clip plane that there is, at a hundredth of the eye's distance.
    float least_distance() const { return nearest * 1.02f; }
};

Reaches reaches_of(const Extent& extent, const Angle& angle, const Lens& lens) {
    const Axes axes = axes_of(angle);
    constexpr float used = 0.95f; // of the picture
    const float tangent = std::tan(half_opening(1.0f)) * used;
    Reaches reaches{.across = {tangent * aspect_of(lens)}, .upward = {tangent}};
    for (const vec4& point : extent.points) {
        const vec4 seen = seen_from(axes, difference(point, extent.middle));
        reaches.across.add(seen.x, seen.z);
        reaches.upward.add(seen.y, seen.z);
        reaches.nearest = std::max(reaches.nearest, seen.z);
    }
    return reaches;
}

/// A model of one point is seen from anywhere.
float at_least_a_bit(float distance) {
    return std::max(distance, 1e-6f);
}

} // namespace

Aim tight_aim(const Extent& extent, const Angle& angle, const Lens& lens) {
    if (extent.points.empty())
        return {};
    const Reaches reaches = reaches_of(extent, angle, lens);
    return {reaches.across.shift(), reaches.upward.shift(),
            at_least_a_bit(std::max({reaches.across.tight_distance(),
                                     reaches.upward.tight_distance(), reaches.least_distance()}))};
}

Aim middle_aim(const Extent& extent, const Angle& angle, const Lens& lens) {
    if (extent.points.empty())
        return {};
    const Reaches reaches = reaches_of(extent, angle, lens);
    return {0.0f, 0.0f,
            at_least_a_bit(std::max(
                {reaches.across.distance(), reaches.upward.distance(), reaches.least_distance()}))};
}

Aim turning_aim(const Extent& extent, const Angle& first, const Lens& lens, int views) {
    Aim all{0.0f, 0.0f, 0.0f};
    for (int view = 0; view < views; ++view) {
        Angle angle = first;
        angle.azimuth += 360.0f * static_cast<float>(view) / static_cast<float>(views);
        all.distance = std::max(all.distance, middle_aim(extent, angle, lens).distance);
    }
    return all;
}

namespace {

vec4 moved(const vec4& point, const vec4& axis, float way) {
    return vec4(point.x + axis.x * way, point.y + axis.y * way, point.z + axis.z * way, 1.0f);
}

} // namespace

Camera aimed(const Extent& extent, const Angle& angle, const Lens& lens, const Aim& aim) {
    const Axes axes = axes_of(angle);
    float nearest = std::numeric_limits<float>::lowest();
    float farthest = std::numeric_limits<float>::max();
    for (const vec4& point : extent.points) {
        const float depth = seen_from(axes, difference(point, extent.middle)).z;
        nearest = std::max(nearest, depth);
        farthest = std::min(farthest, depth);
    }
    const vec4 target = moved(moved(extent.middle, axes.right, aim.right), axes.up, aim.up);
    // A little before and behind it, so that rounding cuts nothing off.
    const float near_plane = std::max((aim.distance - nearest) * 0.99f, aim.distance * 0.01f);
    const float far_plane = std::max(aim.distance - farthest, near_plane) * 1.01f;
    Camera camera;
    camera.set_opening(2.0f * half_opening(lens.zoom) / degree);
    camera.set_clip(near_plane, far_plane);
    camera.look_at(moved(target, axes.toward, aim.distance), target, axes.up);
    return camera;
}

Camera see_all(const Extent& extent, const Angle& angle, const Lens& lens) {
    return aimed(extent, angle, lens, tight_aim(extent, angle, lens));
}

void fit_clip(Camera& camera, const Extent& extent) {
    const Pose pose = camera.pose();
    double nearest = std::numeric_limits<double>::max();
    double farthest = 0.0;
    for (const vec4& point : extent.points) {
        const Vector3 forward{pose[2][0], pose[2][1], pose[2][2]};
        const double depth = dot(forward, vector3_of(point)) + pose[2][3];
        nearest = std::min(nearest, depth);
        farthest = std::max(farthest, depth);
    }
    // Among what is to be seen, the eye sees from a ten thousandth of the way on.
    const double near_plane = std::max(nearest * 0.99, farthest * 1e-4);
    camera.set_clip(static_cast<float>(near_plane), static_cast<float>(farthest * 1.01));
}

} // namespace orvex::kit
