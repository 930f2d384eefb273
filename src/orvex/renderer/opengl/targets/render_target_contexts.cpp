#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

#include "orvex/base/private/memory_out.h"
#include "orvex/renderer/opengl/state/private/gl_state.h"
#include "orvex/renderer/opengl/targets/private/render_target_opengl.h"

// The step of a target from one context into another. What is drawn into it there is drawn anew in
// each frame, so that a target is made with its form and size, and without its content.

namespace orvex {

// What is bound

/// Puts back at its end what a target binds as it is made.
class RenderTargetOpenGL::BindingsKept {
public:
    explicit BindingsKept(RenderTargetOpenGL& target)
        : target(target)
        , gl(*target.gl) {
        active_unit = read(GL_ACTIVE_TEXTURE);
        for (std::size_t unit = 0; unit < num_units(); ++unit) {
            gl.glActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(unit));
            textures[unit] = read(binding());
        }
        gl.glActiveTexture(active_unit);
        draw_framebuffer = read(GL_DRAW_FRAMEBUFFER_BINDING);
        read_framebuffer = read(GL_READ_FRAMEBUFFER_BINDING);
        render_buffer = read(GL_RENDERBUFFER_BINDING);
        if (target.ctx && target.ctx->texture_units && target.ctx->num_texture_units > 0)
            noted_texture = target.ctx->texture_units[0].texture_id;
    }

    ~BindingsKept() {
        for (std::size_t unit = 0; unit < num_units(); ++unit) {
            gl.glActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(unit));
            glBindTexture(target.form_target(), textures[unit]);
        }
        gl.glActiveTexture(active_unit);
        gl.glBindFramebuffer(GL_DRAW_FRAMEBUFFER, draw_framebuffer);
        gl.glBindFramebuffer(GL_READ_FRAMEBUFFER, read_framebuffer);
        if (gl.glBindRenderbuffer)
            gl.glBindRenderbuffer(GL_RENDERBUFFER, render_buffer);
        if (target.ctx)
            target.ctx->set_texture_unit(0, noted_texture);
    }

    BindingsKept(const BindingsKept&) = delete;
    BindingsKept& operator=(const BindingsKept&) = delete;

private:
    RenderTargetOpenGL& target;
    const ORVEX_Renderer_OpenGL_Func& gl;
    GLuint active_unit = 0;
    GLuint textures[max_colors] = {};
    GLuint draw_framebuffer = 0;
    GLuint read_framebuffer = 0;
    GLuint render_buffer = 0;
    unsigned int noted_texture = 0;

    static GLuint read(GLenum name) {
        GLint value = 0;
        glGetIntegerv(name, &value);
        return static_cast<GLuint>(value);
    }

    std::size_t num_units() const { return std::max(target.num_color_textures, 1UL); }

    GLenum binding() const {
        switch (target.form_target()) {
        case GL_TEXTURE_RECTANGLE:
            return GL_TEXTURE_BINDING_RECTANGLE;
        case GL_TEXTURE_2D_MULTISAMPLE:
            return GL_TEXTURE_BINDING_2D_MULTISAMPLE;
        default:
            return GL_TEXTURE_BINDING_2D;
        }
    }
};

// What the step finds

bool RenderTargetOpenGL::has_elsewhere() const {
    return !framebuffers_elsewhere.empty() || !objects_elsewhere.empty();
}

/// Whether a host's contexts share can't always be told: there the names decide.
bool RenderTargetOpenGL::has_textures_here() const {
    if (state->context().group->is_apart_from(group_kinship))
        return false;
    std::vector<GLuint> ids(std::begin(color_textures), std::end(color_textures));
    ids.push_back(depth_texture);
    std::erase(ids, 0U);
    return !ids.empty() && std::all_of(ids.begin(), ids.end(),
                                       [](GLuint id) { return glIsTexture(id) == GL_TRUE; });
}

// The step

void RenderTargetOpenGL::put_framebuffer_aside() {
    if (fbo != 0)
        framebuffers_elsewhere.push_back({context, std::exchange(fbo, 0U)});
    std::erase_if(framebuffers_elsewhere, [](const FramebufferElsewhere& framebuffer) {
        return !contexts::find(framebuffer.context);
    });
}

void RenderTargetOpenGL::put_objects_aside() {
    if (has_objects()) {
        ObjectsElsewhere kept{group, {}, width, height};
        std::copy(std::begin(render_buffers), std::end(render_buffers),
                  kept.objects.render_buffers);
        std::copy(std::begin(color_textures), std::end(color_textures),
                  kept.objects.color_textures);
        kept.objects.depth_render_buffer = depth_render_buffer;
        kept.objects.depth_texture = depth_texture;
        objects_elsewhere.push_back(kept);
    }
    std::erase_if(objects_elsewhere, [](const ObjectsElsewhere& objects) {
        return !contexts::find_group(objects.group);
    });
}

