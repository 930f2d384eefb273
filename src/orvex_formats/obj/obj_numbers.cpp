// Nearly every number has a handful of digits. Its digits as a whole number, times or by a power of
// ten, are a double that lies within a few units of its last place of the truth. It rounds to the
// right float unless it lies that near to the middle between two floats: then the library decides.

#include "orvex_formats/obj/private/obj_numbers.h"

#include <bit>
#include <charconv>
#include <limits>
#include <system_error>

namespace orvex::formats {

namespace {

constexpr int most_digits = 19; ///< that a whole number of 64 bits holds, whatever they are

constexpr double powers_of_ten[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                    1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                    1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr int most_power = 22; ///< the last one that a double holds exactly

/// The parts of a number that is written with digits.
struct Decimal {
    std::uint64_t digits = 0;
    int num_digits = 0;   ///< without zeros in front
    int exponent = 0;     ///< of ten
    bool is_any = false;  ///< there was a digit, zeros included
    bool is_long = false; ///< further digits were left out
};

constexpr std::uint64_t whole_powers_of_ten[] = {1,     10,     100,     1000,
                                                 10000, 100000, 1000000, 10000000};

/// The same as digit by digit. @return behind those that could be taken at once
const char* take_few_digits(const char* next, const char* end, bool is_fraction, Decimal& decimal) {
    const ShortDigits few = take_short_digits(next, end);
    if (decimal.num_digits + few.count > most_digits)
        return next;
    const int num_zeros = decimal.digits == 0 ? few.num_zeros() : 0;
    decimal.digits = decimal.digits * whole_powers_of_ten[few.count] + few.value;
    decimal.num_digits += few.count - num_zeros;
    decimal.exponent -= is_fraction ? few.count : 0;
    decimal.is_any = decimal.is_any || few.count > 0;
    return next + few.count;
}

const char* take_digits(const char* next, const char* end, bool is_fraction, Decimal& decimal) {
    next = take_few_digits(next, end, is_fraction, decimal);
    for (; next != end; ++next) {
        const auto digit = static_cast<unsigned>(*next - '0');
        if (digit > 9)
            return next;
        decimal.is_any = true;
        if (decimal.num_digits < most_digits) {
            decimal.digits = decimal.digits * 10 + digit;
            decimal.num_digits += decimal.digits != 0;
            decimal.exponent -= is_fraction;
        } else {
            decimal.is_long = true;
            decimal.exponent += !is_fraction;
        }
    }
    return next;
}

/// @return behind the exponent; `next` where there is none
const char* take_exponent(const char* next, const char* end, Decimal& decimal) {
    constexpr int most = 100000;
    if (next == end || (*next != 'e' && *next != 'E'))
        return next;
    const char* digit = next + 1;
    const bool is_negative = digit != end && *digit == '-';
    if (digit != end && (*digit == '-' || *digit == '+'))
        ++digit;
    const char* const first = digit;
    int exponent = 0;
    for (; digit != end && *digit >= '0' && *digit <= '9'; ++digit)
        exponent = exponent < most ? exponent * 10 + (*digit - '0') : most;
    if (digit == first)
        return next;
    decimal.exponent += is_negative ? -exponent : exponent;
    return digit;
}

/// Rounds what is sure. @return false for what isn't
bool round_quickly(const Decimal& decimal, float& number) {
    if (decimal.digits == 0) {
        number = 0.0f;
        return true;
    }
    if (decimal.exponent < -most_power || decimal.exponent > most_power)
        return false;
    const auto whole = static_cast<double>(decimal.digits);
    const double value = decimal.exponent < 0 ? whole / powers_of_ten[-decimal.exponent]
                                              : whole * powers_of_ten[decimal.exponent];
    if (value < double(std::numeric_limits<float>::min()) ||
        value > double(std::numeric_limits<float>::max()))
        return false;
    // The bits that a float has no room for. Four units stand for the digits that were left out,
    // and for two roundings.
    constexpr std::uint64_t middle = 1u << 28, doubt = 4;
    const std::uint64_t rest = std::bit_cast<std::uint64_t>(value) & (2 * middle - 1);
    const bool is_exact = decimal.exponent == 0 && !decimal.is_long && decimal.digits >> 53 == 0;
    if (!is_exact && rest - (middle - doubt) <= 2 * doubt)
        return false;
    number = static_cast<float>(value);
    return true;
}

/// What the library makes of a number without its sign.
void round_exactly(const char* begin, const char* end, const Decimal& decimal, float& number) {
    if (std::from_chars(begin, end, number).ec != std::errc::result_out_of_range)
        return;
    const bool is_large = decimal.exponent + decimal.num_digits > 0;
    number = is_large ? std::numeric_limits<float>::infinity() : 0.0f;
}

/// Reads "nan", "inf" and "infinity".
const char* read_word(const char* begin, const char* end, float& number) {
    const auto [behind, error] = std::from_chars(begin, end, number);
    return error == std::errc{} ? behind : begin;
}

} // namespace

const char* read_float(const char* begin, const char* end, float& number) {
    const char* next = begin;
    const bool is_negative = next != end && *next == '-';
    if (next != end && (*next == '-' || *next == '+'))
        ++next;
    const char* const first = next;
    Decimal decimal;
    next = take_digits(next, end, false, decimal);
    if (next != end && *next == '.')
        next = take_digits(next + 1, end, true, decimal);
    float magnitude = 0.0f;
    if (decimal.is_any) {
        next = take_exponent(next, end, decimal);
        if (!round_quickly(decimal, magnitude))
            round_exactly(first, next, decimal, magnitude);
    } else {
        next = first == end || *first == '-' ? first : read_word(first, end, magnitude);
        if (next == first)
            return begin;
    }
    number = is_negative ? -magnitude : magnitude;
    return next;
}

} // namespace orvex::formats
