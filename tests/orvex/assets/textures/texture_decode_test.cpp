#include <cstdio>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "orvex/assets/images/codecs/image_codec_stb.h"
#include "orvex/assets/textures/texture.h"
#include "orvex/assets/textures/texture_mgr.h"
#include "orvex/renderer/records/texture_data.h"
#include "tests/orvex/assets/images/codecs/encoded_pictures.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

using namespace orvex;
namespace {

/// The manager with the codec that the kernel gives it, and pictures on disk.
class TextureDecode : public testing::Test {
protected:
    TextureDecode()
        : mgr(*TextureMgr::get()) {
        mgr.start(nullptr);
        mgr.register_image_codec_plugin(new ImageCodecStb);
    }
    ~TextureDecode() override { mgr.stop(nullptr); }

    std::string write(const std::string& name, const Bytes& bytes) const {
        return dir.write(name, std::string(bytes.begin(), bytes.end()));
    }

    /// Whether the decoder still counts these pixels as handed out; gives them back if so.
    static bool is_handed_out(unsigned char* pixels) {
        Image probe;
        probe.pixmap_external = pixels;
        return ImageCodecStb::free_decoded_pixels(&probe);
    }

    TempDir dir;
    TextureMgr& mgr;
};

TEST_F(TextureDecode, loads_a_picture_under_any_name) {
    const RgbPicture picture = four_colors();
    for (const auto& [name, bytes] : {std::pair{"a.png", png(picture, 3)},
                                      {"b.png", png(picture, 4)},
                                      {"c.jpg", bmp(picture)},
                                      {"d", tga(picture)}}) {
        Texture* const texture = mgr.create_texture_2d_from_file(write(name, bytes).c_str(), false);
        ASSERT_NE(texture, nullptr) << name;
        EXPECT_EQ(texture->get_pixel_format(), PF_RGB_U8) << name;
        const unsigned char* const pixels = texture->get_pixmap_u8_ptr();
        EXPECT_EQ(Bytes(pixels, pixels + 12), picture.rgb) << name;
    }
}

TEST_F(TextureDecode, loads_from_memory) {
    const RgbPicture picture = colored(9, 5);
    const Bytes bytes = png(picture, 3);
    Texture* const texture = mgr.create_texture_2d_from_memory(bytes.data(), bytes.size(), false);
    ASSERT_NE(texture, nullptr);
    const unsigned char* const pixels = texture->get_pixmap_u8_ptr();
    EXPECT_EQ(Bytes(pixels, pixels + 9 * 5 * 3), picture.rgb);
}

TEST_F(TextureDecode, refuses_what_cannot_be_decoded_and_keeps_the_texture_as_it_was) {
    const Bytes whole = png(colored(16, 16), 3);
    const Bytes header(whole.begin(), whole.begin() + 20);
    const Bytes half(whole.begin(), whole.begin() + static_cast<long>(whole.size() / 2));
    const std::string rows[] = {
        dir.file("missing.png"),     dir.path(),
        write("empty.png", {}),      write("rubbish.png", Bytes(5000, 0xa5)),
        write("header.png", header), write("half.png", half)};
    Texture* const kept = mgr.create_texture_2d_from_file(write("good.png", whole).c_str(), false);
    ASSERT_NE(kept, nullptr);
    const unsigned char* const pixels = kept->get_pixmap_u8_ptr();
    for (const std::string& file : rows) {
        EXPECT_EQ(mgr.create_texture_2d_from_file(file.c_str(), false), nullptr) << file;
        EXPECT_FALSE(mgr.load_texture_2d_from_file(kept, file.c_str(), false)) << file;
        EXPECT_FALSE(
            mgr.load_cubemap_face_from_file(kept, CUBEMAP_FACE_POSITIVE_X, file.c_str(), false))
            << file;
        EXPECT_EQ(kept->get_pixmap_u8_ptr(), pixels) << file;
        EXPECT_EQ(kept->get_width(), 16u) << file;
    }
    EXPECT_EQ(mgr.get_num_resources(), 1u);
}

TEST_F(TextureDecode, gives_pixels_back_even_after_the_last_codec_has_gone) {
    const std::string file = write("a.png", png(four_colors(), 3));
    Texture* const texture = mgr.create_texture_2d_from_file(file.c_str(), false);
    ASSERT_NE(texture, nullptr);
    unsigned char* const pixels = texture->get_pixmap_u8_ptr();
    texture->add_ref();
    mgr.stop(nullptr);
    EXPECT_EQ(texture->get_pixmap_u8_ptr()[0], 255) << "held elsewhere, the pixels stay";
    EXPECT_EQ(texture->release(nullptr, nullptr), 0);
    EXPECT_FALSE(is_handed_out(pixels));
}

TEST_F(TextureDecode, releases_hundreds_of_loads_without_a_rest) {
    const std::string file = write("a.png", png(colored(8, 8), 3));
    std::vector<unsigned char*> seen;
    for (int i = 0; i < 200; ++i) {
        Texture* const texture = mgr.create_texture_2d_from_file(file.c_str(), i % 2 == 1);
        ASSERT_NE(texture, nullptr);
        seen.push_back(texture->get_image_ptr()->pixmap_external);
        texture->update_pixel_format(PF_RGBA_U8);
        mgr.release_texture(nullptr, texture, nullptr);
    }
    for (unsigned char* pixels : seen)
        EXPECT_FALSE(is_handed_out(pixels));
}

TEST_F(TextureDecode, writes_a_texture_that_can_be_read_again) {
    const std::string file = write("a.png", png(RgbPicture{8, 8, Bytes(192, 128)}, 3));
    Texture* const texture = mgr.create_texture_2d_from_file(file.c_str(), false);
    const std::string written = dir.file("out.png");
    ASSERT_TRUE(mgr.write_texture_2d_to_file(texture, written.c_str()));
    EXPECT_EQ(content_of(written).substr(0, 3), "\xff\xd8\xff") << "JPEG under any name";
    Texture* const again = mgr.create_texture_2d_from_file(written.c_str(), false);
    ASSERT_NE(again, nullptr);
    EXPECT_EQ(again->get_width(), 8u);
    EXPECT_NEAR(again->get_pixmap_u8_ptr()[0], 128, 1) << "rounding of the two colour conversions";
    EXPECT_FALSE(mgr.write_texture_2d_to_file(texture, dir.file("no/such/dir.jpg").c_str()));
    Texture* const empty = mgr.create_texture();
    EXPECT_FALSE(mgr.write_texture_2d_to_file(empty, dir.file("empty.jpg").c_str()));
}

TEST_F(TextureDecode, a_loader_thread_may_make_textures) {
    const std::string file = write("a.png", png(colored(8, 8), 3));
    Texture* texture = nullptr;
    std::thread loader([&] { texture = mgr.create_texture_2d_from_file(file.c_str(), false); });
    loader.join();
    ASSERT_NE(texture, nullptr);
    EXPECT_TRUE(mgr.release_texture(nullptr, texture, nullptr));
}

TEST_F(TextureDecode, textures_of_several_threads_take_and_give_back_pixels_at_once) {
    const Bytes bytes = png(colored(8, 8), 3);
    const auto work = [&bytes] {
        ImageCodecStb codec;
        for (int i = 0; i < 50; ++i) {
            Image image;
            Bytes copy = bytes;
            ASSERT_TRUE(codec.load_image_from_memory(&image, copy.data(), copy.size(), false));
            Texture texture;
            EXPECT_TRUE(texture.load_from_image(&image));
        }
    };
    std::thread first(work), second(work);
    first.join();
    second.join();
}

} // namespace
} // namespace orvex_test
