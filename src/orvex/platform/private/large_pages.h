#pragma once

/// @file
/// Memory on large pages, for blocks that are filled from end to end.

#include <cstddef>
#include <memory>
#include <new>
#include <type_traits>
#include <vector>

namespace orvex {

/// Asks the system for large pages behind a block that is about to be filled. Filling a model's
/// arrays touches each page once, and with 4 KB pages those faults cost more than the filling.
///
/// A wish only: small blocks and systems without large pages go on as they are.
void advise_large_pages(void* block, std::size_t bytes);

/// Says that a block is about to be filled from end to end: asks for large pages, or, for a block
/// too small for those, for all its pages at once, which costs about half of one fault for each.
///
/// A wish only, too. Memory that the program has had before goes on as it is.
void advise_filling(void* block, std::size_t bytes);

/// Whether the system has given memory for the page that a byte lies on. Where it can't tell, it
/// has.
bool is_page_present(const void* address);

/// `new T[count]`, every element default-initialised, on large pages where there are many. Ends by
/// `delete[]`.
template<class T>
T* new_large_array(std::size_t count) {
    static_assert(std::is_trivially_destructible_v<T>, "delete[] must find no count before it");
    if (count > static_cast<std::size_t>(-1) / 2 / sizeof(T))
        throw std::bad_array_new_length();
    void* block = ::operator new[](count * sizeof(T));
    advise_filling(block, count * sizeof(T));
    T* elements = static_cast<T*>(block);
    std::uninitialized_default_construct_n(elements, count);
    return elements;
}

/// Gives a block back as it was taken.
struct LargeBlockDeleter {
    bool is_aligned = false;
    void operator()(std::byte* block) const;
};
/// Bytes that end with their scope.
using LargeBlock = std::unique_ptr<std::byte[], LargeBlockDeleter>;

/// Memory that is needed for a while only: a block of half a large page or more is made to fit
/// large pages, which are a fraction of the work, at the price of some memory that stays unused.
///
/// Throws `std::bad_alloc`. The bytes are not set.
LargeBlock new_large_block(std::size_t bytes);

/// Room for `count` elements, on large pages.
template<class T>
void reserve_large(std::vector<T>& elements, std::size_t count) {
    elements.reserve(count);
    advise_large_pages(elements.data() + elements.size(),
                       (elements.capacity() - elements.size()) * sizeof(T));
}

} // namespace orvex
