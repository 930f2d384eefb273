#include "orvex/geometry/shapes/mesh_triangle.h"

#include <gtest/gtest.h>

#include "shapes.h"

namespace orvex_test {

using namespace orvex;

namespace {

constexpr vec4 red(1.0f, 0.0f, 0.0f, 1.0f);
constexpr vec4 green(0.0f, 1.0f, 0.0f, 1.0f);
constexpr vec4 blue(0.0f, 0.0f, 1.0f, 1.0f);

/// Compares a triangle with its corners, whose w must be gone.
void expect_triangle(Mesh& triangle, const vec3 (&positions)[3]) {
    const VERTEX_FORMAT format = triangle.get_mesh_data()->get_vertex_format();
    const vec4 colors[3] = {red, green, blue};
    const vec4 uv[3] = {{0.0f, 0.0f, 0.0f, 1.0f}, {0.0f, 1.0f, 0.0f, 1.0f}, vec4::ONE};
    ASSERT_EQ(triangle.get_num_vertices(nullptr), 3u);
    for (unsigned long i = 0; i < 3; ++i) {
        expect_same_bits(triangle.get_mesh_data()->get_position_4f(i), vec4(positions[i]));
        expect_same_bits(triangle.get_vertex_normal(i), vec4(0.0f, 0.0f, 1.0f, 0.0f));
        expect_same_bits(triangle.get_vertex_color(i), kept_color(format, colors[i]));
        expect_same_bits(triangle.get_vertex_uv(i, 0), kept_uv(format, uv[i]));
    }
    EXPECT_EQ(triangle.get_mesh_data()->index_bits, 16);
    EXPECT_EQ(faces_of(triangle), (Faces{{0, 1, 2}}));
    EXPECT_EQ(triangle.get_mesh_data()->num_quad_edges, 0u);
}

TEST(MeshTriangle, points_upward_at_first) {
    for (const StoreKind& kind : all_store_kinds()) {
        SCOPED_TRACE(name_of(kind));
        const auto triangle = make_shape<MeshTriangle>(kind);
        ASSERT_TRUE(triangle->build(nullptr));
        expect_triangle(*triangle, {{-1.0f, -1.0f, 0.0f}, {1.0f, -1.0f, 0.0f}, {0.0f, 1.0f, 0.0f}});
        EXPECT_EQ(windings_of(*triangle).with_normal, 1);
    }
}

TEST(MeshTriangle, takes_its_corners_without_their_w) {
    for (const StoreKind& kind : all_store_kinds()) {
        SCOPED_TRACE(name_of(kind));
        const auto triangle = make_shape<MeshTriangle>(kind);
        EXPECT_TRUE(triangle->set_build_params({1.0f, 2.0f, 3.0f, 4.0f}, {5.0f, 6.0f, 7.0f, 0.0f},
                                               {8.0f, 9.0f, 10.0f, -1.0f}));
        ASSERT_TRUE(triangle->build(nullptr));
        expect_triangle(*triangle, {{1.0f, 2.0f, 3.0f}, {5.0f, 6.0f, 7.0f}, {8.0f, 9.0f, 10.0f}});
    }
}

} // namespace

} // namespace orvex_test
