#include "orvex/geometry/points/vertex_pool.h"

#include <new>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orvex/geometry/points/point.h"
#include "orvex/math/aligned_new.h"
#include "orvex/renderer/records/gpu_program_data.h"
#include "orvex/renderer/records/vertex_pool_data.h"
#include "tests/orvex/geometry/mesh/owned_mesh.h"
#include "tests/orvex/geometry/printers.h"
#include "tests/support/fake_renderer.h"

namespace orvex_test {

using namespace orvex;

namespace {

using Calls = std::vector<std::string>;
using OwnedPool = Owned<VertexPool>;

const vec4 white(1.0f, 1.0f, 1.0f, 1.0f);
const vec4 red(1.0f, 0.0f, 0.0f, 1.0f);

OwnedPool make_pool(unsigned long count, bool separate) {
    OwnedPool pool(new VertexPool);
    EXPECT_TRUE(pool->init_pool(count, separate));
    return pool;
}

TEST(VertexPool, is_an_object_without_points_at_first) {
    const OwnedPool pool(new VertexPool);
    EXPECT_TRUE(pool->is_type_of(NODE_TYPE_OBJECT));
    EXPECT_TRUE(pool->is_type_of(NODE_TYPE_VERTEX_POOL));
    EXPECT_EQ(pool->get_pool_size(), 0u);
    EXPECT_EQ(pool->get_pool_ptr(), nullptr);
    EXPECT_EQ(pool->get_vertex(0), nullptr);
    EXPECT_EQ(pool->get_vertex_v2(0).position, vec4());
    EXPECT_EQ(pool->get_vertex_position(0), vec4());
    EXPECT_EQ(pool->get_vertex_color(0), vec4());
    EXPECT_EQ(pool->get_renderer_id(), 0);
    pool->set_vertex_position(0, red);
    pool->set_vertex_color(0, red);
    EXPECT_FALSE(pool->get_vertex_pool_data()->vertices_need_update);
}

TEST(VertexPoolData, starts_with_the_defaults_of_a_drawable_pool) {
    const VertexPoolData data;
    EXPECT_EQ(data.num_vertices, 0u);
    EXPECT_EQ(data.vertex_array_id, 0u);
    EXPECT_EQ(data.vertex_buffer_id, 0u);
    EXPECT_EQ(data.buffer_usage, BUFFER_USAGE_STATIC_DRAW);
    EXPECT_EQ(data.mapped_vertex_buffer, nullptr);
    EXPECT_FALSE(data.vertices_need_update || data.positions_need_update ||
                 data.colors_need_update);
    EXPECT_TRUE(data.has_color && data.has_normal && data.has_tangent);
    EXPECT_EQ(data.renderer_id, 0);
    EXPECT_EQ(data.render_start_offset, 0);
    EXPECT_EQ(data.render_num_vertices, -1);
    EXPECT_TRUE(data.use_generic_vertex_attribs);
    EXPECT_FALSE(data.separate_vertex_arrays);
    EXPECT_EQ(data.position.attrib_location, 0);
    EXPECT_EQ(data.color.attrib_location, 1);
    EXPECT_EQ(data.normal.attrib_location, 2);
}

TEST(VertexPool, makes_white_points_at_the_origin_in_both_layouts) {
    for (const bool separate : {false, true}) {
        const OwnedPool pool = make_pool(3, separate);
        EXPECT_EQ(pool->get_pool_size(), 3u);
        EXPECT_EQ(pool->get_num_vertices(nullptr), 3u);
        EXPECT_EQ(pool->get_pool_ptr() == nullptr, separate);
        EXPECT_EQ(pool->get_vertex_pool_data()->separate_vertex_arrays, separate);
        for (unsigned long i = 0; i < 3; ++i) {
            EXPECT_EQ(pool->get_vertex_position(i), vec4(0.0f, 0.0f, 0.0f, 1.0f));
            EXPECT_EQ(pool->get_vertex_color(i), white);
            EXPECT_EQ(pool->get_vertex_v2(i).position, vec4(0.0f, 0.0f, 0.0f, 1.0f));
            EXPECT_EQ(pool->get_vertex_v2(i).color, white);
        }
        EXPECT_EQ(pool->get_vertex_v2(3).color, vec4());
    }
}

TEST(VertexPool, counts_no_points_of_its_children) {
    const OwnedPool pool = make_pool(3, false);
    VertexPool* const child = new VertexPool;
    child->init_pool(5, false);
    pool->add_child(child);
    EXPECT_EQ(pool->get_num_vertices(pool.get()), 3u);
}

TEST(VertexPool, refuses_a_count_of_zero_and_stays_as_it_was) {
    for (const bool separate : {false, true}) {
        const OwnedPool pool = make_pool(2, separate);
        pool->set_vertex_color(1, red);
        for (const bool asked : {false, true})
            EXPECT_FALSE(pool->init_pool(0, asked));
        EXPECT_EQ(pool->get_pool_size(), 2u);
        EXPECT_EQ(pool->get_vertex_pool_data()->separate_vertex_arrays, separate);
        EXPECT_EQ(pool->get_vertex_color(1), red);
    }
}

TEST(VertexPool, replaces_its_points) {
    const OwnedPool pool = make_pool(2, false);
    pool->set_vertex_color(1, red);
    EXPECT_TRUE(pool->init_pool(4, false));
    EXPECT_EQ(pool->get_pool_size(), 4u);
    EXPECT_EQ(pool->get_vertex_color(1), white);
    EXPECT_TRUE(pool->init_pool(5, true));
    EXPECT_EQ(pool->get_pool_ptr(), nullptr);
    EXPECT_EQ(pool->get_vertex_color(4), white);
}

TEST(VertexPool, throws_when_memory_runs_out_and_reads_as_empty) {
    for (const bool separate : {false, true}) {
        const OwnedPool pool = make_pool(2, separate);
        EXPECT_THROW(pool->init_pool(1ul << 60, separate), std::bad_alloc);
        EXPECT_EQ(pool->get_vertex(0), nullptr);
        EXPECT_EQ(pool->get_vertex_position(0), vec4());
        EXPECT_EQ(pool->get_vertex_v2(0).color, vec4());
        pool->set_vertex_position(0, red);
        pool->set_vertex_color(0, red);
        EXPECT_FALSE(pool->get_vertex_pool_data()->has_points());
        EXPECT_TRUE(pool->init_pool(2, separate));
        EXPECT_EQ(pool->get_vertex_color(1), white);
    }
}

TEST(VertexPool, once_separate_reads_as_empty_after_an_interleaved_start) {
    const OwnedPool pool = make_pool(2, true);
    EXPECT_TRUE(pool->init_pool(2, false));
    EXPECT_TRUE(pool->get_vertex_pool_data()->separate_vertex_arrays);
    EXPECT_NE(pool->get_pool_ptr(), nullptr);
    EXPECT_FALSE(pool->get_vertex_pool_data()->has_points());
    pool->set_vertex_position(0, red);
    pool->set_vertex_color(0, red);
    EXPECT_EQ(pool->get_vertex_position(0), vec4());
    EXPECT_EQ(pool->get_vertex_color(0), vec4());
    EXPECT_EQ(pool->get_vertex_v2(0).color, vec4());
    EXPECT_FALSE(pool->get_vertex_pool_data()->positions_need_update);
    EXPECT_FALSE(pool->get_vertex_pool_data()->colors_need_update);
    EXPECT_TRUE(pool->get_vertex_pool_data()->init_v2(2, false));
    EXPECT_EQ(pool->get_vertex_color(0), white);
}

TEST(VertexPool, gives_records_of_an_interleaved_pool_only) {
    const OwnedPool interleaved = make_pool(2, false);
    EXPECT_EQ(interleaved->get_vertex(1), interleaved->get_pool_ptr() + 1);
    EXPECT_EQ(interleaved->get_vertex(2), nullptr);
    const OwnedPool separate = make_pool(2, true);
    EXPECT_EQ(separate->get_vertex(0), nullptr);
}

TEST(VertexPool, stores_positions_and_marks_what_changed) {
    const OwnedPool pool = make_pool(4, false);
    VertexPoolData* const data = pool->get_vertex_pool_data();
    pool->set_vertex_position(0, vec4(1.0f, 2.0f, 3.0f, 0.5f));
    EXPECT_TRUE(data->vertices_need_update);
    pool->set_vertex_position(1, vec3(4.0f, 5.0f, 6.0f));
    pool->set_vertex_position(2, 7.0f, 8.0f, 9.0f, 0.25f);
    EXPECT_EQ(pool->get_vertex_position(0), vec4(1.0f, 2.0f, 3.0f, 0.5f));
    EXPECT_EQ(pool->get_vertex_position(1), vec4(4.0f, 5.0f, 6.0f, 1.0f));
    EXPECT_EQ(pool->get_vertex_position(2), vec4(7.0f, 8.0f, 9.0f, 0.25f));
    EXPECT_FALSE(data->positions_need_update || data->colors_need_update);
}

TEST(VertexPool, stores_separate_positions_without_w) {
    const OwnedPool pool = make_pool(4, true);
    VertexPoolData* const data = pool->get_vertex_pool_data();
    pool->set_vertex_position(0, vec4(1.0f, 2.0f, 3.0f, 0.5f));
    EXPECT_TRUE(data->positions_need_update);
    pool->set_vertex_position(1, vec3(4.0f, 5.0f, 6.0f));
    pool->set_vertex_position(2, 7.0f, 8.0f, 9.0f, 0.25f);
    EXPECT_EQ(pool->get_vertex_position(0), vec4(1.0f, 2.0f, 3.0f, 1.0f));
    EXPECT_EQ(pool->get_vertex_position(1), vec4(4.0f, 5.0f, 6.0f, 1.0f));
    EXPECT_EQ(pool->get_vertex_v2(2).position, vec4(7.0f, 8.0f, 9.0f, 1.0f));
    data->normal.data[2] = vec3(0.0f, 1.0f, 0.0f);
    EXPECT_EQ(pool->get_vertex_v2(2).normal, vec4(0.0f, 1.0f, 0.0f, 1.0f));
    EXPECT_FALSE(data->vertices_need_update || data->colors_need_update);
}

TEST(VertexPool, colours_of_a_separate_pool_touch_the_colour_flag_alone) {
    const OwnedPool pool = make_pool(2, true);
    VertexPoolData* const data = pool->get_vertex_pool_data();
    pool->set_vertex_color(1, 1.0f, 0.0f, 0.0f, 1.0f);
    EXPECT_EQ(pool->get_vertex_color(1), red);
    EXPECT_TRUE(data->colors_need_update);
    EXPECT_FALSE(data->vertices_need_update || data->positions_need_update);
}

TEST(VertexPool, colours_of_an_interleaved_pool_touch_the_record_flag_alone) {
    const OwnedPool pool = make_pool(2, false);
    VertexPoolData* const data = pool->get_vertex_pool_data();
    pool->set_vertex_color(1, red);
    EXPECT_EQ(pool->get_vertex_color(1), red);
    EXPECT_TRUE(data->vertices_need_update);
    EXPECT_FALSE(data->colors_need_update || data->positions_need_update);
}

TEST(VertexPool, ignores_points_out_of_range) {
    for (const bool separate : {false, true}) {
        const OwnedPool pool = make_pool(2, separate);
        VertexPoolData* const data = pool->get_vertex_pool_data();
        pool->set_vertex_position(2, red);
        pool->set_vertex_color(2, red);
        EXPECT_EQ(pool->get_vertex_position(2), vec4());
        EXPECT_EQ(pool->get_vertex_color(2), vec4());
        EXPECT_FALSE(data->vertices_need_update || data->positions_need_update ||
                     data->colors_need_update);
    }
}

TEST(VertexPool, stores_what_is_drawn_without_a_check) {
    const OwnedPool pool = make_pool(2, false);
    pool->set_render_start_offset(100);
    pool->set_render_num_vertices(-7);
    EXPECT_EQ(pool->get_vertex_pool_data()->render_start_offset, 100);
    EXPECT_EQ(pool->get_vertex_pool_data()->render_num_vertices, -7);
}

TEST(VertexPoolData, frees_aligned_arrays_that_a_host_put_in) {
    VertexPoolData data;
    EXPECT_TRUE(data.init_v2(2, true));
    EXPECT_TRUE(data.cleanup());
    EXPECT_EQ(data.num_vertices, 2u);
    EXPECT_FALSE(data.has_points());
    data.color.data = AlignedNew_vec4(2, 64, &data.color.raw_ptr);
    data.position.data = AlignedNew_vec3(2, 64, &data.position.raw_ptr);
    EXPECT_TRUE(data.has_points());
    EXPECT_TRUE(data.cleanup());
    EXPECT_EQ(data.color.data, nullptr);
    EXPECT_EQ(data.color.raw_ptr, nullptr);
}

TEST(Point, is_white_at_the_origin) {
    const Owned<Point> point(new Point);
    EXPECT_TRUE(point->is_type_of(NODE_TYPE_VERTEX_POOL));
    EXPECT_TRUE(point->is_type_of(NODE_TYPE_POINT));
    EXPECT_EQ(point->get_pool_size(), 1u);
    EXPECT_FALSE(point->get_vertex_pool_data()->separate_vertex_arrays);
    EXPECT_EQ(point->get_vertex_position(0), vec4(0.0f, 0.0f, 0.0f, 1.0f));
    EXPECT_EQ(point->get_vertex_color(0), white);
}

TEST(Point, moves_its_vertex_and_not_its_transform) {
    const Owned<Point> point(new Point(vec3(1.0f, 2.0f, 3.0f)));
    EXPECT_EQ(point->get_vertex_position(0), vec4(1.0f, 2.0f, 3.0f, 1.0f));
    EXPECT_EQ(point->get_vertex_color(0), white);
    point->set_position(4.0f, 5.0f, 6.0f);
    EXPECT_EQ(point->get_vertex_position(0), vec4(4.0f, 5.0f, 6.0f, 1.0f));
    point->set_position(vec3(7.0f, 8.0f, 9.0f));
    EXPECT_EQ(point->get_vertex_position(0), vec4(7.0f, 8.0f, 9.0f, 1.0f));
    EXPECT_EQ(point->get_position(), vec4());
    point->set_color(red);
    EXPECT_EQ(point->get_vertex_color(0), red);
    point->set_color(0.0f, 0.5f, 1.0f, 0.25f);
    EXPECT_EQ(point->get_vertex_color(0), vec4(0.0f, 0.5f, 1.0f, 0.25f));
}

class VertexPoolRendering : public testing::Test {
protected:
    VertexPoolRendering()
        : pool(make_pool(3, false)) {
        renderer.name_pointer(pool->get_vertex_pool_data(), "store");
        renderer.name_pointer(pool->get_pool_ptr(), "points");
        renderer.name_pointer(&program, "program");
        renderer.ignored = {"get_projection_matrix", "get_view_matrix", "get_viewport_ptr"};
    }

