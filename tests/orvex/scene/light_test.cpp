#include "orvex/scene/light.h"

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "object_tree.h"
#include "orvex/renderer/records/gpu_program_data.h"
#include "tests/orvex/math/exact.h"
#include "tests/support/fake_renderer.h"

namespace orvex_test {

using namespace orvex;
using orvex_test::expect_vec4;
using orvex_test::FakeRenderer;

namespace {

using Calls = std::vector<std::string>;

class LightTest : public testing::Test {
protected:
    LightTest() { renderer.name_pointer(&program, "program"); }
    ~LightTest() override { light->release(nullptr, nullptr); }

    /// What a bind sends with a program active, the query for it left out.
    Calls bound() {
        renderer.active_program = &program;
        renderer.ignored = {"gpu_program_get_active_program"};
        renderer.take_calls();
        light->bind(&renderer);
        return renderer.take_calls();
    }

    Light* light = new Light;
    FakeRenderer renderer;
    GpuProgramData program;
};

TEST_F(LightTest, starts_as_a_warm_white_of_long_reach) {
    EXPECT_EQ(light->get_type(), NODE_TYPE_LIGHT);
    EXPECT_EQ(static_cast<int>(light->get_type()), 30);
    EXPECT_TRUE(light->is_type_of(NODE_TYPE_OBJECT));
    EXPECT_EQ(light->get_index(), 0u);
    EXPECT_EQ(light->get_radius(), 10000.0f);
    expect_vec4(light->get_ambient(), 0.2f, 0.2f, 0.2f, 1.0f);
    expect_vec4(light->get_diffuse(), 1.0f, 1.0f, 0.8f, 1.0f);
    expect_vec4(light->get_specular(), 0.6f, 0.6f, 0.6f, 1.0f);
    EXPECT_STREQ(light->get_position_uniform_name(), "orvex_light_position");
    EXPECT_STREQ(light->get_radius_uniform_name(), "orvex_light_radius");
    EXPECT_STREQ(light->get_ambient_uniform_name(), "orvex_light_ambient");
    EXPECT_STREQ(light->get_diffuse_uniform_name(), "orvex_light_diffuse");
    EXPECT_STREQ(light->get_specular_uniform_name(), "orvex_light_specular");
}

TEST_F(LightTest, keeps_what_it_is_given) {
    light->set_index(7);
    EXPECT_EQ(light->get_index(), 7u);
    light->set_radius(-2.5f);
    EXPECT_EQ(light->get_radius(), -2.5f);
    light->set_ambient(vec4(1.0f, 2.0f, 3.0f, 4.0f));
    expect_vec4(light->get_ambient(), 1.0f, 2.0f, 3.0f, 4.0f);
    light->set_ambient(5.0f, 6.0f, 7.0f, 8.0f);
    expect_vec4(light->get_ambient(), 5.0f, 6.0f, 7.0f, 8.0f);
    light->set_diffuse(vec4(1.5f, 2.5f, 3.5f, 4.5f));
    expect_vec4(light->get_diffuse(), 1.5f, 2.5f, 3.5f, 4.5f);
    light->set_diffuse(5.5f, 6.5f, 7.5f, 8.5f);
    expect_vec4(light->get_diffuse(), 5.5f, 6.5f, 7.5f, 8.5f);
    light->set_specular(vec4(-1.0f, -2.0f, -3.0f, -4.0f));
    expect_vec4(light->get_specular(), -1.0f, -2.0f, -3.0f, -4.0f);
    light->set_specular(-5.0f, -6.0f, -7.0f, -8.0f);
    expect_vec4(light->get_specular(), -5.0f, -6.0f, -7.0f, -8.0f);
}

TEST_F(LightTest, shows_all_of_it_in_its_record) {
    light->set_index(3);
    light->set_radius(4.0f);
    light->set_specular(1.0f, 2.0f, 3.0f, 4.0f);
    const LightData& data = *light->get_light_data();
    EXPECT_EQ(std::as_const(*light).get_light_data(), &data);
    EXPECT_EQ(data.index, 3u);
    EXPECT_EQ(data.radius, 4.0f);
    EXPECT_EQ(data.specular, vec4(1.0f, 2.0f, 3.0f, 4.0f));
    EXPECT_EQ(data.ambient_uniform_name.get(), light->get_ambient_uniform_name());
}

TEST_F(LightTest, copies_names_and_forgets_them_for_null) {
    // Plain functions: GCC 12 miscompiles calls through member pointers under the sanitizers.
    struct Row {
        const char* name;
        void (*set)(Light&, const char*);
        const char* (*get)(Light&);
    };
    static constexpr Row rows[] = {
        {"position", [](Light& on, const char* name) { on.set_position_uniform_name(name); },
         [](Light& on) { return on.get_position_uniform_name(); }},
        {"radius", [](Light& on, const char* name) { on.set_radius_uniform_name(name); },
         [](Light& on) { return on.get_radius_uniform_name(); }},
        {"ambient", [](Light& on, const char* name) { on.set_ambient_uniform_name(name); },
         [](Light& on) { return on.get_ambient_uniform_name(); }},
        {"diffuse", [](Light& on, const char* name) { on.set_diffuse_uniform_name(name); },
         [](Light& on) { return on.get_diffuse_uniform_name(); }},
        {"specular", [](Light& on, const char* name) { on.set_specular_uniform_name(name); },
         [](Light& on) { return on.get_specular_uniform_name(); }},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        std::string name = "lamp";
        row.set(*light, name.c_str());
        name[0] = 'd';
        EXPECT_STREQ(row.get(*light), "lamp");
        row.set(*light, row.get(*light) + 1);
        EXPECT_STREQ(row.get(*light), "amp") << "a part of its own text";
        row.set(*light, "");
        EXPECT_STREQ(row.get(*light), "");
        row.set(*light, nullptr);
        EXPECT_EQ(row.get(*light), nullptr);
    }
}

TEST_F(LightTest, sends_its_colours_to_the_fixed_pipeline_and_five_uniforms_to_the_program) {
    light->set_position(1.0f, 2.0f, 3.0f);
    EXPECT_EQ(
        bound(),
        (Calls{
            "light_set_colors(0, (0.2, 0.2, 0.2, 1), (1, 1, 0.8, 1), (0.6, 0.6, 0.6, 1))",
            "gpu_program_set_uniform_4f(program, \"orvex_light_position_0\", 1, 2, 3, 1)",
            "gpu_program_set_uniform_1f(program, \"orvex_light_radius_0\", 10000)",
            "gpu_program_set_uniform_4f(program, \"orvex_light_ambient_0\", 0.2, 0.2, 0.2, 1)",
            "gpu_program_set_uniform_4f(program, \"orvex_light_diffuse_0\", 1, 1, 0.8, 1)",
            "gpu_program_set_uniform_4f(program, \"orvex_light_ambient_0\", 0.6, 0.6, 0.6, 1)"}));
}

TEST_F(LightTest, asks_for_the_program_after_the_fixed_pipeline) {
    light->bind(&renderer);
    EXPECT_EQ(renderer.take_calls(),
              (Calls{"light_set_colors(0, (0.2, 0.2, 0.2, 1), (1, 1, 0.8, 1), (0.6, 0.6, 0.6, 1))",
                     "gpu_program_get_active_program()"}));
}

TEST_F(LightTest, leaves_the_fixed_pipeline_alone_without_fixed_matrices) {
    light->set_use_fixed_mvp_matrices_state(false, nullptr);
    EXPECT_EQ(bound().size(), 5u);
    EXPECT_EQ(renderer.count("light_set_colors"), 0);
    renderer.ignored.clear();
    renderer.active_program = nullptr;
    light->bind(&renderer);
    EXPECT_EQ(renderer.take_calls(), Calls{"gpu_program_get_active_program()"});
}

TEST_F(LightTest, numbers_its_uniforms) {
    light->set_index(3);
    const Calls calls = bound();
    EXPECT_EQ(calls[0].substr(0, 20), "light_set_colors(3, ");
    EXPECT_EQ(calls[2], "gpu_program_set_uniform_1f(program, \"orvex_light_radius_3\", 10000)");
}

TEST_F(LightTest, numbers_the_largest_index_as_a_signed_one) {
    light->set_index(0xFFFFFFFFu);
    EXPECT_EQ(bound()[2], "gpu_program_set_uniform_1f(program, \"orvex_light_radius_-1\", 10000)");
}

TEST_F(LightTest, sends_its_position_in_its_parents_space) {
    auto* const parent = new Object;
    parent->set_position(100.0f, 0.0f, 0.0f);
    parent->add_child(light);
    light->add_ref();
    light->set_position(vec4(1.0f, 2.0f, 3.0f, 0.5f));
    EXPECT_EQ(bound()[1],
              "gpu_program_set_uniform_4f(program, \"orvex_light_position_0\", 1, 2, 3, 0.5)");
    parent->release(nullptr, nullptr);
}

TEST_F(LightTest, skips_unset_names) {
    light->set_use_fixed_mvp_matrices_state(false, nullptr);
    light->set_ambient_uniform_name(nullptr);
    EXPECT_EQ(bound(),
              (Calls{"gpu_program_set_uniform_4f(program, \"orvex_light_position_0\", 0, 0, 0, 1)",
                     "gpu_program_set_uniform_1f(program, \"orvex_light_radius_0\", 10000)",
                     "gpu_program_set_uniform_4f(program, \"orvex_light_diffuse_0\", 1, 1, 0.8, "
                     "1)"}));
    light->set_position_uniform_name(nullptr);
    light->set_radius_uniform_name(nullptr);
    light->set_diffuse_uniform_name(nullptr);
    EXPECT_EQ(bound(), Calls());
}

TEST_F(LightTest, never_sends_the_specular_name) {
    light->set_specular_uniform_name("shine");
    for (const std::string& call : bound())
        EXPECT_EQ(call.find("shine"), call.npos) << call;
}

TEST_F(LightTest, cuts_uniform_names_to_127_characters) {
    light->set_use_fixed_mvp_matrices_state(false, nullptr);
    light->set_radius_uniform_name(std::string(500, 'r').c_str());
    EXPECT_EQ(bound()[1],
              "gpu_program_set_uniform_1f(program, \"" + std::string(127, 'r') + "\", 10000)");
    light->set_radius_uniform_name(std::string(125, 'r').c_str());
    EXPECT_EQ(bound()[1],
              "gpu_program_set_uniform_1f(program, \"" + std::string(125, 'r') + "_0\", 10000)");
    EXPECT_STREQ(light->get_radius_uniform_name(), std::string(125, 'r').c_str());
}

TEST_F(LightTest, does_nothing_without_a_renderer) {
    light->bind(nullptr);
}

TEST_F(LightTest, draws_only_what_objects_draw) {
    light->render(&renderer, nullptr);
    EXPECT_EQ(renderer.count("light_set_colors"), 0);
    EXPECT_EQ(renderer.count("gpu_program_set_uniform_4f"), 0);
    light->set_display_tripod_state(true, nullptr);
    light->render(&renderer, nullptr);
    EXPECT_EQ(renderer.count("render_line"), 3);
}

} // namespace

} // namespace orvex_test
