/// @file
/// A ray against a mesh of 100,000 triangles under a transform, and against the plain loop that
/// fetches and transforms three vertices for each face.
///
/// Goal, as `speedup` in the output: at least 3, with the same hit to the last bit, which is
/// checked for every ray before the clock runs. The two take turns, so that what else the machine
/// does falls on both. The argument is the vertex format; rows with `interleaved` have one array of
/// records.

#include <array>
#include <chrono>

#include <benchmark/benchmark.h>

#include "bench/support/owned.h"
#include "orvex/geometry/rays/ray_caster.h"
#include "orvex/geometry/shapes/mesh_sphere.h"
#include "orvex/renderer/records/mesh_data.h"
#include "tests/orvex/geometry/rays/plain_ray_cast.h"

namespace {

using namespace orvex;

constexpr int num_rays = 64;

/// A ball of 100,000 triangles, turned, stretched and moved.
Owned<Mesh> make_ball(VERTEX_FORMAT format, bool separate) {
    auto* const ball = new MeshSphere(format);
    ball->set_vertex_alloc_params(separate, 0);
    ball->set_build_params(4.0f, 250, 200);
    ball->build(nullptr);
    ball->set_position(1.0f, 2.0f, -3.0f);
    ball->set_orientation_euler_xyz(20.0f, 40.0f, 60.0f);
    ball->set_scale(1.2f, 0.8f, 1.0f);
    return Owned<Mesh>(ball);
}

/// Rays from one eye over the ball and past its edges.
std::array<Ray, num_rays> make_rays() {
    std::array<Ray, num_rays> rays;
    for (int i = 0; i < num_rays; ++i) {
        const float x = static_cast<float>(i % 8) * 1.4f - 4.9f;
        const float y = static_cast<float>(i / 8) * 1.4f - 4.9f;
        const vec4 target(1.0f + x, 2.0f + y, -3.0f, 1.0f);
        Ray& ray = rays[static_cast<unsigned>(i)];
        ray.origin = vec4(0.0f, 1.0f, 20.0f, 1.0f);
        ray.direction.make_vec(target, ray.origin).normalize();
    }
    return rays;
}

bool same_hits(const std::array<Ray, num_rays>& rays, Mesh& mesh) {
    for (const Ray& ray : rays) {
        RayObjectIntersection quick;
        RayObjectIntersection plain;
        RayCaster()._cast_ray_mesh(ray, &mesh, quick);
        orvex_test::plain_ray_cast(ray, mesh, plain);
        if (!orvex_test::same_bits(quick, plain))
            return false;
    }
    return true;
}

template<class Cast>
double seconds(Cast cast) {
    const auto start = std::chrono::steady_clock::now();
    RayObjectIntersection result;
    benchmark::DoNotOptimize(cast(result));
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void cast(benchmark::State& state, bool separate) {
    const auto mesh = make_ball(static_cast<VERTEX_FORMAT>(state.range(0)), separate);
    const std::array<Ray, num_rays> rays = make_rays();
    if (!same_hits(rays, *mesh)) {
        state.SkipWithError("the hits differ");
        return;
    }
    const RayCaster caster;
    double quick_seconds = 0.0;
    double plain_seconds = 0.0;
    unsigned next = 0;
    for (auto _ : state) {
        const Ray& ray = rays[next++ % num_rays];
        plain_seconds +=
            seconds([&](auto& result) { return orvex_test::plain_ray_cast(ray, *mesh, result); });
        const double turn =
            seconds([&](auto& result) { return caster._cast_ray_mesh(ray, mesh.get(), result); });
        quick_seconds += turn;
        state.SetIterationTime(turn);
    }
    state.counters["speedup"] = plain_seconds / quick_seconds;
    state.counters["plain_us"] =
        benchmark::Counter(plain_seconds * 1e6, benchmark::Counter::kAvgIterations);
    state.counters["faces"] = static_cast<double>(mesh->get_num_faces(nullptr));
}

BENCHMARK_CAPTURE(cast, separate, true)
    ->DenseRange(0, 3)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(cast, interleaved, false)
    ->DenseRange(0, 3)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
