#pragma once

/// @file
/// `Tripod`, the transform of an object.

#include <memory>

#include "orvex/api.h"
#include "orvex/fwd.h"

namespace orvex {

/// A transform: position, orientation and scale, and the matrix built from them when it is read.
///
/// Every `Object` makes and owns one; a host may make its own. Lengths are in the units of the
/// parent's space, angles in degrees. Setters only store and mark; getters compute, once, whatever
/// the number of changes. So a getter may write: use it from one thread at a time.
///
/// @code
/// orvex::Tripod tripod;
/// tripod.set_position(0.0f, 1.0f, 0.0f);
/// tripod.set_orientation_euler_angles(0.0f, 45.0f, 0.0f);
/// const orvex::vec4 in_parent = tripod.get_transform() * point;
/// @endcode
class ORVEX_API Tripod {
public:
    /// At the origin, not turned, not scaled.
    Tripod();
    Tripod(const Tripod&) = delete;
    Tripod& operator=(const Tripod&) = delete;
    virtual ~Tripod();

    /// Stores the position in the parent's space and marks the transform.
    void set_position(float x, float y, float z, float w = 1.0f);
    /// As the form of four floats.
    void set_position(const vec4& position);
    const vec4& get_position() const; ///< as set; (0, 0, 0, 1) at first
    /// The stored position, valid as long as this object. What is written through it counts only
    /// from the next setter on.
    float* get_position_ptr();
    const float* get_position_ptr() const; ///< x, y, z, w; valid as long as this object
    /// As `get_position_ptr`.
    vec4* get_position_vec4_ptr();
    const vec4* get_position_vec4_ptr() const; ///< as `get_position`

    /// Stores an orientation, which then stands against the angles stored before.
    /// @param orientation  expected to be of unit length; stored as it is
    void set_orientation(const quat& orientation);
    /// The orientation, computed from the angles if they are newer.
    const quat& get_orientation() const;

    /// Stores three angles, in degrees, to be turned by about x, then about y, then about z: the
    /// orientation is the product of the three quaternions in this order.
    /// @param x,y,z  degrees; any number, whole turns included
    void set_orientation_euler_angles(float x, float y, float z);
    /// The angles last stored, with w 1. Not recomputed from a quaternion.
    const vec4& get_orientation_euler_angles() const;
    /// Computes the orientation from the angles, if they are newer.
    void update_orientation();

    /// Stores the three factors, with w 1.
    /// @param x,y,z  any number: a negative one mirrors, 0 flattens what is drawn
    void set_scale(float x, float y, float z);
    /// Stores all four components as they are; w scales nothing.
    void set_scale(const vec4& scale);
    const vec4& get_scale() const; ///< as set; 1 on every axis at first
    /// The stored scale, valid as long as this object. What is written through it counts only from
    /// the next setter on.
    float* get_scale_ptr();
    const float* get_scale_ptr() const; ///< x, y, z, w; valid as long as this object
    /// As `get_scale_ptr`.
    vec4* get_scale_vec4_ptr();
    const vec4* get_scale_vec4_ptr() const; ///< as `get_scale`

    /// Computes the matrix, translation · rotation · scale, if a component changed.
    void update_transform();
    /// Stores a matrix as it is. Position, orientation and scale keep their values and no longer
    /// match it; the next setter of one of them builds the matrix from them again.
    void set_transform(const mat4& transform);
    /// The same from 16 floats, column by column; null changes nothing.
    void set_transform(const float* transform);
    /// The matrix, computed if a component changed.
    mat4& get_transform();
    const mat4& get_transform() const; ///< as the other form, and it computes too
    /// As `get_transform`: 16 floats, column by column, valid as long as this object.
    float* get_transform_ptr();
    const float* get_transform_ptr() const; ///< as `get_transform`
    /// As `get_transform`.
    mat4* get_transform_mat4_ptr();
    const mat4* get_transform_mat4_ptr() const; ///< as `get_transform`

    /// The private record, which the engine alone defines.
    struct TripodData;

private:
    std::unique_ptr<TripodData> data;
};

} // namespace orvex
