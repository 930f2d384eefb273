/// @file
/// The price of a frame's text.
///
/// Goal, as `ratio` in the output: filling the buffer for 10,000 glyphs at most twice a plain loop
/// that writes the same bytes, position, colour and first texture coordinates of every vertex, to
/// memory of the same layout. Engine and plain loop take turns, so that what else the machine does
/// falls on both. `queue` is what the texts cost before, with the copy of every string.
///
/// font_bench --benchmark_min_time=5

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include <benchmark/benchmark.h>

#include "bench/support/row.h"
#include "orvex/assets/textures/texture.h"
#include "orvex/overlays/font.h"
#include "orvex/overlays/private/bm_quads.h"
#include "orvex/overlays/private/font_state.h"
#include "orvex/renderer/opengl/private/renderer_opengl.h"
#include "orvex/renderer/records/vertex.h"

namespace {

using namespace orvex;

constexpr int num_lines = 100;
constexpr int glyphs_per_line = 100;
constexpr unsigned long num_vertices = vertices_per_glyph * num_lines * glyphs_per_line;

/// Glyphs of several sizes for the printable characters.
std::string charset() {
    std::string text = "<font><common scaleW='256' scaleH='128'/><chars>";
    for (int id = 32; id < 127; ++id) {
        char line[160];
        std::snprintf(line, sizeof(line),
                      "<char id='%d' x='%d' y='%d' width='%d' height='%d' xoffset='%d' yoffset='%d'"
                      " xadvance='%d'/>",
                      id, id * 2, id % 16 * 8, id % 13, id % 19, id % 3, id % 7, id % 13 + 2);
        text += line;
    }
    return text + "</chars></font>";
}

/// A font with its buffer, which no graphics API knows of.
class Stage {
public:
    Stage() {
        for (int i = 0; i < glyphs_per_line; ++i)
            line += static_cast<char>(32 + i * 7 % 95);
        sheet->add_ref();
        Font::State::of(*font).bm_texture.set(sheet);
        if (!font->bm_load_charset_from_memory(charset().c_str())) {
            std::fprintf(stderr, "the charset can't be read\n");
            std::exit(1);
        }
        queue();
        update();
    }
    ~Stage() { font->kill(nullptr, nullptr); }

    void queue() {
        font->bm_draw_reset();
        for (int i = 0; i < num_lines; ++i)
            font->bm_draw_text_2d(0, 29 * i, 1.0f, 0.5f, 0.0f, 1.0f, line.c_str());
    }

    void update() {
        if (!font->bm_update_vb(&renderer, false)) {
            std::fprintf(stderr, "the buffer can't be filled\n");
            std::exit(1);
        }
    }

private:
    RendererOpenGL renderer;
    Font* font = new Font;
    Texture* sheet = new Texture;
    std::string line;
};

void fill_plainly(Vertex* vertices, const vec4& color) {
    float x = 0.0f;
    for (unsigned long i = 0; i < num_vertices; ++i) {
        vertices[i].position.set(x, 2.0f, 0.0f, 1.0f);
        vertices[i].color = color;
        vertices[i].uv0.set(x, 0.5f, 0.0f, 1.0f);
        x += 1.0f;
    }
}

void fill(benchmark::State& state) {
    Stage stage;
    const auto plain = std::make_unique<Vertex[]>(num_vertices);
    const vec4 color(1.0f, 0.5f, 0.0f, 1.0f);
    orvex_bench::take_turns(
        state, {"a plain loop", 2.0}, [&] { stage.update(); },
        [&] { fill_plainly(plain.get(), color); }, num_lines * glyphs_per_line);
}

void queue(benchmark::State& state) {
    Stage stage;
    for (auto step : state) {
        stage.queue();
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * num_lines * glyphs_per_line);
}

BENCHMARK(fill)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(queue)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
