#pragma once

/// @file
/// `MiniSpline`, a smooth curve through keyframes.

#include "orvex/api.h"
#include "orvex/scene/object.h"

#include <memory>

namespace orvex {

/// A smooth curve through keyframes (a Catmull-Rom spline), to be evaluated by time and drawn.
///
/// The host makes it with `new` and ends it through `Node::release` or `Node::kill`. Keys are
/// positions in object space, each at a time in the host's own unit. They are to be added in order
/// of rising time: nothing sorts them. Drawing runs through the times from 0 to just below 1, by a
/// polyline that the spline makes and owns; the spline's own transform doesn't move it. Used on the
/// thread that owns the renderer's context.
///
/// @code
/// MiniSpline* path = new MiniSpline;
/// path->add_keyframe(0.0f, 0.0f, 0.0f, 0.0f);
/// path->add_keyframe(0.5f, 1.0f, 2.0f, 0.0f);
/// path->add_keyframe(1.0f, 3.0f, 0.0f, 0.0f);
/// float position[3];
/// path->get_value(0.75f, position);
/// @endcode
class ORVEX_API MiniSpline : public Object {
public:
    /// A spline without keys.
    MiniSpline();
    /// Frees the keys, and the polyline without its GPU objects.
    ~MiniSpline() override;

    /// Frees the keys and the polyline, then does what `Object` does. The spline can be used anew.
    bool _cleanup(Renderer* renderer) override;

    /// Draws the curve, then what `Node` draws for `node`. Nothing of the curve with a null
    /// renderer.
    void render(Renderer* renderer, Node* node) override;

    /// Appends a key. @return its index
    unsigned long add_keyframe(float time, float x, float y, float z);
    /// Changes a key. @return false out of range
    bool set_keyframe(unsigned long i, float time, float x, float y, float z);

    /// The position at time t: before the first key the first key, after the last key the last key,
    /// and zeros without keys.
    /// @param xyz  takes three floats; null does nothing
    void get_value(float t, float* xyz);

    /// Evaluates a spline. Between two keys the curve is a cubic of both and of their neighbours,
    /// the first or last key standing in for a neighbour that isn't there.
    /// @param keys      num_keys records of dims + 1 floats each, the time first, in order of time
    /// @param num_keys  0 and below give zeros
    /// @param dims      floats of a value; 0 and below write nothing
    /// @param t         up to the first key's time that key, above the last key's time the last one
    /// @param out       takes dims floats; null does nothing
    static void eval_spline(const float* keys, int num_keys, int dims, float t, float* out);

private:
    struct MiniSplineData;

    std::unique_ptr<MiniSplineData> data;
};

} // namespace orvex
