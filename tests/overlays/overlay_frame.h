#pragma once

/// @file
/// What the tests of overlays ask of a frame and of the calls that drew it.

#include <array>
#include <string>

#include <GL/gl.h>

#include "support/gl_context.h"
#include "support/gl_recorder.h"

namespace orvex_test {

using Color = std::array<int, 3>;

inline const Color black = {0, 0, 0};
inline const Color white = {255, 255, 255};
inline const Color red = {255, 0, 0};
inline const Color green = {0, 255, 0};
inline const Color blue = {0, 0, 255};
inline const Color yellow = {255, 255, 0};
inline const Color magenta = {255, 0, 255};
inline const Color cyan = {0, 255, 255};

inline Color pixel_at(int x, int y) {
    unsigned char bytes[4] = {};
    glReadPixels(x, y, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, bytes);
    return {bytes[0], bytes[1], bytes[2]};
}

/// Calls since the last time, but for questions.
inline GlCalls take_commands(GlRecorder& recorder) {
    GlCalls calls = recorder.take();
    std::erase_if(calls, [](std::string const& one) { return one.rfind("glGet", 0) == 0; });
    return calls;
}

/// The same without the calls that set arrays of vertices, which the tests of client arrays hold
/// to the letter.
inline GlCalls take_commands_but_for_arrays(GlRecorder& recorder) {
    GlCalls calls = take_commands(recorder);
    std::erase_if(calls, [](std::string const& one) {
        for (char const* const part : {"glBindBuffer(", "Pointer(", "ClientState(",
                                       "glClientActiveTexture(", "VertexAttribArray("})
            if (one.find(part) != std::string::npos)
                return true;
        return false;
    });
    return calls;
}

/// A core context has no fixed matrices, which objects that stay at their defaults load.
inline void drain_errors_of_fixed_matrices(GlRecorder& recorder) {
    GlRecorderPause const pause(recorder);
    if (is_core_context())
        while (glGetError() != GL_NO_ERROR) {
        }
}

} // namespace orvex_test
