// What the kit makes of the formats that lie beside its library.

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <orvex/scene/camera.h>
#include <orvex_kit/engine.h>
#include <orvex_kit/model.h>
#include <orvex_kit/picture.h>
#include <orvex_kit/ref.h>
#include <orvex_kit/view.h>

#include "tests/orvex_formats/gltf_file.h"
#include "tests/orvex_formats/packages.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

namespace {

using orvex::kit::Model;

class KitFormatsTest : public testing::Test {
protected:
    orvex::kit::Engine engine;
    TempDir folder;
};

TEST_F(KitFormatsTest, finds_the_plugins_beside_its_library) {
    ASSERT_TRUE(engine) << engine.reason();
    const std::string formats = orvex::kit::readable_formats();
    EXPECT_NE(formats.find(", STL"), formats.npos) << formats;
}

TEST_F(KitFormatsTest, loads_by_them_with_their_notes) {
    const Model model(folder.write("tile.stl", "solid tile\nshade 1\nfacet\nvertex 0 0 0\n"
                                               "vertex 1 0 0\nvertex 1 1 0\nendfacet\n"));
    ASSERT_TRUE(model) << model.reason();
    EXPECT_EQ(model.loader(), "orvex_stl");
    EXPECT_EQ(model.num_faces(), 1u);
    ASSERT_EQ(model.notes().size(), 1u);
    EXPECT_EQ(model.notes()[0], "line 2: \"shade\" is no word of STL, and was left out");
    EXPECT_EQ(model.files().size(), 1u);
}

TEST_F(KitFormatsTest, tells_the_reason_of_the_format_that_a_file_has) {
    const Model model(folder.write("bad.stl", "solid\nfacet\nvertex 1\n"));
    EXPECT_FALSE(model);
    EXPECT_TRUE(model.reason().starts_with(folder.file("bad.stl") +
                                           ": no loader can read it as a model (OBJ, "))
        << model.reason();
    EXPECT_TRUE(model.reason().ends_with("): line 3: a vertex without three numbers"))
        << model.reason();
}

// ------------------------------------------------------------------------------- cameras, time

std::string text_of(const GltfFile& file) {
    const std::vector<unsigned char> bytes = file.as_binary();
    return {bytes.begin(), bytes.end()};
}

TEST_F(KitFormatsTest, reads_the_moment_that_is_asked_for) {
    GltfFile file = triangle();
    file.add_floats("SCALAR", 1, {0, 2});
    file.add_floats("VEC3", 3, {0, 0, 0, 10, 0, 0});
    file.rest += ",'animations':[{'channels':[{'sampler':0,'target':{'node':0,'path':"
                 "'translation'}}],'samplers':[{'input':2,'output':3}]}]";
    const std::string path = folder.write("moving.glb", text_of(file));
    orvex::kit::ModelOptions options;
    EXPECT_EQ(Model(path, options).bounds().min.x, 0.0f);
    EXPECT_EQ(Model(path, options).notes().size(), 1u);
    options.time = 1.0f;
    EXPECT_EQ(Model(path, options).bounds().min.x, 5.0f);
    EXPECT_TRUE(Model(path, options).notes().empty());
    options.time.reset();
    EXPECT_EQ(Model(path, options).bounds().min.x, 0.0f) << "loaders don't remember it";
}

TEST_F(KitFormatsTest, tells_from_where_a_file_would_be_seen) {
    GltfFile file = triangle();
    file.rest = "'meshes':[{'primitives':[{'attributes':{'POSITION':0}}]}],'nodes':["
                "{'mesh':0},{'camera':0,'name':'right','translation':[7,0,0],"
                "'rotation':[0,0.70710678,0,0.70710678]},{'camera':1,'translation':[0,0,5]},"
                "{'camera':2,'translation':[0,0,5]}],'cameras':["
                "{'type':'perspective','perspective':{'yfov':1.5707963,'znear':0.5,'zfar':20}},"
                "{'name':'flat','type':'orthographic','orthographic':{'xmag':3,'ymag':2,"
                "'znear':1,'zfar':30}},"
                "{'type':'perspective','perspective':{'yfov':1.5707963,'znear':0.5}}]";
    const Model model(folder.write("seen.glb", text_of(file)));
    ASSERT_TRUE(model) << model.reason();
    EXPECT_TRUE(model.notes().empty());
    ASSERT_EQ(model.cameras().size(), 3u);
    const orvex::kit::Screen screen{200, 100};

    // A right angle from below to above: as high as it is far.
    const orvex::kit::ModelCamera& right = model.cameras()[0];
    EXPECT_EQ(right.name, "right");
    EXPECT_FLOAT_EQ(right.camera.near(), 0.5f);
    EXPECT_FLOAT_EQ(right.camera.far(), 20.0f);
    const auto above = right.camera.project(orvex::vec4(2.0f, 2.5f, 0.0f, 1.0f), screen);
    ASSERT_TRUE(above.has_value());
    EXPECT_NEAR(above->depth, 5.0, 1e-4);
    EXPECT_NEAR(above->x, 100.0, 1e-3);
    EXPECT_NEAR(above->y, 25.0, 1e-3);

    const orvex::kit::ModelCamera& flat = model.cameras()[1];
    EXPECT_EQ(flat.name, "flat");
    EXPECT_NEAR(flat.camera.near(), 1.0f, 1e-5f);
    EXPECT_NEAR(flat.camera.far(), 30.0f, 1e-4f);
    for (const float z : {0.0f, -9.0f}) {
        const auto place = flat.camera.project(orvex::vec4(1.0f, 1.0f, z, 1.0f), screen);
        ASSERT_TRUE(place.has_value());
        EXPECT_NEAR(place->x, 125.0, 1e-3);
        EXPECT_NEAR(place->y, 25.0, 1e-3);
    }
    EXPECT_GT(model.cameras()[2].camera.far(), 5.0f) << "behind the model";
}

// ------------------------------------------------------------------------------- clouds

/// A red point in the middle, a green one above it, and one without a place.
const char* const points = "ply\nformat ascii 1.0\nelement vertex 3\nproperty float x\n"
                           "property float y\nproperty float z\nproperty uchar red\n"
                           "property uchar green\nproperty uchar blue\nend_header\n"
                           "0 0 0 255 0 0\n0 0.5 0 0 255 0\nnan 0 0 0 0 255\n";

using Color = std::array<int, 3>;

class KitCloudsTest : public testing::TestWithParam<orvex::kit::Path> {
protected:
    /// A picture of 64 pixels, from -1 to 1 either way.
    std::function<Color(int x, int y)> seen(Model& model) {
        orvex::kit::ViewOptions options;
        options.path = GetParam();
        options.samples = 0;
        orvex::kit::View view(64, 64, options);
        EXPECT_TRUE(view) << view.reason();
        const auto camera = orvex::kit::make<orvex::Camera>();
        camera->set_viewport(0, 0, 64, 64);
        camera->build_projection_ortho(-1.0f, 1.0f, -1.0f, 1.0f, 1.0f, 10.0f, true);
        camera->set_position(orvex::vec4(0.0f, 0.0f, 5.0f, 1.0f));
        view.begin(*camera);
        view.add(model);
        view.end();
        const auto picture = std::make_shared<orvex::kit::Picture>();
        EXPECT_EQ(view.read(*picture).reason(), "");
        return [picture](int x, int y) {
            const auto* const pixel = picture->row<std::uint8_t>(y) + std::ptrdiff_t{4} * x;
            return Color{pixel[0], pixel[1], pixel[2]};
        };
    }

