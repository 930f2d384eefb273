#pragma once

/// @file
/// What is known of a font's glyphs, and how they are set in lines.

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "orvex_kit/font.h"

namespace orvex::kit {

/// A glyph on its sheet, in texels.
struct Glyph {
    float x = 0.0f;       ///< from the left edge of the sheet
    float y = 0.0f;       ///< from its upper edge
    float width = 0.0f;   ///< 0 for a blank
    float height = 0.0f;  ///< likewise
    float left = 0.0f;    ///< from the cursor to the glyph
    float top = 0.0f;     ///< from the line's top down to the glyph
    float advance = 0.0f; ///< from this glyph's cursor to the next one's
};

struct GlyphSheet {
    std::unordered_map<char32_t, Glyph> glyphs;
    float line_height = 0.0f;  ///< texels, above 0
    float sheet_width = 0.0f;  ///< texels
    float sheet_height = 0.0f; ///< texels
    float spread = 0.0f;       ///< of distances on the sheet; 0: it holds how white a texel is
    std::string sheet;         ///< its file; empty: the built-in one

    /// Null if there is none.
    const Glyph* find(char32_t code) const {
        const auto found = glyphs.find(code);
        return found == glyphs.end() ? nullptr : &found->second;
    }
};

/// Reads BMFont XML. What isn't there counts as 0.
/// @param[out] font  receives all but the sheet's file
void read_bm_font(std::string_view text, GlyphSheet& font);

/// A glyph on the picture.
struct SetGlyph {
    const Glyph* glyph;
    float left;     ///< of its cursor, in pixels
    float line_top; ///< of its line, in pixels down
};

/// A text in lines.
struct TextLayout {
    std::vector<SetGlyph> glyphs;
    TextExtent extent;
};

/// Sets a text with its upper left corner at a place.
TextLayout lay_out(const GlyphSheet& font, std::string_view text, const TextStyle& style,
                   float left, float top);

} // namespace orvex::kit
