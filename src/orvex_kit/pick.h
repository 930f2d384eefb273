#pragma once

/// @file
/// What is met by a ray.

#include <array>
#include <cstddef>

#include <orvex/math/vec3.h>

namespace orvex::kit {

/// A place on a face of a model, as `Model::pick` finds it.
struct Pick {
    std::size_t mesh = 0;             ///< in `Model::meshes`
    std::size_t face = 0;             ///< of the mesh
    int material = -1;                ///< in `Model::materials`; -1 for none
    std::array<float, 3> barycentric; ///< shares of the face's corners; each 0 to 1, together 1
    double distance = 0.0;            ///< from the ray's origin, in lengths of its direction
    orvex::vec3 point;                ///< in the world
};

} // namespace orvex::kit
