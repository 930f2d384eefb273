#include "counted_arrays.h"

#include <cstdint>
#include <cstdlib>
#include <new>
#include <utility>

namespace {

std::size_t counted_size = SIZE_MAX;
int count = 0;

} // namespace

int orvex_test::arrays_since_last_call(std::size_t size) {
    counted_size = size;
    return std::exchange(count, 0);
}

void* operator new[](std::size_t size) {
    if (size >= counted_size)
        ++count;
    if (void* const memory = std::malloc(size ? size : 1))
        return memory;
    throw std::bad_alloc();
}

void operator delete[](void* memory) noexcept {
    std::free(memory);
}

void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}
