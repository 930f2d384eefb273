#include "gl_recorder.h"

#include <GL/gl.h>
#include <gtest/gtest.h>

#include "gl_call_text.h"
#include "gl_context.h"
#include "orvex/renderer/opengl/gl/private/gl_functions.h"

namespace orvex_test {

using namespace orvex;

namespace {

class GlRecorderTest : public GlTest {
protected:
    void SetUp() override {
        GlTest::SetUp();
        recorder = std::make_unique<GlRecorder>();
        gl.init(false);
        recorder->clear();
    }

    std::unique_ptr<GlRecorder> recorder;
    ORVEX_Renderer_OpenGL_Func gl;
};
ORVEX_BOTH_PROFILES(GlRecorderTest);

TEST_P(GlRecorderTest, writes_down_directly_linked_calls_and_forwards_them) {
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE);
    glDepthMask(GL_FALSE);
    glClearColor(0.25f, 0.5f, 1.0f, 0.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    EXPECT_EQ(recorder->take(), GlCalls({"glEnable(GL_BLEND)", "glBlendFunc(GL_SRC_ALPHA, GL_ONE)",
                                         "glDepthMask(false)", "glClearColor(0.25, 0.5, 1, 0)",
                                         "glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT)"}));
    EXPECT_TRUE(glIsEnabled(GL_BLEND));
    EXPECT_TRUE(recorder->calls().empty()) << "glIsEnabled is none of the engine's functions";
}

TEST_P(GlRecorderTest, writes_down_fetched_calls_and_forwards_them) {
    GLuint buffer = 0;
    gl.glGenBuffers(1, &buffer);
    gl.glBindBuffer(GL_ARRAY_BUFFER, buffer);
    gl.glBufferData(GL_ARRAY_BUFFER, 96, nullptr, GL_STATIC_DRAW);
    const float values[4] = {1.0f, 2.0f, 3.0f, 4.0f};
    gl.glBufferSubData(GL_ARRAY_BUFFER, 16, sizeof(values), values);
    gl.glDeleteBuffers(1, &buffer);
    const std::string id = std::to_string(buffer);
    EXPECT_NE(buffer, 0U);
    EXPECT_EQ(recorder->take(),
              GlCalls({"glGenBuffers(1, [" + id + "])", "glBindBuffer(GL_ARRAY_BUFFER, " + id + ")",
                       "glBufferData(GL_ARRAY_BUFFER, 96, 0, GL_STATIC_DRAW)",
                       "glBufferSubData(GL_ARRAY_BUFFER, 16, 16, ptr)",
                       "glDeleteBuffers(1, [" + id + "])"}));
}

TEST_P(GlRecorderTest, hands_results_through) {
    EXPECT_NE(glGetString(GL_VERSION), nullptr);
    const GLuint shader = gl.glCreateShader(GL_VERTEX_SHADER);
    EXPECT_NE(shader, 0U);
    gl.glDeleteShader(shader);
    EXPECT_EQ(recorder->take(),
              GlCalls({"glGetString(GL_VERSION)", "glCreateShader(GL_VERTEX_SHADER)",
                       "glDeleteShader(" + std::to_string(shader) + ")"}));
}

TEST_P(GlRecorderTest, counts_and_names_and_forgets) {
    glEnable(GL_DITHER);
    glDisable(GL_DITHER);
    glEnable(GL_DITHER);
    EXPECT_EQ(recorder->count("glEnable"), 2);
    EXPECT_EQ(recorder->count("glCullFace"), 0);
    EXPECT_EQ(recorder->names(), GlCalls({"glEnable", "glDisable", "glEnable"}));
    EXPECT_EQ(recorder->take_names(), GlCalls({"glEnable", "glDisable", "glEnable"}));
    EXPECT_TRUE(recorder->calls().empty());
}

TEST_P(GlRecorderTest, writes_nothing_down_while_paused) {
    {
        const GlRecorderPause pause(*recorder);
        glEnable(GL_CULL_FACE);
    }
    glDisable(GL_CULL_FACE);
    EXPECT_EQ(recorder->take(), GlCalls({"glDisable(GL_CULL_FACE)"}));
}

TEST_P(GlRecorderTest, hides_entries) {
    recorder->hide("glMapBufferRange");
    recorder->hide("glDrawElementsInstancedARB");
    gl.init(false);
    EXPECT_EQ(gl.glMapBufferRange, nullptr);
    EXPECT_EQ(gl.glDrawElementsInstancedARB, nullptr);
    EXPECT_NE(gl.glDrawArraysInstancedARB, nullptr);
    EXPECT_NE(gl.glMapBuffer, nullptr);
}

TEST_P(GlRecorderTest, forwards_without_a_trace_once_it_is_gone) {
    recorder.reset();
    glEnable(GL_CULL_FACE);
    gl.glActiveTexture(GL_TEXTURE0);
    EXPECT_TRUE(glIsEnabled(GL_CULL_FACE));
}

struct Row {
    const char* what;
    GlSignature signature;
    std::vector<GlValue> values;
    const char* text;
};

template<typename... T>
std::vector<GlValue> values(T... arguments) {
    return {GlValue::of(arguments)...};
}

TEST(GlCallText, writes_every_kind_of_argument) {
    static const float floats[16] = {0.5f, 1.0f, 2.0f, 3.0f};
    static const int ints[2] = {-1, 7};
    static const double doubles[3] = {0.25, 1.0, 2.0};
    static const unsigned int ids[2] = {4, 5};
    static const char name[] = "orvex_Position";
    const Row rows[] = {
        {"none", {"glFinish", "(void)"}, {}, "glFinish()"},
        {"primitive",
         {"glDrawArrays", "(GLenum mode, GLint first, GLsizei count)"},
         values(GL_LINE_STRIP, 0, 12),
         "glDrawArrays(GL_LINE_STRIP, 0, 12)"},
        {"face, not primitive",
         {"glCullFace", "(GLenum mode)"},
         values(GL_BACK),
         "glCullFace(GL_BACK)"},
        {"offset as pointer",
         {"glDrawElements", "(GLenum mode, GLsizei count, GLenum type, const void* indices)"},
         values(GL_TRIANGLES, 36, GL_UNSIGNED_SHORT, reinterpret_cast<const void*>(24)),
         "glDrawElements(GL_TRIANGLES, 36, GL_UNSIGNED_SHORT, 24)"},
        {"ids",
         {"glDeleteTextures", "(GLsizei n, const GLuint* textures)"},
         values(2, &ids[0]),
         "glDeleteTextures(2, [4, 5])"},
        {"name",
         {"glGetAttribLocation", "(GLuint program, const GLchar* name)"},
         values(3, &name[0]),
         "glGetAttribLocation(3, \"orvex_Position\")"},
        {"float array",
         {"glUniform2fv", "(GLint location, GLsizei count, const GLfloat* value)"},
         values(3, 2, &floats[0]),
         "glUniform2fv(3, 2, [0.5, 1, 2, 3])"},
        {"int array",
         {"glUniform1iv", "(GLint location, GLsizei count, const GLint* value)"},
         values(3, 2, &ints[0]),
         "glUniform1iv(3, 2, [-1, 7])"},
        {"double array",
         {"glUniform3dv", "(GLint location, GLsizei count, const GLdouble* value)"},
         values(3, 1, &doubles[0]),
         "glUniform3dv(3, 1, [0.25, 1, 2])"},
        {"matrix",
         {"glUniformMatrix4fv",
          "(GLint location, GLsizei count, GLboolean transpose, const GLfloat* value)"},
         values(0, 1, false, &floats[0]),
         "glUniformMatrix4fv(0, 1, false, [0.5, 1, 2, 3, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0])"},
        {"light",
         {"glLightfv", "(GLenum light, GLenum pname, const GLfloat* params)"},
         values(GL_LIGHT1, GL_AMBIENT, &floats[0]),
         "glLightfv(GL_LIGHT1, GL_AMBIENT, [0.5, 1, 2, 3])"},
        {"clear of depth",
         {"glClearBufferfv", "(GLenum buffer, GLint drawbuffer, const GLfloat* value)"},
         values(GL_DEPTH, 0, &floats[0]),
         "glClearBufferfv(GL_DEPTH, 0, [0.5])"},
        {"parameter that is an enumerant",
         {"glTexParameteri", "(GLenum target, GLenum pname, GLint param)"},
         values(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR),
         "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR)"},
        {"parameter that is a number",
         {"glTexParameteri", "(GLenum target, GLenum pname, GLint param)"},
         values(GL_TEXTURE_2D, GL_TEXTURE_MAX_LEVEL, 0),
         "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAX_LEVEL, 0)"},
        {"output",
         {"glGetIntegerv", "(GLenum pname, GLint* params)"},
         values(GL_VIEWPORT, &ints[0]),
         "glGetIntegerv(GL_VIEWPORT, ptr)"},
        {"other bits",
         {"glMapBufferRange",
          "(GLenum target, GLintptr offset, GLsizeiptr length, GLbitfield access)"},
         values(GL_ARRAY_BUFFER, 0L, 64L, 42U),
         "glMapBufferRange(GL_ARRAY_BUFFER, 0, 64, 0x2A)"},
        {"bits of attributes",
         {"glPushAttrib", "(GLbitfield mask)"},
         values(GL_TRANSFORM_BIT | GL_VIEWPORT_BIT),
         "glPushAttrib(GL_TRANSFORM_BIT | GL_VIEWPORT_BIT)"},
        {"unknown enumerant", {"glEnable", "(GLenum cap)"}, values(0xFFFF), "glEnable(0xFFFF)"},
        {"generic attribute",
         {"glVertexAttrib2fv", "(GLuint index, const GLfloat* v)"},
         values(1, &floats[0]),
         "glVertexAttrib2fv(1, [0.5, 1])"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(row.signature.text(row.values), row.text) << row.what;
}

} // namespace

} // namespace orvex_test
