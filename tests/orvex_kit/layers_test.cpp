// Layers against rays that are cast through the same pixels, in doubles.

#include "orvex_kit/layers.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>

#include <gtest/gtest.h>

#include <orvex/geometry/mesh/mesh.h>
#include <orvex/geometry/mesh/model.h>

#include "orvex_kit/engine.h"
#include "orvex_kit/framing.h"
#include "orvex_kit/model.h"
#include "sample_models.h"
#include "view_frame.h"

namespace orvex_test {

namespace {

using namespace orvex::kit;
using KitModel = orvex::kit::Model;
using KitCamera = orvex::kit::Camera;
using Shot = orvex::kit::Picture;
using Vector = std::array<double, 3>;

constexpr float infinity = std::numeric_limits<float>::infinity();
const std::vector<Layer> all_layers = {Layer::color,    Layer::depth,  Layer::normal,
                                       Layer::position, Layer::object, Layer::material,
                                       Layer::face};

Vector vector_of(const orvex::vec4& v) {
    return {double(v.x), double(v.y), double(v.z)};
}
Vector vector_of(const float* v) {
    return {double(v[0]), double(v[1]), double(v[2])};
}
Vector operator-(const Vector& a, const Vector& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}
Vector operator*(const Vector& a, double b) {
    return {a[0] * b, a[1] * b, a[2] * b};
}
Vector operator+(const Vector& a, const Vector& b) {
    return {a[0] + b[0], a[1] + b[1], a[2] + b[2]};
}
double dot(const Vector& a, const Vector& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}
Vector cross(const Vector& a, const Vector& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}
Vector unit(const Vector& a) {
    return a * (1.0 / std::sqrt(dot(a, a)));
}

struct Triangle {
    int object, material, face;
    std::array<Vector, 3> corners, normals;
};

void gather_meshes(const orvex::Node& node, std::vector<orvex::Mesh*>& meshes) {
    for (unsigned long i = 0; i < node.get_num_children(); ++i) {
        orvex::Node* const child = node.get_child(i);
        if (auto* const mesh = dynamic_cast<orvex::Mesh*>(child))
            meshes.push_back(mesh);
        gather_meshes(*child, meshes);
    }
}

std::vector<Triangle> triangles_of(const KitModel& model) {
    std::vector<Triangle> all;
    std::vector<orvex::Mesh*> meshes;
    gather_meshes(*model.node(), meshes);
    for (const FaceRun& run : model.runs())
        for (std::size_t face = run.first_face; face < run.first_face + run.num_faces; ++face) {
            orvex::Mesh& mesh = *meshes[run.mesh];
            unsigned index[3] = {};
            mesh.get_face_indexes(face, &index[0], &index[1], &index[2]);
            Triangle one{static_cast<int>(run.mesh), run.material, static_cast<int>(face), {}, {}};
            for (std::size_t i = 0; i < 3; ++i) {
                one.corners[i] = vector_of(mesh.get_vertex_position(index[i]));
                one.normals[i] = vector_of(mesh.get_vertex_normal(index[i]));
            }
            all.push_back(one);
        }
    return all;
}

/// What a ray meets first.
struct Hit {
    const Triangle* triangle = nullptr;
    double way = std::numeric_limits<double>::infinity();
    Vector place{}, normal{};
};

Hit first_hit(const std::vector<Triangle>& triangles, const Vector& from, const Vector& along) {
    Hit best;
    for (const Triangle& triangle : triangles) {
        const auto& [a, b, c] = triangle.corners;
        const Vector ab = b - a, ac = c - a, p = cross(along, ac), t = from - a;
        const double area = dot(ab, p);
        if (area == 0.0)
            continue;
        const Vector q = cross(t, ab);
        const double u = dot(t, p) / area, v = dot(along, q) / area, way = dot(ac, q) / area;
        if (u < 0.0 || v < 0.0 || u + v > 1.0 || way <= 0.0 || way >= best.way)
            continue;
        Vector normal =
            triangle.normals[0] * (1 - u - v) + triangle.normals[1] * u + triangle.normals[2] * v;
        normal = unit(dot(normal, normal) > 0.0 ? normal : cross(ab, ac));
        best = {&triangle, way, from + along * way,
                dot(normal, along) > 0.0 ? normal * -1.0 : normal};
    }
    return best;
}

class LayersTest : public testing::TestWithParam<Path> {
protected:
    static constexpr int width = 96, height = 72;

