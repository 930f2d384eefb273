#include "orvex/geometry/particles/particle_system.h"

#include <cmath>
#include <limits>
#include <string>
#include <vector>

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

using Calls = std::vector<std::string>;
using Indices = std::vector<unsigned long>;

constexpr float tiny_life = std::numeric_limits<float>::denorm_min();

/// A system of so many particles, all of that life.
OwnedSystem make_system_of_lives(unsigned long count, float life) {
    OwnedSystem system = make_system(count);
    set_lives(*system->get_particle_pool(), std::vector<float>(count, life));
    return system;
}

/// An emitter of a fixed number of particles, which notes those it is asked to spawn.
class NotingEmitter : public ParticleEmitter {
public:
    explicit NotingEmitter(int number)
        : due(number) {}

    int get_num_particles_to_spawn(float) override { return due; }

    void spawn_particle(ParticlePool& pool, unsigned long i) override {
        spawned.push_back(i);
        lives_before.push_back(pool.lifetimes[i]);
    }

    int due;
    Indices spawned;
    std::vector<float> lives_before;
};

TEST(ParticleSystem, is_an_object_without_particles_at_first) {
    const OwnedSystem system(new ParticleSystem);
    EXPECT_TRUE(system->is_type_of(NODE_TYPE_OBJECT));
    EXPECT_TRUE(system->is_type_of(NODE_TYPE_PARTICLE_SYSTEM));
    EXPECT_EQ(system->get_particle_pool(), nullptr);
    EXPECT_EQ(system->get_particle_lifetime(), 1.0f);
    EXPECT_EQ(system->get_num_emitters(), 0u);
    EXPECT_EQ(system->get_num_actions(), 0u);
}

TEST(ParticleSystem, without_particles_does_nothing) {
    const OwnedSystem system(new ParticleSystem);
    system->create_emitter()->set_particle_rate(100.0f);
    system->create_action();
    NotingEmitter emitter(3);
    FakeRenderer renderer;
    EXPECT_TRUE(system->_update(1.0f));
    EXPECT_EQ(system->process_particle_emitters(1.0f), 0);
    system->process_particle_actions(1.0f);
    system->update_particles_lifetime(1.0f);
    EXPECT_EQ(system->spawn_particles_emitter(emitter, 1.0f), 0);
    EXPECT_EQ(system->get_num_alive_particles(), 0u);
    system->vertex_pool_prepare_render();
    system->vertex_pool_render(&renderer);
    system->_render(&renderer);
    system->terminate(&renderer);
    EXPECT_TRUE(renderer.calls.empty());
}

TEST(ParticleSystem, of_no_particles_does_nothing) {
    const OwnedSystem system(new ParticleSystem);
    EXPECT_TRUE(system->initialize(0));
    ASSERT_NE(system->get_particle_pool(), nullptr);
    system->create_emitter()->set_particle_rate(100.0f);
    system->create_action();
    EXPECT_TRUE(system->_update(1.0f));
    EXPECT_EQ(system->process_particle_emitters(1.0f), 0);
    EXPECT_EQ(system->get_num_alive_particles(), 0u);
    FakeRenderer renderer;
    system->render(&renderer, nullptr);
    EXPECT_EQ(renderer.count("vertex_pool_render_draw"), 1);
}

TEST(ParticleSystem, keeps_the_particles_it_has) {
    const OwnedSystem system(new ParticleSystem);
    EXPECT_TRUE(system->initialize(8));
    const ParticlePool* const first = system->get_particle_pool();
    EXPECT_TRUE(system->initialize(20));
    EXPECT_EQ(system->get_particle_pool(), first);
    EXPECT_EQ(first->num_particles, 8u);
}

TEST(ParticleSystem, tells_that_there_is_no_memory_for_particles) {
    const LogCapture log;
    const OwnedSystem system(new ParticleSystem);
    EXPECT_FALSE(system->initialize(1ul << 60));
    EXPECT_EQ(log.messages().size(), 1u);
    EXPECT_EQ(system->get_particle_pool(), nullptr);
    EXPECT_TRUE(system->initialize(4));
    EXPECT_EQ(system->get_particle_pool()->num_particles, 4u);
}

TEST(ParticleSystem, counts_the_living) {
    const OwnedSystem system = make_system(70);
    EXPECT_EQ(system->get_num_alive_particles(), 0u);
    set_lives(*system->get_particle_pool(),
              {1.0f, 0.0f, -1.0f, tiny_life, std::nanf(""), HUGE_VALF, -0.0f});
    EXPECT_EQ(system->get_num_alive_particles(), 3u);
    system->get_particle_pool()->lifetimes[69] = 2.0f;
    EXPECT_EQ(system->get_num_alive_particles(), 4u);
}

