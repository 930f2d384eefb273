#pragma once

/// @file
/// How the tests of the parametric meshes make them in every kind of store, and compare them.

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/orvex/geometry/mesh/owned_mesh.h"
#include "tests/orvex/geometry/printers.h"
#include "tests/orvex/math/exact.h"

namespace orvex_test {

using orvex::vec3;
using orvex::vec4;

/// Format and layout of a store.
struct StoreKind {
    orvex::VERTEX_FORMAT format;
    bool separate;
};

inline std::vector<StoreKind> all_store_kinds() {
    std::vector<StoreKind> kinds;
    for (const auto format : {orvex::VERTEX_FORMAT_96, orvex::VERTEX_FORMAT_64,
                              orvex::VERTEX_FORMAT_32, orvex::VERTEX_FORMAT_PHYSX_CLOTH})
        for (const bool separate : {true, false})
            kinds.push_back({format, separate});
    return kinds;
}

inline std::string name_of(const StoreKind& kind) {
    return std::string(format_name(kind.format)) + (kind.separate ? " separate" : " interleaved");
}

/// A shape that is not built yet.
template<class Shape>
Owned<Shape> make_shape(const StoreKind& kind = {orvex::VERTEX_FORMAT_96, true}) {
    Owned<Shape> shape(new Shape(kind.format));
    shape->set_vertex_alloc_params(kind.separate, 0);
    return shape;
}

struct TexturePoint {
    float u;
    float v;
};

/// What a shape writes for one vertex.
struct ShapeVertex {
    vec3 position;
    vec3 normal;
    TexturePoint uv;
};

inline void expect_same_bits(const vec4& actual, const vec4& expected) {
    orvex_test::expect_vec4(actual, expected.x, expected.y, expected.z, expected.w);
}

/// What a format keeps of a colour.
inline vec4 kept_color(orvex::VERTEX_FORMAT format, const vec4& color) {
    return format == orvex::VERTEX_FORMAT_32 ? vec4() : color;
}

/// What a format keeps of a texture point.
inline vec4 kept_uv(orvex::VERTEX_FORMAT format, const vec4& uv) {
    return format == orvex::VERTEX_FORMAT_96 ? uv : vec4(uv.x, uv.y, 0.0f, 1.0f);
}

/// Compares one vertex to the last bit, with what shapes leave alone.
inline void expect_vertex(orvex::Mesh& mesh, unsigned long i, const ShapeVertex& expected,
                          const vec4& color = vec4::ONE) {
    SCOPED_TRACE("vertex " + std::to_string(i));
    const orvex::VERTEX_FORMAT format = mesh.get_mesh_data()->get_vertex_format();
    const vec3& n = expected.normal;
    expect_same_bits(mesh.get_mesh_data()->get_position_4f(i), vec4(expected.position));
    expect_same_bits(mesh.get_vertex_normal(i), vec4(n.x, n.y, n.z, 0.0f));
    expect_same_bits(mesh.get_vertex_color(i), kept_color(format, color));
    expect_same_bits(mesh.get_vertex_uv(i, 0), vec4(expected.uv.u, expected.uv.v, 0.0f, 1.0f));
    expect_same_bits(mesh.get_vertex_uv(i, 1), vec4());
    expect_same_bits(mesh.get_vertex_tangent(i), vec4());
}

inline void expect_vertices(orvex::Mesh& mesh, const std::vector<ShapeVertex>& expected) {
    ASSERT_EQ(mesh.get_num_vertices(nullptr), expected.size());
    for (unsigned long i = 0; i < expected.size(); ++i)
        expect_vertex(mesh, i, expected[i]);
}

using Face = std::array<unsigned int, 3>;
using Faces = std::vector<Face>;

inline Face face_of(orvex::Mesh& mesh, unsigned long i) {
    Face face{};
    mesh.get_face_indexes(i, &face[0], &face[1], &face[2]);
    return face;
}

inline Faces faces_of(orvex::Mesh& mesh) {
    Faces faces(mesh.get_num_faces(nullptr));
    for (unsigned long i = 0; i < faces.size(); ++i)
        faces[i] = face_of(mesh, i);
    return faces;
}

using Edges = std::vector<unsigned int>;

inline Edges quad_edges_of(orvex::Mesh& mesh) {
    const orvex::MeshData& store = *mesh.get_mesh_data();
    return Edges(store.quad_edges, store.quad_edges + store.num_quad_edges);
}

/// A vector along the side from which a face is seen counter-clockwise; its length is twice the
/// face's area.
inline vec3 front_of(orvex::Mesh& mesh, const Face& face) {
    const vec3 a = mesh.get_vertex_position(face[0]).get_vec3();
    const vec3 b = mesh.get_vertex_position(face[1]).get_vec3();
    const vec3 c = mesh.get_vertex_position(face[2]).get_vec3();
    return (b - a).cross(c - a);
}

inline float dot(const vec3& a, const vec3& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

/// How many faces are seen counter-clockwise from where their first corner's normal points, and how
/// many from the other side.
struct Windings {
    int with_normal = 0;
    int against_normal = 0;
};

inline Windings windings_of(orvex::Mesh& mesh) {
    Windings windings;
    for (const Face& face : faces_of(mesh)) {
        const vec3 front = front_of(mesh, face);
        if (front.length() < 1e-6f)
            continue;
        const float side = dot(front, mesh.get_vertex_normal(face[0]).get_vec3());
        ++(side > 0.0f ? windings.with_normal : windings.against_normal);
    }
    return windings;
}

/// The box around all vertices.
struct Extent {
    vec3 low;
    vec3 high;
};

inline Extent extent_of(orvex::Mesh& mesh) {
    Extent extent{mesh.get_vertex_position(0).get_vec3(), mesh.get_vertex_position(0).get_vec3()};
    for (unsigned long i = 1; i < mesh.get_num_vertices(nullptr); ++i) {
        const vec3 p = mesh.get_vertex_position(i).get_vec3();
        for (float vec3::*axis : {&vec3::x, &vec3::y, &vec3::z}) {
            extent.low.*axis = std::min(extent.low.*axis, p.*axis);
            extent.high.*axis = std::max(extent.high.*axis, p.*axis);
        }
    }
    return extent;
}

inline void expect_extent(orvex::Mesh& mesh, const vec3& low, const vec3& high,
                          float tolerance = 0.0f) {
    const Extent extent = extent_of(mesh);
    for (float vec3::*axis : {&vec3::x, &vec3::y, &vec3::z}) {
        EXPECT_NEAR(extent.low.*axis, low.*axis, tolerance);
        EXPECT_NEAR(extent.high.*axis, high.*axis, tolerance);
    }
}

/// Compares a rectangle's four vertices and two faces. Texture coordinates have four components of
/// their own, where the format keeps them.
inline void expect_quad(orvex::Mesh& quad, const vec3 (&positions)[4]) {
    const orvex::VERTEX_FORMAT format = quad.get_mesh_data()->get_vertex_format();
    const vec4 uv[4] = {{0.0f, 0.0f, 0.0f, 1.0f},
                        {0.0f, 1.0f, 0.0f, 1.0f},
                        {1.0f, 1.0f, 1.0f, 1.0f},
                        {1.0f, 0.0f, 1.0f, 1.0f}};
    ASSERT_EQ(quad.get_num_vertices(nullptr), 4u);
    for (unsigned long i = 0; i < 4; ++i) {
        expect_same_bits(quad.get_mesh_data()->get_position_4f(i), vec4(positions[i]));
        expect_same_bits(quad.get_vertex_normal(i), vec4(0.0f, 0.0f, 1.0f, 0.0f));
        expect_same_bits(quad.get_vertex_color(i), kept_color(format, vec4::ONE));
        expect_same_bits(quad.get_vertex_uv(i, 0), kept_uv(format, uv[i]));
    }
    EXPECT_EQ(quad.get_mesh_data()->index_bits, 16);
    EXPECT_EQ(faces_of(quad), (Faces{{0, 1, 2}, {2, 3, 0}}));
    EXPECT_EQ(windings_of(quad).against_normal, 2) << "clockwise from +Z, on purpose";
}

} // namespace orvex_test
