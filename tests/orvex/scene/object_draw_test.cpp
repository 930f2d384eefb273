#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "object_tree.h"
#include "orvex/math/mat4.h"
#include "orvex/math/vec4.h"
#include "orvex/renderer/records/gpu_program_data.h"
#include "orvex/renderer/records/gpu_program_uniform.h"
#include "orvex/scene/object.h"
#include "tests/support/fake_renderer.h"

namespace orvex_test {

namespace {

using orvex::GpuProgramData;
using orvex::GpuProgramUniform;
using orvex::mat4;
using orvex::Node;
using orvex::Object;
using orvex::Renderer;
using orvex::vec4;
using orvex_test::FakeRenderer;
using orvex_test::ObjectTree;

using Calls = std::vector<std::string>;

/// Keeps the matrices that the fixed pipeline was given, and has camera matrices and a viewport of
/// its own.
class MatrixRenderer : public FakeRenderer {
public:
    MatrixRenderer() {
        projection_matrix.init_scale(2.0f, 3.0f, 5.0f);
        view_matrix.init_translate(7.0f, 11.0f, 13.0f);
        set_viewport(10, -20, 300, 400);
        ignored = {"get_projection_matrix", "get_view_matrix", "get_viewport_ptr"};
        name_pointer(&active, "program");
        take_calls();
    }
    void gl2_matrix_load(float* projection, float* view, float* model, float* texture) override {
        calls.emplace_back("gl2_matrix_load()");
        loaded_projection = projection;
        loaded_view = view;
        EXPECT_EQ(model, nullptr);
        EXPECT_EQ(texture, nullptr);
    }

    GpuProgramData active;
    mat4 loaded_projection;
    mat4 loaded_view;
};

bool same_bits(const mat4& a, const mat4& b) {
    return std::memcmp(a.ptr(), b.ptr(), sizeof(mat4)) == 0;
}

/// The names of the uniforms that a program was given, in the order of the first time.
Calls uniform_names(GpuProgramData& program) {
    Calls names;
    for (unsigned long i = 0; i < program.get_num_uniforms(); ++i)
        if (const GpuProgramUniform* uniform = program.get_uniforms_list()[i])
            names.emplace_back(uniform->name);
    return names;
}

const Calls all_names = {
    "orvex_ModelMatrix",     "orvex_ViewMatrix",           "orvex_ProjectionMatrix",
    "orvex_ModelViewMatrix", "orvex_ViewProjectionMatrix", "orvex_ModelViewProjectionMatrix",
    "orvex_Viewport"};

class AutomaticUniforms : public testing::Test {
protected:
    AutomaticUniforms() {
        object.set_position(1, 2, 3);
        object.set_orientation_euler_xyz(10, 20, 30);
    }
    const mat4& uniform(const char* name) { return program.find_uniform(name)->m4f; }

