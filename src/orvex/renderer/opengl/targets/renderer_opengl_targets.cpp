#include "orvex/renderer/opengl/private/renderer_opengl.h"

#include "orvex/renderer/render_target.h"

// The render targets of the contract, handed on to their family. What samples one is made of
// operations on textures, and stays here.

namespace orvex {

// Ownership

RenderTarget* RendererOpenGL::create_render_target() {
    return targets.create();
}

bool RendererOpenGL::kill_render_target(RenderTarget* target) {
    return targets.kill(target);
}

bool RendererOpenGL::kill_render_target(int id) {
    return kill_render_target(get_render_target(id));
}

bool RendererOpenGL::kill_all_render_targets() {
    targets.kill_all();
    return false;
}

RenderTarget* RendererOpenGL::get_render_target(int id) {
    return targets.find(id);
}

// Sampling. A rectangle takes the way of a 2D texture too: who samples one binds it himself.

bool RendererOpenGL::render_target_bind_color_tex(RenderTarget* target, int index,
                                                  unsigned long unit) {
    if (!target)
        return false;
    const unsigned int id = target->get_color_tex_id_opengl(index);
    return target->get_samples() < 1 ? texture_activate_rt(id, unit)
                                     : texture_activate_rt_ms(id, unit);
}

bool RendererOpenGL::render_target_bind_depth_tex(RenderTarget* target, unsigned long unit) {
    if (!target)
        return false;
    const unsigned int id = target->get_depth_tex_id_opengl();
    return target->get_samples() < 1 ? texture_activate_rt(id, unit)
                                     : texture_activate_rt_ms(id, unit);
}

// Framebuffers by id

void RendererOpenGL::fbo_bind(unsigned int id) {
    targets.bind(id);
}

unsigned int RendererOpenGL::fbo_get_current_bound() {
    return targets.bound();
}

bool RendererOpenGL::fbo_copy_color_buffer(unsigned int src, unsigned int dst, int width,
                                           int height, unsigned long) {
    return targets.copy_color(src, dst, width, height);
}

bool RendererOpenGL::fbo_copy_color_buffer_to_bound_fbo(unsigned int src, int width, int height,
                                                        unsigned long index) {
    return fbo_copy_color_buffer(src, fbo_get_current_bound(), width, height, index);
}

bool RendererOpenGL::fbo_blit(unsigned int src, int sx0, int sy0, int sx1, int sy1,
                              unsigned int dst, int dx0, int dy0, int dx1, int dy1, bool color,
                              bool depth) {
    return targets.blit(src, sx0, sy0, sx1, sy1, dst, dx0, dy0, dx1, dy1, color, depth);
}

bool RendererOpenGL::fbo_resolve_multisampling(unsigned int src, int width, int height,
                                               unsigned int dst, int dst_width, int dst_height) {
    return fbo_blit(src, 0, 0, width, height, dst, 0, 0, dst_width, dst_height, true, true);
}

} // namespace orvex
