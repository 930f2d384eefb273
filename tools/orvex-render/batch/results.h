#pragma once

/// @file
/// Results: the verdicts of a batch as a file has them, and what earlier ones are good for.

#include <cstdint>
#include <optional>
#include <string>

#include "batch/entry.h"
#include "batch/sum_table.h"
#include "batch/verdict_sink.h"

namespace batch {

/// Writes verdicts to a file, a pipe or standard output, each by one write of a whole line.
///
/// A file of an earlier run can be gone on with: what stands in its last line without an end is cut
/// off. Only one process at a time has it. Where several verdicts are about one output, as after a
/// model has changed, the last one counts; `finish` takes the others out, so that there is one for
/// each entry. That file is written beside and renamed.
class Results : public VerdictSink {
public:
    /// @param path  - is standard output
    explicit Results(std::string path);
    ~Results() override;

    /// Opens it. A file that holds something is only taken to go on with.
    /// @param resume  goes on with what is there; needs a file
    /// @return what is wrong, as a sentence without a stop; empty if nothing is
    std::string open(bool resume);
    /// What became of an entry, if there is an earlier verdict that still holds.
    std::optional<Fate> fate_of(const Entry& entry);

    std::string put(const Verdict& verdict) override;

    /// Ends it, after the last verdict. @return as `open`
    std::string finish();

private:
    std::string path;
    int file = -1;
    bool is_regular = false;
    std::optional<SumTable> places; ///< of the last verdict on each output: where its line begins
    std::optional<SumTable> stale;  ///< lines that another one follows, by where they begin

    std::string open_file(bool resume);
    bool lock() const;
    std::string read_earlier();
    std::string cut(std::uint64_t size) const;
    std::string mistake(const char* what) const;
    void put_aside(std::uint64_t place);
    std::optional<Verdict> verdict_at(std::uint64_t place) const;
    std::string write_without_stale();
};

} // namespace batch
