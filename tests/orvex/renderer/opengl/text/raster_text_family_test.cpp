#include "orvex/renderer/opengl/text/private/raster_text_family.h"

#include <gtest/gtest.h>

#include "orvex/math/vec4.h"
#include "orvex/renderer/records/font_data.h"
#include "tests/support/log_capture.h"

namespace orvex_test {

using namespace orvex;
namespace {

TEST(RasterTextFamily, tells_once_why_it_draws_nothing) {
    LogCapture log;
    GlState state;
    RasterTextFamily text(state);
    text.characters = GlutText("libthere_is_no_such_library.so.7");
    const FontData font;
    EXPECT_FALSE(text.draw(nullptr, 0, 0, vec4(), "A", 1));
    EXPECT_FALSE(text.draw(&font, 0, 0, vec4(), nullptr, 1));
    EXPECT_FALSE(text.draw_3d(&font, 0.0f, 0.0f, 0.0f, vec4(), "A", 0));
    EXPECT_TRUE(log.messages().empty()) << "the library isn't asked for";
    EXPECT_FALSE(text.draw(&font, 0, 0, vec4(), "A", 1));
    EXPECT_FALSE(text.draw_3d(&font, 0.0f, 0.0f, 0.0f, vec4(), "A", 1));
    EXPECT_EQ(log.messages().size(), 1U);
}

} // namespace
} // namespace orvex_test
