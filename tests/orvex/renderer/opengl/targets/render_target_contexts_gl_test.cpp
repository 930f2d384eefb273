// Render targets in two windows, in windows that take the place of others, and in contexts of a
// host.

#include "tests/orvex/renderer/opengl/window_pair.h"

#include <array>
#include <functional>

#include "orvex/renderer/render_target.h"

namespace orvex_test {

using namespace orvex;

namespace {

constexpr GLuint most_names = 100; ///< beyond any that these tests get

class TargetContexts : public WindowPairTest {
protected:
    void SetUp() override {
        WindowPairTest::SetUp();
        target = renderer->create_render_target();
    }

    void TearDown() override {
        if (GetParam().core) {
            // The mode of clamping that depth textures ask for is one of the fixed pipeline's.
            const GlRecorderPause pause(*recorder);
            const GLenum error = glGetError();
            EXPECT_TRUE(error == GL_NO_ERROR || error == GL_INVALID_ENUM) << error;
        }
        WindowPairTest::TearDown();
    }

    bool create(RenderTarget* made) const {
        return made->create_target(16, 16, PF_RGBA_U8, false, false, false, 0);
    }

    /// Fills a target in a window, which stays current.
    void fill(RenderWindow* window, RenderTarget* filled, const Pixel& color) const {
        turn_to(window);
        EXPECT_TRUE(filled->activate());
        renderer->clear_color_buffer(static_cast<float>(color[0]) / 255.0f,
                                     static_cast<float>(color[1]) / 255.0f,
                                     static_cast<float>(color[2]) / 255.0f, 1.0f);
        EXPECT_TRUE(filled->deactivate());
    }

    /// What a target shows when it is copied to the current window.
    Pixel shown(RenderTarget* copied) const {
        EXPECT_TRUE(renderer->fbo_copy_color_buffer(copied->get_fbo(), 0, 16, 16, 0));
        return pixel();
    }

    /// The first texel of a target's colour texture, as a program samples it.
    Pixel sampled(RenderTarget* source) const {
        EXPECT_TRUE(renderer->render_target_bind_color_tex(source, 0, 0));
        const GlRecorderPause pause(*recorder);
        std::array<unsigned char, 16 * 16 * 4> texels = {};
        glActiveTexture(GL_TEXTURE0);
        glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_UNSIGNED_BYTE, texels.data());
        return {texels[0], texels[1], texels[2]};
    }

    bool is_complete(RenderTarget* asked) const {
        EXPECT_TRUE(asked->activate());
        const GlRecorderPause pause(*recorder);
        const GLenum status = glCheckFramebufferStatus(GL_FRAMEBUFFER);
        asked->deactivate();
        return status == GL_FRAMEBUFFER_COMPLETE;
    }

    /// How many textures, framebuffers and renderbuffers the current context has.
    int num_objects() const {
        const GlRecorderPause pause(*recorder);
        int count = 0;
        for (GLuint id = 1; id < most_names; ++id)
            count += glIsTexture(id) + glIsFramebuffer(id) + glIsRenderbuffer(id);
        return count;
    }

    void expect_nothing_made() const {
        for (const char* const name :
             {"glGenTextures", "glTexImage2D", "glGenFramebuffers", "glDeleteTextures",
              "glDeleteFramebuffers", "glFramebufferTexture2D", "glGenRenderbuffers"})
            EXPECT_EQ(recorder->count(name), 0) << name;
    }

