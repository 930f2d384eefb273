#include "vertex_buffers_fixture.h"

namespace orvex_test {

using namespace orvex;

namespace {

class ClientArraysPath : public ClientArraysTest {};

GlCalls pointer_calls(int stride, const unsigned long (&offsets)[5], int normal_stride) {
    return {call("glVertexPointer(4, GL_FLOAT, %d, %lu)", stride, offsets[0]),
            "glEnableClientState(GL_VERTEX_ARRAY)",
            call("glColorPointer(4, GL_FLOAT, %d, %lu)", stride, offsets[1]),
            "glEnableClientState(GL_COLOR_ARRAY)",
            call("glNormalPointer(GL_FLOAT, %d, %lu)", normal_stride, offsets[2]),
            "glEnableClientState(GL_NORMAL_ARRAY)",
            "glClientActiveTexture(GL_TEXTURE0)",
            call("glTexCoordPointer(4, GL_FLOAT, %d, %lu)", stride, offsets[3]),
            "glEnableClientState(GL_TEXTURE_COORD_ARRAY)",
            "glClientActiveTexture(GL_TEXTURE1)",
            call("glTexCoordPointer(4, GL_FLOAT, %d, %lu)", stride, offsets[4]),
            "glEnableClientState(GL_TEXTURE_COORD_ARRAY)"};
}

TEST_F(ClientArraysPath, uploads_interleaved_records_and_points_into_them) {
    MeshData store;
    make_client_triangle(store, false);
    const GlCalls calls = prepare(store);
    const unsigned int buffer = store.vertex_buffer_id;
    const GlCalls pointers =
        joined({pointer_calls(96, {0, 16, 32, 48, 64}, 96), generic_pointer(5, 4, 96, 80)});
    EXPECT_EQ(calls, joined({generate_buffer(buffer), bind_array_buffer(buffer), allocate(288),
                             upload(0, 288), pointers, create_faces(store.index_buffer_id, 6)}));
    EXPECT_EQ(store.renderer_id, renderer->getid());
    EXPECT_EQ(store.vertex_array_id, 0u);
    EXPECT_EQ(draw(store), GlCalls({"glDrawElements(GL_TRIANGLES, 3, GL_UNSIGNED_SHORT, 0)"}));
    finish(store);
    EXPECT_EQ(prepare(store), joined({bind_array_buffer(buffer), pointers,
                                      bind_element_buffer(store.index_buffer_id)}))
        << "the arrays are set up anew each time";
    finish(store);
    kill(store);
}

TEST_F(ClientArraysPath, leaves_the_arrays_of_interleaved_records_enabled) {
    MeshData store;
    make_client_triangle(store, false);
    ASSERT_TRUE(store.alloc_user_vertex_attribs(2));
    store.set_user_attrib_location(0, 11);
    prepare_quietly(store);
    EXPECT_EQ(finish(store), joined({bind_element_buffer(0),
                                     bind_array_buffer(0),
                                     {"glDisableClientState(GL_VERTEX_ARRAY)",
                                      "glDisableVertexAttribArray(11)"}}));
    EXPECT_TRUE(glIsEnabled(GL_COLOR_ARRAY));
    EXPECT_TRUE(glIsEnabled(GL_NORMAL_ARRAY));
    EXPECT_FALSE(glIsEnabled(GL_VERTEX_ARRAY));
    kill(store);
    const GlRecorderPause pause(*recorder);
    forget_gl_errors(); // the first frame's user attributes miss the buffer
}

TEST_F(ClientArraysPath, uploads_separate_arrays_and_points_to_each_block) {
    MeshData store;
    make_client_triangle(store, true);
    const GlCalls calls = prepare(store);
    const unsigned int buffer = store.vertex_buffer_id;
    const GlCalls pointers =
        joined({pointer_calls(0, {0, 48, 96, 144, 192}, 16), generic_pointer(5, 4, 0, 240)});
    EXPECT_EQ(calls, joined({generate_buffer(buffer), bind_array_buffer(buffer), allocate(288),
                             upload(0, 48), upload(48, 48), upload(96, 48), upload(144, 48),
                             upload(192, 48), upload(240, 48), pointers,
                             create_faces(store.index_buffer_id, 6)}));
    draw(store);
    EXPECT_EQ(
        finish(store),
        joined(
            {bind_element_buffer(0),
             bind_array_buffer(0),
             {"glDisableClientState(GL_VERTEX_ARRAY)", "glDisableClientState(GL_COLOR_ARRAY)",
              "glDisableClientState(GL_NORMAL_ARRAY)", "glClientActiveTexture(GL_TEXTURE1)",
              "glDisableClientState(GL_TEXTURE_COORD_ARRAY)", "glClientActiveTexture(GL_TEXTURE0)",
              "glDisableClientState(GL_TEXTURE_COORD_ARRAY)"}}));
    store.uv0_need_update = true;
    EXPECT_EQ(prepare(store), joined({bind_array_buffer(buffer), upload(144, 48), pointers,
                                      bind_element_buffer(store.index_buffer_id)}));
    EXPECT_FALSE(store.uv0_need_update);
    finish(store);
    kill(store);
}

TEST_F(ClientArraysPath, uploads_a_separate_block_once_on_the_frame_of_creation) {
    MeshData_32 store;
    make_client_triangle(store, true, 0);
    store.positions_need_update = true;
    const GlCalls calls = prepare(store);
    EXPECT_EQ(std::count(calls.begin(), calls.end(), upload(0, 36)[0]), 1);
    EXPECT_FALSE(store.positions_need_update || store.normals_need_update);
    finish(store);
    kill(store);
}

TEST_F(ClientArraysPath, reads_three_float_normals_without_a_stride) {
    MeshData_64 store;
    make_client_triangle(store, true, 0);
    const GlCalls calls = prepare(store);
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "glNormalPointer(GL_FLOAT, 0, 84)"), 1);
    EXPECT_EQ(recorder->count("glTexCoordPointer"), 0) << "no second layer was pointed to since";
    finish(store);
    kill(store);
}

