#include "orvex/renderer/opengl/private/renderer_opengl.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "orvex/renderer/records/gpu_program_data.h"
#include "tests/support/gl_context.h"
#include "tests/support/gl_recorder.h"
#include "tests/support/log_capture.h"

namespace orvex_test {

using namespace orvex;
namespace {

std::string id_text(RendererOpenGL& renderer) {
    return std::to_string(renderer.getid());
}

TEST(RendererOpenGL, describes_itself) {
    RendererOpenGL renderer;
    EXPECT_STREQ(renderer.get_name(), "plugin_core_opengl");
    EXPECT_STREQ(renderer.get_description(), "OpenGL renderer (OpenGL 2, 3.x and 4.x supported).");
    EXPECT_STREQ(renderer.get_author(), "orvex");
    EXPECT_EQ(renderer.get_version_major(), 0);
    EXPECT_EQ(renderer.get_version_minor(), 1);
    EXPECT_EQ(renderer.get_version_patch(), 0);
    EXPECT_EQ(renderer.get_type(), PLUGIN_TYPE_RENDERER);
    EXPECT_EQ(renderer.get_type(), 1);
    EXPECT_STREQ(renderer.get_api_name(), "OpenGL");
    EXPECT_EQ(renderer.get_api_type(), 1);
    const std::string info = renderer.get_build_info();
    EXPECT_EQ(info.rfind("BUILD_DATE: [", 0), 0U);
    EXPECT_NE(info.find("] - BUILD_TIME: ["), std::string::npos);
    EXPECT_EQ(info.back(), ']');
}

TEST(RendererOpenGL, is_made_empty) {
    RendererOpenGL renderer;
    EXPECT_FALSE(renderer.gl.ready);
    EXPECT_FALSE(renderer.gl.core_profile);
    EXPECT_EQ(renderer.gl.glBindBuffer, nullptr);
    EXPECT_EQ(renderer.gl_major, 0);
    EXPECT_EQ(renderer.gl_minor, 0);
    EXPECT_FALSE(renderer.initialized);
    EXPECT_FALSE(renderer.started);
    EXPECT_FALSE(renderer.gl2_context);
    EXPECT_FALSE(renderer.display_gl_func_ptr);
    EXPECT_EQ(renderer.max_vertex_attribs, 0);
    EXPECT_TRUE(renderer.render_windows.empty());
    EXPECT_EQ(renderer.targets.size(), 0U);
    EXPECT_EQ(renderer.ctx.texture_units, nullptr);
    EXPECT_EQ(renderer.ctx.active_program, nullptr);
    EXPECT_EQ(renderer.gpu_program_get_active_program(), nullptr);
    for (const BUFFER_OBJECT_USAGE usage :
         {renderer.forced_vertex_usage, renderer.forced_index_usage, renderer.forced_storage_usage,
          renderer.forced_atomic_usage, renderer.forced_uniform_usage})
        EXPECT_EQ(usage, BUFFER_USAGE_DEFAULT);
    EXPECT_EQ(renderer.get_projection_matrix().ptr()[0], 1.0f) << "matrices are made";
}

TEST(RendererOpenGL, initializes_and_terminates_once_each_and_says_so) {
    LogCapture log;
    RendererOpenGL renderer;
    EXPECT_TRUE(renderer.terminate());
    EXPECT_TRUE(log.messages().empty());
    EXPECT_TRUE(renderer.initialize());
    EXPECT_TRUE(renderer.initialize());
    EXPECT_TRUE(renderer.initialized);
    EXPECT_FALSE(renderer.started);
    EXPECT_TRUE(renderer.terminate());
    EXPECT_TRUE(renderer.terminate());
    EXPECT_FALSE(renderer.initialized);
    const std::string id = id_text(renderer);
    EXPECT_EQ(log.messages(), (std::vector<std::string>{
                                  "<o> plugin plugin_core_opengl (id=" + id + ") - initialize()",
                                  "<o> plugin plugin_core_opengl (id=" + id + ") - terminate()"}));
}

TEST(RendererOpenGL, runs_on_without_any_context) {
    RendererOpenGL renderer;
    EXPECT_TRUE(renderer.stop());
    EXPECT_TRUE(renderer.start());
    EXPECT_TRUE(renderer.started);
    EXPECT_EQ(renderer.get_api_version_major(), 0);
    EXPECT_EQ(renderer.get_api_version_minor(), 0);
    EXPECT_FALSE(renderer.gl.core_profile);
    EXPECT_EQ(renderer.ctx.max_texture_size, 0U);
    EXPECT_EQ(renderer.ctx.num_texture_units, 1U);
    EXPECT_EQ(renderer.get_api_version(), nullptr);
    int major = 7;
    int minor = 7;
    EXPECT_FALSE(renderer.get_opengl_version(&major, &minor));
    EXPECT_EQ(major, 7);
    EXPECT_EQ(minor, 7);
    EXPECT_TRUE(renderer.stop());
}

class RendererOpenGLStart : public GlTest {};
ORVEX_BOTH_PROFILES(RendererOpenGLStart);

const GlCalls reset_calls = {"glDisable(GL_MULTISAMPLE)",
                             "glDisable(GL_CULL_FACE)",
                             "glCullFace(GL_BACK)",
                             "glPolygonMode(GL_FRONT_AND_BACK, GL_FILL)",
                             "glFrontFace(GL_CCW)",
                             "glPolygonOffset(0, 0)",
                             "glDisable(GL_POLYGON_OFFSET_POINT)",
                             "glDisable(GL_POLYGON_OFFSET_LINE)",
                             "glDisable(GL_POLYGON_OFFSET_FILL)",
                             "glDisable(GL_SCISSOR_TEST)",
                             "glEnable(GL_DEPTH_TEST)",
                             "glDepthFunc(GL_LESS)",
                             "glDepthMask(true)",
                             "glDisable(GL_STENCIL_TEST)",
                             "glDisable(GL_BLEND)",
                             "glBlendFunc(GL_ONE, GL_ONE)",
                             "glGetIntegerv(GL_MAX_TEXTURE_SIZE, ptr)",
                             "glGetIntegerv(GL_MAX_TEXTURE_IMAGE_UNITS, ptr)",
                             "glEnable(GL_DITHER)",
                             "glUseProgram(0)",
                             "glGetIntegerv(GL_MAX_VERTEX_ATTRIBS, ptr)"};

TEST_P(RendererOpenGLStart, takes_up_the_context) {
    LogCapture log;
    RendererOpenGL renderer;
    EXPECT_TRUE(renderer.start());
    EXPECT_TRUE(renderer.started);
    EXPECT_FALSE(renderer.initialized);
    EXPECT_TRUE(renderer.gl.ready);
    EXPECT_NE(renderer.gl.glBindBuffer, nullptr);
    EXPECT_GE(renderer.get_api_version_major(), 3);
    EXPECT_FALSE(renderer.gl2_context);
    EXPECT_EQ(renderer.gl.core_profile, is_core_context());
    GLint size = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &size);
    EXPECT_EQ(renderer.ctx.max_texture_size, static_cast<unsigned long>(size));
    EXPECT_EQ(renderer.ctx.num_texture_units,
              static_cast<unsigned long>(renderer.get_max_texture_units()));
    EXPECT_EQ(renderer.max_vertex_attribs, renderer.get_max_vertex_attribs());
    EXPECT_EQ(log.messages(), (std::vector<std::string>{"<o> plugin plugin_core_opengl (id=" +
                                                        id_text(renderer) + ") - start()"}));
}

TEST_P(RendererOpenGLStart, binds_the_renderer_to_its_thread) {
    std::unique_ptr<RendererOpenGL> renderer;
    std::thread([&renderer] { renderer = std::make_unique<RendererOpenGL>(); }).join();
    EXPECT_FALSE(renderer->check_thread());
    renderer->start();
    EXPECT_TRUE(renderer->check_thread());
}

TEST_P(RendererOpenGLStart, happens_once) {
    RendererOpenGL renderer;
    renderer.start();
    renderer.set_blend_state(true);
    LogCapture log;
    EXPECT_TRUE(renderer.start());
    EXPECT_TRUE(renderer.ctx.blend);
    EXPECT_TRUE(glIsEnabled(GL_BLEND));
    EXPECT_TRUE(log.messages().empty());
}

TEST_P(RendererOpenGLStart, ends_with_a_reset) {
    GlRecorder recorder;
    RendererOpenGL renderer;
    renderer.start();
    const GlCalls calls = recorder.take();
    ASSERT_GE(calls.size(), reset_calls.size());
    EXPECT_EQ(GlCalls(calls.end() - static_cast<long>(reset_calls.size()), calls.end()),
              reset_calls);
    EXPECT_EQ(calls.front(), "glGetString(GL_VERSION)");
    EXPECT_TRUE(renderer.reset_render_states());
    EXPECT_EQ(recorder.take(), reset_calls);
}

TEST_P(RendererOpenGLStart, resets_the_shadow_state) {
    RendererOpenGL renderer;
    renderer.start();
    renderer.set_depth_test_state(false);
    renderer.set_depth_buffer_writing_state(false);
    renderer.set_depth_test_func(CMP_ALWAYS);
    renderer.set_scissor_state(true);
    renderer.set_blend_state(true);
    renderer.set_blend_factors(BLEND_FACTOR_ZERO, BLEND_FACTOR_DST_COLOR);
    renderer.ctx.stencil_test = true;
    renderer.ctx.dither = false;
    renderer.ctx.line_width = 4.0f;
    renderer.ctx.line_stipple_factor = 3;
    renderer.ctx.line_stipple_pattern = 1;
    renderer.ctx.active_program_id = 5;
    renderer.ctx.active_texture_unit = 2;
    renderer.ctx.set_texture_unit(0, 9);
    renderer.rasterizer_set_cull_state(true);
    renderer.rasterizer_apply_state();
    mat4 projection;
    projection.ptr()[0] = 2.0f;
    renderer.set_projection_matrix(projection, false);

    EXPECT_TRUE(renderer.reset_render_states());
    const RendererOpenGLCtx& ctx = renderer.ctx;
    EXPECT_TRUE(ctx.depth_test);
    EXPECT_TRUE(ctx.depth_write);
    EXPECT_FALSE(ctx.stencil_test);
    EXPECT_FALSE(ctx.scissor_test);
    EXPECT_FALSE(ctx.blend);
    EXPECT_TRUE(ctx.dither);
    EXPECT_EQ(ctx.blend_src, 1);
    EXPECT_EQ(ctx.blend_dst, 1);
    EXPECT_EQ(ctx.depth_func, 1);
    EXPECT_EQ(ctx.active_program_id, 0U);
    EXPECT_EQ(ctx.active_program, nullptr);
    EXPECT_EQ(ctx.active_texture_unit, 0U);
    EXPECT_EQ(ctx.texture_units[0].texture_id, 0U);
    EXPECT_EQ(ctx.line_stipple_factor, 1);
    EXPECT_EQ(ctx.line_stipple_pattern, 0xF0F0);
    EXPECT_EQ(ctx.line_width, 1.0f);
    EXPECT_EQ(ctx.projection_matrix.ptr()[0], 2.0f) << "matrices stay";
    EXPECT_FALSE(renderer.rasterizer_state.cull_enabled);
    EXPECT_TRUE(renderer.pending_rasterizer_state.cull_enabled) << "the pending state stays";
    EXPECT_FALSE(glIsEnabled(GL_CULL_FACE));
    renderer.rasterizer_apply_state();
    EXPECT_TRUE(glIsEnabled(GL_CULL_FACE));
}

TEST_P(RendererOpenGLStart, resets_without_programs_where_there_are_none) {
    GlRecorder recorder;
    recorder.hide("glUseProgram");
    RendererOpenGL renderer;
    renderer.start();
    recorder.clear();
    EXPECT_TRUE(renderer.reset_render_states());
    GlCalls expected = reset_calls;
    expected.erase(std::find(expected.begin(), expected.end(), "glUseProgram(0)"));
    EXPECT_EQ(recorder.take(), expected);
}

TEST_P(RendererOpenGLStart, lets_go_of_the_program_that_is_active) {
    GpuProgramData program;
    RendererOpenGL renderer;
    renderer.start();
    renderer.ctx.active_program = &program;
    program.add_active_slot(&renderer.ctx.active_program);
    renderer.reset_render_states();
    EXPECT_EQ(renderer.gpu_program_get_active_program(), nullptr);
}

TEST_P(RendererOpenGLStart, may_end_before_the_active_program) {
    GpuProgramData program;
    {
        RendererOpenGL renderer;
        renderer.start();
        renderer.ctx.active_program = &program;
        program.add_active_slot(&renderer.ctx.active_program);
    }
    // The record's end writes through no slot of the dead renderer.
}

TEST_P(RendererOpenGLStart, stops_by_letting_go_of_the_entry_points) {
    RendererOpenGL renderer;
    renderer.start();
    LogCapture log;
    EXPECT_TRUE(renderer.stop());
    EXPECT_FALSE(renderer.started);
    EXPECT_FALSE(renderer.gl.ready);
    EXPECT_FALSE(renderer.gl.core_profile);
    EXPECT_EQ(renderer.gl.glBindBuffer, nullptr);
    EXPECT_TRUE(renderer.stop());
    EXPECT_EQ(log.messages(), (std::vector<std::string>{"<o> plugin plugin_core_opengl (id=" +
                                                        id_text(renderer) + ") - stop()"}));
}

TEST_P(RendererOpenGLStart, starts_again_after_a_stop_with_a_reset_state) {
    RendererOpenGL renderer;
    renderer.start();
    renderer.set_blend_state(true);
    renderer.set_depth_test_func(CMP_ALWAYS);
    renderer.stop();
    renderer.gl_major = 0;
    renderer.ctx.max_texture_size = 1;
    EXPECT_TRUE(renderer.start());
    EXPECT_GE(renderer.get_api_version_major(), 3);
    EXPECT_GT(renderer.ctx.max_texture_size, 1U);
    EXPECT_NE(renderer.gl.glBindBuffer, nullptr);
    EXPECT_EQ(renderer.gl.core_profile, is_core_context());
    EXPECT_FALSE(renderer.ctx.blend);
    EXPECT_FALSE(glIsEnabled(GL_BLEND));
    GLint func = 0;
    glGetIntegerv(GL_DEPTH_FUNC, &func);
    EXPECT_EQ(func, GL_LESS);
}

TEST_P(RendererOpenGLStart, tells_of_each_entry_point_when_asked) {
    LogCapture log;
    RendererOpenGL renderer;
    testing::internal::CaptureStdout();
    EXPECT_TRUE(renderer.start_v2(true));
    const std::string printed = testing::internal::GetCapturedStdout();
    EXPECT_TRUE(renderer.display_gl_func_ptr);
    EXPECT_EQ(std::count(printed.begin(), printed.end(), '\n'), 126);
    EXPECT_EQ(log.messages().size(), 127U);
    renderer.stop();
    log.clear();
    testing::internal::CaptureStdout();
    EXPECT_TRUE(renderer.start_v2(false));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(log.messages().size(), 1U);
}

// Drivers' own words for the profile, which no single machine shows all of.
class SaysItsVersion : public RendererOpenGL {
public:
    SaysItsVersion(const char* text, int major)
        : text(text)
        , major(major) {}

