#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

#include "orvex/assets/images/codecs/private/jpeg_bits.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

/// @file
/// From pixels to quantised coefficients. Four rows or columns of a block go through each step at
/// once; every lane is rounded in single precision in the order of the plain formulas, so that the
/// result does not depend on how many go together.

namespace orvex::jpeg {

typedef float floats4 __attribute__((vector_size(16)));
typedef int ints4 __attribute__((vector_size(16)));

static_assert(std::endian::native == std::endian::little, "red is the low byte of a pixel");

/// 8 by 8 pixels in row order, red in the lowest byte.
struct PixelBlock {
    alignas(16) std::uint32_t pixels[64];
};

/// One component of a block in row order.
struct PlaneBlock {
    alignas(16) float values[64];
};

inline floats4 load(const float* from) {
    floats4 four;
    std::memcpy(&four, from, sizeof(four));
    return four;
}

inline void store(float* to, floats4 four) {
    std::memcpy(to, &four, sizeof(four));
}

template<typename Four>
void transpose(Four& a, Four& b, Four& c, Four& d) {
    const Four low_ab = __builtin_shufflevector(a, b, 0, 4, 1, 5);
    const Four low_cd = __builtin_shufflevector(c, d, 0, 4, 1, 5);
    const Four high_ab = __builtin_shufflevector(a, b, 2, 6, 3, 7);
    const Four high_cd = __builtin_shufflevector(c, d, 2, 6, 3, 7);
    a = __builtin_shufflevector(low_ab, low_cd, 0, 1, 4, 5);
    b = __builtin_shufflevector(low_ab, low_cd, 2, 3, 6, 7);
    c = __builtin_shufflevector(high_ab, high_cd, 0, 1, 4, 5);
    d = __builtin_shufflevector(high_ab, high_cd, 2, 3, 6, 7);
}

/// One eight-point pass of the fast cosine transform by Arai, Agui and Nakajima, in place. Its
/// results are scaled; the quantisation takes the scale back.
inline void jo_DCT(floats4 (&d)[8]) {
    const floats4 sum07 = d[0] + d[7], difference07 = d[0] - d[7];
    const floats4 sum16 = d[1] + d[6], difference16 = d[1] - d[6];
    const floats4 sum25 = d[2] + d[5], difference25 = d[2] - d[5];
    const floats4 sum34 = d[3] + d[4], difference34 = d[3] - d[4];

    // The even coefficients: a four-point transform of the sums.
    const floats4 outer = sum07 + sum34, outer_difference = sum07 - sum34;
    const floats4 inner = sum16 + sum25, inner_difference = sum16 - sum25;
    d[0] = outer + inner;
    d[4] = outer - inner;
    const floats4 turned = (inner_difference + outer_difference) * 0.70710677f;
    d[2] = outer_difference + turned;
    d[6] = outer_difference - turned;

    // The odd coefficients: two rotations of the differences.
    const floats4 a = difference34 + difference25;
    const floats4 b = difference25 + difference16;
    const floats4 c = difference16 + difference07;
    const floats4 shared = (a - c) * 0.38268343f;
    const floats4 low = a * 0.5411961f + shared;
    const floats4 high = c * 1.306563f + shared;
    const floats4 middle = b * 0.70710677f;
    const floats4 plus = difference07 + middle, minus = difference07 - middle;
    d[5] = minus + low;
    d[3] = minus - low;
    d[1] = plus + high;
    d[7] = plus - high;
}

/// Four rows of a block's colours, as eight columns with a row in each lane.
struct ColorColumns {
    floats4 r[8], g[8], b[8];

