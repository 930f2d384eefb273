// The heap of this program and of all libraries in it. It hands every request on to the system's
// heap, but for the one that is to fail, and keeps a list of the blocks that were taken for the
// engine.

#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>

#include <malloc.h>

#include "fault.h"

#define ORVEX_EXPORT __attribute__((visibility("default")))

// Under a sanitizer the heap is the sanitizer's, which finds who reads what a failure has freed.
#ifdef ORVEX_SANITIZED_HEAP
#define ORVEX_HEAP(name) __interceptor_##name
#else
#define ORVEX_HEAP(name) __libc_##name
#endif

extern "C" {
void* ORVEX_HEAP(malloc)(std::size_t size);
void* ORVEX_HEAP(calloc)(std::size_t count, std::size_t size);
void* ORVEX_HEAP(realloc)(void* block, std::size_t size);
void* ORVEX_HEAP(memalign)(std::size_t alignment, std::size_t size);
void ORVEX_HEAP(free)(void* block);
}

namespace orvex_test {
namespace {

/// The engine's blocks by their addresses: a table of fixed size with open addressing, since it can
/// take no memory itself.
class BlockTable {
public:
    void add(const void* block, std::size_t size, const void* place) {
        const Hold hold(busy);
        if (count >= capacity / 2)
            std::abort(); // a scenario is far smaller than this
        std::size_t i = home(block);
        while (slots[i].block)
            i = (i + 1) % capacity;
        slots[i] = {block, place, size, next_serial++};
        ++count;
    }

    /// Takes a block off the list, if it stands there.
    void remove(const void* block) {
        if (count == 0)
            return;
        const Hold hold(busy);
        std::size_t i = home(block);
        while (slots[i].block && slots[i].block != block)
            i = (i + 1) % capacity;
        if (!slots[i].block)
            return;
        --count;
        close_gap(i);
    }

    std::size_t find(unsigned long first_serial, LivingBlock* blocks, std::size_t room) {
        const Hold hold(busy);
        std::size_t found = 0;
        for (const LivingBlock& slot : slots)
            if (slot.block && slot.serial >= first_serial && found < room)
                blocks[found++] = slot;
        return found;
    }

    unsigned long size() const { return count; }
    unsigned long serial() const { return next_serial; }

private:
    static constexpr std::size_t capacity = std::size_t{1} << 18;

    /// A lock that never sleeps: the heap is asked from anywhere.
    class Hold {
    public:
        explicit Hold(std::atomic_flag& busy)
            : flag(busy) {
            while (flag.test_and_set(std::memory_order_acquire)) {
            }
        }
        ~Hold() { flag.clear(std::memory_order_release); }
        Hold(const Hold&) = delete;
        Hold& operator=(const Hold&) = delete;

    private:
        std::atomic_flag& flag;
    };

    static std::size_t home(const void* block) {
        const std::uint64_t bits = reinterpret_cast<std::uintptr_t>(block) >> 4;
        return static_cast<std::size_t>((bits * 0x9E3779B97F4A7C15u) >> 46) % capacity;
    }

    /// Moves later entries up, so that each is still found from its home.
    void close_gap(std::size_t gap) {
        for (std::size_t i = (gap + 1) % capacity; slots[i].block; i = (i + 1) % capacity) {
            const std::size_t from_home = (i + capacity - home(slots[i].block)) % capacity;
            const std::size_t from_gap = (i + capacity - gap) % capacity;
            if (from_home < from_gap)
                continue;
            slots[gap] = slots[i];
            gap = i;
        }
        slots[gap] = {};
    }

    std::atomic_flag busy = ATOMIC_FLAG_INIT;
    std::atomic<unsigned long> count = 0;
    std::atomic<unsigned long> next_serial = 1;
    LivingBlock slots[capacity] = {};
};

constinit BlockTable engine_blocks;

/// One request, handed on unless it is the one to fail.
/// @param take  gives the block or null
template<class Take>
void* serve(const char* function, std::size_t size, const void* place, Take take) {
    const bool for_engine = is_for_engine(place);
    if (for_engine && is_to_fail(FaultKind::memory, function, place)) {
        errno = ENOMEM;
        return nullptr;
    }
    void* const block = take();
    if (block && for_engine)
        engine_blocks.add(block, size, place);
    return block;
}

void* serve_new(std::size_t size, std::size_t alignment, const void* place) {
    return serve("new", size, place, [&] {
        return alignment <= alignof(std::max_align_t) ? ORVEX_HEAP(malloc)(size ? size : 1)
                                                      : ORVEX_HEAP(memalign)(alignment, size);
    });
}

void* serve_new_or_throw(std::size_t size, std::size_t alignment, const void* place) {
    if (void* const block = serve_new(size, alignment, place))
        return block;
    throw std::bad_alloc();
}

void give_back(void* block) {
    if (!block)
        return;
    engine_blocks.remove(block);
    ORVEX_HEAP(free)(block);
}

} // namespace

unsigned long living_engine_blocks() {
    return engine_blocks.size();
}

unsigned long next_block_serial() {
    return engine_blocks.serial();
}

std::size_t find_living_blocks(unsigned long first_serial, LivingBlock* blocks, std::size_t room) {
    return engine_blocks.find(first_serial, blocks, room);
}

} // namespace orvex_test

