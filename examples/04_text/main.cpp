// Texts over a model, placed by the room that they take: text [gl2]

#include <cstdio>
#include <string>

#include <orvex_kit/kit.h>

using namespace orvex;

static void add_texts(kit::Text& text, const kit::Font& font, float width, float height) {
    kit::TextStyle heading;
    heading.size = 56;
    heading.color = {1.0f, 0.85f, 0.5f, 1.0f};
    text.add("The lighthouse", 28, 20, heading);

    kit::TextStyle body;
    body.size = 22;
    body.wrap_width = 240;
    text.add("Texts are UTF-8, and break where the lines are full: Leuchtturm, phare, fyr, "
             "φάρος, маяк.",
             32, 96, body);

    kit::TextStyle note;
    note.size = 16;
    note.color = {0.7f, 0.8f, 0.9f, 1.0f};
    note.align = kit::Align::right;
    const std::string words = "18,4 m ± 0,1 m\nØ 6 m";
    const kit::TextExtent room = font.measure(words, note);
    text.add(words, width - room.width - 24, height - room.height - 20, note);
}

int main(int argc, char**) {
    const kit::Engine engine;
    kit::View view(800, 500, {argc > 1 ? kit::Path::gl2 : kit::Path::gl3});
    kit::Model model("lighthouse.obj");

    kit::Orbit orbit(model.extent());
    orbit.pan(90, -10, {view.width(), view.height()});
    view.begin(orbit.camera({view.width(), view.height()}));
    view.add(model);
    const kit::Font font;
    kit::Text text(view, font);
    add_texts(text, font, 800, 500);
    text.draw(800, 500);
    view.end();

    const kit::Outcome written = view.write("text.jpg");
    if (!model || !written)
        std::fprintf(stderr, "%s%s\n", model.reason().c_str(), written.reason().c_str());
    return model && written ? 0 : 1;
}
