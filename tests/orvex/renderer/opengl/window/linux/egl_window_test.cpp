#include <algorithm>
#include <array>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <GL/gl.h>
#include <GL/glext.h>

#include "orvex/renderer/opengl/window/linux/private/egl_api.h"
#include "orvex/renderer/opengl/window/private/render_window_opengl.h"
#include "tests/support/gl_context.h"

namespace orvex_test {

using namespace orvex;

namespace {

using orvex_test::Profile;

RenderWindow_ExtraData request_of(Profile profile) {
    RenderWindow_ExtraData extra;
    extra.gl_major = profile == Profile::core ? 3 : 2;
    extra.gl_minor = profile == Profile::core ? 2 : 1;
    return extra;
}

bool begin(RenderWindow& window, Profile profile, int width = 64, int height = 48,
           RenderWindow* parent = nullptr, const char* msaa = nullptr) {
    RenderWindow_ExtraData extra = request_of(profile);
    return window.initialize(nullptr, nullptr, width, height, msaa, parent, &extra);
}

std::array<int, 4> viewport() {
    std::array<int, 4> values = {};
    glGetIntegerv(GL_VIEWPORT, values.data());
    return values;
}

using Pixel = std::array<unsigned char, 4>;

Pixel pixel(int x, int y) {
    Pixel value = {};
    glReadPixels(x, y, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, value.data());
    return value;
}

void clear(float red, float green, float blue) {
    glClearColor(red, green, blue, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT);
}

int integer(GLenum name) {
    GLint value = 0;
    glGetIntegerv(name, &value);
    return value;
}

int surface_attribute(EGLint name) {
    EGLint value = 0;
    eglQuerySurface(eglGetCurrentDisplay(), eglGetCurrentSurface(EGL_DRAW), name, &value);
    return value;
}

int config_attribute(EGLint name) {
    EGLint id = 0, count = 0, value = 0;
    eglQueryContext(eglGetCurrentDisplay(), eglGetCurrentContext(), EGL_CONFIG_ID, &id);
    const EGLint wanted[] = {EGL_CONFIG_ID, id, EGL_NONE};
    EGLConfig config = nullptr;
    eglChooseConfig(eglGetCurrentDisplay(), wanted, &config, 1, &count);
    eglGetConfigAttrib(eglGetCurrentDisplay(), config, name, &value);
    return value;
}

/// The largest sample count of an off-screen configuration with at least 16 depth bits.
int most_samples() {
    const EGLint wanted[] = {EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_RENDERABLE_TYPE,
                             EGL_OPENGL_BIT,   EGL_DEPTH_SIZE,  16,
                             EGL_NONE};
    std::vector<EGLConfig> configs(1024);
    EGLint count = 0;
    eglChooseConfig(eglGetCurrentDisplay(), wanted, configs.data(), 1024, &count);
    int most = 0;
    for (EGLint i = 0; i < count; ++i) {
        EGLint samples = 0;
        eglGetConfigAttrib(eglGetCurrentDisplay(), configs[static_cast<std::size_t>(i)],
                           EGL_SAMPLES, &samples);
        most = std::max(most, static_cast<int>(samples));
    }
    return most;
}

class EglWindow : public testing::TestWithParam<Profile> {
protected:
    void TearDown() override { EXPECT_EQ(eglGetCurrentContext(), EGL_NO_CONTEXT); }
};
ORVEX_BOTH_PROFILES(EglWindow);

TEST_P(EglWindow, is_current_and_of_the_asked_profile_and_size) {
    RenderWindowOpenGL window;
    ASSERT_TRUE(begin(window, GetParam()));
    EXPECT_EQ(window.osx_get_cgl_ctx(), eglGetCurrentContext());
    EXPECT_EQ(orvex_test::is_core_context(), GetParam() == Profile::core);
    EXPECT_EQ(viewport(), (std::array<int, 4>{0, 0, 64, 48}));
    EXPECT_EQ(surface_attribute(EGL_WIDTH), 64);
    EXPECT_EQ(surface_attribute(EGL_HEIGHT), 48);
    EXPECT_GE(window.get_api_3d(), GetParam() == Profile::core ? 3 : 2);
    EXPECT_TRUE(window.is_opengl_version_supported(2, 1));
    EXPECT_FALSE(window.is_opengl_version_supported(9, 0));
    EXPECT_NO_GL_ERROR();
}

TEST_P(EglWindow, keeps_the_pixels_that_are_drawn_into_it) {
    RenderWindowOpenGL window;
    ASSERT_TRUE(begin(window, GetParam()));
    clear(1.0f, 0.0f, 1.0f);
    EXPECT_FALSE(window.display_framebuffer());
    glReadBuffer(GL_BACK);
    EXPECT_EQ(pixel(63, 47), (Pixel{255, 0, 255, 255}));
    EXPECT_NO_GL_ERROR();
}

TEST_P(EglWindow, has_the_asked_bits_or_more) {
    RenderWindowOpenGL window;
    ASSERT_TRUE(begin(window, GetParam()));
    EXPECT_EQ(config_attribute(EGL_RED_SIZE), 8);
    EXPECT_EQ(config_attribute(EGL_GREEN_SIZE), 8);
    EXPECT_EQ(config_attribute(EGL_BLUE_SIZE), 8);
    EXPECT_EQ(config_attribute(EGL_ALPHA_SIZE), 8);
    EXPECT_GE(config_attribute(EGL_DEPTH_SIZE), 16);
    EXPECT_EQ(config_attribute(EGL_SAMPLES), 0);
}

TEST_P(EglWindow, takes_less_depth_when_there_isnt_as_much_as_wished) {
    RenderWindowOpenGL window;
    RenderWindow_ExtraData extra = request_of(GetParam());
    extra.depth_bits = 4096;
    EXPECT_TRUE(window.initialize(nullptr, nullptr, 8, 8, nullptr, nullptr, &extra));
    EXPECT_EQ(config_attribute(EGL_DEPTH_SIZE), 24);
}

TEST_P(EglWindow, takes_no_less_stencil_than_asked) {
    RenderWindowOpenGL window;
    RenderWindow_ExtraData extra = request_of(GetParam());
    extra.stencil_bits = 8;
    EXPECT_TRUE(window.osx_create_cocoa_nsgl_context(nullptr, 8, 8, nullptr, nullptr, &extra));
    EXPECT_TRUE(window.osx_apply_context(true));
    EXPECT_EQ(config_attribute(EGL_STENCIL_SIZE), 8);
    extra.stencil_bits = 4096;
    EXPECT_FALSE(window.osx_create_cocoa_nsgl_context(nullptr, 8, 8, nullptr, nullptr, &extra));
}

TEST_P(EglWindow, gives_at_least_the_asked_samples_or_fails) {
    struct Row {
        const char* name;
        int samples;
    };
    for (const Row& row :
         {Row{"Off", 0}, Row{"2X MSAA", 2}, Row{"4X MSAA", 4}, Row{"8X MSAA", 8}}) {
        RenderWindowOpenGL probe;
        ASSERT_TRUE(begin(probe, GetParam()));
        const bool possible = row.samples <= most_samples();
        RenderWindowOpenGL window;
        EXPECT_EQ(begin(window, GetParam(), 16, 16, nullptr, row.name), possible) << row.name;
        if (possible) {
            EXPECT_EQ(window.osx_get_cgl_ctx(), eglGetCurrentContext());
            EXPECT_GE(integer(GL_SAMPLES), row.samples) << row.name;
        }
    }
}

TEST_P(EglWindow, counts_a_size_below_1_as_1_for_its_surface_only) {
    RenderWindowOpenGL window;
    ASSERT_TRUE(begin(window, GetParam(), 0, -5));
    EXPECT_EQ(window.get_width(), 0);
    EXPECT_EQ(window.get_height(), -5);
    EXPECT_EQ(surface_attribute(EGL_WIDTH), 1);
    EXPECT_EQ(surface_attribute(EGL_HEIGHT), 1);
}

TEST_P(EglWindow, fails_for_a_surface_that_nobody_can_make) {
    RenderWindowOpenGL window;
    EXPECT_FALSE(begin(window, GetParam(), 0x7fffffff, 8));
    EXPECT_FALSE(begin(window, GetParam(), 8, 0x7fffffff));
    EXPECT_FALSE(window.apply_context(true));
}

TEST_P(EglWindow, of_a_size_that_no_driver_promises_is_made_without_the_quirk) {
    RenderWindowOpenGL window;
    EXPECT_FALSE(begin(window, GetParam(), 20000, 4));
    setenv("ORVEX_GL_QUIRKS_OFF", "endless_surface", 1);
    const bool made = begin(window, GetParam(), 20000, 4);
    unsetenv("ORVEX_GL_QUIRKS_OFF");
    EXPECT_TRUE(made) << "the symptom: the driver takes any size";
}

/// The driver reads the variable once in a process: this one ends with it.
[[noreturn]] void draw_with_vectors_of(const char* width, const char* quirks_off) {
    setenv("LP_NATIVE_VECTOR_WIDTH", width, 1);
    setenv("ORVEX_GL_QUIRKS_OFF", quirks_off, 1);
    RenderWindowOpenGL window;
    if (!begin(window, Profile::compatibility, 64, 48, nullptr, "4X MSAA"))
        std::_Exit(2);
    clear(1.0f, 0.0f, 0.0f);
    std::_Exit(pixel(32, 24)[0] == 255 ? 0 : 3);
}

TEST(EglVectors, of_a_width_at_which_the_driver_dies_are_refused) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(draw_with_vectors_of("512", ""), testing::ExitedWithCode(2), "");
    EXPECT_EXIT(draw_with_vectors_of("64", ""), testing::ExitedWithCode(2), "");
    EXPECT_EXIT(draw_with_vectors_of("128", ""), testing::ExitedWithCode(0), "");
    EXPECT_EXIT(draw_with_vectors_of("256", ""), testing::ExitedWithCode(0), "");
    EXPECT_EXIT(draw_with_vectors_of("no number", ""), testing::ExitedWithCode(0), "");
    EXPECT_DEATH(draw_with_vectors_of("512", "vector_width"), "") << "the symptom";
}

TEST_P(EglWindow, draws_into_a_surface_beyond_the_limit_that_egl_tells) {
    RenderWindowOpenGL window;
    ASSERT_TRUE(begin(window, GetParam(), 16384, 4));
    clear(0.0f, 1.0f, 0.0f);
    EXPECT_EQ(pixel(16383, 3), (Pixel{0, 255, 0, 255}));
}

TEST_P(EglWindow, takes_up_a_new_size) {
    RenderWindowOpenGL window;
    ASSERT_TRUE(begin(window, GetParam()));
    window.update_size(20, 10);
    EXPECT_EQ(surface_attribute(EGL_WIDTH), 64);
    EXPECT_TRUE(window.osx_update_context_cocoa());
    EXPECT_EQ(window.osx_get_cgl_ctx(), eglGetCurrentContext());
    EXPECT_EQ(surface_attribute(EGL_WIDTH), 20);
    EXPECT_EQ(surface_attribute(EGL_HEIGHT), 10);
    clear(0.0f, 1.0f, 0.0f);
    EXPECT_EQ(pixel(19, 9), (Pixel{0, 255, 0, 255}));
    EXPECT_NO_GL_ERROR();
}

TEST_P(EglWindow, keeps_its_surface_and_pixels_when_the_size_is_the_same_or_impossible) {
    RenderWindowOpenGL window;
    ASSERT_TRUE(begin(window, GetParam()));
    clear(0.0f, 1.0f, 1.0f);
    EXPECT_TRUE(window.osx_update_current_virtual_screen_ctx());
    EXPECT_EQ(pixel(0, 0), (Pixel{0, 255, 255, 255}));
    window.update_size(0x7fffffff, 0x7fffffff);
    EXPECT_FALSE(window.osx_update_current_virtual_screen_ctx());
    EXPECT_EQ(pixel(0, 0), (Pixel{0, 255, 255, 255}));
    EXPECT_EQ(surface_attribute(EGL_WIDTH), 64);
}

TEST_P(EglWindow, takes_up_a_new_size_while_it_isnt_current) {
    RenderWindowOpenGL window;
    ASSERT_TRUE(begin(window, GetParam()));
    EXPECT_TRUE(window.apply_context(false));
    window.update_size(20, 10);
    EXPECT_TRUE(window.osx_update_context_cocoa());
    EXPECT_EQ(eglGetCurrentContext(), EGL_NO_CONTEXT);
    EXPECT_TRUE(window.apply_context(true));
    EXPECT_EQ(surface_attribute(EGL_WIDTH), 20);
}

TEST_P(EglWindow, shares_textures_with_its_parent) {
    RenderWindowOpenGL parent;
    ASSERT_TRUE(begin(parent, GetParam()));
    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    RenderWindowOpenGL child;
    RenderWindowOpenGL stranger;
    ASSERT_TRUE(begin(child, GetParam(), 8, 8, &parent));
    EXPECT_TRUE(glIsTexture(texture));
    ASSERT_TRUE(begin(stranger, GetParam(), 8, 8));
    EXPECT_FALSE(glIsTexture(texture));
}

TEST_P(EglWindow, moves_its_context_to_another_thread_and_back) {
    RenderWindowOpenGL window;
    ASSERT_TRUE(begin(window, GetParam()));
    EXPECT_TRUE(window.apply_context(false));
    EXPECT_EQ(eglGetCurrentContext(), EGL_NO_CONTEXT);
    std::thread([&] {
        EXPECT_TRUE(window.osx_apply_context(true));
        clear(1.0f, 1.0f, 0.0f);
        EXPECT_TRUE(window.osx_apply_context(false));
    }).join();
    EXPECT_TRUE(window.osx_apply_context(true));
    EXPECT_EQ(pixel(0, 0), (Pixel{255, 255, 0, 255}));
}

TEST_P(EglWindow, is_refused_on_a_second_thread_while_it_is_current_on_the_first) {
    RenderWindowOpenGL window;
    ASSERT_TRUE(begin(window, GetParam()));
    bool taken = true;
    std::thread([&] { taken = window.osx_apply_context(true); }).join();
    EXPECT_FALSE(taken);
}

TEST_P(EglWindow, leaves_the_threads_client_api_as_it_was) {
    ASSERT_TRUE(eglBindAPI(EGL_OPENGL_ES_API));
    {
        RenderWindowOpenGL window;
        EXPECT_TRUE(begin(window, GetParam()));
        EXPECT_EQ(eglQueryAPI(), static_cast<EGLenum>(EGL_OPENGL_ES_API));
        window.display_framebuffer();
        window.vsync(true);
        window.update_size(3, 3);
        EXPECT_TRUE(window.osx_update_context_cocoa());
        EXPECT_TRUE(window.apply_context(false));
        EXPECT_TRUE(window.apply_context(true));
        EXPECT_EQ(eglQueryAPI(), static_cast<EGLenum>(EGL_OPENGL_ES_API));
    }
    EXPECT_EQ(eglQueryAPI(), static_cast<EGLenum>(EGL_OPENGL_ES_API));
    eglBindAPI(EGL_OPENGL_API);
}

TEST_P(EglWindow, can_begin_on_a_thread_that_never_used_opengl) {
    std::thread([&] {
        RenderWindowOpenGL window;
        EXPECT_TRUE(begin(window, GetParam()));
        EXPECT_EQ(orvex_test::is_core_context(), GetParam() == Profile::core);
    }).join();
}

TEST_P(EglWindow, puts_back_what_was_current_after_it_shows_a_frame) {
    RenderWindowOpenGL first;
    RenderWindowOpenGL second;
    ASSERT_TRUE(begin(first, GetParam()));
    ASSERT_TRUE(begin(second, GetParam()));
    EXPECT_TRUE(first.osx_display_framebuffer());
    EXPECT_EQ(second.osx_get_cgl_ctx(), eglGetCurrentContext());
    EXPECT_TRUE(second.apply_context(false));
    EXPECT_TRUE(first.osx_display_framebuffer());
    EXPECT_EQ(eglGetCurrentContext(), EGL_NO_CONTEXT);
}

TEST_P(EglWindow, keeps_its_wish_for_the_swap_interval_until_it_is_current) {
    RenderWindowOpenGL window;
    ASSERT_TRUE(begin(window, GetParam()));
    EXPECT_TRUE(window.osx_vsync(true));
    EXPECT_TRUE(window.apply_context(false));
    EXPECT_TRUE(window.osx_vsync(false));
    EXPECT_TRUE(window.apply_context(true));
    EXPECT_EQ(eglGetError(), EGL_SUCCESS);
}

TEST_P(EglWindow, leaves_another_windows_context_current_when_it_ends) {
    RenderWindowOpenGL kept;
    RenderWindowOpenGL ended;
    ASSERT_TRUE(begin(ended, GetParam()));
    ASSERT_TRUE(begin(kept, GetParam()));
    EXPECT_TRUE(ended.terminate());
    EXPECT_EQ(kept.osx_get_cgl_ctx(), eglGetCurrentContext());
    clear(0.0f, 0.0f, 1.0f);
    EXPECT_EQ(pixel(0, 0), (Pixel{0, 0, 255, 255}));
}

TEST_P(EglWindow, leaves_the_hosts_contexts_on_the_same_display_alive) {
    orvex_test::GlContext host(GetParam());
    {
        RenderWindowOpenGL window;
        ASSERT_TRUE(begin(window, GetParam()));
    }
    host.make_current();
    EXPECT_TRUE(host.ok());
    clear(0.0f, 0.0f, 1.0f);
    EXPECT_EQ(pixel(0, 0), (Pixel{0, 0, 255, 255}));
}

TEST_P(EglWindow, releases_its_own_context_when_it_ends) {
    RenderWindowOpenGL window;
    ASSERT_TRUE(begin(window, GetParam()));
    EXPECT_TRUE(window.osx_kill_context());
    EXPECT_EQ(eglGetCurrentContext(), EGL_NO_CONTEXT);
}

TEST_P(EglWindow, replaces_its_context_by_a_second_one) {
    RenderWindowOpenGL window;
    ASSERT_TRUE(begin(window, GetParam()));
    ASSERT_TRUE(begin(window, GetParam(), 9, 9, &window));
    EXPECT_EQ(window.osx_get_cgl_ctx(), eglGetCurrentContext());
    EXPECT_EQ(surface_attribute(EGL_WIDTH), 9);
}

TEST_P(EglWindow, adopts_a_hosts_context_and_never_ends_it) {
    orvex_test::GlContext host(GetParam());
    const EGLContext native = eglGetCurrentContext();
    {
        RenderWindowOpenGL window;
        EXPECT_TRUE(window.osx_init_with_cocoa_nsgl_ctx(native));
        EXPECT_EQ(window.osx_get_cgl_ctx(), native);
        EXPECT_TRUE(window.apply_context(false));
        EXPECT_EQ(eglGetCurrentContext(), EGL_NO_CONTEXT);
        EXPECT_TRUE(window.apply_context(true));
        EXPECT_TRUE(host.ok());
        EXPECT_TRUE(window.osx_display_framebuffer());
        EXPECT_TRUE(window.osx_vsync(true));
        EXPECT_TRUE(window.osx_update_context_cocoa());
        EXPECT_TRUE(window.terminate());
    }
    EXPECT_TRUE(host.ok());
    clear(0.0f, 0.0f, 1.0f);
    EXPECT_EQ(pixel(0, 0), (Pixel{0, 0, 255, 255}));
    EXPECT_NO_GL_ERROR();
}

TEST_P(EglWindow, never_takes_its_own_context_for_a_hosts) {
    RenderWindowOpenGL window;
    ASSERT_TRUE(begin(window, GetParam()));
    void* const own = window.osx_get_cgl_ctx();
    int stranger = 0;
    EXPECT_FALSE(window.osx_init_with_cocoa_nsgl_ctx(&stranger));
    EXPECT_EQ(eglGetCurrentContext(), own);
    EXPECT_EQ(window.osx_get_cgl_ctx(), own);
    clear(0.0f, 0.0f, 1.0f);
    EXPECT_EQ(pixel(0, 0), (Pixel{0, 0, 255, 255}));
}

TEST_P(EglWindow, keeps_the_surface_that_is_current_at_each_adoption) {
    orvex_test::GlContext host(GetParam());
    const EGLDisplay display = eglGetCurrentDisplay();
    const EGLContext context = eglGetCurrentContext();
    const EGLSurface first = eglGetCurrentSurface(EGL_DRAW);
    RenderWindowOpenGL window;
    ASSERT_TRUE(window.osx_init_with_cocoa_nsgl_ctx(context));

    EGLint id = 0, count = 0;
    eglQueryContext(display, context, EGL_CONFIG_ID, &id);
    const EGLint wanted[] = {EGL_CONFIG_ID, id, EGL_NONE};
    EGLConfig config = nullptr;
    eglChooseConfig(display, wanted, &config, 1, &count);
    const EGLint size[] = {EGL_WIDTH, 5, EGL_HEIGHT, 7, EGL_NONE};
    const EGLSurface second = eglCreatePbufferSurface(display, config, size);
    ASSERT_TRUE(eglMakeCurrent(display, second, second, context));
    EXPECT_TRUE(window.osx_init_with_cocoa_nsgl_ctx(context));
    EXPECT_TRUE(window.apply_context(false));
    EXPECT_TRUE(window.osx_apply_context(true));
    EXPECT_EQ(eglGetCurrentSurface(EGL_DRAW), second);

    ASSERT_TRUE(eglMakeCurrent(display, first, first, context));
    eglDestroySurface(display, second);
}

TEST_P(EglWindow, tells_the_version_of_an_adopted_context) {
    orvex_test::GlContext host(GetParam());
    RenderWindowOpenGL window;
    ASSERT_TRUE(window.osx_init_with_cocoa_nsgl_ctx(eglGetCurrentContext()));
    EXPECT_EQ(window.get_api_3d(), integer(GL_MAJOR_VERSION));
}

TEST_P(EglWindow, knows_no_version_after_its_first_context_failed) {
    RenderWindowOpenGL current;
    ASSERT_TRUE(begin(current, GetParam()));
    RenderWindowOpenGL window;
    EXPECT_FALSE(begin(window, GetParam(), 1 << 30, 1));
    EXPECT_EQ(window.get_api_3d(), 2);
    EXPECT_FALSE(window.get_opengl_version(nullptr, nullptr));
    EXPECT_FALSE(window.is_opengl_version_supported(1, 0));
}

/// How the current context tells that its driver was reset.
GLint reset_notification() {
    return integer(GL_RESET_NOTIFICATION_STRATEGY);
}

TEST_P(EglWindow, is_told_when_the_driver_is_reset) {
    RenderWindowOpenGL window;
    ASSERT_TRUE(begin(window, GetParam()));
    EXPECT_EQ(reset_notification(), GL_LOSE_CONTEXT_ON_RESET);
    if (integer(GL_MAJOR_VERSION) >= 3)
        EXPECT_NE(integer(GL_CONTEXT_FLAGS) & GL_CONTEXT_FLAG_ROBUST_ACCESS_BIT, 0);
    EXPECT_TRUE(window.osx_display_framebuffer());
    EXPECT_NO_GL_ERROR();
}

TEST_P(EglWindow, is_plain_where_a_host_asks_for_that) {
    RenderWindowOpenGL window;
    RenderWindow_ExtraData extra = request_of(GetParam());
    extra.reset_notification = false;
    ASSERT_TRUE(window.initialize(nullptr, nullptr, 8, 8, "Off", nullptr, &extra));
    EXPECT_EQ(reset_notification(), GL_NO_RESET_NOTIFICATION);
    EXPECT_TRUE(window.osx_display_framebuffer());
    EXPECT_NO_GL_ERROR();
}

TEST_P(EglWindow, is_of_the_kind_of_its_parent) {
    for (const bool told : {true, false}) {
        RenderWindowOpenGL parent;
        RenderWindow_ExtraData extra = request_of(GetParam());
        extra.reset_notification = told;
        ASSERT_TRUE(parent.initialize(nullptr, nullptr, 8, 8, "Off", nullptr, &extra));
        RenderWindowOpenGL child;
        extra.reset_notification = !told;
        ASSERT_TRUE(child.initialize(nullptr, nullptr, 8, 8, "Off", &parent, &extra));
        EXPECT_EQ(reset_notification(), told ? GL_LOSE_CONTEXT_ON_RESET : GL_NO_RESET_NOTIFICATION);
    }
}

TEST_P(EglWindow, shares_with_an_adopted_context) {
    orvex_test::GlContext host(GetParam());
    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    RenderWindowOpenGL parent;
    EXPECT_TRUE(parent.osx_init_with_cocoa_nsgl_ctx(eglGetCurrentContext()));
    RenderWindowOpenGL child;
    ASSERT_TRUE(begin(child, GetParam(), 8, 8, &parent));
    EXPECT_TRUE(glIsTexture(texture));
}

TEST_P(EglWindow, adopts_nothing_when_nothing_is_current) {
    int host = 0;
    RenderWindowOpenGL window;
    EXPECT_FALSE(window.osx_init_with_cocoa_nsgl_ctx(&host));
}

TEST_P(EglWindow, lists_the_contexts_extensions) {
    RenderWindowOpenGL window;
    ASSERT_TRUE(begin(window, GetParam()));
    EXPECT_FALSE(window.build_opengl_extensions_list()) << "the list is complete all the same";
    EXPECT_EQ(window.get_num_opengl_extensions(),
              static_cast<unsigned long>(integer(GL_NUM_EXTENSIONS)));
    EXPECT_EQ(window.get_num_GL_extensions(), integer(GL_NUM_EXTENSIONS));
    EXPECT_TRUE(window.check_opengl_extension(window.get_opengl_extension(0)));
    EXPECT_NO_GL_ERROR();
}

TEST_P(EglWindow, gives_a_software_renderer_when_asked) {
    RenderWindowOpenGL window;
    RenderWindow_ExtraData extra = request_of(GetParam());
    extra.software_renderer = true;
    ASSERT_TRUE(window.initialize(nullptr, nullptr, 8, 8, nullptr, nullptr, &extra));
    const std::string renderer = reinterpret_cast<const char*>(glGetString(GL_RENDERER));
    EXPECT_NE(renderer.find("llvmpipe"), std::string::npos) << renderer;
    clear(1.0f, 0.0f, 0.0f);
    EXPECT_FALSE(window.display_framebuffer());
    EXPECT_EQ(pixel(0, 0), (Pixel{255, 0, 0, 255}));
}

TEST_P(EglWindow, fails_for_a_drawable_without_a_screen) {
    unsetenv("DISPLAY");
    unsetenv("WAYLAND_DISPLAY");
    RenderWindow_ExtraData extra = request_of(GetParam());
    RenderWindowOpenGL window;
    EXPECT_FALSE(window.initialize(nullptr, reinterpret_cast<void*>(0x400001), 8, 8, nullptr,
                                   nullptr, &extra));
    EXPECT_FALSE(window.initialize(nullptr, &extra, 8, 8, nullptr, nullptr, &extra))
        << "an address means nothing without its display";
}

TEST(EglCoreWindow, gives_its_newest_version_when_the_asked_one_is_refused) {
    RenderWindowOpenGL window;
    RenderWindow_ExtraData extra;
    extra.gl_major = 9;
    extra.gl_minor = 9;
    EXPECT_TRUE(window.initialize(nullptr, nullptr, 8, 8, nullptr, nullptr, &extra));
    EXPECT_TRUE(extra.core_profile);
    EXPECT_TRUE(orvex_test::is_core_context());
    EXPECT_GE(window.get_api_3d(), 3);
}

TEST(EglCoreWindow, is_core_for_a_request_of_3_0_too) {
    RenderWindowOpenGL window;
    RenderWindow_ExtraData extra;
    extra.gl_major = 3;
    extra.gl_minor = 0;
    EXPECT_TRUE(window.initialize(nullptr, nullptr, 8, 8, nullptr, nullptr, &extra));
    EXPECT_TRUE(orvex_test::is_core_context());
}

TEST(EglColors, gives_few_bits_when_asked_and_possible) {
    RenderWindowOpenGL window;
    RenderWindow_ExtraData extra;
    extra.color_bits = 24;
    EXPECT_TRUE(window.initialize(nullptr, nullptr, 8, 8, nullptr, nullptr, &extra));
    EXPECT_EQ(config_attribute(EGL_RED_SIZE), 8);
    EXPECT_EQ(config_attribute(EGL_ALPHA_SIZE), 0);
    extra.color_bits = 16;
    EXPECT_TRUE(window.initialize(nullptr, nullptr, 8, 8, nullptr, nullptr, &extra));
    EXPECT_GE(config_attribute(EGL_RED_SIZE), 5);
}

} // namespace

} // namespace orvex_test
