/// @file
/// The price of a log line. Goals: 1.3 times as many formatted lines a second, each flushed to the
/// system, as a packaged logger with a plain file sink reaches; tens of nanoseconds for a line
/// below the threshold.

#include <cstdio>
#include <cstdlib>
#include <string>

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include "bench/support/row.h"
#include "orvex/base/log_mgr.h"

#ifdef ORVEX_BENCH_SPDLOG
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/spdlog.h>
#endif

namespace {

using orvex_bench::take_turns;

constexpr int lines = 20000;

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

#ifdef ORVEX_BENCH_SPDLOG
void formatted_lines_flushed(benchmark::State& state) {
    const TempFile file, file_of_peer;
    orvex::LogMgr* const mgr = orvex::LogMgr::get();
    mgr->start(file.path(), true);
    const auto peer = spdlog::basic_logger_mt("bench", file_of_peer.path(), true);
    peer->flush_on(spdlog::level::info);
    take_turns(
        state, {"spdlog", 1.0 / 1.3},
        [&] {
            for (int i = 0; i < lines; ++i)
                mgr->tracef("mesh %d: %d vertices, %s, %.3f s", i, 34835, "horse.obj", 0.125);
        },
        [&] {
            for (int i = 0; i < lines; ++i)
                peer->info("mesh {}: {} vertices, {}, {:.3f} s", i, 34835, "horse.obj", 0.125);
        },
        lines);
    spdlog::drop_all();
    mgr->stop();
}
BENCHMARK(formatted_lines_flushed)->UseManualTime()->Unit(benchmark::kMillisecond);
#endif

/// What no log that flushes each line can go below: one call of the system a line.
void lines_against_bare_writes(benchmark::State& state) {
    const TempFile file, file_of_peer;
    orvex::LogMgr* const mgr = orvex::LogMgr::get();
    mgr->start(file.path(), true);
    const int descriptor = ::open(file_of_peer.path(), O_WRONLY);
    const std::string line(77, 'x');
    take_turns(
        state, {"bare writes", 1.5},
        [&] {
            for (int i = 0; i < lines; ++i)
                mgr->tracef("mesh %d: %d vertices, %s, %.3f s", i, 34835, "horse.obj", 0.125);
        },
        [&] {
            for (int i = 0; i < lines; ++i)
                benchmark::DoNotOptimize(::write(descriptor, line.data(), line.size()));
        },
        lines);
    close(descriptor);
    mgr->stop();
}
BENCHMARK(lines_against_bare_writes)->UseManualTime()->Unit(benchmark::kMillisecond);

void debug_line_below_the_threshold(benchmark::State& state) {
    orvex::LogMgr* const mgr = orvex::LogMgr::get();
    mgr->start("", true);
    int i = 0;
    for (auto _ : state)
        mgr->tracef_debug("mesh %d: %d vertices, %s, %.3f s", ++i, 34835, "horse.obj", 0.125);
    mgr->stop();
}

BENCHMARK(debug_line_below_the_threshold);

} // namespace

BENCHMARK_MAIN();
