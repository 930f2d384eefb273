/// @file
/// The price of a graph's frame: a curve of 1,000 points that is fed one sample, synced and drawn
/// with its axes, after histories of different lengths.
///
/// Goal: `allocations` a frame no more than the history's own growth, which doubles its room, and a
/// time that doesn't depend on the history: of ten million samples no more than of a thousand.
/// `sync` writes the points alone, `frame` also draws.
///
/// LP_NO_RAST=1 graph_bench --benchmark_min_time=2

#include <cstdlib>
#include <cstring>
#include <new>

#include <benchmark/benchmark.h>

#include "bench/support/core_context.h"
#include "bench/support/owned.h"
#include "bench/support/row.h"
#include "orvex/geometry/lines/curve.h"
#include "orvex/gpu/gpu_program.h"
#include "orvex/math/vec4.h"
#include "orvex/overlays/graph2d.h"
#include "orvex/renderer/opengl/private/renderer_opengl.h"

namespace {

thread_local long allocations = 0;

} // namespace

// Inlined, the compiler would take a mismatch of `new` and `free` for a mistake.
[[gnu::noinline]] void* operator new(std::size_t size) {
    ++allocations;
    if (void* const block = std::malloc(size == 0 ? 1 : size))
        return block;
    throw std::bad_alloc();
}

[[gnu::noinline]] void operator delete(void* block) noexcept {
    std::free(block);
}

[[gnu::noinline]] void operator delete(void* block, std::size_t) noexcept {
    std::free(block);
}

namespace {

using namespace orvex;

constexpr unsigned long num_points = 1000;
constexpr unsigned long short_history = 1000;
constexpr unsigned long long_history = 10'000'000;

constexpr const char* program_text = R"([Vertex_Shader]
#version 150
in vec4 orvex_Position;
uniform mat4 orvex_ModelViewProjectionMatrix;
void main() { gl_Position = orvex_ModelViewProjectionMatrix * orvex_Position; }
[Pixel_Shader]
#version 150
out vec4 pixel;
void main() { pixel = vec4(1.0); }
)";

/// A graph with one curve and a history.
class Chart {
public:
    explicit Chart(unsigned long num_samples) {
        graph->set_x_axis_positions(vec4(20.0f, 20.0f, 0.0f, 1.0f),
                                    vec4(220.0f, 20.0f, 0.0f, 1.0f));
        graph->set_viewport(0, 0, 256, 256);
        graph->create_curve(num_points);
        graph->get_curve(0)->set_use_fixed_mvp_matrices_state(false, nullptr);
        for (unsigned long i = 0; i < num_samples; ++i)
            feed(static_cast<float>(i % 100));
    }

    void feed(float value) { graph->add_curve_scalar(0, value); }

    void feed_and_sync() {
        feed(50.0f);
        graph->sync_curve_scalars(0);
    }

    Owned<Graph2d> graph{new Graph2d};
};

/// A core context off screen with a program for lines.
class Stage {
public:
    Stage() {
        start_on_core_context(renderer, 256, 256);
        program->load_from_memory(&renderer, program_text, std::strlen(program_text));
        program->bind(&renderer);
    }

    ~Stage() { program.release()->kill(&renderer, nullptr); }

    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    RendererOpenGL renderer;
    Owned<GpuProgram> program{new GpuProgram};
};

/// Frames of one chart and of the other in turn.
template<class Frame>
void compare_frames(benchmark::State& state, Frame of_long, Frame of_short) {
    constexpr int num_frames = 100;
    of_long();
    of_short();
    const auto frames = [](Frame& frame) {
        return [&frame] {
            for (int i = 0; i < num_frames; ++i)
                frame();
        };
    };
    long of_both = 0;
    const auto counted = [&of_both](auto work) {
        return [&of_both, work] {
            const long before = allocations;
            work();
            of_both += allocations - before;
        };
    };
    orvex_bench::take_turns(state, {"a short history", 1.05}, counted(frames(of_long)),
                            counted(frames(of_short)), num_frames);
    const double num_frames_of_both =
        2.0 * num_frames * (static_cast<double>(state.iterations()) + 1);
    state.counters["allocations"] = static_cast<double>(of_both) / num_frames_of_both;
}

void sync(benchmark::State& state) {
    Chart long_one(long_history), short_one(short_history);
    const auto frame_of = [](Chart& chart) { return [&chart] { chart.feed_and_sync(); }; };
    compare_frames(state, frame_of(long_one), frame_of(short_one));
}
BENCHMARK(sync)->UseManualTime()->Unit(benchmark::kMicrosecond);

void frame(benchmark::State& state) {
    Stage stage;
    Chart long_one(long_history), short_one(short_history);
    const auto frame_of = [&stage](Chart& chart) {
        return [&chart, &stage] {
            chart.feed_and_sync();
            chart.graph->render(&stage.renderer, nullptr);
        };
    };
    compare_frames(state, frame_of(long_one), frame_of(short_one));
    long_one.graph->cleanup(&stage.renderer, nullptr);
    short_one.graph->cleanup(&stage.renderer, nullptr);
}
BENCHMARK(frame)->UseManualTime()->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
