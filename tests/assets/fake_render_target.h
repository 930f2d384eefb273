#pragma once

#include <cstring>

#include "renderer/render_target.h"

namespace orvex_test {

/// A render target of one colour, without a graphics API behind it.
class FakeRenderTarget : public orvex::RenderTarget {
public:
    FakeRenderTarget(int target_width, int target_height) {
        width = target_width;
        height = target_height;
    }

    bool readable = true;
    int color_index = -1;
    unsigned int color_id = 11;
    unsigned int depth_id = 12;

    using Format = orvex::PIXEL_FORMAT;

    bool create_render_buffer_target(int, int, Format, bool, unsigned long, bool, int) override {
        return false;
    }
    bool create_target(int, int, Format, bool, bool, bool, int) override { return false; }
    bool create_target_v2(int, int, Format, unsigned long, bool, bool, bool, int) override {
        return false;
    }
    bool create_target_rect(int, int, Format, bool, bool, bool, int) override { return false; }
    bool create_target_rect_v2(int, int, Format, unsigned long, bool, bool, bool, int) override {
        return false;
    }
    bool create_target_depth(int, int, bool, bool) override { return false; }
    bool create_target_depth_rect(int, int, bool, bool) override { return false; }
    bool clear_color_buffer(int, float, float, float, float) override { return false; }
    bool clear_depth_buffer(float) override { return false; }

    /// Rows padded to four bytes, each byte the number of its row counted from 1.
    bool read_color_pixmap_rgb_u8(unsigned char* pixels) override { return read(pixels, 3); }
    bool read_color_pixmap_rgba_u8(unsigned char* pixels) override { return read(pixels, 4); }

    bool kill() override { return true; }
    bool activate() override { return true; }
    bool deactivate() override { return true; }
    bool resize(int, int) override { return true; }
    unsigned int get_fbo() override { return 1; }
    unsigned int get_color_tex_id_opengl(int index) override {
        color_index = index;
        return color_id;
    }
    unsigned int get_depth_tex_id_opengl() override { return depth_id; }
    void clear_error_str() override {}
    const char* get_error_str() override { return ""; }
    unsigned long get_error_str_size() override { return 0; }

private:
    bool read(unsigned char* pixels, int channels) {
        const auto row = static_cast<unsigned long>((width * channels + 3) / 4 * 4);
        for (int y = 0; readable && y < height; ++y)
            std::memset(pixels + static_cast<unsigned long>(y) * row, y + 1, row);
        return readable;
    }
};

} // namespace orvex_test
