// How often a scanner allocates the pixels of a frame.

#include <cstdint>

#include <gtest/gtest.h>

#include "counted_arrays.h"
#include "diagnostics/artifact_scanner.h"
#include "frames.h"

namespace orvex {
namespace {

/// How many pixel buffers `frames` further runs allocate.
int allocations_of(int width, int height, int frames) {
    orvex_test::FrameRenderer renderer;
    renderer.frame = orvex_test::Frame(width, height);
    auto* const scanner = new ArtifactScanner;
    EXPECT_TRUE(scanner->run(&renderer, false));
    orvex_test::arrays_since_last_call(renderer.frame.bytes.size());
    for (int i = 0; i < frames; ++i)
        EXPECT_TRUE(scanner->run(&renderer, false));
    const int result = orvex_test::arrays_since_last_call(SIZE_MAX);
    EXPECT_EQ(scanner->get_total_number_of_artifacts(), 0);
    scanner->kill(nullptr, nullptr);
    return result;
}

// The width of the texture is compared with both sizes of the frame.
TEST(ArtifactScannerAllocation, is_one_a_frame_when_the_frame_buffer_is_not_square) {
    EXPECT_EQ(allocations_of(64, 48, 5), 5);
    EXPECT_EQ(allocations_of(48, 64, 5), 5);
}

TEST(ArtifactScannerAllocation, is_none_when_the_frame_buffer_is_square) {
    EXPECT_EQ(allocations_of(56, 56, 5), 0);
}

} // namespace
} // namespace orvex
