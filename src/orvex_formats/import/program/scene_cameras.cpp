#include "orvex_formats/import/program/scene_cameras.h"

#include <cmath>
#include <numbers>
#include <utility>

#include <assimp/scene.h>

#include "orvex_formats/private/viewpoint.h"

namespace orvex::formats {

namespace {

constexpr float pi = std::numbers::pi_v<float>, degrees = 180.0f / pi;

/// Of the pictures that people make, where a file has none.
constexpr float usual_aspect = 16.0f / 9.0f;
/// Where sight begins, in a camera that says nothing of use.
constexpr float usual_near = 0.1f;

/// What assimp has for the opening of many cameras of COLLADA, whose own it loses: 45 degrees, once
/// too often brought to radians.
constexpr float usual_opening = pi / 4.0f, lost_opening = usual_opening / degrees;

bool is_lost(const aiCamera& camera) {
    return std::fabs(camera.mHorizontalFOV - lost_opening) < 1e-6f;
}

vec3 vector_of(const aiVector3D& vector) {
    return {vector.x, vector.y, vector.z};
}

/// Assimp has the whole opening from the left to the right, and half of a width.
bool read_sight(const aiCamera& camera, Viewpoint& view) {
    const bool has_aspect = camera.mAspect > 0.0f && std::isfinite(camera.mAspect);
    const float aspect = has_aspect ? camera.mAspect : usual_aspect;
    view.aspect = has_aspect ? aspect : 0.0f;
    view.near = camera.mClipPlaneNear;
    view.far = camera.mClipPlaneFar;
    if (camera.mOrthographicWidth != 0.0f) {
        view.aspect = aspect;
        view.height = 2.0f * camera.mOrthographicWidth / aspect;
        return view.height != 0.0f && sees_something(view);
    }
    if (!(view.near > 0.0f))
        view.near = usual_near;
    if (!(view.far > view.near) || !std::isfinite(view.far))
        view.far = 0.0f;
    const float opening = is_lost(camera) ? usual_opening : camera.mHorizontalFOV;
    view.opening = 2.0f * degrees * std::atan(std::tan(opening / 2.0f) / aspect);
    return sees_something(view);
}

bool place(const aiCamera& camera, const aiMatrix4x4& world, Viewpoint& view) {
    const aiMatrix3x3 turn(world);
    return aim(view, vector_of(world * camera.mPosition), vector_of(turn * camera.mLookAt),
               vector_of(turn * camera.mUp));
}

} // namespace

void add_cameras(const aiScene& scene, const SceneStands& stands, Draft& draft) {
    bool is_one_blind = false, is_one_lost = false;
    for (unsigned i = 0; i < scene.mNumCameras; ++i) {
        const aiCamera& camera = *scene.mCameras[i];
        const Stand* const stand = stands.find(camera.mName.C_Str());
        Viewpoint view;
        view.name = camera.mName.C_Str();
        if (stand && read_sight(camera, view) && place(camera, stand->world, view))
            draft.cameras.push_back(std::move(view));
        else
            is_one_blind = true;
        is_one_lost = is_one_lost || is_lost(camera);
    }
    if (is_one_lost)
        draft.notes.emplace_back("how wide cameras open was lost: they open by 45 degrees");
    if (is_one_blind)
        draft.notes.emplace_back("a camera that sees nothing was left out");
}

} // namespace orvex::formats
