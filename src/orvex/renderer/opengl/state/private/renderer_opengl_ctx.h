#pragma once

/// @file
/// The renderer's shadow of the API's state.

#include <memory>
#include <vector>

#include "orvex/fwd.h"
#include "orvex/math/mat4.h"
#include "orvex/renderer/renderer_types.h"

namespace orvex {

/// What one texture unit holds.
struct TextureUnit {
    unsigned int texture_id = 0; ///< last bound there, 0 for none
};

/// What the renderer last sent. It is a record, not a filter: no call is left out because of it,
/// and what is changed behind the renderer's back isn't noticed. Render targets hold a pointer to
/// it.
struct RendererOpenGLCtx {
    bool depth_test = false;
    bool depth_write = false;
    bool stencil_test = false;
    bool scissor_test = false;
    bool blend = false;
    bool dither = false;
    RENDERER_BLEND_FACTOR blend_src = BLEND_FACTOR_ZERO;
    RENDERER_BLEND_FACTOR blend_dst = BLEND_FACTOR_ZERO;
    RENDERER_CMP_FUNC depth_func = CMP_NEVER;
    unsigned int active_program_id = 0;
    GpuProgramData* active_program = nullptr;
    unsigned long max_texture_size = 0;
    unsigned long num_texture_units = 0;
    unsigned long active_texture_unit = 0;
    std::unique_ptr<TextureUnit[]> texture_units; ///< `num_texture_units` of them, or none
    int line_stipple_factor = 0;
    unsigned short line_stipple_pattern = 0;
    float line_width = 0.0f;
    mat4 projection_matrix;
    mat4 view_matrix;
    /// The renderer's windows; null for none.
    const std::vector<std::unique_ptr<RenderWindow>>* windows = nullptr;

    /// Gives the state its defaults; limits, texture units and matrices stay.
    void init();

    /// Stores the limits and makes `num_units` empty texture units.
    void init_texture_units(unsigned long max_size, unsigned long num_units);

    /// @return the framebuffer that stands for the window whose context is current: 0, its surface,
    ///         unless the host told another
    unsigned int window_framebuffer() const;

    /// Records the texture of a unit; a unit that isn't there is passed over.
    void set_texture_unit(unsigned long unit, unsigned int texture_id);
};

} // namespace orvex
