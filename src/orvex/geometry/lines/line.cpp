#include "orvex/geometry/lines/line.h"

namespace orvex {

namespace {

/// The point at `factor` of the way from one point to another.
vec3 on_the_way(const vec3& from, const vec3& to, float factor) {
    return vec3(from.x + (to.x - from.x) * factor, from.y + (to.y - from.y) * factor,
                from.z + (to.z - from.z) * factor);
}

} // namespace

Line::Line()
    : start(-1.0f, 0.0f, 0.0f)
    , end(1.0f, 0.0f, 0.0f) {
    set_type(NODE_TYPE_LINE);
    alloc_vertex_data(2);
    set_vertex_position(0, start);
    set_vertex_position(1, end);
    Polyline::set_vertices_color(1.0f, 1.0f, 1.0f, 1.0f);
}

Line::~Line() = default;

void Line::set_start_position(const vec3& position) {
    start = position;
    set_vertex_position(0, start);
}

void Line::set_start_position(float x, float y, float z) {
    set_start_position(vec3(x, y, z));
}

void Line::set_end_position(const vec3& position) {
    end = position;
    set_vertex_position(1, end);
}

void Line::set_end_position(float x, float y, float z) {
    set_end_position(vec3(x, y, z));
}

void Line::set_start_color(const vec4& color) {
    set_vertex_color(0, color);
}

void Line::set_start_color(float r, float g, float b, float a) {
    set_start_color(vec4(r, g, b, a));
}

void Line::set_end_color(const vec4& color) {
    set_vertex_color(1, color);
}

void Line::set_end_color(float r, float g, float b, float a) {
    set_end_color(vec4(r, g, b, a));
}

void Line::set_start_factor(float factor) {
    set_vertex_position(0, on_the_way(start, end, factor));
}

void Line::set_end_factor(float factor) {
    set_vertex_position(1, on_the_way(end, start, factor));
}

} // namespace orvex
