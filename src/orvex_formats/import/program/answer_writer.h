#pragma once

/// @file
/// Writing what the importer answers.

#include <cstdint>
#include <stdexcept>
#include <vector>

#include "orvex_formats/private/draft.h"

namespace orvex::formats {

/// Where an answer goes: it grows at its end, and there is room for so much.
class AnswerRoom {
public:
    AnswerRoom(int descriptor, std::uint64_t size);

    /// @throw std::runtime_error  where there is no more room
    void add(const void* bytes, std::size_t size);
    template<class Number>
    void add_number(Number number) {
        add(&number, sizeof number);
    }

    /// Makes what was added an answer.
    void finish();

private:
    void put(const void* bytes, std::size_t size, std::uint64_t place) const;
    void flush();

    int descriptor;
    std::uint64_t room;
    std::uint64_t place;
    std::vector<unsigned char> waiting;
};

/// Writes a model.
/// @throw std::runtime_error  where there is no room for it
void write_answer(Draft& draft, AnswerRoom& room);

} // namespace orvex::formats
