#pragma once

/// @file
/// Text as the C stream functions read it, and the locale they read it in.

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string_view>

namespace orvex {

inline constexpr std::array<bool, 256> white_space = [] {
    std::array<bool, 256> table{};
    for (const char space : {' ', '\t', '\n', '\v', '\f', '\r'})
        table[static_cast<unsigned char>(space)] = true;
    return table;
}();

/// White space as the C locale has it.
inline bool is_white_space(char c) {
    return white_space[static_cast<unsigned char>(c)];
}

inline bool is_digit(char c) {
    return static_cast<unsigned char>(c - '0') < 10;
}

inline bool is_sign(char c) {
    return c == '-' || c == '+';
}

constexpr int most_digits = 19; ///< as many as always fit into 64 bits

/// Takes the decimal digits at `p`, eight at a time, and appends them to `number`.
/// @return how many were taken; more than `most_digits` means that `number` holds nothing of worth
inline int take_digits(const char*& p, const char* end, std::uint64_t& number) {
    static_assert(std::endian::native == std::endian::little, "the first digit is the lowest byte");
    constexpr std::uint64_t powers[] = {1,      10,      100,      1000,     10000,
                                        100000, 1000000, 10000000, 100000000};
    const char* first = p;
    while (end - p >= 8) {
        std::uint64_t digits = 0;
        std::memcpy(&digits, p, 8);
        digits ^= 0x3030303030303030;
        // The high bit of each byte that is no digit. A carry can only spoil bytes behind the
        // first.
        const std::uint64_t others = ((digits + 0x7676767676767676) | digits) & 0x8080808080808080;
        const int count = others == 0 ? 8 : std::countr_zero(others) / 8;
        if (count == 0)
            return static_cast<int>(p - first);
        // To the high end, zeros in front; then neighbours are joined: digits, pairs, quadruples.
        digits <<= 64 - 8 * count;
        digits = digits * 10 + (digits >> 8);
        digits = ((digits & 0x000000FF000000FF) * 0x000F424000000064 +
                  ((digits >> 16) & 0x000000FF000000FF) * 0x0000271000000001) >>
                 32;
        number = number * powers[count] + digits;
        p += count;
        if (count < 8 || p - first > most_digits)
            return static_cast<int>(p - first);
    }
    while (p < end && is_digit(*p) && p - first <= most_digits)
        number = number * 10 + static_cast<unsigned>(*p++ - '0');
    return static_cast<int>(p - first);
}

/// Reads text in memory by the rules of the C stream functions: `fscanf` with "%s", "%d" and "%f",
/// and `fgets`.
///
/// Model files are told apart by what those functions do at the odd places: a token that is cut at
/// a width, a number that ends in the middle of a word, a scan that runs on into the next line. The
/// common forms are read here, from plain digits, several times faster; every other form of a
/// number (not a number, infinite, hexadecimal, out of range, cut off) is handed to the C library
/// itself, so that the two can't disagree.
///
/// Numbers follow the calling thread's numeric locale only on that second road: hold a
/// `NumericCLocale` while reading.
class TextStream {
public:
    /// @param text  `size` bytes followed by a terminating zero; not owned
    TextStream(const char* text, std::size_t size);
    ~TextStream();
    TextStream(const TextStream&) = delete;
    TextStream& operator=(const TextStream&) = delete;

    std::size_t size() const { return static_cast<std::size_t>(end - begin); }
    std::size_t tell() const { return static_cast<std::size_t>(place - begin); }
    void seek(std::size_t offset) { place = begin + offset; }

    /// `fscanf` of "%511s": skips white space, then takes up to 511 other bytes. Empty at the end.
    std::string_view read_word();

    /// `fgets`: the bytes up to and including the next line feed, `limit` of them at most.
    std::string_view read_line(std::size_t limit);

    /// `fscanf` of "%d": false, and `value` as it was, where no number follows.
    bool read_int(int& value);

    /// `fscanf` of "%f".
    bool read_float(float& value);

    /// One literal character of a format: taken if it is next.
    bool match(char wanted);

private:
    struct CStream;

    void skip_white_space() {
        while (place < end && is_white_space(*place))
            ++place;
    }
    bool read_long_int(int& value);
    bool read_int_by_library(int& value);
    bool read_float_by_library(float& value);
    std::FILE* library_stream();

    const char* begin;
    const char* place;
    const char* end;
    std::unique_ptr<CStream> library;
};

inline std::string_view TextStream::read_word() {
    constexpr std::size_t word_limit = 511;
    skip_white_space();
    const char* first = place;
    const char* limit = first + std::min(word_limit, static_cast<std::size_t>(end - first));
    while (place < limit && !is_white_space(*place))
        ++place;
    return {first, static_cast<std::size_t>(place - first)};
}

inline std::string_view TextStream::read_line(std::size_t limit) {
    const char* first = place;
    const std::size_t most = std::min(limit, static_cast<std::size_t>(end - first));
    const void* line_feed = std::memchr(first, '\n', most);
    place = line_feed ? static_cast<const char*>(line_feed) + 1 : first + most;
    return {first, static_cast<std::size_t>(place - first)};
}

inline bool TextStream::match(char wanted) {
    if (place == end || *place != wanted)
        return false;
    ++place;
    return true;
}

inline bool TextStream::read_int(int& value) {
    skip_white_space();
    const char* p = place;
    if (p == end)
        return false;
    const bool negative = *p == '-';
    if (is_sign(*p) && !is_digit(*++p))
        return read_int_by_library(value);
    std::uint64_t number = 0;
    const int num_digits = take_digits(p, end, number);
    if (num_digits == 0)
        return false;
    if (num_digits > 18)
        return read_long_int(value);
    const auto magnitude = static_cast<std::int64_t>(number);
    value = static_cast<int>(negative ? -magnitude : magnitude);
    place = p;
    return true;
}

/// Makes the decimal point a point for the calling thread, whatever the host's locale, until it
/// goes out of scope.
class NumericCLocale {
public:
    NumericCLocale();
    ~NumericCLocale();
    NumericCLocale(const NumericCLocale&) = delete;
    NumericCLocale& operator=(const NumericCLocale&) = delete;

private:
    void* c_locale;
    void* former;
};

} // namespace orvex
