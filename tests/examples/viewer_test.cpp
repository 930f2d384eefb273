// The viewer on an X server of the test's own: keys are hit, the pointer is moved, and the window's
// pixels are looked at.

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <EGL/egl.h>
#include <X11/keysym.h>

#include <orvex/renderer/render_window.h>
#include <orvex/renderer/renderer.h>
#include <orvex_kit/model.h>

#include "model_stage.h"
#include "tests/support/gl_context.h"
#include "tests/support/picture.h"
#include "tests/support/temp_dir.h"
#include "tests/support/x_server.h"
#include "viewer.h"
#include "window_program.h"

namespace orvex_test {

namespace {

using orvex_test::TempDir;
namespace kit = orvex::kit;

constexpr int width = 720;
constexpr int height = 540;

/// A cube with a colour for each direction: red to the right, blue to the left, green above, yellow
/// below, white to the front and back.
std::string write_cube(const TempDir& folder) {
    folder.write("cube.mtl", "newmtl red\nKd 1 0 0\nnewmtl blue\nKd 0 0 1\nnewmtl green\nKd 0 1 0\n"
                             "newmtl yellow\nKd 1 1 0\nnewmtl white\nKd 1 1 1\n");
    return folder.write("cube.obj", "mtllib cube.mtl\n"
                                    "v -1 -1 -1\nv 1 -1 -1\nv 1 1 -1\nv -1 1 -1\n"
                                    "v -1 -1 1\nv 1 -1 1\nv 1 1 1\nv -1 1 1\n"
                                    "usemtl red\nf 2 3 7\nf 2 7 6\n"
                                    "usemtl blue\nf 1 5 8\nf 1 8 4\n"
                                    "usemtl green\nf 4 8 7\nf 4 7 3\n"
                                    "usemtl yellow\nf 1 2 6\nf 1 6 5\n"
                                    "usemtl white\nf 5 6 7\nf 5 7 8\nf 1 4 3\nf 1 3 2\n");
}

using Wanted = std::function<bool(const unsigned char*)>;

int count(const Picture& picture, const Wanted& is_wanted) {
    int number = 0;
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x)
            number += is_wanted(picture.at(x, y));
    return number;
}

bool is_background(const unsigned char* pixel) {
    return pixel[0] == 43 && pixel[1] == 48 && pixel[2] == 56;
}

/// Whether these channels, of three, are far above the others.
bool stand_out(const unsigned char* pixel, bool red, bool green, bool blue) {
    int lowest_in = 255;
    int highest_out = 0;
    const bool wanted[] = {red, green, blue};
    for (int i = 0; i < 3; ++i)
        if (wanted[i])
            lowest_in = std::min<int>(lowest_in, pixel[i]);
        else
            highest_out = std::max<int>(highest_out, pixel[i]);
    return lowest_in > 2 * highest_out + 10;
}

bool is_red(const unsigned char* pixel) {
    return stand_out(pixel, true, false, false);
}
bool is_green(const unsigned char* pixel) {
    return stand_out(pixel, false, true, false);
}
bool is_blue(const unsigned char* pixel) {
    return stand_out(pixel, false, false, true);
}
bool is_yellow(const unsigned char* pixel) {
    return stand_out(pixel, true, true, false);
}

/// Whether a face of the cube is seen: more than an edge or an axis of it.
bool is_seen(const Picture& picture, const Wanted& face) {
    return count(picture, face) > 2000;
}

/// Part of a picture.
Picture part(const Picture& whole, int left, int top, int w, int h) {
    Picture result(w, h);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
            std::copy_n(whole.at(left + x, top + y), 4, result.at(x, y));
    return result;
}

// Parts where nothing but text lies, or axes.
Picture upper_line(const Picture& picture) {
    return part(picture, 0, 0, 150, 45);
}
Picture lower_lines(const Picture& picture) {
    return part(picture, 0, height - 75, 100, 75);
}
Picture corner(const Picture& picture) {
    return part(picture, width - 100, height - 100, 100, 100);
}

bool is_empty(const Picture& picture) {
    return count(picture, is_background) == picture.width * picture.height;
}

/// The viewer with a model, once its first frame stands.
class ViewerTest : public testing::Test {
protected:
    TempDir folder;
    std::unique_ptr<WindowProgram> viewer;
    Picture first;

    void SetUp() override { ASSERT_FALSE(XServer::get().display().empty()) << "no X server"; }

    void open(const std::string& model) {
        viewer = std::make_unique<WindowProgram>(std::vector<std::string>{VIEWER, model},
                                                 Leaks::passed_over);
        ASSERT_TRUE(viewer->has_window()) << viewer->get_output();
        ASSERT_TRUE(viewer->wait_until([&](const Picture& seen) {
            first = seen;
            return seen.width == width && is_background(seen.at(0, 0)) &&
                   is_background(seen.at(0, height - 1));
        })) << viewer->get_output();
    }