    Engine engine;
    TempDir folder;
    View view{width, height, options()};
    std::vector<Shot> shots;

    static ViewOptions options() {
        ViewOptions result;
        result.path = GetParam();
        return result;
    }
    static std::unique_ptr<KitModel> load(const std::string& path) {
        auto model = std::make_unique<KitModel>(path);
        EXPECT_TRUE(*model) << model->reason();
        return model;
    }
    KitCamera camera_for(const KitModel& model) const {
        return see_all(model.extent(), {}, {view.width(), view.height()});
    }
    void draw(const KitCamera& camera, const std::vector<KitModel*>& models,
              const std::vector<Layer>& layers = all_layers, const LayerOptions& how = {}) {
        ASSERT_EQ(draw_layers(view, camera, models, layers, shots, how).reason(), "");
    }
    const float* floats(std::size_t layer, int x, int y) const {
        return shots[layer].row<float>(y) + x * shots[layer].channels();
    }
    int id(std::size_t layer, int x, int y) const { return shots[layer].row<std::int32_t>(y)[x]; }
    void expect_as_rays(const KitModel& model, const KitCamera& camera, int at_least);
    void expect_pixel(const Hit& hit, const KitCamera& camera, int x, int y) const;
};
INSTANTIATE_TEST_SUITE_P(on, LayersTest, testing::Values(Path::gl3, Path::gl2), path_name);

void LayersTest::expect_pixel(const Hit& hit, const KitCamera& camera, int x, int y) const {
    SCOPED_TRACE(testing::Message() << x << "," << y);
    if (!hit.triangle) {
        EXPECT_EQ(*floats(1, x, y), infinity);
        EXPECT_EQ(vector_of(floats(2, x, y)), Vector());
        EXPECT_TRUE(std::isnan(*floats(3, x, y)));
        for (const std::size_t layer : {4u, 5u, 6u})
            EXPECT_EQ(id(layer, x, y), -1);
        return;
    }
    EXPECT_EQ(id(4, x, y), hit.triangle->object);
    EXPECT_EQ(id(5, x, y), hit.triangle->material);
    EXPECT_EQ(id(6, x, y), hit.triangle->face);
    const auto z = camera.pose()[2];
    const double depth = z[0] * hit.place[0] + z[1] * hit.place[1] + z[2] * hit.place[2] + z[3];
    EXPECT_NEAR(double(*floats(1, x, y)) / depth, 1.0, 1e-5);
    constexpr double tenth_of_a_degree = 0.1 * M_PI / 180;
    EXPECT_GT(dot(hit.normal, vector_of(floats(2, x, y))), std::cos(tenth_of_a_degree));
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_NEAR(floats(3, x, y)[i], hit.place[i], depth * 1e-5);
}

/// Where all pixels around one show the same face, or nothing.
void LayersTest::expect_as_rays(const KitModel& model, const KitCamera& camera, int at_least) {
    const std::vector<Triangle> triangles = triangles_of(model);
    std::vector<Hit> hits;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const orvex::Ray ray = camera.ray(x + 0.5, y + 0.5, {width, height});
            hits.push_back(first_hit(triangles, vector_of(ray.origin), vector_of(ray.direction)));
        }
    int compared = 0;
    for (int y = 1; y < height - 1; ++y)
        for (int x = 1; x < width - 1; ++x) {
            const Hit& hit = hits[static_cast<std::size_t>(y * width + x)];
            bool is_inside = true;
            for (int i = 0; i < 9; ++i)
                is_inside = is_inside &&
                            hits[static_cast<std::size_t>((y + i / 3 - 1) * width + x + i % 3 - 1)]
                                    .triangle == hit.triangle;
            if (!is_inside)
                continue;
            expect_pixel(hit, camera, x, y);
            compared += hit.triangle ? 1 : 0;
        }
    EXPECT_GE(compared, at_least);
}

TEST_P(LayersTest, are_what_rays_meet_in_a_ball) {
    const auto ball = load(write_ball(folder, 12));
    const KitCamera camera = camera_for(*ball);
    draw(camera, {ball.get()});
    expect_as_rays(*ball, camera, 1500);
}

TEST_P(LayersTest, are_what_rays_meet_in_a_box_without_normals) {
    const auto box = load(write_box(folder));
    const KitCamera camera = camera_for(*box);
    draw(camera, {box.get()});
    expect_as_rays(*box, camera, 1500);
}

TEST_P(LayersTest, are_what_rays_meet_without_perspective) {
    const auto ball = load(write_ball(folder, 12));
    KitCamera camera = camera_for(*ball);
    camera.set_parallel(2.5f);
    draw(camera, {ball.get()});
    expect_as_rays(*ball, camera, 700);
}

TEST_P(LayersTest, are_what_rays_meet_in_a_model_of_many_parts) {
    const auto lighthouse = load(ORVEX_EXAMPLE_DATA "/lighthouse.obj");
    KitCamera camera = camera_for(*lighthouse);
    camera.set_opening(3.0f);
    draw(camera, {lighthouse.get()});
    expect_as_rays(*lighthouse, camera, 500);
    const auto& objects = shots[5];
    const auto* const ids = objects.row<std::int32_t>(0);
    EXPECT_GT(*std::max_element(ids, ids + width * height), 1) << "several materials";
}

TEST_P(LayersTest, have_the_colours_of_the_view) {
    const auto ball = load(write_ball(folder));
    view.draw(*ball);
    const Shot plain = picture_of(view);
    draw(camera_for(*ball), {ball.get()});
    EXPECT_EQ(shots[0], plain);
    EXPECT_EQ(picture_of(view), plain);
}

TEST_P(LayersTest, have_alpha_that_lies_over_any_background) {
    folder.write("m.mtl", "newmtl glass\nKd 1 0 0\nd 0.3\n");
    const auto ball = load(write_ball(folder));
    const auto glass = load(folder.write(
        "glass.obj", "mtllib m.mtl\nv -2 -2 2\nv 2 -2 2\nv 2 2 2\nusemtl glass\nf 1 2 3\n"));
    view.set_background({0, 0, 0, 0});
    draw(camera_for(*ball), {ball.get(), glass.get()}, {Layer::color});
    const Shot over = shots[0];
    for (const orvex::vec4& behind :
         {orvex::vec4(1, 1, 1, 1), orvex::vec4(0, 0, 0, 1), orvex::vec4(1, 0.2f, 0.4f, 1)}) {
        view.set_background(behind);
        draw(camera_for(*ball), {ball.get(), glass.get()}, {Layer::color});
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) {
                const Pixel top = pixel_at(over, x, y), whole = pixel_at(shots[0], x, y);
                const float* const channels[] = {&behind.x, &behind.y, &behind.z};
                for (std::size_t i = 0; i < 3; ++i) {
                    const double alpha = top[3] / 255.0;
                    EXPECT_NEAR(top[i] * alpha + double(*channels[i]) * 255.0 * (1 - alpha),
                                whole[i], 2)
                        << x << "," << y;
                }
            }
    }
}

