#include "orvex/assets/textures/texture_mgr.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "fake_codec.h"
#include "fake_render_target.h"
#include "orvex/assets/textures/texture.h"
#include "orvex/base/plugin_mgr.h"
#include "orvex/math/vec4.h"
#include "orvex/renderer/records/private/image_access.h"
#include "orvex/renderer/records/texture_data.h"
#include "tests/support/fake_renderer.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

using namespace orvex;
namespace {

using orvex_test::FakeCodec;
using orvex_test::FakeRenderer;
using orvex_test::FakeRenderTarget;
using Calls = std::vector<std::string>;

/// The one manager with two codecs: "one" cannot write, "two" can.
class TextureMgrTest : public testing::Test {
protected:
    TextureMgrTest()
        : mgr(*TextureMgr::get())
        , one(new FakeCodec("codec_one", "one"))
        , two(new FakeCodec("codec_stb_two", "two")) {
        one->add_ref();
        two->add_ref();
        EXPECT_TRUE(mgr.start(nullptr));
        EXPECT_TRUE(mgr.register_image_codec_plugin(one));
        EXPECT_TRUE(mgr.register_image_codec_plugin(two));
        one_file = dir.write("one.png", "one 4 2 10");
        two_file = dir.write("two.png", "two 8 4 20");
        rubbish = dir.write("rubbish.png", std::string("\x89\x00\xff\x7f", 4));
        missing = dir.file("missing.png");
    }
    ~TextureMgrTest() override {
        EXPECT_TRUE(mgr.stop(nullptr));
        EXPECT_EQ(mgr.get_num_resources(), 0u);
        EXPECT_EQ(one->live(), 0u) << "decoded pixels that nobody gave back";
        EXPECT_EQ(two->live(), 0u) << "decoded pixels that nobody gave back";
        EXPECT_EQ(one->release(), 0);
        EXPECT_EQ(two->release(), 0);
    }

    void clear_calls() {
        one->calls.clear();
        two->calls.clear();
    }

    /// A texture of the test's own, which the manager doesn't know.
    static Texture* held_texture() {
        auto* const texture = new Texture;
        texture->add_ref();
        return texture;
    }

