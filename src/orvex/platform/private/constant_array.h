#pragma once

/// @file
/// Large arrays that hold one value in every element, of which most are never written: they cost no
/// memory until somebody writes, a page at a time.
///
/// Such an array is a block of `new[]` like any other, so that it may end by a bare `delete[]`; but
/// the pages inside it are private views of a few shared ones that hold the value. Who writes to
/// one gets a copy of his own, from the system. An array that is about to be written from end to
/// end is better off with pages of its own at once: `take_for_filling`.
///
/// Small arrays, and all where the system refuses, are filled as ever. Any thread may call.

#include <array>
#include <cstddef>
#include <cstring>
#include <new>
#include <type_traits>

#include "orvex/platform/private/large_pages.h"

namespace orvex {

/// The bytes that repeat. A page holds a whole number of them.
using ArrayPattern = std::array<std::byte, 16>;

/// Lets a block show `pattern` from its first byte to its last whole one, without pages of its own
/// where there would be many.
/// @param block  of `new[]`, `bytes` long; what it holds is lost
void spread_pattern(void* block, std::size_t bytes, const ArrayPattern& pattern);

/// Gives a block that `spread_pattern` spread another value in the same way: once, for the value
/// that a builder has in mind. Whoever sets values over and over has pages of his own from then on.
/// @return false where the caller has to fill the block
bool spread_again(void* block, std::size_t bytes, const ArrayPattern& pattern);

/// Gives a block pages of its own, with anything in them, for somebody who writes all of it. A
/// block that has them stays as it is.
void take_for_filling(void* block, std::size_t bytes);

/// Comes before `delete[]`: whoever has the memory next finds it as memory is. Does nothing for a
/// block that was never spread.
void end_spread(void* block, std::size_t bytes);

/// The bytes of a value, over and over.
template<class T>
ArrayPattern pattern_of(const T& value) {
    static_assert(std::is_trivially_copyable_v<T> && sizeof(ArrayPattern) % sizeof(T) == 0);
    ArrayPattern pattern;
    for (std::size_t i = 0; i < pattern.size(); i += sizeof(T))
        std::memcpy(pattern.data() + i, static_cast<const void*>(&value), sizeof(T));
    return pattern;
}

/// `new T[count]`, all of `value`, to be ended by `delete_spread`, or by `delete[]`.
template<class T>
T* new_constant_array(std::size_t count, const T& value) {
    static_assert(std::is_trivially_destructible_v<T>, "delete[] must find no count before it");
    if (count > static_cast<std::size_t>(-1) / 2 / sizeof(T))
        throw std::bad_array_new_length();
    void* const block = ::operator new[](count * sizeof(T));
    spread_pattern(block, count * sizeof(T), pattern_of(value));
    return static_cast<T*>(block);
}

/// `delete[]` for what `new_constant_array` or `new[]` gave.
template<class T>
void delete_spread(T* elements, std::size_t count) {
    end_spread(elements, count * sizeof(T));
    delete[] elements;
}

} // namespace orvex
