// A triangle in three colours, off screen: first_triangle picture.jpg

#include <cstdio>
#include <cstring>

#include <orvex/orvex.h>

const char* const shader = R"([Vertex_Shader]
#version 150
in vec4 orvex_Position;
in vec4 orvex_Color;
uniform mat4 orvex_ModelViewProjectionMatrix;
out vec4 color;
void main() {
    color = orvex_Color;
    gl_Position = orvex_ModelViewProjectionMatrix * vec4(orvex_Position.xyz, 1.0);
}
[Pixel_Shader]
#version 150
in vec4 color;
out vec4 pixel;
void main() { pixel = color; }
)";

int main(int argc, char** argv) {
    using namespace orvex;

    // The log first, then a renderer, a window that has the context, and the renderer's start.
    core::start("", true, nullptr, nullptr);
    Renderer* renderer = Kernel::get()->load_core_opengl_renderer_plugin(true);
    renderer->initialize();
    RenderWindow* window = renderer->create_render_window();
    RenderWindow_ExtraData request;
    request.gl_major = 3;
    request.gl_minor = 2;
    if (!window->initialize(nullptr, nullptr, 480, 360, "First", nullptr, &request) ||
        !renderer->start()) {
        std::fprintf(stderr, "no OpenGL 3.2\n");
        return 1;
    }

    // What is drawn, and by which program.
    MeshTriangle* triangle = new MeshTriangle;
    triangle->build(nullptr);
    triangle->set_vertex_color(0, vec4(1.0f, 0.2f, 0.2f, 1.0f));
    triangle->set_vertex_color(1, vec4(0.2f, 1.0f, 0.2f, 1.0f));
    triangle->set_vertex_color(2, vec4(0.2f, 0.4f, 1.0f, 1.0f));
    GpuProgram* program = GpuProgramMgr::get()->create_gpu_program_from_memory(
        renderer, shader, std::strlen(shader), "colors");

    // From where it is seen.
    Camera* camera = new Camera;
    camera->set_viewport(0, 0, 480, 360);
    camera->build_projection_persp(45.0f, 480.0f / 360.0f, 0.1f, 100.0f, true);
    camera->set_view_params(vec4(0, 0, 4, 1), vec4(0, 0, 0, 1), vec4(0, 1, 0, 0), true);

    // One frame.
    camera->bind(renderer, true, true, true, true, false);
    renderer->clear_color_depth_buffers(0.1f, 0.12f, 0.15f, 1.0f, 1.0f);
    program->bind(renderer);
    triangle->render(renderer, nullptr);
    program->unbind(renderer);
    bool ok = TextureMgr::get()->do_screenshot(renderer, argc > 1 ? argv[1] : "triangle.jpg");

    // Given back while the context is still there.
    camera->release(nullptr, nullptr);
    triangle->kill(renderer, nullptr);
    GpuProgramMgr::get()->release_all_resources(renderer, nullptr);
    renderer->stop();
    renderer->kill_all_render_windows();
    core::stop("done");
    return ok ? 0 : 1;
}
