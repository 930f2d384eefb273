#pragma once

#include <optional>
#include <string>
#include <vector>

#include <orvex_kit/text.h>

#include "pane.h"

/// What is written over the model.
struct Words {
    std::string title;      ///< in the upper left corner
    std::string statistics; ///< in the upper right one
    std::string notice;     ///< along the lower edge
    std::string middle;     ///< in the middle
    bool is_notice_bad = false;
    bool has_help = false; ///< what the keys do, on a shade in the middle

    bool operator==(const Words&) const = default;
};

/// Draws words over what a view shows. Ends before the view, with its context current.
class WordsOverlay {
public:
    /// @param scale  pixels in a unit of the screen, such as 2 on a HiDPI one
    /// @return what went wrong; empty if nothing did
    std::string draw(orvex::kit::View& view, const Words& words, float scale);

private:
    std::optional<orvex::kit::Text> text; ///< none as yet
    orvex::kit::Font font;
    Pane pane;

    void add(const std::string& line, float x, float y, const orvex::kit::TextStyle& style);
    void add_corners(const Words& words, float width, float height, float scale);
    std::string add_help(orvex::kit::View& view, float scale);
};
