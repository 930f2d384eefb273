#pragma once

/// @file
/// The private record of an object.

#include <vector>

#include "orvex/math/mat4.h"
#include "orvex/math/vec4.h"
#include "orvex/scene/object.h"
#include "orvex/scene/tripod.h"

namespace orvex {

/// The fields that a frame reads stand first.
struct Object::ObjectData {
    std::vector<Material*> materials; ///< each counted, in order of adding
    Tripod tripod;
    bool use_fixed_mvp_matrices = true;
    bool display_tripod_state = false;
    bool build_state = true;
    bool bounding_sphere_inscribed = false;
    mat4 absolute_transform;
    GpuProgram* gpu_program = nullptr; ///< counted
    vec4 absolute_position;
    float bounding_sphere_radius = 0.0f;
    vec4 bounding_sphere_center;
    vec4 tripod_size{2.0f, 2.0f, 2.0f, 1.0f};
    mat4 projection_matrix;
    mat4 view_matrix;
};

} // namespace orvex
