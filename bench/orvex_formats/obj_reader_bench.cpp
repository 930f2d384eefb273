// Reading OBJ text to plain arrays. The peer reads the same file, which the page cache holds, into
// its own arrays: lists of entries, and three numbers a corner; nothing of it is a vertex that
// could be drawn yet, so that it does less.

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include <benchmark/benchmark.h>

#include "bench/support/row.h"
#include "orvex_formats/obj/private/obj_reader.h"

#ifdef ORVEX_BENCH_TINYOBJLOADER
#include <tiny_obj_loader.h>
#endif

namespace {

using namespace orvex::formats;

/// A sheet of a million triangles with all that corners can name, removed at the end.
class Sheet {
public:
    Sheet() {
        char name[] = "/tmp/orvex_bench_XXXXXX";
        folder = mkdtemp(name);
        std::FILE* const file = std::fopen(path().c_str(), "w");
        write_entries(file);
        write_faces(file);
        std::fclose(file);
    }
    ~Sheet() { std::filesystem::remove_all(folder); }

    std::string path() const { return folder + "/sheet.obj"; }

private:
    static constexpr int side = 708; ///< vertices along a side

    static void write_entries(std::FILE* file) {
        for (int i = 0; i < side * side; ++i) {
            const double x = i % side * 0.01, y = i / side * 0.01;
            std::fprintf(file, "v %.6f %.6f %.6f\nvt %.6f %.6f\n", x, std::sin(x) * std::cos(y), y,
                         x / 7.07, y / 7.07);
            std::fprintf(file, "vn %.4f %.4f %.4f\n", std::sin(x), 0.0, std::cos(x));
        }
    }

    static void write_faces(std::FILE* file) {
        for (int y = 0; y + 1 < side; ++y)
            for (int x = 0; x + 1 < side; ++x) {
                const int a = y * side + x + 1, b = a + 1, c = a + side, d = c + 1;
                std::fprintf(file, "f %d/%d/%d %d/%d/%d %d/%d/%d\n", a, a, a, c, c, c, b, b, b);
                std::fprintf(file, "f %d/%d/%d %d/%d/%d %d/%d/%d\n", b, b, b, c, c, c, d, d, d);
            }
    }

    std::string folder;
};

const Sheet& sheet() {
    static const Sheet one;
    return one;
}

void read_sheet(benchmark::State& state) {
    ObjCutting cutting;
    cutting.num_workers = static_cast<unsigned int>(state.range(0));
    const std::string path = sheet().path();
    for (auto _ : state)
        benchmark::DoNotOptimize(read_obj(InputFile(path), cutting));
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                            static_cast<std::int64_t>(std::filesystem::file_size(path)));
}
BENCHMARK(read_sheet)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime();

#ifdef ORVEX_BENCH_TINYOBJLOADER
/// By one thread, as the peer.
void beside_tinyobjloader(benchmark::State& state) {
    ObjCutting cutting;
    cutting.num_workers = 1;
    const std::string path = sheet().path();
    orvex_bench::take_turns(
        state, {"tinyobjloader", 0.5},
        [&] { benchmark::DoNotOptimize(read_obj(InputFile(path), cutting)); },
        [&] {
            tinyobj::ObjReader reader;
            reader.ParseFromFile(path);
            benchmark::DoNotOptimize(reader.GetShapes().size());
        });
}
BENCHMARK(beside_tinyobjloader)->UseManualTime()->Unit(benchmark::kMillisecond);
#endif

} // namespace

BENCHMARK_MAIN();
