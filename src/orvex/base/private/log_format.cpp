#include "orvex/base/private/log_format.h"

#include <cfenv>
#include <charconv>
#include <clocale>
#include <cmath>
#include <cstring>
#include <string_view>
#include <type_traits>

namespace orvex {

namespace {

/// Numbers with a fraction are written as in the locale "C", which is what `std::to_chars` does.
bool has_plain_fractions() {
    return std::strcmp(std::localeconv()->decimal_point, ".") == 0 &&
           std::fegetround() == FE_TONEAREST;
}

/// One text on its way into the buffer. Operations say false where `std::vsnprintf` has to be
/// asked.
class Writer {
public:
    Writer(char* buffer, std::size_t size, va_list list)
        : next(buffer)
        , end(buffer + size) {
        va_copy(arguments, list);
    }
    ~Writer() { va_end(arguments); }
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    bool write(std::string_view text) {
        if (static_cast<std::size_t>(end - next) <= text.size())
            return false;
        std::memcpy(next, text.data(), text.size());
        next += text.size();
        return true;
    }

    /// @param format  what stands behind the percent sign, which is moved to what comes after it
    bool write_conversion(const char*& format) {
        if (*format == '.')
            return write_with_precision(format);
        if (*format == 'z')
            return write_integer<std::size_t>(*++format, format);
        if (*format != 'l')
            return write_simple(format);
        if (*++format != 'l')
            return write_integer<unsigned long>(*format, format);
        return write_integer<unsigned long long>(*++format, format);
    }

    char* finish() {
        *next = '\0';
        return next;
    }

private:
    bool write_simple(const char*& format) {
        switch (*format) {
        case '%':
            ++format;
            return write("%");
        case 's': {
            ++format;
            const char* const text = va_arg(arguments, const char*);
            return write(text ? std::string_view(text) : std::string_view("(null)"));
        }
        case 'c': {
            ++format;
            const char character = static_cast<char>(va_arg(arguments, int));
            return character != '\0' && write({&character, 1});
        }
        case 'f':
            ++format;
            return write_fraction(6);
        default:
            return write_integer<unsigned int>(*format, format);
        }
    }

    template<class Unsigned>
    bool write_integer(char conversion, const char*& format) {
        ++format;
        switch (conversion) {
        case 'd':
        case 'i':
            return take(std::to_chars(next, end, va_arg(arguments, std::make_signed_t<Unsigned>)));
        case 'u':
            return take(std::to_chars(next, end, va_arg(arguments, Unsigned)));
        case 'x':
            return take(std::to_chars(next, end, va_arg(arguments, Unsigned), 16));
        default:
            return false;
        }
    }

    bool write_with_precision(const char*& format) {
        const char digit = format[1];
        if (digit < '0' || digit > '9' || format[2] != 'f')
            return false;
        format += 3;
        return write_fraction(digit - '0');
    }

    bool write_fraction(int precision) {
        const double value = va_arg(arguments, double);
        return std::isfinite(value) && has_plain_fractions() &&
               take(std::to_chars(next, end, value, std::chars_format::fixed, precision));
    }

    /// Leaves room for the 0 at the end.
    bool take(std::to_chars_result result) {
        if (result.ec != std::errc() || result.ptr == end)
            return false;
        next = result.ptr;
        return true;
    }

    char* next;
    char* const end;
    va_list arguments;
};

} // namespace

std::optional<std::size_t> format_plainly(char* buffer, std::size_t size, const char* format,
                                          va_list arguments) {
    Writer writer(buffer, size, arguments);
    while (*format != '\0') {
        const char* const percent = std::strchr(format, '%');
        const std::size_t length =
            percent ? static_cast<std::size_t>(percent - format) : std::strlen(format);
        if (!writer.write({format, length}))
            return std::nullopt;
        format += length;
        if (percent && !writer.write_conversion(++format))
            return std::nullopt;
    }
    return static_cast<std::size_t>(writer.finish() - buffer);
}

} // namespace orvex
