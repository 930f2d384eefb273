#include "orvex/gpu/gpu_program.h"

#include <string>
#include <thread>
#include <utility>

#include <gtest/gtest.h>

#include "fake_compiler.h"
#include "orvex/base/thread.h"
#include "orvex/renderer/records/gpu_program_uniform.h"
#include "tests/support/log_capture.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

using namespace orvex;
using orvex_test::FakeCompiler;
using orvex_test::LogCapture;
using orvex_test::TempDir;
using Calls = std::vector<std::string>;
using Sources = std::vector<std::pair<int, std::string>>;

namespace {

class GpuProgramTest : public testing::Test {
protected:
    void SetUp() override { program->set_name("prog"); }
    void TearDown() override {
        if (program)
            program->release(nullptr, nullptr);
    }

    // Compiles something, so that the record is known to the test.
    GpuProgramData& record() {
        if (!renderer.record)
            program->shader_load_from_memory(&renderer, GPU_SHADER_NONE, "any", 3);
        renderer.name_pointer(renderer.record, "record");
        renderer.name_pointer(renderer.record->uniform_buffer, "block");
        return *renderer.record;
    }

    bool load(const std::string& text) {
        return program->load_from_memory(&renderer, text.c_str(), text.size());
    }

    FakeCompiler renderer;
    GpuProgram* program = new GpuProgram;
};

TEST_F(GpuProgramTest, is_a_resource_of_its_own_type) {
    EXPECT_EQ(program->get_type(), 2);
    EXPECT_TRUE(program->is_type_of(NODE_TYPE_NODE));
    EXPECT_TRUE(program->is_type_of(NODE_TYPE_RESOURCE));
    EXPECT_EQ(program->get_renderer_id(), 0);
    EXPECT_FALSE(program->is_valid());
}

TEST_F(GpuProgramTest, compiles_the_stages_found_in_a_fixed_order) {
    EXPECT_TRUE(load("[Compute_Shader]c[TessEval_Shader]e[TessControl_Shader]t[Geometry_Shader]g"
                     "[Pixel_Shader]p[Vertex_Shader]v"));
    EXPECT_EQ(renderer.sources,
              (Sources{{0, "v"}, {1, "p"}, {2, "g"}, {3, "t"}, {4, "e"}, {5, "c"}}));
    EXPECT_EQ(renderer.last_size, 2u) << "the terminator counts";
    for (int stage = 0; stage < 6; ++stage)
        EXPECT_TRUE(record().shader_loaded[stage]);
    EXPECT_STREQ(program->get_shader_source_code(GPU_SHADER_GEOMETRY), "g");
    EXPECT_EQ(program->get_shader_source_code(GPU_SHADER_EFFECT), nullptr);
}

TEST_F(GpuProgramTest, refuses_a_text_with_only_a_vertex_marker_without_a_compile) {
    EXPECT_FALSE(load("[Vertex_Shader]v"));
    EXPECT_TRUE(renderer.sources.empty());
}

TEST_F(GpuProgramTest, accepts_a_text_with_only_a_compute_marker) {
    EXPECT_TRUE(load("[Compute_Shader]c"));
    EXPECT_EQ(renderer.sources, (Sources{{5, "c"}}));
}

TEST_F(GpuProgramTest, cuts_bodies_by_position_not_by_kind) {
    EXPECT_TRUE(load("[Pixel_Shader]p[Vertex_Shader]v"));
    EXPECT_EQ(renderer.sources, (Sources{{0, "v"}, {1, "p"}}));
}

TEST_F(GpuProgramTest, leaves_a_second_marker_in_the_source_where_compiling_fails) {
    EXPECT_FALSE(load("[Vertex_Shader]bad [Vertex_Shader]v[Pixel_Shader]p"));
    EXPECT_EQ(renderer.sources, (Sources{{0, "bad [Vertex_Shader]v"}}));
}

TEST_F(GpuProgramTest, keeps_the_stages_before_a_failing_one) {
    EXPECT_FALSE(load("[Vertex_Shader]v[Pixel_Shader]p[Geometry_Shader]bad[Compute_Shader]c"));
    EXPECT_EQ(renderer.sources.size(), 3u);
    EXPECT_TRUE(record().shader_loaded[GPU_SHADER_VERTEX]);
    EXPECT_TRUE(record().shader_loaded[GPU_SHADER_PIXEL]);
    EXPECT_FALSE(record().shader_loaded[GPU_SHADER_GEOMETRY]);
    EXPECT_FALSE(record().shader_loaded[GPU_SHADER_COMPUTE]);
    EXPECT_STREQ(program->get_shader_source_code(GPU_SHADER_PIXEL), "p");
    EXPECT_EQ(program->get_shader_source_code(GPU_SHADER_GEOMETRY), nullptr);
}

TEST_F(GpuProgramTest, refuses_null_and_empty_texts) {
    EXPECT_FALSE(program->load_from_memory(&renderer, nullptr, 5));
    EXPECT_FALSE(program->load_from_memory(&renderer, "[Compute_Shader]c", 0));
    EXPECT_FALSE(program->shader_load_from_memory(&renderer, GPU_SHADER_VERTEX, nullptr, 5));
    EXPECT_FALSE(program->shader_load_from_memory(&renderer, GPU_SHADER_VERTEX, "v", 0));
    EXPECT_TRUE(renderer.sources.empty());
}

TEST_F(GpuProgramTest, loads_nothing_without_a_renderer) {
    EXPECT_FALSE(program->load_from_memory(nullptr, "[Compute_Shader]c", 17));
    EXPECT_FALSE(program->shader_load_from_memory(nullptr, GPU_SHADER_VERTEX, "v", 1));
    EXPECT_EQ(program->get_shader_source_code(GPU_SHADER_VERTEX), nullptr);
    EXPECT_EQ(program->get_shader_source_code(GPU_SHADER_COMPUTE), nullptr);
}

TEST_F(GpuProgramTest, refuses_stages_outside_the_table) {
    EXPECT_FALSE(program->shader_load_from_memory(&renderer, GPU_SHADER_TYPE(8), "v", 1));
    EXPECT_FALSE(program->shader_load_from_memory(&renderer, GPU_SHADER_TYPE(-1), "v", 1));
    EXPECT_TRUE(renderer.sources.empty());
}

TEST_F(GpuProgramTest, keeps_the_source_up_to_the_size) {
    EXPECT_TRUE(program->shader_load_from_memory(&renderer, GPU_SHADER_VERTEX, "vertex", 3));
    EXPECT_STREQ(program->get_shader_source_code(GPU_SHADER_VERTEX), "ver");
    EXPECT_TRUE(program->shader_load_from_memory(&renderer, GPU_SHADER_VERTEX, "other", ~0ul));
    EXPECT_STREQ(program->get_shader_source_code(GPU_SHADER_VERTEX), "other");
}

TEST_F(GpuProgramTest, a_failure_clears_the_flag_and_leaves_the_last_good_source) {
    program->shader_load_from_memory(&renderer, GPU_SHADER_VERTEX, "good", 4);
    EXPECT_TRUE(record().shader_loaded[GPU_SHADER_VERTEX]);
    EXPECT_FALSE(program->shader_load_from_memory(&renderer, GPU_SHADER_VERTEX, "bad", 3));
    EXPECT_FALSE(record().shader_loaded[GPU_SHADER_VERTEX]);
    EXPECT_STREQ(program->get_shader_source_code(GPU_SHADER_VERTEX), "good");
}

TEST_F(GpuProgramTest, can_compile_its_own_source_again) {
    program->shader_load_from_memory(&renderer, GPU_SHADER_VERTEX, "same", 4);
    EXPECT_TRUE(program->shader_load_from_memory(
        &renderer, GPU_SHADER_VERTEX, program->get_shader_source_code(GPU_SHADER_VERTEX), 4));
    EXPECT_STREQ(program->get_shader_source_code(GPU_SHADER_VERTEX), "same");
}

TEST_F(GpuProgramTest, warns_about_a_stage_that_does_not_compile) {
    const char* const labels[] = {
        "Vertex",  "Pixel", "Geometry",       "Tessellation control", "Tessellation evaluation",
        "Compute", "",      "Direct3D effect"};
    for (int stage = 0; stage < GPU_SHADER_TYPE_COUNT; ++stage) {
        LogCapture log;
        EXPECT_FALSE(program->shader_load_from_memory(&renderer, GPU_SHADER_TYPE(stage), "bad", 3));
        EXPECT_EQ(log.messages(), (Calls{"<!> GPU program prog - " + std::string(labels[stage]) +
                                         " shader: bad " + std::to_string(stage)}));
    }
}

TEST_F(GpuProgramTest, may_have_a_name_longer_than_any_log_line) {
    program->set_name(std::string(200000, 'n').c_str());
    LogCapture log;
    EXPECT_FALSE(program->shader_load_from_memory(&renderer, GPU_SHADER_VERTEX, "bad", 3));
    ASSERT_EQ(log.messages().size(), 1u);
    EXPECT_EQ(log.messages()[0].rfind("<!> GPU program nnn", 0), 0u);
    EXPECT_LT(log.messages()[0].size(), 70000u);
}

TEST_F(GpuProgramTest, says_nothing_about_a_failure_without_a_log) {
    renderer.leaves_log = false;
    LogCapture log;
    EXPECT_FALSE(program->shader_load_from_memory(&renderer, GPU_SHADER_VERTEX, "bad", 3));
    EXPECT_TRUE(log.messages().empty());
}

TEST_F(GpuProgramTest, collects_the_messages_of_all_stages) {
    EXPECT_STREQ(program->get_shader_error_messages(), "");
    for (int stage : {7, 6, 5, 4, 3, 2, 1, 0})
        program->shader_load_from_memory(&renderer, GPU_SHADER_TYPE(stage), "bad", 3);
    for (int pass = 0; pass < 2; ++pass) {
        EXPECT_STREQ(program->get_shader_error_messages(),
                     "\nVertex shader error: bad 0"
                     "\nPixel shader error: bad 1"
                     "\nGeometry shader error: bad 2"
                     "\nTessellation control shader error: bad 3"
                     "\nTessellation evaluation shader error: bad 4"
                     "\nCompute shader error: bad 5"
                     "\n shader error: bad 6"
                     "\nDirect3D effect shader error: bad 7");
    }
}

TEST_F(GpuProgramTest, keeps_a_log_after_a_later_success) {
    program->shader_load_from_memory(&renderer, GPU_SHADER_VERTEX, "bad", 3);
    program->shader_load_from_memory(&renderer, GPU_SHADER_VERTEX, "good", 4);
    EXPECT_STREQ(program->get_shader_error_messages(), "\nVertex shader error: bad 0");
}

TEST_F(GpuProgramTest, loads_from_a_file) {
    const TempDir dir;
    EXPECT_TRUE(program->load_from_file(
        &renderer, dir.write("a.glsl", "[Vertex_Shader]v[Pixel_Shader]p").c_str()));
    EXPECT_EQ(renderer.sources, (Sources{{0, "v"}, {1, "p"}}));
    renderer.sources.clear();
    EXPECT_TRUE(program->shader_load_from_file(&renderer, GPU_SHADER_GEOMETRY,
                                               dir.write("g.glsl", "geometry").c_str()));
    EXPECT_EQ(renderer.sources, (Sources{{2, "geometry"}}));
    EXPECT_EQ(renderer.last_size, 9u);
    EXPECT_STREQ(program->get_shader_source_code(GPU_SHADER_GEOMETRY), "geometry");
}

TEST_F(GpuProgramTest, does_not_load_from_what_is_no_shader_file) {
    const TempDir dir;
    const std::string binary("\0\xff[Compute_Shader]c", 19);
    for (const std::string& path :
         {dir.file("missing"), dir.path(), dir.write("empty", ""), dir.write("binary", binary)})
        EXPECT_FALSE(program->load_from_file(&renderer, path.c_str())) << path;
    EXPECT_FALSE(program->load_from_file(&renderer, nullptr));
    EXPECT_FALSE(program->shader_load_from_file(&renderer, GPU_SHADER_VERTEX, nullptr));
    EXPECT_FALSE(
        program->shader_load_from_file(&renderer, GPU_SHADER_VERTEX, dir.file("missing").c_str()));
    EXPECT_TRUE(renderer.sources.empty());
}

TEST_F(GpuProgramTest, an_empty_shader_file_is_an_empty_source) {
    const TempDir dir;
    EXPECT_TRUE(program->shader_load_from_file(&renderer, GPU_SHADER_VERTEX,
                                               dir.write("empty", "").c_str()));
    EXPECT_EQ(renderer.sources, (Sources{{0, ""}}));
}

TEST_F(GpuProgramTest, is_used_through_the_renderer) {
    record();
    renderer.take_calls();
    EXPECT_TRUE(program->bind(&renderer));
    EXPECT_TRUE(program->unbind(&renderer));
    EXPECT_TRUE(program->activate(&renderer));
    EXPECT_TRUE(program->deactivate(&renderer));
    EXPECT_TRUE(program->run_compute(&renderer, 1, 2, 3));
    EXPECT_TRUE(program->bind_uniforms(&renderer));
    EXPECT_EQ(
        renderer.take_calls(),
        (Calls{"gpu_program_activate(record)", "gpu_program_activate(null)",
               "gpu_program_activate(record)", "gpu_program_activate(null)",
               "gpu_program_run_compute(record, 1, 2, 3)", "gpu_program_bind_uniforms(record)"}));
}

TEST_F(GpuProgramTest, hands_on_what_the_renderer_refuses) {
    for (const char* const name :
         {"gpu_program_activate", "gpu_program_run_compute", "gpu_program_bind_uniforms"})
        renderer.results[name] = false;
    EXPECT_FALSE(program->bind(&renderer));
    EXPECT_FALSE(program->unbind(&renderer));
    EXPECT_FALSE(program->run_compute(&renderer, 1, 1, 1));
    EXPECT_FALSE(program->bind_uniforms(&renderer));
}

TEST_F(GpuProgramTest, cannot_be_used_without_a_renderer) {
    EXPECT_FALSE(program->bind(nullptr));
    EXPECT_FALSE(program->unbind(nullptr));
    EXPECT_FALSE(program->activate(nullptr));
    EXPECT_FALSE(program->deactivate(nullptr));
    EXPECT_FALSE(program->run_compute(nullptr, 1, 1, 1));
    EXPECT_FALSE(program->bind_uniforms(nullptr));
    EXPECT_EQ(program->get_vertex_attrib_location(nullptr, "a"), -1);
    EXPECT_EQ(program->get_uniform_location(nullptr, "a"), -1);
}

TEST_F(GpuProgramTest, asks_the_renderer_for_locations) {
    record();
    renderer.take_calls();
    renderer.numbers["gpu_program_get_vertex_attrib_location"] = 2;
    renderer.numbers["gpu_program_get_uniform_location"] = 5;
    EXPECT_EQ(program->get_vertex_attrib_location(&renderer, "a"), 2);
    EXPECT_EQ(program->get_uniform_location(&renderer, nullptr), 5);
    EXPECT_EQ(renderer.take_calls(), (Calls{"gpu_program_get_vertex_attrib_location(record, \"a\")",
                                            "gpu_program_get_uniform_location(record, null)"}));
}

TEST_F(GpuProgramTest, reports_its_record) {
    record().renderer_id = 42;
    EXPECT_EQ(program->get_renderer_id(), 42);
    EXPECT_EQ(program->get_thread(), record().get_thread());
    EXPECT_EQ(program->get_thread_ptr(), record().get_thread());
    EXPECT_EQ(std::as_const(*program).get_thread(), record().get_thread());
    EXPECT_EQ(std::as_const(*program).get_thread_ptr(), record().get_thread());
    EXPECT_NE(program->get_thread(), program->Node::get_thread());
    program->set_valid_state(true);
    EXPECT_TRUE(program->is_valid());
    EXPECT_TRUE(record().valid);
    program->set_use_generic_vertex_attribs_state(true);
    EXPECT_TRUE(program->get_use_generic_vertex_attribs_state());
    EXPECT_TRUE(record().use_generic_vertex_attribs);
}

TEST_F(GpuProgramTest, marks_its_whole_table_for_the_next_bind) {
    program->set_uniform_1f(nullptr, "u", 1.0f);
    record().find_uniform("u")->dirty = false;
    EXPECT_TRUE(program->need_bind_uniforms());
    EXPECT_TRUE(record().find_uniform("u")->dirty);
    record().kill_uniforms();
    EXPECT_FALSE(program->need_bind_uniforms());
}

TEST_F(GpuProgramTest, replaces_attribute_names_and_refuses_index_16) {
    record().linked = true;
    EXPECT_FALSE(program->set_vertex_attrib_name(16, "height"));
    EXPECT_TRUE(record().linked);
    EXPECT_TRUE(program->set_vertex_attrib_name(10, "height"));
    EXPECT_FALSE(record().linked);
    EXPECT_STREQ(program->get_vertex_attrib_name(10), "height");
    EXPECT_EQ(program->get_vertex_attrib_name(16), nullptr);
}

TEST_F(GpuProgramTest, replaces_the_names_of_automatic_uniforms) {
    EXPECT_STREQ(program->get_model_matrix_uniform_name(), "orvex_ModelMatrix");
    EXPECT_STREQ(program->get_view_matrix_uniform_name(), "orvex_ViewMatrix");
    EXPECT_STREQ(program->get_projection_matrix_uniform_name(), "orvex_ProjectionMatrix");
    EXPECT_STREQ(program->get_model_view_matrix_uniform_name(), "orvex_ModelViewMatrix");
    EXPECT_STREQ(program->get_model_view_projection_matrix_uniform_name(),
                 "orvex_ModelViewProjectionMatrix");
    program->set_model_matrix_uniform_name("m");
    program->set_view_matrix_uniform_name("v");
    program->set_projection_matrix_uniform_name("p");
    program->set_model_view_matrix_uniform_name("mv");
    program->set_model_view_projection_matrix_uniform_name(nullptr);
    EXPECT_STREQ(program->get_model_matrix_uniform_name(), "m");
    EXPECT_STREQ(record().get_view_matrix_uniform_name(), "v");
    EXPECT_STREQ(program->get_projection_matrix_uniform_name(), "p");
    EXPECT_STREQ(program->get_view_matrix_uniform_name(), "v");
    EXPECT_STREQ(program->get_model_view_matrix_uniform_name(), "mv");
    EXPECT_EQ(program->get_model_view_projection_matrix_uniform_name(), nullptr);
}

TEST_F(GpuProgramTest, cleans_up_api_objects_with_a_renderer) {
    program->ub_init(&renderer, "block");
    record();
    renderer.take_calls();
    EXPECT_TRUE(program->_cleanup(&renderer));
    EXPECT_EQ(renderer.take_calls(),
              (Calls{"uniform_buffer_unmap(block)", "uniform_buffer_kill(block)",
                     "gpu_program_kill(record)"}));
    EXPECT_EQ(record().uniform_buffer, nullptr);
    EXPECT_EQ(program->get_model_matrix_uniform_name(), nullptr);
    EXPECT_TRUE(program->_cleanup(&renderer)) << "a second time";
    EXPECT_EQ(renderer.take_calls(), (Calls{"gpu_program_kill(record)"}));
}

TEST_F(GpuProgramTest, cleans_up_its_texts_without_a_renderer) {
    load("[Compute_Shader]c");
    program->ub_init(nullptr, "block");
    renderer.take_calls();
    EXPECT_TRUE(program->_cleanup(nullptr));
    EXPECT_TRUE(renderer.take_calls().empty());
    EXPECT_EQ(program->get_shader_source_code(GPU_SHADER_COMPUTE), nullptr);
    EXPECT_EQ(record().uniform_buffer, nullptr);
    EXPECT_EQ(record().gl_program, 1u) << "the API program outlives the resource";
}

TEST_F(GpuProgramTest, dies_with_its_last_reference) {
    record();
    renderer.take_calls();
    program->add_ref();
    EXPECT_EQ(program->release(&renderer, nullptr), 0);
    EXPECT_EQ(renderer.take_calls(), (Calls{"gpu_program_kill(record)"}));
    program = nullptr;
}

TEST_F(GpuProgramTest, makes_its_uniform_buffer_with_the_program) {
    record().gl_program = 9;
    EXPECT_TRUE(program->ub_init(&renderer, "block"));
    record();
    ASSERT_NE(renderer.record->uniform_buffer, nullptr);
    EXPECT_STREQ(renderer.record->uniform_buffer->name, "block");
    const UniformBufferData* const block = renderer.record->uniform_buffer;
    renderer.take_calls();
    EXPECT_TRUE(program->ub_init(&renderer, std::string(70, 'b').c_str()));
    EXPECT_EQ(renderer.record->uniform_buffer, block);
    EXPECT_EQ(block->name, std::string(63, 'b'));
    EXPECT_EQ(renderer.take_calls(), (Calls{"uniform_buffer_initialize(block, 9)"}));
    EXPECT_TRUE(program->ub_init(&renderer, "b"));
    EXPECT_STREQ(block->name, "b");
}

TEST_F(GpuProgramTest, keeps_the_block_name_without_a_renderer) {
    EXPECT_FALSE(program->ub_init(&renderer, nullptr));
    EXPECT_EQ(record().uniform_buffer, nullptr);
    EXPECT_FALSE(program->ub_init(nullptr, "block"));
    ASSERT_NE(record().uniform_buffer, nullptr);
    EXPECT_STREQ(record().uniform_buffer->name, "block");
}

TEST_F(GpuProgramTest, does_nothing_without_a_uniform_buffer) {
    record();
    renderer.take_calls();
    EXPECT_FALSE(program->ub_bind(&renderer));
    EXPECT_FALSE(program->ub_bind_base(&renderer, 1));
    EXPECT_FALSE(program->ub_unbind(&renderer));
    EXPECT_EQ(program->ub_map(&renderer), nullptr);
    EXPECT_FALSE(program->ub_unmap(&renderer));
    EXPECT_FALSE(program->ub_cleanup(&renderer));
    EXPECT_FALSE(program->ub_set_value_ui64(&renderer, 0, 1));
    EXPECT_TRUE(renderer.take_calls().empty());
}

TEST_F(GpuProgramTest, uses_its_uniform_buffer_through_the_renderer) {
    program->ub_init(&renderer, "block");
    record();
    renderer.take_calls();
    EXPECT_TRUE(program->ub_bind(&renderer));
    EXPECT_TRUE(program->ub_bind_base(&renderer, 3));
    EXPECT_EQ(record().uniform_buffer->binding, 3u);
    EXPECT_TRUE(program->ub_unbind(&renderer));
    EXPECT_EQ(program->ub_map(&renderer), renderer.store);
    EXPECT_TRUE(program->ub_unmap(&renderer));
    EXPECT_TRUE(program->ub_cleanup(&renderer));
    EXPECT_EQ(renderer.take_calls(),
              (Calls{"uniform_buffer_bind(block)", "uniform_buffer_bind_base(block)",
                     "uniform_buffer_unbind(block)", "uniform_buffer_map(block)",
                     "uniform_buffer_unmap(block)", "uniform_buffer_kill(block)"}));
    EXPECT_EQ(record().uniform_buffer, nullptr);
}

TEST_F(GpuProgramTest, refuses_uniform_buffer_work_without_a_renderer) {
    program->ub_init(&renderer, "block");
    EXPECT_FALSE(program->ub_bind(nullptr));
    EXPECT_FALSE(program->ub_bind_base(nullptr, 4));
    EXPECT_EQ(record().uniform_buffer->binding, 4u) << "the binding is stored first";
    EXPECT_FALSE(program->ub_unbind(nullptr));
    EXPECT_EQ(program->ub_map(nullptr), nullptr);
    EXPECT_FALSE(program->ub_unmap(nullptr));
    EXPECT_TRUE(program->ub_cleanup(nullptr));
    EXPECT_EQ(record().uniform_buffer, nullptr);
}

TEST_F(GpuProgramTest, writes_64_bit_values_into_the_mapped_buffer) {
    program->ub_init(&renderer, "block");
    EXPECT_FALSE(program->ub_set_value_ui64(nullptr, 0, 5)) << "not mapped";
    program->ub_map(&renderer);
    EXPECT_TRUE(program->ub_set_value_ui64(nullptr, 0, 5));
    EXPECT_TRUE(program->ub_set_value_ui64(&renderer, 3, ~0ull));
    EXPECT_FALSE(program->ub_set_value_ui64(nullptr, 4, 6)) << "past the end";
    EXPECT_FALSE(program->ub_set_value_ui64(nullptr, ~0ul / 8 + 1, 6));
    EXPECT_EQ(renderer.store[0], 5u);
    EXPECT_EQ(renderer.store[3], ~0ull);
    program->ub_unmap(&renderer);
    EXPECT_FALSE(program->ub_set_value_ui64(nullptr, 0, 7));
    EXPECT_EQ(renderer.store[0], 5u);
}

TEST_F(GpuProgramTest, writes_only_into_the_part_that_is_mapped) {
    program->ub_init(&renderer, "block");
    record().uniform_buffer->mapped = renderer.store + 2;
    record().uniform_buffer->mapped_size = 12;
    EXPECT_TRUE(program->ub_set_value_ui64(nullptr, 0, 5));
    EXPECT_FALSE(program->ub_set_value_ui64(nullptr, 1, 6));
    EXPECT_EQ(renderer.store[2], 5u);
    EXPECT_EQ(renderer.store[3], 0u);
}

} // namespace

} // namespace orvex_test