TEST_P(LayersTest, are_told_in_the_space_of_the_camera_too) {
    const auto ball = load(write_ball(folder));
    const KitCamera camera = camera_for(*ball);
    const std::vector<Layer> layers = {Layer::position, Layer::normal, Layer::depth};
    draw(camera, {ball.get()}, layers);
    const std::vector<Shot> world = shots;
    draw(camera, {ball.get()}, layers, {LayerSpace::camera, {}});
    const Pose pose = camera.pose();
    int compared = 0;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            if (std::isinf(*floats(2, x, y)))
                continue;
            const float* const place = world[0].row<float>(y) + 3 * x;
            const float* const normal = world[1].row<float>(y) + 3 * x;
            for (std::size_t i = 0; i < 3; ++i) {
                const double turned = pose[i][0] * double(normal[0]) +
                                      pose[i][1] * double(normal[1]) +
                                      pose[i][2] * double(normal[2]);
                const double moved = pose[i][0] * double(place[0]) + pose[i][1] * double(place[1]) +
                                     pose[i][2] * double(place[2]) + pose[i][3];
                EXPECT_NEAR(floats(0, x, y)[i], moved, 1e-4);
                EXPECT_NEAR(floats(1, x, y)[i], turned, 1e-4);
            }
            EXPECT_NEAR(floats(0, x, y)[2], *floats(2, x, y), 1e-5);
            ++compared;
        }
    EXPECT_GT(compared, 1000);
}

