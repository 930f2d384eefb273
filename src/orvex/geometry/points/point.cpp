#include "orvex/geometry/points/point.h"

namespace orvex {

Point::Point()
    : Point(vec3()) {}

Point::Point(const vec3& position) {
    set_type(NODE_TYPE_POINT);
    init_pool(1, false);
    set_position(position);
    set_color(1.0f, 1.0f, 1.0f, 1.0f);
}

Point::~Point() = default;

void Point::set_position(const vec3& position) {
    set_vertex_position(0, position);
}

void Point::set_position(float x, float y, float z) {
    set_vertex_position(0, vec3(x, y, z));
}

void Point::set_color(const vec4& color) {
    set_vertex_color(0, color);
}

void Point::set_color(float r, float g, float b, float a) {
    set_vertex_color(0, r, g, b, a);
}

} // namespace orvex
