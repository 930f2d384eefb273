#include "values.h"

#include <charconv>
#include <cmath>

#include <orvex_kit/layers.h>
#include <orvex_kit/picture_file.h>

using namespace orvex::kit;

namespace {

template<class Number>
std::optional<Number> read_whole(const std::string& word, Number least, Number most) {
    Number value{};
    const char* const end = word.data() + word.size();
    const auto [stop, error] = std::from_chars(word.data(), end, value);
    if (error != std::errc() || stop != end || !(value >= least && value <= most))
        return std::nullopt;
    return value;
}

} // namespace

std::optional<int> whole_number_in(const std::string& word, int least, int most) {
    return read_whole(word, least, most);
}

std::optional<float> number_in(const std::string& word, float least, float most) {
    return read_whole(word, least, most);
}

std::optional<Size> size_in(const std::string& word) {
    constexpr int largest = 16384;
    const std::size_t sign = word.find('x');
    if (sign == word.npos)
        return std::nullopt;
    const std::optional<int> width = whole_number_in(word.substr(0, sign), 1, largest);
    const std::optional<int> height = whole_number_in(word.substr(sign + 1), 1, largest);
    if (!width || !height)
        return std::nullopt;
    return Size{*width, *height};
}

namespace {

struct NamedColor {
    const char* name;
    unsigned rgb;
};

constexpr NamedColor named_colors[] = {
    {"black", 0x000000},  {"white", 0xffffff},  {"gray", 0x808080}, {"red", 0xff0000},
    {"green", 0x008000},  {"blue", 0x0000ff},   {"cyan", 0x00ffff}, {"magenta", 0xff00ff},
    {"orange", 0xffa500}, {"yellow", 0xffff00},
};

} // namespace

std::string color_names() {
    std::string names;
    for (const NamedColor& color : named_colors)
        names += (names.empty() ? "" : ", ") + std::string(color.name);
    return names;
}

namespace {

/// The names of the values of a list that ends where names do.
template<class Value>
std::string names_from(Value first, const std::string& prefix, const std::string& last_word) {
    std::string names;
    for (int value = static_cast<int>(first);; ++value) {
        const std::string name = name_of(static_cast<Value>(value));
        if (name.empty())
            return names;
        const bool is_last = *name_of(static_cast<Value>(value + 1)) == '\0';
        if (!names.empty())
            names += is_last ? last_word : ", ";
        names += prefix + name;
    }
}

} // namespace

std::string layer_names(const std::string& last_word) {
    return names_from(Layer::color, "", last_word);
}

std::string format_names(const std::string& prefix) {
    return names_from(PictureFormat::png, prefix, " or ");
}

namespace {

Color color_of(unsigned rgb) {
    const auto part = [rgb](unsigned shift) {
        return static_cast<float>(rgb >> shift & 0xffu) / 255.0f;
    };
    return {part(16), part(8), part(0), 1.0f};
}

std::optional<unsigned> hexadecimal_in(const std::string& digits) {
    unsigned value = 0;
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, value, 16);
    if (error != std::errc() || stop != end)
        return std::nullopt;
    return value;
}

} // namespace

std::optional<Color> color_in(const std::string& word) {
    for (const NamedColor& known : named_colors)
        if (word == known.name)
            return color_of(known.rgb);
    if (word.empty() || word[0] != '#')
        return std::nullopt;
    std::string digits = word.substr(1);
    if (digits.size() == 3)
        digits = {digits[0], digits[0], digits[1], digits[1], digits[2], digits[2]};
    const std::optional<unsigned> rgb = hexadecimal_in(digits);
    if (digits.size() != 6 || !rgb)
        return std::nullopt;
    return color_of(*rgb);
}

std::optional<Color> background_in(const std::string& word) {
    return word == "transparent" ? Color{0.0f, 0.0f, 0.0f, 0.0f} : color_in(word);
}
