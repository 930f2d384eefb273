#include "json_text.h"

#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <utility>

namespace {

/// The bytes of the character of UTF-8 at the beginning of a text; 0 if there is none.
std::size_t length_of_character(std::string_view text) {
    struct Form {
        unsigned char mask, lead;
        unsigned least; ///< shorter forms have what is below
    };
    constexpr Form forms[] = {
        {0x80, 0x00, 0}, {0xe0, 0xc0, 0x80}, {0xf0, 0xe0, 0x800}, {0xf8, 0xf0, 0x10000}};
    const auto first = static_cast<unsigned char>(text[0]);
    for (std::size_t more = 0; more < 4; ++more) {
        if ((first & forms[more].mask) != forms[more].lead)
            continue;
        unsigned code = first & static_cast<unsigned char>(~forms[more].mask);
        for (std::size_t i = 1; i <= more; ++i) {
            const unsigned next = i < text.size() ? static_cast<unsigned char>(text[i]) : 0u;
            if ((next & 0xc0) != 0x80)
                return 0;
            code = code << 6 | (next & 0x3f);
        }
        const bool is_surrogate = code >= 0xd800 && code < 0xe000;
        return code < forms[more].least || code > 0x10ffff || is_surrogate ? 0 : more + 1;
    }
    return 0;
}

} // namespace

bool is_utf8(std::string_view text) {
    while (!text.empty()) {
        const std::size_t length = length_of_character(text);
        if (length == 0)
            return false;
        text.remove_prefix(length);
    }
    return true;
}

std::string text_in_utf8(std::string_view value) {
    std::string result;
    while (!value.empty()) {
        const std::size_t length = length_of_character(value);
        result += length == 0 ? "\xef\xbf\xbd" : value.substr(0, length);
        value.remove_prefix(length == 0 ? 1 : length);
    }
    return result;
}

std::string json_text_of(std::string_view value) {
    std::string result = "\"";
    while (!value.empty()) {
        const std::size_t length = length_of_character(value);
        const char first = value[0];
        if (length == 0) {
            result += "\\ufffd";
        } else if (first == '"' || first == '\\') {
            result += {'\\', first};
        } else if (static_cast<unsigned char>(first) < 0x20 || first == 0x7f) {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(first));
            result += escape;
        } else {
            result += value.substr(0, length);
        }
        value.remove_prefix(length == 0 ? 1 : length);
    }
    return result + '"';
}

namespace {

/// In as many digits as tell it from others of its precision.
template<class Number>
std::string text_of(Number value) {
    if (!std::isfinite(value))
        return "null";
    char digits[40];
    return {digits, std::to_chars(digits, digits + sizeof digits, value).ptr};
}

} // namespace

std::string number_text(double value) {
    return text_of(value);
}

void JsonText::new_line() {
    out += '\n';
    out.append(2 * ends.size(), ' ');
}

void JsonText::begin_value() {
    if (!std::exchange(has_key, false) && !ends.empty()) {
        out += is_first ? "" : ",";
        new_line();
    }
    is_first = false;
}

void JsonText::begin(char bracket, char end) {
    begin_value();
    out += bracket;
    ends.push_back(end);
    is_first = true;
}

void JsonText::end() {
    const char bracket = ends.back();
    ends.pop_back();
    if (!is_first)
        new_line();
    out += bracket;
    is_first = false;
}

JsonText& JsonText::key(std::string_view name) {
    begin_value();
    out += json_text_of(name) + ": ";
    has_key = true;
    return *this;
}

void JsonText::text(std::string_view value) {
    begin_value();
    out += json_text_of(value);
}

void JsonText::number(std::size_t value) {
    begin_value();
    out += std::to_string(value);
}

void JsonText::number(float value) {
    begin_value();
    out += text_of(value);
}

void JsonText::number(double value) {
    begin_value();
    out += text_of(value);
}

template<class Number>
void JsonText::add_list(const std::vector<Number>& values) {
    begin_value();
    out += '[';
    for (std::size_t i = 0; i < values.size(); ++i)
        out += (i == 0 ? "" : ", ") + text_of(values[i]);
    out += ']';
}

void JsonText::numbers(const std::vector<float>& values) {
    add_list(values);
}

void JsonText::doubles(const std::vector<double>& values) {
    add_list(values);
}

void JsonText::null() {
    begin_value();
    out += "null";
}

std::string JsonText::take() {
    out += '\n';
    return std::exchange(out, {});
}
