// A ring drawn into a multisample target, and shown on a quad: render_targets picture.jpg

#include "off_screen.h"

using namespace orvex;

namespace {

constexpr int target_size = 256;

const char* const lit = R"([Vertex_Shader]
#version 150
in vec4 orvex_Position;
in vec4 orvex_Normal;
uniform mat4 orvex_ModelViewProjectionMatrix;
out vec3 normal;
void main() {
    normal = orvex_Normal.xyz;
    gl_Position = orvex_ModelViewProjectionMatrix * vec4(orvex_Position.xyz, 1.0);
}
[Pixel_Shader]
#version 150
in vec3 normal;
out vec4 color;
void main() {
    float light = max(dot(normalize(normal), normalize(vec3(1.0, 2.0, 1.5))), 0.0);
    color = vec4(vec3(0.2, 0.65, 0.9) * (0.25 + 0.75 * light), 1.0);
}
)";
const char* const show = R"([Vertex_Shader]
#version 150
in vec4 orvex_Position;
in vec4 orvex_TexCoord0;
uniform mat4 orvex_ModelViewProjectionMatrix;
out vec2 uv;
void main() {
    uv = orvex_TexCoord0.xy;
    gl_Position = orvex_ModelViewProjectionMatrix * vec4(orvex_Position.xyz, 1.0);
}
[Pixel_Shader]
#version 150
uniform sampler2D picture;
in vec2 uv;
out vec4 color;
void main() { color = texture(picture, uv); }
)";

GpuProgram* make_program(Renderer* renderer, const char* text, const char* name) {
    return GpuProgramMgr::get()->create_gpu_program_from_memory(renderer, text, std::strlen(text),
                                                                name);
}

/// Four samples a pixel can be drawn into but not sampled: they are resolved into a plain target.
RenderTarget* make_target(Renderer* renderer, int samples) {
    RenderTarget* target = renderer->create_render_target();
    const bool linear = samples == 0;
    if (target->create_target(target_size, target_size, PF_RGBA_U8, false, linear, false, samples))
        return target;
    std::fprintf(stderr, "%s", target->get_error_str());
    return nullptr;
}

void look(Renderer* renderer, int width, int height, const vec4& eye) {
    Camera* camera = new Camera;
    camera->set_viewport(0, 0, width, height);
    camera->build_projection_persp(45.0f, static_cast<float>(width) / static_cast<float>(height),
                                   0.1f, 50.0f, true);
    camera->set_view_params(eye, vec4(0, 0, 0, 1), vec4(0, 1, 0, 0), true);
    camera->bind(renderer, true, true, true, true, false);
    camera->release(nullptr, nullptr);
}

void draw_ring(Renderer* renderer, RenderTarget* samples, RenderTarget* resolved) {
    MeshTorus* ring = new MeshTorus;
    ring->set_build_params(2.2f, 0.6f, 48);
    ring->build(nullptr);
    GpuProgram* program = make_program(renderer, lit, "lit");
    renderer->rasterizer_set_msaa_state(true);
    renderer->rasterizer_apply_state();

    samples->activate();
    look(renderer, target_size, target_size, vec4(0, 4, 4, 1));
    renderer->clear_color_depth_buffers(0.1f, 0.2f, 0.3f, 1.0f, 1.0f);
    program->bind(renderer);
    ring->render(renderer, nullptr);
    program->unbind(renderer);
    samples->deactivate();
    renderer->fbo_resolve_multisampling(samples->get_fbo(), target_size, target_size,
                                        resolved->get_fbo(), target_size, target_size);
    ring->kill(renderer, nullptr);
}

void show_on_quad(Renderer* renderer, RenderTarget* resolved) {
    MeshQuad* quad = new MeshQuad;
    quad->set_build_params(3.0f, 3.0f);
    quad->build(nullptr);
    quad->set_orientation_euler_xyz(0.0f, 30.0f, 0.0f);
    GpuProgram* program = make_program(renderer, show, "show");

    look(renderer, 400, 300, vec4(0, 0, 4.5f, 1));
    renderer->clear_color_depth_buffers(0.75f, 0.77f, 0.8f, 1.0f, 1.0f);
    Texture* picture = Kernel::get()->create_color_texture_from_render_target(resolved, 0);
    picture->bind(renderer, 0);
    program->bind(renderer);
    program->set_uniform_1i(renderer, "picture", 0);
    quad->render(renderer, nullptr);
    program->unbind(renderer);
    quad->kill(renderer, nullptr);
    TextureMgr::get()->release_texture(renderer, picture, nullptr);
}

} // namespace

int main(int argc, char** argv) {
    OffScreen stage(true, 400, 300);
    if (!stage.started)
        return 1;
    RenderTarget* samples = make_target(stage.renderer, 4);
    RenderTarget* resolved = make_target(stage.renderer, 0);
    if (!samples || !resolved)
        return 1;
    draw_ring(stage.renderer, samples, resolved);
    show_on_quad(stage.renderer, resolved);
    return stage.write(argc > 1 ? argv[1] : "render_targets.jpg") ? 0 : 1;
}
