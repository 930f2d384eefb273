#pragma once

/// @file
/// Particle systems of a test, and their state to the last bit.

#include <bit>
#include <cstdint>
#include <vector>

#include "orvex/geometry/particles/particle_action.h"
#include "orvex/geometry/particles/particle_emitter.h"
#include "orvex/geometry/particles/particle_pool.h"
#include "orvex/geometry/particles/particle_system.h"
#include "tests/orvex/geometry/mesh/owned_mesh.h"
#include "tests/orvex/geometry/printers.h"

namespace orvex_test {

using OwnedSystem = Owned<orvex::ParticleSystem>;

inline OwnedSystem make_system(unsigned long count) {
    OwnedSystem system(new orvex::ParticleSystem);
    system->initialize(count);
    return system;
}

/// Sets the lives of the first particles.
inline void set_lives(orvex::ParticlePool& pool, const std::vector<float>& lives) {
    for (unsigned long i = 0; i < lives.size(); ++i)
        pool.lifetimes[i] = lives[i];
}

using Bits = std::vector<std::uint32_t>;

inline Bits bits_of(const float* values, unsigned long count) {
    Bits bits;
    for (unsigned long i = 0; i < count; ++i)
        bits.push_back(std::bit_cast<std::uint32_t>(values[i]));
    return bits;
}

inline Bits bits_of(const orvex::vec3* values, unsigned long count) {
    Bits bits;
    for (unsigned long i = 0; i < count; ++i)
        for (const float value : {values[i].x, values[i].y, values[i].z})
            bits.push_back(std::bit_cast<std::uint32_t>(value));
    return bits;
}

/// Counts the ends of nodes that it is a child of.
class EndProbe : public orvex::Node {
public:
    explicit EndProbe(int& counter)
        : ends(counter) {}
    ~EndProbe() override { ++ends; }

private:
    int& ends;
};

} // namespace orvex_test
