#pragma once

// What the small examples share: an off-screen window on either drawing path, a program for it, and
// the command line "example [gl2|gl3] [picture.jpg]".

#include <cstdio>
#include <cstring>
#include <string>

#include <orvex/orvex.h>

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
    OffScreen(OffScreen const&) = delete;
    OffScreen& operator=(OffScreen const&) = delete;

    /// A program of two stages that are written for both paths: POSITION, NORMAL and TEXCOORD are
    /// the vertex, OUT and IN what the stages share, SAMPLE reads a texture, COLOR is the pixel.
    orvex::GpuProgram* make_program(char const* name, char const* vertex, char const* pixel) {
        char const* const vertex_head = gl3 ? "\n#version 150\n"
                                              "#define OUT out\n"
                                              "in vec4 orvex_Position;\n"
                                              "in vec4 orvex_Normal;\n"
                                              "in vec4 orvex_TexCoord0;\n"
                                              "#define POSITION vec4(orvex_Position.xyz, 1.0)\n"
                                              "#define NORMAL orvex_Normal.xyz\n"
                                              "#define TEXCOORD orvex_TexCoord0.xy\n"
                                            : "\n#version 120\n"
                                              "#define OUT varying\n"
                                              "#define POSITION vec4(gl_Vertex.xyz, 1.0)\n"
                                              "#define NORMAL gl_Normal\n"
                                              "#define TEXCOORD gl_MultiTexCoord0.xy\n";
        char const* const pixel_head = gl3 ? "\n#version 150\n"
                                             "#define IN in\n"
                                             "#define SAMPLE texture\n"
                                             "#define COLOR color\n"
                                             "out vec4 color;\n"
                                           : "\n#version 120\n"
                                             "#define IN varying\n"
                                             "#define SAMPLE texture2D\n"
                                             "#define COLOR gl_FragColor\n";
        const std::string text = std::string("[Vertex_Shader]") + vertex_head + vertex +
                                 "[Pixel_Shader]" + pixel_head + pixel;
        orvex::GpuProgram* const program =
            orvex::GpuProgramMgr::get()->create_gpu_program_from_memory(renderer, text.c_str(),
                                                                        text.size(), name);
        if (!program->is_valid())
            std::fprintf(stderr, "%s\n", program->get_shader_error_messages());
        return program;
    }

    /// Builds a mesh for the path in use.
    template<class Shape>
    Shape* build(Shape* mesh) const {
        mesh->set_opengl_2_3_rendering_states(!gl3, nullptr);
        mesh->build(nullptr);
        return mesh;
    }

    /// Writes what the window shows.
    bool write(char const* path) const {
        renderer->set_viewport(0, 0, width, height);
        if (orvex::TextureMgr::get()->do_screenshot(renderer, path))
            return true;
        std::fprintf(stderr, "can't write %s\n", path);
        return false;
    }

    orvex::Renderer* renderer = nullptr;
    orvex::RenderWindow* window = nullptr; ///< the renderer's
    bool started = false;
    const bool gl3;
    const int width;
    const int height;

private:
    static void show_log_line(char const* line, void*) {
        for (char const* const marker : {" <*> ", " <!> "})
            if (std::strstr(line, marker))
                std::fprintf(stderr, "%s\n", line);
    }
};

/// Whether the command line asks for the path of generic attributes, which is the default.
inline bool wants_gl3(int argc, char** argv) {
    return argc < 2 || std::strcmp(argv[1], "gl2") != 0;
}
