// Scenes of glTF: meshes, looks and where they stand.

#include <cmath>

#include <gtest/gtest.h>

#include "orvex_formats/gltf/private/gltf_chains.h"
#include "tests/orvex_formats/check_draft.h"
#include "tests/orvex_formats/gltf_file.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

namespace {

using namespace orvex;
using namespace orvex::formats;

/// Five places in a row of squares, and a primitive of them.
GltfFile primitive(const std::string& more) {
    GltfFile file;
    file.add_floats("VEC3", 3, {0, 0, 0, 1, 0, 0, 0, 1, 0, 1, 1, 0, 0, 2, 0});
    file.rest = "'meshes':[{'primitives':[{'attributes':{'POSITION':0}" + more +
                "}]}],'nodes':[{'mesh':0,'name':'knot'}]";
    return file;
}

Draft read(const GltfFile& file) {
    Draft draft = read_gltf_bytes(file.as_binary());
    EXPECT_TRUE(holds_together(draft));
    return draft;
}

std::string refusal(const GltfFile& file) {
    return refusal_of(read_gltf, file.as_binary());
}

// ------------------------------------------------------------------------------ primitives

TEST(GltfMesh, of_strips_and_fans_is_triangles_that_look_to_one_side) {
    const Draft strip = read(primitive(",'mode':5"));
    ASSERT_EQ(strip.surfaces.size(), 1u);
    EXPECT_EQ(strip.surfaces[0].triangles,
              (std::vector<Triangle>{{0, 1, 2}, {1, 3, 2}, {2, 3, 4}}));
    EXPECT_EQ(strip.surfaces[0].name, "knot") << "a mesh without a name is called as its node";
    const Draft fan = read(primitive(",'mode':6"));
    EXPECT_EQ(fan.surfaces.at(0).triangles,
              (std::vector<Triangle>{{0, 1, 2}, {0, 2, 3}, {0, 3, 4}}));
    const Draft list = read(primitive(",'mode':4"));
    EXPECT_EQ(list.surfaces.at(0).triangles, (std::vector<Triangle>{{0, 1, 2}}));
    EXPECT_EQ(list.notes.at(0), "meshes[0].primitives[0]: corners that make no whole triangle were "
                                "left out");
}

TEST(GltfMesh, of_points_and_lines_is_a_cloud_and_lines) {
    const Draft points = read(primitive(",'mode':0"));
    ASSERT_EQ(points.clouds.size(), 1u);
    EXPECT_EQ(points.clouds[0].positions.size(), 5u);
    EXPECT_TRUE(points.surfaces.empty());
    const auto lines_of = [](int mode) {
        return read(primitive(",'mode':" + std::to_string(mode))).lines.at(0).positions;
    };
    EXPECT_EQ(lines_of(1).size(), 4u);
    EXPECT_EQ(lines_of(2).size(), 10u);
    EXPECT_EQ(lines_of(2)[9].y, 0.0f) << "a loop ends where it begins";
    EXPECT_EQ(lines_of(3).size(), 8u);
    EXPECT_EQ(lines_of(3)[7].y, 2.0f);
    EXPECT_EQ(refusal(primitive(",'mode':7")),
              "meshes[0].primitives[0].mode: 7 is no mode of primitives");
}

TEST(GltfMesh, with_indices_takes_the_vertices_that_it_uses) {
    GltfFile file = primitive(",'indices':1");
    file.add_indices({4, 1, 2});
    const Draft draft = read(file);
    const Surface& surface = draft.surfaces.at(0);
    ASSERT_EQ(surface.positions.size(), 3u);
    ASSERT_EQ(surface.triangles.size(), 1u);
    EXPECT_EQ(surface.triangles[0], (Triangle{2, 0, 1}));
    EXPECT_EQ(surface.positions[2].y, 2.0f);
}

TEST(GltfMesh, whose_indices_lie_beyond_its_vertices_is_refused) {
    GltfFile file = primitive(",'indices':1");
    file.add_indices({0, 1, 5});
    EXPECT_EQ(refusal(file),
              "meshes[0].primitives[0].indices: index 5 in place 2 is beyond the 5 vertices");
    GltfFile restart = primitive(",'indices':1,'mode':5");
    restart.add_indices({0, 1, 2, 65535, 3});
    EXPECT_EQ(refusal(restart),
              "meshes[0].primitives[0].indices: index 65535 in place 3 is beyond the 5 vertices");
}

TEST(GltfMesh, whose_lists_dont_fit_each_other_is_refused) {
    GltfFile file = primitive("");
    file.add_floats("VEC3", 3, {0, 0, 1});
    file.add_floats("VEC2", 2, {0, 0, 1, 1, 2, 2, 3, 3, 4, 4});
    const auto with = [&](const char* attributes) {
        GltfFile changed = file;
        changed.rest = std::string("'meshes':[{'primitives':[{'attributes':{'POSITION':0,") +
                       attributes + "}}]}],'nodes':[{'mesh':0}]";
        return refusal(changed);
    };
    const std::string place = "meshes[0].primitives[0].attributes";
    EXPECT_EQ(with("'NORMAL':1"),
              place + ".NORMAL: accessor 1 has 1 elements, and there are 5 vertices");
    EXPECT_EQ(with("'NORMAL':2"), place + ".NORMAL: accessor 2 has elements of another type");
    EXPECT_EQ(with("'TEXCOORD_0':0"),
              place + ".TEXCOORD_0: accessor 0 has elements of another type");
    EXPECT_EQ(with("'COLOR_0':9"), place + ".COLOR_0: 9 is beyond the 3 accessors");
    EXPECT_EQ(with("'COLOR_0':-1"),
              place + ".COLOR_0: -1 is no whole number from 0 to 9007199254740991");
}

TEST(GltfMesh, without_attributes_is_refused) {
    EXPECT_EQ(gltf_refusal("{'asset':{'version':'2.0'},'meshes':[{'primitives':[{}]}],"
                           "'nodes':[{'mesh':0}]}"),
              "meshes[0].primitives[0]: \"attributes\" is missing");
}

TEST(GltfMesh, without_places_is_left_out_with_a_note) {
    GltfFile file;
    file.rest = "'meshes':[{'primitives':[{'attributes':{}}]}],'nodes':[{'mesh':0}]";
    const Draft draft = read_gltf_bytes(Bytes(file.text("")).bytes);
    EXPECT_TRUE(draft.surfaces.empty());
    EXPECT_EQ(draft.notes.at(0),
              "meshes[0].primitives[0]: a primitive without positions was left out");
}

TEST(GltfMesh, has_quantized_places_and_colours_as_screens_show_them) {
    GltfFile file;
    file.add_view(bytes_of<std::int16_t>({0, 0, 0, 0, 32767, 0, -32768, 0, 0, 32767, 5, 0}),
                  ",'byteStride':8");
    file.add_accessor("VEC3", 5122, 3, ",'bufferView':0,'normalized':true");
    file.add_view({255, 0, 128, 51, 255, 0, 128, 255, 0, 0, 0, 255});
    file.add_accessor("VEC4", 5121, 3, ",'bufferView':1,'normalized':true");
    file.rest = "'extensionsRequired':['KHR_mesh_quantization'],'meshes':[{'primitives':[{"
                "'attributes':{'POSITION':0,'COLOR_0':1}}]}],'nodes':[{'mesh':0}]";
    const Draft draft = read(file);
    const Surface& surface = draft.surfaces.at(0);
    EXPECT_EQ(surface.positions.at(1).x, 1.0f);
    EXPECT_EQ(surface.positions.at(1).z, -1.0f);
    EXPECT_EQ(surface.colors.at(0).x, 1.0f);
    EXPECT_NEAR(surface.colors.at(0).z, 0.7366f, 1e-3f) << "the file's colours are linear";
    EXPECT_EQ(surface.colors.at(0).w, 0.2f) << "and alpha is as it is";
}

TEST(GltfMesh, bends_by_its_morph_targets_as_their_weights_say) {
    const auto place = [](const char* of_mesh, const char* of_node) {
        GltfFile file;
        file.add_floats("VEC3", 3, {0, 0, 0, 1, 0, 0, 0, 1, 0});
        file.add_floats("VEC3", 3, {0, 0, 8, 0, 0, 8, 0, 0, 8});
        file.rest = std::string("'meshes':[{'primitives':[{'attributes':{'POSITION':0},'targets':[{"
                                "'POSITION':1}]}]") +
                    of_mesh + "}],'nodes':[{'mesh':0" + of_node + "}]";
        try {
            return std::to_string(
                static_cast<int>(read_gltf_bytes(file.as_binary()).surfaces.at(0).positions[0].z));
        } catch (const Refusal& refused) {
            return std::string(refused.what());
        }
    };
    EXPECT_EQ(place("", ""), "0");
    EXPECT_EQ(place(",'weights':[0.5]", ""), "4");
    EXPECT_EQ(place(",'weights':[0.5]", ",'weights':[1]"), "8");
    EXPECT_EQ(place(",'weights':[1,2]", ""), "meshes[0].weights: not one weight for each of the 1 "
                                             "targets of meshes[0].primitives[0]");
}

// ------------------------------------------------------------------------------ nodes

/// The triangle's node and others.
GltfFile nodes(const std::string& told) {
    GltfFile file = triangle();
    file.add_floats("VEC3", 3, {0, 0, 1, 0, 0, 1, 0, 0, 1});
    file.rest = "'meshes':[{'primitives':[{'attributes':{'POSITION':0,'NORMAL':2}}]}]," + told;
    return file;
}

void expect_place(const vec3& place, float x, float y, float z) {
    EXPECT_NEAR(place.x, x, 1e-5f);
    EXPECT_NEAR(place.y, y, 1e-5f);
    EXPECT_NEAR(place.z, z, 1e-5f);
}

TEST(GltfNodes, stand_where_their_parents_and_they_say) {
    // A quarter turn about z takes x to y.
    const Draft draft = read(nodes("'nodes':[{'children':[1],'translation':[10,0,0]},{'mesh':0,"
                                   "'rotation':[0,0,0.70710678,0.70710678],'scale':[2,1,1]}]"));
    const Surface& surface = draft.surfaces.at(0);
    expect_place(surface.positions.at(1), 9, 2, 0); // (1, 1, 0) scaled, turned, moved
    expect_place(surface.normals.at(1), 0, 0, 1);
}

TEST(GltfNodes, with_matrices_stand_as_those_with_parts) {
    const Draft draft = read(nodes("'nodes':[{'matrix':[1,0,0,0, 0,0,1,0, 0,-1,0,0, 5,6,7,1],"
                                   "'mesh':0}]"));
    expect_place(draft.surfaces.at(0).positions.at(1), 6, 6, 8);
    expect_place(draft.surfaces.at(0).normals.at(0), 0, -1, 0);
}

TEST(GltfNodes, give_a_mesh_once_for_each_of_them) {
    const Draft draft = read(nodes("'nodes':[{'mesh':0},{'mesh':0,'translation':[0,0,3]}]"));
    ASSERT_EQ(draft.surfaces.size(), 2u);
    expect_place(draft.surfaces[0].positions.at(0), 0, 0, 0);
    expect_place(draft.surfaces[1].positions.at(0), 0, 0, 3);
}

TEST(GltfNodes, that_mirror_turn_the_faces_around) {
    const Draft draft = read(nodes("'nodes':[{'mesh':0,'scale':[-1,1,1]}]"));
    const Surface& surface = draft.surfaces.at(0);
    EXPECT_EQ(surface.triangles.at(0), (Triangle{0, 2, 1}));
    expect_place(surface.positions.at(1), -1, 1, 0);
    expect_place(surface.normals.at(1), 0, 0, 1);
}

TEST(GltfNodes, lean_normals_against_their_scale) {
    GltfFile file;
    file.add_floats("VEC3", 3, {0, 0, 0, 1, 1, 0, 0, 0, 1});
    const float half = std::sqrt(0.5f);
    file.add_floats("VEC3", 3, {-half, half, 0, -half, half, 0, -half, half, 0});
    file.rest = "'meshes':[{'primitives':[{'attributes':{'POSITION':0,'NORMAL':1}}]}],"
                "'nodes':[{'mesh':0,'scale':[2,1,1]}]";
    const Draft draft = read(file);
    const Surface& surface = draft.surfaces.at(0);
    expect_place(surface.normals.at(0), -std::sqrt(0.2f), std::sqrt(0.8f), 0);
}

TEST(GltfNodes, of_the_scene_that_is_shown_are_read_and_no_others) {
    const std::string list = "'nodes':[{'mesh':0},{'mesh':0,'translation':[0,0,1]},{'mesh':0,"
                             "'translation':[0,0,2]}]";
    const auto depths = [&](const std::string& scenes) {
        std::string found;
        for (const Surface& surface : read(nodes(list + scenes)).surfaces)
            found += std::to_string(static_cast<int>(surface.positions[0].z));
        return found;
    };
    EXPECT_EQ(depths(""), "012");
    EXPECT_EQ(depths(",'scenes':[{'nodes':[1]},{'nodes':[2,0]}]"), "1");
    EXPECT_EQ(depths(",'scenes':[{'nodes':[1]},{'nodes':[2,0]}],'scene':1"), "20");
    EXPECT_EQ(depths(",'scenes':[{}]"), "");
}

TEST(GltfNodes, that_are_no_trees_are_refused) {
    struct Row {
        const char* nodes;
        const char* reason;
    };
    const Row rows[] = {
        {"'nodes':[{'children':[0]}]",
         "nodes[0]: the node is its own ancestor, or a descendant of one that is"},
        {"'nodes':[{},{'children':[2]},{'children':[1]}]",
         "nodes[1]: the node is its own ancestor, or a descendant of one that is"},
        {"'nodes':[{'children':[2]},{'children':[2]},{}]",
         "nodes[1].children[0]: node 2 has a parent already"},
        {"'nodes':[{'children':[1,1]},{}]", "nodes[0].children[1]: node 1 has a parent already"},
        {"'nodes':[{'children':[5]}]", "nodes[0].children[0]: 5 is beyond the 1 nodes"},
        {"'nodes':[{'children':[0.5]}]",
         "nodes[0].children[0]: 0.5 is no whole number from 0 to 9007199254740991"},
        {"'nodes':[{'children':[1]},{}],'scenes':[{'nodes':[1]}]",
         "scenes[0].nodes[0]: node 1 is no root"},
        {"'nodes':[{}],'scenes':[{'nodes':[0,0]}]",
         "scenes[0].nodes[1]: node 0 is in the scene already"},
        {"'nodes':[{}],'scenes':[{}],'scene':1", "scene: 1 is beyond the 1 scenes"},
        {"'nodes':[{'mesh':1}]", "nodes[0].mesh: 1 is beyond the 1 meshes"},
        {"'nodes':[{'mesh':0,'skin':0}]", "nodes[0].skin: 0 is beyond the 0 skins"},
        {"'nodes':[{'mesh':0,'skin':0}],'skins':[{'joints':[3]}]",
         "skins[0].joints[0]: 3 is beyond the 1 nodes"},
        {"'nodes':[{'mesh':0,'skin':0}],'skins':[{'joints':[0],'inverseBindMatrices':0}]",
         "skins[0].inverseBindMatrices: accessor 0 isn't 1 matrices"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(refusal(nodes(row.nodes)), row.reason) << row.nodes;
}

TEST(GltfNodes, that_move_skins_are_its_joints) {
    const auto skinned = [](std::initializer_list<std::uint8_t> joints) {
        GltfFile file = triangle();
        file.add_view(bytes_of(joints));
        file.add_accessor("VEC4", 5121, 3, ",'bufferView':2");
        file.add_floats("VEC4", 4, {1, 0, 0, 0, 0.5f, 0.5f, 0, 0, 0, 0, 0, 0});
        file.add_floats("MAT4", 16, {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0,  0, 0, 1,
                                     1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, -1, 0, 0, 1});
        file.rest = "'meshes':[{'primitives':[{'attributes':{'POSITION':0,'JOINTS_0':2,"
                    "'WEIGHTS_0':3}}]}],'skins':[{'joints':[1,2],'inverseBindMatrices':4}],"
                    "'nodes':[{'mesh':0,'skin':0,'translation':[0,0,9]},{'translation':[0,2,0]},"
                    "{'translation':[1,4,0]}]";
        return file;
    };
    const Draft draft = read(skinned({0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0}));
    const Surface& surface = draft.surfaces.at(0);
    expect_place(surface.positions.at(0), 0, 2, 0);
    expect_place(surface.positions.at(1), 1, 4, 0); // between both joints
    expect_place(surface.positions.at(2), 0, 1, 9); // that no joint moves stays with the node
    EXPECT_EQ(refusal(skinned({2, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0})),
              "meshes[0].primitives[0].attributes.JOINTS_0: joint 2.000000 is beyond the 2 joints "
              "of the skin");
}

TEST(GltfNodes, that_move_skins_turn_their_normals) {
    GltfFile file = triangle();
    file.add_view({0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0});
    file.add_accessor("VEC4", 5121, 3, ",'bufferView':2");
    file.add_floats("VEC4", 4, {1, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0});
    file.add_floats("VEC3", 3, {1, 0, 0, 1, 0, 0, 1, 0, 0});
    // The first joint turns by a quarter about z, the second one about y.
    file.rest = "'meshes':[{'primitives':[{'attributes':{'POSITION':0,'NORMAL':4,'JOINTS_0':2,"
                "'WEIGHTS_0':3}}]}],'skins':[{'joints':[1,2]}],'nodes':[{'mesh':0,'skin':0},"
                "{'rotation':[0,0,0.70710678,0.70710678]},{'rotation':[0,0.70710678,0,"
                "0.70710678]}]";
    const Draft draft = read(file);
    const std::vector<vec3>& normals = draft.surfaces.at(0).normals;
    ASSERT_EQ(normals.size(), 3u);
    expect_place(normals[0], 0, 1, 0);
    expect_place(normals[1], 0, 0, -1);
    expect_place(normals[2], 1, 0, 0); // that no joint moves
}

TEST(GltfChains, are_found_in_a_text_that_is_not_parsed_yet) {
    const auto refusal_of_text = [](const std::string& text) -> std::string {
        try {
            check_chains(json(text));
        } catch (const Refusal& refused) {
            return refused.what();
        }
        return "";
    };
    const std::string own = "the node is its own ancestor, or a descendant of one that is";
    EXPECT_EQ(refusal_of_text("{'nodes':[{'children':[0]}]}"), "nodes[0]: " + own);
    EXPECT_EQ(
        refusal_of_text("{'a\\'b':'\\\\','nodes':[{'c':'\\'}]'},{'children': [ 2 , 1 ]},{}]}"),
        "nodes[1]: " + own)
        << "texts may have quotes";
    // What is broken is left to those who parse it.
    for (const char* const broken :
         {"", "[", "{", "{'nodes", "{'nodes'", "{'nodes':", "{'nodes':[", "{'nodes':[{",
          "{'nodes':[{'children':[0", "{'nodes':[{'children':[0.5,0]}]}",
          "{'nodes':[{'children':[-1,0]}]}", "{'nodes':[{'children':[99999999999,0]}]}",
          "{'nodes':[{'children':[99]},{'children':[1]}]}"})
        EXPECT_EQ(refusal_of_text(broken), "") << broken;
}

// ------------------------------------------------------------------------------ looks

/// The triangle with a material, pictures and so on.
GltfFile looks(const std::string& told) {
    GltfFile file = triangle();
    file.add_floats("VEC2", 2, {0, 0.5f, 0.5f, 0, 0, 0});
    file.rest = "'meshes':[{'primitives':[{'attributes':{'POSITION':0,'TEXCOORD_0':1,"
                "'TEXCOORD_1':2},'material':0}]}],'nodes':[{'mesh':0}]," +
                told;
    return file;
}

TEST(GltfMaterial, keeps_its_physical_values_whole) {
    const Draft draft = read(looks(
        "'materials':[{'name':'paint','pbrMetallicRoughness':{'baseColorFactor':[1,0.5,0,0.25],"
        "'metallicFactor':0.1,'roughnessFactor':0.2},'emissiveFactor':[0,0,1],'alphaMode':'BLEND',"
        "'doubleSided':true,'extensions':{'KHR_materials_unlit':{},"
        "'KHR_materials_emissive_strength':{'emissiveStrength':4},'KHR_materials_ior':{'ior':1.3},"
        "'KHR_materials_specular':{'specularFactor':0.3,'specularColorFactor':[1,2,3]},"
        "'KHR_materials_clearcoat':{'clearcoatFactor':0.6,'clearcoatRoughnessFactor':0.7}}}]"));
    const SurfaceMaterial& material = draft.materials.at(0);
    EXPECT_EQ(material.name, "paint");
    EXPECT_EQ(material.opacity, 0.25f);
    EXPECT_EQ(material.diffuse.x, 1.0f);
    EXPECT_NEAR(material.diffuse.y, 0.7354f, 1e-3f) << "as screens show a half";
    const PhysicalMaterial& physical = material.physical.value();
    EXPECT_EQ(physical.base_color.y, 0.5f);
    EXPECT_EQ(physical.base_color.w, 0.25f);
    EXPECT_EQ(physical.metallic, 0.1f);
    EXPECT_EQ(physical.roughness, 0.2f);
    EXPECT_EQ(physical.emissive.z, 1.0f);
    EXPECT_EQ(physical.emissive_strength, 4.0f);
    EXPECT_EQ(physical.alpha, PhysicalMaterial::Alpha::blend);
    EXPECT_TRUE(physical.is_double_sided);
    EXPECT_TRUE(physical.is_unlit);
    EXPECT_EQ(physical.ior, 1.3f);
    EXPECT_EQ(physical.specular, 0.3f);
    EXPECT_EQ(physical.specular_color.z, 3.0f);
    EXPECT_EQ(physical.clearcoat, 0.6f);
    EXPECT_EQ(physical.clearcoat_roughness, 0.7f);
    ASSERT_EQ(draft.surfaces.at(0).triangle_materials.size(), 1u);
    EXPECT_EQ(draft.surfaces[0].triangle_materials[0], 0u);
}

TEST(GltfMaterial, that_says_nothing_is_white_metal) {
    const Draft draft = read(looks("'materials':[{}]"));
    const SurfaceMaterial& material = draft.materials.at(0);
    EXPECT_EQ(material.name, "material 0");
    EXPECT_EQ(material.diffuse.x, 1.0f);
    EXPECT_EQ(material.specular.x, 0.0f) << "a rough one has no highlight";
    EXPECT_EQ(material.opacity, 1.0f);
    EXPECT_EQ(material.physical->metallic, 1.0f);
    EXPECT_TRUE(material.textures.empty());
}

/// The look of one diffuse and one specular colour that a material is given.
SurfaceMaterial look_of(const std::string& told) {
    return read(looks("'materials':[{" + told + "}]")).materials.at(0);
}

constexpr float half_as_shown = 0.73536f;    ///< of a linear 0.5
constexpr float quarter_as_shown = 0.53710f; ///< of a linear 0.25

TEST(GltfMaterial, mirrors_its_colour_as_a_metal_and_a_few_percent_as_an_insulator) {
    const SurfaceMaterial metal =
        look_of("'pbrMetallicRoughness':{'baseColorFactor':[1,0.5,0,1],'roughnessFactor':0.5}");
    EXPECT_NEAR(metal.specular.x, half_as_shown, 1e-4f);
    EXPECT_NEAR(metal.specular.y, quarter_as_shown, 1e-4f);
    EXPECT_EQ(metal.specular.z, 0.0f);
    EXPECT_NEAR(metal.shininess, 30.0f, 1e-3f);
    const SurfaceMaterial glass =
        look_of("'pbrMetallicRoughness':{'metallicFactor':0,'roughnessFactor':0}");
    EXPECT_NEAR(glass.specular.x, 0.22091f, 1e-4f) << "4 % of the light";
    EXPECT_EQ(glass.shininess, 128.0f);
    const SurfaceMaterial chalk = look_of("'pbrMetallicRoughness':{'metallicFactor':0}");
    EXPECT_EQ(chalk.specular.x, 0.0f);
    EXPECT_EQ(chalk.shininess, 1.0f);
}

TEST(GltfMaterial, shines_by_itself_in_its_ambient_colour) {
    const std::string paint = "'pbrMetallicRoughness':{'baseColorFactor':[1,0.5,0,1]}";
    const SurfaceMaterial lamp =
        look_of(paint + ",'emissiveFactor':[0,0,0.5],'extensions':"
                        "{'KHR_materials_emissive_strength':{'emissiveStrength':0.5}}");
    EXPECT_NEAR(lamp.ambient.x, 0.2f, 1e-4f);
    EXPECT_NEAR(lamp.ambient.y, 0.2f * half_as_shown, 1e-4f);
    EXPECT_NEAR(lamp.ambient.z, quarter_as_shown, 1e-4f);
    const SurfaceMaterial poster = look_of(paint + ",'extensions':{'KHR_materials_unlit':{}}");
    EXPECT_EQ(poster.ambient.x, 1.0f);
    EXPECT_NEAR(poster.ambient.y, half_as_shown, 1e-4f);
    EXPECT_EQ(poster.specular.x, 0.0f);
}

TEST(GltfMaterial, has_numbers_beyond_their_range_end_there) {
    const Draft draft = read(looks("'materials':[{'pbrMetallicRoughness':{'baseColorFactor':[9,-1,"
                                   "0,1e300],'metallicFactor':-3,'roughnessFactor':1e308}}]"));
    const PhysicalMaterial& physical = draft.materials.at(0).physical.value();
    EXPECT_EQ(physical.base_color.x, 1.0f);
    EXPECT_EQ(physical.base_color.y, 0.0f);
    EXPECT_EQ(physical.base_color.w, 1.0f);
    EXPECT_EQ(physical.metallic, 0.0f);
    EXPECT_EQ(physical.roughness, 1.0f);
}

const char* const base_of_0 = "'materials':[{'pbrMetallicRoughness':{'baseColorTexture':{'index':0";

TEST(GltfMaterial, carries_embedded_pictures_and_names_files) {
    const Draft embedded = read(looks(std::string(base_of_0) +
                                      "}}}],'textures':[{'source':0}],'images':[{'uri':'data:image/"
                                      "png;base64,QUJD','name':'wood'}]"));
    ASSERT_EQ(embedded.pictures.size(), 1u);
    EXPECT_EQ(embedded.pictures[0].name, "picture 0: wood");
    EXPECT_EQ(embedded.pictures[0].bytes, (std::vector<unsigned char>{'A', 'B', 'C'}));
    EXPECT_EQ(embedded.materials.at(0).textures, std::vector<std::string>{"picture 0: wood"});
    EXPECT_EQ(embedded.materials[0].physical->base_color_texture.image, "picture 0: wood");

    const TempDir folder;
    const GltfFile file = looks(std::string(base_of_0) +
                                "}}}],'textures':[{'source':0}],'images':[{'uri':'a%20b.png'}]");
    const std::vector<unsigned char> bytes = file.as_binary();
    const Draft named =
        read_gltf(InputFile(folder.write("m.glb", std::string(bytes.begin(), bytes.end()))));
    EXPECT_TRUE(named.pictures.empty());
    EXPECT_EQ(named.materials.at(0).textures, std::vector<std::string>{"a b.png"});
}

TEST(GltfMaterial, names_its_base_colour_first_whatever_else_it_has) {
    const std::string images =
        "'textures':[{'source':0},{'source':1}],'images':[{'uri':'wood.png'},"
        "{'uri':'data:image/png;base64,QUJD'}]";
    const TempDir folder;
    folder.write("wood.png", "WOOD");
    const auto read_file = [&](const std::string& material) {
        const std::vector<unsigned char> bytes = looks(material + images).as_binary();
        return read_gltf(InputFile(folder.write("m.glb", std::string(bytes.begin(), bytes.end()))));
    };
    // A file would come behind the picture: so it is carried, too.
    const Draft both =
        read_file(std::string(base_of_0) + "}},'normalTexture':{'index':1,'scale':0.5}}],");
    EXPECT_EQ(both.materials.at(0).textures, (std::vector<std::string>{"wood.png", "picture 1"}));
    ASSERT_EQ(both.pictures.size(), 2u);
    EXPECT_EQ(both.pictures[1].name, "wood.png");
    EXPECT_EQ(both.pictures[1].bytes.size(), 4u);
    EXPECT_EQ(both.materials[0].physical->normal_texture.strength, 0.5f);
    EXPECT_EQ(both.files, std::vector<std::string>{folder.file("wood.png")});
    // Without a base colour, a white picture keeps others out of its place.
    const Draft bumps = read_file("'materials':[{'normalTexture':{'index':1}}],");
    EXPECT_EQ(bumps.materials.at(0).textures, (std::vector<std::string>{"white", "picture 1"}));
    EXPECT_EQ(bumps.pictures.at(1).name, "white");
    EXPECT_TRUE(bumps.pictures[1].bytes.empty());
}

TEST(GltfMaterial, whose_pictures_are_called_white_has_them_beside_a_white_one) {
    const TempDir folder;
    folder.write("white", "BUMPS");
    const auto read_file = [&](const std::string& materials) {
        const std::vector<unsigned char> bytes =
            looks("'materials':[" + materials +
                  "],'textures':[{'source':0},{'source':1}],'images':[{'uri':'whit%65'},"
                  "{'uri':'data:image/png;base64,QUJD'}]")
                .as_binary();
        return read_gltf(InputFile(folder.write("m.glb", std::string(bytes.begin(), bytes.end()))));
    };
    const Draft alone = read_file("{'normalTexture':{'index':0}}");
    EXPECT_EQ(alone.materials.at(0).textures, (std::vector<std::string>{"white ", "white"}));
    ASSERT_EQ(alone.pictures.size(), 2u);
    EXPECT_EQ(alone.pictures[0].name, "white");
    EXPECT_EQ(alone.pictures[0].bytes.size(), 5u);
    EXPECT_EQ(alone.pictures[1].name, "white ");
    EXPECT_TRUE(alone.pictures[1].bytes.empty());
    // Whether the file is named before or behind.
    const std::string file = "{'pbrMetallicRoughness':{'baseColorTexture':{'index':0}}}";
    const std::string bumps = "{'normalTexture':{'index':1}}";
    for (const std::string& materials : {file + "," + bumps, bumps + "," + file}) {
        const Draft draft = read_file(materials);
        ASSERT_EQ(draft.pictures.size(), 2u);
        EXPECT_EQ(draft.pictures[0].name, "picture 1");
        EXPECT_EQ(draft.pictures[1].name, "white ") << "so that the file keeps its name";
    }
}

TEST(GltfMaterial, has_its_own_picture_beside_a_file_that_is_called_as_it) {
    const TempDir folder;
    folder.write("picture 1", "FILE");
    const std::string looking_at =
        "'materials':[{'pbrMetallicRoughness':{'baseColorTexture':{'index':0}}},"
        "{'pbrMetallicRoughness':{'baseColorTexture':{'index':1}}}],";
    const std::vector<unsigned char> bytes =
        looks(looking_at + "'textures':[{'source':1},{'source':0}],'images':["
                           "{'uri':'picture%201'},{'uri':'data:image/png;base64,QUJD'}]")
            .as_binary();
    const Draft draft =
        read_gltf(InputFile(folder.write("m.glb", std::string(bytes.begin(), bytes.end()))));
    ASSERT_EQ(draft.pictures.size(), 1u);
    EXPECT_EQ(draft.pictures[0].name, "picture 1 ");
    EXPECT_EQ(draft.materials.at(0).textures, std::vector<std::string>{"picture 1 "});
    EXPECT_EQ(draft.materials.at(1).textures, std::vector<std::string>{"picture 1"});
}

TEST(GltfMaterial, has_a_picture_white_that_cant_be_read_behind_another) {
    const TempDir folder;
    const std::vector<unsigned char> bytes =
        looks(std::string(base_of_0) +
              "}},'normalTexture':{'index':1}}],'textures':[{'source':0},{'source':1}],'images':["
              "{'uri':'wood.png'},{'uri':'data:image/png;base64,QUJD'}]")
            .as_binary();
    const Draft draft =
        read_gltf(InputFile(folder.write("m.glb", std::string(bytes.begin(), bytes.end()))));
    EXPECT_EQ(draft.notes,
              std::vector<std::string>{"images[0].uri: \"wood.png\": it can't be opened: No such "
                                       "file or directory; it is white"});
    EXPECT_EQ(draft.materials.at(0).textures, (std::vector<std::string>{"wood.png", "picture 1"}));
    ASSERT_EQ(draft.pictures.size(), 2u);
    EXPECT_EQ(draft.pictures[1].name, "wood.png");
    EXPECT_TRUE(draft.pictures[1].bytes.empty());
}

TEST(GltfMaterial, has_each_picture_in_its_place) {
    std::string lists = ",'textures':[{'source':0}";
    for (int i = 1; i < 10; ++i)
        lists += ",{'source':" + std::to_string(i) + "}";
    lists += "],'images':[{'uri':'data:image/png;base64,QUJD'}";
    for (int i = 1; i < 10; ++i)
        lists += ",{'uri':'data:image/png;base64,QUJD'}";
    const Draft draft = read(
        looks("'materials':[{'pbrMetallicRoughness':{'baseColorTexture':{'index':0},"
              "'metallicRoughnessTexture':{'index':1}},'normalTexture':{'index':2},"
              "'occlusionTexture':{'index':3},'emissiveTexture':{'index':4},'extensions':{"
              "'KHR_materials_specular':{'specularTexture':{'index':5},'specularColorTexture':"
              "{'index':6}},'KHR_materials_clearcoat':{'clearcoatTexture':{'index':7},"
              "'clearcoatRoughnessTexture':{'index':8},'clearcoatNormalTexture':{'index':9}}}}]" +
              lists + "]"));
    const PhysicalMaterial& physical = draft.materials.at(0).physical.value();
    EXPECT_EQ(physical.base_color_texture.image, "picture 0");
    EXPECT_EQ(physical.metallic_roughness_texture.image, "picture 1");
    EXPECT_EQ(physical.normal_texture.image, "picture 2");
    EXPECT_EQ(physical.occlusion_texture.image, "picture 3");
    EXPECT_EQ(physical.emissive_texture.image, "picture 4");
    EXPECT_EQ(physical.specular_texture.image, "picture 5");
    EXPECT_EQ(physical.specular_color_texture.image, "picture 6");
    EXPECT_EQ(physical.clearcoat_texture.image, "picture 7");
    EXPECT_EQ(physical.clearcoat_roughness_texture.image, "picture 8");
    EXPECT_EQ(physical.clearcoat_normal_texture.image, "picture 9");
}

TEST(GltfMaterial, moves_coordinates_as_its_pictures_lie) {
    const std::string rest = "}}}],'textures':[{'source':0}],'images':[{'uri':'data:image/png;"
                             "base64,QUJD'}]";
    const auto uv_of = [&](const std::string& info, std::size_t vertex) {
        const Draft draft = read(looks(base_of_0 + info + rest));
        EXPECT_EQ(draft.materials.at(0).physical->base_color_texture.layer, 0u);
        EXPECT_EQ(draft.materials[0].physical->base_color_texture.offset_u, 0.0f);
        EXPECT_EQ(draft.materials[0].physical->base_color_texture.scale_u, 1.0f);
        return draft.surfaces.at(0).uvs[0].at(vertex);
    };
    // Of the file's (1, 0), which is (1, 1) here.
    EXPECT_EQ(uv_of("", 1).x, 1.0f);
    EXPECT_EQ(uv_of("", 1).y, 1.0f);
    EXPECT_EQ(uv_of(",'texCoord':1", 1).x, 0.5f) << "the second coordinates become the first";
    const std::string transform = ",'extensions':{'KHR_texture_transform':{";
    const vec2 moved = uv_of(transform + "'offset':[0.25,0.5],'scale':[2,3]}}", 0);
    EXPECT_NEAR(moved.x, 0.25f, 1e-6f); // the file's (0, 1) comes to (0.25, 3.5)
    EXPECT_NEAR(moved.y, 1.0f - 3.5f, 1e-6f);
    const vec2 upper = uv_of(transform + "'offset':[0.25,0.5],'scale':[2,3]}}", 1);
    EXPECT_NEAR(upper.x, 2.25f, 1e-6f); // and its (1, 0) to (2.25, 0.5)
    EXPECT_NEAR(upper.y, 0.5f, 1e-6f);
    // A quarter turn takes the file's (1, 0) up to (0, -1).
    const vec2 turned = uv_of(transform + "'rotation':1.57079632679}}", 1);
    EXPECT_NEAR(turned.x, 0.0f, 1e-6f);
    EXPECT_NEAR(turned.y, 2.0f, 1e-6f);
}

TEST(GltfMaterial, whose_pictures_cant_be_had_is_noted_or_refused) {
    const auto note = [](const char* rest) {
        const Draft draft = read(looks(base_of_0 + std::string(rest)));
        EXPECT_TRUE(draft.materials.at(0).textures.empty()) << rest;
        return draft.notes.empty() ? "" : draft.notes[0];
    };
    EXPECT_EQ(note("}}}],'textures':[{}]"),
              "textures[0]: a texture without a picture that can be read was left out");
    EXPECT_EQ(note("}}}],'textures':[{'source':0}],'images':[{'uri':'../a.png'}]"),
              "images[0].uri: the picture \"../a.png\" was left out: it lies outside the model's "
              "folder, where nothing is read");
    EXPECT_EQ(note(",'texCoord':2}}}],'textures':[{'source':0}],'images':[{'uri':'a.png'}]"),
              "materials[0].pbrMetallicRoughness.baseColorTexture: pictures by texture coordinates "
              "beyond the second were left out");
    EXPECT_EQ(note("}}}],'textures':[{'source':0}],'images':[{'uri':'data:image/png;base64,'}]"),
              "images[0]: a picture without bytes was left out");
    EXPECT_EQ(note("}}}],'textures':[{'source':0}],'images':[{'uri':'a%2.png'}]"),
              "images[0].uri: the picture was left out: a percent sign without two digits");
    EXPECT_EQ(refusal(looks(base_of_0 + std::string("}}}],'textures':[{'source':0}],'images':[{"
                                                    "'uri':'a.png','bufferView':0}]"))),
              "images[0]: it has a URI and a view");
    EXPECT_EQ(
        refusal(looks(base_of_0 + std::string("}}}]"))),
        "materials[0].pbrMetallicRoughness.baseColorTexture.index: 0 is beyond the 0 textures");
    EXPECT_EQ(refusal(looks(base_of_0 + std::string("}}}],'textures':[{'source':3}]"))),
              "textures[0].source: 3 is beyond the 0 images");
    EXPECT_EQ(
        refusal(looks(base_of_0 + std::string("}}}],'textures':[{'source':0}],'images':[{}]"))),
        "images[0]: \"bufferView\" is missing");
    EXPECT_EQ(read(looks("'materials':[{'alphaMode':'HALF'}]")).notes.at(0),
              "materials[0].alphaMode: a mode of alpha that isn't known was left out");
}

TEST(GltfMaterial, is_there_or_not_by_its_mask) {
    const Draft draft = read(looks("'materials':[{'alphaMode':'MASK','alphaCutoff':0.25}]"));
    EXPECT_TRUE(draft.notes.empty());
    EXPECT_EQ(draft.materials.at(0).physical->alpha, PhysicalMaterial::Alpha::mask);
    EXPECT_EQ(draft.materials[0].physical->alpha_cutoff, 0.25f);
}

} // namespace

} // namespace orvex_test