TEST_P(LayersTest, count_objects_and_materials_on_from_model_to_model) {
    folder.write("m.mtl", "newmtl a\nKd 1 0 0\nnewmtl b\nKd 0 1 0\n");
    const std::string left = "mtllib m.mtl\nv -1 -1 0\nv 0 -1 0\nv 0 1 0\nv -1 1 0\n"
                             "usemtl a\nf 1 2 3\nusemtl b\nf 1 3 4\n";
    const auto first = load(folder.write("left.obj", left));
    const auto second = load(folder.write("right.obj", "v 0 -1 0\nv 1 -1 0\nv 1 1 0\nf 1 2 3\n"));
    KitCamera camera;
    camera.look_at({0, 0, 5, 1}, {0, 0, 0, 1});
    camera.set_parallel(2.0f);
    draw(camera, {first.get(), nullptr, second.get()});
    // The picture is wider than high: x goes from -4/3 to 4/3.
    EXPECT_EQ(id(4, 30, 50), 0);
    EXPECT_EQ(id(5, 40, 60), 0);
    EXPECT_EQ(id(6, 40, 60), 0);
    EXPECT_EQ(id(5, 20, 10), 1);
    EXPECT_EQ(id(6, 20, 10), 1);
    EXPECT_EQ(id(4, 75, 60), static_cast<int>(first->meshes().size()));
    EXPECT_EQ(id(6, 75, 60), 0);
    EXPECT_EQ(id(4, 5, 36), -1);
}

TEST_P(LayersTest, count_what_is_blended_as_if_it_werent) {
    folder.write("m.mtl", "newmtl glass\nKd 1 0 0\nd 0.3\n");
    const auto model = load(folder.write("m.obj", "mtllib m.mtl\nv -1 -1 0\nv 1 -1 0\nv 1 1 0\n"
                                                  "v -1 -1 -1\nv 1 -1 -1\nv 1 1 -1\n"
                                                  "usemtl glass\nf 1 2 3\nf 4 5 6\n"));
    KitCamera camera;
    camera.look_at({0, 0, 5, 1}, {0, 0, 0, 1});
    draw(camera, {model.get()}, {Layer::depth, Layer::face});
    EXPECT_NEAR(*floats(0, width * 6 / 10, height * 6 / 10), 5.0f, 1e-4);
    EXPECT_EQ(id(1, width * 6 / 10, height * 6 / 10), 0);
}

TEST_P(LayersTest, go_straight_into_the_callers_rows) {
    const auto ball = load(write_ball(folder));
    const KitCamera camera = camera_for(*ball);
    draw(camera, {ball.get()});
    for (std::size_t i = 0; i < all_layers.size(); ++i)
        for (const bool is_upward : {false, true}) {
            const std::size_t row = shots[i].row_bytes(), step = row + 12;
            std::vector<unsigned char> memory(step * height, 0xcd);
            const auto signed_step = static_cast<std::ptrdiff_t>(step);
            const LayerPlane plane = {all_layers[i],
                                      memory.data() + (is_upward ? step * (height - 1) : 0),
                                      is_upward ? -signed_step : signed_step};
            ASSERT_EQ(draw_layers(view, camera, {ball.get()}, {plane}).reason(), "");
            for (int y = 0; y < height; ++y) {
                const auto place = static_cast<std::size_t>(is_upward ? height - 1 - y : y) * step;
                EXPECT_EQ(std::memcmp(memory.data() + place, shots[i].row_data(y), row), 0);
                for (std::size_t gap = place + row; gap < place + step; ++gap)
                    EXPECT_EQ(memory[gap], 0xcd);
            }
        }
}

