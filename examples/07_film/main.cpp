// A flight of the camera as a film, which encoders and players read: film [gl2], and then for
// example ffmpeg -i film.y4m film.mp4

#include <cstdio>

#include <orvex_kit/kit.h>

using namespace orvex;

// Key frames; a file of the same kind is read by kit::Track("flight.json").
static const char flight[] = R"({"keys": [
    {"time": 0,   "eye": [-30, 2, 32],  "target": [0, 4, 0], "opening": 24},
    {"time": 1,   "eye": [4, 6, 30],    "target": [0, 4, 0], "opening": 32},
    {"time": 2,   "eye": [26, 14, 12],  "target": [0, 3, 0]},
    {"time": 2.4, "eye": [22, 22, -8],  "target": [0, 2, 0]}
]})";

int main(int argc, char**) {
    const kit::Engine engine;
    kit::View view(320, 240, {argc > 1 ? kit::Path::gl2 : kit::Path::gl3});
    kit::Model model("lighthouse.obj");
    const kit::Track track = kit::Track::from_text(flight, "flight");
    if (!view || !model || !track) {
        std::fprintf(stderr, "%s%s%s\n", view.reason().c_str(), model.reason().c_str(),
                     track.reason().c_str());
        return 1;
    }

    constexpr int rate = 8;
    kit::FrameStreamOptions options;
    options.rate = rate;
    kit::FrameStream film("film.y4m", options);
    kit::Picture frame;
    kit::Outcome outcome;
    for (int i = 0; outcome && i <= rate * track.end(); ++i) {
        kit::Camera camera = track.at(static_cast<double>(i) / rate);
        kit::fit_clip(camera, model.extent());
        view.begin(camera);
        view.add(model);
        view.end();
        outcome = view.read(frame);
        if (outcome)
            outcome = film.put(frame);
    }
    if (outcome)
        outcome = film.finish();
    if (!outcome)
        std::fprintf(stderr, "%s\n", outcome.reason().c_str());
    return outcome ? 0 : 1;
}
