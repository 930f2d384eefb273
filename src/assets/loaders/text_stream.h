#pragma once

#include <cstddef>
#include <cstdio>
#include <memory>
#include <string_view>

namespace orvex {

/// Reads text in memory by the rules of the C stream functions: `fscanf` with "%s", "%d" and "%f",
/// and `fgets`.
///
/// Model files are told apart by what those functions do at the odd places: a token that is cut at
/// a width, a number that ends in the middle of a word, a scan that runs on into the next line. The
/// common forms are read here, from plain digits, several times faster; every other form of a
/// number is handed to the C library itself, so that the two can't disagree.
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

    std::size_t size() const { return static_cast<std::size_t>(end_ - begin_); }
    std::size_t tell() const { return static_cast<std::size_t>(at_ - begin_); }
    void seek(std::size_t offset) { at_ = begin_ + offset; }

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

    void skip_white_space();
    bool read_int_by_library(int& value);
    bool read_float_by_library(float& value);
    std::FILE* library_stream();

    const char* begin_;
    const char* at_;
    const char* end_;
    std::unique_ptr<CStream> library_;
};

/// White space as the C locale has it.
bool is_white_space(char c);

/// Makes the decimal point a point for the calling thread, whatever the host's locale, until it
/// goes out of scope.
class NumericCLocale {
public:
    NumericCLocale();
    ~NumericCLocale();
    NumericCLocale(const NumericCLocale&) = delete;
    NumericCLocale& operator=(const NumericCLocale&) = delete;

private:
    void* c_;
    void* former_;
};

} // namespace orvex
