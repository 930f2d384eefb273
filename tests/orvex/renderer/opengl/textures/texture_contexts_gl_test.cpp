// Textures in two windows, and in windows that take the place of others.

#include "tests/orvex/renderer/opengl/window_pair.h"

#include "orvex/renderer/records/texture_data.h"

namespace orvex_test {

using namespace orvex;

namespace {

class TextureContexts : public WindowPairTest {
protected:
    static void make(TextureData& texture, unsigned char red_byte) {
        ASSERT_TRUE(texture.create(4, 4, 1, PF_RGBA_U8, true));
        for (int i = 0; i < 4 * 4 * 4; ++i)
            texture.get_pixmap_u8_ptr()[i] = i % 4 == 0 ? red_byte : 255;
    }

    /// The red byte of the first texel of the 2D texture bound to unit 0.
    int bound_red() const {
        const GlRecorderPause pause(*recorder);
        unsigned char pixels[64] = {};
        glActiveTexture(GL_TEXTURE0);
        glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_UNSIGNED_BYTE, pixels);
        return pixels[0];
    }
};

INSTANTIATE_TEST_SUITE_P(of, TextureContexts,
                         testing::Values(pair_kinds[0], pair_kinds[1], pair_kinds[2],
                                         pair_kinds[3]),
                         pair_name);
INSTANTIATE_TEST_SUITE_P(adopted, TextureContexts, testing::ValuesIn(adopted_kinds), pair_name);

/// Windows whose contexts end with them.
class TexturesOfEndedWindows : public TextureContexts {};

INSTANTIATE_TEST_SUITE_P(of, TexturesOfEndedWindows,
                         testing::Values(pair_kinds[0], pair_kinds[1], pair_kinds[2],
                                         pair_kinds[3]),
                         pair_name);

TEST_P(TextureContexts, a_bind_loads_a_texture_once_for_each_window) {
    TextureData texture;
    make(texture, 10);
    ASSERT_TRUE(renderer->texture_2d_load(&texture, 0));
    recorder->clear();
    for (int frame = 0; frame < 100; ++frame)
        for (RenderWindow* const window : {second, first}) {
            turn_to(window);
            EXPECT_TRUE(renderer->texture_bind(&texture, 0));
            EXPECT_EQ(bound_red(), 10);
        }
    EXPECT_EQ(recorder->count("glGenTextures"), GetParam().shared ? 0 : 1);
    EXPECT_EQ(recorder->count("glTexImage2D"), GetParam().shared ? 0 : 1);
    EXPECT_EQ(recorder->count("glDeleteTextures"), 0);
    EXPECT_TRUE(renderer->texture_unload(&texture));
}

TEST_P(TextureContexts, an_update_reaches_every_window) {
    TextureData texture;
    make(texture, 10);
    ASSERT_TRUE(renderer->texture_2d_load(&texture, 0));
    turn_to(second);
    EXPECT_TRUE(renderer->texture_bind(&texture, 0));
    turn_to(first);
    EXPECT_TRUE(renderer->texture_bind(&texture, 0));
    texture.get_pixmap_u8_ptr()[0] = 20;
    EXPECT_TRUE(renderer->texture_2d_update(&texture, 0, 0, 4, 4));
    for (RenderWindow* const window : {first, second, first}) {
        turn_to(window);
        EXPECT_TRUE(renderer->texture_bind(&texture, 0));
        EXPECT_EQ(bound_red(), 20);
    }
    EXPECT_TRUE(renderer->texture_unload(&texture));
}

TEST_P(TexturesOfEndedWindows, a_texture_outlives_its_window_with_its_pixels_only) {
    TextureData texture;
    TextureData without_pixels;
    make(texture, 10);
    make(without_pixels, 20);
    ASSERT_TRUE(renderer->texture_2d_load(&texture, 0));
    ASSERT_TRUE(renderer->texture_2d_load(&without_pixels, 0));
    without_pixels.cleanup();
    renderer->kill_all_render_windows();
    first = open(nullptr);
    ASSERT_TRUE(first);
    TextureData other;
    make(other, 30);
    ASSERT_TRUE(renderer->texture_2d_load(&other, 0));

    EXPECT_FALSE(renderer->texture_bind(&without_pixels, 0));
    EXPECT_FALSE(renderer->texture_unload(&without_pixels));
    EXPECT_TRUE(renderer->texture_bind(&texture, 0));
    EXPECT_EQ(bound_red(), 10);
    EXPECT_TRUE(renderer->texture_unload(&texture));
    EXPECT_TRUE(renderer->texture_bind(&other, 0));
    EXPECT_EQ(bound_red(), 30);
    EXPECT_TRUE(renderer->texture_unload(&other));
}

TEST_P(TextureContexts, an_unload_in_one_window_ends_it_in_the_other) {
    TextureData texture;
    make(texture, 10);
    ASSERT_TRUE(renderer->texture_2d_load(&texture, 0));
    turn_to(second);
    EXPECT_TRUE(renderer->texture_bind(&texture, 0));
    recorder->clear();
    EXPECT_TRUE(renderer->texture_unload(&texture));
    EXPECT_EQ(recorder->count("glDeleteTextures"), 1);
    turn_to(first);
    TextureData next;
    make(next, 20);
    ASSERT_TRUE(renderer->texture_2d_load(&next, 0));
    EXPECT_EQ(recorder->count("glDeleteTextures"), GetParam().shared ? 1 : 2);
    EXPECT_TRUE(renderer->texture_unload(&next));
}

TEST_P(TextureContexts, a_name_of_the_hosts_belongs_to_the_context_where_it_is_met) {
    if (GetParam().shared)
        return;
    TextureData texture;
    turn_to(second);
    unsigned int id = 0;
    glGenTextures(1, &id);
    glBindTexture(GL_TEXTURE_2D, id);
    texture.set_opengl_texture_id(id);
    EXPECT_TRUE(renderer->texture_bind(&texture, 0));
    turn_to(first);
    EXPECT_FALSE(renderer->texture_bind(&texture, 0));
    turn_to(second);
    EXPECT_TRUE(renderer->texture_bind(&texture, 0));
    EXPECT_EQ(texture.opengl_texture_id, id);
    EXPECT_TRUE(renderer->texture_unload(&texture));
}

} // namespace
} // namespace orvex_test
