#include "render_target_fixture.h"

#include "orvex/renderer/opengl/window/linux/private/egl_api.h"
#include "orvex/renderer/render_window.h"

namespace orvex_test {

using namespace orvex;

namespace {

/// Which calls a target makes, in order and with their arguments.
class RenderTargetCalls : public RenderTargets {
protected:
    static GlCalls sampling(const char* texture_target, const char* filter, const char* wrap) {
        return {call("glTexParameteri(%s, GL_TEXTURE_MAG_FILTER, %s)", texture_target, filter),
                call("glTexParameteri(%s, GL_TEXTURE_MIN_FILTER, %s)", texture_target, filter),
                call("glTexParameteri(%s, GL_TEXTURE_WRAP_S, %s)", texture_target, wrap),
                call("glTexParameteri(%s, GL_TEXTURE_WRAP_T, %s)", texture_target, wrap)};
    }
    static GlCalls base_level(const char* texture_target) {
        return {call("glTexParameteri(%s, GL_TEXTURE_BASE_LEVEL, 0)", texture_target),
                call("glTexParameteri(%s, GL_TEXTURE_MAX_LEVEL, 0)", texture_target)};
    }
    static GlCalls new_texture(const char* texture_target, unsigned int id) {
        return {call("glGenTextures(1, [%u])", id),
                call("glBindTexture(%s, %u)", texture_target, id)};
    }
    static GlCalls storage(const char* texture_target, const char* rest) {
        return {call("glTexImage2D(%s, 0, %s, 0)", texture_target, rest)};
    }
    GlCalls new_framebuffer() {
        return {call("glGenFramebuffers(1, [%u])", target->get_fbo()),
                call("glBindFramebuffer(GL_FRAMEBUFFER, %u)", target->get_fbo())};
    }
    GlCalls bind_again() {
        return {call("glBindFramebuffer(GL_FRAMEBUFFER, %u)", target->get_fbo())};
    }
    static GlCalls attach(const char* point, const char* texture_target, unsigned int id) {
        return {call("glFramebufferTexture2D(GL_FRAMEBUFFER, %s, %s, %u, 0)", point, texture_target,
                     id)};
    }
    static GlCalls check() { return {"glCheckFramebufferStatus(GL_FRAMEBUFFER)"}; }
    static GlCalls leave() {
        return {"glBindFramebuffer(GL_FRAMEBUFFER, 0)", "glBindFramebuffer(GL_DRAW_FRAMEBUFFER, 0)",
                "glBindFramebuffer(GL_READ_FRAMEBUFFER, 0)"};
    }
    static GlCalls unbind(const char* texture_target) {
        return {call("glBindTexture(%s, 0)", texture_target)};
    }
    GlCalls attach_colors(const char* texture_target, int count) {
        if (count == 1)
            return joined({attach("GL_COLOR_ATTACHMENT0", texture_target, color()),
                           {"glDrawBuffers(1, [36064])"}});
        return joined({attach("GL_COLOR_ATTACHMENT0", texture_target, color(0)),
                       attach("GL_COLOR_ATTACHMENT1", texture_target, color(1)),
                       {"glDrawBuffers(2, [36064, 36065])"}});
    }
    /// The end of a create: from the new framebuffer to nothing bound.
    GlCalls framebuffer_of_textures(const char* texture_target, int num_colors) {
        return joined({new_framebuffer(),
                       bind_again(),
                       attach_colors(texture_target, num_colors),
                       attach("GL_DEPTH_ATTACHMENT", texture_target, depth()),
                       check(),
                       {"glBindFramebuffer(GL_DRAW_FRAMEBUFFER, 0)"},
                       leave(),
                       unbind(texture_target)});
    }
};
ORVEX_BOTH_PROFILES(RenderTargetCalls);

TEST_P(RenderTargetCalls, of_a_create_with_one_texture_name_its_kind) {
    for (const bool rectangle : {false, true}) {
        EXPECT_TRUE(rectangle ? target->create_target_rect(64, 32, PF_RGBA_U8, false, true, true, 0)
                              : target->create_target(64, 32, PF_RGBA_U8, false, true, true, 0));
        const char* const t = rectangle ? "GL_TEXTURE_RECTANGLE" : "GL_TEXTURE_2D";
        EXPECT_EQ(
            recorder->take(),
            joined({{"glActiveTexture(GL_TEXTURE0)"},
                    new_texture(t, color()),
                    storage(t, "GL_RGBA8, 64, 32, 0, GL_RGBA, GL_UNSIGNED_BYTE"),
                    sampling(t, "GL_LINEAR", "GL_CLAMP"),
                    new_texture(t, depth()),
                    base_level(t),
                    sampling(t, "GL_LINEAR", "GL_CLAMP"),
                    storage(t, "GL_DEPTH_COMPONENT32, 64, 32, 0, GL_DEPTH_COMPONENT, GL_FLOAT"),
                    framebuffer_of_textures(t, 1)}));
        target->kill();
        recorder->clear();
    }
}

TEST_P(RenderTargetCalls, of_a_create_with_several_textures) {
    EXPECT_TRUE(target->create_target_v2(8, 8, PF_RGBA_F32, 2, false, false, false, 0));
    const char* const t = "GL_TEXTURE_2D";
    const char* const rest = "GL_RGBA32F, 8, 8, 0, GL_RGBA, GL_FLOAT";
    EXPECT_EQ(recorder->take(),
              joined({{"glActiveTexture(GL_TEXTURE0)"},
                      new_texture(t, color(0)),
                      storage(t, rest),
                      sampling(t, "GL_NEAREST", "GL_REPEAT"),
                      {"glActiveTexture(GL_TEXTURE1)"},
                      new_texture(t, color(1)),
                      storage(t, rest),
                      sampling(t, "GL_NEAREST", "GL_REPEAT"),
                      new_texture(t, depth()),
                      base_level(t),
                      sampling(t, "GL_NEAREST", "GL_CLAMP"),
                      storage(t, "GL_DEPTH_COMPONENT32, 8, 8, 0, GL_DEPTH_COMPONENT, GL_FLOAT"),
                      framebuffer_of_textures(t, 2)}));
}

TEST_P(RenderTargetCalls, of_a_multisample_create_take_the_nearest_filter) {
    EXPECT_TRUE(target->create_target(16, 8, PF_RGBA_U8, false, true, true, 4));
    const char* const t = "GL_TEXTURE_2D_MULTISAMPLE";
    EXPECT_EQ(
        recorder->take(),
        joined({{"glActiveTexture(GL_TEXTURE0)"},
                new_texture(t, color()),
                base_level(t),
                {call("glTexImage2DMultisample(%s, 4, GL_RGBA8, 16, 8, false)", t)},
                sampling(t, "GL_NEAREST", "GL_CLAMP"),
                new_texture(t, depth()),
                base_level(t),
                sampling(t, "GL_NEAREST", "GL_CLAMP"),
                {call("glTexImage2DMultisample(%s, 4, GL_DEPTH_COMPONENT32, 16, 8, false)", t)},
                framebuffer_of_textures(t, 1)}));
    EXPECT_EQ(target->get_samples(), 4);
}

TEST_P(RenderTargetCalls, of_a_depth_create) {
    struct Row {
        const char* texture_target;
        bool rectangle;
    };
    for (const Row& row : {Row{"GL_TEXTURE_2D", false}, Row{"GL_TEXTURE_RECTANGLE", true}}) {
        EXPECT_TRUE(row.rectangle ? target->create_target_depth_rect(32, 16, true, false)
                                  : target->create_target_depth(32, 16, true, false));
        const char* const t = row.texture_target;
        EXPECT_EQ(
            recorder->take(),
            joined({{"glActiveTexture(GL_TEXTURE0)"},
                    new_texture(t, depth()),
                    storage(t, "GL_DEPTH_COMPONENT32, 32, 16, 0, GL_DEPTH_COMPONENT, GL_FLOAT"),
                    sampling(t, "GL_LINEAR", "GL_CLAMP"),
                    {"glTexParameteri(GL_TEXTURE_2D, GL_DEPTH_TEXTURE_MODE, GL_LUMINANCE)"},
                    new_framebuffer(),
                    bind_again(),
                    attach("GL_DEPTH_ATTACHMENT", t, depth()),
                    {"glDrawBuffer(0)", "glReadBuffer(0)"},
                    check(),
                    leave(),
                    unbind(t)}));
        target->kill();
        recorder->clear();
    }
}

TEST_P(RenderTargetCalls, of_a_depth_create_without_linear_take_the_nearest_filter) {
    target->create_target_depth(4, 4, false, false);
    EXPECT_EQ(parameter(GL_TEXTURE_2D, depth(), GL_TEXTURE_MAG_FILTER), GL_NEAREST);
    EXPECT_EQ(parameter(GL_TEXTURE_2D, depth(), GL_TEXTURE_MIN_FILTER), GL_NEAREST);
}

TEST_P(RenderTargetCalls, of_a_create_with_render_buffers) {
    EXPECT_TRUE(target->create_render_buffer_target(16, 8, PF_RGBA_U8, false, 2, false, 0));
    const GlCalls calls = recorder->take();
    const GLuint first = object(GL_COLOR_ATTACHMENT0);
    const GLuint second = object(GL_COLOR_ATTACHMENT1);
    const GLuint depth_buffer = object(GL_DEPTH_ATTACHMENT);
    EXPECT_EQ(calls,
              joined({{"glGetIntegerv(GL_MAX_SAMPLES, ptr)",
                       call("glGenRenderbuffers(2, [%u, %u])", first, second),
                       call("glBindRenderbuffer(GL_RENDERBUFFER, %u)", first),
                       "glRenderbufferStorage(GL_RENDERBUFFER, GL_RGBA8, 16, 8)",
                       call("glBindRenderbuffer(GL_RENDERBUFFER, %u)", second),
                       "glRenderbufferStorage(GL_RENDERBUFFER, GL_RGBA8, 16, 8)",
                       call("glGenRenderbuffers(1, [%u])", depth_buffer),
                       call("glBindRenderbuffer(GL_RENDERBUFFER, %u)", depth_buffer),
                       "glRenderbufferStorage(GL_RENDERBUFFER, GL_DEPTH_COMPONENT, 16, 8)"},
                      new_framebuffer(),
                      {call("glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, "
                            "GL_RENDERBUFFER, %u)",
                            first),
                       call("glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT1, "
                            "GL_RENDERBUFFER, %u)",
                            second),
                       call("glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, "
                            "GL_RENDERBUFFER, %u)",
                            depth_buffer)},
                      check(),
                      {"glBindFramebuffer(GL_FRAMEBUFFER, 0)"}}));
}

TEST_P(RenderTargetCalls, of_a_create_with_multisample_render_buffers) {
    EXPECT_TRUE(target->create_render_buffer_target(16, 8, PF_RGBA_U8, false, 1, false, 4));
    const GlCalls names = recorder->take();
    const GLuint first = object(GL_COLOR_ATTACHMENT0);
    const GLuint depth_buffer = object(GL_DEPTH_ATTACHMENT);
    const GlCalls storage_calls(names.begin() + 1, names.begin() + 7);
    EXPECT_EQ(storage_calls,
              GlCalls({call("glGenRenderbuffers(1, [%u])", first),
                       call("glBindRenderbuffer(GL_RENDERBUFFER, %u)", first),
                       "glRenderbufferStorageMultisample(GL_RENDERBUFFER, 4, GL_RGBA8, 16, 8)",
                       call("glGenRenderbuffers(1, [%u])", depth_buffer),
                       call("glBindRenderbuffer(GL_RENDERBUFFER, %u)", depth_buffer),
                       "glRenderbufferStorageMultisample(GL_RENDERBUFFER, 4, GL_DEPTH_COMPONENT, "
                       "16, 8)"}));
}

TEST_P(RenderTargetCalls, give_render_buffers_their_own_table_of_formats) {
    struct Row {
        int format;
        const char* internal_format;
    };
    for (const Row& row :
         {Row{PF_RGB_U8, "GL_RGB8"}, Row{PF_BGR_U8, "GL_BGR"}, Row{PF_RGBA_U8, "GL_RGBA8"},
          Row{PF_BGRA_U8, "GL_BGRA"}, Row{PF_RGB_F32, "GL_RGB32F"}, Row{PF_RGBA_F32, "GL_RGBA32F"},
          Row{PF_R_F32, "GL_R32F"}, Row{PF_RGB_F16, "GL_RGB16F"}, Row{PF_RGBA_F16, "GL_RGBA16F"},
          Row{PF_R_F16, "GL_R16F"}, Row{PF_NONE, "GL_RGBA8"}, Row{11, "GL_RGBA8"},
          Row{-1, "GL_RGBA8"}}) {
        recorder->clear();
        target->create_render_buffer_target(4, 4, static_cast<PIXEL_FORMAT>(row.format), false, 1,
                                            false, 0);
        const GlCalls calls = recorder->take();
        const std::string expected =
            call("glRenderbufferStorage(GL_RENDERBUFFER, %s, 4, 4)", row.internal_format);
        EXPECT_EQ(std::count(calls.begin(), calls.end(), expected), 1) << row.internal_format;
    }
}

TEST_P(RenderTargetCalls, give_textures_the_formats_of_uploads) {
    struct Row {
        int format;
        const char* arguments;
    };
    for (const Row& row : {Row{PF_RGB_U8, "GL_RGBA8, 4, 4, 0, GL_RGB, GL_UNSIGNED_BYTE"},
                           Row{PF_BGR_U8, "GL_RGBA8, 4, 4, 0, GL_BGR, GL_UNSIGNED_BYTE"},
                           Row{PF_RGBA_U8, "GL_RGBA8, 4, 4, 0, GL_RGBA, GL_UNSIGNED_BYTE"},
                           Row{PF_BGRA_U8, "GL_RGBA8, 4, 4, 0, GL_BGRA, GL_UNSIGNED_BYTE"},
                           Row{PF_RGB_F32, "GL_RGB32F, 4, 4, 0, GL_RGB, GL_FLOAT"},
                           Row{PF_RGBA_F32, "GL_RGBA32F, 4, 4, 0, GL_RGBA, GL_FLOAT"},
                           Row{PF_R_F32, "GL_R32F, 4, 4, 0, GL_RED, GL_FLOAT"},
                           Row{PF_RGB_F16, "GL_RGB16F, 4, 4, 0, GL_RGB, GL_FLOAT"},
                           Row{PF_RGBA_F16, "GL_RGBA16F, 4, 4, 0, GL_RGBA, GL_FLOAT"},
                           Row{PF_R_F16, "GL_R16F, 4, 4, 0, GL_RED, GL_FLOAT"},
                           Row{PF_NONE, "GL_RGBA8, 4, 4, 0, GL_RGBA, GL_UNSIGNED_BYTE"},
                           Row{11, "GL_RGBA8, 4, 4, 0, GL_RGBA, GL_UNSIGNED_BYTE"}}) {
        recorder->clear();
        target->create_target(4, 4, static_cast<PIXEL_FORMAT>(row.format), false, false, true, 0);
        const GlCalls calls = recorder->take();
        const std::string expected = storage("GL_TEXTURE_2D", row.arguments)[0];
        EXPECT_EQ(std::count(calls.begin(), calls.end(), expected), 1) << row.arguments;
    }
}

TEST_P(RenderTargetCalls, of_activate_make_the_framebuffer_once) {
    EXPECT_TRUE(target->activate());
    EXPECT_EQ(recorder->take(), new_framebuffer());
    EXPECT_TRUE(target->activate());
    EXPECT_EQ(recorder->take(), bind_again());
    EXPECT_TRUE(target->deactivate());
    EXPECT_EQ(recorder->take(), leave());
}

TEST_P(RenderTargetCalls, of_kill_delete_each_object_once) {
    target->create_target_v2(4, 4, PF_RGBA_U8, 2, false, false, true, 0);
    const unsigned int ids[] = {color(0), color(1), depth(), target->get_fbo()};
    recorder->clear();
    EXPECT_TRUE(target->kill());
    EXPECT_EQ(recorder->take(), GlCalls({call("glDeleteTextures(1, [%u])", ids[0]),
                                         call("glDeleteTextures(1, [%u])", ids[1]),
                                         call("glDeleteTextures(1, [%u])", ids[2]),
                                         call("glDeleteFramebuffers(1, [%u])", ids[3])}));
    EXPECT_EQ(color(0), 0u);
    EXPECT_EQ(depth(), 0u);
    EXPECT_EQ(target->get_fbo(), 0u);
    EXPECT_TRUE(target->kill()) << "twice";
    EXPECT_EQ(recorder->take(), GlCalls());
}

TEST_P(RenderTargetCalls, of_kill_delete_render_buffers) {
    target->create_render_buffer_target(4, 4, PF_RGBA_U8, false, 2, false, 0);
    const GLuint ids[] = {object(GL_COLOR_ATTACHMENT0), object(GL_COLOR_ATTACHMENT1),
                          object(GL_DEPTH_ATTACHMENT), target->get_fbo()};
    recorder->clear();
    EXPECT_TRUE(target->kill());
    EXPECT_EQ(recorder->take(), GlCalls({call("glDeleteRenderbuffers(1, [%u])", ids[0]),
                                         call("glDeleteRenderbuffers(1, [%u])", ids[1]),
                                         call("glDeleteRenderbuffers(1, [%u])", ids[2]),
                                         call("glDeleteFramebuffers(1, [%u])", ids[3])}));
    EXPECT_TRUE(target->kill());
    EXPECT_EQ(recorder->take(), GlCalls());
}

TEST_P(RenderTargetCalls, of_a_second_create_kill_the_first_objects) {
    create(4, 4);
    const unsigned int ids[] = {color(0), depth(), target->get_fbo()};
    EXPECT_TRUE(target->create_render_buffer_target(4, 4, PF_RGBA_U8, false, 1, false, 0));
    const GlCalls calls = recorder->take();
    EXPECT_EQ(GlCalls(calls.begin(), calls.begin() + 3),
              GlCalls({call("glDeleteTextures(1, [%u])", ids[0]),
                       call("glDeleteTextures(1, [%u])", ids[1]),
                       call("glDeleteFramebuffers(1, [%u])", ids[2])}));
    EXPECT_EQ(color(0), 0u);
}

TEST_P(RenderTargetCalls, of_resize_give_every_texture_new_storage) {
    struct Row {
        const char* texture_target;
        int samples;
        bool rectangle;
    };
    for (const Row& row : {Row{"GL_TEXTURE_2D", 0, false}, Row{"GL_TEXTURE_RECTANGLE", 0, true},
                           Row{"GL_TEXTURE_2D_MULTISAMPLE", 4, false}}) {
        EXPECT_TRUE(
            row.rectangle
                ? target->create_target_rect_v2(4, 4, PF_RGBA_F32, 2, false, false, true, 0)
                : target->create_target_v2(4, 4, PF_RGBA_F32, 2, false, false, true, row.samples));
        recorder->clear();
        EXPECT_TRUE(target->resize(32, 16));
        const char* const t = row.texture_target;
        const auto resized = [&](unsigned int id, const char* internal, const char* rest) {
            return GlCalls{
                call("glBindTexture(%s, %u)", t, id),
                row.samples > 0
                    ? call("glTexImage2DMultisample(%s, 4, %s, 32, 16, false)", t, internal)
                    : call("glTexImage2D(%s, 0, %s, 32, 16, 0, %s, 0)", t, internal, rest)};
        };
        EXPECT_EQ(recorder->take(), joined({resized(color(0), "GL_RGBA32F", "GL_RGBA, GL_FLOAT"),
                                            resized(color(1), "GL_RGBA32F", "GL_RGBA, GL_FLOAT"),
                                            resized(depth(), "GL_DEPTH_COMPONENT32",
                                                    "GL_DEPTH_COMPONENT, GL_FLOAT")}));
        EXPECT_EQ(target->get_width(), 32);
        EXPECT_EQ(target->get_height(), 16);
    }
}

TEST_P(RenderTargetCalls, of_resize_give_render_buffers_new_storage) {
    for (const int samples : {0, 4}) {
        EXPECT_TRUE(
            target->create_render_buffer_target(4, 4, PF_RGBA_U8, false, 1, false, samples));
        const GLuint first = object(GL_COLOR_ATTACHMENT0);
        const GLuint depth_buffer = object(GL_DEPTH_ATTACHMENT);
        recorder->clear();
        EXPECT_TRUE(target->resize(32, 16));
        const auto resized = [samples](GLuint id, const char* internal) {
            return GlCalls{
                call("glBindRenderbuffer(GL_RENDERBUFFER, %u)", id),
                samples > 0
                    ? call("glRenderbufferStorageMultisample(GL_RENDERBUFFER, 4, %s, 32, 16)",
                           internal)
                    : call("glRenderbufferStorage(GL_RENDERBUFFER, %s, 32, 16)", internal)};
        };
        EXPECT_EQ(recorder->take(), joined({resized(first, "GL_RGBA8"),
                                            resized(depth_buffer, "GL_DEPTH_COMPONENT")}));
    }
}

TEST_P(RenderTargetCalls, of_resize_without_objects_are_none) {
    create(4, 4);
    target->kill();
    recorder->clear();
    EXPECT_TRUE(target->resize(9, 7));
    EXPECT_EQ(recorder->take(), GlCalls());
    EXPECT_EQ(target->get_width(), 9);
    EXPECT_EQ(target->get_height(), 7);
}

TEST_P(RenderTargetCalls, of_the_clears) {
    create(4, 4);
    target->activate();
    recorder->clear();
    EXPECT_TRUE(target->clear_color_buffer(0, 0.25f, 0.5f, 0.75f, 1.0f));
    EXPECT_TRUE(target->clear_depth_buffer(0.5f));
    EXPECT_EQ(recorder->take(), GlCalls({"glClearBufferfv(GL_COLOR, 0, [0.25, 0.5, 0.75, 1])",
                                         "glClearBufferfv(GL_DEPTH, 0, [0.5])"}));
}

TEST_P(RenderTargetCalls, of_read_back) {
    create(4, 4);
    Bytes pixels(64);
    for (const bool alpha : {false, true}) {
        recorder->clear();
        EXPECT_TRUE(alpha ? target->read_color_pixmap_rgba_u8(pixels.data())
                          : target->read_color_pixmap_rgb_u8(pixels.data()));
        EXPECT_EQ(recorder->take(),
                  GlCalls({"glPixelStorei(GL_UNPACK_ALIGNMENT, 1)",
                           call("glBindTexture(GL_TEXTURE_2D, %u)", color()),
                           call("glGetTexImage(GL_TEXTURE_2D, 0, %s, GL_UNSIGNED_BYTE, ptr)",
                                alpha ? "GL_RGBA" : "GL_RGB")}));
    }
}

TEST_P(RenderTargetCalls, of_a_read_back_of_floats) {
    create(4, 4);
    std::vector<float> pixels(6 * 4 * 3);
    recorder->clear();
    EXPECT_TRUE(target->read_color_texture_f32(0, 3, pixels.data(), 6));
    // The packing is a host's, and comes back.
    GlCalls expected = {call("glBindTexture(GL_TEXTURE_2D, %u)", color())};
    for (const char* name : {"ALIGNMENT", "ROW_LENGTH", "SKIP_PIXELS", "SKIP_ROWS"})
        expected.push_back(call("glGetIntegerv(GL_PACK_%s, ptr)", name));
    for (const int row_length : {6, 0}) {
        expected.push_back("glPixelStorei(GL_PACK_ALIGNMENT, 4)");
        expected.push_back(call("glPixelStorei(GL_PACK_ROW_LENGTH, %d)", row_length));
        expected.push_back("glPixelStorei(GL_PACK_SKIP_PIXELS, 0)");
        expected.push_back("glPixelStorei(GL_PACK_SKIP_ROWS, 0)");
        if (row_length > 0)
            expected.push_back("glGetTexImage(GL_TEXTURE_2D, 0, GL_RGB, GL_FLOAT, ptr)");
    }
    EXPECT_EQ(recorder->take(), expected);
}

TEST_P(RenderTargetCalls, of_a_refused_read_back_are_none) {
    Bytes pixels(64);
    create(4, 4);
    EXPECT_FALSE(target->read_color_pixmap_rgb_u8(nullptr));
    create(4, 4, 4);
    EXPECT_FALSE(target->read_color_pixmap_rgb_u8(pixels.data()));
    EXPECT_FALSE(target->read_color_pixmap_rgba_u8(pixels.data()));
    EXPECT_EQ(recorder->take(), GlCalls());
}

TEST_P(RenderTargetCalls, of_a_colour_copy) {
    create(8, 4);
    const unsigned int fbo = target->get_fbo();
    EXPECT_TRUE(renderer->fbo_copy_color_buffer(fbo, 0, 8, 4, 3));
    const GlCalls copy = {
        call("glBindFramebuffer(GL_READ_FRAMEBUFFER, %u)", fbo),
        "glBindFramebuffer(GL_DRAW_FRAMEBUFFER, 0)",
        "glBlitFramebuffer(0, 0, 8, 4, 0, 0, 8, 4, GL_COLOR_BUFFER_BIT, GL_LINEAR)",
        "glBindFramebuffer(GL_FRAMEBUFFER, 0)"};
    EXPECT_EQ(recorder->take(), copy);
    EXPECT_FALSE(renderer->fbo_copy_color_buffer(5, 5, 8, 4, 0));
    EXPECT_EQ(recorder->take(), GlCalls());
    EXPECT_TRUE(renderer->fbo_copy_color_buffer_to_bound_fbo(fbo, 8, 4, 0));
    EXPECT_EQ(recorder->take(), joined({{"glGetIntegerv(GL_FRAMEBUFFER_BINDING, ptr)"}, copy}));
    target->activate();
    recorder->clear();
    EXPECT_FALSE(renderer->fbo_copy_color_buffer_to_bound_fbo(fbo, 8, 4, 0)) << "onto itself";
    EXPECT_EQ(recorder->take(), GlCalls({"glGetIntegerv(GL_FRAMEBUFFER_BINDING, ptr)"}));
}

TEST_P(RenderTargetCalls, of_a_blit_choose_mask_and_filter) {
    create(8, 4);
    RenderTarget* const other = renderer->create_render_target();
    other->create_target(16, 8, PF_RGBA_U8, false, false, true, 0);
    const unsigned int src = target->get_fbo();
    const unsigned int dst = other->get_fbo();
    struct Row {
        int dx1;
        int dy1;
        bool color;
        bool depth;
        const char* rest;
    };
    for (const Row& row : {
             Row{8, 4, true, false, "GL_COLOR_BUFFER_BIT, GL_NEAREST"},
             Row{16, 8, true, false, "GL_COLOR_BUFFER_BIT, GL_LINEAR"},
             Row{8, 8, true, false, "GL_COLOR_BUFFER_BIT, GL_LINEAR"},
             Row{16, 4, true, false, "GL_COLOR_BUFFER_BIT, GL_LINEAR"},
             Row{8, 4, false, true, "GL_DEPTH_BUFFER_BIT, GL_NEAREST"},
             Row{16, 8, false, true, "GL_DEPTH_BUFFER_BIT, GL_NEAREST"},
             Row{16, 8, true, true, "GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT, GL_NEAREST"},
             Row{8, 4, false, false, "0x0, GL_NEAREST"},
             Row{16, 8, false, false, "0x0, GL_LINEAR"},
         }) {
        recorder->clear();
        EXPECT_TRUE(
            renderer->fbo_blit(src, 1, 0, 8, 4, dst, 2, 3, row.dx1, row.dy1, row.color, row.depth));
        EXPECT_EQ(recorder->take(),
                  GlCalls({call("glBindFramebuffer(GL_READ_FRAMEBUFFER, %u)", src),
                           call("glBindFramebuffer(GL_DRAW_FRAMEBUFFER, %u)", dst),
                           call("glBlitFramebuffer(1, 0, 8, 4, 2, 3, %d, %d, %s)", row.dx1, row.dy1,
                                row.rest),
                           "glBindFramebuffer(GL_FRAMEBUFFER, 0)"}));
    }
    EXPECT_FALSE(renderer->fbo_blit(src, 0, 0, 8, 4, src, 0, 0, 8, 4, true, true));
    EXPECT_EQ(recorder->take(), GlCalls());
}

TEST_P(RenderTargetCalls, of_a_resolve_are_those_of_a_blit_of_both) {
    create(8, 4, 4);
    RenderTarget* const plain = renderer->create_render_target();
    plain->create_target(8, 4, PF_RGBA_U8, false, false, true, 0);
    recorder->clear();
    EXPECT_TRUE(
        renderer->fbo_resolve_multisampling(target->get_fbo(), 8, 4, plain->get_fbo(), 8, 4));
    EXPECT_EQ(recorder->take(),
              GlCalls({call("glBindFramebuffer(GL_READ_FRAMEBUFFER, %u)", target->get_fbo()),
                       call("glBindFramebuffer(GL_DRAW_FRAMEBUFFER, %u)", plain->get_fbo()),
                       "glBlitFramebuffer(0, 0, 8, 4, 0, 0, 8, 4, GL_COLOR_BUFFER_BIT | "
                       "GL_DEPTH_BUFFER_BIT, GL_NEAREST)",
                       "glBindFramebuffer(GL_FRAMEBUFFER, 0)"}));
}

// Depths of 32 bits don't go into 24, and the API would refuse the colours with them.
TEST_P(RenderTargetCalls, of_a_resolve_between_two_depth_formats_leave_the_depth_out) {
    create(8, 4, 4);
    recorder->clear();
    EXPECT_TRUE(renderer->fbo_resolve_multisampling(target->get_fbo(), 8, 4, 0, 8, 4));
    EXPECT_EQ(recorder->take()[2],
              "glBlitFramebuffer(0, 0, 8, 4, 0, 0, 8, 4, GL_COLOR_BUFFER_BIT, GL_NEAREST)");
}

TEST_P(RenderTargetCalls, of_a_resolve_with_one_depth_buffer_ask_for_both) {
    create(8, 4);
    RenderTarget* const bare = renderer->create_render_target();
    bare->activate();
    recorder->clear();
    EXPECT_TRUE(
        renderer->fbo_resolve_multisampling(target->get_fbo(), 8, 4, bare->get_fbo(), 8, 4));
    EXPECT_EQ(recorder->take()[2], "glBlitFramebuffer(0, 0, 8, 4, 0, 0, 8, 4, GL_COLOR_BUFFER_BIT "
                                   "| GL_DEPTH_BUFFER_BIT, GL_NEAREST)");
}

/// A framebuffer with a depth buffer of one format, and what it is made of.
class DepthFramebuffer {
public:
    DepthFramebuffer(GLenum format, GLenum point) {
        glGenRenderbuffers(2, buffers);
        glGenFramebuffers(1, &fbo);
        glBindFramebuffer(GL_FRAMEBUFFER, fbo);
        attach(buffers[0], GL_RGBA8, GL_COLOR_ATTACHMENT0);
        attach(buffers[1], format, point);
        EXPECT_EQ(glCheckFramebufferStatus(GL_FRAMEBUFFER), GLenum{GL_FRAMEBUFFER_COMPLETE});
        glBindFramebuffer(GL_FRAMEBUFFER, 0);
    }
    ~DepthFramebuffer() {
        glDeleteFramebuffers(1, &fbo);
        glDeleteRenderbuffers(2, buffers);
    }
    DepthFramebuffer(const DepthFramebuffer&) = delete;
    DepthFramebuffer& operator=(const DepthFramebuffer&) = delete;

