#pragma once

/// @file
/// The private record of an object.

#include <vector>

#include "math/mat4.h"
#include "math/vec4.h"
#include "scene/object.h"
#include "scene/tripod.h"

namespace orvex {

struct Object::ObjectData {
    Tripod tripod;
    bool build_state = true;
    mat4 projection_matrix;
    mat4 view_matrix;
    vec4 absolute_position;
    mat4 absolute_transform;
    GpuProgram* gpu_program = nullptr; ///< counted
    vec4 tripod_size{2.0f, 2.0f, 2.0f, 1.0f};
    bool display_tripod_state = false;
    bool use_fixed_mvp_matrices = true;
    std::vector<Material*> materials; ///< each counted, in order of adding
    vec4 bounding_sphere_center;
    float bounding_sphere_radius = 0.0f;
    bool bounding_sphere_inscribed = false;
};

} // namespace orvex
