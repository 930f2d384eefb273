// Draws a ring into a target of four samples a pixel, resolves it into a plain one, and shows that
// one on a quad: offscreen [gl2|gl3] [picture.jpg]

#include "off_screen.h"

using namespace orvex;

namespace {

const char* const lit_vertex = R"(
uniform mat4 orvex_ModelViewProjectionMatrix;
OUT vec3 normal;
void main() {
    normal = NORMAL;
    gl_Position = orvex_ModelViewProjectionMatrix * POSITION;
}
)";
const char* const lit_pixel = R"(
IN vec3 normal;
void main() {
    float light = max(dot(normalize(normal), normalize(vec3(1.0, 2.0, 1.5))), 0.0);
    COLOR = vec4(vec3(0.9, 0.45, 0.15) * (0.25 + 0.75 * light), 1.0);
}
)";

const char* const show_vertex = R"(
uniform mat4 orvex_ModelViewProjectionMatrix;
OUT vec2 uv;
void main() {
    uv = TEXCOORD;
    gl_Position = orvex_ModelViewProjectionMatrix * POSITION;
}
)";
const char* const show_pixel = R"(
uniform sampler2D picture;
IN vec2 uv;
void main() { COLOR = SAMPLE(picture, uv); }
)";

constexpr int target_size = 256;

/// Two targets: one is drawn into, the other can be sampled.
struct Targets {
    RenderTarget* samples;
    RenderTarget* resolved;
};

// Both repeat at their edges: clamping is what a core profile doesn't have.
bool make(Renderer* renderer, Targets& targets) {
    targets = {renderer->create_render_target(), renderer->create_render_target()};
    if (targets.samples->create_target(target_size, target_size, PF_RGBA_U8, false, false, false,
                                       4) &&
        targets.resolved->create_target(target_size, target_size, PF_RGBA_U8, false, true, false,
                                        0))
        return true;
    std::fprintf(stderr, "%s%s", targets.samples->get_error_str(),
                 targets.resolved->get_error_str());
    return false;
}

/// The ring, seen from above, on the target of four samples; then without its samples.
void draw_ring(OffScreen& stage, const Targets& targets) {
    MeshTorus* const ring = new MeshTorus;
    ring->set_build_params(2.2f, 0.6f, 48);
    stage.build(ring);
    Camera* const camera = new Camera;
    camera->set_viewport(0, 0, target_size, target_size);
    camera->build_projection_persp(45.0f, 1.0f, 0.1f, 50.0f, true);
    camera->set_view_params(vec4(0, 4, 4, 1), vec4(0, 0, 0, 1), vec4(0, 1, 0, 0), true);

    Renderer* const renderer = stage.renderer;
    GpuProgram* const program = stage.make_program("lit", lit_vertex, lit_pixel);
    renderer->rasterizer_set_msaa_state(true);
    renderer->rasterizer_apply_state();
    targets.samples->activate();
    camera->bind(renderer, true, true, true, true, !stage.gl3);
    renderer->clear_color_depth_buffers(0.1f, 0.2f, 0.3f, 1.0f, 1.0f);
    program->bind(renderer);
    ring->render(renderer, nullptr);
    program->unbind(renderer);
    targets.samples->deactivate();
    renderer->fbo_resolve_multisampling(targets.samples->get_fbo(), target_size, target_size,
                                        targets.resolved->get_fbo(), target_size, target_size);
    camera->release(nullptr, nullptr);
    ring->kill(renderer, nullptr);
}

/// The resolved target as a texture on a quad that is turned aside, in the window.
void show(OffScreen& stage, const Targets& targets) {
    Texture* const picture =
        Kernel::get()->create_color_texture_from_render_target(targets.resolved, 0);
    MeshQuad* const quad = new MeshQuad;
    quad->set_build_params(3.0f, 3.0f);
    stage.build(quad);
    quad->set_orientation_euler_xyz(0.0f, 30.0f, 0.0f);
    Camera* const camera = new Camera;
    camera->set_viewport(0, 0, stage.width, stage.height);
    const float aspect = static_cast<float>(stage.width) / static_cast<float>(stage.height);
    camera->build_projection_persp(45.0f, aspect, 0.1f, 50.0f, true);
    camera->set_view_params(vec4(0, 0, 4.5f, 1), vec4(0, 0, 0, 1), vec4(0, 1, 0, 0), true);

    Renderer* const renderer = stage.renderer;
    GpuProgram* const program = stage.make_program("show", show_vertex, show_pixel);
    camera->bind(renderer, true, true, true, true, !stage.gl3);
    renderer->clear_color_depth_buffers(0.75f, 0.77f, 0.8f, 1.0f, 1.0f);
    picture->bind(renderer, 0);
    program->bind(renderer);
    program->set_uniform_1i(renderer, "picture", 0);
    quad->render(renderer, nullptr);
    program->unbind(renderer);
    camera->release(nullptr, nullptr);
    quad->kill(renderer, nullptr);
    TextureMgr::get()->release_texture(renderer, picture, nullptr);
}

} // namespace

int main(int argc, char** argv) {
    OffScreen stage(wants_gl3(argc, argv), 480, 360);
    Targets targets;
    if (!stage.started || !make(stage.renderer, targets))
        return 1;
    draw_ring(stage, targets);
    show(stage, targets);
    return stage.write(argc > 2 ? argv[2] : "offscreen.jpg") ? 0 : 1;
}