    orvex_test::TempDir dir;
    FakeRenderer renderer;
    TextureMgr& mgr;
    FakeCodec* one;
    FakeCodec* two;
    std::string one_file, two_file, rubbish, missing;
};

// -------------------------------------------------------------------------------- codecs

TEST_F(TextureMgrTest, holds_one_reference_on_a_codec_and_two_on_the_default_one) {
    EXPECT_EQ(one->get_ref(), 2);
    EXPECT_EQ(two->get_ref(), 3);
    EXPECT_TRUE(mgr.unregister_all_image_codec_plugins());
    EXPECT_EQ(one->get_ref(), 1);
    EXPECT_EQ(two->get_ref(), 1);
    EXPECT_TRUE(mgr.unregister_all_image_codec_plugins());
}

TEST_F(TextureMgrTest, the_first_name_with_stb_becomes_the_default_codec) {
    auto* const three = new FakeCodec("stb_three", "three");
    three->add_ref();
    EXPECT_TRUE(mgr.register_image_codec_plugin(three));
    EXPECT_EQ(three->get_ref(), 2);
    Texture* const texture = mgr.create_texture_2d(2, 2, PF_RGB_U8);
    EXPECT_TRUE(mgr.write_texture_2d_to_file(texture, "picture.jpg"));
    EXPECT_EQ(two->take_calls(), Calls{"save picture.jpg"});
    EXPECT_EQ(three->take_calls(), Calls());
    EXPECT_EQ(one->take_calls(), Calls());
    EXPECT_TRUE(mgr.unregister_all_image_codec_plugins());
    EXPECT_EQ(three->release(), 0);
}

TEST_F(TextureMgrTest, refuses_to_register_null) {
    EXPECT_FALSE(mgr.register_image_codec_plugin(nullptr));
}

TEST_F(TextureMgrTest, registers_every_codec_that_the_plugin_manager_holds) {
    mgr.unregister_all_image_codec_plugins();
    EXPECT_EQ(mgr.register_all_image_codec_plugins(), 0u);
    PluginMgr& plugins = *PluginMgr::get();
    plugins.insert_plugin(one);
    plugins.insert_plugin(&renderer);
    plugins.insert_plugin(two);
    EXPECT_EQ(mgr.register_all_image_codec_plugins(), 2u);
    EXPECT_EQ(one->get_ref(), 3);
    EXPECT_EQ(two->get_ref(), 4);
    EXPECT_TRUE(mgr.create_texture_2d_from_file(two_file.c_str(), false));
    plugins.remove_plugin(one);
    plugins.remove_plugin(&renderer);
    plugins.remove_plugin(two);
}

TEST_F(TextureMgrTest, forgets_a_codec_that_ends_behind_its_back) {
    auto* const three = new FakeCodec("stb_three", "three");
    mgr.unregister_all_image_codec_plugins();
    mgr.register_image_codec_plugin(three);
    const std::string file = dir.write("three.png", "three 1 1 1");
    Texture* const texture = held_texture();
    ASSERT_TRUE(mgr.load_image_from_file(texture, file.c_str(), true));
    EXPECT_EQ(three->release(), 1);
    EXPECT_EQ(three->release(), 0);
    EXPECT_FALSE(mgr.load_image_from_file(texture, file.c_str(), true));
    EXPECT_FALSE(mgr.write_texture_2d_to_file(texture, "picture.jpg"));
    texture->release(nullptr, nullptr);
}

TEST_F(TextureMgrTest, without_codecs_nothing_loads_and_nothing_is_written) {
    mgr.unregister_all_image_codec_plugins();
    Texture* const texture = mgr.create_texture_2d(2, 2, PF_RGB_U8);
    const unsigned char bytes[] = "one 1 1 1";
    const char* const files[6] = {"a", "b", "c", "d", "e", "f"};
    EXPECT_FALSE(mgr.load_image_from_file(texture, one_file.c_str(), false));
    EXPECT_FALSE(mgr.load_texture_2d_from_file(texture, one_file.c_str(), false));
    EXPECT_FALSE(mgr.load_texture_2d_from_memory(texture, bytes, sizeof bytes, false));
    EXPECT_FALSE(mgr.load_texture_cube_from_files(texture, files, false));
    EXPECT_FALSE(mgr.load_cubemap_face_from_file(texture, CUBEMAP_FACE_POSITIVE_X, "a", false));
    EXPECT_FALSE(mgr.update_gpu_memory_from_file(&renderer, texture, one_file.c_str(), false));
    EXPECT_EQ(mgr.create_texture_2d_from_file(one_file.c_str(), false), nullptr);
    EXPECT_EQ(mgr.create_texture_2d_from_memory(bytes, sizeof bytes, false), nullptr);
    EXPECT_EQ(mgr.create_texture_cube_from_files(files, false), nullptr);
    texture->get_data_ptr()->type = TEXTURE_TYPE_2D;
    EXPECT_FALSE(mgr.write_texture_2d_to_file(texture, "picture.jpg"));
    EXPECT_FALSE(mgr.do_screenshot(&renderer, "shot.jpg"));
    EXPECT_EQ(mgr.get_num_resources(), 1u);
}

TEST_F(TextureMgrTest, a_codec_without_stb_in_its_name_decodes_but_never_writes) {
    mgr.unregister_all_image_codec_plugins();
    mgr.register_image_codec_plugin(one);
    Texture* const texture = mgr.create_texture_2d_from_file(one_file.c_str(), false);
    ASSERT_NE(texture, nullptr);
    EXPECT_FALSE(mgr.write_texture_2d_to_file(texture, "picture.jpg"));
    EXPECT_FALSE(mgr.do_screenshot(&renderer, "shot.jpg"));
}

// -------------------------------------------------------------------------------- making

TEST_F(TextureMgrTest, makes_registered_textures_of_every_kind) {
    Texture* const empty = mgr.create_texture();
    Texture* const line = mgr.create_texture_1d(8, PF_RGBA_F32);
    Texture* const plane = mgr.create_texture_2d(8, 4, PF_RGB_U8);
    Texture* const cube = mgr.create_texture_cube(8, PF_RGB_U8);
    EXPECT_EQ(mgr.get_num_resources(), 4u);
    for (Texture* texture : {empty, line, plane, cube})
        EXPECT_EQ(texture->get_ref(), 1);
    EXPECT_EQ(empty->get_type(), TEXTURE_TYPE_2D);
    EXPECT_EQ(line->get_type(), TEXTURE_TYPE_1D);
    EXPECT_EQ(plane->get_type(), TEXTURE_TYPE_2D);
    EXPECT_EQ(plane->get_height(), 4u);
    EXPECT_EQ(cube->get_type(), TEXTURE_TYPE_CUBE);
}

TEST_F(TextureMgrTest, a_texture_that_could_not_be_given_pixels_comes_without) {
    Texture* const texture = mgr.create_texture_2d(16, 16, PF_RGB_F16);
    ASSERT_NE(texture, nullptr);
    EXPECT_TRUE(mgr.has_resource(texture));
    EXPECT_EQ(texture->get_pixmap_u8_ptr(), nullptr);
    EXPECT_EQ(texture->get_width(), 0u);
    EXPECT_NE(mgr.create_texture_1d(16, PF_NONE), nullptr);
    EXPECT_NE(mgr.create_texture_cube(16, PF_NONE), nullptr);
}

TEST_F(TextureMgrTest, registers_a_texture_once) {
    EXPECT_FALSE(mgr.add_texture(nullptr));
    Texture* const texture = held_texture();
    EXPECT_TRUE(mgr.add_texture(texture));
    EXPECT_TRUE(mgr.add_texture(texture));
    EXPECT_EQ(texture->get_ref(), 2);
    EXPECT_EQ(mgr.get_num_resources(), 1u);
    texture->release(nullptr, nullptr);
}

TEST_F(TextureMgrTest, makes_textures_that_stand_for_a_render_target) {
    FakeRenderTarget target(4, 4);
    Texture* const color = mgr.create_color_texture_from_render_target(&target, 2);
    Texture* const depth = mgr.create_depth_texture_from_render_target(&target);
    EXPECT_EQ(color->get_data_ptr()->opengl_texture_id, 11u);
    EXPECT_EQ(depth->get_data_ptr()->opengl_texture_id, 12u);
    EXPECT_EQ(color->get_type(), TEXTURE_TYPE_2D);
    EXPECT_TRUE(mgr.has_resource(color));
    EXPECT_TRUE(mgr.has_resource(depth));
    EXPECT_NE(mgr.create_color_texture_from_render_target(nullptr, 0), nullptr);
    EXPECT_NE(mgr.create_depth_texture_from_render_target(nullptr), nullptr);
}

// -------------------------------------------------------------------------------- loading 2D

TEST_F(TextureMgrTest, a_decoded_file_becomes_the_textures_pixels_without_a_copy) {
    Texture* const texture = mgr.create_texture_2d_from_file(one_file.c_str(), false);
    ASSERT_NE(texture, nullptr);
    EXPECT_EQ(texture->get_width(), 4u);
    EXPECT_EQ(texture->get_height(), 2u);
    EXPECT_EQ(texture->get_depth(), 1u) << "although the codec doesn't tell";
    EXPECT_EQ(texture->get_pixel_format(), PF_RGB_U8);
    EXPECT_EQ(texture->get_type(), TEXTURE_TYPE_2D);
    EXPECT_EQ(texture->get_image_ptr()->pixmap_u8, nullptr);
    EXPECT_EQ(texture->get_pixmap_u8_ptr()[23], 10);
    EXPECT_EQ(one->live(), 1u);
    EXPECT_EQ(texture->get_ref(), 1);
    EXPECT_EQ(texture->get_name(), "node_" + std::to_string(texture->get_id()));
}

TEST_F(TextureMgrTest, loading_a_file_twice_gives_two_textures) {
    Texture* const first = mgr.create_texture_2d_from_file(one_file.c_str(), false);
    Texture* const second = mgr.create_texture_2d_from_file(one_file.c_str(), false);
    EXPECT_NE(first, second);
    EXPECT_EQ(one->live(), 2u);
}

TEST_F(TextureMgrTest, the_flag_asks_for_a_mirrored_copy) {
    Texture* const texture = mgr.create_texture_2d_from_file(one_file.c_str(), true);
    ASSERT_NE(texture, nullptr);
    EXPECT_TRUE(one->flag);
    EXPECT_NE(texture->get_image_ptr()->pixmap_u8, nullptr);
    EXPECT_EQ(one->live(), 0u);
}

TEST_F(TextureMgrTest, a_file_that_no_codec_decodes_gives_nothing_and_leaves_nothing) {
    const std::string empty = dir.write("empty.png", "");
    const std::string cut = dir.write("cut.png", "one 4 2");
    for (const std::string& file : {missing, dir.path(), empty, cut, rubbish}) {
        EXPECT_EQ(mgr.create_texture_2d_from_file(file.c_str(), false), nullptr) << file;
        EXPECT_EQ(mgr.get_num_resources(), 0u) << file;
    }
    EXPECT_EQ(mgr.create_texture_2d_from_file(nullptr, false), nullptr);
}

TEST_F(TextureMgrTest, loads_into_a_texture_of_the_callers_and_registers_it) {
    Texture* const texture = held_texture();
    texture->get_data_ptr()->type = TEXTURE_TYPE_3D;
    EXPECT_FALSE(mgr.load_image_from_file(texture, rubbish.c_str(), false));
    EXPECT_FALSE(mgr.has_resource(texture));
    EXPECT_FALSE(mgr.load_texture_2d_from_file(texture, rubbish.c_str(), false));
    EXPECT_EQ(texture->get_type(), TEXTURE_TYPE_3D) << "the type changes on success only";
    EXPECT_TRUE(mgr.load_image_from_file(texture, one_file.c_str(), false));
    EXPECT_TRUE(mgr.has_resource(texture));
    EXPECT_EQ(texture->get_type(), TEXTURE_TYPE_3D);
    EXPECT_TRUE(mgr.load_texture_2d_from_file(texture, two_file.c_str(), false));
    EXPECT_EQ(texture->get_type(), TEXTURE_TYPE_2D);
    EXPECT_EQ(texture->get_width(), 8u);
    EXPECT_EQ(texture->get_ref(), 2);
    texture->release(nullptr, nullptr);
}

TEST_F(TextureMgrTest, refuses_null_in_every_load) {
    Texture* const texture = mgr.create_texture();
    EXPECT_FALSE(mgr.load_image_from_file(nullptr, one_file.c_str(), false));
    EXPECT_FALSE(mgr.load_image_from_file(texture, nullptr, false));
    EXPECT_FALSE(mgr.load_texture_2d_from_file(nullptr, one_file.c_str(), false));
    EXPECT_FALSE(mgr.load_texture_2d_from_file(texture, nullptr, false));
    texture->cleanup_texture_data(nullptr);
    EXPECT_FALSE(mgr.load_texture_2d_from_file(texture, one_file.c_str(), false));
    EXPECT_EQ(one->take_calls(), Calls());
}

TEST_F(TextureMgrTest, asks_the_codec_that_decoded_last_first_and_then_all_of_them) {
    Texture* const texture = mgr.create_texture();
    EXPECT_TRUE(mgr.load_image_from_file(texture, two_file.c_str(), true));
    EXPECT_EQ(one->take_calls(), Calls{"file"});
    EXPECT_EQ(two->take_calls(), Calls{"file"});
    EXPECT_TRUE(mgr.load_image_from_file(texture, two_file.c_str(), true));
    EXPECT_EQ(one->take_calls(), Calls());
    EXPECT_EQ(two->take_calls(), Calls{"file"});
    EXPECT_FALSE(mgr.load_image_from_file(texture, rubbish.c_str(), true));
    EXPECT_EQ(one->take_calls(), Calls{"file"});
    EXPECT_EQ(two->take_calls(), (Calls{"file", "file"})) << "cached first, then with the rest";
    EXPECT_TRUE(mgr.load_image_from_file(texture, one_file.c_str(), true));
    EXPECT_EQ(two->take_calls(), Calls{"file"});
    EXPECT_EQ(one->take_calls(), Calls{"file"});
    EXPECT_TRUE(mgr.load_image_from_file(texture, one_file.c_str(), true));
    EXPECT_EQ(two->take_calls(), Calls()) << "now the first codec is the cached one";
}

TEST_F(TextureMgrTest, loads_from_memory) {
    const std::string bytes = "two 8 4 20";
    const auto* const block = reinterpret_cast<const unsigned char*>(bytes.data());
    Texture* const texture = mgr.create_texture_2d_from_memory(block, bytes.size(), false);
    ASSERT_NE(texture, nullptr);
    EXPECT_EQ(texture->get_width(), 8u);
    EXPECT_EQ(one->take_calls(), Calls{"memory"});
    EXPECT_EQ(two->take_calls(), Calls{"memory"});
    EXPECT_EQ(two->live(), 1u);

    EXPECT_EQ(mgr.create_texture_2d_from_memory(nullptr, 4, false), nullptr);
    EXPECT_EQ(mgr.create_texture_2d_from_memory(block, 0, false), nullptr);
    EXPECT_EQ(mgr.create_texture_2d_from_memory(block, 3, false), nullptr);
    EXPECT_EQ(mgr.get_num_resources(), 1u);
}

TEST_F(TextureMgrTest, loading_from_memory_sets_the_type_before_it_starts) {
    const unsigned char rubbish_bytes[] = "nothing";
    Texture* const texture = mgr.create_texture();
    texture->get_data_ptr()->type = TEXTURE_TYPE_3D;
    EXPECT_FALSE(mgr.load_texture_2d_from_memory(texture, rubbish_bytes, 0, false));
    EXPECT_FALSE(mgr.load_texture_2d_from_memory(texture, nullptr, 7, false));
    EXPECT_FALSE(mgr.load_texture_2d_from_memory(nullptr, rubbish_bytes, 7, false));
    EXPECT_EQ(texture->get_type(), TEXTURE_TYPE_3D);
    EXPECT_FALSE(mgr.load_texture_2d_from_memory(texture, rubbish_bytes, 7, false));
    EXPECT_EQ(texture->get_type(), TEXTURE_TYPE_2D);
    texture->cleanup_texture_data(nullptr);
    EXPECT_FALSE(mgr.load_texture_2d_from_memory(texture, rubbish_bytes, 7, false));
}

/// Looks at an image and keeps nothing of it.
class ForgetfulTexture : public Texture {
public:
    bool result = true;
    bool load_from_image(Image* image) override {
        width = image->width;
        return result;
    }
    unsigned long width = 0;
};

TEST_F(TextureMgrTest, gives_pixels_back_that_a_texture_does_not_take_over) {
    auto* const texture = new ForgetfulTexture;
    texture->add_ref();
    EXPECT_TRUE(mgr.load_image_from_file(texture, two_file.c_str(), false));
    EXPECT_EQ(texture->width, 8u);
    EXPECT_EQ(two->live(), 0u);
    clear_calls();
    texture->result = false;
    EXPECT_FALSE(mgr.load_image_from_file(texture, one_file.c_str(), false));
    EXPECT_EQ(one->live(), 0u);
    clear_calls();
    EXPECT_FALSE(mgr.load_image_from_file(texture, one_file.c_str(), false));
    EXPECT_EQ(two->calls.front(), "file") << "a failed take-over caches no codec";
    texture->release(nullptr, nullptr);
}

// -------------------------------------------------------------------------------- decoder memory

TEST_F(TextureMgrTest, a_reload_gives_the_old_pixels_back) {
    Texture* const texture = mgr.create_texture_2d_from_file(one_file.c_str(), false);
    EXPECT_TRUE(mgr.load_texture_2d_from_file(texture, two_file.c_str(), false));
    EXPECT_EQ(one->live(), 0u);
    EXPECT_EQ(two->live(), 1u);
    EXPECT_FALSE(mgr.load_texture_2d_from_file(texture, rubbish.c_str(), false));
    EXPECT_EQ(two->live(), 1u) << "a failed load keeps what there was";
    EXPECT_EQ(texture->get_width(), 8u);
    EXPECT_EQ(texture->get_pixmap_u8_ptr()[0], 20);
}

TEST_F(TextureMgrTest, a_reload_into_a_smaller_owned_buffer_shows_the_new_pixels) {
    Texture* const texture = mgr.create_texture_2d(2, 2, PF_RGB_U8);
    EXPECT_TRUE(mgr.load_texture_2d_from_file(texture, two_file.c_str(), false));
    EXPECT_EQ(texture->get_image_ptr()->pixmap_u8, nullptr);
    EXPECT_EQ(texture->get_pixmap_u8_ptr()[0], 20);
}

TEST_F(TextureMgrTest, taking_an_empty_image_gives_the_pixels_back) {
    Texture* const texture = mgr.create_texture_2d_from_file(one_file.c_str(), false);
    Image empty;
    EXPECT_TRUE(texture->load_from_image(&empty));
    EXPECT_EQ(one->live(), 0u);
    EXPECT_EQ(texture->get_pixmap_u8_ptr(), nullptr);
}

TEST_F(TextureMgrTest, release_gives_pixels_back_before_the_texture_ends) {
    Texture* const texture = mgr.create_texture_2d_from_file(two_file.c_str(), false);
    clear_calls();
    EXPECT_TRUE(mgr.release_texture(&renderer, texture, nullptr));
    EXPECT_EQ(one->take_calls(), Calls{"free"}) << "asked in order";
    EXPECT_EQ(two->take_calls(), Calls{"free"});
    EXPECT_EQ(two->live(), 0u);
    EXPECT_EQ(mgr.get_num_resources(), 0u);
    EXPECT_FALSE(mgr.release_texture(&renderer, nullptr, nullptr));
}

TEST_F(TextureMgrTest, release_asks_codecs_about_a_texture_without_decoded_pixels_too) {
    Texture* const texture = mgr.create_texture_2d(2, 2, PF_RGB_U8);
    EXPECT_TRUE(mgr.release_texture(nullptr, texture, nullptr));
    EXPECT_EQ(one->take_calls(), Calls{"free"});
    EXPECT_EQ(two->take_calls(), Calls{"free"});
}

TEST_F(TextureMgrTest, release_of_a_texture_held_elsewhere_keeps_its_pixels) {
    Texture* const texture = mgr.create_texture_2d_from_file(one_file.c_str(), false);
    texture->add_ref();
    EXPECT_TRUE(mgr.release_texture(nullptr, texture, nullptr));
    EXPECT_EQ(one->live(), 1u);
    EXPECT_EQ(texture->get_pixmap_u8_ptr()[0], 10);
    EXPECT_FALSE(mgr.has_resource(texture));
    texture->release(nullptr, nullptr);
    EXPECT_EQ(one->live(), 0u) << "the last holder gives them back";
}

TEST_F(TextureMgrTest, release_keeps_pixels_that_another_texture_shares) {
    Texture* const texture = mgr.create_texture_2d_from_file(one_file.c_str(), false);
    Texture* const other = mgr.create_texture();
    other->share_texture_data(nullptr, texture);
    EXPECT_EQ(texture->get_data_ptr()->get_ref(), 2);
    EXPECT_TRUE(mgr.release_texture(nullptr, texture, nullptr));
    EXPECT_EQ(one->live(), 1u);
    EXPECT_EQ(other->get_pixmap_u8_ptr()[0], 10);
    EXPECT_TRUE(mgr.release_texture(nullptr, other, nullptr));
    EXPECT_EQ(one->live(), 0u);
}

TEST_F(TextureMgrTest, two_textures_that_took_one_image_give_its_pixels_back_once) {
    Texture* const texture = mgr.create_texture_2d_from_file(one_file.c_str(), false);
    Texture* const other = mgr.create_texture();
    EXPECT_TRUE(other->load_from_image(texture->get_image_ptr()));
    EXPECT_TRUE(other->load_cubemap_face_image(CUBEMAP_FACE_POSITIVE_X, texture->get_image_ptr()));
    EXPECT_EQ(other->get_pixmap_u8_ptr(), texture->get_pixmap_u8_ptr());
    EXPECT_TRUE(mgr.release_texture(nullptr, texture, nullptr));
    EXPECT_EQ(one->live(), 1u);
    EXPECT_EQ(other->get_pixmap_u8_ptr()[0], 10);
    EXPECT_TRUE(mgr.release_texture(nullptr, other, nullptr));
    EXPECT_EQ(one->live(), 0u);
}

TEST_F(TextureMgrTest, reloading_one_of_two_textures_that_took_one_image_keeps_its_pixels) {
    Texture* const texture = mgr.create_texture_2d_from_file(one_file.c_str(), false);
    Texture* const other = mgr.create_texture();
    other->load_from_image(texture->get_image_ptr());
    EXPECT_TRUE(mgr.load_texture_2d_from_file(texture, two_file.c_str(), false));
    EXPECT_EQ(one->live(), 1u);
    EXPECT_EQ(other->get_pixmap_u8_ptr()[0], 10);
}

TEST_F(TextureMgrTest, pixels_that_a_host_gave_back_itself_are_not_given_back_again) {
    Texture* const texture = mgr.create_texture_2d_from_file(one_file.c_str(), false);
    Texture* const other = mgr.create_texture();
    EXPECT_TRUE(one->free_image_resources(texture->get_image_ptr()));
    EXPECT_EQ(texture->get_pixmap_u8_ptr(), nullptr);
    EXPECT_TRUE(mgr.load_texture_2d_from_file(other, one_file.c_str(), false));
    EXPECT_TRUE(mgr.release_texture(nullptr, texture, nullptr));
    EXPECT_EQ(one->live(), 1u);
    EXPECT_TRUE(mgr.release_texture(nullptr, other, nullptr));
    EXPECT_EQ(one->live(), 0u);
}

TEST_F(TextureMgrTest, the_end_of_a_texture_by_any_holder_gives_its_pixels_back) {
    Texture* const texture = held_texture();
    mgr.load_image_from_file(texture, one_file.c_str(), false);
    mgr.remove_resource(nullptr, texture);
    EXPECT_EQ(one->live(), 1u);
    texture->kill(&renderer, nullptr);
    EXPECT_EQ(one->live(), 0u);

    auto* const direct = new Texture;
    mgr.load_image_from_file(direct, one_file.c_str(), false);
    delete direct;
    EXPECT_EQ(one->live(), 0u);
    EXPECT_EQ(mgr.get_num_resources(), 0u);
}

TEST_F(TextureMgrTest, a_conversion_keeps_the_decoders_pixels_until_the_end) {
    Texture* const texture = mgr.create_texture_2d_from_file(one_file.c_str(), false);
    EXPECT_TRUE(texture->update_pixel_format(PF_RGBA_U8));
    EXPECT_EQ(texture->get_pixmap_u8_ptr()[0], 10);
    EXPECT_EQ(texture->get_pixmap_u8_ptr()[3], 255);
    EXPECT_EQ(one->live(), 1u);
    EXPECT_TRUE(texture->set_texel_2d(3, 1, vec4(1, 2, 3, 4)));
    const Image copy(*texture->get_image_ptr());
    EXPECT_EQ(copy.pixmap_u8[31], 4);
    EXPECT_TRUE(texture->flip_vertical());
    mgr.release_texture(nullptr, texture, nullptr);
    EXPECT_EQ(one->live(), 0u);
}

TEST_F(TextureMgrTest, a_texture_of_another_renderer_stays_with_its_pixels) {
    FakeRenderer other;
    Texture* const texture = mgr.create_texture_2d_from_file(one_file.c_str(), false);
    texture->get_data_ptr()->renderer_id = renderer.getid();
    EXPECT_TRUE(mgr.release_texture(&other, texture, nullptr));
    EXPECT_TRUE(mgr.release_all_textures(&other, nullptr));
    EXPECT_TRUE(mgr.has_resource(texture));
    EXPECT_EQ(one->live(), 1u);
    EXPECT_TRUE(mgr.release_all_textures(&renderer, nullptr));
    EXPECT_EQ(one->live(), 0u);
    EXPECT_EQ(mgr.get_num_resources(), 0u);
}

TEST_F(TextureMgrTest, releasing_all_with_a_null_renderer_takes_every_texture) {
    Texture* const first = mgr.create_texture_2d_from_file(one_file.c_str(), false);
    Texture* const second = mgr.create_texture_2d_from_file(two_file.c_str(), false);
    first->get_data_ptr()->renderer_id = renderer.getid();
    second->add_ref();
    EXPECT_TRUE(mgr.release_all_textures(nullptr, nullptr));
    EXPECT_EQ(mgr.get_num_resources(), 0u);
    EXPECT_EQ(one->live(), 0u);
    EXPECT_EQ(two->live(), 1u);
    second->release(nullptr, nullptr);
    EXPECT_EQ(two->live(), 0u);
}

TEST_F(TextureMgrTest, stop_releases_textures_before_it_gives_the_codecs_back) {
    mgr.create_texture_2d_from_file(one_file.c_str(), false);
    EXPECT_TRUE(mgr.stop(nullptr));
    EXPECT_EQ(one->live(), 0u);
    EXPECT_EQ(one->get_ref(), 1);
    EXPECT_EQ(two->get_ref(), 1);
    EXPECT_EQ(mgr.get_num_resources(), 0u);
}

TEST_F(TextureMgrTest, a_texture_without_record_is_released_quietly) {
    Texture* const texture = mgr.create_texture();
    texture->cleanup_texture_data(nullptr);
    clear_calls();
    EXPECT_TRUE(mgr.release_texture(nullptr, texture, nullptr));
    EXPECT_EQ(one->take_calls(), Calls());
}

// -------------------------------------------------------------------------------- cubes

TEST_F(TextureMgrTest, loads_six_files_in_the_order_of_the_faces) {
    std::vector<std::string> files;
    std::vector<const char*> names;
    for (int face = 0; face < 6; ++face)
        files.push_back(
            dir.write("face" + std::to_string(face), "two 2 2 " + std::to_string(face)));
    for (const std::string& file : files)
        names.push_back(file.c_str());
    Texture* const listed = mgr.create_texture_cube_from_files(names.data(), false);
    ASSERT_NE(listed, nullptr);
    Texture* const single = mgr.create_texture();
    ASSERT_TRUE(mgr.load_texture_cube_from_files(single, names[0], names[1], names[2], names[3],
                                                 names[4], names[5], false));
    for (Texture* texture : {listed, single}) {
        EXPECT_EQ(texture->get_type(), TEXTURE_TYPE_CUBE);
        EXPECT_EQ(texture->get_cubemap_size(), 2u);
        for (int face = 0; face < 6; ++face)
            EXPECT_EQ(texture->get_cubemap_image_ptr(CUBEMAP_FACE(face))->get_u8_ptr()[0], face);
    }
    EXPECT_EQ(two->live(), 12u);
    mgr.release_texture(nullptr, listed, nullptr);
    EXPECT_EQ(two->live(), 6u);
}

TEST_F(TextureMgrTest, loads_six_blocks) {
    const std::string text = "one 2 2 7";
    const auto* const block = reinterpret_cast<const unsigned char*>(text.data());
    const unsigned char* const blocks[6] = {block, block, block, block, block, block};
    const unsigned long sizes[6] = {9, 9, 9, 9, 9, 9};
    Texture* const texture = mgr.create_texture_cube_from_memory(blocks, sizes, false);
    ASSERT_NE(texture, nullptr);
    EXPECT_EQ(texture->get_cubemap_image_ptr(CUBEMAP_FACE_NEGATIVE_Z)->get_u8_ptr()[0], 7);
    EXPECT_EQ(one->live(), 6u);
    const unsigned long cut[6] = {9, 9, 0, 9, 9, 9};
    EXPECT_EQ(mgr.create_texture_cube_from_memory(blocks, cut, false), nullptr);
    EXPECT_EQ(one->live(), 6u) << "a half-failed load leaves nothing";
    EXPECT_EQ(mgr.create_texture_cube_from_memory(nullptr, sizes, false), nullptr);
    EXPECT_EQ(mgr.create_texture_cube_from_memory(blocks, nullptr, false), nullptr);
    EXPECT_EQ(mgr.get_num_resources(), 1u);
}

TEST_F(TextureMgrTest, the_first_face_that_fails_ends_the_cube_and_keeps_the_earlier_ones) {
    const char* const names[6] = {one_file.c_str(), one_file.c_str(), rubbish.c_str(),
                                  one_file.c_str(), one_file.c_str(), one_file.c_str()};
    Texture* const texture = mgr.create_texture();
    EXPECT_FALSE(mgr.load_texture_cube_from_files(texture, names, false));
    EXPECT_EQ(texture->get_type(), TEXTURE_TYPE_CUBE);
    EXPECT_EQ(one->live(), 2u);
    EXPECT_NE(texture->get_cubemap_image_ptr(CUBEMAP_FACE_NEGATIVE_X)->get_u8_ptr(), nullptr);
    EXPECT_EQ(texture->get_cubemap_image_ptr(CUBEMAP_FACE_POSITIVE_Z)->get_u8_ptr(), nullptr);
    EXPECT_EQ(mgr.create_texture_cube_from_files(names, false), nullptr);
    EXPECT_EQ(one->live(), 2u);
    EXPECT_EQ(mgr.get_num_resources(), 1u);
}

TEST_F(TextureMgrTest, loads_one_face_straight_into_its_image) {
    Texture* const texture = held_texture();
    const std::string text = "one 2 2 7";
    const auto* const block = reinterpret_cast<const unsigned char*>(text.data());
    EXPECT_TRUE(mgr.load_cubemap_face_from_memory(texture, CUBEMAP_FACE_POSITIVE_Y, block,
                                                  text.size(), true));
    EXPECT_EQ(one->image, texture->get_cubemap_image_ptr(CUBEMAP_FACE_POSITIVE_Y));
    EXPECT_TRUE(one->flag);
    EXPECT_FALSE(mgr.has_resource(texture)) << "faces don't register a texture";
    EXPECT_EQ(texture->get_type(), TEXTURE_TYPE_CUBE);

    clear_calls();
    EXPECT_TRUE(
        mgr.load_cubemap_face_from_file(texture, CUBEMAP_FACE_POSITIVE_Z, two_file.c_str(), false));
    EXPECT_EQ(one->take_calls(), (Calls{"file", "file"})) << "cached, and again in its place";
    EXPECT_TRUE(
        mgr.load_cubemap_face_from_file(texture, CUBEMAP_FACE_POSITIVE_Z, two_file.c_str(), false));
    EXPECT_EQ(one->take_calls(), Calls{"free"}) << "the pixels that the reload replaced";
    EXPECT_EQ(two->live(), 1u);
    texture->release(nullptr, nullptr);
    EXPECT_EQ(two->live(), 0u);
}

TEST_F(TextureMgrTest, a_face_frees_an_owned_buffer_that_is_too_small_for_the_new_pixels) {
    Texture* const texture = mgr.create_texture_cube(2, PF_RGB_U8);
    EXPECT_TRUE(
        mgr.load_cubemap_face_from_file(texture, CUBEMAP_FACE_POSITIVE_X, two_file.c_str(), false));
    const Image* const face = texture->get_cubemap_image_ptr(CUBEMAP_FACE_POSITIVE_X);
    EXPECT_EQ(face->pixmap_u8, nullptr);
    EXPECT_EQ(face->get_u8_ptr()[0], 20);
}

TEST_F(TextureMgrTest, refuses_null_and_unknown_faces) {
    const unsigned char block[] = "one 2 2 7";
    const char* const names[6] = {"a", "b", "c", "d", "e", "f"};
    const char* const no_names[6] = {};
    const unsigned char* const blocks[6] = {};
    const unsigned long sizes[6] = {};
    Texture* const texture = mgr.create_texture();
    const CUBEMAP_FACE face = CUBEMAP_FACE_POSITIVE_X;
    EXPECT_FALSE(mgr.load_cubemap_face_from_file(nullptr, face, one_file.c_str(), false));
    EXPECT_FALSE(mgr.load_cubemap_face_from_file(texture, face, nullptr, false));
    EXPECT_FALSE(mgr.load_cubemap_face_from_memory(nullptr, face, block, 9, false));
    EXPECT_FALSE(mgr.load_cubemap_face_from_memory(texture, face, nullptr, 9, false));
    EXPECT_FALSE(mgr.load_cubemap_face_from_memory(texture, face, block, 0, false));
    for (const int outside : {-1, 6})
        EXPECT_FALSE(mgr.load_cubemap_face_from_file(texture, CUBEMAP_FACE(outside),
                                                     one_file.c_str(), false));
    EXPECT_FALSE(mgr.load_texture_cube_from_files(nullptr, names, false));
    EXPECT_FALSE(mgr.load_texture_cube_from_files(texture, nullptr, false));
    EXPECT_FALSE(mgr.load_texture_cube_from_memory(nullptr, blocks, sizes, false));
    EXPECT_FALSE(mgr.load_texture_cube_from_memory(texture, nullptr, sizes, false));
    EXPECT_FALSE(mgr.load_texture_cube_from_memory(texture, blocks, nullptr, false));
    EXPECT_EQ(texture->get_type(), TEXTURE_TYPE_2D);
    EXPECT_FALSE(mgr.load_texture_cube_from_files(texture, no_names, false));
    EXPECT_FALSE(mgr.load_texture_cube_from_memory(texture, blocks, sizes, false));
    EXPECT_EQ(texture->get_type(), TEXTURE_TYPE_CUBE);
    EXPECT_EQ(mgr.create_texture_cube_from_files(nullptr, false), nullptr);
    EXPECT_EQ(mgr.create_texture_cube_from_files(no_names, false), nullptr);
    texture->cleanup_texture_data(nullptr);
    EXPECT_FALSE(mgr.load_cubemap_face_from_file(texture, face, one_file.c_str(), false));
    EXPECT_FALSE(mgr.load_texture_cube_from_files(texture, names, false));
}

// -------------------------------------------------------------------------------- GPU stage

TEST_F(TextureMgrTest, uploads_by_type_with_the_unit_asked) {
    Texture* const texture = mgr.create_texture();
    renderer.name_pointer(texture->get_data_ptr(), "data");
    const struct {
        int type;
        Calls calls;
    } rows[] = {{TEXTURE_TYPE_2D, {"texture_2d_load(data, 3)"}},
                {TEXTURE_TYPE_1D, {"texture_1d_load(data, 3)"}},
                {TEXTURE_TYPE_CUBE, {"texture_cube_load(data, 3)"}},
                {TEXTURE_TYPE_3D, {}},
                {TEXTURE_TYPE_RECTANGLE, {}}};
    for (const auto& row : rows) {
        texture->get_data_ptr()->type = row.type;
        EXPECT_EQ(mgr.upload_to_renderer(&renderer, texture, 3), !row.calls.empty());
        EXPECT_EQ(renderer.take_calls(), row.calls);
    }
    EXPECT_FALSE(mgr.upload_to_renderer(nullptr, texture, 0));
    EXPECT_FALSE(mgr.upload_to_renderer(&renderer, nullptr, 0));
    texture->cleanup_texture_data(nullptr);
    EXPECT_FALSE(mgr.upload_to_renderer(&renderer, texture, 0));
}

TEST_F(TextureMgrTest, sends_a_file_to_the_gpu_and_keeps_none_of_it) {
    Texture* const texture = mgr.create_texture();
    renderer.name_pointer(texture->get_data_ptr(), "data");
    EXPECT_TRUE(mgr.update_gpu_memory_from_file(&renderer, texture, two_file.c_str(), false));
    EXPECT_EQ(renderer.take_calls(),
              Calls{"texture_2d_update_pixmap(data, 0, 0, 8, 4, 1, pointer)"});
    EXPECT_EQ(two->live(), 0u);
    EXPECT_EQ(texture->get_width(), 0u);
    EXPECT_EQ(two->take_calls(), (Calls{"file", "free"}));

    EXPECT_TRUE(mgr.update_gpu_memory_from_file(&renderer, texture, two_file.c_str(), false));
    EXPECT_EQ(two->take_calls(), (Calls{"file", "free"})) << "now as the cached codec";
    one->take_calls();
    EXPECT_TRUE(mgr.update_gpu_memory_from_file(&renderer, texture, one_file.c_str(), false));
    EXPECT_EQ(two->take_calls(), (Calls{"file", "free"})) << "the cached codec is asked first";
    EXPECT_EQ(one->take_calls(), (Calls{"file", "free"}));
    EXPECT_EQ(one->live(), 0u);
}

TEST_F(TextureMgrTest, reports_what_the_renderer_said_to_a_file_for_the_gpu) {
    Texture* const texture = mgr.create_texture();
    renderer.results["texture_2d_update_pixmap"] = false;
    EXPECT_FALSE(mgr.update_gpu_memory_from_file(&renderer, texture, one_file.c_str(), false));
    EXPECT_EQ(renderer.take_calls().size(), 1u);
    EXPECT_EQ(one->live(), 0u);
    EXPECT_FALSE(mgr.update_gpu_memory_from_file(&renderer, texture, missing.c_str(), false));
    EXPECT_FALSE(mgr.update_gpu_memory_from_file(nullptr, texture, one_file.c_str(), false));
    EXPECT_FALSE(mgr.update_gpu_memory_from_file(&renderer, nullptr, one_file.c_str(), false));
    EXPECT_FALSE(mgr.update_gpu_memory_from_file(&renderer, texture, nullptr, false));
    texture->cleanup_texture_data(nullptr);
    EXPECT_FALSE(mgr.update_gpu_memory_from_file(&renderer, texture, one_file.c_str(), false));
    EXPECT_EQ(renderer.take_calls(), Calls());
}

TEST_F(TextureMgrTest, sends_a_mirrored_file_from_its_own_copy) {
    Texture* const texture = mgr.create_texture();
    EXPECT_TRUE(mgr.update_gpu_memory_from_file(&renderer, texture, one_file.c_str(), true));
    EXPECT_TRUE(one->flag);
    EXPECT_EQ(renderer.take_calls().size(), 1u);
}

// -------------------------------------------------------------------------------- writing

TEST_F(TextureMgrTest, writes_two_dimensional_textures_through_the_default_codec) {
    Texture* const texture = mgr.create_texture_2d(2, 2, PF_RGB_U8);
    EXPECT_TRUE(mgr.write_texture_2d_to_file(texture, "picture.jpg"));
    EXPECT_EQ(two->image, texture->get_image_ptr());
    two->saves = false;
    EXPECT_FALSE(mgr.write_texture_2d_to_file(texture, "picture.jpg"));
    clear_calls();
    EXPECT_FALSE(mgr.write_texture_2d_to_file(nullptr, "picture.jpg"));
    EXPECT_FALSE(mgr.write_texture_2d_to_file(texture, nullptr));
    for (const int type : {TEXTURE_TYPE_1D, TEXTURE_TYPE_CUBE, TEXTURE_TYPE_3D}) {
        texture->get_data_ptr()->type = type;
        EXPECT_FALSE(mgr.write_texture_2d_to_file(texture, "picture.jpg"));
    }
    EXPECT_EQ(two->take_calls(), Calls());
}

/// A renderer whose colour buffer counts its rows from the bottom.
class FramebufferRenderer : public FakeRenderer {
public:
    int width = 0;
    int height = 0;
    const unsigned char* buffer = nullptr;

