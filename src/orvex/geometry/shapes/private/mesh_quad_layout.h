#pragma once

/// @file
/// The four vertices and two faces of a rectangle in the plane XY, from its lower left corner up.
///
///     1  2
///     0  3

#include "orvex/geometry/shapes/private/mesh_shape.h"

namespace orvex::mesh_quad_layout {

struct Rectangle {
    float left;
    float bottom;
    float right;
    float top;
};

inline void write_positions(MeshData& store, const Rectangle& rectangle) {
    store.set_position(0, vec3(rectangle.left, rectangle.bottom, 0.0f));
    store.set_position(1, vec3(rectangle.left, rectangle.top, 0.0f));
    store.set_position(2, vec3(rectangle.right, rectangle.top, 0.0f));
    store.set_position(3, vec3(rectangle.right, rectangle.bottom, 0.0f));
}

/// Allocates and writes the rectangle. The normals point to +Z, against the winding of the faces:
/// hosts cull by the one and light by the other.
inline bool build(Mesh& mesh, const Rectangle& rectangle) {
    if (!mesh_shape::allocate(mesh, 4, 2))
        return false;
    MeshData& store = *mesh.get_mesh_data();
    write_positions(store, rectangle);
    constexpr vec4 uv0[4] = {vec4(0.0f, 0.0f, 0.0f, 1.0f), vec4(0.0f, 1.0f, 0.0f, 1.0f),
                             vec4(1.0f, 1.0f, 1.0f, 1.0f), vec4(1.0f, 0.0f, 1.0f, 1.0f)};
    for (unsigned long i = 0; i < 4; ++i) {
        store.set_normal(i, vec3(0.0f, 0.0f, 1.0f));
        store.set_color(i, mesh_shape::white);
        store.set_uv0(i, uv0[i]);
    }
    mesh_shape::FaceWriter faces(store);
    faces.add({0, 1, 2});
    faces.add({2, 3, 0});
    return true;
}

} // namespace orvex::mesh_quad_layout
