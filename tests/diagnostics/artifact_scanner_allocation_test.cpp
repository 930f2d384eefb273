// How often a scanner allocates the pixels of a frame.

#include <cstdlib>
#include <new>

#include <gtest/gtest.h>

#include "diagnostics/artifact_scanner.h"
#include "frames.h"

namespace {

std::size_t watched_size = 0;
int num_allocations = 0;

} // namespace

void* operator new[](std::size_t size) {
    if (size >= watched_size)
        ++num_allocations;
    if (void* block = std::malloc(size == 0 ? 1 : size))
        return block;
    throw std::bad_alloc();
}

void operator delete[](void* block) noexcept {
    std::free(block);
}

void operator delete[](void* block, std::size_t) noexcept {
    std::free(block);
}

namespace orvex {
namespace {

/// How many pixel buffers `frames` further runs allocate.
int allocations_of(int width, int height, int frames) {
    orvex_test::FrameRenderer renderer;
    renderer.frame = orvex_test::Frame(width, height);
    auto* const scanner = new ArtifactScanner;
    EXPECT_TRUE(scanner->run(&renderer, false));
    watched_size = renderer.frame.bytes.size();
    num_allocations = 0;
    for (int i = 0; i < frames; ++i)
        EXPECT_TRUE(scanner->run(&renderer, false));
    EXPECT_EQ(scanner->get_total_number_of_artifacts(), 0);
    const int result = num_allocations;
    scanner->kill(nullptr, nullptr);
    return result;
}

// Its width is compared with both sizes of the frame.
TEST(ArtifactScannerAllocation, is_one_a_frame_when_the_frame_buffer_is_not_square) {
    EXPECT_EQ(allocations_of(64, 48, 5), 5);
    EXPECT_EQ(allocations_of(48, 64, 5), 5);
}

TEST(ArtifactScannerAllocation, is_none_when_the_frame_buffer_is_square) {
    EXPECT_EQ(allocations_of(56, 56, 5), 0);
}

} // namespace
} // namespace orvex
