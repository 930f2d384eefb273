#include "orvex/overlays/font.h"

#include <string>

#include <gtest/gtest.h>

#include "orvex/assets/textures/texture.h"
#include "orvex/overlays/private/font_state.h"
#include "tests/support/fake_renderer.h"
#include "tests/support/heap.h"

namespace orvex_test {

using namespace orvex;
namespace {

TEST(FontFrame, allocates_nothing_once_its_strings_have_been_long_enough) {
    const CountAllocations allocations;
    FakeRenderer renderer;
    auto* const font = new Font;
    auto* const sheet = new Texture;
    sheet->add_ref();
    Font::State::of(*font).bm_texture.set(sheet);
    ASSERT_TRUE(font->bm_load_charset_from_memory("<font><common scaleW='8' scaleH='8'/></font>"));
    const std::string text(2000, 'a');
    const auto one_frame = [&](unsigned long length) {
        font->bm_draw_reset();
        for (int i = 0; i < 100; ++i)
            font->bm_draw_text_2d(i, i, 1.0f, 1.0f, 1.0f, 1.0f, text.c_str() + 2000 - length);
        return font->bm_update_vb(&renderer, false);
    };
    ASSERT_TRUE(one_frame(2000));

    const unsigned long before = allocations.count();
    EXPECT_GT(before, 0u);
    for (unsigned long i = 0; i < 10; ++i)
        EXPECT_TRUE(one_frame(2000 - 100 * i));
    EXPECT_EQ(allocations.count(), before);
    font->kill(&renderer, nullptr);
}

} // namespace
} // namespace orvex_test
