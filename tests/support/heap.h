#pragma once

#include <cstddef>

/// @file
/// The heap of a test program that links `orvex_test_heap`. It stands in for `new` and `delete` in
/// the whole program, drivers included, so that such tests have a program of their own.

namespace orvex_test {

/// While one lives, it counts what its thread allocates by `new`. May stand inside another.
class CountAllocations {
public:
    /// Counts blocks of at least so many bytes.
    explicit CountAllocations(std::size_t min_size = 0);
    ~CountAllocations();
    CountAllocations(const CountAllocations&) = delete;
    CountAllocations& operator=(const CountAllocations&) = delete;

    unsigned long count() const { return num_blocks; }

    /// The block that was counted last; null before the first.
    void* last_block() const { return newest; }

    /// What the heap tells of each block.
    static void tell(void* block, std::size_t size);

private:
    CountAllocations* const outer;
    const std::size_t smallest;
    unsigned long num_blocks = 0;
    void* newest = nullptr;
};

/// Blocks that `new` has given and `delete` hasn't taken back, of all threads. What is left behind
/// shows as a difference.
long living_blocks();

/// Follows how much `new` has given, of all threads, from its begin on. One at a time.
class HeapPeak {
public:
    HeapPeak();
    HeapPeak(const HeapPeak&) = delete;
    HeapPeak& operator=(const HeapPeak&) = delete;

    /// The most bytes that were held at once, beyond those that were there before.
    std::size_t bytes() const;

private:
    long before;
};

/// What an array that is refused throws.
enum class Thrown {
    bad_alloc,
    runtime_error, ///< of the text "refused"
    number,        ///< something that is no `std::exception`
};

/// Which arrays are refused; if not told otherwise, all of them.
struct Refusal {
    unsigned long granted = 0;                              ///< so many come first
    unsigned long refused = static_cast<unsigned long>(-1); ///< so many follow; the rest is granted
    std::size_t min_size = 0;                               ///< bytes; smaller ones do not count
    Thrown thrown = Thrown::bad_alloc;
    bool single = false; ///< refuses single blocks, such as a standard container's, not arrays
};

/// While one lives, its thread is refused such arrays: `new` throws, its form without exceptions
/// gives null.
class RefuseArrays {
public:
    explicit RefuseArrays(const Refusal& refusal);
    ~RefuseArrays();
    RefuseArrays(const RefuseArrays&) = delete;
    RefuseArrays& operator=(const RefuseArrays&) = delete;
};

} // namespace orvex_test
