#pragma once

/// @file
/// What the `AlignedNew_*` and `AlignedDelete_*` families of all element types share.

namespace orvex {

/// Takes a raw block for `count` elements and returns the first aligned address in it.
/// @param element_size  bytes of one element
/// @param alignment  bytes; below 1 counts as 1
/// @param[out] raw  receives the block; may be null
/// @return null, with `*raw` null, when the size overflows or memory is short
void* aligned_block_new(unsigned long count, unsigned long element_size, int alignment,
                        unsigned char** raw);

/// Frees `*raw` and sets it to null; null is passed over.
void aligned_block_delete(unsigned char** raw);

/// The whole of an `AlignedDelete_*`.
template<typename T>
void aligned_delete(T** aligned, unsigned char** raw) {
    if (aligned)
        *aligned = nullptr;
    aligned_block_delete(raw);
}

} // namespace orvex
