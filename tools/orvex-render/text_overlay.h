#pragma once

#include <string>
#include <vector>

#include "charset_metrics.h"
#include "text_place.h"
#include "values.h"

namespace orvex {
class Camera;
class Font;
class GpuProgram;
class Renderer;
} // namespace orvex

/// Text on top of a picture, in a font of glyphs drawn on a sheet.
class TextOverlay {
public:
    /// @param program  draws glyphs; see `text_shader`
    TextOverlay(orvex::Renderer* renderer, orvex::GpuProgram* program, bool gl3);
    ~TextOverlay();
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
    const std::vector<std::string>& files() const { return read_files; }

    /// Whether all lines lie within the picture.
    bool has_room_for(const std::string& text, const Setting& setting) const;
    /// Draws lines of text, each set off by a shadow. @return false when there are too many
    bool draw(const std::string& text, const Setting& setting);

private:
    orvex::Renderer* renderer;
    orvex::GpuProgram* program;
    orvex::Font* font;
    orvex::Camera* camera;
    CharsetMetrics metrics;
    std::vector<std::string> read_files;
    bool gl3;

    std::string load_builtin();
    std::string load_file(const std::string& path);
    bool queue(const std::string& text, const Setting& setting, float shift, const Color& color,
               float opacity);
    void draw_queue(const Setting& setting);
};

/// The lines of a text: "\n" as it is written on a command line, and line feeds, end one.
std::vector<std::string> lines_of(const std::string& text);
