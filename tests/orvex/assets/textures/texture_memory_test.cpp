#include <string>

#include <gtest/gtest.h>

#include "fake_codec.h"
#include "orvex/assets/textures/texture.h"
#include "orvex/assets/textures/texture_mgr.h"
#include "orvex/renderer/records/texture_data.h"
#include "tests/support/heap.h"

namespace orvex_test {

using namespace orvex;
namespace {

// Runs first in a process that has decoded nothing: what a first end would make isn't there yet.
TEST(TextureMemory, is_not_asked_for_when_a_texture_ends) {
    auto* const texture = new Texture;
    const CountAllocations allocations;
    delete texture;
    EXPECT_EQ(allocations.count(), 0u);
}

TEST(TextureMemory, is_not_asked_for_when_the_last_holder_of_decoded_pixels_ends) {
    FakeCodec codec("fake", "fake");
    codec.add_ref();
    TextureMgr::get()->register_image_codec_plugin(&codec);
    Image image;
    std::string bytes = "fake 4 4 7";
    ASSERT_TRUE(codec.load_image_from_memory(&image, reinterpret_cast<unsigned char*>(bytes.data()),
                                             bytes.size(), false));
    auto* const first = new Texture;
    auto* const second = new Texture;
    first->load_from_image(&image);
    second->load_from_image(&image);
    codec.calls.reserve(8);
    {
        const CountAllocations allocations;
        delete first;
        EXPECT_EQ(codec.live(), 1u) << "the second still shows them";
        delete second;
        EXPECT_EQ(allocations.count(), 0u);
    }
    EXPECT_EQ(codec.live(), 0u);
    TextureMgr::get()->unregister_all_image_codec_plugins();
}

TEST(TextureMemory, is_all_given_back_with_the_records_that_a_texture_had) {
    const long before = living_blocks();
    auto* const texture = new Texture;
    texture->init_texture_data(nullptr);
    texture->init_texture_data(nullptr);
    texture->cleanup_texture_data(nullptr);
    EXPECT_GT(living_blocks(), before) << "somebody may still look at them";
    delete texture;
    EXPECT_EQ(living_blocks(), before);
}

} // namespace
} // namespace orvex_test
