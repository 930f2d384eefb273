#include "batch/tally.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

#include <unistd.h>

#include "progress_bar.h"

namespace batch {

namespace {

constexpr std::array fates{Fate::ok,      Fate::refused, Fate::over_limit,
                           Fate::crashed, Fate::driver,  Fate::io};

} // namespace

std::size_t Counts::drawn() const {
    return std::accumulate(by_fate.begin(), by_fate.end(), std::size_t{0});
}

std::size_t Counts::failed() const {
    return drawn() - of(Fate::ok) + refused_lines;
}

ExitCode exit_code_of(const Ending& ending, const Counts& counts) {
    constexpr int signals = 128;
    struct Row {
        bool fits;
        int code;
    };
    const Row rows[] = {
        {!ending.mistake.empty(), EXIT_FAILED},
        {ending.signal != 0, signals + ending.signal},
        {counts.of(Fate::driver) + counts.of(Fate::io) > 0, EXIT_TRY_AGAIN},
        {!ending.refused.empty() || counts.refused_lines > 0, EXIT_USAGE},
        {counts.failed() + counts.kept.failed > 0, EXIT_MODELS},
        {true, EXIT_FINE},
    };
    const Row* const row =
        std::find_if(std::begin(rows), std::end(rows), [](const Row& one) { return one.fits; });
    return static_cast<ExitCode>(row->code);
}

namespace {

/// With one digit behind the point.
std::string rate_of(std::size_t count, double seconds) {
    char text[32];
    std::snprintf(text, sizeof text, "%.1f",
                  seconds > 0.0 ? static_cast<double>(count) / seconds : 0.0);
    return text;
}

} // namespace

std::string summary_of(const Counts& counts, double seconds) {
    const std::size_t drawn = counts.drawn();
    std::string text = std::to_string(drawn) + (drawn == 1 ? " model in " : " models in ") +
                       clock_of(seconds) + ", " + rate_of(drawn, seconds) + " a second";
    std::string separator = ": ";
    const auto add = [&](std::size_t count, const std::string& what) {
        if (count > 0)
            text += std::exchange(separator, ", ") + std::to_string(count) + ' ' + what;
    };
    for (const Fate fate : fates)
        add(counts.of(fate), word_of(fate));
    add(counts.kept.all, "kept of an earlier run");
    add(counts.refused_lines,
        counts.refused_lines == 1 ? "line that is no entry" : "lines that are no entries");
    return text;
}

std::string batch_progress_line(const Counts& counts, std::optional<std::size_t> total,
                                double seconds, int columns) {
    const std::size_t done = counts.drawn() + counts.refused_lines;
    std::string tail = "  " + rate_of(done, seconds) + "/s";
    if (counts.failed() > 0)
        tail += "  " + std::to_string(counts.failed()) + " failed";
    if (!total)
        return std::to_string(done) + " done" + tail;
    // What was kept took no time that would tell anything.
    const auto left = static_cast<int>(*total - std::min(counts.kept.all, *total));
    return progress_line(static_cast<int>(done), left, seconds,
                         columns - static_cast<int>(tail.size())) +
           tail;
}

Tally::Tally(VerdictSink& to, const EntrySource& from, std::FILE* terminal)
    : sink(to)
    , source(from)
    , stream(terminal && isatty(fileno(terminal)) ? terminal : nullptr) {}

Tally::~Tally() {
    clear();
}

Counts Tally::counts() const {
    Counts counts = so_far;
    counts.kept = source.kept();
    return counts;
}

double Tally::seconds() const {
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

std::string Tally::put(const Verdict& verdict) {
    if (verdict.line > 0)
        ++so_far.refused_lines;
    else
        ++so_far.by_fate[static_cast<std::size_t>(verdict.fate)];
    std::string mistake = sink.put(verdict);
    show();
    return mistake;
}

void Tally::show() {
    constexpr auto rest = std::chrono::milliseconds(100);
    if (!stream || Clock::now() - shown < rest)
        return;
    shown = Clock::now();
    std::fprintf(
        stream, "\r%s\x1b[K",
        batch_progress_line(counts(), source.total(), seconds(), columns_of(stream)).c_str());
    std::fflush(stream);
}

void Tally::clear() {
    if (stream && shown != Clock::time_point())
        std::fputs("\r\x1b[K", stream);
    shown = {};
}

} // namespace batch
