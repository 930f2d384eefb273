// Binary STL and PLY of ten million triangles, from files that the page cache holds, against what
// can't be saved: reading the bytes, and filling the engine's own store. Where the rest of the time
// goes is told beside it.

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include <orvex/geometry/mesh/mesh.h>
#include <orvex/geometry/mesh/model.h>
#include <orvex/renderer/records/mesh_data.h>

#include "bench/support/row.h"
#include "bench/support/status_line.h"
#include "orvex_formats/ply/private/ply_reader.h"
#include "orvex_formats/private/build_model.h"
#include "orvex_formats/private/format_loader.h"
#include "orvex_formats/private/normals.h"
#include "orvex_formats/stl/private/stl_reader.h"

namespace {

using namespace orvex;
using namespace orvex::formats;

constexpr std::uint32_t width = 2237; ///< vertices in a row: 4,999,696 quads are in between
constexpr std::size_t num_vertices = std::size_t{width} * width;
constexpr std::size_t num_triangles = std::size_t{2} * (width - 1) * (width - 1);
/// What the engine's store takes: six vectors and a particle a vertex; places, a normal and the
/// number of a material a face.
constexpr std::size_t model_size = num_vertices * 7 * 16 + num_triangles * (12 + 16 + 4);

vec3 place_of(std::uint32_t vertex) {
    const auto x = static_cast<float>(vertex % width), y = static_cast<float>(vertex / width);
    return {x * 0.01f, std::sin(x * 0.05f) * std::cos(y * 0.07f), y * 0.01f};
}

template<class Use>
void for_each_triangle(Use use) {
    for (std::uint32_t y = 0; y + 1 < width; ++y)
        for (std::uint32_t x = 0; x + 1 < width; ++x) {
            const std::uint32_t a = y * width + x, b = a + width;
            use(Triangle{a, b, a + 1});
            use(Triangle{a + 1, b, b + 1});
        }
}

/// Both files, written when the first benchmark asks and removed at the end.
class Files {
public:
    Files() {
        char name[] = "/tmp/orvex_bench_XXXXXX";
        folder = std::string(mkdtemp(name)) + "/";
        write_stl();
        write_ply();
    }
    ~Files() { std::filesystem::remove_all(folder); }

    std::string folder;

private:
    void write_stl() const {
        std::FILE* const file = std::fopen((folder + "large.stl").c_str(), "wb");
        char head[80] = "";
        std::fwrite(head, 1, sizeof head, file);
        const auto count = static_cast<std::uint32_t>(num_triangles);
        std::fwrite(&count, sizeof count, 1, file);
        for_each_triangle([&](const Triangle& triangle) {
            unsigned char record[50] = {};
            for (std::size_t i = 0; i < 3; ++i) {
                const vec3 place = place_of(triangle[i]);
                std::memcpy(record + 12 + 12 * i, &place, 12);
            }
            std::fwrite(record, 1, sizeof record, file);
        });
        std::fclose(file);
    }

