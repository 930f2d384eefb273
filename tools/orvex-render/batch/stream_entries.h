#pragma once

/// @file
/// Entries of a service on standard input.

#include "batch/entry_reader.h"
#include "batch/entry_source.h"
#include "batch/line_reader.h"

namespace batch {

/// Reads entries, a line of JSON each, as they come. Unlike a manifest's they may write the same
/// files again.
class StreamEntries final : public EntrySource {
public:
    /// @param descriptor  is read from, and not closed
    /// @param defaults    options of entries
    /// @param folder      the output folder
    StreamEntries(int descriptor, const Options& defaults, const std::string& folder);

    NextEntry next() override;
    int descriptor() const override { return input; }

private:
    const int input;
    LineReader lines;
    EntryReader reader;
};

/// The longest line that a service takes, in bytes.
constexpr std::size_t longest_line_of_service = std::size_t{1} << 20;
/// Why a longer one is refused.
std::string reason_for_long_line();
/// Whether nothing is on a line.
bool is_blank(std::string_view line);

} // namespace batch
