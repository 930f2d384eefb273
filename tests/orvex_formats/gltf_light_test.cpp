#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <orvex/geometry/mesh/model.h>
#include <orvex/scene/light.h>

#include "orvex_formats/private/build_model.h"
#include "tests/orvex_formats/gltf_file.h"

namespace orvex_test {

using orvex::Light;
using orvex::Model;
using orvex::formats::Draft;

namespace {

const std::string on_looks = ": looks have lights of their own; the file's are nodes of the model";

/// A file with one light, and nodes of it.
std::string text_with(const std::string& light, const std::string& nodes) {
    return "{'asset':{'version':'2.0'},'extensions':{'KHR_lights_punctual':{'lights':[" + light +
           "]}},'nodes':[" + nodes + "]}";
}

/// The same with one node.
Draft lit(const std::string& light, const std::string& place) {
    const std::string node = "{" + place + ",'extensions':{'KHR_lights_punctual':{'light':0}}}";
    return read_gltf_bytes(Bytes(json(text_with(light, node))).bytes);
}

TEST(GltfLights, stand_where_their_nodes_are) {
    const Draft draft = lit("{'type':'point','name':'lamp','color':[1,0.5,0.25],'intensity':4,"
                            "'range':7}",
                            "'name':'ceiling','translation':[1,2,3],'scale':[2,2,2]");
    ASSERT_EQ(draft.lamps.size(), 1u);
    const orvex::formats::Lamp& lamp = draft.lamps[0];
    EXPECT_EQ(lamp.name, "lamp");
    EXPECT_EQ(lamp.place.x, 1.0f);
    EXPECT_EQ(lamp.place.y, 2.0f);
    EXPECT_EQ(lamp.place.z, 3.0f);
    EXPECT_EQ(lamp.color.x, 4.0f);
    EXPECT_EQ(lamp.color.y, 2.0f);
    EXPECT_EQ(lamp.color.z, 1.0f);
    EXPECT_EQ(lamp.reach, 7.0f) << "nodes don't stretch it";
    EXPECT_EQ(draft.notes,
              std::vector<std::string>{"extensions.KHR_lights_punctual.lights[0]" + on_looks});
}

TEST(GltfLights, are_white_and_endless_where_nothing_is_said) {
    const Draft draft = lit("{'type':'spot'}", "'name':'ceiling'");
    ASSERT_EQ(draft.lamps.size(), 1u);
    EXPECT_EQ(draft.lamps[0].name, "ceiling");
    EXPECT_EQ(draft.lamps[0].color.x, 1.0f);
    EXPECT_EQ(draft.lamps[0].color.z, 1.0f);
    EXPECT_EQ(draft.lamps[0].reach, 0.0f);
    const std::string light = "extensions.KHR_lights_punctual.lights[0]";
    EXPECT_EQ(draft.notes, (std::vector<std::string>{light + ": a spot light shines to all sides",
                                                     light + on_looks}));
}

TEST(GltfLights, that_shine_nowhere_are_left_out_with_a_note) {
    struct Row {
        const char *light, *node, *note;
    };
    const char* const dark = "a light that doesn't shine was left out";
    const char* const of_the_sky =
        "a light that shines from nowhere was left out, as lights stand somewhere";
    const Row rows[] = {
        {"{'type':'directional'}", "'a':0", of_the_sky},
        {"{}", "'a':0", of_the_sky},
        {"{'type':'point','intensity':0}", "'a':0", dark},
        {"{'type':'point','intensity':-1}", "'a':0", dark},
        {"{'type':'point','intensity':1e200}", "'a':0", dark},
        {"{'type':'point','color':[0,0,0]}", "'a':0", dark},
        {"{'type':'point','color':[1,1,-1]}", "'a':0", dark},
        {"{'type':'point','range':-1}", "'a':0", dark},
        {"{'type':'point'}", "'translation':[1e200,0,0]", dark},
    };
    for (const Row& row : rows) {
        const Draft draft = lit(row.light, row.node);
        EXPECT_TRUE(draft.lamps.empty()) << row.light;
        EXPECT_EQ(draft.notes,
                  std::vector<std::string>{
                      std::string("extensions.KHR_lights_punctual.lights[0]: ") + row.note})
            << row.light;
    }
}

TEST(GltfLights, that_are_told_wrongly_are_refused) {
    const auto refusal = [](const std::string& light, const std::string& of_node) {
        return gltf_refusal(
            text_with(light, "{'extensions':{'KHR_lights_punctual':" + of_node + "}}"));
    };
    const std::string point = "{'type':'point'}";
    const std::string node = "nodes[0].extensions.KHR_lights_punctual";
    const std::string light = "extensions.KHR_lights_punctual.lights[0]";
    EXPECT_EQ(refusal(point, "{}"), node + ": \"light\" is missing");
    EXPECT_EQ(refusal(point, "{'light':1}"), node + ".light: 1 is beyond the 1 lights");
    EXPECT_EQ(refusal(point, "[]"), node + ": no object");
    EXPECT_EQ(refusal("{'type':'point','color':[1,1]}", "{'light':0}"),
              light + ".color: not 3 values, but 2");
    EXPECT_EQ(refusal("{'type':'point','range':1e300}", "{'light':0}"),
              light + ".range: too large");
}

TEST(GltfLights, become_nodes_of_the_model) {
    struct End {
        void operator()(Model* model) const { model->release(nullptr, nullptr); }
    };
    const std::string node = "{'translation':[1,2,3],'extensions':{'KHR_lights_punctual':"
                             "{'light':0}}},{'extensions':{'KHR_lights_punctual':{'light':1}}}";
    const std::string lights = "{'type':'point','name':'lamp','color':[1,0.5,0],'intensity':2,"
                               "'range':7},{'type':'point'}";
    const std::unique_ptr<Model, End> model(new Model);
    build_model(read_gltf_bytes(Bytes(json(text_with(lights, node))).bytes), *model);
    ASSERT_EQ(model->get_num_children(), 2u);
    Light* const lamp = Light::from_node(model->get_child(0));
    ASSERT_NE(lamp, nullptr);
    EXPECT_STREQ(lamp->get_name(), "lamp");
    EXPECT_EQ(lamp->get_index(), 0u);
    EXPECT_EQ(lamp->get_radius(), 7.0f);
    EXPECT_EQ(lamp->get_position().x, 1.0f);
    EXPECT_EQ(lamp->get_position().z, 3.0f);
    EXPECT_EQ(lamp->get_diffuse().x, 2.0f);
    EXPECT_EQ(lamp->get_diffuse().y, 1.0f);
    EXPECT_EQ(lamp->get_specular().x, 2.0f);
    EXPECT_EQ(lamp->get_ambient().x, 0.0f);
    Light* const other = Light::from_node(model->get_child(1));
    ASSERT_NE(other, nullptr);
    EXPECT_EQ(other->get_index(), 1u);
    EXPECT_EQ(other->get_radius(), 10000.0f) << "what the engine gives a light that says nothing";
}

} // namespace

} // namespace orvex_test
