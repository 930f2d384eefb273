#include <thread>

#include "vertex_buffers_fixture.h"

namespace orvex_test {

using namespace orvex;

namespace {

class VertexBuffers : public VertexBuffersTest {};
ORVEX_BOTH_PROFILES(VertexBuffers);

TEST_P(VertexBuffers, uploads_separate_arrays_block_by_block_and_records_their_vertex_array) {
    MeshData store;
    make_triangle(store, true);
    const GlCalls calls = prepare(store);
    const unsigned int buffer = store.vertex_buffer_id;
    GlCalls pointers;
    for (int i = 0; i < 6; ++i)
        pointers = joined({pointers, generic_pointer(i, 4, 0, 48ul * static_cast<unsigned>(i))});
    EXPECT_EQ(calls, joined({generate_buffer(buffer), bind_array_buffer(buffer), allocate(288),
                             upload(0, 48), upload(48, 48), upload(96, 48), upload(144, 48),
                             upload(192, 48), upload(240, 48), bind_array_buffer(0),
                             create_faces(store.index_buffer_id, 6), bind_element_buffer(0),
                             record_vertex_array(store.vertex_array_id, buffer), pointers,
                             bind_element_buffer(store.index_buffer_id)}));
    EXPECT_EQ(store.renderer_id, renderer->getid());
    draw_quietly(store);
    kill(store);
}

TEST_P(VertexBuffers, ask_the_operations_of_a_hosts_own_class_of_stores) {
    struct WithoutTangents : MeshData {
        using MeshData::get_tangent_ptr;
        void* get_tangent_ptr() override { return nullptr; }
    };
    WithoutTangents store;
    make_triangle(store, true);
    const GlCalls calls = prepare(store);
    const unsigned int buffer = store.vertex_buffer_id;
    GlCalls pointers;
    for (int i = 0; i < 5; ++i)
        pointers = joined({pointers, generic_pointer(i, 4, 0, 48ul * static_cast<unsigned>(i))});
    EXPECT_EQ(calls,
              joined({generate_buffer(buffer), bind_array_buffer(buffer), allocate(240),
                      upload(0, 48), upload(48, 48), upload(96, 48), upload(144, 48),
                      upload(192, 48), bind_array_buffer(0), create_faces(store.index_buffer_id, 6),
                      bind_element_buffer(0), record_vertex_array(store.vertex_array_id, buffer),
                      pointers, bind_element_buffer(store.index_buffer_id)}));
    kill(store);
}

TEST_P(VertexBuffers, uploads_dirty_separate_blocks_again_on_the_frame_of_creation) {
    MeshData store;
    make_triangle(store, true, 0);
    store.normals_need_update = true;
    const GlCalls calls = prepare(store);
    const unsigned int buffer = store.vertex_buffer_id;
    const GlCalls second_upload = joined(
        {bind_array_buffer(0), bind_array_buffer(buffer), upload(96, 48), bind_array_buffer(0)});
    EXPECT_EQ(GlCalls(calls.begin() + 9, calls.begin() + 13), second_upload);
    EXPECT_FALSE(store.normals_need_update);
    kill(store);
}

TEST_P(VertexBuffers, costs_one_call_of_preparation_with_nothing_dirty) {
    for (const bool separate : {true, false}) {
        MeshData store;
        make_triangle(store, separate);
        draw_quietly(store);
        EXPECT_EQ(prepare(store), bind_vertex_array(store.vertex_array_id));
        EXPECT_EQ(draw(store), GlCalls({"glDrawElements(GL_TRIANGLES, 3, GL_UNSIGNED_SHORT, 0)"}));
        EXPECT_EQ(finish(store), GlCalls({"glBindVertexArray(0)"}));
        kill(store);
    }
}

TEST_P(VertexBuffers, uploads_only_the_dirty_block_of_separate_arrays) {
    MeshData store;
    make_triangle(store, true);
    draw_quietly(store);
    store.colors_need_update = true;
    store.uv1_need_update = true;
    EXPECT_EQ(prepare(store),
              joined({bind_array_buffer(store.vertex_buffer_id), upload(48, 48), upload(192, 48),
                      bind_array_buffer(0), bind_vertex_array(store.vertex_array_id)}));
    EXPECT_FALSE(store.colors_need_update);
    EXPECT_EQ(prepare(store), bind_vertex_array(store.vertex_array_id));
    finish(store);
    kill(store);
}

TEST_P(VertexBuffers, lowers_the_flag_of_an_attribute_that_the_format_lacks) {
    MeshData_32 store;
    make_triangle(store, true);
    draw_quietly(store);
    store.colors_need_update = true;
    prepare(store);
    EXPECT_FALSE(store.colors_need_update);
    EXPECT_EQ(prepare(store), bind_vertex_array(store.vertex_array_id));
    finish(store);
    kill(store);
}

TEST_P(VertexBuffers, uploads_interleaved_records_as_one) {
    MeshData store;
    make_triangle(store, false);
    const GlCalls calls = prepare(store);
    const unsigned int buffer = store.vertex_buffer_id;
    GlCalls pointers;
    for (int i = 0; i < 6; ++i)
        pointers = joined({pointers, generic_pointer(i, 4, 96, 16ul * static_cast<unsigned>(i))});
    EXPECT_EQ(calls,
              joined({generate_buffer(buffer), bind_array_buffer(buffer), allocate(288),
                      bind_array_buffer(0), bind_array_buffer(buffer), upload(0, 288),
                      bind_array_buffer(0), create_faces(store.index_buffer_id, 6),
                      bind_element_buffer(0), record_vertex_array(store.vertex_array_id, buffer),
                      pointers, bind_element_buffer(store.index_buffer_id)}));
    EXPECT_EQ(store.renderer_id, renderer->getid());
    finish(store);
    kill(store);
}

TEST_P(VertexBuffers, uploads_all_interleaved_vertices_for_any_flag) {
    bool MeshData::*const flags[] = {
        &MeshData::positions_need_update, &MeshData::normals_need_update,
        &MeshData::tangents_need_update,  &MeshData::colors_need_update,
        &MeshData::uv0_need_update,       &MeshData::uv1_need_update};
    MeshData_64 store;
    make_triangle(store, false, 0);
    draw_quietly(store);
    for (bool MeshData::*const flag : flags) {
        store.*flag = true;
        EXPECT_EQ(prepare(store),
                  joined({bind_array_buffer(store.vertex_buffer_id), upload(0, 192),
                          bind_array_buffer(0), bind_vertex_array(store.vertex_array_id)}));
        EXPECT_FALSE(store.*flag);
    }
    finish(store);
    kill(store);
}

TEST_P(VertexBuffers, points_only_to_attributes_that_a_format_has) {
    MeshData_32 interleaved;
    make_triangle(interleaved, false, 0);
    GlCalls calls = prepare(interleaved);
    finish(interleaved);
    EXPECT_EQ(GlCalls(calls.end() - 6, calls.end()),
              joined({generic_pointer(0, 3, 32, 0), generic_pointer(2, 3, 32, 12),
                      generic_pointer(3, 2, 32, 24)}));
    MeshData_32 separate;
    make_triangle(separate, true, 0);
    calls = prepare(separate);
    finish(separate);
    EXPECT_EQ(GlCalls(calls.end() - 6, calls.end()),
              joined({generic_pointer(0, 3, 0, 0), generic_pointer(2, 3, 0, 36),
                      generic_pointer(3, 2, 0, 72)}));
    MeshData_PhysXCloth cloth;
    make_triangle(cloth, false, 0);
    calls = prepare(cloth);
    finish(cloth);
    EXPECT_EQ(GlCalls(calls.end() - 10, calls.end()),
              joined({generic_pointer(0, 4, 64, 0), generic_pointer(1, 4, 64, 16),
                      generic_pointer(2, 3, 64, 32), generic_pointer(3, 2, 64, 44),
                      generic_pointer(5, 3, 64, 52)}));
    kill(interleaved);
    kill(separate);
    kill(cloth);
}

TEST_P(VertexBuffers, skips_pointers_without_a_location_and_keeps_counting) {
    for (const bool separate : {true, false}) {
        MeshData store;
        make_triangle(store, separate, 0);
        store.set_color_attrib_location(-1);
        store.set_normal_attrib_location(-1);
        store.set_uv0_attrib_location(9);
        store.set_uv1_attrib_location(-1);
        const GlCalls calls = prepare(store);
        finish(store);
        const GlCalls expected =
            separate ? joined({generic_pointer(0, 4, 0, 0), generic_pointer(9, 4, 0, 144),
                               generic_pointer(5, 4, 0, 240)})
                     : joined({generic_pointer(0, 4, 96, 0), generic_pointer(9, 4, 96, 48),
                               generic_pointer(5, 4, 96, 80)});
        EXPECT_EQ(GlCalls(calls.end() - 6, calls.end()), expected);
        kill(store);
    }
}

TEST_P(VertexBuffers, appends_user_attributes_behind_separate_blocks) {
    MeshData store;
    make_triangle(store, true, 0);
    ASSERT_TRUE(store.alloc_user_vertex_attribs(2));
    store.set_user_attrib_location(1, 12);
    const GlCalls calls = prepare(store);
    const unsigned int buffer = store.vertex_buffer_id;
    EXPECT_EQ(GlCalls(calls.begin(), calls.begin() + 3),
              joined({generate_buffer(buffer), bind_array_buffer(buffer), allocate(384)}));
    EXPECT_EQ(GlCalls(calls.begin() + 9, calls.begin() + 12),
              joined({upload(288, 48), upload(336, 48), bind_array_buffer(0)}));
    EXPECT_EQ(GlCalls(calls.end() - 2, calls.end()), generic_pointer(12, 4, 0, 336));
    store.set_user_attrib(1, 0, vec4());
    EXPECT_EQ(prepare(store),
              joined({bind_array_buffer(buffer), upload(336, 48), bind_array_buffer(0),
                      bind_vertex_array(store.vertex_array_id)}));
    EXPECT_FALSE(store.user_attribs[1].need_update);
    finish(store);
    kill(store);
}

TEST_P(VertexBuffers, writes_interleaved_user_attributes_over_the_vertices_from_the_second_frame) {
    MeshData store;
    make_triangle(store, false, 0);
    ASSERT_TRUE(store.alloc_user_vertex_attribs(2));
    store.set_user_attrib_location(0, 11);
    store.set_user_attrib_location(1, 12);
    const GlCalls calls = prepare(store);
    const unsigned int buffer = store.vertex_buffer_id;
    EXPECT_EQ(GlCalls(calls.begin(), calls.begin() + 13),
              joined({generate_buffer(buffer), bind_array_buffer(buffer), allocate(384),
                      bind_array_buffer(0), bind_array_buffer(buffer), upload(0, 288),
                      bind_array_buffer(0), bind_array_buffer(buffer), upload(288, 48),
                      bind_array_buffer(0), bind_array_buffer(buffer), upload(336, 48),
                      bind_array_buffer(0)}));
    EXPECT_EQ(GlCalls(calls.end() - 4, calls.end()),
              joined({generic_pointer(11, 4, 96, 96), generic_pointer(12, 4, 96, 112)}));
    EXPECT_TRUE(store.user_attribs[0].need_update) << "these flags are never lowered";
    EXPECT_EQ(prepare(store),
              joined({bind_array_buffer(buffer), upload(0, 48), bind_array_buffer(0),
                      bind_array_buffer(buffer), upload(48, 48), bind_array_buffer(0),
                      bind_vertex_array(store.vertex_array_id)}));
    finish(store);
    kill(store);
}

TEST_P(VertexBuffers, sends_no_more_of_a_user_attribute_than_it_has) {
    for (const bool separate : {true, false}) {
        MeshData_64 store; // keeps its user attributes when the vertices change
        store.separate_vertex_arrays = separate;
        ASSERT_TRUE(store.alloc_vertex_data(2));
        ASSERT_TRUE(store.alloc_user_vertex_attribs(1));
        ASSERT_TRUE(store.alloc_vertex_data(5));
        const GlCalls calls = prepare(store);
        EXPECT_EQ(std::count(calls.begin(), calls.end(), upload(320, 32)[0]), 1);
        finish(store);
        kill(store);
    }
}

TEST_P(VertexBuffers, records_instance_arrays_with_a_divisor) {
    MeshData store;
    make_triangle(store, true);
    make_instances(store, store.instance_positions, 4);
    make_instances(store, store.instance_scales, 4);
    make_instances(store, store.instance_miscs, 4);
    store.instance_scales.attrib_location = -1;
    store.instance_positions_need_update = true;
    store.instance_miscs_need_update = true;
    store.instance_colors_need_update = true; // absent
    const GlCalls calls = prepare(store);
    const unsigned int instances = store.instance_buffer_id;
    EXPECT_EQ(GlCalls(calls.begin() + 10, calls.begin() + 18),
              joined({generate_buffer(instances), bind_array_buffer(instances),
                      allocate(192, "GL_DYNAMIC_DRAW"), bind_array_buffer(0),
                      bind_array_buffer(instances), upload(0, 64), upload(128, 64),
                      bind_array_buffer(0)}));
    EXPECT_EQ(GlCalls(calls.end() - 8, calls.end()),
              joined({bind_array_buffer(instances),
                      generic_pointer(6, 4, 0, 0),
                      {"glVertexAttribDivisorARB(6, 1)"},
                      generic_pointer(10, 4, 0, 128),
                      {"glVertexAttribDivisorARB(10, 1)"},
                      bind_element_buffer(store.index_buffer_id)}));
    EXPECT_FALSE(store.instance_positions_need_update || store.instance_miscs_need_update);
    EXPECT_EQ(prepare(store), bind_vertex_array(store.vertex_array_id));
    store.instance_scales_need_update = true;
    EXPECT_EQ(prepare(store),
              joined({bind_array_buffer(instances), upload(64, 64), bind_array_buffer(0),
                      bind_vertex_array(store.vertex_array_id)}));
    finish(store);
    kill(store);
}

TEST_P(VertexBuffers, makes_no_instance_buffer_without_arrays) {
    MeshData store;
    make_triangle(store, true);
    store.num_instances = 4;
    store.instance_positions_need_update = true;
    prepare(store);
    EXPECT_EQ(store.instance_buffer_id, 0u);
    finish(store);
    kill(store);
}

TEST_P(VertexBuffers, leaves_instance_arrays_out_without_the_divisor_entry) {
    MeshData store;
    make_triangle(store, true, 0);
    make_instances(store, store.instance_positions, 2);
    renderer->gl.glVertexAttribDivisorARB = nullptr;
    const GlCalls calls = prepare(store);
    EXPECT_EQ(GlCalls(calls.end() - 2, calls.end()), generic_pointer(5, 4, 0, 240));
    finish(store);
    kill(store);
}

TEST_P(VertexBuffers, uploads_changed_faces) {
    MeshData store;
    make_triangle(store, true, 2);
    draw_quietly(store);
    store.faces_need_update = true;
    EXPECT_EQ(prepare(store),
              joined({bind_element_buffer(store.index_buffer_id), upload_elements(12),
                      bind_element_buffer(0), bind_vertex_array(store.vertex_array_id)}));
    EXPECT_FALSE(store.faces_need_update);
    finish(store);
    kill(store);
}

TEST_P(VertexBuffers, uploads_wide_faces_by_their_size) {
    MeshData store;
    make_triangle(store, true, 0);
    store.index_bits = 32;
    store.num_faces = 2;
    store.faces_u32 = new FaceU32[2]{{0, 1, 2}, {2, 1, 0}};
    store.faces_need_update = true;
    const GlCalls calls = prepare(store);
    EXPECT_EQ(GlCalls(calls.begin() + 10, calls.begin() + 17),
              joined({create_faces(store.index_buffer_id, 24), bind_element_buffer(0),
                      bind_element_buffer(store.index_buffer_id), upload_elements(24),
                      bind_element_buffer(0)}));
    EXPECT_EQ(draw(store), GlCalls({"glDrawElements(GL_TRIANGLES, 6, GL_UNSIGNED_INT, 0)"}));
    finish(store);
    kill(store);
}

TEST_P(VertexBuffers, ignores_changed_faces_where_there_are_none) {
    MeshData store;
    make_triangle(store, true, 0);
    store.faces_need_update = true;
    prepare(store);
    EXPECT_FALSE(store.faces_need_update);
    EXPECT_EQ(store.index_buffer_id, 0u);
    finish(store);
    kill(store);
}

void make_quad_edges(MeshData& store, unsigned long count) {
    ASSERT_TRUE(store.alloc_quad_edge_data(count));
    for (unsigned long i = 0; i < count; ++i)
        store.quad_edges[i] = static_cast<unsigned int>(i % 3);
    store.render_wireframe_quad = true;
}

TEST_P(VertexBuffers, draws_quad_edges_as_lines) {
    MeshData store;
    make_triangle(store, true);
    make_quad_edges(store, 4);
    const GlCalls calls = prepare(store);
    const unsigned int edges = store.quad_edge_buffer_id;
    EXPECT_EQ(GlCalls(calls.begin() + 14, calls.begin() + 17), create_faces(edges, 16));
    EXPECT_EQ(calls.back(), bind_element_buffer(edges)[0]);
    EXPECT_EQ(draw(store), GlCalls({"glDrawElements(GL_LINES, 4, GL_UNSIGNED_INT, 0)"}));
    finish(store);
    EXPECT_EQ(prepare(store),
              joined({bind_element_buffer(edges), bind_vertex_array(store.vertex_array_id)}));
    finish(store);
    store.quad_edges_need_update = true;
    EXPECT_EQ(prepare(store), joined({bind_element_buffer(edges), upload_elements(16),
                                      bind_vertex_array(store.vertex_array_id)}));
    EXPECT_FALSE(store.quad_edges_need_update);
    finish(store);
    kill(store);
}

TEST_P(VertexBuffers, makes_a_new_store_for_another_number_of_quad_edges) {
    MeshData store;
    make_triangle(store, true);
    make_quad_edges(store, 4);
    draw_quietly(store);
    make_quad_edges(store, 6);
    EXPECT_EQ(prepare(store),
              joined({bind_element_buffer(store.quad_edge_buffer_id),
                      {"glBufferData(GL_ELEMENT_ARRAY_BUFFER, 24, 0, GL_STATIC_DRAW)"},
                      upload_elements(24),
                      bind_vertex_array(store.vertex_array_id)}));
    finish(store);
    kill(store);
}

TEST_P(VertexBuffers, switches_between_faces_and_quad_edges_after_the_first_draw) {
    MeshData store;
    make_triangle(store, true);
    draw_quietly(store);
    make_quad_edges(store, 4);
    GlCalls calls = prepare(store);
    EXPECT_EQ(GlCalls(calls.end() - 2, calls.end()),
              joined({bind_vertex_array(store.vertex_array_id),
                      bind_element_buffer(store.quad_edge_buffer_id)}));
    EXPECT_EQ(draw(store), GlCalls({"glDrawElements(GL_LINES, 4, GL_UNSIGNED_INT, 0)"}));
    finish(store);
    store.render_wireframe_quad = false;
    EXPECT_EQ(prepare(store), joined({bind_vertex_array(store.vertex_array_id),
                                      bind_element_buffer(store.index_buffer_id)}));
    EXPECT_EQ(draw(store), GlCalls({"glDrawElements(GL_TRIANGLES, 3, GL_UNSIGNED_SHORT, 0)"}));
    finish(store);
    EXPECT_EQ(prepare(store), bind_vertex_array(store.vertex_array_id));
    finish(store);
    kill(store);
}

TEST_P(VertexBuffers, takes_up_faces_that_come_after_the_vertex_array) {
    MeshData store;
    make_triangle(store, true, 0);
    draw_quietly(store);
    set_num_faces(store, 1);
    const GlCalls calls = prepare(store);
    EXPECT_EQ(calls, joined({create_faces(store.index_buffer_id, 6), bind_element_buffer(0),
                             bind_vertex_array(store.vertex_array_id),
                             bind_element_buffer(store.index_buffer_id)}));
    EXPECT_EQ(draw(store), GlCalls({"glDrawElements(GL_TRIANGLES, 3, GL_UNSIGNED_SHORT, 0)"}));
    finish(store);
    kill(store);
}

TEST_P(VertexBuffers, fails_without_vertices_and_draws_an_empty_range) {
    MeshData store;
    EXPECT_FALSE(renderer->vertex_buffer_prepare(&store));
    EXPECT_EQ(recorder->take(), GlCalls());
    EXPECT_EQ(draw(store), GlCalls({"glDrawArrays(GL_TRIANGLES, 0, 0)"}));
    EXPECT_EQ(finish(store), GlCalls({"glBindVertexArray(0)"}));
    const GlRecorderPause pause(*recorder);
    forget_gl_errors(); // a core context wants a vertex array even then
}

TEST_P(VertexBuffers, fails_where_the_vertices_were_never_allocated) {
    for (const bool separate : {true, false}) {
        MeshData store;
        store.separate_vertex_arrays = separate;
        store.num_vertices = 3;
        EXPECT_FALSE(renderer->vertex_buffer_prepare(&store));
        EXPECT_FALSE(renderer->vertex_buffer_prepare_separate_arrays(&store));
        EXPECT_EQ(recorder->take(), GlCalls());
    }
}

TEST_P(VertexBuffers, sends_no_indexed_call_for_faces_without_vertices) {
    MeshData store;
    make_triangle(store, true);
    store.free_vertex_data();
    EXPECT_FALSE(renderer->vertex_buffer_prepare(&store));
    EXPECT_TRUE(renderer->vertex_buffer_draw(&store));
    EXPECT_EQ(recorder->take(), GlCalls());
}

TEST_P(VertexBuffers, sends_no_indexed_call_outside_of_prepare_and_finish) {
    MeshData store;
    make_triangle(store, true);
    draw_quietly(store);
    EXPECT_EQ(draw(store), GlCalls()) << "after the finish";
    MeshData other;
    make_triangle(other, true);
    prepare_quietly(other);
    EXPECT_EQ(draw(store), GlCalls()) << "while another store is prepared";
    finish(other);
    kill(store);
    kill(other);
}

TEST_P(VertexBuffers, draws_vertices_without_faces_by_range) {
    MeshData store;
    make_triangle(store, true, 0);
    store.draw_start_vertex = 1;
    prepare_quietly(store);
    EXPECT_EQ(draw(store), GlCalls({"glDrawArrays(GL_TRIANGLES, 1, 2)"}));
    finish(store);
    kill(store);
}

TEST_P(VertexBuffers, draws_instances_from_two_on_with_one_call) {
    MeshData store;
    make_triangle(store, true);
    make_instances(store, store.instance_positions, 1);
    prepare_quietly(store);
    EXPECT_EQ(draw(store), GlCalls({"glDrawElements(GL_TRIANGLES, 3, GL_UNSIGNED_SHORT, 0)"}));
    make_instances(store, store.instance_positions, 2);
    prepare_quietly(store);
    EXPECT_EQ(draw(store), GlCalls({"glDrawElementsInstancedARB(GL_TRIANGLES, 3, "
                                    "GL_UNSIGNED_SHORT, 0, 2)"}));
    renderer->gl.glDrawElementsInstancedARB = nullptr;
    EXPECT_EQ(draw(store), GlCalls({"glDrawElements(GL_TRIANGLES, 3, GL_UNSIGNED_SHORT, 0)"}));
    store.num_faces = 0;
    EXPECT_EQ(draw(store), GlCalls({"glDrawArraysInstancedARB(GL_TRIANGLES, 0, 3, 2)"}));
    renderer->gl.glDrawArraysInstancedARB = nullptr;
    EXPECT_EQ(draw(store), GlCalls({"glDrawArrays(GL_TRIANGLES, 0, 3)"}));
    finish(store);
    kill(store);
}

TEST_P(VertexBuffers, draws_a_subset_as_a_run_of_faces) {
    MeshData store;
    make_triangle(store, true, 5);
    make_instances(store, store.instance_positions, 2);
    prepare_quietly(store);
    MaterialSubset subset{1, 3, 0};
    store.current_subset = &subset;
    EXPECT_EQ(draw(store), GlCalls({"glDrawRangeElements(GL_TRIANGLES, 0, 2, 9, "
                                    "GL_UNSIGNED_SHORT, 6)"}));
    subset = MaterialSubset();
    EXPECT_EQ(draw(store), GlCalls({"glDrawRangeElements(GL_TRIANGLES, 0, 2, 0, "
                                    "GL_UNSIGNED_SHORT, 0)"}))
        << "a subset without faces";
    renderer->gl.glDrawRangeElements = nullptr;
    EXPECT_EQ(draw(store), GlCalls());
    store.current_subset = nullptr;
    finish(store);
    kill(store);
}

TEST_P(VertexBuffers, draws_a_subset_of_wide_faces_from_its_byte) {
    MeshData store;
    make_triangle(store, true, 0);
    store.index_bits = 32;
    store.num_faces = 3;
    store.faces_u32 = new FaceU32[3];
    prepare_quietly(store);
    MaterialSubset subset{1, 2, 0};
    store.current_subset = &subset;
    EXPECT_EQ(draw(store),
              GlCalls({"glDrawRangeElements(GL_TRIANGLES, 0, 2, 6, GL_UNSIGNED_INT, 12)"}));
    store.current_subset = nullptr;
    finish(store);
    kill(store);
}

TEST_P(VertexBuffers, draws_patches_for_tessellation) {
    MeshData store;
    make_triangle(store, true);
    store.tessellation_state = true;
    prepare_quietly(store);
    EXPECT_EQ(draw(store), GlCalls({"glDrawElements(GL_PATCHES, 3, GL_UNSIGNED_SHORT, 0)"}));
    finish(store);
    kill(store);
    const GlRecorderPause pause(*recorder);
    forget_gl_errors(); // no tessellating program is active
}

TEST_P(VertexBuffers, notes_the_static_usage_even_where_another_is_forced) {
    renderer->force_buffer_object_usage(BUFFER_USAGE_DYNAMIC_DRAW, BUFFER_USAGE_DEFAULT);
    MeshData store;
    make_triangle(store, true);
    const GlCalls calls = prepare(store);
    EXPECT_EQ(calls[2], allocate(288, "GL_DYNAMIC_DRAW")[0]);
    EXPECT_EQ(calls[12], "glBufferData(GL_ELEMENT_ARRAY_BUFFER, 6, ptr, GL_STATIC_DRAW)");
    EXPECT_EQ(store.vertex_buffer_usage, static_cast<unsigned>(GL_STATIC_DRAW));
    EXPECT_EQ(store.index_buffer_usage, static_cast<unsigned>(GL_STATIC_DRAW));
    finish(store);
    kill(store);
}

TEST_P(VertexBuffers, goes_by_the_usage_of_the_record_and_the_forced_one_for_indices) {
    renderer->force_buffer_object_usage(BUFFER_USAGE_DEFAULT, BUFFER_USAGE_STREAM_READ);
    MeshData store;
    make_triangle(store, true);
    make_quad_edges(store, 4);
    store.vertex_buffer_usage = GL_STREAM_DRAW;
    store.index_buffer_usage = GL_DYNAMIC_READ;
    const GlCalls calls = prepare(store);
    EXPECT_EQ(calls[2], allocate(288, "GL_STREAM_DRAW")[0]);
    EXPECT_EQ(calls[12], "glBufferData(GL_ELEMENT_ARRAY_BUFFER, 6, ptr, GL_STREAM_READ)");
    EXPECT_EQ(calls[16], "glBufferData(GL_ELEMENT_ARRAY_BUFFER, 16, ptr, GL_STREAM_READ)");
    EXPECT_EQ(store.index_buffer_usage, static_cast<unsigned>(GL_DYNAMIC_READ));
    finish(store);
    kill(store);
}

TEST_P(VertexBuffers, makes_a_new_store_for_interleaved_vertices_of_another_number) {
    MeshData store;
    make_triangle(store, false, 0);
    draw_quietly(store);
    const unsigned int buffer = store.vertex_buffer_id;
    ASSERT_TRUE(store.alloc_vertex_data(6));
    EXPECT_EQ(prepare(store),
              joined({bind_array_buffer(buffer), allocate(576), bind_array_buffer(0),
                      bind_array_buffer(buffer), upload(0, 576), bind_array_buffer(0),
                      bind_vertex_array(store.vertex_array_id)}));
    EXPECT_EQ(prepare(store), bind_vertex_array(store.vertex_array_id));
    finish(store);
    kill(store);
}

TEST_P(VertexBuffers, records_the_vertex_array_anew_where_blocks_moved) {
    MeshData_32 store;
    make_triangle(store, true, 0);
    draw_quietly(store);
    const unsigned int buffer = store.vertex_buffer_id;
    const unsigned int old_array = store.vertex_array_id;
    ASSERT_TRUE(store.alloc_vertex_data(6));
    const GlCalls calls = prepare(store);
    EXPECT_EQ(calls, joined({bind_array_buffer(buffer),
                             allocate(192),
                             bind_array_buffer(0),
                             bind_array_buffer(buffer),
                             upload(0, 72),
                             upload(72, 72),
                             upload(144, 48),
                             bind_array_buffer(0),
                             {call("glDeleteVertexArrays(1, [%u])", old_array)},
                             record_vertex_array(store.vertex_array_id, buffer),
                             generic_pointer(0, 3, 0, 0),
                             generic_pointer(2, 3, 0, 72),
                             generic_pointer(3, 2, 0, 144)}));
    finish(store);
    kill(store);
}

TEST_P(VertexBuffers, makes_a_new_store_for_another_number_of_faces) {
    MeshData store;
    make_triangle(store, true, 1);
    draw_quietly(store);
    set_num_faces(store, 3);
    EXPECT_EQ(prepare(store),
              joined({bind_element_buffer(store.index_buffer_id),
                      {"glBufferData(GL_ELEMENT_ARRAY_BUFFER, 18, 0, GL_STATIC_DRAW)"},
                      bind_element_buffer(0),
                      bind_element_buffer(store.index_buffer_id),
                      upload_elements(18),
                      bind_element_buffer(0),
                      bind_vertex_array(store.vertex_array_id)}));
    finish(store);
    kill(store);
}

TEST_P(VertexBuffers, makes_a_new_store_for_another_number_of_instances) {
    MeshData store;
    make_triangle(store, true, 0);
    make_instances(store, store.instance_positions, 2);
    make_instances(store, store.instance_colors, 2);
    draw_quietly(store);
    make_instances(store, store.instance_positions, 3);
    make_instances(store, store.instance_colors, 3);
    const unsigned int old_array = store.vertex_array_id;
    const GlCalls calls = prepare(store);
    EXPECT_EQ(GlCalls(calls.begin(), calls.begin() + 8),
              joined({bind_array_buffer(store.instance_buffer_id),
                      allocate(96, "GL_DYNAMIC_DRAW"),
                      bind_array_buffer(0),
                      bind_array_buffer(store.instance_buffer_id),
                      upload(0, 48),
                      upload(48, 48),
                      bind_array_buffer(0),
                      {call("glDeleteVertexArrays(1, [%u])", old_array)}}));
    EXPECT_EQ(GlCalls(calls.end() - 3, calls.end()),
              joined({generic_pointer(9, 4, 0, 48), {"glVertexAttribDivisorARB(9, 1)"}}));
    finish(store);
    kill(store);
}

TEST_P(VertexBuffers, kills_all_but_the_quad_edges) {
    MeshData store;
    make_triangle(store, true);
    make_quad_edges(store, 4);
    make_instances(store, store.instance_positions, 2);
    draw_quietly(store);
    const unsigned int edges = store.quad_edge_buffer_id;
    const GlCalls expected = {call("glDeleteVertexArrays(1, [%u])", store.vertex_array_id),
                              call("glDeleteBuffers(1, [%u])", store.vertex_buffer_id),
                              call("glDeleteBuffers(1, [%u])", store.instance_buffer_id),
                              call("glDeleteBuffers(1, [%u])", store.index_buffer_id)};
    EXPECT_TRUE(renderer->vertex_buffer_kill(&store));
    EXPECT_EQ(recorder->take(), expected);
    EXPECT_EQ(store.vertex_array_id + store.vertex_buffer_id + store.instance_buffer_id +
                  store.index_buffer_id,
              0u);
    EXPECT_EQ(store.quad_edge_buffer_id, edges);
    EXPECT_TRUE(renderer->vertex_buffer_kill(&store));
    EXPECT_EQ(recorder->take(), GlCalls()) << "nothing is left to delete";
}

TEST_P(VertexBuffers, is_drawn_again_after_a_kill) {
    MeshData store;
    make_triangle(store, true);
    draw_quietly(store);
    kill(store);
    EXPECT_EQ(prepare(store).size(), 10u + 4u + 3u + 12u + 1u);
    finish(store);
    kill(store);
}

TEST_P(VertexBuffers, kills_only_on_the_thread_of_the_record) {
    MeshData store;
    make_triangle(store, true);
    draw_quietly(store);
    const unsigned int buffer = store.vertex_buffer_id;
    for (const bool generic : {true, false}) {
        store.set_use_generic_vertex_attribs_state(generic);
        bool killed = true;
        std::thread([&] { killed = renderer->vertex_buffer_kill(&store); }).join();
        EXPECT_FALSE(killed);
    }
    EXPECT_EQ(recorder->take(), GlCalls());
    EXPECT_EQ(store.vertex_buffer_id, buffer);
    store.set_use_generic_vertex_attribs_state(true);
    EXPECT_TRUE(renderer->vertex_buffer_kill(&store));
}

TEST_P(VertexBuffers, records_anew_after_a_kill_by_the_other_path) {
    MeshData store;
    make_triangle(store, true);
    draw_quietly(store);
    const unsigned int array = store.vertex_array_id;
    store.set_use_generic_vertex_attribs_state(false);
    kill(store);
    EXPECT_EQ(store.vertex_array_id, array) << "the other path leaves it";
    store.set_use_generic_vertex_attribs_state(true);
    const GlCalls calls = prepare(store);
    EXPECT_EQ(std::count(calls.begin(), calls.end(), call("glDeleteVertexArrays(1, [%u])", array)),
              1);
    EXPECT_EQ(calls.back(), bind_element_buffer(store.index_buffer_id)[0]);
    finish(store);
    kill(store);
}

TEST_P(VertexBuffers, records_anew_for_a_vertex_buffer_of_another_id) {
    MeshData store;
    make_triangle(store, true);
    draw_quietly(store);
    const unsigned int old_buffer = store.vertex_buffer_id;
    store.vertex_buffer_id = renderer->vertex_buffer_create(288, BUFFER_USAGE_DEFAULT);
    recorder->clear();
    EXPECT_EQ(recorder->count("glGenVertexArrays"), 0);
    prepare(store);
    EXPECT_EQ(store.gpu_state.vertex_array_vertex_buffer, store.vertex_buffer_id);
    finish(store);
    kill(store);
    EXPECT_TRUE(renderer->vertex_buffer_kill(old_buffer));
}

TEST_P(VertexBuffers, leaves_a_vertex_array_that_a_host_made_as_it_is) {
    MeshData store;
    make_triangle(store, true);
    {
        const GlRecorderPause pause(*recorder);
        renderer->gl.glGenVertexArrays(1, &store.vertex_array_id);
    }
    const GlCalls calls = prepare(store);
    EXPECT_EQ(calls.back(), bind_vertex_array(store.vertex_array_id)[0]);
    finish(store);
    kill(store);
}

TEST_P(VertexBuffers, keeps_ids_that_it_cannot_delete) {
    MeshData store;
    make_triangle(store, true);
    draw_quietly(store);
    const unsigned int buffer = store.vertex_buffer_id;
    renderer->stop();
    recorder->clear();
    EXPECT_FALSE(renderer->vertex_buffer_kill(&store));
    EXPECT_FALSE(renderer->vertex_buffer_kill(buffer));
    EXPECT_EQ(store.vertex_buffer_id, buffer);
    renderer->start();
    EXPECT_TRUE(renderer->vertex_buffer_kill(&store));
    EXPECT_EQ(store.vertex_buffer_id, 0u);
    const GlRecorderPause pause(*recorder);
    forget_gl_errors(); // of the start, in a core context
}

TEST_P(VertexBuffers, makes_nothing_by_halves_without_its_entry_points) {
    const auto table = renderer->gl;
    const auto expect_refusal = [&](auto remove) {
        MeshData store;
        make_triangle(store, true);
        remove(renderer->gl);
        EXPECT_FALSE(renderer->vertex_buffer_prepare(&store));
        EXPECT_EQ(recorder->take(), GlCalls());
        EXPECT_EQ(store.vertex_buffer_id, 0u);
        renderer->gl = table;
    };
    expect_refusal([](auto& gl) { gl.glGenBuffers = nullptr; });
    expect_refusal([](auto& gl) { gl.glBindBuffer = nullptr; });
    expect_refusal([](auto& gl) { gl.glBufferData = nullptr; });
    expect_refusal([](auto& gl) { gl.glBufferSubData = nullptr; });
    expect_refusal([](auto& gl) { gl.glGenVertexArrays = nullptr; });
    expect_refusal([](auto& gl) { gl.glBindVertexArray = nullptr; });
    expect_refusal([](auto& gl) { gl.glEnableVertexAttribArray = nullptr; });
    expect_refusal([](auto& gl) { gl.glVertexAttribPointer = nullptr; });
    MeshData store;
    renderer->gl.glBindVertexArray = nullptr;
    EXPECT_FALSE(renderer->vertex_buffer_finish(&store));
    renderer->gl = table;
}

TEST_P(VertexBuffers, refuses_null_and_id_0) {
    EXPECT_FALSE(renderer->vertex_buffer_prepare(nullptr));
    EXPECT_FALSE(renderer->vertex_buffer_prepare_separate_arrays(nullptr));
    EXPECT_FALSE(renderer->vertex_buffer_draw(nullptr));
    EXPECT_FALSE(renderer->vertex_buffer_draw_with_shader_effect(nullptr, nullptr));
    EXPECT_FALSE(renderer->vertex_buffer_finish(nullptr));
    EXPECT_FALSE(renderer->vertex_buffer_kill(static_cast<MeshData*>(nullptr)));
    EXPECT_FALSE(renderer->vertex_buffer_resize(nullptr));
    EXPECT_FALSE(renderer->vertex_buffer_kill(0u));
    EXPECT_FALSE(renderer->vertex_buffer_kill(0));
    EXPECT_FALSE(renderer->vertex_buffer_invalidate(0, 16, BUFFER_USAGE_DEFAULT));
    EXPECT_EQ(renderer->vertex_buffer_map(0), nullptr);
    EXPECT_FALSE(renderer->vertex_buffer_unmap(0));
    MeshData store;
    EXPECT_FALSE(renderer->vertex_buffer_draw_with_shader_effect(&store, nullptr));
    EXPECT_EQ(recorder->take(), GlCalls());
}

TEST_P(VertexBuffers, makes_maps_orphans_and_kills_buffers_by_id) {
    const unsigned int id = renderer->vertex_buffer_create(64, BUFFER_USAGE_STREAM_DRAW);
    ASSERT_NE(id, 0u);
    EXPECT_EQ(recorder->take(), joined({generate_buffer(id), bind_array_buffer(id),
                                        allocate(64, "GL_STREAM_DRAW"), bind_array_buffer(0)}));
    EXPECT_NE(renderer->vertex_buffer_map(id), nullptr);
    EXPECT_EQ(recorder->take(),
              joined({bind_array_buffer(id), {"glMapBuffer(GL_ARRAY_BUFFER, GL_WRITE_ONLY)"}}));
    EXPECT_TRUE(renderer->vertex_buffer_unmap(id));
    EXPECT_EQ(
        recorder->take(),
        joined({bind_array_buffer(id), {"glUnmapBuffer(GL_ARRAY_BUFFER)"}, bind_array_buffer(0)}));
    EXPECT_TRUE(renderer->vertex_buffer_invalidate(id, 32, static_cast<BUFFER_OBJECT_USAGE>(7)));
    EXPECT_EQ(recorder->take(),
              joined({bind_array_buffer(id), allocate(32), bind_array_buffer(0)}));
    EXPECT_TRUE(renderer->vertex_buffer_kill(id));
    EXPECT_EQ(recorder->take(), GlCalls({call("glDeleteBuffers(1, [%u])", id)}));
}

TEST_P(VertexBuffers, forces_usages_on_buffers_by_id) {
    renderer->force_buffer_object_usage(BUFFER_USAGE_STREAM_READ, BUFFER_USAGE_DYNAMIC_READ);
    const unsigned int id = renderer->vertex_buffer_create(64, BUFFER_USAGE_STATIC_DRAW);
    EXPECT_EQ(recorder->take()[2], allocate(64, "GL_STREAM_READ")[0]);
    renderer->vertex_buffer_invalidate(id, 32, BUFFER_USAGE_STATIC_DRAW);
    EXPECT_EQ(recorder->take()[1], allocate(32, "GL_STREAM_READ")[0]);
    renderer->vertex_buffer_kill(id);
}

TEST_P(VertexBuffers, resizes_interleaved_stores_only) {
    MeshData store;
    make_triangle(store, false, 0);
    EXPECT_FALSE(renderer->vertex_buffer_resize(&store)) << "there is no buffer yet";
    draw_quietly(store);
    ASSERT_TRUE(store.alloc_vertex_data(5));
    EXPECT_TRUE(renderer->vertex_buffer_resize(&store));
    EXPECT_EQ(recorder->take(), joined({bind_array_buffer(store.vertex_buffer_id), allocate(480),
                                        bind_array_buffer(0)}));
    EXPECT_FALSE(store.positions_need_update) << "filling it is up to the host";
    EXPECT_EQ(prepare(store), bind_vertex_array(store.vertex_array_id));
    finish(store);
    store.separate_vertex_arrays = true;
    EXPECT_FALSE(renderer->vertex_buffer_resize(&store));
    kill(store);
}

TEST_P(VertexBuffers, prepares_separate_arrays_through_their_own_operation) {
    MeshData store;
    make_triangle(store, true);
    EXPECT_TRUE(renderer->vertex_buffer_prepare_separate_arrays(&store));
    recorder->clear();
    EXPECT_EQ(draw(store), GlCalls({"glDrawElements(GL_TRIANGLES, 3, GL_UNSIGNED_SHORT, 0)"}));
    finish(store);
    kill(store);
    MeshData interleaved;
    make_triangle(interleaved, false);
    EXPECT_FALSE(renderer->vertex_buffer_prepare_separate_arrays(&interleaved));
}

} // namespace

} // namespace orvex_test
