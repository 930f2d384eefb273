#include "orvex/renderer/opengl/window/private/render_window_opengl.h"

#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "orvex/renderer/opengl/window/private/window_platform.h"
#include "tests/support/fake_gl.h"
#include "tests/support/fake_window_platform.h"
#include "tests/support/log_capture.h"

namespace orvex_test {

using namespace orvex;

namespace {

using Events = std::vector<std::string>;

/// A window on a platform and a GL that only pretend.
class RenderWindowOpenGLTest : public testing::Test {
protected:
    orvex_test::FakeWindowPlatform platform;
    orvex_test::FakeGl gl;
    RenderWindowOpenGL window;

    void serve_version(const char* text, int major, int minor) {
        gl.serve(text, major, minor);
        platform.get_string_i = gl.get_string_i();
    }

    bool initialize(RenderWindow_ExtraData* extra = nullptr, const char* msaa = nullptr) {
        return window.initialize(nullptr, nullptr, 640, 480, msaa, nullptr, extra);
    }
};

TEST_F(RenderWindowOpenGLTest, has_nothing_at_first) {
    EXPECT_EQ(window.get_width(), 0);
    EXPECT_EQ(window.get_height(), 0);
    EXPECT_FALSE(window.check_GL_ATI_meminfo());
    EXPECT_EQ(window.get_api_3d(), 2);
    EXPECT_EQ(window.get_num_opengl_extensions(), 0u);
    EXPECT_EQ(window.get_num_GL_extensions(), 0);
    EXPECT_EQ(window.get_num_WGL_extensions(), 0);
    EXPECT_EQ(window.get_num_GLX_extensions(), 0);
    EXPECT_EQ(window.opengl_get_ctx(), nullptr);
    EXPECT_EQ(window.osx_get_cgl_ctx(), nullptr);
    EXPECT_EQ(window.osx_get_nsgl_ctx(), nullptr);
    EXPECT_EQ(window.d3d_get_device(), nullptr);
    EXPECT_EQ(window.d3d11_get_device_ctx(), nullptr);
}

TEST_F(RenderWindowOpenGLTest, has_an_id_of_its_own) {
    const RenderWindowOpenGL other;
    EXPECT_NE(window.get_id(), other.get_id());
}

TEST_F(RenderWindowOpenGLTest, refuses_every_context_operation_without_a_context) {
    for (bool state : {false, true}) {
        EXPECT_FALSE(window.apply_context(state));
        EXPECT_FALSE(window.osx_apply_context(state));
        EXPECT_FALSE(window.osx_apply_context_cocoa(state));
        EXPECT_FALSE(window.osx_vsync(state));
        EXPECT_FALSE(window.osx_vsync_cocoa(state));
        EXPECT_FALSE(window.osx_lock_context(state));
        EXPECT_FALSE(window.osx_enable_multi_threaded_gl_engine(state));
    }
    EXPECT_FALSE(window.display_framebuffer());
    EXPECT_FALSE(window.osx_display_framebuffer());
    EXPECT_FALSE(window.osx_display_framebuffer_cocoa());
    EXPECT_FALSE(window.osx_update_context_cocoa());
    EXPECT_FALSE(window.osx_update_current_virtual_screen_ctx());
    EXPECT_EQ(window.osx_get_current_virtual_screen(), -1);
    EXPECT_FALSE(window.osx_set_current_virtual_screen(0));
    EXPECT_EQ(window.osx_get_num_of_virtual_screens(), -1);
    EXPECT_TRUE(window.osx_kill_context());
    EXPECT_TRUE(window.terminate());
    EXPECT_EQ(platform.take_events(), Events());
}

TEST_F(RenderWindowOpenGLTest, asks_by_default_for_a_legacy_double_buffered_hardware_context) {
    EXPECT_TRUE(initialize());
    ASSERT_EQ(platform.requests.size(), 1u);
    const ContextRequest& request = platform.requests[0];
    EXPECT_EQ(request.profile, 0x1000);
    EXPECT_TRUE(request.double_buffer);
    EXPECT_FALSE(request.software_renderer);
    EXPECT_EQ(request.color_bits, 32);
    EXPECT_EQ(request.depth_bits, 32);
    EXPECT_EQ(request.stencil_bits, 0);
    EXPECT_EQ(request.samples, 0);
    EXPECT_EQ(request.width, 640);
    EXPECT_EQ(request.height, 480);
    EXPECT_EQ(request.display, nullptr);
    EXPECT_EQ(request.view, nullptr);
    EXPECT_EQ(request.share, nullptr);
}

TEST_F(RenderWindowOpenGLTest, has_a_request_record_with_the_same_defaults) {
    const RenderWindow_ExtraData extra;
    EXPECT_EQ(extra.gl_major, 2);
    EXPECT_EQ(extra.gl_minor, 1);
    EXPECT_FALSE(extra.core_profile);
    EXPECT_FALSE(extra.no_offline_renderers);
    EXPECT_FALSE(extra.software_renderer);
    EXPECT_EQ(extra.depth_bits, 32);
    EXPECT_EQ(extra.stencil_bits, 0);
    EXPECT_EQ(extra.color_bits, 32);
}

TEST_F(RenderWindowOpenGLTest, asks_for_core_from_version_3_on_and_tells_what_the_driver_gave) {
    serve_version("4.1 driver", 4, 1);
    RenderWindow_ExtraData extra;
    extra.gl_major = 4;
    extra.gl_minor = 1;
    EXPECT_TRUE(initialize(&extra));
    EXPECT_TRUE(extra.core_profile);
    EXPECT_EQ(platform.requests[0].profile, 0x3200);
    EXPECT_EQ(platform.requests[0].gl_major, 4);
    EXPECT_EQ(platform.requests[0].gl_minor, 1);
    EXPECT_EQ(window.get_api_3d(), 4);
}

TEST_F(RenderWindowOpenGLTest, writes_core_profile_by_the_major_version) {
    for (int major : {-1, 0, 1, 2, 3, 4, 5}) {
        RenderWindow_ExtraData extra;
        extra.gl_major = major;
        extra.core_profile = major < 3;
        EXPECT_TRUE(window.osx_create_cgl_context(nullptr, 1, 1, nullptr, nullptr, &extra));
        EXPECT_EQ(extra.core_profile, major >= 3) << major;
        EXPECT_EQ(platform.requests.back().profile, major >= 3 ? 0x3200 : 0x1000) << major;
        extra.core_profile = major < 3;
        EXPECT_TRUE(window.osx_create_cocoa_nsgl_context(nullptr, 1, 1, nullptr, nullptr, &extra));
        EXPECT_EQ(extra.core_profile, major >= 3) << major;
        EXPECT_EQ(platform.requests.back().profile, major >= 3 ? 0x3200 : 0x1000) << major;
    }
}

TEST_F(RenderWindowOpenGLTest, matches_the_name_of_multisampling_exactly) {
    struct Row {
        const char* name;
        int samples;
    };
    for (const Row& row :
         {Row{nullptr, 0}, Row{"", 0}, Row{"Off", 0}, Row{"2X MSAA", 2}, Row{"4X MSAA", 4},
          Row{"8X MSAA", 8}, Row{"4x msaa", 0}, Row{"4X MSAA ", 0}, Row{"16X MSAA", 0}}) {
        EXPECT_TRUE(initialize(nullptr, row.name));
        EXPECT_EQ(platform.requests.back().samples, row.samples) << (row.name ? row.name : "null");
        EXPECT_TRUE(
            window.osx_create_cocoa_nsgl_context(nullptr, 1, 1, row.name, nullptr, nullptr));
        EXPECT_EQ(platform.requests.back().samples, row.samples) << (row.name ? row.name : "null");
    }
}

TEST_F(RenderWindowOpenGLTest, hands_over_the_bits_and_stencil_on_one_way_only) {
    RenderWindow_ExtraData extra;
    extra.depth_bits = 16;
    extra.stencil_bits = 8;
    extra.color_bits = 24;
    EXPECT_TRUE(initialize(&extra));
    EXPECT_EQ(platform.requests[0].depth_bits, 16);
    EXPECT_EQ(platform.requests[0].color_bits, 24);
    EXPECT_EQ(platform.requests[0].stencil_bits, 0);
    EXPECT_TRUE(window.osx_create_cocoa_nsgl_context(nullptr, 3, 4, nullptr, nullptr, &extra));
    EXPECT_EQ(platform.requests[1].depth_bits, 16);
    EXPECT_EQ(platform.requests[1].color_bits, 24);
    EXPECT_EQ(platform.requests[1].stencil_bits, 8);
    EXPECT_EQ(platform.requests[1].width, 3);
    EXPECT_EQ(platform.requests[1].height, 4);
}

TEST_F(RenderWindowOpenGLTest, hands_over_the_native_display_and_drawable) {
    int display = 0;
    int view = 0;
    EXPECT_TRUE(window.initialize(&display, &view, 5, 6, nullptr, nullptr, nullptr));
    EXPECT_EQ(platform.requests[0].display, &display);
    EXPECT_EQ(platform.requests[0].view, &view);
    EXPECT_EQ(window.get_width(), 5);
    EXPECT_EQ(window.get_height(), 6);
}

TEST_F(RenderWindowOpenGLTest, makes_the_new_context_current) {
    EXPECT_TRUE(initialize());
    EXPECT_EQ(platform.take_events(), Events({"create 1", "make current 1"}));
    EXPECT_NE(window.osx_get_cgl_ctx(), nullptr);
    EXPECT_EQ(window.opengl_get_ctx(), window.osx_get_cgl_ctx());
    EXPECT_EQ(window.osx_get_nsgl_ctx(), nullptr);
}

TEST_F(RenderWindowOpenGLTest, fails_quietly_without_a_configuration_or_context) {
    platform.refuses_contexts = true;
    const LogCapture log;
    EXPECT_FALSE(initialize());
    EXPECT_EQ(log.messages(), std::vector<std::string>());
    EXPECT_EQ(window.get_width(), 640);
    EXPECT_EQ(window.osx_get_cgl_ctx(), nullptr);
    EXPECT_FALSE(window.apply_context(true));
    EXPECT_EQ(window.get_api_3d(), 2);
    EXPECT_EQ(platform.take_events(), Events());
}

TEST_F(RenderWindowOpenGLTest, keeps_its_context_when_a_second_one_fails) {
    EXPECT_TRUE(initialize());
    void* const first = window.osx_get_cgl_ctx();
    platform.take_events();
    platform.refuses_contexts = true;
    EXPECT_FALSE(window.osx_create_cgl_context(nullptr, 1, 1, nullptr, nullptr, nullptr));
    EXPECT_EQ(window.osx_get_cgl_ctx(), first);
    EXPECT_EQ(platform.take_events(), Events());
    EXPECT_FALSE(initialize());
    EXPECT_FALSE(window.apply_context(true));
}

TEST_F(RenderWindowOpenGLTest, ends_its_former_context_once_the_new_one_exists) {
    EXPECT_TRUE(initialize());
    platform.take_events();
    EXPECT_TRUE(initialize());
    EXPECT_EQ(platform.take_events(), Events({"create 2", "destroy 1", "make current 2"}));
}

TEST_F(RenderWindowOpenGLTest, shares_with_its_parent_on_both_ways) {
    EXPECT_TRUE(initialize());
    RenderWindowOpenGL child;
    EXPECT_TRUE(child.initialize(nullptr, nullptr, 1, 1, nullptr, &window, nullptr));
    ASSERT_NE(platform.requests.back().share, nullptr);
    EXPECT_EQ(platform.requests.back().share->handle(), window.osx_get_cgl_ctx());
    EXPECT_TRUE(child.osx_create_cocoa_nsgl_context(nullptr, 1, 1, nullptr, &window, nullptr));
    ASSERT_NE(platform.requests.back().share, nullptr);
    EXPECT_EQ(platform.requests.back().share->handle(), window.osx_get_cgl_ctx());
}

TEST_F(RenderWindowOpenGLTest, shares_nothing_with_a_parent_that_has_no_context) {
    RenderWindowOpenGL child;
    EXPECT_TRUE(child.initialize(nullptr, nullptr, 1, 1, nullptr, &window, nullptr));
    EXPECT_EQ(platform.requests.back().share, nullptr);
    EXPECT_FALSE(child.share_ctx(&window));
    EXPECT_FALSE(child.share_ctx(nullptr));
}

TEST_F(RenderWindowOpenGLTest, moves_its_context_with_apply_context) {
    EXPECT_TRUE(initialize());
    platform.take_events();
    EXPECT_TRUE(window.apply_context(false));
    EXPECT_TRUE(window.apply_context(true));
    EXPECT_TRUE(window.osx_apply_context_cocoa(false));
    EXPECT_TRUE(window.osx_apply_context_cocoa(true));
    EXPECT_EQ(platform.take_events(),
              Events({"release current", "make current 1", "release current", "make current 1"}));
}

TEST_F(RenderWindowOpenGLTest, tells_a_refused_context_on_the_lower_layer_only) {
    EXPECT_TRUE(initialize());
    platform.refuses_currency = true;
    EXPECT_FALSE(window.osx_apply_context(true));
    EXPECT_FALSE(window.osx_apply_context(false));
    EXPECT_TRUE(window.apply_context(true));
}

TEST_F(RenderWindowOpenGLTest, returns_false_from_display_framebuffer_though_the_frame_was_shown) {
    EXPECT_TRUE(initialize());
    platform.take_events();
    EXPECT_FALSE(window.display_framebuffer());
    EXPECT_TRUE(window.osx_display_framebuffer());
    EXPECT_TRUE(window.osx_display_framebuffer_cocoa());
    EXPECT_EQ(platform.take_events(), Events({"present 1", "present 1", "present 1"}));
}

TEST_F(RenderWindowOpenGLTest, flushes_a_software_renderer_before_it_shows_a_frame) {
    gl.user_data = &platform;
    gl.on_flush = [](void* user_data) {
        static_cast<orvex_test::FakeWindowPlatform*>(user_data)->note("flush");
    };
    RenderWindow_ExtraData extra;
    extra.software_renderer = true;
    EXPECT_TRUE(initialize(&extra));
    EXPECT_TRUE(platform.requests[0].software_renderer);
    EXPECT_FALSE(platform.requests[0].double_buffer);
    platform.take_events();
    EXPECT_FALSE(window.display_framebuffer());
    EXPECT_EQ(platform.take_events(), Events({"flush", "present 1"}));
}

TEST_F(RenderWindowOpenGLTest, tells_once_that_the_window_system_lost_a_context) {
    const LogCapture log(LOG_LEVEL_ERROR);
    for (std::size_t losses = 1; losses <= 2; ++losses) {
        ASSERT_TRUE(initialize());
        platform.loses_contexts = false;
        EXPECT_TRUE(window.osx_display_framebuffer());
        EXPECT_EQ(log.messages().size(), losses - 1);
        platform.loses_contexts = true;
        for (int i = 0; i < 3; ++i)
            EXPECT_TRUE(window.osx_display_framebuffer()) << "as ever";
        EXPECT_EQ(log.messages().size(), losses);
    }
    EXPECT_TRUE(log.has("<*> OpenGL context lost by the window system: nothing is drawn until the"
                        " window has another"));
}

TEST_F(RenderWindowOpenGLTest, asks_for_a_context_that_tells_of_resets_unless_a_host_refuses) {
    RenderWindow_ExtraData extra;
    EXPECT_TRUE(extra.reset_notification);
    for (const bool wanted : {true, false}) {
        extra.reset_notification = wanted;
        ASSERT_TRUE(initialize(&extra));
        EXPECT_EQ(platform.requests.back().robust, wanted);
    }
}

TEST_F(RenderWindowOpenGLTest, sets_the_swap_interval_to_one_or_zero) {
    EXPECT_TRUE(window.vsync(true)) << "even without a context";
    EXPECT_TRUE(initialize());
    platform.take_events();
    EXPECT_TRUE(window.vsync(true));
    EXPECT_TRUE(window.vsync(false));
    EXPECT_TRUE(window.osx_vsync(true));
    EXPECT_TRUE(window.osx_vsync_cocoa(false));
    EXPECT_EQ(platform.take_events(),
              Events({"interval 1 of 1", "interval 0 of 1", "interval 1 of 1", "interval 0 of 1"}));
}

TEST_F(RenderWindowOpenGLTest, notes_a_new_size_and_takes_it_up_when_told) {
    EXPECT_TRUE(initialize());
    platform.take_events();
    window.update_size(30, 20);
    EXPECT_EQ(window.get_width(), 30);
    EXPECT_EQ(window.get_height(), 20);
    EXPECT_EQ(platform.take_events(), Events());
    EXPECT_TRUE(window.osx_update_context_cocoa());
    EXPECT_TRUE(window.osx_update_current_virtual_screen_ctx());
    EXPECT_EQ(platform.take_events(), Events({"resize 1 to 30x20", "resize 1 to 30x20"}));
    platform.refuses_sizes = true;
    EXPECT_FALSE(window.osx_update_context_cocoa());
}

/// A subclass may widen what happens at a new size, also during `initialize`.
TEST_F(RenderWindowOpenGLTest, takes_its_first_size_through_the_virtual_operation) {
    class Listener : public RenderWindowOpenGL {
    public:
        std::vector<int> sizes;
        void update_size(int width, int height) override {
            sizes = {width, height};
            RenderWindowOpenGL::update_size(width, height);
        }
    };
    Listener listener;
    EXPECT_TRUE(listener.initialize(nullptr, nullptr, 7, 8, nullptr, nullptr, nullptr));
    EXPECT_EQ(listener.sizes, std::vector<int>({7, 8}));
}

TEST_F(RenderWindowOpenGLTest, has_one_virtual_screen) {
    EXPECT_TRUE(initialize());
    EXPECT_EQ(window.osx_get_current_virtual_screen(), 0);
    EXPECT_EQ(window.osx_get_num_of_virtual_screens(), 1);
    EXPECT_TRUE(window.osx_set_current_virtual_screen(0));
    EXPECT_FALSE(window.osx_set_current_virtual_screen(1));
    EXPECT_FALSE(window.osx_set_current_virtual_screen(-1));
    EXPECT_FALSE(window.osx_enable_multi_threaded_gl_engine(true));
}

TEST_F(RenderWindowOpenGLTest, kills_its_context_and_releases_nothing_else) {
    EXPECT_TRUE(initialize());
    platform.take_events();
    EXPECT_TRUE(window.osx_kill_context());
    EXPECT_EQ(platform.take_events(), Events({"destroy 1"}));
    EXPECT_EQ(window.osx_get_cgl_ctx(), nullptr);
    EXPECT_TRUE(window.osx_kill_context());
    EXPECT_EQ(platform.take_events(), Events());
}

TEST_F(RenderWindowOpenGLTest, can_begin_again_after_terminate) {
    EXPECT_TRUE(initialize());
    EXPECT_TRUE(window.terminate());
    EXPECT_FALSE(window.apply_context(true));
    EXPECT_EQ(window.osx_get_cgl_ctx(), nullptr);
    EXPECT_TRUE(initialize());
    EXPECT_TRUE(window.apply_context(true));
}

TEST_F(RenderWindowOpenGLTest, ends_its_context_with_itself) {
    {
        RenderWindowOpenGL other;
        EXPECT_TRUE(other.initialize(nullptr, nullptr, 1, 1, nullptr, nullptr, nullptr));
        platform.take_events();
    }
    EXPECT_EQ(platform.take_events(), Events({"destroy 1"}));
}

TEST_F(RenderWindowOpenGLTest, adopts_no_null_and_nothing_that_isnt_current) {
    platform.has_host_context = true;
    EXPECT_FALSE(window.osx_init_with_cocoa_nsgl_ctx(nullptr));
    platform.has_host_context = false;
    int host = 0;
    EXPECT_FALSE(window.osx_init_with_cocoa_nsgl_ctx(&host));
    EXPECT_FALSE(window.apply_context(true));
    EXPECT_EQ(window.osx_get_cgl_ctx(), nullptr);
}

TEST_F(RenderWindowOpenGLTest, adopts_the_hosts_context_and_logs_the_version) {
    platform.has_host_context = true;
    const LogCapture log;
    int host = 0;
    EXPECT_TRUE(window.osx_init_with_cocoa_nsgl_ctx(&host));
    EXPECT_EQ(log.messages(),
              std::vector<std::string>({"<o> MacOSX/Cocoa GL render window - CGL version: 1.7"}));
    EXPECT_EQ(window.osx_get_cgl_ctx(), &host);
    EXPECT_TRUE(window.apply_context(true));
    EXPECT_EQ(platform.take_events(), Events({"adopt 1", "make current 1"}));
}

TEST_F(RenderWindowOpenGLTest, keeps_a_context_of_its_own_that_is_handed_back_to_it) {
    platform.has_host_context = true;
    EXPECT_TRUE(initialize());
    platform.take_events();
    EXPECT_TRUE(window.osx_init_with_cocoa_nsgl_ctx(window.osx_get_cgl_ctx()));
    EXPECT_EQ(platform.take_events(), Events());
}

TEST_F(RenderWindowOpenGLTest, ends_its_own_context_when_it_adopts_one) {
    platform.has_host_context = true;
    EXPECT_TRUE(initialize());
    EXPECT_TRUE(window.apply_context(false));
    platform.take_events();
    int host = 0;
    EXPECT_TRUE(window.osx_init_with_cocoa_nsgl_ctx(&host));
    EXPECT_EQ(platform.take_events(), Events({"adopt 2", "destroy 1"}));
}

TEST_F(RenderWindowOpenGLTest, never_takes_its_own_context_for_the_hosts) {
    platform.has_host_context = true;
    EXPECT_TRUE(initialize());
    void* const own = window.osx_get_cgl_ctx();
    platform.take_events();
    int host = 0;
    EXPECT_FALSE(window.osx_init_with_cocoa_nsgl_ctx(&host));
    EXPECT_EQ(platform.take_events(), Events());
    EXPECT_EQ(window.osx_get_cgl_ctx(), own);
    EXPECT_EQ(platform.current, own);
}

TEST_F(RenderWindowOpenGLTest, looks_anew_at_a_context_that_it_adopts_again) {
    platform.has_host_context = true;
    int host = 0;
    EXPECT_TRUE(window.osx_init_with_cocoa_nsgl_ctx(&host));
    EXPECT_TRUE(window.osx_init_with_cocoa_nsgl_ctx(&host));
    EXPECT_EQ(platform.take_events(), Events({"adopt 1", "adopt 2", "destroy 1"}));
    platform.has_host_context = false;
    EXPECT_FALSE(window.osx_init_with_cocoa_nsgl_ctx(&host)) << "nothing is current";
    EXPECT_EQ(window.osx_get_cgl_ctx(), &host);
}

TEST_F(RenderWindowOpenGLTest, refuses_a_context_of_which_its_opengl_knows_nothing) {
    platform.has_host_context = true;
    gl.serve(nullptr, 0, 0);
    int host = 0;
    EXPECT_FALSE(window.osx_init_with_cocoa_nsgl_ctx(&host));
    EXPECT_EQ(window.osx_get_cgl_ctx(), nullptr);
    EXPECT_FALSE(window.apply_context(true));
}

TEST_F(RenderWindowOpenGLTest, shares_the_lock_of_a_context_with_every_window_that_adopted_it) {
    platform.has_host_context = true;
    int host = 0;
    RenderWindowOpenGL other;
    ASSERT_TRUE(window.osx_init_with_cocoa_nsgl_ctx(&host));
    ASSERT_TRUE(other.osx_init_with_cocoa_nsgl_ctx(&host));
    int count = 0;
    const auto work = [&](RenderWindowOpenGL& through) {
        for (int i = 0; i < 1000; ++i) {
            through.osx_lock_context(true);
            ++count;
            through.osx_lock_context(false);
        }
    };
    std::thread first([&] { work(window); });
    std::thread second([&] { work(other); });
    first.join();
    second.join();
    EXPECT_EQ(count, 2000);
    EXPECT_TRUE(window.osx_lock_context(true));
    EXPECT_TRUE(other.osx_lock_context(false)) << "it is one lock";
    EXPECT_FALSE(window.osx_lock_context(false));
}

TEST_F(RenderWindowOpenGLTest, has_a_lock_of_its_own_for_a_context_of_its_own) {
    EXPECT_TRUE(initialize());
    RenderWindowOpenGL other;
    ASSERT_TRUE(other.initialize(nullptr, nullptr, 1, 1, nullptr, nullptr, nullptr));
    EXPECT_TRUE(window.osx_lock_context(true));
    EXPECT_FALSE(other.osx_lock_context(false));
    EXPECT_TRUE(window.osx_lock_context(false));
}

TEST_F(RenderWindowOpenGLTest, gives_its_lock_back_only_to_the_thread_that_holds_it) {
    EXPECT_TRUE(initialize());
    EXPECT_FALSE(window.osx_lock_context(false)) << "nobody holds it";
    EXPECT_TRUE(window.osx_lock_context(true));
    EXPECT_TRUE(window.osx_lock_context(true)) << "it counts";
    bool stolen = true;
    std::thread([&] { stolen = window.osx_lock_context(false); }).join();
    EXPECT_FALSE(stolen);
    EXPECT_TRUE(window.osx_lock_context(false));
    EXPECT_TRUE(window.osx_lock_context(false));
    EXPECT_FALSE(window.osx_lock_context(false));
}

TEST_F(RenderWindowOpenGLTest, lets_one_thread_at_a_time_hold_its_lock) {
    EXPECT_TRUE(initialize());
    int count = 0;
    const auto work = [&] {
        for (int i = 0; i < 1000; ++i) {
            window.osx_lock_context(true);
            ++count;
            window.osx_lock_context(false);
        }
    };
    std::thread first(work);
    std::thread second(work);
    first.join();
    second.join();
    EXPECT_EQ(count, 2000);
}

TEST(WindowPlatform, goes_back_to_the_systems_own) {
    {
        const orvex_test::FakeWindowPlatform platform;
        EXPECT_EQ(&window_platform(), &platform);
    }
    EXPECT_EQ(&window_platform(), &native_window_platform());
}

} // namespace

} // namespace orvex_test
