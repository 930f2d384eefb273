#include "orvex/math/aligned_new.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "orvex/math/private/aligned_block.h"
#include "orvex/math/private/sizes.h"
#include "orvex/math/vec4.h"

namespace orvex {

namespace {

template<typename T>
T* aligned_array(unsigned long count, int alignment, unsigned char** raw) {
    T* elements = static_cast<T*>(aligned_block_new(count, sizeof(T), alignment, raw));
    if (!elements)
        return nullptr;
    for (unsigned long i = 0; i < count; ++i)
        elements[i]._construct();
    return elements;
}

} // namespace

void* aligned_block_new(unsigned long count, unsigned long element_size, int alignment,
                        unsigned char** raw) {
    const std::uintptr_t slack = alignment < 1 ? 0 : static_cast<std::uintptr_t>(alignment) - 1;
    const unsigned long size = saturating_sum(saturating_product(count, element_size), slack);
    constexpr bool is_64_bit = sizeof(void*) == 8;
    const bool refused = size == largest_size || !is_64_bit;
    // An empty block of alignment 1 is still a block: malloc may answer null for no bytes.
    auto* const block =
        refused ? nullptr : static_cast<unsigned char*>(std::malloc(size ? size : 1));
    if (raw)
        *raw = block;
    if (!block)
        return nullptr;
    const std::uintptr_t address = reinterpret_cast<std::uintptr_t>(block);
    return block + (((address + slack) & ~slack) - address);
}

void aligned_block_delete(unsigned char** raw) {
    if (!raw)
        return;
    std::free(*raw);
    *raw = nullptr;
}

unsigned int* AlignedNew_u32(unsigned long count, int alignment, unsigned char** raw) {
    void* elements = aligned_block_new(count, sizeof(unsigned int), alignment, raw);
    if (elements)
        std::memset(elements, 0, count * sizeof(unsigned int));
    return static_cast<unsigned int*>(elements);
}

vec4* AlignedNew_vec4(unsigned long count, int alignment, unsigned char** raw) {
    return aligned_array<vec4>(count, alignment, raw);
}

vec3* AlignedNew_vec3(unsigned long count, int alignment, unsigned char** raw) {
    return aligned_array<vec3>(count, alignment, raw);
}

vec2* AlignedNew_vec2(unsigned long count, int alignment, unsigned char** raw) {
    return aligned_array<vec2>(count, alignment, raw);
}

void AlignedDelete_u32(unsigned int** aligned, unsigned long, unsigned char** raw) {
    aligned_delete(aligned, raw);
}

void AlignedDelete_vec4(vec4** aligned, unsigned long, unsigned char** raw) {
    aligned_delete(aligned, raw);
}

void AlignedDelete_vec3(vec3** aligned, unsigned long, unsigned char** raw) {
    aligned_delete(aligned, raw);
}

void AlignedDelete_vec2(vec2** aligned, unsigned long, unsigned char** raw) {
    aligned_delete(aligned, raw);
}

} // namespace orvex
