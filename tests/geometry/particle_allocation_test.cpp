// Counts what particle systems allocate. Stays alone, as it replaces the allocator.

#include <cstdlib>
#include <new>

#include <gtest/gtest.h>

#include "geometry/owned_particles.h"
#include "support/log_capture.h"

namespace {

unsigned long num_allocations = 0;
bool arrays_are_counted = false;
unsigned long arrays_left = 0;

/// While one lives, there is memory for so many arrays, and then `std::bad_alloc`.
struct AllowArrays {
    explicit AllowArrays(unsigned long count) {
        arrays_are_counted = true;
        arrays_left = count;
    }
    ~AllowArrays() { arrays_are_counted = false; }
};

void* allocate(std::size_t size) {
    ++num_allocations;
    if (void* block = std::malloc(size == 0 ? 1 : size))
        return block;
    throw std::bad_alloc();
}

} // namespace

void* operator new(std::size_t size) {
    return allocate(size);
}

void* operator new[](std::size_t size) {
    if (arrays_are_counted && arrays_left-- == 0)
        throw std::bad_alloc();
    return allocate(size);
}

void operator delete(void* block) noexcept {
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept {
    std::free(block);
}

void operator delete[](void* block) noexcept {
    std::free(block);
}

void operator delete[](void* block, std::size_t) noexcept {
    std::free(block);
}

namespace {

using namespace orvex;
using namespace orvex_test;

TEST(ParticleAllocation, is_none_in_a_step_and_none_in_its_points) {
    const OwnedSystem system = make_system(1000);
    system->create_emitter()->set_particle_rate(5000.0f);
    system->create_emitter()->set_particle_rate(3000.0f);
    system->create_action();
    system->create_action();
    const unsigned long before = num_allocations;
    for (int step = 0; step < 100; ++step) {
        system->update(1.0f / 60.0f, nullptr);
        system->vertex_pool_prepare_render();
    }
    EXPECT_EQ(num_allocations, before);
    EXPECT_GT(system->get_num_alive_particles(), 0u);
    EXPECT_GT(before, 0u);
}

TEST(ParticleAllocation, that_fails_at_any_array_is_told_and_leaves_nothing) {
    const test::LogCapture log;
    unsigned long num_arrays = 0;
    for (;; ++num_arrays) {
        const OwnedSystem system(new ParticleSystem);
        bool made = false;
        {
            const AllowArrays some(num_arrays);
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
