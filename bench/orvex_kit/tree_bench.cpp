/// @file
/// Rays through the tree of `kit::Model::pick`, paired with Embree's where it is installed: the
/// same faces, the same rays, one processor's time. Whether something is met, and how far away, is
/// compared before the clock runs. Rays are those of a picture, or run from anywhere to anywhere.
///
/// Goals: at most 2 times Embree's time for a ray, at most 3 times for the tree, which the first
/// pick builds. Both build by all processors, whose time counts.

#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#ifdef ORVEX_BENCH_EMBREE
#include <embree3/rtcore.h>
#endif

#include <orvex/orvex.h>
#include <orvex_kit/kit.h>

#include "bench/support/row.h"

namespace {

using namespace orvex;

struct Faces {
    std::vector<float> positions;
    std::vector<std::uint32_t> faces;
};

/// A landscape of squares, each of two faces.
Faces landscape(int side) {
    Faces result;
    for (int z = 0; z <= side; ++z)
        for (int x = 0; x <= side; ++x) {
            const double scale = 300.0 / side;
            result.positions.push_back(static_cast<float>(x * scale));
            result.positions.push_back(
                static_cast<float>(9.0 * std::sin(x * scale * 0.07) * std::cos(z * scale * 0.05)));
            result.positions.push_back(static_cast<float>(z * scale));
        }
    for (std::uint32_t z = 0; z < static_cast<std::uint32_t>(side); ++z)
        for (std::uint32_t x = 0; x < static_cast<std::uint32_t>(side); ++x) {
            const std::uint32_t a = z * (static_cast<std::uint32_t>(side) + 1) + x;
            const std::uint32_t b = a + static_cast<std::uint32_t>(side) + 1;
            result.faces.insert(result.faces.end(), {a, b, a + 1, a + 1, b, b + 1});
        }
    return result;
}

/// Faces of many sizes that lie anywhere in a cube.
Faces soup(int num_faces) {
    std::mt19937 engine(7);
    std::uniform_real_distribution<float> place(0.0f, 100.0f), offset(-1.0f, 1.0f);
    Faces result;
    for (int i = 0; i < num_faces; ++i) {
        const float middle[3] = {place(engine), place(engine), place(engine)};
        const float size = std::exp(2.0f * offset(engine) - 1.5f);
        for (int corner = 0; corner < 3; ++corner) {
            for (const float part : middle)
                result.positions.push_back(part + size * offset(engine));
            result.faces.push_back(static_cast<std::uint32_t>(i * 3 + corner));
        }
    }
    return result;
}

std::vector<Ray> rays_of_picture(const kit::Model& model) {
    constexpr int width = 160, height = 120;
    const kit::Camera camera = kit::see_all(model.extent(), {}, {width, height});
    std::vector<Ray> rays;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            rays.push_back(camera.ray(x + 0.5, y + 0.5, {width, height}));
    return rays;
}

std::vector<Ray> rays_from_anywhere(const kit::Model& model) {
    std::mt19937 engine(11);
    const vec3 low = model.bounds().min, high = model.bounds().max;
    const auto between = [&engine](float a, float b) {
        return std::uniform_real_distribution<float>(a - (b - a) / 2, b + (b - a) / 2)(engine);
    };
    const auto point = [&] {
        const float x = between(low.x, high.x), y = between(low.y, high.y);
        return vec4(x, y, between(low.z, high.z), 1.0f);
    };
    std::vector<Ray> rays(20'000);
    for (Ray& ray : rays) {
        ray.origin = point();
        const vec4 to = point();
        ray.direction = vec4(to.x - ray.origin.x, to.y - ray.origin.y, to.z - ray.origin.z, 0.0f);
    }
    return rays;
}

#ifdef ORVEX_BENCH_EMBREE

class Peer {
public:
    explicit Peer(const Faces& faces)
        : device(rtcNewDevice(nullptr))
        , scene(rtcNewScene(device)) {
        RTCGeometry geometry = rtcNewGeometry(device, RTC_GEOMETRY_TYPE_TRIANGLE);
        const std::size_t num_vertices = faces.positions.size() / 3;
        float* const vertices = static_cast<float*>(
            rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_VERTEX, 0, RTC_FORMAT_FLOAT3,
                                    3 * sizeof(float), num_vertices));
        std::copy(faces.positions.begin(), faces.positions.end(), vertices);
        auto* const indices = static_cast<std::uint32_t*>(
            rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_INDEX, 0, RTC_FORMAT_UINT3,
                                    3 * sizeof(std::uint32_t), faces.faces.size() / 3));
        std::copy(faces.faces.begin(), faces.faces.end(), indices);
        rtcCommitGeometry(geometry);
        rtcAttachGeometry(scene, geometry);
        rtcReleaseGeometry(geometry);
        rtcCommitScene(scene);
    }
    ~Peer() {
        rtcReleaseScene(scene);
        rtcReleaseDevice(device);
    }
    Peer(const Peer&) = delete;
    Peer& operator=(const Peer&) = delete;

