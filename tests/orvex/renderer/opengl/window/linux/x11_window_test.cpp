#include <array>
#include <ostream>
#include <thread>

#include <gtest/gtest.h>

#include <GL/gl.h>
#include <GL/glext.h>
#include <GL/glx.h>
#include <X11/Xlib.h>

#include "orvex/renderer/opengl/window/linux/private/egl_api.h"
#include "orvex/renderer/opengl/window/private/render_window_opengl.h"
#include "tests/support/gl_context.h"
#include "tests/support/x_window.h"

namespace orvex_test {

using namespace orvex;

namespace {

using orvex_test::Picture;
using orvex_test::Profile;
using orvex_test::x_connection;
using orvex_test::XWindow;

/// Clears a rectangle, with its origin at the lower left.
void fill(int x, int y, int width, int height, unsigned color) {
    const auto channel = [&](int shift) {
        return static_cast<float>((color >> shift) & 0xff) / 255.0f;
    };
    glEnable(GL_SCISSOR_TEST);
    glScissor(x, y, width, height);
    glClearColor(channel(16), channel(8), channel(0), 1.0f);
    glClear(GL_COLOR_BUFFER_BIT);
    glDisable(GL_SCISSOR_TEST);
}

/// Four quarters: red and green above, blue and white below.
void draw_quarters(int width, int height) {
    const int x = width / 2;
    const int y = height / 2;
    fill(0, y, x, height - y, 0xff0000);
    fill(x, y, width - x, height - y, 0x00ff00);
    fill(0, 0, x, y, 0x0000ff);
    fill(x, 0, width - x, y, 0xffffff);
}

Picture quarters(int width, int height) {
    Picture picture(width, height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const bool upper = y < height - height / 2;
            const bool left = x < width / 2;
            unsigned char* const pixel = picture.at(x, y);
            pixel[0] = upper == left ? 255 : 0;
            pixel[1] = left ? 0 : 255;
            pixel[2] = upper ? 0 : 255;
            pixel[3] = 255;
        }
    return picture;
}

/// How the window is handed to the engine: with the test's connection, or by its number alone.
struct Way {
    Profile profile;
    bool with_connection;
    const char* msaa;
    friend std::ostream& operator<<(std::ostream& out, const Way& way) {
        return out << way.profile << (way.with_connection ? "_connection" : "_default")
                   << (way.msaa ? "_4x" : "");
    }
};

class X11Window : public testing::TestWithParam<Way> {
protected:
    void SetUp() override { ASSERT_NE(x_connection(), nullptr) << "no X server"; }

