// What keeps a picture of the kit empty, one cause after the other: screen_stays_black_kit folder/

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

#include <orvex_kit/kit.h>

using namespace orvex;

namespace {

/// How much of a picture isn't its background, in thousandths.
int thousandths_shown(kit::View& view) {
    kit::Picture picture;
    if (!view.read(picture))
        return 0;
    const std::uint8_t* corner = picture.row<std::uint8_t>(0);
    int shown = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            shown += std::memcmp(picture.row<std::uint8_t>(y) + 4 * x, corner, 4) != 0 ? 1 : 0;
    return shown * 1000 / (picture.width() * picture.height());
}

void show_reasons() {
    const kit::View early(64, 48);
    std::printf("%s\n", early.reason().c_str());
    const kit::Engine engine;
    const kit::View thin(0, 48);
    std::printf("%s\n", thin.reason().c_str());
    const kit::Model model("none.obj");
    std::printf("%s\n", model.reason().c_str());
}

void show_cameras(kit::View& view, kit::Model& model) {
    const kit::Angle angle;
    kit::Camera camera;
    const auto show = [&](const char* what) {
        view.begin(camera);
        view.add(model);
        view.end();
        std::printf("%s: %d\n", what, thousandths_shown(view));
    };
    camera.look_at({0, 10, 60, 1}, {0, 4, 0, 1});
    camera.set_clip(0.1f, 20.0f);
    show("the far plane is too near");
    kit::fit_clip(camera, model.extent());
    show("clip planes that fit");
    camera.look_at({0, 10, 60, 1}, {0, 4, 120, 1});
    show("it looks elsewhere");
    camera = kit::see_all(model.extent(), angle, {view.width(), view.height()});
    show("a camera that sees all");
}

void show_frames(kit::View& view, kit::Model& model) {
    const kit::Camera camera = kit::see_all(model.extent(), {}, {view.width(), view.height()});
    view.begin(camera);
    view.end();
    view.add(model);
    std::printf("added after the end: %d\n", thousandths_shown(view));
    view.begin(camera);
    view.add(model);
    std::printf("read before the end: %d, ", thousandths_shown(view));
    view.end();
    std::printf("after it: %d\n", thousandths_shown(view));
}

const char* const tinted = R"([Vertex_Shader]
uniform mat4 orvex_ModelViewProjectionMatrix;
void main() { gl_Position = orvex_ModelViewProjectionMatrix * POSITION; }
[Pixel_Shader]
uniform vec4 tint;
void main() { COLOR = tint; }
)";

void show_looks(kit::View& view, kit::Model& model) {
    if (const kit::Outcome taken = view.set_look(kit::Look::named("gold")); !taken)
        std::printf("%s\n", taken.reason().c_str());
    const kit::Look mine = kit::Look::from_text("[Pixel_Shader]\nvoid main() { COLOR = tint; }\n");
    if (const kit::Outcome taken = view.set_look(mine); !taken)
        std::printf("%s\n", taken.reason().c_str());

    view.set_background({0.0f, 0.0f, 0.0f, 1.0f});
    if (!view.set_look(kit::Look::from_text(tinted)))
        return;
    view.look().set("tnit", vec4(1.0f, 0.5f, 0.2f, 1.0f));
    view.draw(model);
    std::printf("another uniform was set: %d\n", thousandths_shown(view));
    view.look().set("tint", vec4(1.0f, 0.5f, 0.2f, 1.0f));
    view.draw(model);
    std::printf("the uniform was set: %d\n", thousandths_shown(view));
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2)
        return 1;
    show_reasons();
    kit::View view;
    {
        const kit::Engine engine;
        view = kit::View(64, 48);
        kit::Model model(std::string(argv[1]) + "lighthouse.obj");
        show_cameras(view, model);
        show_frames(view, model);
        show_looks(view, model);
    }
    std::printf("%s\n", view.reason().c_str());
    return 0;
}
