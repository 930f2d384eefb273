#include "orvex/renderer/opengl/window/linux/private/egl_platform.h"

#include <cstdio>
#include <vector>

#include "orvex/renderer/opengl/state/private/gl_quirks.h"
#include "orvex/renderer/opengl/window/linux/private/egl_context.h"
#include "orvex/renderer/opengl/window/linux/private/egl_display.h"
#include "orvex/renderer/opengl/window/linux/private/glx_context.h"
#include "orvex/renderer/opengl/window/linux/private/x11_window.h"

namespace orvex {

namespace {

/// Objects are shared within one display only. A parent of another kind can't be shared with.
std::vector<EGLDisplay> candidate_displays(const ContextRequest& request) {
    if (!request.share)
        return displays_for(request);
    if (const auto* share = dynamic_cast<EglAnyContext*>(request.share))
        return {share->get_display()};
    return {};
}

/// A driver may crash on the number of a window that is gone: see the quirk.
bool is_drawable(const ContextRequest& request) {
    return !GlQuirks::from_environment().dead_window || !is_x11_id(request.view) ||
           x11_window_may_exist(request.display, request.view);
}

} // namespace

std::unique_ptr<PlatformContext> EglPlatform::create_context(const ContextRequest& request) {
    const EglOpenGLScope api;
    if (is_x11_id(request.view))
        finish_x11_requests(request.display);
    for (EGLDisplay display : candidate_displays(request)) {
        if (!eglInitialize(display, nullptr, nullptr) || !is_drawable(request))
            continue;
        EglDrawableLoan drawable(request);
        if (auto context = EglOwnContext::create(display, request)) {
            drawable.keep();
            return context;
        }
    }
    return nullptr;
}

std::unique_ptr<PlatformContext> EglPlatform::adopt_current_context(void* handle) {
    const EglOpenGLScope api;
    const EglCurrent current;
    if (current.context != EGL_NO_CONTEXT)
        return std::make_unique<EglHostContext>(current, handle);
    return adopt_current_glx_context(handle);
}

const void* EglPlatform::current_context() {
    if (const EGLContext context = eglGetCurrentContext())
        return context;
    // The host's client API may be another one.
    const EglOpenGLScope api;
    const EGLContext context = eglGetCurrentContext();
    return context ? context : current_glx_context();
}

void EglPlatform::get_version(int& major, int& minor) {
    major = 0;
    minor = 0;
    if (const char* version = eglQueryString(EGL_NO_DISPLAY, EGL_VERSION))
        std::sscanf(version, "%d.%d", &major, &minor);
}

void* EglPlatform::get_proc_address(const char* name) {
    return reinterpret_cast<void*>(eglGetProcAddress(name));
}

WindowPlatform& native_window_platform() {
    static EglPlatform* const platform = new EglPlatform;
    return *platform;
}

} // namespace orvex
