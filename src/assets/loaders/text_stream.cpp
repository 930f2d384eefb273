#include "assets/loaders/text_stream.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cfloat>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include <locale.h>

namespace orvex {

namespace {

constexpr std::size_t WORD_LIMIT = 511;

constexpr std::array<bool, 256> make_white_space_table() {
    std::array<bool, 256> table{};
    for (const char c : {' ', '\t', '\n', '\v', '\f', '\r'})
        table[static_cast<unsigned char>(c)] = true;
    return table;
}

constexpr std::array<bool, 256> WHITE_SPACE = make_white_space_table();

inline bool is_space(char c) {
    return WHITE_SPACE[static_cast<unsigned char>(c)];
}

inline bool is_digit(char c) {
    return static_cast<unsigned char>(c - '0') < 10;
}

inline bool is_sign(char c) {
    return c == '-' || c == '+';
}

} // namespace

bool is_white_space(char c) {
    return is_space(c);
}

/// The same bytes as a stream of the C library, for the numbers that are read there.
struct TextStream::CStream {
    const char* begin = nullptr;
    std::size_t size = 0;
    std::size_t at = 0;
    std::FILE* file = nullptr;

    ~CStream() {
        if (file != nullptr)
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
    : begin_(text)
    , at_(text)
    , end_(text + size) {}

TextStream::~TextStream() = default;

void TextStream::skip_white_space() {
    while (at_ < end_ && is_space(*at_))
        ++at_;
}

std::string_view TextStream::read_word() {
    skip_white_space();
    const char* first = at_;
    const char* limit = first + std::min<std::size_t>(WORD_LIMIT, end_ - first);
    while (at_ < limit && !is_space(*at_))
        ++at_;
    return {first, static_cast<std::size_t>(at_ - first)};
}

std::string_view TextStream::read_line(std::size_t limit) {
    const char* first = at_;
    const std::size_t most = std::min<std::size_t>(limit, end_ - first);
    const void* line_feed = std::memchr(first, '\n', most);
    at_ = line_feed != nullptr ? static_cast<const char*>(line_feed) + 1 : first + most;
    return {first, static_cast<std::size_t>(at_ - first)};
}

bool TextStream::match(char wanted) {
    if (at_ == end_ || *at_ != wanted)
        return false;
    ++at_;
    return true;
}

bool TextStream::read_int(int& value) {
    skip_white_space();
    const char* p = at_;
    if (p == end_)
        return false;
    const bool negative = *p == '-';
    if (is_sign(*p) && !is_digit(*++p))
        return read_int_by_library(value);
    // The byte behind the text is zero, so a run of digits ends there at the latest.
    const char* first_digit = p;
    std::int64_t number = 0;
    while (is_digit(*p) && p - first_digit < 18)
        number = number * 10 + (*p++ - '0');
    if (p == first_digit)
        return false;
    if (is_digit(*p))
        return read_int_by_library(value);
    value = static_cast<int>(negative ? -number : number);
    at_ = p;
    return true;
}

namespace {

constexpr std::array<double, 23> POWERS_OF_TEN = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                  1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                  1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr int LARGEST_EXACT_POWER = 22;
constexpr std::uint64_t LARGEST_EXACT_INTEGER = std::uint64_t{1} << 53;

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
    if (decimal.digits > LARGEST_EXACT_INTEGER || decimal.exponent > LARGEST_EXACT_POWER ||
        decimal.exponent < -LARGEST_EXACT_POWER)
        return false;
    double number = static_cast<double>(decimal.digits);
    if (decimal.exponent < 0)
        number /= POWERS_OF_TEN[static_cast<std::size_t>(-decimal.exponent)];
    else
        number *= POWERS_OF_TEN[static_cast<std::size_t>(decimal.exponent)];

    constexpr std::uint64_t BELOW_FLOAT = (std::uint64_t{1} << 29) - 1;
    constexpr std::uint64_t HALF_WAY = std::uint64_t{1} << 28;
    const bool half_way = (std::bit_cast<std::uint64_t>(number) & BELOW_FLOAT) == HALF_WAY;
    const bool plain = number == 0.0 || (number >= static_cast<double>(FLT_MIN) && number < 3e38);
    if (half_way || !plain)
        return false;
    value = static_cast<float>(decimal.negative ? -number : number);
    return true;
}

/// Reads "[sign]digits[.digits][e[sign]digits]". Null if the text isn't plainly of that form or has
/// more digits than fit, else the place behind it. The text ends in a byte that is no digit.
const char* scan_decimal(const char* p, Decimal& decimal) {
    decimal.negative = *p == '-';
    if (is_sign(*p))
        ++p;
    const char* first = p;
    while (is_digit(*p))
        decimal.digits = decimal.digits * 10 + static_cast<unsigned>(*p++ - '0');
    std::ptrdiff_t num_digits = p - first;
    if (*p == '.') {
        const char* point = p++;
        while (is_digit(*p))
            decimal.digits = decimal.digits * 10 + static_cast<unsigned>(*p++ - '0');
        const std::ptrdiff_t num_decimals = p - point - 1;
        num_digits += num_decimals;
        if (num_digits > 19)
            return nullptr;
        decimal.exponent = -static_cast<int>(num_decimals);
    }
    if (num_digits == 0 || num_digits > 19 || *p == 'x' || *p == 'X')
        return nullptr;
    if (*p != 'e' && *p != 'E')
        return p;

    ++p;
    const bool negative = *p == '-';
    if (is_sign(*p))
        ++p;
    const char* first_exponent_digit = p;
    int exponent = 0;
    while (is_digit(*p) && p - first_exponent_digit < 5)
        exponent = exponent * 10 + (*p++ - '0');
    if (p == first_exponent_digit || is_digit(*p))
        return nullptr;
    decimal.exponent += negative ? -exponent : exponent;
    return p;
}

} // namespace

bool TextStream::read_float(float& value) {
    skip_white_space();
    if (at_ == end_)
        return false;
    Decimal decimal;
    const char* behind = scan_decimal(at_, decimal);
    if (behind == nullptr || !nearest_float(decimal, value))
        return read_float_by_library(value);
    at_ = behind;
    return true;
}

std::FILE* TextStream::library_stream() {
    if (library_ == nullptr) {
        library_ = std::make_unique<CStream>();
        library_->begin = begin_;
        library_->size = size();
        cookie_io_functions_t functions{};
        functions.read = CStream::read;
        functions.seek = CStream::seek;
        library_->file = fopencookie(library_.get(), "r", functions);
        // Each use begins at another place; a large buffer would be filled for a few bytes.
        if (library_->file != nullptr)
            std::setvbuf(library_->file, nullptr, _IOFBF, 64);
    }
    if (library_->file != nullptr)
        std::fseek(library_->file, static_cast<long>(tell()), SEEK_SET);
    return library_->file;
}

bool TextStream::read_int_by_library(int& value) {
    std::FILE* file = library_stream();
    if (file == nullptr)
        return false;
    const int count = std::fscanf(file, "%d", &value);
    seek(static_cast<std::size_t>(std::ftell(file)));
    return count == 1;
}

bool TextStream::read_float_by_library(float& value) {
    std::FILE* file = library_stream();
    if (file == nullptr)
        return false;
    const int count = std::fscanf(file, "%f", &value);
    seek(static_cast<std::size_t>(std::ftell(file)));
    return count == 1;
}

NumericCLocale::NumericCLocale()
    : c_(newlocale(LC_NUMERIC_MASK, "C", static_cast<locale_t>(nullptr)))
    , former_(c_ != nullptr ? uselocale(static_cast<locale_t>(c_)) : nullptr) {}

NumericCLocale::~NumericCLocale() {
    if (c_ == nullptr)
        return;
    uselocale(static_cast<locale_t>(former_));
    freelocale(static_cast<locale_t>(c_));
}

} // namespace orvex
