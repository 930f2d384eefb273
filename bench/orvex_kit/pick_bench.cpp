/// @file
/// Picking from a model by `kit::Model::pick`, against the engine's rays cast at each of its meshes
/// in turn, over the pixels of a picture. Whether something is met, and how far away, is compared
/// before the clock runs.
///
/// Goals: at least 20 times as fast on the sample of 9,000 faces, at least 200 times on a landscape
/// of 200,000. `first` is the time of the first pick, which builds the tree, in milliseconds.

#include <cmath>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include <orvex/orvex.h>
#include <orvex_kit/kit.h>

#include "bench/support/row.h"

namespace {

using namespace orvex;

constexpr int width = 24, height = 18;

/// A landscape of so many squares to a side, as a file.
std::string write_landscape(int side) {
    std::string path = (std::filesystem::temp_directory_path() / "orvex_pick_bench.obj").string();
    std::ofstream file(path);
    for (int z = 0; z <= side; ++z)
        for (int x = 0; x <= side; ++x)
            file << "v " << x << ' ' << 9.0 * std::sin(x * 0.07) * std::cos(z * 0.05) << ' ' << z
                 << '\n';
    for (int z = 0; z < side; ++z)
        for (int x = 0; x < side; ++x) {
            const int a = z * (side + 1) + x + 1, b = a + side + 1;
            file << "f " << a << ' ' << b << ' ' << a + 1 << "\nf " << a + 1 << ' ' << b << ' '
                 << b + 1 << '\n';
        }
    return path;
}

std::vector<Ray> rays_of(const kit::Model& model) {
    const auto camera = kit::make<orvex::Camera>();
    kit::see_all(model.extent(), {}, {width, height}).apply(*camera, width, height);
    std::vector<Ray> rays;
    const RayCaster caster;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            if (Ray ray; caster.get_ray(camera.get(), x, y, ray))
                rays.push_back(ray);
    return rays;
}

std::optional<double> pick_by_peer(const kit::Model& model, const Ray& ray) {
    std::optional<double> nearest;
    const RayCaster caster;
    for (unsigned long i = 0; i < model.node()->get_num_children(); ++i) {
        RayObjectIntersection result;
        auto* const mesh = static_cast<Mesh*>(model.node()->get_child(i));
        if (!caster.cast_ray_object(ray, mesh, result))
            continue;
        const auto distance = static_cast<double>(result.distance);
        if (!nearest || distance < *nearest)
            nearest = distance;
    }
    return nearest;
}

/// Single precision may differ at edges.
bool are_alike(const kit::Model& model, const std::vector<Ray>& rays) {
    std::size_t unlike = 0;
    for (const Ray& ray : rays) {
        const std::optional<kit::Pick> ours = model.pick(ray);
        const std::optional<double> peer = pick_by_peer(model, ray);
        if (ours.has_value() != peer.has_value() ||
            (ours && std::abs(ours->distance - *peer) > 1e-4 * *peer))
            ++unlike;
    }
    return unlike * 100 <= rays.size();
}

void pick(benchmark::State& state, const std::string& path, double goal) {
    const kit::Model model(path);
    if (!model)
        return state.SkipWithError(model.reason().c_str());
    for (unsigned long i = 0; i < model.node()->get_num_children(); ++i)
        static_cast<Mesh*>(model.node()->get_child(i))->update_bounding_sphere(nullptr);
    const std::vector<Ray> rays = rays_of(model);
    orvex_bench::Turns first;
    state.counters["first"] = 1e3 * first.take([&] { model.pick(rays.front()); });
    if (!are_alike(model, rays))
        return state.SkipWithError("the two disagree");
    const auto for_each_ray = [&rays](auto work) {
        return [&rays, work] {
            for (const Ray& ray : rays)
                benchmark::DoNotOptimize(work(ray));
        };
    };
    orvex_bench::take_turns(
        state, {"rays at each face", goal},
        for_each_ray([&model](const Ray& ray) { return model.pick(ray); }),
        for_each_ray([&model](const Ray& ray) { return pick_by_peer(model, ray); }),
        static_cast<double>(rays.size()));
    state.counters["faces"] = static_cast<double>(model.num_faces());
}

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    const kit::Engine engine;
    const std::string landscape = write_landscape(316);
    const auto add = [](const char* name, const std::string& path, double goal) {
        benchmark::RegisterBenchmark(name,
                                     [=](benchmark::State& state) { pick(state, path, goal); })
            ->UseManualTime()
            ->Iterations(4)
            ->Unit(benchmark::kMicrosecond);
    };
    add("pick/lighthouse", ORVEX_BENCH_MODEL, 1.0 / 20);
    add("pick/landscape", landscape, 1.0 / 200);
    benchmark::RunSpecifiedBenchmarks();
    std::filesystem::remove(landscape);
    return 0;
}
