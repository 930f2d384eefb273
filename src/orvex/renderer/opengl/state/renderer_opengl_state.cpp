// What the contract asks of render states and of the fixed pipeline, handed to their families.

#include "orvex/renderer/opengl/private/renderer_opengl.h"

namespace orvex {

bool RendererOpenGL::reset_render_states() {
    look_for_loss();
    states.reset();
    max_vertex_attribs = get_max_vertex_attribs();
    return true;
}

// Tests and blending

void RendererOpenGL::set_scissor(int x, int y, int width, int height) {
    states.set_scissor(x, y, width, height);
}

void RendererOpenGL::set_scissor_state(bool state) {
    states.set_scissor_state(state);
}

void RendererOpenGL::set_color_buffer_writing_state(bool state) {
    states.set_color_writing(state);
}

void RendererOpenGL::set_depth_test_state(bool state) {
    states.set_depth_test(state);
}

void RendererOpenGL::set_depth_buffer_writing_state(bool state) {
    states.set_depth_writing(state);
}

void RendererOpenGL::set_depth_test_func(RENDERER_CMP_FUNC func) {
    states.set_depth_func(func);
}

void RendererOpenGL::set_blend_state(bool state) {
    states.set_blend(state);
}

void RendererOpenGL::set_blend_factors(RENDERER_BLEND_FACTOR src, RENDERER_BLEND_FACTOR dst) {
    states.set_blend_factors(src, dst);
}

bool RendererOpenGL::set_blend_factors_separate(RENDERER_BLEND_FACTOR src_color,
                                                RENDERER_BLEND_FACTOR dst_color,
                                                RENDERER_BLEND_FACTOR src_alpha,
                                                RENDERER_BLEND_FACTOR dst_alpha) {
    return states.set_blend_factors_separate(src_color, dst_color, src_alpha, dst_alpha);
}

void RendererOpenGL::set_depth_bias_factors(float factor, float units) {
    states.set_depth_bias_factors(factor, units);
}

void RendererOpenGL::set_depth_bias_state(bool state) {
    states.set_depth_bias(state);
}

// The rasterizer: what is set is pending until it is applied.

void RendererOpenGL::rasterizer_set_cull_state(bool state) {
    pending_rasterizer_state.cull_enabled = state;
}

void RendererOpenGL::rasterizer_set_cull_face(RENDERER_POLYGON_FACE face) {
    pending_rasterizer_state.cull_face = face;
}

void RendererOpenGL::rasterizer_set_polygon_mode(RENDERER_POLYGON_FACE face,
                                                 RENDERER_POLYGON_MODE mode) {
    pending_rasterizer_state.polygon_face = face;
    pending_rasterizer_state.polygon_mode = mode;
}

void RendererOpenGL::rasterizer_set_msaa_state(bool state) {
    pending_rasterizer_state.msaa_enabled = state;
}

void RendererOpenGL::rasterizer_set_depth_bias(float factor, float units) {
    states.set_rasterizer_depth_bias(factor, units);
}

void RendererOpenGL::rasterizer_apply_state() {
    states.apply_rasterizer();
}

// The fixed pipeline

void RendererOpenGL::gl2_matrix_load(float* projection, float* view, float* model, float* texture) {
    if (!bound().is_keeping())
        return fixed_pipeline.load_matrices(projection, view, model, texture);
    if (!projection || !view || model || texture) {
        bound().forget_matrices();
        bound().settle_unit();
        return fixed_pipeline.load_matrices(projection, view, model, texture);
    }
    // Both are known or none is: once they are, the mode is that of the second.
    const bool has_projection = bound().has_projection(projection);
    const bool has_view = bound().has_model_view(view);
    if (!has_projection)
        fixed_pipeline.load_matrices(projection, view, nullptr, nullptr);
    else if (!has_view)
        glLoadMatrixf(view);
}

void RendererOpenGL::gl2_matrix_load_identity(bool projection, bool modelview, bool texture) {
    fixed_pipeline.load_identity(projection, modelview, texture);
}

void RendererOpenGL::set_line_width(float width) {
    fixed_pipeline.set_line_width(width);
}

void RendererOpenGL::set_line_stipple(int factor, unsigned short pattern) {
    fixed_pipeline.set_line_stipple(factor, pattern);
}

void RendererOpenGL::render_line(const vec4& a, const vec4& a_color, const vec4& b,
                                 const vec4& b_color) {
    fixed_pipeline.render_line(a, a_color, b, b_color);
}

void RendererOpenGL::light_set_colors(unsigned int light, const vec4& ambient, const vec4& diffuse,
                                      const vec4& specular) {
    light_set_ambient(light, ambient);
    light_set_diffuse(light, diffuse);
    light_set_specular(light, specular);
}

void RendererOpenGL::light_set_ambient(unsigned int light, const vec4& color) {
    fixed_pipeline.set_light_ambient(light, color);
}

void RendererOpenGL::light_set_diffuse(unsigned int light, const vec4& color) {
    fixed_pipeline.set_light_diffuse(light, color);
}

void RendererOpenGL::light_set_specular(unsigned int light, const vec4& color) {
    fixed_pipeline.set_light_specular(light, color);
}

void RendererOpenGL::material_set_colors(const vec4& ambient, const vec4& diffuse,
                                         const vec4& specular, float shininess) {
    if (bound().has_colors(ambient, diffuse, specular, shininess))
        return;
    material_set_ambient(ambient);
    material_set_diffuse(diffuse);
    material_set_specular(specular);
    material_set_shininess(shininess);
    bound().colors_were_sent();
}

void RendererOpenGL::material_set_ambient(const vec4& color) {
    bound().forget_colors();
    fixed_pipeline.set_material_ambient(color);
}

void RendererOpenGL::material_set_diffuse(const vec4& color) {
    bound().forget_colors();
    fixed_pipeline.set_material_diffuse(color);
}

void RendererOpenGL::material_set_specular(const vec4& color) {
    bound().forget_colors();
    fixed_pipeline.set_material_specular(color);
}

void RendererOpenGL::material_set_shininess(float shininess) {
    bound().forget_colors();
    fixed_pipeline.set_material_shininess(shininess);
}

} // namespace orvex
