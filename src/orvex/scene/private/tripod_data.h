#pragma once

/// @file
/// The private record of a transform.

#include <cstddef>

#include "orvex/math/mat4.h"
#include "orvex/math/quat.h"
#include "orvex/math/vec4.h"
#include "orvex/scene/tripod.h"

namespace orvex {

/// What a frame reads of a transform that did not change.
struct TripodFrameData {
    mat4 transform;
    bool dirty = true;
    bool euler_dirty = true; ///< the angles are newer than the orientation
};
static_assert(sizeof(TripodFrameData) <= sizeof(mat4) + 4, "the matrix and its marks, no more");

struct Tripod::TripodData : TripodFrameData {
    /// Bytes at its beginning that `draw_ahead` asks for.
    static constexpr std::size_t hot_bytes = sizeof(TripodFrameData);

    static const TripodData& of(const Tripod& tripod) { return *tripod.data; }

    /// Computes the orientation from the angles, if they are newer.
    void update_orientation();
    /// Computes the matrix, if a component changed.
    void update_transform();

    quat orientation;
    quat rotation_x, rotation_y, rotation_z;
    vec4 orientation_euler_angles;
    vec4 position;
    vec4 scale = vec4::ONE;
    mat4 translation_matrix, scale_matrix, rotation_matrix;
};

} // namespace orvex
