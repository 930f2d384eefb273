#include "charset_metrics.h"

#include <cstring>

#include <gtest/gtest.h>

#include "builtin_font.h"

namespace orvex_test {

namespace {

TEST(CharsetMetrics, are_read_from_the_charset) {
    const CharsetMetrics metrics =
        metrics_of("<font><common lineHeight=\"20\" base=\"9\"/><chars count=\"3\">"
                   "<char id=\"65\" xadvance=\"7\"/><char id=\"255\" xadvance=\"3\" />"
                   "<char xadvance=\"5\" id=\"66\"/></chars></font>");
    EXPECT_EQ(metrics.line_height, 20);
    EXPECT_EQ(metrics.width_of("AAB"), 19);
    EXPECT_EQ(metrics.width_of("\xff"), 3);
    EXPECT_EQ(metrics.width_of(""), 0);
    EXPECT_EQ(metrics.width_of("unknown"), 0);
}

TEST(CharsetMetrics, take_rubbish_as_nothing) {
    for (const char* text : {"", "<", "<char ", "<char id=\"65\"", "<char id=\"65\">",
                             "<char id=\"-1\" xadvance=\"4\">", "<char id=\"256\" xadvance=\"4\">",
                             "<char id=\"99999999999999\" xadvance=\"4\">x",
                             "<common lineHeight=\"x\">", "<common lineHeight=>"}) {
        const CharsetMetrics metrics = metrics_of(text);
        EXPECT_EQ(metrics.line_height, 0) << text;
        EXPECT_EQ(metrics.width_of("A"), 0) << text;
    }
    EXPECT_EQ(metrics_of("<char id=\"65\" xadvance=\"-1\">").width_of("A"), 65535);
}

TEST(BuiltinFont, has_every_printable_character_of_ascii) {
    const CharsetMetrics metrics = metrics_of(builtin_charset);
    EXPECT_EQ(metrics.line_height, 44);
    for (std::size_t c = 0; c < 256; ++c)
        EXPECT_EQ(metrics.advances[c] > 0, c >= 32 && c < 127) << c;
}

TEST(BuiltinFont, has_a_sheet_in_png) {
    ASSERT_GT(builtin_sheet_size, 8u);
    EXPECT_EQ(std::memcmp(builtin_sheet, "\x89PNG\r\n\x1a\n", 8), 0);
}

} // namespace

} // namespace orvex_test
