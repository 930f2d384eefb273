/// @file
/// The price of sending and drawing a polyline through the engine.
///
/// Goal, as `ratio` in the output: sending 1,000,000 changed vertices at most 1.2 times
/// glBufferSubData of the same bytes. Engine and bare calls take turns, so that what else the
/// machine does falls on both. The row of drawing counts the preparation with the draw call, over a
/// bare bind and draw call.
///
/// LP_NO_RAST=1 polyline_bench --benchmark_min_time=5

#include <benchmark/benchmark.h>

#include "bench/support/core_context.h"
#include "bench/support/owned.h"
#include "bench/support/row.h"
#include "orvex/geometry/lines/polyline.h"
#include "orvex/renderer/opengl/private/renderer_opengl.h"
#include "orvex/renderer/records/polyline_data.h"

namespace {

using namespace orvex;

constexpr unsigned long num_vertices = 1'000'000;
constexpr unsigned long num_bytes = num_vertices * sizeof(Vertex);

/// A core context off screen with a polyline that was sent once, and a buffer of the same size.
class Stage {
public:
    Stage() {
        start_on_core_context(renderer, 64, 64);
        polyline->initialize(num_vertices, LINE_RENDER_MODE_LINE_STRIP);
        for (unsigned long i = 0; i < num_vertices; ++i)
            polyline->set_vertex_position(i, static_cast<float>(i), 0.0f, 0.0f);
        renderer.polyline_vb_prepare(&data());
        renderer.polyline_vb_finish(&data());
        renderer.gl.glGenBuffers(1, &bare);
        renderer.gl.glBindBuffer(GL_ARRAY_BUFFER, bare);
        renderer.gl.glBufferData(GL_ARRAY_BUFFER, num_bytes, nullptr, GL_STATIC_DRAW);
    }

    ~Stage() {
        renderer.gl.glDeleteBuffers(1, &bare);
        polyline->cleanup_polyline_data(&renderer);
    }

    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    PolylineData& data() { return *polyline->get_polyline_data(); }

    RendererOpenGL renderer;
    Owned<Polyline> polyline{new Polyline};
    GLuint bare = 0;
};

template<class Engine, class Bare>
void compare(benchmark::State& state, double goal, Engine engine, Bare bare) {
    const auto finished = [](auto work) {
        return [work] {
            work();
            glFinish();
        };
    };
    orvex_bench::take_turns(state, {"bare GL", goal}, finished(engine), finished(bare));
}

void send(benchmark::State& state) {
    Stage stage;
    const ORVEX_Renderer_OpenGL_Func& gl = stage.renderer.gl;
    compare(
        state, 1.2,
        [&stage] {
            stage.polyline->set_vertex_position(0, 1.0f, 2.0f, 3.0f);
            stage.renderer.polyline_vb_prepare(&stage.data());
            stage.renderer.polyline_vb_finish(&stage.data());
        },
        [&stage, &gl] {
            gl.glBindBuffer(GL_ARRAY_BUFFER, stage.bare);
            gl.glBufferSubData(GL_ARRAY_BUFFER, 0, num_bytes, stage.data().vertices);
            gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
        });
    state.SetBytesProcessed(state.iterations() * static_cast<long>(num_bytes));
}
BENCHMARK(send)->UseManualTime()->Unit(benchmark::kMillisecond);

void draw(benchmark::State& state) {
    Stage stage;
    const ORVEX_Renderer_OpenGL_Func& gl = stage.renderer.gl;
    compare(
        state, 1.1,
        [&stage] {
            stage.renderer.polyline_vb_prepare(&stage.data());
            stage.renderer.polyline_vb_draw(&stage.data(), 0, -1);
            stage.renderer.polyline_vb_finish(&stage.data());
        },
        [&stage, &gl] {
            gl.glBindVertexArray(stage.data().vertex_array_id);
            glDrawArrays(GL_LINE_STRIP, 0, static_cast<GLsizei>(num_vertices));
            gl.glBindVertexArray(0);
        });
}
BENCHMARK(draw)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
