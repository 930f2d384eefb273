#pragma once

/// @file
/// The drawing of an object with one of its materials, the same for meshes and polylines.

#include "orvex/assets/materials/material.h"
#include "orvex/renderer/records/gpu_program_data.h"
#include "orvex/renderer/renderer.h"
#include "orvex/scene/object.h"

namespace orvex {

/// Binds the material, which may be null, feeds the active program its matrices, draws the object's
/// geometry and unbinds the material.
inline void render_with_material(Object& object, Renderer& renderer, Material* material) {
    if (material)
        material->bind(&renderer);

    GpuProgramData* const program = renderer.gpu_program_get_active_program();
    const bool fixed_texturing = !program && material && material->get_num_textures() > 0;
    if (fixed_texturing)
        renderer.set_texture2d_state(true);
    object.render_apply_automatic_uniforms(&renderer, program,
                                           object.get_use_fixed_mvp_matrices_state());
    object.render_geometry(&renderer);

    if (material)
        material->unbind(&renderer);
    if (fixed_texturing)
        renderer.set_texture2d_state(false);
}

} // namespace orvex
