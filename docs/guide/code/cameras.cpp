// Framing, an orbit, a track, and a name at a place of the world: cameras folder/ picture.jpg

#include <cstdio>
#include <string>

#include <orvex_kit/kit.h>

using namespace orvex;

namespace {

constexpr kit::Screen screen{480, 360};
const vec4 lantern(0.0f, 6.8f, 0.0f, 1.0f);

void show_eye(const char* what, const kit::Camera& camera) {
    const vec4 eye = camera.eye();
    std::printf("%s: %.1f %.1f %.1f\n", what, static_cast<double>(eye.x),
                static_cast<double>(eye.y), static_cast<double>(eye.z));
}

/// As a host's window calls it.
kit::Camera play_with_the_mouse(const kit::Model& model) {
    kit::Orbit orbit(model.extent());
    orbit.turn(80, -20);
    orbit.pan(12, 0, screen);
    orbit.zoom(2);
    kit::OrbitKeys held;
    held.right = true;
    orbit.move(held, 0.5);
    return orbit.camera(screen);
}

const char* const film = R"({"keys": [
    {"time": 0, "eye": [12, 5, 14], "target": [0, 4, 0], "opening": 35},
    {"time": 2, "eye": [-4, 6, 16], "target": [0, 5, 0]},
    {"time": 4, "eye": [-12, 9, 4], "target": [0, 6, 0], "opening": 30}
]})";

bool draw(kit::View& view, kit::Model& model, const kit::Track& track) {
    kit::Camera camera = track.at(2.8);
    kit::fit_clip(camera, model.extent());
    show_eye("on the track", camera);
    view.begin(camera);
    view.add(model);
    view.end();

    kit::Text text(view);
    if (const auto place = camera.project(lantern, screen))
        text.add("the lantern", static_cast<float>(place->x) + 50.0f,
                 static_cast<float>(place->y) - 12.0f);
    return text.draw(screen.width, screen.height);
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 3)
        return 1;
    const kit::Engine engine;
    kit::View view(screen.width, screen.height);
    kit::Model model(std::string(argv[1]) + "lighthouse.obj");

    const kit::Camera all = kit::see_all(model.extent(), {}, {screen.width, screen.height});
    show_eye("all of it", all);
    show_eye("around it", play_with_the_mouse(model));

    const kit::Track track = kit::Track::from_text(film, "film");
    if (!track)
        std::fprintf(stderr, "%s\n", track.reason().c_str());
    return draw(view, model, track) && view.write(argv[2]) ? 0 : 1;
}
