#pragma once

/// @file
/// What takes the values of options: each stores a value that is good, or says what is wanted.

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <utility>

#include "arguments.h"
#include "values.h"

/// Stores what a reader of values gives.
/// @param target  outlives the taker
template<class Value, class Read>
Arguments::Taker take(Value& target, std::string wanted, Read read) {
    return [&target, wanted = std::move(wanted), read = std::move(read)](const std::string& word) {
        const auto value = read(word);
        if (!value)
            return wanted;
        target = *value;
        return std::string();
    };
}

/// One word of a few, each with the value that it stands for.
template<class Value, std::size_t count>
Arguments::Taker take_word(Value& target, std::string wanted,
                           std::array<std::pair<const char*, Value>, count> words) {
    return take(target, std::move(wanted),
                [words](const std::string& word) -> std::optional<Value> {
                    for (const auto& [name, value] : words)
                        if (word == name)
                            return value;
                    return std::nullopt;
                });
}

/// A whole number in a range.
Arguments::Taker take_whole_number(int& target, int least, int most);
/// A number in a range, with a fraction or without.
Arguments::Taker take_number(float& target, float least, float most, std::string wanted);
/// A colour, as `color_in` reads it.
Arguments::Taker take_color(Color& target);
/// Any text but an empty one.
Arguments::Taker take_text(std::string& target, std::string wanted);
