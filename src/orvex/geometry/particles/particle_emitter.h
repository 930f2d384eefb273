#pragma once

/// @file
/// `ParticleEmitter`, which brings particles to life.

#include "orvex/api.h"
#include "orvex/fwd.h"
#include "orvex/renderer/records/geometry_enums.h"
#include "orvex/scene/object.h"

#include <memory>

namespace orvex {

/// Brings dead particles of a system to life, so many a second, and sets where they start and how
/// fast.
///
/// `ParticleSystem::create_emitter` makes it, and the system ends it. It starts with a reference
/// count of 0 and is no child of the system: a host that adopts one with `add_child` calls
/// `add_ref` first, so that the system's reference stays the system's. A host may derive from it
/// and hand its own to `ParticleSystem::spawn_particles_emitter`.
///
/// Particles start in a box around the emitter's own `get_position`, each somewhere at random;
/// transforms of its parents don't count. All numbers at random are `Math::rnd`'s, in an order that
/// is told below, so that a seed gives the same particles again. Used on one thread.
///
/// @code
/// ParticleEmitter* nozzle = system->create_emitter();
/// nozzle->set_particle_rate(400.0f);
/// nozzle->set_spawn_positions(vec3(), vec3());
/// nozzle->set_spawn_directions(vec3(-0.2f, 1.0f, -0.2f), vec3(0.2f, 1.0f, 0.2f));
/// nozzle->set_particle_speed(8.0f);
/// @endcode
class ORVEX_API ParticleEmitter : public Object {
public:
    /// An emitter of 50 particles a second in a box of side 1, in all directions.
    ParticleEmitter();
    ~ParticleEmitter() override;

    /// Sets the particle's position and velocity as the type of the emitter wants it, here by
    /// `spawn_particle_point`. Called for each particle brought to life, before its life is set.
    /// @param i  index in the pool
    virtual void spawn_particle(ParticlePool& pool, unsigned long i);

    /// Number of particles due in a step. What is left of a particle is kept and added to the next
    /// step, so that the rate doesn't depend on the length of the steps.
    /// @param dt  length of the step in seconds
    /// @return cut to the range of an int; 0 if it is not a number
    virtual int get_num_particles_to_spawn(float dt);

    /// Sets position and velocity of a particle, drawing seven numbers: position x, y, z, direction
    /// x, y, z, speed. The direction is not normalised. An index out of range is ignored, and draws
    /// none.
    void spawn_particle_point(ParticlePool& pool, unsigned long i);

    /// `PARTICLE_EMITTER_POINT` at first. Another value leaves particles where they are, with the
    /// velocity they have.
    void set_emitter_type(PARTICLE_EMITTER_TYPE type);

    void set_particle_rate(float rate); ///< particles a second; 50 at first
    float get_particle_rate() const;    ///< as set; 50 at first

    void set_particle_speed(float speed); ///< factor of the direction; 2 at first
    /// The speed of a particle is at most so much above or below that of the emitter; 1 at first.
    void set_particle_speed_variance(float variance);

    /// Box of directions, from (-1, -1, -1) to (1, 1, 1) at first.
    void set_spawn_directions(const vec3& min, const vec3& max);
    /// Box of starting points around the emitter, from (-0.5, -0.5, -0.5) to (0.5, 0.5, 0.5) at
    /// first.
    void set_spawn_positions(const vec3& min, const vec3& max);

private:
    struct ParticleEmitterData;

    std::unique_ptr<ParticleEmitterData> data;
};

} // namespace orvex
