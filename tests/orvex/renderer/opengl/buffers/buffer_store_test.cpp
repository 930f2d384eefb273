#include "orvex/renderer/opengl/buffers/private/buffer_store.h"

#include <gtest/gtest.h>

#include "tests/orvex/renderer/opengl/buffers/fake_buffers.h"

namespace orvex_test {

using namespace orvex;
namespace {

using Calls = std::vector<std::string>;

class BufferStoreTest : public testing::Test {
protected:
    void SetUp() override { serve_fake_buffers(state.gl); }

    GlState state;
    unsigned int id = 0;
    unsigned long bytes = 0;
    BufferStore store{state.gl, GL_ARRAY_BUFFER, "vertices", id, bytes};
};

TEST_F(BufferStoreTest, is_named_once_and_stored_anew_for_another_size) {
    EXPECT_FALSE(store.exists());
    EXPECT_FALSE(store.fits(0));
    const float data[4] = {};
    EXPECT_TRUE(store.allocate(16, data, GL_STATIC_DRAW));
    EXPECT_EQ(take_fake_calls(),
              Calls({"gen buffer 1", "bind buffer 1", "store 16 filled static"}));
    EXPECT_EQ(id, 1U);
    EXPECT_EQ(bytes, 16UL);

    EXPECT_TRUE(store.fits(16));
    EXPECT_FALSE(store.fits(20));
    EXPECT_FALSE(store.allocate(20, nullptr, GL_DYNAMIC_DRAW));
    EXPECT_EQ(take_fake_calls(), Calls({"bind buffer 1", "store 20 empty dynamic"}));
    EXPECT_EQ(bytes, 20UL);
}

TEST_F(BufferStoreTest, of_an_unknown_size_fits_everything) {
    id = 7;
    EXPECT_TRUE(store.fits(1));
    EXPECT_TRUE(store.fits(1000000));
    EXPECT_FALSE(store.has_other_size(16));
    bytes = 8;
    EXPECT_TRUE(store.has_other_size(16));
    EXPECT_FALSE(store.fits(16));
}

TEST_F(BufferStoreTest, resizes_and_uploads_what_is_bound) {
    id = 7;
    store.bind();
    store.resize_bound(12, GL_STATIC_DRAW);
    store.upload_bound(4, 8, &bytes);
    store.unbind();
    EXPECT_EQ(take_fake_calls(),
              Calls({"bind buffer 7", "store 12 empty static", "upload 8 at 4", "bind buffer 0"}));
    EXPECT_EQ(bytes, 12UL);
}

TEST_F(BufferStoreTest, is_made_without_a_record) {
    EXPECT_EQ(create_buffer(state.gl, GL_UNIFORM_BUFFER, "uniforms", 32, nullptr, GL_STATIC_DRAW),
              1U);
    EXPECT_EQ(take_fake_calls(), Calls({"gen buffer 1", "bind buffer 1", "store 32 empty static"}));
}

TEST_F(BufferStoreTest, without_a_name_binds_nothing_and_is_tried_again) {
    const auto gen_buffers = state.gl.glGenBuffers;
    state.gl.glGenBuffers = [](GLsizei, GLuint*) {};
    EXPECT_FALSE(store.allocate(16, nullptr, GL_STATIC_DRAW));
    EXPECT_EQ(create_buffer(state.gl, GL_UNIFORM_BUFFER, "uniforms", 32, nullptr, GL_STATIC_DRAW),
              0U);
    EXPECT_EQ(take_fake_calls(), Calls());
    EXPECT_FALSE(store.exists());
    EXPECT_EQ(bytes, 0UL);
    state.gl.glGenBuffers = gen_buffers;
    EXPECT_TRUE(store.allocate(16, nullptr, GL_STATIC_DRAW));
    EXPECT_EQ(bytes, 16UL);
}

TEST_F(BufferStoreTest, refuses_the_draws_of_one_record_until_it_is_prepared_again) {
    const int record = 1;
    const int other = 2;
    EXPECT_FALSE(is_refused(state, &record));
    EXPECT_FALSE(refuse_draws(state, &record));
    EXPECT_TRUE(is_refused(state, &record));
    EXPECT_FALSE(is_refused(state, &other));
    accept_draws(state, &other);
    EXPECT_TRUE(is_refused(state, &record));
    accept_draws(state, &record);
    EXPECT_FALSE(is_refused(state, &record));
}

TEST_F(BufferStoreTest, is_deleted_with_the_arrays_that_point_into_it) {
    state.context().client_arrays.enable_generic(state.gl, 5, {7, 3, 4, 0, 0});
    take_fake_calls();
    unsigned int other = 8;
    delete_buffer(state, other);
    EXPECT_EQ(take_fake_calls(), Calls({"delete buffer 8"}));
    id = 7;
    delete_buffer(state, id);
    EXPECT_EQ(take_fake_calls(), Calls({"disable 5", "delete buffer 7"}));
    EXPECT_EQ(id, 0U);
    delete_buffer(state, id);
    EXPECT_EQ(take_fake_calls(), Calls()) << "there is none any more";
}

} // namespace
} // namespace orvex_test
