// Whole runs of a particle system against the same run told plainly, to the last bit.

#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "orvex/geometry/points/vertex_pool.h"
#include "orvex/math/math.h"
#include "orvex/renderer/records/vertex_pool_data.h"
#include "owned_particles.h"

namespace orvex_test {

using namespace orvex;

namespace {

constexpr float lifetime = 0.7f;
constexpr float step = 1.0f / 60.0f;
const vec3 earth(0.0f, -9.81f, 0.0f);
const vec3 wind(0.7f, 0.1f, -0.3f);

struct PlainEmitter {
    float rate;
    vec3 position;
    float remainder = 0.0f;

    int due(float dt) {
        const float product = rate * dt;
        float n = static_cast<float>(std::floor(static_cast<double>(product)));
        remainder += product - n;
        if (remainder >= 1.0f) {
            const float whole = static_cast<float>(std::floor(static_cast<double>(remainder)));
            n += whole;
            remainder -= whole;
        }
        return static_cast<int>(n);
    }
};

vec3 draw(float min, float max) {
    const float x = Math::rnd(min, max);
    const float y = Math::rnd(min, max);
    const float z = Math::rnd(min, max);
    return vec3(x, y, z);
}

/// The system as its description reads: one array for each property, one loop for each part.
class PlainSystem {
public:
    explicit PlainSystem(unsigned long count)
        : velocities(count)
        , lives(count, 0.0f) {
        for (unsigned long i = 0; i < count; ++i)
            positions.push_back(draw(-10.0f, 10.0f));
    }

    void update(float dt) {
        spawned.clear();
        scan_position = 0;
        for (PlainEmitter& emitter : emitters)
            spawn(emitter, dt);
        for (const vec3& gravity : gravities)
            fall(gravity, dt);
        for (float& life : lives)
            life -= dt;
    }

    std::vector<PlainEmitter> emitters;
    std::vector<vec3> gravities;
    std::vector<vec3> positions, velocities;
    std::vector<float> lives;
    std::vector<unsigned long> spawned;
    unsigned long scan_position = 0;

private:
    void spawn(PlainEmitter& emitter, float dt) {
        int left = emitter.due(dt);
        for (; left > 0 && scan_position < lives.size(); ++scan_position) {
            if (!(lives[scan_position] <= 0.0f))
                continue;
            const vec3 offset = draw(-0.5f, 0.5f);
            const vec3 direction = draw(-1.0f, 1.0f);
            const float speed = 2.0f + Math::rnd(-1.0f, 1.0f);
            positions[scan_position] = emitter.position + offset;
            velocities[scan_position] = direction * speed;
            lives[scan_position] = lifetime;
            spawned.push_back(scan_position);
            --left;
        }
    }

