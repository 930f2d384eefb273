#pragma once

/// @file
/// Reading a file from its begin to its end.

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

#include "orvex_formats/private/input_file.h"

namespace orvex::formats {

/// Goes through a file once, in pieces that stay small however large the file is.
class ByteStream {
public:
    explicit ByteStream(const InputFile& file, std::uint64_t begin = 0);

    /// Where the next byte stands in the file.
    std::uint64_t place() const { return window_begin + next; }
    /// How many bytes are left.
    std::uint64_t left() const { return file.size() - place(); }
    bool is_at_end() const { return left() == 0; }

    /// The next bytes, which stay where they are until the next call.
    /// @throw Refusal  where fewer are left
    const unsigned char* take(std::size_t size) {
        if (window.size() - next < size)
            refill(size);
        const unsigned char* const bytes = window.data() + next;
        next += size;
        return bytes;
    }

    /// The next line without its end, LF or CR LF or CR; the last one needs none. Valid until the
    /// next call.
    /// @return false at the end of the file
    /// @throw Refusal  for a line that no memory is risked for
    bool take_line(std::string_view& line);
    /// Of the line taken last, from 1 on.
    std::uint64_t line_number() const { return num_lines; }

private:
    /// Has `size` bytes in the window.
    void refill(std::size_t size);
    /// Has more in the window than before, if the file has more.
    bool grow();

    const InputFile& file;
    std::vector<unsigned char> window;
    std::uint64_t window_begin; ///< its place in the file
    std::size_t next = 0;       ///< in the window
    std::uint64_t num_lines = 0;
};

/// A number that stands in a file with its low byte first, or with its high byte first.
template<class Number, std::endian order = std::endian::little>
Number number_at(const unsigned char* bytes) {
    unsigned char turned[sizeof(Number)];
    for (std::size_t i = 0; i < sizeof(Number); ++i)
        turned[i] = bytes[order == std::endian::native ? i : sizeof(Number) - 1 - i];
    Number number;
    std::memcpy(&number, turned, sizeof number);
    return number;
}

} // namespace orvex::formats
