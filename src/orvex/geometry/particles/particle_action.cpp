#include "orvex/geometry/particles/particle_action.h"

#include "orvex/geometry/particles/private/particle_motion.h"
#include "orvex/math/vec3.h"

namespace orvex {

struct ParticleAction::ParticleActionData {
    PARTICLE_ACTION_TYPE action_type = PARTICLE_ACTION_GRAVITY;
    vec3 gravity{0.0f, -9.81f, 0.0f}; ///< units per second squared
};

ParticleAction::ParticleAction()
    : data(std::make_unique<ParticleActionData>()) {
    set_type(NODE_TYPE_PARTICLE_ACTION);
}

ParticleAction::~ParticleAction() = default;

void ParticleAction::update_particle(ParticlePool&, unsigned long, float) {}

void ParticleAction::update_particle_pool(ParticlePool& pool, float dt) {
    if (data->action_type == PARTICLE_ACTION_GRAVITY)
        update_particle_pool_gravity(pool, dt);
}

void ParticleAction::update_particle_gravity(ParticlePool&, unsigned long, float) {}

void ParticleAction::update_particle_pool_gravity(ParticlePool& pool, float dt) {
    particle_motion::fall(pool, data->gravity, dt);
}

/// What `update_particle_pool` and the end of a step do, in a single walk over the pool.
void ParticleAction::update_particle_pool_and_lifetimes(ParticlePool& pool, float dt) {
    if (data->action_type == PARTICLE_ACTION_GRAVITY)
        particle_motion::fall_and_age(pool, data->gravity, dt);
    else
        particle_motion::age(pool, dt);
}

void ParticleAction::set_action_type(PARTICLE_ACTION_TYPE type) {
    data->action_type = type;
}

void ParticleAction::set_gravity(float x, float y, float z) {
    data->gravity.set(x, y, z);
}

void ParticleAction::set_gravity(const vec3& gravity) {
    data->gravity = gravity;
}

const vec3& ParticleAction::get_gravity() const {
    return data->gravity;
}

} // namespace orvex
