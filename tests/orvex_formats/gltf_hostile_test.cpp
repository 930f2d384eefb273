// Files of glTF that somebody made to do harm: they are refused before anything large happens.

#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>
#include <unistd.h>

#include "orvex_formats/private/normals.h"
#include "tests/orvex_formats/check_draft.h"
#include "tests/orvex_formats/costs.h"
#include "tests/orvex_formats/gltf_file.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

namespace {

using namespace orvex;
using namespace orvex::formats;

std::string hostile(const std::vector<unsigned char>& bytes) {
    return cheap_refusal_of(read_gltf, bytes);
}

std::string hostile(const std::string& text) {
    return hostile(Bytes(json("{'asset':{'version':'2.0'}," + text + "}")).bytes);
}

const std::string too_large = "the model would become far larger than its file";

TEST(HostileGltf, of_a_few_letters_makes_no_large_model) {
    const std::string zeros =
        "'accessors':[{'type':'VEC3','componentType':5126,'count':4294967295}],"
        "'meshes':[{'primitives':[{'attributes':{'POSITION':0}}]}],"
        "'nodes':[{'mesh':0}]";
    EXPECT_EQ(hostile(zeros), "nodes[0]: " + too_large);
    // A mesh in many places.
    std::string nodes = "{'mesh':0}";
    for (int i = 0; i < 9999; ++i)
        nodes += ",{'mesh':0}";
    EXPECT_EQ(hostile("'accessors':[{'type':'VEC3','componentType':5126,'count':99999}],"
                      "'meshes':[{'primitives':[{'attributes':{'POSITION':0}}]}],'nodes':[" +
                      nodes + "]"),
              "nodes[22]: " + too_large);
    // Many empty materials.
    std::string materials = "{}";
    for (int i = 0; i < 99999; ++i)
        materials += ",{}";
    EXPECT_EQ(hostile("'materials':[" + materials + "]"), "materials: " + too_large);
}

TEST(HostileGltf, lies_about_where_its_numbers_are) {
    const std::string mesh = "'meshes':[{'primitives':[{'attributes':{'POSITION':0}}]}],"
                             "'nodes':[{'mesh':0}],'buffers':[{'byteLength':12,'uri':"
                             "'data:application/octet-stream;base64,AAAAAAAAAAAAAAAA'}],";
    const std::string view = "'bufferViews':[{'buffer':0,'byteLength':12";
    const std::string accessor = "'accessors':[{'type':'VEC3','componentType':5126,";
    const struct {
        std::string text;
        const char* place;
    } lies[] = {
        // More numbers than any buffer has, with strides of 0, too small and too large.
        {view + "}]," + accessor + "'bufferView':0,'count':4294967295}]", "accessors[0]"},
        {view + ",'byteStride':0}]," + accessor + "'bufferView':0,'count':4294967295}]", "[0]"},
        {view + ",'byteStride':4}]," + accessor + "'bufferView':0,'count':3}]", "[0]"},
        {view + ",'byteStride':252}]," + accessor + "'bufferView':0,'count':2}]", "accessors[0]"},
        {view + "}]," + accessor + "'bufferView':0,'count':1,'byteOffset':4294967292}]", "[0]"},
        {view + "}]," + accessor + "'bufferView':0,'count':18446744073709551615}]", "[0]"},
        // Views that end beyond their buffer, or begin there.
        {"'bufferViews':[{'buffer':0,'byteLength':13}]," + accessor + "'bufferView':0,'count':1}]",
         "bufferViews[0]"},
        {"'bufferViews':[{'buffer':0,'byteOffset':18446744073709551615,'byteLength':12}]," +
             accessor + "'bufferView':0,'count':1}]",
         "bufferViews[0]"},
        {"'bufferViews':[{'buffer':1,'byteLength':12}]," + accessor + "'bufferView':0,'count':1}]",
         "bufferViews[0]"},
        // Sparse places beyond the accessor.
        {view + "}]," + accessor +
             "'count':1,'sparse':{'count':1,'indices':{'bufferView':0,'componentType':5125},"
             "'values':{'bufferView':7}}}]",
         "accessors[0]"},
        {"'bufferViews':[{'buffer':0,'byteLength':12},{'buffer':1,'byteLength':4}]," + accessor +
             "'count':1,'sparse':{'count':1,'indices':{'bufferView':1,'componentType':5125},"
             "'values':{'bufferView':0}}}]",
         "bufferViews[1]"},
        {view + "}]," + accessor +
             "'count':1,'sparse':{'count':4294967295,'indices':{'bufferView':0,"
             "'componentType':5125},'values':{'bufferView':0}}}]",
         "accessors[0]"},
    };
    for (const auto& lie : lies) {
        const std::string reason = hostile(mesh + lie.text);
        EXPECT_NE(reason.find(lie.place), reason.npos) << lie.text << ": " << reason;
    }
}

TEST(HostileGltf, that_has_few_things_in_many_places_is_a_model) {
    GltfFile file = triangle();
    std::string nodes = "{'mesh':0}";
    for (int i = 1; i < 40000; ++i)
        nodes += ",{'mesh':0}";
    file.rest = "'meshes':[{'primitives':[{'attributes':{'POSITION':0}}]}],'nodes':[" + nodes + "]";
    const std::vector<unsigned char> bytes = file.as_binary();
    const HeapPeak peak;
    EXPECT_EQ(read_gltf_bytes(bytes).surfaces.size(), 40000u);
    EXPECT_LE(peak.bytes(), most_of_draft / 2) << "the other half is the engine's";
}

TEST(HostileGltf, that_is_deep_or_wide_takes_no_stack_and_no_squares) {
    std::string chain = "{'children':[1]}";
    for (int i = 2; i < 30000; ++i)
        chain += ",{'children':[" + std::to_string(i) + "]}";
    EXPECT_EQ(hostile("'nodes':[" + chain + ",{}]"),
              "nodes[10001]: more than 10000 nodes lie above the node");
    std::string ring = chain + ",{'children':[0]}";
    EXPECT_EQ(hostile("'nodes':[" + ring + "]"),
              "nodes[0]: the node is its own ancestor, or a descendant of one that is");
    // Each primitive asks for an attribute of an object that has many.
    std::string many;
    for (int i = 0; i < 20000; ++i)
        many += ",'_" + std::to_string(i) + "':0";
    std::string nodes = "{'mesh':0}";
    for (int i = 0; i < 20; ++i)
        nodes += ",{'mesh':0}";
    EXPECT_EQ(hostile("'accessors':[{'type':'VEC3','componentType':5126,'count':3}],"
                      "'meshes':[{'primitives':[{'attributes':{'POSITION':0" +
                      many + "}}]}],'nodes':[" + nodes + "]"),
              "");
}

TEST(HostileGltf, is_a_million_nodes_deep) {
    std::string chain;
    for (int i = 1; i < 1000000; ++i)
        chain += "{'children':[" + std::to_string(i) + "]},";
    EXPECT_EQ(hostile("'nodes':[" + chain + "{}]"),
              "nodes[10001]: more than 10000 nodes lie above the node");
    EXPECT_EQ(hostile("'nodes':[" + chain + "{'children':[0]}]"),
              "nodes[0]: the node is its own ancestor, or a descendant of one that is");
}

TEST(HostileGltf, that_is_long_and_flat_is_read) {
    std::string nodes = "{'name':'a\\\\','extras':{'children':[\"]}\\\"\"]},'children':[ 1 , 2 ]}";
    for (int i = 0; i < 400000; ++i)
        nodes += ",{}";
    ASSERT_GT(nodes.size(), 1u << 20) << "longer texts are looked through before";
    EXPECT_EQ(gltf_refusal("{'asset':{'version':'2.0'},'extras':{'nodes':[{'children':[0]}]},"
                           "'nodes':[" +
                           nodes + "],'scenes':[{'nodes':[0]}]}"),
              "");
}

TEST(HostileGltf, of_less_than_a_megabyte_keeps_to_its_bounds) {
    const auto repeated = [](const std::string& text) {
        std::string all;
        while (all.size() < 1000000 - text.size())
            all += text + ",";
        return all + text;
    };
    const std::string values[] = {"0", "[]", "{}", "''", "[[0]]", "{'a':0}", "[0,0,0,0,0,0]"};
    for (const std::string& value : values)
        EXPECT_EQ(hostile("'extras':[" + repeated(value) + "]"), "") << value;
    const HeapPeak peak;
    EXPECT_EQ(gltf_refusal("{'asset':{'version':'2.0'},'nodes':[" + repeated("{}") + "]}"), "");
    EXPECT_LE(peak.bytes(), most_of_draft);
    EXPECT_EQ(hostile("'scenes':[{'nodes':[" + repeated("0") + "]}],'nodes':[{}]"),
              "scenes[0].nodes[1]: node 0 is in the scene already");
    EXPECT_EQ(hostile("'bufferViews':[" + repeated("0") + "]"),
              "bufferViews[0]: \"buffer\" is missing");
}

TEST(HostileGltf, of_pictures_that_take_every_name_of_white_costs_no_squares) {
    std::string images = "{'uri':'data:image/png;base64,QUJD'}";
    for (std::size_t i = 0; i < 1200; ++i)
        images += ",{'uri':'white" + std::string(i, ' ') + "'}";
    GltfFile file = triangle();
    file.rest.insert(file.rest.find("'attributes'"), "'material':0,");
    file.rest += ",'materials':[{'normalTexture':{'index':0}}],'textures':[{'source':0}],"
                 "'images':[" +
                 images + "]";
    const std::vector<unsigned char> bytes = file.as_text();
    const double before = work_of_thread();
    const Draft draft = read_gltf_bytes(bytes);
    EXPECT_LT(work_of_thread() - before, 0.1 * slowness);
    EXPECT_EQ(draft.materials.at(0).textures.at(0), "white" + std::string(1200, ' '));
}

TEST(HostileGltf, of_gigabytes_of_letters_is_refused_unread) {
    const TempDir folder;
    const std::string path = folder.write("huge.gltf", "{\"asset\":{\"version\":\"2.0\"},\"a\":\"");
    ASSERT_EQ(truncate(path.c_str(), (1l << 30) + 1), 0);
    const double before = work_of_thread();
    const HeapPeak peak;
    EXPECT_EQ(refusal_of(read_gltf, InputFile(path)),
              "byte 0: 1073741825 bytes of JSON are more than is read");
    EXPECT_LT(work_of_thread() - before, 0.1);
    EXPECT_LT(peak.bytes(), std::size_t{1} << 20);
}

TEST(HostileGltf, of_numbers_that_are_none_is_a_model_all_the_same) {
    const float nan = std::nanf(""), inf = std::numeric_limits<float>::infinity(), tiny = 1e-42f;
    GltfFile file;
    file.add_floats("VEC3", 3, {nan, inf, -inf, tiny, 3e38f, -3e38f, nan, nan, nan});
    file.add_floats("VEC2", 2, {nan, inf, tiny, -inf, nan, nan});
    file.add_floats("VEC4", 4, {nan, inf, -inf, nan, tiny, tiny, tiny, tiny, 9, 9, 9, 9});
    file.rest = "'meshes':[{'primitives':[{'attributes':{'POSITION':0,'NORMAL':0,'TEXCOORD_0':1,"
                "'COLOR_0':2}},{'attributes':{'POSITION':0}}]}],"
                "'nodes':[{'mesh':0,'rotation':[0,0,0,0],'scale':[1e300,0,-1e300]}]";
    Draft draft = read_gltf_bytes(file.as_binary());
    ASSERT_EQ(draft.surfaces.size(), 2u);
    for (Surface& surface : draft.surfaces) {
        add_normals(surface);
        for (const vec3& normal : surface.normals)
            EXPECT_TRUE(std::isfinite(normal.x) && std::isfinite(normal.y));
    }
    EXPECT_TRUE(holds_together(draft));
}

TEST(HostileGltf, with_odd_texts_is_read_as_far_as_they_matter) {
    GltfFile file = triangle();
    file.rest = "'meshes':[{'name':'a\\u0000b\\n','primitives':[{'attributes':{'POSITION':0}}]}],"
                "'nodes':[{'mesh':0}],'x\\u0000\\ny':[[[{}]]],'extensionsUsed':['\\u0001\\u0000']";
    const Draft draft = read_gltf_bytes(file.as_text());
    EXPECT_EQ(draft.surfaces.at(0).positions.size(), 3u);
    EXPECT_EQ(draft.notes.at(0), "extensionsUsed[0]: \"??\" isn't known, and was left out");
}

// ------------------------------------------------------------------------------ mutants

/// A file with some of everything.
GltfFile rich() {
    GltfFile file = triangle();
    file.add_indices({0, 1, 2, 2, 1, 0});
    file.add_floats("VEC4", 4, {1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0});
    file.add_view({0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
    file.add_accessor("VEC4", 5121, 3, ",'bufferView':4");
    file.add_view(bytes_of<std::uint16_t>({1}));
    file.add_accessor("VEC3", 5126, 3,
                      ",'bufferView':0,'sparse':{'count':1,'indices':{'bufferView':5,"
                      "'componentType':5123},'values':{'bufferView':0}}");
    file.rest =
        "'meshes':[{'weights':[0.5],'primitives':[{'mode':5,'indices':2,'material':0,'attributes':{"
        "'POSITION':0,'TEXCOORD_0':1,'JOINTS_0':4,'WEIGHTS_0':3,'COLOR_0':3},'targets':[{"
        "'POSITION':5}]}]}],'skins':[{'joints':[1]}],'scene':0,'scenes':[{'nodes':[0]}],"
        "'nodes':[{'mesh':0,'skin':0,'children':[1]},{'matrix':[1,0,0,0,0,1,0,0,0,0,1,0,2,0,0,1]}],"
        "'materials':[{'pbrMetallicRoughness':{'baseColorTexture':{'index':0,'extensions':{"
        "'KHR_texture_transform':{'rotation':1}}}},'normalTexture':{'index':0,'texCoord':1}}],"
        "'textures':[{'source':0,'sampler':0}],'samplers':[{'wrapS':33071}],"
        "'images':[{'bufferView':1}],'cameras':[{'type':'perspective','perspective':{'yfov':1,"
        "'znear':1}}],";
    const std::size_t times = file.add_floats("SCALAR", 1, {0, 1});
    const std::size_t places = file.add_floats("VEC3", 3, {0, 0, 0, 1, 0, 0});
    const std::size_t weights = file.add_floats("SCALAR", 1, {0, 0, 0, 1, 0, 0});
    const std::string input = "{'input':" + std::to_string(times) + ",'output':";
    file.rest +=
        "'animations':[{'channels':[{'sampler':0,'target':{'node':1,'path':'translation'}},"
        "{'sampler':1,'target':{'node':0,'path':'weights'}}],'samplers':[" +
        input + std::to_string(places) + "}," + input + std::to_string(weights) +
        ",'interpolation':'CUBICSPLINE'}]}]";
    file.rest.replace(file.rest.find("{'mesh':0,"), 10, "{'mesh':0,'camera':0,");
    return file;
}

TEST(HostileGltf, a_rich_file_is_read) {
    const Draft draft = read_gltf_bytes(rich().as_binary());
    EXPECT_EQ(draft.surfaces.at(0).triangles.size(), 4u);
    EXPECT_EQ(draft.pictures.size(), 1u);
    EXPECT_EQ(draft.cameras.size(), 1u);
    EXPECT_TRUE(holds_together(draft));
    const Draft moved = read_gltf_at(InputFile(rich().as_binary()), 0.5f);
    EXPECT_EQ(draft.surfaces[0].positions.at(0).x, 2.0f);
    EXPECT_EQ(moved.surfaces.at(0).positions.at(0).x, 0.5f) << "instead of the joint's matrix";
}

/// Reads what may be anything. @return whether it was a model
bool survives(const std::vector<unsigned char>& bytes) {
    try {
        EXPECT_TRUE(holds_together(read_gltf_bytes(bytes)));
        EXPECT_TRUE(holds_together(read_gltf_at(InputFile(bytes), 0.5f)));
        return true;
    } catch (const orvex::formats::Refusal& refusal) {
        EXPECT_STRNE(refusal.what(), "");
    }
    return false;
}

TEST(HostileGltf, a_thousand_mutants_are_read_or_refused) {
    const std::vector<unsigned char> files[] = {rich().as_binary(), rich().as_text()};
    const std::string numbers[] = {"-1",  "0",  "1e300", "4294967295", "9007199254740993",
                                   "0.5", "99", "[]",    "\"\"",       "null"};
    std::mt19937 random(11);
    int models = 0;
    for (int i = 0; i < 1500; ++i) {
        std::vector<unsigned char> bytes = files[i % 2];
        const std::size_t place = random() % bytes.size();
        if (i % 3 == 0) {
            bytes[place] = static_cast<unsigned char>(random());
        } else if (i % 3 == 1) {
            bytes.resize(place);
        } else {
            // Another number in the place of one of the JSON's.
            std::string text(bytes.begin(), bytes.end());
            const std::size_t digit = text.find_first_of("0123456789", place / 2);
            const std::size_t end =
                std::min(text.find_first_not_of("0123456789", digit), text.size());
            const std::string& other = numbers[random() % std::size(numbers)];
            if (digit == text.npos || i % 2 == 0)
                continue; // of bytes, whose sizes would be wrong
            text.replace(digit, end - digit, other);
            bytes.assign(text.begin(), text.end());
        }
        models += survives(bytes) ? 1 : 0;
    }
    EXPECT_GT(models, 50) << "nearly all were refused: they test too little";
}

TEST(HostileGltf, mutants_of_the_text_in_a_binary_file_are_read_or_refused) {
    const GltfFile file = rich();
    const std::string text = file.text("");
    const std::string numbers[] = {"-1", "0", "1", "2", "3", "5", "255", "65536", "4294967295"};
    for (std::size_t digit = text.find_first_of("0123456789"); digit < text.size();) {
        const std::size_t end = std::min(text.find_first_not_of("0123456789", digit), text.size());
        for (const std::string& other : numbers)
            survives(glb(text.substr(0, digit) + other + text.substr(end), file.bytes));
        digit = text.find_first_of("0123456789", end);
    }
}

} // namespace

} // namespace orvex_test
