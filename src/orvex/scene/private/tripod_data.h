#pragma once

/// @file
/// The private record of a transform.

#include <cstddef>

#include "orvex/math/mat4.h"
#include "orvex/math/quat.h"
#include "orvex/math/vec4.h"
#include "orvex/scene/tripod.h"

namespace orvex {

/// What a frame reads of a transform.
struct TripodFrameData {
    mat4 transform;
    bool dirty = true;
    bool euler_dirty = true; ///< the angles are newer than the orientation
    // From here on: where it changed.
    quat orientation;
    vec4 orientation_euler_angles;
    vec4 position;
    vec4 scale = vec4::ONE;
};
static_assert(sizeof(TripodFrameData) <= 132, "more than three lines of the cache, in most");

struct Tripod::TripodData : TripodFrameData {
    /// Bytes at its beginning that `draw_ahead` asks for.
    static constexpr std::size_t hot_bytes = sizeof(TripodFrameData);

    static const TripodData& of(const Tripod& tripod) { return *tripod.data; }

    /// Computes the orientation from the angles, if they are newer.
    void update_orientation();
    /// Computes the matrix, if a component changed.
    void update_transform();
};

} // namespace orvex
