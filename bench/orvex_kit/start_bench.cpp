/// @file
/// Whole processes, from their start to their end: the kit with a picture on the disk, of the
/// background alone or of the lighthouse, against bare EGL with a clear and its pixels in memory.
/// Both take turns, so that a busy machine slows them alike.
///
/// Goal, as `ratio` in the output, of the fastest rounds: at most 1.2, without the model's own
/// load. On a software driver the lighthouse has programs to compile and pixels to fill, which the
/// peer has not.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <string>

#include <benchmark/benchmark.h>

namespace {

/// How long a command takes. @param told  receives the number that it prints, if it prints one
double seconds_of(const std::string& command, double& told) {
    const auto begin = std::chrono::steady_clock::now();
    std::FILE* const output = popen(command.c_str(), "r");
    char line[64] = {};
    if (std::fgets(line, sizeof line, output))
        told = std::atof(line);
    const bool is_fine = pclose(output) == 0;
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
    return is_fine ? taken.count() : -1.0;
}

void start(benchmark::State& state, const std::string& model) {
    const std::string picture =
        (std::filesystem::temp_directory_path() / "orvex_start_bench.png").string();
    const std::string ours = "exec '" ORVEX_BENCH_START_KIT "' '" + picture + "' " + model;
    const std::string peer = "exec '" ORVEX_BENCH_START_EGL "'";
    double fastest = std::numeric_limits<double>::max(), fastest_peer = fastest, ignored = 0.0;
    for (auto _ : state) {
        double load = 0.0;
        const double taken = seconds_of(ours, load);
        const double taken_by_peer = seconds_of(peer, ignored);
        if (taken < 0.0 || taken_by_peer < 0.0)
            return state.SkipWithError("a process failed");
        fastest = std::min(fastest, taken - load);
        fastest_peer = std::min(fastest_peer, taken_by_peer);
        state.SetIterationTime(taken);
    }
    std::filesystem::remove(picture);
    state.counters["ratio"] = fastest / fastest_peer;
    state.counters["peer_ms"] = fastest_peer * 1000.0;
}
BENCHMARK_CAPTURE(start, background, "")->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(start, lighthouse, "'" ORVEX_BENCH_MODEL "'")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
