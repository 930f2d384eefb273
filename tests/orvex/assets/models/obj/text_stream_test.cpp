#include "orvex/assets/models/obj/private/text_stream.h"

#include <bit>
#include <cstdint>
#include <cstdio>
#include <random>
#include <string>

#include <gtest/gtest.h>

namespace orvex_test {

using namespace orvex;
namespace {

/// The same text as a stream of the C library.
class CText {
public:
    explicit CText(const std::string& text)
        : file_(std::tmpfile()) {
        std::fwrite(text.data(), 1, text.size(), file_);
        std::rewind(file_);
    }
    ~CText() { std::fclose(file_); }
    CText(const CText&) = delete;
    CText& operator=(const CText&) = delete;

    std::FILE* file() const { return file_; }

private:
    std::FILE* file_;
};

/// Reads floats until one fails, by both readers, and compares values, results and places.
void expect_same_floats(const std::string& text) {
    const CText expected(text);
    TextStream stream(text.c_str(), text.size());
    for (;;) {
        float wanted = -77.0f;
        float value = -77.0f;
        const bool read = std::fscanf(expected.file(), "%f", &wanted) == 1;
        ASSERT_EQ(stream.read_float(value), read) << text;
        ASSERT_EQ(std::bit_cast<std::uint32_t>(value), std::bit_cast<std::uint32_t>(wanted))
            << text;
        ASSERT_EQ(stream.tell(), static_cast<std::size_t>(std::ftell(expected.file()))) << text;
        if (!read)
            return;
    }
}

void expect_same_ints(const std::string& text) {
    const CText expected(text);
    TextStream stream(text.c_str(), text.size());
    for (;;) {
        int wanted = -77;
        int value = -77;
        const bool read = std::fscanf(expected.file(), "%d", &wanted) == 1;
        ASSERT_EQ(stream.read_int(value), read) << text;
        ASSERT_EQ(value, wanted) << text;
        ASSERT_EQ(stream.tell(), static_cast<std::size_t>(std::ftell(expected.file()))) << text;
        if (!read)
            return;
    }
}

TEST(TextStreamTest, words_end_at_white_space_or511_characters) {
    const std::string text = " \t\n\v\f\rone " + std::string(600, 'x') + "\n";
    TextStream stream(text.c_str(), text.size());
    EXPECT_EQ(stream.read_word(), "one");
    EXPECT_EQ(stream.read_word(), std::string(511, 'x'));
    EXPECT_EQ(stream.read_word(), std::string(89, 'x'));
    EXPECT_EQ(stream.read_word(), "");
    EXPECT_EQ(stream.tell(), text.size());
}

TEST(TextStreamTest, lines_end_behind_their_line_feed_or_at_the_limit) {
    TextStream stream("ab\ncdef", 7);
    EXPECT_EQ(stream.read_line(10), "ab\n");
    EXPECT_EQ(stream.read_line(3), "cde");
    EXPECT_EQ(stream.read_line(3), "f");
    EXPECT_EQ(stream.read_line(3), "");
}

TEST(TextStreamTest, a_literal_is_taken_only_if_it_is_next) {
    TextStream stream("/ /", 3);
    EXPECT_TRUE(stream.match('/'));
    EXPECT_FALSE(stream.match('/'));
    EXPECT_EQ(stream.tell(), 1u);
}

TEST(TextStreamTest, reads_floats_as_the_c_library_does) {
    const char* rows[] = {"1 2.5 -3.25 +4",
                          "1e3 1E-3 1e+3",
                          ".5 5. -.5",
                          "0 -0 0.0e99",
                          "1.5.5",
                          "1e",
                          "1e+",
                          "1ex",
                          ".",
                          "-",
                          "+-1",
                          "nan inf -inf NAN(12)",
                          "infinity infinit",
                          "na",
                          "0x1p4 0x 0xg",
                          "16777217 33554433",
                          "0.1 0.2 0.3 123456789.123456789",
                          "3.4028235e38 3.4028236e38 1e39",
                          "1.17549435e-38 1e-40 1e-46",
                          "9007199254740993 18446744073709551616",
                          "0.00000000000000000000000000000000000001",
                          "1,5",
                          "",
                          "   ",
                          "1.00000005960464477539062",
                          "1.000000059604644775390625",
                          "1.0000000596046447754",
                          "7.038531e-26",
                          "1e00000000000000005 1e-00000000000000005",
                          "+0.1234567890123456789012345 -12345678901234567890.5e-10",
                          "-0.000000000000000000000000000000000000000000000000000001 -0e-400",
                          "123456789012345678901234567890e2x 123456789012345678901234567890x",
                          "12345678901234567890.e 1",
                          "12345678901234567890.123e+ 1",
                          "00000000000000000000000000000001.5",
                          "-1e-40 1.4e-45 0.7e-45 1.4012984643248171e-45"};
    for (const char* row : rows)
        expect_same_floats(row);
}

TEST(TextStreamTest, reads_ints_as_the_c_library_does) {
    const char* rows[] = {
        "1 -2 +3",
        "007",
        "2147483648 -2147483649 4294967297",
        "999999999999999999 9999999999999999999 -99999999999999999999",
        "9223372036854775807 9223372036854775808 -9223372036854775809 +99999999999999999999",
        "0000000000000000000000000012/-0000000000000000000000000034",
        "1/2",
        "- 1",
        "+",
        "0x10",
        "",
        "  ",
        "x",
        "1x",
        "--1"};
    for (const char* row : rows)
        expect_same_ints(row);
}

TEST(TextStreamTest, every_float_survives_every_number_of_digits) {
    std::mt19937 random(3);
    std::string text;
    for (int i = 0; i < 20000; ++i) {
        const float value = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
        char number[64];
        std::snprintf(number, sizeof number, "%.*e ", static_cast<int>(random() % 20),
                      static_cast<double>(value));
        text += number;
    }
    expect_same_floats(text);
}

TEST(TextStreamTest, decimals_near_half_way_are_rounded_once) {
    // The point between two floats, and the nearest decimals on both sides of it.
    std::mt19937 random(5);
    for (int i = 0; i < 2000; ++i) {
        const std::uint32_t bits = 0x3f000000u + static_cast<std::uint32_t>(random() % 0x02000000u);
        const double low = static_cast<double>(std::bit_cast<float>(bits));
        const double high = static_cast<double>(std::bit_cast<float>(bits + 1));
        char half[64];
        std::snprintf(half, sizeof half, "%.30f", (low + high) / 2);
        std::string text = half;
        for (std::size_t digits = 8; digits < text.size(); ++digits)
            expect_same_floats(text.substr(0, digits));
    }
}

TEST(TextStreamTest, random_characters_of_numbers_are_read_alike) {
    const std::string characters = "0123456789.eE+-xXnaifp \n";
    std::mt19937 random(9);
    for (int i = 0; i < 20000; ++i) {
        std::string text;
        for (unsigned length = 1 + random() % 12; length > 0; --length)
            text += characters[random() % characters.size()];
        expect_same_floats(text);
        expect_same_ints(text);
        if (testing::Test::HasFatalFailure())
            return;
    }
}

} // namespace
} // namespace orvex_test
