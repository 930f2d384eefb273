#pragma once

/// @file
/// Values as they stand on a command line. Each reader takes a whole word and gives nothing for one
/// that is no good.

#include <optional>
#include <string>

struct Size {
    int width;
    int height;
};

/// Red, green, blue and opacity, 0 to 1.
struct Color {
    float r;
    float g;
    float b;
    float a = 1.0f;
};

/// A decimal number from `least` to `most`.
std::optional<int> whole_number_in(const std::string& word, int least, int most);
/// A decimal number from `least` to `most`, with a fraction and an exponent or without.
std::optional<float> number_in(const std::string& word, float least, float most);
/// "800x600": pixels, each from 1 to 16384.
std::optional<Size> size_in(const std::string& word);
/// "#rgb" and "#rrggbb" in hexadecimal digits, or a name: black, white, gray, red, green, blue,
/// yellow, cyan, magenta, orange.
std::optional<Color> color_in(const std::string& word);
/// As `color_in`, or "transparent", which is black without opacity.
std::optional<Color> background_in(const std::string& word);
/// The names of colours, with commas between them.
std::string color_names();
/// The names of layers, as "color, depth and face".
std::string layer_names(const std::string& last_word = " and ");
/// The names of formats, each behind a prefix, as "png, jpg or npy".
std::string format_names(const std::string& prefix = "");
