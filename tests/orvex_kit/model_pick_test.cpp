// Picking against every face asked in turn, and by pixels against what was drawn there.

#include <array>
#include <cmath>
#include <limits>
#include <optional>
#include <random>
#include <system_error>
#include <thread>

#include <gtest/gtest.h>

#include <orvex/geometry/mesh/mesh.h>
#include <orvex/geometry/mesh/model.h>
#include <orvex/geometry/rays/ray_caster.h>
#include <orvex/math/mat4.h>
#include <orvex/scene/camera.h>

#include "orvex_kit/engine.h"
#include "orvex_kit/mesh_numbers.h"
#include "orvex_kit/model.h"
#include "orvex_kit/private/face_tree.h"
#include "orvex_kit/ref.h"
#include "tests/support/no_threads.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

namespace {

using namespace orvex::kit;
using orvex::Ray;
using orvex::vec3;
using orvex::vec4;

const std::string sample = ORVEX_EXAMPLE_DATA "/lighthouse.obj";
constexpr double endless = std::numeric_limits<double>::max();

// ------------------------------------------------------------------------------- the tree

/// Numbers that are the same in every run.
class Dice {
public:
    double number(double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(engine);
    }
    Point point(double size) {
        return {number(-size, size), number(-size, size), number(-size, size)};
    }

private:
    std::mt19937 engine{7};
};

std::vector<TreeFace> random_faces(Dice& dice, std::uint32_t count, double size) {
    std::vector<TreeFace> faces(count);
    for (std::uint32_t i = 0; i < count; ++i) {
        const Point middle = dice.point(10);
        for (std::array<float, 3>& corner : faces[i].corners) {
            const Point offset = dice.point(size);
            for (std::size_t axis = 0; axis < 3; ++axis)
                corner[axis] = static_cast<float>(middle[axis] + offset[axis]);
        }
        faces[i].mesh = i / 100;
        faces[i].face = i % 100;
    }
    return faces;
}

std::optional<TreeHit> first_of_all(const std::vector<TreeFace>& faces, const PointRay& ray) {
    std::optional<TreeHit> best;
    for (const TreeFace& face : faces)
        if (const std::optional<TreeHit> hit = meet(ray, face);
            hit && (!best || is_before(*hit, *best)))
            best = hit;
    return best;
}

/// @return whether both miss, or hit the same place of the same face
bool are_equal(const std::optional<TreeHit>& a, const std::optional<TreeHit>& b) {
    if (!a || !b)
        return !a && !b;
    return a->face.mesh == b->face.mesh && a->face.face == b->face.face &&
           a->distance == b->distance && a->shares == b->shares;
}

/// Looks for a hit by both ways through the boxes. @return whether there is one
bool expect_first_of_all(const FaceTree& tree, const std::vector<TreeFace>& faces,
                         const PointRay& ray, int number) {
    const std::optional<TreeHit> wanted = first_of_all(faces, ray);
    for (const WalkTree walk : {walk_tree_plain, fastest_walk()})
        EXPECT_TRUE(are_equal(tree.first_hit(ray, walk), wanted))
            << faces.size() << " faces, ray " << number;
    return wanted.has_value();
}

TEST(FaceTree, finds_what_every_face_in_turn_gives) {
    Dice dice;
    std::size_t hits = 0;
    for (const std::uint32_t count : {1u, 4u, 5u, 100u, 3000u}) {
        const std::vector<TreeFace> faces = random_faces(dice, count, 2.0);
        const FaceTree tree(faces);
        for (int i = 0; i < 500; ++i) {
            PointRay ray{dice.point(20), dice.point(8), endless};
            for (std::size_t axis = 0; axis < 3; ++axis)
                ray.direction[axis] -= ray.origin[axis];
            if (i % 5 == 0)
                ray.direction = {0, i % 2 ? 1.0 : 0.0, i % 2 ? 0.0 : -3.0};
            hits += expect_first_of_all(tree, faces, ray, i) ? 1 : 0;
        }
    }
    EXPECT_GT(hits, 300u);
}

TEST(FaceTree, grows_by_several_threads_into_one_that_finds_the_same) {
    Dice dice;
    const std::vector<TreeFace> faces = random_faces(dice, 25'000, 0.5);
    const FaceTree tree(faces);
    std::size_t hits = 0;
    for (int i = 0; i < 60; ++i) {
        const Point from = dice.point(20), to = dice.point(8);
        const PointRay ray{from, {to[0] - from[0], to[1] - from[1], to[2] - from[2]}, endless};
        hits += expect_first_of_all(tree, faces, ray, i) ? 1 : 0;
    }
    EXPECT_GT(hits, 30u);
    EXPECT_LT(tree.num_bytes(), faces.size() * 100);
}

TEST(FaceTree, grows_by_one_thread_where_no_other_can_be_started) {
    Dice dice;
    const std::vector<TreeFace> faces = random_faces(dice, 25'000, 0.5);
    const FaceTree usual(faces);
    const NoThreads none;
    EXPECT_THROW(std::thread([] {}).join(), std::system_error);
    const FaceTree alone(faces);
    EXPECT_EQ(alone.num_bytes(), usual.num_bytes());
    for (int i = 0; i < 10; ++i) {
        const Point from = dice.point(20), to = dice.point(8);
        const PointRay ray{from, {to[0] - from[0], to[1] - from[1], to[2] - from[2]}, endless};
        expect_first_of_all(alone, faces, ray, i);
    }
}

/// Needles, faces without an area, flat and huge ones, and such at the origin, on a coarse grid, so
/// that many share planes, edges and corners.
std::vector<TreeFace> odd_faces(Dice& dice) {
    std::vector<TreeFace> faces = random_faces(dice, 400, 3.0);
    for (TreeFace& face : faces) {
        const auto kind = face.face % 8;
        const std::size_t axis = face.face % 3;
        for (std::size_t i = 0; i < 3; ++i)
            for (float& number : face.corners[i])
                number = kind == 7 ? number * 1e6f : std::round(number);
        if (kind == 0)
            face.corners[1] = face.corners[2];
        if (kind == 1)
            face.corners[0] = face.corners[1] = face.corners[2];
        if (kind == 2)
            face.corners[2][axis] = std::nextafter(face.corners[1][axis], 0.0f);
        if (kind == 3)
            for (std::array<float, 3>& corner : face.corners)
                corner[axis] = 2.0f;
        if (kind == 4)
            face.corners[0] = {0, 0, 0};
        if (kind == 5) // three corners in a row
            for (std::size_t i = 0; i < 3; ++i)
                face.corners[2][i] = 2 * face.corners[1][i] - face.corners[0][i];
    }
    return faces;
}

TEST(FaceTree, finds_the_same_among_odd_faces_by_rays_along_them) {
    Dice dice;
    const std::vector<TreeFace> faces = odd_faces(dice);
    const FaceTree tree(faces);
    std::size_t hits = 0;
    for (int i = 0; i < 2000; ++i) {
        const TreeFace& face = faces[static_cast<std::size_t>(i) % faces.size()];
        const auto corner = [&face](std::size_t place) {
            const std::array<float, 3>& at = face.corners[place % 3];
            return Point{double(at[0]), double(at[1]), double(at[2])};
        };
        PointRay ray{dice.point(20), {}, endless};
        const auto place = static_cast<std::size_t>(i / 5);
        const Point a = corner(place), b = corner(place + 1);
        for (std::size_t axis = 0; axis < 3; ++axis) {
            const double along = b[axis] - a[axis];
            const double to = i % 5 == 0 ? a[axis] : (a[axis] + b[axis]) / 2;
            if (i % 5 == 1) // along an edge
                ray.origin[axis] = a[axis] - along * 3;
            if (i % 5 == 2) // in an edge's plane, on the grid
                ray.origin[axis] = std::round(a[axis]) - (axis == place % 3 ? 20 : 0);
            if (i % 5 == 3) // from a corner
                ray.origin[axis] = a[axis];
            ray.direction[axis] = i % 5 == 1   ? along
                                  : i % 5 == 2 ? double(axis == place % 3)
                                               : to - ray.origin[axis];
        }
        if (ray.direction != Point{0, 0, 0})
            hits += expect_first_of_all(tree, faces, ray, i) ? 1 : 0;
    }
    EXPECT_GT(hits, 500u);
}

TEST(FaceTree, finds_the_same_from_within_and_within_a_reach) {
    Dice dice;
    const std::vector<TreeFace> faces = random_faces(dice, 500, 2.0);
    const FaceTree tree(faces);
    for (int i = 0; i < 300; ++i) {
        const PointRay ray{dice.point(5), dice.point(1), i % 2 ? dice.number(0, 20) : endless};
        expect_first_of_all(tree, faces, ray, i);
    }
}

TEST(FaceTree, finds_the_same_at_the_ends_of_single_precision_and_from_afar) {
    Dice dice;
    for (const float scale : {1e-42f, 1e-20f, 1e18f, 3e37f}) {
        std::vector<TreeFace> faces = random_faces(dice, 60, 6.0);
        for (TreeFace& face : faces)
            for (std::array<float, 3>& corner : face.corners)
                for (float& number : corner)
                    number *= scale / 2;
        const FaceTree tree(faces);
        std::size_t hits = 0;
        for (int i = 0; i < 200; ++i) {
            PointRay ray{dice.point(20), dice.point(8), endless};
            const double distance = i % 3 == 0 ? 1e7 : 1;
            for (std::size_t axis = 0; axis < 3; ++axis) {
                ray.origin[axis] *= double(scale) * distance;
                ray.direction[axis] =
                    (ray.direction[axis] * double(scale) - ray.origin[axis]) * (i % 2 ? 1e-30 : 1);
            }
            hits += expect_first_of_all(tree, faces, ray, i) ? 1 : 0;
        }
        EXPECT_GT(hits, 20u) << scale;
    }
}

TEST(FaceTree, meets_each_square_of_a_large_grid) {
    constexpr std::uint32_t side = 120;
    std::vector<TreeFace> faces;
    for (std::uint32_t i = 0; i < side * side; ++i) {
        const auto x = static_cast<float>(i % side), y = static_cast<float>(i / side);
        faces.push_back({{{{x, y, 0}, {x + 1, y, 0}, {x, y + 1, 0}}}, 0, 2 * i});
        faces.push_back({{{{x + 1, y + 1, 0}, {x, y + 1, 0}, {x + 1, y, 0}}}, 0, 2 * i + 1});
    }
    const FaceTree tree(faces);
    for (std::uint32_t i = 0; i < side * side; i += 7) {
        const double x = i % side, y = i / side; // NOLINT(bugprone-integer-division)
        const auto first = tree.first_hit({{x + 0.25, y + 0.25, 9}, {0, 0, -1}, endless});
        const auto second = tree.first_hit({{x + 0.75, y + 0.75, -9}, {0, 0, 3}, endless});
        ASSERT_TRUE(first && second) << i;
        ASSERT_EQ(first->face.face, 2 * i);
        ASSERT_EQ(second->face.face, 2 * i + 1);
        // Of two at their edge the first one
        const auto edge = tree.first_hit({{x + 0.5, y + 0.5, 9}, {0, 0, -1}, endless});
        ASSERT_TRUE(edge) << i;
        ASSERT_EQ(edge->face.face, 2 * i);
    }
}

TEST(FaceTree, finds_nothing_among_no_faces_and_beyond_the_reach) {
    const PointRay ray{{0, 0, 5}, {0, 0, -1}, endless};
    EXPECT_FALSE(FaceTree({}).first_hit(ray));
    const std::vector<TreeFace> one = {{{{{-1, -1, 0}, {1, -1, 0}, {0, 1, 0}}}, 0, 0}};
    const FaceTree tree(one);
    EXPECT_TRUE(tree.first_hit(ray));
    EXPECT_TRUE(tree.first_hit({ray.origin, ray.direction, 5}));
    EXPECT_FALSE(tree.first_hit({ray.origin, ray.direction, 4.99}));
    EXPECT_FALSE(tree.first_hit({ray.origin, {0, 0, 1}, endless}));
}

TEST(FaceTree, has_no_gap_between_faces_that_share_an_edge_or_a_corner) {
    // A fan of faces around the origin of a bent sheet: rays at it and at its spokes always hit.
    Dice dice;
    std::vector<TreeFace> fan;
    std::array<std::array<float, 3>, 12> rim{};
    for (std::size_t i = 0; i < rim.size(); ++i) {
        const double angle = 0.5235987755982988 * static_cast<double>(i);
        rim[i] = {static_cast<float>(std::cos(angle)), static_cast<float>(std::sin(angle)),
                  static_cast<float>(dice.number(-0.2, 0.2))};
    }
    const std::array<float, 3> hub{0.01f, -0.02f, 0.1f};
    for (std::uint32_t i = 0; i < rim.size(); ++i)
        fan.push_back({{hub, rim[i], rim[(i + 1) % rim.size()]}, 0, i});
    const FaceTree tree(fan);
    for (int i = 0; i < 2000; ++i) {
        const std::array<float, 3>& end = rim[static_cast<std::size_t>(i) % rim.size()];
        const double part = i < 100 ? 0.0 : dice.number(0, 0.99);
        const Point eye = {dice.number(-3, 3), dice.number(-3, 3), 10};
        PointRay ray{eye, {}, endless};
        for (std::size_t axis = 0; axis < 3; ++axis) {
            const double from = static_cast<double>(hub[axis]);
            ray.direction[axis] = from + part * (static_cast<double>(end[axis]) - from) - eye[axis];
        }
        EXPECT_TRUE(tree.first_hit(ray)) << i;
    }
}

TEST(FaceTree, takes_many_faces_at_one_place) {
    const TreeFace face{{{{-1, -1, 0}, {1, -1, 0}, {0, 1, 0}}}, 0, 0};
    std::vector<TreeFace> faces(1000, face);
    for (std::uint32_t i = 0; i < faces.size(); ++i)
        faces[i].face = 999 - i;
    const FaceTree tree(faces);
    const std::optional<TreeHit> hit = tree.first_hit({{0, 0, 1}, {0, 0, -1}, endless});
    ASSERT_TRUE(hit);
    EXPECT_EQ(hit->face.face, 0u);
}

// ------------------------------------------------------------------------------- models

class ModelPickTest : public testing::Test {
protected:
    Model load(const std::string& text) const { return Model(folder.write("m.obj", text)); }

    const Engine engine{{{}, "", false, false}};
    const TempDir folder;
};

Ray ray_from(float x, float y, float z, float dx, float dy, float dz) {
    return {vec4(x, y, z, 1), vec4(dx, dy, dz, 0)};
}

TEST_F(ModelPickTest, tells_mesh_face_material_and_place) {
    folder.write("m.mtl", "newmtl a\nnewmtl b\nd 0.5\n");
    const Model model = load("mtllib m.mtl\nv 0 0 0\nv 4 0 0\nv 0 4 0\nv 0 0 -2\nv 4 0 -2\n"
                             "v 0 4 -2\ng front\nusemtl a\nf 1 2 3\ng back\nusemtl a\nf 4 6 5\n"
                             "usemtl b\nf 4 5 6\n");
    const std::optional<Pick> front = model.pick(ray_from(1, 2, 6, 0, 0, -2));
    ASSERT_TRUE(front);
    EXPECT_EQ(front->mesh, 0u);
    EXPECT_EQ(front->face, 0u);
    EXPECT_EQ(model.materials()[static_cast<std::size_t>(front->material)].name, "a");
    EXPECT_EQ(front->distance, 3.0);
    EXPECT_EQ(front->barycentric, (std::array<float, 3>{0.25f, 0.25f, 0.5f}));
    EXPECT_EQ(front->point.x, 1.0f);
    EXPECT_EQ(front->point.y, 2.0f);
    EXPECT_EQ(front->point.z, 0.0f);
    // From behind: the first of two at one place, both of which look another way.
    const std::optional<Pick> back = model.pick(ray_from(1, 1, -5, 0, 0, 1));
    ASSERT_TRUE(back);
    EXPECT_EQ(back->mesh, 1u);
    EXPECT_EQ(back->face, 0u);
    EXPECT_EQ(back->distance, 3.0);
    EXPECT_FALSE(model.pick(ray_from(5, 5, 5, 0, 0, -1)));
    EXPECT_FALSE(model.pick(ray_from(1, 1, 5, 0, 0, 1)));
}

TEST_F(ModelPickTest, tells_the_material_of_a_blended_face) {
    folder.write("m.mtl", "newmtl a\nnewmtl b\nd 0.5\n");
    const Model model = load("mtllib m.mtl\nv 0 0 0\nv 4 0 0\nv 0 4 0\nv 9 0 0\nv 9 9 0\n"
                             "usemtl b\nf 1 2 3\nusemtl a\nf 2 4 5\nusemtl b\nf 3 5 2\n");
    const auto name_at = [&model](float x, float y) -> std::string {
        const std::optional<Pick> pick = model.pick(ray_from(x, y, 1, 0, 0, -1));
        return pick ? model.materials()[static_cast<std::size_t>(pick->material)].name : "none";
    };
    EXPECT_EQ(name_at(1, 1), "b");
    EXPECT_EQ(name_at(8.5f, 1), "a");
    EXPECT_EQ(name_at(4, 3), "b");
    EXPECT_EQ(name_at(-1, 3), "none");
}

TEST_F(ModelPickTest, refuses_rays_that_are_none) {
    const Model model(sample);
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float infinite = std::numeric_limits<float>::infinity();
    const auto pick_along = [&model](const std::array<float, 6>& ray) {
        return model.pick(ray_from(ray[0], ray[1], ray[2], ray[3], ray[4], ray[5]));
    };
    constexpr std::array<float, 6> rays[] = {
        {50, 3, 0, -1, 0, 0}, {0, 50, 0, 0, -1, 0}, {0, 3, 50, 0, 0, -1}};
    for (std::size_t along = 0; along < 3; ++along) {
        EXPECT_TRUE(pick_along(rays[along])) << along;
        for (std::size_t i = 0; i < 6; ++i)
            for (const float odd : {nan, infinite, -infinite}) {
                std::array<float, 6> ray = rays[along];
                ray[i] = odd;
                EXPECT_FALSE(pick_along(ray)) << along << ", " << i << ": " << odd;
            }
    }
    EXPECT_FALSE(model.pick(ray_from(0, 3, 50, 0, 0, 0)));
    EXPECT_FALSE(Model().pick(ray_from(0, 3, 50, 0, 0, -1)));
}

TEST_F(ModelPickTest, passes_over_faces_without_a_place) {
    const Model model = load("v nan 0 0\nv 1 0 0\nv 0 1 0\nv 0 0 0\nf 1 2 3\nf 4 2 3\n");
    const std::optional<Pick> pick = model.pick(ray_from(0.2f, 0.2f, 1, 0, 0, -1));
    ASSERT_TRUE(pick);
    EXPECT_EQ(pick->face, 1u);
}

#ifdef ORVEX_WITH_LIB3DS
TEST_F(ModelPickTest, follows_a_model_that_stands_up) {
    Model model("/usr/share/glmark2/models/horse.3ds");
    ASSERT_EQ(model.up_axis(), UpAxis::minus_z);
    const vec4 before = model.extent().middle;
    const Ray lying = {vec4(before.x, before.y + 1e4f, before.z, 1), vec4(0, -1, 0, 0)};
    const std::optional<Pick> first = model.pick(lying);
    model.stand_up();
    const vec4 after = model.extent().middle;
    // What was above is in front now.
    const Ray standing = {vec4(after.x, after.y, after.z + 1e4f, 1), vec4(0, 0, -1, 0)};
    const std::optional<Pick> second = model.pick(standing);
    ASSERT_TRUE(first && second);
    EXPECT_EQ(first->face, second->face);
    EXPECT_NEAR(first->distance, second->distance, 1.0);
}
#endif

TEST_F(ModelPickTest, sees_no_face_where_it_was_before) {
    const float places[] = {-1, -1, 0, 1, -1, 0, 0, 1, 0};
    MeshNumbers numbers;
    numbers.num_vertices = 3;
    numbers.positions = {places};
    Model model = Model::from_numbers(numbers);
    const auto distance = [&model](float x) {
        const std::optional<Pick> pick = model.pick(ray_from(x, 0, 10, 0, 0, -1));
        return pick ? pick->distance : -1.0;
    };
    EXPECT_EQ(distance(0), 10.0);
    const float nearer[] = {-1, -1, 4, 1, -1, 4, 0, 1, 4};
    numbers.positions = {nearer};
    EXPECT_TRUE(model.update(numbers));
    EXPECT_EQ(distance(0), 6.0);
    orvex::mat4 aside;
    aside.identity();
    aside.m[12] = 5;
    EXPECT_TRUE(model.set_transform(aside));
    EXPECT_EQ(distance(0), -1.0);
    EXPECT_EQ(distance(5), 6.0);
    const float two[] = {-1, -1, 4, 1, -1, 4, 0, 1, 4, -1, -1, 7, 1, -1, 7, 0, 1, 7};
    numbers.num_vertices = 6;
    numbers.positions = {two};
    EXPECT_TRUE(model.update(numbers));
    EXPECT_EQ(distance(0), -1.0);
    EXPECT_EQ(distance(5), 3.0);
}

/// The nearest face of a model's meshes, each asked in turn.
std::optional<TreeHit> first_of_model(const Model& model, const PointRay& ray,
                                      std::vector<TreeFace>& faces) {
    if (faces.empty())
        for (unsigned long m = 0; m < model.node()->get_num_children(); ++m) {
            auto* const mesh = static_cast<orvex::Mesh*>(model.node()->get_child(m));
            for (unsigned long f = 0; f < mesh->get_num_faces(nullptr); ++f) {
                unsigned index[3];
                mesh->get_face_indexes(f, &index[0], &index[1], &index[2]);
                TreeFace face{{}, static_cast<std::uint32_t>(m), static_cast<std::uint32_t>(f)};
                for (std::size_t i = 0; i < 3; ++i) {
                    const vec4 corner = mesh->get_vertex_position(index[i]);
                    face.corners[i] = {corner.x, corner.y, corner.z};
                }
                faces.push_back(face);
            }
        }
    return first_of_all(faces, ray);
}

TEST_F(ModelPickTest, gives_for_the_sample_what_every_face_in_turn_gives) {
    const Model model(sample);
    std::vector<TreeFace> faces;
    Dice dice;
    std::size_t hits = 0;
    for (int i = 0; i < 300; ++i) {
        const Point to = dice.point(5);
        const Point from = dice.point(30);
        Ray ray = {vec4(float(from[0]), float(from[1]), float(from[2]), 1),
                   vec4(float(to[0] - from[0]), float(to[1] - from[1]), float(to[2] - from[2]), 0)};
        const PointRay points{
            {double(ray.origin.x), double(ray.origin.y), double(ray.origin.z)},
            {double(ray.direction.x), double(ray.direction.y), double(ray.direction.z)},
            endless};
        const std::optional<Pick> pick = model.pick(ray);
        const std::optional<TreeHit> wanted = first_of_model(model, points, faces);
        ASSERT_EQ(pick.has_value(), wanted.has_value()) << i;
        if (!pick)
            continue;
        ++hits;
        EXPECT_EQ(pick->mesh, wanted->face.mesh) << i;
        EXPECT_EQ(pick->face, wanted->face.face) << i;
        EXPECT_EQ(pick->distance, wanted->distance) << i;
    }
    EXPECT_GT(hits, 100u);
}

// ------------------------------------------------------------------------------- pixels

constexpr int width = 160;
constexpr int height = 120;

TEST_F(ModelPickTest, finds_under_a_pixel_what_lies_on_its_line_of_sight) {
    const Model model(sample);
    const auto camera = make<orvex::Camera>();
    see_all(model.extent(), {}, {width, height}).apply(*camera, width, height);
    std::size_t hits = 0;
    for (int y = 5; y < height; y += 10)
        for (int x = 5; x < width; x += 10) {
            const float u = static_cast<float>(x) + 0.5f, v = static_cast<float>(y) + 0.5f;
            const std::optional<Pick> pick = model.pick(*camera, u, v);
            if (!pick)
                continue;
            ++hits;
            // Projected again it lies where it was looked for.
            vec4 seen = camera->get_projection_matrix() *
                        (camera->get_view_matrix() *
                         vec4(pick->point.x, pick->point.y, pick->point.z, 1.0f));
            EXPECT_NEAR((seen.x / seen.w + 1) / 2 * width, u, 0.01f);
            EXPECT_NEAR((1 - seen.y / seen.w) / 2 * height, v, 0.01f);
        }
    EXPECT_GT(hits, 30u);
    EXPECT_FALSE(model.pick(*camera, 0.5f, 0.5f));
}

TEST_F(ModelPickTest, meets_the_rays_of_cameras_of_the_kit_where_those_of_the_engine_look) {
    const Model model(sample);
    const auto camera = make<orvex::Camera>();
    const Camera view = see_all(model.extent(), {}, {width, height});
    view.apply(*camera, width, height);
    const std::optional<Pick> by_pixel = model.pick(*camera, 80.5f, 60.5f);
    const std::optional<Pick> by_ray = model.pick(view.ray(80.5, 60.5, {width, height}));
    ASSERT_TRUE(by_pixel && by_ray);
    EXPECT_EQ(by_pixel->mesh, by_ray->mesh);
    EXPECT_EQ(by_pixel->face, by_ray->face);
    EXPECT_NEAR(by_pixel->point.x, by_ray->point.x, 1e-3f);
    EXPECT_NEAR(by_pixel->point.z, by_ray->point.z, 1e-3f);
    EXPECT_GT(by_ray->distance, by_pixel->distance);
}

TEST_F(ModelPickTest, looks_between_the_near_and_the_far_plane) {
    const Model model = load("v -9 -9 0\nv 9 -9 0\nv 0 9 0\nv -9 -9 -5\nv 9 -9 -5\nv 0 9 -5\n"
                             "g a\nf 1 2 3\ng b\nf 4 5 6\n");
    const auto camera = make<orvex::Camera>();
    camera->set_viewport(0, 0, width, height);
    camera->set_view_params(vec4(0, 0, 10, 1), vec4(0, 0, 0, 1), vec4(0, 1, 0, 0), true);
    struct Row {
        float near, far;
        int mesh; ///< -1: none
        double distance;
    };
    for (const Row& row : {Row{1, 100, 0, 9}, Row{12, 100, 1, 3}, Row{1, 9, -1, 0},
                           Row{16, 100, -1, 0}, Row{11, 14, -1, 0}})
        for (const bool is_ortho : {false, true}) {
            if (is_ortho)
                camera->build_projection_ortho(-5, 5, -5, 5, row.near, row.far, true);
            else
                camera->build_projection_persp(40, 4.0f / 3.0f, row.near, row.far, true);
            const std::optional<Pick> pick = model.pick(*camera, width / 2.0f, height / 2.0f);
            ASSERT_EQ(pick.has_value(), row.mesh >= 0) << row.near << " " << row.far;
            if (!pick)
                continue;
            EXPECT_EQ(pick->mesh, static_cast<std::size_t>(row.mesh));
            EXPECT_NEAR(pick->distance, row.distance, 1e-3);
        }
}

TEST_F(ModelPickTest, looks_along_any_axis) {
    const Model model = load("v -1 -1 -1\nv 1 -1 -1\nv -1 1 -1\nv -1 -1 1\nv 1 1 -1\nv 1 -1 1\n"
                             "v -1 1 1\nv 1 1 1\nf 1 2 5 3\nf 4 6 8 7\nf 1 2 6 4\nf 3 5 8 7\n"
                             "f 1 3 7 4\nf 2 5 8 6\n");
    const auto camera = make<orvex::Camera>();
    camera->set_viewport(0, 0, width, height);
    camera->build_projection_persp(40, 4.0f / 3.0f, 1, 100, true);
    for (int axis = 0; axis < 3; ++axis)
        for (const float side : {1.0f, -1.0f}) {
            const auto along = [&](float x) {
                return vec4(axis == 0 ? x : 0, axis == 1 ? x : 0, axis == 2 ? x : 0, 1);
            };
            const vec4 up(0, axis == 1 ? 0.0f : 1.0f, axis == 1 ? 1.0f : 0.0f, 0);
            const vec4 toward = along(side), right = up.cross(toward);
            orvex::mat4 view; // without a rounding of angles: most of its numbers are 0
            const vec4* const rows[] = {&right, &up, &toward};
            for (int row = 0; row < 3; ++row) {
                view.m[row] = rows[row]->x;
                view.m[4 + row] = rows[row]->y;
                view.m[8 + row] = rows[row]->z;
            }
            view.m[14] = -10;
            camera->set_view_matrix(view);
            const std::optional<Pick> pick = model.pick(*camera, width / 2.0f, height / 2.0f);
            ASSERT_TRUE(pick) << axis << " " << side;
            EXPECT_NEAR(pick->distance, 8.0, 1e-3);
            EXPECT_NEAR(pick->point.x, along(side).x, 1e-5f);
            EXPECT_NEAR(pick->point.y, along(side).y, 1e-5f);
            EXPECT_NEAR(pick->point.z, along(side).z, 1e-5f);
        }
}

TEST_F(ModelPickTest, finds_nothing_through_cameras_that_show_nothing) {
    const Model model(sample);
    const auto camera = make<orvex::Camera>();
    see_all(model.extent(), {}, {width, height}).apply(*camera, width, height);
    orvex::mat4 flat;
    for (float& number : flat.m)
        number = 0.0f;
    camera->set_projection_matrix(flat);
    EXPECT_FALSE(model.pick(*camera, 80, 60));
    see_all(model.extent(), {}, {width, height}).apply(*camera, width, height);
    camera->set_viewport(0, 0, 0, 0);
    EXPECT_FALSE(model.pick(*camera, 0, 0));
}

} // namespace
} // namespace orvex_test
