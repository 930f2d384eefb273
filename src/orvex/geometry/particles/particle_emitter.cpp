/// @file
/// What an emitter gives a particle when it comes to life.
///
/// Random numbers are drawn from the process's one source, in an order that is part of the
/// result: the same seed gives the same particles.

#include "orvex/geometry/particles/particle_emitter.h"

#include <cmath>
#include <limits>

#include "orvex/geometry/particles/particle_pool.h"
#include "orvex/math/math.h"
#include "orvex/math/vec4.h"

namespace orvex {

struct ParticleEmitter::ParticleEmitterData {
    float spawn_remainder = 0.0f; ///< the fraction of a particle left over from the last step
    PARTICLE_EMITTER_TYPE emitter_type = PARTICLE_EMITTER_POINT;
    float particle_rate = 50.0f;
    float particle_speed = 2.0f;
    float particle_speed_variance = 1.0f;
    vec3 spawn_position_min{-0.5f, -0.5f, -0.5f};
    vec3 spawn_position_max{0.5f, 0.5f, 0.5f};
    vec3 spawn_direction_min{-1.0f, -1.0f, -1.0f};
    vec3 spawn_direction_max{1.0f, 1.0f, 1.0f};
};

ParticleEmitter::ParticleEmitter()
    : data(std::make_unique<ParticleEmitterData>()) {
    set_type(NODE_TYPE_PARTICLE_EMITTER);
}

ParticleEmitter::~ParticleEmitter() = default;

void ParticleEmitter::spawn_particle(ParticlePool& pool, unsigned long i) {
    if (data->emitter_type == PARTICLE_EMITTER_POINT)
        spawn_particle_point(pool, i);
}

namespace {

float floor_in_double(float value) {
    return static_cast<float>(std::floor(static_cast<double>(value)));
}

int saturated(float value) {
    if (std::isnan(value))
        return 0;
    constexpr float bound = 0x1p31f;
    if (value >= bound)
        return std::numeric_limits<int>::max();
    return value < -bound ? std::numeric_limits<int>::min() : static_cast<int>(value);
}

} // namespace

int ParticleEmitter::get_num_particles_to_spawn(float dt) {
    const float due = data->particle_rate * dt;
    float& remainder = data->spawn_remainder;
    float whole = floor_in_double(due);
    remainder += due - whole;
    if (remainder >= 1.0f) {
        const float carried = floor_in_double(remainder);
        whole += carried;
        remainder -= carried;
    }
    return saturated(whole);
}

namespace {

/// A random point in a box. One number per statement: arguments may be evaluated in any order.
vec3 random_in_box(const vec3& min, const vec3& max) {
    vec3 point;
    point.x = Math::rnd(min.x, max.x);
    point.y = Math::rnd(min.y, max.y);
    point.z = Math::rnd(min.z, max.z);
    return point;
}

} // namespace

void ParticleEmitter::spawn_particle_point(ParticlePool& pool, unsigned long i) {
    if (i >= pool.num_particles)
        return;
    const vec3 offset = random_in_box(data->spawn_position_min, data->spawn_position_max);
    const vec3 direction = random_in_box(data->spawn_direction_min, data->spawn_direction_max);
    const float variance = data->particle_speed_variance;
    const float speed = data->particle_speed + Math::rnd(-variance, variance);
    pool.positions[i] = Object::get_position().get_vec3() + offset;
    pool.velocities[i] = direction * speed;
}

void ParticleEmitter::set_emitter_type(PARTICLE_EMITTER_TYPE type) {
    data->emitter_type = type;
}

void ParticleEmitter::set_particle_rate(float rate) {
    data->particle_rate = rate;
}

float ParticleEmitter::get_particle_rate() const {
    return data->particle_rate;
}

void ParticleEmitter::set_particle_speed(float speed) {
    data->particle_speed = speed;
}

void ParticleEmitter::set_particle_speed_variance(float variance) {
    data->particle_speed_variance = variance;
}

void ParticleEmitter::set_spawn_directions(const vec3& min, const vec3& max) {
    data->spawn_direction_min = min;
    data->spawn_direction_max = max;
}

void ParticleEmitter::set_spawn_positions(const vec3& min, const vec3& max) {
    data->spawn_position_min = min;
    data->spawn_position_max = max;
}

} // namespace orvex
