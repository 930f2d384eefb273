#include "charset_metrics.h"

#include <charconv>

int CharsetMetrics::width_of(const std::string& line) const {
    int width = 0;
    for (const char c : line)
        width += advances[static_cast<unsigned char>(c)];
    return width;
}

namespace {

/// The number of an attribute, 0 without one.
int number_of(const std::string& element, const char* name) {
    const std::string head = std::string(" ") + name + "=\"";
    const std::size_t at = element.find(head);
    int value = 0;
    if (at != element.npos)
        std::from_chars(element.data() + at + head.size(), element.data() + element.size(), value);
    return value;
}

/// The next element of a name from a place on, without its end; the place moves behind it.
std::string next_element(const std::string& text, const char* name, std::size_t& at) {
    const std::size_t begin = text.find(std::string("<") + name + " ", at);
    const std::size_t end = begin == text.npos ? text.npos : text.find('>', begin);
    at = end;
    return end == text.npos ? "" : text.substr(begin, end - begin);
}

} // namespace

CharsetMetrics metrics_of(const std::string& charset) {
    CharsetMetrics metrics;
    std::size_t at = 0;
    metrics.line_height = number_of(next_element(charset, "common", at), "lineHeight");
    for (at = 0; at != charset.npos;) {
        const std::string element = next_element(charset, "char", at);
        const int id = number_of(element, "id");
        // A font keeps advances in 16 bits without a sign.
        if (!element.empty() && id >= 0 && id < 256)
            metrics.advances[static_cast<std::size_t>(id)] =
                number_of(element, "xadvance") & 0xffff;
    }
    return metrics;
}