    bool begin(RenderWindow& window, const XWindow& view, int width, int height,
               bool software = false) {
        RenderWindow_ExtraData extra;
        extra.gl_major = GetParam().profile == Profile::core ? 3 : 2;
        extra.software_renderer = software;
        return window.initialize(GetParam().with_connection ? x_connection() : nullptr, view.view(),
                                 width, height, GetParam().msaa, nullptr, &extra);
    }
};

INSTANTIATE_TEST_SUITE_P(on, X11Window,
                         testing::Values(Way{Profile::compatibility, false, nullptr},
                                         Way{Profile::compatibility, true, nullptr},
                                         Way{Profile::core, false, nullptr},
                                         Way{Profile::core, true, nullptr},
                                         Way{Profile::core, true, "4X MSAA"}),
                         testing::PrintToStringParamName());

/// The engine's connection may be another one, so that its requests may arrive after ours. Each
/// look is a round trip through the server; a frame that never arrives fails in the end.
bool comes_to_show(const XWindow& view, const Picture& expected) {
    for (int look = 0; look < 2000; ++look)
        if (view.pixels(expected.width, expected.height) == expected)
            return true;
    return false;
}

TEST_P(X11Window, shows_what_was_drawn_in_its_own_pixels) {
    const XWindow view;
    RenderWindowOpenGL window;
    ASSERT_TRUE(begin(window, view, 120, 80));
    draw_quarters(120, 80);
    EXPECT_FALSE(window.display_framebuffer());
    EXPECT_TRUE(comes_to_show(view, quarters(120, 80)));
    EXPECT_NO_GL_ERROR();
}

TEST_P(X11Window, shows_what_a_software_renderer_drew) {
    const XWindow view;
    RenderWindowOpenGL window;
    ASSERT_TRUE(begin(window, view, 120, 80, true));
    draw_quarters(120, 80);
    EXPECT_FALSE(window.display_framebuffer());
    EXPECT_TRUE(comes_to_show(view, quarters(120, 80)));
}

TEST_P(X11Window, follows_the_size_of_the_drawable) {
    XWindow view;
    RenderWindowOpenGL window;
    ASSERT_TRUE(begin(window, view, 120, 80));
    window.display_framebuffer();
    view.resize(200, 150);
    window.update_size(200, 150);
    EXPECT_TRUE(window.osx_update_context_cocoa());
    window.display_framebuffer();
    draw_quarters(200, 150);
    window.display_framebuffer();
    EXPECT_TRUE(comes_to_show(view, quarters(200, 150)));
}

TEST_P(X11Window, shows_a_frame_while_another_window_is_current) {
    const XWindow view;
    RenderWindowOpenGL window;
    ASSERT_TRUE(begin(window, view, 120, 80));
    draw_quarters(120, 80);
    RenderWindowOpenGL other;
    ASSERT_TRUE(other.initialize(nullptr, nullptr, 8, 8, nullptr, nullptr, nullptr));
    EXPECT_TRUE(window.osx_display_framebuffer());
    EXPECT_TRUE(comes_to_show(view, quarters(120, 80)));
}

TEST_P(X11Window, takes_the_swap_interval) {
    const XWindow view;
    RenderWindowOpenGL window;
    ASSERT_TRUE(begin(window, view, 120, 80));
    EXPECT_TRUE(window.osx_vsync(true));
    EXPECT_TRUE(window.osx_vsync(false));
    draw_quarters(120, 80);
    window.display_framebuffer();
    EXPECT_TRUE(comes_to_show(view, quarters(120, 80)));
}

TEST_P(X11Window, can_be_begun_again_on_the_same_drawable) {
    const XWindow view;
    RenderWindowOpenGL window;
    for (int round = 0; round < 3; ++round) {
        ASSERT_TRUE(begin(window, view, 120, 80));
        draw_quarters(120, 80);
        window.display_framebuffer();
        EXPECT_TRUE(comes_to_show(view, quarters(120, 80)));
        EXPECT_TRUE(window.terminate());
    }
}

TEST_P(X11Window, draws_off_screen_on_the_hosts_display_too) {
    RenderWindowOpenGL window;
    RenderWindow_ExtraData extra;
    ASSERT_TRUE(window.initialize(x_connection(), nullptr, 16, 16, nullptr, nullptr, &extra));
    fill(0, 0, 16, 16, 0x00ff00);
    std::array<unsigned char, 4> pixel = {};
    glReadPixels(8, 8, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel.data());
    EXPECT_EQ(pixel, (std::array<unsigned char, 4>{0, 255, 0, 255}));
}

TEST_P(X11Window, fails_for_a_number_that_is_no_window) {
    RenderWindow_ExtraData extra;
    RenderWindowOpenGL window;
    EXPECT_FALSE(window.initialize(GetParam().with_connection ? x_connection() : nullptr,
                                   reinterpret_cast<void*>(0x1ffffff), 8, 8, nullptr, nullptr,
                                   &extra));
    EXPECT_FALSE(window.apply_context(true));
}

/// A window whose requests wait in the connection's queue until somebody sends them.
class UnsentWindow {
public:
    UnsentWindow()
        : id(XCreateSimpleWindow(x_connection(), DefaultRootWindow(x_connection()), 0, 0, 120, 80,
                                 0, 0, 0)) {
        XMapWindow(x_connection(), id);
    }
    ~UnsentWindow() {
        destroy();
        XSync(x_connection(), False);
    }
    UnsentWindow(const UnsentWindow&) = delete;
    UnsentWindow& operator=(const UnsentWindow&) = delete;

