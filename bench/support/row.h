#pragma once

/// @file
/// How a benchmark says a row of the table that `scripts/bench.sh` makes: what the work costs us,
/// what it costs a peer or a floor, and how many times the peer's cost it may be at most. The row
/// goes out as counters of Google Benchmark, and the peer's name as its label.

#include <algorithm>
#include <cstddef>
#include <ctime>
#include <vector>

#include <benchmark/benchmark.h>

namespace orvex_bench {

/// What a row is held against.
struct Against {
    const char* peer; ///< lives as long as the program
    double goal;      ///< the most that ours may cost, as a multiple of the peer's cost
};

/// Processor time of all threads of this process.
inline double processor_seconds() {
    timespec now{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

/// Says a row of times, in seconds for the same work.
inline void say_row(benchmark::State& state, const Against& against, double ours, double peer) {
    state.SetLabel(against.peer);
    state.counters["ours_seconds"] = ours;
    state.counters["peer_seconds"] = peer;
    state.counters["ratio"] = ours / peer;
    state.counters["goal"] = against.goal;
}

/// Says a row of bytes.
inline void say_bytes_row(benchmark::State& state, const Against& against, double ours,
                          double peer) {
    state.SetLabel(against.peer);
    state.counters["ours_bytes"] = ours;
    state.counters["peer_bytes"] = peer;
    state.counters["ratio"] = ours / peer;
    state.counters["goal"] = against.goal;
}

/// The processor time of one way to do the work, turn by turn.
class Turns {
public:
    template<class Work>
    double take(Work work) {
        const double begin = processor_seconds();
        work();
        benchmark::ClobberMemory();
        turns.push_back(processor_seconds() - begin);
        return turns.back();
    }

    double last() const { return turns.back(); }

    double median() {
        const auto middle = turns.begin() + static_cast<std::ptrdiff_t>(turns.size() / 2);
        std::nth_element(turns.begin(), middle, turns.end());
        return *middle;
    }

private:
    std::vector<double> turns;
};

/// Does the work in our way and in the peer's in turn, so that whatever else the machine does falls
/// on both, and says the row of the medians. The benchmark is registered with `UseManualTime`.
/// @param items  pieces of work in one turn: the row tells the cost of one
template<class Ours, class Peer>
void take_turns(benchmark::State& state, const Against& against, Ours ours, Peer peer,
                double items = 1.0) {
    Turns of_ours, of_peer;
    ours();
    peer();
    for (auto _ : state) {
        of_peer.take(peer);
        state.SetIterationTime(of_ours.take(ours));
    }
    say_row(state, against, of_ours.median() / items, of_peer.median() / items);
}

} // namespace orvex_bench
