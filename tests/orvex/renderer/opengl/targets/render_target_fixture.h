#pragma once

/// @file
/// A started renderer behind the recording layer, a render target, and a program that fills or
/// samples.

#define GL_GLEXT_PROTOTYPES // tests ask the driver straight
#include <GL/gl.h>
#include <GL/glext.h>

#include <string>
#include <vector>

#include "orvex/renderer/opengl/targets/private/render_target_opengl.h"
#include "tests/orvex/renderer/opengl/buffers/vertex_buffers_fixture.h"

namespace orvex_test {

using Bytes = std::vector<unsigned char>;

/// On both profiles. What the API refuses is expected where a test asks for it.
class RenderTargets : public GlTest, protected RecordedRenderer {
protected:
    void SetUp() override {
        GlTest::SetUp();
        start();
        target = renderer->create_render_target();
        renderer->set_depth_test_state(false);
        forgive();
    }
    void TearDown() override {
        renderer->kill_all_render_targets();
        forgive();
        renderer.reset();
        recorder.reset();
        GlTest::TearDown();
    }

    bool core() const { return GetParam() == Profile::core; }

    /// Forgets calls and errors.
    void forgive() {
        const GlRecorderPause pause(*recorder);
        forget_gl_errors();
        recorder->clear();
        context().take_messages();
    }

    /// How many calls the API refused since the last `forgive`.
    unsigned long refused() { return context().take_errors().size(); }

    /// Makes the renderer anew without an entry point, and a target of it.
    void hide(const char* name) {
        renderer->kill_all_render_targets();
        renderer.reset();
        recorder.reset();
        recorder = std::make_unique<GlRecorder>();
        recorder->hide(name);
        renderer = std::make_unique<orvex::RendererOpenGL>();
        renderer->start();
        target = renderer->create_render_target();
        forgive();
    }

    /// The plain target that most tests use.
    bool create(int width, int height, int samples = 0) {
        const bool complete =
            target->create_target(width, height, orvex::PF_RGBA_U8, false, false, true, samples);
        forgive();
        return complete;
    }

    unsigned int color(int index = 0) { return target->get_color_tex_id_opengl(index); }
    unsigned int depth() { return target->get_depth_tex_id_opengl(); }

    /// What a framebuffer's attachment says of itself.
    GLint attachment(GLenum point, GLenum name, GLuint fbo) {
        const GlRecorderPause pause(*recorder);
        GLint value = 0;
        glBindFramebuffer(GL_FRAMEBUFFER, fbo);
        glGetFramebufferAttachmentParameteriv(GL_FRAMEBUFFER, point, name, &value);
        glBindFramebuffer(GL_FRAMEBUFFER, 0);
        return value;
    }
    GLuint object(GLenum point) {
        return static_cast<GLuint>(
            attachment(point, GL_FRAMEBUFFER_ATTACHMENT_OBJECT_NAME, target->get_fbo()));
    }

    GLint level(GLenum texture_target, GLuint id, GLenum name) {
        const GlRecorderPause pause(*recorder);
        GLint value = 0;
        glBindTexture(texture_target, id);
        glGetTexLevelParameteriv(texture_target, 0, name, &value);
        glBindTexture(texture_target, 0);
        return value;
    }
    GLint parameter(GLenum texture_target, GLuint id, GLenum name) {
        const GlRecorderPause pause(*recorder);
        GLint value = 0;
        glBindTexture(texture_target, id);
        glGetTexParameteriv(texture_target, name, &value);
        glBindTexture(texture_target, 0);
        return value;
    }
    GLint asked(GLenum name) {
        const GlRecorderPause pause(*recorder);
        GLint value = 0;
        glGetIntegerv(name, &value);
        return value;
    }

    /// Fills what is bound now.
    void clear(float r, float g, float b, float a, float depth_value = 1.0f) {
        renderer->clear_color_depth_buffers(r, g, b, a, depth_value);
    }

    /// A pixel of a framebuffer's colour buffer.
    Bytes pixel(GLuint fbo, int x, int y, GLenum buffer = GL_COLOR_ATTACHMENT0) {
        const GlRecorderPause pause(*recorder);
        Bytes rgba(4);
        glBindFramebuffer(GL_FRAMEBUFFER, fbo);
        glReadBuffer(fbo == 0 ? GLenum{GL_BACK} : buffer);
        glReadPixels(x, y, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, rgba.data());
        glBindFramebuffer(GL_FRAMEBUFFER, 0);
        return rgba;
    }
    /// A depth of a framebuffer.
    float depth_at(GLuint fbo, int x, int y) {
        const GlRecorderPause pause(*recorder);
        float value = -1.0f;
        glBindFramebuffer(GL_FRAMEBUFFER, fbo);
        glReadPixels(x, y, 1, 1, GL_DEPTH_COMPONENT, GL_FLOAT, &value);
        glBindFramebuffer(GL_FRAMEBUFFER, 0);
        return value;
    }

    /// Runs a pixel stage on every pixel of the viewport; unit 0 is its sampler "image".
    void draw(const char* pixel_stage) {
        const GlRecorderPause pause(*recorder);
        static const char* const vertex_stage = R"(#version 150
out vec2 place;
void main() {
    place = vec2(gl_VertexID % 2, gl_VertexID / 2) * 2.0;
    gl_Position = vec4(place * 2.0 - 1.0, 0.0, 1.0);
}
)";
        const GLuint program = glCreateProgram();
        for (const auto& [type, source] : {std::pair{GL_VERTEX_SHADER, vertex_stage},
                                           std::pair{GL_FRAGMENT_SHADER, pixel_stage}}) {
            const GLuint shader = glCreateShader(static_cast<GLenum>(type));
            glShaderSource(shader, 1, &source, nullptr);
            glCompileShader(shader);
            glAttachShader(program, shader);
            glDeleteShader(shader);
        }
        glLinkProgram(program);
        GLint linked = 0;
        glGetProgramiv(program, GL_LINK_STATUS, &linked);
        ASSERT_NE(linked, 0);
        glUseProgram(program);
        glUniform1i(glGetUniformLocation(program, "image"), 0);
        GLuint array = 0;
        glGenVertexArrays(1, &array);
        glBindVertexArray(array);
        glDrawArrays(GL_TRIANGLES, 0, 3);
        glBindVertexArray(0);
        glDeleteVertexArrays(1, &array);
        glUseProgram(0);
        glDeleteProgram(program);
    }

    orvex::RenderTarget* target = nullptr;
};

} // namespace orvex_test
