#pragma once

/// @file
/// Which mesh stores are exactly a `MeshData`. Private.

#include <atomic>
#include <cstring>

#include "orvex/renderer/records/mesh_data.h"

namespace orvex {

/// Where the virtual operations of `MeshData` stand; null until the first store is made.
extern std::atomic<const void*> plain_store_mark;

inline const void* mark_of_class(const MeshData& store) {
    const void* mark = nullptr;
    std::memcpy(&mark, static_cast<const void*>(&store), sizeof mark);
    return mark;
}

/// @return whether a store is of the full format and of no class of a host's: what its virtual
///         operations answer then stands in its own fields, and needn't be asked for array by array
///         at each draw. Type information won't do, which a host may have been built without.
inline bool is_plain_store(const MeshData& store) {
    return mark_of_class(store) == plain_store_mark.load(std::memory_order_relaxed);
}

} // namespace orvex
