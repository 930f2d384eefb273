#pragma once

/// @file
/// The family of what only the fixed pipeline has: its matrices, lines, lights and materials.

#include "orvex/math/vec4.h"

namespace orvex {

struct GlState;

/// Speaks to the fixed pipeline. In a core context the API refuses these calls, each alone. What
/// each operation does is told in `Renderer`.
class FixedPipelineFamily {
public:
    explicit FixedPipelineFamily(GlState& state)
        : state(state) {}

    void load_matrices(const float* projection, const float* view, const float* model,
                       const float* texture);
    void load_identity(bool projection, bool modelview, bool texture);

    void set_line_width(float width);
    void set_line_stipple(int factor, unsigned short pattern);
    void render_line(const vec4& a, const vec4& a_color, const vec4& b, const vec4& b_color);

    void set_light_ambient(unsigned int light, const vec4& color);
    void set_light_diffuse(unsigned int light, const vec4& color);
    void set_light_specular(unsigned int light, const vec4& color);
    void set_material_ambient(const vec4& color);
    void set_material_diffuse(const vec4& color);
    void set_material_specular(const vec4& color);
    void set_material_shininess(float shininess);

private:
    GlState& state;
};

} // namespace orvex
