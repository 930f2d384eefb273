// A text over the picture: the font first, its own or a file, then the lines at their place.

#include "text_overlay.h"

#include <algorithm>

#include <orvex/math/vec4.h>

using namespace orvex;
using namespace orvex::kit;

std::string TextOverlay::load(const std::string& path) {
    if (!path.empty())
        font = kit::Font(path);
    if (!font)
        return font.reason();
    text = std::make_unique<Text>(view, font);
    return text->reason();
}

std::vector<std::string> lines_of(const std::string& text) {
    std::vector<std::string> lines(1);
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool is_escape = text[i] == '\\' && i + 1 < text.size() && text[i + 1] == 'n';
        if (is_escape || text[i] == '\n')
            lines.emplace_back();
        else
            lines.back() += text[i];
        i += is_escape ? 1 : 0;
    }
    return lines;
}

namespace {

TextStyle style_of(const TextOverlay::Setting& setting) {
    TextStyle style;
    style.size = static_cast<float>(setting.line_height);
    return style;
}

} // namespace

std::string TextOverlay::missing_glyphs(const std::string& words) const {
    std::string names;
    for (const std::string& line : lines_of(words))
        for (const char32_t code : font.measure(line).missing)
            if (const std::string name = code_point_name(code); names.find(name) == names.npos)
                names += (names.empty() ? "" : ", ") + name;
    return names;
}

bool TextOverlay::has_room_for(const std::string& words, const Setting& setting) const {
    const std::vector<std::string> lines = lines_of(words);
    const float height = static_cast<float>(setting.line_height) * static_cast<float>(lines.size());
    bool fits = height <= static_cast<float>(setting.height);
    for (const std::string& line : lines)
        fits = fits &&
               font.measure(line, style_of(setting)).width <= static_cast<float>(setting.width);
    return fits;
}

bool TextOverlay::draw(const std::string& words, const Setting& setting) {
    constexpr std::size_t most_lines = 256;
    if (lines_of(words).size() > most_lines)
        return false;
    const float shift = std::max(1.0f, static_cast<float>(setting.line_height) / 16.0f);
    add(words, setting, shift, {0.0f, 0.0f, 0.0f, 0.6f});
    const Color& color = setting.color;
    add(words, setting, 0.0f, {color.r, color.g, color.b, 1.0f});
    return text->draw(setting.width, setting.height);
}

void TextOverlay::add(const std::string& words, const Setting& setting, float shift,
                      const vec4& color) {
    const float line_height = static_cast<float>(setting.line_height);
    const float margin = line_height / 2;
    const std::vector<std::string> lines = lines_of(words);
    TextStyle style = style_of(setting);
    style.color = color;
    const float room =
        static_cast<float>(setting.height) - 2 * margin - line_height * float(lines.size());
    float top = margin + room * setting.place.down + shift;
    for (const std::string& line : lines) {
        const float free =
            static_cast<float>(setting.width) - 2 * margin - font.measure(line, style).width;
        text->add(line, margin + free * setting.place.across + shift, top, style);
        top += line_height;
    }
}