    MatrixRenderer renderer;
    GpuProgramData program;
    Object object;
};

TEST_F(AutomaticUniforms, come_in_their_order_and_with_their_values) {
    object.render_apply_automatic_uniforms(&renderer, &program, false);
    EXPECT_EQ(uniform_names(program), all_names);
    EXPECT_TRUE(renderer.calls.empty());

    const mat4 model = object.get_absolute_transform();
    const mat4 model_view = renderer.view_matrix * model;
    EXPECT_TRUE(same_bits(uniform("orvex_ModelMatrix"), model));
    EXPECT_TRUE(same_bits(uniform("orvex_ViewMatrix"), renderer.view_matrix));
    EXPECT_TRUE(same_bits(uniform("orvex_ProjectionMatrix"), renderer.projection_matrix));
    EXPECT_TRUE(same_bits(uniform("orvex_ModelViewMatrix"), model_view));
    EXPECT_TRUE(same_bits(uniform("orvex_ViewProjectionMatrix"),
                          renderer.projection_matrix * renderer.view_matrix));
    EXPECT_TRUE(same_bits(uniform("orvex_ModelViewProjectionMatrix"),
                          renderer.projection_matrix * model_view));
    EXPECT_EQ(program.find_uniform("orvex_Viewport")->f, vec4(10, -20, 300, 400));
}

TEST_F(AutomaticUniforms, take_the_absolute_transform_of_a_child) {
    Object* parent = new Object;
    Object* child = new Object;
    parent->add_child(child);
    parent->set_position(1, 0, 0);
    child->set_position(0, 2, 0);
    child->render_apply_automatic_uniforms(&renderer, &program, false);
    EXPECT_EQ(uniform("orvex_ModelMatrix").ptr()[12], 1.0f);
    EXPECT_EQ(uniform("orvex_ModelMatrix").ptr()[13], 2.0f);
    parent->kill(nullptr, nullptr);
}

TEST_F(AutomaticUniforms, pay_no_heed_to_the_matrices_of_the_object) {
    mat4 other;
    other.init_scale(9.0f, 9.0f, 9.0f);
    object.set_projection_matrix(other, nullptr);
    object.set_view_matrix(other, nullptr);
    object.render_apply_automatic_uniforms(&renderer, &program, false);
    EXPECT_TRUE(same_bits(uniform("orvex_ViewMatrix"), renderer.view_matrix));
    EXPECT_TRUE(same_bits(uniform("orvex_ProjectionMatrix"), renderer.projection_matrix));
}

TEST_F(AutomaticUniforms, run_beside_the_fixed_pipeline_when_both_are_asked_for) {
    object.render_apply_automatic_uniforms(&renderer, &program, true);
    EXPECT_EQ(renderer.calls, Calls{"gl2_matrix_load()"});
    EXPECT_EQ(uniform_names(program), all_names);
}

TEST_F(AutomaticUniforms, without_a_program_load_the_fixed_pipeline_even_if_not_asked_to) {
    object.render_apply_automatic_uniforms(&renderer, nullptr, false);
    EXPECT_EQ(renderer.calls, Calls{"gl2_matrix_load()"});
    EXPECT_TRUE(same_bits(renderer.loaded_projection, renderer.projection_matrix));
    EXPECT_TRUE(
        same_bits(renderer.loaded_view, renderer.view_matrix * object.get_absolute_transform()));
}

TEST_F(AutomaticUniforms, do_nothing_without_a_renderer) {
    object.render_apply_automatic_uniforms(nullptr, &program, true);
    EXPECT_TRUE(uniform_names(program).empty());
}

TEST_F(AutomaticUniforms, leave_out_the_viewport_without_a_name_for_it) {
    program.set_viewport_uniform_name(nullptr);
    object.render_apply_automatic_uniforms(&renderer, &program, false);
    EXPECT_EQ(uniform_names(program), Calls(all_names.begin(), all_names.end() - 1));
}

struct NameRow {
    const char* name;
    void (GpuProgramData::*set)(const char*);
    std::size_t position;
};

TEST_F(AutomaticUniforms, leave_out_each_value_that_has_no_name) {
    const NameRow rows[] = {
        {"model", &GpuProgramData::set_model_matrix_uniform_name, 0},
        {"view", &GpuProgramData::set_view_matrix_uniform_name, 1},
        {"projection", &GpuProgramData::set_projection_matrix_uniform_name, 2},
        {"model view", &GpuProgramData::set_model_view_matrix_uniform_name, 3},
        {"view projection", &GpuProgramData::set_view_projection_matrix_uniform_name, 4},
        {"model view projection", &GpuProgramData::set_model_view_projection_matrix_uniform_name,
         5},
        {"viewport", &GpuProgramData::set_viewport_uniform_name, 6},
    };
    for (const NameRow& row : rows) {
        GpuProgramData without;
        (without.*row.set)(nullptr);
        object.render_apply_automatic_uniforms(&renderer, &without, false);
        Calls expected = all_names;
        expected.erase(expected.begin() + static_cast<std::ptrdiff_t>(row.position));
        EXPECT_EQ(uniform_names(without), expected) << row.name;
    }
}

TEST_F(AutomaticUniforms, go_under_the_names_a_program_chose) {
    program.set_model_matrix_uniform_name("my_model");
    object.render_apply_automatic_uniforms(&renderer, &program, false);
    EXPECT_EQ(uniform_names(program).front(), "my_model");
}

const Calls tripod_lines = {
    "set_line_width(2)", "render_line((0, 0, 0, 1), (1, 0, 0, 1), (2, 0, 0, 1), (1, 0, 0, 1))",
    "render_line((0, 0, 0, 1), (0, 1, 0, 1), (0, 3, 0, 1), (0, 1, 0, 1))",
    "render_line((0, 0, 0, 1), (0, 0, 1, 1), (0, 0, 4, 1), (0, 0, 1, 1))", "set_line_width(1)"};

const Calls fixed_start = {"gpu_program_get_active_program()", "gpu_program_deactivate(null)",
                           "gl2_matrix_load()"};

Calls joined(std::initializer_list<Calls> parts) {
    Calls all;
    for (const Calls& part : parts)
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

TEST(ObjectTripod, draws_three_axes) {
    FakeRenderer renderer;
    Object object;
    object.render_tripod(&renderer, vec4(2, 3, 4, 9));
    EXPECT_EQ(renderer.calls, tripod_lines);
    object.render_tripod(nullptr, vec4(2, 3, 4, 9));
}

TEST(ObjectTripod, is_shown_by_the_fixed_pipeline_with_the_program_put_back) {
    MatrixRenderer renderer;
    Object object;
    object.set_tripod_size(2, 3, 4, nullptr);
    renderer.active_program = &renderer.active;
    object.display_tripod(&renderer, nullptr);
    EXPECT_EQ(renderer.calls,
              joined({fixed_start, tripod_lines, {"gpu_program_activate(program)"}}));
    renderer.take_calls();
    renderer.active_program = nullptr;
    object.display_tripod(&renderer, nullptr);
    EXPECT_EQ(renderer.calls, joined({fixed_start, tripod_lines}));
    renderer.take_calls();
    object.display_tripod(nullptr, &object);
    EXPECT_TRUE(renderer.calls.empty());
}

TEST(ObjectTripod, of_a_parent_is_complete_before_the_children_s) {
    MatrixRenderer renderer;
    ObjectTree<Object> tree;
    tree.root->set_tripod_size(2, 3, 4, tree.root);
    tree.root->display_tripod(&renderer, tree.root);
    const Calls one = joined({fixed_start, tripod_lines});
    EXPECT_EQ(renderer.calls, joined({one, one, one}));
}

Calls grid_lines() {
    const std::string grey = "(0.7, 0.7, 0.7, 1)";
    const auto line = [&](const char* from, const char* to) {
        return std::string("render_line(") + from + ", " + grey + ", " + to + ", " + grey + ")";
    };
    return {"set_line_width(1)",
            line("(-2, 0, -1, 1)", "(-2, 0, 1, 1)"),
            line("(0, 0, -1, 1)", "(0, 0, 1, 1)"),
            line("(2, 0, -1, 1)", "(2, 0, 1, 1)"),
            line("(-2, 0, -1, 1)", "(2, 0, -1, 1)"),
            line("(-2, 0, 1, 1)", "(2, 0, 1, 1)"),
            "set_line_width(1)"};
}

Calls grid_frame() {
    const std::string yellow = "(1, 1, 0, 1)";
    const auto line = [&](const char* from, const char* to) {
        return std::string("render_line(") + from + ", " + yellow + ", " + to + ", " + yellow + ")";
    };
    return {"set_line_width(2)",
            line("(-2, 0, -1, 1)", "(-2, 0, 1, 1)"),
            line("(2, 0, -1, 1)", "(2, 0, 1, 1)"),
            line("(-2, 0, -1, 1)", "(2, 0, -1, 1)"),
            line("(-2, 0, 1, 1)", "(2, 0, 1, 1)"),
            line("(-2, 0, 0, 1)", "(2, 0, 0, 1)"),
            line("(0, 0, -1, 1)", "(0, 0, 1, 1)"),
            "set_line_width(1)"};
}

TEST(ObjectGrid, draws_grey_lines_then_the_yellow_frame_and_axes) {
    FakeRenderer renderer;
    Object object;
    object.render_grid(&renderer, 4, 2, 2, 1, true, true);
    EXPECT_EQ(renderer.calls, joined({grid_lines(), grid_frame()}));
}

TEST(ObjectGrid, the_frame_follows_the_object_s_lines_and_not_the_parameter) {
    FakeRenderer renderer;
    Object object;
    object.render_grid(&renderer, 4, 2, 2, 1, true, false);
    EXPECT_EQ(renderer.take_calls(), joined({grid_lines(), grid_frame()}));
    object.render_grid(&renderer, 4, 2, 2, 1, false, false);
    EXPECT_EQ(renderer.take_calls(), grid_frame());
    object.set_grid_params(1, 1, 1, 1, false, true);
    object.render_grid(&renderer, 4, 2, 2, 1, true, true);
    EXPECT_EQ(renderer.take_calls(), grid_lines());
    object.render_grid(&renderer, 4, 2, 2, 1, false, true);
    EXPECT_TRUE(renderer.calls.empty());
    object.render_grid(nullptr, 4, 2, 2, 1, true, true);
}

TEST(ObjectGrid, divisions_of_zero_and_below_are_survived) {
    FakeRenderer renderer;
    Object object;
    object.set_grid_params(1, 1, 1, 1, false, true);
    object.render_grid(&renderer, 4, 2, 0, -1, true, true);
    EXPECT_EQ(renderer.count("render_line"), 1);
    renderer.take_calls();
    object.render_grid(&renderer, 4, 2, std::numeric_limits<int>::min(), -5, true, true);
    EXPECT_EQ(renderer.count("render_line"), 0);
}

TEST(ObjectGrid, is_shown_by_the_fixed_pipeline_with_the_program_put_back) {
    MatrixRenderer renderer;
    Object object;
    object.set_grid_params(4, 2, 2, 1, true, false);
    renderer.active_program = &renderer.active;
    object.display_grid(&renderer, nullptr);
    EXPECT_EQ(renderer.calls,
              joined({fixed_start, grid_lines(), grid_frame(), {"gpu_program_activate(program)"}}));
    renderer.take_calls();
    object.display_grid(nullptr, &object);
    EXPECT_TRUE(renderer.calls.empty());
}

TEST(ObjectGrid, a_new_object_has_ten_by_ten_lines_of_size_ten) {
    MatrixRenderer renderer;
    Object object;
    object.display_grid(&renderer, nullptr);
    EXPECT_EQ(renderer.count("render_line"), 11 + 11 + 6);
    EXPECT_EQ(renderer.calls[4],
              "render_line((-5, 0, -5, 1), (0.7, 0.7, 0.7, 1), (-5, 0, 5, 1), (0.7, 0.7, 0.7, 1))");
}

TEST(ObjectGrid, reaches_the_objects_of_the_subtree) {
    MatrixRenderer renderer;
    ObjectTree<Object> tree;
    tree.root->display_grid(&renderer, tree.root);
    EXPECT_EQ(renderer.count("gl2_matrix_load"), 3);
}

TEST(ObjectRender, shows_grid_then_tripod_if_they_are_on) {
    MatrixRenderer renderer;
    Object object;
    object.set_grid_params(4, 2, 2, 1, true, true);
    object.set_tripod_size(2, 3, 4, nullptr);
    object.render(&renderer, nullptr);
    EXPECT_TRUE(renderer.calls.empty());
    object.set_display_tripod_state(true, nullptr);
    object.render(&renderer, nullptr);
    EXPECT_EQ(renderer.take_calls(), joined({fixed_start, tripod_lines}));
    object.set_display_grid_state(true, nullptr);
    object.render(&renderer, nullptr);
    EXPECT_EQ(renderer.take_calls(),
              joined({fixed_start, grid_lines(), grid_frame(), fixed_start, tripod_lines}));
    object.set_render_state(false, nullptr);
    object.render(&renderer, nullptr);
    EXPECT_TRUE(renderer.calls.empty());
}

TEST(ObjectRender, shows_this_object_s_tripod_through_the_virtual_operations) {
    class Own : public Object {
    public:
        void render_tripod(Renderer*, const vec4& size) override { seen = size; }
        void render_apply_automatic_uniforms(Renderer*, GpuProgramData* program,
                                             bool use_fixed) override {
            EXPECT_EQ(program, nullptr);
            EXPECT_TRUE(use_fixed);
            ++applied;
        }
        vec4 seen;
        int applied = 0;
    } object;
    FakeRenderer renderer;
    object.set_tripod_size(5, 6, 7, nullptr);
    object.set_display_tripod_state(true, nullptr);
    object.render(&renderer, nullptr);
    EXPECT_EQ(object.seen, vec4(5, 6, 7, 1));
    EXPECT_EQ(object.applied, 1);
}

} // namespace

} // namespace orvex_test
