// How far away each pixel of a model is, as a picture: pictures_as_data folder/ picture.jpg

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include <orvex_kit/kit.h>

using namespace orvex;

namespace {

/// Bright is near; what shows nothing stays black.
kit::Picture grey_of(const kit::Picture& depth, const kit::Camera& camera) {
    kit::Picture grey;
    if (!grey.create(depth.width(), depth.height(), 1, kit::Sample::u8))
        return grey;
    for (int y = 0; y < depth.height(); ++y)
        for (int x = 0; x < depth.width(); ++x) {
            const float away = depth.row<float>(y)[x];
            const float share = (camera.far() - away) / (camera.far() - camera.near());
            if (std::isfinite(away))
                grey.row<std::uint8_t>(y)[x] = static_cast<std::uint8_t>(40.0f + 215.0f * share);
        }
    return grey;
}

/// What the pixel in the middle shows.
void tell_of_middle(const kit::Model& model, const kit::Picture& depth, const kit::Picture& ids) {
    const int x = ids.width() / 2;
    const int y = ids.height() / 2;
    const int mesh = ids.row<std::int32_t>(y)[x];
    if (mesh < 0)
        return;
    const std::string& name = model.meshes()[static_cast<std::size_t>(mesh)].name;
    const double away = static_cast<double>(depth.row<float>(y)[x]);
    std::printf("in the middle: %s, %.1f away\n", name.c_str(), away);
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 3)
        return 1;
    const kit::Engine engine;
    kit::View view(640, 480);
    kit::Model model(std::string(argv[1]) + "lighthouse.obj");
    const kit::Camera camera = kit::see_all(model.extent(), kit::Angle(), {640, 480});

    std::vector<kit::Picture> pictures;
    const kit::Outcome drawn =
        kit::draw_layers(view, camera, {&model}, {kit::Layer::depth, kit::Layer::object}, pictures);
    if (!drawn) {
        std::fprintf(stderr, "%s\n", drawn.reason().c_str());
        return 1;
    }

    tell_of_middle(model, pictures[0], pictures[1]);
    return kit::write_picture(grey_of(pictures[0], camera), argv[2]) ? 0 : 1;
}
