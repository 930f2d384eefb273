// Text over a picture: text_on_pictures picture.jpg

#include <cstdio>
#include <string>

#include <orvex_kit/kit.h>

using namespace orvex;

namespace {

constexpr int width = 480;
constexpr int height = 160;

const char* const story = "A line that is too long breaks at blanks. Ελληνικά, кириллица, 5 m².";

/// What the font lacks is told before anything is drawn.
void warn_of_missing(const kit::Font& font, const std::string& words) {
    for (const char32_t code : font.measure(words).missing)
        std::printf("no glyph for %s\n", kit::code_point_name(code).c_str());
}

void write_texts(kit::Text& text, const kit::Font& font) {
    kit::TextStyle title;
    title.size = 40.0f;
    title.color = vec4(1.0f, 0.8f, 0.3f, 1.0f);
    text.add("Lighthouse", 20, 16, title);

    kit::TextStyle block;
    block.size = 22.0f;
    block.wrap_width = 280.0f;
    block.align = kit::Align::center;
    text.add(story, 20, 76, block);

    // A corner is found by measuring: the room's width from the right edge.
    const std::string note = "14:05";
    const kit::TextExtent room = font.measure(note);
    text.add(note, static_cast<float>(width) - 20.0f - room.width, 24);
}

} // namespace

int main(int argc, char** argv) {
    const kit::Engine engine;
    kit::View view(width, height);
    view.begin(kit::Camera());
    view.end();

    const kit::Font font;
    warn_of_missing(font, "灯台 for a lighthouse");
    kit::Text text(view, font);
    if (!text)
        std::fprintf(stderr, "%s\n", text.reason().c_str());
    write_texts(text, font);
    return text.draw(width, height) && view.write(argc > 1 ? argv[1] : "text.jpg") ? 0 : 1;
}
