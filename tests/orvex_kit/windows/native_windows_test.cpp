// Views in windows that have no context of their own: of X11, by what they show, and on surfaces of
// Wayland.

#include <cstdint>
#include <cstring>

#include <EGL/egl.h>
#include <gtest/gtest.h>

#include "orvex_kit/compare.h"
#include "orvex_kit/engine.h"
#include "orvex_kit/windows/wayland.h"
#include "orvex_kit/windows/x11.h"
#include "tests/orvex_kit/turning_torus.h"
#include "tests/orvex_kit/view_frame.h"
#include "tests/orvex_kit/windows/cycles.h"
#include "tests/support/gl_context.h"
#include "tests/support/wayland_server.h"
#include "tests/support/x_server.h"
#include "tests/support/x_window.h"

namespace orvex_test {

namespace {

namespace kit = orvex::kit;

kit::ViewOptions options_for(kit::Path path) {
    kit::ViewOptions options;
    options.path = path;
    return options;
}

/// The frame as a view off screen has it.
kit::Picture expected(kit::Path path, int number, int width, int height) {
    kit::View view(width, height, options_for(path));
    TurningTorus().draw(view, number);
    return picture_of(view);
}

::Window number_of(const XWindow& window) {
    return reinterpret_cast<std::uintptr_t>(window.view());
}

class X11Windows : public testing::TestWithParam<kit::Path> {
protected:
    kit::Engine engine;

    static std::string difference(const XWindow& window, int number, int width, int height) {
        const Picture seen = window.pixels(width, height);
        const kit::Picture wanted = expected(GetParam(), number, width, height);
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                if (std::memcmp(seen.at(x, y), wanted.row<std::uint8_t>(y) + 4 * x, 3) != 0)
                    return "pixel " + std::to_string(x) + ", " + std::to_string(y);
        return "";
    }
};
INSTANTIATE_TEST_SUITE_P(on, X11Windows, testing::Values(kit::Path::gl3, kit::Path::gl2),
                         path_name);

TEST_P(X11Windows, show_each_frame_in_their_size) {
    ASSERT_NE(x_connection(), nullptr);
    XWindow window(60, 40);
    kit::X11View host(x_connection(), number_of(window), options_for(GetParam()));
    ASSERT_TRUE(host.view()) << host.reason();
    TurningTorus torus;
    int width = 60;
    for (int number = 0; number < 4; ++number) {
        EXPECT_TRUE(host.frame([&](kit::View& view) { torus.draw(view, number); }));
        EXPECT_EQ(difference(window, number, width, 40), "");
        width = number % 2 == 0 ? 90 : 60;
        window.resize(width, 40);
    }
    EXPECT_EQ(host.reason(), "");
}

/// A window as `Cycles` has it.
struct CycledX11Window {
    Cycles& cycles;
    XWindow window;
    XWindow other;
    kit::X11View host;

