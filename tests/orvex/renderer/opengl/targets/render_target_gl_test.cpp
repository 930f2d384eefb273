#include "render_target_fixture.h"

#include "orvex/assets/textures/texture.h"
#include "orvex/assets/textures/texture_mgr.h"
#include "orvex/kernel/kernel.h"

namespace orvex_test {

using namespace orvex;

namespace {

constexpr const char* incomplete_attachment = "RenderTargetOpenGL - FBO creation error: 8CD6\r\n";

/// What targets do on a real context.
class RenderTargetTest : public RenderTargets {
protected:
    bool create_buffers(int format, unsigned long num_buffers, int samples) {
        return target->create_render_buffer_target(16, 8, static_cast<PIXEL_FORMAT>(format), false,
                                                   num_buffers, false, samples);
    }
    std::string errors() { return target->get_error_str(); }

    /// Each operation that needs the function table.
    bool any_operation_works() {
        unsigned char pixels[64] = {};
        return target->create_target(4, 4, PF_RGBA_U8, false, false, true, 0) ||
               target->create_target_v2(4, 4, PF_RGBA_U8, 2, false, false, true, 0) ||
               target->create_target_rect(4, 4, PF_RGBA_U8, false, false, true, 0) ||
               target->create_target_rect_v2(4, 4, PF_RGBA_U8, 2, false, false, true, 0) ||
               target->create_target_depth(4, 4, false, false) ||
               target->create_target_depth_rect(4, 4, false, false) ||
               target->create_render_buffer_target(4, 4, PF_RGBA_U8, false, 1, false, 0) ||
               target->clear_color_buffer(0, 0, 0, 0, 0) || target->clear_depth_buffer(1) ||
               target->read_color_pixmap_rgb_u8(pixels) ||
               target->read_color_pixmap_rgba_u8(pixels) || target->activate() ||
               target->deactivate() || target->resize(4, 4);
    }
};
ORVEX_BOTH_PROFILES(RenderTargetTest);

const Bytes red = {255, 0, 0, 255};
const Bytes green = {0, 255, 0, 255};
const Bytes blue = {0, 0, 255, 255};
const Bytes black = {0, 0, 0, 255};

// Life

TEST_P(RenderTargetTest, starts_empty) {
    EXPECT_EQ(target->get_width(), 0);
    EXPECT_EQ(target->get_height(), 0);
    EXPECT_EQ(target->get_samples(), 0);
    EXPECT_EQ(target->get_api3d(), 1);
    EXPECT_EQ(target->get_id(), target->getid());
    EXPECT_EQ(target->get_fbo(), 0u);
    EXPECT_EQ(color(), 0u);
    EXPECT_EQ(depth(), 0u);
    EXPECT_STREQ(target->get_error_str(), "");
    EXPECT_EQ(target->get_error_str_size(), 0u);
    EXPECT_TRUE(target->kill()) << "there is nothing to delete";
}

TEST_P(RenderTargetTest, is_inert_without_a_renderer) {
    RenderTargetOpenGL alone;
    target = &alone;
    EXPECT_FALSE(any_operation_works());
    EXPECT_TRUE(target->kill());
    EXPECT_EQ(target->get_width(), 0);
    EXPECT_EQ(recorder->take(), GlCalls());
}

TEST_P(RenderTargetTest, is_found_and_killed_by_pointer_and_by_id) {
    RenderTarget* const second = renderer->create_render_target();
    RenderTarget* const third = renderer->create_render_target();
    EXPECT_EQ(renderer->get_render_target(second->get_id()), second);
    EXPECT_EQ(renderer->get_render_target(target->get_id()), target);
    const int second_id = second->get_id();
    const int third_id = third->get_id();
    EXPECT_TRUE(third->create_target(4, 4, PF_RGBA_U8, false, false, true, 0));
    const GLuint texture = third->get_color_tex_id_opengl(0);
    EXPECT_TRUE(renderer->kill_render_target(second));
    EXPECT_EQ(renderer->get_render_target(second_id), nullptr);
    EXPECT_FALSE(renderer->kill_render_target(second)) << "no longer listed";
    EXPECT_FALSE(renderer->kill_render_target(second_id));
    EXPECT_TRUE(renderer->kill_render_target(third_id));
    EXPECT_FALSE(glIsTexture(texture)) << "its objects go with it";
    EXPECT_FALSE(renderer->kill_render_target(nullptr));
    EXPECT_EQ(renderer->targets.size(), 1U);
    EXPECT_EQ(renderer->get_render_target(target->get_id()), target);
}

TEST_P(RenderTargetTest, goes_with_all_the_others_and_the_answer_is_false) {
    create(4, 4);
    const GLuint texture = color();
    renderer->create_render_target();
    EXPECT_FALSE(renderer->kill_all_render_targets());
    EXPECT_EQ(renderer->targets.size(), 0U);
    EXPECT_FALSE(glIsTexture(texture));
    EXPECT_FALSE(renderer->kill_all_render_targets()) << "of none too";
}

TEST_P(RenderTargetTest, outlives_its_renderer_without_power) {
    create(4, 4);
    const GLuint ids[] = {color(), depth(), target->get_fbo()};
    renderer.reset();
    EXPECT_FALSE(any_operation_works());
    EXPECT_FALSE(target->kill()) << "the texture and the framebuffer are left";
    EXPECT_EQ(color(), ids[0]);
    EXPECT_EQ(depth(), 0u) << "the depth texture needs no table";
    EXPECT_TRUE(glIsTexture(ids[0]));
    EXPECT_FALSE(glIsTexture(ids[1]));
    delete target;
    glDeleteTextures(1, ids);
    glDeleteFramebuffers(1, &ids[2]);
    renderer = std::make_unique<RendererOpenGL>();
}

TEST_P(RenderTargetTest, keeps_its_objects_while_the_renderer_is_stopped) {
    create(4, 4);
    const GLuint ids[] = {color(), depth(), target->get_fbo()};
    renderer->stop();
    EXPECT_FALSE(target->kill());
    EXPECT_EQ(color(), ids[0]);
    EXPECT_EQ(depth(), ids[1]);
    EXPECT_EQ(target->get_fbo(), ids[2]);
    EXPECT_FALSE(target->create_target(8, 8, PF_RGBA_U8, false, false, true, 0));
    EXPECT_EQ(color(), ids[0]);
    renderer->start();
    forgive();
    EXPECT_TRUE(target->kill());
    EXPECT_FALSE(glIsTexture(ids[0]));
    EXPECT_FALSE(glIsTexture(ids[1]));
    EXPECT_FALSE(glIsFramebuffer(ids[2]));
}

TEST_P(RenderTargetTest, can_be_made_again_as_any_kind) {
    const auto rectangle = [this] {
        return target->create_target_rect(4, 4, PF_RGBA_U8, false, false, true, 0);
    };
    const auto depth_only = [this] { return target->create_target_depth(4, 4, false, false); };
    EXPECT_TRUE(rectangle());
    Bytes pixels(64);
    target->activate();
    clear(1, 0, 0, 1);
    target->deactivate();
    EXPECT_TRUE(target->read_color_pixmap_rgba_u8(pixels.data()));
    EXPECT_EQ(Bytes(pixels.begin(), pixels.begin() + 4), red);
    EXPECT_TRUE(create_buffers(PF_RGBA_U8, 2, 0));
    EXPECT_FALSE(target->read_color_pixmap_rgba_u8(pixels.data())) << "there is no texture now";
    EXPECT_EQ(color(), 0u);
    EXPECT_TRUE(depth_only());
    EXPECT_FALSE(target->read_color_pixmap_rgba_u8(pixels.data()));
    EXPECT_TRUE(create(4, 4));
    target->kill();
    EXPECT_TRUE(create(4, 4));
    EXPECT_EQ(errors(), "");
}

TEST_P(RenderTargetTest, gets_a_framebuffer_without_attachments_from_activate_alone) {
    EXPECT_TRUE(target->activate());
    EXPECT_NE(target->get_fbo(), 0u);
    EXPECT_EQ(asked(GL_FRAMEBUFFER_BINDING), static_cast<GLint>(target->get_fbo()));
    EXPECT_TRUE(target->deactivate());
    EXPECT_EQ(asked(GL_FRAMEBUFFER_BINDING), 0);
    EXPECT_EQ(
        attachment(GL_COLOR_ATTACHMENT0, GL_FRAMEBUFFER_ATTACHMENT_OBJECT_TYPE, target->get_fbo()),
        GL_NONE);
}

// Drawing and read-back

TEST_P(RenderTargetTest, is_drawn_into_and_read_back) {
    create(6, 3);
    target->activate();
    clear(0, 0, 1, 1);
    renderer->set_scissor(4, 2, 1, 1);
    renderer->set_scissor_state(true);
    clear(0, 1, 0, 0.2f);
    renderer->set_scissor_state(false);
    target->deactivate();
    Bytes rgba(6 * 3 * 4);
    EXPECT_TRUE(target->read_color_pixmap_rgba_u8(rgba.data()));
    Bytes rgb(20 * 3);
    EXPECT_TRUE(target->read_color_pixmap_rgb_u8(rgb.data()));
    for (unsigned long y = 0; y < 3; ++y)
        for (unsigned long x = 0; x < 6; ++x) {
            const bool marked = x == 4 && y == 2;
            const Bytes expected = marked ? Bytes{0, 255, 0, 51} : blue;
            const auto from = rgba.begin() + static_cast<std::ptrdiff_t>((y * 6 + x) * 4);
            EXPECT_EQ(Bytes(from, from + 4), expected) << x << ", " << y;
            // Rows of three channels are padded to a multiple of four bytes.
            const auto row = rgb.begin() + static_cast<std::ptrdiff_t>(y * 20 + x * 3);
            EXPECT_EQ(Bytes(row, row + 3), Bytes(expected.begin(), expected.begin() + 3));
        }
    EXPECT_NO_GL_ERROR();
}

TEST_P(RenderTargetTest, reads_each_texture_as_floats_into_rows_of_any_length) {
    EXPECT_TRUE(target->create_target_v2(3, 2, PF_RGBA_F32, 2, false, false, true, 0));
    forget_gl_errors(); // of the clamp that a core context doesn't have
    target->activate();
    target->clear_color_buffer(0, 1e-6f, -2.5f, 3e7f, 4.0f);
    target->clear_color_buffer(1, 5.0f, 6.0f, 7.0f, 8.0f);
    target->deactivate();
    // What a host set for reads of its own.
    glPixelStorei(GL_PACK_ALIGNMENT, 8);
    glPixelStorei(GL_PACK_ROW_LENGTH, 50);
    glPixelStorei(GL_PACK_SKIP_PIXELS, 2);
    glPixelStorei(GL_PACK_SKIP_ROWS, 1);
    for (const unsigned channels : {1u, 3u, 4u})
        for (const unsigned index : {0u, 1u}) {
            constexpr unsigned long length = 5;
            std::vector<float> pixels(length * 2 * channels, -1.0f);
            EXPECT_TRUE(target->read_color_texture_f32(index, channels, pixels.data(), length));
            const float expected[2][4] = {{1e-6f, -2.5f, 3e7f, 4.0f}, {5.0f, 6.0f, 7.0f, 8.0f}};
            for (unsigned long i = 0; i < pixels.size(); ++i) {
                const bool is_inside = i / channels % length < 3;
                EXPECT_EQ(pixels[i], is_inside ? expected[index][i % channels] : -1.0f) << i;
            }
        }
    EXPECT_EQ(asked(GL_PACK_ALIGNMENT), 8);
    EXPECT_EQ(asked(GL_PACK_ROW_LENGTH), 50);
    EXPECT_EQ(asked(GL_PACK_SKIP_PIXELS), 2);
    EXPECT_EQ(asked(GL_PACK_SKIP_ROWS), 1);
    EXPECT_NO_GL_ERROR();
}

TEST_P(RenderTargetTest, reads_bytes_as_floats) {
    create(2, 1);
    target->activate();
    clear(0, 1, 0, 0.2f);
    target->deactivate();
    std::vector<float> pixels(8);
    EXPECT_TRUE(target->read_color_texture_f32(0, 4, pixels.data(), 2));
    for (std::size_t i = 0; i < pixels.size(); ++i)
        EXPECT_FLOAT_EQ(pixels[i], i % 4 == 1 ? 1.0f : i % 4 == 3 ? 0.2f : 0.0f) << i;
}

TEST_P(RenderTargetTest, refuses_to_read_floats_that_it_hasnt) {
    std::vector<float> pixels(16 * 16 * 4, 9.0f);
    const auto reads = [&](unsigned index, unsigned channels, unsigned long length) {
        return target->read_color_texture_f32(index, channels, pixels.data(), length);
    };
    create(4, 4);
    EXPECT_FALSE(target->read_color_texture_f32(0, 4, nullptr, 4));
    EXPECT_FALSE(reads(1, 4, 4)) << "one texture";
    EXPECT_FALSE(reads(~0u, 4, 4));
    for (const unsigned channels : {0u, 2u, 5u, ~0u})
        EXPECT_FALSE(reads(0, channels, 4)) << channels;
    EXPECT_FALSE(reads(0, 4, 3)) << "rows that overlap";
    EXPECT_FALSE(reads(0, 4, ~0ul));
    create(4, 4, 4);
    EXPECT_FALSE(reads(0, 4, 4)) << "multisample";
    target->create_target_depth(4, 4, false, false);
    EXPECT_FALSE(reads(0, 4, 4)) << "no colours";
    create(16, 16);
    EXPECT_TRUE(target->resize(2, -1));
    EXPECT_FALSE(reads(0, 4, 4)) << "a size that was refused";
    target->kill();
    EXPECT_FALSE(reads(0, 4, 16)) << "nothing";
    EXPECT_EQ(pixels, std::vector<float>(pixels.size(), 9.0f));
}

TEST_P(RenderTargetTest, reads_back_a_rectangle) {
    EXPECT_TRUE(target->create_target_rect(5, 2, PF_RGBA_U8, false, false, true, 0));
    target->activate();
    clear(0, 1, 0, 1);
    target->deactivate();
    Bytes pixels(5 * 2 * 4);
    EXPECT_TRUE(target->read_color_pixmap_rgba_u8(pixels.data()));
    for (unsigned long i = 0; i < pixels.size(); i += 4)
        EXPECT_EQ(Bytes(pixels.begin() + static_cast<std::ptrdiff_t>(i),
                        pixels.begin() + static_cast<std::ptrdiff_t>(i) + 4),
                  green);
}

TEST_P(RenderTargetTest, refuses_to_read_back_what_it_cannot) {
    Bytes pixels(16 * 16 * 4, 9);
    create(4, 4);
    EXPECT_FALSE(target->read_color_pixmap_rgb_u8(nullptr));
    EXPECT_FALSE(target->read_color_pixmap_rgba_u8(nullptr));
    create(4, 4, 4);
    EXPECT_FALSE(target->read_color_pixmap_rgb_u8(pixels.data())) << "multisample";
    EXPECT_FALSE(target->read_color_pixmap_rgba_u8(pixels.data()));
    target->create_target_depth(4, 4, false, false);
    EXPECT_FALSE(target->read_color_pixmap_rgb_u8(pixels.data())) << "no colours";
    target->kill();
    EXPECT_FALSE(target->read_color_pixmap_rgba_u8(pixels.data())) << "nothing";
    EXPECT_EQ(pixels, Bytes(pixels.size(), 9));
}

TEST_P(RenderTargetTest, writes_no_more_than_its_size_after_a_resize_that_was_refused) {
    create(16, 16);
    EXPECT_TRUE(target->resize(2, -1)) << "the size is stored all the same";
    EXPECT_EQ(target->get_height(), -1);
    Bytes pixels(16, 9);
    EXPECT_FALSE(target->read_color_pixmap_rgba_u8(pixels.data()));
    EXPECT_EQ(pixels, Bytes(16, 9));
    EXPECT_TRUE(target->resize(2, 2));
    EXPECT_TRUE(target->read_color_pixmap_rgba_u8(pixels.data()));
}

TEST_P(RenderTargetTest, fills_each_of_several_textures) {
    EXPECT_TRUE(target->create_target_v2(4, 4, PF_RGBA_U8, 3, false, false, true, 0));
    target->activate();
    target->clear_color_buffer(0, 1, 0, 0, 1);
    target->clear_color_buffer(1, 0, 1, 0, 1);
    target->clear_color_buffer(2, 0, 0, 1, 1);
    target->clear_depth_buffer(0.25f);
    target->deactivate();
    const GLuint fbo = target->get_fbo();
    EXPECT_EQ(pixel(fbo, 3, 3, GL_COLOR_ATTACHMENT0), red);
    EXPECT_EQ(pixel(fbo, 3, 3, GL_COLOR_ATTACHMENT1), green);
    EXPECT_EQ(pixel(fbo, 3, 3, GL_COLOR_ATTACHMENT2), blue);
    EXPECT_EQ(depth_at(fbo, 0, 0), 0.25f);
}

TEST_P(RenderTargetTest, draws_into_several_textures_at_once) {
    EXPECT_TRUE(target->create_target_v2(4, 4, PF_RGBA_U8, 2, false, false, true, 0));
    target->activate();
    renderer->set_viewport(0, 0, 4, 4);
    clear(0, 0, 0, 1);
    draw(R"(#version 150
out vec4 colors[2];
void main() { colors[0] = vec4(1, 0, 0, 1); colors[1] = vec4(0, 1, 0, 1); }
)");
    target->deactivate();
    EXPECT_EQ(pixel(target->get_fbo(), 2, 2, GL_COLOR_ATTACHMENT0), red);
    EXPECT_EQ(pixel(target->get_fbo(), 2, 2, GL_COLOR_ATTACHMENT1), green);
}

TEST_P(RenderTargetTest, tests_depth_while_it_is_drawn_into) {
    create(4, 4);
    target->activate();
    renderer->set_viewport(0, 0, 4, 4);
    renderer->set_depth_test_state(true);
    const char* const fill = R"(#version 150
out vec4 color;
void main() { color = vec4(1, 0, 0, 1); }
)";
    clear(0, 0, 1, 1, 0.25f);
    draw(fill);
    EXPECT_EQ(pixel(target->get_fbo(), 1, 1), blue) << "behind";
    target->activate();
    clear(0, 0, 1, 1, 0.75f);
    draw(fill);
    EXPECT_EQ(pixel(target->get_fbo(), 1, 1), red) << "in front";
    EXPECT_EQ(depth_at(target->get_fbo(), 1, 1), 0.5f);
}

TEST_P(RenderTargetTest, takes_a_new_size) {
    create(4, 4);
    EXPECT_TRUE(target->resize(20, 10));
    EXPECT_EQ(level(GL_TEXTURE_2D, color(), GL_TEXTURE_WIDTH), 20);
    EXPECT_EQ(level(GL_TEXTURE_2D, depth(), GL_TEXTURE_HEIGHT), 10);
    target->activate();
    clear(0, 1, 0, 1);
    target->deactivate();
    EXPECT_EQ(pixel(target->get_fbo(), 19, 9), green);
    EXPECT_NO_GL_ERROR();
}

TEST_P(RenderTargetTest, keeps_its_kind_of_texture_through_a_resize) {
    EXPECT_TRUE(target->create_target_rect(4, 4, PF_RGBA_F32, false, false, true, 0));
    EXPECT_TRUE(target->resize(20, 10));
    EXPECT_EQ(level(GL_TEXTURE_RECTANGLE, color(), GL_TEXTURE_WIDTH), 20);
    EXPECT_EQ(level(GL_TEXTURE_RECTANGLE, color(), GL_TEXTURE_INTERNAL_FORMAT), GL_RGBA32F);
    EXPECT_TRUE(target->create_target_depth(4, 4, false, false));
    EXPECT_TRUE(target->resize(20, 10));
    EXPECT_EQ(level(GL_TEXTURE_2D, depth(), GL_TEXTURE_WIDTH), 20);
    create(4, 4, 4);
    EXPECT_TRUE(target->resize(20, 10));
    EXPECT_EQ(level(GL_TEXTURE_2D_MULTISAMPLE, color(), GL_TEXTURE_WIDTH), 20);
    EXPECT_EQ(level(GL_TEXTURE_2D_MULTISAMPLE, color(), GL_TEXTURE_SAMPLES), 4);
    EXPECT_EQ(level(GL_TEXTURE_2D_MULTISAMPLE, depth(), GL_TEXTURE_HEIGHT), 10);
}

// Limits

TEST_P(RenderTargetTest, lowers_samples_and_buffers_to_what_there_is) {
    const GLint limit = asked(GL_MAX_SAMPLES);
    ASSERT_LT(limit, 64);
    EXPECT_TRUE(create_buffers(PF_RGBA_U8, 12, 64));
    EXPECT_EQ(target->get_samples(), limit);
    const GlCalls calls = recorder->take();
    EXPECT_EQ(calls[1].substr(0, 21), "glGenRenderbuffers(8,");
    EXPECT_NE(object(GL_COLOR_ATTACHMENT7), 0u);
}

TEST_P(RenderTargetTest, stores_size_and_kind_of_render_buffers) {
    EXPECT_TRUE(create_buffers(PF_RGBA_U8, 1, -3));
    EXPECT_EQ(target->get_width(), 16);
    EXPECT_EQ(target->get_height(), 8);
    EXPECT_EQ(target->get_samples(), -3);
}

TEST_P(RenderTargetTest, has_at_most_eight_colour_textures) {
    for (const bool rectangle : {false, true}) {
        EXPECT_TRUE(rectangle
                        ? target->create_target_rect_v2(4, 4, PF_RGBA_U8, 9, false, false, true, 0)
                        : target->create_target_v2(4, 4, PF_RGBA_U8, 1000, false, false, true, 0));
        for (int i = 0; i < 8; ++i)
            EXPECT_EQ(object(GL_COLOR_ATTACHMENT0 + static_cast<GLenum>(i)), color(i));
        EXPECT_NE(color(7), color(0));
        EXPECT_EQ(color(8), color(0));
    }
}

TEST_P(RenderTargetTest, names_the_first_texture_for_an_index_beyond_the_count) {
    create(4, 4);
    EXPECT_NE(color(0), 0u);
    for (const int index : {3, 1, 8, -1, INT_MAX, INT_MIN})
        EXPECT_EQ(color(index), color(0)) << index;
}

TEST_P(RenderTargetTest, filters_linearly_only_without_samples) {
    struct Row {
        bool linear;
        int samples;
        GLint filter;
    };
    for (const Row& row :
         {Row{true, 0, GL_LINEAR}, Row{false, 0, GL_NEAREST}, Row{true, -1, GL_NEAREST}}) {
        target->create_target(4, 4, PF_RGBA_U8, false, row.linear, true, row.samples);
        for (const GLuint id : {color(), depth()})
            for (const GLenum name : {GL_TEXTURE_MAG_FILTER, GL_TEXTURE_MIN_FILTER})
                EXPECT_EQ(parameter(GL_TEXTURE_2D, id, name), row.filter) << row.samples;
    }
}

TEST_P(RenderTargetTest, leaves_unit_0_empty_in_the_record_and_in_fact) {
    renderer->ctx.set_texture_unit(0, 77);
    create(4, 4);
    EXPECT_EQ(renderer->ctx.texture_units[0].texture_id, 0u);
    EXPECT_EQ(asked(GL_TEXTURE_BINDING_2D), 0);
    renderer->ctx.set_texture_unit(0, 77);
    target->create_target_depth(4, 4, false, false);
    EXPECT_EQ(renderer->ctx.texture_units[0].texture_id, 0u);
}

// What the API refuses

TEST_P(RenderTargetTest, tells_when_render_buffers_have_no_such_format) {
    for (const int format : {PF_BGR_U8, PF_BGRA_U8}) {
        target->clear_error_str();
        EXPECT_FALSE(create_buffers(format, 1, 0)) << format;
        EXPECT_EQ(errors(), incomplete_attachment);
        EXPECT_EQ(target->get_error_str_size(), errors().size());
    }
    EXPECT_TRUE(create_buffers(PF_RGBA_U8, 1, 0)) << "and goes on";
}

TEST_P(RenderTargetTest, tells_when_a_rectangle_is_to_have_samples) {
    EXPECT_FALSE(target->create_target_rect(4, 4, PF_RGBA_U8, false, false, true, 4));
    EXPECT_EQ(errors(), incomplete_attachment);
    EXPECT_EQ(target->get_samples(), 0) << "they aren't stored";
    EXPECT_FALSE(target->create_target_rect_v2(4, 4, PF_RGBA_U8, 2, false, false, true, 2));
}

TEST_P(RenderTargetTest, tells_when_textures_are_to_have_more_samples_than_there_are) {
    EXPECT_FALSE(target->create_target(4, 4, PF_RGBA_U8, false, false, true, 1000));
    EXPECT_EQ(errors(), incomplete_attachment);
    EXPECT_TRUE(create(4, 4, 4)) << "and goes on";
}

TEST_P(RenderTargetTest, gathers_error_lines_until_they_are_cleared) {
    EXPECT_FALSE(target->create_target(0, 0, PF_RGBA_U8, false, false, true, 0));
    EXPECT_FALSE(target->create_target_depth(0, 4, false, false));
    EXPECT_FALSE(create_buffers(PF_BGR_U8, 1, 0));
    EXPECT_EQ(errors(),
              std::string(incomplete_attachment) +
                  "RenderTargetOpenGL::create_target_depth() - FBO creation error: 8CD6\r\n" +
                  incomplete_attachment);
    EXPECT_EQ(target->get_error_str_size(), errors().size());
    target->clear_error_str();
    EXPECT_EQ(errors(), "");
    EXPECT_EQ(target->get_error_str_size(), 0u);
}

TEST_P(RenderTargetTest, writes_the_status_with_four_digits) {
    renderer->gl.glCheckFramebufferStatus = [](GLenum) -> GLenum { return 0xA; };
    EXPECT_FALSE(target->create_target(4, 4, PF_RGBA_U8, false, false, true, 0));
    EXPECT_FALSE(target->create_target_depth(4, 4, false, false));
    EXPECT_EQ(errors(), "RenderTargetOpenGL - FBO creation error: 000A\r\n"
                        "RenderTargetOpenGL::create_target_depth() - FBO creation error: 000A\r\n");
}

TEST_P(RenderTargetTest, keeps_the_objects_of_a_failed_create_until_kill) {
    EXPECT_FALSE(target->create_target(-4, 4, PF_RGBA_U8, false, false, true, 0));
    const GLuint ids[] = {color(), depth(), target->get_fbo()};
    EXPECT_TRUE(glIsTexture(ids[0]));
    EXPECT_TRUE(glIsTexture(ids[1]));
    EXPECT_TRUE(glIsFramebuffer(ids[2]));
    EXPECT_TRUE(target->kill());
    EXPECT_FALSE(glIsTexture(ids[0]));
    EXPECT_FALSE(glIsTexture(ids[1]));
    EXPECT_FALSE(glIsFramebuffer(ids[2]));
    EXPECT_TRUE(create(4, 4));
}

TEST_P(RenderTargetTest, clamps_where_the_profile_knows_how_and_repeats_in_core) {
    EXPECT_TRUE(target->create_target(4, 4, PF_RGBA_U8, false, false, true, 0));
    EXPECT_EQ(refused(), core() ? 4u : 0u) << "two wraps of two textures";
    EXPECT_EQ(parameter(GL_TEXTURE_2D, color(), GL_TEXTURE_WRAP_S), core() ? GL_REPEAT : GL_CLAMP);
    forgive();
    EXPECT_TRUE(target->create_target(4, 4, PF_RGBA_U8, false, false, false, 0));
    EXPECT_EQ(parameter(GL_TEXTURE_2D, color(), GL_TEXTURE_WRAP_T), GL_REPEAT);
}

TEST_P(RenderTargetTest, is_complete_though_sampling_of_samples_is_refused) {
    EXPECT_TRUE(target->create_target(4, 4, PF_RGBA_U8, false, false, true, 4));
    EXPECT_EQ(refused(), 8u) << "filters and wraps of two textures";
    EXPECT_EQ(errors(), "");
}

TEST_P(RenderTargetTest, of_depth_is_complete_in_core_too) {
    EXPECT_TRUE(target->create_target_depth(4, 4, false, false));
    EXPECT_EQ(refused(), core() ? 3u : 0u) << "two wraps and the mode";
}

TEST_P(RenderTargetTest, takes_a_draw_buffer_that_is_not_there_as_the_apis_affair) {
    create(4, 4);
    target->activate();
    EXPECT_TRUE(target->clear_color_buffer(99, 1, 0, 0, 1));
    EXPECT_GL_ERROR(GL_INVALID_VALUE);
    target->deactivate();
}

// Copies

TEST_P(RenderTargetTest, forgets_its_samples_when_it_is_made_anew_without) {
    using Create = bool (*)(RenderTarget*);
    const Create depth_alone = [](RenderTarget* t) {
        return t->create_target_depth(64, 64, false, false);
    };
    const Create depth_rectangle = [](RenderTarget* t) {
        return t->create_target_depth_rect(64, 64, false, false);
    };
    const Create rectangle = [](RenderTarget* t) {
        return t->create_target_rect(64, 64, PF_RGBA_U8, false, false, true, 0);
    };
    for (const Create make : {depth_alone, depth_rectangle, rectangle}) {
        ASSERT_TRUE(create(64, 64, 4));
        EXPECT_TRUE(make(target));
        EXPECT_EQ(target->get_samples(), 0);
        forgive();
        EXPECT_TRUE(target->resize(32, 32));
        EXPECT_EQ(refused(), 0u);
        if (make == rectangle) {
            Bytes pixels(32 * 32 * 4);
            EXPECT_TRUE(target->read_color_pixmap_rgba_u8(pixels.data()));
        } else if (make == depth_alone)
            EXPECT_TRUE(renderer->render_target_bind_depth_tex(target, 0));
        EXPECT_EQ(refused(), 0u);
    }
}

TEST_P(RenderTargetTest, resolves_samples_into_a_plain_target) {
    create(8, 8, 4);
    RenderTarget* const plain = renderer->create_render_target();
    EXPECT_TRUE(plain->create_target(8, 8, PF_RGBA_U8, false, false, true, 0));
    forgive();
    target->activate();
    renderer->set_viewport(0, 0, 8, 8);
    clear(0, 0, 1, 1, 0.75f);
    renderer->rasterizer_set_msaa_state(true);
    renderer->rasterizer_apply_state();
    glEnable(GL_SAMPLE_MASK);
    glSampleMaski(0, 3); // two samples of the four
    draw(R"(#version 150
out vec4 color;
void main() { color = vec4(1, 0, 0, 1); }
)");
    glDisable(GL_SAMPLE_MASK);
    target->deactivate();
    EXPECT_TRUE(
        renderer->fbo_resolve_multisampling(target->get_fbo(), 8, 8, plain->get_fbo(), 8, 8));
    EXPECT_NO_GL_ERROR();
    Bytes pixels(8 * 8 * 4);
    EXPECT_TRUE(plain->read_color_pixmap_rgba_u8(pixels.data()));
    for (const unsigned long channel : {0ul, 2ul})
        EXPECT_NEAR(pixels[channel], 127.5, 0.5) << "the mean of four samples";
    EXPECT_EQ(pixels[1], 0);
    EXPECT_EQ(depth_at(plain->get_fbo(), 3, 3), 0.75f) << "the depths go along";
}

TEST_P(RenderTargetTest, resolves_the_colours_where_the_depths_are_of_another_kind) {
    RenderTarget* const plain = renderer->create_render_target();
    EXPECT_TRUE(plain->create_target(16, 8, PF_RGBA_U8, false, false, true, 0));
    EXPECT_TRUE(create_buffers(PF_RGBA_U8, 1, 4));
    forgive();
    target->activate();
    clear(0, 1, 0, 1);
    target->deactivate();
    EXPECT_TRUE(
        renderer->fbo_resolve_multisampling(target->get_fbo(), 16, 8, plain->get_fbo(), 16, 8));
    EXPECT_NO_GL_ERROR();
    EXPECT_EQ(pixel(plain->get_fbo(), 15, 7), green) << "into a texture";
    EXPECT_TRUE(plain->create_target(16, 8, PF_RGBA_U8, false, false, true, 4));
    forgive();
    plain->activate();
    clear(0, 0, 1, 1);
    plain->deactivate();
    EXPECT_TRUE(renderer->fbo_resolve_multisampling(plain->get_fbo(), 16, 8, 0, 16, 8));
    EXPECT_NO_GL_ERROR();
    EXPECT_EQ(pixel(0, 15, 7), blue) << "into the window";
}

TEST_P(RenderTargetTest, of_render_buffers_is_copied_to_the_window) {
    EXPECT_TRUE(create_buffers(PF_RGB_U8, 1, 0));
    target->activate();
    clear(1, 0, 0, 1);
    target->deactivate();
    clear(0, 0, 0, 1);
    EXPECT_TRUE(renderer->fbo_copy_color_buffer_to_bound_fbo(target->get_fbo(), 8, 4, 0));
    EXPECT_NO_GL_ERROR();
    EXPECT_EQ(pixel(0, 7, 3), red);
    EXPECT_EQ(pixel(0, 8, 3), black) << "beyond the copy";
}

TEST_P(RenderTargetTest, is_blitted_from_part_to_part) {
    create(8, 8);
    target->activate();
    clear(1, 0, 0, 1);
    target->deactivate();
    clear(0, 0, 0, 1);
    EXPECT_TRUE(renderer->fbo_blit(target->get_fbo(), 0, 0, 4, 4, 0, 10, 10, 30, 20, true, false));
    EXPECT_EQ(pixel(0, 10, 10), red);
    EXPECT_EQ(pixel(0, 29, 19), red);
    EXPECT_EQ(pixel(0, 30, 19), black);
    EXPECT_NO_GL_ERROR();
}

// Sampling

TEST_P(RenderTargetTest, is_sampled_as_a_texture) {
    EXPECT_TRUE(target->create_target_v2(4, 4, PF_RGBA_U8, 2, false, false, true, 0));
    target->activate();
    target->clear_color_buffer(0, 1, 0, 0, 1);
    target->clear_color_buffer(1, 0, 1, 0, 1);
    target->clear_depth_buffer(0.6f);
    target->deactivate();
    forgive();
    const char* const show = R"(#version 150
uniform sampler2D image;
in vec2 place;
out vec4 color;
void main() { color = texture(image, place); }
)";
    renderer->set_viewport(0, 0, 16, 16);
    EXPECT_TRUE(renderer->render_target_bind_color_tex(target, 0, 0));
    draw(show);
    EXPECT_EQ(pixel(0, 8, 8), red);
    EXPECT_TRUE(renderer->render_target_bind_color_tex(target, 1, 0));
    draw(show);
    EXPECT_EQ(pixel(0, 8, 8), green);
    EXPECT_TRUE(renderer->render_target_bind_depth_tex(target, 0));
    draw(show);
    EXPECT_EQ(pixel(0, 8, 8)[0], 153) << "0.6 of 255";
    EXPECT_NO_GL_ERROR();
}

