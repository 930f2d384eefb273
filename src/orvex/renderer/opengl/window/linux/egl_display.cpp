#include "orvex/renderer/opengl/window/linux/private/egl_display.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "orvex/renderer/opengl/window/linux/private/x11_window.h"
#include "orvex/renderer/opengl/window/private/window_platform.h"

namespace orvex {

namespace {

bool lists(const char* extensions, const char* wanted) {
    if (!extensions)
        return false;
    const std::size_t length = std::strlen(wanted);
    for (const char* found = std::strstr(extensions, wanted); found;
         found = std::strstr(found + length, wanted)) {
        const bool begins = found == extensions || found[-1] == ' ';
        if (begins && (found[length] == ' ' || found[length] == '\0'))
            return true;
    }
    return false;
}

bool client_lists(const char* wanted) {
    return lists(eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS), wanted);
}

template<typename Function>
Function entry(const char* name) {
    return reinterpret_cast<Function>(eglGetProcAddress(name));
}

/// A display of one platform, or EGL_NO_DISPLAY where the platform is unknown.
EGLDisplay platform_display(EGLenum platform, const char* extension, void* native) {
    const auto get = entry<PFNEGLGETPLATFORMDISPLAYEXTPROC>("eglGetPlatformDisplayEXT");
    if (!get || !client_lists(extension))
        return EGL_NO_DISPLAY;
    return get(platform, native, nullptr);
}

bool is_software(EGLDeviceEXT device) {
    const auto query = entry<PFNEGLQUERYDEVICESTRINGEXTPROC>("eglQueryDeviceStringEXT");
    return query && lists(query(device, EGL_EXTENSIONS), "EGL_MESA_device_software");
}

/// The machine's devices: processors of graphics first, or the software device when that is asked
/// for.
std::vector<EGLDeviceEXT> devices(bool software_first) {
    const auto query = entry<PFNEGLQUERYDEVICESEXTPROC>("eglQueryDevicesEXT");
    if (!query || !client_lists("EGL_EXT_platform_device"))
        return {};
    std::array<EGLDeviceEXT, 64> found;
    EGLint count = 0;
    if (!query(static_cast<EGLint>(found.size()), found.data(), &count))
        return {};
    std::stable_partition(found.begin(), found.begin() + count, [&](EGLDeviceEXT device) {
        return is_software(device) == software_first;
    });
    return {found.begin(), found.begin() + count};
}

std::vector<EGLDisplay> off_screen_displays(const ContextRequest& request) {
    std::vector<EGLDisplay> displays;
    if (request.display)
        displays.push_back(eglGetDisplay(static_cast<EGLNativeDisplayType>(request.display)));
    for (EGLDeviceEXT device : devices(request.software_renderer))
        displays.push_back(
            platform_display(EGL_PLATFORM_DEVICE_EXT, "EGL_EXT_platform_device", device));
    displays.push_back(platform_display(EGL_PLATFORM_SURFACELESS_MESA,
                                        "EGL_MESA_platform_surfaceless", EGL_DEFAULT_DISPLAY));
    displays.push_back(eglGetDisplay(EGL_DEFAULT_DISPLAY));
    return displays;
}

std::vector<EGLDisplay> window_displays(const ContextRequest& request) {
    if (request.display)
        return {eglGetDisplay(static_cast<EGLNativeDisplayType>(request.display))};
    // A `wl_egl_window*` means nothing on any connection but its own.
    if (!is_x11_id(request.view))
        return {};
    return {platform_display(EGL_PLATFORM_X11_EXT, "EGL_EXT_platform_x11", EGL_DEFAULT_DISPLAY),
            eglGetDisplay(EGL_DEFAULT_DISPLAY)};
}

} // namespace

std::vector<EGLDisplay> displays_for(const ContextRequest& request) {
    std::vector<EGLDisplay> displays =
        request.view ? window_displays(request) : off_screen_displays(request);
    std::erase(displays, EGL_NO_DISPLAY);
    return displays;
}

} // namespace orvex
