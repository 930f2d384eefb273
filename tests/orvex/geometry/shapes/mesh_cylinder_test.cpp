#include "orvex/geometry/shapes/mesh_cylinder.h"

#include <gtest/gtest.h>

#include "shapes.h"

namespace orvex_test {

using namespace orvex;

namespace {

TEST(MeshCylinder, writes_rings_from_end_to_end) {
    const std::vector<ShapeVertex> vertices{
        {{0.0f, 2.0f, -1.5f}, {0.0f, 1.0f, 0.0f}, {0.0f, 0.0f}},
        {{1.7320508f, -1.0000001f, -1.5f}, {0.8660254f, -0.50000006f, 0.0f}, {0.33333334f, 0.0f}},
        {{-1.7320509f, -0.9999998f, -1.5f}, {-0.86602545f, -0.4999999f, 0.0f}, {0.6666667f, 0.0f}},
        {{3.496911e-7f, 2.0f, -1.5f}, {1.7484555e-7f, 1.0f, 0.0f}, {1.0f, 0.0f}},
        {{0.0f, 2.0f, -0.5f}, {0.0f, 1.0f, 0.0f}, {0.0f, 0.33333334f}},
        {{1.7320508f, -1.0000001f, -0.5f},
         {0.8660254f, -0.50000006f, 0.0f},
         {0.33333334f, 0.33333334f}},
        {{-1.7320509f, -0.9999998f, -0.5f},
         {-0.86602545f, -0.4999999f, 0.0f},
         {0.6666667f, 0.33333334f}},
        {{3.496911e-7f, 2.0f, -0.5f}, {1.7484555e-7f, 1.0f, 0.0f}, {1.0f, 0.33333334f}},
        {{0.0f, 2.0f, 0.5f}, {0.0f, 1.0f, 0.0f}, {0.0f, 0.6666667f}},
        {{1.7320508f, -1.0000001f, 0.5f},
         {0.8660254f, -0.50000006f, 0.0f},
         {0.33333334f, 0.6666667f}},
        {{-1.7320509f, -0.9999998f, 0.5f},
         {-0.86602545f, -0.4999999f, 0.0f},
         {0.6666667f, 0.6666667f}},
        {{3.496911e-7f, 2.0f, 0.5f}, {1.7484555e-7f, 1.0f, 0.0f}, {1.0f, 0.6666667f}},
        {{0.0f, 2.0f, 1.5f}, {0.0f, 1.0f, 0.0f}, {0.0f, 1.0f}},
        {{1.7320508f, -1.0000001f, 1.5f}, {0.8660254f, -0.50000006f, 0.0f}, {0.33333334f, 1.0f}},
        {{-1.7320509f, -0.9999998f, 1.5f}, {-0.86602545f, -0.4999999f, 0.0f}, {0.6666667f, 1.0f}},
        {{3.496911e-7f, 2.0f, 1.5f}, {1.7484555e-7f, 1.0f, 0.0f}, {1.0f, 1.0f}},
    };
    for (const StoreKind& kind : all_store_kinds()) {
        SCOPED_TRACE(name_of(kind));
        const auto tube = make_shape<MeshCylinder>(kind);
        EXPECT_TRUE(tube->set_build_params(2.0f, 3.0f, 3, 3));
        ASSERT_TRUE(tube->build(nullptr));
        expect_vertices(*tube, vertices);
        EXPECT_EQ(tube->get_mesh_data()->index_bits, 16);
        EXPECT_EQ(faces_of(*tube), (Faces{{4, 1, 0},
                                          {5, 1, 4},
                                          {5, 2, 1},
                                          {6, 2, 5},
                                          {6, 3, 2},
                                          {7, 3, 6},
                                          {8, 5, 4},
                                          {9, 5, 8},
                                          {9, 6, 5},
                                          {10, 6, 9},
                                          {10, 7, 6},
                                          {11, 7, 10},
                                          {12, 9, 8},
                                          {13, 9, 12},
                                          {13, 10, 9},
                                          {14, 10, 13},
                                          {14, 11, 10},
                                          {15, 11, 14}}));
        EXPECT_EQ(quad_edges_of(*tube),
                  (Edges{0,  4, 4, 5,  5,  1,  1,  0,  1,  5, 5,  6,  6,  2,  2,  1,  2,  6,
                         6,  7, 7, 3,  3,  2,  4,  8,  8,  9, 9,  5,  5,  4,  5,  9,  9,  10,
                         10, 6, 6, 5,  6,  10, 10, 11, 11, 7, 7,  6,  8,  12, 12, 13, 13, 9,
                         9,  8, 9, 13, 13, 14, 14, 10, 10, 9, 10, 14, 14, 15, 15, 11, 11, 10}));
        EXPECT_EQ(windings_of(*tube).against_normal, 0);
        EXPECT_EQ(windings_of(*tube).with_normal, 18);
    }
}

TEST(MeshCylinder, has_radius_5_height_10_and_20_by_20_cells_at_first) {
    const auto tube = make_shape<MeshCylinder>();
    ASSERT_TRUE(tube->build(nullptr));
    EXPECT_EQ(tube->get_num_vertices(nullptr), 441u);
    EXPECT_EQ(tube->get_num_faces(nullptr), 800u);
    expect_extent(*tube, {-5.0f, -5.0f, -5.0f}, {5.0f, 5.0f, 5.0f}, 1e-4f);
}

TEST(MeshCylinder, raises_what_is_too_small) {
    const auto tube = make_shape<MeshCylinder>();
    tube->set_build_params(-2.0f, -4.0f, 0, 2);
    ASSERT_TRUE(tube->build(nullptr));
    EXPECT_EQ(tube->get_num_vertices(nullptr), 16u);
    EXPECT_EQ(tube->get_num_faces(nullptr), 18u);
    EXPECT_EQ(tube->get_vertex_position(0), vec4(0.0f, 1.0f, 0.0f, 1.0f));
    EXPECT_EQ(tube->get_vertex_position(15).z, 0.0f);
}

TEST(MeshCylinder, may_have_no_radius_and_no_height) {
    const auto tube = make_shape<MeshCylinder>();
    tube->set_build_params(0.0f, 0.0f, 3, 3);
    ASSERT_TRUE(tube->build(nullptr));
    expect_extent(*tube, {0.0f, 0.0f, 0.0f}, {0.0f, 0.0f, 0.0f});
}

TEST(MeshCylinder, keeps_instances_when_it_is_rebuilt) {
    const auto tube = make_shape<MeshCylinder>();
    tube->build(nullptr);
    InstancingInitParams params;
    params.position = true;
    tube->instancing_init(2, params, 0);
    tube->set_render_wireframe_quad_state(true);
    tube->set_build_params(1.0f, 1.0f, 3, 3);
    ASSERT_TRUE(tube->build(nullptr));
    EXPECT_EQ(tube->get_num_vertices(nullptr), 16u);
    EXPECT_EQ(tube->get_mesh_data()->num_quad_edges, 72u);
    EXPECT_NE(tube->get_instances_positions_vec4_ptr(), nullptr);
    EXPECT_TRUE(tube->get_render_wireframe_quad_state());
}

TEST(MeshCylinder, is_exact_at_the_ends_of_a_large_one) {
    const auto tube = make_shape<MeshCylinder>();
    tube->set_build_params(3.7f, 5.3f, 512, 512);
    ASSERT_TRUE(tube->build(nullptr));
    ASSERT_EQ(tube->get_num_vertices(nullptr), 513u * 513u);
    EXPECT_EQ(tube->get_mesh_data()->index_bits, 32);
    expect_vertex(*tube, 0, {{0.0f, 3.7f, -2.65f}, {0.0f, 1.0f, 0.0f}, {0.0f, 0.0f}});
    expect_vertex(*tube, 102900,
                  {{-1.9021807f, -3.1735957f, -0.5796876f},
                   {-0.5141029f, -0.85772854f, 0.0f},
                   {0.5859375f, 0.390625f}});
    expect_vertex(*tube, 263168,
                  {{6.469285e-7f, 3.7f, 2.65f}, {1.7484555e-7f, 1.0f, 0.0f}, {1.0f, 1.0f}});
    EXPECT_EQ(face_of(*tube, 0), (Face{513, 1, 0}));
    EXPECT_EQ(face_of(*tube, 524287), (Face{263168, 262655, 263167}));
}

} // namespace

} // namespace orvex_test
