#include "json_text.h"

#include <cstdlib>
#include <limits>

#include <gtest/gtest.h>

namespace orvex_test {

namespace {

std::string as_json(std::string_view value) {
    JsonText json;
    json.text(value);
    return json.take();
}

std::string as_json(float value) {
    JsonText json;
    json.number(value);
    return json.take();
}

TEST(JsonText, keeps_texts_that_are_utf8_and_replaces_other_bytes) {
    struct Row {
        std::string text, json;
    };
    for (const Row& row :
         {Row{"", "\"\"\n"}, Row{"a b/c", "\"a b/c\"\n"}, Row{"\"\\", "\"\\\"\\\\\"\n"},
          Row{std::string("\0\n\x1f\x7f", 4), "\"\\u0000\\u000a\\u001f\\u007f\"\n"},
          Row{"\xc3\xa4\xe2\x82\xac\xf0\x9f\x98\x80", "\"\xc3\xa4\xe2\x82\xac\xf0\x9f\x98\x80\"\n"},
          Row{"\xff", "\"\\ufffd\"\n"}, Row{"\x80x", "\"\\ufffdx\"\n"},
          Row{"\xc3", "\"\\ufffd\"\n"}, Row{"\xe2\x82x", "\"\\ufffd\\ufffdx\"\n"},
          // Longer than need be, a surrogate, and beyond the last character
          Row{"\xc0\xaf", "\"\\ufffd\\ufffd\"\n"},
          Row{"\xed\xa0\x80", "\"\\ufffd\\ufffd\\ufffd\"\n"},
          Row{"\xf4\x90\x80\x80", "\"\\ufffd\\ufffd\\ufffd\\ufffd\"\n"},
          Row{"\xe0\x80\x80", "\"\\ufffd\\ufffd\\ufffd\"\n"}})
        EXPECT_EQ(as_json(row.text), row.json);
}

TEST(JsonText, writes_numbers_that_read_back_the_same) {
    for (const float value :
         {0.0f, -0.0f, 1.0f, 0.1f, 1e30f, -1e-30f, 16777217.0f, std::numeric_limits<float>::max(),
          std::numeric_limits<float>::denorm_min()})
        EXPECT_EQ(std::strtof(as_json(value).c_str(), nullptr), value) << as_json(value);
    EXPECT_EQ(as_json(0.1f), "0.1\n");
    EXPECT_EQ(as_json(std::numeric_limits<float>::infinity()), "null\n");
    EXPECT_EQ(as_json(std::numeric_limits<float>::quiet_NaN()), "null\n");
}

TEST(JsonText, nests_objects_and_lists) {
    JsonText json;
    json.begin_object();
    json.key("none").begin_list();
    json.end();
    json.key("two").begin_list();
    json.number(std::size_t{1});
    json.begin_object();
    json.end();
    json.end();
    json.key("three").numbers({1, 2.5f, 3});
    json.key("nothing").null();
    json.end();
    EXPECT_EQ(json.take(), "{\n  \"none\": [],\n  \"two\": [\n    1,\n    {}\n  ],\n"
                           "  \"three\": [1, 2.5, 3],\n  \"nothing\": null\n}\n");
}

} // namespace
} // namespace orvex_test
