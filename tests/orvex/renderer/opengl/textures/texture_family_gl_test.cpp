#include "orvex/renderer/opengl/textures/private/texture_family.h"

#include <string>

#include <gtest/gtest.h>

#include "orvex/renderer/opengl/textures/private/texture_unit_family.h"
#include "orvex/renderer/records/texture_data.h"
#include "tests/orvex/renderer/opengl/families_fixture.h"
#include "tests/support/fake_renderer.h"

namespace orvex_test {

using namespace orvex;
namespace {

class TextureFamilies : public FamilyTest {
protected:
    void make_pixels() {
        data.type = TEXTURE_TYPE_2D;
        data.create(4, 4, 1, PF_RGBA_U8, true);
    }

    FakeRenderer renderer;
    TextureUnitFamily units{state};
    TextureFamily textures{state, units, renderer};
    TextureData data;
};

TEST_P(TextureFamilies, refuse_loads_and_binds_with_an_empty_table) {
    make_pixels();
    EXPECT_FALSE(textures.load_2d(&data, 0));
    EXPECT_FALSE(units.bind(nullptr, 0));
    EXPECT_FALSE(units.bind_id(GL_TEXTURE_2D, 1, 0));
    EXPECT_FALSE(units.reset(0));
    EXPECT_FALSE(units.bind_image(nullptr, 0, DATA_ACCESS_READ_ONLY));
    EXPECT_FALSE(textures.make_resident(&data));
    EXPECT_EQ(data.opengl_texture_id, 0U);
    EXPECT_TRUE(recorder->calls().empty());
}

TEST_P(TextureFamilies, write_down_what_a_unit_holds) {
    fill();
    make_pixels();
    ASSERT_TRUE(textures.load_2d(&data, 1));
    const unsigned int id = data.opengl_texture_id;
    EXPECT_EQ(state.ctx.active_texture_unit, 1U);
    EXPECT_EQ(state.ctx.texture_units[1].texture_id, id);
    recorder->clear();
    EXPECT_TRUE(units.bind(&data, 0));
    EXPECT_EQ(recorder->take(),
              (GlCalls{"glActiveTexture(GL_TEXTURE0)",
                       "glBindTexture(GL_TEXTURE_2D, " + std::to_string(id) + ")"}));
    EXPECT_EQ(state.ctx.texture_units[0].texture_id, id);
    EXPECT_FALSE(units.bind(&data, 2)) << "there are two units";
    EXPECT_TRUE(textures.unload(&data));
}

TEST_P(TextureFamilies, let_a_renderer_take_over_the_addressing_mode_of_a_load) {
    fill();
    make_pixels();
    ASSERT_TRUE(textures.load_2d(&data, 0));
    EXPECT_EQ(renderer.count("set_texture_addressing_mode"), 1);
    EXPECT_TRUE(textures.unload(&data));
}

TEST_P(TextureFamilies, drop_an_id_from_the_list_when_its_texture_goes) {
    fill();
    make_pixels();
    ASSERT_TRUE(textures.load_2d(&data, 0));
    const unsigned int id = data.opengl_texture_id;
    textures.add_id(id);
    EXPECT_TRUE(textures.unload(&data));
    EXPECT_FALSE(textures.remove_id(id));
}

TEST(TextureTarget, follows_the_type_and_is_that_of_a_2d_texture_else) {
    TextureData data;
    const GLenum wanted[] = {GL_TEXTURE_2D,        GL_TEXTURE_1D,       GL_TEXTURE_2D,
                             GL_TEXTURE_3D,        GL_TEXTURE_CUBE_MAP, GL_TEXTURE_2D_MULTISAMPLE,
                             GL_TEXTURE_RECTANGLE, GL_TEXTURE_2D};
    for (int type = 0; type < 8; ++type) {
        data.type = type;
        EXPECT_EQ(gl_texture_target(&data), wanted[type]) << type;
    }
    EXPECT_EQ(gl_texture_target(nullptr), static_cast<GLenum>(GL_TEXTURE_2D));
}

ORVEX_BOTH_PROFILES(TextureFamilies);

} // namespace
} // namespace orvex_test
