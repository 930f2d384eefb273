#pragma once

/// @file
/// What reading leaves behind in the heap.

#include <cstdint>

#include <malloc.h>

namespace orvex::formats {

/// Lets the system have what was freed, where it may be much: the heap keeps it otherwise, and the
/// model's arrays, of which many are never written, would be laid over pages that are there already
/// instead of having none.
/// @param num_bytes  about as many as were at work
inline void give_back_spare_memory(std::uint64_t num_bytes) {
#ifdef __GLIBC__
    constexpr std::uint64_t much = 1u << 20;
    if (num_bytes >= much)
        ::malloc_trim(0);
#else
    static_cast<void>(num_bytes);
#endif
}

} // namespace orvex::formats
