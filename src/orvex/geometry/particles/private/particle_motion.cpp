/// @file
/// The walks over a pool, sixteen particles at a time.
///
/// A group that lives as a whole goes through lanes; one that lives in part is noted, and its
/// living are moved one by one when the walk through its block is done. Both ways compute the
/// same operations in the same order, so that the result does not depend on who lives beside
/// whom.

#include "orvex/geometry/particles/private/particle_motion.h"

#include <algorithm>

#include "orvex/geometry/particles/particle_pool.h"
#include "orvex/math/private/lanes.h"
#include "orvex/math/vec4.h"

namespace orvex::particle_motion {

namespace {

// A group is looked at as a whole: most are all alive or all dead, as emitters fill a pool from its
// start. Its lives fill a cache line.
constexpr unsigned long group_size = 16; // as many as `lanes::bits_above_zero` takes
constexpr unsigned int all_of_group = (1u << group_size) - 1u;

/// Calls `one(i)` for each particle of a group that lives.
template<class One>
void for_each_in_group(unsigned long first, unsigned int living, One one) {
    for (; living; living &= living - 1u)
        one(first + static_cast<unsigned long>(__builtin_ctz(living)));
}

/// Number of particles that lie in whole groups.
unsigned long num_grouped(const ParticlePool& pool) {
    return pool.num_particles - pool.num_particles % group_size;
}

} // namespace

unsigned long count_living(const ParticlePool& pool) {
    unsigned long living = 0;
    for (unsigned long i = 0; i < pool.num_particles; ++i)
        living += pool.lifetimes[i] > 0.0f ? 1 : 0;
    return living;
}

unsigned long find_dead(const ParticlePool& pool, unsigned long first) {
    const unsigned long count = pool.num_particles;
    const float* const lifetimes = pool.lifetimes;
    unsigned long i = first;
    while (i < count && count - i >= group_size &&
           lanes::bits_above_zero(lifetimes + i) == all_of_group)
        i += group_size;
    while (i < count && !(lifetimes[i] <= 0.0f))
        ++i;
    return i;
}

namespace {

/// Four floats of an array of them, or of vectors.
floats4 load(const void* from, unsigned long index) {
    return lanes::load<floats4>(static_cast<const char*>(from) + index * sizeof(floats4));
}

void store(void* to, unsigned long index, floats4 four) {
    lanes::store(static_cast<char*>(to) + index * sizeof(four), four);
}

void take_time(float* lifetimes, unsigned long count, float dt) {
    const unsigned long fours = count / 4;
    for (unsigned long i = 0; i < fours; ++i)
        store(lifetimes, i, load(lifetimes, i) - dt);
    for (unsigned long i = fours * 4; i < count; ++i)
        lifetimes[i] -= dt;
}

/// Semi-implicit Euler: the velocity first, then the position by the new one.
struct Fall {
    Fall(const vec3& gravity, float seconds)
        : change(gravity * seconds)
        , changes{{change.x, change.y, change.z, change.x},
                  {change.y, change.z, change.x, change.y},
                  {change.z, change.x, change.y, change.z}}
        , dt(seconds) {}

    void one(vec3& position, vec3& velocity) const {
        velocity += change;
        position += velocity * dt;
    }

    /// Four particles are three times four floats.
    void group(vec3* positions, vec3* velocities) const {
        for (unsigned long i = 0; i < group_size / 4 * 3; ++i) {
            const floats4 velocity = load(velocities, i) + changes[i % 3];
            store(velocities, i, velocity);
            store(positions, i, load(positions, i) + velocity * dt);
        }
    }

    vec3 change;        ///< of a velocity
    floats4 changes[3]; ///< the same, four times over
    float dt;
};

/// The groups of a block that live in part. They wait until the walk through their block is done,
/// and are noted without a branch: where few live among many dead, it would often go wrong.
class MixedGroups {
public:
    static constexpr unsigned long block_size = 64 * group_size;

    /// Notes a group by its place in the block; one that is all dead is written over by the next.
    void note(unsigned long place, unsigned int living) {
        groups[count] = static_cast<unsigned int>(place) << group_size | living;
        count += living != 0 ? 1 : 0;
    }

    template<class One>
    void for_each(unsigned long block, One one) const {
        for (unsigned long k = 0; k < count; ++k)
            for_each_in_group(block + (groups[k] >> group_size), groups[k] & all_of_group, one);
    }

private:
    unsigned int groups[block_size / group_size];
    unsigned long count = 0;
};

/// `done(i, n)` is called when the n lives from i on have been read.
template<class Done>
void fall_and(ParticlePool& pool, const Fall& fall, Done done) {
    vec3* const positions = pool.positions;
    vec3* const velocities = pool.velocities;
    const float* const lifetimes = pool.lifetimes;
    const auto one = [=](unsigned long i) { fall.one(positions[i], velocities[i]); };
    const unsigned long grouped = num_grouped(pool);
    for (unsigned long block = 0; block < grouped; block += MixedGroups::block_size) {
        const unsigned long end = std::min(block + MixedGroups::block_size, grouped);
        MixedGroups mixed;
        for (unsigned long i = block; i < end; i += group_size) {
            const unsigned int living = lanes::bits_above_zero(lifetimes + i);
            if (living == all_of_group)
                fall.group(positions + i, velocities + i);
            else
                mixed.note(i - block, living);
            done(i, group_size);
        }
        mixed.for_each(block, one);
    }
    for (unsigned long i = grouped; i < pool.num_particles; ++i)
        if (lifetimes[i] > 0.0f)
            one(i);
    done(grouped, pool.num_particles - grouped);
}

} // namespace

void fall(ParticlePool& pool, const vec3& gravity, float dt) {
    fall_and(pool, Fall(gravity, dt), [](unsigned long, unsigned long) {});
}

void fall_and_age(ParticlePool& pool, const vec3& gravity, float dt) {
    float* const lifetimes = pool.lifetimes;
    fall_and(pool, Fall(gravity, dt), [lifetimes, dt](unsigned long i, unsigned long count) {
        take_time(lifetimes + i, count, dt);
    });
}

void age(ParticlePool& pool, float dt) {
    take_time(pool.lifetimes, pool.num_particles, dt);
}

unsigned long write_living(const ParticlePool& pool, float lifetime, vec3* positions, vec4* colors,
                           unsigned long room) {
    unsigned long written = 0;
    const auto write = [=, &pool, &written](unsigned long i) {
        if (written == room)
            return;
        const float part = (lifetime - pool.lifetimes[i]) / lifetime;
        positions[written] = pool.positions[i];
        colors[written] = vec4(1.0f, 1.0f, 1.0f, 1.0f - part);
        ++written;
    };
    const unsigned long grouped = num_grouped(pool);
    for (unsigned long i = 0; i < grouped; i += group_size)
        for_each_in_group(i, lanes::bits_above_zero(pool.lifetimes + i), write);
    for (unsigned long i = grouped; i < pool.num_particles; ++i)
        if (pool.lifetimes[i] > 0.0f)
            write(i);
    return written;
}

} // namespace orvex::particle_motion
