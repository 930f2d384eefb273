#include <array>
#include <cmath>
#include <cstdint>
#include <limits>

#include <gtest/gtest.h>

#include <orvex/geometry/mesh/mesh.h>
#include <orvex/geometry/mesh/model.h>
#include <orvex/geometry/rays/ray_caster.h>
#include <orvex/math/mat4.h>

#include "orvex_kit/engine.h"
#include "orvex_kit/look.h"
#include "orvex_kit/mesh_numbers.h"
#include "orvex_kit/model.h"
#include "orvex_kit/view.h"
#include "sample_models.h"
#include "sample_pictures.h"
#include "view_frame.h"

namespace orvex_test {

namespace {

using namespace orvex::kit;

constexpr std::array<float, 12> places = {-1, -1, 0, 1, -1, 0, 1, 1, 0, -1, 1, 0};
constexpr std::array<float, 12> normals = {0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1};
constexpr std::array<std::uint16_t, 6> corners = {0, 1, 2, 0, 2, 3};

MeshNumbers square() {
    MeshNumbers numbers;
    numbers.num_vertices = 4;
    numbers.positions = {places.data()};
    numbers.num_faces = 2;
    numbers.faces = {corners.data(), Number::u16};
    return numbers;
}

class ModelMeshTest : public testing::Test {
protected:
    Engine engine;
    TempDir folder;
};

TEST_F(ModelMeshTest, numbers_make_the_model_that_a_file_makes) {
    const Model mesh = Model::from_numbers(square());
    ASSERT_TRUE(mesh) << mesh.reason();
    const Model file(write_square(folder));
    EXPECT_EQ(mesh.num_faces(), file.num_faces());
    EXPECT_EQ(mesh.bounds().max.y, file.bounds().max.y);
    EXPECT_EQ(mesh.extent().points.size(), 4u);
    EXPECT_TRUE(mesh.files().empty());
    EXPECT_EQ(mesh.loader(), "");
    EXPECT_TRUE(mesh.notes().empty());
}

TEST_F(ModelMeshTest, numbers_draw_as_a_file_does) {
    Model file(write_square(folder));
    MeshNumbers numbers = square();
    numbers.normals = {normals.data()};
    numbers.color = file.materials().at(0).diffuse;
    Model mesh = Model::from_numbers(numbers);
    for (const Path path : {Path::gl3, Path::gl2}) {
        ViewOptions options;
        options.path = path;
        View view(32, 32, options);
        ASSERT_TRUE(view.set_look(Look::named("plain")));
        Picture of_mesh, of_file;
        view.draw(mesh);
        ASSERT_TRUE(view.read(of_mesh));
        view.draw(file);
        ASSERT_TRUE(view.read(of_file));
        EXPECT_EQ(of_mesh, of_file);
    }
}

TEST_F(ModelMeshTest, other_numbers_are_seen_and_met) {
    Model mesh = Model::from_numbers(square());
    const orvex::Ray ray{{0.5f, 0.5f, 10, 1}, {0, 0, -1, 0}};
    EXPECT_EQ(mesh.pick(ray)->distance, 10.0);
    std::array<float, 12> nearer = places;
    for (std::size_t i = 2; i < nearer.size(); i += 3)
        nearer[i] = 4;
    MeshNumbers numbers;
    numbers.positions = {nearer.data()};
    ASSERT_TRUE(mesh.update(numbers));
    EXPECT_EQ(mesh.pick(ray)->distance, 6.0);
    EXPECT_EQ(mesh.bounds().min.z, 4.0f);
    EXPECT_EQ(mesh.num_faces(), 2u);
}

TEST_F(ModelMeshTest, more_numbers_take_the_place_of_all_and_leave_name_and_colour) {
    MeshNumbers numbers = square();
    numbers.name = "wall";
    numbers.color = orvex::vec4(0.25f, 0.5f, 0.75f, 0.5f);
    Model mesh = Model::from_numbers(numbers);
    const std::array<float, 27> more = {0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1, 1, 0,
                                        1, 0, 1, 1, 0, 0, 2, 1, 0, 2, 0, 1, 2};
    MeshNumbers larger;
    larger.num_vertices = 9;
    larger.positions = {more.data()};
    ASSERT_TRUE(mesh.update(larger));
    EXPECT_EQ(mesh.num_vertices(), 9u);
    EXPECT_EQ(mesh.num_faces(), 3u) << "every three are one";
    EXPECT_EQ(mesh.bounds().max.z, 2.0f);
    ASSERT_EQ(mesh.meshes().size(), 1u);
    EXPECT_EQ(mesh.meshes()[0].name, "wall");
    ASSERT_EQ(mesh.materials().size(), 1u);
    EXPECT_EQ(mesh.materials()[0].diffuse.y, 0.5f);
    EXPECT_EQ(mesh.materials()[0].opacity, 0.5f);

    larger.num_vertices = 6;
    larger.name = "roof";
    larger.color = orvex::vec4(1.0f, 0.0f, 0.0f, 1.0f);
    ASSERT_TRUE(mesh.update(larger));
    EXPECT_EQ(mesh.num_faces(), 2u);
    EXPECT_EQ(mesh.meshes().at(0).name, "roof");
    EXPECT_EQ(mesh.materials().at(0).diffuse.x, 1.0f);
    EXPECT_EQ(mesh.materials()[0].opacity, 1.0f);
}

/// What the engine has of the mesh.
const orvex::Mesh& mesh_of(const Model& model) {
    return *static_cast<const orvex::Mesh*>(model.node()->get_child(0));
}

TEST_F(ModelMeshTest, other_faces_leave_the_normals_and_colours_that_were_given) {
    constexpr std::array<float, 12> leaning = {0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1, 0};
    constexpr std::array<float, 12> colors = {1, 0, 0, 0, 1, 0, 0, 0, 1, 1, 1, 0};
    MeshNumbers numbers = square();
    numbers.normals = {leaning.data()};
    numbers.colors = {colors.data(), Number::f32, 3};
    Model mesh = Model::from_numbers(numbers);
    MeshNumbers others;
    others.num_faces = 1;
    others.faces = {corners.data(), Number::u16};
    ASSERT_EQ(mesh.update(others).reason(), "");
    EXPECT_EQ(mesh.num_faces(), 1u);
    EXPECT_EQ(mesh.num_vertices(), 4u);
    for (unsigned long i = 0; i < 4; ++i) {
        EXPECT_EQ(mesh_of(mesh).get_vertex_normal(i).y, 1.0f) << i;
        EXPECT_EQ(mesh_of(mesh).get_vertex_color(i).x, colors[i * 3]) << i;
        EXPECT_EQ(mesh_of(mesh).get_vertex_color(i).z, colors[i * 3 + 2]) << i;
    }
}

TEST_F(ModelMeshTest, another_texture_is_seen_in_place_of_the_one_before) {
    Picture red = make_picture(1, 1, 3, Sample::u8), green = red;
    red.row_data(0)[0] = green.row_data(0)[1] = 255;
    MeshNumbers numbers = square();
    numbers.texture = &red;
    Model mesh = Model::from_numbers(numbers);
    View view(16, 16);
    ASSERT_TRUE(view.set_look(Look::named("plain")));
    const auto middle = [&] {
        Picture picture;
        view.draw(mesh, {0.0f, 0.0f});
        EXPECT_EQ(view.read(picture).reason(), "");
        return pixel_at(picture, 8, 8);
    };
    EXPECT_EQ(middle(), (Pixel{255, 0, 0, 255}));
    MeshNumbers others;
    others.texture = &green;
    ASSERT_EQ(mesh.update(others).reason(), "");
    EXPECT_EQ(middle(), (Pixel{0, 255, 0, 255}));
}

TEST_F(ModelMeshTest, a_texture_has_8_bits_a_sample) {
    for (const Sample sample : {Sample::u16, Sample::f32, Sample::i32}) {
        const Picture deep = make_picture(2, 2, 3, sample);
        MeshNumbers numbers = square();
        numbers.texture = &deep;
        EXPECT_EQ(Model::from_numbers(numbers).reason(), "the texture's samples aren't 8-bit");
        numbers.num_vertices = 3;
        numbers.num_faces = 0;
        numbers.faces = {};
        EXPECT_EQ(Model::from_numbers(numbers).reason(), "the texture's samples aren't 8-bit");
        Model mesh = Model::from_numbers(square());
        MeshNumbers others;
        others.texture = &deep;
        EXPECT_EQ(mesh.update(others).reason(), "the texture's samples aren't 8-bit");
        EXPECT_EQ(mesh.num_faces(), 2u);
    }
}

TEST_F(ModelMeshTest, bad_numbers_leave_an_empty_model_with_the_reason) {
    MeshNumbers numbers = square();
    std::array<float, 12> bad = places;
    bad[10] = std::numeric_limits<float>::infinity();
    numbers.positions = {bad.data()};
    const Model mesh = Model::from_numbers(numbers);
    EXPECT_FALSE(mesh);
    EXPECT_EQ(mesh.reason(), "positions[3] holds inf, which is no finite float");
}

TEST_F(ModelMeshTest, faces_name_vertices_that_there_are) {
    for (const std::int32_t wrong : {4, -1, std::numeric_limits<std::int32_t>::min()})
        for (std::size_t corner = 0; corner < 6; ++corner) {
            std::array<std::int32_t, 6> faces = {0, 1, 2, 0, 2, 3};
            faces[corner] = wrong;
            MeshNumbers numbers = square();
            numbers.faces = {faces.data(), Number::i32};
            const Model model = Model::from_numbers(numbers);
            EXPECT_FALSE(model);
            EXPECT_EQ(model.reason(), "faces[" + std::to_string(corner / 3) + "] name vertex " +
                                          std::to_string(wrong) + ": there are 4");
        }
}

TEST_F(ModelMeshTest, a_model_from_a_file_keeps_its_numbers) {
    Model file(write_square(folder));
    const Outcome refused = file.update(square());
    EXPECT_EQ(refused.reason(), "a model from a file keeps its numbers");
    Model none;
    EXPECT_FALSE(none.update(square()));
}

TEST_F(ModelMeshTest, other_numbers_stay_where_the_transform_has_put_the_mesh) {
    Model mesh = Model::from_numbers(square());
    orvex::mat4 aside;
    aside.init_translate(5, 0, 0);
    ASSERT_TRUE(mesh.set_transform(aside));
    std::array<float, 12> twice = places;
    for (float& number : twice)
        number *= 2;
    MeshNumbers numbers;
    numbers.positions = {twice.data()};
    ASSERT_EQ(mesh.update(numbers).reason(), "");
    EXPECT_EQ(mesh.bounds().max.x, 2.0f) << "as the numbers have it";
    EXPECT_EQ(mesh.extent().middle.x, 5.0f);
    EXPECT_TRUE(mesh.pick({{6.5f, 0, 10, 1}, {0, 0, -1, 0}}));
    EXPECT_FALSE(mesh.pick({{1.5f, 0, 10, 1}, {0, 0, -1, 0}}));
    ASSERT_TRUE(mesh.set_transform(orvex::mat4()));
    EXPECT_EQ(mesh.extent().middle.x, 0.0f);
}

TEST_F(ModelMeshTest, a_transform_moves_what_is_seen_and_met) {
    Model model(write_square(folder));
    orvex::mat4 aside;
    aside.init_translate(5, 0, 0);
    ASSERT_TRUE(model.set_transform(aside));
    EXPECT_EQ(model.extent().middle.x, 5.0f);
    EXPECT_EQ(model.bounds().max.x, 1.0f);
    EXPECT_TRUE(model.pick({{5.5f, 0, 10, 1}, {0, 0, -1, 0}}));
    EXPECT_FALSE(model.pick({{0.5f, 0, 10, 1}, {0, 0, -1, 0}}));
    ASSERT_TRUE(model.set_transform(orvex::mat4()));
    EXPECT_EQ(model.extent().middle.x, 0.0f);
    aside.m[3] = 1;
    EXPECT_EQ(model.set_transform(aside).reason(), "the last row of the transform isn't 0 0 0 1");
    aside.m[3] = std::nanf("");
    EXPECT_EQ(model.set_transform(aside).reason(), "element 3 of the transform is nan");
    Model none;
    EXPECT_FALSE(none.set_transform(orvex::mat4()));
}

TEST(ModelMeshTestWithoutEngine, numbers_need_an_engine) {
    EXPECT_NE(Model::from_numbers(square()).reason().find("the engine doesn't run"),
              std::string::npos);
}

TEST(ModelMeshTestWithoutEngine, a_mesh_ends_with_its_engine) {
    Model mesh;
    {
        const Engine engine;
        mesh = Model::from_numbers(square());
        EXPECT_TRUE(mesh);
    }
    EXPECT_FALSE(mesh);
    EXPECT_NE(mesh.reason().find("the engine has ended"), std::string::npos);
}

} // namespace

} // namespace orvex_test
