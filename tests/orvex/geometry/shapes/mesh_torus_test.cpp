#include "orvex/geometry/shapes/mesh_torus.h"

#include <gtest/gtest.h>

#include "orvex/geometry/shapes/mesh_quad.h"
#include "shapes.h"
#include "tests/support/log_capture.h"

namespace orvex_test {

using namespace orvex;

namespace {

TEST(MeshTorus, fails_to_build_what_no_memory_holds_and_builds_its_children) {
    const LogCapture log;
    const auto shape = make_shape<MeshTorus>();
    const auto child = make_shape<MeshQuad>();
    child->add_ref();
    shape->add_child(child.get());
    shape->set_build_params(1.0f, 0.2f, 2000000000);
    EXPECT_FALSE(shape->build(nullptr));
    EXPECT_EQ(shape->get_mesh_data()->get_position_ptr(), nullptr);
    EXPECT_EQ(child->get_num_vertices(nullptr), 4u);
    EXPECT_TRUE(shape->build(nullptr)) << "it isn't asked for again";
    shape->set_build_params(1.0f, 0.2f, 3);
    EXPECT_TRUE(shape->build(nullptr));
    EXPECT_EQ(shape->get_mesh_data()->num_vertices, 16u);
}

TEST(MeshTorus, stores_its_parameters_as_they_are) {
    const auto torus = make_shape<MeshTorus>();
    EXPECT_EQ(torus->get_radius(), 5.0f);
    EXPECT_EQ(torus->get_tube_radius(), 2.0f);
    EXPECT_EQ(torus->get_slices(), 20);
    EXPECT_TRUE(torus->set_build_params(3.0f, 7.0f, -1));
    EXPECT_EQ(torus->get_radius(), 3.0f);
    EXPECT_EQ(torus->get_tube_radius(), 7.0f);
    EXPECT_EQ(torus->get_slices(), -1);
}

TEST(MeshTorus, turns_its_section_around_the_y_axis) {
    const std::vector<ShapeVertex> vertices{
        {{3.0f, 0.0f, 0.0f}, {1.0f, 0.0f, 0.0f}, {0.0f, 0.0f}},
        {{1.0f, -8.742278e-8f, 0.0f}, {-1.0f, -8.742278e-8f, 0.0f}, {0.0f, 0.5f}},
        {{3.0f, 1.7484555e-7f, 0.0f}, {1.0f, 1.7484555e-7f, 0.0f}, {0.0f, 1.0f}},
        {{-3.0f, 0.0f, 2.6226832e-7f}, {-1.0f, 0.0f, 8.742278e-8f}, {1.0f, 0.0f}},
        {{-1.0f, -8.742278e-8f, 8.742278e-8f}, {1.0f, -8.742278e-8f, -8.742278e-8f}, {1.0f, 0.5f}},
        {{-3.0f, 1.7484555e-7f, 2.6226832e-7f}, {-1.0f, 1.7484555e-7f, 8.742278e-8f}, {1.0f, 1.0f}},
        {{3.0f, 0.0f, -5.2453663e-7f}, {1.0f, 0.0f, -1.7484555e-7f}, {2.0f, 0.0f}},
        {{1.0f, -8.742278e-8f, -1.7484555e-7f},
         {-1.0f, -8.742278e-8f, 1.7484555e-7f},
         {2.0f, 0.5f}},
        {{3.0f, 1.7484555e-7f, -5.2453663e-7f},
         {1.0f, 1.7484555e-7f, -1.7484555e-7f},
         {2.0f, 1.0f}},
    };
    for (const StoreKind& kind : all_store_kinds()) {
        SCOPED_TRACE(name_of(kind));
        const auto torus = make_shape<MeshTorus>(kind);
        torus->set_build_params(3.0f, 1.0f, 2);
        ASSERT_TRUE(torus->_build());
        expect_vertices(*torus, vertices);
        EXPECT_EQ(torus->get_mesh_data()->index_bits, 16);
        EXPECT_EQ(faces_of(*torus), (Faces{{0, 3, 1},
                                           {1, 3, 4},
                                           {1, 4, 2},
                                           {2, 4, 5},
                                           {3, 6, 4},
                                           {4, 6, 7},
                                           {4, 7, 5},
                                           {5, 7, 8}}));
        EXPECT_EQ(quad_edges_of(*torus), (Edges{0, 3, 3, 4, 4, 1, 1, 0, 1, 4, 4, 5, 5, 2, 2, 1,
                                                3, 6, 6, 7, 7, 4, 4, 3, 4, 7, 7, 8, 8, 5, 5, 4}));
    }
}

TEST(MeshTorus, turns_as_the_vector_operations_do) {
    const auto torus = make_shape<MeshTorus>();
    ASSERT_TRUE(torus->_build());
    const vec4 center(3.0f, 0.0f, 0.0f, 1.0f);
    for (unsigned long ring = 1; ring <= 20; ++ring)
        for (unsigned long i = 0; i <= 20; ++i) {
            const float degrees = static_cast<float>(ring) / 20.0f * 360.0f;
            vec4 position = torus->get_vertex_position(i);
            vec4 normal = position - center;
            position.rotate_y(degrees);
            normal.rotate_y(degrees).normalize();
            const unsigned long vertex = ring * 21 + i;
            expect_same_bits(torus->get_vertex_position(vertex), position);
            normal.w = 0.0f;
            expect_same_bits(torus->get_vertex_normal(vertex), normal);
        }
}

TEST(MeshTorus, reaches_its_radius_and_leaves_a_hole) {
    const auto torus = make_shape<MeshTorus>();
    ASSERT_TRUE(torus->_build());
    float outer = 0.0f;
    float inner = 100.0f;
    for (unsigned long i = 0; i < 441; ++i) {
        vec4 position = torus->get_vertex_position(i);
        position.y = 0.0f;
        outer = std::max(outer, position.length());
        inner = std::min(inner, position.length());
    }
    EXPECT_NEAR(outer, 5.0f, 1e-4f);
    EXPECT_NEAR(inner, 1.0f, 1e-4f);
    expect_extent(*torus, {-5.0f, -2.0f, -5.0f}, {5.0f, 2.0f, 5.0f}, 1e-4f);
}

TEST(MeshTorus, counts_u_to_two_around_the_ring) {
    const auto torus = make_shape<MeshTorus>();
    ASSERT_TRUE(torus->_build());
    EXPECT_EQ(torus->get_vertex_uv(0, 0), vec4(0.0f, 0.0f, 0.0f, 1.0f));
    EXPECT_EQ(torus->get_vertex_uv(10 * 21 + 5, 0), vec4(1.0f, 0.25f, 0.0f, 1.0f));
    EXPECT_EQ(torus->get_vertex_uv(440, 0), vec4(2.0f, 1.0f, 0.0f, 1.0f));
}

TEST(MeshTorus, faces_outward) {
    const auto torus = make_shape<MeshTorus>();
    ASSERT_TRUE(torus->_build());
    EXPECT_EQ(windings_of(*torus).against_normal, 0);
    EXPECT_EQ(windings_of(*torus).with_normal, 800);
}

TEST(MeshTorus, is_a_single_vertex_without_slices) {
    for (const int slices : {0, -3}) {
        const auto torus = make_shape<MeshTorus>();
        torus->set_build_params(5.0f, 2.0f, slices);
        EXPECT_TRUE(torus->_build());
        EXPECT_EQ(torus->get_num_vertices(nullptr), 1u);
        EXPECT_EQ(torus->get_num_faces(nullptr), 0u);
        EXPECT_EQ(torus->get_mesh_data()->num_quad_edges, 0u);
    }
}

TEST(MeshTorus, is_bounded_by_the_sphere_around_its_box) {
    const auto torus = make_shape<MeshTorus>();
    torus->bounding_sphere_use_inscribed_sphere(true);
    ASSERT_TRUE(torus->_build());
    EXPECT_FALSE(torus->bounding_sphere_inscribed_sphere());
    EXPECT_NEAR(torus->get_bounding_sphere_radius(), 7.3484692f, 1e-4f);
}

TEST(MeshTorus, is_exact_at_the_ends_of_a_large_one) {
    const auto torus = make_shape<MeshTorus>();
    torus->set_build_params(5.3f, 1.7f, 512);
    ASSERT_TRUE(torus->_build());
    ASSERT_EQ(torus->get_num_vertices(nullptr), 513u * 513u);
    EXPECT_EQ(torus->get_mesh_data()->index_bits, 32);
    expect_vertex(*torus, 0, {{5.3f, 0.0f, 0.0f}, {0.99999994f, 0.0f, 0.0f}, {0.0f, 0.0f}});
    expect_vertex(*torus, 102900,
                  {{-1.6556814f, -0.8739746f, -1.3587825f},
                   {0.6630332f, -0.5141027f, 0.54413724f},
                   {0.78125f, 0.5859375f}});
    expect_vertex(*torus, 263168,
                  {{5.3f, 2.9723745e-7f, -9.266815e-7f},
                   {0.99999994f, 1.7484555e-7f, -1.7484555e-7f},
                   {2.0f, 1.0f}});
    EXPECT_EQ(face_of(*torus, 0), (Face{0, 513, 1}));
    EXPECT_EQ(face_of(*torus, 524287), (Face{262655, 263167, 263168}));
}

} // namespace

} // namespace orvex_test
