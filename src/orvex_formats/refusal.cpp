#include "orvex_formats/private/refusal.h"

#include <cstdarg>
#include <cstdio>

namespace orvex::formats {

namespace {

__attribute__((format(printf, 1, 0))) std::string text_of(const char* format,
                                                          std::va_list arguments) {
    char text[512] = "";
    static_cast<void>(std::vsnprintf(text, sizeof text, format, arguments));
    return text;
}

constexpr std::size_t longest_name = 60;

} // namespace

void refuse(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    const std::string reason = text_of(format, arguments);
    va_end(arguments);
    throw Refusal(reason);
}

void refuse_format(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    const std::string reason = text_of(format, arguments);
    va_end(arguments);
    throw Refusal(reason, false);
}

std::string in_words(const std::string& name) {
    std::string words = name.substr(0, longest_name);
    for (char& letter : words)
        if (static_cast<unsigned char>(letter) < ' ' || letter == '\x7f')
            letter = '?';
    return words.size() < name.size() ? words + "..." : words;
}

} // namespace orvex::formats
