#pragma once

#include "orvex/gpu/gpu_program.h"
#include "orvex/renderer/records/gpu_program_data.h"
#include "orvex/renderer/renderer.h"

namespace orvex {

/// Unsets the names of the values that a shader doesn't read which reads the one matrix of all, as
/// a host has it: the driver is then not asked for them at each bind.
inline void unset_unused_names(Renderer& renderer, GpuProgram& program) {
    program.bind(&renderer);
    GpuProgramData* const data = renderer.gpu_program_get_active_program();
    data->set_model_matrix_uniform_name(nullptr);
    data->set_view_matrix_uniform_name(nullptr);
    data->set_projection_matrix_uniform_name(nullptr);
    data->set_model_view_matrix_uniform_name(nullptr);
    data->set_view_projection_matrix_uniform_name(nullptr);
    data->set_viewport_uniform_name(nullptr);
    program.unbind(&renderer);
}

} // namespace orvex
