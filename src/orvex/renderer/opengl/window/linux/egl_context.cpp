#include "orvex/renderer/opengl/window/linux/private/egl_context.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "orvex/renderer/opengl/state/private/contexts.h"
#include "orvex/renderer/opengl/state/private/gl_quirks.h"
#include "orvex/renderer/opengl/window/linux/private/egl_config.h"
#include "orvex/renderer/opengl/window/linux/private/egl_device.h"

// Contexts by EGL. What was current stays current, or comes back, whatever an operation needs in
// between.

namespace orvex {

EglAnyContext::EglAnyContext(EGLDisplay display, EGLContext context, EGLSurface draw,
                             EGLSurface read)
    : display(display)
    , context(context)
    , draw(draw)
    , read(read) {}

bool EglAnyContext::is_current() const {
    const EglOpenGLScope api;
    return eglGetCurrentContext() == context;
}

void EglAnyContext::set_surface(EGLSurface surface) {
    draw = surface;
    read = surface;
    swap_interval_pending = swap_interval.has_value();
}

bool EglAnyContext::make_current() {
    const EglOpenGLScope api;
    if (!eglMakeCurrent(display, draw, read, context))
        return false;
    if (swap_interval_pending)
        apply_swap_interval();
    return true;
}

bool EglAnyContext::release_current() {
    const EglOpenGLScope api;
    return eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT) == EGL_TRUE;
}

void EglAnyContext::apply_swap_interval() {
    eglSwapInterval(display, *swap_interval);
    swap_interval_pending = false;
}

void EglAnyContext::set_swap_interval(int interval) {
    swap_interval = interval;
    swap_interval_pending = true;
    const EglOpenGLScope api;
    if (eglGetCurrentContext() == context)
        apply_swap_interval();
}

bool EglAnyContext::swap() const {
    return eglSwapBuffers(display, draw) || eglGetError() != EGL_CONTEXT_LOST;
}

bool EglAnyContext::present() {
    const EglOpenGLScope api;
    const EglCurrent former;
    if (former.context == context)
        return swap();
    // EGL presents nothing but the current surface.
    if (!make_current())
        return eglGetError() != EGL_CONTEXT_LOST;
    const bool alive = swap();
    put_back(former);
    return alive;
}

void EglAnyContext::put_back(const EglCurrent& former) {
    if (former.context == EGL_NO_CONTEXT)
        release_current();
    else
        eglMakeCurrent(former.display, former.draw, former.read, former.context);
}