TEST_F(ClientArraysPath, points_only_to_attributes_that_a_format_has) {
    MeshData_32 store;
    make_client_triangle(store, false, 0);
    const GlCalls calls = prepare(store);
    EXPECT_EQ(
        GlCalls(calls.begin() + 4, calls.end()),
        GlCalls({"glVertexPointer(3, GL_FLOAT, 32, 0)", "glEnableClientState(GL_VERTEX_ARRAY)",
                 "glNormalPointer(GL_FLOAT, 32, 12)", "glEnableClientState(GL_NORMAL_ARRAY)",
                 "glClientActiveTexture(GL_TEXTURE0)", "glTexCoordPointer(2, GL_FLOAT, 32, 24)",
                 "glEnableClientState(GL_TEXTURE_COORD_ARRAY)"}));
    finish(store);
    kill(store);
}

TEST_F(ClientArraysPath, misses_its_buffer_with_user_attributes_on_the_first_interleaved_frame) {
    MeshData store;
    make_client_triangle(store, false, 0);
    ASSERT_TRUE(store.alloc_user_vertex_attribs(2));
    store.set_user_attrib_location(1, 12);
    const GlCalls calls = prepare(store);
    const unsigned int buffer = store.vertex_buffer_id;
    EXPECT_EQ(GlCalls(calls.begin(), calls.begin() + 6),
              joined({generate_buffer(buffer), bind_array_buffer(buffer), allocate(384),
                      upload(0, 384), upload(384, 48), upload(432, 48)}));
    EXPECT_GL_ERROR(GL_INVALID_VALUE);
    EXPECT_EQ(GlCalls(calls.end() - 2, calls.end()), generic_pointer(12, 4, 96, 112));
    finish(store);
    EXPECT_TRUE(store.user_attribs[0].need_update);
    const GlCalls second = prepare(store);
    EXPECT_EQ(GlCalls(second.begin(), second.begin() + 3),
              joined({bind_array_buffer(buffer), upload(288, 48), upload(336, 48)}));
    finish(store);
    kill(store);
}

