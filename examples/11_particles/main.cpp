// A fountain two seconds after it was switched on: one jet in the middle and six around it. What
// particles do is the engine's, how they look is a program of this host: particles [gl2]

#include <cmath>
#include <cstdio>

#include <orvex/orvex.h>
#include <orvex_kit/kit.h>

using namespace orvex;

constexpr float basin_radius = 2.6f;

static const char drops_text[] = R"([Vertex_Shader]
uniform mat4 orvex_ModelViewProjectionMatrix;
OUT vec4 paint;
void main() {
    gl_Position = orvex_ModelViewProjectionMatrix * POSITION;
    gl_PointSize = 60.0 / gl_Position.w;
    paint = VERTEX_COLOR;
}
[Pixel_Shader]
IN vec4 paint;
void main() {
    // A particle is white, and its alpha goes from 1 at its birth to 0 at its death.
    float from_middle = length(gl_PointCoord - vec2(0.5));
    vec3 tint = mix(vec3(0.05, 0.25, 0.9), vec3(0.8, 0.95, 1.0), paint.a * paint.a);
    COLOR = vec4(tint, (0.06 + 0.3 * paint.a) * (1.0 - smoothstep(0.1, 0.5, from_middle)));
}
)";
static const char stone_text[] = R"([Vertex_Shader]
uniform mat4 orvex_ModelViewProjectionMatrix;
OUT float height;
void main() {
    height = NORMAL.y;
    gl_Position = orvex_ModelViewProjectionMatrix * POSITION;
}
[Pixel_Shader]
IN float height;
void main() { COLOR = vec4(vec3(0.4, 0.37, 0.34) * (1.0 + 0.5 * height), 1.0); }
)";

static vec3 on_circle(int i, int count, float radius) {
    const float angle = 6.2831853f * static_cast<float>(i) / static_cast<float>(count);
    return vec3(radius * std::cos(angle), 0.0f, radius * std::sin(angle));
}

/// A jet whose particles leave in about the same direction.
static void add_jet(ParticleSystem& fountain, const vec3& place, const vec3& direction,
                    float spread, float rate) {
    ParticleEmitter* const jet = fountain.create_emitter();
    jet->set_position(vec4(place));
    jet->set_particle_rate(rate);
    jet->set_particle_speed(1.0f);
    jet->set_particle_speed_variance(0.05f);
    const vec3 around(spread, spread, spread);
    jet->set_spawn_positions(vec3(-0.02f, 0, -0.02f), vec3(0.02f, 0, 0.02f));
    jet->set_spawn_directions(direction - around, direction + around);
}

static kit::Ref<ParticleSystem> make_fountain(kit::Path path) {
    auto fountain = kit::make<ParticleSystem>();
    fountain->initialize(10000);
    fountain->set_opengl_2_3_rendering_states(path == kit::Path::gl2, nullptr);
    fountain->set_particle_lifetime(1.8f);
    fountain->create_action(); // gravity
    add_jet(*fountain, vec3(0, 0.2f, 0), vec3(0, 7.2f, 0), 0.8f, 2400.0f);
    for (int i = 0; i < 6; ++i) {
        const vec3 place = on_circle(i, 6, 0.9f * basin_radius) + vec3(0, 0.1f, 0);
        add_jet(*fountain, place, vec3(-0.8f * place.x, 4.0f, -0.8f * place.z), 0.25f, 300.0f);
    }
    return fountain;
}

/// Drops end where they meet the water.
static void run(ParticleSystem& fountain, int steps) {
    for (int step = 0; step < steps; ++step) {
        fountain.update(1.0f / 60.0f, nullptr);
        ParticlePool& pool = *fountain.get_particle_pool();
        for (unsigned long i = 0; i < pool.num_particles; ++i)
            if (pool.lifetimes[i] > 0.0f && pool.positions[i].y < 0.0f)
                pool.lifetimes[i] = 0.0f;
    }
}

static kit::Ref<MeshTorus> make_rim(kit::Path path) {
    auto rim = kit::make<MeshTorus>();
    rim->set_build_params(basin_radius, 0.05f, 64);
    rim->build(nullptr);
    rim->set_opengl_2_3_rendering_states(path == kit::Path::gl2, nullptr);
    return rim;
}

static void draw(kit::View& view, kit::Program& program, Object& object) {
    program.gpu()->bind(view.renderer());
    object.render(view.renderer(), nullptr);
    program.gpu()->unbind(view.renderer());
}

int main(int argc, char**) {
    const kit::Engine engine;
    kit::View view(640, 480, {argc > 1 ? kit::Path::gl2 : kit::Path::gl3});
    kit::Program drops = kit::Program::from_text(view, drops_text, "drops");
    kit::Program stone = kit::Program::from_text(view, stone_text, "stone");
    if (!drops || !stone) {
        std::fprintf(stderr, "%s%s\n", drops.reason().c_str(), stone.reason().c_str());
        return 1;
    }
    Math::srnd(1);
    const kit::Ref<ParticleSystem> fountain = make_fountain(view.path());
    run(*fountain, 120);

    kit::Camera eye;
    eye.look_at(vec4(0, 3.6f, 7.6f, 1), vec4(0, 1.15f, 0, 1));
    eye.set_opening(40);
    view.set_background({0.04f, 0.05f, 0.09f, 1.0f});
    view.begin(eye);
    draw(view, stone, *make_rim(view.path()));
    view.renderer()->set_depth_test_state(false); // light that adds up
    view.renderer()->set_blend_state(true);
    view.renderer()->set_blend_factors(BLEND_FACTOR_SRC_ALPHA, BLEND_FACTOR_ONE);
    draw(view, drops, *fountain);
    view.renderer()->set_blend_state(false);
    view.renderer()->set_depth_test_state(true);
    view.end();

    const kit::Outcome written = view.write("particles.jpg");
    if (!written)
        std::fprintf(stderr, "%s\n", written.reason().c_str());
    return written ? 0 : 1;
}
