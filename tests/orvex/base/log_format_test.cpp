#include "orvex/base/private/log_format.h"

#include <cfenv>
#include <clocale>
#include <cmath>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "orvex/base/log.h"

namespace orvex_test {

using namespace orvex;
namespace {

/// The text, or "?" where the plain road isn't taken.
std::string plain(std::size_t size, const char* format, ...) {
    std::string buffer(size, '#');
    va_list arguments;
    va_start(arguments, format);
    const auto length = format_plainly(buffer.data(), size, format, arguments);
    va_end(arguments);
    if (!length)
        return "?";
    EXPECT_EQ(buffer[*length], '\0');
    return buffer.substr(0, *length);
}

std::string printed(const char* format, ...) {
    char buffer[4096];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(buffer, sizeof buffer, format, arguments);
    va_end(arguments);
    return buffer;
}

/// What both roads make of the same.
#define EXPECT_SAME(...) EXPECT_EQ(plain(4096, __VA_ARGS__), printed(__VA_ARGS__))

TEST(LogFormatTest, integers_are_written_as_by_printf) {
    for (const int value :
         {0, 1, -1, 42, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()})
        EXPECT_SAME("%d and %i and %u and %x", value, value, static_cast<unsigned>(value),
                    static_cast<unsigned>(value));
    EXPECT_SAME("%ld %lu %lx", -1l, ~0ul, 0xABCul);
    EXPECT_SAME("%lld %llu %llx", std::numeric_limits<long long>::min(), ~0ull, 0xDEFull);
    EXPECT_SAME("%zu", std::size_t{123456789012});
}

TEST(LogFormatTest, texts_and_characters_are_written_as_by_printf) {
    EXPECT_SAME("%s|%s|%c|100%%", "a mesh", "", 'x');
    EXPECT_SAME("no conversion");
    EXPECT_EQ(plain(16, "%s", static_cast<const char*>(nullptr)), "(null)");
    EXPECT_EQ(plain(1, "%s", ""), "");
}

TEST(LogFormatTest, fractions_are_written_as_by_printf) {
    for (const double value :
         {0.0, -0.0, 0.5, 1.5, 2.5, 0.125, 0.375, 1e-9, -1e-9, 0.9999999, 123456.789, 1e22,
          std::numeric_limits<double>::max(), std::numeric_limits<double>::denorm_min()})
        EXPECT_SAME("%f %.0f %.1f %.2f %.3f %.9f", value, value, value, value, value, value);
    std::mt19937_64 random(1);
    for (int i = 0; i < 2000; ++i) {
        const double value =
            std::ldexp(static_cast<double>(random() >> 11), static_cast<int>(random() % 120) - 110);
        EXPECT_SAME("%f %.0f %.3f", value, -value, value);
        // Halfway between two texts, but for what a double leaves.
        const double half = static_cast<double>(random() % 100000) / 200.0;
        EXPECT_SAME("%.2f", half);
    }
}

TEST(LogFormatTest, what_is_not_plain_is_left_to_printf) {
    EXPECT_EQ(plain(64, "%5d", 1), "?");
    EXPECT_EQ(plain(64, "%05d", 1), "?");
    EXPECT_EQ(plain(64, "%-5s", "a"), "?");
    EXPECT_EQ(plain(64, "%+d", 1), "?");
    EXPECT_EQ(plain(64, "%.3s", "abcd"), "?");
    EXPECT_EQ(plain(64, "%.*f", 3, 1.0), "?");
    EXPECT_EQ(plain(64, "%.12f", 1.0), "?");
    EXPECT_EQ(plain(64, "%hd", 1), "?");
    EXPECT_EQ(plain(64, "%g", 1.0), "?");
    EXPECT_EQ(plain(64, "%ls", L"a"), "?");
    EXPECT_EQ(plain(64, "%p", nullptr), "?");
    EXPECT_EQ(plain(64, "%f", std::nan("")), "?");
    EXPECT_EQ(plain(64, "%f", std::numeric_limits<double>::infinity()), "?");
    EXPECT_EQ(plain(64, "%c", '\0'), "?");
    const std::string cut = "cut off %";
    EXPECT_EQ(plain(64, cut.c_str()), "?");
    EXPECT_EQ(plain(64, (cut + "l").c_str()), "?");
    EXPECT_EQ(plain(64, (cut + ".").c_str()), "?");
    EXPECT_EQ(plain(64, (cut + ".3").c_str()), "?");
}

TEST(LogFormatTest, what_does_not_fit_is_left_to_printf) {
    EXPECT_EQ(plain(5, "abcd"), "abcd");
    EXPECT_EQ(plain(4, "abcd"), "?");
    EXPECT_EQ(plain(5, "a%d", 123), "a123");
    EXPECT_EQ(plain(4, "a%d", 123), "?");
    EXPECT_EQ(plain(3, "a%d", 123), "?");
    EXPECT_EQ(plain(4, "%s", "abcd"), "?");
    EXPECT_EQ(plain(5, "%.2f", 1.25), "1.25");
    EXPECT_EQ(plain(4, "%.2f", 1.25), "?");
    EXPECT_EQ(plain(1, "%%"), "?");
    EXPECT_EQ(plain(1, "%c", 'a'), "?");
}

TEST(LogFormatTest, another_rounding_leaves_fractions_to_printf) {
    ASSERT_EQ(std::fesetround(FE_UPWARD), 0);
    const std::string text = plain(64, "%.1f", 0.25);
    std::fesetround(FE_TONEAREST);
    EXPECT_EQ(text, "?");
    EXPECT_EQ(plain(64, "%.1f", 0.25), "0.2");
}

TEST(LogFormatTest, a_log_goes_on_with_printf_where_the_plain_road_ends) {
    std::string line;
    Log log;
    log.enable();
    log.set_trace_callback(
        [](const char* text, void* user_data) { *static_cast<std::string*>(user_data) = text; },
        &line);
    log.simple_tracef(LOG_LEVEL_INFO, "%d %s %5.1f", 1, "two", 3.0);
    EXPECT_EQ(line, "1 two   3.0\n");
}

} // namespace
} // namespace orvex_test
