#pragma once

/// @file
/// Lines of a file or a pipe.

#include <cstddef>
#include <string>
#include <string_view>

namespace batch {

/// Reads lines, each of which is held only if it isn't too long. Doesn't own the descriptor.
class LineReader {
public:
    enum class State { line, too_long, nothing_yet, end, failed };

    /// @param descriptor  is read from
    /// @param longest     bytes of a line
    /// @param end         a byte that ends a line; the last one may lack it
    /// @param waits       false: nothing is waited for, `nothing_yet` is said
    LineReader(int descriptor, std::size_t longest, char end = '\n', bool waits = true);

    /// Reads the next line. After `too_long` comes the line behind that.
    State next();
    /// The line without its end, valid up to the next call.
    std::string_view line() const { return text; }
    /// Its number, from 1.
    std::size_t number() const { return count; }
    /// Where it begins, in bytes.
    std::size_t begin() const { return offset; }
    /// Whether it has its end.
    bool is_whole() const { return has_end; }
    /// Why it failed, in the system's words.
    const std::string& reason() const { return words; }

private:
    int descriptor;
    std::size_t longest;
    char ending;
    bool waits;
    std::string buffer;
    std::size_t used = 0; ///< bytes of the buffer that were given away
    std::size_t seen = 0; ///< bytes of the buffer that were searched
    std::size_t read_bytes = 0;
    std::size_t offset = 0;
    std::size_t count = 0;
    std::string_view text;
    bool has_end = false;
    bool is_at_end = false;
    bool is_skipping = false;
    std::string words;

    State fill();
    State give(std::size_t end);
    State give_last();
};

} // namespace batch
