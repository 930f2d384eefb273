#include "orvex/renderer/opengl/state/private/renderer_opengl_ctx.h"

#include "orvex/renderer/opengl/window/private/render_window_opengl.h"

namespace orvex {

void RendererOpenGLCtx::init() {
    depth_test = true;
    depth_write = true;
    stencil_test = false;
    scissor_test = false;
    blend = false;
    dither = true;
    blend_src = BLEND_FACTOR_ONE;
    blend_dst = BLEND_FACTOR_ONE;
    depth_func = CMP_LESS;
    active_program_id = 0;
    active_program = nullptr;
    line_stipple_factor = 1;
    line_stipple_pattern = 0xF0F0;
    line_width = 1.0f;
}

void RendererOpenGLCtx::init_texture_units(unsigned long max_size, unsigned long num_units) {
    max_texture_size = max_size;
    num_texture_units = num_units;
    texture_units = std::make_unique<TextureUnit[]>(num_units);
    active_texture_unit = 0;
}

unsigned int RendererOpenGLCtx::window_framebuffer() const {
    const RenderWindowOpenGL* last_told = nullptr;
    if (!windows)
        return 0;
    for (const std::unique_ptr<RenderWindow>& window : *windows) {
        const auto* const candidate = static_cast<const RenderWindowOpenGL*>(window.get());
        // Nobody is asked what is current while every window is its surface.
        if (candidate->told_framebuffer_after(last_told) && candidate->is_context_current())
            last_told = candidate;
    }
    return last_told ? last_told->get_framebuffer() : 0;
}

void RendererOpenGLCtx::set_texture_unit(unsigned long unit, unsigned int texture_id) {
    if (texture_units && unit < num_texture_units)
        texture_units[unit].texture_id = texture_id;
}

} // namespace orvex
