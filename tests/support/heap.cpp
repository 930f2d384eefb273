#include "heap.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <new>
#include <stdexcept>

#include <malloc.h>

namespace orvex_test {
namespace {

thread_local CountAllocations* innermost = nullptr;

std::atomic<long> living = 0;
std::atomic<long> living_bytes = 0, most_bytes = 0;

thread_local Refusal refusal;
thread_local bool is_refusing = false;

} // namespace

CountAllocations::CountAllocations(std::size_t min_size)
    : outer(innermost)
    , smallest(min_size) {
    innermost = this;
}

CountAllocations::~CountAllocations() {
    innermost = outer;
}

void CountAllocations::tell(void* block, std::size_t size) {
    for (CountAllocations* counter = innermost; counter; counter = counter->outer) {
        if (size < counter->smallest)
            continue;
        ++counter->num_blocks;
        counter->newest = block;
    }
}

long living_blocks() {
    return living;
}

HeapPeak::HeapPeak()
    : before(living_bytes) {
    most_bytes = before;
}

std::size_t HeapPeak::bytes() const {
    return static_cast<std::size_t>(std::max(most_bytes - before, 0l));
}

RefuseArrays::RefuseArrays(const Refusal& arrays) {
    refusal = arrays;
    is_refusing = true;
}

RefuseArrays::~RefuseArrays() {
    is_refusing = false;
}

namespace {

bool is_refused(std::size_t size) {
    if (!is_refusing || size < refusal.min_size)
        return false;
    if (refusal.granted > 0) {
        --refusal.granted;
        return false;
    }
    if (refusal.refused == 0)
        return false;
    --refusal.refused;
    return true;
}

void refuse() {
    switch (refusal.thrown) {
    case Thrown::bad_alloc:
        throw std::bad_alloc();
    case Thrown::runtime_error:
        throw std::runtime_error("refused");
    case Thrown::number:
        throw 42;
    }
}

long size_of(void* block) noexcept {
    return static_cast<long>(malloc_usable_size(block));
}

void count(void* block) noexcept {
    living.fetch_add(1, std::memory_order_relaxed);
    const long size = size_of(block);
    const long now = living_bytes.fetch_add(size, std::memory_order_relaxed) + size;
    long most = most_bytes.load(std::memory_order_relaxed);
    while (now > most && !most_bytes.compare_exchange_weak(most, now, std::memory_order_relaxed)) {
    }
}

constexpr std::align_val_t least_alignment{alignof(std::max_align_t)};

void* allocate_or_null(std::size_t size, std::align_val_t alignment) noexcept {
    void* block = nullptr;
    const std::size_t bytes = std::max<std::size_t>(size, 1);
    if (alignment <= least_alignment)
        block = std::malloc(bytes);
    else if (posix_memalign(&block, static_cast<std::size_t>(alignment), bytes) != 0)
        return nullptr;
    if (!block)
        return nullptr;
    count(block);
    CountAllocations::tell(block, size);
    return block;
}

void give_back(void* block) noexcept {
    if (block) {
        living.fetch_sub(1, std::memory_order_relaxed);
        living_bytes.fetch_sub(size_of(block), std::memory_order_relaxed);
    }
    std::free(block);
}

void* allocate(std::size_t size, std::align_val_t alignment = least_alignment) {
    if (void* const block = allocate_or_null(size, alignment))
        return block;
    throw std::bad_alloc();
}

void* allocate_single(std::size_t size, std::align_val_t alignment = least_alignment) {
    if (refusal.single && is_refused(size))
        refuse();
    return allocate(size, alignment);
}

void* allocate_array(std::size_t size, std::align_val_t alignment = least_alignment) {
    if (!refusal.single && is_refused(size))
        refuse();
    return allocate(size, alignment);
}

void* allocate_array_or_null(std::size_t size,
                             std::align_val_t alignment = least_alignment) noexcept {
    return !refusal.single && is_refused(size) ? nullptr : allocate_or_null(size, alignment);
}

} // namespace
} // namespace orvex_test

using namespace orvex_test;

// All forms or none: a sanitizer has each of them too, and takes no block that another form made.

void* operator new(std::size_t size) {
    return allocate_single(size);
}

void* operator new(std::size_t size, std::align_val_t alignment) {
    return allocate_single(size, alignment);
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return allocate_or_null(size, least_alignment);
}

void* operator new(std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
    return allocate_or_null(size, alignment);
}

void* operator new[](std::size_t size) {
    return allocate_array(size);
}

void* operator new[](std::size_t size, std::align_val_t alignment) {
    return allocate_array(size, alignment);
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return allocate_array_or_null(size);
}

void* operator new[](std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
    return allocate_array_or_null(size, alignment);
}

void operator delete(void* block) noexcept {
    give_back(block);
}

void operator delete(void* block, std::size_t) noexcept {
    give_back(block);
}

void operator delete(void* block, std::align_val_t) noexcept {
    give_back(block);
}

void operator delete(void* block, std::size_t, std::align_val_t) noexcept {
    give_back(block);
}

void operator delete(void* block, const std::nothrow_t&) noexcept {
    give_back(block);
}

void operator delete(void* block, std::align_val_t, const std::nothrow_t&) noexcept {
    give_back(block);
}

void operator delete[](void* block) noexcept {
    give_back(block);
}

void operator delete[](void* block, std::size_t) noexcept {
    give_back(block);
}

void operator delete[](void* block, std::align_val_t) noexcept {
    give_back(block);
}

void operator delete[](void* block, std::size_t, std::align_val_t) noexcept {
    give_back(block);
}

void operator delete[](void* block, const std::nothrow_t&) noexcept {
    give_back(block);
}

void operator delete[](void* block, std::align_val_t, const std::nothrow_t&) noexcept {
    give_back(block);
}
