#include "orvex/geometry/shapes/mesh_sphere.h"

#include <gtest/gtest.h>

#include "orvex/geometry/shapes/mesh_quad.h"
#include "shapes.h"
#include "tests/support/log_capture.h"

namespace orvex_test {

using namespace orvex;

namespace {

TEST(MeshSphere, fails_to_build_what_no_memory_holds_and_builds_its_children) {
    const LogCapture log;
    const auto shape = make_shape<MeshSphere>();
    const auto child = make_shape<MeshQuad>();
    child->add_ref();
    shape->add_child(child.get());
    shape->set_build_params(1.0f, 2000000000, 2000000000);
    EXPECT_FALSE(shape->build(nullptr));
    EXPECT_EQ(shape->get_mesh_data()->get_position_ptr(), nullptr);
    EXPECT_EQ(child->get_num_vertices(nullptr), 4u);
    EXPECT_TRUE(shape->build(nullptr)) << "it isn't asked for again";
    shape->set_build_params(1.0f, 3, 2);
    EXPECT_TRUE(shape->build(nullptr));
    EXPECT_EQ(shape->get_mesh_data()->num_vertices, 12u);
}

TEST(MeshSphere, stores_its_parameters_as_they_are) {
    const auto sphere = make_shape<MeshSphere>();
    EXPECT_EQ(sphere->get_radius(), 4.0f);
    EXPECT_EQ(sphere->get_slices(), 20);
    EXPECT_EQ(sphere->get_stacks(), 20);
    EXPECT_TRUE(sphere->set_build_params(-1.5f, 1, -2));
    EXPECT_TRUE(sphere->_build());
    EXPECT_EQ(sphere->get_radius(), -1.5f);
    EXPECT_EQ(sphere->get_slices(), 1);
    EXPECT_EQ(sphere->get_stacks(), -2);
}

TEST(MeshSphere, writes_rings_from_pole_to_pole) {
    const std::vector<ShapeVertex> vertices{
        {{0.0f, 0.0f, 2.0f}, {0.0f, 0.0f, 1.0f}, {0.0f, 0.0f}},
        {{0.0f, -0.0f, 2.0f}, {0.0f, -0.0f, 1.0f}, {0.33333334f, 0.0f}},
        {{-0.0f, -0.0f, 2.0f}, {-0.0f, -0.0f, 1.0f}, {0.6666667f, 0.0f}},
        {{0.0f, 0.0f, 2.0f}, {0.0f, 0.0f, 1.0f}, {1.0f, 0.0f}},
        {{0.0f, 2.0f, -8.742278e-8f}, {0.0f, 1.0f, -4.371139e-8f}, {0.0f, 0.5f}},
        {{1.7320508f, -1.0000001f, -8.742278e-8f},
         {0.8660254f, -0.50000006f, -4.371139e-8f},
         {0.33333334f, 0.5f}},
        {{-1.7320509f, -0.9999998f, -8.742278e-8f},
         {-0.86602545f, -0.4999999f, -4.371139e-8f},
         {0.6666667f, 0.5f}},
        {{3.496911e-7f, 2.0f, -8.742278e-8f}, {1.7484555e-7f, 1.0f, -4.371139e-8f}, {1.0f, 0.5f}},
        {{-0.0f, -1.7484555e-7f, -2.0f}, {-0.0f, -8.742278e-8f, -1.0f}, {0.0f, 1.0f}},
        {{-1.5142069e-7f, 8.7422784e-8f, -2.0f},
         {-7.5710346e-8f, 4.3711392e-8f, -1.0f},
         {0.33333334f, 1.0f}},
        {{1.5142069e-7f, 8.742276e-8f, -2.0f},
         {7.5710346e-8f, 4.371138e-8f, -1.0f},
         {0.6666667f, 1.0f}},
        {{-3.0570967e-14f, -1.7484555e-7f, -2.0f},
         {-1.5285484e-14f, -8.742278e-8f, -1.0f},
         {1.0f, 1.0f}},
    };
    for (const StoreKind& kind : all_store_kinds()) {
        SCOPED_TRACE(name_of(kind));
        const auto sphere = make_shape<MeshSphere>(kind);
        sphere->set_build_params(2.0f, 3, 2);
        ASSERT_TRUE(sphere->_build());
        expect_vertices(*sphere, vertices);
        EXPECT_EQ(sphere->get_mesh_data()->index_bits, 16);
        EXPECT_EQ(faces_of(*sphere), (Faces{{0, 1, 4},
                                            {4, 1, 5},
                                            {1, 2, 5},
                                            {5, 2, 6},
                                            {2, 3, 6},
                                            {6, 3, 7},
                                            {4, 5, 8},
                                            {8, 5, 9},
                                            {5, 6, 9},
                                            {9, 6, 10},
                                            {6, 7, 10},
                                            {10, 7, 11}}));
        EXPECT_EQ(
            quad_edges_of(*sphere),
            (Edges{0, 4, 4, 5, 5, 1, 1, 0, 1, 5, 5, 6,  6,  2, 2, 1, 2, 6,  6,  7,  7,  3, 3, 2,
                   4, 8, 8, 9, 9, 5, 5, 4, 5, 9, 9, 10, 10, 6, 6, 5, 6, 10, 10, 11, 11, 7, 7, 6}));
    }
}

TEST(MeshSphere, has_441_vertices_and_800_faces_at_first) {
    const auto sphere = make_shape<MeshSphere>();
    ASSERT_TRUE(sphere->_build());
    EXPECT_EQ(sphere->get_num_vertices(nullptr), 441u);
    EXPECT_EQ(sphere->get_num_faces(nullptr), 800u);
    expect_extent(*sphere, {-4.0f, -4.0f, -4.0f}, {4.0f, 4.0f, 4.0f}, 1e-4f);
}

TEST(MeshSphere, faces_outward_but_for_a_ring_of_flat_triangles_at_each_pole) {
    const auto sphere = make_shape<MeshSphere>();
    ASSERT_TRUE(sphere->_build());
    const Windings windings = windings_of(*sphere);
    EXPECT_EQ(windings.against_normal, 0);
    EXPECT_EQ(windings.with_normal, 760);
}

TEST(MeshSphere, builds_at_least_three_slices_and_two_stacks) {
    const auto sphere = make_shape<MeshSphere>();
    sphere->set_build_params(1.0f, 1, 1);
    ASSERT_TRUE(sphere->_build());
    EXPECT_EQ(sphere->get_num_vertices(nullptr), 12u);
    EXPECT_EQ(sphere->get_num_faces(nullptr), 12u);
}

TEST(MeshSphere, is_bounded_by_the_sphere_inscribed_in_its_box) {
    const auto sphere = make_shape<MeshSphere>();
    EXPECT_FALSE(sphere->bounding_sphere_inscribed_sphere());
    ASSERT_TRUE(sphere->_build());
    EXPECT_TRUE(sphere->bounding_sphere_inscribed_sphere());
    EXPECT_NEAR(sphere->get_bounding_sphere_radius(), 4.00012f, 1e-4f);
}

TEST(MeshSphere, is_exact_at_the_ends_of_a_large_one) {
    const auto sphere = make_shape<MeshSphere>();
    sphere->set_build_params(3.7f, 512, 512);
    ASSERT_TRUE(sphere->_build());
    ASSERT_EQ(sphere->get_num_vertices(nullptr), 513u * 513u);
    EXPECT_EQ(sphere->get_num_faces(nullptr), 524288u);
    EXPECT_EQ(sphere->get_mesh_data()->index_bits, 32);
    expect_vertex(*sphere, 0, {{0.0f, 0.0f, 3.7f}, {0.0f, 0.0f, 1.0f}, {0.0f, 0.0f}});
    expect_vertex(*sphere, 512, {{0.0f, 0.0f, 3.7f}, {0.0f, 0.0f, 1.0f}, {1.0f, 0.0f}});
    expect_vertex(*sphere, 102900,
                  {{-1.7909869f, -2.9880803f, 1.2464924f},
                   {-0.4840505f, -0.80758923f, 0.33688983f},
                   {0.5859375f, 0.390625f}});
    expect_vertex(*sphere, 263168,
                  {{-5.6556288e-14f, -3.2346426e-7f, -3.7f},
                   {-1.5285484e-14f, -8.742278e-8f, -1.0f},
                   {1.0f, 1.0f}});
    EXPECT_EQ(face_of(*sphere, 0), (Face{0, 1, 513}));
    EXPECT_EQ(face_of(*sphere, 524287), (Face{263167, 262655, 263168}));
}

} // namespace

} // namespace orvex_test
