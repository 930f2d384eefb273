#include "orvex/renderer/opengl/targets/private/render_target_opengl.h"

#include <algorithm>

#include "orvex/renderer/opengl/gl/private/gl_enums.h"
#include "orvex/renderer/opengl/state/private/renderer_opengl_ctx.h"
#include "orvex/renderer/opengl/textures/private/texture_parameters.h"

// The ways to make a target, and to give it another size. Each create ends what was there, stores
// the sizes, makes textures or buffers, attaches them, asks whether that is complete, and leaves
// the window's framebuffer bound.

namespace orvex {

// Before the first call of a create: everything it needs is there, and nothing is left behind.

bool RenderTargetOpenGL::can_make_textures(int wanted_samples) const {
    return gl &&
           has_entries(gl->glActiveTexture, gl->glGenFramebuffers, gl->glBindFramebuffer,
                       gl->glFramebufferTexture2D, gl->glDrawBuffers,
                       gl->glCheckFramebufferStatus) &&
           (wanted_samples < 1 || gl->glTexImage2DMultisample);
}

bool RenderTargetOpenGL::can_make_render_buffers() const {
    return gl && has_entries(gl->glGenRenderbuffers, gl->glBindRenderbuffer,
                             gl->glRenderbufferStorage, gl->glRenderbufferStorageMultisample,
                             gl->glGenFramebuffers, gl->glBindFramebuffer,
                             gl->glFramebufferRenderbuffer, gl->glCheckFramebufferStatus);
}

bool RenderTargetOpenGL::start_over(bool rectangle_textures) {
    enter_context();
    if ((has_objects() || has_elsewhere()) && !kill())
        return false;
    unmade = false;
    rectangle = rectangle_textures;
    samples = 0;
    return true;
}

// Textures

namespace {

void set_sampling(GLenum target, GLint filter, GLint wrap) {
    set_texture_filters(target, filter, filter);
    glTexParameteri(target, GL_TEXTURE_WRAP_S, wrap);
    glTexParameteri(target, GL_TEXTURE_WRAP_T, wrap);
}

GLenum texture_target(int samples) {
    return samples < 1 ? GL_TEXTURE_2D : GL_TEXTURE_2D_MULTISAMPLE;
}

} // namespace

GLenum RenderTargetOpenGL::form_target() const {
    return rectangle ? GL_TEXTURE_RECTANGLE : texture_target(samples);
}

void RenderTargetOpenGL::store_texture(GLenum target, int stored_samples, GLint internal,
                                       GLint pixels, GLint type) const {
    if (stored_samples >= 1) {
        gl->glTexImage2DMultisample(target, stored_samples, static_cast<GLenum>(internal), width,
                                    height, GL_FALSE);
        return;
    }
    glTexImage2D(target, 0, internal, width, height, 0, static_cast<GLenum>(pixels),
                 static_cast<GLenum>(type), nullptr);
}

void RenderTargetOpenGL::store_depth_texture(GLenum target, int stored_samples) const {
    store_texture(target, stored_samples, GL_DEPTH_COMPONENT32, GL_DEPTH_COMPONENT, GL_FLOAT);
}

bool RenderTargetOpenGL::make_color_texture(GLenum target, std::size_t index) {
    gl->glActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(index));
    glGenTextures(1, &color_textures[index]);
    if (color_textures[index] == 0)
        return give_up();
    glBindTexture(target, color_textures[index]);
    label(GL_TEXTURE, color_textures[index], "color", index);
    if (texture_samples >= 1)
        limit_to_base_level(target);
    store_texture(target, texture_samples, internal_format, format, pixel_type);
    set_sampling(target, color_filter, color_wrap);
    return true;
}

bool RenderTargetOpenGL::make_depth_texture(GLenum target) {
    glGenTextures(1, &depth_texture);
    if (depth_texture == 0)
        return give_up();
    glBindTexture(target, depth_texture);
    label(GL_TEXTURE, depth_texture, "depth");
    limit_to_base_level(target);
    set_sampling(target, depth_filter, depth_wrap);
    store_depth_texture(target, texture_samples);
    return true;
}

bool RenderTargetOpenGL::make_textures(GLenum target) {
    for (std::size_t i = 0; i < num_color_textures; ++i)
        if (!make_color_texture(target, i))
            return false;
    color_texture = color_textures[0];
    return make_depth_texture(target);
}

void RenderTargetOpenGL::attach_textures(GLenum target) const {
    GLenum attachments[max_colors] = {};
    for (std::size_t i = 0; i < num_color_textures; ++i) {
        attachments[i] = GL_COLOR_ATTACHMENT0 + static_cast<GLenum>(i);
        gl->glFramebufferTexture2D(GL_FRAMEBUFFER, attachments[i], target, color_textures[i], 0);
    }
    gl->glDrawBuffers(static_cast<GLsizei>(num_color_textures), attachments);
    gl->glFramebufferTexture2D(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, target, depth_texture, 0);
}

