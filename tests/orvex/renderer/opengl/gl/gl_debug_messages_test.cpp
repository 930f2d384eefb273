#include "orvex/renderer/opengl/gl/private/gl_debug.h"

#include <algorithm>
#include <string>
#include <vector>

#include "gl_debug_fixture.h"
#include "tests/support/gl_context.h"
#include "tests/support/log_capture.h"

namespace orvex_test {

using namespace orvex;

namespace {

TEST(GlDebug, is_wanted_by_any_value_but_nothing_and_0) {
    struct Row {
        const char* value;
        bool wanted;
    };
    const Row rows[] = {{nullptr, false}, {"", false}, {"0", false}, {"1", true}, {"yes", true}};
    for (const Row& row : rows) {
        const DebugEnvironment environment(row.value);
        EXPECT_EQ(gl_debug_wanted(), row.wanted) << (row.value ? row.value : "unset");
    }
}

struct MessageRow {
    GLenum source;
    GLenum type;
    GLuint id;
    GLenum severity;
    const char* text;
    const char* line;
};

const MessageRow message_rows[] = {
    {GL_DEBUG_SOURCE_API, GL_DEBUG_TYPE_ERROR, 1, GL_DEBUG_SEVERITY_HIGH, "no",
     "<*> OpenGL renderer - debug message 1 (API, error): no"},
    {GL_DEBUG_SOURCE_WINDOW_SYSTEM, GL_DEBUG_TYPE_DEPRECATED_BEHAVIOR, 22, GL_DEBUG_SEVERITY_MEDIUM,
     "old\n", "<!> OpenGL renderer - debug message 22 (window system, deprecated behaviour): old"},
    {GL_DEBUG_SOURCE_SHADER_COMPILER, GL_DEBUG_TYPE_UNDEFINED_BEHAVIOR, 333, GL_DEBUG_SEVERITY_LOW,
     "two\nlines\r\n",
     "< > OpenGL renderer - debug message 333 (shader compiler, undefined behaviour): two lines"},
    {GL_DEBUG_SOURCE_THIRD_PARTY, GL_DEBUG_TYPE_PORTABILITY, 4294967295u,
     GL_DEBUG_SEVERITY_NOTIFICATION, "here only",
     "<o> OpenGL renderer - debug message 4294967295 (third party, portability): here only"},
    {GL_DEBUG_SOURCE_APPLICATION, GL_DEBUG_TYPE_PERFORMANCE, 0, GL_DEBUG_SEVERITY_MEDIUM, "100%s",
     "<!> OpenGL renderer - debug message 0 (application, performance): 100%s"},
    {GL_DEBUG_SOURCE_OTHER, GL_DEBUG_TYPE_MARKER, 5, GL_DEBUG_SEVERITY_LOW, "",
     "< > OpenGL renderer - debug message 5 (other, marker): "},
    {GL_DEBUG_SOURCE_API, GL_DEBUG_TYPE_PUSH_GROUP, 6, GL_DEBUG_SEVERITY_LOW, "in",
     "< > OpenGL renderer - debug message 6 (API, group begins): in"},
    {GL_DEBUG_SOURCE_API, GL_DEBUG_TYPE_POP_GROUP, 7, GL_DEBUG_SEVERITY_LOW, "out",
     "< > OpenGL renderer - debug message 7 (API, group ends): out"},
    {0, GL_DEBUG_TYPE_OTHER, 8, 0, "?", "<o> OpenGL renderer - debug message 8 (other, other): ?"},
};

TEST(GlDebug, writes_each_message_on_a_line_of_its_level) {
    const LogCapture log;
    std::vector<std::string> expected;
    for (const MessageRow& row : message_rows) {
        const auto length = static_cast<GLsizei>(std::char_traits<char>::length(row.text));
        log_gl_message(row.source, row.type, row.id, row.severity, length, row.text, nullptr);
        log_gl_message(row.source, row.type, row.id, row.severity, -1, row.text, nullptr);
        expected.insert(expected.end(), 2, row.line);
    }
    EXPECT_EQ(log.messages(), expected);
}

TEST(GlDebug, reads_no_further_than_a_message_goes_and_nothing_of_null) {
    const LogCapture log;
    log_gl_message(GL_DEBUG_SOURCE_API, GL_DEBUG_TYPE_ERROR, 1, GL_DEBUG_SEVERITY_HIGH, 2, "noise",
                   nullptr);
    log_gl_message(GL_DEBUG_SOURCE_API, GL_DEBUG_TYPE_ERROR, 1, GL_DEBUG_SEVERITY_HIGH, 2, nullptr,
                   nullptr);
    log_gl_message(GL_DEBUG_SOURCE_API, GL_DEBUG_TYPE_ERROR, 1, GL_DEBUG_SEVERITY_HIGH, 0, "noise",
                   nullptr);
    EXPECT_EQ(log.messages(),
              (std::vector<std::string>{"<*> OpenGL renderer - debug message 1 (API, error): no",
                                        "<*> OpenGL renderer - debug message 1 (API, error): "}));
}

int lines_heard = 0;

void draw_wrongly_while_logging(const char*, void*) {
    ++lines_heard;
    log_gl_message(GL_DEBUG_SOURCE_API, GL_DEBUG_TYPE_ERROR, 2, GL_DEBUG_SEVERITY_HIGH, -1, "again",
                   nullptr);
}

// The log is held while its callback runs: a message from in there could only wait for ever.
TEST(GlDebug, drops_a_message_that_the_writing_of_another_causes) {
    const LogCapture log;
    LogMgr::get()->get_default_log()->set_trace_callback(&draw_wrongly_while_logging, nullptr);
    lines_heard = 0;
    for (int i = 1; i < 3; ++i) {
        log_gl_message(GL_DEBUG_SOURCE_API, GL_DEBUG_TYPE_ERROR, 1, GL_DEBUG_SEVERITY_HIGH, -1,
                       "first", nullptr);
        EXPECT_EQ(lines_heard, i);
    }
}

/// Windows of both profiles, made by the engine.
class GlDebugWindows : public testing::TestWithParam<Profile> {
protected:
    bool open() { return make_window(renderer, GetParam() == Profile::core); }