    RenderTarget* target = nullptr;
};

INSTANTIATE_TEST_SUITE_P(of, TargetContexts,
                         testing::Values(pair_kinds[0], pair_kinds[1], pair_kinds[2],
                                         pair_kinds[3]),
                         pair_name);
INSTANTIATE_TEST_SUITE_P(adopted, TargetContexts, testing::ValuesIn(adopted_kinds), pair_name);

TEST_P(TargetContexts, are_made_once_for_each_window) {
    ASSERT_TRUE(create(target));
    for (int frame = 0; frame < 100; ++frame) {
        fill(first, target, red);
        EXPECT_EQ(shown(target), red);
        fill(second, target, green);
        EXPECT_EQ(shown(target), green);
        if (frame == 0)
            recorder->clear();
    }
    expect_nothing_made();
    EXPECT_EQ(sampled(target), green);
    turn_to(first);
    EXPECT_EQ(sampled(target), GetParam().shared ? green : red);
}

TEST_P(TargetContexts, of_windows_that_share_have_the_textures_in_common) {
    ASSERT_TRUE(create(target));
    fill(first, target, red);
    const unsigned int id = target->get_color_tex_id_opengl(0);
    turn_to(second);
    recorder->clear();
    EXPECT_EQ(target->get_color_tex_id_opengl(0) == id && recorder->count("glGenTextures") == 0,
              GetParam().shared);
    if (GetParam().shared) {
        EXPECT_EQ(sampled(target), red);
        EXPECT_EQ(shown(target), red);
    }
}

TEST_P(TargetContexts, that_are_read_in_a_window_without_them_have_nothing) {
    ASSERT_TRUE(create(target));
    fill(first, target, red);
    turn_to(second);
    std::array<unsigned char, 16 * 16 * 4> pixels = {};
    EXPECT_EQ(target->read_color_pixmap_rgba_u8(pixels.data()), GetParam().shared);
    turn_to(first);
    EXPECT_TRUE(target->read_color_pixmap_rgba_u8(pixels.data()));
    EXPECT_EQ(pixels[0], 255);
}

TEST_P(TargetContexts, of_every_form_are_made_in_every_window) {
    const std::function<bool()> forms[] = {
        [&] { return target->create_target_v2(8, 8, PF_RGBA_U8, 2, false, true, false, 0); },
        [&] { return target->create_target(8, 8, PF_RGBA_U8, false, false, false, 4); },
        [&] { return target->create_target_rect(8, 8, PF_RGBA_U8, false, true, false, 0); },
        [&] { return target->create_target_depth(8, 8, true, false); },
        [&] { return target->create_target_depth_rect(8, 8, true, false); },
        [&] { return target->create_render_buffer_target(8, 8, PF_RGBA_U8, false, 2, false, 0); },
        [&] { return target->create_render_buffer_target(8, 8, PF_RGBA_U8, false, 1, false, 4); }};
    for (const auto& create_form : forms) {
        turn_to(first);
        ASSERT_TRUE(create_form());
        for (RenderWindow* const window : {second, first, second}) {
            turn_to(window);
            EXPECT_TRUE(is_complete(target));
        }
        EXPECT_TRUE(target->kill());
        const GlRecorderPause pause(*recorder);
        forget_gl_errors(); // clamping and the modes of depths, on a core context
    }
}

TEST_P(TargetContexts, are_made_without_a_trace_in_what_is_bound) {
    if (GetParam().shared)
        return; // nothing is made but a framebuffer, by its own bind
    ASSERT_TRUE(target->create_target_v2(16, 16, PF_RGBA_U8, 2, false, false, false, 0));
    turn_to(second);
    GLuint textures[3] = {};
    GLuint frame = 0;
    {
        const GlRecorderPause pause(*recorder);
        glGenTextures(3, textures);
        for (GLuint i = 0; i < 3; ++i) {
            glActiveTexture(GL_TEXTURE0 + i);
            glBindTexture(GL_TEXTURE_2D, textures[i]);
        }
        glGenFramebuffers(1, &frame);
        glBindFramebuffer(GL_FRAMEBUFFER, frame);
    }
    EXPECT_NE(target->get_color_tex_id_opengl(1), 0U);

    const GlRecorderPause pause(*recorder);
    GLint bound = 0;
    glGetIntegerv(GL_ACTIVE_TEXTURE, &bound);
    EXPECT_EQ(bound, GL_TEXTURE2);
    for (GLuint i = 0; i < 3; ++i) {
        glActiveTexture(GL_TEXTURE0 + i);
        glGetIntegerv(GL_TEXTURE_BINDING_2D, &bound);
        EXPECT_EQ(static_cast<GLuint>(bound), textures[i]);
    }
    for (const GLenum binding : {GL_DRAW_FRAMEBUFFER_BINDING, GL_READ_FRAMEBUFFER_BINDING}) {
        glGetIntegerv(binding, &bound);
        EXPECT_EQ(static_cast<GLuint>(bound), frame);
    }
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    glDeleteFramebuffers(1, &frame);
    glDeleteTextures(3, textures);
}

TEST_P(TargetContexts, have_the_last_size_in_every_window) {
    ASSERT_TRUE(create(target));
    fill(first, target, red);
    fill(second, target, green);
    EXPECT_TRUE(target->resize(4, 4));
    for (RenderWindow* const window : {second, first}) {
        fill(window, target, blue);
        EXPECT_EQ(target->get_width(), 4);
        const GlRecorderPause pause(*recorder);
        GLint width = 0;
        glBindTexture(GL_TEXTURE_2D, target->get_color_tex_id_opengl(0));
        glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_WIDTH, &width);
        EXPECT_EQ(width, 4);
        EXPECT_TRUE(is_complete(target));
    }
}

