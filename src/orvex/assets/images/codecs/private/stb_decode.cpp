// The one place of stb_image. Its memory comes from functions of ours that know a budget: each
// decode puts one in force for its thread and takes it away at its end.

#include "orvex/assets/images/codecs/private/stb_decode.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdlib>
#include <cstring>

#include "orvex/assets/images/codecs/private/stb_checks.h"
#include "orvex/math/private/sizes.h"

namespace orvex {

namespace {

/// What one decode may still take. Memory outside a decode, such as pixels given back later, is in
/// nobody's budget.
thread_local unsigned long* budget = nullptr;

/// Each block tells its size in front of itself.
constexpr std::size_t prefix = alignof(std::max_align_t);

std::size_t* size_of_block(void* block) {
    return reinterpret_cast<std::size_t*>(static_cast<unsigned char*>(block) - prefix);
}

bool spend(std::size_t bytes) {
    if (!budget)
        return true;
    if (bytes > *budget)
        return false;
    *budget -= bytes;
    return true;
}

void refund(std::size_t bytes) {
    if (budget)
        *budget += bytes;
}

void* take(std::size_t size) {
    if (size > SIZE_MAX - prefix || !spend(size))
        return nullptr;
    // Cleared: what a truncated picture leaves out is black, and nothing that lay here before.
    auto* start = static_cast<unsigned char*>(std::calloc(1, size + prefix));
    if (!start) {
        refund(size);
        return nullptr;
    }
    void* block = start + prefix;
    *size_of_block(block) = size;
    return block;
}

void give(void* block) {
    if (!block)
        return;
    refund(*size_of_block(block));
    std::free(size_of_block(block));
}

void* take_again(void* block, std::size_t size) {
    void* larger = take(size);
    if (!larger || !block)
        return larger;
    std::memcpy(larger, block, std::min(size, *size_of_block(block)));
    give(block);
    return larger;
}

} // namespace

} // namespace orvex

// All of stb_image is static here: nothing of it can clash with a host's own copy.
#define STB_IMAGE_STATIC
#define STB_IMAGE_IMPLEMENTATION
#define STBI_NO_STDIO
// Not among the formats offered, and read past the end with 16 bits.
#define STBI_NO_PNM
#define STBI_NO_FAILURE_STRINGS
#define STBI_MALLOC(size) orvex::take(size)
#define STBI_REALLOC(block, size) orvex::take_again(block, size)
#define STBI_FREE(block) orvex::give(block)
// Its assertions would end a debugging host's process over a bad file.
#define STBI_ASSERT(condition) static_cast<void>(0)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wunused-function"
#pragma GCC diagnostic ignored "-Wold-style-cast"
#include <stb_image.h>
#pragma GCC diagnostic pop

namespace orvex {

namespace {

/// What decoding may hold at most. No format needs more than 32 bytes a pixel, counted with room
/// for the largest blocks that sizes are rounded up to, and the compressed bytes twice.
unsigned long memory_for(unsigned long size, int width, int height) {
    constexpr unsigned long tables = 1ul << 20;
    constexpr unsigned long per_pixel = 32, padding = 64;
    const unsigned long pixels = saturating_product(static_cast<unsigned long>(width) + padding,
                                                    static_cast<unsigned long>(height) + padding);
    const unsigned long rows = saturating_product(pixels, per_pixel);
    return saturating_sum(rows, saturating_sum(tables, saturating_product(size, 4)));
}

/// Moves three channels of four together, in place.
void drop_alpha(unsigned char* pixels, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        std::memmove(pixels + i * 3, pixels + i * 4, 3);
}

/// Puts a budget in force while it lives.
class Budget {
public:
    explicit Budget(unsigned long bytes)
        : left(bytes) {
        budget = &left;
    }
    Budget(const Budget&) = delete;
    Budget& operator=(const Budget&) = delete;
    ~Budget() { budget = nullptr; }

private:
    unsigned long left;
};

} // namespace

void stb_free(unsigned char* pixels) {
    stbi_image_free(pixels);
}

StbPixels stb_decode(const unsigned char* bytes, unsigned long size, unsigned long limit,
                     int* width, int* height) {
    if (size > INT_MAX)
        return nullptr;
    const EncodedPicture file{bytes, size};
    if (!is_sound_jpeg(file))
        return nullptr;
    const int length = static_cast<int>(size);
    int w = 0, h = 0, channels = 0;
    const Budget for_announcement(std::min(limit, memory_for(size, 0, 0)));
    const bool announced =
        stbi_info_from_memory(bytes, length, &w, &h, &channels) && w >= 0 && h >= 0;
    if (is_hdr(file) && !(announced && is_whole_hdr(file, w, h)))
        return nullptr;
    // A picture that the announcement is silent about still gets what its bytes warrant.
    const Budget for_pixels(
        std::min(limit, announced ? memory_for(size, w, h) : memory_for(size, 0, 0)));
    // A PIC file is decoded to four channels, and a damaged one must not be converted from there:
    // the conversion would be given null.
    const bool pic = is_pic(file);
    StbPixels pixels(stbi_load_from_memory(bytes, length, &w, &h, &channels, pic ? 4 : 3));
    if (pixels) {
        if (pic)
            drop_alpha(pixels.get(), static_cast<std::size_t>(w) * static_cast<std::size_t>(h));
        *width = w;
        *height = h;
    }
    return pixels;
}

} // namespace orvex
