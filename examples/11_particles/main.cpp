// A fountain over time, from the moment it is switched on: particles of one jet in the middle and
// of six around it, drawn as a sheet of frames, row by row: particles [gl2|gl3] [picture.jpg]

#include <cmath>

#include "off_screen.h"

using namespace orvex;

namespace {

constexpr int frame_size = 220;
constexpr int columns = 4;
constexpr int rows = 3;
constexpr int num_frames = columns * rows;
constexpr int frames_switched_on = 7;
constexpr int steps_per_frame = 12;
constexpr float dt = 1.0f / 60.0f;
constexpr float basin_radius = 2.6f;
constexpr int num_jets = 6;

const char* const vertex = R"(
uniform mat4 orvex_ModelViewProjectionMatrix;
OUT vec4 color_of_vertex;
void main() {
    gl_Position = orvex_ModelViewProjectionMatrix * POSITION;
    gl_PointSize = 45.0 / gl_Position.w;
    color_of_vertex = VERTEX_COLOR;
}
)";
const char* const drop_pixel = R"(
IN vec4 color_of_vertex;
void main() {
    float distance = length(gl_PointCoord - vec2(0.5));
    // A particle is white, and its alpha goes from 1 at its birth to 0 at its death.
    float life = color_of_vertex.a;
    vec3 tint = mix(vec3(0.05, 0.25, 0.9), vec3(0.8, 0.95, 1.0), life * life);
    COLOR = vec4(tint, (0.1 + 0.4 * life) * (1.0 - smoothstep(0.1, 0.5, distance)));
}
)";
const char* const rim_pixel = R"(
IN vec4 color_of_vertex;
void main() { COLOR = color_of_vertex; }
)";

vec3 on_circle(int i, int count, float radius, float y) {
    const float angle = 2.0f * 3.14159265f * static_cast<float>(i) / static_cast<float>(count);
    return vec3(radius * std::cos(angle), y, radius * std::sin(angle));
}

/// A jet whose particles leave in about the same direction.
void add_jet(ParticleSystem& fountain, const vec3& place, const vec3& direction, float spread,
             float rate) {
    ParticleEmitter* const jet = fountain.create_emitter();
    jet->set_position(vec4(place));
    jet->set_particle_rate(rate);
    jet->set_particle_speed(1.0f);
    jet->set_particle_speed_variance(0.05f);
    const vec3 around(spread, spread, spread);
    jet->set_spawn_positions(vec3(-0.02f, 0.0f, -0.02f), vec3(0.02f, 0.0f, 0.02f));
    jet->set_spawn_directions(direction - around, direction + around);
}

ParticleSystem* make_fountain(const OffScreen& stage) {
    ParticleSystem* const fountain = new ParticleSystem;
    fountain->initialize(3000);
    fountain->set_opengl_2_3_rendering_states(!stage.gl3, nullptr);
    fountain->set_particle_lifetime(1.8f);
    fountain->create_action(); // gravity
    add_jet(*fountain, vec3(0.0f, 0.2f, 0.0f), vec3(0.0f, 7.2f, 0.0f), 0.8f, 700.0f);
    for (int i = 0; i < num_jets; ++i) {
        const vec3 place = on_circle(i, num_jets, basin_radius * 0.9f, 0.1f);
        const vec3 inwards(-0.8f * place.x, 4.0f, -0.8f * place.z);
        add_jet(*fountain, place, inwards, 0.2f, 90.0f);
    }
    return fountain;
}

/// Drops end where they meet the water.
void end_at_the_water(ParticlePool& pool) {
    for (unsigned long i = 0; i < pool.num_particles; ++i)
        if (pool.lifetimes[i] > 0.0f && pool.positions[i].y < 0.0f)
            pool.lifetimes[i] = 0.0f;
}

void switch_off(const ParticleSystem& fountain) {
    for (unsigned long i = 0; i < fountain.get_num_emitters(); ++i)
        fountain.get_emitter_by_index(static_cast<int>(i))->set_particle_rate(0.0f);
}

void run_until_next_frame(ParticleSystem& fountain) {
    for (int step = 0; step < steps_per_frame; ++step) {
        fountain.update(dt, nullptr);
        end_at_the_water(*fountain.get_particle_pool());
    }
}

Polyline* make_rim(const OffScreen& stage) {
    constexpr int num_corners = 48;
    Polyline* const rim = new Polyline;
    rim->initialize(num_corners, LINE_RENDER_MODE_LINE_LOOP);
    for (int i = 0; i < num_corners; ++i)
        rim->set_vertex_position(static_cast<unsigned long>(i),
                                 vec4(on_circle(i, num_corners, basin_radius, 0.0f)));
    rim->set_vertices_color(vec4(0.55f, 0.5f, 0.45f, 1.0f));
    rim->set_opengl_2_3_rendering_states(!stage.gl3, nullptr);
    return rim;
}

void bind_camera(OffScreen& stage, int frame) {
    Camera* const camera = new Camera;
    camera->set_viewport(frame % columns * frame_size, (rows - 1 - frame / columns) * frame_size,
                         frame_size, frame_size);
    camera->build_projection_persp(40.0f, 1.0f, 0.1f, 100.0f, true);
    camera->set_view_params(vec4(0, 3.6f, 7.6f, 1), vec4(0, 1.15f, 0, 1), vec4(0, 1, 0, 0), true);
    camera->bind(stage.renderer, true, true, true, true, true);
    camera->release(nullptr, nullptr);
}

void draw(OffScreen& stage, GpuProgram& program, Object& object) {
    program.bind(stage.renderer);
    object.render(stage.renderer, nullptr);
    program.unbind(stage.renderer);
}

} // namespace

int main(int argc, char** argv) {
    OffScreen stage(wants_gl3(argc, argv), columns * frame_size, rows * frame_size);
    if (!stage.started)
        return 1;
    Math::srnd(1);
    stage.renderer->clear_color_depth_buffers(0.04f, 0.05f, 0.09f, 1.0f, 1.0f);
    GpuProgram* const rim_program = stage.make_program("rim", vertex, rim_pixel);
    GpuProgram* const drop_program = stage.make_program("drops", vertex, drop_pixel);
    ParticleSystem* const fountain = make_fountain(stage);
    Polyline* const rim = make_rim(stage);

    stage.renderer->set_depth_test_state(false);
    stage.renderer->set_blend_state(true);
    stage.renderer->set_blend_factors(BLEND_FACTOR_SRC_ALPHA, BLEND_FACTOR_ONE);
    for (int frame = 0; frame < num_frames; ++frame) {
        if (frame == frames_switched_on)
            switch_off(*fountain);
        run_until_next_frame(*fountain);
        bind_camera(stage, frame);
        draw(stage, *rim_program, *rim);
        if (fountain->get_num_alive_particles() > 0)
            draw(stage, *drop_program, *fountain);
    }

    const bool ok = stage.write(argc > 2 ? argv[2] : "particles.jpg");
    rim->kill(stage.renderer, nullptr);
    fountain->kill(stage.renderer, nullptr);
    return ok ? 0 : 1;
}
