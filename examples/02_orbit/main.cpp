// A model as a hand has turned it, and what is said where something goes wrong. Run it among the
// files of examples/data; with "gl2" it draws as OpenGL 2 can: orbit [gl2]

#include <cstdio>

#include <orvex_kit/kit.h>

using namespace orvex;

int main(int argc, char**) {
    const kit::Screen screen{640, 480};
    const kit::Engine engine;
    kit::View view(screen.width, screen.height, {argc > 1 ? kit::Path::gl2 : kit::Path::gl3});
    kit::Model model("lighthouse.obj");
    if (!view || !model) {
        std::fprintf(stderr, "%s%s\n", view.reason().c_str(), model.reason().c_str());
        return 1;
    }

    kit::Orbit orbit(model.extent());
    orbit.turn(190, 60);       // the mouse was moved with its button held,
    orbit.zoom(1);             // its wheel turned,
    orbit.pan(8, -40, screen); // and it was moved with the other button

    view.begin(orbit.camera(screen));
    view.add(model, orbit.place().angle); // the lights stay with whoever looks
    view.end();

    const kit::Outcome written = view.write("orbit.jpg");
    if (!written)
        std::fprintf(stderr, "%s\n", written.reason().c_str());
    return written ? 0 : 1;
}
