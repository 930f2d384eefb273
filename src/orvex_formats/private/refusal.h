#pragma once

/// @file
/// How a reader gives up: with a reason, from however deep it is.

#include <cstdint>
#include <stdexcept>
#include <string>

namespace orvex::formats {

/// Why a file isn't read. Readers throw it, and `FormatLoader` keeps it: no host ever meets it.
class Refusal : public std::runtime_error {
public:
    /// @param is_known  whether the file is of the reader's format at all
    explicit Refusal(const std::string& reason, bool is_known = true)
        : std::runtime_error(reason)
        , is_known(is_known) {}

    bool is_format_known() const noexcept { return is_known; }

private:
    bool is_known;
};

/// Refuses a file of the reader's own format, formatted as `printf` does: a place, and what is
/// wrong there, as "byte 80: …" or "line 4: …".
[[noreturn]] void refuse(const char* format, ...) __attribute__((format(printf, 1, 2)));

/// Refuses a file of another format.
[[noreturn]] void refuse_format(const char* format, ...) __attribute__((format(printf, 1, 2)));

/// A name from a file as it may stand in a reason: cut, and without what isn't printed.
std::string in_words(const std::string& name);

} // namespace orvex::formats
