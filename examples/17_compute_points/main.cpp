// A pool of points that a compute program moves, drawn before it (left) and after it (right). The
// program writes the very buffer that is drawn: compute_points [gl2|gl3] [picture.jpg]

#include "off_screen.h"

using namespace orvex;

namespace {

constexpr int size = 320;
constexpr unsigned int side = 48; ///< of the square of points

// The structure is that of a record of the pool, 96 bytes.
const char* const wave = R"([Compute_Shader]
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

VertexPool* make_square() {
    VertexPool* const pool = new VertexPool;
    pool->init_pool(side * side, false);
    for (unsigned int i = 0; i < side * side; ++i) {
        const auto place = [](unsigned int n) {
            return (static_cast<float>(n) / (side - 1) - 0.5f) * 10.0f;
        };
        pool->set_vertex_position(i, vec3(place(i % side), 0.0f, place(i / side)));
    }
    return pool;
}

/// Draws the pool into one half of the window.
void draw(OffScreen& stage, VertexPool& pool, GpuProgram& program, int half) {
    Camera* const camera = new Camera;
    camera->set_viewport(half * size, 0, size, size);
    camera->build_projection_persp(45.0f, 1.0f, 0.1f, 100.0f, true);
    camera->set_view_params(vec4(8, 10, 11.5f, 1), vec4(0, -0.5f, 0, 1), vec4(0, 1, 0, 0), true);
    camera->bind(stage.renderer, true, true, true, true, true);
    camera->release(nullptr, nullptr);
    program.bind(stage.renderer);
    pool.render(stage.renderer, nullptr);
    program.unbind(stage.renderer);
}

/// Lets the compute program move the points, and the drawing wait for it.
bool move(OffScreen& stage, VertexPool& pool) {
    GpuProgram* const program = GpuProgramMgr::get()->create_gpu_program_from_memory(
        stage.renderer, wave, std::strlen(wave), "wave");
    if (!program->bind(stage.renderer)) {
        std::fprintf(stderr, "no compute programs: %s\n", program->get_shader_error_messages());
        return false;
    }
    pool.shader_storage_buffer_bind_base(stage.renderer, 0);
    program->run_compute(stage.renderer, side / 8, side / 8, 1);
    pool.apply_memory_barriers(stage.renderer);
    pool.shader_storage_buffer_unbind(stage.renderer);
    program->unbind(stage.renderer);
    return true;
}

} // namespace

int main(int argc, char** argv) {
    OffScreen stage(wants_gl3(argc, argv), 2 * size, size);
    if (!stage.started)
        return 1;
    GpuProgram* const program = stage.make_colored_program("points", 3.0f);
    VertexPool* const pool = make_square();
    stage.renderer->clear_color_depth_buffers(0.1f, 0.12f, 0.15f, 1.0f, 1.0f);
    bool ok = pool->shader_storage_init(stage.renderer, BUFFER_USAGE_DYNAMIC_DRAW);
    draw(stage, *pool, *program, 0);
    ok = ok && move(stage, *pool);
    draw(stage, *pool, *program, 1);
    ok = ok && stage.write(argc > 2 ? argv[2] : "compute_points.jpg");
    pool->kill(stage.renderer, nullptr);
    return ok ? 0 : 1;
}
