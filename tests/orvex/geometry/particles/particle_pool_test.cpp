#include "orvex/geometry/particles/particle_pool.h"

#include <gtest/gtest.h>

#include "orvex/geometry/points/vertex_pool.h"
#include "orvex/math/math.h"
#include "orvex/renderer/records/vertex_pool_data.h"
#include "owned_particles.h"
#include "tests/support/fake_renderer.h"
#include "tests/support/log_capture.h"

namespace orvex_test {

using namespace orvex;

namespace {

void expect_empty(const ParticlePool& pool) {
    EXPECT_EQ(pool.num_particles, 0u);
    EXPECT_EQ(pool.indices, nullptr);
    EXPECT_EQ(pool.positions, nullptr);
    EXPECT_EQ(pool.velocities, nullptr);
    EXPECT_EQ(pool.lifetimes, nullptr);
    EXPECT_EQ(pool.vertex_pool, nullptr);
    EXPECT_EQ(pool.scan_position, 0u);
    EXPECT_EQ(pool.num_spawned, 0u);
    EXPECT_EQ(pool.spawned_list, nullptr);
    EXPECT_EQ(pool.num_spawned_v2, 0u);
    EXPECT_EQ(pool.spawned_list_v2, nullptr);
    EXPECT_EQ(pool.ages, nullptr);
}

TEST(ParticlePool, is_empty_at_first) {
    expect_empty(ParticlePool());
}

TEST(ParticlePool, makes_dead_particles_at_rest) {
    ParticlePool pool;
    EXPECT_TRUE(pool.alloc(40));
    EXPECT_EQ(pool.num_particles, 40u);
    EXPECT_EQ(pool.scan_position, 0u);
    EXPECT_EQ(pool.num_spawned, 0u);
    EXPECT_EQ(pool.num_spawned_v2, 0u);
    for (unsigned long i = 0; i < 40; ++i) {
        EXPECT_EQ(pool.indices[i], i);
        EXPECT_EQ(pool.velocities[i], vec3());
        EXPECT_EQ(pool.lifetimes[i], 0.0f);
        EXPECT_EQ(pool.ages[i], 0.0f);
        EXPECT_EQ(pool.spawned_list[i], 0u);
        EXPECT_EQ(pool.spawned_list_v2[i], 0u);
    }
}

TEST(ParticlePool, draws_by_points_in_separate_arrays) {
    ParticlePool pool;
    EXPECT_TRUE(pool.alloc(3));
    ASSERT_NE(pool.vertex_pool, nullptr);
    EXPECT_EQ(pool.vertex_pool->get_pool_size(), 3u);
    EXPECT_TRUE(pool.vertex_pool->get_vertex_pool_data()->separate_vertex_arrays);
}

TEST(ParticlePool, scatters_its_particles_by_the_seed) {
    Math::srnd(7);
    ParticlePool pool;
    EXPECT_TRUE(pool.alloc(20));
    Math::srnd(7);
    for (unsigned long i = 0; i < 20; ++i) {
        const float x = Math::rnd(-10.0f, 10.0f);
        const float y = Math::rnd(-10.0f, 10.0f);
        const float z = Math::rnd(-10.0f, 10.0f);
        EXPECT_EQ(pool.positions[i], vec3(x, y, z));
    }
}

TEST(ParticlePool, without_particles_has_none_to_give) {
    ParticlePool pool;
    EXPECT_TRUE(pool.alloc(0));
    EXPECT_EQ(pool.num_particles, 0u);
    ASSERT_NE(pool.vertex_pool, nullptr);
    EXPECT_EQ(pool.vertex_pool->get_pool_size(), 0u);
}

TEST(ParticlePool, replaces_its_particles) {
    ParticlePool pool;
    EXPECT_TRUE(pool.alloc(2));
    pool.lifetimes[1] = 1.0f;
    pool.scan_position = 2;
    pool.num_spawned = 2;
    EXPECT_TRUE(pool.alloc(5));
    EXPECT_EQ(pool.num_particles, 5u);
    EXPECT_EQ(pool.lifetimes[1], 0.0f);
    EXPECT_EQ(pool.scan_position, 0u);
    EXPECT_EQ(pool.num_spawned, 0u);
    EXPECT_EQ(pool.vertex_pool->get_pool_size(), 5u);
}

TEST(ParticlePool, frees_everything_and_ends_its_points) {
    ParticlePool pool;
    EXPECT_TRUE(pool.alloc(5));
    pool.scan_position = 1;
    pool.num_spawned = 2;
    pool.num_spawned_v2 = 2;
    FakeRenderer renderer;
    pool.free(&renderer);
    EXPECT_EQ(renderer.count("vertex_pool_kill"), 1);
    expect_empty(pool);
    pool.free(&renderer);
    EXPECT_EQ(renderer.count("vertex_pool_kill"), 1);
}

TEST(ParticlePool, leaves_points_that_a_host_holds_alive) {
    VertexPool* points = nullptr;
    {
        ParticlePool pool;
        EXPECT_TRUE(pool.alloc(5));
        points = pool.vertex_pool;
        points->add_ref();
        points->add_ref();
    }
    EXPECT_EQ(points->get_ref(), 1);
    points->release(nullptr, nullptr);
}

TEST(ParticlePool, tells_that_there_is_no_memory) {
    const LogCapture log;
    ParticlePool pool;
    EXPECT_FALSE(pool.alloc(1ul << 60));
    EXPECT_TRUE(log.has("<*> std::bad_alloc exception caught - what: std::bad_array_new_length"));
    EXPECT_EQ(log.messages().size(), 1u);
    expect_empty(pool);
}

} // namespace

} // namespace orvex_test
