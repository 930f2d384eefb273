#pragma once

/// @file
/// The family of the frame: clearing, reading back, matrices, viewport.

#include "orvex/math/mat4.h"
#include "orvex/math/vec4.h"

namespace orvex {

struct GlState;

/// Clears and reads the framebuffer, and says where in it is drawn. What each operation does is
/// told in `Renderer`.
class FrameFamily {
public:
    explicit FrameFamily(GlState& state)
        : state(state) {}

    void clear_color(float r, float g, float b, float a);
    void clear_depth(float depth);
    void clear_color_and_depth(float r, float g, float b, float a, float depth);
    void get_color_buffer_size(int* size, int* width, int* height);
    void get_color_buffer(unsigned char* pixels);

    void set_projection_matrix(const mat4& matrix, bool apply);
    void set_view_matrix(const mat4& matrix, bool apply);

    void set_viewport(int x, int y, int width, int height);
    void get_viewport(int* x, int* y, int* width, int* height);
    /// @return four numbers, valid until the next call; they live as long as this
    int* get_viewport_ptr();

    void finish();
    void flush();

private:
    GlState& state;
    int viewport[4] = {};
};

} // namespace orvex