TEST(ParticleSystem, ages_the_dead_too) {
    const OwnedSystem system = make_system(50);
    set_lives(*system->get_particle_pool(), {1.0f, 0.25f, 0.0f, -3.0f});
    system->update_particles_lifetime(0.25f);
    const float* const lives = system->get_particle_pool()->lifetimes;
    EXPECT_EQ(lives[0], 0.75f);
    EXPECT_EQ(lives[1], 0.0f);
    EXPECT_EQ(lives[2], -0.25f);
    EXPECT_EQ(lives[3], -3.25f);
    EXPECT_EQ(lives[49], -0.25f);
}

TEST(ParticleSystem, ages_without_an_action_too) {
    const OwnedSystem system = make_system_of_lives(20, 1.0f);
    system->update(0.25f, nullptr);
    EXPECT_EQ(system->get_particle_pool()->lifetimes[19], 0.75f);
}

TEST(ParticleSystemSpawning, brings_the_first_dead_to_life) {
    const OwnedSystem system = make_system(6);
    ParticlePool& pool = *system->get_particle_pool();
    set_lives(pool, {1.0f, 0.0f, 1.0f, -2.0f, 0.0f, 0.0f});
    system->set_particle_lifetime(3.0f);
    NotingEmitter emitter(2);
    EXPECT_EQ(system->spawn_particles_emitter(emitter, 0.1f), 2);
    EXPECT_EQ(emitter.spawned, (Indices{1, 3}));
    EXPECT_EQ(emitter.lives_before, (std::vector<float>{0.0f, -2.0f}));
    EXPECT_EQ(pool.lifetimes[1], 3.0f);
    EXPECT_EQ(pool.lifetimes[3], 3.0f);
    EXPECT_EQ(pool.lifetimes[4], 0.0f);
    EXPECT_EQ(pool.scan_position, 4u);
    EXPECT_EQ(pool.num_spawned, 2u);
    EXPECT_EQ(pool.num_spawned_v2, 2u);
    for (const unsigned long* list : {pool.spawned_list, pool.spawned_list_v2}) {
        EXPECT_EQ(list[0], 1u);
        EXPECT_EQ(list[1], 3u);
        EXPECT_EQ(list[2], 0u);
    }
}

TEST(ParticleSystemSpawning, finds_the_dead_wherever_they_lie) {
    for (unsigned long dead = 0; dead < 70; ++dead) {
        const OwnedSystem system = make_system_of_lives(70, 1.0f);
        system->get_particle_pool()->lifetimes[dead] = -0.0f;
        NotingEmitter emitter(5);
        EXPECT_EQ(system->spawn_particles_emitter(emitter, 0.1f), 1);
        EXPECT_EQ(emitter.spawned, Indices{dead});
        EXPECT_EQ(system->get_particle_pool()->scan_position, 70u);
    }
}

TEST(ParticleSystemSpawning, passes_over_a_life_that_is_no_number) {
    const OwnedSystem system = make_system_of_lives(40, 1.0f);
    set_lives(*system->get_particle_pool(), {std::nanf(""), std::nanf("")});
    system->get_particle_pool()->lifetimes[30] = 0.0f;
    NotingEmitter emitter(2);
    EXPECT_EQ(system->spawn_particles_emitter(emitter, 0.1f), 1);
    EXPECT_EQ(emitter.spawned, Indices{30});
}

TEST(ParticleSystemSpawning, fills_the_particles_that_the_indices_name) {
    const OwnedSystem system = make_system(3);
    system->get_particle_pool()->indices[0] = 2;
    NotingEmitter emitter(1);
    EXPECT_EQ(system->spawn_particles_emitter(emitter, 0.1f), 1);
    EXPECT_EQ(emitter.spawned, Indices{2});
    EXPECT_EQ(system->get_particle_pool()->spawned_list[0], 0u);
    EXPECT_EQ(system->get_particle_pool()->lifetimes[0], 1.0f);
    EXPECT_EQ(system->get_particle_pool()->lifetimes[2], 0.0f);
}

TEST(ParticleSystemSpawning, of_all_living_particles_reaches_the_end_and_brings_none_to_life) {
    const OwnedSystem system = make_system_of_lives(50, 1.0f);
    NotingEmitter emitter(7);
    EXPECT_EQ(system->spawn_particles_emitter(emitter, 0.1f), 0);
    EXPECT_TRUE(emitter.spawned.empty());
    EXPECT_EQ(system->get_particle_pool()->scan_position, 50u);
    EXPECT_EQ(system->get_particle_pool()->num_spawned, 0u);
}

TEST(ParticleSystemSpawning, of_none_due_scans_nothing) {
    const OwnedSystem system = make_system(5);
    for (const int due : {0, -1}) {
        NotingEmitter emitter(due);
        EXPECT_EQ(system->spawn_particles_emitter(emitter, 0.1f), 0);
        EXPECT_TRUE(emitter.spawned.empty());
        EXPECT_EQ(system->get_particle_pool()->scan_position, 0u);
    }
}

