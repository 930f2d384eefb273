// Bakes the kit's font, at build time: a sheet of glyphs of a TrueType font, as the source of
// `builtin_font.h`. usage: bake_font face.ttf builtin_font.cpp
//
// A texel holds how far it lies from a glyph's edge, so that letters stay sharp at any size. What
// comes out depends on nothing but the face and this program.

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <libdeflate.h>

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wold-style-cast"
#pragma GCC diagnostic ignored "-Wdouble-promotion"
#pragma GCC diagnostic ignored "-Wunused-function"
#define STBTT_STATIC
#define STB_TRUETYPE_IMPLEMENTATION
#include <stb_truetype.h>
#pragma GCC diagnostic pop

namespace {

constexpr float em = 32.0f; // texels
constexpr int spread = 4;   // texels from an edge to where nothing tells its distance
constexpr int columns = 1024;
constexpr int edge = 128; // of 255: the value at an edge

/// Latin, Greek and Cyrillic with their marks, and signs that go with them, as far as the face
/// has them.
constexpr std::pair<int, int> ranges[] = {
    {0x20, 0x7e},     {0xa0, 0x24f},    {0x2c6, 0x2dd},   {0x300, 0x345},   {0x370, 0x3ff},
    {0x400, 0x52f},   {0x1e00, 0x1eff}, {0x1f00, 0x1fff}, {0x2010, 0x2027}, {0x202f, 0x203a},
    {0x2070, 0x208e}, {0x20a0, 0x20bf}, {0x2116, 0x2116}, {0x2122, 0x2122}, {0x2126, 0x2126},
    {0x2190, 0x2195}, {0x2202, 0x2202}, {0x2206, 0x2206}, {0x220f, 0x220f}, {0x2211, 0x2212},
    {0x221a, 0x221a}, {0x221e, 0x221e}, {0x222b, 0x222b}, {0x2248, 0x2248}, {0x2260, 0x2260},
    {0x2264, 0x2265}, {0x25ca, 0x25ca}, {0xfb01, 0xfb02}, {0xfffd, 0xfffd},
};

struct Glyph {
    int code = 0;
    int x = 0, y = 0, width = 0, height = 0; ///< on the sheet
    int left = 0, top = 0;                   ///< from the cursor, and from the base line
    float advance = 0.0f;
    std::vector<unsigned char> texels;
};

std::vector<Glyph> glyphs_of(const stbtt_fontinfo& face, float scale) {
    std::vector<Glyph> glyphs;
    for (const auto& [first, last] : ranges)
        for (int code = first; code <= last; ++code) {
            const int index = stbtt_FindGlyphIndex(&face, code);
            if (index == 0)
                continue;
            Glyph glyph;
            glyph.code = code;
            int advance = 0;
            stbtt_GetGlyphHMetrics(&face, index, &advance, nullptr);
            glyph.advance = static_cast<float>(advance) * scale;
            // A blank has no texels.
            unsigned char* const texels = stbtt_GetGlyphSDF(
                &face, scale, index, spread, edge, static_cast<float>(edge) / spread, &glyph.width,
                &glyph.height, &glyph.left, &glyph.top);
            if (texels)
                glyph.texels.assign(texels, texels + glyph.width * glyph.height);
            else
                glyph.width = glyph.height = 0;
            // An eighth of a texel is as near as an eye sees, and packs to half the bytes.
            for (unsigned char& texel : glyph.texels)
                texel = static_cast<unsigned char>(std::min((texel + 4) / 8 * 8, 255));
            stbtt_FreeSDF(texels, nullptr);
            glyphs.push_back(std::move(glyph));
        }
    return glyphs;
}

/// Puts them in rows, the highest first. @return the sheet
std::vector<unsigned char> sheet_of(std::vector<Glyph>& glyphs) {
    std::vector<Glyph*> order;
    order.reserve(glyphs.size());
    for (Glyph& glyph : glyphs)
        order.push_back(&glyph);
    std::stable_sort(order.begin(), order.end(),
                     [](const Glyph* a, const Glyph* b) { return a->height > b->height; });
    std::vector<unsigned char> sheet;
    int x = 0, y = 0, row = 0;
    for (Glyph* const glyph : order) {
        if (x + glyph->width > columns) {
            x = 0;
            y += row;
            row = 0;
        }
        row = std::max(row, glyph->height);
        sheet.resize(static_cast<std::size_t>(columns) * static_cast<std::size_t>(y + row));
        glyph->x = x;
        glyph->y = y;
        for (int line = 0; line < glyph->height; ++line)
            std::copy_n(glyph->texels.begin() + line * glyph->width, glyph->width,
                        sheet.begin() + (y + line) * columns + x);
        x += glyph->width;
    }
    return sheet;
}

std::vector<unsigned char> packed(const std::vector<unsigned char>& sheet) {
    constexpr int hardest = 12;
    const std::unique_ptr<libdeflate_compressor, void (*)(libdeflate_compressor*)> compressor(
        libdeflate_alloc_compressor(hardest), libdeflate_free_compressor);
    std::vector<unsigned char> bytes(
        libdeflate_zlib_compress_bound(compressor.get(), sheet.size()));
    bytes.resize(libdeflate_zlib_compress(compressor.get(), sheet.data(), sheet.size(),
                                          bytes.data(), bytes.size()));
    return bytes;
}

/// The source, with numbers that every reader takes for the same.
bool write(const char* path, const std::vector<Glyph>& glyphs, std::size_t sheet_size,
           const std::vector<unsigned char>& bytes, float ascent, float line_height) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path, "wb"), std::fclose);
    if (!file)
        return false;
    std::FILE* const out = file.get();
    std::fprintf(out,
                 "#include \"orvex_kit/private/builtin_font.h\"\n\n"
                 "namespace orvex::kit {\n\n"
                 "const int builtin_columns = %d;\nconst int builtin_rows = %d;\n"
                 "const float builtin_spread = %d.0f;\n"
                 "const float builtin_ascent = %af;\nconst float builtin_line_height = %af;\n\n"
                 "const BuiltinGlyph builtin_glyphs[] = {\n",
                 columns, static_cast<int>(sheet_size / columns), spread,
                 static_cast<double>(ascent), static_cast<double>(line_height));
    for (const Glyph& g : glyphs)
        std::fprintf(out, "{%#x, %d, %d, %d, %d, %d, %d, %af},\n", static_cast<unsigned>(g.code),
                     g.x, g.y, g.width, g.height, g.left, g.top, static_cast<double>(g.advance));
    std::fprintf(out,
                 "};\nconst std::size_t builtin_glyph_count = %zu;\n\n"
                 "const unsigned char builtin_sheet[] = {",
                 glyphs.size());
    for (std::size_t i = 0; i < bytes.size(); ++i)
        std::fprintf(out, "%s%d,", i % 24 == 0 ? "\n" : "", bytes[i]);
    std::fprintf(
        out, "\n};\nconst std::size_t builtin_sheet_bytes = %zu;\n\n} // namespace orvex::kit\n",
        bytes.size());
    return std::fflush(out) == 0 && std::ferror(out) == 0;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: bake_font face.ttf builtin_font.cpp\n");
        return 2;
    }
    std::ifstream file(argv[1], std::ios::binary);
    const std::vector<unsigned char> bytes{std::istreambuf_iterator<char>(file), {}};
    stbtt_fontinfo face;
    // Only the question where a face begins looks at what kind of file it is.
    constexpr std::size_t least = 16;
    const int begin = bytes.size() < least ? -1 : stbtt_GetFontOffsetForIndex(bytes.data(), 0);
    if (begin < 0 || !stbtt_InitFont(&face, bytes.data(), begin)) {
        std::fprintf(stderr, "bake_font: %s is no TrueType font\n", argv[1]);
        return 1;
    }
    const float scale = stbtt_ScaleForMappingEmToPixels(&face, em);
    int ascent = 0, descent = 0, gap = 0;
    stbtt_GetFontVMetrics(&face, &ascent, &descent, &gap);
    std::vector<Glyph> glyphs = glyphs_of(face, scale);
    const std::vector<unsigned char> sheet = sheet_of(glyphs);
    if (!write(argv[2], glyphs, sheet.size(), packed(sheet), static_cast<float>(ascent) * scale,
               static_cast<float>(ascent - descent) * scale)) {
        std::fprintf(stderr, "bake_font: can't write %s\n", argv[2]);
        return 1;
    }
    return 0;
}
