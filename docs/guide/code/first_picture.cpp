// A model file as a picture, by the kit: first_picture model.obj picture.jpg

#include <cstdio>

#include <orvex_kit/kit.h>

using namespace orvex;

namespace {

int fail(const std::string& reason) {
    std::fprintf(stderr, "%s\n", reason.c_str());
    return 1;
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 3)
        return fail("first_picture model.obj picture.jpg");

    const kit::Engine engine;
    kit::View view(480, 360);
    if (!view)
        return fail(view.reason());
    kit::Model model(argv[1]);
    if (!model)
        return fail(model.reason());

    view.set_background(vec4(0.55f, 0.7f, 0.85f, 1.0f));
    kit::Angle angle;
    angle.azimuth = 40.0f;
    view.draw(model, angle);
    const kit::Outcome written = view.write(argv[2]);
    return written ? 0 : fail(written.reason());
}
