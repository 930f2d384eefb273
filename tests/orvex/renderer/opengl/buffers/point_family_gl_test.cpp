#include "orvex/geometry/points/vertex_pool.h"

#include <string>

#include "orvex/renderer/records/vertex_pool_data.h"
#include "vertex_buffers_fixture.h"

namespace orvex_test {

using namespace orvex;

namespace {

constexpr bool interleaved = false;
constexpr bool separate = true;

/// Operations on one pool, each with the calls it made.
class PoolCalls : public RecordedRenderer {
protected:
    void make(bool separate_arrays, unsigned long count = 3) {
        ASSERT_TRUE(pool.init_v2(count, separate_arrays));
    }

    GlCalls prepare() {
        EXPECT_TRUE(renderer->vertex_pool_render_prepare(&pool));
        return recorder->take();
    }

    GlCalls draw() {
        EXPECT_TRUE(renderer->vertex_pool_render_draw(&pool));
        return recorder->take();
    }

    GlCalls finish() {
        EXPECT_TRUE(renderer->vertex_pool_render_finish(&pool));
        return recorder->take();
    }

    GlCalls kill() {
        EXPECT_TRUE(renderer->vertex_pool_kill(&pool));
        return recorder->take();
    }

    void draw_quietly() {
        EXPECT_TRUE(renderer->vertex_pool_render(&pool));
        recorder->clear();
    }

    GlCalls make_buffer(unsigned long bytes, const char* data) const {
        return joined(
            {generate_buffer(pool.vertex_buffer_id),
             bind_array_buffer(pool.vertex_buffer_id),
             {call("glBufferData(GL_ARRAY_BUFFER, %lu, %s, GL_STATIC_DRAW)", bytes, data)}});
    }

    VertexPoolData pool;
};

class VertexPools : public GlTest, public PoolCalls {
protected:
    void SetUp() override {
        GlTest::SetUp();
        start();
    }

