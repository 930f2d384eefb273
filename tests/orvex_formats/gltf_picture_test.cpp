// What pictures of glTF files look like on screen: upright, and of the right colours.

#include <cmath>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <orvex/assets/materials/material.h>
#include <orvex/assets/models/load_undo.h>
#include <orvex/assets/textures/texture.h>
#include <orvex/geometry/lines/polyline.h>
#include <orvex/geometry/mesh/mesh.h>
#include <orvex/geometry/mesh/model.h>
#include <orvex/geometry/points/vertex_pool.h>
#include <orvex/kernel/core.h>
#include <orvex/renderer/records/mesh_data.h>

#include <orvex_kit/engine.h>
#include <orvex_kit/look.h>
#include <orvex_kit/model.h>
#include <orvex_kit/view.h>

#include "orvex_formats/private/build_model.h"
#include "tests/orvex_formats/gltf_file.h"
#include "tests/orvex_kit/view_frame.h"
#include "tests/support/picture.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

namespace {

using namespace orvex::kit;

/// A square that fills the view, with a picture of four colours or with none.
class GltfPictureTest : public testing::TestWithParam<Path> {
protected:
    /// Red and green above, blue and white below.
    std::vector<unsigned char> four_colors() const {
        orvex_test::Picture picture(16, 16);
        const unsigned char colors[4][4] = {
            {255, 0, 0, 255}, {0, 255, 0, 255}, {0, 0, 255, 255}, {255, 255, 255, 255}};
        for (int y = 0; y < 16; ++y)
            for (int x = 0; x < 16; ++x)
                std::copy_n(colors[x / 8 + y / 8 * 2], 4, picture.at(x, y));
        const std::string path = folder.file("four.png");
        EXPECT_TRUE(write_png(path, picture));
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    /// @param image  what the image object has; "VIEW" stands for a view with the picture
    std::string write_square(const std::string& material, std::string image) const {
        GltfFile file;
        file.add_floats("VEC3", 3, {-1, -1, 0, 1, -1, 0, -1, 1, 0, 1, 1, 0});
        file.add_floats("VEC2", 2, {0, 1, 1, 1, 0, 0, 1, 0});
        const std::size_t view = file.add_view(four_colors());
        if (const std::size_t place = image.find("VIEW"); place != image.npos)
            image.replace(place, 4,
                          "'bufferView':" + std::to_string(view) + ",'mimeType':'image/png'");
        file.rest = "'meshes':[{'primitives':[{'mode':5,'material':0,'attributes':{'POSITION':0,"
                    "'TEXCOORD_0':1}}]}],'nodes':[{'mesh':0}],'materials':[{" +
                    material + "}],'textures':[{'source':0}],'images':[{" + image + "}]";
        const std::vector<unsigned char> bytes = file.as_binary();
        return folder.write("square.glb", std::string(bytes.begin(), bytes.end()));
    }

    /// The colours in the middles of the four quarters, the upper ones first.
    std::vector<Pixel> quarters_of(const std::string& path) {
        Model model(path);
        EXPECT_TRUE(model) << model.reason();
        EXPECT_EQ(model.loader(), "orvex_gltf");
        ViewOptions options;
        options.path = GetParam();
        options.samples = 0;
        View view(64, 64, options);
        EXPECT_EQ(view.set_look(Look::named("plain")).reason(), "");
        view.draw(model, {0.0f, 0.0f});
        const orvex::kit::Picture picture = picture_of(view);
        return {pixel_at(picture, 19, 19), pixel_at(picture, 45, 19), pixel_at(picture, 19, 45),
                pixel_at(picture, 45, 45)};
    }

    Engine engine;
    TempDir folder;
};
INSTANTIATE_TEST_SUITE_P(on, GltfPictureTest, testing::Values(Path::gl3, Path::gl2), path_name);

const std::vector<Pixel> upright = {
    {255, 0, 0, 255}, {0, 255, 0, 255}, {0, 0, 255, 255}, {255, 255, 255, 255}};
const char* const textured = "'pbrMetallicRoughness':{'baseColorTexture':{'index':0}}";

TEST_P(GltfPictureTest, shows_embedded_pictures_upright) {
    EXPECT_EQ(quarters_of(write_square(textured, "VIEW")), upright);
    EXPECT_EQ(quarters_of(write_square(textured, "'uri':'data:image/png;base64," +
                                                     base64(four_colors()) + "'")),
              upright);
}

TEST_P(GltfPictureTest, shows_files_as_it_shows_embedded_pictures) {
    EXPECT_EQ(quarters_of(write_square(textured, "'uri':'four.png'")), upright);
}

TEST_P(GltfPictureTest, shows_the_base_colour_and_no_other_picture) {
    const std::vector<Pixel> red(4, Pixel{255, 0, 0, 255});
    EXPECT_EQ(quarters_of(write_square("'pbrMetallicRoughness':{'baseColorFactor':[1,0,0,1]},"
                                       "'normalTexture':{'index':0}",
                                       "VIEW")),
              red);
}

TEST_P(GltfPictureTest, shows_white_where_a_picture_cant_be_decoded) {
    const std::string path = write_square(textured, "'uri':'data:image/png;base64,QUJD'");
    EXPECT_EQ(quarters_of(path), std::vector<Pixel>(4, Pixel{255, 255, 255, 255}));
    const Model model(path);
    ASSERT_EQ(model.notes().size(), 1u);
    EXPECT_EQ(model.notes()[0], "the picture \"picture 0\" can't be decoded, and is white");
}

TEST(BuildModel, gives_faces_the_normals_that_the_engine_computes) {
    const Engine engine;
    orvex::formats::Draft draft;
    orvex::formats::Surface& surface = draft.surfaces.emplace_back();
    // More faces than one thread takes at once, one of them without an area.
    const std::uint32_t count = 70'000;
    for (std::uint32_t i = 0; i < count + 2; ++i) {
        const float way = static_cast<float>(i) * 0.37f;
        surface.positions.emplace_back(std::sin(way), std::cos(way * 1.7f), way);
        if (i < count)
            surface.triangles.push_back({i, i + 1, i == 5 ? i : i + 2});
    }
    auto* const model = new orvex::Model;
    orvex::formats::build_model(std::move(draft), *model);
    auto* const mesh = dynamic_cast<orvex::Mesh*>(model->get_child(0));
    ASSERT_NE(mesh, nullptr);
    const orvex::MeshData& store = *mesh->get_mesh_data();
    ASSERT_EQ(store.num_faces, count);
    const std::vector<orvex::vec4> made(store.face_normals, store.face_normals + count);
    mesh->compute_faces_normal(nullptr);
    EXPECT_EQ(std::memcmp(made.data(), store.face_normals, count * sizeof made[0]), 0);
    model->kill(nullptr, nullptr);
}

TEST(BuildModel, makes_nothing_of_parts_without_anything) {
    const Engine engine;
    orvex::formats::Draft draft;
    draft.surfaces.push_back({"no faces", {{1, 2, 3}}, {}, {}, {}, {}, {}});
    draft.clouds.push_back({"no points", {}, {}});
    draft.lines.push_back({"no ends", {}, {}});
    auto* const model = new orvex::Model;
    EXPECT_TRUE(orvex::formats::build_model(std::move(draft), *model).empty());
    EXPECT_EQ(model->get_num_children(), 0u);
    model->kill(nullptr, nullptr);
}

TEST(BuildModel, leaves_faces_without_a_material_beside_others_that_have_one) {
    const Engine engine;
    orvex::formats::Draft draft;
    draft.materials.resize(2);
    orvex::formats::Surface& surface = draft.surfaces.emplace_back();
    surface.positions = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
    surface.triangles.assign(3, {0, 1, 2});
    surface.triangle_materials = {1, orvex::formats::no_material, 1};
    auto* const model = new orvex::Model;
    orvex::formats::build_model(std::move(draft), *model);
    auto* const mesh = dynamic_cast<orvex::Mesh*>(model->get_child(0));
    ASSERT_NE(mesh, nullptr);
    const orvex::MeshData& store = *mesh->get_mesh_data();
    const int id = model->get_material_by_index(1)->getid();
    EXPECT_NE(id, 0);
    EXPECT_EQ(std::vector<int>(store.face_materials, store.face_materials + 3),
              (std::vector<int>{id, 0, id}));
    EXPECT_EQ(mesh->get_num_materials(), 1u);
    model->kill(nullptr, nullptr);
}

TEST(BuildModel, makes_nodes_of_points_and_lines) {
    const Engine engine;
    orvex::formats::Draft draft;
    draft.clouds.push_back({"dust", {{1, 2, 3}}, {}});
    draft.lines.push_back({"edge", {{0, 0, 0}, {1, 0, 0}}, {{1, 0, 0, 1}, {0, 1, 0, 1}}});
    auto* const model = new orvex::Model;
    EXPECT_TRUE(orvex::formats::build_model(std::move(draft), *model).empty());
    ASSERT_EQ(model->get_num_children(), 2u);
    const auto* const pool = dynamic_cast<const orvex::VertexPool*>(model->get_child(0));
    ASSERT_NE(pool, nullptr);
    EXPECT_STREQ(pool->get_name(), "dust");
    auto* const lines = dynamic_cast<orvex::Polyline*>(model->get_child(1));
    ASSERT_NE(lines, nullptr);
    EXPECT_STREQ(lines->get_name(), "edge");
    EXPECT_EQ(lines->get_num_vertices(nullptr), 2u);
    model->kill(nullptr, nullptr);
}

} // namespace

} // namespace orvex_test
