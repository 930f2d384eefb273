#include "orvex/renderer/opengl/private/renderer_opengl.h"

#include <algorithm>

#include "orvex/renderer/opengl/targets/private/render_target_opengl.h"
#include "orvex/renderer/opengl/window/private/window_platform.h"

namespace orvex {

// Ownership

RenderTarget* RendererOpenGL::create_render_target() {
    auto* const target = new RenderTargetOpenGL;
    target->_set_opengl_func(&gl);
    target->_set_opengl_ctx(&ctx);
    render_targets.push_back(target);
    return target;
}

bool RendererOpenGL::kill_render_target(RenderTarget* target) {
    const auto found = std::find(render_targets.begin(), render_targets.end(), target);
    if (found == render_targets.end())
        return false;
    target->kill();
    delete target;
    render_targets.erase(found);
    return true;
}

bool RendererOpenGL::kill_render_target(int id) {
    return kill_render_target(get_render_target(id));
}

bool RendererOpenGL::kill_all_render_targets() {
    for (RenderTarget* target : render_targets) {
        target->kill();
        delete target;
    }
    render_targets.clear();
    return false;
}

RenderTarget* RendererOpenGL::get_render_target(int id) {
    const auto found =
        std::find_if(render_targets.begin(), render_targets.end(),
                     [id](const RenderTarget* target) { return target->get_id() == id; });
    return found != render_targets.end() ? *found : nullptr;
}

void RendererOpenGL::leave_render_targets() {
    for (RenderTarget* target : render_targets) {
        auto* const left = static_cast<RenderTargetOpenGL*>(target);
        left->_set_opengl_func(nullptr);
        left->_set_opengl_ctx(nullptr);
    }
}

// Sampling. A rectangle takes the way of a 2D texture too: who samples one binds it himself.

bool RendererOpenGL::render_target_bind_color_tex(RenderTarget* target, int index,
                                                  unsigned long unit) {
    if (target == nullptr)
        return false;
    const unsigned int id = target->get_color_tex_id_opengl(index);
    return target->get_samples() < 1 ? texture_activate_rt(id, unit)
                                     : texture_activate_rt_ms(id, unit);
}

bool RendererOpenGL::render_target_bind_depth_tex(RenderTarget* target, unsigned long unit) {
    if (target == nullptr)
        return false;
    const unsigned int id = target->get_depth_tex_id_opengl();
    return target->get_samples() < 1 ? texture_activate_rt(id, unit)
                                     : texture_activate_rt_ms(id, unit);
}

// Framebuffers by id

void RendererOpenGL::fbo_bind(unsigned int id) {
    if (gl.glBindFramebuffer != nullptr)
        gl.glBindFramebuffer(GL_FRAMEBUFFER, id);
}

unsigned int RendererOpenGL::fbo_get_current_bound() {
    GLint id = 0;
    glGetIntegerv(GL_FRAMEBUFFER_BINDING, &id);
    return static_cast<unsigned int>(id);
}

bool RendererOpenGL::start_blit(unsigned int src, unsigned int dst) {
    if (!has_entries(gl.glBlitFramebuffer, gl.glBindFramebuffer) || src == dst)
        return false;
    gl.glBindFramebuffer(GL_READ_FRAMEBUFFER, src);
    gl.glBindFramebuffer(GL_DRAW_FRAMEBUFFER, dst);
    return true;
}

bool RendererOpenGL::fbo_copy_color_buffer(unsigned int src, unsigned int dst, int width,
                                           int height, unsigned long) {
    if (!start_blit(src, dst))
        return false;
    gl.glBlitFramebuffer(0, 0, width, height, 0, 0, width, height, GL_COLOR_BUFFER_BIT, GL_LINEAR);
    gl.glBindFramebuffer(GL_FRAMEBUFFER, 0);
    return true;
}

bool RendererOpenGL::fbo_copy_color_buffer_to_bound_fbo(unsigned int src, int width, int height,
                                                        unsigned long index) {
    return fbo_copy_color_buffer(src, fbo_get_current_bound(), width, height, index);
}

namespace {

struct DepthFormat {
    GLint bits = 0; ///< 0: there is no depth buffer
    GLint type = GL_NONE;

    bool differs_from(const DepthFormat& other) const {
        return bits != 0 && other.bits != 0 && (bits != other.bits || type != other.type);
    }
};

/// Of the framebuffer that is bound to the read or the draw target.
DepthFormat depth_format_of(PFNGLGETFRAMEBUFFERATTACHMENTPARAMETERIVPROC ask, GLenum target,
                            unsigned int fbo) {
    // The window's own buffers bear other names.
    const GLenum attachment = fbo == 0 ? GL_DEPTH : GL_DEPTH_ATTACHMENT;
    GLint object = GL_NONE;
    ask(target, attachment, GL_FRAMEBUFFER_ATTACHMENT_OBJECT_TYPE, &object);
    DepthFormat format;
    if (object != GL_NONE) {
        ask(target, attachment, GL_FRAMEBUFFER_ATTACHMENT_DEPTH_SIZE, &format.bits);
        ask(target, attachment, GL_FRAMEBUFFER_ATTACHMENT_COMPONENT_TYPE, &format.type);
    }
    return format;
}

// The API has this entry wherever it has the blit, so that the address alone is enough.
bool depth_formats_differ(unsigned int src, unsigned int dst) {
    const auto ask = reinterpret_cast<PFNGLGETFRAMEBUFFERATTACHMENTPARAMETERIVPROC>(
        window_platform().get_proc_address("glGetFramebufferAttachmentParameteriv"));
    return ask != nullptr && depth_format_of(ask, GL_READ_FRAMEBUFFER, src)
                                 .differs_from(depth_format_of(ask, GL_DRAW_FRAMEBUFFER, dst));
}

} // namespace

bool RendererOpenGL::fbo_blit(unsigned int src, int sx0, int sy0, int sx1, int sy1,
                              unsigned int dst, int dx0, int dy0, int dx1, int dy1, bool color,
                              bool depth) {
    if (!start_blit(src, dst))
        return false;
    const bool nearest = depth || (sx1 == dx1 && sy1 == dy1);
    GLbitfield mask = 0;
    if (color)
        mask |= GL_COLOR_BUFFER_BIT;
    // Depth buffers of two formats can't be copied, and the API then refuses the colours with them.
    if (depth && !(color && depth_formats_differ(src, dst)))
        mask |= GL_DEPTH_BUFFER_BIT;
    gl.glBlitFramebuffer(sx0, sy0, sx1, sy1, dx0, dy0, dx1, dy1, mask,
                         nearest ? GL_NEAREST : GL_LINEAR);
    gl.glBindFramebuffer(GL_FRAMEBUFFER, 0);
    return true;
}

bool RendererOpenGL::fbo_resolve_multisampling(unsigned int src, int width, int height,
                                               unsigned int dst, int dst_width, int dst_height) {
    return fbo_blit(src, 0, 0, width, height, dst, 0, 0, dst_width, dst_height, true, true);
}

} // namespace orvex
