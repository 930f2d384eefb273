// A heap without large blocks: what would fill the machine is refused at once, as the system does
// when memory is out, and as the sanitizers' own `new` can't do, which has no way to throw.

#include <cstdlib>
#include <new>

namespace {

constexpr std::size_t largest = 64ul << 20;

void* take(std::size_t size) {
    if (size <= largest)
        if (void* const block = std::malloc(size > 0 ? size : 1))
            return block;
    throw std::bad_alloc();
}

void* take_aligned(std::size_t size, std::align_val_t alignment) {
    void* block = nullptr;
    if (size <= largest && posix_memalign(&block, static_cast<std::size_t>(alignment), size) == 0)
        return block;
    throw std::bad_alloc();
}

} // namespace

void* operator new(std::size_t size) {
    return take(size);
}
void* operator new[](std::size_t size) {
    return take(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return size <= largest ? std::malloc(size > 0 ? size : 1) : nullptr;
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return size <= largest ? std::malloc(size > 0 ? size : 1) : nullptr;
}
void* operator new(std::size_t size, std::align_val_t alignment) {
    return take_aligned(size, alignment);
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
    return take_aligned(size, alignment);
}
void operator delete(void* block, std::align_val_t) noexcept {
    std::free(block);
}
void operator delete[](void* block, std::align_val_t) noexcept {
    std::free(block);
}
void operator delete(void* block, std::size_t, std::align_val_t) noexcept {
    std::free(block);
}
void operator delete[](void* block, std::size_t, std::align_val_t) noexcept {
    std::free(block);
}
void operator delete(void* block) noexcept {
    std::free(block);
}
void operator delete[](void* block) noexcept {
    std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
    std::free(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    std::free(block);
}

// Read by the sanitizer when it starts, for what the engine asks `malloc`.
extern "C" const char* __asan_default_options();
extern "C" const char* __asan_default_options() {
    return "allocator_may_return_null=1:max_allocation_size_mb=256:detect_stack_use_after_return=0";
}
