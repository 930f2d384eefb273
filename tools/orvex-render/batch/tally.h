#pragma once

/// @file
/// What has become of all entries of a batch together.

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <optional>
#include <string>

#include "batch/entry_source.h"
#include "batch/supervisor.h"
#include "batch/verdict_sink.h"
#include "start.h"

namespace batch {

/// How many entries have which verdict.
struct Counts {
    std::array<std::size_t, 6> by_fate{}; ///< indexed by `Fate`, without lines that are no entries
    std::size_t refused_lines = 0;
    EntrySource::Kept kept;

    std::size_t of(Fate fate) const { return by_fate[static_cast<std::size_t>(fate)]; }
    /// Of all entries that were drawn.
    std::size_t drawn() const;
    /// Of those, and of lines, that aren't ok.
    std::size_t failed() const;
};

/// What a batch ends with: the first row of the table that fits. Kept failures count as new ones
/// do.
ExitCode exit_code_of(const Ending& ending, const Counts& counts);

/// "12 models in 0:03, 4.0 a second: 10 ok, 2 refused", with what was kept and lines that are no
/// entries.
std::string summary_of(const Counts& counts, double seconds);

/// The line that shows on a terminal how far a batch is: the bar where the number of entries is
/// known, what isn't ok, and the rate.
/// @param total    nothing for a pipe
/// @param columns  of the terminal
std::string batch_progress_line(const Counts& counts, std::optional<std::size_t> total,
                                double seconds, int columns);

/// Counts verdicts on their way to a sink, and shows how far the batch is.
class Tally : public VerdictSink {
public:
    /// @param sink    takes the verdicts
    /// @param source  knows how many there will be. Both outlive this
    /// @param stream  where progress is shown, if it is a terminal; null shows none
    Tally(VerdictSink& sink, const EntrySource& source, std::FILE* stream);
    /// Ends the line.
    ~Tally() override;

    std::string put(const Verdict& verdict) override;
    Counts counts() const;
    /// Since the beginning.
    double seconds() const;
    /// Takes the line away.
    void clear();

private:
    using Clock = std::chrono::steady_clock;

    VerdictSink& sink;
    const EntrySource& source;
    std::FILE* stream; ///< null: none
    Counts so_far;
    Clock::time_point begin = Clock::now();
    Clock::time_point shown{};

    void show();
};

} // namespace batch
