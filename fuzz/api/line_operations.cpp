// Lines, curves, splines, points and particles.

#include "fuzz/api/operations.h"

namespace orvex_fuzz {

using namespace orvex;

namespace {

template<class Type>
void make(World& world, Bytes&) {
    world.hold(new Type);
}

void choose_alignment(World& world, Bytes& in) {
    static constexpr int known[] = {-1, 0, 1, 2, 16, 64, 4096};
    if (Polyline* const line = world.reach<Polyline>(in))
        line->set_vertex_alloc_params(known[in.byte() % 7]);
}

void eval_spline(World& world, Bytes& in) {
    const auto* const keys = reinterpret_cast<const float*>(world.scratch.data());
    float out[16];
    const int num_keys = static_cast<int>(in.byte() % 18) - 1;
    const int dims = static_cast<int>(in.byte() % 18) - 1;
    MiniSpline::eval_spline(in.flag() ? keys : nullptr, num_keys, dims,
                            static_cast<float>(in.real()), in.flag() ? out : nullptr);
}

void spawn(World& world, Bytes& in) {
    auto* const system = world.reach<ParticleSystem>(in);
    auto* const emitter = world.reach<ParticleEmitter>(in);
    if (system && emitter)
        system->spawn_particles_emitter(*emitter, static_cast<float>(in.real()));
}

/// Emitters and actions of a system are its own: they are asked for each time.
void set_emitter(World& world, Bytes& in) {
    auto* const system = world.reach<ParticleSystem>(in);
    ParticleEmitter* const emitter = system ? system->get_emitter_by_index(in.byte() % 3) : nullptr;
    if (!emitter)
        return;
    emitter->set_particle_rate(static_cast<float>(in.real()));
    emitter->set_particle_speed(static_cast<float>(in.real()));
    emitter->set_particle_speed_variance(static_cast<float>(in.real()));
    emitter->set_emitter_type(draw<PARTICLE_EMITTER_TYPE>(world, in));
    const vec3 corner = draw<vec3>(world, in);
    emitter->set_spawn_positions(corner, draw<vec3>(world, in));
    emitter->set_spawn_directions(corner, draw<vec3>(world, in));
    if (ParticlePool* const pool = system->get_particle_pool())
        emitter->spawn_particle(*pool, in.size());
}

void set_action(World& world, Bytes& in) {
    auto* const system = world.reach<ParticleSystem>(in);
    ParticleAction* const action = system ? system->get_action_by_index(in.byte() % 3) : nullptr;
    if (!action)
        return;
    action->set_action_type(draw<PARTICLE_ACTION_TYPE>(world, in));
    action->set_gravity(draw<vec3>(world, in));
    if (ParticlePool* const pool = system->get_particle_pool()) {
        action->update_particle(*pool, in.size(), static_cast<float>(in.real()));
        action->update_particle_pool(*pool, static_cast<float>(in.real()));
    }
}

void kill_emitter(World& world, Bytes& in) {
    auto* const system = world.reach<ParticleSystem>(in);
    if (!system)
        return;
    const ParticleEmitter* const emitter = system->get_emitter_by_index(in.byte() % 3);
    system->kill_emitter(draw<Renderer*>(world, in), emitter ? emitter->get_id() : in.integer());
}

void kill_action(World& world, Bytes& in) {
    auto* const system = world.reach<ParticleSystem>(in);
    if (!system)
        return;
    const ParticleAction* const action = system->get_action_by_index(in.byte() % 3);
    system->kill_action(draw<Renderer*>(world, in), action ? action->get_id() : in.integer());
}

/// A system whose particles are born, moved and drawn.
void make_fountain(World& world, Bytes& in) {
    auto* const system = new ParticleSystem;
    system->initialize(in.byte() % 40);
    system->create_emitter()->set_particle_rate(static_cast<float>(in.real()) * 40.0f);
    system->create_action();
    system->set_opengl_2_3_rendering_states(in.flag(), nullptr);
    system->update(0.1f, nullptr);
    system->render(world.renderer, nullptr);
    world.hold(system);
}

/// Lines and points that are there to be drawn.
void make_line(World& world, Bytes& in) {
    const unsigned long count = in.byte() % 12;
    if (in.flag()) {
        auto* const line = new Polyline;
        line->initialize(count, draw<LINE_RENDER_MODE>(world, in));
        line->set_opengl_2_3_rendering_states(in.flag(), nullptr);
        world.hold(line);
    } else {
        auto* const pool = new VertexPool;
        pool->init_pool(count, in.flag());
        pool->set_opengl_2_3_rendering_states(in.flag(), nullptr);
        world.hold(pool);
    }
}

constexpr Operation rows[] = {
    {"new fountain", &make_fountain},
    {"new line or points", &make_line},
    {"new Polyline", &make<Polyline>},
    {"new Line", &make<Line>},
    {"new Curve", &make<Curve>},
    {"new MiniSpline", &make<MiniSpline>},
    {"new VertexPool", &make<VertexPool>},
    {"new Point", &make<Point>},
    {"new ParticleSystem", &make<ParticleSystem>},
    {"new ParticleEmitter", &make<ParticleEmitter>},
    ORVEX_FUZZ_CALL(Polyline, init_polyline_data),
    ORVEX_FUZZ_CALL(Polyline, share_polyline_data),
    ORVEX_FUZZ_CALL(Polyline, cleanup_polyline_data),
    ORVEX_FUZZ_CALL(Polyline, free_polyline_data),
    {"Polyline::set_vertex_alloc_params", &choose_alignment},
    ORVEX_FUZZ_CALL(Polyline, alloc_vertex_data),
    ORVEX_FUZZ_CALL(Polyline, initialize),
    ORVEX_FUZZ_CALL_OF(Polyline, set_vertex_position, bool, (unsigned long, const vec4&)),
    ORVEX_FUZZ_CALL_OF(Polyline, set_vertex_position, bool, (unsigned long, float, float, float)),
    ORVEX_FUZZ_CALL(Polyline, set_vertex_color),
    ORVEX_FUZZ_CALL_OF(Polyline, set_vertices_color, bool, (const vec4&)),
    ORVEX_FUZZ_CALL(Polyline, set_vertex_start_offset),
    ORVEX_FUZZ_CALL(Polyline, set_vertex_end_offset),
    ORVEX_FUZZ_CALL(Polyline, set_line_start_offset),
    ORVEX_FUZZ_CALL(Polyline, set_line_end_offset),
    ORVEX_FUZZ_CALL(Polyline, get_line_end_offset),
    ORVEX_FUZZ_CALL(Polyline, set_line_position),
    ORVEX_FUZZ_CALL(Polyline, set_line_color),
    ORVEX_FUZZ_CALL(Polyline, build_line),
    ORVEX_FUZZ_CALL(Polyline, add_line),
    ORVEX_FUZZ_CALL(Polyline, add_line_v2),
    ORVEX_FUZZ_CALL(Polyline, map_vertex_buffer),
    ORVEX_FUZZ_CALL(Polyline, unmap_vertex_buffer),
    ORVEX_FUZZ_CALL(Polyline, render_geometry),
    ORVEX_FUZZ_CALL_OF(Line, set_start_position, void, (const vec3&)),
    ORVEX_FUZZ_CALL_OF(Line, set_end_position, void, (const vec3&)),
    ORVEX_FUZZ_CALL_OF(Line, set_start_color, void, (const vec4&)),
    ORVEX_FUZZ_CALL_OF(Line, set_end_color, void, (const vec4&)),
    ORVEX_FUZZ_CALL(Line, set_start_factor),
    ORVEX_FUZZ_CALL(Line, set_end_factor),
    ORVEX_FUZZ_CALL(Curve, alloc),
    ORVEX_FUZZ_CALL(Curve, free),
    ORVEX_FUZZ_CALL_OF(Curve, set_value, bool, (unsigned long, const vec4&)),
    ORVEX_FUZZ_CALL_OF(Curve, set_value, bool, (unsigned long, const float*)),
    ORVEX_FUZZ_CALL(Curve, get_value_vec4),
    ORVEX_FUZZ_CALL(Curve, get_value_vec3),
    ORVEX_FUZZ_CALL_OF(Curve, get_value_xyzw_ptr, float*, (unsigned long)),
    ORVEX_FUZZ_CALL(MiniSpline, add_keyframe),
    ORVEX_FUZZ_CALL(MiniSpline, set_keyframe),
    ORVEX_FUZZ_CALL(MiniSpline, get_value),
    {"MiniSpline::eval_spline", &eval_spline},

    ORVEX_FUZZ_CALL(VertexPool, init_pool),
    ORVEX_FUZZ_CALL(VertexPool, set_render_start_offset),
    ORVEX_FUZZ_CALL(VertexPool, set_render_num_vertices),
    ORVEX_FUZZ_CALL_OF(VertexPool, set_vertex_position, void, (unsigned long, const vec4&)),
    ORVEX_FUZZ_CALL(VertexPool, get_vertex_position),
    ORVEX_FUZZ_CALL_OF(VertexPool, set_vertex_color, void, (unsigned long, const vec4&)),
    ORVEX_FUZZ_CALL(VertexPool, get_vertex_color),
    ORVEX_FUZZ_CALL(VertexPool, map_vertex_buffer),
    ORVEX_FUZZ_CALL(VertexPool, unmap_vertex_buffer),
    ORVEX_FUZZ_CALL(VertexPool, shader_storage_init),
    ORVEX_FUZZ_CALL(VertexPool, shader_storage_cleanup),
    ORVEX_FUZZ_CALL(VertexPool, shader_storage_buffer_map),
    ORVEX_FUZZ_CALL(VertexPool, shader_storage_buffer_unmap),
    ORVEX_FUZZ_CALL(VertexPool, shader_storage_buffer_bind),
    ORVEX_FUZZ_CALL(VertexPool, shader_storage_buffer_bind_base),
    ORVEX_FUZZ_CALL(VertexPool, shader_storage_buffer_unbind),
    ORVEX_FUZZ_CALL(VertexPool, apply_memory_barriers),
    ORVEX_FUZZ_CALL_OF(Point, set_position, void, (const vec3&)),
    ORVEX_FUZZ_CALL_OF(Point, set_color, void, (const vec4&)),

    ORVEX_FUZZ_CALL(ParticleSystem, initialize),
    ORVEX_FUZZ_CALL(ParticleSystem, terminate),
    ORVEX_FUZZ_CALL(ParticleSystem, process_particle_emitters),
    ORVEX_FUZZ_CALL(ParticleSystem, process_particle_actions),
    ORVEX_FUZZ_CALL(ParticleSystem, update_particles_lifetime),
    ORVEX_FUZZ_CALL(ParticleSystem, get_num_alive_particles),
    ORVEX_FUZZ_CALL(ParticleSystem, create_emitter),
    ORVEX_FUZZ_CALL(ParticleSystem, create_action),
    ORVEX_FUZZ_CALL(ParticleSystem, vertex_pool_prepare_render),
    ORVEX_FUZZ_CALL(ParticleSystem, vertex_pool_render),
    ORVEX_FUZZ_CALL(ParticleSystem, set_particle_lifetime),
    ORVEX_FUZZ_CALL(ParticleSystem, update),
    {"ParticleSystem::spawn_particles_emitter", &spawn},
    {"ParticleEmitter", &set_emitter},
    {"ParticleAction", &set_action},
    {"ParticleSystem::kill_emitter", &kill_emitter},
    {"ParticleSystem::kill_action", &kill_action},
};

} // namespace

std::span<const Operation> line_operations() {
    return rows;
}

} // namespace orvex_fuzz
