// Pictures as data: what a frame shows, how far away it is, which way it faces, and which mesh it
// belongs to. The sheet shows the four, and the depths lie in a file for NumPy, too: layers [gl2]

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <vector>

#include <orvex_kit/kit.h>

using namespace orvex;

/// Every pixel of the layers; the sheet has one for two by two of them.
constexpr int width = 800;
constexpr int height = 600;

/// The layers and how each is painted; black is nothing.
struct Painting {
    const kit::Camera camera;
    std::vector<kit::Picture> layers;

    vec3 color(int x, int y) const {
        const std::uint8_t* const pixel = layers[0].row<std::uint8_t>(y) + 4 * x;
        return vec3(pixel[0] / 255.0f, pixel[1] / 255.0f, pixel[2] / 255.0f);
    }
    vec3 depth(int x, int y) const {
        const float away = layers[1].row<float>(y)[x];
        const float near = (camera.far() - away) / (camera.far() - camera.near());
        return std::isfinite(away) ? vec3(1, 1, 1) * (0.15f + 0.85f * near) : vec3(0, 0, 0);
    }
    vec3 normal(int x, int y) const {
        const float* const to = layers[2].row<float>(y) + 3 * x;
        const bool is_there = to[0] != 0 || to[1] != 0 || to[2] != 0;
        return is_there ? vec3(1 + to[0], 1 - to[1], 1 - to[2]) * 0.5f : vec3(0, 0, 0);
    }
    vec3 mesh(int x, int y) const {
        const std::int32_t id = layers[3].row<std::int32_t>(y)[x];
        const float hue = 2.4f * static_cast<float>(id);
        const vec3 waves(std::cos(hue), std::cos(hue - 2.1f), std::cos(hue + 2.1f));
        return id < 0 ? vec3(0, 0, 0) : waves * 0.4f + vec3(0.6f, 0.6f, 0.6f);
    }
};

/// A quarter of the sheet: the means of two by two pixels.
static void paint(kit::Picture& sheet, int left, int top, const Painting& painting,
                  vec3 (Painting::*painted)(int, int) const) {
    for (int y = 0; y < height; y += 2) {
        std::uint8_t* const row = sheet.row<std::uint8_t>(top + y / 2);
        for (int x = 0; row && x < width; x += 2) {
            const vec3 sum = (painting.*painted)(x, y) + (painting.*painted)(x + 1, y) +
                             (painting.*painted)(x, y + 1) + (painting.*painted)(x + 1, y + 1);
            std::uint8_t* pixel = row + 3 * (left + x / 2);
            for (const float channel : {sum.x, sum.y, sum.z})
                *pixel++ = static_cast<std::uint8_t>(255.0f / 4.0f * channel);
        }
    }
}

int main(int argc, char**) {
    const kit::Engine engine;
    kit::View view(width, height, {argc > 1 ? kit::Path::gl2 : kit::Path::gl3});
    kit::Model model("lighthouse.obj");
    Painting painting{kit::see_all(model.extent(), {}, {width, height}), {}};
    kit::LayerOptions options;
    options.space = kit::LayerSpace::camera;
    kit::Outcome outcome = kit::draw_layers(
        view, painting.camera, {&model},
        {kit::Layer::color, kit::Layer::depth, kit::Layer::normal, kit::Layer::object},
        painting.layers, options);

    kit::Picture sheet;
    if (outcome)
        outcome = sheet.create(width, height, 3, kit::Sample::u8);
    if (outcome) {
        paint(sheet, 0, 0, painting, &Painting::color);
        paint(sheet, width / 2, 0, painting, &Painting::depth);
        paint(sheet, 0, height / 2, painting, &Painting::normal);
        paint(sheet, width / 2, height / 2, painting, &Painting::mesh);
        outcome = kit::write_picture(sheet, "layers.jpg");
    }
    if (outcome)
        outcome = kit::write_picture(painting.layers[1], "layers.npy");
    if (!model || !outcome)
        std::fprintf(stderr, "%s%s\n", model.reason().c_str(), outcome.reason().c_str());
    return model && outcome ? 0 : 1;
}