void RenderTargetOpenGL::take_objects_up(unsigned long long group_number) {
    const auto kept = std::find_if(
        objects_elsewhere.begin(), objects_elsewhere.end(),
        [&](const ObjectsElsewhere& objects) { return objects.group == group_number; });
    const bool any = kept != objects_elsewhere.end();
    const ObjectsElsewhere taken = any ? *kept : ObjectsElsewhere();
    std::copy(std::begin(taken.objects.render_buffers), std::end(taken.objects.render_buffers),
              render_buffers);
    std::copy(std::begin(taken.objects.color_textures), std::end(taken.objects.color_textures),
              color_textures);
    color_texture = color_textures[0];
    depth_render_buffer = taken.objects.depth_render_buffer;
    depth_texture = taken.objects.depth_texture;
    if (!any)
        return;
    objects_elsewhere.erase(kept);
    if ((taken.width != width || taken.height != height) && can_resize()) {
        const BindingsKept bindings(*this);
        resize_render_buffers();
        resize_textures();
    }
}

void RenderTargetOpenGL::take_framebuffer_up(unsigned long long context_number) {
    const auto kept = std::find_if(framebuffers_elsewhere.begin(), framebuffers_elsewhere.end(),
                                   [&](const FramebufferElsewhere& framebuffer) {
                                       return framebuffer.context == context_number;
                                   });
    if (kept == framebuffers_elsewhere.end())
        return;
    fbo = kept->id;
    framebuffers_elsewhere.erase(kept);
}

void RenderTargetOpenGL::step_into(const ContextState& here) {
    const bool was_made = context != 0;
    if (was_made) {
        // What needs memory comes before the first change.
        framebuffers_elsewhere.reserve(framebuffers_elsewhere.size() + 1);
        objects_elsewhere.reserve(objects_elsewhere.size() + 1);
        put_framebuffer_aside();
    }
    const bool same_group = group == here.group->number || (was_made && has_textures_here());
    if (was_made && !same_group) {
        put_objects_aside();
        take_objects_up(here.group->number);
    }
    if (!same_group) {
        group = here.group->number;
        group_kinship = here.group->kinship;
    }
    take_framebuffer_up(here.number);
    context = here.number;
    unmade = was_made && form != Form::none && fbo == 0;
}

void RenderTargetOpenGL::enter_context() {
    // Nothing can be done where the renderer was stopped or the context was lost.
    if (!state || !gl || !gl->glBindFramebuffer)
        return;
    BoundState::restore_on_thread();
    state->look_at_context();
    if (context != state->context().number)
        step_into(state->context());
}

void RenderTargetOpenGL::bury_elsewhere() {
    for (const FramebufferElsewhere& framebuffer : framebuffers_elsewhere)
        contexts::bury_framebuffer(framebuffer.context, framebuffer.id);
    for (const ObjectsElsewhere& elsewhere : objects_elsewhere) {
        const Objects& objects = elsewhere.objects;
        // What there is no memory for stays until its context ends.
        or_false([&] {
            BuriedObjects buried;
            buried.textures.assign(std::begin(objects.color_textures),
                                   std::end(objects.color_textures));
            buried.textures.push_back(objects.depth_texture);
            buried.render_buffers.assign(std::begin(objects.render_buffers),
                                         std::end(objects.render_buffers));
            buried.render_buffers.push_back(objects.depth_render_buffer);
            std::erase(buried.textures, 0U);
            std::erase(buried.render_buffers, 0U);
            contexts::bury(elsewhere.group, buried);
            return true;
        });
    }
    framebuffers_elsewhere.clear();
    objects_elsewhere.clear();
}

// What is missing

/// A framebuffer over the textures and render buffers, which another context has brought.
void RenderTargetOpenGL::make_framebuffer() {
    if (!bind_own())
        return;
    switch (form) {
    case Form::none:
        break;
    case Form::textures:
        attach_textures(form_target());
        break;
    case Form::depth:
        attach_depth(form_target());
        break;
    case Form::render_buffers:
        attach_render_buffers();
        break;
    }
}

void RenderTargetOpenGL::make_here() {
    switch (form) {
    case Form::none:
        break;
    case Form::textures:
        make_texture_target(form_target());
        break;
    case Form::depth:
        make_depth_target(form_target());
        break;
    case Form::render_buffers:
        make_render_buffer_target();
        break;
    }
}

void RenderTargetOpenGL::enter_and_make() {
    enter_context();
    if (!unmade)
        return;
    const bool can_make = form == Form::render_buffers
                              ? can_make_render_buffers() && gl->glActiveTexture
                              : can_make_textures(samples);
    if (!can_make)
        return;
    const BindingsKept bindings(*this);
    if (has_objects()) {
        make_framebuffer();
    } else {
        make_here();
        // Without memory for all of it the next use tries anew.
        if (fbo == 0)
            delete_objects();
    }
    unmade = fbo == 0;
}

} // namespace orvex
