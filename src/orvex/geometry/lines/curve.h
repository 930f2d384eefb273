#pragma once

/// @file
/// `Curve`, a polyline that keeps the values it plots, and the record of one curve of a graph.

#include "orvex/api.h"
#include "orvex/geometry/lines/polyline.h"

#include <memory>
#include <vector>

namespace orvex {

/// A polyline that keeps the values it plots: each value is the position of its vertex.
///
/// The host makes it with `new`, sizes it with `alloc` and ends it through `Node::release` or
/// `Node::kill`. Values are positions in object space. Used on the thread that owns the renderer's
/// context.
///
/// @code
/// Curve* curve = new Curve;
/// curve->alloc(100);
/// for (unsigned long i = 0; i < 100; ++i)
///     curve->set_value(i, static_cast<float>(i), measured[i], 0.0f, 1.0f);
/// @endcode
class ORVEX_API Curve : public Polyline {
public:
    /// A curve without points.
    Curve();
    ~Curve() override;

    /// Frees the values, then does what `Polyline` does.
    bool _cleanup(Renderer* renderer) override;

    /// Makes `count` points at the default value, (0, 0, 0, 1), joined as a strip, in place of
    /// those before.
    /// @return false, with a log line if memory ran out
    bool alloc(unsigned long count);
    /// Frees the values. The vertices stay. @return true
    bool free();

    unsigned long get_num_points() const; ///< number of points

    /// @name Values
    /// @return false without values, for i out of range, and for a null pointer
    /// @{

    /// Stores value i, which is also the position of vertex i.
    bool set_value(unsigned long i, const vec4& value);
    bool set_value(unsigned long i, const vec3& value); ///< w is 1
    /// As the form of one vector.
    bool set_value(unsigned long i, float x, float y, float z, float w);
    bool set_value(unsigned long i, const float* xyzw); ///< four floats
    /// @}

    /// Value i, for reading and writing; writing doesn't move the vertex. Null out of range.
    vec4* get_value_vec4_ptr(unsigned long i);
    const vec4* get_value_vec4_ptr(unsigned long i) const; ///< the same, for reading
    /// The same as four floats.
    float* get_value_xyzw_ptr(unsigned long i);
    const float* get_value_xyzw_ptr(unsigned long i) const; ///< the same, for reading
    /// Value i, or (0, 0, 0, 1).
    vec4 get_value_vec4(unsigned long i) const;
    /// Value i without w, or (0, 0, 0).
    vec3 get_value_vec3(unsigned long i) const;

private:
    struct CurveData;

    std::unique_ptr<CurveData> curve_data;
    unsigned long num_points = 0;
    std::unique_ptr<vec4[]> values; ///< null after a failed allocation, whatever the count
};

/// One curve of a 2D graph: the line object and the values behind it. A plain record; who fills it
/// with `init` ends it with `cleanup`.
struct ORVEX_API _Curve2D {
    unsigned long diff_points = 0;        ///< samples dropped off the left at the last sync
    unsigned long num_visible_points = 0; ///< vertices to draw, the curve's size at first
    Curve* curve = nullptr;               ///< the line object, owned
    vec4* values = nullptr;               ///< one per point, owned: positions as given, unshifted
    std::vector<vec4> samples;            ///< incoming values, in order of arrival

    /// Makes the curve and its values, `count` points. Those before are ended without a renderer.
    /// @return false, with a log line, if memory ran out; `cleanup` ends what was made
    bool init(unsigned long count);

    /// Ends the curve and its values. @param renderer  frees the GPU objects; may be null
    /// @return true
    bool cleanup(Renderer* renderer);
};

} // namespace orvex
