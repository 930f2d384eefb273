#include "orvex/renderer/opengl/state/private/gl_state.h"

#include <gtest/gtest.h>

#include "tests/orvex/renderer/opengl/buffers/fake_buffers.h"

namespace orvex_test {

using namespace orvex;
namespace {

TEST(GlStateTest, starts_with_an_empty_table_and_nothing_forced) {
    const GlState state;
    EXPECT_EQ(state.gl.glBindBuffer, nullptr);
    EXPECT_EQ(state.renderer_id(), 0);
    EXPECT_EQ(state.gl_major, 0);
    EXPECT_FALSE(state.gl2_context);
    EXPECT_EQ(state.context().prepared_mesh, nullptr);
    for (const BUFFER_OBJECT_USAGE usage :
         {state.forced_vertex_usage, state.forced_index_usage, state.forced_storage_usage,
          state.forced_atomic_usage, state.forced_uniform_usage})
        EXPECT_EQ(usage, BUFFER_USAGE_DEFAULT);
}

TEST(GlStateTest, tells_which_groups_of_entries_the_table_has) {
    GlState state;
    EXPECT_FALSE(state.can_fill_buffers());
    serve_fake_buffers(state.gl);
    EXPECT_TRUE(state.can_fill_buffers());
    EXPECT_TRUE(state.can_draw_client_arrays());
    EXPECT_TRUE(state.can_draw_vertex_arrays());

    state.gl.glGenVertexArrays = nullptr;
    EXPECT_TRUE(state.can_draw_client_arrays());
    EXPECT_FALSE(state.can_draw_vertex_arrays());
    state.gl.glDisableVertexAttribArray = nullptr;
    EXPECT_FALSE(state.can_draw_client_arrays());
    EXPECT_TRUE(state.can_fill_buffers());
    state.gl.glBufferSubData = nullptr;
    EXPECT_FALSE(state.can_fill_buffers());
}

TEST(GlQuirksTest, are_all_at_work_unless_they_are_named) {
    struct Row {
        const char* names;
        bool profile_word_case;
        bool dead_window;
        bool endless_surface;
    };
    const Row rows[] = {
        {nullptr, true, true, true},
        {"", true, true, true},
        {"dead_window", true, false, true},
        {"profile_word_case,endless_surface", false, true, false},
        {" dead_window ,\tprofile_word_case", false, false, true},
        {",,endless_surface,", true, true, false},
        {"dead_windows,dead,DEAD_WINDOW", true, true, true},
    };
    for (const Row& row : rows) {
        const GlQuirks quirks = GlQuirks::without(row.names);
        const char* const name = row.names ? row.names : "null";
        EXPECT_EQ(quirks.profile_word_case, row.profile_word_case) << name;
        EXPECT_EQ(quirks.dead_window, row.dead_window) << name;
        EXPECT_EQ(quirks.endless_surface, row.endless_surface) << name;
    }
}

} // namespace
} // namespace orvex_test