TEST_P(RenderTargetTest, is_sampled_sample_by_sample) {
    create(4, 4, 4);
    target->activate();
    clear(0, 1, 0, 1);
    target->deactivate();
    renderer->set_viewport(0, 0, 16, 16);
    EXPECT_TRUE(renderer->render_target_bind_color_tex(target, 0, 0));
    draw(R"(#version 150
uniform sampler2DMS image;
out vec4 color;
void main() { color = texelFetch(image, ivec2(3, 3), 3); }
)");
    EXPECT_EQ(pixel(0, 8, 8), green);
    EXPECT_NO_GL_ERROR();
}

TEST_P(RenderTargetTest, is_sampled_as_a_rectangle_in_pixels) {
    EXPECT_TRUE(target->create_target_rect(4, 4, PF_RGBA_U8, false, false, true, 0));
    target->activate();
    clear(0, 0, 1, 1);
    renderer->set_scissor(3, 0, 1, 4);
    renderer->set_scissor_state(true);
    clear(1, 0, 0, 1);
    renderer->set_scissor_state(false);
    target->deactivate();
    forgive();
    renderer->set_viewport(0, 0, 16, 16);
    EXPECT_TRUE(renderer->texture_activate_rect_rt(color(), 0));
    draw(R"(#version 150
uniform sampler2DRect image;
out vec4 color;
void main() { color = texture(image, vec2(3.5, 1.5)); }
)");
    EXPECT_EQ(pixel(0, 8, 8), red);
    EXPECT_NO_GL_ERROR();
}

