#pragma once

/// @file
/// What the tests of the hud's pictures look at on every kind of context.

#include "orvex/overlays/hud.h"
#include "overlay_gl_fixture.h"

namespace orvex_test {

inline void draw_hud(OverlayStage& stage, orvex::aux::Hud& hud, int x, int y, int width,
                     int height) {
    hud.render(stage.renderer.get(), x, y, width, height, false, orvex::BLEND_FACTOR_ONE,
               orvex::BLEND_FACTOR_ZERO);
}

/// Loads four colours from a file, which comes with its top row first, and draws them at two
/// places.
inline void expect_first_row_at_the_bottom_of_two_places(OverlayStage& stage,
                                                         orvex::aux::Hud& hud) {
    const std::string file = stage.write_quarters("logo.png", blue, yellow, red, green);
    ASSERT_TRUE(hud.init_texture(stage.renderer.get(), file.c_str()));
    stage.clear();
    draw_hud(stage, hud, 20, 40, 64, 32);
    draw_hud(stage, hud, 128, 100, 100, 120);
    EXPECT_EQ(stage.pixel(30, 64), red);
    EXPECT_EQ(stage.pixel(74, 64), green);
    EXPECT_EQ(stage.pixel(30, 48), blue);
    EXPECT_EQ(stage.pixel(74, 48), yellow);
    EXPECT_EQ(stage.pixel(145, 200), red);
    EXPECT_EQ(stage.pixel(210, 120), yellow);
    for (const auto& [x, y] : {std::pair{19, 50},
                               {84, 50},
                               {30, 39},
                               {30, 72},
                               {127, 150},
                               {228, 150},
                               {150, 99},
                               {150, 220}})
        EXPECT_EQ(stage.pixel(x, y), black) << x << ", " << y;
    EXPECT_NE(stage.pixel(20, 40), black);
    EXPECT_NE(stage.pixel(83, 71), black);
}

} // namespace orvex_test
