// Text over the picture of a view.

#include <cmath>
#include <memory>
#include <string>
#include <utility>

#include <orvex_kit/font.h>

#include "orvex_c/private/drawing.h"
#include "orvex_c/private/handles.h"
#include "orvex_c/private/records.h"

using namespace orvex::c;

namespace {

void require_length(float number, const char* name) {
    if (!(number >= 0.0f) || !std::isfinite(number))
        refuse_argument(name, number_text(static_cast<double>(number)), "it is finite, from 0");
}

kit::TextStyle kit_style(const orvex_text_style* given) {
    const orvex_text_style told = record_in(given, "style");
    require_length(told.line_height, "style->line_height");
    require_length(told.wrap_width, "style->wrap_width");
    require_length(told.line_spacing, "style->line_spacing");
    require_choice(told.align, ORVEX_ALIGN_RIGHT, "style->align");
    static constexpr kit::Align aligns[] = {kit::Align::left, kit::Align::center,
                                            kit::Align::right};
    kit::TextStyle style;
    if (told.line_height > 0.0f)
        style.size = told.line_height;
    bool has_color = false;
    for (int i = 0; i < 4; ++i) {
        require_range(static_cast<double>(told.color[i]), 0.0, 1.0,
                      ("style->color[" + std::to_string(i) + "]").c_str());
        has_color = has_color || told.color[i] > 0.0f;
    }
    if (has_color)
        style.color = {told.color[0], told.color[1], told.color[2], told.color[3]};
    style.align = aligns[told.align];
    style.wrap_width = told.wrap_width;
    if (told.line_spacing > 0.0f)
        style.line_spacing = told.line_spacing;
    return style;
}

} // namespace

orvex_result orvex_text_create(orvex_view view, const char* font, orvex_text* text) {
    return guarded([&] {
        Out<orvex_text> out(text, "text");
        const Drawing drawing(view);
        const kit::Font letters = font ? kit::Font(font) : kit::Font();
        if (!letters)
            refuse(ORVEX_ERROR_FILE, letters.reason());
        auto thing = std::make_unique<TextThing>(view_of(view), letters);
        if (!thing->text)
            refuse(font ? ORVEX_ERROR_FILE : ORVEX_ERROR_DRIVER, thing->text.reason());
        out = std::move(thing);
    });
}

orvex_result orvex_text_destroy(orvex_text text) {
    return guarded([&] {
        text_of(text);
        end_handle(text);
    });
}

orvex_result orvex_text_add(orvex_text text, const char* string, float x, float y,
                            const orvex_text_style* style) {
    return guarded([&] {
        TextThing& thing = text_of(text);
        require_pointer(string, "string");
        const float place[] = {x, y};
        require_finite(place, 2, "x and y");
        thing.text.add(string, x, y, kit_style(style));
    });
}

orvex_result orvex_text_draw(orvex_text text) {
    return guarded([&] {
        TextThing& thing = text_of(text);
        const Drawing drawing(thing.view);
        if (!thing.text.draw(drawing.view.width(), drawing.view.height()))
            refuse(ORVEX_ERROR_MEMORY, "there isn't enough memory for the text");
    });
}

orvex_result orvex_text_measure(orvex_text text, const char* string, const orvex_text_style* style,
                                orvex_text_extent* extent) {
    return guarded([&] {
        const TextThing& thing = text_of(text);
        require_pointer(string, "string");
        const kit::TextExtent room = thing.font.measure(string, kit_style(style));
        record_out(
            {0, room.width, room.height, room.lines, room.invalid_bytes, room.missing.size()},
            extent, "extent");
    });
}
