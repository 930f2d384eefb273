// Reads descriptions of glyph sheets, BMFont XML: elements and their attributes, whatever they
// stand in. Whether it is XML at all is the engine's reader to say.

#include <algorithm>
#include <charconv>
#include <string_view>

#include "orvex_kit/private/glyph_sheet.h"

namespace orvex::kit {

namespace {

constexpr std::string_view blanks = " \t\r\n";

/// What begins behind the blanks of a text.
std::string_view behind_blanks(std::string_view text) {
    return text.substr(std::min(text.find_first_not_of(blanks), text.size()));
}

/// Takes a text up to a mark, and the mark.
std::string_view take_to(std::string_view& text, std::string_view mark) {
    const std::size_t end = std::min(text.find(mark), text.size());
    const std::string_view taken = text.substr(0, end);
    text.remove_prefix(std::min(end + mark.size(), text.size()));
    return taken;
}

/// Takes the next start tag, its name and its attributes, from a text. @return empty at the end
std::string_view take_tag(std::string_view& text) {
    while (!text.empty()) {
        take_to(text, "<");
        if (text.substr(0, 3) == "!--")
            take_to(text, "-->");
        else if (!text.empty() && std::string_view("/?!").find(text.front()) == text.npos)
            return take_to(text, ">");
    }
    return {};
}

/// The number of an attribute of a tag, 0 without one.
int number_of(std::string_view tag, std::string_view wanted) {
    tag.remove_prefix(std::min(tag.find_first_of(blanks), tag.size()));
    while (!(tag = behind_blanks(tag)).empty()) {
        const std::string_view name = take_to(tag, "=");
        tag = behind_blanks(tag);
        if (tag.empty() || (tag.front() != '"' && tag.front() != '\''))
            return 0;
        const std::string_view quote = tag.substr(0, 1);
        tag.remove_prefix(1);
        const std::string_view value = take_to(tag, quote);
        if (name.substr(0, name.find_first_of(blanks)) != wanted)
            continue;
        int number = 0;
        std::from_chars(value.data(), value.data() + value.size(), number);
        return number;
    }
    return 0;
}

/// The first of two numbers with a comma, as of `spacing`.
float number_in(std::string_view tag, std::string_view name) {
    // What a sheet can hold; the rest is rubbish.
    return static_cast<float>(std::clamp(number_of(tag, name), -32768, 65535));
}

void take_glyph(std::string_view tag, GlyphSheet& font) {
    constexpr int last = 0x10ffff;
    const int id = number_of(tag, "id");
    if (id < 1 || id > last)
        return;
    font.glyphs[static_cast<char32_t>(id)] = {number_in(tag, "x"),       number_in(tag, "y"),
                                              number_in(tag, "width"),   number_in(tag, "height"),
                                              number_in(tag, "xoffset"), number_in(tag, "yoffset"),
                                              number_in(tag, "xadvance")};
}

} // namespace

void read_bm_font(std::string_view text, GlyphSheet& font) {
    float blank_extra = 0.0f;
    for (std::string_view tag = take_tag(text); !tag.empty(); tag = take_tag(text)) {
        const std::string_view name = tag.substr(0, tag.find_first_of(" \t\r\n/"));
        if (name == "info") {
            blank_extra = number_in(tag, "spacing");
        } else if (name == "common") {
            font.line_height = number_in(tag, "lineHeight");
            font.sheet_width = number_in(tag, "scaleW");
            font.sheet_height = number_in(tag, "scaleH");
        } else if (name == "char") {
            take_glyph(tag, font);
        }
    }
    if (const auto blank = font.glyphs.find(U' '); blank != font.glyphs.end())
        blank->second.advance += blank_extra;
}

} // namespace orvex::kit
