#include "orbit.h"

#include <algorithm>
#include <cmath>

#include <orvex/math/quat.h>
#include <orvex/scene/camera.h>
#include <orvex_kit/model.h>

using namespace orvex;
using namespace orvex::kit;

namespace {

constexpr float degrees_per_pixel = 0.25f;
constexpr float first_yaw = 24.0f;
constexpr float first_pitch = -18.0f;
// The camera turns no further where it meets its own limits, which lie at 80 degrees.
constexpr float steepest = 79.0f;

} // namespace

Orbit::Orbit(const vec4& center, float distance)
    : eye(new orvex::Camera)
    , center(center)
    , first_distance(distance) {
    reset();
}

Orbit::~Orbit() {
    eye->release(nullptr, nullptr);
}

void Orbit::reset() {
    distance = first_distance;
    right = 0.0f;
    down = 0.0f;
    eye->init_rotate_position_around_point(first_pitch, first_yaw, 0, 0);
}

void Orbit::drag(float more_right, float more_down) {
    right += more_right;
    down = std::clamp(down + more_down, (-steepest + first_pitch) / degrees_per_pixel,
                      (steepest + first_pitch) / degrees_per_pixel);
}

void Orbit::recede(float factor) {
    distance = std::clamp(distance * factor, first_distance / 10, first_distance * 10);
}

/// The camera adds up the way of the mouse, and turns by the whole of it each time: it starts from
/// straight ahead, then. It stays where it is, so that moving it to its distance is left to do.
orvex::Camera& Orbit::camera(int width, int height) {
    eye->set_orientation(quat());
    eye->rotate_position_around_point_by_mouse(center, static_cast<int>(std::lround(-down)),
                                               static_cast<int>(std::lround(right)),
                                               degrees_per_pixel);
    const vec4 ahead = eye->get_view_vector();
    eye->set_position(vec4(center.x - ahead.x * distance, center.y - ahead.y * distance,
                           center.z - ahead.z * distance, 1.0f));
    eye->set_viewport(0, 0, width, height);
    eye->build_projection_persp(35.0f, static_cast<float>(width) / static_cast<float>(height),
                                distance / 100, distance * 10, true);
    return *eye;
}

/// Framed in a square, so that a window of any shape shows at least as much.
std::unique_ptr<Orbit> orbit_around(const kit::Model& scene) {
    constexpr int views_of_a_turn = 36;
    const Aim aim = turning_aim(scene.extent(), {first_yaw, -first_pitch}, {1, 1}, views_of_a_turn);
    return std::make_unique<Orbit>(scene.extent().middle, aim.distance);
}
