#pragma once

/// @file
/// The family of render states: tests, blending, the rasterizer, and their reset.

#include "orvex/renderer/renderer_rasterizer_state.h"
#include "orvex/renderer/renderer_types.h"

namespace orvex {

struct GlState;

/// Sends the switches of the pipeline and notes them in the shadow of the state. What each
/// operation does is told in `Renderer`.
///
/// Those of the rasterizer are collected first: the setters write `pending`, and `apply_rasterizer`
/// sends all of it at once. The shadow is a record, not a filter: no call is left out because of
/// it.
class RenderStateFamily {
public:
    explicit RenderStateFamily(GlState& state)
        : state(state) {}

    /// Gives the API, the shadow and the live rasterizer state their defaults; what is pending
    /// stays. No program is active afterwards.
    void reset();

    void set_scissor(int x, int y, int width, int height);
    void set_scissor_state(bool enabled);
    void set_color_writing(bool enabled);
    void set_depth_test(bool enabled);
    void set_depth_writing(bool enabled);
    void set_depth_func(RENDERER_CMP_FUNC func);
    void set_blend(bool enabled);
    void set_blend_factors(RENDERER_BLEND_FACTOR src, RENDERER_BLEND_FACTOR dst);
    /// The colours' factors are noted.
    bool set_blend_factors_separate(RENDERER_BLEND_FACTOR src_color,
                                    RENDERER_BLEND_FACTOR dst_color,
                                    RENDERER_BLEND_FACTOR src_alpha,
                                    RENDERER_BLEND_FACTOR dst_alpha);
    void set_depth_bias_factors(float factor, float units);
    void set_depth_bias(bool enabled);

    /// Notes the factors as pending, and sends them at once all the same.
    void set_rasterizer_depth_bias(float factor, float units);
    void apply_rasterizer();

    Renderer_Rasterizer_State live;    ///< what the API holds
    Renderer_Rasterizer_State pending; ///< what will be applied

private:
    GlState& state;
};

} // namespace orvex
