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

void background_of_kit(benchmark::State& state) {
    Stage stage;
    for (auto _ : state)
        stage.kit_view.set_background({grey[0], grey[1], grey[2], grey[3]});
}
BENCHMARK(background_of_kit);

void background_of_c(benchmark::State& state) {
    const Stage stage;
    for (auto _ : state)
        benchmark::DoNotOptimize(orvex_view_set_background(stage.view, grey.data()));
}
BENCHMARK(background_of_c);

void facts_of_kit(benchmark::State& state) {
    const Stage stage;
    for (auto _ : state) {
        benchmark::DoNotOptimize(stage.kit_model.num_vertices());
        benchmark::DoNotOptimize(stage.kit_model.num_faces());
        benchmark::DoNotOptimize(stage.kit_model.bounds());
        benchmark::DoNotOptimize(stage.kit_model.materials().size());
    }
}
BENCHMARK(facts_of_kit);

void facts_of_c(benchmark::State& state) {
    const Stage stage;
    orvex_model_info info{};
    info.size = sizeof(info);
    for (auto _ : state)
        benchmark::DoNotOptimize(orvex_model_get_info(stage.model, &info));
}
BENCHMARK(facts_of_c);

void mesh_of_c(benchmark::State& state) {
    const Stage stage;
    orvex_mesh_info info{};
    info.size = sizeof(info);
    for (auto _ : state)
        benchmark::DoNotOptimize(orvex_model_get_mesh(stage.model, 1, &info));
}
BENCHMARK(mesh_of_c);

void pick_of_kit(benchmark::State& state) {
    const Stage stage;
    const Ray ray{{0, 5, 50, 1}, {0, 0, -1, 0}};
    for (auto _ : state)
        benchmark::DoNotOptimize(stage.kit_model.pick(ray));
}
BENCHMARK(pick_of_kit);

void pick_of_c(benchmark::State& state) {
    const Stage stage;
    const std::array<double, 3> origin = {0, 5, 50}, direction = {0, 0, -1};
    orvex_pick pick{};
    pick.size = sizeof(pick);
    for (auto _ : state)
        benchmark::DoNotOptimize(
            orvex_pick_ray(&stage.model, 1, origin.data(), direction.data(), &pick));
}
BENCHMARK(pick_of_c);

void frame_of_kit(benchmark::State& state) {
    Stage stage;
    kit::Camera camera;
    camera.set_clip(1, 100);
    std::array<unsigned char, 64 * 64 * 4> pixels{};
    for (auto _ : state) {
        stage.kit_view.begin(camera);
        stage.kit_view.end();
        benchmark::DoNotOptimize(stage.kit_view.read(pixels.data(), 64 * 4));
    }
}
BENCHMARK(frame_of_kit);

void frame_of_c(benchmark::State& state) {
    const Stage stage;
    orvex_camera camera{};
    camera.size = sizeof(camera);
    camera.eye[2] = 10;
    camera.near_plane = 1;
    camera.far_plane = 100;
    std::array<unsigned char, 64 * 64 * 4> pixels{};
    for (auto _ : state) {
        benchmark::DoNotOptimize(orvex_view_draw(stage.view, &camera, nullptr, 0));
        benchmark::DoNotOptimize(orvex_view_read(stage.view, pixels.data(), 0));
    }
}
BENCHMARK(frame_of_c);

void refusal_of_c(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(orvex_view_resize(nullptr, 1, 1));
}
BENCHMARK(refusal_of_c);

} // namespace

BENCHMARK_MAIN();