    CycledX11Window(Cycles& cycles, const kit::ViewOptions& options)
        : cycles(cycles)
        , window(Cycles::width, Cycles::height)
        , other(400, 300)
        , host(x_connection(), number_of(window), options) {}
    void resize(int width, int height) { window.resize(width, height); }
    void hide() { XUnmapWindow(x_connection(), number_of(window)); }
    void show() { XMapWindow(x_connection(), number_of(window)); }
    void change(int cycle) {
        const bool enters = cycle % 2 == 0;
        XReparentWindow(x_connection(), number_of(window),
                        enters ? number_of(other) : DefaultRootWindow(x_connection()), 0, 0);
    }
    void turn() {
        host.frame([&](kit::View& view) { cycles.draw(view); });
    }
};

TEST_P(X11Windows, hold_no_more_after_cycles_of_resize_hide_and_other_parents) {
    ASSERT_NE(x_connection(), nullptr);
    Cycles cycles(options_for(GetParam()), cycle_count());
    CycledX11Window window(cycles, options_for(GetParam()));
    EXPECT_TRUE(cycles.play(window));
    EXPECT_EQ(
        difference(window.window, Cycles::last_frame, Cycles::last_width, Cycles::last_height), "");
}

TEST_P(X11Windows, side_by_side_keep_to_themselves) {
    ASSERT_NE(x_connection(), nullptr);
    const XWindow windows[2] = {XWindow(60, 40), XWindow(50, 70)};
    // Beside the first one, which it would cover.
    XMoveWindow(x_connection(), number_of(windows[1]), 200, 0);
    XSync(x_connection(), False);
    kit::X11View first(x_connection(), number_of(windows[0]), options_for(GetParam()));
    kit::X11View second(x_connection(), number_of(windows[1]), options_for(GetParam()));
    TurningTorus tori[2];
    for (int number = 0; number < 3; ++number) {
        EXPECT_TRUE(first.frame([&](kit::View& view) { tori[0].draw(view, number); }));
        EXPECT_TRUE(second.frame([&](kit::View& view) { tori[1].draw(view, number + 5); }));
        EXPECT_EQ(difference(windows[0], number, 60, 40), "");
        EXPECT_EQ(difference(windows[1], number + 5, 50, 70), "");
    }
}

/// A host's own context, made current, and what is current.
struct HostsContext {
    GlContext context{Profile::core, 16, 16};
    EGLContext own = eglGetCurrentContext();
    EGLSurface surface = eglGetCurrentSurface(EGL_DRAW);

    bool is_current() const {
        return eglGetCurrentContext() == own && eglGetCurrentSurface(EGL_DRAW) == surface &&
               eglGetCurrentSurface(EGL_READ) == surface;
    }
};

TEST_P(X11Windows, leave_the_context_of_a_host_current) {
    ASSERT_NE(x_connection(), nullptr);
    XWindow window(60, 40);
    const HostsContext hosts;
    ASSERT_NE(hosts.own, EGL_NO_CONTEXT);
    {
        kit::X11View host(x_connection(), number_of(window), options_for(GetParam()));
        EXPECT_TRUE(hosts.is_current());
        TurningTorus torus;
        for (const int width : {90, 60}) {
            window.resize(width, 40);
            EXPECT_TRUE(host.frame([&](kit::View& view) { torus.draw(view, 1); }));
            EXPECT_TRUE(hosts.is_current()) << width;
        }
    }
    EXPECT_TRUE(hosts.is_current());
}

TEST_P(X11Windows, come_between_the_steps_of_another_view) {
    ASSERT_NE(x_connection(), nullptr);
    const XWindow window(60, 40);
    kit::View view(60, 40, options_for(GetParam()));
    kit::X11View host(x_connection(), number_of(window), options_for(GetParam()));
    TurningTorus torus;
    view.set_background({1.0f, 0.0f, 0.0f, 1.0f});
    view.begin(kit::Camera());
    EXPECT_TRUE(host.frame([&](kit::View& shown) { torus.draw(shown, 1); }));
    view.end();
    EXPECT_EQ(pixel_at(picture_of(view), 30, 20), (Pixel{255, 0, 0, 255}));
    EXPECT_EQ(difference(window, 1, 60, 40), "");
}

TEST(X11WindowsWithout, an_engine_say_so) {
    ASSERT_NE(x_connection(), nullptr);
    const XWindow window(60, 40);
    kit::X11View host(x_connection(), number_of(window));
    EXPECT_FALSE(host.frame([](kit::View&) { ADD_FAILURE() << "there is nothing to draw"; }));
    EXPECT_EQ(host.reason(), "the engine doesn't run: make a kit::Engine first");
}

class WaylandSurfaces : public testing::TestWithParam<kit::Path> {
protected:
    void SetUp() override {
        ASSERT_NE(display(), nullptr) << "no Wayland compositor";
        surface = wl_compositor_create_surface(WaylandServer::get().compositor());
    }
    void TearDown() override {
        if (surface)
            wl_surface_destroy(surface);
    }
    static wl_display* display() { return WaylandServer::get().connection(); }

