#include "orvex_kit/font.h"

#include <cmath>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orvex_kit/private/glyph_sheet.h"
#include "orvex_kit/private/utf8.h"
#include "tests/support/command.h"
#include "tests/support/heap.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

namespace {

using namespace orvex::kit;

using Codes = std::vector<char32_t>;

TEST(Utf8, is_taken_apart_into_code_points) {
    std::size_t invalid = 9;
    EXPECT_EQ(code_points_of("aß€𝄞", invalid), U"aß€𝄞");
    EXPECT_EQ(invalid, 0u);
    EXPECT_EQ(code_points_of("", invalid), U"");
    EXPECT_EQ(code_points_of(std::string_view("a\0b", 3), invalid), std::u32string(U"a\0b", 3));
    // The first and the last of each length.
    EXPECT_EQ(code_points_of("\x7f\xc2\x80\xdf\xbf\xe0\xa0\x80\xef\xbf\xbf\xf0\x90\x80\x80\xf4\x8f"
                             "\xbf\xbf",
                             invalid),
              U"\x7f\x80\x7ff\x800\xffff\x10000\x10ffff");
    EXPECT_EQ(invalid, 0u);
}

TEST(Utf8, has_a_replacement_for_each_byte_that_is_none_of_it) {
    struct Row {
        const char* bytes;
        std::u32string codes;
        std::size_t invalid;
    };
    for (const Row& row : {
             Row{"a\x80z", U"a\xfffdz", 1},                           // a follower alone
             Row{"\xc3", U"\xfffd", 1},                               // the end too early
             Row{"\xc3z", U"\xfffdz", 1},                             // no follower
             Row{"\xe2\x82z", U"\xfffd\xfffdz", 2},                   // one too few
             Row{"\xc0\x80", U"\xfffd\xfffd", 2},                     // longer than need be
             Row{"\xe0\x9f\xbf", U"\xfffd\xfffd\xfffd", 3},           // likewise
             Row{"\xf0\x8f\xbf\xbf", U"\xfffd\xfffd\xfffd\xfffd", 4}, // likewise
             Row{"\xed\xa0\x80", U"\xfffd\xfffd\xfffd", 3},           // half of a pair
             Row{"\xf4\x90\x80\x80", U"\xfffd\xfffd\xfffd\xfffd", 4}, // beyond the last
             Row{"\xff\xfe", U"\xfffd\xfffd", 2},
         }) {
        std::size_t invalid = 0;
        EXPECT_EQ(code_points_of(row.bytes, invalid), row.codes);
        EXPECT_EQ(invalid, row.invalid);
    }
    EXPECT_EQ(Font().measure("a\xff\xff").invalid_bytes, 2u);
    EXPECT_EQ(Font().measure("\xff").missing, Codes{}) << "there is a glyph for those";
}

TEST(CodePoints, have_names) {
    EXPECT_EQ(code_point_name(U'A'), "U+0041");
    EXPECT_EQ(code_point_name(0x1f600), "U+1F600");
}

TEST(BuiltinFont, has_latin_greek_and_cyrillic) {
    const Font font;
    ASSERT_TRUE(font);
    EXPECT_EQ(font.reason(), "");
    EXPECT_TRUE(font.files().empty());
    std::string text;
    for (char c = ' '; c <= '~'; ++c)
        text += c;
    text += "ÀÿĀſǍǾẄẽỳ‘’“”„–—…€№™←→−∞≤≥ﬁ";
    text += "ΆΈΩωάϋἀᾼ";
    text += "ЁАЯаяѐџҐґӘԱ";
    EXPECT_EQ(font.measure(text).missing, Codes{U'Ա'}) << "Armenian isn't promised";
}

TEST(BuiltinFont, measures_a_text) {
    const Font font;
    const TextExtent one = font.measure("n");
    EXPECT_EQ(one.lines, 1u);
    EXPECT_EQ(one.height, 24.0f);
    EXPECT_GT(one.width, 8.0f);
    EXPECT_LT(one.width, 20.0f);
    EXPECT_FLOAT_EQ(font.measure("nnnn").width, 4 * one.width);
    TextStyle large;
    large.size = 240.0f;
    EXPECT_FLOAT_EQ(font.measure("n", large).width, 10 * one.width);
    EXPECT_LT(font.measure("i").width, one.width);
    EXPECT_FLOAT_EQ(font.measure("\t").width, 0.0f) << "blanks at the end take no room";
    EXPECT_FLOAT_EQ(font.measure("\tn").width, font.measure("    n").width);
    EXPECT_FLOAT_EQ(font.measure("a\r\nn").width, font.measure("a\nn").width);
}

TEST(BuiltinFont, counts_lines) {
    const Font font;
    EXPECT_EQ(font.measure("").lines, 1u);
    EXPECT_EQ(font.measure("").width, 0.0f);
    const TextExtent three = font.measure("a\n\nlonger");
    EXPECT_EQ(three.lines, 3u);
    EXPECT_EQ(three.height, 72.0f);
    EXPECT_FLOAT_EQ(three.width, font.measure("longer").width);
    TextStyle spaced;
    spaced.size = 10.0f;
    spaced.line_spacing = 1.5f;
    EXPECT_FLOAT_EQ(font.measure("a\nb\nc", spaced).height, 40.0f);
}

/// A font of glyphs that are 10 texels wide, in lines of 20.
GlyphSheet sheet_of(const std::string& letters) {
    GlyphSheet font;
    font.line_height = 20.0f;
    font.sheet_width = font.sheet_height = 64.0f;
    for (const char c : letters)
        font.glyphs[static_cast<char32_t>(c)] = {0, 0, 8, 16, 1, 2, 10};
    font.glyphs[U' '] = {0, 0, 0, 0, 0, 0, 10};
    return font;
}

/// How long the lines are, in letters and blanks, and where they begin.
struct Lines {
    std::vector<int> lengths;
    std::vector<float> begins;
};

Lines lines_of(const std::string& text, const TextStyle& style) {
    const TextLayout layout = lay_out(sheet_of("abcdefghij"), text, style, 0.0f, 0.0f);
    Lines lines;
    float top = -1.0f;
    for (const SetGlyph& glyph : layout.glyphs) {
        if (glyph.line_top > top) {
            lines.lengths.push_back(0);
            lines.begins.push_back(glyph.left);
        }
        top = glyph.line_top;
        ++lines.lengths.back();
    }
    EXPECT_GE(layout.extent.lines, lines.lengths.size());
    return lines;
}

TextStyle wrapped_at(float width) {
    TextStyle style;
    style.size = 20.0f;
    style.wrap_width = width;
    return style;
}

TEST(Wrapping, breaks_lines_at_blanks) {
    using Lengths = std::vector<int>;
    EXPECT_EQ(lines_of("ab cd ef", wrapped_at(0)).lengths, Lengths({8}));
    EXPECT_EQ(lines_of("ab cd ef", wrapped_at(80)).lengths, Lengths({8}));
    EXPECT_EQ(lines_of("ab cd ef", wrapped_at(79)).lengths, Lengths({6, 2}));
    EXPECT_EQ(lines_of("ab cd ef", wrapped_at(50)).lengths, Lengths({6, 2}));
    EXPECT_EQ(lines_of("ab cd ef", wrapped_at(49)).lengths, Lengths({3, 3, 2}));
    EXPECT_EQ(lines_of("ab cd\nef", wrapped_at(50)).lengths, Lengths({5, 2}));
    EXPECT_EQ(lines_of("ab    cd", wrapped_at(40)).lengths, Lengths({6, 2}));
}

TEST(Wrapping, breaks_within_words_that_are_longer_than_a_line) {
    using Lengths = std::vector<int>;
    EXPECT_EQ(lines_of("abcdefgh", wrapped_at(30)).lengths, Lengths({3, 3, 2}));
    EXPECT_EQ(lines_of("a bcdefgh", wrapped_at(30)).lengths, Lengths({2, 3, 3, 1}));
    EXPECT_EQ(lines_of("abc", wrapped_at(1)).lengths, Lengths({1, 1, 1}))
        << "a letter a line at least";
}

TEST(Wrapping, measures_lines_without_the_blanks_at_their_ends) {
    const GlyphSheet font = sheet_of("abcdef");
    const TextExtent extent = lay_out(font, "ab cd ef", wrapped_at(50), 0, 0).extent;
    EXPECT_EQ(extent.width, 50.0f);
    EXPECT_EQ(extent.lines, 2u);
    EXPECT_EQ(extent.height, 40.0f);
    EXPECT_EQ(lay_out(font, "ab   ", wrapped_at(0), 0, 0).extent.width, 20.0f);
}

TEST(Alignment, moves_each_line_in_the_room) {
    using Begins = std::vector<float>;
    TextStyle style = wrapped_at(0);
    EXPECT_EQ(lines_of("abcd\nab\nabc ", style).begins, Begins({0, 0, 0}));
    style.align = Align::center;
    EXPECT_EQ(lines_of("abcd\nab\nabc ", style).begins, Begins({0, 10, 5}));
    style.align = Align::right;
    EXPECT_EQ(lines_of("abcd\nab\nabc ", style).begins, Begins({0, 20, 10}));
    style.wrap_width = 100;
    EXPECT_EQ(lines_of("abcd\nab\nabc ", style).begins, Begins({60, 80, 70}));
}

TEST(MissingGlyphs, are_named_once_in_their_order) {
    const TextExtent extent = Font().measure("漢a字漢😀");
    EXPECT_EQ(extent.missing, (Codes{U'漢', U'字', U'😀'}));
    EXPECT_FLOAT_EQ(extent.width, Font()
                                      .measure("\xef\xbf\xbd"
                                               "a\xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbd")
                                      .width)
        << "each stands as U+FFFD";
    EXPECT_EQ(Font().measure("\a").missing, Codes{U'\a'});
}

TEST(MissingGlyphs, are_question_marks_or_nothing_in_fonts_without_a_replacement) {
    EXPECT_EQ(lay_out(sheet_of("a?"), "aba", {}, 0, 0).glyphs.size(), 3u);
    EXPECT_EQ(lay_out(sheet_of("a"), "aba", {}, 0, 0).glyphs.size(), 2u);
}

TEST(Texts, of_no_size_take_no_room) {
    for (const float size : {0.0f, -1.0f, NAN, INFINITY}) {
        TextStyle style;
        style.size = size;
        const TextExtent extent = Font().measure("a", style);
        EXPECT_EQ(extent.lines, 0u);
        EXPECT_EQ(extent.width, 0.0f);
    }
    TextStyle style;
    style.line_spacing = NAN;
    EXPECT_EQ(Font().measure("a", style).lines, 0u);
}

/// What the program says that bakes the built-in font, and how it ends.
std::string said_by_bake_font(const std::string& arguments) {
    return output_of(ORVEX_BAKE_FONT " " + arguments);
}
const std::string exit_1 = "exit " + std::to_string(1 << 8);
const std::string exit_2 = "exit " + std::to_string(2 << 8);

TEST(BakeFont, tells_what_it_wants_and_what_it_cant_read_or_write) {
    const TempDir folder;
    const std::string face = ORVEX_FONT_FACE;
    const std::string text = folder.write("face.ttf", std::string(200, 't'));
    EXPECT_EQ(said_by_bake_font(face), "usage: bake_font face.ttf builtin_font.cpp\n" + exit_2);
    EXPECT_EQ(said_by_bake_font(text + " " + folder.file("a.cpp")),
              "bake_font: " + text + " is no TrueType font\n" + exit_1);
    EXPECT_EQ(said_by_bake_font(folder.write("short.ttf", "OTTO") + " " + folder.file("a.cpp")),
              "bake_font: " + folder.file("short.ttf") + " is no TrueType font\n" + exit_1);
    EXPECT_EQ(said_by_bake_font("/none.ttf " + folder.file("a.cpp")),
              "bake_font: /none.ttf is no TrueType font\n" + exit_1);
    EXPECT_EQ(said_by_bake_font(face + " /none/a.cpp"),
              "bake_font: can't write /none/a.cpp\n" + exit_1);
    EXPECT_FALSE(std::filesystem::exists(folder.file("a.cpp")));
}

TEST(BakeFont, tells_that_the_end_of_its_source_found_no_room) {
    const TempDir folder;
    const std::string whole = folder.file("whole.cpp"), cut = folder.file("cut.cpp");
    const std::string face = ORVEX_FONT_FACE;
    ASSERT_EQ(said_by_bake_font(face + " " + whole), "");
    // A block less than all of it.
    const std::string blocks = std::to_string((std::filesystem::file_size(whole) - 1) / 512);
    EXPECT_EQ(output_of("trap '' XFSZ; ulimit -f " + blocks + "; " ORVEX_BAKE_FONT " " + face +
                        " " + cut),
              "bake_font: can't write " + cut + "\n" + exit_1);
}

TEST(FontFile, is_read_with_glyphs_of_any_code_point) {
    const TempDir folder;
    const std::string path = folder.write(
        "f.xml",
        "<?xml version='1.0'?>\n<!-- <char id=\"65\" xadvance=\"99\"/> --><font>"
        "<info spacing=\"3,1\"/><common lineHeight=\"20\" scaleW=\"64\" scaleH='32'/>"
        "<pages><page id=\"0\" file=\"f.png\"/></pages><chars count=\"3\">"
        "<char id = \"65\" xadvance=\"7\" x=\"1\"/><char id=\"8364\" xadvance='12' />"
        "<char xadvance=\"5\" id=\"32\"/><char id=\"-1\" xadvance=\"50\"/></chars></font>");
    const Font font(path);
    ASSERT_TRUE(font) << font.reason();
    EXPECT_EQ(font.files(), (std::vector<std::string>{path, folder.file("f.png")}));
    TextStyle style;
    style.size = 20.0f;
    EXPECT_EQ(font.measure("A", style).width, 7.0f);
    EXPECT_EQ(font.measure("A€A", style).width, 26.0f);
    EXPECT_EQ(font.measure("A A", style).width, 22.0f) << "a blank has the spacing behind it";
    EXPECT_EQ(font.measure("AB", style).missing, Codes{U'B'});
    style.size = 40.0f;
    EXPECT_EQ(font.measure("A", style).width, 14.0f);
}

TEST(FontFile, is_refused_with_its_reason) {
    const TempDir folder;
    EXPECT_EQ(Font("/none.xml").reason(), "/none.xml: No such file or directory");
    for (const char* const text :
         {"words", "<font>", "<font><common base=\"1\"/></font>",
          "<font><common lineHeight=\"0\"/></font>", "<font><common lineHeight=\"-4\"/></font>"}) {
        const std::string path = folder.write("bad.xml", text);
        const Font font(path);
        EXPECT_FALSE(font);
        EXPECT_EQ(font.reason(), path + ": no BMFont XML with a line height") << text;
        EXPECT_TRUE(font.files().empty());
        EXPECT_EQ(font.measure("a").lines, 0u);
    }
}

TEST(FontFile, may_hold_rubbish) {
    for (const char* const text :
         {"", "<", "<char", "<char ", "<char id", "<char id=", "<char id=\"", "<char id=\"65",
          "<!--", "<char id=\"99999999999999\" xadvance=\"4\">",
          "<char id=\"1114112\" xadvance=\"4\">", "<char id=65 xadvance=4>",
          "<common lineHeight=\"x\">", "<common lineHeight=>", "< >"}) {
        GlyphSheet font;
        read_bm_font(text, font);
        EXPECT_EQ(font.line_height, 0.0f) << text;
        for (const auto& [code, glyph] : font.glyphs)
            EXPECT_EQ(glyph.advance, 0.0f) << text;
    }
    GlyphSheet wild;
    read_bm_font("<char id=\"65\" xadvance=\"-2000000000\" x=\"2000000000\">", wild);
    EXPECT_EQ(wild.find(U'A')->advance, -32768.0f);
    EXPECT_EQ(wild.find(U'A')->x, 65535.0f);
}

TEST(Measuring, throws_nothing_but_bad_alloc_and_leaves_nothing_behind) {
    const Font font;
    const std::string text = "Words of several lines, 漢字\xff, which are measured\nonce more";
    TextStyle style;
    style.wrap_width = 100;
    const TextExtent wanted = font.measure(text, style);
    bool was_refused = false;
    for (unsigned long n = 0; n < 1000; ++n) {
        const long before = living_blocks();
        try {
            const RefuseArrays refusal({.granted = n, .refused = 1, .min_size = 1, .single = true});
            const TextExtent extent = font.measure(text, style);
            EXPECT_EQ(extent.width, wanted.width);
            break;
        } catch (const std::bad_alloc&) {
            was_refused = true;
        }
        EXPECT_EQ(living_blocks(), before) << n;
        ASSERT_LT(n, 900u);
    }
    EXPECT_TRUE(was_refused);
}

} // namespace

} // namespace orvex_test
