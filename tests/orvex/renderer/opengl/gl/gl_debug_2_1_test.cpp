// A driver without KHR_debug. Version and extensions are settled once for the process, so this test
// has a program of its own.

#include "orvex/renderer/opengl/gl/private/gl_debug.h"

#include "gl_debug_fixture.h"
#include "orvex/renderer/opengl/gl/private/gl_support.h"
#include "tests/support/log_capture.h"

namespace orvex_test {

using namespace orvex;

namespace {

TEST(GlDebugWithoutKhrDebug, changes_nothing) {
    const DebugEnvironment environment("1");
    const LogCapture log;
    GlRecorder recorder;
    RendererOpenGL renderer;
    ASSERT_TRUE(make_window(renderer, false));
    forget_gl_errors(); // of the question for the version, which 2.1 has as text only
    const GlCapabilities capabilities = read_gl_capabilities();
    ASSERT_FALSE(capabilities.has_version(43));
    ASSERT_FALSE(capabilities.has_extension("GL_KHR_debug"));
    EXPECT_TRUE(renderer.start());
    EXPECT_EQ(renderer.gl.object_label, nullptr);
    const unsigned int id = renderer.vertex_buffer_create(16, BUFFER_USAGE_STATIC_DRAW);
    EXPECT_NE(id, 0u);
    EXPECT_TRUE(renderer.vertex_buffer_kill(id));
    EXPECT_TRUE(renderer.stop());
    for (const char* const name : {"glDebugMessageCallback", "glObjectLabel", "glGetPointerv"})
        EXPECT_EQ(recorder.count(name), 0) << name;
    EXPECT_EQ(glGetError(), GLenum{GL_NO_ERROR});
    for (const std::string& line : log.messages())
        EXPECT_EQ(line.find("debug message"), std::string::npos) << line;
}

} // namespace

} // namespace orvex_test
