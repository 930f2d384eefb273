#pragma once

/// @file
/// From pixels to quantised coefficients. Four rows or columns of a block go through each step at
/// once; every lane is rounded in single precision in the order of the plain formulas, so that the
/// result does not depend on how many go together.

#include <bit>
#include <cstdint>

#include "orvex/assets/images/codecs/private/jpeg_bits.h"
#include "orvex/math/private/lanes.h"

namespace orvex::jpeg {

static_assert(std::endian::native == std::endian::little, "red is the low byte of a pixel");

/// 8 by 8 pixels in row order, red in the lowest byte.
struct PixelBlock {
    alignas(16) std::uint32_t pixels[64];
};

/// One component of a block in row order.
struct PlaneBlock {
    alignas(16) float values[64];
};

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
                columns[row] = lanes::load<ints4>(rows + row * 8 + half * 4);
            lanes::transpose(columns[0], columns[1], columns[2], columns[3]);
            for (int i = 0; i < 4; ++i) {
                const ints4 pixels = columns[i];
                r[half * 4 + i] = lanes::to_floats(pixels & 255);
                g[half * 4 + i] = lanes::to_floats((pixels >> 8) & 255);
                b[half * 4 + i] = lanes::to_floats((pixels >> 16) & 255);
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
        lanes::transpose(d[half], d[half + 1], d[half + 2], d[half + 3]);
        for (int row = 0; row < 4; ++row)
            lanes::store(rows + row * 8 + half, d[half + row]);
    }
}

/// Transforms the columns of a block and quantises it.
inline void transform_columns(const PlaneBlock& block, const float* fdtbl, std::int32_t* out) {
    for (int half = 0; half < 8; half += 4) {
        floats4 d[8];
        for (int row = 0; row < 8; ++row)
            d[row] = lanes::load<floats4>(block.values + row * 8 + half);
        jo_DCT(d);
        for (int row = 0; row < 8; ++row) {
            const floats4 scale = lanes::load<floats4>(fdtbl + row * 8 + half);
            lanes::store(out + row * 8 + half, lanes::to_ints_rounded(d[row] * scale));
        }
    }
}

/// Takes quantised coefficients over and notes which are not 0.
inline void collect(const std::int32_t* values, Coefficients& block) {
    std::uint64_t zero = 0;
    // Sixteen at a time.
    for (int i = 0; i < 64; i += 16) {
        const std::int32_t* const from = values + i;
        const shorts8 low = lanes::narrow(lanes::load<ints4>(from), lanes::load<ints4>(from + 4));
        const shorts8 high =
            lanes::narrow(lanes::load<ints4>(from + 8), lanes::load<ints4>(from + 12));
        lanes::store(block.values + i, low);
        lanes::store(block.values + i + 8, high);
        zero |= std::uint64_t{lanes::zero_bits(low, high)} << i;
    }
    block.nonzero = ~zero;
}

} // namespace orvex::jpeg
