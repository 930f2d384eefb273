#pragma once

#include <cstdio>
#include <cstdlib>

#include "orvex/renderer/render_window.h"
#include "orvex/renderer/renderer.h"

namespace orvex {

/// Starts a renderer on a core context off screen. Where there is none the program ends.
inline void start_on_core_context(Renderer& renderer, int width, int height) {
    renderer.initialize();
    RenderWindow* const window = renderer.create_render_window();
    RenderWindow_ExtraData request;
    request.gl_major = 3;
    request.gl_minor = 2;
    request.core_profile = true;
    if (!window->initialize(nullptr, nullptr, width, height, nullptr, nullptr, &request)) {
        std::fprintf(stderr, "there is no OpenGL 3.2 core context to be had\n");
        std::exit(1);
    }
    renderer.start();
}

} // namespace orvex
