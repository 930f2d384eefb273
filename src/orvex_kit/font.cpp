#include "orvex_kit/font.h"

#include <cstdio>
#include <fstream>
#include <iterator>
#include <utility>

#include <orvex/overlays/font.h>

#include "orvex_kit/files.h"
#include "orvex_kit/private/builtin_font.h"
#include "orvex_kit/private/glyph_sheet.h"
#include "orvex_kit/ref.h"

namespace orvex::kit {

std::string code_point_name(char32_t code) {
    char name[16];
    std::snprintf(name, sizeof name, "U+%04X", static_cast<unsigned>(code));
    return name;
}

namespace {

std::shared_ptr<const GlyphSheet> make_builtin() {
    auto font = std::make_shared<GlyphSheet>();
    font->line_height = builtin_line_height;
    font->sheet_width = static_cast<float>(builtin_columns);
    font->sheet_height = static_cast<float>(builtin_rows);
    font->spread = builtin_spread;
    for (std::size_t i = 0; i < builtin_glyph_count; ++i) {
        const BuiltinGlyph& g = builtin_glyphs[i];
        font->glyphs[g.code] = {float(g.x),      float(g.y),    float(g.width),
                                float(g.height), float(g.left), builtin_ascent + float(g.top),
                                g.advance};
    }
    return font;
}

} // namespace

Font::Font() {
    static const std::shared_ptr<const GlyphSheet> builtin = make_builtin();
    data = builtin;
}

Font::Font(const std::string& path) {
    why = mistake_in_reading(path);
    if (!why.empty())
        return;
    std::ifstream file(path, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    auto font = std::make_shared<GlyphSheet>();
    read_bm_font(text, *font);
    // The engine's reader knows what is XML.
    const Ref<orvex::Font> reader = make<orvex::Font>();
    if (!reader->bm_load_charset_from_memory(text.c_str()) || !(font->line_height > 0.0f)) {
        why = path + ": no BMFont XML with a line height";
        return;
    }
    font->sheet = folder_of(path) + reader->bm_get_charset_image_filename();
    sources = {path, font->sheet};
    data = std::move(font);
}

TextExtent Font::measure(const std::string& text, const TextStyle& style) const {
    return data ? lay_out(*data, text, style, 0.0f, 0.0f).extent : TextExtent{};
}

} // namespace orvex::kit