TEST_P(RenderTargetTest, of_depth_alone_is_drawn_into_and_sampled) {
    EXPECT_TRUE(target->create_target_depth(8, 8, false, false));
    forgive();
    target->activate();
    renderer->set_viewport(0, 0, 8, 8);
    renderer->set_depth_test_state(true);
    target->clear_depth_buffer(1.0f);
    draw(R"(#version 150
out vec4 color;
void main() { color = vec4(1); gl_FragDepth = 0.2; }
)");
    target->deactivate();
    EXPECT_EQ(depth_at(target->get_fbo(), 4, 4), 0.2f);
    renderer->set_viewport(0, 0, 16, 16);
    renderer->set_depth_test_state(false);
    EXPECT_TRUE(renderer->render_target_bind_depth_tex(target, 0));
    draw(R"(#version 150
uniform sampler2D image;
out vec4 color;
void main() { color = vec4(texture(image, vec2(0.5)).r); }
)");
    EXPECT_EQ(pixel(0, 8, 8), Bytes(4, 51)) << "0.2 of 255";
    EXPECT_NO_GL_ERROR();
}

// Textures that stand for a target

TEST_P(RenderTargetTest, goes_on_owning_what_a_texture_stands_for) {
    create(4, 4);
    target->activate();
    clear(1, 0, 0, 1, 0.6f);
    target->deactivate();
    Kernel* const kernel = Kernel::get();
    Texture* const colors = kernel->create_color_texture_from_render_target(target, 0);
    Texture* const depths = kernel->create_depth_texture_from_render_target(target);
    ASSERT_NE(colors, nullptr);
    ASSERT_NE(depths, nullptr);
    EXPECT_EQ(kernel->create_color_texture_from_render_target(nullptr, 0), nullptr);
    EXPECT_EQ(kernel->create_depth_texture_from_render_target(nullptr), nullptr);
    const char* const show = R"(#version 150
uniform sampler2D image;
out vec4 color;
void main() { color = vec4(texture(image, vec2(0.5)).rgb, 1); }
)";
    renderer->set_viewport(0, 0, 16, 16);
    EXPECT_TRUE(colors->bind(renderer.get(), 0));
    draw(show);
    EXPECT_EQ(pixel(0, 8, 8), red);
    EXPECT_TRUE(depths->bind(renderer.get(), 0));
    draw(show);
    EXPECT_EQ(pixel(0, 8, 8)[0], 153);
    TextureMgr::get()->release_texture(renderer.get(), colors, nullptr);
    TextureMgr::get()->release_texture(renderer.get(), depths, nullptr);
    EXPECT_TRUE(glIsTexture(color()));
    EXPECT_TRUE(glIsTexture(depth()));
    EXPECT_EQ(pixel(target->get_fbo(), 0, 0), red);
    EXPECT_NO_GL_ERROR();
}

