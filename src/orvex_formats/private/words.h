#pragma once

/// @file
/// The words of a line of text.

#include <charconv>
#include <string_view>
#include <system_error>
#include <type_traits>

namespace orvex::formats {

/// Takes words off a text, one by one. Blanks and control characters part them.
class Words {
public:
    explicit Words(std::string_view text)
        : rest(text) {}

    /// Whether a word is left.
    bool has_more() {
        while (!rest.empty() && is_blank(rest.front()))
            rest.remove_prefix(1);
        return !rest.empty();
    }

    /// The next word; empty when there is none.
    std::string_view take() {
        if (!has_more())
            return {};
        std::size_t length = 0;
        while (length < rest.size() && !is_blank(rest[length]))
            ++length;
        const std::string_view word = rest.substr(0, length);
        rest.remove_prefix(length);
        return word;
    }

    /// Takes a word that is a number as a whole, whatever the locale; nan and inf are numbers, a
    /// sign + is allowed. What a type can't hold is none, but for what is too small: that is 0.
    /// @return false, with the word taken, if it is none
    template<class Number>
    bool take_number(Number& number) {
        std::string_view word = take();
        if (word.size() > 1 && word[0] == '+' && word[1] != '-')
            word.remove_prefix(1);
        const char* const end = word.data() + word.size();
        if constexpr (std::is_floating_point_v<Number>) {
            // As many programs write numbers that only doubles tell from 0.
            double wide = 0.0;
            const auto [behind, error] = std::from_chars(word.data(), end, wide);
            number = static_cast<Number>(wide);
            const std::size_t exponent = word.find_first_of("eE");
            const bool is_tiny = error == std::errc::result_out_of_range &&
                                 exponent < word.size() && word.substr(exponent + 1, 1) == "-";
            return behind == end && !word.empty() && (error == std::errc{} || is_tiny);
        } else {
            const auto [behind, error] = std::from_chars(word.data(), end, number);
            return behind == end && !word.empty() && error == std::errc{};
        }
    }

    /// What isn't taken yet, without the blanks around it.
    std::string_view remaining() const {
        std::string_view text = rest;
        while (!text.empty() && is_blank(text.front()))
            text.remove_prefix(1);
        while (!text.empty() && is_blank(text.back()))
            text.remove_suffix(1);
        return text;
    }

private:
    static bool is_blank(char letter) { return static_cast<unsigned char>(letter) <= ' '; }

    std::string_view rest;
};

} // namespace orvex::formats
