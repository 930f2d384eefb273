// A fountain, two seconds after it was switched on: particles picture.jpg

#include "off_screen.h"

using namespace orvex;

namespace {

const char* const drops = R"([Vertex_Shader]
#version 150
in vec4 orvex_Position;
in vec4 orvex_Color;
uniform mat4 orvex_ModelViewProjectionMatrix;
out float life;
void main() {
    life = orvex_Color.a;
    gl_Position = orvex_ModelViewProjectionMatrix * vec4(orvex_Position.xyz, 1.0);
    gl_PointSize = 3.0;
}
[Pixel_Shader]
#version 150
in float life;
out vec4 color;
void main() { color = vec4(mix(vec3(0.2, 0.4, 1.0), vec3(0.9, 1.0, 1.0), life), life); }
)";

/// Particles are born at the nozzle, and fall.
ParticleSystem* make_fountain() {
    ParticleSystem* fountain = new ParticleSystem;
    fountain->initialize(5000);
    fountain->set_particle_lifetime(1.5f);
    ParticleEmitter* nozzle = fountain->create_emitter();
    nozzle->set_particle_rate(2000.0f);
    nozzle->set_spawn_positions(vec3(0, 0, 0), vec3(0, 0, 0));
    nozzle->set_spawn_directions(vec3(-0.25f, 0.9f, -0.25f), vec3(0.25f, 1.1f, 0.25f));
    nozzle->set_particle_speed(7.0f);
    nozzle->set_particle_speed_variance(0.5f);
    fountain->create_action()->set_gravity(0.0f, -9.81f, 0.0f);
    return fountain;
}

void draw(Renderer* renderer, ParticleSystem* fountain) {
    GpuProgram* program = GpuProgramMgr::get()->create_gpu_program_from_memory(
        renderer, drops, std::strlen(drops), "drops");
    renderer->set_blend_factors(BLEND_FACTOR_SRC_ALPHA, BLEND_FACTOR_ONE);
    renderer->set_blend_state(true);
    program->bind(renderer);
    fountain->render(renderer, nullptr);
    program->unbind(renderer);
    renderer->set_blend_state(false);
}

} // namespace

int main(int argc, char** argv) {
    OffScreen stage(true, 400, 320);
    if (!stage.started)
        return 1;
    ParticleSystem* fountain = make_fountain();

    // The same seed gives the same drops.
    Math::srnd(7);
    for (int step = 0; step < 120; ++step)
        fountain->update(1.0f / 60.0f, nullptr);

    Camera* camera = new Camera;
    camera->set_viewport(0, 0, 400, 320);
    camera->build_projection_persp(40.0f, 400.0f / 320.0f, 0.1f, 100.0f, true);
    camera->set_view_params(vec4(0, 1.5f, 6, 1), vec4(0, 1.2f, 0, 1), vec4(0, 1, 0, 0), true);
    camera->bind(stage.renderer, true, true, true, true, false);
    camera->release(nullptr, nullptr);
    stage.renderer->clear_color_depth_buffers(0.02f, 0.03f, 0.08f, 1.0f, 1.0f);
    draw(stage.renderer, fountain);
    const bool ok = stage.write(argc > 1 ? argv[1] : "particles.jpg");
    fountain->kill(stage.renderer, nullptr);
    return ok ? 0 : 1;
}
