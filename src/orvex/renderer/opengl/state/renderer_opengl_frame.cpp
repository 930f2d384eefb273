#include "orvex/renderer/opengl/private/renderer_opengl.h"

#include "orvex/math/vec4.h"

namespace orvex {

void RendererOpenGL::clear_color_buffer(float r, float g, float b, float a) {
    glClearColor(r, g, b, a);
    glClear(GL_COLOR_BUFFER_BIT);
}

void RendererOpenGL::clear_color_buffer(const vec4& color) {
    clear_color_buffer(color.x, color.y, color.z, color.w);
}

void RendererOpenGL::clear_depth_buffer(float depth) {
    glClearDepth(static_cast<double>(depth));
    glClear(GL_DEPTH_BUFFER_BIT);
}

void RendererOpenGL::clear_color_depth_buffers(float r, float g, float b, float a, float depth) {
    glClearColor(r, g, b, a);
    glClearDepth(static_cast<double>(depth));
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

void RendererOpenGL::clear_color_depth_buffers(const vec4& color, float depth) {
    clear_color_depth_buffers(color.x, color.y, color.z, color.w, depth);
}

namespace {

struct Viewport_Rect {
    GLint x = 0;
    GLint y = 0;
    GLint width = 0;
    GLint height = 0;
};

Viewport_Rect read_viewport() {
    GLint values[4] = {};
    glGetIntegerv(GL_VIEWPORT, values);
    return {values[0], values[1], values[2], values[3]};
}

void store(int* output, int value) {
    if (output != nullptr)
        *output = value;
}

} // namespace

void RendererOpenGL::get_color_buffer_size(int* size, int* width, int* height) {
    if (size == nullptr)
        return;
    const Viewport_Rect rect = read_viewport();
    // Unsigned, so that a viewport beyond any real one wraps around instead of overflowing.
    *size = static_cast<int>(static_cast<unsigned int>(rect.width) * 4U *
                             static_cast<unsigned int>(rect.height));
    store(width, rect.width);
    store(height, rect.height);
}

void RendererOpenGL::get_color_buffer(unsigned char* pixels) {
    if (pixels == nullptr)
        return;
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glPixelStorei(GL_PACK_ROW_LENGTH, 0);
    glPixelStorei(GL_PACK_SKIP_ROWS, 0);
    glPixelStorei(GL_PACK_SKIP_PIXELS, 0);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
    const Viewport_Rect rect = read_viewport();
    glReadBuffer(GL_BACK);
    glReadPixels(0, 0, rect.width, rect.height, GL_RGBA, GL_UNSIGNED_BYTE, pixels);
}

void RendererOpenGL::set_projection_matrix(mat4& matrix, bool apply) {
    ctx.projection_matrix = matrix;
    if (apply) {
        glMatrixMode(GL_PROJECTION);
        glLoadMatrixf(ctx.projection_matrix.ptr());
    }
}

mat4& RendererOpenGL::get_projection_matrix() {
    return ctx.projection_matrix;
}

void RendererOpenGL::set_view_matrix(mat4& matrix, bool apply) {
    ctx.view_matrix = matrix;
    if (apply) {
        glMatrixMode(GL_MODELVIEW);
        glLoadMatrixf(ctx.view_matrix.ptr());
    }
}

mat4& RendererOpenGL::get_view_matrix() {
    return ctx.view_matrix;
}

void RendererOpenGL::set_viewport(int x, int y, int width, int height) {
    glViewport(x, y, width, height);
}

void RendererOpenGL::get_viewport(int* x, int* y, int* width, int* height) {
    const Viewport_Rect rect = read_viewport();
    store(x, rect.x);
    store(y, rect.y);
    store(width, rect.width);
    store(height, rect.height);
}

int* RendererOpenGL::get_viewport_ptr() {
    glGetIntegerv(GL_VIEWPORT, viewport);
    return viewport;
}

} // namespace orvex