    const char* get_api_version() override { return text; }
    bool get_opengl_version(int* out_major, int* out_minor) override {
        *out_major = major;
        *out_minor = 1;
        return true;
    }

private:
    const char* text;
    int major;
};

TEST_P(RendererOpenGLStart, reads_the_profile_from_the_version_text) {
    struct Row {
        const char* text;
        int major;
        bool core_profile;
        bool gl2_context;
    };
    const Row rows[] = {{"3.2 (Compatibility Profile) driver", 3, false, false},
                        {"3.2 driver compatibility", 3, false, false},
                        {"4.1 (Core Profile) driver", 4, true, false},
                        {"4.1 driver", 4, true, false},
                        {"2.1 driver", 2, false, true},
                        {"1.5 driver", 1, false, false},
                        {nullptr, 0, false, false},
                        {nullptr, 4, false, false}};
    for (const Row& row : rows) {
        SaysItsVersion renderer(row.text, row.major);
        renderer.start();
        const char* const name = row.text != nullptr ? row.text : "no text";
        EXPECT_EQ(renderer.gl.core_profile, row.core_profile) << name;
        EXPECT_EQ(renderer.gl2_context, row.gl2_context) << name;
        EXPECT_EQ(renderer.get_api_version_major(), row.major) << name;
        EXPECT_EQ(renderer.get_api_version_minor(), 1) << name;
    }
}

TEST_P(RendererOpenGLStart, compares_the_first_letter_of_the_profile_without_the_quirk) {
    setenv("ORVEX_GL_QUIRKS_OFF", "profile_word_case", 1);
    SaysItsVersion small("3.2 driver compatibility", 3);
    small.start();
    SaysItsVersion capital("3.2 (Compatibility Profile) driver", 3);
    capital.start();
    unsetenv("ORVEX_GL_QUIRKS_OFF");
    EXPECT_TRUE(small.gl.core_profile) << "the symptom";
    EXPECT_FALSE(capital.gl.core_profile);
    small.stop();
    small.start();
    EXPECT_FALSE(small.gl.core_profile) << "each start reads the environment";
}

TEST_P(RendererOpenGLStart, forgets_a_gl2_context_at_the_next_start) {
    RendererOpenGL renderer;
    renderer.gl2_context = true;
    renderer.start();
    EXPECT_FALSE(renderer.gl2_context);
}

TEST(RendererOpenGLLog, sends_lines_at_their_levels_with_the_api_name_first) {
    LogCapture log;
    RendererOpenGL renderer;
    renderer.k_log("%d", 1);
    renderer.k_log_debug("%d", 2);
    renderer.k_log_warning("%d", 3);
    renderer.k_log_error("%s", "100%");
    EXPECT_EQ(log.messages(),
              (std::vector<std::string>{"< > OpenGL renderer - 1", "<o> OpenGL renderer - 2",
                                        "<!> OpenGL renderer - 3", "<*> OpenGL renderer - 100%"}));
}

TEST(RendererOpenGLLog, cuts_lines_at_16383_characters) {
    LogCapture log;
    RendererOpenGL renderer;
    const std::string text(20000, 'x');
    renderer.k_log("%s", text.c_str());
    ASSERT_EQ(log.messages().size(), 1U);
    EXPECT_EQ(log.messages()[0], "< > OpenGL renderer - " + text.substr(0, 16383));
}

TEST(RendererOpenGLTextureIds, are_listed_and_removed) {
    RendererOpenGL renderer;
    EXPECT_FALSE(renderer._remove_texture_id(3));
    EXPECT_TRUE(renderer._add_texture_id(3));
    EXPECT_FALSE(renderer._remove_texture_id(4));
    EXPECT_TRUE(renderer._remove_texture_id(3));
    EXPECT_FALSE(renderer._remove_texture_id(3));
}

TEST(RendererOpenGLCtx, drops_a_record_of_a_unit_that_is_not_there) {
    RendererOpenGLCtx ctx;
    ctx.set_texture_unit(0, 1);
    ctx.init_texture_units(64, 2);
    ctx.set_texture_unit(1, 5);
    ctx.set_texture_unit(2, 6);
    EXPECT_EQ(ctx.texture_units[0].texture_id, 0U);
    EXPECT_EQ(ctx.texture_units[1].texture_id, 5U);
    ctx.init_texture_units(128, 3);
    EXPECT_EQ(ctx.max_texture_size, 128U);
    EXPECT_EQ(ctx.num_texture_units, 3U);
    EXPECT_EQ(ctx.texture_units[1].texture_id, 0U);
}

} // namespace
} // namespace orvex_test