TEST(ParticleSystemSpawning, queues_nothing_that_found_no_room) {
    const OwnedSystem system = make_system(3);
    ParticleEmitter* const emitter = system->create_emitter();
    emitter->set_particle_rate(10.0f);
    EXPECT_EQ(system->process_particle_emitters(1.0f), 3);
    set_lives(*system->get_particle_pool(), {0.0f, 0.0f, 0.0f});
    emitter->set_particle_rate(1.0f);
    EXPECT_EQ(system->process_particle_emitters(1.0f), 1);
}

TEST(ParticleSystemSpawning, keeps_the_fraction_of_a_step_that_spawns_none) {
    const OwnedSystem system = make_system(10);
    system->create_emitter();
    std::vector<int> spawned;
    for (int step = 0; step < 6; ++step)
        spawned.push_back(system->process_particle_emitters(0.016f));
    EXPECT_EQ(spawned, (std::vector<int>{0, 1, 1, 1, 1, 0}));
}

TEST(ParticleSystemSpawning, goes_on_where_the_emitter_before_stopped) {
    const OwnedSystem system = make_system(12);
    ParticlePool& pool = *system->get_particle_pool();
    pool.lifetimes[1] = 1.0f;
    system->create_emitter()->set_particle_rate(3.0f);
    system->create_emitter()->set_particle_rate(2.0f);
    EXPECT_EQ(system->process_particle_emitters(1.0f), 5);
    EXPECT_EQ(Indices(pool.spawned_list, pool.spawned_list + 5), (Indices{0, 2, 3, 4, 5}));
    EXPECT_EQ(Indices(pool.spawned_list_v2, pool.spawned_list_v2 + 5), (Indices{0, 2, 3, 4, 5}));
    EXPECT_EQ(pool.num_spawned, 5u);
    EXPECT_EQ(pool.num_spawned_v2, 5u);
    EXPECT_EQ(pool.scan_position, 6u);
}

TEST(ParticleSystemSpawning, takes_no_particle_twice_even_if_it_is_born_dead) {
    const OwnedSystem system = make_system(12);
    system->set_particle_lifetime(0.0f);
    NotingEmitter first(3), second(2);
    system->spawn_particles_emitter(first, 1.0f);
    system->spawn_particles_emitter(second, 1.0f);
    EXPECT_EQ(first.spawned, (Indices{0, 1, 2}));
    EXPECT_EQ(second.spawned, (Indices{3, 4}));
    EXPECT_EQ(system->get_num_alive_particles(), 0u);
}

TEST(ParticleSystemSpawning, by_an_emitter_of_another_type_brings_to_life_what_it_leaves_in_place) {
    const OwnedSystem system = make_system(3);
    ParticlePool& pool = *system->get_particle_pool();
    ParticleEmitter* const emitter = system->create_emitter();
    emitter->set_emitter_type(static_cast<PARTICLE_EMITTER_TYPE>(1));
    emitter->set_particle_rate(2.0f);
    const Bits before = bits_of(pool.positions, 3);
    EXPECT_EQ(system->process_particle_emitters(1.0f), 2);
    EXPECT_EQ(bits_of(pool.positions, 3), before);
    EXPECT_EQ(pool.lifetimes[1], 1.0f);
    EXPECT_EQ(system->get_num_alive_particles(), 2u);
}

TEST(ParticleSystemSpawning, starts_anew_in_each_step) {
    const OwnedSystem system = make_system(12);
    ParticlePool& pool = *system->get_particle_pool();
    system->create_emitter()->set_particle_rate(3.0f);
    EXPECT_EQ(system->process_particle_emitters(1.0f), 3);
    pool.lifetimes[1] = 0.0f;
    EXPECT_EQ(system->process_particle_emitters(1.0f), 3);
    EXPECT_EQ(Indices(pool.spawned_list, pool.spawned_list + 3), (Indices{1, 3, 4}));
    EXPECT_EQ(Indices(pool.spawned_list_v2, pool.spawned_list_v2 + 3), (Indices{1, 3, 4}));
    EXPECT_EQ(pool.num_spawned, 3u);
    EXPECT_EQ(pool.num_spawned_v2, 3u);
    EXPECT_EQ(pool.scan_position, 5u);
}

TEST(ParticleSystemSpawning, stays_within_its_lists_when_a_host_turns_the_scan) {
    const OwnedSystem system = make_system(4);
    ParticlePool& pool = *system->get_particle_pool();
    system->set_particle_lifetime(0.0f);
    NotingEmitter emitter(10);
    for (int turn = 0; turn < 3; ++turn) {
        pool.scan_position = 0;
        EXPECT_EQ(system->spawn_particles_emitter(emitter, 1.0f), 4);
    }
    EXPECT_EQ(Indices(pool.spawned_list, pool.spawned_list + 4), (Indices{0, 1, 2, 3}));
    for (const unsigned long beyond : {5ul, ~0ul, ~0ul - 20}) {
        pool.scan_position = beyond;
        EXPECT_EQ(system->spawn_particles_emitter(emitter, 1.0f), 0);
        EXPECT_EQ(pool.scan_position, beyond);
    }
}