namespace {

using ContextAttributes = std::vector<EGLint>;

EGLContext create_with(EGLDisplay display, EGLConfig config, EGLContext share,
                       ContextAttributes attributes, bool robust, bool debug) {
    if (robust)
        attributes.insert(attributes.end(), {EGL_CONTEXT_OPENGL_ROBUST_ACCESS, EGL_TRUE,
                                             EGL_CONTEXT_OPENGL_RESET_NOTIFICATION_STRATEGY,
                                             EGL_LOSE_CONTEXT_ON_RESET});
    // The flag is older than the attribute of the same meaning, which wants EGL 1.5.
    if (debug)
        attributes.insert(attributes.end(),
                          {EGL_CONTEXT_FLAGS_KHR, EGL_CONTEXT_OPENGL_DEBUG_BIT_KHR});
    attributes.push_back(EGL_NONE);
    return eglCreateContext(display, config, share, attributes.data());
}

/// As robust as is wished for, and with debugging, if the driver has them. Of contexts that share
/// either all are told of a reset or none, so that the wish gives way to what the other one is.
EGLContext create_with_wishes(EGLDisplay display, EGLConfig config, EGLContext share,
                              const ContextAttributes& attributes, const ContextRequest& request) {
    for (const bool robust : {request.robust, !request.robust})
        for (const bool debug : {true, false}) {
            if (debug && !request.debug)
                continue;
            const EGLContext context =
                create_with(display, config, share, attributes, robust, debug);
            if (context != EGL_NO_CONTEXT)
                return context;
        }
    return EGL_NO_CONTEXT;
}

EGLContext create_core_context(EGLDisplay display, EGLConfig config, EGLContext share, int major,
                               int minor, const ContextRequest& request) {
    return create_with_wishes(display, config, share,
                              {EGL_CONTEXT_MAJOR_VERSION, major, EGL_CONTEXT_MINOR_VERSION, minor,
                               EGL_CONTEXT_OPENGL_PROFILE_MASK,
                               EGL_CONTEXT_OPENGL_CORE_PROFILE_BIT},
                              request);
}

/// A driver that can't give the asked core version may give 3.2, and with it often more.
EGLContext create_native_context(EGLDisplay display, EGLConfig config, EGLContext share,
                                 const ContextRequest& request) {
    if (request.profile == CONTEXT_PROFILE_LEGACY)
        return create_with_wishes(display, config, share,
                                  {EGL_CONTEXT_MAJOR_VERSION, 2, EGL_CONTEXT_MINOR_VERSION, 1},
                                  request);
    const std::pair lowest(3, 2);
    const auto [major, minor] = std::max(lowest, std::pair(request.gl_major, request.gl_minor));
    const EGLContext context = create_core_context(display, config, share, major, minor, request);
    if (context != EGL_NO_CONTEXT)
        return context;
    return create_core_context(display, config, share, lowest.first, lowest.second, request);
}

/// Drivers take any size and then draw nowhere: see the quirk. What OpenGL 4 promises of viewports
/// and textures can be drawn into; the limit that EGL tells is often far lower than what works.
bool is_too_large(EGLDisplay display, EGLConfig config, int size, EGLint limit_name) {
    constexpr EGLint promised = 16384;
    EGLint limit = 0;
    eglGetConfigAttrib(display, config, limit_name, &limit);
    return size > std::max(limit, promised);
}

EGLSurface create_off_screen_surface(EGLDisplay display, EGLConfig config, int width, int height) {
    if (GlQuirks::from_environment().endless_surface &&
        (is_too_large(display, config, width, EGL_MAX_PBUFFER_WIDTH) ||
         is_too_large(display, config, height, EGL_MAX_PBUFFER_HEIGHT)))
        return EGL_NO_SURFACE;
    const EGLint size[] = {EGL_WIDTH, std::max(width, 1), EGL_HEIGHT, std::max(height, 1),
                           EGL_NONE};
    return eglCreatePbufferSurface(display, config, size);
}

EGLSurface create_window_surface(EGLDisplay display, EGLConfig config, void* view) {
    return eglCreateWindowSurface(display, config, reinterpret_cast<EGLNativeWindowType>(view),
                                  nullptr);
}

EGLSurface create_surface(EGLDisplay display, EGLConfig config, const ContextRequest& request) {
    return request.view ? create_window_surface(display, config, request.view)
                        : create_off_screen_surface(display, config, request.width, request.height);
}

} // namespace

EglOwnContext::EglOwnContext(EGLDisplay display, EGLConfig config, EGLContext context,
                             EGLSurface surface, const ContextRequest& request)
    : EglAnyContext(display, context, surface, surface)
    , config(config)
    , view(request.view)
    , width(std::max(request.width, 1))
    , height(std::max(request.height, 1)) {
    const auto* share = dynamic_cast<EglAnyContext*>(request.share);
    contexts::made(context, share ? share->get_context() : nullptr);
}

namespace {

/// A surface and its context, which end with it unless they are taken over: memory may run out on
/// the way.
struct EglHandles {
    explicit EglHandles(EGLDisplay display)
        : display(display) {}
    EglHandles(const EglHandles&) = delete;
    EglHandles& operator=(const EglHandles&) = delete;
    ~EglHandles() {
        if (context != EGL_NO_CONTEXT)
            eglDestroyContext(display, context);
        if (surface != EGL_NO_SURFACE)
            eglDestroySurface(display, surface);
    }

