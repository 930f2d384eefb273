#pragma once

/// @file
/// Numbers of text, fast.

#include <bit>
#include <cstdint>
#include <cstring>

namespace orvex::formats {

/// Up to seven digits, taken at once.
struct ShortDigits {
    std::uint32_t value = 0;
    int count = 0;                   ///< 0: there are none, or more, or the text ends nearby
    std::uint64_t in_front_zero = 0; ///< a byte each; those of the digits are the last ones

    /// How many zeros stand in front of the first other digit, or before the end.
    int num_zeros() const {
        const int nothing = 8 - count;
        return in_front_zero == 0 ? count : std::countr_zero(in_front_zero) / 8 - nothing;
    }
};

/// Takes the digits that a text begins with, if they are few and eight bytes of it are left.
inline ShortDigits take_short_digits(const char* begin, const char* end) {
    ShortDigits taken;
    if constexpr (std::endian::native != std::endian::little)
        return taken;
    if (end - begin < 8)
        return taken;
    // A byte is 9 at most where a digit stands, and its highest bit is set below where none does;
    // behind the first such one the bytes tell nothing.
    constexpr std::uint64_t zeros = 0x3030303030303030, highest = 0x8080808080808080;
    constexpr std::uint64_t to_highest = 0x7676767676767676;
    std::uint64_t bytes = 0;
    std::memcpy(&bytes, begin, sizeof bytes);
    bytes ^= zeros;
    const std::uint64_t others = ((bytes + to_highest) | bytes) & highest;
    const int count = others == 0 ? 0 : std::countr_zero(others) / 8;
    if (count == 0)
        return taken;
    // Zeros in front, and digits become pairs, fours and one number.
    bytes <<= 64 - 8 * count;
    constexpr std::uint64_t each_second = 0x00ff00ff00ff00ff, each_fourth = 0x0000ffff0000ffff;
    const std::uint64_t pairs = (bytes & each_second) * 10 + ((bytes >> 8) & each_second);
    const std::uint64_t fours = (pairs & each_fourth) * 100 + ((pairs >> 16) & each_fourth);
    taken.value =
        static_cast<std::uint32_t>(fours) * 10000 + static_cast<std::uint32_t>(fours >> 32);
    taken.count = count;
    taken.in_front_zero = bytes;
    return taken;
}

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
    const ShortDigits few = take_short_digits(next, end);
    std::int64_t sum = few.value;
    next += few.count;
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
