#include "orvex/geometry/lines/polyline.h"

#include <cstdint>
#include <limits>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "orvex/assets/materials/material.h"
#include "orvex/assets/textures/texture.h"
#include "orvex/math/aligned_new.h"
#include "orvex/renderer/records/gpu_program_data.h"
#include "orvex/renderer/records/polyline_data.h"
#include "tests/orvex/geometry/mesh/owned_mesh.h"
#include "tests/orvex/geometry/printers.h"
#include "tests/support/fake_renderer.h"

namespace orvex_test {

using namespace orvex;

namespace {

using Calls = std::vector<std::string>;
using OwnedPolyline = Owned<Polyline>;

const vec4 red(1.0f, 0.0f, 0.0f, 1.0f);
const vec4 green(0.0f, 1.0f, 0.0f, 1.0f);

OwnedPolyline make_polyline(unsigned long count,
                            LINE_RENDER_MODE mode = LINE_RENDER_MODE_LINE_STRIP) {
    OwnedPolyline polyline(new Polyline);
    EXPECT_TRUE(polyline->initialize(count, mode));
    return polyline;
}

OwnedPolyline make_polyline_without_store() {
    OwnedPolyline polyline(new Polyline);
    EXPECT_TRUE(polyline->cleanup_polyline_data(nullptr));
    EXPECT_EQ(polyline->get_polyline_data(), nullptr);
    return polyline;
}

TEST(PolylineData, starts_empty_and_drawable) {
    const PolylineData data;
    EXPECT_EQ(data.num_lines, 0u);
    EXPECT_EQ(data.render_mode, LINE_RENDER_MODE_LINE_STRIP);
    EXPECT_EQ(data.vertex_buffer_id, 0u);
    EXPECT_EQ(data.vertex_array_id, 0u);
    EXPECT_EQ(data.num_vertices, 0u);
    EXPECT_EQ(data.vertices, nullptr);
    EXPECT_EQ(data.alignment, 0);
    int location = 0;
    for (const VertexAttribArray* attribute :
         {&data.position, &data.color, &data.normal, &data.uv0, &data.uv1, &data.tangent}) {
        EXPECT_EQ(attribute->attrib_location, location++);
        EXPECT_EQ(attribute->data, nullptr);
    }
    EXPECT_FALSE(data.positions_need_update || data.normals_need_update ||
                 data.tangents_need_update || data.colors_need_update || data.uv0_need_update ||
                 data.uv1_need_update);
    EXPECT_FALSE(data.tessellation_state);
    EXPECT_TRUE(data.use_generic_vertex_attribs);
    EXPECT_EQ(data.vertex_start_offset, 0);
    EXPECT_EQ(data.vertex_end_offset, -1);
    EXPECT_EQ(data.line_start_offset, 0);
    EXPECT_EQ(data.line_end_offset, -1);
    EXPECT_EQ(data.user_attribs, nullptr);
    EXPECT_EQ(data.ref_count, 0);
    EXPECT_TRUE(data.has_color && data.has_normal && data.has_tangent);
    EXPECT_FALSE(data.has_uv0 || data.has_uv1);
    EXPECT_EQ(data.vertex_buffer_usage, 0u);
}

TEST(PolylineData, counts_its_users_down_to_none) {
    PolylineData data;
    data.inc_ref();
    data.inc_ref();
    EXPECT_EQ(data.get_ref(), 2);
    for (int i = 0; i < 3; ++i)
        data.dec_ref();
    EXPECT_EQ(data.get_ref(), 0);
}

TEST(PolylineData, knows_the_thread_that_owns_it) {
    PolylineData data;
    EXPECT_TRUE(data.check_thread());
    EXPECT_EQ(data.get_thread_ptr(), &data.thread);
    EXPECT_EQ(data.get_thread(), &data.thread);
    std::thread([&data] {
        EXPECT_FALSE(data.check_thread());
        data.update_thread();
        EXPECT_TRUE(data.check_thread());
    }).join();
    EXPECT_FALSE(data.check_thread());
}

TEST(PolylineData, frees_the_user_attributes_that_a_host_made) {
    PolylineData data;
    data.user_attribs = new VertexAttribArray[2];
    data.num_user_attribs = 2;
    data.user_attribs_allocated = true;
    data.user_attribs[0].data = new vec4[3];
    data.user_attribs[1].data = AlignedNew_vec4(3, 64, &data.user_attribs[1].raw_ptr);
}

TEST(Polyline, is_an_object_with_an_empty_store_of_its_own) {
    const OwnedPolyline polyline(new Polyline);
    EXPECT_TRUE(polyline->is_type_of(NODE_TYPE_OBJECT));
    EXPECT_TRUE(polyline->is_type_of(NODE_TYPE_POLYLINE));
    ASSERT_NE(polyline->get_polyline_data(), nullptr);
    EXPECT_EQ(polyline->get_polyline_data()->get_ref(), 1);
    EXPECT_EQ(polyline->get_num_vertices(nullptr), 0u);
    EXPECT_EQ(polyline->get_renderer_id(), 0);
}

TEST(Polyline, of_three_vertices_has_one_line) {
    const OwnedPolyline polyline = make_polyline(3, LINE_RENDER_MODE_LINES);
    EXPECT_EQ(polyline->get_num_vertices(nullptr), 3u);
    EXPECT_EQ(polyline->get_polyline_data()->num_lines, 1u);
    EXPECT_EQ(polyline->get_polyline_data()->render_mode, LINE_RENDER_MODE_LINES);
    EXPECT_EQ(polyline->get_polyline_data()->vertices[2].position, vec4());
}

TEST(Polyline, counts_the_vertices_of_children_when_asked) {
    const OwnedPolyline polyline = make_polyline(3);
    Polyline* const child = new Polyline;
    child->alloc_vertex_data(4);
    polyline->add_child(child);
    EXPECT_EQ(polyline->get_num_vertices(nullptr), 3u);
    EXPECT_EQ(polyline->get_num_vertices(polyline.get()), 7u);
}

TEST(Polyline, allocates_aligned_vertices_when_asked) {
    const OwnedPolyline polyline(new Polyline);
    polyline->set_vertex_alloc_params(256);
    EXPECT_TRUE(polyline->alloc_vertex_data(5));
    const PolylineData& data = *polyline->get_polyline_data();
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(data.vertices) % 256, 0u);
    EXPECT_NE(data.raw_vertices, nullptr);
    EXPECT_EQ(data.vertices[4].color, vec4());
    polyline->free_polyline_data();
    EXPECT_EQ(data.vertices, nullptr);
    EXPECT_EQ(data.raw_vertices, nullptr);
    EXPECT_EQ(data.num_vertices, 0u);
}

TEST(Polyline, throws_when_aligned_memory_runs_out_and_reads_as_empty) {
    const OwnedPolyline polyline(new Polyline);
    polyline->set_vertex_alloc_params(64);
    EXPECT_THROW(polyline->alloc_vertex_data(1ul << 60), std::bad_alloc);
    EXPECT_FALSE(polyline->set_vertex_position(0, red));
    EXPECT_FALSE(polyline->set_vertices_color(red));
}

TEST(Polyline, replaces_its_vertices_and_keeps_the_line_count_when_they_are_freed) {
    const OwnedPolyline polyline = make_polyline(6);
    polyline->set_vertex_position(0, red);
    EXPECT_TRUE(polyline->alloc_vertex_data(4));
    EXPECT_EQ(polyline->get_polyline_data()->vertices[0].position, vec4());
    polyline->free_polyline_data();
    EXPECT_EQ(polyline->get_num_vertices(nullptr), 0u);
    EXPECT_EQ(polyline->get_polyline_data()->num_lines, 2u);
}

TEST(Polyline, stores_positions_in_every_form) {
    const OwnedPolyline polyline = make_polyline(4);
    const PolylineData& data = *polyline->get_polyline_data();
    EXPECT_TRUE(polyline->set_vertex_position(0, vec3(1.0f, 2.0f, 3.0f)));
    EXPECT_TRUE(data.positions_need_update);
    EXPECT_TRUE(polyline->set_vertex_position(1, 4.0f, 5.0f, 6.0f));
    EXPECT_TRUE(polyline->set_vertex_position(2, vec4(7.0f, 8.0f, 9.0f, 0.5f)));
    EXPECT_TRUE(polyline->set_vertex_position(3, 10.0f, 11.0f, 12.0f, 0.25f));
    EXPECT_EQ(data.vertices[0].position, vec4(1.0f, 2.0f, 3.0f, 1.0f));
    EXPECT_EQ(data.vertices[1].position, vec4(4.0f, 5.0f, 6.0f, 1.0f));
    EXPECT_EQ(data.vertices[2].position, vec4(7.0f, 8.0f, 9.0f, 0.5f));
    EXPECT_EQ(data.vertices[3].position, vec4(10.0f, 11.0f, 12.0f, 0.25f));
    EXPECT_FALSE(data.colors_need_update);
}

TEST(Polyline, stores_colours) {
    const OwnedPolyline polyline = make_polyline(2);
    const PolylineData& data = *polyline->get_polyline_data();
    EXPECT_TRUE(polyline->set_vertex_color(1, red));
    EXPECT_TRUE(data.colors_need_update);
    EXPECT_FALSE(data.positions_need_update);
    EXPECT_EQ(data.vertices[1].color, red);
    EXPECT_TRUE(polyline->set_vertices_color(green));
    EXPECT_EQ(data.vertices[0].color, green);
    EXPECT_EQ(data.vertices[1].color, green);
    EXPECT_TRUE(polyline->set_vertices_color(0.0f, 0.25f, 0.5f, 1.0f));
    EXPECT_EQ(data.vertices[1].color, vec4(0.0f, 0.25f, 0.5f, 1.0f));
}

TEST(Polyline, refuses_vertices_out_of_range) {
    const OwnedPolyline polyline = make_polyline(2);
    const PolylineData& data = *polyline->get_polyline_data();
    EXPECT_FALSE(polyline->set_vertex_position(2, vec3()));
    EXPECT_FALSE(polyline->set_vertex_position(2, vec4()));
    EXPECT_FALSE(polyline->set_vertex_position(2, 0.0f, 0.0f, 0.0f));
    EXPECT_FALSE(polyline->set_vertex_position(2, 0.0f, 0.0f, 0.0f, 1.0f));
    EXPECT_FALSE(polyline->set_vertex_color(2, red));
    EXPECT_FALSE(data.positions_need_update || data.colors_need_update);
    polyline->free_polyline_data();
    EXPECT_FALSE(polyline->set_vertices_color(red));
    EXPECT_FALSE(polyline->set_vertices_color(1.0f, 0.0f, 0.0f, 1.0f));
}

TEST(Polyline, is_left_alone_when_a_subtree_is_recoloured) {
    const OwnedPolyline polyline = make_polyline(1);
    polyline->set_vertices_color(red, nullptr);
    EXPECT_EQ(polyline->get_polyline_data()->vertices[0].color, vec4());
}

TEST(Polyline, cuts_vertex_offsets_at_the_vertex_count) {
    const OwnedPolyline polyline = make_polyline(10);
    EXPECT_EQ(polyline->get_vertex_start_offset(), 0);
    EXPECT_EQ(polyline->get_vertex_end_offset(), -1);
    polyline->set_vertex_end_offset(100);
    EXPECT_EQ(polyline->get_vertex_end_offset(), 10);
    polyline->set_vertex_end_offset(9);
    EXPECT_EQ(polyline->get_vertex_end_offset(), 9);
    polyline->set_vertex_end_offset(-1);
    EXPECT_EQ(polyline->get_vertex_end_offset(), -1);
    polyline->set_vertex_start_offset(11);
    EXPECT_EQ(polyline->get_vertex_start_offset(), 10);
    polyline->set_vertex_start_offset(3);
    EXPECT_EQ(polyline->get_vertex_start_offset(), 3);
}

TEST(Polyline, turns_line_offsets_into_vertex_offsets) {
    const OwnedPolyline polyline = make_polyline(4, LINE_RENDER_MODE_LINES);
    EXPECT_EQ(polyline->get_line_start_offset(), 0);
    EXPECT_EQ(polyline->get_line_end_offset(), -1);
    polyline->set_line_end_offset(3);
    EXPECT_EQ(polyline->get_line_end_offset(), 2);
    EXPECT_EQ(polyline->get_vertex_end_offset(), 4);
    polyline->set_line_start_offset(1);
    EXPECT_EQ(polyline->get_line_start_offset(), 1);
    EXPECT_EQ(polyline->get_vertex_start_offset(), 2);
    polyline->set_line_start_offset(7);
    EXPECT_EQ(polyline->get_vertex_start_offset(), 4);
    polyline->set_line_end_offset(-1);
    EXPECT_EQ(polyline->get_line_end_offset(), -1);
    EXPECT_EQ(polyline->get_vertex_end_offset(), -2);
    polyline->set_line_start_offset(std::numeric_limits<int>::min());
    EXPECT_EQ(polyline->get_vertex_start_offset(), 0) << "twice that wraps";
}

TEST(Polyline, writes_whole_lines) {
    const OwnedPolyline polyline = make_polyline(5, LINE_RENDER_MODE_LINES);
    const PolylineData& data = *polyline->get_polyline_data();
    polyline->set_line_position(1, red, green);
    EXPECT_EQ(data.vertices[2].position, red);
    EXPECT_EQ(data.vertices[3].position, green);
    EXPECT_TRUE(data.positions_need_update);
    EXPECT_FALSE(data.colors_need_update);
    polyline->set_line_color(0, green, red);
    EXPECT_EQ(data.vertices[0].color, green);
    EXPECT_EQ(data.vertices[1].color, red);
    EXPECT_TRUE(data.colors_need_update);
}

TEST(Polyline, ignores_lines_out_of_range) {
    const OwnedPolyline polyline = make_polyline(5, LINE_RENDER_MODE_LINES);
    const PolylineData& data = *polyline->get_polyline_data();
    for (const unsigned long line : {2ul, ~0ul, ~0ul / 2 + 1}) {
        polyline->set_line_position(line, red, green);
        polyline->set_line_color(line, red, green);
    }
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(data.vertices[i].position, vec4());
    EXPECT_FALSE(data.positions_need_update || data.colors_need_update);
}

TEST(Polyline, builds_lines_that_run_from_red_to_green) {
    const OwnedPolyline polyline(new Polyline);
    EXPECT_EQ(polyline->add_line(vec4(1.0f, 2.0f, 3.0f, 0.5f), vec3(4.0f, 5.0f, 6.0f)), 0u);
    EXPECT_EQ(polyline->add_line(vec4(), vec4()), 1u);
    EXPECT_EQ(polyline->get_num_vertices(nullptr), 0u);
    EXPECT_TRUE(polyline->_build());
    EXPECT_FALSE(polyline->get_build_state());
    const PolylineData& data = *polyline->get_polyline_data();
    EXPECT_EQ(data.num_vertices, 4u);
    EXPECT_EQ(data.num_lines, 2u);
    EXPECT_EQ(data.vertices[0].position, vec4(1.0f, 2.0f, 3.0f, 0.5f));
    EXPECT_EQ(data.vertices[0].color, red);
    EXPECT_EQ(data.vertices[0].normal, vec4(0.0f, 1.0f, 0.0f, 0.0f));
    EXPECT_EQ(data.vertices[0].uv0, vec4());
    EXPECT_EQ(data.vertices[0].tangent, vec4());
    EXPECT_EQ(data.vertices[1].position, vec4(4.0f, 5.0f, 6.0f, 1.0f));
    EXPECT_EQ(data.vertices[1].color, green);
    EXPECT_EQ(data.vertices[1].normal, vec4(0.0f, 1.0f, 0.0f, 0.0f));
    EXPECT_FALSE(data.positions_need_update);
}

TEST(Polyline, builds_lines_of_given_colours) {
    const OwnedPolyline polyline(new Polyline);
    EXPECT_EQ(polyline->add_line_v2(vec4(), green, red, red), 0u);
    EXPECT_TRUE(polyline->build_line(vec4(), vec4()));
    EXPECT_TRUE(polyline->_build());
    const PolylineData& data = *polyline->get_polyline_data();
    EXPECT_EQ(data.num_lines, 2u);
    EXPECT_EQ(data.vertices[0].color, green);
    EXPECT_EQ(data.vertices[1].color, red);
    EXPECT_EQ(data.vertices[1].position, red);
}

TEST(Polyline, fails_to_build_without_lines_once) {
    const OwnedPolyline polyline(new Polyline);
    EXPECT_FALSE(polyline->_build());
    EXPECT_TRUE(polyline->_build());
}

TEST(Polyline, starts_a_new_list_after_a_build) {
    const OwnedPolyline polyline(new Polyline);
    polyline->add_line(vec4(), vec4());
    polyline->_build();
    EXPECT_EQ(polyline->add_line(red, red), 0u);
    polyline->get_polyline_data()->vertex_buffer_id = 3;
    EXPECT_TRUE(polyline->_build());
    const PolylineData& data = *polyline->get_polyline_data();
    EXPECT_EQ(data.num_vertices, 2u);
    EXPECT_TRUE(data.positions_need_update && data.normals_need_update && data.colors_need_update &&
                data.uv0_need_update);
}

TEST(Polyline, drops_a_list_that_was_never_built) {
    const OwnedPolyline polyline(new Polyline);
    polyline->add_line(vec4(), vec4());
}

TEST(Polyline, without_a_store_fails_to_build_and_keeps_the_list) {
    const OwnedPolyline polyline = make_polyline_without_store();
    polyline->add_line(red, green);
    EXPECT_FALSE(polyline->_build());
    polyline->init_polyline_data(nullptr);
    EXPECT_EQ(polyline->add_line(red, green), 1u);
    EXPECT_TRUE(polyline->_build());
    EXPECT_EQ(polyline->get_num_vertices(nullptr), 4u);
}

TEST(Polyline, shares_a_store_until_the_last_one_lets_go) {
    FakeRenderer renderer;
    const OwnedPolyline first = make_polyline(3);
    const OwnedPolyline second = make_polyline(2);
    PolylineData* const shared = first->get_polyline_data();
    renderer.name_pointer(shared, "shared");
    renderer.name_pointer(second->get_polyline_data(), "dropped");
    EXPECT_TRUE(second->share_polyline_data(&renderer, first.get()));
    EXPECT_EQ(renderer.take_calls(), Calls{"polyline_vb_kill(dropped)"});
    EXPECT_EQ(second->get_polyline_data(), shared);
    EXPECT_EQ(shared->get_ref(), 2);
    EXPECT_TRUE(first->_cleanup(&renderer));
    EXPECT_EQ(first->get_polyline_data(), nullptr);
    EXPECT_EQ(shared->get_ref(), 1);
    EXPECT_TRUE(renderer.calls.empty());
    EXPECT_TRUE(second->_cleanup(&renderer));
    EXPECT_EQ(renderer.take_calls(), Calls{"polyline_vb_kill(shared)"});
    EXPECT_TRUE(second->_cleanup(&renderer));
    EXPECT_TRUE(renderer.calls.empty());
}

TEST(Polyline, may_share_its_own_store) {
    const OwnedPolyline polyline = make_polyline(3);
    PolylineData* const store = polyline->get_polyline_data();
    EXPECT_TRUE(polyline->share_polyline_data(nullptr, polyline.get()));
    EXPECT_EQ(polyline->get_polyline_data(), store);
    EXPECT_EQ(store->get_ref(), 1);
    EXPECT_EQ(polyline->get_num_vertices(nullptr), 3u);
}

TEST(Polyline, shares_nothing_with_null_and_drops_its_store_for_one_without) {
    const OwnedPolyline polyline = make_polyline(3);
    EXPECT_FALSE(polyline->share_polyline_data(nullptr, nullptr));
    EXPECT_EQ(polyline->get_num_vertices(nullptr), 3u);
    const OwnedPolyline without = make_polyline_without_store();
    EXPECT_TRUE(polyline->share_polyline_data(nullptr, without.get()));
    EXPECT_EQ(polyline->get_polyline_data(), nullptr);
}

TEST(Polyline, without_a_store_acts_as_an_empty_one) {
    FakeRenderer renderer;
    const OwnedPolyline polyline = make_polyline_without_store();
    EXPECT_FALSE(polyline->initialize(3, LINE_RENDER_MODE_LINES));
    EXPECT_FALSE(polyline->alloc_vertex_data(3));
    polyline->free_polyline_data();
    polyline->set_vertex_alloc_params(16);
    EXPECT_FALSE(polyline->set_vertex_position(0, vec3()));
    EXPECT_FALSE(polyline->set_vertex_color(0, red));
    EXPECT_FALSE(polyline->set_vertices_color(red));
    polyline->set_line_position(0, red, red);
    polyline->set_line_color(0, red, red);
    polyline->set_vertex_start_offset(1);
    polyline->set_vertex_end_offset(1);
    polyline->set_line_start_offset(1);
    polyline->set_line_end_offset(1);
    EXPECT_EQ(polyline->get_vertex_start_offset(), 0);
    EXPECT_EQ(polyline->get_vertex_end_offset(), -1);
    EXPECT_EQ(polyline->get_line_start_offset(), 0);
    EXPECT_EQ(polyline->get_line_end_offset(), -1);
    polyline->set_tessellation_state(true, nullptr);
    EXPECT_EQ(polyline->get_num_vertices(nullptr), 0u);
    EXPECT_EQ(polyline->get_renderer_id(), 0);
    EXPECT_EQ(polyline->map_vertex_buffer(&renderer), nullptr);
    EXPECT_FALSE(polyline->unmap_vertex_buffer(&renderer));
    EXPECT_EQ(polyline->get_mapped_vertex_buffer(), nullptr);
    polyline->render_geometry(&renderer);
    EXPECT_TRUE(renderer.calls.empty());
}

class PolylineRendering : public testing::Test {
protected:
    PolylineRendering()
        : polyline(make_polyline(3)) {
        renderer.name_pointer(polyline->get_polyline_data(), "store");
        renderer.name_pointer(&program, "program");
        renderer.ignored = {"get_projection_matrix", "get_view_matrix", "get_viewport_ptr",
                            "gl2_matrix_load"};
    }

