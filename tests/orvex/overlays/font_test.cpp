#include "orvex/overlays/font.h"

#include <climits>
#include <limits>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "font_fixture.h"
#include "orvex/assets/textures/texture.h"
#include "orvex/renderer/render_window.h"
#include "tests/orvex/geometry/mesh/owned_mesh.h"

namespace orvex_test {

using namespace orvex;
namespace {

// ------------------------------------------------------------------------------------- object

TEST_F(FontTest, is_an_object_of_its_own_type) {
    EXPECT_EQ(font->get_type(), NODE_TYPE_FONT);
    EXPECT_EQ(font->get_type(), 19);
    EXPECT_TRUE(font->is_type_of(NODE_TYPE_OBJECT));
}

TEST_F(FontTest, begins_empty_with_a_mesh) {
    EXPECT_STREQ(font->get_font_data()->name, "Arial");
    EXPECT_EQ(std::as_const(*font).get_font_data(), font->get_font_data());
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
    const OwnedMesh child = make_unit_triangle();
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

// -------------------------------------------------------------------------------------- queue

TEST_F(FontTest, queues_text_of_a_screen_with_y_turned_around) {
    EXPECT_TRUE(font->bm_draw_text_2d(10, 20, 0.1f, 0.2f, 0.3f, 0.4f, "text"));
    const bm_string& string = *texts().get_string(0);
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
    const bm_string& string = *texts().get_string(0);
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
    for (int i = 0; i < 512; ++i)
        EXPECT_TRUE(queue("a")) << i;
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
    const bm_string string;
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
    Font::State::Texts data;
    EXPECT_EQ(data.get_string(0), nullptr);
    EXPECT_FALSE(data.add_string(0, 0, 0, 0, 0, 0, 0, "no room"));
    EXPECT_TRUE(data.alloc_strings(2));
    EXPECT_TRUE(data.add_string(1, 2, 3, 4, 5, 6, 7, "one"));
    EXPECT_NE(data.get_string(1), nullptr) << "in use or not";
    EXPECT_EQ(data.get_string(2), nullptr);
    data.reset_string_counter();
    EXPECT_EQ(data.get_string_counter(), 0u);
    EXPECT_EQ(data.get_string(0)->text, "one") << "nothing is freed";
    EXPECT_TRUE(data.add_string(1, 2, 3, 4, 5, 6, 7, "again"));
    data.free_strings();
    EXPECT_EQ(data.capacity, 0u);
    EXPECT_EQ(data.get_string_counter(), 0u);
    EXPECT_EQ(data.get_num_chars(), 0u);
    EXPECT_EQ(data.get_string(0), nullptr);
}

TEST(FontTexts, have_no_room_without_memory) {
    Font::State::Texts data;
    EXPECT_TRUE(data.alloc_strings(2));
    EXPECT_FALSE(data.alloc_strings(std::numeric_limits<unsigned long>::max() / 256));
    EXPECT_EQ(data.capacity, 0u);
    EXPECT_FALSE(data.add_string(0, 0, 0, 0, 0, 0, 0, "text"));
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
    const std::string longer(5000, 'x');
    EXPECT_TRUE(font->bitmap_font_linux_renderf(&renderer, window, 1, 2, 1.0f, 1.0f, 1.0f, 1.0f,
                                                "%s", longer.c_str()));
    EXPECT_EQ(renderer.take_calls(), Calls{"font_bitmap_linux_render(font, 1, 2, 1, 1, 1, 1, \"" +
                                           std::string(4095, 'x') + "\", 4095)"});
}

TEST_F(FontRaster, is_refused_without_a_format_that_can_be_used) {
    const char* const none = nullptr;
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
} // namespace orvex_test
