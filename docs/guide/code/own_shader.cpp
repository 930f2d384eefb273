// One program of our own on three spheres: own_shader picture.jpg

#include "off_screen.h"

using namespace orvex;

namespace {

const char* const bands = R"([Vertex_Shader]
#version 150
in vec4 orvex_Position;
in vec4 orvex_Normal;
uniform mat4 orvex_ModelMatrix;
uniform mat4 orvex_ModelViewProjectionMatrix;
out vec3 normal;
void main() {
    normal = mat3(orvex_ModelMatrix) * orvex_Normal.xyz;
    gl_Position = orvex_ModelViewProjectionMatrix * vec4(orvex_Position.xyz, 1.0);
}
[Pixel_Shader]
#version 150
uniform vec3 light;
uniform vec4 tint;
uniform int steps;
in vec3 normal;
out vec4 color;
void main() {
    float share = max(dot(normalize(normal), normalize(light)), 0.0);
    color = vec4(tint.rgb * (0.2 + 0.8 * floor(share * float(steps) + 0.5) / float(steps)), 1.0);
}
)";

/// A program that says why, if it can't be used.
GpuProgram* make_program(Renderer* renderer, const char* text, const char* name) {
    GpuProgram* program = GpuProgramMgr::get()->create_gpu_program_from_memory(
        renderer, text, std::strlen(text), name);
    if (!program->is_valid())
        std::fprintf(stderr, "%s\n", program->get_shader_error_messages());
    return program;
}

void draw(Renderer* renderer, GpuProgram* program) {
    MeshSphere* sphere = new MeshSphere;
    sphere->set_build_params(1.0f, 48, 48);
    sphere->build(nullptr);

    // Waits in the program until the next bind: no context is needed here.
    program->set_uniform_3f(nullptr, "light", 0.4f, 0.8f, 0.6f);

    program->bind(renderer);
    for (int i = 0; i < 3; ++i) {
        // Goes to the program that is bound, at once.
        program->set_uniform_4f(renderer, "tint", i == 0 ? 1.0f : 0.3f, i == 1 ? 1.0f : 0.3f,
                                i == 2 ? 1.0f : 0.3f, 1.0f);
        program->set_uniform_1i(renderer, "steps", 2 + 3 * i);
        // The engine sends the matrices that the program names, for each object anew.
        sphere->set_position(static_cast<float>(i) * 2.4f - 2.4f, 0.0f, 0.0f);
        sphere->render(renderer, nullptr);
    }
    program->unbind(renderer);
    sphere->kill(renderer, nullptr);
}

} // namespace

int main(int argc, char** argv) {
    OffScreen stage(true, 480, 200);
    if (!stage.started)
        return 1;
    Camera* camera = new Camera;
    camera->set_viewport(0, 0, 480, 200);
    camera->build_projection_persp(40.0f, 480.0f / 200.0f, 0.1f, 100.0f, true);
    camera->set_view_params(vec4(0, 1, 6, 1), vec4(0, 0, 0, 1), vec4(0, 1, 0, 0), true);
    camera->bind(stage.renderer, true, true, true, true, false);
    camera->release(nullptr, nullptr);
    stage.renderer->clear_color_depth_buffers(0.1f, 0.12f, 0.15f, 1.0f, 1.0f);
    draw(stage.renderer, make_program(stage.renderer, bands, "bands"));
    return stage.write(argc > 1 ? argv[1] : "own_shader.jpg") ? 0 : 1;
}
