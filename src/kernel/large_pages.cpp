#include "kernel/large_pages.h"

#include <cstdint>

#include <sys/mman.h>

namespace orvex {

namespace {

constexpr std::uintptr_t LARGE_PAGE = std::uintptr_t{2} << 20;

// Below this a large page would mostly be zeroed for nothing.
constexpr std::size_t SMALLEST_BLOCK = 2 * LARGE_PAGE;

} // namespace

void advise_large_pages(void* block, std::size_t bytes) {
    if (bytes < SMALLEST_BLOCK)
        return;
    const auto address = reinterpret_cast<std::uintptr_t>(block);
    const std::uintptr_t first = (address + LARGE_PAGE - 1) & ~(LARGE_PAGE - 1);
    const std::uintptr_t last = (address + bytes) & ~(LARGE_PAGE - 1);
    if (last > first)
        ::madvise(reinterpret_cast<void*>(first), last - first, MADV_HUGEPAGE);
}

} // namespace orvex
