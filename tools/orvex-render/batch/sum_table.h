#pragma once

/// @file
/// Numbers by texts, many of them in little memory.

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "batch/sum.h"

namespace batch {

/// Remembers a number for each text. What it remembers lies in a file without a name, in the folder
/// for such files, so that millions of texts take no memory of the process: 16 bytes of a slot,
/// with a sum of 80 bits in place of the text. That two of 10^7 texts have one sum happens once in
/// 10^10 times.
///
/// When the file can't be written, `mistake` says so from then on, and nothing is remembered.
class SumTable {
public:
    /// @param expected  how many texts there may be; more of them are slower
    explicit SumTable(std::uint64_t expected = 0);
    ~SumTable();
    SumTable(const SumTable&) = delete;
    SumTable& operator=(const SumTable&) = delete;

    /// Remembers a number, unless the text has one.
    /// @param number  below 2^48
    /// @return the number that the text had before, or nothing
    std::optional<std::uint64_t> note(std::string_view text, std::uint64_t number);
    /// Remembers a number, whether or not the text has one.
    /// @return as `note`
    std::optional<std::uint64_t> replace(std::string_view text, std::uint64_t number);
    /// The number of a text; nothing if it has none.
    std::optional<std::uint64_t> find(std::string_view text);
    /// How many texts have a number.
    std::uint64_t size() const { return count; }

    /// Why it can't remember, as a sentence without a stop; empty if it can.
    const std::string& mistake() const { return reason; }

private:
    /// A sum, and the number plus 1; zeros are a free slot.
    struct Slot {
        std::array<std::uint8_t, 10> sum{};
        std::array<std::uint8_t, 6> number{};
    };

    Sum sums;
    int file = -1;
    std::uint64_t capacity; ///< slots, a power of two
    std::uint64_t count = 0;
    std::string reason;

    std::optional<std::uint64_t> put(std::string_view text, std::uint64_t number, bool is_new);
    Slot slot_of(std::string_view text);
    bool seek(const Slot& wanted, Slot& found, std::uint64_t& at);
    bool read(std::uint64_t at, Slot* slots, std::size_t length);
    void write(std::uint64_t at, const Slot& slot);
    void grow();
    void fail();
};

} // namespace batch