TEST_P(RenderTargetTest, is_read_into_a_texture_as_a_square) {
    for (const bool rectangle : {false, true}) {
        EXPECT_TRUE(rectangle ? target->create_target_rect(5, 3, PF_RGBA_U8, false, false, true, 0)
                              : target->create_target(5, 3, PF_RGBA_U8, false, false, true, 0));
        target->activate();
        clear(1, 0, 0, 1);
        target->deactivate();
        Texture texture;
        EXPECT_TRUE(texture.update_pixmap_rgba_u8_from_render_target(target, 0));
        EXPECT_EQ(texture.get_width(), 5u);
        EXPECT_EQ(texture.get_height(), 5u);
        const unsigned char* const pixels = texture.get_pixmap_u8_ptr();
        EXPECT_EQ(Bytes(pixels + 14 * 4, pixels + 15 * 4), red) << "the last pixel";
        EXPECT_EQ(Bytes(pixels + 15 * 4, pixels + 16 * 4), Bytes(4)) << "beyond it";
    }
    create(5, 3, 4);
    Texture texture;
    EXPECT_FALSE(texture.update_pixmap_rgba_u8_from_render_target(target, 0)) << "resolve it first";
}

// Rows of nine bytes take sixteen each then.
TEST_P(RenderTargetTest, is_read_into_a_texture_with_the_widest_packing_too) {
    create(3, 3);
    target->activate();
    clear(1, 0, 0, 1);
    target->deactivate();
    glPixelStorei(GL_PACK_ALIGNMENT, 8);
    Texture texture;
    EXPECT_TRUE(texture.update_pixmap_rgb_u8_from_render_target(target, 0));
    EXPECT_EQ(Bytes(texture.get_pixmap_u8_ptr(), texture.get_pixmap_u8_ptr() + 3),
              Bytes(red.begin(), red.begin() + 3));
}