    static bool is_debug_context() {
        GLint flags = 0;
        glGetIntegerv(GL_CONTEXT_FLAGS, &flags);
        return (flags & GL_CONTEXT_FLAG_DEBUG_BIT) != 0;
    }

    static bool has_debug_message(const LogCapture& log, const std::string& part) {
        const auto& messages = log.messages();
        return std::any_of(messages.begin(), messages.end(), [&part](const std::string& line) {
            return line.rfind("<*> OpenGL renderer - debug message ", 0) == 0 &&
                   line.find(part) != std::string::npos;
        });
    }

    GlRecorder recorder;
    RendererOpenGL renderer;
};
ORVEX_BOTH_PROFILES(GlDebugWindows);

TEST_P(GlDebugWindows, are_as_ever_when_nobody_asks) {
    const LogCapture log;
    ASSERT_TRUE(open());
    renderer.start();
    EXPECT_FALSE(is_debug_context());
    EXPECT_EQ(gl_listener(), nullptr);
    EXPECT_EQ(recorder.count("glDebugMessageCallback"), 0);
    EXPECT_EQ(recorder.count("glObjectLabel"), 0);
    EXPECT_EQ(recorder.count("glGetPointerv"), 1) << "this test's own";
    EXPECT_FALSE(glIsEnabled(GL_DEBUG_OUTPUT_SYNCHRONOUS));
    EXPECT_EQ(renderer.gl.object_label, nullptr);
    glEnable(0x1234);
    forget_gl_errors();
    renderer.stop();
    EXPECT_FALSE(has_debug_message(log, "glEnable"));
}

TEST_P(GlDebugWindows, tell_the_log_of_mistakes_while_they_happen) {
    const DebugEnvironment environment("1");
    LogCapture log;
    ASSERT_TRUE(open());
    EXPECT_TRUE(is_debug_context());
    EXPECT_TRUE(glIsEnabled(GL_DEBUG_OUTPUT));
    EXPECT_TRUE(glIsEnabled(GL_DEBUG_OUTPUT_SYNCHRONOUS));
    renderer.start();
    log.clear();
    glEnable(0x1234);
    ASSERT_EQ(log.messages().size(), 1u);
    EXPECT_TRUE(has_debug_message(log, "(API, error): GL_INVALID_ENUM in glEnable"))
        << log.messages()[0];
    forget_gl_errors();
    EXPECT_EQ(recorder.count("glDebugMessageCallback"), 1) << "the start finds it listening";

    renderer.stop();
    EXPECT_EQ(gl_listener(), nullptr);
    EXPECT_FALSE(glIsEnabled(GL_DEBUG_OUTPUT_SYNCHRONOUS));
    log.clear();
    glEnable(0x1234);
    forget_gl_errors();
    EXPECT_TRUE(log.messages().empty());
    renderer.start();
    EXPECT_NE(gl_listener(), nullptr);
    forget_gl_errors();
}

TEST_P(GlDebugWindows, go_on_without_the_entry_points) {
    const DebugEnvironment environment("1");
    recorder.hide("glDebugMessageCallback");
    recorder.hide("glObjectLabel");
    ASSERT_TRUE(open());
    EXPECT_TRUE(renderer.start());
    EXPECT_EQ(gl_listener(), nullptr);
    EXPECT_FALSE(glIsEnabled(GL_DEBUG_OUTPUT_SYNCHRONOUS));
    EXPECT_EQ(renderer.gl.object_label, nullptr);
    const unsigned int id = renderer.vertex_buffer_create(16, BUFFER_USAGE_STATIC_DRAW);
    EXPECT_NE(id, 0u);
    EXPECT_TRUE(renderer.vertex_buffer_kill(id));
    EXPECT_TRUE(renderer.stop());
    forget_gl_errors();
}

TEST_P(GlDebugWindows, fail_as_ever_with_an_impossible_request) {
    const DebugEnvironment environment("1");
    RenderWindow* const window = renderer.create_render_window();
    EXPECT_FALSE(window->initialize(nullptr, nullptr, 100000, 8, nullptr, nullptr, nullptr));
}

class GlDebugOfAHost : public GlTest {};
ORVEX_BOTH_PROFILES(GlDebugOfAHost);

TEST_P(GlDebugOfAHost, keeps_its_own_listener) {
    const DebugEnvironment environment("1");
    RendererOpenGL renderer;
    void* const listener = gl_listener();
    ASSERT_NE(listener, nullptr);
    renderer.start();
    forget_gl_errors();
    EXPECT_EQ(gl_listener(), listener);
    EXPECT_NE(renderer.gl.object_label, nullptr) << "objects are labelled all the same";
    renderer.stop();
    EXPECT_EQ(gl_listener(), listener);
    EXPECT_TRUE(glIsEnabled(GL_DEBUG_OUTPUT));
    EXPECT_EQ(renderer.gl.object_label, nullptr);
}

TEST_P(GlDebugOfAHost, is_listened_to_where_the_host_does_not) {
    const DebugEnvironment environment("1");
    gl_entry<PFNGLDEBUGMESSAGECALLBACKPROC>("glDebugMessageCallback")(nullptr, nullptr);
    RendererOpenGL renderer;
    LogCapture log;
    renderer.start();
    log.clear();
    glEnable(0x1234);
    EXPECT_EQ(log.messages().size(), 1u);
    forget_gl_errors();
    renderer.stop();
}

} // namespace

} // namespace orvex_test
