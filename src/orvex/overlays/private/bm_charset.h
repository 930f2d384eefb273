#pragma once

/// @file
/// What is known of a sheet of glyphs. Private: a font owns one and reads it when it makes quads.

namespace orvex {

/// Where a glyph lies on the sheet and how it is set, in pixels. All zero is the empty glyph: a
/// quad of no size that moves nothing.
struct BMCharDescriptor {
    unsigned short x = 0;        ///< left edge on the sheet
    unsigned short y = 0;        ///< upper edge on the sheet, counted down from its top
    unsigned short width = 0;    ///< of the glyph
    unsigned short height = 0;   ///< of the glyph
    unsigned short xoffset = 0;  ///< from the cursor to the left edge
    unsigned short yoffset = 0;  ///< from the line's top down to the upper edge
    unsigned short xadvance = 0; ///< from this glyph's cursor to the next one's
    unsigned short page = 0;     ///< kept, but there is one sheet only
};

/// A description of a sheet, as `read_bm_charset` makes it from a file.
struct BMCharset {
    int line_height = 0;              ///< distance of two lines
    int padding[4] = {};              ///< around each glyph, in the order of the file
    int spacing[2] = {};              ///< the first is added to each blank's advance
    unsigned short base = 0;          ///< from the line's top to its base line
    unsigned short scale_w = 0;       ///< width of the sheet
    unsigned short scale_h = 0;       ///< height of the sheet
    unsigned short pages = 0;         ///< stays 0
    BMCharDescriptor chars[256] = {}; ///< by character code
    char image_filename[1024] = {};   ///< of the first page

    /// The glyph of one byte of a text. Bytes are signed: those from 128 up lie in front of the
    /// table, where every glyph is empty.
    const BMCharDescriptor& glyph(signed char c) const {
        static constexpr BMCharDescriptor empty = {};
        return c < 0 ? empty : chars[c];
    }
};

} // namespace orvex
