#pragma once

/// @file
/// EGL without window-system headers: its native types are then a pointer and an integer.

#ifndef EGL_NO_X11
#define EGL_NO_X11
#endif
#include <EGL/egl.h>
#include <EGL/eglext.h>

namespace orvex {

/// EGL keeps one current client API per thread, OpenGL ES on a new one, and creates and queries
/// contexts of that API. Sets OpenGL for a scope and puts back what the host had.
class EglOpenGLScope {
public:
    EglOpenGLScope()
        : former(eglQueryAPI()) {
        eglBindAPI(EGL_OPENGL_API);
    }
    ~EglOpenGLScope() { eglBindAPI(former); }
    EglOpenGLScope(const EglOpenGLScope&) = delete;
    EglOpenGLScope& operator=(const EglOpenGLScope&) = delete;

private:
    EGLenum former;
};

/// What is current on the calling thread.
struct EglCurrent {
    EGLDisplay display = eglGetCurrentDisplay();
    EGLSurface draw = eglGetCurrentSurface(EGL_DRAW);
    EGLSurface read = eglGetCurrentSurface(EGL_READ);
    EGLContext context = eglGetCurrentContext();
};

} // namespace orvex
