#include "orvex_formats/gltf/private/gltf_camera.h"

#include <cmath>
#include <numbers>
#include <string>
#include <utility>

#include "orvex_formats/private/build_model.h"

namespace orvex::formats {

namespace {

bool is_above_zero(float number) {
    return number > 0.0f && std::isfinite(number);
}

/// Reads how a camera sees. @return whether it sees anything
bool read_sight(const Json& camera, Viewpoint& view) {
    const bool is_parallel = camera.text("type") == "orthographic";
    const Json sight = camera.object(is_parallel ? "orthographic" : "perspective");
    view.near = sight.real("znear", 0.0f);
    view.far = sight.real("zfar", 0.0f);
    if (is_parallel) {
        const float half_width = sight.real("xmag", 0.0f), half_height = sight.real("ymag", 0.0f);
        view.height = 2.0f * half_height;
        view.aspect = half_width / half_height;
        return is_above_zero(view.height) && is_above_zero(view.aspect) && view.near >= 0.0f &&
               view.far > view.near;
    }
    view.opening = sight.real("yfov", 0.0f) * 180.0f / std::numbers::pi_v<float>;
    view.aspect = sight.real("aspectRatio", 0.0f);
    return is_above_zero(view.opening) && view.opening < 180.0f && view.aspect >= 0.0f &&
           view.near > 0.0f && (view.far == 0.0f || view.far > view.near);
}

vec3 difference(const vec3& a, const vec3& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

float dot(const vec3& a, const vec3& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

/// @return whether there is one
bool make_unit(vec3& vector) {
    const float length = std::sqrt(dot(vector, vector));
    if (!is_above_zero(length))
        return false;
    vector = {vector.x / length, vector.y / length, vector.z / length};
    return true;
}

/// Stands where a node puts it. @return whether that is anywhere
bool place(const GltfTransform& world, Viewpoint& view) {
    const vec3 eye = world.place({0.0f, 0.0f, 0.0f});
    vec3 forward = difference(world.place({0.0f, 0.0f, -1.0f}), eye);
    vec3 up = difference(world.place({0.0f, 1.0f, 0.0f}), eye);
    if (!make_unit(forward) || !std::isfinite(dot(eye, eye)))
        return false;
    // Nodes may be askew.
    const float along = dot(forward, up);
    up = difference(up, {forward.x * along, forward.y * along, forward.z * along});
    if (!make_unit(up))
        return false;
    view.eye = eye;
    view.forward = forward;
    view.up = up;
    return true;
}

} // namespace

void GltfCameras::add(const Json& node, const GltfTransform& world) {
    const Json camera = cameras.at(node.index("camera", cameras.size(), "cameras"));
    budget.take(size_of_node, node);
    Viewpoint view;
    view.name = camera.text("name", node.text("name"));
    if (!read_sight(camera, view) || !place(world, view))
        notes.add(camera, "a camera that sees nothing was left out");
    else
        draft.cameras.push_back(std::move(view));
}

} // namespace orvex::formats
