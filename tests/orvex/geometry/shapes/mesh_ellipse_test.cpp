#include "orvex/geometry/shapes/mesh_ellipse.h"

#include <limits>

#include <gtest/gtest.h>

#include "shapes.h"

namespace orvex_test {

using namespace orvex;

namespace {

TEST(MeshEllipse, writes_spokes_from_the_inside_out) {
    const std::vector<ShapeVertex> vertices{
        {{0.0f, 0.0f, 0.0f}, {0.0f, 1.0f, 0.0f}, {0.5f, 0.5f}},
        {{2.0f, 0.0f, 0.0f}, {0.0f, 1.0f, 0.0f}, {1.5f, 0.5f}},
        {{4.0f, 0.0f, 0.0f}, {0.0f, 1.0f, 0.0f}, {1.5f, 0.5f}},
        {{-1.0000001f, 0.0f, 0.8660254f}, {0.0f, 1.0f, 0.0f}, {-5.9604645e-8f, 1.3660254f}},
        {{-2.0000002f, 0.0f, 1.7320508f}, {0.0f, 1.0f, 0.0f}, {-5.9604645e-8f, 1.3660254f}},
        {{-0.9999998f, 0.0f, -0.86602545f}, {0.0f, 1.0f, 0.0f}, {8.940697e-8f, -0.36602545f}},
        {{-1.9999996f, 0.0f, -1.7320509f}, {0.0f, 1.0f, 0.0f}, {8.940697e-8f, -0.36602545f}},
        {{2.0f, 0.0f, 1.7484555e-7f}, {0.0f, 1.0f, 0.0f}, {1.5f, 0.5000002f}},
        {{4.0f, 0.0f, 3.496911e-7f}, {0.0f, 1.0f, 0.0f}, {1.5f, 0.5000002f}},
    };
    for (const StoreKind& kind : all_store_kinds()) {
        SCOPED_TRACE(name_of(kind));
        const auto ellipse = make_shape<MeshEllipse>(kind);
        EXPECT_TRUE(ellipse->set_build_params(4.0f, 2.0f, 3, 2, 360.0f));
        ASSERT_TRUE(ellipse->build(nullptr));
        expect_vertices(*ellipse, vertices);
        EXPECT_EQ(ellipse->get_mesh_data()->index_bits, 16);
        EXPECT_EQ(faces_of(*ellipse), (Faces{{0, 3, 1},
                                             {1, 3, 4},
                                             {1, 4, 2},
                                             {0, 5, 3},
                                             {3, 5, 6},
                                             {3, 6, 4},
                                             {0, 7, 5},
                                             {5, 7, 8},
                                             {5, 8, 6}}));
        EXPECT_EQ(ellipse->get_mesh_data()->num_quad_edges, 0u);
        EXPECT_EQ(windings_of(*ellipse).against_normal, 0);
        EXPECT_EQ(windings_of(*ellipse).with_normal, 9);
    }
}

TEST(MeshEllipse, has_23_vertices_and_30_faces_at_first) {
    const auto ellipse = make_shape<MeshEllipse>();
    ASSERT_TRUE(ellipse->build(nullptr));
    EXPECT_EQ(ellipse->get_num_vertices(nullptr), 23u);
    EXPECT_EQ(ellipse->get_num_faces(nullptr), 30u);
    EXPECT_EQ(windings_of(*ellipse).with_normal, 30);
    expect_extent(*ellipse, {-4.0f, 0.0f, -3.8042261f}, {4.0f, 0.0f, 3.8042261f}, 1e-4f);
}

TEST(MeshEllipse, is_a_sector_for_less_than_360_degrees) {
    const auto ellipse = make_shape<MeshEllipse>();
    ellipse->set_build_params(1.0f, 1.0f, 3, 1, 90.0f);
    ASSERT_TRUE(ellipse->build(nullptr));
    expect_extent(*ellipse, {0.0f, 0.0f, 0.0f}, {1.0f, 0.0f, 1.0f}, 1e-6f);
    EXPECT_EQ(faces_of(*ellipse), (Faces{{0, 2, 1}, {0, 3, 2}, {0, 4, 3}}));
}

TEST(MeshEllipse, is_exact_at_the_ends_of_a_large_one) {
    const auto ellipse = make_shape<MeshEllipse>();
    ellipse->set_build_params(3.7f, 2.3f, 500, 64, 360.0f);
    ASSERT_TRUE(ellipse->build(nullptr));
    ASSERT_EQ(ellipse->get_num_vertices(nullptr), 32065u);
    EXPECT_EQ(ellipse->get_num_faces(nullptr), 63500u);
    expect_vertex(*ellipse, 0, {{0.0f, 0.0f, 0.0f}, {0.0f, 1.0f, 0.0f}, {0.5f, 0.5f}});
    expect_vertex(*ellipse, 1, {{0.0578125f, 0.0f, 0.0f}, {0.0f, 1.0f, 0.0f}, {1.5f, 0.5f}});
    expect_vertex(
        *ellipse, 20000,
        {{-1.3163337f, 0.0f, -0.8080518f}, {0.0f, 1.0f, 0.0f}, {-0.21153194f, -0.20265377f}});
    expect_vertex(*ellipse, 32064,
                  {{3.699998f, 0.0f, 2.1239943e-5f}, {0.0f, 1.0f, 0.0f}, {1.5f, 0.50000924f}});
}

TEST(MeshEllipse, has_32_bit_indices_from_65536_vertices_on) {
    const auto ellipse = make_shape<MeshEllipse>();
    ellipse->set_build_params(4.0f, 4.0f, 256, 256, 360.0f);
    ASSERT_TRUE(ellipse->build(nullptr));
    EXPECT_EQ(ellipse->get_num_vertices(nullptr), 65793u);
    EXPECT_EQ(ellipse->get_mesh_data()->index_bits, 32);
    EXPECT_EQ(face_of(*ellipse, 0), (Face{0, 257, 1}));
    EXPECT_EQ(face_of(*ellipse, 511 * 256 - 1), (Face{65535, 65792, 65536}));
}

// Ten steps of 0.4 add up to more than 4: each spoke has nine vertices, one after the other, and
// the last eleven of the store are never written.
TEST(MeshEllipse, leaves_a_ring_out_where_its_steps_add_up_to_too_much) {
    const auto ellipse = make_shape<MeshEllipse>();
    ellipse->set_build_params(4.0f, 4.0f, 10, 10, 360.0f);
    ASSERT_TRUE(ellipse->build(nullptr));
    ASSERT_EQ(ellipse->get_num_vertices(nullptr), 111u);
    EXPECT_NEAR(ellipse->get_vertex_position(9).x, 3.6f, 1e-5f);
    EXPECT_NEAR(ellipse->get_vertex_position(10).x, 0.4f * 0.809017f, 1e-5f);
    EXPECT_NEAR(ellipse->get_vertex_position(99).x, 3.6f, 1e-5f);
    for (unsigned long i = 100; i < 111; ++i)
        EXPECT_EQ(ellipse->get_mesh_data()->get_position_4f(i), vec4()) << i;
}

TEST(MeshEllipse, loses_a_ring_for_33_of_the_first_100_ring_counts) {
    int short_ones = 0;
    for (int rings = 1; rings <= 100; ++rings) {
        const auto ellipse = make_shape<MeshEllipse>();
        ellipse->set_build_params(4.0f, 4.0f, 3, rings, 360.0f);
        ASSERT_TRUE(ellipse->build(nullptr));
        const unsigned long last = ellipse->get_num_vertices(nullptr) - 1;
        short_ones += ellipse->get_vertex_position(last) == vec4() ? 1 : 0;
    }
    EXPECT_EQ(short_ones, 33);
}

TEST(MeshEllipse, ends_where_its_steps_lead_nowhere) {
    const float infinity = std::numeric_limits<float>::infinity();
    for (const float radius : {0.0f, -1.0f, infinity, std::numeric_limits<float>::quiet_NaN()}) {
        const auto ellipse = make_shape<MeshEllipse>();
        ellipse->set_build_params(radius, radius, 4, 3, 360.0f);
        EXPECT_TRUE(ellipse->build(nullptr)) << radius;
        EXPECT_EQ(ellipse->get_num_vertices(nullptr), 16u);
        EXPECT_EQ(ellipse->get_num_faces(nullptr), 20u);
    }
}

TEST(MeshEllipse, keeps_counts_and_loops_apart_below_the_minimum) {
    struct Row {
        int slices;
        int rings;
        unsigned long num_vertices;
        Faces faces;
    };
    for (const Row& row : {
             Row{2, 1, 5, {{0, 2, 1}, {0, 3, 2}, {0, 0, 0}}},
             Row{0, 1, 5, {{0, 0, 0}, {0, 0, 0}, {0, 0, 0}}},
             Row{-4, 2, 9, Faces(9, Face{})},
             Row{3, 0, 5, {{0, 1, 1}, {0, 1, 1}, {0, 1, 1}}},
             Row{3, -2, 5, Faces(3, Face{})},
         }) {
        SCOPED_TRACE(std::to_string(row.slices) + " slices, " + std::to_string(row.rings));
        const auto ellipse = make_shape<MeshEllipse>();
        ellipse->set_build_params(1.0f, 1.0f, row.slices, row.rings, 360.0f);
        ASSERT_TRUE(ellipse->build(nullptr));
        EXPECT_EQ(ellipse->get_num_vertices(nullptr), row.num_vertices);
        EXPECT_EQ(faces_of(*ellipse), row.faces);
    }
}

} // namespace

} // namespace orvex_test
