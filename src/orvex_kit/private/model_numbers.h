#pragma once

/// @file
/// Models drawn for their ids.

#include <cstddef>

#include <orvex/fwd.h>

namespace orvex::kit {

class Model;

/// What the ids of a model count on from.
struct FirstNumbers {
    std::size_t object = 0;
    std::size_t material = 0;
};

/// Sees the runs of faces of a model.
struct ModelNumbers {
    /// Draws them through the camera that is bound, by generic attributes, without blending, with
    /// the float uniforms `object_id` and `material_id`, -1 for none, and the int `first_face` of
    /// each.
    /// @return what the ids of the next model count on from
    static FirstNumbers draw(Model& model, orvex::Renderer& renderer, orvex::GpuProgram& program,
                             const FirstNumbers& first);
};

} // namespace orvex::kit
