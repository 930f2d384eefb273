#include "orvex/renderer/to_text.h"

#include <set>
#include <string>

#include <gtest/gtest.h>

namespace orvex_test {

using namespace orvex;

namespace {

// The texts of all values from `first` to `last` that have one.
template<class Enumeration>
std::set<std::string> texts(int first, int last) {
    std::set<std::string> found;
    for (int value = first; value <= last; ++value) {
        const std::string text = to_text(static_cast<Enumeration>(value));
        if (text != "?")
            found.insert(text);
    }
    return found;
}

TEST(ToText, names_an_enumerator_as_sources_write_it) {
    EXPECT_STREQ(to_text(BLEND_FACTOR_ONE), "BLEND_FACTOR_ONE");
    EXPECT_STREQ(to_text(PF_RGBA_U8), "PF_RGBA_U8");
    EXPECT_STREQ(to_text(GPU_SHADER_UNIFORM_4UI64V), "GPU_SHADER_UNIFORM_4UI64V");
    EXPECT_STREQ(to_text(KEYBOARD_LAYOUT_MACINTOSH), "KEYBOARD_LAYOUT_MACINTOSH");
    EXPECT_STREQ(to_text(MEMORY_BARRIER_ALL), "MEMORY_BARRIER_ALL");
}

TEST(ToText, answers_a_question_mark_for_what_has_no_name) {
    EXPECT_STREQ(to_text(static_cast<PIXEL_FORMAT>(11)), "?");
    EXPECT_STREQ(to_text(static_cast<PIXEL_FORMAT>(-1)), "?");
    EXPECT_STREQ(to_text(static_cast<SAMPLER_ADDRESSING_MODE>(0)), "?");
    EXPECT_STREQ(to_text(static_cast<MEMORY_BARRIER_BITS>(3)), "?");
}

TEST(ToText, has_a_text_of_its_own_for_every_enumerator) {
    EXPECT_EQ(texts<RENDERER_BLEND_FACTOR>(-1, 8200).size(), 10u);
    EXPECT_EQ(texts<RENDERER_CMP_FUNC>(-1, 8200).size(), 8u);
    EXPECT_EQ(texts<RENDERER_POLYGON_FACE>(-1, 8200).size(), 3u);
    EXPECT_EQ(texts<RENDERER_POLYGON_MODE>(-1, 8200).size(), 3u);
    EXPECT_EQ(texts<PIXEL_FORMAT>(-1, 8200).size(), 11u);
    EXPECT_EQ(texts<BUFFER_OBJECT_USAGE>(-1, 8200).size(), 7u);
    EXPECT_EQ(texts<SAMPLER_ADDRESSING_MODE>(-1, 8200).size(), 3u);
    EXPECT_EQ(texts<SAMPLER_FILTERING_MODE>(-1, 8200).size(), 3u);
    EXPECT_EQ(texts<GPU_SHADER_TYPE>(-1, 8200).size(), 8u);
    EXPECT_EQ(texts<DATA_ACCESS_TYPE>(-1, 8200).size(), 3u);
    EXPECT_EQ(texts<CUBEMAP_FACE>(-1, 8200).size(), 6u);
    EXPECT_EQ(texts<MEMORY_BARRIER_BITS>(-1, 8200).size(), 14u);
    EXPECT_EQ(texts<VERTEX_FORMAT>(-1, 8200).size(), 4u);
    EXPECT_EQ(texts<LINE_RENDER_MODE>(-1, 8200).size(), 3u);
    EXPECT_EQ(texts<PARTICLE_EMITTER_TYPE>(-1, 8200).size(), 1u);
    EXPECT_EQ(texts<PARTICLE_ACTION_TYPE>(-1, 8200).size(), 1u);
    EXPECT_EQ(texts<GPU_SHADER_UNIFORM>(-1, 8200).size(), 37u);
    EXPECT_EQ(texts<MESH_PLANE_BORDER_TYPE>(-1, 8200).size(), 6u);
    EXPECT_EQ(texts<TEXTURE_TYPE>(-1, 8200).size(), 6u);
    EXPECT_EQ(texts<KEYBOARD_LAYOUT>(-1, 8200).size(), 2u);
}

} // namespace

} // namespace orvex_test
