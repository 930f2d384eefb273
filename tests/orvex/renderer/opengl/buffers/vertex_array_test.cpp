#include "orvex/renderer/opengl/buffers/private/vertex_array.h"

#include <gtest/gtest.h>

#include "tests/orvex/renderer/opengl/buffers/fake_buffers.h"

namespace orvex_test {

using namespace orvex;
namespace {

using Calls = std::vector<std::string>;

class VertexArrayTest : public testing::Test {
protected:
    void SetUp() override { serve_fake_buffers(state.gl); }

    GlState state;
    unsigned int id = 0;
    unsigned int recorded_buffer = 0;
    bool stale = false;
    VertexArray array{state.gl, id, recorded_buffer, stale};
};

TEST_F(VertexArrayTest, is_made_over_a_buffer_and_bound_from_then_on) {
    EXPECT_TRUE(array.bind(9));
    EXPECT_EQ(take_fake_calls(), Calls({"gen array 1", "bind array 1", "bind buffer 9"}));
    EXPECT_EQ(recorded_buffer, 9U);
    EXPECT_TRUE(array.is_recorded_here());
    EXPECT_FALSE(array.bind(9));
    EXPECT_EQ(take_fake_calls(), Calls({"bind array 1"}));
}

TEST_F(VertexArrayTest, is_made_anew_for_another_buffer_or_when_it_is_stale) {
    array.bind(9);
    take_fake_calls();
    EXPECT_TRUE(array.bind(10));
    EXPECT_EQ(take_fake_calls(),
              Calls({"delete array 1", "gen array 2", "bind array 2", "bind buffer 10"}));
    stale = true;
    EXPECT_TRUE(array.bind(10));
    EXPECT_EQ(take_fake_calls(),
              Calls({"delete array 2", "gen array 3", "bind array 3", "bind buffer 10"}));
    EXPECT_FALSE(stale);
}

TEST_F(VertexArrayTest, without_a_name_is_not_bound_and_is_tried_again) {
    const auto gen_arrays = state.gl.glGenVertexArrays;
    state.gl.glGenVertexArrays = [](GLsizei, GLuint*) {};
    EXPECT_FALSE(array.bind(9));
    EXPECT_EQ(take_fake_calls(), Calls());
    EXPECT_EQ(id, 0U);
    EXPECT_FALSE(array.is_recorded_here());
    state.gl.glGenVertexArrays = gen_arrays;
    EXPECT_TRUE(array.bind(9));
}

TEST_F(VertexArrayTest, of_a_host_is_never_changed) {
    id = 77;
    EXPECT_FALSE(array.bind(9));
    EXPECT_EQ(take_fake_calls(), Calls({"bind array 77"}));
    EXPECT_FALSE(array.is_recorded_here());
    EXPECT_EQ(id, 77U);
}

TEST_F(VertexArrayTest, is_deleted_where_the_context_can) {
    array.bind(9);
    take_fake_calls();
    array.destroy();
    EXPECT_EQ(take_fake_calls(), Calls({"delete array 1"}));
    EXPECT_EQ(id, 0U);
    EXPECT_EQ(recorded_buffer, 0U);
    array.destroy();
    EXPECT_EQ(take_fake_calls(), Calls());

    id = 5;
    state.gl.glDeleteVertexArrays = nullptr;
    array.destroy();
    EXPECT_EQ(take_fake_calls(), Calls());
    EXPECT_EQ(id, 0U);
}

TEST_F(VertexArrayTest, records_pointers_into_the_bound_buffer) {
    point_attribute(state.gl, 3, 4, 96, 16);
    EXPECT_EQ(take_fake_calls(), Calls({"enable 3", "point 3 to 4 floats every 96 from 16"}));
}

} // namespace
} // namespace orvex_test
