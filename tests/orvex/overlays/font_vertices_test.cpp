#include "orvex/overlays/font.h"

#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "font_fixture.h"
#include "orvex/math/mat4.h"
#include "orvex/renderer/private/debug_name.h"
#include "orvex/renderer/records/mesh_data_packed.h"

namespace orvex_test {

using namespace orvex;
namespace {

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

/// Keeps the name under which a debugger would show the last buffer.
class NamedRenderer : public FontRenderer {
public:
    bool vertex_buffer_prepare(MeshData* mesh) override {
        const char* const current = DebugName::current();
        name = current != nullptr ? current : "";
        return FontRenderer::vertex_buffer_prepare(mesh);
    }
    std::string name;
};

TEST_F(FontTest, gives_its_buffer_its_own_name_for_debuggers) {
    load();
    DebugName::want();
    font->set_name("score");
    NamedRenderer named;
    EXPECT_TRUE(font->bm_alloc_vb(&named, 1));
    EXPECT_EQ(named.name, "score");
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

void expect_glyph(const Vertex* vertices, const std::vector<Corner>& expected) {
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const Vertex& vertex = vertices[i];
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
    const Vertex* update(const char* text) {
        EXPECT_TRUE(queue(text));
        EXPECT_TRUE(font->bm_update_vb(&renderer, false));
        return store()->vertices;
    }
};

TEST_F(FontQuads, begin_with_their_upper_left_corner_at_the_position) {
    expect_glyph(update("A"), corners(100, 132, 200, 184, 0.125f, 0.375f, 0.875f, 0.625f));
}

TEST_F(FontQuads, are_moved_by_offsets_and_advances) {
    const Vertex* const vertices = update("jAj");
    expect_glyph(vertices, corners(102, 110, 195, 171, 0.5f, 0.5625f, 0.5f, 0.125f));
    expect_glyph(vertices + 6, corners(111, 143, 200, 184, 0.125f, 0.375f, 0.875f, 0.625f));
    expect_glyph(vertices + 12, corners(147, 155, 195, 171, 0.5f, 0.5625f, 0.5f, 0.125f));
}

TEST_F(FontQuads, of_a_blank_take_the_first_spacing_on_top) {
    expect_glyph(update("A A") + 12, corners(147, 179, 200, 184, 0.125f, 0.375f, 0.875f, 0.625f));
}

TEST_F(FontQuads, double_with_the_scale_and_keep_their_texture_coordinates) {
    font->bm_set_scale(2.0f);
    const Vertex* const vertices = update("j A");
    expect_glyph(vertices, corners(104, 120, 190, 142, 0.5f, 0.5625f, 0.5f, 0.125f));
    expect_glyph(vertices + 12, corners(148, 212, 200, 168, 0.125f, 0.375f, 0.875f, 0.625f));
}

TEST_F(FontQuads, of_unknown_glyphs_line_feeds_and_bytes_from_128_up_have_no_size) {
    const Vertex* const vertices = update("x\n\xc8\xff\x80"
                                          "A");
    for (int i = 0; i < 5; ++i)
        expect_glyph(vertices + 6 * i, corners(100, 100, 200, 200, 0, 0, 1, 1));
    expect_glyph(vertices + 30, corners(100, 132, 200, 184, 0.125f, 0.375f, 0.875f, 0.625f));
    EXPECT_EQ(store()->draw_end_vertex, 36u) << "they count";
}

TEST_F(FontQuads, with_a_negative_offset_lie_far_away) {
    font->bm_load_charset_from_memory("<font><common scaleW='128' scaleH='64'/><chars>"
                                      "<char id='65' width='1' height='1' xoffset='-1'"
                                      " yoffset='-2' xadvance='1'/></chars></font>");
    const Vertex* const vertices = update("A");
    EXPECT_EQ(vertices[0].position.x, 100.0f + 65535.0f);
    EXPECT_EQ(vertices[0].position.y, 200.0f - 65534.0f);
}

TEST_F(FontQuads, of_a_sheet_without_size_are_drawn_somewhere) {
    font->bm_load_charset_from_memory("<font><chars><char id='65' x='1' width='2' height='3'"
                                      " xadvance='4'/></chars></font>");
    const Vertex* const vertices = update("A");
    EXPECT_EQ(vertices[1].position.x, 102.0f);
    EXPECT_EQ(vertices[0].uv0.x, std::numeric_limits<float>::infinity());
}

TEST_F(FontQuads, of_all_texts_follow_each_other) {
    font->bm_draw_text_2d(1, 2, 1.0f, 0.0f, 0.0f, 1.0f, "A");
    font->bm_draw_text_3d(3.0f, 4.0f, 5.0f, 0.0f, 1.0f, 0.0f, 1.0f, "AA");
    EXPECT_TRUE(font->bm_update_vb(&renderer, false));
    const Vertex* const vertices = store()->vertices;
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
    const mat4 transform = state().bm_mesh->get_transform();
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

} // namespace
} // namespace orvex_test
