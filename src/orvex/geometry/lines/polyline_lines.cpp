#include "orvex/geometry/lines/polyline.h"

#include "orvex/geometry/lines/private/polyline_user_geometry_data.h"
#include "orvex/renderer/records/polyline_data.h"

namespace orvex {

bool Polyline::_build() {
    if (get_build_state()) {
        update_build_state(false);
        if (!_user_geometry_build())
            return false;
    }
    return Object::_build();
}

bool Polyline::build_line(const vec4& a, const vec4& b) {
    add_line(a, b);
    return true;
}

unsigned long Polyline::add_line(const vec4& a, const vec4& b) {
    return add_line_v2(a, vec4(1.0f, 0.0f, 0.0f, 1.0f), b, vec4(0.0f, 1.0f, 0.0f, 1.0f));
}

namespace {

Vertex line_end(const vec4& position, const vec4& color) {
    Vertex vertex;
    vertex.position = position;
    vertex.color = color;
    vertex.normal = vec4(0.0f, 1.0f, 0.0f, 0.0f);
    return vertex;
}

} // namespace

unsigned long Polyline::add_line_v2(const vec4& a, const vec4& a_color, const vec4& b,
                                    const vec4& b_color) {
    if (!user_geometry)
        user_geometry = std::make_unique<PolylineBuildUserGeometryData>();
    std::vector<Vertex>& vertices = user_geometry->vertices;
    vertices.push_back(line_end(a, a_color));
    vertices.push_back(line_end(b, b_color));
    update_build_state(true);
    return vertices.size() / 2 - 1;
}

namespace {

void fill_vertices(PolylineData& store, const std::vector<Vertex>& vertices) {
    for (unsigned long i = 0; i < vertices.size(); ++i) {
        store.vertices[i].position = vertices[i].position;
        store.vertices[i].normal = vertices[i].normal;
        store.vertices[i].color = vertices[i].color;
        store.vertices[i].uv0 = vertices[i].uv0;
    }
}

/// A store that was drawn before has a GPU buffer with the lines before these.
void mark_for_upload(PolylineData& store) {
    if (store.vertex_buffer_id == 0)
        return;
    store.positions_need_update = true;
    store.normals_need_update = true;
    store.colors_need_update = true;
    store.uv0_need_update = true;
}

} // namespace

bool Polyline::_user_geometry_build() {
    if (!user_geometry)
        return false;
    free_polyline_data();
    if (!alloc_vertex_data(user_geometry->vertices.size()))
        return false;
    fill_vertices(*polyline_data, user_geometry->vertices);
    mark_for_upload(*polyline_data);
    user_geometry.reset();
    return true;
}

} // namespace orvex
