// How texts are set in lines: glyph by glyph, until one is too far to the right. The line then ends
// before its last word, and is moved to its place when all of them are known.

#include <algorithm>
#include <cmath>
#include <unordered_set>

#include "orvex_kit/private/glyph_sheet.h"
#include "orvex_kit/private/utf8.h"

namespace orvex::kit {

namespace {

/// A line of glyphs, as far as it goes.
struct Line {
    std::size_t begin = 0; ///< in the text's glyphs
    std::size_t end = 0;
    float width = 0.0f; ///< texels, without blanks at its end
};

/// The glyphs of a text, and the lines that they make.
class Setter {
public:
    Setter(const GlyphSheet& font, const TextStyle& style, TextExtent& extent)
        : font(font)
        , extent(extent)
        , scale(style.size / font.line_height)
        , most(style.wrap_width > 0.0f ? style.wrap_width / scale : 0.0f) {}

    void set(std::string_view text) {
        std::u32string codes = code_points_of(text, extent.invalid_bytes);
        Line line;
        for (const char32_t code : codes) {
            if (code == U'\n')
                line = end_line(line);
            else if (code == U'\t')
                for (int i = 0; i < 4; ++i)
                    add(U' ', line);
            else if (code != U'\r')
                add(code, line);
        }
        end_line(line);
    }

    std::vector<const Glyph*> glyphs;
    std::vector<Line> lines;

private:
    const GlyphSheet& font;
    TextExtent& extent;
    std::unordered_set<char32_t> known_missing;
    float scale;
    float most;                  ///< texels of a line; 0: any
    float cursor = 0.0f;         ///< texels
    std::size_t word_begin = 0;  ///< where the line may break: the glyph behind the last blank
    float width_to_word = 0.0f;  ///< of the line before that blank
    float cursor_at_word = 0.0f; ///< of that glyph

    const Glyph* glyph_of(char32_t code) {
        if (const Glyph* const glyph = font.find(code))
            return glyph;
        if (known_missing.insert(code).second)
            extent.missing.push_back(code);
        const Glyph* const other = font.find(replacement);
        return other ? other : font.find(U'?');
    }

    Line end_line(const Line& line) {
        lines.push_back(line);
        cursor = 0.0f;
        word_begin = line.end;
        return {line.end, line.end, 0.0f};
    }

    void add(char32_t code, Line& line) {
        const Glyph* const glyph = glyph_of(code);
        if (!glyph)
            return;
        const bool is_blank = code == U' ';
        if (!is_blank && most > 0.0f && cursor + glyph->advance > most && line.end > line.begin)
            break_line(line);
        glyphs.push_back(glyph);
        ++line.end;
        cursor += glyph->advance;
        if (is_blank) {
            word_begin = line.end;
            width_to_word = line.width;
            cursor_at_word = cursor;
        } else {
            line.width = cursor;
        }
    }

    /// Ends a line before its last word, which begins the next one, or right here if it has but
    /// one.
    void break_line(Line& line) {
        const bool has_words = word_begin > line.begin;
        const std::size_t begin = has_words ? word_begin : line.end;
        const float word_width = has_words ? cursor - cursor_at_word : 0.0f;
        lines.push_back({line.begin, begin, has_words ? width_to_word : line.width});
        line = {begin, line.end, word_width};
        cursor = word_width;
        word_begin = begin;
    }
};

float share_before(Align align) {
    switch (align) {
    case Align::left:
        return 0.0f;
    case Align::center:
        return 0.5f;
    case Align::right:
        return 1.0f;
    }
    return 0.0f;
}

} // namespace

TextLayout lay_out(const GlyphSheet& font, std::string_view text, const TextStyle& style,
                   float left, float top) {
    TextLayout layout;
    TextExtent& extent = layout.extent;
    if (!(style.size > 0.0f && std::isfinite(style.size) && std::isfinite(style.line_spacing)))
        return layout;
    Setter setter(font, style, extent);
    setter.set(text);

    // The room that all lines take.
    const float scale = style.size / font.line_height;
    float longest = 0.0f;
    for (const Line& line : setter.lines)
        longest = std::max(longest, line.width);
    extent.lines = setter.lines.size();
    extent.width = longest * scale;
    extent.height = style.size * (1.0f + static_cast<float>(extent.lines - 1) * style.line_spacing);

    // Each line in it.
    const float room = style.wrap_width > 0.0f ? style.wrap_width : extent.width;
    float line_top = top;
    for (const Line& line : setter.lines) {
        float cursor = left + (room - line.width * scale) * share_before(style.align);
        for (std::size_t i = line.begin; i < line.end; ++i) {
            layout.glyphs.push_back({setter.glyphs[i], cursor, line_top});
            cursor += setter.glyphs[i]->advance * scale;
        }
        line_top += style.size * style.line_spacing;
    }
    return layout;
}

} // namespace orvex::kit
