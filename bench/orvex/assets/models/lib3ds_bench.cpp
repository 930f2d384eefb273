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

#include "orvex/assets/materials/material_mgr.h"
#include "orvex/assets/models/3ds/loader_3d_lib3ds.h"
#include "orvex/geometry/mesh/model.h"

namespace {

using namespace orvex;

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

void load_with_engine(benchmark::State& state, const char* name, Memory memory) {
    Loader3D_Lib3ds loader;
    loader.set_model_dir(models_folder);
    for (auto _ : state) {
        state.PauseTiming();
        prepare(memory);
        auto* const model = new Model;
        state.ResumeTiming();
        if (!loader.load_from_file(model, name))
            state.SkipWithError("not loaded");
        state.PauseTiming();
        model->kill(nullptr, nullptr);
        MaterialMgr::get()->release_all_resources(nullptr, nullptr);
        state.ResumeTiming();
    }
}

void read_with_lib3ds(benchmark::State& state, const char* name, Memory memory) {
    const std::string path = std::string(models_folder) + name;
    for (auto _ : state) {
        state.PauseTiming();
        prepare(memory);
        state.ResumeTiming();
        Lib3dsFile* const file = lib3ds_file_open(path.c_str());
        if (!file)
            state.SkipWithError("not read");
        state.PauseTiming();
        lib3ds_file_free(file);
        state.ResumeTiming();
    }
}

BENCHMARK_CAPTURE(load_with_engine, asteroid_fresh, "asteroid-high.3ds", FRESH)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(read_with_lib3ds, asteroid_fresh, "asteroid-high.3ds", FRESH)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(load_with_engine, asteroid_kept, "asteroid-high.3ds", KEPT)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(read_with_lib3ds, asteroid_kept, "asteroid-high.3ds", KEPT)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(load_with_engine, cat_fresh, "cat.3ds", FRESH)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(read_with_lib3ds, cat_fresh, "cat.3ds", FRESH)->Unit(benchmark::kMillisecond);

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
class BrokenFile {
public:
    explicit BrokenFile(const std::string& bytes) {
        char name[] = "/tmp/orvex_bench_XXXXXX";
        folder_ = mkdtemp(name);
        std::ofstream(path(), std::ios::binary) << bytes;
    }
    ~BrokenFile() { std::filesystem::remove_all(folder_); }

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
    const BrokenFile file(content());
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