TEST_F(ClientArraysPath, appends_user_attributes_behind_separate_blocks) {
    MeshData store;
    make_client_triangle(store, true, 0);
    ASSERT_TRUE(store.alloc_user_vertex_attribs(1));
    store.set_user_attrib_location(0, 12);
    const GlCalls calls = prepare(store);
    EXPECT_EQ(calls[2], allocate(336)[0]);
    EXPECT_EQ(calls[9], upload(288, 48)[0]);
    EXPECT_EQ(GlCalls(calls.end() - 2, calls.end()), generic_pointer(12, 4, 0, 288));
    EXPECT_FALSE(store.user_attribs[0].need_update);
    finish(store);
    kill(store);
}

TEST_F(ClientArraysPath, puts_each_user_attribute_behind_the_one_before) {
    MeshData store;
    make_client_triangle(store, true, 0);
    ASSERT_TRUE(store.alloc_user_vertex_attribs(3));
    for (unsigned long i = 0; i < 3; ++i)
        store.set_user_attrib_location(i, 11 + static_cast<int>(i));
    const GlCalls calls = prepare(store);
    EXPECT_EQ(calls[2], allocate(432)[0]);
    EXPECT_EQ(GlCalls(calls.begin() + 9, calls.begin() + 12),
              joined({upload(288, 48), upload(336, 48), upload(384, 48)}));
    EXPECT_EQ(GlCalls(calls.end() - 6, calls.end()),
              joined({generic_pointer(11, 4, 0, 288), generic_pointer(12, 4, 0, 336),
                      generic_pointer(13, 4, 0, 384)}));
    finish(store);
    kill(store);
}

TEST_F(ClientArraysPath, ignores_instances_subsets_and_the_tessellation_of_faces) {
    MeshData store;
    make_client_triangle(store, true, 4);
    make_instances(store, store.instance_positions, 3);
    store.instance_positions_need_update = true;
    MaterialSubset subset{1, 2, 0};
    store.current_subset = &subset;
    store.tessellation_state = true;
    prepare_quietly(store);
    EXPECT_EQ(store.instance_buffer_id, 0u);
    EXPECT_EQ(draw(store), GlCalls({"glDrawElements(GL_TRIANGLES, 12, GL_UNSIGNED_SHORT, 0)"}));
    store.current_subset = nullptr;
    finish(store);
    kill(store);
}

TEST_F(ClientArraysPath, draws_vertices_without_faces_by_range) {
    MeshData store;
    make_client_triangle(store, true, 0);
    store.draw_end_vertex = 2;
    prepare_quietly(store);
    EXPECT_EQ(draw(store), GlCalls({"glDrawArrays(GL_TRIANGLES, 0, 2)"}));
    store.tessellation_state = true;
    EXPECT_EQ(draw(store), GlCalls({"glDrawArrays(GL_PATCHES, 0, 2)"}));
    EXPECT_GL_ERROR(GL_INVALID_OPERATION); // no tessellating program is active
    finish(store);
    kill(store);
}

TEST_F(ClientArraysPath, fails_without_vertices_and_draws_an_empty_range) {
    for (const bool separate : {true, false}) {
        MeshData store;
        store.separate_vertex_arrays = separate;
        store.set_use_generic_vertex_attribs_state(false);
        EXPECT_FALSE(renderer->vertex_buffer_prepare(&store));
        store.num_vertices = 3;
        EXPECT_FALSE(renderer->vertex_buffer_prepare(&store)) << "never allocated";
        EXPECT_EQ(recorder->take(), GlCalls());
        EXPECT_EQ(draw(store), GlCalls({"glDrawArrays(GL_TRIANGLES, 0, 0)"}));
    }
}

TEST_F(ClientArraysPath, sends_no_indexed_call_without_its_buffers) {
    MeshData store;
    make_client_triangle(store, true);
    store.free_vertex_data();
    EXPECT_FALSE(renderer->vertex_buffer_prepare(&store));
    EXPECT_EQ(draw(store), GlCalls());
    ASSERT_TRUE(store.alloc_vertex_data(3));
    draw_quietly(store);
    EXPECT_EQ(draw(store), GlCalls()) << "after the finish";
    store.render_wireframe_quad = true;
    store.quad_edge_buffer_id = 1000;
    EXPECT_EQ(draw(store), GlCalls());
    store.quad_edge_buffer_id = 0;
    kill(store);
}

