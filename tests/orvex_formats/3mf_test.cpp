#include "orvex_formats/3mf/private/3mf_reader.h"

#include <string>

#include <gtest/gtest.h>

#include "tests/orvex_formats/bytes.h"
#include "tests/orvex_formats/check_draft.h"
#include "tests/orvex_formats/packages.h"

namespace orvex_test {

namespace {

using namespace orvex;
using namespace orvex::formats;

Draft read(const Zip& package) {
    Draft draft = read_3mf(InputFile(Bytes(package.text()).bytes));
    EXPECT_TRUE(holds_together(draft));
    return draft;
}

std::string refusal(const Zip& package) {
    return refusal_of(read_3mf, Bytes(package.text()).bytes);
}

const std::string tile = "<object id=\"1\" name=\"a &amp; b\">" + triangle_mesh + "</object>";
const std::string item = "<item objectid=\"1\"/>";

TEST(ThreeMf, gives_the_meshes_of_its_items) {
    const Draft draft = read(package_of(model_of(tile, item)));
    ASSERT_EQ(draft.surfaces.size(), 1u);
    const Surface& surface = draft.surfaces[0];
    EXPECT_EQ(surface.name, "a & b");
    EXPECT_EQ(surface.positions.at(2).y, 1.0f);
    EXPECT_EQ(surface.triangles.at(0), (Triangle{0, 1, 2}));
    EXPECT_TRUE(surface.triangle_materials.empty());
    EXPECT_TRUE(draft.notes.empty());
}

TEST(ThreeMf, finds_its_model_without_relations_too) {
    EXPECT_EQ(read(Zip().add("3d/3DMODEL.model", model_of(tile, item))).surfaces.size(), 1u);
}

TEST(ThreeMf, puts_components_where_their_transforms_say) {
    // A quarter turn about z, then a move along x; the item doubles it and moves along y.
    const Draft draft = read(package_of(
        model_of(tile + "<object id=\"2\"><components><component objectid=\"1\" "
                        "transform=\"0 1 0 -1 0 0 0 0 1 10 0 0\"/><component objectid=\"1\"/>"
                        "</components></object>",
                 "<item objectid=\"2\" transform=\"2 0 0 0 2 0 0 0 2 0 100 0\"/>" + item)));
    ASSERT_EQ(draft.surfaces.size(), 3u);
    const vec3& corner = draft.surfaces[0].positions.at(1); // (1, 0, 0) at first
    EXPECT_FLOAT_EQ(corner.x, 20.0f);
    EXPECT_FLOAT_EQ(corner.y, 102.0f);
    EXPECT_FLOAT_EQ(draft.surfaces[1].positions.at(1).x, 2.0f);
    EXPECT_FLOAT_EQ(draft.surfaces[2].positions.at(1).x, 1.0f);
}

TEST(ThreeMf, turns_the_triangles_of_mirrored_meshes) {
    const Draft draft = read(package_of(
        model_of(tile, "<item objectid=\"1\" transform=\"-1 0 0 0 1 0 0 0 1 0 0 0\"/>")));
    EXPECT_EQ(draft.surfaces.at(0).positions.at(1).x, -1.0f);
    EXPECT_EQ(draft.surfaces[0].triangles.at(0), (Triangle{0, 2, 1}));
}

/// Two triangles of four vertices; attributes of the object and of both.
std::string two(const std::string& object, const std::string& first, const std::string& second) {
    return "<object id=\"9\" " + object +
           "><mesh><vertices><vertex x=\"0\" y=\"0\" z=\"0\"/><vertex x=\"1\" y=\"0\" z=\"0\"/>"
           "<vertex x=\"1\" y=\"1\" z=\"0\"/><vertex x=\"0\" y=\"1\" z=\"0\"/></vertices>"
           "<triangles><triangle v1=\"0\" v2=\"1\" v3=\"2\" " +
           first + "/><triangle v1=\"0\" v2=\"2\" v3=\"3\" " + second +
           "/></triangles></mesh></object>";
}

TEST(ThreeMf, has_base_materials) {
    const Draft draft = read(
        package_of(model_of("<basematerials id=\"5\"><base name=\"red\" displaycolor=\"#FF0000\"/>"
                            "<base name=\"glass\" displaycolor=\"#00ff0033\"/></basematerials>" +
                                two("pid=\"5\" pindex=\"1\"", "", "p1=\"0\""),
                            "<item objectid=\"9\"/>")));
    ASSERT_EQ(draft.materials.size(), 2u);
    EXPECT_EQ(draft.materials[0].name, "red");
    EXPECT_EQ(draft.materials[0].diffuse.x, 1.0f);
    EXPECT_EQ(draft.materials[0].opacity, 1.0f);
    EXPECT_EQ(draft.materials[1].diffuse.y, 1.0f);
    EXPECT_NEAR(draft.materials[1].opacity, 0.2f, 1e-6f);
    EXPECT_EQ(draft.surfaces.at(0).triangle_materials, (std::vector<std::uint32_t>{1, 0}));
}

TEST(ThreeMf, has_colours_of_corners) {
    const Draft draft =
        read(package_of(model_of("<m:colorgroup id=\"5\"><m:color color=\"#FF0000\"/>"
                                 "<m:color color=\"#0000FF80\"/></m:colorgroup>" +
                                     two("", "pid=\"5\" p1=\"0\" p2=\"0\" p3=\"1\"", ""),
                                 "<item objectid=\"9\"/>")));
    const Surface& surface = draft.surfaces.at(0);
    EXPECT_EQ(surface.positions.size(), 6u);
    const Triangle& first = surface.triangles.at(0);
    EXPECT_EQ(surface.colors.at(first[0]).x, 1.0f);
    EXPECT_EQ(surface.colors.at(first[2]).z, 1.0f);
    EXPECT_NEAR(surface.colors.at(first[2]).w, 128.0f / 255.0f, 1e-6f);
    EXPECT_EQ(surface.colors.at(surface.triangles.at(1)[0]).y, 1.0f) << "white without a colour";
    EXPECT_EQ(surface.positions.at(first[2]).y, 1.0f);
}

const std::string wood =
    "<m:texture2d id=\"4\" path=\"/3D/Textures/wood.png\" contenttype=\"image/png\"/>"
    "<m:texture2dgroup id=\"5\" texid=\"4\"><m:tex2coord u=\"0\" v=\"0\"/><m:tex2coord u=\"1\" "
    "v=\"0\"/><m:tex2coord u=\"0.5\" v=\"0.75\"/></m:texture2dgroup>";

TEST(ThreeMf, has_pictures_on_its_faces) {
    const Draft draft =
        read(package_of(model_of(wood + two("", "pid=\"5\" p1=\"0\" p2=\"1\" p3=\"2\"",
                                            "pid=\"5\" p1=\"1\" p2=\"2\" p3=\"9\""),
                                 "<item objectid=\"9\"/>"))
                 .add("3D/Textures/wood.png", "png"));
    ASSERT_EQ(draft.pictures.size(), 1u);
    EXPECT_EQ(draft.pictures[0].bytes.size(), 3u);
    ASSERT_EQ(draft.materials.size(), 1u);
    EXPECT_EQ(draft.materials[0].textures, std::vector<std::string>{draft.pictures[0].name});
    EXPECT_EQ(draft.materials[0].diffuse.x, 1.0f);
    const Surface& surface = draft.surfaces.at(0);
    EXPECT_EQ(surface.triangle_materials, (std::vector<std::uint32_t>{0, 0}));
    EXPECT_TRUE(surface.colors.empty());
    EXPECT_EQ(surface.positions.size(), 5u) << "one corner is the same on both";
    EXPECT_EQ(surface.uvs[0].at(surface.triangles.at(0)[2]).x, 0.5f);
    EXPECT_EQ(surface.uvs[0].at(surface.triangles.at(0)[2]).y, 0.75f);
    EXPECT_EQ(surface.uvs[0].at(surface.triangles.at(1)[2]).y, 0.0f) << "beyond the list";
    EXPECT_TRUE(draft.notes.empty());
}

TEST(ThreeMf, keeps_a_picture_once_and_misses_one_with_a_note) {
    const std::string other = "<m:texture2dgroup id=\"6\" texid=\"4\"><m:tex2coord u=\"0\" "
                              "v=\"0\"/></m:texture2dgroup>";
    const Zip package = package_of(model_of(wood + other + tile, item));
    EXPECT_EQ(read(Zip(package).add("3d/textures/Wood.png", "png")).pictures.size(), 1u);
    const Draft draft = read(package);
    EXPECT_TRUE(draft.pictures.empty());
    ASSERT_EQ(draft.notes.size(), 1u);
    EXPECT_EQ(draft.notes[0],
              "a picture that the package doesn't have was left out: 3D/Textures/wood.png");
    EXPECT_NE(refusal(package_of(model_of("<m:texture2dgroup id=\"6\" texid=\"7\"/>" + tile, item)))
                  .find("a picture that the part doesn't have"),
              std::string::npos);
}

TEST(ThreeMf, reads_objects_of_other_parts) {
    const Draft draft = read(
        package_of(model_of("<object id=\"1\"><components><component objectid=\"1\" "
                            "p:path=\"/3D/Objects/tile.model\"/></components></object>",
                            item))
            .add("3D/Objects/tile.model",
                 model_of("<basematerials id=\"5\"><base name=\"red\" displaycolor=\"#FF0000\"/>"
                          "</basematerials><object id=\"1\" pid=\"5\" pindex=\"0\">" +
                              triangle_mesh + "</object>",
                          item)));
    ASSERT_EQ(draft.surfaces.size(), 1u);
    EXPECT_EQ(draft.surfaces[0].triangle_materials, (std::vector<std::uint32_t>{0}));
}

TEST(ThreeMf, notes_its_unit_and_what_is_left_out) {
    const Draft draft = read(package_of(
        "<model unit=\"inch\"><resources><m:multiproperties id=\"3\" pids=\"4\"><m:multi "
        "pindices=\"0\"/></m:multiproperties><m:multiproperties id=\"6\" pids=\"4\"/>" +
        tile + "</resources><build>" + item + "</build></model>"));
    ASSERT_EQ(draft.notes.size(), 2u);
    EXPECT_EQ(draft.notes[0], "numbers are as the file has them; its unit is the inch");
    EXPECT_EQ(draft.notes[1], "elements that aren't read were left out: multiproperties");
    const Draft beams = read(package_of(model_of(
        "<object id=\"1\">" + triangle_mesh +
            "<b:beamlattice><b:beams><b:beam v1=\"0\"/></b:beams></b:beamlattice></object>",
        item)));
    EXPECT_EQ(beams.surfaces.at(0).triangles.size(), 1u);
    EXPECT_EQ(beams.notes,
              std::vector<std::string>{"elements that aren't read were left out: beamlattice"});
}

TEST(ThreeMf, with_a_mistake_is_refused) {
    const auto refusal_of_model = [](const std::string& resources, const std::string& items) {
        return refusal(package_of(model_of(resources, items)));
    };
    EXPECT_EQ(refusal_of_model(tile, ""), "the file builds no mesh");
    EXPECT_EQ(refusal_of_model(tile, "<item objectid=\"2\"/>"), "3D/main.model has no object 2");
    EXPECT_EQ(refusal_of_model(tile + tile, item), "3D/main.model has two objects 1");
    EXPECT_EQ(refusal_of_model(two("", "", "") + "", "<item objectid=\"9\" transform=\"1 2\"/>")
                  .find("3D/main.model, byte"),
              0u);
    std::string beyond = tile;
    beyond.replace(beyond.find("v3=\"2\""), 6, "v3=\"3\"");
    EXPECT_EQ(refusal_of_model(beyond, item), "object 1 of 3D/main.model has vertex 3 of 3");
    EXPECT_NE(refusal_of_model("<basematerials id=\"5\"><base displaycolor=\"red\"/>", "")
                  .find("a colour that isn't written as #RRGGBB or #RRGGBBAA"),
              std::string::npos);
    EXPECT_NE(refusal_of_model("<object/>", "").find("no number where \"id\" should have one"),
              std::string::npos);
    EXPECT_EQ(refusal(package_of("").add("3D/b.model", "")), "the file builds no mesh");
    EXPECT_EQ(refusal(package_of(model_of("<object id=\"1\"><components><component "
                                          "objectid=\"1\" p:path=\"/../a\"/></components></object>",
                                          item))),
              "the package has no part ../a");
}

TEST(ThreeMf, is_not_what_other_files_are) {
    EXPECT_EQ(refusal_of(read_3mf, Bytes("solid\n").bytes),
              "other format: no 3MF file: it is no archive");
    EXPECT_EQ(refusal(Zip().add("a.stl", "solid")),
              "other format: no 3MF file: the archive has no model part");
}

} // namespace

} // namespace orvex_test
