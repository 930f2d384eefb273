// What a call of the interface for C costs beside the same call of the kit: the check of the
// handle, of the thread and of the arguments, and the room that is left for a sentence.

#include <array>

#include <benchmark/benchmark.h>

#include <orvex/geometry/rays/ray_caster.h>
#include <orvex_c/orvex.h>
#include <orvex_kit/camera.h>
#include <orvex_kit/engine.h>
#include <orvex_kit/model.h>
#include <orvex_kit/view.h>

#include "bench/support/row.h"

namespace {

using namespace orvex;

/// An engine of the interface for C, beside whose things stand those of the kit.
struct Stage {
    orvex_engine engine = nullptr;
    orvex_view view = nullptr;
    orvex_model model = nullptr;
    kit::View kit_view;
    kit::Model kit_model;

    Stage() {
        orvex_engine_start(nullptr, &engine);
        orvex_view_create(engine, 64, 64, nullptr, &view);
        orvex_model_load(engine, ORVEX_BENCH_MODEL, nullptr, &model);
        kit_view = kit::View(64, 64);
        kit_model = kit::Model(ORVEX_BENCH_MODEL);
    }
    ~Stage() { orvex_engine_stop(engine); }
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;
};

const std::array<float, 4> grey = {0.5f, 0.5f, 0.5f, 1.0f};

template<class Call>
auto many_times(int count, Call& call) {
    return [&call, count] {
        for (int i = 0; i < count; ++i)
            call();
    };
}

/// Many calls of each in turn: the row tells the cost of one.
template<class OfC, class OfKit>
void beside_kit(benchmark::State& state, OfC of_c, OfKit of_kit) {
    constexpr double most_over_kit = 50e-9;
    constexpr int num_calls = 1000;
    orvex_bench::Turns ours, kits;
    for (auto _ : state) {
        kits.take(many_times(num_calls, of_kit));
        state.SetIterationTime(ours.take(many_times(num_calls, of_c)));
    }
    const double kit = kits.median() / num_calls;
    state.counters["kit_seconds"] = kit;
    orvex_bench::say_row(state, {"the kit, and 50 ns", 1.0}, ours.median() / num_calls,
                         kit + most_over_kit);
}

void background(benchmark::State& state) {
    Stage stage;
    beside_kit(
        state,
        [&] { benchmark::DoNotOptimize(orvex_view_set_background(stage.view, grey.data())); },
        [&] {
            stage.kit_view.set_background({grey[0], grey[1], grey[2], grey[3]});
            benchmark::ClobberMemory();
        });
}
BENCHMARK(background)->UseManualTime();

void facts(benchmark::State& state) {
    const Stage stage;
    orvex_model_info info{};
    info.size = sizeof(info);
    beside_kit(
        state, [&] { benchmark::DoNotOptimize(orvex_model_get_info(stage.model, &info)); },
        [&] {
            benchmark::DoNotOptimize(stage.kit_model.num_vertices());
            benchmark::DoNotOptimize(stage.kit_model.num_faces());
            benchmark::DoNotOptimize(stage.kit_model.bounds());
            benchmark::DoNotOptimize(stage.kit_model.materials().size());
        });
}
BENCHMARK(facts)->UseManualTime();

void pick(benchmark::State& state) {
    const Stage stage;
    const std::array<double, 3> origin = {0, 5, 50}, direction = {0, 0, -1};
    orvex_pick result{};
    result.size = sizeof(result);
    const Ray ray{{0, 5, 50, 1}, {0, 0, -1, 0}};
    beside_kit(
        state,
        [&] {
            benchmark::DoNotOptimize(
                orvex_pick_ray(&stage.model, 1, origin.data(), direction.data(), &result));
        },
        [&] { benchmark::DoNotOptimize(stage.kit_model.pick(ray)); });
}
BENCHMARK(pick)->UseManualTime();

void frame(benchmark::State& state) {
    Stage stage;
    kit::Camera kit_camera;
    kit_camera.set_clip(1, 100);
    orvex_camera camera{};
    camera.size = sizeof(camera);
    camera.eye[2] = 10;
    camera.near_plane = 1;
    camera.far_plane = 100;
    std::array<unsigned char, 64 * 64 * 4> pixels{};
    constexpr int num_frames = 10;
    const auto by_c = [&] {
        benchmark::DoNotOptimize(orvex_view_draw(stage.view, &camera, nullptr, 0));
        benchmark::DoNotOptimize(orvex_view_read(stage.view, pixels.data(), 0));
    };
    const auto by_kit = [&] {
        stage.kit_view.begin(kit_camera);
        stage.kit_view.end();
        benchmark::DoNotOptimize(stage.kit_view.read(pixels.data(), 64 * 4));
    };
    orvex_bench::take_turns(state, {"the kit", 1.05}, many_times(num_frames, by_c),
                            many_times(num_frames, by_kit), num_frames);
}
BENCHMARK(frame)->UseManualTime();

// The kit has no call like these.

void mesh_of_c(benchmark::State& state) {
    const Stage stage;
    orvex_mesh_info info{};
    info.size = sizeof(info);
    for (auto _ : state)
        benchmark::DoNotOptimize(orvex_model_get_mesh(stage.model, 1, &info));
}
BENCHMARK(mesh_of_c);

void refusal_of_c(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(orvex_view_resize(nullptr, 1, 1));
}
BENCHMARK(refusal_of_c);

} // namespace

BENCHMARK_MAIN();
