// What the contract asks of the frame and of the shadow mapping passes, handed to their families.
// What a host calls once a frame looks at the context: it may have switched to another one.

#include "orvex/renderer/opengl/private/renderer_opengl.h"

namespace orvex {

// Clearing and reading

void RendererOpenGL::clear_color_buffer(float r, float g, float b, float a) {
    look_at_context();
    frame.clear_color(r, g, b, a);
}

void RendererOpenGL::clear_color_buffer(const vec4& color) {
    clear_color_buffer(color.x, color.y, color.z, color.w);
}

void RendererOpenGL::clear_depth_buffer(float depth) {
    look_at_context();
    frame.clear_depth(depth);
}

void RendererOpenGL::clear_color_depth_buffers(float r, float g, float b, float a, float depth) {
    look_at_context();
    frame.clear_color_and_depth(r, g, b, a, depth);
}

void RendererOpenGL::clear_color_depth_buffers(const vec4& color, float depth) {
    clear_color_depth_buffers(color.x, color.y, color.z, color.w, depth);
}

void RendererOpenGL::get_color_buffer_size(int* size, int* width, int* height) {
    frame.get_color_buffer_size(size, width, height);
}

void RendererOpenGL::get_color_buffer(unsigned char* pixels) {
    frame.get_color_buffer(pixels);
    look_for_loss(); // whoever shows no frames reads them
}

// Matrices and viewport

void RendererOpenGL::set_projection_matrix(mat4& matrix, bool apply) {
    look_at_context();
    frame.set_projection_matrix(matrix, apply);
}

mat4& RendererOpenGL::get_projection_matrix() {
    return ctx.projection_matrix;
}

void RendererOpenGL::set_view_matrix(mat4& matrix, bool apply) {
    frame.set_view_matrix(matrix, apply);
}

mat4& RendererOpenGL::get_view_matrix() {
    return ctx.view_matrix;
}

void RendererOpenGL::set_viewport(int x, int y, int width, int height) {
    look_at_context();
    frame.set_viewport(x, y, width, height);
}

void RendererOpenGL::get_viewport(int* x, int* y, int* width, int* height) {
    frame.get_viewport(x, y, width, height);
}

int* RendererOpenGL::get_viewport_ptr() {
    return frame.get_viewport_ptr();
}

// Pipeline

void RendererOpenGL::finish_pipeline() {
    frame.finish();
}

void RendererOpenGL::flush_pipeline() {
    frame.flush();
}

// Shadow mapping

void RendererOpenGL::shadow_mapping_enable_zpass_states() {
    shadows.enable_depth_pass();
}

void RendererOpenGL::shadow_mapping_disable_zpass_states() {
    shadows.disable_depth_pass();
}

void RendererOpenGL::shadow_mapping_prepare_light_pass(RenderTarget* target, unsigned int unit,
                                                       mat4& projection, mat4& view,
                                                       GpuProgramData* program) {
    shadows.prepare_light_pass(target, unit, projection, view, program);
}

void RendererOpenGL::shadow_mapping_finish_light_pass(RenderTarget* target, unsigned int unit) {
    shadows.finish_light_pass(target, unit);
}

} // namespace orvex
