#include "orvex/platform/private/large_pages.h"

#include <cstdint>
#include <new>

#include <sys/mman.h>
#include <unistd.h>

namespace orvex {

namespace {

constexpr std::size_t large_page = std::size_t{2} << 20;

// Below this a large page would mostly be zeroed for nothing.
constexpr std::size_t smallest_block = 2 * large_page;

} // namespace

void advise_large_pages(void* block, std::size_t bytes) {
    if (bytes < smallest_block)
        return;
    const auto address = reinterpret_cast<std::uintptr_t>(block);
    const std::uintptr_t first = (address + large_page - 1) & ~(large_page - 1);
    const std::uintptr_t last = (address + bytes) & ~(large_page - 1);
    if (last > first)
        ::madvise(reinterpret_cast<void*>(first), last - first, MADV_HUGEPAGE);
}

namespace {

// Below this, asking costs about as much as it spares.
constexpr std::size_t smallest_block_at_once = std::size_t{128} << 10;

} // namespace

bool is_page_present(const void* address) {
    const auto page_size = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
    const std::uintptr_t page = reinterpret_cast<std::uintptr_t>(address) & ~(page_size - 1);
    unsigned char state = 1;
    return ::mincore(reinterpret_cast<void*>(page), page_size, &state) != 0 || (state & 1) != 0;
}

void advise_filling(void* block, std::size_t bytes) {
    advise_large_pages(block, bytes);
#ifdef MADV_POPULATE_WRITE
    if (bytes < smallest_block_at_once || bytes >= smallest_block)
        return;
    const auto page_size = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
    const auto address = reinterpret_cast<std::uintptr_t>(block);
    const std::uintptr_t first = (address + page_size - 1) & ~(page_size - 1);
    const std::uintptr_t last = (address + bytes) & ~(page_size - 1);
    // A block is new memory, or memory that was given back, or begins there and ends in new one.
    if (last > first && !is_page_present(reinterpret_cast<void*>(last - page_size)))
        ::madvise(reinterpret_cast<void*>(first), last - first, MADV_POPULATE_WRITE);
#endif
}

void LargeBlockDeleter::operator()(std::byte* block) const {
    if (is_aligned)
        ::operator delete[](block, std::align_val_t{large_page});
    else
        ::operator delete[](block);
}

namespace {

/// Up to whole large pages, if that leaves less than half of the last one unused.
std::size_t fit_large_pages(std::size_t bytes) {
    const std::size_t rest = bytes % large_page;
    return rest < large_page / 2 ? bytes : bytes + (large_page - rest);
}

} // namespace

LargeBlock new_large_block(std::size_t bytes) {
    if (bytes > static_cast<std::size_t>(-1) / 2)
        throw std::bad_alloc();
    if (bytes < large_page / 2) {
        LargeBlock block(static_cast<std::byte*>(::operator new[](bytes)), {});
        advise_filling(block.get(), bytes);
        return block;
    }
    bytes = fit_large_pages(bytes);
    LargeBlock block(static_cast<std::byte*>(::operator new[](bytes, std::align_val_t{large_page})),
                     {true});
    ::madvise(block.get(), bytes - bytes % large_page, MADV_HUGEPAGE);
    return block;
}

} // namespace orvex
