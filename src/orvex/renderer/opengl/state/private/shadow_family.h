#pragma once

/// @file
/// The family of the shadow mapping passes.

#include "orvex/fwd.h"
#include "orvex/math/mat4.h"
#include "orvex/renderer/renderer_types.h"

namespace orvex {

struct GlState;

/// Sets the states of the two passes: depth as the light sees it, then light where it falls. What
/// each operation does is told in `Renderer`.
class ShadowFamily {
public:
    explicit ShadowFamily(GlState& state)
        : state(state) {}

    void enable_depth_pass();
    void disable_depth_pass();
    void prepare_light_pass(RenderTarget* target, unsigned int unit, const mat4& projection,
                            const mat4& view, GpuProgramData* program);
    void finish_light_pass(RenderTarget* target, unsigned int unit);

private:
    GlState& state;
};

} // namespace orvex
