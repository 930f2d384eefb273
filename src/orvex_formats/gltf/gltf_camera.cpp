#include "orvex_formats/gltf/private/gltf_camera.h"

#include <numbers>
#include <string>
#include <utility>

#include "orvex_formats/private/build_model.h"
#include "orvex_formats/private/viewpoint.h"

namespace orvex::formats {

namespace {

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
        return half_height != 0.0f && sees_something(view);
    }
    view.opening = sight.real("yfov", 0.0f) * 180.0f / std::numbers::pi_v<float>;
    view.aspect = sight.real("aspectRatio", 0.0f);
    return sees_something(view);
}

vec3 difference(const vec3& a, const vec3& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

/// Stands where a node puts it. @return whether that is anywhere
bool place(const GltfTransform& world, Viewpoint& view) {
    const vec3 eye = world.place({0.0f, 0.0f, 0.0f});
    return aim(view, eye, difference(world.place({0.0f, 0.0f, -1.0f}), eye),
               difference(world.place({0.0f, 1.0f, 0.0f}), eye));
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
