/// @file
/// The price of one step of a particle system.
///
/// Goals, as `ratio` in the output:
/// - 100,000 living particles under gravity: at most 2 times a plain loop over one array for each
///   coordinate (`living`). `living_full` has an emitter besides, which looks through all of them
///   for a dead one in each step.
/// - 1,000,000 particles of which 1 % live: bounded by reading the lives once, here by a sum of
///   them. The living lie in front, as emitters leave them (`sparse_front`), or anywhere
///   (`sparse_scattered`). A step also has to write all the lives: `sparse_front_aging` compares
///   with a loop that does nothing else.
///
/// `draw` is what a frame adds: the living written to the points that draw them.
///
/// Engine and plain loop take turns, so that what else the machine does falls on both.
///
/// particle_bench --benchmark_min_time=2

#include <algorithm>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/support/owned.h"
#include "bench/support/row.h"
#include "orvex/geometry/particles/particle_action.h"
#include "orvex/geometry/particles/particle_emitter.h"
#include "orvex/geometry/particles/particle_pool.h"
#include "orvex/geometry/particles/particle_system.h"

namespace {

using namespace orvex;
using orvex_bench::Against;

constexpr float dt = 1e-6f; ///< so short that nothing dies
constexpr float lifetime = 1e3f;

using System = Owned<ParticleSystem>;

System make_system(unsigned long count) {
    System system(new ParticleSystem);
    system->initialize(count);
    system->set_particle_lifetime(lifetime);
    system->create_action();
    return system;
}

ParticlePool& pool_of(const System& system) {
    return *system->get_particle_pool();
}

/// So many living, in front or anywhere; a few of these meet in one place.
System make_sparse_system(unsigned long count, unsigned long living, bool scattered) {
    System system = make_system(count);
    unsigned long state = 1;
    for (unsigned long i = 0; i < living; ++i) {
        state = state * 6364136223846793005ul + 1442695040888963407ul;
        pool_of(system).lifetimes[scattered ? (state >> 33) % count : i] = lifetime;
    }
    return system;
}

/// The plain loop: one array for each coordinate, nothing ever asked.
struct PlainParticles {
    explicit PlainParticles(unsigned long count)
        : x(count, 1.0f)
        , y(count, 1.0f)
        , z(count, 1.0f)
        , vx(count)
        , vy(count)
        , vz(count)
        , lives(count, lifetime) {}

    void step() {
        for (unsigned long i = 0; i < lives.size(); ++i) {
            vx[i] += dt * gravity[0];
            vy[i] += dt * gravity[1];
            vz[i] += dt * gravity[2];
            x[i] += vx[i] * dt;
            y[i] += vy[i] * dt;
            z[i] += vz[i] * dt;
            lives[i] -= dt;
        }
    }

    float gravity[3] = {0.0f, -9.81f, 0.0f};
    std::vector<float> x, y, z, vx, vy, vz, lives;
};

/// The row of one particle.
template<class Engine, class Plain>
void take_turns(benchmark::State& state, const Against& against, unsigned long particles,
                Engine engine, Plain plain) {
    orvex_bench::take_turns(state, against, engine, plain, static_cast<double>(particles));
}

constexpr unsigned long many = 100'000;

void step_living(benchmark::State& state, bool with_emitter) {
    System system = make_sparse_system(many, many, false);
    if (with_emitter)
        system->create_emitter()->set_particle_rate(2.0f / dt);
    PlainParticles plain(many);
    take_turns(
        state, {"a loop over arrays", 1.0}, many, [&] { system->update(dt, nullptr); },
        [&] { plain.step(); });
}

void living(benchmark::State& state) {
    step_living(state, false);
}
BENCHMARK(living)->UseManualTime()->Unit(benchmark::kMicrosecond);

void living_full(benchmark::State& state) {
    step_living(state, true);
}
BENCHMARK(living_full)->UseManualTime()->Unit(benchmark::kMicrosecond);

/// In sixteen parts, so that the additions don't wait for each other.
float sum_of(const float* values, unsigned long count) {
    float sums[16] = {};
    for (unsigned long i = 0; i + 16 <= count; i += 16)
        for (unsigned long k = 0; k < 16; ++k)
            sums[k] += values[i + k];
    float sum = 0.0f;
    for (const float part : sums)
        sum += part;
    return sum;
}

constexpr unsigned long sparse = 1'000'000;

void step_sparse(benchmark::State& state, double goal, bool scattered) {
    System system = make_sparse_system(sparse, sparse / 100, scattered);
    const float* const lives = pool_of(system).lifetimes;
    take_turns(
        state, {"a sum of the lives", goal}, sparse, [&] { system->update(dt, nullptr); },
        [lives] { benchmark::DoNotOptimize(sum_of(lives, sparse)); });
}

void sparse_front(benchmark::State& state) {
    step_sparse(state, 2.5, false);
}
BENCHMARK(sparse_front)->UseManualTime()->Unit(benchmark::kMicrosecond);

void sparse_scattered(benchmark::State& state) {
    step_sparse(state, 4.0, true);
}
BENCHMARK(sparse_scattered)->UseManualTime()->Unit(benchmark::kMicrosecond);

void sparse_front_aging(benchmark::State& state) {
    System system = make_sparse_system(sparse, sparse / 100, false);
    std::vector<float> lives(sparse, lifetime);
    take_turns(
        state, {"a loop that ages", 1.5}, sparse, [&] { system->update(dt, nullptr); },
        [&lives] {
            for (float& life : lives)
                life -= dt;
        });
}
BENCHMARK(sparse_front_aging)->UseManualTime()->Unit(benchmark::kMicrosecond);

void draw(benchmark::State& state) {
    System system = make_sparse_system(many, many, false);
    for (auto _ : state)
        system->vertex_pool_prepare_render();
    state.SetItemsProcessed(state.iterations() * static_cast<long>(many));
}
BENCHMARK(draw)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
