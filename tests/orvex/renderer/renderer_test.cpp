#include "orvex/renderer/renderer.h"

#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "orvex/renderer/private/eliding_renderers.h"
#include "orvex/renderer/renderer_rasterizer_state.h"
#include "tests/support/fake_renderer.h"
#include "tests/support/stub_render_target.h"

namespace orvex_test {

using namespace orvex;
namespace {

using orvex_test::FakeRenderer;

TEST(Renderer, starts_without_context_word_and_with_settable_api) {
    FakeRenderer fake;
    Renderer& renderer = fake;
    EXPECT_EQ(renderer.get_ctx(), nullptr);
    renderer.set_api_type(7);
    EXPECT_EQ(renderer.get_api_type(), 7);
    renderer.set_api_name("OpenGL");
    EXPECT_STREQ(renderer.get_api_name(), "OpenGL");
}

TEST(Renderer, hands_out_its_matrices_to_read_only) {
    FakeRenderer fake;
    const Renderer& renderer = fake;
    EXPECT_EQ(&renderer.get_projection_matrix(), &fake.projection_matrix);
    EXPECT_EQ(&renderer.get_view_matrix(), &fake.view_matrix);
}

TEST(Renderer, keeps_no_binds_unless_a_back_end_can) {
    FakeRenderer renderer;
    EXPECT_FALSE(renderer.Renderer::keep_binds(true));
    EXPECT_FALSE(renderer.Renderer::keep_binds(false));
}

TEST(Renderer, keeps_127_characters_of_an_api_name) {
    FakeRenderer renderer;
    const std::string name(200, 'x');
    renderer.set_api_name(name.c_str());
    EXPECT_EQ(renderer.get_api_name(), name.substr(0, 127));
}

TEST(Renderer, clears_the_whole_api_name_before_setting_it) {
    FakeRenderer renderer;
    renderer.set_api_name(std::string(127, 'x').c_str());
    renderer.set_api_name("ab");
    char expected[128] = "ab";
    EXPECT_EQ(std::memcmp(renderer.get_api_name(), expected, sizeof(expected)), 0);
}

TEST(Renderer, empties_the_api_name_for_null) {
    FakeRenderer renderer;
    renderer.set_api_name("OpenGL");
    renderer.set_api_name(nullptr);
    EXPECT_STREQ(renderer.get_api_name(), "");
}

TEST(Renderer, takes_its_own_api_name) {
    FakeRenderer renderer;
    renderer.set_api_name("OpenGL");
    renderer.set_api_name(renderer.get_api_name() + 4);
    EXPECT_STREQ(renderer.get_api_name(), "GL");
}

TEST(Renderer, kills_a_buffer_by_a_plain_number) {
    FakeRenderer fake;
    Renderer& renderer = fake;
    renderer.vertex_buffer_kill(3);
    renderer.vertex_buffer_kill(3U);
    EXPECT_EQ(fake.take_calls(),
              (std::vector<std::string>{"vertex_buffer_kill(3)", "vertex_buffer_kill(3)"}));
}

TEST(Renderer, leaves_binds_out_until_its_end_at_the_longest) {
    {
        FakeRenderer first, second;
        EXPECT_FALSE(any_renderer_elides());
        first.set_elided_binds_state(false);
        EXPECT_FALSE(any_renderer_elides());
        first.set_elided_binds_state(true);
        EXPECT_TRUE(any_renderer_elides());
        first.set_elided_binds_state(true);
        first.set_elided_binds_state(false);
        EXPECT_FALSE(any_renderer_elides());
        first.set_elided_binds_state(true);
        second.set_elided_binds_state(true);
        first.set_elided_binds_state(false);
        EXPECT_TRUE(any_renderer_elides());
    }
    EXPECT_FALSE(any_renderer_elides());
}

TEST(RasterizerState, has_its_defaults_and_gets_them_back) {
    Renderer_Rasterizer_State state;
    const auto expect_defaults = [&state] {
        EXPECT_EQ(state.polygon_mode, POLYGON_MODE_FILL);
        EXPECT_EQ(state.polygon_face, POLYGON_FACE_FRONT_AND_BACK);
        EXPECT_EQ(state.cull_face, POLYGON_FACE_BACK);
        EXPECT_FALSE(state.cull_enabled);
        EXPECT_TRUE(state.front_ccw);
        EXPECT_EQ(state.depth_bias_units, 0.0f);
        EXPECT_EQ(state.depth_bias_factor, 0.0f);
        EXPECT_FALSE(state.msaa_enabled);
    };
    expect_defaults();
    state = {
        POLYGON_MODE_POINT, POLYGON_FACE_FRONT, POLYGON_FACE_FRONT, true, false, 1.0f, 2.0f, true};
    state.init();
    expect_defaults();
}

TEST(RenderTarget, reads_no_floats_unless_a_back_end_can) {
    orvex_test::StubRenderTarget target;
    float pixel = 5.0f;
    EXPECT_FALSE(target.read_color_texture_f32(0, 1, &pixel, sizeof pixel));
    EXPECT_EQ(pixel, 5.0f);
}

TEST(RenderTarget, has_an_id_of_its_own_and_no_size_at_first) {
    orvex_test::StubRenderTarget first;
    orvex_test::StubRenderTarget second;
    EXPECT_NE(first.get_id(), second.get_id());
    EXPECT_EQ(first.get_id(), first.getid());
    EXPECT_EQ(first.get_width(), 0);
    EXPECT_EQ(first.get_height(), 0);
    EXPECT_EQ(first.get_samples(), 0);
}

} // namespace
} // namespace orvex_test