    void destroy() {
        if (id != 0)
            XDestroyWindow(x_connection(), id);
        id = 0;
    }
    void* view() const { return reinterpret_cast<void*>(id); }

private:
    unsigned long id;
};

class X11ConnectionTest : public testing::Test {
protected:
    void SetUp() override { ASSERT_NE(x_connection(), nullptr) << "no X server"; }

    static bool begin(RenderWindow& window, void* view, int gl_major = 2,
                      const char* msaa = nullptr) {
        RenderWindow_ExtraData extra;
        extra.gl_major = gl_major;
        return window.initialize(x_connection(), view, 120, 80, msaa, nullptr, &extra);
    }
};

TEST_F(X11ConnectionTest, windows_are_found_before_the_host_sends_its_requests) {
    for (int round = 0; round < 3; ++round) {
        const UnsentWindow view;
        RenderWindowOpenGL window;
        EXPECT_TRUE(begin(window, view.view())) << round;
    }
}

TEST_F(X11ConnectionTest, a_window_whose_end_was_not_sent_yet_is_refused) {
    UnsentWindow view;
    XSync(x_connection(), False);
    void* const number = view.view();
    view.destroy();
    RenderWindowOpenGL window;
    EXPECT_FALSE(begin(window, number));
}

TEST_F(X11ConnectionTest, a_second_context_takes_the_place_of_the_first_on_one_drawable) {
    const XWindow view;
    RenderWindowOpenGL window;
    ASSERT_TRUE(begin(window, view.view()));
    ASSERT_TRUE(begin(window, view.view(), 3));
    EXPECT_TRUE(orvex_test::is_core_context());
    ASSERT_TRUE(begin(window, view.view(), 3, "4X MSAA"));
    EXPECT_TRUE(window.osx_apply_context(true));
    draw_quarters(120, 80);
    window.display_framebuffer();
    EXPECT_TRUE(comes_to_show(view, quarters(120, 80)));
    EXPECT_NO_GL_ERROR();
}

TEST_F(X11ConnectionTest, a_second_context_follows_while_another_window_is_current) {
    const XWindow view;
    RenderWindowOpenGL window;
    ASSERT_TRUE(begin(window, view.view()));
    RenderWindowOpenGL other;
    ASSERT_TRUE(other.initialize(nullptr, nullptr, 8, 8, nullptr, nullptr, nullptr));
    EXPECT_TRUE(window.osx_create_cgl_context(view.view(), 120, 80, nullptr, nullptr, nullptr));
    EXPECT_EQ(eglGetCurrentContext(), other.osx_get_cgl_ctx()) << "a creation leaves it current";
}

TEST_F(X11ConnectionTest, the_former_context_draws_on_when_a_second_one_on_its_drawable_fails) {
    const XWindow view;
    RenderWindowOpenGL window;
    ASSERT_TRUE(begin(window, view.view()));
    void* const context = window.osx_get_cgl_ctx();
    RenderWindow_ExtraData impossible;
    impossible.stencil_bits = 4096;
    EXPECT_FALSE(
        window.osx_create_cocoa_nsgl_context(view.view(), 120, 80, nullptr, nullptr, &impossible));
    EXPECT_EQ(window.osx_get_cgl_ctx(), context);
    EXPECT_EQ(eglGetCurrentContext(), context);
    draw_quarters(120, 80);
    window.display_framebuffer();
    EXPECT_TRUE(comes_to_show(view, quarters(120, 80)));
    EXPECT_TRUE(window.osx_apply_context(false));
    EXPECT_FALSE(
        window.osx_create_cocoa_nsgl_context(view.view(), 120, 80, nullptr, nullptr, &impossible));
    EXPECT_EQ(eglGetCurrentContext(), EGL_NO_CONTEXT);
    EXPECT_TRUE(window.osx_apply_context(true));
}

TEST_F(X11ConnectionTest, a_context_that_another_thread_holds_keeps_its_drawable) {
    const XWindow view;
    RenderWindowOpenGL window;
    ASSERT_TRUE(begin(window, view.view()));
    bool made = true;
    std::thread([&] {
        made = window.osx_create_cgl_context(view.view(), 120, 80, nullptr, nullptr, nullptr);
    }).join();
    EXPECT_FALSE(made);
    EXPECT_EQ(eglGetCurrentContext(), window.osx_get_cgl_ctx());
    draw_quarters(120, 80);
    window.display_framebuffer();
    EXPECT_TRUE(comes_to_show(view, quarters(120, 80)));
}

/// A context that a toolkit made with GLX.
class GlxContextTest : public testing::Test {
protected:
    XWindow view;
    GLXContext context = nullptr;
    GLXWindow drawable = 0;