    GLuint fbo = 0;

private:
    static void attach(GLuint buffer, GLenum format, GLenum point) {
        glBindRenderbuffer(GL_RENDERBUFFER, buffer);
        glRenderbufferStorage(GL_RENDERBUFFER, format, 8, 4);
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, point, GL_RENDERBUFFER, buffer);
    }

    GLuint buffers[2] = {};
};

// Of equal depths beside a stencil and alone many a driver copies neither them nor the colours.
TEST_P(RenderTargetCalls, of_a_copy_between_depths_with_and_without_a_stencil_leave_them_out) {
    const DepthFramebuffer plain(GL_DEPTH_COMPONENT24, GL_DEPTH_ATTACHMENT);
    const DepthFramebuffer packed(GL_DEPTH24_STENCIL8, GL_DEPTH_STENCIL_ATTACHMENT);
    const DepthFramebuffer other(GL_DEPTH24_STENCIL8, GL_DEPTH_STENCIL_ATTACHMENT);
    struct Row {
        GLuint src;
        GLuint dst;
        const char* mask;
    };
    for (const Row& row :
         {Row{plain.fbo, packed.fbo, "GL_COLOR_BUFFER_BIT"},
          Row{packed.fbo, plain.fbo, "GL_COLOR_BUFFER_BIT"},
          Row{packed.fbo, other.fbo, "GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT"}}) {
        recorder->clear();
        EXPECT_TRUE(renderer->fbo_resolve_multisampling(row.src, 8, 4, row.dst, 8, 4));
        EXPECT_EQ(recorder->take()[2],
                  call("glBlitFramebuffer(0, 0, 8, 4, 0, 0, 8, 4, %s, GL_NEAREST)", row.mask));
    }
    EXPECT_EQ(refused(), 0u);
}

// A toolkit's widget is drawn into an object of its own, and every way back ends there.
TEST_P(RenderTargetCalls, go_back_to_the_framebuffer_that_stands_for_the_window) {
    const DepthFramebuffer widget(GL_DEPTH_COMPONENT24, GL_DEPTH_ATTACHMENT);
    RenderWindow* const window = renderer->create_render_window();
    ASSERT_TRUE(window->osx_init_with_cocoa_nsgl_ctx(eglGetCurrentContext()));
    window->set_framebuffer(widget.fbo);
    const std::string back = call("glBindFramebuffer(GL_FRAMEBUFFER, %u)", widget.fbo);

    recorder->clear();
    EXPECT_TRUE(target->deactivate());
    EXPECT_EQ(recorder->take(),
              GlCalls({back, call("glBindFramebuffer(GL_DRAW_FRAMEBUFFER, %u)", widget.fbo),
                       call("glBindFramebuffer(GL_READ_FRAMEBUFFER, %u)", widget.fbo)}));
    EXPECT_TRUE(target->create_render_buffer_target(8, 4, PF_RGBA_U8, false, 1, false, 0));
    EXPECT_EQ(recorder->take().back(), back);
    EXPECT_TRUE(target->create_target_depth(8, 4, false, false));
    EXPECT_EQ(renderer->fbo_get_current_bound(), widget.fbo);
    EXPECT_TRUE(target->create_target(8, 4, PF_RGBA_U8, false, false, true, 0));
    EXPECT_EQ(renderer->fbo_get_current_bound(), widget.fbo);
    renderer->fbo_bind(target->get_fbo());
    renderer->fbo_bind(0);
    EXPECT_EQ(renderer->fbo_get_current_bound(), widget.fbo);

    recorder->clear();
    EXPECT_TRUE(renderer->fbo_copy_color_buffer(target->get_fbo(), 0, 8, 4, 0));
    const GlCalls copy = recorder->take();
    EXPECT_EQ(copy[1], call("glBindFramebuffer(GL_DRAW_FRAMEBUFFER, %u)", widget.fbo));
    EXPECT_EQ(copy.back(), back);
    EXPECT_TRUE(renderer->fbo_blit(0, 0, 0, 8, 4, target->get_fbo(), 0, 0, 8, 4, true, false));
    const GlCalls blit = recorder->take();
    EXPECT_EQ(blit[0], call("glBindFramebuffer(GL_READ_FRAMEBUFFER, %u)", widget.fbo));
    EXPECT_EQ(blit.back(), back);
    EXPECT_FALSE(renderer->fbo_copy_color_buffer(0, widget.fbo, 8, 4, 0)) << "onto itself";
    forgive();
}

TEST_P(RenderTargetCalls, go_back_to_what_was_told_last_of_the_current_context) {
    const DepthFramebuffer widget(GL_DEPTH_COMPONENT24, GL_DEPTH_ATTACHMENT);
    RenderWindow* const first = renderer->create_render_window();
    RenderWindow* const second = renderer->create_render_window();
    RenderWindow* const elsewhere = renderer->create_render_window();
    ASSERT_TRUE(first->osx_init_with_cocoa_nsgl_ctx(eglGetCurrentContext()));
    ASSERT_TRUE(second->osx_init_with_cocoa_nsgl_ctx(eglGetCurrentContext()));
    first->set_framebuffer(widget.fbo);
    second->set_framebuffer(77);
    first->set_framebuffer(widget.fbo);
    elsewhere->set_framebuffer(78);
    EXPECT_EQ(second->get_framebuffer(), 77u);
    target->deactivate();
    EXPECT_EQ(renderer->fbo_get_current_bound(), widget.fbo);
    first->set_framebuffer(0);
    target->deactivate();
    EXPECT_EQ(renderer->fbo_get_current_bound(), 0u);
    forgive();
}

TEST_P(RenderTargetCalls, of_binding_to_a_unit) {
    for (const int samples : {0, 4}) {
        create(8, 4, samples);
        const char* const t = samples > 0 ? "GL_TEXTURE_2D_MULTISAMPLE" : "GL_TEXTURE_2D";
        EXPECT_TRUE(renderer->render_target_bind_color_tex(target, 0, 3));
        EXPECT_EQ(recorder->take(), GlCalls({"glActiveTexture(GL_TEXTURE3)",
                                             call("glBindTexture(%s, %u)", t, color())}));
        EXPECT_TRUE(renderer->render_target_bind_depth_tex(target, 2));
        EXPECT_EQ(recorder->take(), GlCalls({"glActiveTexture(GL_TEXTURE2)",
                                             call("glBindTexture(%s, %u)", t, depth())}));
    }
    EXPECT_FALSE(renderer->render_target_bind_color_tex(nullptr, 0, 0));
    EXPECT_FALSE(renderer->render_target_bind_depth_tex(nullptr, 0));
    target->kill();
    recorder->clear();
    EXPECT_FALSE(renderer->render_target_bind_color_tex(target, 0, 0)) << "no texture";
    EXPECT_FALSE(renderer->render_target_bind_depth_tex(target, 0));
    EXPECT_EQ(recorder->take(), GlCalls());
}

// A rectangle goes the way of a 2D texture; who samples it binds it as a rectangle.
TEST_P(RenderTargetCalls, of_binding_a_rectangle_name_the_2d_target) {
    EXPECT_TRUE(target->create_target_rect(8, 4, PF_RGBA_U8, false, false, true, 0));
    recorder->clear();
    EXPECT_TRUE(renderer->render_target_bind_color_tex(target, 0, 1));
    EXPECT_EQ(recorder->take(), GlCalls({"glActiveTexture(GL_TEXTURE1)",
                                         call("glBindTexture(GL_TEXTURE_2D, %u)", color())}));
    EXPECT_TRUE(renderer->texture_activate_rect_rt(color(), 1));
    EXPECT_EQ(recorder->take(),
              GlCalls({"glActiveTexture(GL_TEXTURE1)",
                       call("glBindTexture(GL_TEXTURE_RECTANGLE, %u)", color())}));
}

TEST_P(RenderTargetCalls, of_raw_framebuffers) {
    create(8, 4);
    renderer->fbo_bind(target->get_fbo());
    EXPECT_EQ(renderer->fbo_get_current_bound(), target->get_fbo());
    renderer->fbo_bind(0);
    EXPECT_EQ(renderer->fbo_get_current_bound(), 0u);
    EXPECT_EQ(recorder->take(),
              GlCalls({call("glBindFramebuffer(GL_FRAMEBUFFER, %u)", target->get_fbo()),
                       "glGetIntegerv(GL_FRAMEBUFFER_BINDING, ptr)",
                       "glBindFramebuffer(GL_FRAMEBUFFER, 0)",
                       "glGetIntegerv(GL_FRAMEBUFFER_BINDING, ptr)"}));
}

TEST_P(RenderTargetCalls, are_none_where_an_entry_is_missing) {
    using Operation = bool (*)(Renderer*, RenderTarget*);
    const Operation textures = [](Renderer*, RenderTarget* t) {
        return t->create_target(4, 4, PF_RGBA_U8, false, false, true, 0) ||
               t->create_target_rect(4, 4, PF_RGBA_U8, false, false, true, 0) ||
               t->create_target_depth(4, 4, false, false) ||
               t->create_target_depth_rect(4, 4, false, false);
    };
    const Operation multisample = [](Renderer*, RenderTarget* t) {
        return t->create_target(4, 4, PF_RGBA_U8, false, false, true, 4);
    };
    const Operation buffers = [](Renderer*, RenderTarget* t) {
        return t->create_render_buffer_target(4, 4, PF_RGBA_U8, false, 1, false, 0);
    };
    const Operation activate = [](Renderer*, RenderTarget* t) { return t->activate(); };
    const Operation bind = [](Renderer* r, RenderTarget* t) {
        r->fbo_bind(0);
        return t->activate() || t->deactivate();
    };
    const Operation clears = [](Renderer*, RenderTarget* t) {
        return t->clear_color_buffer(0, 0, 0, 0, 0) || t->clear_depth_buffer(1);
    };
    const Operation blits = [](Renderer* r, RenderTarget*) {
        return r->fbo_copy_color_buffer(0, 1, 4, 4, 0) ||
               r->fbo_blit(0, 0, 0, 4, 4, 1, 0, 0, 4, 4, true, true) ||
               r->fbo_resolve_multisampling(0, 4, 4, 1, 4, 4);
    };
    struct Row {
        const char* hidden;
        Operation operation;
    };
    for (const Row& row : {
             Row{"glActiveTexture", textures},
             Row{"glGenFramebuffers", textures},
             Row{"glBindFramebuffer", textures},
             Row{"glFramebufferTexture2D", textures},
             Row{"glDrawBuffers", textures},
             Row{"glCheckFramebufferStatus", textures},
             Row{"glTexImage2DMultisample", multisample},
             Row{"glGenRenderbuffers", buffers},
             Row{"glBindRenderbuffer", buffers},
             Row{"glRenderbufferStorage", buffers},
             Row{"glRenderbufferStorageMultisample", buffers},
             Row{"glGenFramebuffers", buffers},
             Row{"glBindFramebuffer", buffers},
             Row{"glFramebufferRenderbuffer", buffers},
             Row{"glCheckFramebufferStatus", buffers},
             Row{"glGenFramebuffers", activate},
             Row{"glBindFramebuffer", bind},
             Row{"glClearBufferfv", clears},
             Row{"glBindFramebuffer", blits},
             Row{"glBlitFramebuffer", blits},
         }) {
        hide(row.hidden);
        EXPECT_FALSE(row.operation(renderer.get(), target)) << row.hidden;
        EXPECT_EQ(recorder->take(), GlCalls()) << row.hidden;
        EXPECT_EQ(target->get_width(), 0) << "nothing is stored";
    }
}

TEST_P(RenderTargetCalls, of_resize_are_none_without_multisample_storage) {
    create(4, 4, 4);
    recorder->hide("glTexImage2DMultisample");
    renderer->stop();
    renderer->start();
    forgive();
    EXPECT_FALSE(target->resize(8, 8));
    EXPECT_EQ(recorder->take(), GlCalls());
    EXPECT_EQ(target->get_width(), 4);
}

TEST_P(RenderTargetCalls, of_resize_are_none_without_storage_for_render_buffers) {
    EXPECT_TRUE(target->create_render_buffer_target(4, 4, PF_RGBA_U8, false, 1, false, 0));
    recorder->hide("glBindRenderbuffer");
    renderer->stop();
    renderer->start();
    forgive();
    EXPECT_FALSE(target->resize(8, 8));
    EXPECT_EQ(recorder->take(), GlCalls());
    EXPECT_EQ(target->get_width(), 4);
}

TEST_P(RenderTargetCalls, of_kill_are_none_without_an_entry_that_deletes) {
    EXPECT_TRUE(target->create_render_buffer_target(4, 4, PF_RGBA_U8, false, 1, false, 0));
    const GLuint buffer = object(GL_COLOR_ATTACHMENT0);
    recorder->hide("glDeleteRenderbuffers");
    renderer->stop();
    renderer->start();
    forgive();
    EXPECT_FALSE(target->kill());
    EXPECT_EQ(recorder->take(), GlCalls());
    EXPECT_EQ(object(GL_COLOR_ATTACHMENT0), buffer);
}

} // namespace

} // namespace orvex_test