    FakeRenderer renderer;
    GpuProgramData program;
    OwnedPolyline polyline;
};

TEST_F(PolylineRendering, without_a_program_takes_the_fixed_pipeline) {
    polyline->render(&renderer, nullptr);
    EXPECT_EQ(renderer.take_calls(),
              (Calls{"gpu_program_get_active_program()", "gpu_program_get_active_program()",
                     "polyline_vb_prepare(store)", "polyline_vb_draw(store, 0, -1)",
                     "polyline_vb_finish(store)"}));
    EXPECT_FALSE(polyline->get_polyline_data()->use_generic_vertex_attribs);
}

TEST_F(PolylineRendering, with_a_program_follows_the_program) {
    renderer.active_program = &program;
    for (const bool generic : {true, false}) {
        program.set_use_generic_vertex_attribs_state(generic);
        polyline->render(&renderer, nullptr);
        EXPECT_EQ(renderer.take_calls(),
                  (Calls{"gpu_program_get_active_program()", "gpu_program_get_active_program()",
                         "gpu_program_bind_uniforms(program)", "polyline_vb_prepare(store)",
                         "polyline_vb_draw(store, 0, -1)", "polyline_vb_finish(store)"}));
        EXPECT_EQ(polyline->get_polyline_data()->use_generic_vertex_attribs, generic);
    }
}

TEST_F(PolylineRendering, draws_from_its_start_as_many_as_its_end_says) {
    polyline->set_vertex_start_offset(1);
    polyline->set_vertex_end_offset(2);
    polyline->render_geometry_draw(&renderer);
    EXPECT_EQ(renderer.take_calls(), Calls{"polyline_vb_draw(store, 1, 2)"});
}

TEST_F(PolylineRendering, binds_its_first_material) {
    Material* const material = new Material;
    material->add_texture(new Texture);
    polyline->add_material(material, nullptr);
    polyline->add_material(new Material, nullptr);
    polyline->render(&renderer, nullptr);
    EXPECT_EQ(renderer.count("set_texture2d_state"), 2);
    EXPECT_EQ(renderer.count("polyline_vb_draw"), 1);
}

TEST_F(PolylineRendering, keeps_the_tessellation_state_in_the_store) {
    Polyline* const child = new Polyline;
    polyline->add_child(child);
    polyline->set_tessellation_state(true, polyline.get());
    EXPECT_TRUE(polyline->get_polyline_data()->tessellation_state);
    EXPECT_TRUE(child->get_polyline_data()->tessellation_state);
}

TEST_F(PolylineRendering, passes_over_a_null_renderer) {
    polyline->_render(nullptr);
    polyline->render_geometry(nullptr);
    EXPECT_TRUE(polyline->get_polyline_data()->use_generic_vertex_attribs);
}

TEST_F(PolylineRendering, maps_its_buffer) {
    int memory = 0;
    polyline->get_polyline_data()->vertex_buffer_id = 7;
    renderer.pointers["vertex_buffer_map"] = &memory;
    EXPECT_EQ(polyline->map_vertex_buffer(&renderer), &memory);
    EXPECT_EQ(polyline->get_mapped_vertex_buffer(), &memory);
    EXPECT_TRUE(polyline->unmap_vertex_buffer(&renderer));
    EXPECT_EQ(renderer.take_calls(), (Calls{"vertex_buffer_map(7)", "vertex_buffer_unmap(7)"}));
    EXPECT_EQ(polyline->map_vertex_buffer(nullptr), nullptr);
    EXPECT_FALSE(polyline->unmap_vertex_buffer(nullptr));
}

} // namespace

} // namespace orvex_test
