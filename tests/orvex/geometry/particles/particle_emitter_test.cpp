#include "orvex/geometry/particles/particle_emitter.h"

#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "orvex/math/math.h"
#include "orvex/math/vec4.h"
#include "owned_particles.h"

namespace orvex_test {

using namespace orvex;

namespace {

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float not_a_number = std::numeric_limits<float>::quiet_NaN();
constexpr int int_max = std::numeric_limits<int>::max();
constexpr int int_min = std::numeric_limits<int>::min();

using OwnedEmitter = Owned<ParticleEmitter>;

TEST(ParticleEmitter, is_an_object_of_fifty_particles_a_second) {
    const OwnedEmitter emitter(new ParticleEmitter);
    EXPECT_TRUE(emitter->is_type_of(NODE_TYPE_OBJECT));
    EXPECT_TRUE(emitter->is_type_of(NODE_TYPE_PARTICLE_EMITTER));
    EXPECT_EQ(emitter->get_ref(), 0);
    EXPECT_EQ(emitter->get_particle_rate(), 50.0f);
    emitter->set_particle_rate(12.5f);
    EXPECT_EQ(emitter->get_particle_rate(), 12.5f);
}

struct RateRow {
    const char* name;
    float rate;
    float dt;
    std::vector<int> numbers; ///< of consecutive steps
};

void PrintTo(const RateRow& row, std::ostream* out) {
    *out << row.name;
}

class Rate : public testing::TestWithParam<RateRow> {};
INSTANTIATE_TEST_SUITE_P(
    of, Rate,
    testing::Values(RateRow{"four_fifths_a_step", 50.0f, 0.016f, {0, 1, 1, 1, 1, 0}},
                    RateRow{"whole_numbers", 100.0f, 0.25f, {25, 25, 25}},
                    RateRow{"a_half_left_over", 10.0f, 0.25f, {2, 3, 2, 3}},
                    RateRow{"a_quarter_a_step", 1.0f, 0.25f, {0, 0, 0, 1, 0, 0, 0, 1}},
                    RateRow{"nothing", 0.0f, 0.25f, {0, 0}},
                    RateRow{"steps_of_no_length", 50.0f, 0.0f, {0, 0}},
                    RateRow{"less_than_nothing", -1.0f, 0.25f, {-1, 0, 0, 0, -1}},
                    RateRow{"more_than_an_int", 1e10f, 1.0f, {int_max, int_max}},
                    RateRow{"the_smallest_float_above_an_int", 0x1p31f, 1.0f, {int_max}},
                    RateRow{"the_largest_float_in_an_int", 2147483520.0f, 1.0f, {2147483520}},
                    RateRow{"the_smallest_int", -0x1p31f, 1.0f, {int_min}},
                    RateRow{"less_than_an_int", -1e10f, 1.0f, {int_min}},
                    RateRow{"infinity", infinity, 1.0f, {int_max, int_max}},
                    RateRow{"minus_infinity", -infinity, 1.0f, {int_min}},
                    RateRow{"no_number", not_a_number, 1.0f, {0, 0}}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_P(Rate, gives_so_many_particles_a_step) {
    const OwnedEmitter emitter(new ParticleEmitter);
    emitter->set_particle_rate(GetParam().rate);
    std::vector<int> numbers;
    for (unsigned long i = 0; i < GetParam().numbers.size(); ++i)
        numbers.push_back(emitter->get_num_particles_to_spawn(GetParam().dt));
    EXPECT_EQ(numbers, GetParam().numbers);
}

TEST(ParticleEmitter, gives_what_is_left_over_to_the_next_step_of_another_length) {
    const OwnedEmitter emitter(new ParticleEmitter);
    emitter->set_particle_rate(8.0f);
    EXPECT_EQ(emitter->get_num_particles_to_spawn(0.0625f), 0); // a half is left
    EXPECT_EQ(emitter->get_num_particles_to_spawn(0.1875f), 2); // one and a half come with it
}

class ParticleEmitterSpawning : public testing::Test {
protected:
    ParticleEmitterSpawning() { EXPECT_TRUE(pool.alloc(4)); }

    ParticlePool pool;
    OwnedEmitter emitter{new ParticleEmitter};
};

vec3 draw(const vec3& min, const vec3& max) {
    const float x = Math::rnd(min.x, max.x);
    const float y = Math::rnd(min.y, max.y);
    const float z = Math::rnd(min.z, max.z);
    return vec3(x, y, z);
}

TEST_F(ParticleEmitterSpawning, draws_position_then_direction_then_speed) {
    Math::srnd(11);
    emitter->spawn_particle(pool, 2);
    Math::srnd(11);
    const vec3 position = draw(vec3(-0.5f, -0.5f, -0.5f), vec3(0.5f, 0.5f, 0.5f));
    const vec3 direction = draw(vec3(-1.0f, -1.0f, -1.0f), vec3(1.0f, 1.0f, 1.0f));
    const float speed = 2.0f + Math::rnd(-1.0f, 1.0f);
    EXPECT_EQ(pool.positions[2], position);
    EXPECT_EQ(pool.velocities[2], direction * speed);
    EXPECT_EQ(pool.lifetimes[2], 0.0f);
    EXPECT_EQ(pool.velocities[1], vec3());
}

TEST_F(ParticleEmitterSpawning, keeps_to_the_boxes_and_speeds_it_is_given) {
    const vec3 nearest(1.0f, 2.0f, 3.0f), farthest(1.5f, 4.0f, 3.0f);
    const vec3 left(-3.0f, 0.0f, 1.0f), right(-2.0f, 0.5f, 4.0f);
    emitter->set_spawn_positions(nearest, farthest);
    emitter->set_spawn_directions(left, right);
    emitter->set_particle_speed(10.0f);
    emitter->set_particle_speed_variance(0.25f);
    emitter->Object::set_position(100.0f, 200.0f, 300.0f);
    Math::srnd(5);
    emitter->spawn_particle_point(pool, 0);
    Math::srnd(5);
    const vec3 offset = draw(nearest, farthest);
    const vec3 direction = draw(left, right);
    const float speed = 10.0f + Math::rnd(-0.25f, 0.25f);
    EXPECT_EQ(pool.positions[0], vec3(100.0f, 200.0f, 300.0f) + offset);
    EXPECT_EQ(pool.velocities[0], direction * speed);
}

TEST_F(ParticleEmitterSpawning, starts_particles_in_its_own_space) {
    const Owned<Object> parent(new Object);
    parent->set_position(50.0f, 0.0f, 0.0f);
    ParticleEmitter* const child = new ParticleEmitter;
    child->set_position(1.0f, 2.0f, 3.0f);
    child->set_orientation_euler_xyz(0.0f, 90.0f, 0.0f);
    child->set_scale(5.0f, 5.0f, 5.0f);
    parent->add_child(child);
    child->set_spawn_positions(vec3(1.0f, 0.0f, 0.0f), vec3(1.0f, 0.0f, 0.0f));
    child->spawn_particle(pool, 0);
    EXPECT_EQ(pool.positions[0], vec3(2.0f, 2.0f, 3.0f));
}

TEST_F(ParticleEmitterSpawning, of_another_type_touches_nothing_and_draws_nothing) {
    emitter->set_emitter_type(static_cast<PARTICLE_EMITTER_TYPE>(1));
    const vec3 before = pool.positions[0];
    Math::srnd(3);
    emitter->spawn_particle(pool, 0);
    EXPECT_EQ(pool.positions[0], before);
    EXPECT_EQ(pool.velocities[0], vec3());
    const float next = Math::rnd(0.0f, 1.0f);
    Math::srnd(3);
    EXPECT_EQ(next, Math::rnd(0.0f, 1.0f));
    emitter->set_emitter_type(PARTICLE_EMITTER_POINT);
    emitter->spawn_particle(pool, 0);
    EXPECT_FALSE(pool.positions[0] == before);
}

TEST_F(ParticleEmitterSpawning, ignores_an_index_out_of_range_and_draws_nothing) {
    Math::srnd(3);
    emitter->spawn_particle(pool, 4);
    ParticlePool empty;
    emitter->spawn_particle(empty, 0);
    const float next = Math::rnd(0.0f, 1.0f);
    Math::srnd(3);
    EXPECT_EQ(next, Math::rnd(0.0f, 1.0f));
}

} // namespace

} // namespace orvex_test