    testing::AssertionResult comes(const std::function<bool(const Picture&)>& is_wanted) {
        if (viewer->wait_until(is_wanted))
            return testing::AssertionSuccess();
        write_png(ORVEX_TEST_OUTPUT_DIR "/viewer-last.png", viewer->pixels());
        return testing::AssertionFailure()
               << "it never came; see viewer-last.png. " << viewer->get_output();
    }

    testing::AssertionResult comes(const Picture& wanted) {
        return comes([&](const Picture& seen) { return seen == wanted; });
    }

    void tap(unsigned long key) {
        viewer->press_key(key);
        viewer->release_key(key);
    }

    /// Holds a key until the picture is as wanted.
    testing::AssertionResult hold(unsigned long key,
                                  const std::function<bool(const Picture&)>& is_wanted) {
        viewer->press_key(key);
        const testing::AssertionResult result = comes(is_wanted);
        viewer->release_key(key);
        return result;
    }

    void expect_end() {
        tap(XK_Escape);
        EXPECT_EQ(viewer->exit_code(), 0);
        EXPECT_EQ(viewer->get_output(), "");
    }
};

const std::string lighthouse = EXAMPLE_DATA "/lighthouse.obj";

TEST_F(ViewerTest, shows_the_model_with_axes_and_text_over_it) {
    open(lighthouse);
    EXPECT_TRUE(compare_with_golden(ORVEX_TEST_DATA_DIR "/golden", ORVEX_TEST_OUTPUT_DIR, "viewer",
                                    first, false));
    expect_end();
}

#ifdef ORVEX_WITH_LIB3DS
TEST_F(ViewerTest, shows_a_3ds_model_upright_and_with_smooth_normals) {
    open("/usr/share/glmark2/models/horse.3ds");
    EXPECT_TRUE(compare_with_golden(ORVEX_TEST_DATA_DIR "/golden", ORVEX_TEST_OUTPUT_DIR,
                                    "viewer_3ds", first, false));
    expect_end();
}
#endif

TEST_F(ViewerTest, takes_the_text_away_with_t_and_puts_it_back) {
    open(lighthouse);
    EXPECT_FALSE(is_empty(upper_line(first)));
    EXPECT_FALSE(is_empty(lower_lines(first)));
    tap(XK_t);
    EXPECT_TRUE(comes([&](const Picture& seen) {
        return is_empty(upper_line(seen)) && is_empty(lower_lines(seen)) &&
               corner(seen) == corner(first);
    }));
    tap(XK_t);
    EXPECT_TRUE(comes(first));
    expect_end();
}

TEST_F(ViewerTest, takes_the_axes_away_with_a_and_puts_them_back) {
    open(lighthouse);
    EXPECT_FALSE(is_empty(corner(first)));
    tap(XK_a);
    EXPECT_TRUE(comes([&](const Picture& seen) {
        return is_empty(corner(seen)) && upper_line(seen) == upper_line(first);
    }));
    tap(XK_a);
    EXPECT_TRUE(comes(first));
    expect_end();
}

TEST_F(ViewerTest, draws_the_model_as_lines_with_w_and_keeps_the_text_filled) {
    open(write_cube(folder));
    const int before = count(first, is_background);
    tap(XK_w);
    EXPECT_TRUE(comes([&](const Picture& seen) {
        return count(seen, is_background) > before + width * height / 10 &&
               upper_line(seen) == upper_line(first);
    }));
    tap(XK_w);
    EXPECT_TRUE(comes(first));
    expect_end();
}

TEST_F(ViewerTest, switches_once_however_long_a_key_is_held) {
    open(write_cube(folder));
    viewer->press_key(XK_t);
    EXPECT_TRUE(comes([&](const Picture& seen) { return is_empty(lower_lines(seen)); }));
    tap(XK_a);
    EXPECT_TRUE(comes([&](const Picture& seen) {
        return is_empty(corner(seen)) && is_empty(lower_lines(seen));
    }));
    viewer->release_key(XK_t);
    tap(XK_t);
    EXPECT_TRUE(comes([&](const Picture& seen) { return !is_empty(lower_lines(seen)); }));
    expect_end();
}

TEST_F(ViewerTest, goes_around_the_model_with_the_arrows_and_home_again) {
    open(write_cube(folder));
    EXPECT_TRUE(is_seen(first, is_red));
    EXPECT_TRUE(is_seen(first, is_green));
    EXPECT_FALSE(is_seen(first, is_blue));
    EXPECT_FALSE(is_seen(first, is_yellow));
    EXPECT_TRUE(hold(XK_Left, [](const Picture& seen) {
        return is_seen(seen, is_blue) && !is_seen(seen, is_red);
    }));
    EXPECT_TRUE(hold(XK_Right, [](const Picture& seen) {
        return is_seen(seen, is_red) && !is_seen(seen, is_blue);
    }));
    EXPECT_TRUE(hold(XK_Down, [](const Picture& seen) {
        return is_seen(seen, is_yellow) && !is_seen(seen, is_green);
    }));
    EXPECT_TRUE(hold(XK_Up, [](const Picture& seen) {
        return is_seen(seen, is_green) && !is_seen(seen, is_yellow);
    }));
    tap(XK_Home);
    EXPECT_TRUE(comes(first));
    expect_end();
}

TEST_F(ViewerTest, goes_nearer_and_further_with_the_page_keys_and_the_wheel) {
    open(write_cube(folder));
    tap(XK_a);
    tap(XK_t);
    Picture plain;
    EXPECT_TRUE(comes([&](const Picture& seen) {
        plain = seen;
        return is_empty(corner(seen)) && is_empty(lower_lines(seen));
    }));
    const int before = count(plain, is_background);
    const auto is_nearer = [&](const Picture& seen) {
        return count(seen, is_background) < before / 2;
    };
    const auto is_further = [&](const Picture& seen) {
        return count(seen, is_background) > width * height * 9 / 10;
    };
    EXPECT_TRUE(hold(XK_Prior, is_nearer));
    EXPECT_TRUE(hold(XK_Next, is_further));
    tap(XK_Home);
    EXPECT_TRUE(comes(plain));
    const auto turn_wheel = [&](unsigned int button, int notches) {
        for (int i = 0; i < notches; ++i) {
            viewer->press_button(button);
            viewer->release_button(button);
        }
    };
    turn_wheel(4, 6);
    EXPECT_TRUE(comes(is_nearer));
    turn_wheel(5, 20);
    EXPECT_TRUE(comes(is_further));
    expect_end();
}

/// What the viewer draws without axes and text, by its own camera.
Picture plain_frame(const std::string& model, const std::function<void(kit::Orbit&)>& turn) {
    GlContext context(Profile::core, width, height);
    ModelStage stage;
    EXPECT_TRUE(stage.window->osx_init_with_cocoa_nsgl_ctx(eglGetCurrentContext()));
    EXPECT_EQ(stage.load(model), "");
    kit::Orbit orbit(stage.scene.extent(), first_angle);
    turn(orbit);
    stage.draw(orbit.camera({width, height}), width, height);
    Picture frame = read_frame(width, height);
    for (std::size_t i = 3; i < frame.pixels.size(); i += 4)
        frame.pixels[i] = 255;
    return frame;
}

TEST_F(ViewerTest, turns_the_model_with_the_pointer) {
    const Picture before = plain_frame(lighthouse, [](kit::Orbit&) {});
    const Picture after = plain_frame(lighthouse, [](kit::Orbit& orbit) { orbit.turn(120, 30); });
    open(lighthouse);
    viewer->move_pointer(300, 200);
    tap(XK_a);
    tap(XK_t);
    EXPECT_TRUE(comes(before));
    viewer->press_button(1);
    viewer->move_pointer(420, 230);
    EXPECT_TRUE(comes(after));
    viewer->release_button(1);
    viewer->move_pointer(10, 500);
    tap(XK_Home);
    EXPECT_TRUE(comes(before));
    expect_end();
}

TEST_F(ViewerTest, goes_up_to_the_poles_and_no_farther) {
    const std::string cube = write_cube(folder);
    const Picture top = plain_frame(cube, [](kit::Orbit& orbit) { orbit.turn(0, 100000); });
    EXPECT_TRUE(plain_frame(cube, [](kit::Orbit& orbit) {
                    orbit.turn(0, -5);
                    orbit.turn(0, 100000);
                    orbit.turn(0, 3);
                }) == top);
    EXPECT_FALSE(plain_frame(cube, [](kit::Orbit& orbit) {
                     orbit.turn(0, 100000);
                     orbit.turn(100, 0);
                 }) == top);
}

TEST_F(ViewerTest, follows_the_size_of_the_window_and_ends_when_it_is_closed) {
    open(lighthouse);
    viewer->resize(500, 300);
    EXPECT_TRUE(comes([&](const Picture& seen) {
        return seen.width == 500 && seen.height == 300 && is_background(seen.at(499, 0)) &&
               !is_empty(part(seen, 400, 200, 100, 100));
    }));
    viewer->close();
    EXPECT_EQ(viewer->exit_code(), 0);
    EXPECT_EQ(viewer->get_output(), "");
}

TEST_F(ViewerTest, tells_that_a_model_cant_be_read) {
    WindowProgram program({VIEWER, "/none.obj"}, Leaks::passed_over);
    EXPECT_EQ(program.exit_code(), 1);
    EXPECT_NE(program.get_output().find("viewer: /none.obj: No such file or directory\n"),
              std::string::npos)
        << program.get_output();
}

TEST_F(ViewerTest, tells_how_it_is_called) {
    WindowProgram program({VIEWER});
    EXPECT_EQ(program.exit_code(), 2);
    EXPECT_EQ(program.get_output(), "usage: viewer MODEL\n");
}

} // namespace

} // namespace orvex_test
