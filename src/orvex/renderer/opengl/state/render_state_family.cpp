// Operations say their states to the API at once; the rasterizer's other values wait for
// `apply_rasterizer`. A reset says them all, whatever they were before.

#include "orvex/renderer/opengl/state/private/render_state_family.h"

#include "orvex/renderer/opengl/gl/private/gl_enums.h"
#include "orvex/renderer/opengl/state/private/gl_state.h"
#include "orvex/renderer/opengl/window/private/window_platform.h"
#include "orvex/renderer/records/gpu_program_data.h"

namespace orvex {

namespace {

GLboolean gl_bool(bool value) {
    return value ? GL_TRUE : GL_FALSE;
}

void set_capability(GLenum capability, bool enabled) {
    if (enabled)
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

/// Where the API lacks the constant it writes nothing: the start value stays.
unsigned long read_limit(GLenum name, GLint start_value) {
    GLint value = start_value;
    glGetIntegerv(name, &value);
    return value > 0 ? static_cast<unsigned long>(value) : 0;
}

} // namespace

void RenderStateFamily::reset() {
    RendererOpenGLCtx& ctx = state.ctx;
    live.init();
    if (ctx.active_program)
        ctx.active_program->remove_active_slot(&ctx.active_program);
    ctx.init();

    // The calls, in the order of the shadow's defaults.
    reset_rasterizer();
    reset_tests_and_blending();
    const unsigned long max_size = read_limit(GL_MAX_TEXTURE_SIZE, 0);
    ctx.init_texture_units(max_size, read_limit(GL_MAX_TEXTURE_IMAGE_UNITS, 1));
    glEnable(GL_DITHER);
    ctx.active_program_id = 0;
    if (state.gl.glUseProgram)
        state.gl.glUseProgram(0);
}

// Tests and blending

void RenderStateFamily::set_scissor(int x, int y, int width, int height) {
    glScissor(x, y, width, height);
}

void RenderStateFamily::set_scissor_state(bool enabled) {
    state.ctx.scissor_test = enabled;
    set_capability(GL_SCISSOR_TEST, enabled);
}

void RenderStateFamily::set_color_writing(bool enabled) {
    const GLboolean value = gl_bool(enabled);
    glColorMask(value, value, value, value);
}

void RenderStateFamily::set_depth_test(bool enabled) {
    state.ctx.depth_test = enabled;
    set_capability(GL_DEPTH_TEST, enabled);
}

void RenderStateFamily::set_depth_writing(bool enabled) {
    state.ctx.depth_write = enabled;
    glDepthMask(gl_bool(enabled));
}

void RenderStateFamily::set_depth_func(RENDERER_CMP_FUNC func) {
    state.ctx.depth_func = func;
    glDepthFunc(gl_cmp_func(func));
}

void RenderStateFamily::set_blend(bool enabled) {
    state.ctx.blend = enabled;
    set_capability(GL_BLEND, enabled);
}

void RenderStateFamily::set_blend_factors(RENDERER_BLEND_FACTOR src, RENDERER_BLEND_FACTOR dst) {
    state.ctx.blend_src = src;
    state.ctx.blend_dst = dst;
    glBlendFunc(gl_blend_factor(src), gl_blend_factor(dst));
}

bool RenderStateFamily::set_blend_factors_separate(RENDERER_BLEND_FACTOR src_color,
                                                   RENDERER_BLEND_FACTOR dst_color,
                                                   RENDERER_BLEND_FACTOR src_alpha,
                                                   RENDERER_BLEND_FACTOR dst_alpha) {
    // Not of the table, whose entries are told one by one at a start.
    const auto blend = reinterpret_cast<PFNGLBLENDFUNCSEPARATEPROC>(
        state.gl.ready ? window_platform().get_proc_address("glBlendFuncSeparate") : nullptr);
    if (!blend)
        return false;
    state.ctx.blend_src = src_color;
    state.ctx.blend_dst = dst_color;
    blend(gl_blend_factor(src_color), gl_blend_factor(dst_color), gl_blend_factor(src_alpha),
          gl_blend_factor(dst_alpha));
    return true;
}

void RenderStateFamily::set_depth_bias_factors(float factor, float units) {
    glPolygonOffset(factor, units);
}

void RenderStateFamily::set_depth_bias(bool enabled) {
    set_capability(GL_POLYGON_OFFSET_FILL, enabled);
}

// The rasterizer

void RenderStateFamily::set_rasterizer_depth_bias(float factor, float units) {
    pending.depth_bias_factor = factor;
    pending.depth_bias_units = units;
    glPolygonOffset(factor, units);
}

void RenderStateFamily::apply_rasterizer() {
    set_capability(GL_CULL_FACE, pending.cull_enabled);
    glCullFace(gl_polygon_face(pending.cull_face));
    glPolygonMode(gl_polygon_face(pending.polygon_face), gl_polygon_mode(pending.polygon_mode));
    set_capability(GL_MULTISAMPLE, pending.msaa_enabled);
    glPolygonOffset(pending.depth_bias_factor, pending.depth_bias_units);
    // The winding of front faces is never sent, so the live one stays as the reset left it.
    const bool front_ccw = live.front_ccw;
    live = pending;
    live.front_ccw = front_ccw;
}

} // namespace orvex
