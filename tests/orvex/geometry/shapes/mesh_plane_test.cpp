#include "orvex/geometry/shapes/mesh_plane.h"

#include <gtest/gtest.h>

#include "shapes.h"

namespace orvex_test {

using namespace orvex;

namespace {

TEST(MeshPlane, stores_its_parameters_as_they_are) {
    const auto plane = make_shape<MeshPlane>();
    EXPECT_EQ(plane->get_width(), 10.0f);
    EXPECT_EQ(plane->get_height(), 10.0f);
    EXPECT_EQ(plane->get_wsegs(), 4);
    EXPECT_EQ(plane->get_hsegs(), 4);
    EXPECT_TRUE(plane->set_build_params(-3.0f, 0.5f, 0, -7));
    EXPECT_TRUE(plane->build(nullptr));
    EXPECT_EQ(plane->get_width(), -3.0f);
    EXPECT_EQ(plane->get_height(), 0.5f);
    EXPECT_EQ(plane->get_wsegs(), 0);
    EXPECT_EQ(plane->get_hsegs(), -7);
}

TEST(MeshPlane, writes_vertices_and_faces_row_by_row) {
    const std::vector<ShapeVertex> vertices{
        {{-1.5f, 0.0f, -1.0f}, {0.0f, 1.0f, 0.0f}, {0.0f, 1.0f}},
        {{0.0f, 0.0f, -1.0f}, {0.0f, 1.0f, 0.0f}, {0.5f, 1.0f}},
        {{1.5f, 0.0f, -1.0f}, {0.0f, 1.0f, 0.0f}, {1.0f, 1.0f}},
        {{-1.5f, 0.0f, 1.0f}, {0.0f, 1.0f, 0.0f}, {0.0f, 0.0f}},
        {{0.0f, 0.0f, 1.0f}, {0.0f, 1.0f, 0.0f}, {0.5f, 0.0f}},
        {{1.5f, 0.0f, 1.0f}, {0.0f, 1.0f, 0.0f}, {1.0f, 0.0f}},
    };
    for (const StoreKind& kind : all_store_kinds()) {
        SCOPED_TRACE(name_of(kind));
        const auto plane = make_shape<MeshPlane>(kind);
        plane->set_build_params(3.0f, 2.0f, 2, 1);
        ASSERT_TRUE(plane->build(nullptr));
        expect_vertices(*plane, vertices);
        EXPECT_EQ(plane->get_mesh_data()->index_bits, 16);
        EXPECT_EQ(faces_of(*plane), (Faces{{0, 3, 1}, {1, 3, 4}, {1, 4, 2}, {2, 4, 5}}));
        EXPECT_EQ(quad_edges_of(*plane), (Edges{0, 1, 1, 4, 4, 3, 3, 0, 1, 2, 2, 5, 5, 4, 4, 1}));
        EXPECT_EQ(windings_of(*plane).against_normal, 0);
    }
}

TEST(MeshPlane, builds_at_least_one_cell) {
    const auto plane = make_shape<MeshPlane>();
    plane->set_build_params(2.0f, 2.0f, 0, -5);
    ASSERT_TRUE(plane->build(nullptr));
    EXPECT_EQ(plane->get_num_vertices(nullptr), 4u);
    EXPECT_EQ(faces_of(*plane), (Faces{{0, 2, 1}, {1, 2, 3}}));
}

TEST(MeshPlane, has_25_vertices_and_32_faces_at_first) {
    const auto plane = make_shape<MeshPlane>();
    ASSERT_TRUE(plane->build(nullptr));
    EXPECT_EQ(plane->get_num_vertices(nullptr), 25u);
    EXPECT_EQ(plane->get_num_faces(nullptr), 32u);
    expect_extent(*plane, {-5.0f, 0.0f, -5.0f}, {5.0f, 0.0f, 5.0f});
}

TEST(MeshPlane, has_16_bit_indices_up_to_65535_vertices) {
    const auto plane = make_shape<MeshPlane>();
    plane->set_build_params(1.0f, 1.0f, 254, 256); // 255 * 257
    ASSERT_TRUE(plane->build(nullptr));
    EXPECT_EQ(plane->get_num_vertices(nullptr), 65535u);
    EXPECT_EQ(plane->get_mesh_data()->index_bits, 16);
    EXPECT_EQ(face_of(*plane, 2 * 254 * 256 - 1), (Face{65279, 65533, 65534}));
    EXPECT_EQ(windings_of(*plane).against_normal, 0);
}

TEST(MeshPlane, turns_the_first_triangle_of_each_cell_down_with_32_bit_indices) {
    const auto plane = make_shape<MeshPlane>();
    plane->set_build_params(256.0f, 256.0f, 255, 255); // 256 * 256
    ASSERT_TRUE(plane->build(nullptr));
    EXPECT_EQ(plane->get_mesh_data()->index_bits, 32);
    EXPECT_EQ(face_of(*plane, 0), (Face{0, 1, 256}));
    EXPECT_EQ(face_of(*plane, 1), (Face{1, 256, 257}));
    EXPECT_EQ(face_of(*plane, 2 * 255 * 255 - 1), (Face{65279, 65534, 65535}));
    for (unsigned long i = 0; i < 2 * 255 * 255; ++i)
        ASSERT_EQ(front_of(*plane, face_of(*plane, i)).y < 0.0f, i % 2 == 0) << i;
}

TEST(MeshPlane, is_exact_at_the_ends_of_a_large_one) {
    const auto plane = make_shape<MeshPlane>();
    plane->set_build_params(10.0f, 7.0f, 1000, 1000);
    ASSERT_TRUE(plane->build(nullptr));
    ASSERT_EQ(plane->get_num_vertices(nullptr), 1002001u);
    EXPECT_EQ(plane->get_num_faces(nullptr), 2000000u);
    EXPECT_EQ(plane->get_mesh_data()->num_quad_edges, 8000000u);
    expect_vertex(*plane, 0, {{-5.0f, 0.0f, -3.5f}, {0.0f, 1.0f, 0.0f}, {0.0f, 1.0f}});
    expect_vertex(*plane, 500123,
                  {{1.2399998f, 0.0f, -0.0069999695f}, {0.0f, 1.0f, 0.0f}, {0.624f, 0.50100005f}});
    expect_vertex(*plane, 1002000, {{5.0f, 0.0f, 3.5f}, {0.0f, 1.0f, 0.0f}, {1.0f, 0.0f}});
    EXPECT_EQ(plane->get_mesh_data()->quad_edges[7999999], 1000998u);
}

TEST(MeshPlane, multiplies_by_the_rounded_share_of_a_segment) {
    const auto plane = make_shape<MeshPlane>();
    plane->set_build_params(10.0f, 10.0f, 41, 41);
    ASSERT_TRUE(plane->build(nullptr));
    EXPECT_EQ(plane->get_vertex_uv(0, 0), vec4(0.0f, 0.99999994f, 0.0f, 1.0f));
}

} // namespace

} // namespace orvex_test
