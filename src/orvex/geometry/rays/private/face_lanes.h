#pragma once

/// @file
/// The arithmetic of `FaceFilter`, for registers of any width. It is compiled once for each kind of
/// processor, with other options: so all of it depends on the register's type, and nothing of it is
/// shared between them.

#include <cstdint>

#include "orvex/geometry/rays/private/face_filter.h"
#include "orvex/math/private/lanes.h"

namespace orvex::face_lanes {

template<class Floats>
inline constexpr unsigned long num_lanes = sizeof(Floats) / sizeof(float);

/// The integers that a comparison of such floats gives.
template<class Floats>
using Mask = decltype(Floats() < Floats());

/// A vector for each of several faces.
template<class Floats>
struct Lanes3 {
    Floats x;
    Floats y;
    Floats z;
};

template<class Floats>
[[gnu::always_inline]] inline Floats splat(float value) {
    return Floats{} + value;
}

template<class Floats>
[[gnu::always_inline]] inline Lanes3<Floats> splat3(const float (&v)[3]) {
    return {splat<Floats>(v[0]), splat<Floats>(v[1]), splat<Floats>(v[2])};
}

template<class Floats>
[[gnu::always_inline]] inline Lanes3<Floats> operator-(const Lanes3<Floats>& a,
                                                       const Lanes3<Floats>& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

template<class Floats>
[[gnu::always_inline]] inline Floats dot(const Lanes3<Floats>& a, const Lanes3<Floats>& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

template<class Floats>
[[gnu::always_inline]] inline Lanes3<Floats> cross(const Lanes3<Floats>& a,
                                                   const Lanes3<Floats>& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

/// The first three rows of M * v for a point: its w of 1 leaves the last column as it is.
template<class Floats>
[[gnu::always_inline]] inline Lanes3<Floats> transform(const float* m, const Lanes3<Floats>& v) {
    const auto row = [m, &v](int r) {
        return splat<Floats>(m[r]) * v.x + splat<Floats>(m[4 + r]) * v.y +
               splat<Floats>(m[8 + r]) * v.z + splat<Floats>(m[12 + r]);
    };
    return {row(0), row(1), row(2)};
}

template<class Floats>
[[gnu::always_inline]] inline Mask<Floats> in_unit_range(const Floats& value) {
    return (value >= splat<Floats>(0.0f)) & (value <= splat<Floats>(1.0f));
}

/// Whether a lane of a mask is true.
template<class Floats>
struct AnyLane;

/// Rows of x, y and z: from four vectors the lane of each.
template<class Floats>
struct Gather;

template<>
struct AnyLane<floats4> {
    static bool any(const Mask<floats4>& mask) { return lanes::any(mask); }
};

template<>
struct Gather<floats4> {
    static Lanes3<floats4> columns(const floats4 (&v)[4]) {
        const floats4 low_ab = __builtin_shufflevector(v[0], v[1], 0, 4, 1, 5);
        const floats4 low_cd = __builtin_shufflevector(v[2], v[3], 0, 4, 1, 5);
        const floats4 high_ab = __builtin_shufflevector(v[0], v[1], 2, 6, 3, 7);
        const floats4 high_cd = __builtin_shufflevector(v[2], v[3], 2, 6, 3, 7);
        return {__builtin_shufflevector(low_ab, low_cd, 0, 1, 4, 5),
                __builtin_shufflevector(low_ab, low_cd, 2, 3, 6, 7),
                __builtin_shufflevector(high_ab, high_cd, 0, 1, 4, 5)};
    }
};

/// Reads the corners of as many faces as there are lanes.
/// @tparam known_stride  that of the probe, if it is a usual one; 0 for any
template<class Floats, std::size_t known_stride, class Index>
[[gnu::always_inline]] inline Lanes3<Floats> corners(const FaceProbe& probe, const Index* index) {
    const std::size_t stride = known_stride != 0 ? known_stride : probe.stride;
    floats4 vertices[num_lanes<Floats>];
    for (unsigned long lane = 0; lane < num_lanes<Floats>; ++lane)
        __builtin_memcpy(&vertices[lane], probe.positions + index[3 * lane] * stride,
                         sizeof(floats4));
    const Lanes3<Floats> points = Gather<Floats>::columns(vertices);
    return probe.to_world ? transform(probe.to_world, points) : points;
}

/// Whether one of several triangles may be met.
template<class Floats>
[[gnu::always_inline]] inline bool
may_be_met(const Lanes3<Floats>& origin, const Lanes3<Floats>& direction, const Lanes3<Floats>& p0,
           const Lanes3<Floats>& p1, const Lanes3<Floats>& p2) {
    const Lanes3<Floats> e1 = p0 - p1;
    const Lanes3<Floats> s = p0 - origin;
    const Lanes3<Floats> a = cross(p0 - p2, direction);
    const Floats det = dot(e1, a);
    const Mask<Floats> gamma_fits = in_unit_range<Floats>(dot(s, a) / det);
    if (!AnyLane<Floats>::any(gamma_fits))
        return false;
    return AnyLane<Floats>::any(gamma_fits &
                                in_unit_range<Floats>(dot(direction, cross(e1, s)) / det));
}

/// Whether all vertices of all faces can be read.
template<class Floats, class Index>
[[gnu::always_inline]] inline bool are_readable(const FaceProbe& probe, const Index* index) {
    typedef Index Indices __attribute__((vector_size(16)));
    constexpr unsigned long per_register = 16 / sizeof(Index);
    constexpr unsigned int largest = static_cast<Index>(-1);
    if (probe.num_readable > largest)
        return true;
    const Indices end = Indices{} + static_cast<Index>(probe.num_readable);
    auto beyond = Indices{} < Indices{};
    for (unsigned long i = 0; i < 3 * faces_at_once; i += per_register) {
        Indices some;
        __builtin_memcpy(&some, index + i, sizeof some);
        beyond |= some >= end;
    }
    std::uint64_t halves[2];
    __builtin_memcpy(halves, &beyond, sizeof beyond);
    return (halves[0] | halves[1]) == 0;
}

template<class Floats, std::size_t known_stride, class Index>
[[gnu::always_inline]] inline bool
may_meet_some(const FaceProbe& probe, const Lanes3<Floats>& origin, const Lanes3<Floats>& direction,
              const Index* index) {
    if (!are_readable<Floats>(probe, index))
        return true;
    for (unsigned long face = 0; face < faces_at_once; face += num_lanes<Floats>) {
        const Index* const some = index + 3 * face;
        if (may_be_met(origin, direction, corners<Floats, known_stride>(probe, some),
                       corners<Floats, known_stride>(probe, some + 1),
                       corners<Floats, known_stride>(probe, some + 2)))
            return true;
    }
    return false;
}

template<class Floats, std::size_t known_stride, class Face>
unsigned long skip_with_stride(const FaceProbe& probe, const Face* faces, unsigned long begin,
                               unsigned long end) {
    const Lanes3<Floats> origin = splat3<Floats>(probe.origin);
    const Lanes3<Floats> direction = splat3<Floats>(probe.direction);
    while (begin < end &&
           !may_meet_some<Floats, known_stride>(probe, origin, direction, &faces[begin].a))
        begin += faces_at_once;
    return begin;
}

template<class Floats, class Face>
unsigned long skip(const FaceProbe& probe, const Face* faces, unsigned long begin,
                   unsigned long end) {
    static_assert(sizeof(Face) == 3 * sizeof(Face::a), "three indices in a row");
    constexpr std::size_t usual = 4 * sizeof(float);
    return probe.stride == usual ? skip_with_stride<Floats, usual>(probe, faces, begin, end)
                                 : skip_with_stride<Floats, 0>(probe, faces, begin, end);
}

} // namespace orvex::face_lanes