TEST_P(TargetContexts, that_are_killed_in_one_window_leave_nothing_in_the_other) {
    turn_to(second);
    const int in_second = num_objects();
    turn_to(first);
    const int in_first = num_objects();
    ASSERT_TRUE(create(target));
    fill(first, target, red);
    fill(second, target, green);
    EXPECT_TRUE(target->kill());
    turn_to(first);
    renderer->clear_color_buffer(0.0f, 0.0f, 0.0f, 1.0f); // what is buried ends where it is met
    EXPECT_EQ(num_objects(), in_first);
    turn_to(second);
    EXPECT_EQ(num_objects(), in_second);
    EXPECT_EQ(target->get_color_tex_id_opengl(0), 0U);
    ASSERT_TRUE(create(target));
    fill(second, target, green);
    EXPECT_EQ(shown(target), green);
}

TEST_P(TargetContexts, take_nobody_elses_objects_for_theirs) {
    if (GetParam().shared)
        return;
    RenderTarget* const other = renderer->create_render_target();
    ASSERT_TRUE(create(target));
    fill(first, target, red);
    turn_to(second);
    ASSERT_TRUE(create(other));
    fill(second, other, green);
    EXPECT_EQ(other->get_fbo(), 1U) << "as that of the first window";
    fill(second, target, blue);
    EXPECT_EQ(shown(other), green);
    EXPECT_EQ(shown(target), blue);
    EXPECT_TRUE(target->kill());
    EXPECT_EQ(shown(other), green);
    turn_to(first);
    EXPECT_EQ(target->get_fbo(), 0U);
}

TEST_P(TargetContexts, outlive_their_windows) {
    RenderTarget* const other = renderer->create_render_target();
    ASSERT_TRUE(create(target));
    fill(first, target, red);
    fill(second, target, red);
    for (int i = 0; i < 3; ++i) {
        renderer->kill_all_render_windows();
        first = open(nullptr);
        ASSERT_TRUE(first);
        ASSERT_TRUE(create(other));
        fill(first, other, green);
        recorder->clear();
        fill(first, target, blue);
        EXPECT_EQ(recorder->count("glDeleteTextures"), 0) << "the old ones are gone";
        EXPECT_EQ(recorder->count("glDeleteFramebuffers"), 0);
        EXPECT_EQ(shown(target), blue);
        EXPECT_EQ(shown(other), green);
    }
}

TEST_P(TargetContexts, without_objects_are_activated_in_every_window) {
    for (int i = 0; i < 3; ++i)
        for (RenderWindow* const window : {first, second}) {
            turn_to(window);
            EXPECT_TRUE(target->activate());
            EXPECT_TRUE(target->deactivate());
        }
    EXPECT_EQ(recorder->count("glGenFramebuffers"), 2);
    EXPECT_TRUE(target->kill());
}

/// Contexts of a host, which may share; nobody tells.
class TargetsOfHosts : public testing::TestWithParam<bool> {};
INSTANTIATE_TEST_SUITE_P(on, TargetsOfHosts, testing::Bool());

TEST_P(TargetsOfHosts, are_shared_where_their_textures_are) {
    const bool shared = GetParam();
    const GlContext one;
    GlRecorder recorder;
    RendererOpenGL renderer;
    renderer.start();
    RenderTarget* const target = renderer.create_render_target();
    ASSERT_TRUE(target->create_target(16, 16, PF_RGBA_U8, false, false, false, 0));
    const unsigned int id = target->get_color_tex_id_opengl(0);
    const GlContext two(Profile::compatibility, 16, 16, shared ? &one : nullptr);
    for (int frame = 0; frame < 100; ++frame) {
        for (const GlContext* const host : {&two, &one}) {
            host->make_current();
            renderer.clear_color_buffer(0.0f, 0.0f, 0.0f, 1.0f);
            EXPECT_TRUE(target->activate());
            renderer.clear_color_buffer(0.0f, 1.0f, 0.0f, 1.0f);
            EXPECT_TRUE(target->deactivate());
            EXPECT_TRUE(renderer.fbo_copy_color_buffer(target->get_fbo(), 0, 16, 16, 0));
            const GlRecorderPause pause(recorder);
            EXPECT_EQ(pixel_at(8, 8), green);
            if (shared)
                EXPECT_EQ(target->get_color_tex_id_opengl(0), id);
        }
        if (frame == 0)
            recorder.clear();
    }
    for (const char* const name : {"glGenTextures", "glGenFramebuffers", "glTexImage2D"})
        EXPECT_EQ(recorder.count(name), 0) << name;
    renderer.kill_all_render_targets();
    // What waits for the other context is done there: the next one at its address can't be told
    // from it, and would lose what it has.
    two.make_current();
    renderer.clear_color_buffer(0.0f, 0.0f, 0.0f, 1.0f);
    const GlRecorderPause pause(recorder);
    EXPECT_NO_GL_ERROR();
}

} // namespace
} // namespace orvex_test
