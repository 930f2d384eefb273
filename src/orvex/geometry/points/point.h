#pragma once

/// @file
/// `Point`, a single point of the scene.

#include "orvex/api.h"
#include "orvex/geometry/points/vertex_pool.h"

namespace orvex {

/// A pool of exactly one point.
///
/// The host makes it with `new` and ends it through `Node::release` or `Node::kill`. The position
/// is that of its only vertex, in object space: it moves the vertex, not the transform. Used on the
/// thread that owns the renderer's context.
///
/// @code
/// Point* marker = new Point(vec3(0.0f, 2.0f, 0.0f));
/// marker->set_color(1.0f, 0.0f, 0.0f, 1.0f);
/// @endcode
class ORVEX_API Point : public VertexPool {
public:
    /// A white point at the origin.
    Point();
    /// A white point.
    explicit Point(const vec3& position);
    ~Point() override;

    void set_position(const vec3& position);            ///< moves the vertex, in object space
    void set_position(float x, float y, float z);       ///< as the form of one vector
    void set_color(const vec4& color);                  ///< red, green, blue, alpha
    void set_color(float r, float g, float b, float a); ///< as the form of one vector
};

} // namespace orvex