    void release() {
        surface = EGL_NO_SURFACE;
        context = EGL_NO_CONTEXT;
    }

    EGLDisplay display;
    EGLSurface surface = EGL_NO_SURFACE;
    EGLContext context = EGL_NO_CONTEXT;
};

} // namespace

std::unique_ptr<EglOwnContext> EglOwnContext::create(EGLDisplay display, EGLConfig config,
                                                     const ContextRequest& request) {
    const auto* share = dynamic_cast<EglAnyContext*>(request.share);
    EglHandles made(display);
    made.surface = create_surface(display, config, request);
    if (made.surface == EGL_NO_SURFACE)
        return nullptr;
    made.context = create_native_context(display, config,
                                         share ? share->get_context() : EGL_NO_CONTEXT, request);
    if (made.context == EGL_NO_CONTEXT)
        return nullptr;
    std::unique_ptr<EglOwnContext> own(
        new EglOwnContext(display, config, made.context, made.surface, request));
    made.release();
    return own;
}

std::unique_ptr<EglOwnContext> EglOwnContext::create(EGLDisplay display,
                                                     const ContextRequest& request) {
    ContextRequest attempt = request;
    for (int depth_bits : depths_to_try(request.depth_bits)) {
        attempt.depth_bits = depth_bits;
        for (EGLConfig config : choose_configs(display, attempt))
            if (auto context = create(display, config, attempt))
                return context;
    }
    return nullptr;
}

EglOwnContext::~EglOwnContext() {
    const EglOpenGLScope api;
    if (eglGetCurrentContext() == get_context())
        eglMakeCurrent(get_display(), EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    contexts::ended(get_context());
    if (get_surface() != EGL_NO_SURFACE)
        eglDestroySurface(get_display(), get_surface());
    eglDestroyContext(get_display(), get_context());
}

std::string EglOwnContext::device() const {
    const EglDevice device = egl_device_of(get_display());
    return device.handle == EGL_NO_DEVICE_EXT ? std::string() : device_text(device.facts);
}

bool EglOwnContext::resize(int new_width, int new_height) {
    new_width = std::max(new_width, 1);
    new_height = std::max(new_height, 1);
    if (view || (new_width == width && new_height == height))
        return true;
    const EglOpenGLScope api;
    const EGLSurface surface =
        create_off_screen_surface(get_display(), config, new_width, new_height);
    if (surface == EGL_NO_SURFACE)
        return false;
    const EGLSurface former = get_surface();
    set_surface(surface);
    if (eglGetCurrentContext() == get_context())
        make_current();
    eglDestroySurface(get_display(), former);
    width = new_width;
    height = new_height;
    return true;
}

bool EglOwnContext::give_up_surface() {
    const EglOpenGLScope api;
    // A surface that is current on another thread would live on: only who can take the context over
    // ends its surface.
    const EglCurrent before;
    const bool was_current = before.context == get_context();
    if (!was_current && !make_current())
        return false;
    release_current();
    eglDestroySurface(get_display(), get_surface());
    set_surface(EGL_NO_SURFACE);
    if (!was_current)
        put_back(before);
    return true;
}

void EglOwnContext::take_surface_back() {
    set_surface(create_window_surface(get_display(), config, view));
}

EglDrawableLoan::EglDrawableLoan(const ContextRequest& request)
    : former(dynamic_cast<EglOwnContext*>(request.former))
    , was_current(former && former->is_current()) {
    if (former && (!former->is_on(request.view) || !former->give_up_surface()))
        former = nullptr;
}

EglDrawableLoan::~EglDrawableLoan() {
    if (!former)
        return;
    former->take_surface_back();
    if (was_current)
        former->make_current();
}

EglHostContext::EglHostContext(const EglCurrent& current, void* host_handle)
    : EglAnyContext(current.display, current.context, current.draw, current.read)
    , host_handle(host_handle) {}

} // namespace orvex
