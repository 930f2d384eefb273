// How often a scanner allocates the pixels of a frame.

#include <gtest/gtest.h>

#include "frames.h"
#include "orvex/diagnostics/artifact_scanner.h"
#include "tests/support/heap.h"

namespace orvex_test {

using namespace orvex;
namespace {

/// How many pixel buffers `frames` further runs allocate.
unsigned long allocations_of(int width, int height, int frames) {
    orvex_test::FrameRenderer renderer;
    renderer.frame = orvex_test::Frame(width, height);
    auto* const scanner = new ArtifactScanner;
    EXPECT_TRUE(scanner->run(&renderer, false));
    const orvex_test::CountAllocations allocations(renderer.frame.bytes.size());
    for (int i = 0; i < frames; ++i)
        EXPECT_TRUE(scanner->run(&renderer, false));
    const unsigned long result = allocations.count();
    EXPECT_EQ(scanner->get_total_number_of_artifacts(), 0);
    scanner->kill(nullptr, nullptr);
    return result;
}

// The width of the texture is compared with both sizes of the frame.
TEST(ArtifactScannerAllocation, is_one_a_frame_when_the_frame_buffer_is_not_square) {
    EXPECT_EQ(allocations_of(64, 48, 5), 5u);
    EXPECT_EQ(allocations_of(48, 64, 5), 5u);
}

TEST(ArtifactScannerAllocation, is_none_when_the_frame_buffer_is_square) {
    EXPECT_EQ(allocations_of(56, 56, 5), 0u);
}

} // namespace
} // namespace orvex_test
