// The cameras of a model, as values of the kit.

#include <algorithm>

#include <orvex/scene/camera.h>

#include "orvex_kit/private/model_data.h"

namespace orvex::kit {

namespace {

constexpr float nowhere = -1.0f; ///< a far plane of the engine's that isn't there

/// The near plane of a camera without perspective may lie in the eye.
void set_clip(Camera& camera, float near, float far) {
    camera.set_clip(std::max(near, far * 1e-6f), far);
}

/// Its sides are told by its matrix alone.
void set_parallel(const orvex::Camera& told, Camera& camera) {
    const float* const matrix = told.get_projection_matrix_float_ptr();
    camera.set_parallel(2.0f / matrix[5]);
    set_clip(camera, (matrix[14] + 1.0f) / matrix[10], (matrix[14] - 1.0f) / matrix[10]);
}

void set_perspective(const orvex::Camera& told, const Extent& extent, Camera& camera) {
    camera.set_opening(told.get_fov());
    if (told.get_zfar() != nowhere) {
        set_clip(camera, told.get_znear(), told.get_zfar());
        return;
    }
    fit_clip(camera, extent);
    set_clip(camera, told.get_znear(), std::max(camera.far(), 2.0f * told.get_znear()));
}

Camera as_value(const orvex::Camera& told, const Extent& extent) {
    Camera camera;
    const vec4 eye = told.get_position(), forward = told.get_view_vector();
    const vec4 target(eye.x + forward.x, eye.y + forward.y, eye.z + forward.z, 1.0f);
    camera.look_at(eye, target, told.get_up_vector());
    if (told.is_perspective_projection())
        set_perspective(told, extent, camera);
    else
        set_parallel(told, camera);
    return camera;
}

} // namespace

void Model::Data::tell_of_cameras() {
    for (const orvex::Camera* camera : cameras)
        facts.cameras.push_back(
            {camera->get_name() ? camera->get_name() : "", as_value(*camera, facts.extent)});
}

} // namespace orvex::kit
