// What a frame begins and ends with: clears, matrices, the viewport, reading back, waiting. The
// viewport is asked of the API each time, since a host may set it behind the engine's back.

#include "orvex/renderer/opengl/state/private/frame_family.h"

#include <algorithm>

#include "orvex/renderer/opengl/state/private/gl_state.h"

namespace orvex {

void FrameFamily::clear_color(float r, float g, float b, float a) {
    glClearColor(r, g, b, a);
    glClear(GL_COLOR_BUFFER_BIT);
}

void FrameFamily::clear_depth(float depth) {
    glClearDepth(static_cast<double>(depth));
    glClear(GL_DEPTH_BUFFER_BIT);
}

void FrameFamily::clear_color_and_depth(float r, float g, float b, float a, float depth) {
    glClearColor(r, g, b, a);
    glClearDepth(static_cast<double>(depth));
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

namespace {

struct ViewportRect {
    GLint x = 0;
    GLint y = 0;
    GLint width = 0;
    GLint height = 0;
};

/// Asks the API each time: a host may have changed it.
ViewportRect read_viewport() {
    GLint values[4] = {};
    glGetIntegerv(GL_VIEWPORT, values);
    return {values[0], values[1], values[2], values[3]};
}

void store(int* output, int value) {
    if (output)
        *output = value;
}

} // namespace

void FrameFamily::get_color_buffer_size(int* size, int* width, int* height) {
    if (!size)
        return;
    const ViewportRect rect = read_viewport();
    // Unsigned, so that a viewport beyond any real one wraps around instead of overflowing.
    *size = static_cast<int>(static_cast<unsigned int>(rect.width) * 4U *
                             static_cast<unsigned int>(rect.height));
    store(width, rect.width);
    store(height, rect.height);
}

void FrameFamily::get_color_buffer(unsigned char* pixels) {
    if (!pixels)
        return;
    // Rows without gaps, whatever a host has set.
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glPixelStorei(GL_PACK_ROW_LENGTH, 0);
    glPixelStorei(GL_PACK_SKIP_ROWS, 0);
    glPixelStorei(GL_PACK_SKIP_PIXELS, 0);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
    const ViewportRect rect = read_viewport();
    glReadBuffer(GL_BACK);
    glReadPixels(0, 0, rect.width, rect.height, GL_RGBA, GL_UNSIGNED_BYTE, pixels);
}

void FrameFamily::set_projection_matrix(const mat4& matrix, bool apply) {
    state.ctx.projection_matrix = matrix;
    if (apply) {
        glMatrixMode(GL_PROJECTION);
        glLoadMatrixf(state.ctx.projection_matrix.ptr());
    }
}

void FrameFamily::set_view_matrix(const mat4& matrix, bool apply) {
    state.ctx.view_matrix = matrix;
    if (apply) {
        glMatrixMode(GL_MODELVIEW);
        glLoadMatrixf(state.ctx.view_matrix.ptr());
    }
}

void FrameFamily::set_viewport(int x, int y, int width, int height) {
    glViewport(x, y, width, height);
}

void FrameFamily::get_viewport(int* x, int* y, int* width, int* height) {
    const ViewportRect rect = read_viewport();
    store(x, rect.x);
    store(y, rect.y);
    store(width, rect.width);
    store(height, rect.height);
}

int* FrameFamily::get_viewport_ptr() {
    // Nobody has changed it while binds are kept, but a caller may have written over the numbers.
    if (const int* const known = state.bound().known_viewport()) {
        std::copy_n(known, 4, viewport);
        return viewport;
    }
    glGetIntegerv(GL_VIEWPORT, viewport);
    state.bound().viewport_was_read(viewport);
    return viewport;
}

void FrameFamily::finish() {
    glFinish();
}

void FrameFamily::flush() {
    glFlush();
}

} // namespace orvex