    orvex::kit::Engine engine;
    TempDir folder;
};
INSTANTIATE_TEST_SUITE_P(on, KitCloudsTest,
                         testing::Values(orvex::kit::Path::gl3, orvex::kit::Path::gl2),
                         [](const testing::TestParamInfo<orvex::kit::Path>& path) {
                             return path.param == orvex::kit::Path::gl3 ? "gl3" : "gl2";
                         });

TEST_P(KitCloudsTest, are_counted_and_have_a_place) {
    const Model model(folder.write("points.ply", points));
    ASSERT_TRUE(model) << model.reason();
    EXPECT_EQ(model.num_points(), 3u);
    EXPECT_EQ(model.num_faces(), 0u);
    EXPECT_EQ(model.extent().points.size(), 2u) << "of those with a place";
    EXPECT_EQ(model.bounds().max.y, 0.5f);
    EXPECT_TRUE(model.notes().empty()) << model.notes()[0];
}

TEST_P(KitCloudsTest, are_seen_in_their_colours) {
    Model model(folder.write("points.ply", points));
    ASSERT_TRUE(model) << model.reason();
    const auto color_at = seen(model);
    EXPECT_EQ(color_at(32, 32), (Color{255, 0, 0}));
    EXPECT_EQ(color_at(32, 16), (Color{0, 255, 0}));
    EXPECT_EQ(color_at(31, 31), (Color{255, 0, 0})) << "some pixels wide";
    EXPECT_NE(color_at(32, 24), (Color{255, 0, 0}));
}

// ------------------------------------------------------------------------------- lines

/// A red line through the middle of a picture of 64 pixels and a green one above, and one without
/// a place.
const char* const lines = "v -0.5 0.015625 0 1 0 0\nv 0.5 0.015625 0 1 0 0\n"
                          "v -0.5 0.515625 0 0 1 0\nv 0.5 0.515625 0 0 1 0\nv nan 0 0 0 0 1\n"
                          "l 1 2\nl 3 4\nl 5 1\n";

TEST_P(KitCloudsTest, may_be_of_lines) {
    const Model model(folder.write("lines.obj", lines));
    ASSERT_TRUE(model) << model.reason();
    EXPECT_EQ(model.num_lines(), 3u);
    EXPECT_EQ(model.num_points(), 0u);
    EXPECT_EQ(model.extent().points.size(), 5u) << "of those with a place";
    EXPECT_EQ(model.bounds().max.y, 0.515625f);
    EXPECT_TRUE(model.notes().empty()) << model.notes()[0];
}

TEST_P(KitCloudsTest, show_lines_in_their_colours) {
    GltfFile file;
    file.add_floats(
        "VEC3", 3,
        {-0.5f, 0.015625f, 0, 0.5f, 0.015625f, 0, 0.5f, 0.515625f, 0, -0.5f, 0.515625f, 0});
    file.add_floats("VEC3", 3, {1, 0, 0, 1, 0, 0, 0, 1, 0, 0, 1, 0});
    file.rest = "'meshes':[{'primitives':[{'mode':3,'attributes':{'POSITION':0,'COLOR_0':1}}]}],"
                "'nodes':[{'mesh':0}]";
    for (const std::string& path :
         {folder.write("lines.obj", lines), folder.write("lines.glb", text_of(file))}) {
        Model model(path);
        ASSERT_TRUE(model) << model.reason();
        const auto color_at = seen(model);
        EXPECT_EQ(color_at(20, 31), (Color{255, 0, 0})) << path;
        EXPECT_EQ(color_at(44, 31), (Color{255, 0, 0})) << path;
        EXPECT_EQ(color_at(32, 15), (Color{0, 255, 0})) << path;
        EXPECT_NE(color_at(32, 24), (Color{255, 0, 0})) << path;
        EXPECT_NE(color_at(10, 31), (Color{255, 0, 0})) << path;
    }
}

TEST_F(KitFormatsTest, knows_that_z_is_up_in_3mf) {
    const Model model(folder.write(
        "tile.3mf", package_of(model_of("<object id=\"1\">" + triangle_mesh + "</object>",
                                        "<item objectid=\"1\"/>"))
                        .text()));
    ASSERT_TRUE(model) << model.reason();
    EXPECT_EQ(model.file_up_axis(), orvex::kit::UpAxis::z);
}

} // namespace

} // namespace orvex_test
