#include "renderer/opengl/renderer_opengl.h"

namespace orvex {

RenderTarget* RendererOpenGL::create_render_target() {
    return nullptr;
}

bool RendererOpenGL::kill_render_target(RenderTarget*) {
    return false;
}

bool RendererOpenGL::kill_render_target(int) {
    return false;
}

bool RendererOpenGL::kill_all_render_targets() {
    return false;
}

RenderTarget* RendererOpenGL::get_render_target(int) {
    return nullptr;
}

bool RendererOpenGL::render_target_bind_color_tex(RenderTarget*, int, unsigned long) {
    return false;
}

bool RendererOpenGL::render_target_bind_depth_tex(RenderTarget*, unsigned long) {
    return false;
}

void RendererOpenGL::fbo_bind(unsigned int) {}

unsigned int RendererOpenGL::fbo_get_current_bound() {
    return 0;
}

bool RendererOpenGL::fbo_copy_color_buffer(unsigned int, unsigned int, int, int, unsigned long) {
    return false;
}

bool RendererOpenGL::fbo_copy_color_buffer_to_bound_fbo(unsigned int, int, int, unsigned long) {
    return false;
}

bool RendererOpenGL::fbo_blit(unsigned int, int, int, int, int, unsigned int, int, int, int, int,
                              bool, bool) {
    return false;
}

bool RendererOpenGL::fbo_resolve_multisampling(unsigned int, int, int, unsigned int, int, int) {
    return false;
}

} // namespace orvex
