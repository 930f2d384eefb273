#pragma once

/// @file
/// What EGL can do beyond its oldest version.

#include "orvex/renderer/opengl/window/linux/private/egl_api.h"

namespace orvex {

/// Whether a list of names with blanks between them has one of them; a null list has none.
bool egl_lists(const char* extensions, const char* wanted);

/// The same of EGL itself, before there is a display.
bool egl_client_lists(const char* wanted);

/// An entry point of EGL's; null where it is unknown.
template<typename Function>
Function egl_entry(const char* name) {
    return reinterpret_cast<Function>(eglGetProcAddress(name));
}

/// A display of one platform, or EGL_NO_DISPLAY where the platform is unknown.
/// @param extension  that brings the platform
EGLDisplay egl_platform_display(EGLenum platform, const char* extension, void* native);

} // namespace orvex
