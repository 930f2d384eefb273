#pragma once

/// @file
/// Which faces of a mesh a ray surely misses, many at a time.
///
/// Nearly all faces are missed. So sixteen at a time are first tested for being missed: their
/// corners are gathered from the store and transformed, one face in each lane of a register, and
/// the lanes compute what `Math::ray_triangle_intersection` computes, by the same operations in the
/// same order. Every lane is rounded as a single float is, so a face that the lanes rule out is
/// missed by `Math` too. The few that are left go to `Math`, whose answer is the one that counts.
///
/// The transform alone is left out where it is the identity: that changes the sign of a zero at
/// most, which no comparison sees, and a face that isn't finite, which `Math` never meets then.

#include <cstddef>
#include <span>

#include "orvex/renderer/records/vertex.h"

namespace orvex {

/// A ray, and the positions of a store, wherever its layout has them.
struct FaceProbe {
    float origin[3];
    float direction[3];
    const float* to_world; ///< 16 floats; null for the identity
    const std::byte* positions;
    std::size_t stride;
    /// Vertices before this one have 16 bytes that may be read, from their positions on.
    unsigned int num_readable;
};

inline constexpr unsigned long faces_at_once = 16;

/// Goes from face `begin`, sixteen at a time, up to the first sixteen of which one may be met or
/// has a vertex that can't be read.
/// @param end  a multiple of sixteen behind `begin`
/// @return where those begin; `end` if there are none
template<class Face>
using SkipMissed = unsigned long (*)(const FaceProbe& probe, const Face* faces, unsigned long begin,
                                     unsigned long end);

struct FaceFilter {
    SkipMissed<FaceU16> skip_u16;
    SkipMissed<FaceU32> skip_u32;
};

/// The filters that this processor can run, the quickest first; the last one runs on any.
std::span<const FaceFilter> face_filters();

} // namespace orvex
