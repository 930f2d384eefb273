#pragma once

// What the small examples share: an off-screen window on either drawing path, a program for it, and
// the command line "example [gl2|gl3] [picture.jpg]".

#include <cstdio>
#include <cstring>
#include <string>

#include <orvex/orvex.h>
#include <orvex_kit/look.h>

#include "log_lines.h"
#include "picture_file.h"

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

    /// A program of two stages that are written for both paths, as `program_text` takes them.
    orvex::GpuProgram* make_program(const char* name, const char* vertex, const char* pixel) {
        const std::string text = orvex::kit::program_text(gl3, vertex, pixel);
        orvex::GpuProgram* const program =
            orvex::GpuProgramMgr::get()->create_gpu_program_from_memory(renderer, text.c_str(),
                                                                        text.size(), name);
        if (!program->is_valid())
            std::fprintf(stderr, "%s\n", program->get_shader_error_messages());
        return program;
    }

    /// A program that draws in the colours of the vertices, points as squares of some pixels.
    orvex::GpuProgram* make_colored_program(const char* name, float point_size) {
        const std::string vertex = "uniform mat4 orvex_ModelViewProjectionMatrix;\n"
                                   "OUT vec4 vertex_color;\n"
                                   "void main() {\n"
                                   "    gl_Position = orvex_ModelViewProjectionMatrix * POSITION;\n"
                                   "    gl_PointSize = " +
                                   std::to_string(point_size) +
                                   ";\n"
                                   "    vertex_color = VERTEX_COLOR;\n"
                                   "}\n";
        return make_program(name, vertex.c_str(),
                            "IN vec4 vertex_color;\n"
                            "void main() { COLOR = vertex_color; }\n");
    }

    /// Builds a mesh for the path in use.
    template<class Shape>
    Shape* build(Shape* mesh) const {
        mesh->set_opengl_2_3_rendering_states(!gl3, nullptr);
        mesh->build(nullptr);
        return mesh;
    }

    /// Writes what the window shows, whole or not at all.
    bool write(const char* path) const {
        renderer->set_viewport(0, 0, width, height);
        const std::string mistake = write_picture(renderer, path);
        if (!mistake.empty())
            std::fprintf(stderr, "%s\n", mistake.c_str());
        return mistake.empty();
    }

    orvex::Renderer* renderer = nullptr;
    orvex::RenderWindow* window = nullptr; ///< the renderer's
    bool started = false;
    const bool gl3;
    const int width;
    const int height;
};

/// Whether the command line asks for the path of generic attributes, which is the default.
inline bool wants_gl3(int argc, char** argv) {
    return argc < 2 || std::strcmp(argv[1], "gl2") != 0;
}
