#pragma once

/// @file
/// Numbers of text, fast.

#include <cstdint>

namespace orvex::formats {

/// Reads the number that a text begins with: an optional sign, digits with or without a point, an
/// optional exponent; or "nan", "inf" and "infinity" in letters of either case. The result is the
/// float nearest to the number, of two the even one, whatever the locale. What is too small for a
/// float is 0 or a denormal, what is too large is infinite.
/// @param begin  the text, which need not end in a 0
/// @return where the number ends; `begin` where there is none, and then `number` stays
const char* read_float(const char* begin, const char* end, float& number);

/// Reads a whole number with an optional sign; one that is too large is the nearest that isn't.
/// @return where it ends; `begin` where there is none
inline const char* read_int(const char* begin, const char* end, std::int64_t& number) {
    constexpr std::int64_t most = INT64_MAX / 16;
    const char* next = begin;
    const bool is_negative = next != end && *next == '-';
    if (next != end && (*next == '-' || *next == '+'))
        ++next;
    const char* const first = next;
    std::int64_t sum = 0;
    for (; next != end; ++next) {
        const auto digit = static_cast<unsigned>(*next - '0');
        if (digit > 9)
            break;
        sum = sum < most ? sum * 10 + digit : most;
    }
    if (next == first)
        return begin;
    number = is_negative ? -sum : sum;
    return next;
}

} // namespace orvex::formats