void RenderTargetOpenGL::leave(GLenum target) {
    deactivate();
    glBindTexture(target, 0);
    if (ctx)
        ctx->set_texture_unit(0, 0);
}

bool RenderTargetOpenGL::_create_target(GLenum target, int new_width, int new_height,
                                        PIXEL_FORMAT pixel_format, unsigned long num_textures,
                                        bool linear, bool clamp, int new_samples) {
    const GlPixelFormat pixels = gl_pixel_format(pixel_format);
    width = new_width;
    height = new_height;
    num_color_textures = std::min<unsigned long>(num_textures, max_colors);
    texture_samples = new_samples;
    color_filter = linear && texture_samples == 0 ? GL_LINEAR : GL_NEAREST;
    color_wrap = clamp ? GL_CLAMP : GL_REPEAT;
    depth_filter = color_filter;
    depth_wrap = GL_CLAMP;
    internal_format = pixels.internal_format;
    format = static_cast<int>(pixels.format);
    pixel_type = static_cast<int>(pixels.type);
    form = Form::textures;
    return make_texture_target(target);
}

bool RenderTargetOpenGL::make_texture_target(GLenum target) {
    const bool has_names = make_textures(target) && (bind_own() || give_up());
    if (!has_names) {
        leave(target);
        return false;
    }
    gl->glBindFramebuffer(GL_FRAMEBUFFER, fbo);
    attach_textures(target);
    const bool complete = check_status("RenderTargetOpenGL");
    gl->glBindFramebuffer(GL_DRAW_FRAMEBUFFER, window_framebuffer());
    leave(target);
    return complete;
}

bool RenderTargetOpenGL::create_target_v2(int new_width, int new_height, PIXEL_FORMAT pixel_format,
                                          unsigned long num_textures, bool, bool linear, bool clamp,
                                          int new_samples) {
    if (!can_make_textures(new_samples) || !start_over(false))
        return false;
    samples = new_samples;
    return _create_target(texture_target(new_samples), new_width, new_height, pixel_format,
                          num_textures, linear, clamp, new_samples);
}

bool RenderTargetOpenGL::create_target(int new_width, int new_height, PIXEL_FORMAT pixel_format,
                                       bool, bool linear, bool clamp, int new_samples) {
    return create_target_v2(new_width, new_height, pixel_format, 1, false, linear, clamp,
                            new_samples);
}

// A rectangle is never multisampled: the API refuses the samples, and they aren't kept.
bool RenderTargetOpenGL::create_target_rect_v2(int new_width, int new_height,
                                               PIXEL_FORMAT pixel_format,
                                               unsigned long num_textures, bool, bool linear,
                                               bool clamp, int new_samples) {
    if (!can_make_textures(new_samples) || !start_over(true))
        return false;
    return _create_target(GL_TEXTURE_RECTANGLE, new_width, new_height, pixel_format, num_textures,
                          linear, clamp, new_samples);
}

bool RenderTargetOpenGL::create_target_rect(int new_width, int new_height,
                                            PIXEL_FORMAT pixel_format, bool, bool linear,
                                            bool clamp, int new_samples) {
    return create_target_rect_v2(new_width, new_height, pixel_format, 1, false, linear, clamp,
                                 new_samples);
}

// Depth alone

void RenderTargetOpenGL::attach_depth(GLenum target) const {
    gl->glFramebufferTexture2D(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, target, depth_texture, 0);
    glDrawBuffer(GL_NONE);
    glReadBuffer(GL_NONE);
}

bool RenderTargetOpenGL::_create_target_depth(GLenum target, int new_width, int new_height,
                                              bool linear) {
    width = new_width;
    height = new_height;
    depth_filter = linear ? GL_LINEAR : GL_NEAREST;
    depth_wrap = GL_CLAMP;
    form = Form::depth;
    return make_depth_target(target);
}

bool RenderTargetOpenGL::make_depth_target(GLenum target) {
    gl->glActiveTexture(GL_TEXTURE0);
    glGenTextures(1, &depth_texture);
    if (depth_texture == 0)
        return give_up();
    glBindTexture(target, depth_texture);
    label(GL_TEXTURE, depth_texture, "depth");
    store_depth_texture(target, 0);
    set_sampling(target, depth_filter, depth_wrap);
    // It goes to the unit's 2D texture, also for a rectangle.
    glTexParameteri(GL_TEXTURE_2D, GL_DEPTH_TEXTURE_MODE, GL_LUMINANCE);
    if (!bind_own()) {
        leave(target);
        return give_up();
    }
    gl->glBindFramebuffer(GL_FRAMEBUFFER, fbo);
    attach_depth(target);
    const bool complete = check_status("RenderTargetOpenGL::create_target_depth()");
    leave(target);
    return complete;
}

bool RenderTargetOpenGL::create_target_depth(int new_width, int new_height, bool linear, bool) {
    return can_make_textures(0) && start_over(false) &&
           _create_target_depth(GL_TEXTURE_2D, new_width, new_height, linear);
}

