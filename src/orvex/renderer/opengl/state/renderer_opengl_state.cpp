#include "orvex/renderer/opengl/private/renderer_opengl.h"

#include "orvex/renderer/opengl/gl/private/gl_enums.h"
#include "orvex/renderer/records/gpu_program_data.h"

namespace orvex {

namespace {

GLboolean gl_bool(bool value) {
    return value ? GL_TRUE : GL_FALSE;
}

void set_capability(GLenum capability, bool state) {
    if (state)
        glEnable(capability);
    else
        glDisable(capability);
}

void reset_rasterizer() {
    glDisable(GL_MULTISAMPLE);
    glDisable(GL_CULL_FACE);
    glCullFace(GL_BACK);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    glFrontFace(GL_CCW);
    glPolygonOffset(0.0f, 0.0f);
    glDisable(GL_POLYGON_OFFSET_POINT);
    glDisable(GL_POLYGON_OFFSET_LINE);
    glDisable(GL_POLYGON_OFFSET_FILL);
}

void reset_tests_and_blending() {
    glDisable(GL_SCISSOR_TEST);
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LESS);
    glDepthMask(GL_TRUE);
    glDisable(GL_STENCIL_TEST);
    glDisable(GL_BLEND);
    glBlendFunc(GL_ONE, GL_ONE);
}

unsigned long read_limit(GLenum name, GLint start_value) {
    GLint value = start_value;
    glGetIntegerv(name, &value);
    return value > 0 ? static_cast<unsigned long>(value) : 0;
}

} // namespace

bool RendererOpenGL::reset_render_states() {
    rasterizer_state.init();
    if (ctx.active_program != nullptr)
        ctx.active_program->remove_active_slot(&ctx.active_program);
    ctx.init();
    reset_rasterizer();
    reset_tests_and_blending();
    const unsigned long max_size = read_limit(GL_MAX_TEXTURE_SIZE, 0);
    ctx.init_texture_units(max_size, read_limit(GL_MAX_TEXTURE_IMAGE_UNITS, 1));
    glEnable(GL_DITHER);
    ctx.active_program_id = 0;
    if (gl.glUseProgram != nullptr)
        gl.glUseProgram(0);
    max_vertex_attribs = get_max_vertex_attribs();
    return true;
}

void RendererOpenGL::set_scissor(int x, int y, int width, int height) {
    glScissor(x, y, width, height);
}

void RendererOpenGL::set_scissor_state(bool state) {
    ctx.scissor_test = state;
    set_capability(GL_SCISSOR_TEST, state);
}

void RendererOpenGL::set_color_buffer_writing_state(bool state) {
    const GLboolean value = gl_bool(state);
    glColorMask(value, value, value, value);
}

void RendererOpenGL::set_depth_test_state(bool state) {
    ctx.depth_test = state;
    set_capability(GL_DEPTH_TEST, state);
}

void RendererOpenGL::set_depth_buffer_writing_state(bool state) {
    ctx.depth_write = state;
    glDepthMask(gl_bool(state));
}

void RendererOpenGL::set_depth_test_func(RENDERER_CMP_FUNC func) {
    ctx.depth_func = func;
    glDepthFunc(gl_cmp_func(func));
}

void RendererOpenGL::set_blend_state(bool state) {
    ctx.blend = state;
    set_capability(GL_BLEND, state);
}

void RendererOpenGL::set_blend_factors(RENDERER_BLEND_FACTOR src, RENDERER_BLEND_FACTOR dst) {
    ctx.blend_src = src;
    ctx.blend_dst = dst;
    glBlendFunc(gl_blend_factor(src), gl_blend_factor(dst));
}

void RendererOpenGL::set_depth_bias_factors(float factor, float units) {
    glPolygonOffset(factor, units);
}

void RendererOpenGL::set_depth_bias_state(bool state) {
    set_capability(GL_POLYGON_OFFSET_FILL, state);
}

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
    pending_rasterizer_state.depth_bias_factor = factor;
    pending_rasterizer_state.depth_bias_units = units;
    glPolygonOffset(factor, units);
}

void RendererOpenGL::rasterizer_apply_state() {
    const Renderer_Rasterizer_State& pending = pending_rasterizer_state;
    set_capability(GL_CULL_FACE, pending.cull_enabled);
    glCullFace(gl_polygon_face(pending.cull_face));
    glPolygonMode(gl_polygon_face(pending.polygon_face), gl_polygon_mode(pending.polygon_mode));
    set_capability(GL_MULTISAMPLE, pending.msaa_enabled);
    glPolygonOffset(pending.depth_bias_factor, pending.depth_bias_units);
    // The winding of front faces is never sent, so the live one stays as the reset left it.
    const bool front_ccw = rasterizer_state.front_ccw;
    rasterizer_state = pending;
    rasterizer_state.front_ccw = front_ccw;
}

void RendererOpenGL::finish_pipeline() {
    glFinish();
}

void RendererOpenGL::flush_pipeline() {
    glFlush();
}

} // namespace orvex