using namespace orvex_test;

#define ORVEX_PLACE __builtin_return_address(0)

extern "C" {

ORVEX_EXPORT void* malloc(std::size_t size) {
    return serve("malloc", size, ORVEX_PLACE, [&] { return ORVEX_HEAP(malloc)(size); });
}

ORVEX_EXPORT void* calloc(std::size_t count, std::size_t size) {
    return serve("calloc", count * size, ORVEX_PLACE,
                 [&] { return ORVEX_HEAP(calloc)(count, size); });
}

ORVEX_EXPORT void* realloc(void* block, std::size_t size) {
    return serve("realloc", size, ORVEX_PLACE, [&] {
        // Another thread may get the old address as soon as the heap has it.
        engine_blocks.remove(block);
        return ORVEX_HEAP(realloc)(block, size);
    });
}

ORVEX_EXPORT void* memalign(std::size_t alignment, std::size_t size) {
    return serve("memalign", size, ORVEX_PLACE,
                 [&] { return ORVEX_HEAP(memalign)(alignment, size); });
}

ORVEX_EXPORT void* aligned_alloc(std::size_t alignment, std::size_t size) {
    return serve("aligned_alloc", size, ORVEX_PLACE,
                 [&] { return ORVEX_HEAP(memalign)(alignment, size); });
}

ORVEX_EXPORT int posix_memalign(void** block, std::size_t alignment, std::size_t size) {
    void* const taken = serve("posix_memalign", size, ORVEX_PLACE,
                              [&] { return ORVEX_HEAP(memalign)(alignment, size); });
    if (!taken)
        return ENOMEM;
    *block = taken;
    return 0;
}

ORVEX_EXPORT void free(void* block) {
    give_back(block);
}
}

void* operator new(std::size_t size) {
    return serve_new_or_throw(size, 0, ORVEX_PLACE);
}

void* operator new[](std::size_t size) {
    return serve_new_or_throw(size, 0, ORVEX_PLACE);
}

void* operator new(std::size_t size, std::align_val_t alignment) {
    return serve_new_or_throw(size, static_cast<std::size_t>(alignment), ORVEX_PLACE);
}

void* operator new[](std::size_t size, std::align_val_t alignment) {
    return serve_new_or_throw(size, static_cast<std::size_t>(alignment), ORVEX_PLACE);
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return serve_new(size, 0, ORVEX_PLACE);
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return serve_new(size, 0, ORVEX_PLACE);
}

void* operator new(std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
    return serve_new(size, static_cast<std::size_t>(alignment), ORVEX_PLACE);
}

void* operator new[](std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
    return serve_new(size, static_cast<std::size_t>(alignment), ORVEX_PLACE);
}

void operator delete(void* block) noexcept {
    give_back(block);
}

void operator delete[](void* block) noexcept {
    give_back(block);
}

void operator delete(void* block, std::size_t) noexcept {
    give_back(block);
}

void operator delete[](void* block, std::size_t) noexcept {
    give_back(block);
}

void operator delete(void* block, std::align_val_t) noexcept {
    give_back(block);
}

void operator delete[](void* block, std::align_val_t) noexcept {
    give_back(block);
}

void operator delete(void* block, std::size_t, std::align_val_t) noexcept {
    give_back(block);
}

void operator delete[](void* block, std::size_t, std::align_val_t) noexcept {
    give_back(block);
}

void operator delete(void* block, const std::nothrow_t&) noexcept {
    give_back(block);
}

void operator delete[](void* block, const std::nothrow_t&) noexcept {
    give_back(block);
}

void operator delete(void* block, std::align_val_t, const std::nothrow_t&) noexcept {
    give_back(block);
}

void operator delete[](void* block, std::align_val_t, const std::nothrow_t&) noexcept {
    give_back(block);
}