TEST(ParticleSystemStep, lets_a_particle_live_for_four_quarters_of_its_life) {
    const OwnedSystem system = make_system(4);
    system->create_action();
    ParticleEmitter* const emitter = system->create_emitter();
    emitter->set_particle_rate(4.0f);
    const float* const life = system->get_particle_pool()->lifetimes;
    for (const float expected : {0.75f, 0.5f, 0.25f, 0.0f}) {
        system->update(0.25f, nullptr);
        EXPECT_EQ(life[0], expected);
        emitter->set_particle_rate(0.0f);
        EXPECT_EQ(system->get_num_alive_particles(), expected > 0.0f ? 1u : 0u);
    }
}

TEST(ParticleSystemStep, without_an_action_moves_nothing) {
    const OwnedSystem system = make_system(20);
    ParticleEmitter* const emitter = system->create_emitter();
    emitter->set_particle_rate(40.0f);
    ParticlePool& pool = *system->get_particle_pool();
    system->update(0.25f, nullptr);
    const Bits before = bits_of(pool.positions, 20);
    EXPECT_EQ(system->get_num_alive_particles(), 10u);
    EXPECT_FALSE(pool.velocities[0] == vec3());
    emitter->set_particle_rate(0.0f);
    system->update(0.25f, nullptr);
    EXPECT_EQ(bits_of(pool.positions, 20), before);
}

TEST(ParticleSystemStep, moves_a_particle_in_the_very_step_that_it_is_born_in) {
    const OwnedSystem system = make_system(1);
    ParticleEmitter* const emitter = system->create_emitter();
    emitter->set_particle_rate(4.0f);
    emitter->set_spawn_positions(vec3(), vec3());
    emitter->set_spawn_directions(vec3(1.0f, 0.0f, 0.0f), vec3(1.0f, 0.0f, 0.0f));
    emitter->set_particle_speed_variance(0.0f);
    system->create_action()->set_gravity(0.0f, -4.0f, 0.0f);
    system->update(0.25f, nullptr);
    EXPECT_EQ(system->get_particle_pool()->velocities[0], vec3(2.0f, -1.0f, 0.0f));
    EXPECT_EQ(system->get_particle_pool()->positions[0], vec3(0.5f, -0.25f, 0.0f));
}

TEST(ParticleSystemStep, lets_every_action_move_the_particles) {
    for (const bool in_one_step : {true, false}) {
        const OwnedSystem system = make_system_of_lives(1, 1.0f);
        ParticlePool& pool = *system->get_particle_pool();
        pool.positions[0] = vec3();
        system->create_action()->set_gravity(2.0f, 0.0f, 0.0f);
        system->create_action()->set_action_type(static_cast<PARTICLE_ACTION_TYPE>(1));
        system->create_action()->set_gravity(0.0f, 4.0f, 0.0f);
        if (in_one_step)
            system->update(0.5f, nullptr);
        else
            system->process_particle_actions(0.5f);
        // The first moves by (1, 0, 0) * 0.5, the third by (1, 2, 0) * 0.5.
        EXPECT_EQ(pool.velocities[0], vec3(1.0f, 2.0f, 0.0f));
        EXPECT_EQ(pool.positions[0], vec3(1.0f, 1.0f, 0.0f));
        EXPECT_EQ(pool.lifetimes[0], in_one_step ? 0.5f : 1.0f);
    }
}

TEST(ParticleSystemStep, ages_behind_a_last_action_of_another_type) {
    const OwnedSystem system = make_system_of_lives(20, 1.0f);
    system->create_action()->set_action_type(static_cast<PARTICLE_ACTION_TYPE>(1));
    const Bits before = bits_of(system->get_particle_pool()->positions, 20);
    system->update(0.25f, nullptr);
    EXPECT_EQ(bits_of(system->get_particle_pool()->positions, 20), before);
    EXPECT_EQ(system->get_particle_pool()->lifetimes[19], 0.75f);
}

TEST(ParticleSystemStep, goes_on_to_the_children) {
    const OwnedSystem parent = make_system(1);
    ParticleSystem* const child = new ParticleSystem;
    child->initialize(1);
    parent->add_child(child);
    EXPECT_TRUE(parent->update(0.25f, nullptr));
    EXPECT_EQ(child->get_particle_pool()->lifetimes[0], -0.25f);
}

} // namespace

} // namespace orvex_test
