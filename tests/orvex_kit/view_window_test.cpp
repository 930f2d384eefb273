// Views in windows of an X server, by what the windows show.

#include <gtest/gtest.h>

#include "orvex_kit/engine.h"
#include "tests/support/x_server.h"
#include "tests/support/x_window.h"
#include "view_frame.h"

namespace orvex_test {

namespace {

using namespace orvex::kit;

class ViewWindow : public testing::TestWithParam<Path> {
protected:
    Engine engine;

    static ViewOptions options() {
        ViewOptions result;
        result.path = GetParam();
        return result;
    }
    static bool shows(const XWindow& window, int width, int height, int red, int green, int blue) {
        const Picture picture = window.pixels(width, height);
        const unsigned char* const pixel = picture.at(width - 1, height - 1);
        return pixel[0] == red && pixel[1] == green && pixel[2] == blue;
    }
};
INSTANTIATE_TEST_SUITE_P(on, ViewWindow, testing::Values(Path::gl3, Path::gl2), path_name);

TEST_P(ViewWindow, shows_its_frame_and_follows_its_size) {
    ASSERT_NE(x_connection(), nullptr);
    XWindow window(60, 40);
    View view(NativeWindow{x_connection(), window.view()}, 60, 40, options());
    ASSERT_TRUE(view) << view.reason();
    view.set_background({1.0f, 0.0f, 0.0f, 1.0f});
    EXPECT_EQ(pixel_at(empty_frame(view), 59, 39), (Pixel{255, 0, 0, 255}));
    view.present();
    EXPECT_TRUE(shows(window, 60, 40, 255, 0, 0));

    window.resize(100, 80);
    ASSERT_EQ(view.resize(100, 80).reason(), "");
    view.set_background({0.0f, 0.0f, 1.0f, 1.0f});
    empty_frame(view);
    view.present();
    EXPECT_TRUE(shows(window, 100, 80, 0, 0, 255));
}

TEST_P(ViewWindow, keeps_the_alpha_that_its_window_lacks) {
    XWindow window(16, 16);
    View view(NativeWindow{x_connection(), window.view()}, 16, 16, options());
    ASSERT_TRUE(view) << view.reason();
    view.set_background({0.0f, 1.0f, 0.0f, 0.2f});
    EXPECT_EQ(pixel_at(empty_frame(view), 3, 3), (Pixel{0, 255, 0, 51}));
}

TEST_P(ViewWindow, is_off_screen_without_one) {
    const View view(NativeWindow{}, 16, 16, options());
    EXPECT_TRUE(view) << view.reason();
}

} // namespace

} // namespace orvex_test
