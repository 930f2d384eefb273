#include "orvex_formats/obj/private/obj_numbers.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <gtest/gtest.h>

namespace orvex_test {

namespace {

using orvex::formats::read_float;
using orvex::formats::read_int;

/// A number of text, which is read as a whole.
float number_of(const std::string& text) {
    float number = -77.0f;
    EXPECT_EQ(read_float(text.data(), text.data() + text.size(), number), text.data() + text.size())
        << text;
    return number;
}

class Random {
public:
    std::uint64_t next() {
        state ^= state << 13;
        state ^= state >> 7;
        state ^= state << 17;
        return state;
    }
    std::uint64_t below(std::uint64_t end) { return next() % end; }

private:
    std::uint64_t state = 88172645463325252u;
};

/// Compares with the library, to the last bit.
void compare(const char* begin, const char* end) {
    float ours = 0.0f, wanted = 0.0f;
    const char* const behind = read_float(begin, end, ours);
    const auto [library_end, error] = std::from_chars(begin, end, wanted);
    if (error == std::errc::result_out_of_range)
        return; // which has no result there
    if (behind != library_end ||
        std::bit_cast<std::uint32_t>(ours) != std::bit_cast<std::uint32_t>(wanted))
        ADD_FAILURE() << std::string(begin, end) << ": " << ours << ", not " << wanted;
    // Text behind it changes nothing.
    std::array<char, 96> longer{};
    const std::size_t size = static_cast<std::size_t>(end - begin);
    std::copy(begin, end, longer.begin());
    std::copy_n("/12345678", 9, longer.begin() + static_cast<std::ptrdiff_t>(size));
    float same = 0.0f;
    const char* const same_end = read_float(longer.data(), longer.data() + size + 9, same);
    if (same_end - longer.data() != behind - begin ||
        std::bit_cast<std::uint32_t>(same) != std::bit_cast<std::uint32_t>(ours))
        ADD_FAILURE() << std::string(begin, end) << " with text behind it: " << same;
}

TEST(ObjNumbers, are_those_of_the_library_to_the_last_bit) {
    Random random;
    std::array<char, 64> text{};
    for (int i = 0; i < 400000; ++i) {
        const std::uint64_t bits = random.next();
        const auto any = std::bit_cast<float>(static_cast<std::uint32_t>(bits));
        // Every float, with as many digits as tell it from others, and fewer.
        if (std::isfinite(any)) {
            const auto result = std::to_chars(text.data(), text.data() + text.size(), any);
            compare(text.data(), result.ptr);
        }
        const double usual = (static_cast<double>(bits >> 12) * 0x1p-52 - 0.5) * 200.0;
        const auto fixed = std::to_chars(text.data(), text.data() + text.size(), usual,
                                         std::chars_format::fixed, static_cast<int>(bits & 15));
        compare(text.data(), fixed.ptr);
        // In the middle between two floats, and beside it.
        const double middle = double(any) * (1.0 + 0x1p-24);
        const auto near = std::to_chars(text.data(), text.data() + text.size(), middle);
        compare(text.data(), near.ptr);
    }
    for (int i = 0; i < 100000; ++i) {
        const int size = std::snprintf(text.data(), text.size(), "%llu%llue%d",
                                       static_cast<unsigned long long>(random.next()),
                                       static_cast<unsigned long long>(random.below(1000000)),
                                       static_cast<int>(random.below(100)) - 70);
        compare(text.data(), text.data() + size);
    }
}

TEST(ObjNumbers, are_right_where_rounding_is_hard) {
    EXPECT_EQ(number_of("16777217"), 16777216.0f);
    EXPECT_EQ(number_of("16777219"), 16777220.0f);
    EXPECT_EQ(number_of("16777217.000000000000000000000000001"), 16777218.0f);
    EXPECT_EQ(number_of("1234567890123456789012345.678901234567"), 1.2345679e24f);
    EXPECT_EQ(number_of("1234567890123456789.1234567e-10"), 123456789.0f);
    EXPECT_EQ(number_of("1.00000005960464477539062"), 1.0f);
    EXPECT_EQ(number_of("1.000000059604644775390625"), 1.0f);
    EXPECT_EQ(number_of("1.0000000596046447753906250001"), 1.00000012f);
    EXPECT_EQ(number_of("0." + std::string(5000, '0') + "1e5001"), 1.0f);
    EXPECT_EQ(number_of(std::string(5000, '0') + "1" + std::string(10, '0') + "e-10"), 1.0f);
    EXPECT_EQ(number_of("3.4028235e38"), 3.4028235e38f);
    EXPECT_EQ(number_of("1e-45"), 1.4e-45f);
}

TEST(ObjNumbers, have_any_sign_point_and_exponent) {
    EXPECT_EQ(number_of("+1.5"), 1.5f);
    EXPECT_EQ(number_of("-.5"), -0.5f);
    EXPECT_EQ(number_of("5."), 5.0f);
    EXPECT_EQ(number_of("1E+2"), 100.0f);
    EXPECT_TRUE(std::signbit(number_of("-0")));
    EXPECT_EQ(number_of("1e400"), INFINITY);
    EXPECT_EQ(number_of("-1e99999999999"), -INFINITY);
    EXPECT_EQ(number_of("1e-400"), 0.0f);
    EXPECT_EQ(number_of("0e99999"), 0.0f);
    EXPECT_EQ(number_of("-Infinity"), -INFINITY);
    EXPECT_TRUE(std::isnan(number_of("NaN")));
}

TEST(ObjNumbers, are_whole_ones_of_any_length_whatever_stands_behind) {
    for (int length = 0; length < 20; ++length)
        for (int letter = -128; letter < 128; ++letter) {
            if (letter >= '0' && letter <= '9')
                continue;
            for (const char* const digits : {"1234567890123456789", "0000000000000000000",
                                             "0012003400560078009", "9999999999999999999"}) {
                const std::string number(digits, static_cast<std::size_t>(length));
                const std::string text = number + static_cast<char>(letter) + "87654321";
                std::int64_t ours = -7;
                const char* const behind = read_int(text.data(), text.data() + text.size(), ours);
                const bool is_sign = length == 0 && (letter == '-' || letter == '+');
                const std::int64_t wanted = is_sign       ? 87654321 * (letter == '-' ? -1 : 1)
                                            : length == 0 ? -7
                                                          : std::atoll(number.c_str());
                const std::ptrdiff_t end = is_sign ? 9 : length;
                if (length < 18)
                    EXPECT_EQ(ours, wanted) << text;
                EXPECT_EQ(behind - text.data(), end) << text;
            }
        }
}

TEST(ObjNumbers, end_where_they_end) {
    const auto rest = [](const std::string& text) {
        float number = 0.0f;
        return std::string(read_float(text.data(), text.data() + text.size(), number),
                           text.data() + text.size());
    };
    EXPECT_EQ(rest("1.5e"), "e");
    EXPECT_EQ(rest("1.5e+x"), "e+x");
    EXPECT_EQ(rest("1.2.3"), ".3");
    EXPECT_EQ(rest("1,5"), ",5");
    EXPECT_EQ(rest("--1"), "--1");
    EXPECT_EQ(rest("+-1"), "+-1");
    EXPECT_EQ(rest("."), ".");
    EXPECT_EQ(rest("e5"), "e5");
    EXPECT_EQ(rest(""), "");
    EXPECT_EQ(rest("0x10"), "x10");
}

TEST(ObjNumbers, that_are_whole_have_bounds) {
    const auto whole = [](const std::string& text) {
        std::int64_t number = -77;
        const char* const behind = read_int(text.data(), text.data() + text.size(), number);
        return std::to_string(number) + " " + std::to_string(behind - text.data());
    };
    EXPECT_EQ(whole("12/"), "12 2");
    EXPECT_EQ(whole("-1"), "-1 2");
    EXPECT_EQ(whole("+7 "), "7 2");
    EXPECT_EQ(whole("-"), "-77 0");
    EXPECT_EQ(whole("/"), "-77 0");
    EXPECT_EQ(whole("9223372036854775808"), std::to_string(INT64_MAX / 16) + " 19");
    EXPECT_EQ(whole("-" + std::string(100, '9')), std::to_string(-(INT64_MAX / 16)) + " 101");
}

} // namespace

} // namespace orvex_test
