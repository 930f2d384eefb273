#include "orvex/geometry/particles/particle_pool.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "orvex/geometry/mesh/private/logging_failures.h"
#include "orvex/geometry/points/vertex_pool.h"
#include "orvex/math/math.h"
#include "orvex/platform/private/large_pages.h"

namespace orvex {

ParticlePool::~ParticlePool() {
    free(nullptr);
}

namespace {

template<class T>
T* make_array(unsigned long count, T value) {
    T* const elements = new_large_array<T>(count);
    std::fill_n(elements, count, value);
    return elements;
}

void make_arrays(ParticlePool& pool, unsigned long count) {
    pool.indices = new_large_array<unsigned long>(count);
    std::iota(pool.indices, pool.indices + count, 0ul);
    pool.positions = new_large_array<vec3>(count);
    pool.velocities = new_large_array<vec3>(count);
    pool.lifetimes = make_array(count, 0.0f);
    pool.spawned_list = make_array(count, 0ul);
    pool.spawned_list_v2 = make_array(count, 0ul);
    pool.ages = make_array(count, 0.0f);
    pool.vertex_pool = new VertexPool;
    pool.vertex_pool->init_pool(count, true);
    pool.num_particles = count;
}

void scatter(ParticlePool& pool) {
    for (unsigned long i = 0; i < pool.num_particles; ++i) {
        vec3& position = pool.positions[i];
        position.x = Math::rnd(-10.0f, 10.0f);
        position.y = Math::rnd(-10.0f, 10.0f);
        position.z = Math::rnd(-10.0f, 10.0f);
    }
}

} // namespace

bool ParticlePool::alloc(unsigned long count) {
    free(nullptr);
    const bool made = logging_failures([this, count] {
        make_arrays(*this, count);
        return true;
    });
    if (!made) {
        free(nullptr);
        return false;
    }
    scatter(*this);
    return true;
}

namespace {

template<class T>
void end_array(T*& elements) {
    delete[] elements;
    elements = nullptr;
}

} // namespace

void ParticlePool::free(Renderer* renderer) {
    num_particles = 0;
    scan_position = 0;
    num_spawned = 0;
    num_spawned_v2 = 0;
    end_array(indices);
    end_array(positions);
    end_array(velocities);
    end_array(lifetimes);
    end_array(spawned_list);
    end_array(spawned_list_v2);
    end_array(ages);
    if (VertexPool* const points = std::exchange(vertex_pool, nullptr))
        points->release(renderer, nullptr);
}

} // namespace orvex
