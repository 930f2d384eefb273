#include "orvex_formats/obj/private/text_encoding.h"

#include <algorithm>
#include <bit>

#include "orvex_formats/private/byte_stream.h"

namespace orvex::formats {

namespace {

enum class Encoding { bytes, utf8_with_mark, utf16_low_first, utf16_high_first };

struct Found {
    Encoding encoding = Encoding::bytes;
    std::uint64_t begin = 0;
};

Found encoding_of(const InputFile& file) {
    unsigned char first[4] = {1, 1, 1, 1};
    file.read(0, first, static_cast<std::size_t>(std::min<std::uint64_t>(file.size(), 4)));
    if (first[0] == 0xef && first[1] == 0xbb && first[2] == 0xbf)
        return {Encoding::utf8_with_mark, 3};
    if (first[0] == 0xff && first[1] == 0xfe)
        return {Encoding::utf16_low_first, 2};
    if (first[0] == 0xfe && first[1] == 0xff)
        return {Encoding::utf16_high_first, 2};
    if (first[0] != 0 && first[1] == 0 && first[2] != 0 && first[3] == 0)
        return {Encoding::utf16_low_first, 0};
    if (first[0] == 0 && first[1] != 0 && first[2] == 0 && first[3] != 0)
        return {Encoding::utf16_high_first, 0};
    return {};
}

void add_utf8(std::uint32_t letter, std::vector<unsigned char>& text) {
    const auto add = [&](std::uint32_t byte) { text.push_back(static_cast<unsigned char>(byte)); };
    if (letter < 0x80)
        return add(letter);
    if (letter < 0x800) {
        add(0xc0 | letter >> 6);
    } else if (letter < 0x10000) {
        add(0xe0 | letter >> 12);
        add(0x80 | (letter >> 6 & 0x3f));
    } else {
        add(0xf0 | letter >> 18);
        add(0x80 | (letter >> 12 & 0x3f));
        add(0x80 | (letter >> 6 & 0x3f));
    }
    add(0x80 | (letter & 0x3f));
}

std::uint32_t take_unit(ByteStream& stream, bool is_low_first) {
    const unsigned char* const bytes = stream.take(2);
    return is_low_first ? number_at<std::uint16_t, std::endian::little>(bytes)
                        : number_at<std::uint16_t, std::endian::big>(bytes);
}

} // namespace

std::uint64_t begin_of_text(const InputFile& file) {
    const Found found = encoding_of(file);
    return found.encoding == Encoding::utf8_with_mark ? found.begin : 0;
}

std::optional<std::vector<unsigned char>> from_utf16(const InputFile& file) {
    const Found found = encoding_of(file);
    const bool is_low_first = found.encoding == Encoding::utf16_low_first;
    if (!is_low_first && found.encoding != Encoding::utf16_high_first)
        return std::nullopt;
    std::vector<unsigned char> text;
    text.reserve(static_cast<std::size_t>(file.size() / 2));
    ByteStream stream(file, found.begin);
    std::uint32_t high = 0; ///< the first half of a letter, whose second is awaited
    while (stream.left() >= 2) {
        const std::uint32_t unit = take_unit(stream, is_low_first);
        const bool is_low = unit >= 0xdc00 && unit < 0xe000;
        if (high != 0 && is_low) {
            add_utf8(0x10000 + ((high - 0xd800) << 10) + (unit - 0xdc00), text);
            high = 0;
            continue;
        }
        if (high != 0 || is_low)
            text.push_back('?');
        high = unit >= 0xd800 && unit < 0xdc00 ? unit : 0;
        if (high == 0 && !is_low)
            add_utf8(unit, text);
    }
    return text;
}

} // namespace orvex::formats
