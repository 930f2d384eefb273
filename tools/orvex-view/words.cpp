#include "words.h"

#include <algorithm>

#include "keys.h"

using namespace orvex::kit;

namespace {

constexpr float line_height = 20.0f;
constexpr float margin = 12.0f;
const orvex::vec4 plain(1.0f, 1.0f, 1.0f, 1.0f);
const orvex::vec4 warning(1.0f, 0.72f, 0.55f, 1.0f);

TextStyle style_of(float scale, const orvex::vec4& color = plain) {
    TextStyle style;
    style.size = line_height * scale;
    style.color = color;
    return style;
}

} // namespace

/// With a shadow, by which it is read on any model.
void WordsOverlay::add(const std::string& line, float x, float y, const TextStyle& style) {
    TextStyle shadow = style;
    shadow.color = orvex::vec4(0.0f, 0.0f, 0.0f, 0.75f);
    const float shift = std::max(1.0f, style.size / 16.0f);
    text->add(line, x + shift, y + shift, shadow);
    text->add(line, x, y, style);
}

void WordsOverlay::add_corners(const Words& words, float width, float height, float scale) {
    const float edge = margin * scale;
    const float room = std::max(width - 2 * edge, 1.0f);
    TextStyle style = style_of(scale);
    style.wrap_width = room;
    if (!words.title.empty())
        add(words.title, edge, edge, style);
    style.align = Align::right;
    if (!words.statistics.empty())
        add(words.statistics, edge, edge, style);
    style.align = Align::center;
    if (!words.middle.empty())
        add(words.middle, edge, (height - font.measure(words.middle, style).height) / 2, style);
    style.align = Align::left;
    style.color = words.is_notice_bad ? warning : plain;
    if (!words.notice.empty())
        add(words.notice, edge, height - edge - font.measure(words.notice, style).height, style);
}

/// Two columns, smaller where the window is.
std::string WordsOverlay::add_help(View& view, float scale) {
    std::string keys, meanings;
    for (const KeyLine& line : key_lines()) {
        keys += (keys.empty() ? "" : "\n") + std::string(line.keys);
        meanings += (meanings.empty() ? "" : "\n") + std::string(line.meaning);
    }
    const auto width = static_cast<float>(view.width());
    const auto height = static_cast<float>(view.height());
    const auto room_of = [&](const std::string& column) {
        return font.measure(column, style_of(scale));
    };
    const float gap = 2 * margin * scale;
    const float wanted = room_of(keys).width + room_of(meanings).width + 3 * gap;
    const float fit = std::min({1.0f, width / wanted, height / (room_of(keys).height + 2 * gap)});
    const TextStyle style = style_of(scale * fit);
    const float left = (width - wanted * fit) / 2;
    const float tall = (room_of(keys).height + 2 * gap) * fit;
    const float top = (height - tall) / 2;
    std::string mistake = pane.shade(view, left, top, wanted * fit, tall);
    text->add(keys, left + gap * fit, top + gap * fit, style);
    text->add(meanings, left + (room_of(keys).width + 2 * gap) * fit, top + gap * fit, style);
    return mistake;
}

std::string WordsOverlay::draw(View& view, const Words& words, float scale) {
    if (words == Words())
        return "";
    if (!text)
        text.emplace(view, font);
    if (!*text)
        return text->reason();
    add_corners(words, static_cast<float>(view.width()), static_cast<float>(view.height()), scale);
    std::string mistake = words.has_help ? add_help(view, scale) : "";
    if (!text->draw(view.width(), view.height()))
        mistake = "no memory for text";
    return mistake;
}
