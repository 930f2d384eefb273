#pragma once

/// @file
/// Letters: what a text's size is, before anything is drawn.

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include <orvex/math/vec4.h>

#include "orvex_kit/api.h"

namespace orvex::kit {

struct GlyphSheet;

/// Where the lines of a text begin and end.
enum class Align {
    left,   ///< they begin below each other
    center, ///< their middles lie below each other
    right   ///< they end below each other
};

/// How a text is set.
struct TextStyle {
    float size = 24.0f;                        ///< height of a line in pixels, above 0
    orvex::vec4 color{1.0f, 1.0f, 1.0f, 1.0f}; ///< red, green, blue and opacity, 0 to 1
    Align align = Align::left;                 ///< within the wrap width, or the longest line
    float wrap_width = 0.0f;   ///< pixels: longer lines break at blanks, and longer words within;
                               ///< 0: none breaks
    float line_spacing = 1.0f; ///< from line to line, in heights of a line
};

/// What room a text takes, and what is the matter with it.
struct TextExtent {
    float width = 0.0f;              ///< of the longest line, in pixels
    float height = 0.0f;             ///< of all lines, in pixels
    std::size_t lines = 0;           ///< after wrapping
    std::size_t invalid_bytes = 0;   ///< that are no UTF-8; each is shown as U+FFFD
    std::vector<char32_t> missing{}; ///< code points without a glyph, each once, in their order
};

/// The name of a code point for messages, as "U+20AC".
ORVEX_KIT_API std::string code_point_name(char32_t code);

/// A font: the built-in one, or one that is drawn on a sheet.
///
/// Texts are in UTF-8. A line feed begins a line, a tab is four blanks, and a blank that doesn't
/// break (U+00A0) stays with its words. Letters are set one by one, from the left to the right:
/// there is no shaping, as Arabic would want. What has no glyph is shown by that of U+FFFD, or else
/// of a question mark, as far as the font has one.
///
/// A value: copied freely, needs no engine unless it is read from a file; any thread, one at a
/// time.
///
/// @code
/// const kit::Font font;
/// const kit::TextExtent room = font.measure("5 m²", {});
/// @endcode
class ORVEX_KIT_API Font {
public:
    /// DejaVu Sans, with Latin, Greek and Cyrillic. It is sharp at any size.
    Font();
    /// A font in BMFont XML with its sheet beside it: white glyphs on black, the first row of the
    /// file on top. Its glyphs may have any code point.
    explicit Font(const std::string& path);

    /// Whether texts can be set in it.
    explicit operator bool() const noexcept { return data != nullptr; }
    /// Why they can't; empty if they can. The sheet is looked at when it is drawn with first.
    const std::string& reason() const noexcept { return why; }
    /// The files that it comes from: description and sheet; none for the built-in one.
    const std::vector<std::string>& files() const noexcept { return sources; }

    /// What room a text takes. All 0 for a font that isn't one.
    TextExtent measure(const std::string& text, const TextStyle& style = {}) const;

private:
    friend class Text;

    std::shared_ptr<const GlyphSheet> data;
    std::string why;
    std::vector<std::string> sources;
};

} // namespace orvex::kit