    void SetUp() override {
        ASSERT_NE(x_connection(), nullptr) << "no X server";
        int count = 0;
        const int wanted[] = {GLX_DOUBLEBUFFER, True, GLX_X_RENDERABLE, True, None};
        GLXFBConfig* const configs =
            glXChooseFBConfig(x_connection(), DefaultScreen(x_connection()), wanted, &count);
        for (int i = 0; i < count && !context; ++i) {
            int visual = 0;
            glXGetFBConfigAttrib(x_connection(), configs[i], GLX_VISUAL_ID, &visual);
            if (static_cast<VisualID>(visual) !=
                XVisualIDFromVisual(DefaultVisual(x_connection(), DefaultScreen(x_connection()))))
                continue;
            context = glXCreateNewContext(x_connection(), configs[i], GLX_RGBA_TYPE, nullptr, True);
            drawable = glXCreateWindow(x_connection(), configs[i],
                                       reinterpret_cast<::Window>(view.view()), nullptr);
        }
        XFree(configs);
        ASSERT_NE(context, nullptr);
        ASSERT_TRUE(glXMakeContextCurrent(x_connection(), drawable, drawable, context));
    }

    void TearDown() override {
        glXMakeContextCurrent(x_connection(), None, None, nullptr);
        glXDestroyWindow(x_connection(), drawable);
        glXDestroyContext(x_connection(), context);
    }
};

TEST_F(GlxContextTest, is_adopted_released_taken_back_and_never_ended) {
    RenderWindowOpenGL window;
    ASSERT_TRUE(window.osx_init_with_cocoa_nsgl_ctx(context));
    EXPECT_EQ(window.osx_get_cgl_ctx(), context);
    EXPECT_TRUE(window.apply_context(false));
    EXPECT_EQ(glXGetCurrentContext(), nullptr);
    EXPECT_TRUE(window.apply_context(true));
    EXPECT_EQ(glXGetCurrentContext(), context);
    EXPECT_EQ(glXGetCurrentDrawable(), drawable);
    EXPECT_TRUE(window.osx_update_context_cocoa());
    EXPECT_TRUE(window.osx_vsync(true));
    EXPECT_TRUE(window.terminate());
    EXPECT_EQ(glXGetCurrentContext(), context);
}

TEST_F(GlxContextTest, is_presented_by_the_host) {
    RenderWindowOpenGL window;
    ASSERT_TRUE(window.osx_init_with_cocoa_nsgl_ctx(context));
    draw_quarters(120, 80);
    EXPECT_TRUE(window.osx_display_framebuffer());
    glXSwapBuffers(x_connection(), drawable);
    EXPECT_TRUE(comes_to_show(view, quarters(120, 80)));
}

TEST_F(GlxContextTest, cant_be_shared_with) {
    RenderWindowOpenGL parent;
    ASSERT_TRUE(parent.osx_init_with_cocoa_nsgl_ctx(context));
    RenderWindowOpenGL child;
    EXPECT_FALSE(child.initialize(nullptr, nullptr, 8, 8, nullptr, &parent, nullptr));
}

} // namespace

} // namespace orvex_test
