#pragma once

#include <cstring>

#include "tests/support/stub_render_target.h"

namespace orvex_test {

/// A render target of one colour, without a graphics API behind it.
class FakeRenderTarget : public StubRenderTarget {
public:
    FakeRenderTarget(int target_width, int target_height) {
        width = target_width;
        height = target_height;
        first_color_texture = 11;
        depth_texture = 12;
    }

    bool readable = true;
    int color_index = -1;

    /// Rows padded to four bytes, each byte the number of its row counted from 1.
    bool read_color_pixmap_rgb_u8(unsigned char* pixels) override { return read(pixels, 3); }
    bool read_color_pixmap_rgba_u8(unsigned char* pixels) override { return read(pixels, 4); }

    unsigned int get_color_tex_id_opengl(int index) override {
        color_index = index;
        return StubRenderTarget::get_color_tex_id_opengl(index);
    }

private:
    bool read(unsigned char* pixels, int channels) {
        const auto row = static_cast<unsigned long>((width * channels + 3) / 4 * 4);
        for (int y = 0; readable && y < height; ++y)
            std::memset(pixels + static_cast<unsigned long>(y) * row, y + 1, row);
        return readable;
    }
};

} // namespace orvex_test
