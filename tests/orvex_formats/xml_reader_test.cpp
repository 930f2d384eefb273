#include "orvex_formats/private/xml_reader.h"

#include <string>

#include <gtest/gtest.h>

#include "orvex_formats/private/refusal.h"

namespace orvex_test {

namespace {

using orvex::formats::XmlReader;

/// The elements of a text as "+a" and "-a", or why they aren't read.
std::string steps_of(const std::string& text) {
    std::string steps;
    try {
        XmlReader xml(text, "a.xml");
        for (auto step = xml.next(); step != XmlReader::Step::done; step = xml.next())
            steps += (step == XmlReader::Step::begin ? "+" : "-") + std::string(xml.name()) + " ";
    } catch (const orvex::formats::Refusal& refusal) {
        return refusal.what();
    }
    return steps;
}

TEST(XmlReader, goes_from_element_to_element) {
    EXPECT_EQ(steps_of("<?xml version='1.0'?>\n<!-- <x> --><a>text<b/><m:c x=\"1>2\" ></m:c >"
                       "<![CDATA[<d>]]></a>\n"),
              "+a +b -b +c -c -a ");
    EXPECT_EQ(steps_of("\xef\xbb\xbf<a/>"), "+a -a ");
    EXPECT_EQ(steps_of(""), "");
}

TEST(XmlReader, has_values_and_numbers_of_attributes) {
    const std::string text =
        "<a m:x='1.5' y = \"a &lt;&amp;&quot;&apos;&gt; &b;\" n='-7' z='1 2'/>";
    XmlReader xml(text, "a.xml");
    EXPECT_EQ(xml.next(), XmlReader::Step::begin);
    EXPECT_EQ(xml.number<float>("x"), 1.5f);
    EXPECT_EQ(xml.text("y"), "a <&\"'> &b;");
    EXPECT_EQ(xml.text("none"), "");
    EXPECT_EQ(xml.find("none"), nullptr);
    EXPECT_THROW(xml.number<std::uint32_t>("n"), orvex::formats::Refusal);
    EXPECT_THROW(xml.number<float>("z"), orvex::formats::Refusal);
    EXPECT_THROW(xml.number<float>("none"), orvex::formats::Refusal);
}

TEST(XmlReader, passes_over_an_element_with_all_that_it_has) {
    XmlReader xml("<a><b><b/><c><b></b></c></b><d/></a>", "a.xml");
    xml.next();
    xml.next();
    xml.skip();
    EXPECT_EQ(xml.next(), XmlReader::Step::begin);
    EXPECT_EQ(xml.name(), "d");
    xml.skip();
    EXPECT_EQ(xml.next(), XmlReader::Step::end);
    EXPECT_EQ(xml.name(), "a");
}

TEST(XmlReader, refuses_what_is_no_xml_with_its_place) {
    EXPECT_EQ(steps_of("<a>"), "a.xml, byte 3: the text is cut off");
    EXPECT_EQ(steps_of("<a><!-- "), "a.xml, byte 3: the text is cut off");
    EXPECT_EQ(steps_of("<a></b>"), "a.xml, byte 6: an end of another element than the last one");
    EXPECT_EQ(steps_of("</a>"), "a.xml, byte 3: an end of another element than the last one");
    EXPECT_EQ(steps_of("<>"), "a.xml, byte 1: no name of an element");
    EXPECT_EQ(steps_of("<a b>"), "a.xml, byte 4: an attribute without a value");
    EXPECT_EQ(steps_of("<a b=c>"), "a.xml, byte 5: a value without quotes");
    EXPECT_EQ(steps_of("<a b='c>"), "a.xml, byte 5: a value without quotes");
    EXPECT_EQ(steps_of("<a /b>"), "a.xml, byte 4: an element without an end");
    EXPECT_EQ(steps_of("<!DOCTYPE a>"), "a.xml, byte 0: definitions within the text aren't read");
}

} // namespace

} // namespace orvex_test
