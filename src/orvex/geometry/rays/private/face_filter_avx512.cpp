// Compiled for processors that have AVX-512, and entered on such only. It must not define anything
// that other sources define too: the linker could take this one for all of them.

#include "orvex/geometry/rays/private/face_filter_x86.h"

#include "orvex/geometry/rays/private/face_lanes.h"

namespace orvex {

namespace {

typedef float floats16 __attribute__((vector_size(64)));

} // namespace

namespace face_lanes {

template<>
struct AnyLane<floats16> {
    static bool any(const Mask<floats16>& mask) { return __builtin_ia32_cvtd2mask512(mask) != 0; }
};

template<>
struct Gather<floats16> {
    static floats16 join(const floats4& a, const floats4& b, const floats4& c, const floats4& d) {
        typedef float floats8 __attribute__((vector_size(32)));
        const floats8 low = __builtin_shufflevector(a, b, 0, 1, 2, 3, 4, 5, 6, 7);
        const floats8 high = __builtin_shufflevector(c, d, 0, 1, 2, 3, 4, 5, 6, 7);
        return __builtin_shufflevector(low, high, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14,
                                       15);
    }

    /// Each quarter of a register is transposed for itself, the quicker way: it takes four faces.
    static Lanes3<floats16> columns(const floats4 (&v)[16]) {
        const floats16 a = join(v[0], v[4], v[8], v[12]), b = join(v[1], v[5], v[9], v[13]),
                       c = join(v[2], v[6], v[10], v[14]), d = join(v[3], v[7], v[11], v[15]);
        const floats16 low_ab = interleave_low(a, b), low_cd = interleave_low(c, d);
        const floats16 high_ab = interleave_high(a, b), high_cd = interleave_high(c, d);
        return {__builtin_shufflevector(low_ab, low_cd, 0, 1, 16, 17, 4, 5, 20, 21, 8, 9, 24, 25,
                                        12, 13, 28, 29),
                __builtin_shufflevector(low_ab, low_cd, 2, 3, 18, 19, 6, 7, 22, 23, 10, 11, 26, 27,
                                        14, 15, 30, 31),
                __builtin_shufflevector(high_ab, high_cd, 0, 1, 16, 17, 4, 5, 20, 21, 8, 9, 24, 25,
                                        12, 13, 28, 29)};
    }

    static floats16 interleave_low(const floats16& a, const floats16& b) {
        return __builtin_shufflevector(a, b, 0, 16, 1, 17, 4, 20, 5, 21, 8, 24, 9, 25, 12, 28, 13,
                                       29);
    }

    static floats16 interleave_high(const floats16& a, const floats16& b) {
        return __builtin_shufflevector(a, b, 2, 18, 3, 19, 6, 22, 7, 23, 10, 26, 11, 27, 14, 30, 15,
                                       31);
    }
};

} // namespace face_lanes

unsigned long skip_missed_u16_avx512(const FaceProbe& probe, const FaceU16* faces,
                                     unsigned long begin, unsigned long end) {
    return face_lanes::skip<floats16>(probe, faces, begin, end);
}

unsigned long skip_missed_u32_avx512(const FaceProbe& probe, const FaceU32* faces,
                                     unsigned long begin, unsigned long end) {
    return face_lanes::skip<floats16>(probe, faces, begin, end);
}

} // namespace orvex
