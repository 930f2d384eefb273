#pragma once

/// @file
/// Frames for the scanner that no graphics hardware draws.

#include <algorithm>
#include <utility>
#include <vector>

#include "tests/orvex/assets/textures/fake_render_target.h"
#include "tests/support/fake_renderer.h"

namespace orvex_test {

/// Four bytes a pixel.
struct Frame {
    int width = 0;
    int height = 0;
    std::vector<unsigned char> bytes;

    Frame() = default;
    Frame(int frame_width, int frame_height)
        : width(frame_width)
        , height(frame_height)
        , bytes(static_cast<unsigned long>(frame_width) * static_cast<unsigned long>(frame_height) *
                4) {}

    unsigned long pixels() const { return bytes.size() / 4; }
    /// Turns over one bit of one channel of a pixel.
    void spoil(unsigned long pixel, unsigned long channel = 0, int bit = 0) {
        unsigned char& byte = bytes[pixel * 4 + channel];
        byte = static_cast<unsigned char>(byte ^ 1 << bit);
    }
};

/// A renderer whose frame buffer shows a frame.
class FrameRenderer : public FakeRenderer {
public:
    Frame frame;
    int reads = 0;

    void get_color_buffer_size(int* size, int* width, int* height) override {
        *size = frame.width * frame.height * 4;
        *width = frame.width;
        *height = frame.height;
    }
    void get_color_buffer(unsigned char* pixels) override {
        ++reads;
        if (pixels)
            std::copy(frame.bytes.begin(), frame.bytes.end(), pixels);
    }
};

/// A render target that holds a frame.
class FrameTarget : public FakeRenderTarget {
public:
    explicit FrameTarget(Frame held)
        : FakeRenderTarget(held.width, held.height)
        , frame(std::move(held)) {}

    Frame frame;

    bool read_color_pixmap_rgba_u8(unsigned char* pixels) override {
        if (readable)
            std::copy(frame.bytes.begin(), frame.bytes.end(), pixels);
        return readable;
    }
};

} // namespace orvex_test
