#pragma once

#include <memory>
#include <string>
#include <vector>

#include <orvex_kit/text.h>

#include "text_place.h"
#include "values.h"

/// Text on top of a picture, in the kit's font or in one of glyphs drawn on a sheet.
class TextOverlay {
public:
    explicit TextOverlay(orvex::kit::View& view)
        : view(view) {}
    TextOverlay(const TextOverlay&) = delete;
    TextOverlay& operator=(const TextOverlay&) = delete;

    /// Loads a font: a charset's file, or the built-in one for an empty name.
    /// @return what went wrong; empty if nothing did
    std::string load(const std::string& path);

    /// How a text is set on the picture.
    struct Setting {
        TextPlace place;
        int line_height; ///< in pixels
        Color color;
        int width; ///< of the picture
        int height;
    };
    /// The files that the font was loaded from; none for the built-in one.
    const std::vector<std::string>& files() const { return font.files(); }

    /// What of a text the font has no glyphs for, as "U+6F22, U+5B57"; empty if it has all.
    std::string missing_glyphs(const std::string& words) const;
    /// Whether all lines lie within the picture.
    bool has_room_for(const std::string& words, const Setting& setting) const;
    /// Draws lines of text, each set off by a shadow. @return false when there are too many
    bool draw(const std::string& words, const Setting& setting);

private:
    orvex::kit::View& view;
    orvex::kit::Font font;
    std::unique_ptr<orvex::kit::Text> text; ///< from a good `load` on

    void add(const std::string& words, const Setting& setting, float shift,
             const orvex::vec4& color);
};

/// The lines of a text: "\n" as it is written on a command line, and line feeds, end one.
std::vector<std::string> lines_of(const std::string& text);
