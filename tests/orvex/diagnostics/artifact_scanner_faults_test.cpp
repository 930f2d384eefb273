// Planted faults and clean frames, by the ten thousands.

#include <algorithm>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "frames.h"
#include "orvex/assets/textures/texture.h"
#include "orvex/diagnostics/artifact_scanner.h"

namespace orvex_test {

using namespace orvex;
namespace {

constexpr unsigned long width = 1280;
constexpr unsigned long height = 720;
constexpr unsigned long num_pixels = width * height;
constexpr int num_frames = 10000;

/// A scanner that holds a frame of random pixels as its reference, and a texture of the same.
class ArtifactScannerFaults : public testing::Test {
protected:
    void SetUp() override {
        renderer.frame = orvex_test::Frame(width, height);
        for (unsigned char& byte : renderer.frame.bytes)
            byte = static_cast<unsigned char>(random());
        ASSERT_TRUE(scanner->run(&renderer, false));
        texture.create_2d(width, height, PF_RGBA_U8);
        pixels = texture.get_pixmap_u8_ptr();
        std::copy(renderer.frame.bytes.begin(), renderer.frame.bytes.end(), pixels);
    }
    void TearDown() override { scanner->kill(&renderer, nullptr); }

    unsigned long below(unsigned long limit) { return random() % limit; }

    /// Turns over one bit of one channel.
    void turn(unsigned long pixel) {
        unsigned char& byte = pixels[pixel * 4 + below(4)];
        byte = static_cast<unsigned char>(byte ^ 1u << below(8));
        spoiled.push_back(pixel);
    }

    /// Spoils a rectangle of pixels, each in one bit.
    void turn_block(unsigned long x, unsigned long y, unsigned long w, unsigned long h) {
        for (unsigned long row = y; row < y + h; ++row)
            for (unsigned long column = x; column < x + w; ++column)
                turn(row * width + column);
    }

    void expect_exact_counts() {
        const auto even = std::count_if(spoiled.begin(), spoiled.end(),
                                        [](unsigned long pixel) { return pixel % 2 == 0; });
        ASSERT_EQ(scanner->find_artifacts(&texture, false), static_cast<int>(spoiled.size()));
        ASSERT_EQ(scanner->find_artifacts(&texture, true), static_cast<int>(even));
    }

    void mend() {
        for (const unsigned long pixel : spoiled)
            std::copy_n(renderer.frame.bytes.data() + pixel * 4, 4, pixels + pixel * 4);
        spoiled.clear();
    }

    std::mt19937 random{2026};
    orvex_test::FrameRenderer renderer;
    ArtifactScanner* scanner = new ArtifactScanner;
    Texture texture;
    unsigned char* pixels = nullptr;
    std::vector<unsigned long> spoiled;
};

TEST_F(ArtifactScannerFaults, of_one_bit_are_all_counted) {
    for (int i = 0; i < num_frames; ++i) {
        turn(below(num_pixels));
        ASSERT_EQ(scanner->find_artifacts(&texture, false), 1) << "pixel " << spoiled[0];
        mend();
    }
}

TEST_F(ArtifactScannerFaults, are_none_in_clean_frames) {
    for (int i = 0; i < num_frames; ++i)
        ASSERT_EQ(scanner->find_artifacts(&texture, false), 0);
}

TEST_F(ArtifactScannerFaults, at_the_first_and_the_last_pixel_are_counted) {
    for (const unsigned long pixel : {0ul, 1ul, width - 1, width, num_pixels - 2, num_pixels - 1}) {
        turn(pixel);
        expect_exact_counts();
        EXPECT_TRUE(scanner->is_there_artifact(&texture, false));
        mend();
        EXPECT_FALSE(scanner->is_there_artifact(&texture, false));
    }
}

TEST_F(ArtifactScannerFaults, of_lines_and_blocks_are_counted_exactly) {
    for (int i = 0; i < 100; ++i) {
        turn_block(0, below(height), width, 1);
        expect_exact_counts();
        mend();
        turn_block(below(width), 0, 1, height);
        expect_exact_counts();
        mend();
        const unsigned long w = 1 + below(200);
        const unsigned long h = 1 + below(200);
        turn_block(below(width - w), below(height - h), w, h);
        expect_exact_counts();
        mend();
    }
}

TEST_F(ArtifactScannerFaults, of_whole_frames_are_counted_exactly) {
    turn_block(0, 0, width, height);
    expect_exact_counts();
    EXPECT_EQ(scanner->find_artifacts(&texture, false), 921600);
    EXPECT_EQ(scanner->find_artifacts(&texture, true), 460800);
}

} // namespace
} // namespace orvex_test
