#include "orvex/overlays/font.h"

#include <climits>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "font_fixture.h"
#include "orvex/assets/textures/texture.h"
#include "orvex/renderer/records/texture_data.h"

namespace orvex_test {

using namespace orvex;
namespace {

// ------------------------------------------------------------------------------------ charset

TEST_F(FontTest, loads_a_charset_from_memory) {
    EXPECT_TRUE(font->bm_load_charset_from_memory(charset_text));
    EXPECT_STREQ(font->bm_get_charset_image_filename(), "sheet.png");
}

TEST_F(FontTest, loads_a_charset_from_a_file) {
    const std::string file = dir.write("font.xml", charset_text);
    EXPECT_TRUE(font->bm_load_charset(file.c_str()));
    EXPECT_STREQ(font->bm_get_charset_image_filename(), "sheet.png");
    EXPECT_EQ(state().bm_charset->chars['A'].width, 32);
}

TEST_F(FontTest, refuses_charset_files_that_cant_be_read) {
    const std::string directory = dir.path();
    const std::string empty = dir.write("empty.xml", "");
    const std::string rubbish = dir.write("rubbish.xml", "rubbish");
    const std::string huge = dir.write("huge.xml", charset_text);
    std::filesystem::resize_file(huge, static_cast<std::uintmax_t>(INT_MAX));
    EXPECT_FALSE(font->bm_load_charset(nullptr));
    EXPECT_FALSE(font->bm_load_charset(dir.file("missing.xml").c_str()));
    EXPECT_FALSE(font->bm_load_charset(directory.c_str()));
    EXPECT_FALSE(font->bm_load_charset("/dev/zero"));
    EXPECT_FALSE(font->bm_load_charset(empty.c_str()));
    EXPECT_FALSE(font->bm_load_charset(rubbish.c_str()));
    EXPECT_FALSE(font->bm_load_charset(huge.c_str()));
    EXPECT_EQ(font->bm_get_charset_image_filename(), nullptr);
    EXPECT_TRUE(log.messages().empty()) << "failures aren't logged";
}

TEST_F(FontTest, keeps_the_charset_when_the_next_cant_be_parsed) {
    EXPECT_TRUE(font->bm_load_charset_from_memory(charset_text));
    EXPECT_FALSE(font->bm_load_charset_from_memory(nullptr));
    EXPECT_FALSE(font->bm_load_charset_from_memory("<font>"));
    EXPECT_FALSE(font->bm_load_charset_from_memory("<!-- no root -->"));
    EXPECT_STREQ(font->bm_get_charset_image_filename(), "sheet.png");
}

TEST_F(FontTest, replaces_the_charset_as_a_whole) {
    EXPECT_TRUE(font->bm_load_charset_from_memory(charset_text));
    EXPECT_TRUE(font->bm_load_charset_from_memory("<font/>"));
    EXPECT_STREQ(font->bm_get_charset_image_filename(), "");
    EXPECT_EQ(state().bm_charset->chars['A'].width, 0);
}

// -------------------------------------------------------------------------------------- sheet

TEST_F(FontTest, loads_a_sheet_from_a_file) {
    EXPECT_TRUE(font->bm_load_charset_texture(&renderer, sheet_file.c_str()));
    Texture* const sheet = font->bm_get_charset_texture();
    ASSERT_NE(sheet, nullptr);
    EXPECT_EQ(sheet->get_ref(), 2) << "the manager's and the font's";
    EXPECT_EQ(sheet->get_width(), 8u);
    EXPECT_EQ(sheet->get_pixel_format(), PF_RGBA_U8);
    EXPECT_TRUE(sheet->get_data_ptr()->gen_mipmaps);
    EXPECT_FALSE(codec->flag);
    EXPECT_EQ(renderer.take_calls(), Calls{"texture_2d_load(pointer, 0)"});
}

TEST_F(FontTest, loads_a_sheet_from_memory_clamped_and_without_mipmaps) {
    const std::string bytes = "flat 8 4 50";
    EXPECT_TRUE(font->bm_load_charset_texture_from_memory(
        &renderer, reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()));
    Texture* const sheet = font->bm_get_charset_texture();
    ASSERT_NE(sheet, nullptr);
    EXPECT_EQ(sheet->get_ref(), 2);
    EXPECT_EQ(sheet->get_pixel_format(), PF_RGBA_U8);
    EXPECT_FALSE(sheet->get_data_ptr()->gen_mipmaps);
    EXPECT_EQ(sheet->get_data_ptr()->addressing_mode, ADDRESSING_CLAMP);
    EXPECT_FALSE(codec->flag);
    EXPECT_EQ(renderer.take_calls(),
              (Calls{"set_texture_addressing_mode(pointer, 2)", "texture_2d_load(pointer, 0)"}));
}

TEST_F(FontTest, loads_a_sheet_whether_or_not_it_can_be_uploaded) {
    renderer.results["texture_2d_load"] = false;
    EXPECT_TRUE(font->bm_load_charset_texture(&renderer, sheet_file.c_str()));
    EXPECT_TRUE(font->bm_load_charset_texture(nullptr, sheet_file.c_str()));
    EXPECT_NE(font->bm_get_charset_texture(), nullptr);
}

TEST_F(FontTest, refuses_sheets_that_cant_be_decoded) {
    const std::string rubbish = dir.write("rubbish.png", "rubbish");
    const auto* const bytes = reinterpret_cast<const unsigned char*>("rubbish");
    EXPECT_FALSE(font->bm_load_charset_texture(&renderer, rubbish.c_str()));
    EXPECT_FALSE(font->bm_load_charset_texture(&renderer, dir.file("missing.png").c_str()));
    EXPECT_FALSE(font->bm_load_charset_texture(&renderer, nullptr));
    EXPECT_FALSE(font->bm_load_charset_texture_from_memory(&renderer, bytes, 7));
    EXPECT_FALSE(font->bm_load_charset_texture_from_memory(&renderer, bytes, 0));
    EXPECT_FALSE(font->bm_load_charset_texture_from_memory(&renderer, nullptr, 7));
    EXPECT_EQ(font->bm_get_charset_texture(), nullptr);
    EXPECT_EQ(textures.get_num_resources(), 0u);
    EXPECT_TRUE(log.messages().empty()) << "failures aren't logged";
}

TEST_F(FontTest, keeps_the_sheet_when_no_other_is_named) {
    load();
    EXPECT_FALSE(font->bm_load_charset_texture(&renderer, nullptr));
    EXPECT_FALSE(font->bm_load_charset_texture_from_memory(&renderer, nullptr, 7));
    EXPECT_NE(font->bm_get_charset_texture(), nullptr);
}

TEST_F(FontTest, gives_the_sheet_back_before_it_loads_the_next) {
    load();
    EXPECT_TRUE(font->bm_load_charset_texture(&renderer, sheet_file.c_str()));
    EXPECT_EQ(textures.get_num_resources(), 1u);
    EXPECT_EQ(font->bm_get_charset_texture()->get_ref(), 2);

    const auto* const bytes = reinterpret_cast<const unsigned char*>("flat 2 2 1");
    EXPECT_TRUE(font->bm_load_charset_texture_from_memory(&renderer, bytes, 10));
    EXPECT_EQ(textures.get_num_resources(), 1u);

    EXPECT_FALSE(font->bm_load_charset_texture(&renderer, dir.file("missing.png").c_str()));
    EXPECT_EQ(font->bm_get_charset_texture(), nullptr);
    EXPECT_EQ(textures.get_num_resources(), 0u);
}

TEST_F(FontTest, gives_its_sheet_back_once) {
    load();
    EXPECT_TRUE(font->bm_release_charset_texture(&renderer));
    EXPECT_EQ(font->bm_get_charset_texture(), nullptr);
    EXPECT_EQ(textures.get_num_resources(), 0u);
    EXPECT_EQ(renderer.count("texture_unload"), 1);
    EXPECT_TRUE(font->bm_release_charset_texture(&renderer));
    EXPECT_TRUE(font->bm_release_charset_texture(nullptr));
}

TEST_F(FontTest, lets_a_sheet_live_that_somebody_else_holds) {
    load();
    Texture* const sheet = font->bm_get_charset_texture();
    sheet->add_ref();
    EXPECT_TRUE(font->bm_release_charset_texture(&renderer));
    EXPECT_EQ(sheet->get_ref(), 1);
    EXPECT_EQ(sheet->release(&renderer, nullptr), 0);
}

TEST_F(FontTest, outlives_the_manager_of_its_sheet) {
    load();
    stop_texture_manager();
    EXPECT_NE(font->bm_get_charset_texture(), nullptr) << "the font holds it";
    EXPECT_TRUE(font->bm_release_charset_texture(&renderer));
    EXPECT_EQ(font->bm_get_charset_texture(), nullptr);
}

TEST_F(FontTest, takes_no_reference_that_is_neither_its_own_nor_the_managers) {
    load();
    Texture* const sheet = font->bm_get_charset_texture();
    sheet->add_ref();
    stop_texture_manager();
    EXPECT_TRUE(font->bm_release_charset_texture(&renderer));
    EXPECT_EQ(sheet->get_ref(), 1);
    EXPECT_EQ(sheet->release(&renderer, nullptr), 0);
}

TEST_F(FontTest, forgets_a_sheet_that_was_ended_behind_its_back) {
    load();
    textures.release_texture(&renderer, font->bm_get_charset_texture(), nullptr);
    textures.release_texture(&renderer, font->bm_get_charset_texture(), nullptr);
    EXPECT_EQ(font->bm_get_charset_texture(), nullptr);
    EXPECT_FALSE(font->bm_alloc_vb(&renderer, 1));
    EXPECT_TRUE(font->bm_release_charset_texture(&renderer));
}

} // namespace
} // namespace orvex_test
