// Counts what particle systems allocate.

#include <gtest/gtest.h>

#include "owned_particles.h"
#include "tests/support/heap.h"
#include "tests/support/log_capture.h"

namespace orvex_test {

using namespace orvex;

namespace {

TEST(ParticleAllocation, is_none_in_a_step_and_none_in_its_points) {
    const CountAllocations allocations;
    const OwnedSystem system = make_system(1000);
    system->create_emitter()->set_particle_rate(5000.0f);
    system->create_emitter()->set_particle_rate(3000.0f);
    system->create_action();
    system->create_action();
    const unsigned long before = allocations.count();
    for (int step = 0; step < 100; ++step) {
        system->update(1.0f / 60.0f, nullptr);
        system->vertex_pool_prepare_render();
    }
    EXPECT_EQ(allocations.count(), before);
    EXPECT_GT(system->get_num_alive_particles(), 0u);
    EXPECT_GT(before, 0u);
}

TEST(ParticleAllocation, that_fails_at_any_array_is_told_and_leaves_nothing) {
    const LogCapture log;
    unsigned long num_arrays = 0;
    for (;; ++num_arrays) {
        const OwnedSystem system(new ParticleSystem);
        bool made = false;
        {
            const RefuseArrays refused({.granted = num_arrays, .refused = 1});
            made = system->initialize(40);
        }
        EXPECT_EQ(system->get_particle_pool() != nullptr, made);
        if (made)
            break;
        EXPECT_TRUE(system->update(0.1f, nullptr));
        EXPECT_EQ(log.messages().size(), num_arrays + 1);
        EXPECT_EQ(log.messages().back(), "<*> std::bad_alloc exception caught - what: "
                                         "std::bad_alloc");
    }
    EXPECT_EQ(num_arrays, 10u); // seven of the particles, three of the points
}

} // namespace

} // namespace orvex_test