bool RenderTargetOpenGL::create_target_depth_rect(int new_width, int new_height, bool linear,
                                                  bool) {
    return can_make_textures(0) && start_over(true) &&
           _create_target_depth(GL_TEXTURE_RECTANGLE, new_width, new_height, linear);
}

// Render buffers

namespace {

// Two formats name an order of channels, which is no storage: the API refuses them.
int render_buffer_format(PIXEL_FORMAT pixel_format) {
    switch (pixel_format) {
    case PF_RGB_U8:
        return GL_RGB8;
    case PF_BGR_U8:
        return GL_BGR;
    case PF_BGRA_U8:
        return GL_BGRA;
    default:
        return gl_pixel_format(pixel_format).internal_format;
    }
}

int max_samples() {
    GLint value = -1;
    glGetIntegerv(GL_MAX_SAMPLES, &value);
    return value;
}

} // namespace

void RenderTargetOpenGL::store_render_buffer(unsigned int id, GLenum internal) const {
    gl->glBindRenderbuffer(GL_RENDERBUFFER, id);
    if (samples < 1) {
        gl->glRenderbufferStorage(GL_RENDERBUFFER, internal, width, height);
        return;
    }
    gl->glRenderbufferStorageMultisample(GL_RENDERBUFFER, samples, internal, width, height);
}

bool RenderTargetOpenGL::make_render_buffers() {
    gl->glGenRenderbuffers(static_cast<GLsizei>(num_render_buffers), render_buffers);
    if (std::find(render_buffers, render_buffers + num_render_buffers, 0U) !=
        render_buffers + num_render_buffers)
        return give_up();
    for (std::size_t i = 0; i < num_render_buffers; ++i) {
        store_render_buffer(render_buffers[i], static_cast<GLenum>(internal_format));
        label(GL_RENDERBUFFER, render_buffers[i], "color", i);
    }
    gl->glGenRenderbuffers(1, &depth_render_buffer);
    if (depth_render_buffer == 0)
        return give_up();
    store_render_buffer(depth_render_buffer, GL_DEPTH_COMPONENT);
    label(GL_RENDERBUFFER, depth_render_buffer, "depth");
    return true;
}

void RenderTargetOpenGL::attach_render_buffers() const {
    for (std::size_t i = 0; i < num_render_buffers; ++i) {
        gl->glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0 + static_cast<GLenum>(i),
                                      GL_RENDERBUFFER, render_buffers[i]);
    }
    gl->glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER,
                                  depth_render_buffer);
}

bool RenderTargetOpenGL::create_render_buffer_target(int new_width, int new_height,
                                                     PIXEL_FORMAT pixel_format, bool,
                                                     unsigned long num_buffers, bool,
                                                     int new_samples) {
    if (!can_make_render_buffers() || !start_over(false))
        return false;
    width = new_width;
    height = new_height;
    internal_format = render_buffer_format(pixel_format);
    samples = std::min(new_samples, max_samples());
    num_render_buffers = std::min<unsigned long>(num_buffers, max_colors);
    form = Form::render_buffers;
    return make_render_buffer_target();
}

bool RenderTargetOpenGL::make_render_buffer_target() {
    const bool has_names = make_render_buffers() && (bind_own() || give_up());
    if (!has_names)
        return false;
    attach_render_buffers();
    const bool complete = check_status("RenderTargetOpenGL");
    gl->glBindFramebuffer(GL_FRAMEBUFFER, window_framebuffer());
    return complete;
}

// Another size

void RenderTargetOpenGL::resize_render_buffers() const {
    for (const unsigned int id : render_buffers)
        if (id != 0)
            store_render_buffer(id, static_cast<GLenum>(internal_format));
    if (depth_render_buffer != 0)
        store_render_buffer(depth_render_buffer, GL_DEPTH_COMPONENT);
}

void RenderTargetOpenGL::resize_textures() const {
    const GLenum target = form_target();
    for (const unsigned int id : color_textures) {
        if (id != 0) {
            glBindTexture(target, id);
            store_texture(target, samples, internal_format, format, pixel_type);
        }
    }
    if (depth_texture != 0) {
        glBindTexture(target, depth_texture);
        store_depth_texture(target, samples);
    }
}

bool RenderTargetOpenGL::can_resize() const {
    if (!gl)
        return false;
    return (depth_render_buffer == 0 ||
            has_entries(gl->glBindRenderbuffer, gl->glRenderbufferStorage,
                        gl->glRenderbufferStorageMultisample)) &&
           (samples < 1 || depth_texture == 0 || gl->glTexImage2DMultisample);
}

bool RenderTargetOpenGL::resize(int new_width, int new_height) {
    enter_context();
    if (!can_resize())
        return false;
    width = new_width;
    height = new_height;
    resize_render_buffers();
    resize_textures();
    return true;
}

} // namespace orvex
