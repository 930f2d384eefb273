#pragma once

/// @file
/// The walks over a pool of particles that a step is made of.

#include "orvex/fwd.h"
#include "orvex/renderer/records/geometry_enums.h"

namespace orvex {

namespace particle_motion {

/// Number of particles with life left.
unsigned long count_living(const ParticlePool& pool);

/// The first dead particle from `first` on, the number of particles if there is none. A life that
/// is not a number is neither dead nor alive.
unsigned long find_dead(const ParticlePool& pool, unsigned long first);

/// Accelerates the living and moves them by their new velocities.
void fall(ParticlePool& pool, const vec3& gravity, float dt);

/// `fall`, then `age`, in a single walk.
void fall_and_age(ParticlePool& pool, const vec3& gravity, float dt);

/// Takes time off the life of every particle.
void age(ParticlePool& pool, float dt);

/// Writes the positions of the living one behind the other, and a white for each that fades out
/// from birth to death. Stops when the room is full.
/// @return how many were written
unsigned long write_living(const ParticlePool& pool, float lifetime, vec3* positions, vec4* colors,
                           unsigned long room);

} // namespace particle_motion
} // namespace orvex
