#include "orvex/renderer/opengl/window/private/render_window_opengl.h"

#include <cstring>

#include <GL/gl.h>

#include "orvex/base/log_mgr.h"
#include "orvex/renderer/opengl/gl/private/gl_debug.h"
#include "orvex/renderer/opengl/gl/private/gl_functions.h"
#include "orvex/renderer/opengl/state/private/bound_state.h"
#include "orvex/renderer/opengl/state/private/context_loss.h"
#include "orvex/renderer/opengl/state/private/contexts.h"
#include "orvex/renderer/opengl/window/private/render_window_opengl_data.h"
#include "orvex/renderer/private/render_window_data.h"

// The context of a window: a request goes to the platform, and what comes back is made current,
// presented, resized and released here. Without a context each operation gives its failure value.

namespace orvex {

namespace {

int samples_of(const char* msaa) {
    struct Row {
        const char* name;
        int samples;
    };
    static constexpr Row rows[] = {{"Off", 0}, {"2X MSAA", 2}, {"4X MSAA", 4}, {"8X MSAA", 8}};
    if (!msaa)
        return 0;
    for (const Row& row : rows)
        if (std::strcmp(row.name, msaa) == 0)
            return row.samples;
    return 0;
}

/// The part of a request that both ways of creating a context share.
ContextRequest to_request(void* view, int width, int height, const char* msaa,
                          RenderWindow_ExtraData& extra) {
    extra.core_profile = extra.gl_major >= 3;
    ContextRequest request;
    request.profile = extra.core_profile ? CONTEXT_PROFILE_CORE_3_2 : CONTEXT_PROFILE_LEGACY;
    request.gl_major = extra.gl_major;
    request.gl_minor = extra.gl_minor;
    request.double_buffer = !extra.software_renderer;
    request.software_renderer = extra.software_renderer;
    request.color_bits = extra.color_bits;
    request.depth_bits = extra.depth_bits;
    request.samples = samples_of(msaa);
    request.view = view;
    request.width = width;
    request.height = height;
    request.debug = gl_debug_wanted();
    request.robust = extra.reset_notification;
    request.device = extra.device;
    return request;
}

} // namespace

bool RenderWindowOpenGL::create_context(ContextRequest& request, RenderWindow* parent) {
    BoundState::restore_on_thread();
    data_osx->software_renderer = request.software_renderer;
    request.display = data_osx->display;
    if (const auto* sharing = parent ? RenderWindowData::of(*parent).opengl : nullptr)
        request.share = sharing->data_osx->context.get();
    request.former = data_osx->context.get();
    std::unique_ptr<PlatformContext> context = platform.create_context(request);
    if (!context)
        return false;
    set_context(std::move(context), false);
    return true;
}

void RenderWindowOpenGL::set_context(std::unique_ptr<PlatformContext> context, bool adopted) {
    data_osx->lock = context_lock_of(context->native());
    data_osx->context = std::move(context);
    data_osx->adopted = adopted;
}

bool RenderWindowOpenGL::is_context_current() const {
    return data_osx->context && data_osx->context->is_current();
}

bool RenderWindowOpenGL::osx_create_cgl_context(void* view, int width, int height, const char* msaa,
                                                RenderWindow* parent,
                                                RenderWindow_ExtraData* extra) {
    RenderWindow_ExtraData defaults;
    ContextRequest request = to_request(view, width, height, msaa, extra ? *extra : defaults);
    return create_context(request, parent);
}

bool RenderWindowOpenGL::osx_create_cocoa_nsgl_context(void* view, int width, int height,
                                                       const char* msaa, RenderWindow* parent,
                                                       RenderWindow_ExtraData* extra) {
    RenderWindow_ExtraData defaults;
    RenderWindow_ExtraData& wanted = extra ? *extra : defaults;
    ContextRequest request = to_request(view, width, height, msaa, wanted);
    request.stencil_bits = wanted.stencil_bits;
    return create_context(request, parent);
}

bool RenderWindowOpenGL::adopt_context(void* context) {
    BoundState::restore_on_thread();
    const bool has_own = data_osx->context && !data_osx->adopted;
    // A context that the window made stays its own. While it is current there is no other to adopt,
    // and taken for the host's it would end under its own feet.
    if (has_own && data_osx->context->handle() == context)
        return true;
    if (has_own && data_osx->context->is_current())
        return false;

    std::unique_ptr<PlatformContext> adopted = platform.adopt_current_context(context);
    // An OpenGL that isn't the engine's may have made the context: nothing would ever be drawn.
    if (!adopted || !glGetString(GL_VERSION))
        return false;
    contexts::adopted(adopted->native());
    set_context(std::move(adopted), true);
    read_version();
    return true;
}

bool RenderWindowOpenGL::osx_init_with_cocoa_nsgl_ctx(void* context) {
    if (!context || !adopt_context(context))
        return false;
    data_osx->swap_apple = _orvex_get_proc_address("glSwapAPPLE");
    int major = 0;
    int minor = 0;
    platform.get_version(major, minor);
    LogMgr::get()->tracef_debug("MacOSX/Cocoa GL render window - CGL version: %d.%d", major, minor);
    data->init_ok = true;
    return true;
}

bool RenderWindowOpenGL::osx_kill_context() {
    BoundState::restore_on_thread();
    data_osx->swap_apple = nullptr;
    data_osx->context.reset();
    data_osx->lock.reset();
    return true;
}

bool RenderWindowOpenGL::osx_apply_context(bool state) {
    if (!data_osx->context)
        return false;
    BoundState::restore_on_thread();
    const bool done =
        state ? data_osx->context->make_current() : data_osx->context->release_current();
    contexts::switched();
    return done;
}

bool RenderWindowOpenGL::osx_display_framebuffer() {
    if (!data_osx->context)
        return false;
    BoundState::restore_on_thread();
    if (data_osx->software_renderer)
        glFlush();
    const bool alive = data_osx->context->present();
    const std::shared_ptr<ContextState> state = contexts::of(data_osx->context->native());
    if (!alive)
        note_loss(*state, "the window system");
    else if (is_context_current())
        look_for_loss(*state);
    return true;
}

bool RenderWindowOpenGL::osx_vsync(bool state) {
    if (!data_osx->context)
        return false;
    data_osx->context->set_swap_interval(state ? 1 : 0);
    return true;
}

bool RenderWindowOpenGL::osx_update_current_virtual_screen_ctx() {
    return data_osx->context && data_osx->context->resize(data->width, data->height);
}

int RenderWindowOpenGL::osx_get_current_virtual_screen() {
    return data_osx->context ? 0 : -1;
}

bool RenderWindowOpenGL::osx_set_current_virtual_screen(int screen) {
    return data_osx->context && screen == 0;
}

int RenderWindowOpenGL::osx_get_num_of_virtual_screens() {
    return data_osx->context ? 1 : -1;
}

void* RenderWindowOpenGL::osx_get_cgl_ctx() {
    return data_osx->context ? data_osx->context->handle() : nullptr;
}

bool RenderWindowOpenGL::osx_enable_multi_threaded_gl_engine(bool) {
    return false;
}

bool RenderWindowOpenGL::osx_lock_context(bool state) {
    if (!data_osx->context)
        return false;
    // Another thread may end the context meanwhile, and with it the window's part of the lock.
    const std::shared_ptr<ContextLock> lock = data_osx->lock;
    if (!state)
        return lock->unlock();
    lock->lock();
    return true;
}

bool RenderWindowOpenGL::osx_apply_context_cocoa(bool state) {
    return osx_apply_context(state);
}

bool RenderWindowOpenGL::osx_update_context_cocoa() {
    return osx_update_current_virtual_screen_ctx();
}

bool RenderWindowOpenGL::osx_display_framebuffer_cocoa() {
    return osx_display_framebuffer();
}

bool RenderWindowOpenGL::osx_vsync_cocoa(bool state) {
    return osx_vsync(state);
}

void* RenderWindowOpenGL::osx_get_nsgl_ctx() {
    return nullptr;
}

} // namespace orvex
