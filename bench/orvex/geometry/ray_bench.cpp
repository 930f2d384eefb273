/// @file
/// A ray against a mesh of 100,000 triangles, against the same arithmetic in a loop over plain
/// arrays, as somebody would write it who has nothing but arrays: vertices are transformed once a
/// ray, and nothing of the engine's is called but the test of the bounding sphere.
///
/// `of_calls` in the output is how many times as fast the cast is as a loop over the engine's own
/// operations, which fetch and transform three vertices for each face. All take turns, so that what
/// else the machine does falls on each, and their hits are held against each other to the last bit
/// before the clock runs. The argument is the vertex format; rows with `interleaved` have one array
/// of records, rows with `still` no transform.

#include <array>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/support/owned.h"
#include "bench/support/row.h"
#include "orvex/geometry/rays/ray_caster.h"
#include "orvex/geometry/shapes/mesh_sphere.h"
#include "orvex/renderer/records/mesh_data.h"
#include "tests/orvex/geometry/rays/plain_ray_cast.h"

namespace {

using namespace orvex;
using orvex_bench::say_row;
using orvex_bench::Turns;

constexpr int num_rays = 64;

/// A ball of 100,000 triangles; turned, stretched and moved, if it isn't still.
Owned<Mesh> make_ball(VERTEX_FORMAT format, bool separate, bool is_still) {
    auto* const ball = new MeshSphere(format);
    ball->set_vertex_alloc_params(separate, 0);
    ball->set_build_params(4.0f, 250, 200);
    ball->build(nullptr);
    if (is_still)
        return Owned<Mesh>(ball);
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

// --- The loop over arrays

struct Point {
    float x, y, z;
};

Point minus(const Point& a, const Point& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
Point cross(const Point& a, const Point& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
float dot(const Point& a, const Point& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

/// A mesh as plain arrays.
struct Arrays {
    std::vector<Point> positions;
    std::vector<FaceU32> faces;
    mat4 to_world;
    vec4 center;
    float radius;
    std::vector<Point> turned; ///< where a cast puts the transformed vertices

    explicit Arrays(Mesh& mesh)
        : to_world(mesh.get_absolute_transform())
        , center(to_world * mesh.get_bounding_sphere_center())
        , radius(mesh.get_bounding_sphere_radius()) {
        const MeshData& store = *mesh.get_mesh_data();
        for (unsigned long i = 0; i < store.num_vertices; ++i) {
            const vec3 p = store.get_position(i);
            positions.push_back({p.x, p.y, p.z});
        }
        for (unsigned long i = 0; i < store.num_faces; ++i)
            faces.push_back(orvex_test::plain_face(store, i));
        turned.resize(positions.size());
    }
};

void transform(Arrays& arrays) {
    const float* const m = arrays.to_world.m;
    for (std::size_t i = 0; i < arrays.positions.size(); ++i) {
        const Point& p = arrays.positions[i];
        arrays.turned[i] = {m[0] * p.x + m[4] * p.y + m[8] * p.z + m[12],
                            m[1] * p.x + m[5] * p.y + m[9] * p.z + m[13],
                            m[2] * p.x + m[6] * p.y + m[10] * p.z + m[14]};
    }
}

bool cast_by_arrays(const Ray& ray, Arrays& arrays, RayObjectIntersection& result) {
    result.hit = false;
    if (!Math::check_ray_sphere_intersection(ray.origin, ray.direction, arrays.center,
                                             arrays.radius))
        return false;
    transform(arrays);
    const Point origin = {ray.origin.x, ray.origin.y, ray.origin.z};
    const Point direction = {ray.direction.x, ray.direction.y, ray.direction.z};
    result.distance = 1e13f;
    for (std::size_t i = 0; i < arrays.faces.size(); ++i) {
        const FaceU32& face = arrays.faces[i];
        const Point &p0 = arrays.turned[face.a], &p1 = arrays.turned[face.b];
        const Point e1 = minus(p0, p1), e2 = minus(p0, arrays.turned[face.c]);
        const Point s = minus(p0, origin);
        const Point a = cross(e2, direction);
        const float det = dot(e1, a);
        const float gamma = dot(s, a) / det;
        if (!(gamma >= 0.0f && gamma <= 1.0f))
            continue;
        const Point b = cross(e1, s);
        const float beta = dot(direction, b) / det;
        const float t = -dot(e2, b) / det;
        if (beta >= 0.0f && beta <= 1.0f && beta + gamma <= 1.0f && t > 0.0f &&
            t < result.distance) {
            result.distance = t;
            result.face_index = i;
            result.hit = true;
        }
    }
    return result.hit;
}

bool same_hits(const std::array<Ray, num_rays>& rays, Mesh& mesh, Arrays& arrays) {
    for (const Ray& ray : rays) {
        RayObjectIntersection quick;
        RayObjectIntersection plain;
        RayObjectIntersection of_arrays;
        RayCaster()._cast_ray_mesh(ray, &mesh, quick);
        orvex_test::plain_ray_cast(ray, mesh, plain);
        cast_by_arrays(ray, arrays, of_arrays);
        if (!orvex_test::same_bits(quick, plain) || quick.hit != of_arrays.hit)
            return false;
        if (quick.hit &&
            (quick.distance != of_arrays.distance || quick.face_index != of_arrays.face_index))
            return false;
    }
    return true;
}

/// Casts all rays.
template<class Cast>
void take(Turns& turns, const std::array<Ray, num_rays>& rays, Cast cast) {
    turns.take([&] {
        for (const Ray& ray : rays) {
            RayObjectIntersection result;
            benchmark::DoNotOptimize(cast(ray, result));
        }
    });
}

/// @param goal  what 130 us for a ray that hits are of the loop's
void cast(benchmark::State& state, double goal, bool separate, bool is_still) {
    const auto mesh = make_ball(static_cast<VERTEX_FORMAT>(state.range(0)), separate, is_still);
    Arrays arrays(*mesh);
    const std::array<Ray, num_rays> rays = make_rays();
    if (!same_hits(rays, *mesh, arrays)) {
        state.SkipWithError("the hits differ");
        return;
    }
    const RayCaster caster;
    Turns quick, plain, of_arrays;
    for (auto _ : state) {
        take(plain, rays, [&](const Ray& ray, auto& result) {
            return orvex_test::plain_ray_cast(ray, *mesh, result);
        });
        take(of_arrays, rays,
             [&](const Ray& ray, auto& result) { return cast_by_arrays(ray, arrays, result); });
        take(quick, rays, [&](const Ray& ray, auto& result) {
            return caster._cast_ray_mesh(ray, mesh.get(), result);
        });
        state.SetIterationTime(quick.last());
    }
    say_row(state, {"a loop over arrays", goal}, quick.median() / num_rays,
            of_arrays.median() / num_rays);
    state.counters["of_calls"] = plain.median() / quick.median();
    state.counters["faces"] = static_cast<double>(mesh->get_num_faces(nullptr));
}

BENCHMARK_CAPTURE(cast, separate, 0.43, true, false)
    ->DenseRange(0, 3)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(cast, still, 0.37, true, true)
    ->DenseRange(0, 3)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(cast, interleaved, 0.6, false, false)
    ->DenseRange(0, 3)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
