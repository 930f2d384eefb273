#include "orvex/renderer/records/gpu_program_data.h"

#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "orvex/renderer/records/uniform_buffer_data.h"

namespace orvex_test {

using namespace orvex;

namespace {

TEST(GpuProgramData, starts_without_anything_of_the_api) {
    GpuProgramData data;
    EXPECT_EQ(data.id, -1);
    EXPECT_EQ(data.gl_program, 0u);
    EXPECT_EQ(data.renderer_id, 0);
    EXPECT_FALSE(data.use_generic_vertex_attribs);
    EXPECT_TRUE(data.auto_generic_pending);
    EXPECT_FALSE(data.linked);
    EXPECT_TRUE(data.core_attribs_pending);
    EXPECT_TRUE(data.instancing_attribs_pending);
    EXPECT_FALSE(data.valid);
    EXPECT_FALSE(data.uniforms_optimized);
    EXPECT_EQ(data.uniform_buffer, nullptr);
    EXPECT_EQ(data.get_info_log(), nullptr);
    EXPECT_EQ(data.info_log_size, 0u);
    for (int i = 0; i < GPU_SHADER_TYPE_COUNT; ++i) {
        const auto type = GPU_SHADER_TYPE(i);
        EXPECT_FALSE(data.shader_loaded[i]);
        EXPECT_EQ(data.shader_ids[i], 0u);
        EXPECT_EQ(data.shader_info_log_size[i], 0u);
        EXPECT_EQ(data.get_shader_info_log(type), nullptr);
        EXPECT_EQ(data.get_shader_source_code(type), nullptr);
        EXPECT_EQ(data.d3d11_get_shader_ptr(type), nullptr);
    }
}

TEST(GpuProgramData, starts_with_the_standard_uniform_names) {
    const GpuProgramData data;
    EXPECT_STREQ(data.get_model_matrix_uniform_name(), "orvex_ModelMatrix");
    EXPECT_STREQ(data.get_view_matrix_uniform_name(), "orvex_ViewMatrix");
    EXPECT_STREQ(data.get_projection_matrix_uniform_name(), "orvex_ProjectionMatrix");
    EXPECT_STREQ(data.get_model_view_matrix_uniform_name(), "orvex_ModelViewMatrix");
    EXPECT_STREQ(data.get_model_view_projection_matrix_uniform_name(),
                 "orvex_ModelViewProjectionMatrix");
    EXPECT_STREQ(data.get_view_projection_matrix_uniform_name(), "orvex_ViewProjectionMatrix");
    EXPECT_STREQ(data.get_viewport_uniform_name(), "orvex_Viewport");
}

TEST(GpuProgramData, starts_with_the_standard_attribute_names) {
    const GpuProgramData data;
    const char* const names[] = {"orvex_Position",
                                 "orvex_Color",
                                 "orvex_Normal",
                                 "orvex_TexCoord0",
                                 "orvex_TexCoord1",
                                 "orvex_Tangent",
                                 "orvex_Instance_Position",
                                 "orvex_Instance_Rotation",
                                 "orvex_Instance_Scale",
                                 "orvex_Instance_Color"};
    for (unsigned int i = 0; i < 10; ++i)
        EXPECT_STREQ(data.get_vertex_attrib_name(i), names[i]);
    for (unsigned int i = 10; i < 18; ++i)
        EXPECT_EQ(data.get_vertex_attrib_name(i), nullptr);
}

struct UniformName {
    const char* description;
    void (GpuProgramData::*set)(const char*);
    const char* (GpuProgramData::*get)() const;
};

class GpuProgramDataName : public testing::TestWithParam<UniformName> {};

TEST_P(GpuProgramDataName, is_replaced_by_a_copy_and_unset_by_null) {
    GpuProgramData data;
    std::string name = "mine";
    (data.*GetParam().set)(name.c_str());
    name = "gone";
    EXPECT_STREQ((data.*GetParam().get)(), "mine");
    (data.*GetParam().set)(nullptr);
    EXPECT_EQ((data.*GetParam().get)(), nullptr);
}

TEST_P(GpuProgramDataName, can_be_set_to_a_part_of_itself) {
    GpuProgramData data;
    (data.*GetParam().set)((data.*GetParam().get)() + 6);
    EXPECT_EQ((data.*GetParam().get)()[0], GetParam().description[0]);
}

constexpr UniformName UNIFORM_NAMES[] = {
    {"ModelMatrix", &GpuProgramData::set_model_matrix_uniform_name,
     &GpuProgramData::get_model_matrix_uniform_name},
    {"ViewMatrix", &GpuProgramData::set_view_matrix_uniform_name,
     &GpuProgramData::get_view_matrix_uniform_name},
    {"ProjectionMatrix", &GpuProgramData::set_projection_matrix_uniform_name,
     &GpuProgramData::get_projection_matrix_uniform_name},
    {"ModelViewMatrix", &GpuProgramData::set_model_view_matrix_uniform_name,
     &GpuProgramData::get_model_view_matrix_uniform_name},
    {"ModelViewProjectionMatrix", &GpuProgramData::set_model_view_projection_matrix_uniform_name,
     &GpuProgramData::get_model_view_projection_matrix_uniform_name},
    {"ViewProjectionMatrix", &GpuProgramData::set_view_projection_matrix_uniform_name,
     &GpuProgramData::get_view_projection_matrix_uniform_name},
    {"Viewport", &GpuProgramData::set_viewport_uniform_name,
     &GpuProgramData::get_viewport_uniform_name},
};
INSTANTIATE_TEST_SUITE_P(of, GpuProgramDataName, testing::ValuesIn(UNIFORM_NAMES),
                         [](const auto& row) { return std::string(row.param.description); });

TEST(GpuProgramData, a_new_attribute_name_asks_for_another_link) {
    GpuProgramData data;
    data.linked = true;
    EXPECT_TRUE(data.set_vertex_attrib_name(15, "height"));
    EXPECT_STREQ(data.get_vertex_attrib_name(15), "height");
    EXPECT_FALSE(data.linked);
    EXPECT_TRUE(data.set_vertex_attrib_name(0, nullptr));
    EXPECT_EQ(data.get_vertex_attrib_name(0), nullptr);
}

TEST(GpuProgramData, refuses_an_attribute_index_of_16_and_keeps_the_link) {
    GpuProgramData data;
    data.linked = true;
    EXPECT_FALSE(data.set_vertex_attrib_name(16, "height"));
    EXPECT_FALSE(data.set_vertex_attrib_name(~0u, "height"));
    EXPECT_TRUE(data.linked);
}

TEST(GpuProgramData, knows_its_thread) {
    GpuProgramData data;
    EXPECT_TRUE(data.check_thread());
    EXPECT_EQ(data.get_thread(), &data.thread);
    EXPECT_EQ(data.get_thread_ptr(), &data.thread);
    std::thread other([&] {
        EXPECT_FALSE(data.check_thread());
        data.update_thread();
        EXPECT_TRUE(data.check_thread());
    });
    other.join();
    EXPECT_FALSE(data.check_thread());
}

TEST(GpuProgramData, lets_the_host_choose_the_draw_path) {
    GpuProgramData data;
    EXPECT_FALSE(data.get_use_generic_vertex_attribs_state());
    data.set_use_generic_vertex_attribs_state(true);
    EXPECT_TRUE(data.get_use_generic_vertex_attribs_state());
    EXPECT_TRUE(data.use_generic_vertex_attribs);
}

TEST(GpuProgramDataLog, refuses_nothing_and_emptiness) {
    GpuProgramData data;
    EXPECT_FALSE(data.set_shader_info_log(GPU_SHADER_VERTEX, nullptr, 5));
    EXPECT_FALSE(data.set_shader_info_log(GPU_SHADER_VERTEX, "text", 0));
    EXPECT_FALSE(data.set_info_log(nullptr, 5));
    EXPECT_FALSE(data.set_info_log("text", 0));
    EXPECT_EQ(data.get_shader_info_log(GPU_SHADER_VERTEX), nullptr);
    EXPECT_EQ(data.get_info_log(), nullptr);
}

TEST(GpuProgramDataLog, keeps_one_text_per_stage_cut_at_the_length) {
    GpuProgramData data;
    EXPECT_TRUE(data.set_shader_info_log(GPU_SHADER_VERTEX, "vertex text", 6));
    EXPECT_TRUE(data.set_shader_info_log(GPU_SHADER_EFFECT, "effect", 6));
    EXPECT_STREQ(data.get_shader_info_log(GPU_SHADER_VERTEX), "vertex");
    EXPECT_STREQ(data.get_shader_info_log(GPU_SHADER_EFFECT), "effect");
    EXPECT_EQ(data.shader_info_log_size[GPU_SHADER_VERTEX], 7u);
    EXPECT_EQ(data.get_shader_info_log(GPU_SHADER_PIXEL), nullptr);
}

struct LogStep {
    unsigned long length;
    bool kept;
};

// The recorded size is the length + 1, so the next text must be longer by two to take its place.
TEST(GpuProgramDataLog, a_text_that_is_not_longer_than_recorded_leaves_the_old_one) {
    const std::string letters = "abcdefghijkl";
    const LogStep steps[] = {{5, true}, {4, false}, {5, false}, {6, false},
                             {7, true}, {8, false}, {12, true}};
    GpuProgramData data;
    std::string expected;
    for (const LogStep& step : steps) {
        const std::string text = letters.substr(letters.size() - step.length);
        EXPECT_EQ(data.set_shader_info_log(GPU_SHADER_PIXEL, text.c_str(), step.length), step.kept)
            << step.length;
        EXPECT_EQ(data.set_info_log(text.c_str(), step.length), step.kept) << step.length;
        if (step.kept)
            expected = text;
        EXPECT_EQ(data.get_shader_info_log(GPU_SHADER_PIXEL), expected);
        EXPECT_EQ(data.get_info_log(), expected);
    }
    EXPECT_EQ(data.info_log_size, 13u);
}

TEST(GpuProgramDataLog, a_length_past_the_terminator_is_safe) {
    GpuProgramData data;
    EXPECT_TRUE(data.set_info_log("short", 100));
    EXPECT_STREQ(data.get_info_log(), "short");
    EXPECT_EQ(data.info_log_size, 101u);
}

TEST(GpuProgramData, refuses_stages_outside_the_table) {
    GpuProgramData data;
    for (const int value : {-1, 8, 300}) {
        const auto type = GPU_SHADER_TYPE(value);
        EXPECT_FALSE(data.set_shader_info_log(type, "text", 4));
        EXPECT_EQ(data.get_shader_info_log(type), nullptr);
        EXPECT_EQ(data.get_shader_source_code(type), nullptr);
        data.d3d11_set_entry_point_name(type, "entry");
        EXPECT_STREQ(data.d3d11_get_entry_point_name(type), "main");
        EXPECT_EQ(data.d3d11_get_shader_ptr(type), nullptr);
    }
}

TEST(GpuProgramData, gives_default_entry_points_by_stage) {
    const GpuProgramData data;
    const char* const names[] = {"VS", "PS", "GS", "HS", "DS", "main", "main", "main"};
    for (int i = 0; i < GPU_SHADER_TYPE_COUNT; ++i)
        EXPECT_STREQ(data.d3d11_get_entry_point_name(GPU_SHADER_TYPE(i)), names[i]);
}

TEST(GpuProgramData, cuts_an_entry_point_name_at_127_characters) {
    GpuProgramData data;
    data.d3d11_set_entry_point_name(GPU_SHADER_PIXEL, std::string(200, 'n').c_str());
    EXPECT_EQ(data.d3d11_get_entry_point_name(GPU_SHADER_PIXEL), std::string(127, 'n'));
    EXPECT_STREQ(data.d3d11_get_entry_point_name(GPU_SHADER_VERTEX), "VS");
    data.d3d11_set_entry_point_name(GPU_SHADER_PIXEL, nullptr);
    EXPECT_STREQ(data.d3d11_get_entry_point_name(GPU_SHADER_PIXEL), "PS");
}

TEST(GpuProgramData, has_places_for_five_direct3d_shaders) {
    GpuProgramData data;
    int object = 0;
    data.d3d11_shader[4] = &object;
    EXPECT_EQ(data.d3d11_get_shader_ptr(GPU_SHADER_TESS_EVAL), &object);
    EXPECT_EQ(data.d3d11_get_shader_ptr(GPU_SHADER_COMPUTE), nullptr);
}

TEST(GpuProgramData, freeing_its_data_leaves_api_names_and_uniforms) {
    GpuProgramData data;
    data.gl_program = 7;
    data.shader_ids[0] = 8;
    data.linked = true;
    data.uniform_buffer = new UniformBufferData;
    data.set_info_log("link", 4);
    data.set_shader_info_log(GPU_SHADER_VERTEX, "compile", 7);
    data.shader_source[0].assign("source");
    data.d3d11_set_entry_point_name(GPU_SHADER_VERTEX, "entry");
    data.set_uniform_1f("kept", 1.0f);
    for (int pass = 0; pass < 2; ++pass) {
        data.free_data();
        EXPECT_EQ(data.get_info_log(), nullptr);
        EXPECT_EQ(data.get_shader_info_log(GPU_SHADER_VERTEX), nullptr);
        EXPECT_EQ(data.get_shader_source_code(GPU_SHADER_VERTEX), nullptr);
        EXPECT_STREQ(data.d3d11_get_entry_point_name(GPU_SHADER_VERTEX), "VS");
        EXPECT_EQ(data.uniform_buffer, nullptr);
        for (const UniformName& name : UNIFORM_NAMES)
            EXPECT_EQ((data.*name.get)(), nullptr);
        EXPECT_EQ(data.get_vertex_attrib_name(0), nullptr);
        EXPECT_EQ(data.gl_program, 7u);
        EXPECT_EQ(data.shader_ids[0], 8u);
        EXPECT_TRUE(data.linked);
        EXPECT_NE(data.find_uniform("kept"), nullptr);
    }
    EXPECT_TRUE(data.set_info_log("a", 1)) << "the recorded size went with the text";
    EXPECT_TRUE(data.set_shader_info_log(GPU_SHADER_VERTEX, "a", 1)) << "and that of each stage";
}

TEST(GpuProgramData, a_dying_record_is_no_longer_anyones_active_program) {
    GpuProgramData* first = nullptr;
    GpuProgramData* second = nullptr;
    GpuProgramData* forgotten = nullptr;
    {
        GpuProgramData data;
        first = second = forgotten = &data;
        data.add_active_slot(&first);
        data.add_active_slot(&first);
        data.add_active_slot(&second);
        data.add_active_slot(&forgotten);
        data.add_active_slot(nullptr);
        data.remove_active_slot(&forgotten);
        data.remove_active_slot(&forgotten);
    }
    EXPECT_EQ(first, nullptr);
    EXPECT_EQ(second, nullptr);
    EXPECT_NE(forgotten, nullptr);
}

TEST(UniformBufferData, starts_without_a_buffer) {
    const UniformBufferData block;
    EXPECT_EQ(block.buffer, 0u);
    EXPECT_EQ(block.binding, 0u);
    EXPECT_EQ(block.size, 0u);
    EXPECT_EQ(block.block_index, 0u);
    EXPECT_STREQ(block.name, "");
    EXPECT_FALSE(block.bound);
    EXPECT_EQ(block.mapped, nullptr);
}

} // namespace

} // namespace orvex_test
