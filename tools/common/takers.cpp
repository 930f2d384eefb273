#include "takers.h"

Arguments::Taker take_whole_number(int& target, int least, int most) {
    return take(target,
                "a whole number from " + std::to_string(least) + " to " + std::to_string(most),
                [=](const std::string& word) { return whole_number_in(word, least, most); });
}

Arguments::Taker take_number(float& target, float least, float most, std::string wanted) {
    return take(target, std::move(wanted),
                [=](const std::string& word) { return number_in(word, least, most); });
}

Arguments::Taker take_color(Color& target) {
    return take(target, "#rgb, #rrggbb or one of " + color_names(), color_in);
}

Arguments::Taker take_text(std::string& target, std::string wanted) {
    return take(target, std::move(wanted), [](const std::string& word) {
        return word.empty() ? std::nullopt : std::optional(word);
    });
}
