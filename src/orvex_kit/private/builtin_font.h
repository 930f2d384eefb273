#pragma once

/// @file
/// The kit's own font, as the build bakes it from a face: where its glyphs lie on their sheet, and
/// the sheet.

#include <cstddef>

namespace orvex::kit {

struct BuiltinGlyph {
    char32_t code;
    short x, y, width, height; ///< on the sheet, in texels from its upper left corner
    short left, top;           ///< from the cursor, and from the base line down
    float advance;             ///< to the next glyph's cursor, in texels
};

extern const int builtin_columns; ///< of the sheet
extern const int builtin_rows;
/// Half a texel's value is an edge; one of 0 or the whole lies this many texels from it.
extern const float builtin_spread;
extern const float builtin_ascent;      ///< of the base line below the line's top, in texels
extern const float builtin_line_height; ///< in texels

extern const BuiltinGlyph builtin_glyphs[];
extern const std::size_t builtin_glyph_count;
extern const unsigned char builtin_sheet[]; ///< a byte a texel, packed by zlib
extern const std::size_t builtin_sheet_bytes;

} // namespace orvex::kit
