#pragma once

/// @file
/// `ParticleAction`, which moves particles.

#include "orvex/api.h"
#include "orvex/fwd.h"
#include "orvex/renderer/records/geometry_enums.h"
#include "orvex/scene/object.h"

#include <memory>

namespace orvex {

/// Moves the living particles of a system in each step.
///
/// `ParticleSystem::create_action` makes it, and the system ends it. It starts with a reference
/// count of 0 and is no child of the system: a host that adopts one with `add_child` calls
/// `add_ref` first, so that the system's reference stays the system's.
///
/// Its transform has no effect. A particle moves by actions only, one with no gravity included: a
/// system without an action leaves its particles where they started, and one with two actions moves
/// them twice. Used on one thread.
///
/// @code
/// system->create_action()->set_gravity(0.0f, -1.62f, 0.0f); // on the moon
/// @endcode
class ORVEX_API ParticleAction : public Object {
public:
    /// An action with the gravity of the earth.
    ParticleAction();
    ~ParticleAction() override;

    /// Does nothing: particles are moved as a pool.
    virtual void update_particle(ParticlePool& pool, unsigned long i, float dt);

    /// Moves the pool as the type of the action wants it, here by `update_particle_pool_gravity`.
    /// @param dt  length of the step in seconds
    virtual void update_particle_pool(ParticlePool& pool, float dt);

    /// Does nothing: particles are moved as a pool.
    void update_particle_gravity(ParticlePool& pool, unsigned long i, float dt);

    /// Accelerates each living particle, then moves it by its new velocity (semi-implicit Euler).
    /// @param dt  length of the step in seconds
    void update_particle_pool_gravity(ParticlePool& pool, float dt);

    /// `PARTICLE_ACTION_GRAVITY` at first. Another value does nothing.
    void set_action_type(PARTICLE_ACTION_TYPE type);

    /// Acceleration in units per second squared; (0, -9.81, 0) at first. (0, 0, 0) moves particles
    /// on straight lines.
    void set_gravity(float x, float y, float z);
    void set_gravity(const vec3& gravity); ///< as the form of three floats
    const vec3& get_gravity() const;       ///< as set; owned by this action

private:
    friend class ParticleSystem;
    struct ParticleActionData;

    void update_particle_pool_and_lifetimes(ParticlePool& pool, float dt);

    std::unique_ptr<ParticleActionData> data;
};

} // namespace orvex
