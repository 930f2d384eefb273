// The engine's own contexts in Wayland surfaces.

#include <array>

#include <gtest/gtest.h>

#include <GL/gl.h>
#include <wayland-client.h>
#include <wayland-egl.h>

#include "orvex/renderer/opengl/window/private/render_window_opengl.h"
#include "tests/support/gl_context.h"
#include "tests/support/wayland_server.h"

namespace orvex_test {

using namespace orvex;

namespace {

using orvex_test::Profile;
using orvex_test::WaylandServer;

wl_display* connection() {
    return WaylandServer::get().connection();
}

/// A surface that a context can be made in. No shell places it on a screen.
class Surface {
public:
    Surface(int width, int height)
        : surface(wl_compositor_create_surface(WaylandServer::get().compositor()))
        , window(wl_egl_window_create(surface, width, height)) {}
    ~Surface() {
        wl_egl_window_destroy(window);
        wl_surface_destroy(surface);
        wl_display_roundtrip(connection());
    }
    Surface(const Surface&) = delete;
    Surface& operator=(const Surface&) = delete;

    void* view() const { return window; }
    void resize(int width, int height) { wl_egl_window_resize(window, width, height, 0, 0); }

private:
    wl_surface* surface;
    wl_egl_window* window;
};

using Pixel = std::array<unsigned char, 4>;

void clear(float red, float green, float blue) {
    glClearColor(red, green, blue, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT);
}

/// Stays as it was beyond the drawable.
Pixel pixel_at(int x, int y) {
    Pixel pixel = {1, 2, 3, 4};
    glReadPixels(x, y, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel.data());
    return pixel;
}

class WaylandWindow : public testing::TestWithParam<Profile> {
protected:
    void SetUp() override {
        ASSERT_NE(connection(), nullptr) << "no Wayland compositor";
        ASSERT_NE(WaylandServer::get().compositor(), nullptr);
    }

    bool begin(RenderWindow& window, const Surface& surface, int width, int height,
               RenderWindow* parent = nullptr) {
        RenderWindow_ExtraData extra;
        extra.gl_major = GetParam() == Profile::core ? 3 : 2;
        return window.initialize(connection(), surface.view(), width, height, nullptr, parent,
                                 &extra) &&
               window.osx_vsync(false);
    }

    /// Whether the compositor took all that was sent to it.
    bool is_content() { return wl_display_roundtrip(connection()) >= 0; }
};
ORVEX_BOTH_PROFILES(WaylandWindow);

TEST_P(WaylandWindow, draws_and_presents_frame_after_frame) {
    const Surface surface(120, 80);
    RenderWindowOpenGL window;
    ASSERT_TRUE(begin(window, surface, 120, 80));
    EXPECT_EQ(orvex_test::is_core_context(), GetParam() == Profile::core);
    for (int frame = 0; frame < 8; ++frame) {
        const bool odd = frame % 2 != 0;
        clear(odd ? 1.0f : 0.0f, 0.0f, 1.0f);
        EXPECT_EQ(pixel_at(119, 79),
                  (Pixel{static_cast<unsigned char>(odd ? 255 : 0), 0, 255, 255}));
        EXPECT_EQ(pixel_at(120, 79), (Pixel{1, 2, 3, 4}));
        EXPECT_TRUE(window.osx_display_framebuffer());
        EXPECT_TRUE(is_content());
    }
    EXPECT_NO_GL_ERROR();
}

TEST_P(WaylandWindow, follows_the_size_of_the_surface) {
    Surface surface(120, 80);
    RenderWindowOpenGL window;
    ASSERT_TRUE(begin(window, surface, 120, 80));
    clear(1.0f, 0.0f, 0.0f);
    window.display_framebuffer();
    surface.resize(200, 150);
    window.update_size(200, 150);
    EXPECT_TRUE(window.osx_update_context_cocoa());
    window.display_framebuffer();
    clear(0.0f, 1.0f, 0.0f);
    EXPECT_EQ(pixel_at(199, 149), (Pixel{0, 255, 0, 255}));
    window.display_framebuffer();
    EXPECT_TRUE(is_content());
}

TEST_P(WaylandWindow, can_be_begun_again_on_the_same_surface) {
    const Surface surface(120, 80);
    RenderWindowOpenGL window;
    for (int round = 0; round < 3; ++round) {
        ASSERT_TRUE(begin(window, surface, 120, 80));
        clear(0.0f, 0.0f, 1.0f);
        EXPECT_EQ(pixel_at(60, 40), (Pixel{0, 0, 255, 255}));
        window.display_framebuffer();
        EXPECT_TRUE(window.terminate());
        EXPECT_TRUE(is_content());
    }
}

TEST_P(WaylandWindow, shares_its_textures_with_another_surface) {
    const Surface surface(16, 16);
    const Surface other(8, 8);
    RenderWindowOpenGL parent;
    ASSERT_TRUE(begin(parent, surface, 16, 16));
    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    RenderWindowOpenGL child;
    ASSERT_TRUE(begin(child, other, 8, 8, &parent));
    EXPECT_TRUE(glIsTexture(texture));
}

TEST_P(WaylandWindow, cant_be_made_without_the_surfaces_own_connection) {
    const Surface surface(16, 16);
    RenderWindowOpenGL window;
    RenderWindow_ExtraData extra;
    EXPECT_FALSE(window.initialize(nullptr, surface.view(), 16, 16, nullptr, nullptr, &extra));
    EXPECT_FALSE(window.apply_context(true));
}

} // namespace

} // namespace orvex_test
