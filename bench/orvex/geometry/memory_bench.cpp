// What the vertices of a mesh cost in memory, by format and layout, and a triangle of an OBJ model
// by the engine's own loader. The counters are bytes that the process has more than before; the
// time is that of the allocation or of the load, with its page faults. Each row is a process of its
// own, since memory that was given back once is given out again for less.
//
// The goals are the bytes that are written and hardly any more: of a model three corners and a face
// a triangle, and of separate arrays positions and normals where nobody writes the others.

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>

#include <benchmark/benchmark.h>
#include <sys/wait.h>
#include <unistd.h>

#include "bench/support/owned.h"
#include "bench/support/row.h"
#include "bench/support/status_line.h"
#include "orvex/assets/models/obj/loader_3d_obj.h"
#include "orvex/geometry/mesh/mesh.h"
#include "orvex/geometry/mesh/model.h"
#include "orvex/renderer/records/mesh_data.h"

namespace {

using namespace orvex;
using orvex_bench::processor_seconds;
using orvex_bench::say_bytes_row;

double resident() {
    return static_cast<double>(status_line("VmRSS"));
}

struct Figures {
    double seconds = 0.0;
    double first = 0.0;
    double second = 0.0;
    double third = 0.0;
};

/// Runs `work`, which gives figures, in a process of its own.
template<class Work>
Figures in_child(Work work) {
    int ends[2];
    if (::pipe(ends) != 0)
        std::abort();
    const pid_t child = ::fork();
    if (child == 0) {
        const Figures figures = work();
        _exit(::write(ends[1], &figures, sizeof figures) == sizeof figures ? 0 : 1);
    }
    Figures figures;
    if (::read(ends[0], &figures, sizeof figures) != sizeof figures)
        std::abort();
    ::waitpid(child, nullptr, 0);
    ::close(ends[0]);
    ::close(ends[1]);
    return figures;
}

// --- Vertices

constexpr unsigned long num_vertices = 3'000'000;

void write_everything(MeshData& store) {
    const vec4 value(1.0f, 2.0f, 3.0f, 4.0f);
    for (unsigned long i = 0; i < num_vertices; ++i) {
        store.set_color(i, value);
        store.set_uv0(i, value);
        store.set_uv1(i, value);
        store.set_tangent(i, value);
        store.vertex_particles[i] = value;
    }
}

Figures measure_vertices(VERTEX_FORMAT format, bool separate) {
    const Owned<Mesh> mesh(new Mesh(format));
    mesh->set_vertex_alloc_params(separate, 0);
    MeshData& store = *mesh->get_mesh_data();
    const double before = resident();
    const double begin = processor_seconds();
    mesh->alloc_vertex_data(num_vertices);
    Figures figures;
    figures.seconds = processor_seconds() - begin;
    figures.first = (resident() - before) / num_vertices;
    for (unsigned long i = 0; i < num_vertices; ++i) {
        store.set_position(i, vec3(1.0f, 2.0f, 3.0f));
        store.set_normal(i, vec3(0.0f, 1.0f, 0.0f));
    }
    figures.second = (resident() - before) / num_vertices;
    write_everything(store);
    figures.third = (resident() - before) / num_vertices;
    return figures;
}

/// What a vector takes, and the particle of a vertex.
constexpr double vector_size = 16;

/// @param num_vectors  of a vertex, its particle among them
void vertices(benchmark::State& state, VERTEX_FORMAT format, bool separate, double num_vectors) {
    Figures figures;
    for (auto _ : state) {
        figures = in_child([=] { return measure_vertices(format, separate); });
        state.SetIterationTime(figures.seconds);
    }
    state.counters["allocated"] = figures.first;
    state.counters["with_normals"] = figures.second;
    state.counters["all_written"] = figures.third;
    say_bytes_row(state, {"what is written", 1.01}, figures.third, num_vectors * vector_size);
}

#define ORVEX_VERTICES(name, format, num_vectors)                                                  \
    BENCHMARK_CAPTURE(vertices, name##_separate, format, true, num_vectors)                        \
        ->Unit(benchmark::kMillisecond)                                                            \
        ->UseManualTime();                                                                         \
    BENCHMARK_CAPTURE(vertices, name##_interleaved, format, false, num_vectors)                    \
        ->Unit(benchmark::kMillisecond)                                                            \
        ->UseManualTime()
ORVEX_VERTICES(format_96, VERTEX_FORMAT_96, 7);
ORVEX_VERTICES(format_64, VERTEX_FORMAT_64, 5);
ORVEX_VERTICES(format_32, VERTEX_FORMAT_32, 3);
ORVEX_VERTICES(format_physx_cloth, VERTEX_FORMAT_PHYSX_CLOTH, 5);

void positions_and_normals(benchmark::State& state) {
    Figures figures;
    for (auto _ : state) {
        figures = in_child([] { return measure_vertices(VERTEX_FORMAT_96, true); });
        state.SetIterationTime(figures.seconds);
    }
    say_bytes_row(state, {"what is written", 1.01}, figures.second, 2 * vector_size);
}
BENCHMARK(positions_and_normals)->Unit(benchmark::kMillisecond)->UseManualTime();

// --- A model

/// A sheet of a million triangles, with texture coordinates or without, removed at the end.
class Sheet {
public:
    Sheet() {
        char name[] = "/tmp/orvex_bench_XXXXXX";
        folder = std::string(mkdtemp(name)) + "/";
        write("plain.obj", false);
        write("textured.obj", true);
    }
    ~Sheet() { std::filesystem::remove_all(folder); }
    Sheet(const Sheet&) = delete;
    Sheet& operator=(const Sheet&) = delete;

    static constexpr int side = 708; ///< vertices along a side
    static constexpr double num_triangles = 2.0 * (side - 1) * (side - 1);

    std::string folder;

private:
    void write(const char* name, bool has_texcoords) const {
        std::FILE* const file = std::fopen((folder + name).c_str(), "w");
        for (int i = 0; i < side * side; ++i) {
            const double x = i % side * 0.01, y = i / side * 0.01;
            std::fprintf(file, "v %.6f %.6f %.6f\n", x, std::sin(x) * std::cos(y), y);
            if (has_texcoords)
                std::fprintf(file, "vt %.6f %.6f\n", x / 7.07, y / 7.07);
        }
        for (int y = 0; y + 1 < side; ++y)
            for (int x = 0; x + 1 < side; ++x) {
                const int a = y * side + x + 1, b = a + 1, c = a + side, d = c + 1;
                if (has_texcoords)
                    std::fprintf(file, "f %d/%d %d/%d %d/%d\nf %d/%d %d/%d %d/%d\n", a, a, c, c, b,
                                 b, b, b, c, c, d, d);
                else
                    std::fprintf(file, "f %d %d %d\nf %d %d %d\n", a, c, b, b, c, d);
            }
        std::fclose(file);
    }
};

Figures measure_model(const char* name, const std::string& folder) {
    Loader3D_OBJ loader;
    loader.set_model_dir(folder.c_str());
    const Owned<Model> model(new Model);
    const double before = resident();
    const double begin = processor_seconds();
    if (!loader.load_from_file(model.get(), name))
        std::abort();
    Figures figures;
    figures.seconds = processor_seconds() - begin;
    figures.first = (resident() - before) / Sheet::num_triangles;
    figures.second = (static_cast<double>(status_line("VmHWM")) - before) / Sheet::num_triangles;
    return figures;
}

/// @param num_vectors  of a vertex, of which each corner has its own
void model(benchmark::State& state, const char* name, double num_vectors) {
    constexpr double face_size = 12 + 16 + 4;
    static const Sheet sheet;
    Figures figures;
    for (auto _ : state) {
        figures = in_child([&] { return measure_model(name, sheet.folder); });
        state.SetIterationTime(figures.seconds);
    }
    state.counters["a_triangle"] = figures.first;
    state.counters["at_most"] = figures.second;
    say_bytes_row(state, {"what is written", 1.1}, figures.first,
                  3 * num_vectors * vector_size + face_size);
}
BENCHMARK_CAPTURE(model, plain, "plain.obj", 2)->Unit(benchmark::kMillisecond)->UseManualTime();
BENCHMARK_CAPTURE(model, textured, "textured.obj", 3)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime();

} // namespace

BENCHMARK_MAIN();
