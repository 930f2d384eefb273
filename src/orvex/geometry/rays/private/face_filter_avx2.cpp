// Compiled for processors that have AVX2, and entered on such only. It must not define anything
// that other sources define too: the linker could take this one for all of them.

#include "orvex/geometry/rays/private/face_filter_x86.h"

#include "orvex/geometry/rays/private/face_lanes.h"

namespace orvex {

namespace {

typedef float floats8 __attribute__((vector_size(32)));

} // namespace

namespace face_lanes {

template<>
struct AnyLane<floats8> {
    static bool any(const Mask<floats8>& mask) {
        floats8 bits;
        __builtin_memcpy(&bits, &mask, sizeof bits);
        return __builtin_ia32_movmskps256(bits) != 0;
    }
};

template<>
struct Gather<floats8> {
    static floats8 join(const floats4& low, const floats4& high) {
        return __builtin_shufflevector(low, high, 0, 1, 2, 3, 4, 5, 6, 7);
    }

    /// Both halves of a register are transposed for themselves, the quicker way: each takes four
    /// faces.
    static Lanes3<floats8> columns(const floats4 (&v)[8]) {
        const floats8 a = join(v[0], v[4]), b = join(v[1], v[5]), c = join(v[2], v[6]),
                      d = join(v[3], v[7]);
        const floats8 low_ab = __builtin_shufflevector(a, b, 0, 8, 1, 9, 4, 12, 5, 13);
        const floats8 low_cd = __builtin_shufflevector(c, d, 0, 8, 1, 9, 4, 12, 5, 13);
        const floats8 high_ab = __builtin_shufflevector(a, b, 2, 10, 3, 11, 6, 14, 7, 15);
        const floats8 high_cd = __builtin_shufflevector(c, d, 2, 10, 3, 11, 6, 14, 7, 15);
        return {__builtin_shufflevector(low_ab, low_cd, 0, 1, 8, 9, 4, 5, 12, 13),
                __builtin_shufflevector(low_ab, low_cd, 2, 3, 10, 11, 6, 7, 14, 15),
                __builtin_shufflevector(high_ab, high_cd, 0, 1, 8, 9, 4, 5, 12, 13)};
    }
};

} // namespace face_lanes

unsigned long skip_missed_u16_avx2(const FaceProbe& probe, const FaceU16* faces,
                                   unsigned long begin, unsigned long end) {
    return face_lanes::skip<floats8>(probe, faces, begin, end);
}

unsigned long skip_missed_u32_avx2(const FaceProbe& probe, const FaceU32* faces,
                                   unsigned long begin, unsigned long end) {
    return face_lanes::skip<floats8>(probe, faces, begin, end);
}

} // namespace orvex
