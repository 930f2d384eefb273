// Numbers of a text: the common forms by exact arithmetic on plain digits, longer ones by the
// standard library's conversion, every other form by the C library's own reading of the same bytes.

#include "orvex/assets/models/obj/private/text_stream.h"

#include <array>
#include <bit>
#include <cfloat>
#include <charconv>
#include <climits>
#include <clocale>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <system_error>

namespace orvex {

/// The same bytes as a stream of the C library, for the numbers that are read there.
struct TextStream::CStream {
    const char* begin = nullptr;
    std::size_t size = 0;
    std::size_t at = 0;
    std::FILE* file = nullptr;

    ~CStream() {
        if (file)
            std::fclose(file);
    }

    static ssize_t read(void* cookie, char* buffer, std::size_t size) {
        auto* self = static_cast<CStream*>(cookie);
        const std::size_t count = std::min(size, self->size - self->at);
        std::memcpy(buffer, self->begin + self->at, count);
        self->at += count;
        return static_cast<ssize_t>(count);
    }

    static int seek(void* cookie, off64_t* offset, int whence) {
        auto* self = static_cast<CStream*>(cookie);
        const std::size_t origin = whence == SEEK_SET   ? 0
                                   : whence == SEEK_CUR ? self->at
                                                        : self->size;
        const off64_t target = static_cast<off64_t>(origin) + *offset;
        if (target < 0 || static_cast<std::size_t>(target) > self->size)
            return -1;
        self->at = static_cast<std::size_t>(target);
        *offset = target;
        return 0;
    }
};

TextStream::TextStream(const char* text, std::size_t size)
    : begin(text)
    , place(text)
    , end(text + size) {}

TextStream::~TextStream() = default;

namespace {

constexpr std::array<double, 23> powers_of_ten = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                  1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                  1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr int largest_exact_power = 22;
constexpr std::uint64_t largest_exact_integer = std::uint64_t{1} << 53;

/// Decimal digits with an exponent of ten, as they were written.
struct Decimal {
    std::uint64_t digits = 0;
    int exponent = 0;
    bool negative = false;
};

/// The float nearest to `decimal`, or false where that takes more than one rounding.
///
/// Digits below 2^53 and powers of ten up to 10^22 are exact doubles, so one operation gives the
/// nearest double (Clinger, "How to read floating point numbers accurately", 1990). Rounding that
/// to a float is right unless the double lies exactly half-way between two floats, since then the
/// decimal may have been on either side.
bool nearest_float(const Decimal& decimal, float& value) {
    if (decimal.digits > largest_exact_integer || decimal.exponent > largest_exact_power ||
        decimal.exponent < -largest_exact_power)
        return false;
    double number = static_cast<double>(decimal.digits);
    if (decimal.exponent < 0)
        number /= powers_of_ten[static_cast<std::size_t>(-decimal.exponent)];
    else
        number *= powers_of_ten[static_cast<std::size_t>(decimal.exponent)];

    constexpr std::uint64_t below_float = (std::uint64_t{1} << 29) - 1;
    constexpr std::uint64_t half_way_bits = std::uint64_t{1} << 28;
    const bool half_way = (std::bit_cast<std::uint64_t>(number) & below_float) == half_way_bits;
    const bool plain = number == 0.0 || (number >= static_cast<double>(FLT_MIN) && number < 3e38);
    if (half_way || !plain)
        return false;
    value = static_cast<float>(decimal.negative ? -number : number);
    return true;
}

/// Reads "[sign]digits[.digits][e[sign]digits]". Null if the text isn't plainly of that form or has
/// more digits than fit, else the place behind it. The text ends in a byte that is no digit.
const char* scan_decimal(const char* p, const char* end, Decimal& decimal) {
    decimal.negative = *p == '-';
    if (is_sign(*p))
        ++p;
    int num_digits = take_digits(p, end, decimal.digits);
    if (num_digits > most_digits)
        return nullptr;
    if (*p == '.') {
        ++p;
        const int num_decimals = take_digits(p, end, decimal.digits);
        num_digits += num_decimals;
        decimal.exponent = -num_decimals;
    }
    if (num_digits == 0 || num_digits > most_digits || *p == 'x' || *p == 'X')
        return nullptr;
    if (*p != 'e' && *p != 'E')
        return p;

    ++p;
    const bool negative = *p == '-';
    if (is_sign(*p))
        ++p;
    std::uint64_t exponent = 0;
    const int num_exponent_digits = take_digits(p, end, exponent);
    if (num_exponent_digits == 0 || num_exponent_digits > 5)
        return nullptr;
    decimal.exponent += negative ? -static_cast<int>(exponent) : static_cast<int>(exponent);
    return p;
}

const char* behind_digits(const char* p, const char* end) {
    while (p < end && is_digit(*p))
        ++p;
    return p;
}

/// The place behind a number of `scan_decimal`'s form, of any length. Null if the text isn't
/// plainly of that form.
const char* behind_decimal(const char* p, const char* end) {
    if (is_sign(*p))
        ++p;
    const char* const whole = p;
    p = behind_digits(p, end);
    std::ptrdiff_t num_digits = p - whole;
    if (*p == '.') {
        const char* const fraction = ++p;
        p = behind_digits(p, end);
        num_digits += p - fraction;
    }
    if (num_digits == 0 || *p == 'x' || *p == 'X')
        return nullptr;
    if (*p != 'e' && *p != 'E')
        return p;
    ++p;
    if (is_sign(*p))
        ++p;
    const char* const exponent = p;
    p = behind_digits(p, end);
    return p == exponent ? nullptr : p;
}

/// Reads what `nearest_float` leaves: long numbers, those that lie half-way, and the smallest.
/// @return the place behind; null for what isn't plain, and for numbers that are out of range
const char* read_long_decimal(const char* p, const char* end, float& value) {
    const char* const behind = behind_decimal(p, end);
    if (!behind)
        return nullptr;
    float number = 0.0f;
    const auto [stop, error] = std::from_chars(*p == '+' ? p + 1 : p, behind, number);
    if (error != std::errc() || stop != behind)
        return nullptr;
    value = number;
    return behind;
}

} // namespace

bool TextStream::read_float(float& value) {
    skip_white_space();
    if (place == end)
        return false;
    Decimal decimal;
    const char* behind = scan_decimal(place, end, decimal);
    if (!behind || !nearest_float(decimal, value))
        behind = read_long_decimal(place, end, value);
    if (!behind)
        return read_float_by_library(value);
    place = behind;
    return true;
}

/// A number beyond a `long` is its nearest end, and then what an `int` holds of it.
bool TextStream::read_long_int(int& value) {
    const bool negative = *place == '-';
    const char* const digits = is_sign(*place) ? place + 1 : place;
    long number = 0;
    const auto [stop, error] = std::from_chars(negative ? place : digits, end, number);
    if (error == std::errc::result_out_of_range)
        number = negative ? LONG_MIN : LONG_MAX;
    value = static_cast<int>(number);
    place = stop;
    return true;
}

std::FILE* TextStream::library_stream() {
    if (!library) {
        library = std::make_unique<CStream>();
        library->begin = begin;
        library->size = size();
        cookie_io_functions_t functions{};
        functions.read = CStream::read;
        functions.seek = CStream::seek;
        library->file = fopencookie(library.get(), "r", functions);
        // Each use begins at another place; a large buffer would be filled for a few bytes.
        if (library->file)
            std::setvbuf(library->file, nullptr, _IOFBF, 64);
    }
    if (library->file)
        std::fseek(library->file, static_cast<long>(tell()), SEEK_SET);
    return library->file;
}

bool TextStream::read_int_by_library(int& value) {
    std::FILE* file = library_stream();
    if (!file)
        return false;
    const int count = std::fscanf(file, "%d", &value);
    seek(static_cast<std::size_t>(std::ftell(file)));
    return count == 1;
}

bool TextStream::read_float_by_library(float& value) {
    std::FILE* file = library_stream();
    if (!file)
        return false;
    const int count = std::fscanf(file, "%f", &value);
    seek(static_cast<std::size_t>(std::ftell(file)));
    return count == 1;
}

NumericCLocale::NumericCLocale()
    : c_locale(newlocale(LC_NUMERIC_MASK, "C", static_cast<locale_t>(nullptr)))
    , former(c_locale ? uselocale(static_cast<locale_t>(c_locale)) : nullptr) {}

NumericCLocale::~NumericCLocale() {
    if (!c_locale)
        return;
    uselocale(static_cast<locale_t>(former));
    freelocale(static_cast<locale_t>(c_locale));
}

} // namespace orvex