    void get_color_buffer_size(int* size, int* w, int* h) override {
        *size = width * height * 4;
        *w = width;
        *h = height;
    }
    void get_color_buffer(unsigned char* pixels) override {
        buffer = pixels;
        for (int i = 0; i < width * height * 4; ++i)
            pixels[i] = static_cast<unsigned char>(i / (width * 4));
    }
};

TEST_F(TextureMgrTest, a_screenshot_stands_upright) {
    FramebufferRenderer screen;
    screen.width = 3;
    screen.height = 2;
    EXPECT_TRUE(mgr.do_screenshot(&screen, "shot.jpg"));
    EXPECT_EQ(two->take_calls(), Calls{"save shot.jpg"});
    EXPECT_EQ(two->saved.width, 3u);
    EXPECT_EQ(two->saved.height, 2u);
    EXPECT_EQ(two->saved.pixel_format, PF_BGRA_U8);
    EXPECT_EQ(two->saved.pixmap_u8[0], 1) << "the top row comes first";
    EXPECT_EQ(two->saved.pixmap_u8[23], 0);
}

/// One that tells too few bytes for the pixels that it writes.
class StintingRenderer : public FramebufferRenderer {
public:
    void get_color_buffer_size(int* size, int* w, int* h) override {
        FramebufferRenderer::get_color_buffer_size(size, w, h);
        *size = 4;
    }
};

TEST_F(TextureMgrTest, a_screenshot_has_room_for_its_pixels_whatever_the_renderer_tells) {
    StintingRenderer screen;
    screen.width = 300;
    screen.height = 200;
    EXPECT_TRUE(mgr.do_screenshot(&screen, "shot.jpg"));
    EXPECT_GE(ImageAccess::readable_bytes(two->saved, PF_BGRA_U8), 300u * 200u * 4u);
    EXPECT_EQ(two->saved.pixmap_u8[0], 199);
}

TEST_F(TextureMgrTest, a_screenshot_of_nothing_has_no_sides) {
    FramebufferRenderer screen;
    for (const auto& [width, height] : {std::pair{0, 0}, {-3, 0}, {0, -3}}) {
        screen.width = width;
        screen.height = height;
        EXPECT_TRUE(mgr.do_screenshot(&screen, "shot.jpg"));
        EXPECT_EQ(two->saved.width, 0u);
        EXPECT_EQ(two->saved.height, 0u);
    }
}

TEST_F(TextureMgrTest, screenshots_of_one_size_share_a_buffer) {
    FramebufferRenderer screen;
    screen.width = screen.height = 64;
    EXPECT_TRUE(mgr.do_screenshot(&screen, "a.jpg"));
    const unsigned char* const buffer = screen.buffer;
    EXPECT_TRUE(mgr.do_screenshot(&screen, "b.jpg"));
    EXPECT_EQ(screen.buffer, buffer);
    screen.height = 128;
    EXPECT_TRUE(mgr.do_screenshot(&screen, "c.jpg"));
    EXPECT_EQ(two->saved.height, 128u);
    EXPECT_EQ(two->saved.pixmap_u8[0], 127);
    screen.width = 32;
    EXPECT_TRUE(mgr.do_screenshot(&screen, "d.jpg"));
    EXPECT_EQ(two->saved.width, 32u);
}

TEST_F(TextureMgrTest, a_screenshot_needs_a_renderer_a_name_and_a_codec_that_writes) {
    FramebufferRenderer screen;
    screen.width = screen.height = 1;
    EXPECT_FALSE(mgr.do_screenshot(nullptr, "shot.jpg"));
    EXPECT_FALSE(mgr.do_screenshot(&screen, nullptr));
    EXPECT_EQ(screen.buffer, nullptr);
    two->saves = false;
    EXPECT_FALSE(mgr.do_screenshot(&screen, "shot.jpg"));
}

TEST(TextureMgr, is_one_per_process) {
    EXPECT_EQ(TextureMgr::get(), TextureMgr::get());
}

} // namespace
} // namespace orvex_test
