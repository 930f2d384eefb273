#pragma once

/// @file
/// The numbers of a PLY file, one behind the other, as text or as bytes.

#include <bit>
#include <cstdint>
#include <string>
#include <string_view>

#include "orvex_formats/ply/private/ply_header.h"
#include "orvex_formats/private/byte_stream.h"
#include "orvex_formats/private/refusal.h"
#include "orvex_formats/private/words.h"

namespace orvex::formats {

/// Numbers as words. Where lines end means nothing, as some programs break the lines of long lists.
class PlyTextRows {
public:
    explicit PlyTextRows(ByteStream& stream)
        : stream(stream)
        , words("") {}

    double number(PlyType) {
        while (!words.has_more())
            take_line();
        double value = 0.0;
        if (!words.take_number(value))
            refuse("%s: what should be a number isn't one", place().c_str());
        return value;
    }

    void skip(PlyType, std::uint64_t count) {
        for (; count > 0; --count) {
            while (!words.has_more())
                take_line();
            words.take();
        }
    }

    /// The most bytes that so many numbers can be in; the last needs no blank behind it.
    std::uint64_t left() const { return stream.left() + words.remaining().size() + 1; }
    static std::uint64_t least_size(PlyType) { return 2; }
    std::string place() const { return "line " + std::to_string(stream.line_number()); }

    /// What stands behind the last row, in words; empty where nothing does.
    std::string rest() {
        while (!words.has_more()) {
            if (stream.is_at_end())
                return "";
            take_line();
        }
        return place() + ": what stands behind the last row was left out";
    }

private:
    void take_line() {
        std::string_view line;
        if (!stream.take_line(line))
            refuse("%s: the file is cut off", place().c_str());
        words = Words(line);
    }

    ByteStream& stream;
    Words words;
};

/// Numbers as bytes.
template<std::endian order>
class PlyBinaryRows {
public:
    explicit PlyBinaryRows(ByteStream& stream)
        : stream(stream) {}

    double number(PlyType type) {
        const unsigned char* const bytes = stream.take(size_of(type));
        switch (type) {
        case PlyType::int8:
            return number_at<std::int8_t, order>(bytes);
        case PlyType::uint8:
            return *bytes;
        case PlyType::int16:
            return number_at<std::int16_t, order>(bytes);
        case PlyType::uint16:
            return number_at<std::uint16_t, order>(bytes);
        case PlyType::int32:
            return number_at<std::int32_t, order>(bytes);
        case PlyType::uint32:
            return number_at<std::uint32_t, order>(bytes);
        case PlyType::float32:
            return double(number_at<float, order>(bytes));
        case PlyType::float64:
            return number_at<double, order>(bytes);
        }
        return 0.0;
    }

    void skip(PlyType type, std::uint64_t count) {
        constexpr std::uint64_t piece = 4096; // numbers
        for (; count > piece; count -= piece)
            stream.take(static_cast<std::size_t>(piece) * size_of(type));
        stream.take(static_cast<std::size_t>(count) * size_of(type));
    }

    std::uint64_t left() const { return stream.left(); }
    static std::uint64_t least_size(PlyType type) { return size_of(type); }
    std::string place() const { return "byte " + std::to_string(stream.place()); }

    std::string rest() const {
        return stream.is_at_end()
                   ? ""
                   : std::to_string(stream.left()) + " bytes behind the last row were left out";
    }

private:
    ByteStream& stream;
};

} // namespace orvex::formats