    std::optional<double> distance(const Ray& ray) const {
        RTCIntersectContext context;
        rtcInitIntersectContext(&context);
        RTCRayHit hit{};
        hit.ray.org_x = ray.origin.x;
        hit.ray.org_y = ray.origin.y;
        hit.ray.org_z = ray.origin.z;
        hit.ray.dir_x = ray.direction.x;
        hit.ray.dir_y = ray.direction.y;
        hit.ray.dir_z = ray.direction.z;
        hit.ray.tfar = std::numeric_limits<float>::infinity();
        hit.ray.mask = 0xffffffff;
        hit.hit.geomID = RTC_INVALID_GEOMETRY_ID;
        rtcIntersect1(scene, &context, &hit);
        if (hit.hit.geomID == RTC_INVALID_GEOMETRY_ID)
            return std::nullopt;
        return static_cast<double>(hit.ray.tfar);
    }

private:
    RTCDevice device;
    RTCScene scene;
};

/// Single precision may differ at edges.
bool are_alike(const kit::Model& model, const Peer& peer, const std::vector<Ray>& rays) {
    std::size_t unlike = 0;
    for (const Ray& ray : rays) {
        const std::optional<kit::Pick> ours = model.pick(ray);
        const std::optional<double> theirs = peer.distance(ray);
        if (ours.has_value() != theirs.has_value() ||
            (ours && std::abs(ours->distance - *theirs) > 1e-3 * *theirs + 1e-5))
            ++unlike;
    }
    return unlike * 100 <= rays.size();
}

#endif

kit::Model model_of(const Faces& faces) {
    kit::MeshNumbers numbers;
    numbers.num_vertices = faces.positions.size() / 3;
    numbers.positions = {faces.positions.data()};
    numbers.num_faces = faces.faces.size() / 3;
    numbers.faces = {faces.faces.data(), kit::Number::u32};
    return kit::Model::from_numbers(numbers);
}

/// Times both by turns, a bunch of rays each.
void cast(benchmark::State& state, const Faces& faces,
          std::vector<Ray> (*rays_of)(const kit::Model&)) {
    const kit::Model model = model_of(faces);
    const std::vector<Ray> rays = rays_of(model);
    std::size_t num_hits = 0;
    const auto ours = [&] {
        num_hits = 0;
        for (const Ray& ray : rays)
            num_hits += model.pick(ray) ? 1 : 0;
    };
    const auto num_rays = static_cast<double>(rays.size());
#ifdef ORVEX_BENCH_EMBREE
    const Peer peer(faces);
    if (!are_alike(model, peer, rays))
        return state.SkipWithError("the two disagree");
    const auto peers = [&] {
        for (const Ray& ray : rays)
            benchmark::DoNotOptimize(peer.distance(ray));
    };
    orvex_bench::take_turns(state, {"Embree", 2.0}, ours, peers, num_rays);
#else
    orvex_bench::Turns turns;
    for (auto _ : state)
        state.SetIterationTime(turns.take(ours));
    state.counters["ns_a_ray"] = 1e9 * turns.median() / num_rays;
#endif
    state.counters["hits"] = static_cast<double>(num_hits) / num_rays;
}

/// The first pick of a fresh model, beside the peer's scene of the same faces.
void build(benchmark::State& state, const Faces& faces) {
    const std::vector<Ray> rays = rays_from_anywhere(model_of(faces));
    orvex_bench::Turns ours;
#ifdef ORVEX_BENCH_EMBREE
    orvex_bench::Turns of_peer;
#endif
    for (auto _ : state) {
#ifdef ORVEX_BENCH_EMBREE
        std::optional<Peer> peer;
        of_peer.take([&] { peer.emplace(faces); });
        peer.reset();
#endif
        const kit::Model model = model_of(faces);
        state.SetIterationTime(
            ours.take([&] { benchmark::DoNotOptimize(model.pick(rays.front())); }));
    }
#ifdef ORVEX_BENCH_EMBREE
    orvex_bench::say_row(state, {"Embree", 3.0}, ours.median(), of_peer.median());
#endif
}

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    const kit::Engine engine;
    const auto add = [](const std::string& name, Faces (*make)(int), int size) {
        const auto faces = std::make_shared<Faces>();
        const auto say = [&](const char* what, auto work) {
            benchmark::RegisterBenchmark((name + what).c_str(),
                                         [=](benchmark::State& state) {
                                             if (faces->faces.empty())
                                                 *faces = make(size);
                                             work(state, *faces);
                                         })
                ->UseManualTime()
                ->Iterations(5)
                ->Unit(benchmark::kMillisecond);
        };
        say("/build", build);
        say("/picture", [](benchmark::State& state, const Faces& numbers) {
            cast(state, numbers, rays_of_picture);
        });
        say("/anywhere", [](benchmark::State& state, const Faces& numbers) {
            cast(state, numbers, rays_from_anywhere);
        });
    };
    add("landscape_100000", landscape, 224);
    add("landscape_1000000", landscape, 707);
    add("soup_100000", soup, 100'000);
    add("soup_1000000", soup, 1'000'000);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
