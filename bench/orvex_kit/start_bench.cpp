/// @file
/// Whole processes, from their start to their end: the kit with a picture on the disk, of the
/// background alone or of the lighthouse, against bare EGL with a clear and its pixels in memory;
/// and of a box, against bare EGL with one lit triangle. Both take turns, so that a busy machine
/// slows them alike.
///
/// The processor's time of the fastest rounds counts, without that of the model's own load. On a
/// software driver the lighthouse has programs to compile, textures to make smaller and pixels to
/// fill, which the peer has not.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>
#include <string>

#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include "bench/support/row.h"

namespace {

/// Processor time of all processes that have ended.
double seconds_of_children() {
    rusage usage{};
    ::getrusage(RUSAGE_CHILDREN, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// What a command takes. @param told  receives the number that it prints, if it prints one
double seconds_of(const std::string& command, double& told) {
    const double begin = seconds_of_children();
    std::FILE* const output = popen(command.c_str(), "r");
    char line[64] = {};
    if (std::fgets(line, sizeof line, output))
        told = std::atof(line);
    const bool is_fine = pclose(output) == 0;
    return is_fine ? seconds_of_children() - begin : -1.0;
}

std::string scratch(const char* name) {
    return (std::filesystem::temp_directory_path() / name).string();
}

/// @param peer_words  what the peer is asked for
void start(benchmark::State& state, double goal, const std::string& model,
           const std::string& peer_words) {
    const std::string picture = scratch("orvex_start_bench.png");
    const std::string ours = "exec '" ORVEX_BENCH_START_KIT "' '" + picture + "' " + model;
    const std::string peer = "exec '" ORVEX_BENCH_START_EGL "' " + peer_words;
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
    orvex_bench::say_row(state, {"bare EGL", goal}, fastest, fastest_peer);
}
BENCHMARK_CAPTURE(start, background, 1.2, "", "")->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(start, lighthouse, 3.0, "'" ORVEX_BENCH_MODEL "'", "lit")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

void start_box(benchmark::State& state) {
    const std::string model = scratch("orvex_start_bench.obj");
    std::ofstream(model) << "v -1 -1 -1\nv 1 -1 -1\nv 1 1 -1\nv -1 1 -1\n"
                            "v -1 -1 1\nv 1 -1 1\nv 1 1 1\nv -1 1 1\n"
                            "f 4 3 2 1\nf 5 6 7 8\nf 1 2 6 5\nf 2 3 7 6\nf 3 4 8 7\nf 4 1 5 8\n";
    start(state, 1.1, "'" + model + "'", "lit");
    std::filesystem::remove(model);
}
BENCHMARK(start_box)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
