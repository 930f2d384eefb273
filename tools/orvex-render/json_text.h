#pragma once

#include <string>
#include <string_view>
#include <vector>

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
