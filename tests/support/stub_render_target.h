#pragma once

#include "orvex/renderer/render_target.h"

namespace orvex_test {

/// A render target that can do nothing but name its textures.
class StubRenderTarget : public orvex::RenderTarget {
public:
    bool create_render_buffer_target(int, int, orvex::PIXEL_FORMAT, bool, unsigned long, bool,
                                     int) override {
        return false;
    }
    bool create_target(int, int, orvex::PIXEL_FORMAT, bool, bool, bool, int) override {
        return false;
    }
    bool create_target_v2(int, int, orvex::PIXEL_FORMAT, unsigned long, bool, bool, bool,
                          int) override {
        return false;
    }
    bool create_target_rect(int, int, orvex::PIXEL_FORMAT, bool, bool, bool, int) override {
        return false;
    }
    bool create_target_rect_v2(int, int, orvex::PIXEL_FORMAT, unsigned long, bool, bool, bool,
                               int) override {
        return false;
    }
    bool create_target_depth(int, int, bool, bool) override { return false; }
    bool create_target_depth_rect(int, int, bool, bool) override { return false; }
    bool clear_color_buffer(int, float, float, float, float) override { return false; }
    bool clear_depth_buffer(float) override { return false; }
    bool read_color_pixmap_rgb_u8(unsigned char*) override { return false; }
    bool read_color_pixmap_rgba_u8(unsigned char*) override { return false; }
    bool kill() override { return false; }
    bool activate() override { return false; }
    bool deactivate() override { return false; }
    bool resize(int, int) override { return false; }
    unsigned int get_fbo() override { return 0; }
    unsigned int get_color_tex_id_opengl(int index) override {
        return first_color_texture + static_cast<unsigned int>(index);
    }
    unsigned int get_depth_tex_id_opengl() override { return depth_texture; }
    void clear_error_str() override {}
    const char* get_error_str() override { return ""; }
    unsigned long get_error_str_size() override { return 0; }

    unsigned int first_color_texture = 0;
    unsigned int depth_texture = 0;
};

} // namespace orvex_test
