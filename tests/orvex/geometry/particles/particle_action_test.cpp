#include "orvex/geometry/particles/particle_action.h"

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orvex/math/math.h"
#include "owned_particles.h"

namespace orvex_test {

using namespace orvex;

namespace {

using OwnedAction = Owned<ParticleAction>;

TEST(ParticleAction, is_an_object_with_the_gravity_of_the_earth) {
    const OwnedAction action(new ParticleAction);
    EXPECT_TRUE(action->is_type_of(NODE_TYPE_OBJECT));
    EXPECT_TRUE(action->is_type_of(NODE_TYPE_PARTICLE_ACTION));
    EXPECT_EQ(action->get_ref(), 0);
    EXPECT_EQ(action->get_gravity(), vec3(0.0f, -9.81f, 0.0f));
    action->set_gravity(1.0f, 2.0f, 3.0f);
    EXPECT_EQ(action->get_gravity(), vec3(1.0f, 2.0f, 3.0f));
    action->set_gravity(vec3(4.0f, 5.0f, 6.0f));
    EXPECT_EQ(action->get_gravity(), vec3(4.0f, 5.0f, 6.0f));
}

class ParticleActionMoving : public testing::Test {
protected:
    ParticleActionMoving() {
        EXPECT_TRUE(pool.alloc(2));
        pool.positions[0] = vec3(1.0f, 2.0f, 3.0f);
        pool.positions[1] = vec3(1.0f, 2.0f, 3.0f);
        pool.velocities[0] = vec3(4.0f, 0.0f, -2.0f);
        pool.velocities[1] = vec3(4.0f, 0.0f, -2.0f);
        pool.lifetimes[0] = 1.0f;
    }

    void expect_unmoved(unsigned long i) {
        EXPECT_EQ(pool.positions[i], vec3(1.0f, 2.0f, 3.0f));
        EXPECT_EQ(pool.velocities[i], vec3(4.0f, 0.0f, -2.0f));
    }