// A row length and skips of the host's own reads hold for every read-back.
TEST_P(RenderTargetTest, is_read_into_a_texture_with_the_rows_that_the_host_set) {
    create(4, 2);
    target->activate();
    clear(1, 0, 0, 1);
    target->deactivate();
    glPixelStorei(GL_PACK_ROW_LENGTH, 5);
    glPixelStorei(GL_PACK_SKIP_PIXELS, 1);
    Texture texture;
    EXPECT_TRUE(texture.update_pixmap_rgba_u8_from_render_target(target, 0));
    for (unsigned long i = 0; i < 16; ++i) {
        const unsigned char* const pixel = texture.get_pixmap_u8_ptr() + i * 4;
        const bool written = (i >= 1 && i < 5) || (i >= 6 && i < 10);
        EXPECT_EQ(Bytes(pixel, pixel + 4), written ? red : Bytes(4)) << i;
    }
}

TEST_P(RenderTargetTest, is_read_into_a_texture_where_the_host_left_much_room_before_it) {
    create(3, 3);
    target->activate();
    clear(1, 0, 0, 1);
    target->deactivate();
    glPixelStorei(GL_PACK_ROW_LENGTH, 1 << 16);
    glPixelStorei(GL_PACK_SKIP_ROWS, 100);
    Texture texture;
    EXPECT_TRUE(texture.update_pixmap_rgba_u8_from_render_target(target, 0));
    EXPECT_EQ(Bytes(texture.get_pixmap_u8_ptr(), texture.get_pixmap_u8_ptr() + 36), Bytes(36));
    EXPECT_TRUE(texture.update_pixmap_rgb_u8_from_render_target(target, 0));
    EXPECT_EQ(Bytes(texture.get_pixmap_u8_ptr(), texture.get_pixmap_u8_ptr() + 27), Bytes(27));
}