    void TearDown() override {
        renderer->vertex_pool_kill(&pool);
        // A core context has no point sprites to switch; they are always on there.
        if (is_core_context())
            glGetError();
        GlTest::TearDown();
    }
};
ORVEX_BOTH_PROFILES(VertexPools);

const GlCalls size_from_program = {"glEnable(GL_PROGRAM_POINT_SIZE)"};

TEST_P(VertexPools, make_their_records_with_the_buffer_and_record_fixed_attribute_numbers) {
    make(interleaved);
    const GlCalls calls = prepare();
    EXPECT_EQ(calls, joined({make_buffer(288, "ptr"), bind_array_buffer(0),
                             record_vertex_array(pool.vertex_array_id, pool.vertex_buffer_id),
                             generic_pointer(0, 4, 96, 0), generic_pointer(1, 4, 96, 16),
                             generic_pointer(2, 4, 96, 32), size_from_program}));
    EXPECT_EQ(pool.renderer_id, renderer->getid());
    EXPECT_EQ(draw(), GlCalls({"glDrawArrays(GL_POINTS, 0, 3)"}));
    EXPECT_EQ(finish(), GlCalls({"glDisable(GL_PROGRAM_POINT_SIZE)", "glDisable(GL_POINT_SPRITE)",
                                 "glBindVertexArray(0)"}));
}

TEST_P(VertexPools, make_separate_blocks_by_upload) {
    make(separate);
    const GlCalls calls = prepare();
    const unsigned int buffer = pool.vertex_buffer_id;
    EXPECT_EQ(calls, joined({make_buffer(84, "0"), bind_array_buffer(buffer), upload(0, 36),
                             upload(36, 48), record_vertex_array(pool.vertex_array_id, buffer),
                             generic_pointer(0, 3, 0, 0), generic_pointer(1, 4, 0, 36),
                             size_from_program}));
    EXPECT_FALSE(pool.positions_need_update || pool.colors_need_update);
    finish();
}

TEST_P(VertexPools, with_nothing_dirty_only_bind) {
    make(interleaved);
    draw_quietly();
    EXPECT_EQ(prepare(), joined({bind_vertex_array(pool.vertex_array_id), size_from_program}));
    finish();
    kill();
    make(separate);
    draw_quietly();
    EXPECT_EQ(prepare(), joined({bind_array_buffer(pool.vertex_buffer_id),
                                 bind_vertex_array(pool.vertex_array_id), size_from_program}));
    finish();
}

TEST_P(VertexPools, upload_what_is_dirty) {
    make(interleaved);
    draw_quietly();
    pool.vertices_need_update = true;
    EXPECT_EQ(prepare(), joined({bind_array_buffer(pool.vertex_buffer_id), upload(0, 288),
                                 bind_array_buffer(0), bind_vertex_array(pool.vertex_array_id),
                                 size_from_program}));
    EXPECT_FALSE(pool.vertices_need_update);
    finish();
    kill();
    make(separate);
    draw_quietly();
    pool.colors_need_update = true;
    EXPECT_EQ(prepare(), joined({bind_array_buffer(pool.vertex_buffer_id), upload(36, 48),
                                 bind_vertex_array(pool.vertex_array_id), size_from_program}));
    pool.positions_need_update = true;
    EXPECT_EQ(prepare(), joined({bind_array_buffer(pool.vertex_buffer_id), upload(0, 36),
                                 bind_vertex_array(pool.vertex_array_id), size_from_program}));
    finish();
}

TEST_P(VertexPools, leave_out_attributes_that_are_switched_off) {
    make(interleaved);
    pool.has_color = false;
    pool.has_normal = false;
    const GlCalls calls = prepare();
    EXPECT_EQ(GlCalls(calls.end() - 3, calls.end()),
              joined({generic_pointer(0, 4, 96, 0), size_from_program}));
    finish();
}

TEST_P(VertexPools, draw_what_they_are_told) {
    make(interleaved, 10);
    prepare();
    pool.render_start_offset = 4;
    pool.render_num_vertices = 0;
    EXPECT_EQ(draw(), GlCalls({"glDrawArrays(GL_POINTS, 4, 6)"}));
    pool.render_num_vertices = -1;
    EXPECT_EQ(draw(), GlCalls({"glDrawArrays(GL_POINTS, 4, 6)"}));
    pool.render_num_vertices = 2;
    EXPECT_EQ(draw(), GlCalls({"glDrawArrays(GL_POINTS, 4, 2)"}));
    finish();
}

TEST_P(VertexPools, take_the_usage_of_the_record_unless_one_is_forced) {
    make(interleaved);
    pool.buffer_usage = BUFFER_USAGE_STREAM_DRAW;
    EXPECT_EQ(prepare()[2], "glBufferData(GL_ARRAY_BUFFER, 288, ptr, GL_STREAM_DRAW)");
    finish();
    kill();
    pool.buffer_usage = BUFFER_USAGE_DEFAULT;
    EXPECT_EQ(prepare()[2], "glBufferData(GL_ARRAY_BUFFER, 288, ptr, GL_STATIC_DRAW)");
    finish();
    kill();
    renderer->force_buffer_object_usage(BUFFER_USAGE_DYNAMIC_DRAW, BUFFER_USAGE_DEFAULT);
    EXPECT_EQ(prepare()[2], "glBufferData(GL_ARRAY_BUFFER, 288, ptr, GL_DYNAMIC_DRAW)");
    EXPECT_EQ(pool.buffer_usage, BUFFER_USAGE_DEFAULT);
    finish();
}

TEST_P(VertexPools, of_another_size_get_new_storage_and_pointers_that_fit) {
    make(interleaved);
    draw_quietly();
    make(interleaved, 5);
    EXPECT_EQ(prepare(), joined({bind_array_buffer(pool.vertex_buffer_id),
                                 {"glBufferData(GL_ARRAY_BUFFER, 480, ptr, GL_STATIC_DRAW)"},
                                 bind_array_buffer(0),
                                 bind_vertex_array(pool.vertex_array_id),
                                 size_from_program}));
    finish();
    kill();
    make(separate);
    draw_quietly();
    const unsigned int old_array = pool.vertex_array_id;
    make(separate, 5);
    const GlCalls calls = prepare();
    EXPECT_EQ(calls, joined({bind_array_buffer(pool.vertex_buffer_id),
                             allocate(140),
                             bind_array_buffer(pool.vertex_buffer_id),
                             upload(0, 60),
                             upload(60, 80),
                             {call("glDeleteVertexArrays(1, [%u])", old_array)},
                             record_vertex_array(pool.vertex_array_id, pool.vertex_buffer_id),
                             generic_pointer(0, 3, 0, 0),
                             generic_pointer(1, 4, 0, 60),
                             size_from_program}));
    finish();
}

TEST_P(VertexPools, of_another_layout_and_the_same_size_are_made_anew) {
    make(interleaved, 7);
    draw_quietly();
    make(separate, 24); // 672 bytes both
    const GlCalls calls = prepare();
    EXPECT_EQ(recorder->count("glGenBuffers"), 0);
    EXPECT_EQ(
        GlCalls(calls.end() - 5, calls.end()),
        joined({generic_pointer(0, 3, 0, 0), generic_pointer(1, 4, 0, 288), size_from_program}));
    finish();
}

TEST_P(VertexPools, without_points_make_nothing_and_are_drawn_all_the_same) {
    EXPECT_FALSE(renderer->vertex_pool_render_prepare(&pool));
    EXPECT_TRUE(recorder->take().empty());
    make(separate);
    pool.cleanup();
    EXPECT_FALSE(renderer->vertex_pool_render_prepare(&pool));
    pool.init(3); // records in a pool that stays separate
    EXPECT_FALSE(renderer->vertex_pool_render_prepare(&pool));
    EXPECT_TRUE(recorder->take().empty());
    EXPECT_EQ(pool.vertex_buffer_id, 0u);
    EXPECT_EQ(draw(), GlCalls({"glDrawArrays(GL_POINTS, 0, 3)"}));
    finish();
    const GlRecorderPause pause(*recorder);
    glGetError(); // a core context refuses to draw without a vertex array
}

TEST_P(VertexPools, refuse_null) {
    EXPECT_FALSE(renderer->vertex_pool_render_prepare(nullptr));
    EXPECT_FALSE(renderer->vertex_pool_render_draw(nullptr));
    EXPECT_FALSE(renderer->vertex_pool_render_finish(nullptr));
    EXPECT_FALSE(renderer->vertex_pool_kill(nullptr));
    EXPECT_TRUE(renderer->vertex_pool_render(nullptr));
    EXPECT_TRUE(recorder->take().empty());
}

TEST_P(VertexPools, are_killed_array_first) {
    make(interleaved);
    draw_quietly();
    const unsigned int buffer = pool.vertex_buffer_id;
    const unsigned int array = pool.vertex_array_id;
    EXPECT_EQ(kill(), GlCalls({call("glDeleteVertexArrays(1, [%u])", array),
                               call("glDeleteBuffers(1, [%u])", buffer)}));
    EXPECT_EQ(pool.vertex_buffer_id, 0u);
    EXPECT_EQ(pool.vertex_array_id, 0u);
    EXPECT_EQ(kill(), GlCalls());
}

TEST_P(VertexPools, forget_the_size_of_a_buffer_that_was_killed) {
    make(interleaved);
    draw_quietly();
    kill();
    make(interleaved, 5);
    pool.vertex_buffer_id = renderer->vertex_buffer_create(480, BUFFER_USAGE_STATIC_DRAW);
    recorder->clear();
    EXPECT_TRUE(renderer->vertex_pool_render_prepare(&pool));
    EXPECT_EQ(recorder->count("glBufferData"), 0) << "the host's own stays as it is";
    finish();
}

TEST_P(VertexPools, point_into_another_buffer_that_a_host_put_in_the_record) {
    make(interleaved);
    draw_quietly();
    const unsigned int first = pool.vertex_buffer_id;
    pool.vertex_buffer_id = renderer->vertex_buffer_create(288, BUFFER_USAGE_STATIC_DRAW);
    recorder->clear();
    EXPECT_TRUE(renderer->vertex_pool_render_prepare(&pool));
    EXPECT_EQ(recorder->count("glVertexAttribPointer"), 3);
    EXPECT_EQ(recorder->count("glBufferData"), 0);
    finish();
    EXPECT_TRUE(renderer->vertex_buffer_kill(first));
}

TEST_P(VertexPools, point_anew_when_their_buffer_had_to_be_made_anew) {
    make(interleaved);
    draw_quietly();
    EXPECT_TRUE(renderer->vertex_buffer_kill(pool.vertex_buffer_id));
    pool.vertex_buffer_id = 0;
    pool.gpu_state.vertex_array_vertex_buffer = 0; // as if the driver gave the same name again
    recorder->clear();
    EXPECT_TRUE(renderer->vertex_pool_render_prepare(&pool));
    EXPECT_EQ(recorder->count("glGenBuffers"), 1);
    EXPECT_EQ(recorder->count("glVertexAttribPointer"), 3);
    finish();
}

TEST_P(VertexPools, wait_for_both_kinds_of_reads_after_a_compute_program) {
    renderer->vertex_pool_memory_barriers();
    EXPECT_EQ(recorder->take(), GlCalls({"glMemoryBarrier(0x2001)"}));
}

TEST_P(VertexPools, point_into_the_buffer_that_a_host_put_in) {
    VertexPool* const object = new VertexPool;
    object->init_pool(3, interleaved);
    VertexPoolData& data = *object->get_vertex_pool_data();
    renderer->vertex_pool_render(&data);
    ASSERT_TRUE(object->shader_storage_init(renderer.get(), BUFFER_USAGE_DYNAMIC_DRAW));
    recorder->clear();
    // The driver may have given the new buffer the name of the old one.
    EXPECT_TRUE(renderer->vertex_pool_render_prepare(&data));
    EXPECT_EQ(recorder->count("glBufferData"), 0);
    EXPECT_EQ(recorder->count("glVertexAttribPointer"), 3);
    EXPECT_TRUE(renderer->vertex_pool_render_finish(&data));
    EXPECT_TRUE(object->shader_storage_cleanup(renderer.get()));
    recorder->clear();
    EXPECT_TRUE(renderer->vertex_pool_render_prepare(&data));
    EXPECT_EQ(recorder->count("glGenBuffers"), 1);
    EXPECT_EQ(recorder->count("glVertexAttribPointer"), 3);
    EXPECT_TRUE(renderer->vertex_pool_render_finish(&data));
    EXPECT_EQ(object->release(renderer.get(), nullptr), 0);
}

TEST_P(VertexPools, do_nothing_without_the_entry_points) {
    make(interleaved);
    start_without({"glGenVertexArrays", "glDeleteBuffers"});
    EXPECT_FALSE(renderer->vertex_pool_render_prepare(&pool));
    EXPECT_FALSE(renderer->vertex_pool_kill(&pool));
    EXPECT_TRUE(recorder->take().empty());
    EXPECT_EQ(pool.vertex_buffer_id, 0u);
}

TEST_P(VertexPools, leave_a_mesh_prepared_before_them_undrawn) {
    make(interleaved);
    expect_mesh_undrawn_across([this] { prepare(); }, [this] { finish(); });
}

TEST_P(VertexPools, keep_a_vertex_array_that_can_not_be_deleted) {
    make(interleaved);
    draw_quietly();
    const unsigned int buffer = pool.vertex_buffer_id;
    const unsigned int array = pool.vertex_array_id;
    start_without({"glDeleteVertexArrays"});
    EXPECT_FALSE(renderer->vertex_pool_kill(&pool));
    EXPECT_TRUE(recorder->take().empty());
    EXPECT_EQ(pool.vertex_buffer_id, buffer);
    EXPECT_EQ(pool.vertex_array_id, array);
}

TEST_P(VertexPools, finish_nothing_without_vertex_arrays) {
    start_without({"glBindVertexArray"});
    EXPECT_FALSE(renderer->vertex_pool_render_finish(&pool));
    EXPECT_TRUE(recorder->take().empty());
}

/// On a compatibility context, drawn by client arrays.
class VertexPoolsOfClientArrays : public GlCompatibilityTest, public PoolCalls {
protected:
    void SetUp() override {
        start();
        pool.use_generic_vertex_attribs = false;
    }

