#pragma once

/// @file
/// Two render windows of one renderer, behind the recording layer, in every kind that matters.

#include <map>
#include <memory>
#include <string>

#define GL_GLEXT_PROTOTYPES // tests ask the driver straight
#include <GL/gl.h>
#include <GL/glext.h>
#include <gtest/gtest.h>

#include "orvex/renderer/opengl/private/renderer_opengl.h"
#include "orvex/renderer/render_window.h"
#include "tests/support/gl_context.h"
#include "tests/support/gl_recorder.h"
#include "tests/support/pixel.h"

namespace orvex_test {

/// The contexts of the windows, and the path that is drawn on.
struct PairKind {
    const char* name;
    bool core;
    bool generic;         ///< generic attributes, else client arrays
    bool shared;          ///< the second window shares with the first
    bool adopted = false; ///< the contexts are a host's
};

inline void PrintTo(const PairKind& kind, std::ostream* out) {
    *out << kind.name;
}

inline std::string pair_name(const testing::TestParamInfo<PairKind>& info) {
    return info.param.name;
}

/// Every kind: client arrays exist on compatibility contexts only.
inline constexpr PairKind pair_kinds[] = {
    {"core", true, true, false},
    {"core_shared", true, true, true},
    {"compatibility", false, true, false},
    {"compatibility_shared", false, true, true},
    {"client_arrays", false, false, false},
    {"client_arrays_shared", false, false, true},
};

/// The same of a host's contexts, which tell of no share group.
inline constexpr PairKind adopted_kinds[] = {
    {"core", true, true, false, true},
    {"core_shared", true, true, true, true},
    {"compatibility", false, true, false, true},
    {"compatibility_shared", false, true, true, true},
};

/// The first window is current at the start of a test; an error that GL kept fails it.
class WindowPairTest : public testing::TestWithParam<PairKind> {
protected:
    void SetUp() override {
        recorder = make_recorder();
        renderer = std::make_unique<orvex::RendererOpenGL>();
        first = open(nullptr);
        ASSERT_TRUE(first);
        renderer->start();
        use_program(); // the start let it go
        second = open(GetParam().shared ? first : nullptr);
        ASSERT_TRUE(second);
        first->apply_context(true);
        recorder->clear();
    }

    void TearDown() override {
        {
            const GlRecorderPause pause(*recorder);
            EXPECT_NO_GL_ERROR() << "left over at the end of the test";
            renderer->kill_all_render_targets(); // a renderer leaves them to those who hold them
        }
        renderer.reset();
        recorder.reset();
    }

    virtual std::unique_ptr<GlRecorder> make_recorder() { return std::make_unique<GlRecorder>(); }

    /// Opens an off-screen window of 16 by 16 pixels and leaves it current, with a program that
    /// shows the colours of vertices in use; a core context draws nothing without one.
    orvex::RenderWindow* open(orvex::RenderWindow* parent) {
        orvex::RenderWindow* const window = renderer->create_render_window();
        return initialize(window, parent) ? window : nullptr;
    }

    /// Gives a window a context; a second time, another one.
    bool initialize(orvex::RenderWindow* window, orvex::RenderWindow* parent) {
        const bool done = GetParam().adopted ? adopt(window, parent) : make_context(window, parent);
        forget_gl_errors(); // below 3.0, of the question for the version
        if (done)
            use_program();
        return done;
    }

    /// Makes a window current and clears it.
    void turn_to(orvex::RenderWindow* window) const {
        EXPECT_TRUE(window->apply_context(true));
        const GlRecorderPause pause(*recorder);
        glClearColor(0.0f, 0.0f, 0.0f, 1.0f);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    }

    /// A pixel of the current window.
    Pixel pixel(int x = 8, int y = 8) const {
        const GlRecorderPause pause(*recorder);
        return pixel_at(x, y);
    }

    /// Puts the program of a window in use, as after a start of the renderer.
    void use_program() const {
        const GlRecorderPause pause(*recorder);
        if (!GetParam().generic)
            return;
        const GLuint program = glCreateProgram();
        attach(
            program, GL_VERTEX_SHADER,
            "#version 150\nin vec4 position;\nin vec4 color;\nin vec4 instance;\nout vec4 shown;\n"
            "void main() { shown = color; gl_PointSize = 16.0;\n"
            "gl_Position = vec4(position.xyz + instance.xyz, 1.0); }\n");
        attach(program, GL_FRAGMENT_SHADER,
               "#version 150\nin vec4 shown;\nout vec4 pixel;\nvoid main() { pixel = shown; }\n");
        glBindAttribLocation(program, 0, "position");
        glBindAttribLocation(program, 1, "color");
        glBindAttribLocation(program, 6, "instance");
        glLinkProgram(program);
        glUseProgram(program);
    }

    /// A host's contexts end after the windows that adopted them.
    std::map<orvex::RenderWindow*, std::unique_ptr<GlContext>> hosts;
    std::unique_ptr<GlRecorder> recorder;
    std::unique_ptr<orvex::RendererOpenGL> renderer;
    orvex::RenderWindow* first = nullptr;
    orvex::RenderWindow* second = nullptr;

private:
    static bool make_context(orvex::RenderWindow* window, orvex::RenderWindow* parent) {
        orvex::RenderWindow_ExtraData extra;
        extra.gl_major = GetParam().core ? 3 : 2;
        extra.gl_minor = GetParam().core ? 2 : 1;
        return window->initialize(nullptr, nullptr, 16, 16, "Off", parent, &extra);
    }

    bool adopt(orvex::RenderWindow* window, orvex::RenderWindow* parent) {
        const GlRecorderPause pause(*recorder);
        auto host =
            std::make_unique<GlContext>(GetParam().core ? Profile::core : Profile::compatibility,
                                        16, 16, parent ? hosts[parent].get() : nullptr);
        const bool done = host->ok() && window->osx_init_with_cocoa_nsgl_ctx(host.get());
        hosts[window] = std::move(host);
        return done;
    }

    static void attach(GLuint program, GLenum type, const char* text) {
        const GLuint shader = glCreateShader(type);
        glShaderSource(shader, 1, &text, nullptr);
        glCompileShader(shader);
        glAttachShader(program, shader);
        glDeleteShader(shader);
    }
};

} // namespace orvex_test
