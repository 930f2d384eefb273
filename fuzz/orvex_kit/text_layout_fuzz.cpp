// Reads bytes up to the first zero byte as the description of a glyph sheet, and sets the rest as a
// text: in finite places, and every line within what was measured.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "fuzz/support/target.h"
#include "orvex_kit/private/glyph_sheet.h"

namespace {

using namespace orvex::kit;

void check(bool state) {
    if (!state)
        std::abort();
}

void check(const GlyphSheet& font, std::string_view text, const TextStyle& style) {
    const TextLayout layout = lay_out(font, text, style, 10.0f, 20.0f);
    check(std::isfinite(layout.extent.width) && std::isfinite(layout.extent.height));
    check(layout.extent.lines >= 1 && layout.extent.lines <= text.size() + 1);
    check(layout.extent.invalid_bytes <= text.size());
    check(layout.glyphs.size() <= 4 * text.size());
    for (const SetGlyph& set : layout.glyphs) {
        check(set.glyph != nullptr);
        check(std::isfinite(set.left) && set.line_top >= 20.0f);
        check(set.line_top < 20.0f + std::max(layout.extent.height, 1.0f));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view all(reinterpret_cast<const char*>(data), size);
    const std::string_view description = all.substr(0, all.find('\0'));
    const std::string_view text = all.substr(std::min(description.size() + 1, all.size()));
    GlyphSheet font;
    read_bm_font(description, font);
    if (!(font.line_height > 0.0f))
        font.line_height = 20.0f;
    TextStyle style;
    style.size = 20.0f;
    for (const float width : {0.0f, 1.0f, 100.0f})
        for (const Align align : {Align::left, Align::center, Align::right}) {
            style.wrap_width = width;
            style.align = align;
            check(font, text, style);
        }
    return 0;
}
