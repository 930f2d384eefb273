#pragma once

/// @file
/// Takes arguments off the bytes of an input, with the values in which mistakes hide drawn often.

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>

namespace orvex_fuzz {

/// The bytes that are left of an input. Once it is used up all values are those of zeros.
class Bytes {
public:
    Bytes(const std::uint8_t* data, std::size_t size)
        : data(data)
        , left(size) {}
    Bytes(const Bytes&) = delete;
    Bytes& operator=(const Bytes&) = delete;

    bool empty() const { return left == 0; }
    unsigned int byte();
    /// @return 0 to `bound` - 1, for a bound up to 65536
    unsigned int below(unsigned int bound);
    bool flag() { return byte() & 1; }

    /// Mostly small; at times the ends of the range.
    int integer();
    /// Mostly small; at times what a multiplication carries past the largest number.
    unsigned long size();
    /// Mostly of everyday size; at times zero, tiny, huge, infinite or no number.
    double real();
    /// Null, a name that the engine knows, one that it doesn't, a long one, or bytes of the input;
    /// valid as long as this.
    const char* text();

    /// Set while arrays are handed over: integers are then counts of what fits in them.
    bool counts_are_small = false;

private:
    const std::uint8_t* data;
    std::size_t left;
    std::deque<std::string> texts;
};

} // namespace orvex_fuzz
