#pragma once

/// @file
/// The private record of an object.

#include <cstddef>
#include <memory>
#include <unordered_map>
#include <vector>

#include "orvex/math/mat4.h"
#include "orvex/math/vec4.h"
#include "orvex/scene/object.h"
#include "orvex/scene/tripod.h"

namespace orvex {

/// What a frame reads of an object.
struct ObjectFrameData {
    std::vector<Material*> materials; ///< each counted, in order of adding
    Tripod tripod;
    bool use_fixed_mvp_matrices = true;
    bool display_tripod_state = false;
    bool build_state = true;
    bool bounding_sphere_inscribed = false;
    mat4 absolute_transform;
};
static_assert(sizeof(ObjectFrameData) <= 112,
              "more than two lines of the cache, in half of all objects");

struct Object::ObjectData : ObjectFrameData {
    /// Bytes at its beginning that `draw_ahead` asks for.
    static constexpr std::size_t hot_bytes = sizeof(ObjectFrameData);

    static const ObjectData& of(const Object& object) { return *object.object_data; }

    GpuProgram* gpu_program = nullptr; ///< counted
    /// The materials by id, once there are so many that a search in the list would tell; else null.
    std::unique_ptr<std::unordered_map<int, Material*>> material_by_id;

    /// Appends a material. Throws `std::bad_alloc` with nothing changed.
    void list(Material* material);
    vec4 absolute_position;
    float bounding_sphere_radius = 0.0f;
    vec4 bounding_sphere_center;
    vec4 tripod_size{2.0f, 2.0f, 2.0f, 1.0f};
    mat4 projection_matrix;
    mat4 view_matrix;
};

} // namespace orvex
