#pragma once

/// @file
/// Files of the tests, put together in memory.

#include <cstring>
#include <string>
#include <vector>

#include "orvex_formats/private/input_file.h"
#include "orvex_formats/private/refusal.h"

namespace orvex_test {

/// Bytes that grow at their end. Numbers are written with their low bytes first.
class Bytes {
public:
    Bytes() = default;
    explicit Bytes(const std::string& text) { add(text); }

    template<class Number>
    Bytes& add_number(Number number) {
        const std::size_t size = bytes.size();
        bytes.resize(size + sizeof number);
        std::memcpy(bytes.data() + size, &number, sizeof number);
        return *this;
    }
    Bytes& add(const std::string& text) {
        bytes.insert(bytes.end(), text.begin(), text.end());
        return *this;
    }

    std::vector<unsigned char> bytes;
};

/// Why a reader refuses a file; empty where it reads it.
template<class Draft>
std::string refusal_of(Draft (*reader)(const orvex::formats::InputFile&),
                       const orvex::formats::InputFile& file) {
    try {
        reader(file);
    } catch (const orvex::formats::Refusal& refusal) {
        return std::string(refusal.is_format_known() ? "" : "other format: ") + refusal.what();
    }
    return "";
}

/// Why a reader refuses bytes; empty where it reads them.
template<class Draft>
std::string refusal_of(Draft (*reader)(const orvex::formats::InputFile&),
                       const std::vector<unsigned char>& bytes) {
    return refusal_of(reader, orvex::formats::InputFile(bytes));
}

} // namespace orvex_test
