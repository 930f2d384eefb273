// A view on whatever context is current: frames of a host that resizes, hides and replaces its
// window, and what is left of them.

#include "orvex_kit/windows/host_view.h"

#include <cstddef>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orvex_kit/compare.h"
#include "orvex_kit/engine.h"
#include "orvex_kit/model.h"
#include "tests/orvex_kit/gl_states.h"
#include "tests/orvex_kit/turning_torus.h"
#include "tests/orvex_kit/view_frame.h"
#include "tests/support/gl_context.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

namespace {

namespace kit = orvex::kit;

class HostViews : public testing::TestWithParam<kit::Path> {
protected:
    static kit::ViewOptions options() {
        kit::ViewOptions result;
        result.path = GetParam();
        return result;
    }
    static GlStates states() { return states_here(GetParam() == kit::Path::gl2); }
    static Profile profile() {
        return GetParam() == kit::Path::gl3 ? Profile::core : Profile::compatibility;
    }
    /// How many objects the current context has.
    static constexpr std::size_t programs = 5; ///< of `objects`
    static std::vector<int> objects() {
        std::vector<int> counts(7);
        for (GLuint id = 1; id < 500; ++id) {
            counts[0] += glIsBuffer(id);
            counts[1] += glIsTexture(id);
            counts[2] += glIsVertexArray(id);
            counts[3] += glIsFramebuffer(id);
            counts[4] += glIsRenderbuffer(id);
            counts[5] += glIsProgram(id);
            counts[6] += glIsShader(id);
        }
        return counts;
    }
    /// A frame of the torus, and its picture.
    static kit::Picture draw(kit::HostView& host, TurningTorus& torus, int number, int width,
                             int height) {
        kit::Picture drawn;
        EXPECT_TRUE(host.frame(width, height, [&](kit::View& view) {
            torus.draw(view, number);
            drawn = picture_of(view);
        })) << host.reason();
        return drawn;
    }
    static kit::Picture expected(int number, int width, int height) {
        kit::View view(width, height, options());
        TurningTorus().draw(view, number);
        return picture_of(view);
    }

    kit::Engine engine;
    TempDir folder;
};
INSTANTIATE_TEST_SUITE_P(on, HostViews, testing::Values(kit::Path::gl3, kit::Path::gl2), path_name);

TEST_P(HostViews, draw_what_a_view_off_screen_draws_and_leave_the_states) {
    const kit::Picture wanted = expected(2, 48, 32);
    const GlContext context(profile(), 48, 32);
    const GlStates before = states();
    kit::HostView host(options());
    TurningTorus torus;
    EXPECT_EQ(kit::compare(draw(host, torus, 2, 48, 32), wanted).reason, "");
    for (const auto& [name, values] : states())
        EXPECT_EQ(values, before.at(name)) << name;
    host.leave();
    EXPECT_EQ(states(), before);
}

TEST_P(HostViews, leave_nothing_behind_in_1000_cycles_of_resize_and_hide) {
    const GlContext context(profile(), 16, 16);
    kit::HostView host(options());
    TurningTorus torus;
    draw(host, torus, 0, 16, 16);
    draw(host, torus, 0, 12, 14);
    const std::vector<int> before = objects();
    for (int cycle = 0; cycle < 1000; ++cycle) {
        const int width = cycle % 2 == 0 ? 16 : 12;
        EXPECT_TRUE(host.frame(width, 14, [&](kit::View& view) { torus.draw(view, cycle % 5); }));
        EXPECT_FALSE(host.frame(0, 0, [](kit::View&) { ADD_FAILURE() << "it is hidden"; }));
        EXPECT_EQ(host.reason(), "");
    }
    EXPECT_EQ(objects(), before);
    EXPECT_NO_GL_ERROR();
}

TEST_P(HostViews, draw_into_the_framebuffer_that_is_bound_from_the_first_frame_on) {
    const GlContext context(profile(), 16, 16);
    GLuint framebuffer = 0;
    GLuint color = 0;
    glGenTextures(1, &color);
    glBindTexture(GL_TEXTURE_2D, color);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, 32, 32, 0, GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
    glGenFramebuffers(1, &framebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer);
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, color, 0);
    kit::HostView host(options());
    TurningTorus torus;
    for (const int size : {16, 32}) {
        const kit::Picture drawn = draw(host, torus, 1, size, size);
        unsigned char pixel[4] = {};
        glReadPixels(size - 1, size - 1, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel);
        EXPECT_EQ((Pixel{pixel[0], pixel[1], pixel[2], 255}), pixel_at(drawn, size - 1, 0));
        glClear(GL_COLOR_BUFFER_BIT);
    }
    host.leave();
}

TEST_P(HostViews, begin_again_in_the_next_context) {
    const kit::Picture wanted = expected(1, 16, 16);
    kit::HostView host(options());
    for (int i = 0; i < 3; ++i) {
        const GlContext context(profile(), 16, 16);
        TurningTorus torus;
        EXPECT_EQ(kit::compare(draw(host, torus, 1, 16, 16), wanted).reason, "");
        host.leave();
        EXPECT_FALSE(host.view());
    }
}

TEST_P(HostViews, leave_no_program_in_a_context_that_lives_on) {
    const std::string path = folder.file("some.obj");
    std::ofstream(path) << "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n";
    kit::Model model(path);
    ASSERT_TRUE(model) << model.reason();
    const GlContext context(profile(), 16, 16);
    kit::HostView host(options());
    TurningTorus torus;
    std::vector<int> before;
    for (int i = 0; i < 3; ++i) {
        draw(host, torus, 1, 16, 16);
        EXPECT_TRUE(host.frame(16, 16, [&](kit::View& view) { view.draw(model); }));
        EXPECT_GT(objects()[programs], 0);
        host.leave();
        EXPECT_EQ(objects()[programs], 0);
        if (i > 0)
            EXPECT_EQ(objects(), before) << "time " << i;
        before = objects();
    }
}

TEST_P(HostViews, say_why_there_is_no_frame) {
    kit::HostView host(options());
    const auto never = [](kit::View&) { ADD_FAILURE() << "there is nothing to draw"; };
    EXPECT_FALSE(host.frame(16, 16, never));
    EXPECT_EQ(host.reason(), "no OpenGL context is current: make the host's current first");
    host.leave();
    const GlContext context(profile(), 16, 16);
    EXPECT_TRUE(host.frame(16, 16, [](kit::View&) {}));
    EXPECT_EQ(host.reason(), "");
}

} // namespace

} // namespace orvex_test
