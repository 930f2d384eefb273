#pragma once

#include <cstdio>
#include <cstdlib>

#include "orvex/renderer/render_window.h"
#include "orvex/renderer/renderer.h"

namespace orvex {

/// Starts a renderer on a context off screen, a core one or, for client arrays and the fixed
/// pipeline, a compatible one. Where there is none the program ends.
inline void start_on_core_context(Renderer& renderer, int width, int height,
                                  bool is_compatible = false) {
    renderer.initialize();
    RenderWindow* const window = renderer.create_render_window();
    RenderWindow_ExtraData request;
    request.gl_major = is_compatible ? 2 : 3;
    request.gl_minor = is_compatible ? 1 : 2;
    request.core_profile = !is_compatible;
    if (!window->initialize(nullptr, nullptr, width, height, nullptr, nullptr, &request)) {
        std::fprintf(stderr, "there is no OpenGL 3.2 core context to be had\n");
        std::exit(1);
    }
    renderer.start();
}

} // namespace orvex
