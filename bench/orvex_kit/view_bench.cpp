/// @file
/// What `View` costs, 640 by 480 pixels with the default samples, the lighthouse whole.
///
///   frame   a frame through `View`, against the same calls of the engine by hand
///   layers  six layers, against the colours alone
///
/// Both of a pair take turns, so that a busy machine slows them alike. The processor's time of the
/// fastest rounds counts, which on a software driver tells the same on a busy machine, too.

#include <algorithm>
#include <chrono>
#include <limits>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include <time.h>

#include <orvex/orvex.h>
#include <orvex_kit/kit.h>

#include "bench/support/row.h"

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

/// What a piece of work takes at least.
struct Fastest {
    double seconds = std::numeric_limits<double>::max();
    double cpu_seconds = seconds;

    /// @return the seconds that it took now
    template<class Work>
    double measure(Work&& work) {
        const auto begin = Clock::now();
        const double cpu_begin = cpu_now();
        work();
        const double taken = std::chrono::duration<double>(Clock::now() - begin).count();
        seconds = std::min(seconds, taken);
        cpu_seconds = std::min(cpu_seconds, cpu_now() - cpu_begin);
        return taken;
    }

private:
    static double cpu_now() {
        timespec now{};
        clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
        return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
    }
};

/// Both in turn; the time is that of the first.
template<class Ours, class Peer>
void compare_in_turn(benchmark::State& state, const orvex_bench::Against& against, Ours&& ours,
                     Peer&& peer) {
    // The first frames compile programs.
    ours();
    peer();
    Fastest fastest, fastest_peer;
    for (auto _ : state) {
        state.SetIterationTime(fastest.measure(ours));
        fastest_peer.measure(peer);
    }
    orvex_bench::say_row(state, against, fastest.cpu_seconds, fastest_peer.cpu_seconds);
    state.counters["wall_ratio"] = fastest.seconds / fastest_peer.seconds;
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
        state, {"the engine by hand", 1.02},
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
        state, {"the colours alone", 1.8},
        [&] {
            draw({Layer::color, Layer::depth, Layer::normal, Layer::object, Layer::material,
                  Layer::face});
        },
        [&] { draw({Layer::color}); });
}
BENCHMARK(layers)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
