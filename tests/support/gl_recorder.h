#pragma once

/// @file
/// Writes down every OpenGL call that the engine makes, and forwards it, so that tests can assert
/// which calls went out, in which order and with which arguments.
///
/// A test program links `orvex_gl_recorder` (LIBRARIES of `orvex_test`). The directly linked
/// functions are defined in the program itself and forwarded to the real library; those that the
/// renderer fetches by name are wrapped when they are fetched, so that the recorder has to be there
/// when the renderer starts.
///
/// @code
/// GlContext context(Profile::compatibility);
/// GlRecorder recorder;
/// RendererOpenGL renderer;
/// renderer.start();
/// recorder.clear();
/// renderer.set_blend_factors(BLEND_FACTOR_SRC_ALPHA, BLEND_FACTOR_ONE);
/// EXPECT_EQ(recorder.take(), GlCalls({"glBlendFunc(GL_SRC_ALPHA, GL_ONE)"}));
/// @endcode
///
/// How arguments are written: enumerants and the bits of clears, blits and attributes by name,
/// other bits as "0x2A", booleans as "true" and "false", numbers in decimal, floats with six
/// digits, names of uniforms and attributes in quotes. Pointers are "ptr", but small ones (offsets
/// into a buffer, null) are numbers, and short arrays of known length (ids, colours, matrices,
/// uniforms) are written out: "glGenBuffers(1, [3])".

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "orvex/renderer/opengl/window/private/window_platform.h"

namespace orvex_test {

/// Calls as text, in order.
using GlCalls = std::vector<std::string>;

/// Records from its construction to its destruction. One at a time.
class GlRecorder : public orvex::WindowPlatform {
public:
    GlRecorder();
    ~GlRecorder() override;

    /// Hides an entry point from whoever fetches it from now on, as if the context lacked it. The
    /// name is the one in the function table.
    void hide(const char* name);

    /// Everything since the last `clear`.
    GlCalls calls() const;
    /// The same without arguments.
    GlCalls names() const;
    /// `calls`, then `clear`.
    GlCalls take();
    /// `names`, then `clear`.
    GlCalls take_names();
    /// How often a function was called since the last `clear`.
    int count(const char* name) const;
    /// Forgets everything.
    void clear();

    /// While off, calls are forwarded and not written down: for what a test itself asks of GL.
    void set_recording(bool state);

    std::unique_ptr<orvex::PlatformContext>
    create_context(const orvex::ContextRequest& request) override;
    std::unique_ptr<orvex::PlatformContext> adopt_current_context(void* handle) override;
    const void* current_context() override;
    void get_version(int& major, int& minor) override;
    void* get_proc_address(const char* name) override;

private:
    std::vector<std::string> hidden;
};

/// Switches recording off for the rest of a block.
class GlRecorderPause {
public:
    explicit GlRecorderPause(GlRecorder& recorder)
        : recorder(recorder) {
        recorder.set_recording(false);
    }
    ~GlRecorderPause() { recorder.set_recording(true); }
    GlRecorderPause(const GlRecorderPause&) = delete;
    GlRecorderPause& operator=(const GlRecorderPause&) = delete;

private:
    GlRecorder& recorder;
};

} // namespace orvex_test