    VertexPoolData& store() { return *pool->get_vertex_pool_data(); }

    FakeRenderer renderer;
    GpuProgramData program;
    OwnedPool pool;
};

TEST_F(VertexPoolRendering, without_a_program_takes_the_fixed_pipeline) {
    pool->set_use_fixed_mvp_matrices_state(false, nullptr);
    renderer.ignored.push_back("gl2_matrix_load");
    pool->render(&renderer, nullptr);
    EXPECT_EQ(renderer.take_calls(),
              (Calls{"gpu_program_get_active_program()", "gpu_program_get_active_program()",
                     "vertex_pool_render_prepare(store)", "vertex_pool_render_draw(store)",
                     "vertex_pool_render_finish(store)"}));
    EXPECT_FALSE(store().use_generic_vertex_attribs);
}

TEST_F(VertexPoolRendering, with_a_program_follows_the_program) {
    renderer.active_program = &program;
    pool->set_use_fixed_mvp_matrices_state(false, nullptr);
    for (const bool generic : {true, false}) {
        program.set_use_generic_vertex_attribs_state(generic);
        pool->render(&renderer, nullptr);
        EXPECT_EQ(renderer.take_calls(),
                  (Calls{"gpu_program_get_active_program()", "gpu_program_get_active_program()",
                         "gpu_program_bind_uniforms(program)", "vertex_pool_render_prepare(store)",
                         "vertex_pool_render_draw(store)", "vertex_pool_render_finish(store)"}));
        EXPECT_EQ(store().use_generic_vertex_attribs, generic);
    }
}

TEST_F(VertexPoolRendering, loads_fixed_matrices_if_it_is_to) {
    renderer.active_program = &program;
    pool->render(&renderer, nullptr);
    EXPECT_EQ(renderer.count("gl2_matrix_load"), 1);
}

TEST_F(VertexPoolRendering, draws_the_axes_and_the_grid_of_an_object) {
    pool->set_display_tripod_state(true, nullptr);
    pool->render(&renderer, nullptr);
    EXPECT_EQ(renderer.count("render_line"), 3);
}

TEST_F(VertexPoolRendering, passes_over_a_null_renderer) {
    pool->_render(nullptr);
    pool->render_geometry(nullptr);
    EXPECT_TRUE(store().use_generic_vertex_attribs);
    EXPECT_TRUE(renderer.calls.empty());
}

TEST_F(VertexPoolRendering, kills_gpu_objects_and_frees_its_points_at_the_end) {
    EXPECT_TRUE(pool->_cleanup(&renderer));
    EXPECT_EQ(renderer.take_calls(), Calls{"vertex_pool_kill(store)"});
    EXPECT_EQ(pool->get_pool_ptr(), nullptr);
    EXPECT_EQ(pool->get_pool_size(), 3u);
    EXPECT_EQ(pool->get_vertex(0), nullptr);
    EXPECT_EQ(pool->get_vertex_position(0), vec4());
    EXPECT_EQ(pool->get_vertex_color(0), vec4());
    EXPECT_TRUE(pool->_cleanup(nullptr));
    EXPECT_TRUE(renderer.calls.empty());
}

TEST_F(VertexPoolRendering, maps_its_buffer) {
    int memory = 0;
    store().vertex_buffer_id = 7;
    renderer.pointers["vertex_buffer_map"] = &memory;
    EXPECT_EQ(pool->map_vertex_buffer(&renderer), &memory);
    EXPECT_EQ(pool->get_mapped_vertex_buffer(), &memory);
    EXPECT_TRUE(pool->unmap_vertex_buffer(&renderer));
    EXPECT_EQ(renderer.take_calls(), (Calls{"vertex_buffer_map(7)", "vertex_buffer_unmap(7)"}));
    EXPECT_EQ(pool->map_vertex_buffer(nullptr), nullptr);
    EXPECT_FALSE(pool->unmap_vertex_buffer(nullptr));
}

TEST_F(VertexPoolRendering, becomes_a_shader_storage_buffer) {
    renderer.numbers["shader_storage_buffer_create"] = 9;
    pool->set_vertex_position(1, red);
    EXPECT_TRUE(pool->shader_storage_init(&renderer, BUFFER_USAGE_DYNAMIC_DRAW));
    EXPECT_EQ(renderer.take_calls().front(), "shader_storage_buffer_create(288, 3, points)");
    EXPECT_TRUE(store().vertices_need_update) << "the next draw sends them again";
    EXPECT_EQ(store().vertex_buffer_id, 9u);
    EXPECT_EQ(store().buffer_usage, BUFFER_USAGE_DYNAMIC_DRAW);
    EXPECT_EQ(pool->get_renderer_id(), renderer.getid());
}

TEST_F(VertexPoolRendering, tells_a_storage_buffer_that_could_not_be_made) {
    pool->set_vertex_position(1, red);
    EXPECT_FALSE(pool->shader_storage_init(&renderer, BUFFER_USAGE_DYNAMIC_DRAW));
    EXPECT_EQ(store().vertex_buffer_id, 0u);
    EXPECT_TRUE(store().vertices_need_update);
}

TEST_F(VertexPoolRendering, ends_the_storage_buffer_before_when_it_makes_another) {
    renderer.numbers["shader_storage_buffer_create"] = 9;
    pool->shader_storage_init(&renderer, BUFFER_USAGE_DYNAMIC_DRAW);
    renderer.numbers["shader_storage_buffer_create"] = 10;
    renderer.take_calls();
    EXPECT_TRUE(pool->shader_storage_init(&renderer, BUFFER_USAGE_STATIC_READ));
    EXPECT_EQ(renderer.take_calls(), (Calls{"shader_storage_buffer_kill(9)",
                                            "shader_storage_buffer_create(288, 2, points)"}));
    EXPECT_EQ(store().vertex_buffer_id, 10u);
}

TEST_F(VertexPoolRendering, ends_its_storage_buffer_once) {
    store().vertex_buffer_id = 9;
    EXPECT_TRUE(pool->shader_storage_cleanup(&renderer));
    EXPECT_EQ(renderer.take_calls(), Calls{"shader_storage_buffer_kill(9)"});
    EXPECT_EQ(store().vertex_buffer_id, 0u);
    EXPECT_TRUE(pool->shader_storage_cleanup(&renderer));
    EXPECT_TRUE(renderer.calls.empty());
    EXPECT_FALSE(pool->shader_storage_cleanup(nullptr));
}

TEST_F(VertexPoolRendering, remembers_nothing_of_a_storage_buffer_that_is_gone) {
    store().vertex_buffer_id = 9;
    store().gpu_state.vertex_buffer_bytes = 288;
    store().gpu_state.separate = true;
    EXPECT_TRUE(pool->shader_storage_cleanup(&renderer));
    EXPECT_EQ(store().gpu_state.vertex_buffer_bytes, 0u);
    EXPECT_FALSE(store().gpu_state.separate);
    EXPECT_FALSE(store().gpu_state.vertex_array_stale) << "there is no vertex array";
    store().vertex_buffer_id = 9;
    store().vertex_array_id = 4;
    EXPECT_TRUE(pool->shader_storage_cleanup(&renderer));
    EXPECT_TRUE(store().gpu_state.vertex_array_stale);
}

TEST_F(VertexPoolRendering, forwards_storage_operations_with_its_buffer) {
    int memory = 0;
    store().vertex_buffer_id = 9;
    renderer.pointers["shader_storage_buffer_map_range"] = &memory;
    EXPECT_EQ(pool->shader_storage_buffer_map(&renderer), &memory);
    EXPECT_EQ(pool->get_mapped_vertex_buffer(), &memory);
    EXPECT_TRUE(pool->shader_storage_buffer_unmap(&renderer));
    EXPECT_TRUE(pool->shader_storage_buffer_bind(&renderer));
    EXPECT_TRUE(pool->shader_storage_buffer_bind_base(&renderer, 3));
    EXPECT_TRUE(pool->shader_storage_buffer_unbind(&renderer));
    pool->apply_memory_barriers(&renderer);
    EXPECT_EQ(renderer.take_calls(),
              (Calls{"shader_storage_buffer_map_range(9, 0, 288)", "shader_storage_buffer_unmap(9)",
                     "shader_storage_buffer_bind(9)", "shader_storage_buffer_bind_base(9, 3)",
                     "shader_storage_buffer_bind(0)", "vertex_pool_memory_barriers()"}));
}

TEST_F(VertexPoolRendering, refuses_storage_operations_on_a_separate_pool) {
    pool->init_pool(3, true);
    store().vertex_buffer_id = 9;
    EXPECT_FALSE(pool->shader_storage_init(&renderer, BUFFER_USAGE_DYNAMIC_DRAW));
    EXPECT_FALSE(pool->shader_storage_cleanup(&renderer));
    EXPECT_EQ(pool->shader_storage_buffer_map(&renderer), nullptr);
    EXPECT_FALSE(pool->shader_storage_buffer_bind(&renderer));
    EXPECT_FALSE(pool->shader_storage_buffer_bind_base(&renderer, 0));
    EXPECT_TRUE(renderer.calls.empty());
    EXPECT_EQ(store().vertex_buffer_id, 9u);
    EXPECT_EQ(store().buffer_usage, BUFFER_USAGE_STATIC_DRAW);
}

TEST_F(VertexPoolRendering, refuses_storage_operations_without_points_a_buffer_or_a_renderer) {
    const OwnedPool empty(new VertexPool);
    EXPECT_FALSE(empty->shader_storage_init(&renderer, BUFFER_USAGE_DYNAMIC_DRAW));
    EXPECT_FALSE(pool->shader_storage_buffer_bind(&renderer));
    EXPECT_FALSE(pool->shader_storage_buffer_bind_base(&renderer, 0));
    EXPECT_TRUE(renderer.calls.empty());
    store().vertex_buffer_id = 9;
    EXPECT_FALSE(pool->shader_storage_init(nullptr, BUFFER_USAGE_DYNAMIC_DRAW));
    EXPECT_EQ(pool->shader_storage_buffer_map(nullptr), nullptr);
    EXPECT_FALSE(pool->shader_storage_buffer_unmap(nullptr));
    EXPECT_FALSE(pool->shader_storage_buffer_bind(nullptr));
    EXPECT_FALSE(pool->shader_storage_buffer_bind_base(nullptr, 0));
    EXPECT_FALSE(pool->shader_storage_buffer_unbind(nullptr));
    pool->apply_memory_barriers(nullptr);
    EXPECT_EQ(store().vertex_buffer_id, 9u);
}

} // namespace

} // namespace orvex_test
