#include "orvex/renderer/opengl/window/linux/private/egl_platform.h"

#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <string>
#include <vector>

#include "orvex/base/log_mgr.h"
#include "orvex/renderer/opengl/state/private/gl_quirks.h"
#include "orvex/renderer/opengl/window/linux/private/egl_context.h"
#include "orvex/renderer/opengl/window/linux/private/egl_display.h"
#include "orvex/renderer/opengl/window/linux/private/glx_context.h"
#include "orvex/renderer/opengl/window/linux/private/x11_window.h"

namespace orvex {

namespace {

/// Objects are shared within one display only. A parent of another kind can't be shared with.
std::vector<EglCandidate> all_candidates(const ContextRequest& request) {
    if (!request.share)
        return candidates_for(request);
    if (const auto* share = dynamic_cast<EglAnyContext*>(request.share))
        return {{share->get_display(), {}}};
    return {};
}

/// A driver may crash on the number of a window that is gone: see the quirk.
bool is_drawable(const ContextRequest& request) {
    return !GlQuirks::from_environment().dead_window || !is_x11_id(request.view) ||
           x11_window_may_exist(request.display, request.view);
}

/// Logs a line, unless it was the last one: each window of a process would say the same.
void warn_once(const std::string& line) {
    static std::mutex mutex;
    static std::string last;
    const std::lock_guard<std::mutex> guard(mutex);
    if (line == last)
        return;
    last = line;
    LogMgr::get()->tracef_warning("%s", line.c_str());
}

/// Whether the software driver would end the process as it draws: see the quirk.
bool ends_the_process(EGLDisplay display) {
    const char* const text = std::getenv("LP_NATIVE_VECTOR_WIDTH");
    if (!text || !GlQuirks::from_environment().vector_width)
        return false;
    char* end = nullptr;
    const long width = std::strtol(text, &end, 0);
    return end != text && width != 128 && width != 256 && egl_device_of(display).facts.software;
}

std::unique_ptr<PlatformContext> create_on(EGLDisplay display, const ContextRequest& request) {
    if (!eglInitialize(display, nullptr, nullptr) || !is_drawable(request))
        return nullptr;
    if (ends_the_process(display)) {
        warn_once(
            "The software driver ends the process with this LP_NATIVE_VECTOR_WIDTH: unset it");
        return nullptr;
    }
    EglDrawableLoan drawable(request);
    std::unique_ptr<PlatformContext> context = EglOwnContext::create(display, request);
    if (context)
        drawable.keep();
    return context;
}

std::string refusal_in_full(const EglDevice& device) {
    const std::string refusal = egl_device_refusal(device);
    return device_text(device.facts) + ", " +
           (refusal.empty() ? "which has no such configuration, context or surface" : refusal);
}

/// Whoever wanted no software renderer and has one is told why.
void tell_software(EGLDisplay display, const std::vector<EglDevice>& refused) {
    if (!egl_device_of(display).facts.software)
        return;
    std::string passed_over;
    for (const EglDevice& device : refused)
        if (!device.facts.software)
            passed_over += (passed_over.empty() ? "" : "; ") + refusal_in_full(device);
    for (const std::string& node : unserved_nodes(egl_devices()))
        passed_over += (passed_over.empty() ? "" : "; ") + node + ", which no driver serves";
    if (!passed_over.empty())
        warn_once("OpenGL is drawn by software. Passed over: " + passed_over);
}

/// Whoever chose a device that can't be drawn on is told why.
void tell_choice(const ContextRequest& request, const std::vector<EglDevice>& refused) {
    std::string reasons;
    for (const EglDevice& device : refused)
        reasons += (reasons.empty() ? "" : "; ") + refusal_in_full(device);
    const std::string_view choice = chosen_device(request);
    const char* const chosen_by = choice.data() == request.device ? "device " : "ORVEX_GL_DEVICE=";
    LogMgr::get()->tracef_error("%s%s: %s", chosen_by, choice.data(),
                                reasons.empty() ? "no such device" : reasons.c_str());
}

} // namespace

std::unique_ptr<PlatformContext> EglPlatform::create_context(const ContextRequest& request) {
    const EglOpenGLScope api;
    if (is_x11_id(request.view))
        finish_x11_requests(request.display);
    const std::vector<EglCandidate> candidates = all_candidates(request);
    std::vector<EglDevice> refused;
    for (const EglCandidate& candidate : candidates) {
        if (std::unique_ptr<PlatformContext> context = create_on(candidate.display, request)) {
            if (!request.view && !request.share && !request.software_renderer &&
                chosen_device(request).empty())
                tell_software(candidate.display, refused);
            return context;
        }
        if (candidate.device.handle != EGL_NO_DEVICE_EXT)
            refused.push_back(candidate.device);
    }
    if (!request.view && !request.share && !request.display && !chosen_device(request).empty())
        tell_choice(request, refused);
    return nullptr;
}

std::vector<RenderWindow_Device> EglPlatform::list_devices() {
    const EglOpenGLScope api;
    std::vector<RenderWindow_Device> list;
    for (const EglDevice& device : egl_devices()) {
        list.push_back(device.facts);
        list.back().refusal = egl_device_refusal(device);
        if (list.back().refusal.empty())
            list.back().driver = egl_driver_of(device.display());
    }
    return list;
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