    void fall(const vec3& gravity, float dt) {
        for (unsigned long i = 0; i < lives.size(); ++i) {
            if (!(lives[i] > 0.0f))
                continue;
            velocities[i] = velocities[i] + gravity * dt;
            positions[i] = positions[i] + velocities[i] * dt;
        }
    }
};

void expect_same(const ParticlePool& pool, const PlainSystem& plain) {
    const unsigned long count = plain.lives.size();
    ASSERT_EQ(pool.num_particles, count);
    EXPECT_EQ(bits_of(pool.positions, count), bits_of(plain.positions.data(), count));
    EXPECT_EQ(bits_of(pool.velocities, count), bits_of(plain.velocities.data(), count));
    EXPECT_EQ(bits_of(pool.lifetimes, count), bits_of(plain.lives.data(), count));
    EXPECT_EQ(pool.scan_position, plain.scan_position);
    ASSERT_EQ(pool.num_spawned, plain.spawned.size());
    EXPECT_EQ(std::vector<unsigned long>(pool.spawned_list, pool.spawned_list + pool.num_spawned),
              plain.spawned);
}

/// The points that the living are drawn with, by the plain formulas.
void expect_same_points(const ParticlePool& pool, const PlainSystem& plain) {
    const VertexPool& points = *pool.vertex_pool;
    unsigned long j = 0;
    for (unsigned long i = 0; i < plain.lives.size(); ++i) {
        if (!(plain.lives[i] > 0.0f))
            continue;
        const float age = (lifetime - plain.lives[i]) / lifetime;
        EXPECT_EQ(points.get_vertex_position(j), vec4(plain.positions[i]));
        EXPECT_EQ(points.get_vertex_color(j), vec4(1.0f, 1.0f, 1.0f, 1.0f - age));
        ++j;
    }
    EXPECT_EQ(points.get_vertex_pool_data()->render_num_vertices, static_cast<int>(j));
}

struct RunRow {
    const char* name;
    unsigned long count;
    std::vector<float> rates;
    std::vector<vec3> gravities;
};

void PrintTo(const RunRow& row, std::ostream* out) {
    *out << row.name;
}

class ParticleRun : public testing::TestWithParam<RunRow> {};
INSTANTIATE_TEST_SUITE_P(
    of, ParticleRun,
    testing::Values(RunRow{"a_pool_that_never_fills", 500, {200.0f}, {earth}},
                    RunRow{"a_pool_that_is_always_full", 100, {2000.0f}, {earth}},
                    RunRow{"an_odd_number_of_particles", 37, {30.0f, 15.0f}, {earth}},
                    RunRow{
                        "several_emitters_and_actions", 300, {77.7f, 123.4f, 9.1f}, {earth, wind}},
                    RunRow{"no_action", 64, {50.0f}, {}}, RunRow{"no_emitter", 64, {}, {earth}},
                    RunRow{"few_particles", 7, {20.0f}, {wind}}),
    [](const auto& row) { return std::string(row.param.name); });

OwnedSystem make_run(const RunRow& row, unsigned int seed) {
    Math::srnd(seed);
    OwnedSystem system = make_system(row.count);
    system->set_particle_lifetime(lifetime);
    for (unsigned long k = 0; k < row.rates.size(); ++k) {
        ParticleEmitter* const emitter = system->create_emitter();
        emitter->set_particle_rate(row.rates[k]);
        emitter->set_position(static_cast<float>(k), 2.0f, 3.0f);
    }
    for (const vec3& gravity : row.gravities)
        system->create_action()->set_gravity(gravity);
    return system;
}

PlainSystem make_plain(const RunRow& row, unsigned int seed) {
    Math::srnd(seed);
    PlainSystem plain(row.count);
    for (unsigned long k = 0; k < row.rates.size(); ++k)
        plain.emitters.push_back({row.rates[k], vec3(static_cast<float>(k), 2.0f, 3.0f)});
    plain.gravities = row.gravities;
    return plain;
}

// The source of random numbers is one for all: each run goes to its end before the next begins.
TEST_P(ParticleRun, is_the_plainly_told_one_to_the_bit) {
    for (const int num_steps : {1, 2, 10, 41, 42, 43, 44, 150}) {
        SCOPED_TRACE(num_steps);
        const OwnedSystem run = make_run(GetParam(), 17);
        for (int k = 0; k < num_steps; ++k)
            run->update(step, nullptr);
        PlainSystem plain = make_plain(GetParam(), 17);
        for (int k = 0; k < num_steps; ++k)
            plain.update(step);
        ParticlePool& pool = *run->get_particle_pool();
        expect_same(pool, plain);
        run->vertex_pool_prepare_render();
        expect_same_points(pool, plain);
    }
}

TEST_P(ParticleRun, is_the_same_by_update_and_by_its_parts) {
    const OwnedSystem whole = make_run(GetParam(), 23);
    for (int k = 0; k < 60; ++k)
        whole->update(step, nullptr);
    const OwnedSystem parts = make_run(GetParam(), 23);
    for (int k = 0; k < 60; ++k) {
        const int spawned = parts->process_particle_emitters(step);
        EXPECT_EQ(static_cast<unsigned long>(spawned), parts->get_particle_pool()->num_spawned);
        parts->process_particle_actions(step);
        parts->update_particles_lifetime(step);
    }
    const ParticlePool& a = *whole->get_particle_pool();
    const ParticlePool& b = *parts->get_particle_pool();
    const unsigned long count = GetParam().count;
    EXPECT_EQ(bits_of(a.positions, count), bits_of(b.positions, count));
    EXPECT_EQ(bits_of(a.velocities, count), bits_of(b.velocities, count));
    EXPECT_EQ(bits_of(a.lifetimes, count), bits_of(b.lifetimes, count));
}

/// The positions after a second, from that seed.
Bits positions_from(unsigned int seed) {
    const RunRow row{"", 100, {80.0f}, {earth}};
    const OwnedSystem run = make_run(row, seed);
    for (int k = 0; k < 60; ++k)
        run->update(step, nullptr);
    return bits_of(run->get_particle_pool()->positions, 100);
}

TEST(ParticleSeed, decides_the_run) {
    EXPECT_EQ(positions_from(1), positions_from(1));
    EXPECT_NE(positions_from(1), positions_from(2));
}

} // namespace

} // namespace orvex_test
