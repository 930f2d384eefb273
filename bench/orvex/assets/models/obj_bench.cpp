// Loading OBJ text. The peer reads the same file into its own arrays and, like the engine, shares
// no vertices between corners. Both read from a file that the page cache holds.

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include <benchmark/benchmark.h>

#include "bench/support/row.h"
#include "orvex/assets/materials/material_mgr.h"
#include "orvex/assets/models/obj/loader_3d_obj.h"
#include "orvex/assets/models/obj/private/obj_reader.h"
#include "orvex/geometry/mesh/model.h"

#ifdef ORVEX_BENCH_TINYOBJLOADER
#include <tiny_obj_loader.h>
#endif

namespace {

using namespace orvex;
using orvex_bench::say_row;
using orvex_bench::Turns;

/// A folder of models, written when the first benchmark asks and removed at the end.
class Models {
public:
    Models() {
        char name[] = "/tmp/orvex_bench_XXXXXX";
        folder_ = std::string(mkdtemp(name)) + "/";
        write_quads(folder_ + "quads.obj");
        write_triangles(folder_ + "triangles.obj");
    }
    ~Models() { std::filesystem::remove_all(folder_); }

    std::string folder() const { return folder_; }

private:
    static constexpr int grid = 317; ///< 316 by 316 quads are just short of 200,000 triangles

    static void write_point(std::FILE* file, int x, int y) {
        const double height = std::sin(x * 0.05) * std::cos(y * 0.07);
        std::fprintf(file, "v %.6f %.6f %.6f\n", x * 0.01, height, y * 0.01);
    }

    void write_library() const {
        std::ofstream library(folder_ + "quads.mtl");
        for (int i = 0; i < 8; ++i)
            library << "newmtl paint" << i << "\nKd 0." << i << " 0.5 0.5\n";
    }

    /// 200,000 triangles as quads of "a/b/c", in 8 groups and 8 materials.
    void write_quads(const std::string& path) const {
        write_library();
        std::FILE* file = std::fopen(path.c_str(), "w");
        std::fprintf(file, "mtllib quads.mtl\n");
        for (int y = 0; y < grid; ++y)
            for (int x = 0; x < grid; ++x)
                write_point(file, x, y);
        for (int y = 0; y < grid; ++y)
            for (int x = 0; x < grid; ++x)
                std::fprintf(file, "vt %.5f %.5f\n", x / 316.0, y / 316.0);
        for (int i = 0; i < 1000; ++i)
            std::fprintf(file, "vn %.5f %.5f %.5f\n", std::sin(i * 0.01), std::cos(i * 0.01), 0.25);
        int quad = 0;
        for (int y = 0; y + 1 < grid; ++y) {
            for (int x = 0; x + 1 < grid; ++x, ++quad) {
                if (quad % 12500 == 0)
                    std::fprintf(file, "g part%d\nusemtl paint%d\n", quad / 12500, quad / 12500);
                const int a = y * grid + x + 1;
                const int corners[4] = {a, a + 1, a + grid + 1, a + grid};
                std::fprintf(file, "f");
                for (const int corner : corners)
                    std::fprintf(file, " %d/%d/%d", corner, corner, corner % 1000 + 1);
                std::fprintf(file, "\n");
            }
        }
        std::fclose(file);
    }

    /// 1,000,000 triangles as "a//c".
    static void write_triangles(const std::string& path) {
        constexpr int width = 708;
        std::FILE* file = std::fopen(path.c_str(), "w");
        for (int y = 0; y < width; ++y)
            for (int x = 0; x < width; ++x)
                write_point(file, x, y);
        for (int i = 0; i < width * width; ++i)
            std::fprintf(file, "vn %.4f %.4f %.4f\n", std::sin(i * 0.01), std::cos(i * 0.01), 0.25);
        for (int y = 0; y + 1 < width; ++y) {
            for (int x = 0; x + 1 < width; ++x) {
                const int a = y * width + x + 1;
                const int b = a + width;
                std::fprintf(file, "f %d//%d %d//%d %d//%d\n", a, a, a + 1, a + 1, b, b);
                std::fprintf(file, "f %d//%d %d//%d %d//%d\n", a + 1, a + 1, b + 1, b + 1, b, b);
            }
        }
        std::fclose(file);
    }

