#include "orvex/overlays/private/bm_charset_reader.h"

#include <string>

#include <gtest/gtest.h>

namespace orvex_test {

using namespace orvex;
namespace {

std::unique_ptr<BMCharset> read(const std::string& text) {
    return read_bm_charset(text.c_str());
}

/// A root around these elements.
std::unique_ptr<BMCharset> read_elements(const std::string& elements) {
    return read("<font>" + elements + "</font>");
}

const char* const whole_file = R"(<?xml version="1.0"?>
<!-- made by hand -->
<font>
  <info face="Test" size="32" padding="1,2,3,4" spacing="5,6"/>
  <common lineHeight="38" base="26" scaleW="512" scaleH="256" pages="1" packed="0"/>
  <pages>
    <page id="0" file="sheet.png"/>
    <page id="1" file="second.png"/>
  </pages>
  <chars count="2">
    <char id="65" x="10" y="20" width="30" height="40" xoffset="1" yoffset="2" xadvance="31" page="3"
          chnl="15"/>
    <char id="66" x="11" y="21" width="31" height="41" xoffset="2" yoffset="3" xadvance="32"
          page="0"/>
  </chars>
  <kernings count="1">
    <kerning first="65" second="66" amount="-7"/>
  </kernings>
</font>
)";

TEST(BMCharset, is_zero_by_default) {
    const BMCharset charset;
    EXPECT_EQ(charset.line_height, 0);
    EXPECT_EQ(charset.base, 0);
    EXPECT_EQ(charset.scale_w, 0);
    EXPECT_EQ(charset.scale_h, 0);
    EXPECT_EQ(charset.pages, 0);
    EXPECT_STREQ(charset.image_filename, "");
    for (const BMCharDescriptor& c : charset.chars)
        EXPECT_EQ(c.x + c.y + c.width + c.height + c.xoffset + c.yoffset + c.xadvance + c.page, 0);
}

std::string attributes(int count) {
    std::string text;
    for (int i = 0; i < count; ++i)
        text += " a" + std::to_string(i) + "='>'";
    return text;
}

TEST(BMCharset, is_refused_for_an_element_of_endless_attributes) {
    EXPECT_NE(read_elements("<info" + attributes(256) + "/>"), nullptr);
    EXPECT_EQ(read_elements("<info" + attributes(257) + "/>"), nullptr);
    EXPECT_EQ(read_elements("<info" + attributes(60000) + "/>"), nullptr);
    EXPECT_EQ(read("<font" + attributes(60000)), nullptr);
    EXPECT_EQ(read("<font" + attributes(60000) + " a='"), nullptr);
    EXPECT_EQ(read("<!-- > --><!DOCTYPE x><?x?><font><![CDATA[>]]><a" + attributes(60000) + "/>"),
              nullptr);
    const std::string harmless = "<a" + attributes(600) + "/>";
    EXPECT_NE(read("<?x " + harmless + "?><!--" + harmless + "--><font><![CDATA[" + harmless +
                   "]]></font>"),
              nullptr);
}

// AddressSanitizer's checks of strings look at the rest of the file for each element.
#if defined(__SANITIZE_ADDRESS__)
constexpr int many = 2000;
#else
constexpr int many = 400000;
#endif

TEST(BMCharset, is_read_with_as_many_characters_as_there_are) {
    std::string chars;
    for (int i = 0; i < many; ++i)
        chars += "<char id=\"" + std::to_string(i % 256) + "\" x=\"7\"/>";
    const auto charset = read_elements("<chars>" + chars + "</chars>");
    ASSERT_NE(charset, nullptr);
    EXPECT_EQ(charset->chars[255].x, 7);
}

TEST(BMCharset, is_read_whole_from_a_file_with_kernings) {
    const auto charset = read(whole_file);
    ASSERT_NE(charset, nullptr);
    EXPECT_EQ(charset->line_height, 38);
    EXPECT_EQ(charset->base, 26);
    EXPECT_EQ(charset->scale_w, 512);
    EXPECT_EQ(charset->scale_h, 256);
    EXPECT_EQ(charset->pages, 0) << "the number of pages isn't read";
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(charset->padding[i], i + 1);
    EXPECT_EQ(charset->spacing[0], 5);
    EXPECT_EQ(charset->spacing[1], 6);
    EXPECT_STREQ(charset->image_filename, "sheet.png");

    const BMCharDescriptor& a = charset->chars['A'];
    EXPECT_EQ(a.x, 10);
    EXPECT_EQ(a.y, 20);
    EXPECT_EQ(a.width, 30);
    EXPECT_EQ(a.height, 40);
    EXPECT_EQ(a.xoffset, 1);
    EXPECT_EQ(a.yoffset, 2);
    EXPECT_EQ(a.xadvance, 31) << "kernings change nothing";
    EXPECT_EQ(a.page, 3);
    EXPECT_EQ(charset->chars['B'].xadvance, 32);
    EXPECT_EQ(charset->chars['C'].xadvance, 0);
}

TEST(BMCharset, may_have_a_root_of_any_name) {
    const auto charset = read("<whatever><common base='7'/></whatever>");
    ASSERT_NE(charset, nullptr);
    EXPECT_EQ(charset->base, 7);
}

TEST(BMCharset, reads_below_the_first_root_only) {
    const auto charset = read("<a><common base='7'/></a><b><common base='8'/></b>");
    ASSERT_NE(charset, nullptr);
    EXPECT_EQ(charset->base, 7);
}

TEST(BMCharset, passes_over_unknown_elements_and_elements_that_lie_deeper) {
    const auto charset = read_elements("<common><common base='1'/></common><colours base='2'/>"
                                       "<Common base='3'/><commons base='4'/><commo base='5'/>"
                                       "text<chars><glyph id='65' x='1'/><char id='66' x='2'/>"
                                       "<group><char id='67' x='3'/></group></chars>");
    ASSERT_NE(charset, nullptr);
    EXPECT_EQ(charset->base, 0);
    EXPECT_EQ(charset->chars[65].x, 0);
    EXPECT_EQ(charset->chars[66].x, 2);
    EXPECT_EQ(charset->chars[67].x, 0);
}

TEST(BMCharset, is_refused_when_there_is_nothing_to_parse) {
    EXPECT_EQ(read_bm_charset(nullptr), nullptr);
    for (const char* text :
         {"", "   ", "no xml", "<font>", "<font></fnt>", "<font a=></font>", "<font a='1></font>",
          "<?xml version='1.0'?>", "<!-- a comment -->", "<!DOCTYPE font>", "{\"font\": 1}",
          "\x89PNG\r\n\x1a\n", "<font><!-- open </font>", "</font>"})
        EXPECT_EQ(read(text), nullptr) << text;
}

TEST(BMCharset, is_refused_when_elements_are_nested_without_end) {
    std::string deep;
    for (int i = 0; i < 100000; ++i)
        deep += "<a>";
    EXPECT_EQ(read(deep), nullptr);
}

TEST(BMCharset, ends_at_the_zero_byte) {
    const auto charset = read_bm_charset("<font><common base='3'/></font>\0<font");
    ASSERT_NE(charset, nullptr);
    EXPECT_EQ(charset->base, 3);
}

TEST(BMCharset, of_an_empty_root_is_all_zero) {
    const auto charset = read("<font/>");
    ASSERT_NE(charset, nullptr);
    EXPECT_EQ(charset->scale_w, 0);
    EXPECT_STREQ(charset->image_filename, "");
}

TEST(BMCharset, keeps_ids_0_to_255_and_drops_the_rest) {
    const auto charset = read_elements("<chars><char id='0' x='1'/><char id='255' x='2'/>"
                                       "<char id='256' x='3'/><char id='300' x='4'/>"
                                       "<char id='-1' x='5'/><char id='-2147483648' x='6'/>"
                                       "<char id='2147483647' x='7'/></chars>");
    ASSERT_NE(charset, nullptr);
    EXPECT_EQ(charset->chars[0].x, 1);
    EXPECT_EQ(charset->chars[255].x, 2);
    for (int id = 1; id < 255; ++id)
        EXPECT_EQ(charset->chars[id].x, 0) << id;
}

TEST(BMCharset, takes_a_char_without_a_readable_id_as_0) {
    const auto missing = read_elements("<chars><char x='9'/></chars>");
    EXPECT_EQ(missing->chars[0].x, 9);
    const auto rubbish = read_elements("<chars><char id='A' x='8'/></chars>");
    EXPECT_EQ(rubbish->chars[0].x, 8);
}

TEST(BMCharset, keeps_what_an_unreadable_attribute_would_replace) {
    const auto charset =
        read_elements("<common base='3' lineHeight='4' scaleW='5' scaleH='6'/>"
                      "<common base='x' lineHeight='' scaleW='-'/>"
                      "<chars><char id='65' x='1' y='2' width='3' height='4' xoffset='5'"
                      " yoffset='6' xadvance='7' page='8'/><char id='65' x='q' page='9'/></chars>");
    ASSERT_NE(charset, nullptr);
    EXPECT_EQ(charset->base, 3);
    EXPECT_EQ(charset->line_height, 4);
    EXPECT_EQ(charset->scale_w, 5);
    EXPECT_EQ(charset->scale_h, 6);
    EXPECT_EQ(charset->chars[65].x, 1);
    EXPECT_EQ(charset->chars[65].xadvance, 7);
    EXPECT_EQ(charset->chars[65].page, 9);
}

TEST(BMCharset, reads_negative_offsets_as_very_large_ones) {
    const auto charset =
        read_elements("<chars><char id='106' xoffset='-1' yoffset='-2' xadvance='65537'/></chars>");
    ASSERT_NE(charset, nullptr);
    EXPECT_EQ(charset->chars[106].xoffset, 65535);
    EXPECT_EQ(charset->chars[106].yoffset, 65534);
    EXPECT_EQ(charset->chars[106].xadvance, 1) << "16 bits are kept";
}

TEST(BMCharset, reads_a_line_height_of_32_bits) {
    const auto charset = read_elements("<common lineHeight='-100000' base='70000'/>");
    ASSERT_NE(charset, nullptr);
    EXPECT_EQ(charset->line_height, -100000);
    EXPECT_EQ(charset->base, 70000 - 65536);
}

TEST(BMCharset, takes_as_much_of_padding_and_spacing_as_can_be_read) {
    const auto none = read_elements("<info padding='x' spacing=''/>");
    EXPECT_EQ(none->padding[0], 0);
    EXPECT_EQ(none->spacing[0], 0);

    const auto some = read_elements("<info padding='1, 2,x,4' spacing='-7;8'/>");
    EXPECT_EQ(some->padding[0], 1);
    EXPECT_EQ(some->padding[1], 2);
    EXPECT_EQ(some->padding[2], 0);
    EXPECT_EQ(some->padding[3], 0);
    EXPECT_EQ(some->spacing[0], -7);
    EXPECT_EQ(some->spacing[1], 0);

    const auto missing = read_elements("<info spacing='1,2'/><info padding='3,4,5,6'/>");
    EXPECT_EQ(missing->spacing[1], 2);
    EXPECT_EQ(missing->padding[3], 6);
}

TEST(BMCharset, keeps_the_file_of_the_first_pages) {
    const auto charset = read_elements("<pages><page file='one.png'/></pages>"
                                       "<pages><page file='two.png'/></pages>");
    EXPECT_STREQ(charset->image_filename, "one.png");
}

TEST(BMCharset, takes_the_next_pages_while_there_is_no_file) {
    const auto charset =
        read_elements("<pages/><pages><page/></pages><pages><page file=''/></pages>"
                      "<pages><sheet file='no.png'/><page file='neither.png'/></pages>"
                      "<pages>text<page file='three.png'/></pages>");
    ASSERT_NE(charset, nullptr) << "whatever comes first in pages";
    EXPECT_STREQ(charset->image_filename, "three.png");
}

TEST(BMCharset, cuts_a_file_name_at_1023_characters) {
    const std::string name(2000, 'n');
    const auto charset = read_elements("<pages><page file='" + name + "'/></pages>");
    ASSERT_NE(charset, nullptr);
    EXPECT_EQ(std::string(charset->image_filename), std::string(1023, 'n'));

    const std::string fits(1023, 'f');
    const auto whole = read_elements("<pages><page file='" + fits + "'/></pages>");
    EXPECT_EQ(std::string(whole->image_filename), fits);
}

TEST(BMCharset, resolves_entities_and_keeps_blanks_in_the_file_name) {
    const auto charset = read_elements("<pages><page file=' a &amp; b&#46;png '/></pages>");
    ASSERT_NE(charset, nullptr);
    EXPECT_STREQ(charset->image_filename, " a & b.png ");
}

TEST(BMCharset, has_an_empty_glyph_for_every_byte_from_128_up) {
    const auto charset = std::make_unique<BMCharset>();
    for (BMCharDescriptor& descriptor : charset->chars)
        descriptor.width = 1;
    for (int c = -128; c < 128; ++c)
        EXPECT_EQ(charset->glyph(static_cast<signed char>(c)).width, c < 0 ? 0 : 1) << c;
    EXPECT_EQ(&charset->glyph('A'), &charset->chars['A']);
}

} // namespace
} // namespace orvex_test
