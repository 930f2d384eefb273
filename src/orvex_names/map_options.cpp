#include "orvex_names/map_options.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <system_error>

namespace orvex::names {

namespace {

struct KnownOption {
    std::string_view word;
    int least; ///< values that follow
    int most;  ///< likewise; those beyond the least are numbers
};

constexpr std::array<KnownOption, 13> known_options = {{{"-blendu", 1, 1},
                                                        {"-blendv", 1, 1},
                                                        {"-bm", 1, 1},
                                                        {"-boost", 1, 1},
                                                        {"-cc", 1, 1},
                                                        {"-clamp", 1, 1},
                                                        {"-imfchan", 1, 1},
                                                        {"-mm", 2, 2},
                                                        {"-o", 1, 3},
                                                        {"-s", 1, 3},
                                                        {"-t", 1, 3},
                                                        {"-texres", 1, 1},
                                                        {"-type", 1, 1}}};

bool is_blank(char letter) {
    return static_cast<unsigned char>(letter) <= ' ';
}

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && is_blank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && is_blank(text.back()))
        text.remove_suffix(1);
    return text;
}

/// Takes the first word off a text.
std::string_view take_word(std::string_view& text) {
    text = trimmed(text);
    const auto* const end = std::find_if(text.begin(), text.end(), is_blank);
    const auto length = static_cast<std::size_t>(end - text.begin());
    const std::string_view word = text.substr(0, length);
    text = trimmed(text.substr(length));
    return word;
}

/// Whether a word is a finite number as a whole, whatever the locale.
bool is_number(std::string_view word, float& number) {
    if (word.size() > 1 && word[0] == '+' && word[1] != '-')
        word.remove_prefix(1);
    const char* const end = word.data() + word.size();
    float read = 0.0f;
    auto [behind, error] = std::from_chars(word.data(), end, read);
    // What is too small for a float is 0.
    double wide = 0.0;
    if (error == std::errc::result_out_of_range &&
        std::from_chars(word.data(), end, wide).ec == std::errc{} && std::fabs(wide) < 1.0) {
        error = std::errc{};
        read = 0.0f;
    }
    if (behind != end || error != std::errc{} || !std::isfinite(read))
        return false;
    number = read;
    return true;
}

} // namespace

bool take_map_option(std::string_view& text, MapOption& option) {
    std::string_view rest = text;
    const std::string_view word = take_word(rest);
    const auto* const known =
        std::find_if(known_options.begin(), known_options.end(),
                     [&](const KnownOption& one) { return one.word == word; });
    if (known == known_options.end())
        return false;
    option = {};
    option.word = known->word;
    for (int i = 0; i < known->most; ++i) {
        std::string_view behind = rest;
        const std::string_view value = take_word(behind);
        float number = 0.0f;
        const bool is_numeric = is_number(value, number);
        if ((!is_numeric && i >= known->least) || behind.empty())
            break;
        if (is_numeric && option.num_numbers == i)
            option.numbers[static_cast<std::size_t>(option.num_numbers++)] = number;
        option.is_on = option.is_on || value == "on";
        rest = behind;
    }
    text = rest;
    return true;
}

} // namespace orvex::names
