/// @file
/// A curve that plots values, and the record of one curve of a graph.
///
/// A curve holds its values beside the vertices of its polyline, since a value may be changed
/// without moving its vertex. A failed allocation leaves the count of points without values, and
/// every access asks for both.

#include "orvex/geometry/lines/curve.h"

#include "orvex/geometry/mesh/private/logging_failures.h"
#include "orvex/platform/private/large_pages.h"

namespace orvex {

struct Curve::CurveData {
    std::vector<vec4> values; ///< never filled
};

Curve::Curve()
    : curve_data(std::make_unique<CurveData>()) {
    set_type(NODE_TYPE_CURVE);
}

Curve::~Curve() = default;

bool Curve::_cleanup(Renderer* renderer) {
    free();
    return Polyline::_cleanup(renderer);
}

bool Curve::alloc(unsigned long count) {
    free();
    return logging_failures([this, count] {
        num_points = count;
        values.reset(new_large_array<vec4>(count));
        return initialize(count, LINE_RENDER_MODE_LINE_STRIP);
    });
}

bool Curve::free() {
    values.reset();
    num_points = 0;
    return true;
}

unsigned long Curve::get_num_points() const {
    return num_points;
}

bool Curve::set_value(unsigned long i, const vec4& value) {
    vec4* const stored = get_value_vec4_ptr(i);
    if (!stored)
        return false;
    *stored = value;
    set_vertex_position(i, value);
    return true;
}

bool Curve::set_value(unsigned long i, const vec3& value) {
    return set_value(i, vec4(value));
}

bool Curve::set_value(unsigned long i, float x, float y, float z, float w) {
    return set_value(i, vec4(x, y, z, w));
}

bool Curve::set_value(unsigned long i, const float* xyzw) {
    return xyzw && set_value(i, vec4(xyzw[0], xyzw[1], xyzw[2], xyzw[3]));
}

vec4* Curve::get_value_vec4_ptr(unsigned long i) {
    return values && i < num_points ? &values[i] : nullptr;
}

float* Curve::get_value_xyzw_ptr(unsigned long i) {
    vec4* const value = get_value_vec4_ptr(i);
    return value ? &value->x : nullptr;
}

const vec4* Curve::get_value_vec4_ptr(unsigned long i) const {
    return values && i < num_points ? &values[i] : nullptr;
}

const float* Curve::get_value_xyzw_ptr(unsigned long i) const {
    const vec4* const value = get_value_vec4_ptr(i);
    return value ? &value->x : nullptr;
}

vec4 Curve::get_value_vec4(unsigned long i) const {
    const vec4* const value = get_value_vec4_ptr(i);
    return value ? *value : vec4();
}

vec3 Curve::get_value_vec3(unsigned long i) const {
    return get_value_vec4(i).get_vec3();
}

bool _Curve2D::init(unsigned long count) {
    cleanup(nullptr);
    return logging_failures([this, count] {
        curve = new Curve;
        if (!curve->alloc(count))
            return false;
        values = new_large_array<vec4>(count);
        num_visible_points = count;
        return true;
    });
}

bool _Curve2D::cleanup(Renderer* renderer) {
    if (curve)
        curve->cleanup(renderer, nullptr);
    delete curve;
    curve = nullptr;
    delete[] values;
    values = nullptr;
    return true;
}

} // namespace orvex
