#include "orvex/renderer/opengl/window/linux/private/egl_display.h"

#include <algorithm>

#include "orvex/renderer/opengl/window/linux/private/egl_extensions.h"
#include "orvex/renderer/opengl/window/linux/private/x11_window.h"
#include "orvex/renderer/opengl/window/private/window_platform.h"

namespace orvex {

namespace {

EGLDisplay display_on(void* connection) {
    return eglGetDisplay(static_cast<EGLNativeDisplayType>(connection));
}

/// The machine's devices: processors of graphics first, or the software device when that is asked
/// for.
std::vector<EglCandidate> on_devices(bool software_first, std::string_view choice) {
    std::vector<EglDevice> devices = egl_devices();
    std::stable_partition(devices.begin(), devices.end(), [&](const EglDevice& device) {
        return device.facts.software == software_first;
    });
    std::vector<EglCandidate> candidates;
    for (const EglDevice& device : devices)
        if (choice.empty() || is_chosen(device.facts, choice))
            candidates.push_back({device.display(), device});
    return candidates;
}

std::vector<EglCandidate> off_screen_candidates(const ContextRequest& request) {
    // The connection of a host's says where to draw, and the choice where it doesn't.
    const std::string_view choice = request.display ? std::string_view() : chosen_device(request);
    std::vector<EglCandidate> candidates = on_devices(request.software_renderer, choice);
    if (!choice.empty())
        return candidates;
    if (request.display)
        candidates.insert(candidates.begin(), {display_on(request.display), {}});
    candidates.push_back(
        {egl_platform_display(EGL_PLATFORM_SURFACELESS_MESA, "EGL_MESA_platform_surfaceless",
                              EGL_DEFAULT_DISPLAY),
         {}});
    candidates.push_back({display_on(EGL_DEFAULT_DISPLAY), {}});
    return candidates;
}

std::vector<EglCandidate> window_candidates(const ContextRequest& request) {
    if (request.display)
        return {{display_on(request.display), {}}};
    // A `wl_egl_window*` means nothing on any connection but its own.
    if (!is_x11_id(request.view))
        return {};
    return {
        {egl_platform_display(EGL_PLATFORM_X11_EXT, "EGL_EXT_platform_x11", EGL_DEFAULT_DISPLAY),
         {}},
        {display_on(EGL_DEFAULT_DISPLAY), {}}};
}

} // namespace

std::string_view chosen_device(const ContextRequest& request) {
    return request.device && *request.device ? request.device : device_choice();
}

std::vector<EglCandidate> candidates_for(const ContextRequest& request) {
    std::vector<EglCandidate> candidates =
        request.view ? window_candidates(request) : off_screen_candidates(request);
    std::erase_if(candidates, [](const EglCandidate& candidate) {
        return candidate.display == EGL_NO_DISPLAY;
    });
    return candidates;
}

} // namespace orvex
