#pragma once

/// @file
/// The private records of RenderWindowOpenGL.

#include <memory>
#include <vector>

#include "orvex/base/thread.h"
#include "orvex/renderer/opengl/gl/private/opengl_extension.h"
#include "orvex/renderer/opengl/window/private/context_lock.h"
#include "orvex/renderer/opengl/window/private/window_platform.h"

namespace orvex {

struct RenderWindowOpenGLData {
    int width = 0;
    int height = 0;
    bool init_ok = false;
    int api_3d = 2;
    Thread thread; ///< the one that called `initialize`
    bool context_current = false;
    int gl_major = 0; ///< 0: not read yet
    int gl_minor = 0;
    int depth_bits = 16;
    int color_bits = 24;
};

struct RenderWindowOpenGLData2 {
    std::vector<std::unique_ptr<OpenGLExtension>> extensions;
    int num_gl_extensions = 0;
    int num_wgl_extensions = 0;
    int num_glx_extensions = 0;
};

struct RenderWindowOpenGLData_OSX {
    void* display = nullptr; ///< the host's connection, as given to `initialize`
    std::unique_ptr<PlatformContext> context;
    bool adopted = false; ///< the host made the context
    bool software_renderer = false;
    void* swap_apple = nullptr;
    std::shared_ptr<ContextLock> lock; ///< of the context; null without one
};

} // namespace orvex
