#pragma once

/// @file
/// `Line`, one segment.

#include "orvex/api.h"
#include "orvex/geometry/lines/polyline.h"
#include "orvex/math/vec3.h"

namespace orvex {

/// One segment between two points.
///
/// The host makes it with `new` and ends it through `Node::release` or `Node::kill`. Positions are
/// in object space. The factors draw a part of the segment and leave the segment itself alone, so
/// that they can be animated. Used on the thread that owns the renderer's context.
///
/// @code
/// Line* beam = new Line;
/// beam->set_start_position(0.0f, 0.0f, 0.0f);
/// beam->set_end_position(0.0f, 4.0f, 0.0f);
/// beam->set_end_factor(0.25f); // draws the lower three quarters
/// @endcode
class ORVEX_API Line : public Polyline {
public:
    /// A white line from (-1, 0, 0) to (1, 0, 0).
    Line();
    ~Line() override;

    /// Moves the start, in object space, and draws from there again.
    void set_start_position(const vec3& position);
    /// As the form of one vector.
    void set_start_position(float x, float y, float z);
    /// Moves the end, in object space, and draws up to there again.
    void set_end_position(const vec3& position);
    /// As the form of one vector.
    void set_end_position(float x, float y, float z);

    /// Colours the start: red, green, blue, alpha.
    void set_start_color(const vec4& color);
    /// As the form of one vector.
    void set_start_color(float r, float g, float b, float a);
    /// Colours the end: red, green, blue, alpha.
    void set_end_color(const vec4& color);
    /// As the form of one vector.
    void set_end_color(float r, float g, float b, float a);

    /// Moves the drawn start to `factor` of the way from start to end: 0 is the start, 1 the end.
    void set_start_factor(float factor);
    /// Moves the drawn end to `factor` of the way from end to start: 0 is the end, 1 the start.
    void set_end_factor(float factor);

private:
    vec3 start;
    vec3 end;
};

} // namespace orvex