TEST_F(ClientArraysPath, draws_quad_edges_as_lines) {
    MeshData store;
    make_client_triangle(store, true);
    ASSERT_TRUE(store.alloc_quad_edge_data(4));
    store.render_wireframe_quad = true;
    const GlCalls calls = prepare(store);
    EXPECT_EQ(GlCalls(calls.end() - 3, calls.end()), create_faces(store.quad_edge_buffer_id, 16));
    EXPECT_EQ(draw(store), GlCalls({"glDrawElements(GL_LINES, 4, GL_UNSIGNED_INT, 0)"}));
    finish(store);
    const GlCalls second = prepare(store);
    EXPECT_EQ(second.back(), bind_element_buffer(store.quad_edge_buffer_id)[0]);
    finish(store);
    kill(store);
}

TEST_F(ClientArraysPath, uploads_changed_faces) {
    MeshData store;
    make_client_triangle(store, true, 2);
    draw_quietly(store);
    store.faces_need_update = true;
    const GlCalls calls = prepare(store);
    EXPECT_EQ(GlCalls(calls.end() - 2, calls.end()),
              joined({bind_element_buffer(store.index_buffer_id), upload_elements(12)}));
    EXPECT_FALSE(store.faces_need_update);
    finish(store);
    kill(store);
}

TEST_F(ClientArraysPath, makes_new_stores_for_other_sizes) {
    for (const bool separate : {true, false}) {
        MeshData_32 store;
        make_client_triangle(store, separate, 1);
        draw_quietly(store);
        ASSERT_TRUE(store.alloc_vertex_data(6));
        set_num_faces(store, 2);
        const GlCalls calls = prepare(store);
        EXPECT_EQ(GlCalls(calls.begin(), calls.begin() + 2),
                  joined({bind_array_buffer(store.vertex_buffer_id), allocate(192)}));
        EXPECT_EQ(calls[2], separate ? upload(0, 72)[0] : upload(0, 192)[0]);
        EXPECT_EQ(GlCalls(calls.end() - 3, calls.end()),
                  joined({bind_element_buffer(store.index_buffer_id),
                          {"glBufferData(GL_ELEMENT_ARRAY_BUFFER, 12, 0, GL_STATIC_DRAW)"},
                          upload_elements(12)}));
        finish(store);
        kill(store);
    }
}

TEST_F(ClientArraysPath, kills_all_but_the_vertex_array) {
    MeshData store;
    make_client_triangle(store, true);
    ASSERT_TRUE(store.alloc_quad_edge_data(4));
    store.render_wireframe_quad = true;
    draw_quietly(store);
    store.vertex_array_id = 7;
    const GlCalls expected = {"glDisableVertexAttribArray(5)", // the tangents' was left enabled
                              call("glDeleteBuffers(1, [%u])", store.vertex_buffer_id),
                              call("glDeleteBuffers(1, [%u])", store.index_buffer_id),
                              call("glDeleteBuffers(1, [%u])", store.quad_edge_buffer_id)};
    EXPECT_TRUE(renderer->vertex_buffer_kill(&store));
    EXPECT_EQ(recorder->take(), expected);
    EXPECT_EQ(store.quad_edge_buffer_id, 0u);
    EXPECT_EQ(store.vertex_array_id, 7u);
}