    explicit ColorColumns(const std::uint32_t* rows) {
        for (int half = 0; half < 2; ++half) {
            ints4 columns[4];
            for (int row = 0; row < 4; ++row)
                std::memcpy(&columns[row], rows + row * 8 + half * 4, sizeof(ints4));
            transpose(columns[0], columns[1], columns[2], columns[3]);
            for (int i = 0; i < 4; ++i) {
                const ints4 pixels = columns[i];
                r[half * 4 + i] = __builtin_convertvector(pixels & 255, floats4);
                g[half * 4 + i] = __builtin_convertvector((pixels >> 8) & 255, floats4);
                b[half * 4 + i] = __builtin_convertvector((pixels >> 16) & 255, floats4);
            }
        }
    }
};

struct Luminance {
    static floats4 of(floats4 r, floats4 g, floats4 b) {
        return 0.299f * r + 0.587f * g + 0.114f * b - 128.0f;
    }
};

struct ChrominanceU {
    static floats4 of(floats4 r, floats4 g, floats4 b) {
        return -0.16874f * r - 0.33126f * g + 0.5f * b;
    }
};

struct ChrominanceV {
    static floats4 of(floats4 r, floats4 g, floats4 b) {
        return 0.5f * r - 0.41869f * g - 0.08131f * b;
    }
};

/// Transforms four rows of one component and stores them.
template<typename Component>
void transform_rows(const ColorColumns& colors, float* rows) {
    floats4 d[8];
    for (int i = 0; i < 8; ++i)
        d[i] = Component::of(colors.r[i], colors.g[i], colors.b[i]);
    jo_DCT(d);
    for (int half = 0; half < 8; half += 4) {
        transpose(d[half], d[half + 1], d[half + 2], d[half + 3]);
        for (int row = 0; row < 4; ++row)
            store(rows + row * 8 + half, d[half + row]);
    }
}

/// Rounds to the nearest integer, half away from zero.
inline ints4 rounded(floats4 v) {
    const ints4 sign =
        std::bit_cast<ints4>(v) & std::bit_cast<ints4>(floats4{-0.f, -0.f, -0.f, -0.f});
    const ints4 half = std::bit_cast<ints4>(floats4{0.5f, 0.5f, 0.5f, 0.5f}) | sign;
    return __builtin_convertvector(v + std::bit_cast<floats4>(half), ints4);
}

/// Transforms the columns of a block and quantises it.
inline void transform_columns(const PlaneBlock& block, const float* fdtbl, std::int32_t* out) {
    for (int half = 0; half < 8; half += 4) {
        floats4 d[8];
        for (int row = 0; row < 8; ++row)
            d[row] = load(block.values + row * 8 + half);
        jo_DCT(d);
        for (int row = 0; row < 8; ++row) {
            const ints4 four = rounded(d[row] * load(fdtbl + row * 8 + half));
            std::memcpy(out + row * 8 + half, &four, sizeof(four));
        }
    }
}

/// Takes quantised coefficients over and notes which are not 0.
inline void collect(const std::int32_t* values, Coefficients& block) {
    std::uint64_t zero = 0;
#if defined(__SSE2__)
    const auto* fours = reinterpret_cast<const __m128i*>(values);
    auto* eights = reinterpret_cast<__m128i*>(block.values);
    for (int i = 0; i < 4; ++i, fours += 4, eights += 2) {
        const __m128i low = _mm_packs_epi32(_mm_loadu_si128(fours), _mm_loadu_si128(fours + 1));
        const __m128i high =
            _mm_packs_epi32(_mm_loadu_si128(fours + 2), _mm_loadu_si128(fours + 3));
        _mm_storeu_si128(eights, low);
        _mm_storeu_si128(eights + 1, high);
        const __m128i is_zero = _mm_cmpeq_epi8(_mm_packs_epi16(low, high), _mm_setzero_si128());
        zero |= static_cast<std::uint64_t>(static_cast<unsigned>(_mm_movemask_epi8(is_zero)))
                << (i * 16);
    }
#else
    for (int i = 0; i < 64; ++i) {
        block.values[i] = static_cast<std::int16_t>(values[i]);
        zero |= std::uint64_t{values[i] == 0} << i;
    }
#endif
    block.nonzero = ~zero;
}

} // namespace orvex::jpeg
