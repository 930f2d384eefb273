#pragma once

/// @file
/// What the tests of overlays ask of a frame and of the calls that drew it.

#include <string>

#include "tests/support/gl_context.h"
#include "tests/support/gl_recorder.h"
#include "tests/support/pixel.h"

namespace orvex_test {

using Color = Pixel;

/// Calls since the last time, but for questions.
inline GlCalls take_commands(GlRecorder& recorder) {
    GlCalls calls = recorder.take();
    std::erase_if(calls, [](const std::string& one) { return one.rfind("glGet", 0) == 0; });
    return calls;
}

/// The same without the calls that set arrays of vertices, which the tests of client arrays hold
/// to the letter.
inline GlCalls take_commands_but_for_arrays(GlRecorder& recorder) {
    GlCalls calls = take_commands(recorder);
    std::erase_if(calls, [](const std::string& one) {
        for (const char* const part : {"glBindBuffer(", "Pointer(", "ClientState(",
                                       "glClientActiveTexture(", "VertexAttribArray("})
            if (one.find(part) != std::string::npos)
                return true;
        return false;
    });
    return calls;
}

/// A core context has no fixed matrices, which objects that stay at their defaults load.
inline void drain_errors_of_fixed_matrices(GlRecorder& recorder) {
    const GlRecorderPause pause(recorder);
    if (is_core_context())
        forget_gl_errors();
}

} // namespace orvex_test