    kit::Engine engine;
    wl_surface* surface = nullptr;
};
INSTANTIATE_TEST_SUITE_P(on, WaylandSurfaces, testing::Values(kit::Path::gl3, kit::Path::gl2),
                         path_name);

TEST_P(WaylandSurfaces, get_each_frame_in_their_size) {
    kit::WaylandView host(display(), surface, 60, 40, options_for(GetParam()));
    ASSERT_TRUE(host.view()) << host.reason();
    TurningTorus torus;
    int width = 60;
    for (int number = 0; number < 4; ++number) {
        kit::Picture drawn;
        EXPECT_TRUE(host.frame([&](kit::View& view) {
            torus.draw(view, number);
            drawn = picture_of(view);
        }));
        EXPECT_EQ(kit::compare(drawn, expected(GetParam(), number, width, 40)).reason, "");
        EXPECT_GE(wl_display_roundtrip(display()), 0) << "the compositor took it";
        width = number % 2 == 0 ? 90 : 60;
        EXPECT_EQ(host.resize(width, 40).reason(), "");
    }
}

/// A surface as `Cycles` has it. Without a picture it is hidden.
struct CycledSurface {
    Cycles& cycles;
    wl_surface* surface;
    kit::WaylandView host;

    void resize(int width, int height) { EXPECT_EQ(host.resize(width, height).reason(), ""); }
    void hide() {
        wl_surface_attach(surface, nullptr, 0, 0);
        wl_surface_commit(surface);
    }
    static void show() {}
    static void change(int) {}
    void turn() {
        EXPECT_TRUE(host.frame([&](kit::View& view) { cycles.draw(view); }));
        EXPECT_GE(wl_display_roundtrip(WaylandServer::get().connection()), 0);
    }
};

TEST_P(WaylandSurfaces, hold_no_more_after_cycles_of_resize_and_hide) {
    const kit::ViewOptions options = options_for(GetParam());
    Cycles cycles(options, cycle_count());
    CycledSurface shown{
        cycles, surface, {display(), surface, Cycles::width, Cycles::height, options}};
    EXPECT_TRUE(cycles.play(shown));
}

TEST_P(WaylandSurfaces, have_more_pixels_on_a_fine_screen) {
    wl_surface_set_buffer_scale(surface, 2);
    kit::WaylandView host(display(), surface, 2 * 60, 2 * 40, options_for(GetParam()));
    TurningTorus torus;
    for (const int width : {60, 90}) {
        EXPECT_EQ(host.resize(2 * width, 2 * 40).reason(), "");
        kit::Picture drawn;
        EXPECT_TRUE(host.frame([&](kit::View& view) {
            torus.draw(view, 1);
            drawn = picture_of(view);
        }));
        EXPECT_EQ(kit::compare(drawn, expected(GetParam(), 1, 2 * width, 2 * 40)).reason, "");
        EXPECT_GE(wl_display_roundtrip(display()), 0) << "the compositor took it";
    }
}

TEST_P(WaylandSurfaces, leave_the_context_of_a_host_current) {
    const HostsContext hosts;
    ASSERT_NE(hosts.own, EGL_NO_CONTEXT);
    {
        kit::WaylandView host(display(), surface, 60, 40, options_for(GetParam()));
        EXPECT_TRUE(hosts.is_current());
        TurningTorus torus;
        EXPECT_TRUE(host.frame([&](kit::View& view) { torus.draw(view, 1); }));
        EXPECT_TRUE(hosts.is_current());
        EXPECT_EQ(host.resize(90, 40).reason(), "");
        EXPECT_TRUE(hosts.is_current());
    }
    EXPECT_TRUE(hosts.is_current());
}

TEST_P(WaylandSurfaces, refuse_sizes_that_cant_be) {
    kit::WaylandView none(display(), surface, 0, 40, options_for(GetParam()));
    EXPECT_FALSE(none.frame([](kit::View&) { ADD_FAILURE() << "there is nothing to draw"; }));
    EXPECT_EQ(none.reason(), "a surface of Wayland has sides from 1");
    kit::WaylandView host(display(), surface, 60, 40, options_for(GetParam()));
    EXPECT_FALSE(host.resize(60, 0));
    EXPECT_EQ(host.view().height(), 40);
}

} // namespace

} // namespace orvex_test
