/// @file
/// What `View` costs, 640 by 480 pixels with the default samples, the lighthouse whole.
///
///   frame   a frame through `View`, against the same calls of the engine by hand
///   layers  six layers, against the colours alone
///
/// Both of a pair take turns, so that a busy machine slows them alike. Goals, as `ratio` in the
/// output, of the fastest rounds: at most 1.02 and 1.8.

#include <algorithm>
#include <chrono>
#include <limits>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include <orvex/orvex.h>
#include <orvex_kit/kit.h>

namespace {

using namespace orvex::kit;
using Clock = std::chrono::steady_clock;

constexpr int width = 640, height = 480;

struct Stage {
    Engine engine;
    View view{width, height};
    orvex::kit::Model model{ORVEX_BENCH_MODEL};
    orvex::kit::Camera camera;

    explicit Stage(benchmark::State& state) {
        if (!view || !model)
            state.SkipWithError((view.reason() + model.reason()).c_str());
        else
            camera = see_all(model.extent(), {}, {width, height});
    }
};

template<class Work>
double seconds_of(Work&& work) {
    const auto begin = Clock::now();
    work();
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

/// Both in turn; the time is that of the first.
template<class Ours, class Peer>
void compare_in_turn(benchmark::State& state, Ours&& ours, Peer&& peer) {
    double fastest = std::numeric_limits<double>::max(), fastest_peer = fastest;
    for (auto _ : state) {
        const double taken = seconds_of(ours);
        fastest = std::min(fastest, taken);
        fastest_peer = std::min(fastest_peer, seconds_of(peer));
        state.SetIterationTime(taken);
    }
    state.counters["ratio"] = fastest / fastest_peer;
}

void frame(benchmark::State& state) {
    Stage stage(state);
    if (state.error_occurred())
        return;
    View& view = stage.view;
    orvex::Renderer& renderer = *view.renderer();
    orvex::RenderTarget& target = *renderer.create_render_target();
    target.create_render_buffer_target(width, height, orvex::PF_RGBA_U8, false, 1, true,
                                       view.samples());
    const auto camera = make<orvex::Camera>();
    compare_in_turn(
        state,
        [&] {
            view.begin(stage.camera);
            view.add(stage.model);
            view.end();
            renderer.finish_pipeline();
        },
        [&] {
            stage.camera.apply(*camera, width, height);
            target.activate();
            renderer.rasterizer_set_msaa_state(true);
            renderer.rasterizer_apply_state();
            camera->bind(&renderer, true, true, true, true, false);
            renderer.clear_color_depth_buffers(0.17f, 0.19f, 0.22f, 1.0f, 1.0f);
            stage.model.draw(renderer, *view.look().gpu(), Path::gl3);
            target.deactivate();
            renderer.fbo_blit(target.get_fbo(), 0, 0, width, height, 0, 0, 0, width, height, true,
                              false);
            renderer.finish_pipeline();
        });
}
BENCHMARK(frame)->UseManualTime()->Unit(benchmark::kMillisecond);

void layers(benchmark::State& state) {
    Stage stage(state);
    if (state.error_occurred())
        return;
    std::vector<Picture> pictures;
    const auto draw = [&](const std::vector<Layer>& wanted) {
        const Outcome done =
            draw_layers(stage.view, stage.camera, {&stage.model}, wanted, pictures);
        if (!done)
            state.SkipWithError(done.reason().c_str());
    };
    compare_in_turn(
        state,
        [&] {
            draw({Layer::color, Layer::depth, Layer::normal, Layer::object, Layer::material,
                  Layer::face});
        },
        [&] { draw({Layer::color}); });
}
BENCHMARK(layers)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
