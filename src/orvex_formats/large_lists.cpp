#include "orvex_formats/private/large_lists.h"

#include <cstdint>

#include <sys/mman.h>

namespace orvex::formats {

void ask_for_large_pages(void* memory, std::size_t size) {
    constexpr std::size_t page = std::size_t{2} << 20, least = 2 * page;
    if (size < least)
        return;
    // Only pages that lie within it as a whole.
    const auto address = reinterpret_cast<std::uintptr_t>(memory);
    const std::uintptr_t first = (address + page - 1) & ~(page - 1);
    const std::uintptr_t last = (address + size) & ~(page - 1);
    if (last > first)
        madvise(reinterpret_cast<void*>(first), last - first, MADV_HUGEPAGE);
}

} // namespace orvex::formats
