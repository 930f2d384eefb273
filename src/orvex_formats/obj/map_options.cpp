#include "orvex_formats/obj/private/map_options.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "orvex_formats/obj/private/obj_numbers.h"
#include "orvex_formats/private/words.h"

namespace orvex::formats {

namespace {

struct Option {
    std::string_view word;
    int least; ///< values that follow
    int most;  ///< likewise; those beyond the least are numbers
};

constexpr std::array<Option, 13> options = {{{"-blendu", 1, 1},
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

bool is_finite_number(std::string_view word, float& number) {
    const char* const end = word.data() + word.size();
    float read = 0.0f;
    if (word.empty() || read_float(word.data(), end, read) != end || !std::isfinite(read))
        return false;
    number = read;
    return true;
}

void apply(const Option& option, const std::array<float, 3>& numbers, int count, bool is_on,
           MapStatement& map) {
    if (option.word == "-clamp")
        map.is_clamped = is_on;
    if (count == 0)
        return;
    if (option.word == "-bm")
        map.strength = numbers[0];
    if (option.word == "-o") {
        map.offset_u = numbers[0];
        map.offset_v = count > 1 ? numbers[1] : 0.0f;
    }
    if (option.word == "-s") {
        map.scale_u = numbers[0];
        map.scale_v = count > 1 ? numbers[1] : 1.0f;
    }
}

/// Takes the values of an option, as long as a name is left behind them.
void take_values(const Option& option, std::string_view& text, MapStatement& map) {
    std::array<float, 3> numbers{};
    int num_numbers = 0;
    bool is_on = false;
    for (int i = 0; i < option.most; ++i) {
        Words words(text);
        const std::string_view word = words.take();
        float number = 0.0f;
        const bool is_number = is_finite_number(word, number);
        if ((!is_number && i >= option.least) || words.remaining().empty())
            break;
        if (is_number && num_numbers == i)
            numbers[static_cast<std::size_t>(num_numbers++)] = number;
        is_on = is_on || word == "on";
        text = words.remaining();
    }
    apply(option, numbers, num_numbers, is_on, map);
}

} // namespace

MapStatement read_map(std::string_view text) {
    MapStatement map;
    for (;;) {
        Words words(text);
        const std::string_view word = words.take();
        const auto* const option = std::find_if(
            options.begin(), options.end(), [&](const Option& one) { return one.word == word; });
        if (option == options.end())
            break;
        text = words.remaining();
        take_values(*option, text, map);
    }
    map.name = without_quotes(Words(text).remaining());
    return map;
}

PhysicalTexture MapStatement::texture() const {
    PhysicalTexture texture;
    texture.image = name;
    texture.offset_u = offset_u;
    texture.offset_v = offset_v;
    texture.scale_u = scale_u;
    texture.scale_v = scale_v;
    texture.strength = strength;
    if (is_clamped)
        texture.wrap_u = texture.wrap_v = PhysicalTexture::Wrap::clamp;
    return texture;
}

std::string without_quotes(std::string_view text) {
    const bool is_quoted = text.size() > 2 && text.front() == '"' && text.back() == '"';
    return std::string(is_quoted ? text.substr(1, text.size() - 2) : text);
}

} // namespace orvex::formats
