#pragma once

/// @file
/// The bytes of an importer's answer, checked as they are taken.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "orvex_formats/private/byte_stream.h"
#include "orvex_formats/private/importer_protocol.h"
#include "orvex_formats/private/refusal.h"

namespace orvex::formats {

/// Goes through an answer once. Nothing takes memory before the bytes for it are known to be there.
class AnswerStream {
public:
    explicit AnswerStream(const InputFile& answer)
        : stream(answer, sizeof(AnswerHead)) {}

    [[noreturn]] void refuse_answer(const char* what) const {
        refuse("the importer's answer can't be right: byte %llu: %s",
               static_cast<unsigned long long>(stream.place()), what);
    }

    template<class Number>
    Number take() {
        return number_at<Number>(take_bytes(sizeof(Number)));
    }

    /// How many follow that have so many bytes each.
    std::size_t take_count(std::size_t size) {
        const auto count = take<std::uint64_t>();
        if (count > stream.left() / size)
            refuse_answer("it is cut off");
        return static_cast<std::size_t>(count);
    }

    void take_text(std::string& text) {
        constexpr std::size_t longest = 4096;
        const std::size_t size = take_count(1);
        if (size > longest)
            refuse_answer("a name that is longer than any");
        text.assign(reinterpret_cast<const char*>(take_bytes(size)), size);
        if (text.find('\0') != text.npos)
            refuse_answer("a name with a zero in it");
    }

    void check(float value, float least, float most) const {
        if (!std::isfinite(value))
            refuse_answer("a number that isn't finite");
        if (value < least || value > most)
            refuse_answer("a number beyond its range");
    }

    /// Fills a list whose elements are floats alone, or consist of them.
    template<class Value>
    void fill_with_floats(std::vector<Value>& values, float least, float most) {
        constexpr std::size_t width = sizeof(Value) / sizeof(float);
        in_pieces(values, [&](const unsigned char* from, std::size_t count) {
            for (std::size_t i = 0; i < count * width; ++i)
                check(number_at<float>(from + i * sizeof(float)), least, most);
        });
    }

    /// Fills a list whose elements are places in another one.
    template<class Value>
    void fill_with_places(std::vector<Value>& values, std::size_t num_places) {
        constexpr std::size_t width = sizeof(Value) / sizeof(std::uint32_t);
        in_pieces(values, [&](const unsigned char* from, std::size_t count) {
            for (std::size_t i = 0; i < count * width; ++i)
                if (number_at<std::uint32_t>(from + i * sizeof(std::uint32_t)) >= num_places)
                    refuse_answer("a corner beyond the vertices");
        });
    }

    void fill(std::vector<unsigned char>& bytes) {
        in_pieces(bytes, [](const unsigned char*, std::size_t) {});
    }

    void finish() const {
        if (!stream.is_at_end())
            refuse_answer("more than was asked for");
    }

private:
    const unsigned char* take_bytes(std::size_t size) {
        if (stream.left() < size)
            refuse_answer("it is cut off");
        return stream.take(size);
    }

    /// Calls with the bytes of a few elements, and how many these are.
    template<class Value, class Check>
    void in_pieces(std::vector<Value>& values, Check check_piece) {
        constexpr std::size_t at_once = 4096;
        for (std::size_t first = 0; first < values.size(); first += at_once) {
            const std::size_t count = std::min(at_once, values.size() - first);
            const unsigned char* const from = take_bytes(count * sizeof(Value));
            check_piece(from, count);
            std::memcpy(static_cast<void*>(values.data() + first), from, count * sizeof(Value));
        }
    }

    ByteStream stream;
};

} // namespace orvex::formats
