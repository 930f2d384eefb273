#pragma once

// What the programs of the guide share, once the first one has shown it: an off-screen window on
// either drawing path.

#include <cstdio>
#include <cstring>

#include <orvex/orvex.h>
#include <orvex_kit/picture_file.h>

#include "log_lines.h"

/// The engine, started with an off-screen window; stopped at the end.
class OffScreen {
public:
    OffScreen(bool use_gl3, int window_width, int window_height)
        : gl3(use_gl3)
        , width(window_width)
        , height(window_height) {
        orvex::core::start("", true, show_log_line, nullptr);
        renderer = orvex::Kernel::get()->load_core_opengl_renderer_plugin(true);
        renderer->initialize();
        window = renderer->create_render_window();
        orvex::RenderWindow_ExtraData request;
        request.gl_major = gl3 ? 3 : 2;
        request.gl_minor = gl3 ? 2 : 1;
        request.depth_bits = 24;
        started = window->initialize(nullptr, nullptr, width, height, "Off", nullptr, &request) &&
                  renderer->start();
        if (!started)
            std::fprintf(stderr, "no OpenGL context\n");
    }
    ~OffScreen() {
        renderer->kill_all_render_targets();
        orvex::TextureMgr::get()->release_all_textures(renderer, nullptr);
        orvex::GpuProgramMgr::get()->release_all_resources(renderer, nullptr);
        renderer->stop();
        renderer->kill_all_render_windows();
        orvex::core::stop("done");
    }
    OffScreen(const OffScreen&) = delete;
    OffScreen& operator=(const OffScreen&) = delete;

    /// Writes what the window shows, whole or not at all.
    bool write(const char* path) const {
        renderer->set_viewport(0, 0, width, height);
        const orvex::kit::Outcome written = orvex::kit::write_screenshot(renderer, path);
        if (!written)
            std::fprintf(stderr, "%s\n", written.reason().c_str());
        return static_cast<bool>(written);
    }

    orvex::Renderer* renderer = nullptr;
    orvex::RenderWindow* window = nullptr; ///< the renderer's
    bool started = false;
    const bool gl3;
    const int width;
    const int height;
};
