#include "orvex/geometry/shapes/mesh_triangle.h"

#include "orvex/geometry/mesh/private/mesh_contents.h"
#include "orvex/geometry/shapes/private/mesh_shape.h"
#include "orvex/scene/private/node_data.h"

namespace orvex {

MeshTriangle::MeshTriangle()
    : MeshTriangle(VERTEX_FORMAT_96) {}

MeshTriangle::MeshTriangle(VERTEX_FORMAT format)
    : Mesh(format) {
    set_type(NODE_TYPE_MESH_TRIANGLE);
    note_drawn_by_engine(*this);
    update_build_state(true);
}

bool MeshTriangle::set_build_params(const vec4& new_p0, const vec4& new_p1, const vec4& new_p2) {
    p0 = new_p0;
    p1 = new_p1;
    p2 = new_p2;
    update_build_state(true);
    return true;
}

bool MeshTriangle::build(Node*) {
    return mesh_shape::build_if_asked(*this, [this] { return _build_triangle(); }) &&
           Mesh::_build();
}

bool MeshTriangle::_build_triangle() {
    free_mesh_data();
    if (!mesh_shape::allocate(*this, 3, 1))
        return false;
    MeshData& store = *get_mesh_data();
    const vec4 corners[3] = {p0, p1, p2};
    constexpr vec4 colors[3] = {vec4(1.0f, 0.0f, 0.0f, 1.0f), vec4(0.0f, 1.0f, 0.0f, 1.0f),
                                vec4(0.0f, 0.0f, 1.0f, 1.0f)};
    constexpr vec4 uv0[3] = {vec4(0.0f, 0.0f, 0.0f, 1.0f), vec4(0.0f, 1.0f, 0.0f, 1.0f),
                             vec4(1.0f, 1.0f, 1.0f, 1.0f)};
    for (unsigned long i = 0; i < 3; ++i) {
        store.set_position(i, corners[i].get_vec3());
        store.set_normal(i, vec3(0.0f, 0.0f, 1.0f));
        store.set_color(i, colors[i]);
        store.set_uv0(i, uv0[i]);
    }
    mesh_shape::FaceWriter(store).add({0, 1, 2});
    mesh_contents::mark_for_upload(store);
    return true;
}

} // namespace orvex