TEST_P(LayersTest, follow_the_size_of_the_view) {
    const auto ball = load(write_ball(folder));
    draw(camera_for(*ball), {ball.get()}, {Layer::depth});
    ASSERT_EQ(view.resize(40, 60).reason(), "");
    draw(camera_for(*ball), {ball.get()}, {Layer::depth, Layer::position});
    EXPECT_EQ(shots[0].width(), 40);
    EXPECT_EQ(shots[0].height(), 60);
    EXPECT_LT(*floats(0, 20, 30), infinity);
    EXPECT_EQ(*floats(0, 0, 59), infinity);
}

TEST_P(LayersTest, of_nothing_are_empty) {
    draw(KitCamera(), {});
    expect_pixel({}, KitCamera(), 5, 5);
}

TEST_P(LayersTest, tell_what_is_wrong_with_a_plane) {
    std::vector<float> memory(width * height * 4);
    const auto reason_for = [&](const LayerPlane& plane) {
        return draw_layers(view, KitCamera(), {}, {plane}).reason();
    };
    EXPECT_EQ(reason_for({Layer::depth, nullptr, width * 4}), "the plane of depth has no memory");
    EXPECT_EQ(reason_for({Layer::depth, memory.data(), width * 4 - 4}),
              "the plane of depth has rows of 380 bytes: 384 are needed, in steps of 4");
    EXPECT_EQ(reason_for({Layer::normal, memory.data(), width * 12 + 2}),
              "the plane of normal has rows of 1154 bytes: 1152 are needed, in steps of 4");
    EXPECT_EQ(reason_for({static_cast<Layer>(9), memory.data(), width * 16}),
              "a plane of a layer that there isn't");
    EXPECT_EQ(reason_for({Layer::depth, memory.data() + width * (height - 1), -width * 4}), "");
}

TEST_P(LayersTest, of_an_empty_view_tell_so) {
    View none;
    std::vector<Shot> before(1);
    EXPECT_EQ(draw_layers(none, KitCamera(), {}, all_layers, before).reason(),
              "layers of an empty view");
    EXPECT_EQ(before.size(), 1u);
}

TEST_P(LayersTest, tell_that_another_thread_has_the_context) {
    {
        const TakenContext taken(view);
        EXPECT_EQ(draw_layers(view, KitCamera(), {}, all_layers, shots).reason(),
                  "the context of the view can't be made current");
        EXPECT_TRUE(shots.empty());
    }
    draw(KitCamera(), {});
    EXPECT_EQ(shots.size(), all_layers.size());
}

TEST(Layer, has_a_name_and_a_kind) {
    for (const Layer layer : all_layers)
        EXPECT_EQ(layer_named(name_of(layer)), layer);
    EXPECT_EQ(std::string(name_of(Layer::normal)), "normal");
    EXPECT_EQ(layer_named("depths"), std::nullopt);
    EXPECT_EQ(layer_named(""), std::nullopt);
    EXPECT_EQ(channels_of(Layer::color), 4);
    EXPECT_EQ(channels_of(Layer::position), 3);
    EXPECT_EQ(channels_of(Layer::face), 1);
    EXPECT_EQ(sample_of(Layer::color), Sample::u8);
    EXPECT_EQ(sample_of(Layer::depth), Sample::f32);
    EXPECT_EQ(sample_of(Layer::object), Sample::i32);
    EXPECT_EQ(std::string(name_of(static_cast<Layer>(9))), "");
    EXPECT_EQ(channels_of(static_cast<Layer>(-1)), 0);
}

} // namespace

} // namespace orvex_test
