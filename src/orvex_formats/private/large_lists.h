#pragma once

/// @file
/// Lists of many megabytes.

#include <cstddef>
#include <vector>

namespace orvex::formats {

/// Asks for large pages behind memory that nobody has written yet: a list of a gigabyte costs half
/// a million of the small ones, each a call of the kernel. Nothing happens to small pieces.
void ask_for_large_pages(void* memory, std::size_t size);

/// Makes room in a list for so many values, in large pages if that is much.
template<class Value>
void reserve_largely(std::vector<Value>& list, std::size_t count) {
    if (count <= list.capacity())
        return;
    list.reserve(count);
    ask_for_large_pages(list.data() + list.size(), (list.capacity() - list.size()) * sizeof(Value));
}

} // namespace orvex::formats
