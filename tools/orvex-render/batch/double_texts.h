#pragma once

/// @file
/// Which of many texts stand twice.

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "batch/sum.h"

namespace batch {

/// Finds texts that were added twice, once all are known: quicker than a `SumTable`, as what lies
/// in the file is written and read from its beginning to its end. Takes some MB whatever their
/// number; texts are told apart as there.
class DoubleTexts {
public:
    DoubleTexts();
    ~DoubleTexts();
    DoubleTexts(const DoubleTexts&) = delete;
    DoubleTexts& operator=(const DoubleTexts&) = delete;

    /// @param number  of its place, below 2^48; not below that of the text before
    void add(std::string_view text, std::uint64_t number);
    /// Finds them, once.
    /// @param tell  is called with the number of each text that was added before with another
    ///              number, and with the first one of these
    void find(const std::function<void(std::uint64_t number, std::uint64_t first)>& tell);

    /// Why texts can't be put aside, as a sentence without a stop; empty if they can.
    const std::string& mistake() const { return reason; }

private:
    /// The sum of a text, and its number.
    struct Place {
        std::array<std::uint8_t, 16> bytes;
        std::uint64_t number() const;
    };
    class Row;

    Sum sums;
    int file = -1;
    std::vector<Place> places;
    std::vector<std::uint64_t> ends; ///< of the sorted rows in the file, in places
    std::string reason;

    void put_aside();
    void fail();
};

} // namespace batch
