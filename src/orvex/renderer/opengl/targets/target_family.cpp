#include "orvex/renderer/opengl/targets/private/target_family.h"

#include <algorithm>
#include <utility>

#include "orvex/renderer/opengl/targets/private/render_target_opengl.h"
#include "orvex/renderer/opengl/window/private/window_platform.h"

// Targets live in a list, framebuffers by their ids. A blit binds both sides and leaves the
// window's framebuffer bound.

namespace orvex {

// The list

TargetFamily::TargetFamily(GlState& state)
    : state(state)
    , gl(state.gl) {}

TargetFamily::~TargetFamily() {
    for (std::unique_ptr<RenderTargetOpenGL>& target : list) {
        target->_set_opengl_func(nullptr);
        target->_set_opengl_ctx(nullptr);
        target->set_opengl_state(nullptr);
        // A host may still hold it; who deletes it then can't be known here.
        static_cast<void>(target.release());
    }
}

RenderTarget* TargetFamily::create() {
    auto target = std::make_unique<RenderTargetOpenGL>();
    target->_set_opengl_func(&state.gl);
    target->_set_opengl_ctx(&state.ctx);
    target->set_opengl_state(&state);
    list.push_back(std::move(target));
    return list.back().get();
}

RenderTarget* TargetFamily::find(int id) const {
    const auto found = std::find_if(list.begin(), list.end(),
                                    [id](const auto& target) { return target->get_id() == id; });
    return found != list.end() ? found->get() : nullptr;
}

bool TargetFamily::kill(RenderTarget* target) {
    const auto found = std::find_if(
        list.begin(), list.end(), [target](const auto& listed) { return listed.get() == target; });
    if (found == list.end())
        return false;
    target->kill();
    list.erase(found);
    return true;
}

void TargetFamily::kill_all() {
    for (std::unique_ptr<RenderTargetOpenGL>& target : list) {
        target->kill();
        target.reset();
    }
    list.clear();
}

// Framebuffers by id

void TargetFamily::bind(unsigned int id) const {
    if (gl.glBindFramebuffer)
        gl.glBindFramebuffer(GL_FRAMEBUFFER, actual(id));
}

unsigned int TargetFamily::actual(unsigned int id) const {
    return id != 0 ? id : state.ctx.window_framebuffer();
}

unsigned int TargetFamily::bound() const {
    GLint id = 0;
    glGetIntegerv(GL_FRAMEBUFFER_BINDING, &id);
    return static_cast<unsigned int>(id);
}

bool TargetFamily::start_blit(unsigned int src, unsigned int dst) const {
    if (!has_entries(gl.glBlitFramebuffer, gl.glBindFramebuffer) || src == dst)
        return false;
    gl.glBindFramebuffer(GL_READ_FRAMEBUFFER, src);
    gl.glBindFramebuffer(GL_DRAW_FRAMEBUFFER, dst);
    return true;
}

bool TargetFamily::copy_color(unsigned int src, unsigned int dst, int width, int height) const {
    src = actual(src);
    dst = actual(dst);
    if (!start_blit(src, dst))
        return false;
    gl.glBlitFramebuffer(0, 0, width, height, 0, 0, width, height, GL_COLOR_BUFFER_BIT, GL_LINEAR);
    gl.glBindFramebuffer(GL_FRAMEBUFFER, actual(0));
    return true;
}

namespace {

struct DepthFormat {
    GLint bits = 0; ///< 0: there is no depth buffer
    GLint type = GL_NONE;
    bool has_stencil = false; ///< one buffer with the depths

    // Depths beside a stencil are another format than the same depths alone.
    bool differs_from(const DepthFormat& other) const {
        return bits != 0 && other.bits != 0 &&
               (bits != other.bits || type != other.type || has_stencil != other.has_stencil);
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
        GLint stencil_bits = 0;
        ask(target, attachment, GL_FRAMEBUFFER_ATTACHMENT_STENCIL_SIZE, &stencil_bits);
        format.has_stencil = stencil_bits != 0;
    }
    return format;
}

// The API has this entry wherever it has the blit, so that the address alone is enough.
bool depth_formats_differ(unsigned int src, unsigned int dst) {
    const auto ask = reinterpret_cast<PFNGLGETFRAMEBUFFERATTACHMENTPARAMETERIVPROC>(
        window_platform().get_proc_address("glGetFramebufferAttachmentParameteriv"));
    return ask && depth_format_of(ask, GL_READ_FRAMEBUFFER, src)
                      .differs_from(depth_format_of(ask, GL_DRAW_FRAMEBUFFER, dst));
}

} // namespace

bool TargetFamily::blit(unsigned int src, int sx0, int sy0, int sx1, int sy1, unsigned int dst,
                        int dx0, int dy0, int dx1, int dy1, bool color, bool depth) const {
    src = actual(src);
    dst = actual(dst);
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
    gl.glBindFramebuffer(GL_FRAMEBUFFER, actual(0));
    return true;
}

} // namespace orvex
