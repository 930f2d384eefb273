#include "overlays/font.h"

#include <climits>
#include <filesystem>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "assets/texture.h"
#include "assets/texture_data.h"
#include "geometry/mesh.h"
#include "geometry/mesh_data.h"
#include "geometry/mesh_data_packed.h"
#include "geometry/owned_mesh.h"
#include "math/mat4.h"
#include "overlays/font_state.h"
#include "overlays/overlay_fixture.h"
#include "renderer/render_window.h"

namespace orvex {
namespace {

using namespace orvex_test;

/// A sheet of 128 by 64 with three glyphs: A, a blank, and j with offsets.
char const* const charset_text = R"(<font>
  <info padding="0,0,0,0" spacing="3,9"/>
  <common lineHeight="20" base="15" scaleW="128" scaleH="64"/>
  <pages><page id="0" file="sheet.png"/></pages>
  <chars>
    <char id="65" x="16" y="8" width="32" height="16" xoffset="0" yoffset="0" xadvance="34"/>
    <char id="32" x="0" y="0" width="0" height="0" xadvance="10"/>
    <char id="106" x="64" y="32" width="8" height="24" xoffset="2" yoffset="5" xadvance="11"/>
    <char id="200" x="1" y="1" width="99" height="99" xadvance="99"/>
  </chars>
</font>)";

/// Gives stores the id of a buffer, and lends memory for mapping.
class FontRenderer : public OverlayRenderer {
public:
    bool vertex_buffer_prepare(MeshData* mesh) override {
        mesh->vertex_buffer_id = 7;
        name_pointer(mesh, "store");
        return OverlayRenderer::vertex_buffer_prepare(mesh);
    }
    bool vertex_buffer_kill(MeshData* mesh) override {
        name_pointer(mesh, "store");
        if (mesh != nullptr) {
            mesh->vertex_buffer_id = 0;
        }
        return OverlayRenderer::vertex_buffer_kill(mesh);
    }
    using OverlayRenderer::vertex_buffer_kill;
};

class FontTest : public OverlayTest {
protected:
    FontTest() { sheet_file = dir.write("sheet.png", "flat 8 4 50"); }
    ~FontTest() override { font->kill(&renderer, nullptr); }

    FontAccess::State& state() { return FontAccess::state(*font); }
    FontAccess::BmData& texts() { return state().bm_data; }
    MeshData* store() { return state().bm_mesh->get_mesh_data(); }

    void load() {
        ASSERT_TRUE(font->bm_load_charset_from_memory(charset_text));
        ASSERT_TRUE(font->bm_load_charset_texture(&renderer, sheet_file.c_str()));
        renderer.take_calls();
    }

    /// Textures are ended; the codec stays in reach, as the engine's own one does.
    void stop_texture_manager() {
        textures.stop(nullptr);
        textures.register_image_codec_plugin(codec);
    }

    bool queue(char const* text) {
        return font->bm_draw_text_3d(100.0f, 200.0f, -5.0f, 0.1f, 0.2f, 0.3f, 0.4f, text);
    }

