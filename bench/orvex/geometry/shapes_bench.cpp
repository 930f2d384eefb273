// Building large shapes, against plain loops that write the same 96-byte vertices to fresh memory
// on large pages and nothing else. A shape also makes faces, face normals, face materials, quad
// edges and one particle per vertex: 112 bytes more for each. The goals say: no slower than it is.

#include <cmath>
#include <cstdlib>
#include <numbers>

#include <benchmark/benchmark.h>

#include <malloc.h>

#include "bench/support/row.h"
#include "orvex/geometry/shapes/mesh_plane.h"
#include "orvex/geometry/shapes/mesh_sphere.h"
#include "orvex/geometry/shapes/mesh_torus.h"
#include "orvex/platform/private/large_pages.h"
#include "orvex/renderer/records/mesh_data.h"

namespace {

using namespace orvex;

constexpr int PLANE_CELLS = 1000;
constexpr int SLICES = 512;

constexpr vec4 white(1.0f, 1.0f, 1.0f, 1.0f);
constexpr vec4 none;

void set_params(MeshPlane& plane) {
    plane.set_build_params(10.0f, 10.0f, PLANE_CELLS, PLANE_CELLS);
}

void set_params(MeshSphere& sphere) {
    sphere.set_build_params(4.0f, SLICES, SLICES);
}

void set_params(MeshTorus& torus) {
    torus.set_build_params(5.0f, 2.0f, SLICES);
}

/// The geometry alone: a build would go on to measure the bounding sphere.
bool make(MeshPlane& plane) {
    return plane.build(nullptr);
}

template<class Shape>
bool make(Shape& shape) {
    return shape._build();
}

void write_plane(Vertex* vertex) {
    const float step = 10.0f / PLANE_CELLS;
    const float share = 1.0f / PLANE_CELLS;
    for (int row = 0; row <= PLANE_CELLS; ++row)
        for (int column = 0; column <= PLANE_CELLS; ++column)
            *vertex++ = {
                vec4(-5.0f + static_cast<float>(column) * step, 0.0f,
                     -5.0f + static_cast<float>(row) * step, 1.0f),
                white,
                vec4(0.0f, 1.0f, 0.0f, 0.0f),
                vec4(static_cast<float>(column) * share,
                     static_cast<float>(PLANE_CELLS - row) * share, 0.0f, 1.0f),
                none,
                none,
            };
}

/// Sines and cosines of a full turn, taken once per loop.
struct Turn {
    float sin[SLICES + 1];
    float cos[SLICES + 1];

    explicit Turn(float whole) {
        for (int i = 0; i <= SLICES; ++i) {
            sin[i] = std::sin(whole * static_cast<float>(i) / SLICES);
            cos[i] = std::cos(whole * static_cast<float>(i) / SLICES);
        }
    }
};

void write_sphere(Vertex* vertex) {
    constexpr float pi = std::numbers::pi_v<float>;
    const Turn around(2.0f * pi);
    const Turn down(pi);
    for (int row = 0; row <= SLICES; ++row)
        for (int column = 0; column <= SLICES; ++column) {
            const vec3 normal(down.sin[row] * around.sin[column],
                              down.sin[row] * around.cos[column], down.cos[row]);
            *vertex++ = {
                vec4(4.0f * normal.x, 4.0f * normal.y, 4.0f * normal.z, 1.0f),
                white,
                vec4(normal.x, normal.y, normal.z, 0.0f),
                vec4(static_cast<float>(column) / SLICES, static_cast<float>(row) / SLICES, 0.0f,
                     1.0f),
                none,
                none,
            };
        }
}

void write_torus(Vertex* vertex) {
    const Turn turn(2.0f * std::numbers::pi_v<float>);
    for (int ring = 0; ring <= SLICES; ++ring)
        for (int i = 0; i <= SLICES; ++i) {
            const vec3 normal(turn.cos[i] * turn.cos[ring], turn.sin[i],
                              -turn.cos[i] * turn.sin[ring]);
            const float distance = 3.0f + 2.0f * turn.cos[i];
            *vertex++ = {
                vec4(distance * turn.cos[ring], 2.0f * turn.sin[i], -distance * turn.sin[ring],
                     1.0f),
                white,
                vec4(normal.x, normal.y, normal.z, 0.0f),
                vec4(2.0f * static_cast<float>(ring) / SLICES, static_cast<float>(i) / SLICES, 0.0f,
                     1.0f),
                none,
                none,
            };
        }
}

// --- Both, each in turn. What they made is given back with the clock stopped.

template<class Shape>
void build(orvex_bench::Turns& turns, bool separate) {
    Shape* shape = nullptr;
    turns.take([&] {
        shape = new Shape;
        shape->set_vertex_alloc_params(separate, 0);
        set_params(*shape);
        if (!make(*shape))
            std::abort();
    });
    shape->release(nullptr, nullptr);
}

void write_to_fresh_memory(orvex_bench::Turns& turns, unsigned long count, void (*write)(Vertex*)) {
    void* block = nullptr;
    turns.take([&] {
        block = ::operator new(count * sizeof(Vertex));
        advise_large_pages(block, count * sizeof(Vertex));
        write(static_cast<Vertex*>(block));
    });
    ::operator delete(block);
}

template<class Shape>
void compare(benchmark::State& state, int per_side, void (*write)(Vertex*), double goal) {
    const unsigned long side = static_cast<unsigned long>(per_side) + 1;
    orvex_bench::Turns ours, of_loop;
    for (auto _ : state) {
        write_to_fresh_memory(of_loop, side * side, write);
        build<Shape>(ours, state.range(0) != 0);
        state.SetIterationTime(ours.last());
    }
    orvex_bench::say_row(state, {"a loop of its vertices", goal}, ours.median(), of_loop.median());
}

void plane(benchmark::State& state) {
    compare<MeshPlane>(state, PLANE_CELLS, write_plane, 5.0);
}

void sphere(benchmark::State& state) {
    compare<MeshSphere>(state, SLICES, write_sphere, 6.0);
}

void torus(benchmark::State& state) {
    compare<MeshTorus>(state, SLICES, write_torus, 6.0);
}

BENCHMARK(plane)
    ->ArgName("separate")
    ->Arg(0)
    ->Arg(1)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime();
BENCHMARK(sphere)
    ->ArgName("separate")
    ->Arg(0)
    ->Arg(1)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime();
BENCHMARK(torus)
    ->ArgName("separate")
    ->Arg(0)
    ->Arg(1)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime();

} // namespace

/// Every large block comes fresh from the system and goes back to it, as in a host that makes each
/// shape once.
int main(int argc, char** argv) {
    mallopt(M_MMAP_THRESHOLD, 128 * 1024);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
