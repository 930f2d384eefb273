#include "orvex/renderer/opengl/window/linux/private/egl_extensions.h"

#include <cstring>

namespace orvex {

bool egl_lists(const char* extensions, const char* wanted) {
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

bool egl_client_lists(const char* wanted) {
    return egl_lists(eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS), wanted);
}

EGLDisplay egl_platform_display(EGLenum platform, const char* extension, void* native) {
    const auto get = egl_entry<PFNEGLGETPLATFORMDISPLAYEXTPROC>("eglGetPlatformDisplayEXT");
    if (!get || !egl_client_lists(extension))
        return EGL_NO_DISPLAY;
    return get(platform, native, nullptr);
}

} // namespace orvex