    FontRenderer renderer;
    Font* font = new Font;
    std::string sheet_file;
};

// ------------------------------------------------------------------------------------- object

TEST_F(FontTest, is_an_object_of_its_own_type) {
    EXPECT_EQ(font->get_type(), NODE_TYPE_FONT);
    EXPECT_EQ(font->get_type(), 19);
    EXPECT_TRUE(font->is_type_of(NODE_TYPE_OBJECT));
}

TEST_F(FontTest, begins_empty_with_a_mesh) {
    EXPECT_STREQ(font->get_font_data()->name, "Arial");
    EXPECT_EQ(texts().capacity, 512u);
    EXPECT_EQ(texts().get_string_counter(), 0u);
    EXPECT_EQ(state().bm_charset, nullptr);
    EXPECT_EQ(font->bm_get_charset_texture(), nullptr);
    EXPECT_EQ(font->bm_get_charset_image_filename(), nullptr);
    EXPECT_NE(state().bm_mesh, nullptr);
    EXPECT_EQ(state().bm_vb_capacity, 0u);
    EXPECT_FLOAT_EQ(state().bm_scale, 1.0f);
}

TEST_F(FontTest, has_the_renderer_id_of_its_record) {
    EXPECT_EQ(font->get_renderer_id(), 0);
    font->get_font_data()->renderer_id = 12;
    EXPECT_EQ(font->get_renderer_id(), 12);
}

TEST_F(FontTest, stores_the_area_of_raster_text) {
    EXPECT_TRUE(font->set_viewport_info(1, 2, 3, 4));
    EXPECT_EQ(font->get_font_data()->viewport_x, 1);
    EXPECT_EQ(font->get_font_data()->viewport_y, 2);
    EXPECT_EQ(font->get_font_data()->viewport_width, 3);
    EXPECT_EQ(font->get_font_data()->viewport_height, 4);
}

TEST_F(FontTest, keeps_its_record_when_told_to_free_it) {
    FontData* const data = font->get_font_data();
    EXPECT_TRUE(font->free_font_data());
    EXPECT_EQ(font->get_font_data(), data);
}

TEST_F(FontTest, hands_rendering_states_to_its_mesh_and_to_children) {
    Object* const child = new Object;
    font->add_child(child);
    font->set_opengl_2_3_rendering_states(false, font);
    EXPECT_TRUE(font->get_use_generic_vertex_attribs_state());
    EXPECT_TRUE(state().bm_mesh->get_use_generic_vertex_attribs_state());
    EXPECT_FALSE(state().bm_mesh->get_use_fixed_mvp_matrices_state());
    EXPECT_TRUE(child->get_use_generic_vertex_attribs_state());
    font->set_opengl_2_3_rendering_states(true, nullptr);
    EXPECT_FALSE(state().bm_mesh->get_use_generic_vertex_attribs_state());
    EXPECT_TRUE(child->get_use_generic_vertex_attribs_state());

    font->_cleanup(&renderer);
    font->set_opengl_2_3_rendering_states(false, nullptr);
    EXPECT_TRUE(font->get_use_generic_vertex_attribs_state()) << "also without a mesh";
}

TEST_F(FontTest, scales_its_quads_and_its_children_once) {
    load();
    queue("A");
    ASSERT_TRUE(font->bm_update_vb(&renderer, false));
    OwnedMesh const child = make_unit_triangle();
    child->add_ref();
    font->add_child(child.get());
    font->scale_vertices_position(vec4(2.0f, 3.0f, 4.0f, 1.0f), font);
    EXPECT_FLOAT_EQ(store()->get_position(0).x, 200.0f);
    EXPECT_FLOAT_EQ(store()->get_position(0).y, 600.0f);
    EXPECT_FLOAT_EQ(store()->get_position(0).z, -20.0f);
    EXPECT_FLOAT_EQ(child->get_vertex_position(1).x, 2.0f);

    font->_cleanup(&renderer);
    font->scale_vertices_position(vec4(2.0f, 2.0f, 2.0f, 1.0f), font);
    EXPECT_FLOAT_EQ(child->get_vertex_position(1).x, 4.0f) << "also without a mesh";
}

// ------------------------------------------------------------------------------------ charset

TEST_F(FontTest, loads_a_charset_from_memory) {
    EXPECT_TRUE(font->bm_load_charset_from_memory(charset_text));
    EXPECT_STREQ(font->bm_get_charset_image_filename(), "sheet.png");
}

TEST_F(FontTest, loads_a_charset_from_a_file) {
    std::string const file = dir.write("font.xml", charset_text);
    EXPECT_TRUE(font->bm_load_charset(file.c_str()));
    EXPECT_STREQ(font->bm_get_charset_image_filename(), "sheet.png");
    EXPECT_EQ(state().bm_charset->chars['A'].width, 32);
}

TEST_F(FontTest, refuses_charset_files_that_cant_be_read) {
    std::string const directory = dir.path();
    std::string const empty = dir.write("empty.xml", "");
    std::string const rubbish = dir.write("rubbish.xml", "rubbish");
    std::string const huge = dir.write("huge.xml", charset_text);
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
    std::string const bytes = "flat 8 4 50";
    EXPECT_TRUE(font->bm_load_charset_texture_from_memory(
        &renderer, reinterpret_cast<unsigned char const*>(bytes.data()), bytes.size()));
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
    std::string const rubbish = dir.write("rubbish.png", "rubbish");
    auto const* const bytes = reinterpret_cast<unsigned char const*>("rubbish");
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

    auto const* const bytes = reinterpret_cast<unsigned char const*>("flat 2 2 1");
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

// -------------------------------------------------------------------------------------- queue

TEST_F(FontTest, queues_text_of_a_screen_with_y_turned_around) {
    EXPECT_TRUE(font->bm_draw_text_2d(10, 20, 0.1f, 0.2f, 0.3f, 0.4f, "text"));
    bm_string const& string = *texts().get_string(0);
    EXPECT_EQ(string.x, 10.0f);
    EXPECT_EQ(string.y, -20.0f);
    EXPECT_EQ(string.z, 0.0f);
    EXPECT_EQ(string.color.x, 0.1f);
    EXPECT_EQ(string.color.y, 0.2f);
    EXPECT_EQ(string.color.z, 0.3f);
    EXPECT_EQ(string.color.w, 0.4f);
    EXPECT_EQ(string.text, "text");
}

TEST_F(FontTest, queues_the_furthest_positions_of_a_screen) {
    EXPECT_TRUE(font->bm_draw_text_2d(INT_MIN, INT_MIN, 1.0f, 1.0f, 1.0f, 1.0f, ""));
    EXPECT_EQ(texts().get_string(0)->x, -2147483648.0f);
    EXPECT_EQ(texts().get_string(0)->y, 2147483648.0f);
}

TEST_F(FontTest, queues_text_in_space) {
    EXPECT_TRUE(font->bm_draw_text_3d(1.5f, 2.5f, 3.5f, 0.0f, 0.0f, 0.0f, 1.0f, "text"));
    bm_string const& string = *texts().get_string(0);
    EXPECT_EQ(string.x, 1.5f);
    EXPECT_EQ(string.y, 2.5f);
    EXPECT_EQ(string.z, 3.5f);
}

TEST_F(FontTest, queues_no_null_text) {
    EXPECT_FALSE(font->bm_draw_text_2d(0, 0, 1.0f, 1.0f, 1.0f, 1.0f, nullptr));
    EXPECT_FALSE(font->bm_draw_text_3d(0.0f, 0.0f, 0.0f, 1.0f, 1.0f, 1.0f, 1.0f, nullptr));
    EXPECT_EQ(texts().get_string_counter(), 0u);
}

TEST_F(FontTest, loses_the_513th_text_of_a_frame) {
    for (int i = 0; i < 512; ++i) {
        EXPECT_TRUE(queue("a")) << i;
    }
    EXPECT_FALSE(queue("a"));
    EXPECT_FALSE(font->bm_draw_text_2d(0, 0, 1.0f, 1.0f, 1.0f, 1.0f, "a"));
    EXPECT_EQ(texts().get_num_chars(), 512u);
    font->bm_draw_reset();
    EXPECT_TRUE(queue("a"));
    EXPECT_EQ(texts().get_num_chars(), 1u);
}

TEST_F(FontTest, counts_every_byte_of_its_texts) {
    queue("ab\n");
    queue("");
    queue("\xc3\xa9");
    EXPECT_EQ(texts().get_string_counter(), 3u);
    EXPECT_EQ(texts().get_num_chars(), 5u);
}

TEST(FontTexts, have_defaults) {
    bm_string const string;
    EXPECT_EQ(string.x, 0.0f);
    EXPECT_EQ(string.y, 0.0f);
    EXPECT_EQ(string.z, 0.0f);
    EXPECT_EQ(string.color.x, 1.0f);
    EXPECT_EQ(string.color.y, 1.0f);
    EXPECT_EQ(string.color.z, 1.0f);
    EXPECT_EQ(string.color.w, 1.0f);
    EXPECT_EQ(string.text, "");
}

TEST(FontTexts, are_reached_by_the_room_there_is) {
    FontAccess::BmData data;
    EXPECT_EQ(data.get_string(0), nullptr);
    EXPECT_FALSE(data.add_string(0, 0, 0, 0, 0, 0, 0, "no room"));
    EXPECT_TRUE(data.alloc_strings(2));
    EXPECT_TRUE(data.add_string(1, 2, 3, 4, 5, 6, 7, "one"));
    EXPECT_NE(data.get_string(1), nullptr) << "in use or not";
    EXPECT_EQ(data.get_string(2), nullptr);
    data.reset_string_counter();
    EXPECT_EQ(data.get_string_counter(), 0u);
    EXPECT_EQ(data.get_string(0)->text, "one") << "nothing is freed";
    data.free_strings();
    EXPECT_EQ(data.capacity, 0u);
    EXPECT_EQ(data.get_string(0), nullptr);
}

TEST(FontTexts, have_no_room_without_memory) {
    FontAccess::BmData data;
    EXPECT_TRUE(data.alloc_strings(2));
    EXPECT_FALSE(data.alloc_strings(std::numeric_limits<unsigned long>::max() / 256));
    EXPECT_EQ(data.capacity, 0u);
    EXPECT_FALSE(data.add_string(0, 0, 0, 0, 0, 0, 0, "text"));
}

// ------------------------------------------------------------------------------------- buffer

TEST_F(FontTest, makes_a_buffer_for_1000_glyphs_at_first) {
    load();
    EXPECT_TRUE(font->bm_alloc_vb(&renderer, 1000));
    EXPECT_EQ(state().bm_vb_capacity, 1000u);
    EXPECT_EQ(store()->get_num_vertices(), 6000u);
    EXPECT_FALSE(store()->has_separate_vertex_arrays());
    EXPECT_EQ(store()->alignment, 0);
    EXPECT_EQ(store()->num_faces, 0u);
    EXPECT_FALSE(store()->get_use_generic_vertex_attribs_state());
    EXPECT_EQ(renderer.take_calls(),
              (Calls{"vertex_buffer_kill(store)", "vertex_buffer_prepare(store)",
                     "vertex_buffer_finish(store)"}));
}

TEST_F(FontTest, does_nothing_when_glyphs_fit) {
    load();
    EXPECT_TRUE(font->bm_alloc_vb(nullptr, 0)) << "no glyph fits no room";
    EXPECT_TRUE(font->bm_alloc_vb(&renderer, 1));
    renderer.take_calls();
    EXPECT_TRUE(font->bm_alloc_vb(nullptr, 1000));
    EXPECT_EQ(renderer.take_calls(), Calls());
}

TEST_F(FontTest, grows_to_1000_glyphs_more_than_asked_for_and_never_shrinks) {
    load();
    EXPECT_TRUE(font->bm_alloc_vb(&renderer, 1001));
    EXPECT_EQ(state().bm_vb_capacity, 2001u);
    EXPECT_EQ(store()->get_num_vertices(), 12006u);
    EXPECT_TRUE(font->bm_alloc_vb(&renderer, 1));
    EXPECT_EQ(state().bm_vb_capacity, 2001u);
    EXPECT_TRUE(font->bm_alloc_vb(&renderer, 2002));
    EXPECT_EQ(state().bm_vb_capacity, 3002u);
}

TEST_F(FontTest, takes_1000_characters_at_once_and_grows_for_1001) {
    load();
    queue(std::string(1000, 'A').c_str());
    EXPECT_TRUE(font->bm_update_vb(&renderer, false));
    EXPECT_EQ(state().bm_vb_capacity, 1000u);
    queue("A");
    EXPECT_TRUE(font->bm_update_vb(&renderer, false));
    EXPECT_EQ(state().bm_vb_capacity, 2001u);
    EXPECT_EQ(store()->draw_end_vertex, 6006u);
}

TEST_F(FontTest, makes_its_buffer_for_the_attributes_it_is_set_to) {
    load();
    font->set_opengl_2_3_rendering_states(false, nullptr);
    EXPECT_TRUE(font->bm_alloc_vb(&renderer, 1));
    EXPECT_TRUE(store()->get_use_generic_vertex_attribs_state());
}

TEST_F(FontTest, makes_no_buffer_without_renderer_sheet_or_charset) {
    EXPECT_FALSE(font->bm_alloc_vb(&renderer, 1)) << "neither";
    ASSERT_TRUE(font->bm_load_charset_from_memory(charset_text));
    EXPECT_FALSE(font->bm_alloc_vb(&renderer, 1)) << "no sheet";
    load();
    EXPECT_FALSE(font->bm_alloc_vb(nullptr, 1));
    state().bm_charset.reset();
    EXPECT_FALSE(font->bm_alloc_vb(&renderer, 1)) << "no charset";
    EXPECT_EQ(state().bm_vb_capacity, 0u);
    EXPECT_EQ(renderer.take_calls(), Calls());
}

TEST_F(FontTest, makes_no_buffer_that_memory_cant_hold) {
    load();
    constexpr unsigned long most = std::numeric_limits<unsigned long>::max();
    EXPECT_FALSE(font->bm_alloc_vb(&renderer, most));
    EXPECT_FALSE(font->bm_alloc_vb(&renderer, most / 96 / 6));
    ASSERT_TRUE(font->bm_alloc_vb(&renderer, 1)) << "until now nothing was touched";
    EXPECT_FALSE(font->bm_alloc_vb(&renderer, most / 96 / 12));
    EXPECT_EQ(state().bm_vb_capacity, 0u) << "the vertices before are gone";
    EXPECT_EQ(store()->get_num_vertices(), 0u);
    queue("A");
    EXPECT_TRUE(font->bm_update_vb(&renderer, false)) << "and can be had again";
    EXPECT_EQ(state().bm_vb_capacity, 1000u);
}

TEST_F(FontTest, makes_no_buffer_in_a_mesh_without_a_store) {
    load();
    state().bm_mesh->cleanup_mesh_data(&renderer);
    EXPECT_FALSE(font->bm_alloc_vb(&renderer, 1));
    queue("A");
    EXPECT_FALSE(font->bm_update_vb(&renderer, false));
}

TEST_F(FontTest, frees_its_buffer) {
    load();
    EXPECT_TRUE(font->bm_alloc_vb(&renderer, 1));
    renderer.take_calls();
    EXPECT_TRUE(font->bm_free_vb(&renderer));
    EXPECT_EQ(state().bm_vb_capacity, 0u);
    EXPECT_EQ(renderer.take_calls(), Calls{"vertex_buffer_kill(store)"});
    EXPECT_TRUE(font->bm_alloc_vb(&renderer, 1));
    renderer.take_calls();
    EXPECT_TRUE(font->bm_free_vb(nullptr));
    EXPECT_EQ(state().bm_vb_capacity, 0u);
    EXPECT_EQ(renderer.take_calls(), Calls());
    font->_cleanup(&renderer);
    EXPECT_TRUE(font->bm_free_vb(&renderer)) << "also without a mesh";
}

// -------------------------------------------------------------------------------------- quads

struct Corner {
    float x, y, u, v;
};

/// The six vertices of a glyph by its edges.
std::vector<Corner> corners(float left, float right, float top, float bottom, float u0, float u1,
                            float v0, float v1) {
    return {{left, top, u0, v0},     {right, top, u1, v0},   {right, bottom, u1, v1},
            {right, bottom, u1, v1}, {left, bottom, u0, v1}, {left, top, u0, v0}};
}

void expect_glyph(Vertex const* vertices, std::vector<Corner> const& expected) {
    for (std::size_t i = 0; i < expected.size(); ++i) {
        Vertex const& vertex = vertices[i];
        EXPECT_EQ(vertex.position.x, expected[i].x) << i;
        EXPECT_EQ(vertex.position.y, expected[i].y) << i;
        EXPECT_EQ(vertex.position.z, -5.0f) << i;
        EXPECT_EQ(vertex.position.w, 1.0f) << i;
        EXPECT_EQ(vertex.uv0.x, expected[i].u) << i;
        EXPECT_EQ(vertex.uv0.y, expected[i].v) << i;
        EXPECT_EQ(vertex.uv0.z, 0.0f) << i;
        EXPECT_EQ(vertex.uv0.w, 1.0f) << i;
        EXPECT_EQ(vertex.color.x, 0.1f) << i;
        EXPECT_EQ(vertex.color.y, 0.2f) << i;
        EXPECT_EQ(vertex.color.z, 0.3f) << i;
        EXPECT_EQ(vertex.color.w, 0.4f) << i;
        EXPECT_EQ(vertex.normal.w, 1.0f) << i;
        EXPECT_EQ(vertex.uv1.w, 1.0f) << i;
        EXPECT_EQ(vertex.tangent.w, 1.0f) << i;
    }
}

class FontQuads : public FontTest {
protected:
    FontQuads() { load(); }

    /// The vertices of texts at (100, 200, -5).
    Vertex const* update(char const* text) {
        EXPECT_TRUE(queue(text));
        EXPECT_TRUE(font->bm_update_vb(&renderer, false));
        return store()->vertices;
    }
};

TEST_F(FontQuads, begin_with_their_upper_left_corner_at_the_position) {
    expect_glyph(update("A"), corners(100, 132, 200, 184, 0.125f, 0.375f, 0.875f, 0.625f));
}

TEST_F(FontQuads, are_moved_by_offsets_and_advances) {
    Vertex const* const vertices = update("jAj");
    expect_glyph(vertices, corners(102, 110, 195, 171, 0.5f, 0.5625f, 0.5f, 0.125f));
    expect_glyph(vertices + 6, corners(111, 143, 200, 184, 0.125f, 0.375f, 0.875f, 0.625f));
    expect_glyph(vertices + 12, corners(147, 155, 195, 171, 0.5f, 0.5625f, 0.5f, 0.125f));
}

TEST_F(FontQuads, of_a_blank_take_the_first_spacing_on_top) {
    expect_glyph(update("A A") + 12, corners(147, 179, 200, 184, 0.125f, 0.375f, 0.875f, 0.625f));
}

TEST_F(FontQuads, double_with_the_scale_and_keep_their_texture_coordinates) {
    font->bm_set_scale(2.0f);
    Vertex const* const vertices = update("j A");
    expect_glyph(vertices, corners(104, 120, 190, 142, 0.5f, 0.5625f, 0.5f, 0.125f));
    expect_glyph(vertices + 12, corners(148, 212, 200, 168, 0.125f, 0.375f, 0.875f, 0.625f));
}

TEST_F(FontQuads, of_unknown_glyphs_line_feeds_and_bytes_from_128_up_have_no_size) {
    Vertex const* const vertices = update("x\n\xc8\xff\x80"
                                          "A");
    for (int i = 0; i < 5; ++i) {
        expect_glyph(vertices + 6 * i, corners(100, 100, 200, 200, 0, 0, 1, 1));
    }
    expect_glyph(vertices + 30, corners(100, 132, 200, 184, 0.125f, 0.375f, 0.875f, 0.625f));
    EXPECT_EQ(store()->draw_end_vertex, 36u) << "they count";
}

TEST_F(FontQuads, with_a_negative_offset_lie_far_away) {
    font->bm_load_charset_from_memory("<font><common scaleW='128' scaleH='64'/><chars>"
                                      "<char id='65' width='1' height='1' xoffset='-1'"
                                      " yoffset='-2' xadvance='1'/></chars></font>");
    Vertex const* const vertices = update("A");
    EXPECT_EQ(vertices[0].position.x, 100.0f + 65535.0f);
    EXPECT_EQ(vertices[0].position.y, 200.0f - 65534.0f);
}

TEST_F(FontQuads, of_a_sheet_without_size_are_drawn_somewhere) {
    font->bm_load_charset_from_memory("<font><chars><char id='65' x='1' width='2' height='3'"
                                      " xadvance='4'/></chars></font>");
    Vertex const* const vertices = update("A");
    EXPECT_EQ(vertices[1].position.x, 102.0f);
    EXPECT_EQ(vertices[0].uv0.x, std::numeric_limits<float>::infinity());
}

TEST_F(FontQuads, of_all_texts_follow_each_other) {
    font->bm_draw_text_2d(1, 2, 1.0f, 0.0f, 0.0f, 1.0f, "A");
    font->bm_draw_text_3d(3.0f, 4.0f, 5.0f, 0.0f, 1.0f, 0.0f, 1.0f, "AA");
    EXPECT_TRUE(font->bm_update_vb(&renderer, false));
    Vertex const* const vertices = store()->vertices;
    EXPECT_EQ(vertices[0].position.y, -2.0f);
    EXPECT_EQ(vertices[0].color.x, 1.0f);
    EXPECT_EQ(vertices[6].position.x, 3.0f);
    EXPECT_EQ(vertices[6].position.z, 5.0f);
    EXPECT_EQ(vertices[6].color.y, 1.0f);
    EXPECT_EQ(vertices[12].position.x, 37.0f);
    EXPECT_EQ(store()->draw_start_vertex, 0u);
    EXPECT_EQ(store()->draw_end_vertex, 18u);
}

TEST_F(FontQuads, are_marked_for_upload) {
    update("A");
    EXPECT_TRUE(store()->positions_need_update);
    EXPECT_TRUE(store()->uv0_need_update);
    EXPECT_FALSE(store()->colors_need_update) << "either flag uploads whole records";
    EXPECT_EQ(renderer.take_names(),
              (Calls{"vertex_buffer_kill", "vertex_buffer_prepare", "vertex_buffer_finish"}));
}

TEST_F(FontQuads, are_written_into_the_mapped_buffer) {
    std::vector<Vertex> mapped(12);
    renderer.pointers["vertex_buffer_map"] = mapped.data();
    queue("jA");
    EXPECT_TRUE(font->bm_update_vb(&renderer, true));
    expect_glyph(&mapped[0], corners(102, 110, 195, 171, 0.5f, 0.5625f, 0.5f, 0.125f));
    expect_glyph(&mapped[6], corners(111, 143, 200, 184, 0.125f, 0.375f, 0.875f, 0.625f));
    EXPECT_FALSE(store()->positions_need_update);
    EXPECT_FALSE(store()->uv0_need_update);
    EXPECT_EQ(store()->vertices[0].position.x, 0.0f) << "there is no second copy";
    EXPECT_EQ(store()->draw_end_vertex, 12u);
    EXPECT_EQ(
        renderer.take_calls(),
        (Calls{"vertex_buffer_kill(store)", "vertex_buffer_prepare(store)",
               "vertex_buffer_finish(store)", "vertex_buffer_map(7)", "vertex_buffer_unmap(7)"}));
}

TEST_F(FontQuads, are_not_written_where_the_buffer_cant_be_mapped) {
    update("A");
    renderer.take_calls();
    queue("AA");
    EXPECT_FALSE(font->bm_update_vb(&renderer, true));
    EXPECT_EQ(store()->draw_end_vertex, 6u) << "as before";
    EXPECT_EQ(renderer.take_names(), Calls{"vertex_buffer_map"});
}

TEST_F(FontQuads, are_not_written_without_vertices) {
    update("A");
    store()->free_vertex_data();
    EXPECT_FALSE(font->bm_update_vb(&renderer, false));
}

TEST_F(FontQuads, need_vertices_of_96_bytes) {
    for (VERTEX_FORMAT format : {VERTEX_FORMAT_64, VERTEX_FORMAT_32, VERTEX_FORMAT_PHYSX_CLOTH}) {
        state().bm_mesh->init_mesh_data(&renderer, format);
        font->bm_free_vb(&renderer);
        font->bm_draw_reset();
        queue("A");
        EXPECT_FALSE(font->bm_update_vb(&renderer, false)) << format;
        EXPECT_FALSE(font->bm_update_vb(&renderer, true)) << format;
    }
}

TEST_F(FontQuads, of_nothing_are_made_at_once) {
    EXPECT_TRUE(font->bm_update_vb(&renderer, false));
    EXPECT_TRUE(font->bm_update_vb(&renderer, true));
    EXPECT_EQ(renderer.take_calls(), Calls());
    EXPECT_FALSE(font->bm_update_vb(nullptr, false));
}

TEST_F(FontQuads, of_empty_texts_are_a_range_of_no_length) {
    queue("");
    EXPECT_TRUE(font->bm_update_vb(&renderer, false));
    EXPECT_TRUE(font->bm_update_vb(&renderer, true));
    EXPECT_EQ(store()->draw_end_vertex, 0u);
}

TEST_F(FontQuads, are_not_made_without_renderer_sheet_or_charset) {
    queue("A");
    EXPECT_FALSE(font->bm_update_vb(nullptr, false));
    font->bm_release_charset_texture(&renderer);
    EXPECT_FALSE(font->bm_update_vb(&renderer, false)) << "no buffer could be made";
    load();
    EXPECT_TRUE(font->bm_update_vb(&renderer, false));
    state().bm_charset.reset();
    EXPECT_FALSE(font->bm_update_vb(&renderer, false)) << "no charset, but a buffer";
    font->_cleanup(&renderer);
    EXPECT_FALSE(font->bm_update_vb(&renderer, false)) << "no mesh";
}

// ----------------------------------------------------------------------------------- drawing

TEST_F(FontQuads, are_drawn_with_the_fonts_own_transform) {
    font->set_position(1.0f, 2.0f, 3.0f);
    update("A");
    renderer.take_calls();
    font->bm_render_vb(&renderer);
    EXPECT_EQ(renderer.take_names(), (Calls{"gl2_matrix_load", "vertex_buffer_prepare",
                                            "vertex_buffer_draw", "vertex_buffer_finish"}));
    mat4 const transform = state().bm_mesh->get_transform();
    EXPECT_EQ(transform.m[12], 1.0f);
    EXPECT_EQ(transform.m[13], 2.0f);
    EXPECT_EQ(transform.m[14], 3.0f);
}

TEST_F(FontQuads, are_not_drawn_without_texts_renderer_or_mesh) {
    update("A");
    font->bm_draw_reset();
    renderer.take_calls();
    font->bm_render_vb(&renderer);
    EXPECT_EQ(renderer.take_calls(), Calls());
    queue("A");
    font->bm_render_vb(nullptr);
    font->_cleanup(&renderer);
    renderer.take_calls();
    font->bm_render_vb(&renderer);
    EXPECT_EQ(renderer.take_calls(), Calls());
}

TEST_F(FontQuads, are_not_drawn_by_a_walk_through_the_tree) {
    update("A");
    renderer.take_calls();
    font->render(&renderer, nullptr);
    EXPECT_EQ(renderer.count("vertex_buffer_draw"), 0);
}

// ----------------------------------------------------------------------------------- cleaning

TEST_F(FontTest, gives_everything_back_and_can_be_loaded_anew) {
    load();
    font->set_opengl_2_3_rendering_states(false, nullptr);
    queue("A");
    ASSERT_TRUE(font->bm_update_vb(&renderer, false));
    renderer.name_pointer(font->get_font_data(), "font");
    renderer.take_calls();
    EXPECT_TRUE(font->_cleanup(&renderer));
    EXPECT_EQ(renderer.take_names(), (Calls{"font_bitmap_windows_kill", "texture_unload",
                                            "vertex_buffer_kill", "vertex_buffer_kill"}))
        << "the sheet, the buffer, and the mesh with its own try at the buffer";
    EXPECT_EQ(font->bm_get_charset_texture(), nullptr);
    EXPECT_EQ(font->bm_get_charset_image_filename(), nullptr);
    EXPECT_EQ(state().bm_mesh, nullptr);
    EXPECT_EQ(textures.get_num_resources(), 0u);
    EXPECT_EQ(texts().get_string_counter(), 1u);

    load();
    EXPECT_TRUE(font->bm_update_vb(&renderer, false));
    EXPECT_EQ(renderer.take_names(), (Calls{"vertex_buffer_prepare", "vertex_buffer_finish"}))
        << "a new mesh has no buffer to end";
    EXPECT_TRUE(store()->get_use_generic_vertex_attribs_state());
    EXPECT_FALSE(state().bm_mesh->get_use_fixed_mvp_matrices_state());
}

TEST_F(FontTest, is_cleaned_up_twice_without_harm) {
    load();
    EXPECT_TRUE(font->_cleanup(&renderer));
    renderer.take_calls();
    EXPECT_TRUE(font->_cleanup(&renderer));
    EXPECT_EQ(renderer.take_names(), Calls{"font_bitmap_windows_kill"});
}

TEST_F(FontTest, keeps_what_it_has_when_cleaned_up_without_a_renderer) {
    load();
    EXPECT_TRUE(font->_cleanup(nullptr));
    EXPECT_NE(font->bm_get_charset_texture(), nullptr);
    EXPECT_NE(state().bm_charset, nullptr);
    EXPECT_NE(state().bm_mesh, nullptr);
}

TEST_F(FontTest, gives_everything_back_at_its_end_without_a_renderer) {
    load();
    queue("A");
    ASSERT_TRUE(font->bm_update_vb(&renderer, false));
    renderer.take_calls();
    font->kill(nullptr, nullptr);
    EXPECT_EQ(textures.get_num_resources(), 0u);
    EXPECT_EQ(renderer.take_calls(), Calls());
    font = new Font;
}

TEST_F(FontTest, may_end_after_the_manager_of_its_sheet) {
    load();
    stop_texture_manager();
    font->kill(nullptr, nullptr);
    EXPECT_EQ(codec->live(), 0u);
    font = new Font;
}

// ------------------------------------------------------------------------------- raster text

class FontRaster : public FontTest {
protected:
    FontRaster() {
        renderer.name_pointer(font->get_font_data(), "font");
        // The window is only tested for being there.
        window = reinterpret_cast<RenderWindow*>(&window_stand_in);
    }

    char window_stand_in = 0;
    RenderWindow* window;
};

TEST_F(FontRaster, is_the_renderers) {
    EXPECT_TRUE(
        font->bitmap_font_linux_render(&renderer, window, 1, 2, 0.1f, 0.2f, 0.3f, 0.4f, "text", 4));
    EXPECT_EQ(renderer.take_calls(),
              Calls{"font_bitmap_linux_render(font, 1, 2, 0.1, 0.2, 0.3, 0.4, \"text\", 4)"});
    renderer.results["font_bitmap_linux_render"] = false;
    EXPECT_FALSE(
        font->bitmap_font_linux_render(&renderer, window, 1, 2, 0.1f, 0.2f, 0.3f, 0.4f, "text", 4));
}

TEST_F(FontRaster, needs_renderer_and_window) {
    EXPECT_FALSE(
        font->bitmap_font_linux_render(nullptr, window, 1, 2, 1.0f, 1.0f, 1.0f, 1.0f, "text", 4));
    EXPECT_FALSE(font->bitmap_font_linux_render(&renderer, nullptr, 1, 2, 1.0f, 1.0f, 1.0f, 1.0f,
                                                "text", 4));
    EXPECT_FALSE(
        font->bitmap_font_linux_renderf(nullptr, window, 1, 2, 1.0f, 1.0f, 1.0f, 1.0f, "text"));
    EXPECT_FALSE(
        font->bitmap_font_linux_renderf(&renderer, nullptr, 1, 2, 1.0f, 1.0f, 1.0f, 1.0f, "text"));
    EXPECT_EQ(renderer.take_calls(), Calls());
}

TEST_F(FontRaster, is_formatted) {
    EXPECT_TRUE(font->bitmap_font_linux_renderf(&renderer, window, 1, 2, 0.1f, 0.2f, 0.3f, 0.4f,
                                                "%d of %s", 7, "ten"));
    EXPECT_EQ(renderer.take_calls(), Calls{"font_bitmap_linux_render(font, 1, 2, 0.1, 0.2, 0.3, "
                                           "0.4, \"7 of ten\", 8)"});
}

TEST_F(FontRaster, is_cut_at_4095_characters) {
    std::string const longer(5000, 'x');
    EXPECT_TRUE(font->bitmap_font_linux_renderf(&renderer, window, 1, 2, 1.0f, 1.0f, 1.0f, 1.0f,
                                                "%s", longer.c_str()));
    EXPECT_EQ(renderer.take_calls(), Calls{"font_bitmap_linux_render(font, 1, 2, 1, 1, 1, 1, \"" +
                                           std::string(4095, 'x') + "\", 4095)"});
}

TEST_F(FontRaster, is_refused_without_a_format_that_can_be_used) {
    char const* const none = nullptr;
    EXPECT_FALSE(
        font->bitmap_font_linux_renderf(&renderer, window, 1, 2, 1.0f, 1.0f, 1.0f, 1.0f, none));
    // No locale but Unicode's has this character, and the "C" locale of a test isn't that.
    EXPECT_FALSE(font->bitmap_font_linux_renderf(&renderer, window, 1, 2, 1.0f, 1.0f, 1.0f, 1.0f,
                                                 "%ls", L"\u20ac"));
    EXPECT_EQ(renderer.take_calls(), Calls());
}

TEST_F(FontRaster, of_no_length_is_the_renderers_to_refuse) {
    font->bitmap_font_linux_renderf(&renderer, window, 1, 2, 1.0f, 1.0f, 1.0f, 1.0f, "%s", "");
    EXPECT_EQ(renderer.take_calls(),
              Calls{"font_bitmap_linux_render(font, 1, 2, 1, 1, 1, 1, \"\", 0)"});
}

} // namespace
} // namespace orvex
