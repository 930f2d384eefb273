#pragma once

/// @file
/// `ParticlePool`, the particles of one particle system.

#include "orvex/api.h"
#include "orvex/fwd.h"
#include "orvex/math/vec3.h"
#include "orvex/renderer/records/geometry_enums.h"

namespace orvex {

/// The particles of one system, one array for each of their properties, and the points that draw
/// them.
///
/// A `ParticleSystem` makes it in `initialize` and frees it in `terminate`. The number of particles
/// never changes in between: a particle whose life is over lies in its place until an emitter finds
/// it and brings it to life again. The fields are public because emitters and actions write them.
///
/// Positions are in the space that the points are drawn in, velocities in units per second, lives
/// in seconds. Nothing is locked. The arrays hold `num_particles` elements each and belong to the
/// pool.
///
/// @code
/// ParticlePool& pool = *system->get_particle_pool();
/// for (unsigned long i = 0; i < pool.num_particles; ++i)
///     if (pool.lifetimes[i] > 0.0f && pool.positions[i].y < 0.0f)
///         pool.lifetimes[i] = 0.0f; // the floor ends it
/// @endcode
struct ORVEX_API ParticlePool {
    unsigned long num_particles = 0;   ///< particles, living and dead
    unsigned long* indices = nullptr;  ///< element i is i
    vec3* positions = nullptr;         ///< where the particles are
    vec3* velocities = nullptr;        ///< units per second
    float* lifetimes = nullptr;        ///< seconds left to live; a particle lives while above 0
    VertexPool* vertex_pool = nullptr; ///< the points drawn; held by the pool
    /// Where the next emitter starts to look for dead particles; 0 at the start of each step.
    unsigned long scan_position = 0;
    unsigned long num_spawned = 0;            ///< particles brought to life in this step
    unsigned long* spawned_list = nullptr;    ///< which they are
    unsigned long num_spawned_v2 = 0;         ///< the same number again
    unsigned long* spawned_list_v2 = nullptr; ///< the same list again
    float* ages = nullptr;                    ///< zeros, for the host's own use

    /// Makes a pool without particles.
    ParticlePool() = default;
    ParticlePool(const ParticlePool&) = delete;
    ParticlePool& operator=(const ParticlePool&) = delete;

    /// Frees all that is left, without a renderer.
    virtual ~ParticlePool();

    /// Makes `count` dead particles at rest, in place of those before, and the points to draw them.
    /// Their positions are random, between -10 and 10 on each axis: three numbers of `Math::rnd`
    /// for each particle, in the order x, y, z. GPU objects of the points before stay: `free` ends
    /// them.
    /// @param count  0 gives a pool in which nothing ever comes to life
    /// @return false, logging an error and leaving an empty pool, when there is no memory
    bool alloc(unsigned long count);

    /// Frees the particles, sets all counters to 0 and releases the points.
    /// @param renderer  ends their GPU objects; null leaves these alone
    void free(Renderer* renderer);
};

} // namespace orvex
