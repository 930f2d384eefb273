// A program of the GPU's own, on the engine alone: a compute program moves points in the very
// buffer that is drawn from. It needs OpenGL 4.3, and no window: compute_points [picture.jpg]

#include <cstdio>
#include <cstring>

#include <orvex/orvex.h>

using namespace orvex;

constexpr int width = 640;
constexpr int height = 400;
constexpr unsigned int side = 64; // of the square of points

// The structure is that of a record of the pool, 96 bytes.
static const char wave_text[] = R"([Compute_Shader]
#version 430
layout(local_size_x = 8, local_size_y = 8) in;
struct Vertex { vec4 position, color, normal, uv0, uv1, tangent; };
layout(std430, binding = 0) buffer Points { Vertex points[]; };
void main() {
    uint i = gl_GlobalInvocationID.y * gl_NumWorkGroups.x * gl_WorkGroupSize.x
           + gl_GlobalInvocationID.x;
    float distance = length(points[i].position.xz);
    float height = cos(distance * 2.0) / (1.0 + 0.3 * distance);
    points[i].position.y = height;
    points[i].color = vec4(0.5 + 0.5 * height, 0.6, 1.0 - 0.5 * height, 1.0);
}
)";
static const char points_text[] = R"([Vertex_Shader]
#version 150
in vec4 orvex_Position;
in vec4 orvex_Color;
uniform mat4 orvex_ModelViewProjectionMatrix;
out vec4 paint;
void main() {
    gl_Position = orvex_ModelViewProjectionMatrix * vec4(orvex_Position.xyz, 1.0);
    gl_PointSize = 50.0 / gl_Position.w;
    paint = orvex_Color;
}
[Pixel_Shader]
#version 150
in vec4 paint;
out vec4 color;
void main() { color = paint; }
)";

static GpuProgram* make_program(Renderer* renderer, const char* text, const char* name) {
    GpuProgram* const program = GpuProgramMgr::get()->create_gpu_program_from_memory(
        renderer, text, std::strlen(text), name);
    if (!program->is_valid())
        std::fprintf(stderr, "%s\n", program->get_shader_error_messages());
    return program;
}

/// A square of points in the buffer that the compute program writes.
static VertexPool* make_points(Renderer* renderer) {
    VertexPool* const points = new VertexPool;
    points->init_pool(side * side, false);
    const auto place = [](unsigned int n) {
        return (static_cast<float>(n) / (side - 1) - 0.5f) * 10.0f;
    };
    for (unsigned int i = 0; i < side * side; ++i)
        points->set_vertex_position(i, vec3(place(i % side), 0.0f, place(i / side)));
    points->shader_storage_init(renderer, BUFFER_USAGE_DYNAMIC_DRAW);
    return points;
}

/// The drawing waits for what the compute program has written.
static bool move(Renderer* renderer, VertexPool* points) {
    GpuProgram* const wave = make_program(renderer, wave_text, "wave");
    if (!wave->bind(renderer))
        return false;
    points->shader_storage_buffer_bind_base(renderer, 0);
    wave->run_compute(renderer, side / 8, side / 8, 1);
    points->apply_memory_barriers(renderer);
    points->shader_storage_buffer_unbind(renderer);
    wave->unbind(renderer);
    return true;
}

/// Draws the points by four samples a pixel.
static void draw(Renderer* renderer, RenderTarget* samples, VertexPool* points,
                 GpuProgram* program) {
    Camera* const camera = new Camera;
    camera->set_viewport(0, 0, width, height);
    camera->build_projection_persp(36, static_cast<float>(width) / height, 0.1f, 100, true);
    camera->set_view_params(vec4(8, 9.5f, 12, 1), vec4(0, -0.6f, 0, 1), vec4(0, 1, 0, 0), true);
    samples->activate();
    camera->bind(renderer, true, true, true, true, false);
    renderer->clear_color_depth_buffers(0.1f, 0.12f, 0.15f, 1, 1);
    program->bind(renderer);
    points->render(renderer, nullptr);
    program->unbind(renderer);
    samples->deactivate();
    camera->release(nullptr, nullptr);
}

static int run(Renderer* renderer, const char* path) {
    RenderWindow_ExtraData wish;
    wish.gl_major = 4;
    wish.gl_minor = 3;
    RenderWindow* const window = renderer->create_render_window();
    if (!window->initialize(nullptr, nullptr, width, height, "", nullptr, &wish) ||
        !renderer->start()) {
        std::fputs("no OpenGL 4.3\n", stderr);
        return 1;
    }
    RenderTarget* const samples = renderer->create_render_target();
    samples->create_render_buffer_target(width, height, PF_RGBA_U8, false, 1, true, 4);
    GpuProgram* const program = make_program(renderer, points_text, "points");
    VertexPool* const points = make_points(renderer);
    draw(renderer, samples, points, program); // sends the points as they were set
    const bool moved = move(renderer, points);
    draw(renderer, samples, points, program);
    renderer->fbo_resolve_multisampling(samples->get_fbo(), width, height, 0, width, height);
    points->kill(renderer, nullptr);
    const bool ok = moved && TextureMgr::get()->do_screenshot(renderer, path);
    if (!ok)
        std::fprintf(stderr, "can't write %s\n", path);
    // What belongs to the context goes before it does.
    GpuProgramMgr::get()->release_all_resources(renderer, nullptr);
    renderer->kill_all_render_targets();
    renderer->stop();
    renderer->kill_all_render_windows();
    return ok ? 0 : 1;
}

int main(int argc, char** argv) {
    core::start("", true, nullptr, nullptr);
    Renderer* const renderer = Kernel::get()->load_core_opengl_renderer_plugin(true);
    renderer->initialize();
    const int result = run(renderer, argc > 1 ? argv[1] : "compute_points.jpg");
    core::stop("done");
    return result;
}
