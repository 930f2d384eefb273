#include "orvex_kit/private/utf8.h"

namespace orvex::kit {

namespace {

/// How many bytes follow a first one, and what that one holds; none follow a byte that is no first
/// one, which holds `replacement`.
struct Lead {
    int followers;
    char32_t bits;
    char32_t least; ///< what fewer bytes can say isn't said with so many
};

Lead lead_of(unsigned char byte) {
    if (byte < 0x80)
        return {0, byte, 0};
    if (byte >= 0xc2 && byte < 0xe0)
        return {1, byte & 0x1fu, 0x80};
    if (byte >= 0xe0 && byte < 0xf0)
        return {2, byte & 0x0fu, 0x800};
    if (byte >= 0xf0 && byte < 0xf5)
        return {3, byte & 0x07u, 0x10000};
    return {0, replacement, 0};
}

/// The code point at a place. @return how many bytes it has; 0 if they are none
std::size_t take(std::string_view text, char32_t& code) {
    const unsigned char first = static_cast<unsigned char>(text.front());
    const Lead lead = lead_of(first);
    if (lead.followers == 0) {
        code = lead.bits;
        return lead.bits == replacement ? 0 : 1;
    }
    const std::size_t size = static_cast<std::size_t>(lead.followers) + 1;
    if (text.size() < size)
        return 0;
    code = lead.bits;
    for (std::size_t i = 1; i < size; ++i) {
        const unsigned char byte = static_cast<unsigned char>(text[i]);
        if ((byte & 0xc0) != 0x80)
            return 0;
        code = code << 6 | (byte & 0x3fu);
    }
    const bool is_half_of_a_pair = code >= 0xd800 && code < 0xe000;
    return code < lead.least || code > 0x10ffff || is_half_of_a_pair ? 0 : size;
}

} // namespace

std::u32string code_points_of(std::string_view text, std::size_t& invalid) {
    std::u32string codes;
    codes.reserve(text.size());
    invalid = 0;
    while (!text.empty()) {
        char32_t code = replacement;
        std::size_t size = take(text, code);
        if (size == 0) {
            code = replacement;
            size = 1;
            ++invalid;
        }
        codes += code;
        text.remove_prefix(size);
    }
    return codes;
}

} // namespace orvex::kit
