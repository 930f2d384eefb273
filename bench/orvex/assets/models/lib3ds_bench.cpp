// Loading 3DS files. The peer is lib3ds alone, which reads the file into its own records and makes
// nothing of them; the engine goes through lib3ds too, checks the file before, and builds the
// model. Both read from a file that the page cache holds.
//
// Refusing broken files is measured too, with the memory that it takes at its peak.

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include <benchmark/benchmark.h>
#include <lib3ds.h>

#include <malloc.h>

#include "bench/support/row.h"
#include "orvex/assets/materials/material_mgr.h"
#include "orvex/assets/models/3ds/loader_3d_lib3ds.h"
#include "orvex/geometry/mesh/model.h"

namespace {

using namespace orvex;
using orvex_bench::say_row;
using orvex_bench::Turns;

constexpr char models_folder[] = "/usr/share/glmark2/models/";

/// Where the memory of a load comes from: pages that the system hands out at first touch, as for a
/// program's first model, or pages that the program has had before.
enum Memory { FRESH, KEPT };

/// Between two loads, with the clock stopped.
void prepare(Memory memory) {
    mallopt(M_MMAP_THRESHOLD, 1 << 30);
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
    if (memory == FRESH)
        malloc_trim(0);
}

void load_with_engine(Turns& turns, const char* folder, const char* name) {
    Loader3D_Lib3ds loader;
    loader.set_model_dir(folder);
    auto* const model = new Model;
    turns.take([&] {
        if (!loader.load_from_file(model, name))
            std::abort();
    });
    model->kill(nullptr, nullptr);
    MaterialMgr::get()->release_all_resources(nullptr, nullptr);
}

void read_with_lib3ds(Turns& turns, const std::string& path) {
    Lib3dsFile* file = nullptr;
    turns.take([&] { file = lib3ds_file_open(path.c_str()); });
    if (!file)
        std::abort();
    lib3ds_file_free(file);
}

/// What is loaded is given back with the clock stopped.
void beside_lib3ds(benchmark::State& state, const char* name, double goal, Memory memory) {
    Turns ours, of_peer;
    for (auto _ : state) {
        prepare(memory);
        read_with_lib3ds(of_peer, std::string(models_folder) + name);
        prepare(memory);
        load_with_engine(ours, models_folder, name);
        state.SetIterationTime(ours.last());
    }
    say_row(state, {"lib3ds, which only reads", goal}, ours.median(), of_peer.median());
}
BENCHMARK_CAPTURE(beside_lib3ds, asteroid_fresh, "asteroid-high.3ds", 1.0, FRESH)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(beside_lib3ds, asteroid_kept, "asteroid-high.3ds", 0.43, KEPT)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(beside_lib3ds, cat_fresh, "cat.3ds", 1.0, FRESH)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

// --- Refusals --------------------------------------------------------------------------------

void append(std::string& bytes, std::uint32_t value, int count) {
    for (int i = 0; i < count; ++i)
        bytes += static_cast<char>(value >> (8 * i) & 0xFF);
}

/// A chunk's header.
std::string header(std::uint32_t id, std::size_t content_size) {
    std::string bytes;
    append(bytes, id, 2);
    append(bytes, static_cast<std::uint32_t>(content_size) + 6, 4);
    return bytes;
}

std::string chunk(std::uint32_t id, const std::string& content) {
    return header(id, content.size()) + content;
}

/// A mesh of as many vertices and faces as one can have, whose faces all name `index`.
std::string large_mesh(std::uint32_t index) {
    std::string points;
    append(points, 65535, 2);
    points.resize(points.size() + 65535 * 12);
    std::string faces;
    append(faces, 65535, 2);
    for (int i = 0; i < 65535 * 4; ++i)
        append(faces, index, 2);
    return chunk(0x4000, std::string("m\0", 2) +
                             chunk(0x4100, chunk(0x4110, points) + chunk(0x4120, faces)));
}

/// Removed at the end.
class ModelFile {
public:
    explicit ModelFile(const std::string& bytes) {
        char name[] = "/tmp/orvex_bench_XXXXXX";
        folder_ = mkdtemp(name);
        std::ofstream(path(), std::ios::binary) << bytes;
    }
    ~ModelFile() { std::filesystem::remove_all(folder_); }

    std::string path() const { return folder_ + "/model.3ds"; }

private:
    std::string folder_;
};

/// 100 MB in good order, but for a face index at its very end.
std::string broken_at_its_end() {
    std::string objects;
    for (int i = 0; i < 76; ++i)
        objects += large_mesh(0);
    objects += large_mesh(65535);
    return chunk(0x4D4D, chunk(0x3D3D, objects));
}

/// The most materials that a file may have, but a few.
std::string of_many_materials() {
    std::string chunks;
    for (int i = 0; i < 8000; ++i)
        chunks += chunk(0xAFFF, chunk(0xA000, "paint" + std::to_string(i) + std::string(1, 0)));
    return chunk(0x4D4D, chunk(0x3D3D, chunks));
}

void many_materials(benchmark::State& state) {
    constexpr double most_seconds = 0.1;
    const ModelFile file(of_many_materials());
    Turns ours;
    for (auto _ : state) {
        load_with_engine(ours, "", file.path().c_str());
        state.SetIterationTime(ours.last());
    }
    say_row(state, {"a bound", 1.0}, ours.median(), most_seconds);
}
BENCHMARK(many_materials)->UseManualTime()->Unit(benchmark::kMillisecond);

/// The most chunks that are looked at.
std::string of_too_many_chunks() {
    std::string chunks;
    for (int i = 0; i < 2000000; ++i)
        chunks += header(0x1234, 0);
    return chunk(0x4D4D, chunks);
}

/// The most material that lib3ds could make of few bytes.
std::string of_too_many_materials() {
    std::string chunks;
    for (int i = 0; i < 1000000; ++i)
        chunks += header(0xAFFF, 0);
    return chunk(0x4D4D, chunk(0x3D3D, chunks));
}

/// The peak of this process, as the kernel counts it.
double peak_megabytes() {
    std::ifstream status("/proc/self/status");
    std::string word;
    while (status >> word) {
        if (word == "VmHWM:") {
            double kilobytes = 0;
            status >> kilobytes;
            return kilobytes / 1024;
        }
    }
    return 0;
}

void refuse(benchmark::State& state, std::string (*content)()) {
    const ModelFile file(content());
    // From here on the peak is counted anew.
    std::ofstream("/proc/self/clear_refs") << 5;
    const double before = peak_megabytes();
    Loader3D_Lib3ds loader;
    Model model;
    for (auto _ : state)
        if (loader.load_from_file(&model, file.path().c_str()))
            state.SkipWithError("loaded");
    state.counters["peak_MB"] = peak_megabytes() - before;
}
BENCHMARK_CAPTURE(refuse, face_at_the_end_of_100_MB, broken_at_its_end)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(refuse, two_million_chunks, of_too_many_chunks)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(refuse, a_million_materials, of_too_many_materials)
    ->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
