// glTF that moves, and from where it is seen.

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/orvex_formats/check_draft.h"
#include "tests/orvex_formats/gltf_file.h"

namespace orvex_test {

namespace {

using namespace orvex;
using namespace orvex::formats;

Draft read_at(const GltfFile& file, std::optional<float> time) {
    Draft draft = read_gltf_at(InputFile(file.as_binary()), time);
    EXPECT_TRUE(holds_together(draft));
    return draft;
}

/// A tile whose node one channel moves, by the times and values that are added.
GltfFile moved(const std::string& path, const std::string& way, const std::string& type,
               std::size_t width, std::initializer_list<float> times,
               std::initializer_list<float> values) {
    GltfFile file = triangle();
    const std::size_t input = file.add_floats("SCALAR", 1, times);
    const std::size_t output = file.add_floats(type, width, values);
    file.rest += ",'animations':[{'channels':[{'sampler':0,'target':{'node':0,'path':'" + path +
                 "'}}],'samplers':[{'input':" + std::to_string(input) +
                 ",'output':" + std::to_string(output) +
                 (way.empty() ? "" : ",'interpolation':'" + way + "'") + "}]}]";
    return file;
}

/// Where the first corner of the tile is, which lies in the origin of its node.
float x_at(const GltfFile& file, float time) {
    return read_at(file, time).surfaces.at(0).positions.at(0).x;
}

TEST(GltfTime, moves_nodes_from_key_to_key_as_the_file_says) {
    const auto file = [](const std::string& way) {
        return moved("translation", way, "VEC3", 3, {1, 2, 4}, {10, 0, 0, 20, 0, 0, 40, 0, 0});
    };
    for (const std::string& way : {std::string(), std::string("LINEAR")}) {
        EXPECT_FLOAT_EQ(x_at(file(way), 1.5f), 15.0f);
        EXPECT_FLOAT_EQ(x_at(file(way), 3.5f), 35.0f);
    }
    EXPECT_FLOAT_EQ(x_at(file("STEP"), 1.9f), 10.0f);
    EXPECT_FLOAT_EQ(x_at(file("STEP"), 2.0f), 20.0f);
    for (const float before : {-std::numeric_limits<float>::infinity(), -5.0f, 0.9f, 1.0f})
        EXPECT_FLOAT_EQ(x_at(file(""), before), 10.0f) << before;
    for (const float behind : {4.0f, 5.0f, std::numeric_limits<float>::infinity()})
        EXPECT_FLOAT_EQ(x_at(file(""), behind), 40.0f) << behind;
}

TEST(GltfTime, follows_curves_through_keys) {
    // From 0 at the slope 4 to 8 at the slope 0, in two seconds.
    const GltfFile file = moved("translation", "CUBICSPLINE", "VEC3", 3, {1, 3},
                                {9, 9, 9, 0, 0, 0, 4, 0, 0, 0, 0, 0, 8, 0, 0, 9, 9, 9});
    EXPECT_FLOAT_EQ(x_at(file, 0.0f), 0.0f);
    // Half of 8, and an eighth of two seconds at the slope.
    EXPECT_FLOAT_EQ(x_at(file, 2.0f), 5.0f);
    EXPECT_FLOAT_EQ(x_at(file, 3.0f), 8.0f);
}

TEST(GltfTime, turns_the_shorter_way_at_an_even_speed) {
    // A quarter turn about z, whose second key is written the other way round.
    const float half = std::sqrt(0.5f);
    const GltfFile file =
        moved("rotation", "", "VEC4", 4, {0, 3}, {0, 0, 0, 1, 0, 0, -half, -half});
    const vec3 corner = read_at(file, 1.0f).surfaces.at(0).positions.at(1); // (1, 1, 0) at first
    EXPECT_NEAR(std::atan2(corner.y, corner.x), 75.0 * 3.14159265 / 180.0, 1e-5);
}

TEST(GltfTime, scales_nodes_and_their_children) {
    GltfFile file = moved("scale", "", "VEC3", 3, {0, 1}, {1, 1, 1, 3, 3, 3});
    const std::size_t nodes = file.rest.find("'nodes':[{'mesh':0}]");
    file.rest.replace(nodes, 20, "'nodes':[{'children':[1]},{'mesh':0,'translation':[1,0,0]}]");
    EXPECT_FLOAT_EQ(x_at(file, 0.5f), 2.0f);
}

TEST(GltfTime, bends_meshes_by_moved_weights) {
    GltfFile file = moved("weights", "", "SCALAR", 1, {0, 1}, {0, 0, 1, 0.5f});
    const std::size_t place = file.rest.find("}}]}]");
    file.rest.insert(place + 1, ",'targets':[{'POSITION':0},{'POSITION':0}]");
    const Draft draft = read_at(file, 0.5f);
    // Twice its places at half the way, less a quarter.
    EXPECT_FLOAT_EQ(draft.surfaces.at(0).positions.at(1).x, 1.0f + 0.5f + 0.25f);
    EXPECT_TRUE(draft.notes.empty()) << draft.notes[0];
}

TEST(GltfTime, moves_skins_by_their_joints) {
    GltfFile file = moved("translation", "", "VEC3", 3, {0, 1}, {0, 0, 0, 6, 0, 0});
    file.add_view({0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
    const std::size_t joints = file.add_accessor("VEC4", 5121, 3, ",'bufferView':4");
    const std::size_t weights = file.add_floats("VEC4", 4, {1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0});
    file.rest.insert(file.rest.find("'TEXCOORD_0'"), "'JOINTS_0':" + std::to_string(joints) +
                                                         ",'WEIGHTS_0':" + std::to_string(weights) +
                                                         ",");
    file.rest.replace(file.rest.find("'nodes':[{'mesh':0}]"), 20,
                      "'skins':[{'joints':[0]}],'nodes':[{},{'mesh':0,'skin':0}]");
    file.rest.replace(file.rest.find("'scenes':[{'nodes':[0]}]"), 24, "'scenes':[{'nodes':[0,1]}]");
    EXPECT_FLOAT_EQ(x_at(file, 0.5f), 3.0f);
    const Draft at_rest = read_at(file, {});
    EXPECT_FLOAT_EQ(at_rest.surfaces.at(0).positions.at(0).x, 0.0f);
    const std::vector<std::string> notes = {
        "animations: animations were left out, as no time was asked for",
        "skins[0]: skins stay in their rest pose"};
    EXPECT_EQ(at_rest.notes, notes);
}

TEST(GltfTime, leaves_out_what_it_does_not_move_with_notes) {
    GltfFile file = moved("pointer", "", "VEC3", 3, {0}, {0, 0, 0});
    file.rest.insert(file.rest.size() - 1, ",{}");
    const std::vector<std::string> notes = {
        "animations: animations but the first were left out",
        "animations[0].channels[0].target: what an animation moves beside nodes and morph targets "
        "stays"};
    EXPECT_EQ(read_at(file, 1.0f).notes, notes);
    EXPECT_EQ(read_at(triangle(), 1.0f).notes, std::vector<std::string>()) << "it doesn't move";
}

TEST(GltfTime, moves_nothing_by_a_channel_without_a_node) {
    for (const char* const path : {"translation", "pointer"}) {
        // Whose times aren't even looked at.
        GltfFile file = moved(path, "", "VEC3", 3, {2, 1}, {7, 0, 0, 8, 0, 0});
        file.rest.replace(file.rest.find("'node':0,"), 9, "");
        EXPECT_EQ(x_at(file, 1.0f), 0.0f);
        EXPECT_EQ(read_at(file, 1.0f).notes, std::vector<std::string>());
    }
}

TEST(GltfTime, of_animations_that_are_broken_is_refused_with_its_place) {
    struct Row {
        GltfFile file;
        const char* reason;
    };
    const float nan = std::nanf("");
    const auto file = [](std::initializer_list<float> times) {
        return moved("translation", "", "VEC3", 3, times, {0, 0, 0, 1, 0, 0});
    };
    const auto changed = [&](const char* from, const char* to) {
        GltfFile wrong = file({0, 1});
        wrong.rest.replace(wrong.rest.find(from), std::string(from).size(), to);
        return wrong;
    };
    const std::string sampler = "animations[0].samplers[0]", channel = "animations[0].channels[0]";
    const auto wrong_time = [&](int i) {
        return sampler + ".input: time " + std::to_string(i) +
               " of accessor 2 is no number, or isn't behind the one before";
    };
    const auto refusal = [](const GltfFile& wrong) {
        try {
            read_at(wrong, 0.5f);
        } catch (const orvex::formats::Refusal& refused) {
            return std::string(refused.what());
        }
        return std::string();
    };
    EXPECT_EQ(refusal(file({1, 1})), wrong_time(1));
    EXPECT_EQ(refusal(file({2, 1})), wrong_time(1));
    EXPECT_EQ(refusal(file({nan, 1})), wrong_time(0));
    EXPECT_EQ(refusal(file({0, std::numeric_limits<float>::infinity()})), wrong_time(1));
    EXPECT_EQ(refusal(file({0, 1, 2})),
              sampler + ".output: accessor 3 isn't what 3 key frames need");
    EXPECT_EQ(refusal(changed("'input':2", "'input':0")),
              sampler + ".input: accessor 0 isn't one of times");
    EXPECT_EQ(refusal(changed("'output':3", "'output':4")),
              sampler + ".output: 4 is beyond the 4 accessors");
    EXPECT_EQ(refusal(changed("'output':3", "'output':3,'interpolation':'FAST'")),
              sampler + ".interpolation: no way from one key frame to the next");
    EXPECT_EQ(refusal(changed("'output':3", "'output':3,'interpolation':'CUBICSPLINE'")),
              sampler + ".output: accessor 3 isn't what 2 key frames need");
    EXPECT_EQ(refusal(changed("'sampler':0", "'sampler':1")),
              channel + ".sampler: 1 is beyond the 1 samplers");
    EXPECT_EQ(refusal(changed("'node':0", "'node':9")),
              channel + ".target.node: 9 is beyond the 1 nodes");
    GltfFile huge = moved("weights", "", "SCALAR", 1, {0}, {0});
    huge.rest.replace(huge.rest.find("'output':3"), 10, "'output':4");
    huge.add_accessor("SCALAR", 5126, 4294967295u);
    EXPECT_EQ(refusal(huge), sampler + ".output: more morph targets than any mesh has");
    GltfFile few = moved("weights", "", "SCALAR", 1, {0}, {0});
    few.rest.insert(few.rest.find("}}]}]") + 1, ",'targets':[{'POSITION':0},{'POSITION':0}]");
    EXPECT_EQ(refusal(few).find("meshes[0].primitives[0].targets: not one weight for each"), 0u);
}

// ------------------------------------------------------------------------------- scenes

TEST(GltfScenes, are_told_by_the_one_that_was_read) {
    GltfFile file = triangle();
    file.rest.replace(file.rest.find("'scenes':[{'nodes':[0]}],'scene':0"), 34,
                      "'scenes':[{},{'name':'Main','nodes':[0]}],'scene':1");
    EXPECT_EQ(read_at(file, {}).notes,
              std::vector<std::string>{
                  "scenes: scene 1, \"Main\", was read, and the others were left out"});
    file.rest.replace(file.rest.find("'scene':1"), 9, "'scene':0");
    const Draft other = read_at(file, {});
    EXPECT_TRUE(other.surfaces.empty());
    EXPECT_EQ(other.notes.at(0), "scenes: scene 0 was read, and the others were left out");
}

// ------------------------------------------------------------------------------- cameras

Draft seen(const std::string& camera, const std::string& node) {
    GltfFile file = triangle();
    file.rest.replace(file.rest.find("{'mesh':0}"), 10, "{'mesh':0,'camera':0," + node + "}");
    file.rest += ",'cameras':[" + camera + "]";
    return read_at(file, {});
}

TEST(GltfCameras, stand_where_their_nodes_are) {
    const Draft draft = seen("{'name':'front','type':'perspective','perspective':{'yfov':0.5,"
                             "'aspectRatio':2,'znear':0.25,'zfar':50}}",
                             "'translation':[1,2,3],'rotation':[0,0.70710678,0,0.70710678],"
                             "'scale':[2,2,2]");
    ASSERT_EQ(draft.cameras.size(), 1u);
    const Viewpoint& view = draft.cameras[0];
    EXPECT_EQ(view.name, "front");
    EXPECT_FLOAT_EQ(view.eye.z, 3.0f);
    EXPECT_NEAR(view.forward.x, -1.0f, 1e-6f) << "a quarter turn about y from -z";
    EXPECT_NEAR(view.up.y, 1.0f, 1e-6f);
    EXPECT_NEAR(view.opening, 28.64789f, 1e-4f);
    EXPECT_EQ(view.aspect, 2.0f);
    EXPECT_EQ(view.near, 0.25f);
    EXPECT_EQ(view.far, 50.0f);
    EXPECT_TRUE(draft.notes.empty());
}

TEST(GltfCameras, may_see_without_perspective_or_without_end) {
    const Draft parallel = seen("{'type':'orthographic','orthographic':{'xmag':3,'ymag':1,"
                                "'znear':0,'zfar':9}}",
                                "'name':'side'");
    ASSERT_EQ(parallel.cameras.size(), 1u);
    EXPECT_EQ(parallel.cameras[0].name, "side");
    EXPECT_EQ(parallel.cameras[0].height, 2.0f);
    EXPECT_EQ(parallel.cameras[0].aspect, 3.0f);
    const Draft endless =
        seen("{'type':'perspective','perspective':{'yfov':1,'znear':1}}", "'a':0");
    ASSERT_EQ(endless.cameras.size(), 1u);
    EXPECT_EQ(endless.cameras[0].far, 0.0f);
}

TEST(GltfCameras, that_see_nothing_are_left_out_with_a_note) {
    const std::vector<std::string> note = {"cameras[0]: a camera that sees nothing was left out"};
    const std::string right = "{'type':'perspective','perspective':{'yfov':1,'znear':1}}";
    for (const char* camera :
         {"{}", "{'type':'perspective'}", "{'type':'panorama'}",
          "{'type':'perspective','perspective':{'yfov':0,'znear':1}}",
          "{'type':'perspective','perspective':{'yfov':3.2,'znear':1}}",
          "{'type':'perspective','perspective':{'yfov':1,'znear':0}}",
          "{'type':'perspective','perspective':{'yfov':1,'znear':2,'zfar':1}}",
          "{'type':'orthographic','orthographic':{'xmag':0,'ymag':0,'znear':0,'zfar':9}}",
          "{'type':'orthographic','orthographic':{'xmag':1,'ymag':-1,'znear':0,'zfar':9}}"}) {
        const Draft draft = seen(camera, "'a':0");
        EXPECT_TRUE(draft.cameras.empty()) << camera;
        EXPECT_EQ(draft.notes, note) << camera;
    }
    for (const char* node : {"'scale':[0,0,0]", "'scale':[1,0,1]", "'translation':[1e200,0,0]"})
        EXPECT_EQ(seen(right, node).notes, note) << node;
    EXPECT_EQ(seen(right, "'a':0").notes, std::vector<std::string>());
}

} // namespace

} // namespace orvex_test
