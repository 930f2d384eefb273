// The scanner on frames that a real context draws.

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <random>

#include <GL/gl.h>
#include <GL/glext.h>
#include <gtest/gtest.h>

#include "orvex/diagnostics/artifact_scanner.h"
#include "orvex/renderer/opengl/private/renderer_opengl.h"
#include "orvex/renderer/render_target.h"
#include "tests/support/gl_context.h"

namespace orvex_test {

using namespace orvex;
namespace {

using orvex_test::GlContext;

constexpr int width = 1280;
constexpr int height = 720;
constexpr unsigned long num_pixels = 1280ul * 720;

/// How many faults each kind of frame is spoiled with, one after the other, with a clean frame
/// behind each. ORVEX_SCANNER_FAULTS in the environment asks for more.
int num_faults() {
    const char* const wanted = std::getenv("ORVEX_SCANNER_FAULTS");
    return wanted ? std::atoi(wanted) : 200;
}

/// The frame buffer or a render target of 1280 by 720 with a pattern, and a scanner that looks at
/// it.
class ScannedFrame : public testing::TestWithParam<orvex_test::Profile> {
protected:
    void SetUp() override {
        gl = std::make_unique<GlContext>(GetParam(), width, height);
        renderer = std::make_unique<RendererOpenGL>();
        renderer->start();
        renderer->set_viewport(0, 0, width, height);
        scanner = new ArtifactScanner;
    }
    void TearDown() override {
        scanner->kill(renderer.get(), nullptr);
        renderer->kill_all_render_targets();
        renderer.reset();
        orvex_test::forget_gl_errors();
    }

    /// Scans a render target instead of the frame buffer.
    void use_target() {
        target = renderer->create_render_target();
        ASSERT_TRUE(target->create_target(width, height, PF_RGBA_U8, false, false, false, 0));
        scanner->set_render_target(target);
    }

    /// Fills a rectangle with a colour of 8-bit channels.
    void fill(int x, int y, int w, int h, const int (&rgba)[4]) {
        if (target)
            target->activate();
        renderer->set_scissor(x, y, w, h);
        renderer->set_scissor_state(true);
        renderer->clear_color_buffer(
            static_cast<float>(rgba[0]) / 255.0f, static_cast<float>(rgba[1]) / 255.0f,
            static_cast<float>(rgba[2]) / 255.0f, static_cast<float>(rgba[3]) / 255.0f);
        renderer->set_scissor_state(false);
        if (target)
            target->deactivate();
    }

    static constexpr int plain[4] = {100, 150, 200, 250};
    void fill_all() { fill(0, 0, width, height, plain); }

    /// The plain colour with one bit turned over.
    static void spoiled(int (&rgba)[4], unsigned int channel, unsigned int bit) {
        std::copy_n(plain, 4, rgba);
        rgba[channel] ^= 1 << bit;
    }

    /// Runs on `frames` frames with a pixel of one wrong bit each, and on as many clean ones.
    void expect_faults_to_be_counted(int frames) {
        fill_all();
        ASSERT_TRUE(scanner->run(renderer.get(), false));
        std::mt19937 random(77);
        for (int i = 0; i < frames; ++i) {
            const auto pixel = static_cast<int>(random() % num_pixels);
            int wrong[4];
            spoiled(wrong, random() % 4, random() % 8);
            fill(pixel % width, pixel / width, 1, 1, wrong);
            ASSERT_TRUE(scanner->run(renderer.get(), false));
            ASSERT_EQ(scanner->get_number_of_artifacts(), 1) << "pixel " << pixel;
            fill(pixel % width, pixel / width, 1, 1, plain);
            ASSERT_TRUE(scanner->run(renderer.get(), false));
            ASSERT_EQ(scanner->get_number_of_artifacts(), 0) << "mended pixel " << pixel;
        }
        EXPECT_EQ(scanner->get_total_number_of_artifacts(), frames);
        EXPECT_EQ(scanner->get_max_number_of_artifacts(), frames > 0 ? 1 : 0);
    }

    void expect_shapes_to_be_counted() {
        struct Row {
            int x, y, w, h;
        };
        fill_all();
        ASSERT_TRUE(scanner->run(renderer.get(), false));
        int wrong[4];
        spoiled(wrong, 3, 0);
        for (const Row& row :
             {Row{0, 0, 1, 1}, Row{width - 1, height - 1, 1, 1}, Row{0, 359, width, 1},
              Row{640, 0, 1, height}, Row{333, 222, 77, 55}, Row{0, 0, width, height}}) {
            fill(row.x, row.y, row.w, row.h, wrong);
            ASSERT_TRUE(scanner->run(renderer.get(), false));
            EXPECT_EQ(scanner->get_number_of_artifacts(), row.w * row.h);
            fill_all();
        }
        ASSERT_TRUE(scanner->run(renderer.get(), false));
        EXPECT_EQ(scanner->get_number_of_artifacts(), 0);
        EXPECT_EQ(scanner->get_max_number_of_artifacts(), width * height);
    }

    std::unique_ptr<GlContext> gl;
    std::unique_ptr<RendererOpenGL> renderer;
    RenderTarget* target = nullptr;
    ArtifactScanner* scanner = nullptr;
};
ORVEX_BOTH_PROFILES(ScannedFrame);

TEST_P(ScannedFrame, of_the_frame_buffer_shows_each_fault) {
    expect_faults_to_be_counted(num_faults());
}

TEST_P(ScannedFrame, of_a_render_target_shows_each_fault) {
    use_target();
    expect_faults_to_be_counted(num_faults());
}

TEST_P(ScannedFrame, of_the_frame_buffer_shows_lines_blocks_and_whole_frames) {
    expect_shapes_to_be_counted();
}

TEST_P(ScannedFrame, of_a_render_target_shows_lines_blocks_and_whole_frames) {
    use_target();
    expect_shapes_to_be_counted();
}

TEST_P(ScannedFrame, of_a_multisample_target_cannot_be_read) {
    target = renderer->create_render_target();
    ASSERT_TRUE(target->create_target(64, 64, PF_RGBA_U8, false, false, false, 4));
    scanner->set_render_target(target);
    EXPECT_FALSE(scanner->run(renderer.get(), false));
    EXPECT_EQ(scanner->get_number_of_artifacts(), 0);
    ASSERT_TRUE(target->create_target(64, 64, PF_RGBA_U8, false, false, false, 0));
    EXPECT_TRUE(scanner->run(renderer.get(), false));
}

} // namespace
} // namespace orvex_test
