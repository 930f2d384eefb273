#pragma once

#include <array>
#include <string>

/// How much room a charset's glyphs take, in pixels of its sheet: what a layout needs and a font
/// keeps to itself.
struct CharsetMetrics {
    int line_height = 0;
    std::array<int, 256> advances{};

    /// The length of a line of text.
    int width_of(const std::string& line) const;
};

/// Reads BMFont XML. What isn't there counts as 0.
CharsetMetrics metrics_of(const std::string& charset);
