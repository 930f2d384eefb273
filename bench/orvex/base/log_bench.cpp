/// @file
/// The price of a log line. Goals: at least as many formatted lines a second, each flushed to the
/// system, as a packaged logger with a plain file sink reaches; tens of nanoseconds for a line
/// below the threshold.

#include <cstdio>
#include <cstdlib>
#include <string>

#include <benchmark/benchmark.h>
#include <unistd.h>

#include "orvex/base/log_mgr.h"

#ifdef ORVEX_BENCH_SPDLOG
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/spdlog.h>
#endif

namespace {

constexpr int lines = 100000;

/// A file of its own, removed at the end.
class TempFile {
public:
    TempFile() {
        const int file = mkstemp(name);
        if (file < 0)
            std::abort();
        close(file);
    }
    TempFile(const TempFile&) = delete;
    TempFile& operator=(const TempFile&) = delete;
    ~TempFile() { std::remove(name); }

    const char* path() const { return name; }

private:
    char name[32] = "/tmp/orvex_log_bench_XXXXXX";
};

void formatted_lines_flushed(benchmark::State& state) {
    const TempFile file;
    orvex::LogMgr* const mgr = orvex::LogMgr::get();
    mgr->start(file.path(), true);
    for (auto _ : state)
        for (int i = 0; i < lines; ++i)
            mgr->tracef("mesh %d: %d vertices, %s, %.3f s", i, 34835, "horse.obj", 0.125);
    mgr->stop();
    state.SetItemsProcessed(state.iterations() * lines);
}

void debug_line_below_the_threshold(benchmark::State& state) {
    orvex::LogMgr* const mgr = orvex::LogMgr::get();
    mgr->start("", true);
    int i = 0;
    for (auto _ : state)
        mgr->tracef_debug("mesh %d: %d vertices, %s, %.3f s", ++i, 34835, "horse.obj", 0.125);
    mgr->stop();
}

#ifdef ORVEX_BENCH_SPDLOG
void formatted_lines_flushed_spdlog(benchmark::State& state) {
    const TempFile file;
    const auto log = spdlog::basic_logger_mt("bench", file.path(), true);
    log->flush_on(spdlog::level::info);
    for (auto _ : state)
        for (int i = 0; i < lines; ++i)
            log->info("mesh {}: {} vertices, {}, {:.3f} s", i, 34835, "horse.obj", 0.125);
    spdlog::drop_all();
    state.SetItemsProcessed(state.iterations() * lines);
}
#endif

} // namespace

BENCHMARK(formatted_lines_flushed)->Unit(benchmark::kMillisecond);
#ifdef ORVEX_BENCH_SPDLOG
BENCHMARK(formatted_lines_flushed_spdlog)->Unit(benchmark::kMillisecond);
#endif
BENCHMARK(debug_line_below_the_threshold);

BENCHMARK_MAIN();
