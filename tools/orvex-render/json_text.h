#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Whether all of a text is UTF-8.
bool is_utf8(std::string_view text);
/// A text of any bytes as JSON has it, in its quotes: what isn't UTF-8 becomes U+FFFD, byte by
/// byte.
std::string json_text_of(std::string_view value);
/// The same text without quotes and escapes.
std::string text_in_utf8(std::string_view value);
/// A number as JSON has it, in as many digits as tell it from others; null if it isn't finite.
std::string number_text(double value);

/// Writes JSON: objects and lists with two blanks an indent, small lists of numbers on one line.
///
/// @code
/// JsonText text;
/// text.begin_object();
/// text.key("faces").number(12);
/// text.end();
/// text.take(); // {"faces": 12} over three lines
/// @endcode
class JsonText {
public:
    void begin_object() { begin('{', '}'); }
    void begin_list() { begin('[', ']'); }
    /// Ends the innermost object or list.
    void end();
    /// The name of the next value, in an object.
    JsonText& key(std::string_view name);

    /// A text of any bytes: what isn't UTF-8 becomes U+FFFD, byte by byte.
    void text(std::string_view value);
    void number(std::size_t value);
    /// In as many digits as tell it from others; null if it isn't finite.
    void number(float value);
    void number(double value); ///< likewise
    void numbers(const std::vector<float>& values);
    void doubles(const std::vector<double>& values); ///< likewise
    void null();

    /// All of it, with a line feed at its end.
    std::string take();

private:
    std::string out;
    std::vector<char> ends; ///< of what is open
    bool is_first = true;
    bool has_key = false;

    void begin(char bracket, char end);
    void begin_value();
    template<class Number>
    void add_list(const std::vector<Number>& values);
    void new_line();
};