    std::string folder_;
};

const Models& models() {
    static const Models files;
    return files;
}

void count_bytes(benchmark::State& state, const std::string& path) {
    state.SetBytesProcessed(state.iterations() *
                            static_cast<std::int64_t>(std::filesystem::file_size(path)));
}

/// A model from a file; what it took is given back at its end, with the clock stopped.
class LoadedModel {
public:
    LoadedModel() = default;
    LoadedModel(const LoadedModel&) = delete;
    LoadedModel& operator=(const LoadedModel&) = delete;
    ~LoadedModel() {
        model->kill(nullptr, nullptr);
        MaterialMgr::get()->release_all_resources(nullptr, nullptr);
    }

    void load(Loader3D_OBJ& loader, const char* name) {
        if (!loader.load_from_file(model, name))
            std::abort();
    }

private:
    Model* const model = new Model;
};

/// The reading alone, without the meshes.
void read_with_engine(benchmark::State& state, const char* name) {
    const std::string folder = models().folder();
    for (auto _ : state)
        benchmark::DoNotOptimize(read_obj_file((folder + name).c_str(), folder));
    count_bytes(state, folder + name);
}
BENCHMARK_CAPTURE(read_with_engine, quads, "quads.obj")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(read_with_engine, triangles, "triangles.obj")->Unit(benchmark::kMillisecond);

#ifdef ORVEX_BENCH_TINYOBJLOADER
struct PeerModel {
    tinyobj::attrib_t attributes;
    std::vector<tinyobj::shape_t> shapes;
    std::vector<tinyobj::material_t> materials;

    void load(const std::string& folder, const char* name) {
        std::string warning;
        std::string error;
        if (!tinyobj::LoadObj(&attributes, &shapes, &materials, &warning, &error,
                              (folder + name).c_str(), folder.c_str()))
            std::abort();
        benchmark::DoNotOptimize(attributes.vertices.data());
    }
};

void beside_tinyobjloader(benchmark::State& state, const char* name) {
    const std::string folder = models().folder();
    Loader3D_OBJ loader;
    loader.set_model_dir(folder.c_str());
    Turns ours, of_peer;
    for (auto _ : state) {
        {
            PeerModel model;
            of_peer.take([&] { model.load(folder, name); });
        }
        LoadedModel model;
        state.SetIterationTime(ours.take([&] { model.load(loader, name); }));
    }
    say_row(state, {"tinyobjloader", 0.6}, ours.median(), of_peer.median());
}
BENCHMARK_CAPTURE(beside_tinyobjloader, quads, "quads.obj")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(beside_tinyobjloader, triangles, "triangles.obj")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
#endif

// --- Many of one kind --------------------------------------------------------------------------

/// A triangle for each of `count` materials, groups or objects.
void write_many(const std::string& path, const char* begin, int count) {
    std::ofstream file(path);
    std::ofstream library(path + ".mtl");
    file << "mtllib " << std::filesystem::path(path).filename().string() << ".mtl\n"
         << "v 0 0 0\nv 1 0 0\nv 0 1 0\n";
    for (int i = 0; i < count; ++i) {
        library << "newmtl usemtl" << i << "\nKd 0.5 0.5 0.5\n";
        file << begin << ' ' << begin << i << "\nf 1 2 3\n";
    }
}

/// What grows with the square takes half a minute.
void many(benchmark::State& state, const char* begin) {
    constexpr double most_seconds = 0.3;
    const std::string folder = models().folder();
    write_many(folder + "many.obj", begin, 40000);
    Loader3D_OBJ loader;
    loader.set_model_dir(folder.c_str());
    Turns ours;
    for (auto _ : state) {
        LoadedModel model;
        state.SetIterationTime(ours.take([&] { model.load(loader, "many.obj"); }));
    }
    say_row(state, {"a bound", 1.0}, ours.median(), most_seconds);
}
BENCHMARK_CAPTURE(many, materials, "usemtl")->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(many, groups, "g")->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(many, objects, "o")->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
