#pragma once

#include "orvex/renderer/renderer_types.h"

namespace orvex {

/// How polygons become pixels: a plain record that the back end keeps twice, once for what the API
/// holds and once for what `Renderer::rasterizer_apply_state` will send.
struct Renderer_Rasterizer_State {
    RENDERER_POLYGON_MODE polygon_mode = POLYGON_MODE_FILL;           ///< filled, lines or points
    RENDERER_POLYGON_FACE polygon_face = POLYGON_FACE_FRONT_AND_BACK; ///< what the mode applies to
    RENDERER_POLYGON_FACE cull_face = POLYGON_FACE_BACK; ///< the side left out when culling
    bool cull_enabled = false;                           ///< whether faces are left out at all
    bool front_ccw = true;                               ///< front faces are counter-clockwise
    /// Constant part of the bias, in the smallest steps that the depth buffer tells apart.
    float depth_bias_units = 0.0f;
    float depth_bias_factor = 0.0f; ///< factor of the polygon's slope
    bool msaa_enabled = false;      ///< whether samples of a multisample target are used

    /// Gives every field its default: filled polygons on both sides, no culling, no bias, no
    /// multisampling.
    void init() { *this = Renderer_Rasterizer_State(); }
};

} // namespace orvex
