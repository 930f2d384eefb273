#pragma once

/// @file
/// The private record of a render window.

#include "orvex/base/global_id.h"
#include "orvex/renderer/render_window.h"

namespace orvex {

class RenderWindowOpenGL;

struct RenderWindow::RenderWindowData {
    static RenderWindowData& of(const RenderWindow& window) { return *window.data; }

    int id = GenId();
    int width = 0;
    int height = 0;
    unsigned int framebuffer = 0;
    unsigned long framebuffer_turn = 0;
    /// The window as the engine's own, set by its constructor; a host may hand in one of another
    /// class, built without type information.
    const RenderWindowOpenGL* opengl = nullptr;
};

} // namespace orvex
