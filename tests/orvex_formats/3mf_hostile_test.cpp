// 3MF files that were made to hurt.

#include <string>

#include <gtest/gtest.h>

#include "orvex_formats/3mf/private/3mf_reader.h"
#include "tests/orvex_formats/costs.h"
#include "tests/orvex_formats/mutants.h"
#include "tests/orvex_formats/packages.h"

namespace orvex_test {

namespace {

using namespace orvex::formats;

std::string refusal(const std::string& model) {
    return cheap_refusal_of(read_3mf, Bytes(package_of(model).text()).bytes);
}

std::string object(int id, const std::string& components) {
    return "<object id=\"" + std::to_string(id) + "\"><components>" + components +
           "</components></object>";
}

std::string component(int id) {
    return "<component objectid=\"" + std::to_string(id) + "\"/>";
}

TEST(HostileThreeMf, has_components_that_contain_themselves) {
    EXPECT_EQ(refusal(model_of(object(1, component(1)), "<item objectid=\"1\"/>")),
              "an object is a component of itself");
    EXPECT_EQ(refusal(model_of(object(1, component(2)) + object(2, component(3) + component(1)) +
                                   object(3, ""),
                               "<item objectid=\"1\"/>")),
              "an object is a component of itself");
}

TEST(HostileThreeMf, doubles_a_mesh_again_and_again) {
    std::string resources = "<object id=\"1\">" + triangle_mesh + "</object>";
    for (int i = 2; i < 60; ++i)
        resources += object(i, component(i - 1) + component(i - 1));
    EXPECT_NE(refusal(model_of(resources, "<item objectid=\"59\"/>")).find("the file builds more"),
              std::string::npos);
}

TEST(HostileThreeMf, that_is_long_and_even_is_a_model) {
    std::string rows = "<mesh><vertices>";
    for (int i = 0; i < 400000; ++i)
        rows += "<vertex x=\"0\" y=\"0\" z=\"1\"/>";
    rows += "</vertices><triangles><triangle v1=\"0\" v2=\"1\" v3=\"2\"/></triangles></mesh>";
    const std::vector<unsigned char> bytes =
        Bytes(
            package_of(model_of("<object id=\"1\">" + rows + "</object>", "<item objectid=\"1\"/>"))
                .text())
            .bytes;
    ASSERT_LT(bytes.size(), 100000u);
    const HeapPeak peak;
    EXPECT_EQ(read_3mf(InputFile(bytes)).surfaces.at(0).positions.size(), 400000u);
    EXPECT_LE(peak.bytes(), most_of_draft / 2);
}

TEST(HostileThreeMf, puts_a_mesh_in_a_hundred_thousand_places) {
    std::string items, components;
    for (int i = 0; i < 100000; ++i) {
        items += "<item objectid=\"1\"/>";
        components += component(1);
    }
    const std::string tile = "<object id=\"1\">" + triangle_mesh + "</object>";
    EXPECT_NE(refusal(model_of(tile, items)).find("the file builds more"), std::string::npos);
    EXPECT_NE(refusal(model_of(tile + object(2, components), "<item objectid=\"2\"/>"))
                  .find("the file builds more"),
              std::string::npos);
}

TEST(HostileThreeMf, has_components_a_hundred_thousand_deep) {
    std::string resources = "<object id=\"0\">" + triangle_mesh + "</object>";
    for (int i = 1; i < 100000; ++i)
        resources += object(i, component(i - 1));
    Zip::File file;
    file.name = "3D/3dmodel.model";
    file.text = model_of(resources, "<item objectid=\"99999\"/>");
    file.is_deflated = false;
    const Draft draft = read_3mf(InputFile(Bytes(Zip().add(file).text()).bytes));
    EXPECT_EQ(draft.surfaces.size(), 1u);
}

TEST(HostileThreeMf, has_pictures_that_grow) {
    std::string textures;
    Zip package;
    for (const char* id : {"1", "2", "3", "4"}) {
        textures += std::string("<texture2d id=\"") + id + "\" path=\"" + id +
                    "\"/><texture2dgroup id=\"1" + id + "\" texid=\"" + id + "\"/>";
        package.add(id, std::string(10000000, '\0'));
    }
    const std::string model = model_of(textures + "<object id=\"9\">" + triangle_mesh + "</object>",
                                       "<item objectid=\"9\"/>");
    const std::string name = "3D/3dmodel.model"; // which no relation names
    EXPECT_NE(cheap_refusal_of(read_3mf, Bytes(package.add(name, model).text()).bytes)
                  .find("more than any picture"),
              std::string::npos);
}

TEST(HostileThreeMf, is_a_bomb_of_xml) {
    EXPECT_NE(refusal("<!DOCTYPE m [<!ENTITY a \"aaaa\"><!ENTITY b \"&a;&a;\">]><model/>")
                  .find("definitions within the text aren't read"),
              std::string::npos);
    std::string deep, attributes = "<model";
    for (int i = 0; i < 200000; ++i) {
        deep += "<a>";
        attributes += " a" + std::to_string(i) + "=\"\"";
    }
    EXPECT_NE(refusal(deep).find("deeper than any text"), std::string::npos);
    EXPECT_NE(refusal(attributes + "/>").find("more attributes than any"), std::string::npos);
    EXPECT_NE(refusal("<model>" + std::string(30000000, ' ') + "</model>").find("grows beyond"),
              std::string::npos);
}

TEST(HostileThreeMf, mutants_do_no_harm) {
    Zip::File file;
    file.name = "3D/3dmodel.model";
    file.text = model_of("<basematerials id=\"5\"><base name=\"r\" displaycolor=\"#FF0000\"/>"
                         "</basematerials><colorgroup id=\"6\"><color color=\"#00FF00\"/>"
                         "</colorgroup><object id=\"1\" pid=\"6\" pindex=\"0\">" +
                             triangle_mesh + "</object>" + object(2, component(1)),
                         "<item objectid=\"2\"/>");
    file.is_deflated = false;
    // Sums would refuse nearly all of them.
    std::vector<std::vector<unsigned char>> packages;
    for (unsigned number = 0; number < 1000; ++number) {
        const std::vector<unsigned char> text = mutant_of(Bytes(file.text).bytes, number);
        Zip::File changed = file;
        changed.text.assign(text.begin(), text.end());
        packages.push_back(Bytes(Zip().add(changed).text()).bytes);
    }
    read_each(read_3mf, packages);
}

} // namespace

} // namespace orvex_test