    void TearDown() override {
        renderer->vertex_pool_kill(&pool);
        GlCompatibilityTest::TearDown();
    }
};

const GlCalls sprites = {"glEnable(GL_POINT_SPRITE)", "glEnable(GL_PROGRAM_POINT_SIZE)"};
const GlCalls no_sprites = {"glDisable(GL_PROGRAM_POINT_SIZE)", "glDisable(GL_POINT_SPRITE)"};
const GlCalls record_arrays = {
    "glVertexPointer(4, GL_FLOAT, 96, 0)", "glEnableClientState(GL_VERTEX_ARRAY)",
    "glColorPointer(4, GL_FLOAT, 96, 16)", "glEnableClientState(GL_COLOR_ARRAY)",
    "glNormalPointer(GL_FLOAT, 96, 32)",   "glEnableClientState(GL_NORMAL_ARRAY)"};
const GlCalls block_arrays = {
    "glVertexPointer(3, GL_FLOAT, 0, 0)", "glEnableClientState(GL_VERTEX_ARRAY)",
    "glColorPointer(4, GL_FLOAT, 0, 36)", "glEnableClientState(GL_COLOR_ARRAY)"};

TEST_F(VertexPoolsOfClientArrays, draw_their_records) {
    make(interleaved);
    const GlCalls calls = prepare();
    const unsigned int buffer = pool.vertex_buffer_id;
    EXPECT_EQ(calls,
              joined({make_buffer(288, "ptr"), bind_array_buffer(buffer), record_arrays, sprites}));
    EXPECT_EQ(pool.renderer_id, renderer->getid());
    EXPECT_EQ(draw(), GlCalls({"glDrawArrays(GL_POINTS, 0, 3)"}));
    EXPECT_EQ(
        finish(),
        joined({no_sprites,
                {"glDisableClientState(GL_VERTEX_ARRAY)", "glDisableClientState(GL_COLOR_ARRAY)",
                 "glDisableClientState(GL_NORMAL_ARRAY)", "glDisableVertexAttribArray(5)"},
                bind_array_buffer(0)}));
    EXPECT_EQ(pool.vertex_array_id, 0u);
    pool.vertices_need_update = true;
    EXPECT_EQ(prepare(),
              joined({bind_array_buffer(buffer), upload(0, 288), record_arrays, sprites}));
    EXPECT_FALSE(pool.vertices_need_update);
    EXPECT_EQ(prepare(), joined({bind_array_buffer(buffer), record_arrays, sprites}));
    finish();
    EXPECT_EQ(kill(), GlCalls({call("glDeleteBuffers(1, [%u])", buffer)}));
}

TEST_F(VertexPoolsOfClientArrays, draw_their_blocks) {
    make(separate);
    const GlCalls calls = prepare();
    const unsigned int buffer = pool.vertex_buffer_id;
    EXPECT_EQ(calls, joined({make_buffer(84, "0"), bind_array_buffer(buffer), upload(0, 36),
                             upload(36, 48), block_arrays, sprites}));
    EXPECT_EQ(finish(), joined({no_sprites,
                                {"glDisableClientState(GL_VERTEX_ARRAY)",
                                 "glDisableClientState(GL_COLOR_ARRAY)"},
                                bind_array_buffer(0)}));
    pool.positions_need_update = true;
    EXPECT_EQ(prepare(), joined({bind_array_buffer(buffer), upload(0, 36), block_arrays, sprites}));
    pool.colors_need_update = true;
    EXPECT_EQ(prepare(),
              joined({bind_array_buffer(buffer), upload(36, 48), block_arrays, sprites}));
    finish();
}

TEST_F(VertexPoolsOfClientArrays, leave_out_attributes_that_are_switched_off) {
    make(interleaved);
    pool.has_color = pool.has_normal = pool.has_tangent = false;
    draw_quietly();
    EXPECT_EQ(prepare(),
              joined({bind_array_buffer(pool.vertex_buffer_id),
                      GlCalls(record_arrays.begin(), record_arrays.begin() + 2), sprites}));
    EXPECT_EQ(
        finish(),
        joined({no_sprites, {"glDisableClientState(GL_VERTEX_ARRAY)"}, bind_array_buffer(0)}));
}

TEST_F(VertexPoolsOfClientArrays, run_all_three_steps) {
    make(separate);
    EXPECT_TRUE(renderer->vertex_pool_render(&pool));
    EXPECT_EQ(recorder->count("glDrawArrays"), 1);
    EXPECT_EQ(recorder->count("glEnableClientState"), 2);
    EXPECT_EQ(recorder->count("glDisableClientState"), 2);
}

TEST_F(VertexPoolsOfClientArrays, switch_off_arrays_left_by_others_that_are_too_short_for_them) {
    expect_short_arrays_switched_off([this](unsigned long count) {
        make(interleaved, count);
        pool.has_color = pool.has_normal = false;
        draw_quietly();
    });
}

TEST_F(VertexPoolsOfClientArrays, leave_no_array_enabled_over_a_storage_buffer_that_is_gone) {
    VertexPool* const object = new VertexPool;
    object->init_pool(3, interleaved);
    VertexPoolData& data = *object->get_vertex_pool_data();
    data.use_generic_vertex_attribs = false;
    ASSERT_TRUE(object->shader_storage_init(renderer.get(), BUFFER_USAGE_DYNAMIC_DRAW));
    EXPECT_TRUE(renderer->vertex_pool_render_prepare(&data));
    // Its colours are switched off before the finish, which so leaves their array alone.
    data.has_color = false;
    EXPECT_TRUE(renderer->vertex_pool_render_finish(&data));
    EXPECT_TRUE(glIsEnabled(GL_COLOR_ARRAY));
    EXPECT_TRUE(object->shader_storage_cleanup(renderer.get()));
    EXPECT_FALSE(glIsEnabled(GL_COLOR_ARRAY));
    EXPECT_EQ(object->release(renderer.get(), nullptr), 0);
}

TEST_F(VertexPoolsOfClientArrays, without_points_make_nothing) {
    EXPECT_FALSE(renderer->vertex_pool_render_prepare(&pool));
    pool.separate_vertex_arrays = true;
    EXPECT_FALSE(renderer->vertex_pool_render_prepare(&pool));
    EXPECT_TRUE(recorder->take().empty());
}

TEST_F(VertexPoolsOfClientArrays, do_nothing_without_the_entry_points) {
    make(interleaved);
    start_without({"glBufferSubData", "glDisableVertexAttribArray"});
    EXPECT_FALSE(renderer->vertex_pool_render_prepare(&pool));
    EXPECT_FALSE(renderer->vertex_pool_render_finish(&pool));
    EXPECT_TRUE(recorder->take().empty());
}

} // namespace

} // namespace orvex_test