TEST_P(RenderTargetTest, is_not_read_into_a_texture_with_packing_that_no_memory_holds) {
    create(3, 3);
    for (const GLenum name : {GL_PACK_ROW_LENGTH, GL_PACK_SKIP_PIXELS, GL_PACK_SKIP_ROWS})
        glPixelStorei(name, INT_MAX);
    Texture texture;
    EXPECT_FALSE(texture.update_pixmap_rgb_u8_from_render_target(target, 0));
    EXPECT_FALSE(texture.update_pixmap_rgba_u8_from_render_target(target, 0));
    EXPECT_NO_GL_ERROR();
}

// The square that would take it has a gigabyte.
TEST_P(RenderTargetTest, that_was_refused_for_its_size_is_not_read_into_a_texture) {
    const int too_large = static_cast<int>(renderer->ctx.max_texture_size) + 1;
    Texture texture;
    for (const auto& [width, height] : {std::pair{too_large, 1}, {1, too_large}}) {
        EXPECT_FALSE(create(width, height));
        EXPECT_FALSE(texture.update_pixmap_rgb_u8_from_render_target(target, 0));
        EXPECT_FALSE(texture.update_pixmap_rgba_u8_from_render_target(target, 0));
        EXPECT_EQ(texture.get_width(), 0u) << "no room is made for it";
    }
}

TEST_P(RenderTargetTest, whose_renderer_ended_is_not_read_into_a_texture) {
    RenderTargetOpenGL alone;
    Texture texture;
    EXPECT_FALSE(texture.update_pixmap_rgba_u8_from_render_target(&alone, 0));
}

} // namespace

} // namespace orvex_test
