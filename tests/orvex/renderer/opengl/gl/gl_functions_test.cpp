#include "orvex/renderer/opengl/gl/private/gl_functions.h"

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orvex/renderer/opengl/gl/private/gl_support.h"
#include "tests/support/gl_context.h"
#include "tests/support/gl_recorder.h"
#include "tests/support/log_capture.h"

namespace orvex_test {

using namespace orvex;
namespace {

#define ORVEX_GL_NAME(result, name, parameters, support) #name,
const std::vector<std::string> all_names = {ORVEX_GL_FUNCTIONS(ORVEX_GL_NAME)};
#undef ORVEX_GL_NAME

std::vector<bool> which_are_set(const ORVEX_Renderer_OpenGL_Func& gl) {
#define ORVEX_GL_SET(result, name, parameters, support) gl.name != nullptr,
    return {ORVEX_GL_FUNCTIONS(ORVEX_GL_SET)};
#undef ORVEX_GL_SET
}

int count_set(const ORVEX_Renderer_OpenGL_Func& gl) {
    const std::vector<bool> set = which_are_set(gl);
    return static_cast<int>(std::count(set.begin(), set.end(), true));
}

class GlFunctions : public GlTest {};
ORVEX_BOTH_PROFILES(GlFunctions);

TEST_P(GlFunctions, are_null_at_first_and_after_clear) {
    ORVEX_Renderer_OpenGL_Func gl;
    EXPECT_FALSE(gl.ready);
    EXPECT_FALSE(gl.core_profile);
    EXPECT_EQ(count_set(gl), 0);
    EXPECT_TRUE(gl.init(false));
    gl.core_profile = true;
    EXPECT_TRUE(gl.ready);
    EXPECT_GT(count_set(gl), 100);
    gl.clear();
    EXPECT_FALSE(gl.ready);
    EXPECT_FALSE(gl.core_profile);
    EXPECT_EQ(count_set(gl), 0);
}

TEST_P(GlFunctions, are_set_exactly_where_the_context_supports_them) {
    ORVEX_Renderer_OpenGL_Func gl;
    gl.init(false);
    const GlCapabilities capabilities = read_gl_capabilities();
    const std::vector<bool> set = which_are_set(gl);
    for (std::size_t i = 0; i < all_names.size(); ++i) {
        EXPECT_EQ(set[i], !choose_gl_entry(all_names[i].c_str(), capabilities).empty())
            << all_names[i];
    }
    EXPECT_EQ(gl.glClientActiveTexture != nullptr, !is_core_context());
    EXPECT_EQ(gl.glGetTextureHandleARB != nullptr,
              capabilities.has_extension("GL_ARB_bindless_texture"));
}

TEST_P(GlFunctions, read_version_and_profile_of_the_context) {
    const GlCapabilities capabilities = read_gl_capabilities();
    GLint major = 0;
    glGetIntegerv(GL_MAJOR_VERSION, &major);
    EXPECT_EQ(capabilities.major, major);
    EXPECT_GE(capabilities.major, 3);
    EXPECT_EQ(capabilities.compatibility, !is_core_context());
    EXPECT_TRUE(capabilities.has_extension("GL_ARB_framebuffer_object"));
}

TEST_P(GlFunctions, are_all_null_without_a_context) {
    context().release();
    ORVEX_Renderer_OpenGL_Func gl;
    EXPECT_TRUE(gl.init(false));
    EXPECT_TRUE(gl.ready);
    EXPECT_EQ(count_set(gl), 0);
    EXPECT_EQ(_orvex_get_proc_address("glEnable"), nullptr);
    EXPECT_EQ(_orvex_get_proc_address("glBindBuffer"), nullptr);
    context().make_current();
}

TEST_P(GlFunctions, outside_the_table_are_those_that_the_library_exports) {
    EXPECT_NE(_orvex_get_proc_address("glEnable"), nullptr);
    EXPECT_NE(_orvex_get_proc_address("glGetFramebufferAttachmentParameteriv"), nullptr);
    EXPECT_EQ(_orvex_get_proc_address("glSwapAPPLE"), nullptr);
    EXPECT_EQ(_orvex_get_proc_address("printf"), nullptr);
    EXPECT_EQ(_orvex_get_proc_address(""), nullptr);
}

TEST_P(GlFunctions, are_served_by_name_as_in_the_table) {
    EXPECT_NE(_orvex_get_proc_address("glBindBuffer"), nullptr);
    EXPECT_NE(_orvex_get_proc_address("glDrawElementsInstancedARB"), nullptr);
    EXPECT_EQ(_orvex_get_proc_address("glClientActiveTexture") != nullptr, !is_core_context());
}

TEST_P(GlFunctions, give_null_and_say_nothing_for_a_null_name) {
    LogCapture log;
    g_orvex_display_gl_func_ptr = true;
    testing::internal::CaptureStdout();
    EXPECT_EQ(_orvex_get_proc_address(nullptr), nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    g_orvex_display_gl_func_ptr = false;
    EXPECT_TRUE(log.messages().empty());
}

TEST_P(GlFunctions, are_told_one_line_each_when_displayed) {
    LogCapture log;
    GlRecorder recorder;
    recorder.hide("glUniform1d");
    ORVEX_Renderer_OpenGL_Func gl;
    testing::internal::CaptureStdout();
    gl.init(true);
    const std::string printed = testing::internal::GetCapturedStdout();
    EXPECT_TRUE(g_orvex_display_gl_func_ptr);

    const std::vector<bool> set = which_are_set(gl);
    std::string expected;
    std::vector<std::string> lines;
    for (std::size_t i = 0; i < all_names.size(); ++i) {
        const std::string line = "OpenGL function pointer - " + all_names[i] +
                                 (set[i] ? " FETCHED OK." : " NOT AVAILABLE!");
        expected += "\n" + line;
        lines.push_back("< > " + line);
    }
    EXPECT_EQ(printed, expected);
    EXPECT_EQ(log.messages(), lines);
    EXPECT_TRUE(log.has("< > OpenGL function pointer - glBindBuffer FETCHED OK."));
    EXPECT_TRUE(log.has("< > OpenGL function pointer - glUniform1d NOT AVAILABLE!"));
    g_orvex_display_gl_func_ptr = false;
}

TEST_P(GlFunctions, are_told_by_single_look_ups_too) {
    LogCapture log;
    g_orvex_display_gl_func_ptr = true;
    testing::internal::CaptureStdout();
    _orvex_get_proc_address("glBindBuffer");
    _orvex_get_proc_address("glSwapAPPLE");
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "\nOpenGL function pointer - glBindBuffer FETCHED OK."
              "\nOpenGL function pointer - glSwapAPPLE NOT AVAILABLE!");
    g_orvex_display_gl_func_ptr = false;
    EXPECT_EQ(log.messages(), (std::vector<std::string>{
                                  "< > OpenGL function pointer - glBindBuffer FETCHED OK.",
                                  "< > OpenGL function pointer - glSwapAPPLE NOT AVAILABLE!"}));
}

TEST_P(GlFunctions, are_silent_unless_displayed) {
    LogCapture log;
    ORVEX_Renderer_OpenGL_Func gl;
    testing::internal::CaptureStdout();
    gl.init(false);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_FALSE(g_orvex_display_gl_func_ptr);
    EXPECT_TRUE(log.messages().empty());
}

TEST_P(GlFunctions, carry_on_without_a_hidden_entry) {
    GlRecorder recorder;
    for (const char* name : {"glUniform1d", "glUniform2dv", "glDispatchCompute"})
        recorder.hide(name);
    ORVEX_Renderer_OpenGL_Func gl;
    EXPECT_TRUE(gl.init(false));
    EXPECT_EQ(gl.glUniform1d, nullptr);
    EXPECT_EQ(gl.glUniform2dv, nullptr);
    EXPECT_EQ(gl.glDispatchCompute, nullptr);
    EXPECT_NE(gl.glUniform2d, nullptr);
}

} // namespace
} // namespace orvex_test
