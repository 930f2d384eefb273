#pragma once

/// @file
/// What the tests of debugging share: the environment that asks for it, and windows.

#include <cstdlib>
#include <string>

#include <GL/gl.h>
#include <GL/glext.h>
#include <gtest/gtest.h>

#include "orvex/renderer/opengl/private/renderer_opengl.h"
#include "orvex/renderer/render_window.h"
#include "tests/support/gl_context.h"
#include "tests/support/gl_recorder.h"

namespace orvex_test {

/// Sets `ORVEX_GL_DEBUG` for as long as it lives; null removes it.
class DebugEnvironment {
public:
    explicit DebugEnvironment(const char* value) {
        if (value)
            setenv("ORVEX_GL_DEBUG", value, 1);
        else
            unsetenv("ORVEX_GL_DEBUG");
    }
    ~DebugEnvironment() { unsetenv("ORVEX_GL_DEBUG"); }
    DebugEnvironment(const DebugEnvironment&) = delete;
    DebugEnvironment& operator=(const DebugEnvironment&) = delete;
};

/// Makes an off-screen window whose context is current.
inline bool make_window(orvex::RendererOpenGL& renderer, bool core) {
    orvex::RenderWindow_ExtraData request;
    request.gl_major = core ? 3 : 2;
    request.gl_minor = core ? 2 : 1;
    return renderer.create_render_window()->initialize(nullptr, nullptr, 64, 64, nullptr, nullptr,
                                                       &request);
}

/// An entry point of the driver's, past the recorder.
template<class Function>
Function gl_entry(const char* name) {
    return reinterpret_cast<Function>(orvex::native_window_platform().get_proc_address(name));
}

/// Who listens to the messages of the current context.
inline void* gl_listener() {
    void* listener = nullptr;
    glGetPointerv(GL_DEBUG_CALLBACK_FUNCTION, &listener);
    return listener;
}

/// The label of an object of the current context.
inline std::string gl_label(GLenum kind, GLuint id) {
    char text[512] = {};
    gl_entry<PFNGLGETOBJECTLABELPROC>("glGetObjectLabel")(kind, id, sizeof(text), nullptr, text);
    return text;
}

} // namespace orvex_test
