/// @file
/// A system of particles: who brings them to life, who moves them, and what is drawn of them.
///
/// The system holds emitters and actions through handles, as a host may end any of them on its
/// own. A step is: emitters in order of creation, then actions in theirs, then time is taken off
/// every life. The walks over the pool stand in particle_motion.

#include "orvex/geometry/particles/particle_system.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "orvex/base/private/misuse.h"
#include "orvex/geometry/particles/particle_action.h"
#include "orvex/geometry/particles/particle_emitter.h"
#include "orvex/geometry/particles/particle_pool.h"
#include "orvex/geometry/particles/private/particle_motion.h"
#include "orvex/geometry/particles/private/particle_node_list.h"
#include "orvex/geometry/points/vertex_pool.h"
#include "orvex/renderer/records/vertex_pool_data.h"

namespace orvex {

struct ParticleSystem::ParticleSystemData {
    ParticleNodeList<ParticleEmitter> emitters;
    ParticleNodeList<ParticleAction> actions;
    float particle_lifetime = 1.0f;
};

ParticleSystem::ParticleSystem()
    : data(std::make_unique<ParticleSystemData>()) {
    set_type(NODE_TYPE_PARTICLE_SYSTEM);
}

ParticleSystem::~ParticleSystem() = default;

bool ParticleSystem::_cleanup(Renderer* renderer) {
    terminate(renderer);
    // NOLINTNEXTLINE(clang-analyzer-unix.Malloc): a pool was freed, no memory.
    return Object::_cleanup(renderer);
}

/// The last action takes the time off the lives too, which spares a walk over the pool. That can't
/// be told from three walks: what lies in the list was made by `create_action`, so that no host's
/// code runs in between.
bool ParticleSystem::_update(float dt) {
    if (!pool)
        return Object::_update(dt);
    process_particle_emitters(dt);
    ParticleAction* last = nullptr;
    data->actions.for_each([this, dt, &last](ParticleAction& action) {
        if (last)
            last->update_particle_pool(*pool, dt);
        last = &action;
    });
    if (last)
        last->update_particle_pool_and_lifetimes(*pool, dt);
    else
        update_particles_lifetime(dt);
    return Object::_update(dt);
}

void ParticleSystem::_render(Renderer* renderer) {
    vertex_pool_prepare_render();
    vertex_pool_render(renderer);
}

void ParticleSystem::set_opengl_2_3_rendering_states(bool gl2, Node* node) {
    if (pool && pool->vertex_pool)
        pool->vertex_pool->set_opengl_2_3_rendering_states(gl2, nullptr);
    Object::set_opengl_2_3_rendering_states(gl2, node);
}

bool ParticleSystem::initialize(unsigned long count) {
    if (pool)
        return true;
    std::unique_ptr<ParticlePool> made = std::make_unique<ParticlePool>();
    if (!made->alloc(count))
        return false;
    pool = std::move(made);
    return true;
}

void ParticleSystem::terminate(Renderer* renderer) {
    data->emitters.release_all(renderer);
    data->actions.release_all(renderer);
    const std::unique_ptr<ParticlePool> ended(std::move(pool));
    if (ended)
        ended->free(renderer);
}

int ParticleSystem::process_particle_emitters(float dt) {
    if (!pool)
        return 0;
    pool->num_spawned = 0;
    pool->num_spawned_v2 = 0;
    pool->scan_position = 0;
    int spawned = 0;
    data->emitters.for_each([this, dt, &spawned](ParticleEmitter& emitter) {
        spawned += spawn_particles_emitter(emitter, dt);
    });
    return spawned;
}

void ParticleSystem::process_particle_actions(float dt) {
    if (!pool)
        return;
    data->actions.for_each(
        [this, dt](ParticleAction& action) { action.update_particle_pool(*pool, dt); });
}

void ParticleSystem::update_particles_lifetime(float dt) {
    if (pool)
        particle_motion::age(*pool, dt);
}

namespace {

/// Notes a particle as spawned. A host that turned the scan back can spawn more in a step than the
/// list has room for.
void note_spawned(const ParticlePool& pool, unsigned long* list, unsigned long place,
                  unsigned long i) {
    if (place < pool.num_particles)
        list[place] = i;
}

} // namespace

int ParticleSystem::spawn_particles_emitter(ParticleEmitter& emitter, float dt) {
    if (!pool)
        return 0;
    const int due = emitter.get_num_particles_to_spawn(dt);
    if (due < 1)
        return 0;
    unsigned long spawned = 0;
    unsigned long i = pool->scan_position;
    while (spawned < static_cast<unsigned long>(due)) {
        i = particle_motion::find_dead(*pool, i);
        if (i >= pool->num_particles)
            break;
        note_spawned(*pool, pool->spawned_list, pool->num_spawned + spawned, i);
        note_spawned(*pool, pool->spawned_list_v2, pool->num_spawned_v2 + spawned, i);
        emitter.spawn_particle(*pool, pool->indices[i]);
        pool->lifetimes[i] = data->particle_lifetime;
        ++spawned;
        ++i;
    }
    pool->scan_position = i;
    pool->num_spawned += spawned;
    pool->num_spawned_v2 += spawned;
    return static_cast<int>(spawned);
}

unsigned long ParticleSystem::get_num_alive_particles() const {
    return pool ? particle_motion::count_living(*pool) : 0;
}

ParticleEmitter* ParticleSystem::create_emitter() {
    return data->emitters.create();
}

unsigned long ParticleSystem::get_num_emitters() const {
    return data->emitters.size();
}

ParticleEmitter* ParticleSystem::get_emitter(int id) const {
    return data->emitters.by_id(id);
}

ParticleEmitter* ParticleSystem::get_emitter_by_index(int i) const {
    return data->emitters.by_index(i);
}

bool ParticleSystem::kill_emitter(Renderer* renderer, int id) {
    return data->emitters.kill(renderer, id) ||
           misuse("ParticleSystem::kill_emitter", "no emitter of that id");
}

ParticleAction* ParticleSystem::create_action() {
    return data->actions.create();
}

unsigned long ParticleSystem::get_num_actions() const {
    return data->actions.size();
}

ParticleAction* ParticleSystem::get_action(int id) const {
    return data->actions.by_id(id);
}

ParticleAction* ParticleSystem::get_action_by_index(int i) const {
    return data->actions.by_index(i);
}

bool ParticleSystem::kill_action(Renderer* renderer, int id) {
    return data->actions.kill(renderer, id) ||
           misuse("ParticleSystem::kill_action", "no action of that id");
}

namespace {

/// How many points can be written: none in records. A host can have made the points anew.
unsigned long room_in(const VertexPoolData& points) {
    return std::min({points.num_vertices, points.position.num_elements, points.color.num_elements});
}

} // namespace

void ParticleSystem::vertex_pool_prepare_render() {
    if (!pool || !pool->vertex_pool)
        return;
    VertexPool& points = *pool->vertex_pool;
    VertexPoolData& store = *points.get_vertex_pool_data();
    const unsigned long written = particle_motion::write_living(
        *pool, data->particle_lifetime, store.position.data, store.color.data, room_in(store));
    if (written > 0) {
        store.positions_need_update = true;
        store.colors_need_update = true;
    }
    points.set_render_start_offset(0);
    points.set_render_num_vertices(static_cast<int>(written));
}

void ParticleSystem::vertex_pool_render(Renderer* renderer) {
    if (pool && pool->vertex_pool)
        pool->vertex_pool->_render(renderer);
}

void ParticleSystem::set_particle_lifetime(float seconds) {
    data->particle_lifetime = seconds;
}

float ParticleSystem::get_particle_lifetime() const {
    return data->particle_lifetime;
}

ParticlePool* ParticleSystem::get_particle_pool() const {
    return pool.get();
}

} // namespace orvex
