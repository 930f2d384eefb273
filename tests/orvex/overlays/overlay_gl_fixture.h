#pragma once

/// @file
/// What the tests of overlays share that look at frames of 256 by 256 pixels.

#include <string>

#include <gtest/gtest.h>

#include "orvex/assets/images/codecs/image_codec_stb.h"
#include "orvex/assets/textures/texture_mgr.h"
#include "orvex/gpu/gpu_program_mgr.h"
#include "overlay_frame.h"
#include "tests/orvex/renderer/opengl/buffers/vertex_buffers_fixture.h"
#include "tests/support/log_capture.h"
#include "tests/support/picture.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

/// A recorded renderer on a context, the managers with the codec for pictures, and the log.
class OverlayStage : public RecordedRenderer {
public:
    OverlayStage() {
        textures.register_image_codec_plugin(new orvex::ImageCodecStb);
        start();
        log.clear();
    }
    ~OverlayStage() {
        EXPECT_EQ(textures.get_num_resources(), 0u) << "a texture that nobody gave back";
        EXPECT_EQ(programs.get_num_resources(), 0u) << "a program that nobody gave back";
        textures.stop(nullptr);
        programs.stop(nullptr);
    }

    /// Writes a PNG file of 16 by 16 pixels, in quarters. @return its path
    std::string write_quarters(const std::string& name, const Color& upper_left,
                               const Color& upper_right, const Color& lower_left,
                               const Color& lower_right) const {
        Picture picture(16, 16);
        const Color* const quarters[] = {&upper_left, &upper_right, &lower_left, &lower_right};
        for (int i = 0; i < 256; ++i) {
            const Color& color = *quarters[i / 128 * 2 + i % 16 / 8];
            unsigned char* const pixel = picture.at(i % 16, i / 16);
            for (std::size_t channel = 0; channel < 3; ++channel)
                pixel[channel] = static_cast<unsigned char>(color[channel]);
            pixel[3] = 255;
        }
        const std::string path = dir.file(name);
        EXPECT_TRUE(write_png(path, picture));
        return path;
    }

    std::string write_plain(const std::string& name, const Color& color) const {
        return write_quarters(name, color, color, color, color);
    }

    void clear(const Color& color = black) {
        renderer->set_viewport(0, 0, 256, 256);
        renderer->clear_color_depth_buffers(static_cast<float>(color[0]) / 255.0f,
                                            static_cast<float>(color[1]) / 255.0f,
                                            static_cast<float>(color[2]) / 255.0f, 1.0f, 1.0f);
        recorder->clear();
    }

    Color pixel(int x, int y) const {
        const GlRecorderPause pause(*recorder);
        return pixel_at(x, y);
    }

    Picture frame() const {
        const GlRecorderPause pause(*recorder);
        return read_frame(256, 256);
    }

    GlCalls commands() const { return take_commands(*recorder); }

    int asked(GLenum name) const {
        const GlRecorderPause pause(*recorder);
        int value = 0;
        glGetIntegerv(name, &value);
        return value;
    }

    bool enabled(GLenum name) const {
        const GlRecorderPause pause(*recorder);
        return glIsEnabled(name);
    }

    void drain_errors() const { drain_errors_of_fixed_matrices(*recorder); }

    orvex_test::LogCapture log;
    orvex_test::TempDir dir;
    orvex::TextureMgr& textures = *orvex::TextureMgr::get();
    orvex::GpuProgramMgr& programs = *orvex::GpuProgramMgr::get();
};

/// On both profiles.
class OverlayPictureTest : public GlTest {
protected:
    void SetUp() override {
        GlTest::SetUp();
        stage = std::make_unique<OverlayStage>();
    }
    void TearDown() override {
        stage->drain_errors();
        stage.reset();
        context().take_messages();
        GlTest::TearDown();
    }

    std::unique_ptr<OverlayStage> stage;
};

} // namespace orvex_test