    ParticlePool pool;
    OwnedAction action{new ParticleAction};
};

TEST_F(ParticleActionMoving, changes_the_velocity_first_and_moves_by_the_new_one) {
    action->set_gravity(2.0f, -8.0f, 4.0f);
    action->update_particle_pool(pool, 0.5f);
    EXPECT_EQ(pool.velocities[0], vec3(5.0f, -4.0f, 0.0f));
    EXPECT_EQ(pool.positions[0], vec3(3.5f, 0.0f, 3.0f));
    EXPECT_EQ(pool.lifetimes[0], 1.0f);
    expect_unmoved(1);
}

TEST_F(ParticleActionMoving, without_gravity_moves_on_straight_lines) {
    action->set_gravity(vec3());
    action->update_particle_pool_gravity(pool, 0.25f);
    EXPECT_EQ(pool.velocities[0], vec3(4.0f, 0.0f, -2.0f));
    EXPECT_EQ(pool.positions[0], vec3(2.0f, 2.0f, 2.5f));
    expect_unmoved(1);
}

TEST_F(ParticleActionMoving, of_another_type_moves_nothing) {
    action->set_action_type(static_cast<PARTICLE_ACTION_TYPE>(1));
    action->update_particle_pool(pool, 0.5f);
    expect_unmoved(0);
    action->update_particle_pool_gravity(pool, 0.5f);
    EXPECT_FALSE(pool.positions[0] == vec3(1.0f, 2.0f, 3.0f));
    action->set_action_type(PARTICLE_ACTION_GRAVITY);
    const vec3 before = pool.positions[0];
    action->update_particle_pool(pool, 0.5f);
    EXPECT_FALSE(pool.positions[0] == before);
}

TEST_F(ParticleActionMoving, leaves_single_particles_alone) {
    action->update_particle(pool, 0, 0.5f);
    action->update_particle_gravity(pool, 0, 0.5f);
    expect_unmoved(0);
}

TEST(ParticleAction, passes_over_a_pool_without_particles) {
    ParticlePool pool;
    const OwnedAction action(new ParticleAction);
    action->update_particle_pool(pool, 0.5f);
    EXPECT_EQ(pool.num_particles, 0u);
}

/// The lives that particles of a pool have, each as often as the others.
struct LivesRow {
    const char* name;
    std::vector<float> values;
};

void PrintTo(const LivesRow& row, std::ostream* out) {
    *out << row.name;
}

constexpr float nan_life = std::numeric_limits<float>::quiet_NaN();
constexpr float tiny_life = std::numeric_limits<float>::denorm_min();

/// One living particle in forty.
std::vector<float> few_left() {
    std::vector<float> values(40, 0.0f);
    values[0] = 1.0f;
    return values;
}

class MotionOfLives : public testing::TestWithParam<LivesRow> {
protected:
    /// A pool of random particles whose lives are drawn from the row.
    void fill(ParticlePool& pool, unsigned long count) {
        Math::srnd(static_cast<unsigned int>(count) + 1);
        EXPECT_TRUE(pool.alloc(count));
        const std::vector<float>& values = GetParam().values;
        for (unsigned long i = 0; i < count; ++i) {
            for (float* value :
                 {&pool.velocities[i].x, &pool.velocities[i].y, &pool.velocities[i].z})
                *value = Math::rnd(-5.0f, 5.0f);
            const float drawn = Math::rnd(0.0f, static_cast<float>(values.size()));
            pool.lifetimes[i] = values[static_cast<unsigned long>(drawn) % values.size()];
        }
    }
};

/// Numbers of particles on both sides of every size that they could be taken together in.
std::vector<unsigned long> counts() {
    std::vector<unsigned long> numbers;
    for (unsigned long count = 0; count < 100; ++count)
        numbers.push_back(count);
    for (const unsigned long count : {1023ul, 1024ul, 1025ul, 1040ul, 2047ul, 3000ul})
        numbers.push_back(count);
    return numbers;
}

/// The formula, a particle at a time.
void fall_plainly(ParticlePool& pool, const vec3& gravity, float dt) {
    for (unsigned long i = 0; i < pool.num_particles; ++i) {
        if (!(pool.lifetimes[i] > 0.0f))
            continue;
        vec3& velocity = pool.velocities[i];
        velocity.x = velocity.x + dt * gravity.x;
        velocity.y = velocity.y + dt * gravity.y;
        velocity.z = velocity.z + dt * gravity.z;
        vec3& position = pool.positions[i];
        position.x = position.x + velocity.x * dt;
        position.y = position.y + velocity.y * dt;
        position.z = position.z + velocity.z * dt;
    }
}

void expect_same_bits(const ParticlePool& pool, const ParticlePool& expected) {
    const unsigned long count = expected.num_particles;
    EXPECT_EQ(bits_of(pool.positions, count), bits_of(expected.positions, count));
    EXPECT_EQ(bits_of(pool.velocities, count), bits_of(expected.velocities, count));
    EXPECT_EQ(bits_of(pool.lifetimes, count), bits_of(expected.lifetimes, count));
}

INSTANTIATE_TEST_SUITE_P(
    that_are, MotionOfLives,
    testing::Values(LivesRow{"all_left", {1.0f, 0.5f, tiny_life}},
                    LivesRow{"all_over", {0.0f, -0.0f, -1.0f, nan_life, -tiny_life}},
                    LivesRow{"rarely_left", few_left()},
                    LivesRow{"mixed", {1.0f, 0.0f, tiny_life, -0.0f, nan_life, HUGE_VALF, -1.0f}}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_P(MotionOfLives, is_that_of_the_plain_formula_to_the_bit) {
    const vec3 gravity(0.3f, -9.81f, 1e-3f);
    const OwnedAction action(new ParticleAction);
    action->set_gravity(gravity);
    for (const unsigned long count : counts()) {
        SCOPED_TRACE(count);
        ParticlePool pool, expected;
        fill(pool, count);
        fill(expected, count);
        action->update_particle_pool(pool, 0.016f);
        fall_plainly(expected, gravity, 0.016f);
        expect_same_bits(pool, expected);
    }
}

TEST_P(MotionOfLives, and_their_aging_in_one_step_is_that_of_the_plain_formulas_to_the_bit) {
    const vec3 gravity(0.3f, -9.81f, 1e-3f);
    for (const unsigned long count : counts()) {
        SCOPED_TRACE(count);
        const OwnedSystem system = make_system(0);
        system->create_action()->set_gravity(gravity);
        ParticlePool& pool = *system->get_particle_pool();
        ParticlePool expected;
        fill(pool, count);
        fill(expected, count);
        system->update(0.016f, nullptr);
        fall_plainly(expected, gravity, 0.016f);
        for (unsigned long i = 0; i < count; ++i)
            expected.lifetimes[i] = expected.lifetimes[i] - 0.016f;
        expect_same_bits(pool, expected);
    }
}

} // namespace

} // namespace orvex_test
