#pragma once

/// @file
/// Four numbers in one register: the room for arithmetic that goes through four values at once.
///
/// The values are the compiler's own vectors, with its operators: `+`, `*`, `&`, `<` and the like
/// work lane by lane, a comparison gives a mask (all bits set for true), and `v[i]` reads a lane.
/// Each lane is rounded after every operation, in the order the operations are written, so that it
/// holds what the same expression of single numbers gives, to the last bit.
///
/// What the operators can't say stands here by name. Where the processor has SSE2, a few of these
/// use its instructions; the plain forms in `lanes::plain` give the same bits everywhere else, and
/// a test holds the two together.
///
/// @code
/// const floats4 next = lanes::load<floats4>(speeds) + lanes::splat(9.81f) * lanes::splat(seconds);
/// lanes::store(speeds, next);
/// @endcode

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace orvex {

typedef float floats4 __attribute__((vector_size(16)));
typedef std::int32_t ints4 __attribute__((vector_size(16)));
typedef std::int16_t shorts8 __attribute__((vector_size(16)));

namespace lanes {

/// The 16 bytes at any address.
template<class Lanes>
Lanes load(const void* from) {
    Lanes value;
    std::memcpy(&value, from, sizeof(value));
    return value;
}

/// Writes 16 bytes to any address.
template<class Lanes>
void store(void* to, Lanes value) {
    std::memcpy(to, &value, sizeof(value));
}

/// The same number in each lane.
inline floats4 splat(float value) {
    return floats4{value, value, value, value};
}

/// Makes columns of rows: lane j of the i-th becomes lane i of the j-th.
template<class Lanes>
void transpose(Lanes& a, Lanes& b, Lanes& c, Lanes& d) {
    const Lanes low_ab = __builtin_shufflevector(a, b, 0, 4, 1, 5);
    const Lanes low_cd = __builtin_shufflevector(c, d, 0, 4, 1, 5);
    const Lanes high_ab = __builtin_shufflevector(a, b, 2, 6, 3, 7);
    const Lanes high_cd = __builtin_shufflevector(c, d, 2, 6, 3, 7);
    a = __builtin_shufflevector(low_ab, low_cd, 0, 1, 4, 5);
    b = __builtin_shufflevector(low_ab, low_cd, 2, 3, 6, 7);
    c = __builtin_shufflevector(high_ab, high_cd, 0, 1, 4, 5);
    d = __builtin_shufflevector(high_ab, high_cd, 2, 3, 6, 7);
}

/// The bits of four floats as integers, and back.
inline ints4 to_bits(floats4 value) {
    return std::bit_cast<ints4>(value);
}

inline floats4 from_bits(ints4 bits) {
    return std::bit_cast<floats4>(bits);
}

/// The nearest float of each integer.
inline floats4 to_floats(ints4 value) {
    return __builtin_convertvector(value, floats4);
}

/// Rounds to the nearest integer, half away from zero. Expects what fits into 32 bits.
inline ints4 to_ints_rounded(floats4 value) {
    const ints4 sign = to_bits(value) & to_bits(splat(-0.0f));
    const ints4 half = to_bits(splat(0.5f)) | sign;
    return __builtin_convertvector(value + from_bits(half), ints4);
}

/// Whether a lane of a mask, or of four integers, is not 0.
inline bool any(ints4 mask) {
    const auto halves = std::bit_cast<std::array<std::uint64_t, 2>>(mask);
    return (halves[0] | halves[1]) != 0;
}

/// The forms for any processor.
namespace plain {

inline unsigned int bits_above_zero(const float* sixteen) {
    unsigned int bits = 0;
    for (unsigned int i = 0; i < 16; ++i)
        bits |= (sixteen[i] > 0.0f ? 1u : 0u) << i;
    return bits;
}

inline std::int16_t narrow(std::int32_t value) {
    const std::int32_t above = value < INT16_MAX ? value : INT16_MAX;
    return static_cast<std::int16_t>(above > INT16_MIN ? above : INT16_MIN);
}

inline shorts8 narrow(ints4 low, ints4 high) {
    shorts8 value;
    for (int i = 0; i < 4; ++i) {
        value[i] = narrow(low[i]);
        value[i + 4] = narrow(high[i]);
    }
    return value;
}

inline unsigned int zero_bits(shorts8 low, shorts8 high) {
    unsigned int bits = 0;
    for (unsigned int i = 0; i < 8; ++i)
        bits |= (low[i] == 0 ? 1u : 0u) << i | (high[i] == 0 ? 1u : 0u) << (i + 8);
    return bits;
}

} // namespace plain

#if defined(__SSE2__)

/// A bit for each of 16 floats, the first lowest: 1 where it is above 0.
inline unsigned int bits_above_zero(const float* sixteen) {
    const auto above = [sixteen](int quarter) {
        const __m128 four = _mm_loadu_ps(sixteen + 4 * quarter);
        return _mm_castps_si128(_mm_cmpgt_ps(four, _mm_setzero_ps()));
    };
    const __m128i low = _mm_packs_epi32(above(0), above(1));
    const __m128i high = _mm_packs_epi32(above(2), above(3));
    return static_cast<unsigned int>(_mm_movemask_epi8(_mm_packs_epi16(low, high)));
}

/// Eight integers of 16 bits; what doesn't fit becomes the nearest that does.
inline shorts8 narrow(ints4 low, ints4 high) {
    return reinterpret_cast<shorts8>(
        _mm_packs_epi32(reinterpret_cast<__m128i>(low), reinterpret_cast<__m128i>(high)));
}

/// A bit for each of 16 integers, the first of `low` lowest: 1 for 0.
inline unsigned int zero_bits(shorts8 low, shorts8 high) {
    const __m128i bytes =
        _mm_packs_epi16(reinterpret_cast<__m128i>(low), reinterpret_cast<__m128i>(high));
    return static_cast<unsigned int>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, _mm_setzero_si128())));
}

#else

using plain::bits_above_zero;
using plain::narrow;
using plain::zero_bits;

#endif

} // namespace lanes
} // namespace orvex