    void write_ply() const {
        std::FILE* const file = std::fopen((folder + "large.ply").c_str(), "wb");
        std::fprintf(file,
                     "ply\nformat binary_little_endian 1.0\nelement vertex %zu\nproperty float x\n"
                     "property float y\nproperty float z\nelement face %zu\n"
                     "property list uchar int vertex_indices\nend_header\n",
                     num_vertices, num_triangles);
        for (std::uint32_t i = 0; i < num_vertices; ++i) {
            const vec3 place = place_of(i);
            std::fwrite(&place, sizeof place, 1, file);
        }
        for_each_triangle([&](const Triangle& triangle) {
            std::fputc(3, file);
            std::fwrite(triangle.data(), sizeof triangle, 1, file);
        });
        std::fclose(file);
    }
};

const std::string& folder() {
    static const Files files;
    return files.folder;
}

// --- Memory

/// Forgets how much the process once had.
std::size_t begin_peak() {
    std::FILE* const file = std::fopen("/proc/self/clear_refs", "w");
    std::fputs("5", file);
    std::fclose(file);
    return status_line("VmRSS");
}

// --- Rows

void read_file(const std::string& path) {
    std::vector<unsigned char> piece(256u << 10);
    const InputFile file(path);
    for (std::uint64_t place = 0; place < file.size(); place += piece.size())
        file.read(
            place, piece.data(),
            static_cast<std::size_t>(std::min<std::uint64_t>(piece.size(), file.size() - place)));
    benchmark::DoNotOptimize(piece.data());
}

void read_bytes(benchmark::State& state, const char* name) {
    const std::string path = folder() + name;
    for (auto _ : state)
        read_file(path);
}

/// The engine's store of such a model, filled straight from arrays.
Model* fill_model() {
    static const std::vector<vec3> places(num_vertices, vec3(1.0f, 2.0f, 3.0f));
    static const std::vector<Triangle> triangles(num_triangles, Triangle{0, 1, 2});
    auto* const model = new Model;
    Mesh* const mesh = model->create_mesh();
    model->add_child(mesh);
    mesh->alloc_vertex_data(num_vertices);
    mesh->alloc_face_data(num_triangles, false);
    MeshData& store = *mesh->get_mesh_data();
    for (std::size_t i = 0; i < num_vertices; ++i)
        store.position.data[i] = vec4(places[i]);
    for (std::size_t i = 0; i < num_triangles; ++i)
        store.faces_u32[i] = {triangles[i][0], triangles[i][1], triangles[i][2]};
    return model;
}

void fill_store(benchmark::State& state) {
    for (auto _ : state) {
        Model* const model = fill_model();
        state.PauseTiming();
        model->kill(nullptr, nullptr);
        state.ResumeTiming();
    }
}

void read_draft(benchmark::State& state, const char* name, Draft (*reader)(const InputFile&)) {
    for (auto _ : state)
        benchmark::DoNotOptimize(reader(InputFile(folder() + name)));
}

void add_normals_to(benchmark::State& state, const char* name, Draft (*reader)(const InputFile&)) {
    for (auto _ : state) {
        state.PauseTiming();
        Draft draft = reader(InputFile(folder() + name));
        state.ResumeTiming();
        add_normals(draft.surfaces.at(0));
    }
}

void load_model(benchmark::State& state, const char* name, Draft (*reader)(const InputFile&)) {
    FormatLoader loader("bench", "bench", "", reader);
    loader.set_model_dir(folder().c_str());
    const std::string path = folder() + name;
    std::size_t peak = 0;
    orvex_bench::Turns ours, of_floor;
    fill_model()->kill(nullptr, nullptr);
    for (auto _ : state) {
        Model* model = nullptr;
        of_floor.take([&] {
            read_file(path);
            model = fill_model();
        });
        model->kill(nullptr, nullptr);
        const std::size_t before = begin_peak();
        model = new Model;
        state.SetIterationTime(ours.take([&] {
            if (!loader.load_from_file(model, name))
                state.SkipWithError("not read");
        }));
        peak = status_line("VmHWM") - before;
        model->kill(nullptr, nullptr);
    }
    orvex_bench::say_row(state, {"bytes read, store filled", 2.0}, ours.median(),
                         of_floor.median());
    state.counters["peak_of_model"] = static_cast<double>(peak) / static_cast<double>(model_size);
}

BENCHMARK_CAPTURE(read_bytes, stl, "large.stl")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(read_bytes, ply, "large.ply")->Unit(benchmark::kMillisecond);
BENCHMARK(fill_store)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK_CAPTURE(read_draft, stl, "large.stl", read_stl)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(read_draft, ply, "large.ply", read_ply)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(add_normals_to, ply, "large.ply", read_ply)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(2);
BENCHMARK_CAPTURE(load_model, stl, "large.stl", read_stl)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3);
BENCHMARK_CAPTURE(load_model, ply, "large.ply", read_ply)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3);

} // namespace
BENCHMARK_MAIN();