TEST_F(ClientArraysPath, disables_arrays_left_over_a_dying_buffer) {
    MeshData store;
    make_client_triangle(store, false);
    draw_quietly(store);
    ASSERT_TRUE(glIsEnabled(GL_COLOR_ARRAY));
    const unsigned int buffer = store.vertex_buffer_id;
    const GlCalls calls = kill(store);
    EXPECT_EQ(calls[0], "glDisableClientState(GL_COLOR_ARRAY)");
    EXPECT_EQ(std::count(calls.begin(), calls.end(), call("glDeleteBuffers(1, [%u])", buffer)), 1);
    EXPECT_FALSE(glIsEnabled(GL_COLOR_ARRAY));
    EXPECT_FALSE(glIsEnabled(GL_NORMAL_ARRAY));
    EXPECT_FALSE(glIsEnabled(GL_TEXTURE_COORD_ARRAY));
    MeshData_32 colorless;
    make_client_triangle(colorless, true);
    draw_quietly(colorless); // would read the dead colours
    kill(colorless);
}

TEST_F(ClientArraysPath, disables_arrays_over_a_buffer_killed_by_its_id) {
    MeshData store;
    make_client_triangle(store, false);
    draw_quietly(store);
    EXPECT_TRUE(renderer->vertex_buffer_kill(store.vertex_buffer_id));
    EXPECT_FALSE(glIsEnabled(GL_COLOR_ARRAY));
    store.vertex_buffer_id = 0;
    kill(store);
}

TEST_F(ClientArraysPath, disables_arrays_over_a_buffer_of_counters_that_is_killed) {
    MeshData store;
    make_client_triangle(store, false);
    draw_quietly(store);
    EXPECT_TRUE(renderer->atomic_counter_kill_buffer(store.vertex_buffer_id));
    EXPECT_FALSE(glIsEnabled(GL_COLOR_ARRAY));
    store.vertex_buffer_id = 0;
    kill(store);
}

TEST_F(ClientArraysPath, disables_left_arrays_that_are_too_short_for_the_next_record) {
    MeshData small;
    make_client_triangle(small, false);
    draw_quietly(small);
    MeshData_32 equal;
    make_client_triangle(equal, true);
    draw_quietly(equal);
    EXPECT_TRUE(glIsEnabled(GL_COLOR_ARRAY)) << "three colours are enough for three vertices";
    MeshData_32 large;
    large.set_use_generic_vertex_attribs_state(false);
    ASSERT_TRUE(large.alloc_vertex_data(100));
    const GlCalls calls = prepare(large);
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "glDisableClientState(GL_COLOR_ARRAY)"), 1);
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "glDisableVertexAttribArray(5)"), 1);
    EXPECT_FALSE(glIsEnabled(GL_COLOR_ARRAY));
    EXPECT_TRUE(glIsEnabled(GL_NORMAL_ARRAY)) << "the record has normals of its own";
    draw(large);
    finish(large);
    kill(small);
    kill(equal);
    kill(large);
}

TEST_F(ClientArraysPath, makes_nothing_by_halves_without_its_entry_points) {
    const auto table = renderer->gl;
    const auto expect_refusal = [&](auto remove) {
        for (const bool separate : {true, false}) {
            MeshData store;
            make_client_triangle(store, separate);
            remove(renderer->gl);
            EXPECT_FALSE(renderer->vertex_buffer_prepare(&store));
            EXPECT_EQ(recorder->take(), GlCalls());
            renderer->gl = table;
        }
    };
    expect_refusal([](auto& gl) { gl.glGenBuffers = nullptr; });
    expect_refusal([](auto& gl) { gl.glBindBuffer = nullptr; });
    expect_refusal([](auto& gl) { gl.glBufferData = nullptr; });
    expect_refusal([](auto& gl) { gl.glBufferSubData = nullptr; });
    expect_refusal([](auto& gl) { gl.glEnableVertexAttribArray = nullptr; });
    expect_refusal([](auto& gl) { gl.glVertexAttribPointer = nullptr; });
}

TEST_F(ClientArraysPath, leaves_texture_coordinates_out_without_client_units) {
    renderer->gl.glClientActiveTexture = nullptr;
    MeshData store;
    make_client_triangle(store, true);
    const GlCalls calls = prepare(store);
    for (const std::string& text : calls)
        EXPECT_EQ(text.find("glTexCoordPointer"), std::string::npos);
    finish(store);
    EXPECT_EQ(recorder->count("glClientActiveTexture"), 0);
    kill(store);
}

} // namespace

} // namespace orvex_test
