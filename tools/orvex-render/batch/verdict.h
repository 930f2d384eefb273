#pragma once

/// @file
/// What became of an entry.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "batch/entry.h"

namespace batch {

/// How it went, in a word.
enum class Fate {
    ok,         ///< all files are written
    refused,    ///< the model, or another file that it needs, is no good
    over_limit, ///< it took more time, memory, pixels or bytes than it may
    crashed,    ///< the process that drew it died, twice
    driver,     ///< what draws failed; another try may go well
    io,         ///< a file couldn't be read or written; another try may go well
};

/// Its word, as "over-limit".
const char* word_of(Fate fate);
/// The fate of a word; nothing for another one.
std::optional<Fate> fate_of(std::string_view word);

/// A file that was written.
struct Output {
    std::string path; ///< within the output folder
    std::string kind; ///< as `OutputFile` has it
    int width = 0;    ///< in pixels; 0 for what is no picture
    int height = 0;
    std::uint64_t bytes = 0;
    std::string sha256; ///< 64 digits in lower case
};

/// What was spent, on the clock.
struct Seconds {
    double load = 0.0;
    double draw = 0.0;
    double write = 0.0;
    double total = 0.0;
};

/// What became of one entry. A value.
struct Verdict {
    std::string id;
    std::string model;
    std::string output; ///< of the entry: its picture within the output folder
    Fate fate = Fate::ok;
    std::string reason; ///< a sentence without a stop, with its place; empty for `ok`
    std::vector<Output> outputs;
    /// What was read, besides the model: material libraries, textures, and those that weren't
    /// there.
    std::vector<std::string> files;
    Seconds seconds;
    std::uint64_t peak_bytes = 0; ///< of memory, of the process that drew it
    int tries = 1;
    std::string key;      ///< as `key_of` gives it; empty if the model couldn't be read
    std::string engine;   ///< its version
    std::string driver;   ///< its renderer and version; empty if there was none
    std::size_t line = 0; ///< of a line that is no entry, its number; 0 otherwise
};

/// A verdict that tells which entry it is about, and which engine; the rest is to be filled.
Verdict verdict_on(const Entry& entry);

/// A verdict as one line of JSON, line feed included. What isn't UTF-8 becomes U+FFFD.
std::string line_of(const Verdict& verdict);
/// The verdict of a line of `line_of`, with its line feed or without; nothing for any other text,
/// and for a line that was cut.
std::optional<Verdict> verdict_of_line(std::string_view line);

} // namespace batch
