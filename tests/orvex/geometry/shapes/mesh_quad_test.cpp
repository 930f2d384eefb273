#include "orvex/geometry/shapes/mesh_quad.h"

#include <gtest/gtest.h>

#include "shapes.h"

namespace orvex_test {

using namespace orvex;

namespace {

TEST(MeshQuad, is_a_rectangle_around_the_origin) {
    for (const StoreKind& kind : all_store_kinds()) {
        SCOPED_TRACE(name_of(kind));
        const auto quad = make_shape<MeshQuad>(kind);
        EXPECT_TRUE(quad->set_build_params(3.0f, 5.0f));
        ASSERT_TRUE(quad->build(nullptr));
        expect_quad(
            *quad,
            {{-1.5f, -2.5f, 0.0f}, {-1.5f, 2.5f, 0.0f}, {1.5f, 2.5f, 0.0f}, {1.5f, -2.5f, 0.0f}});
        EXPECT_EQ(quad_edges_of(*quad), (Edges{0, 1, 1, 2, 2, 3, 3, 0}));
    }
}

TEST(MeshQuad, is_10_by_10_at_first) {
    const auto quad = make_shape<MeshQuad>();
    ASSERT_TRUE(quad->build(nullptr));
    expect_extent(*quad, {-5.0f, -5.0f, 0.0f}, {5.0f, 5.0f, 0.0f});
}

TEST(MeshQuad, takes_another_size_in_place) {
    for (const StoreKind& kind : all_store_kinds()) {
        SCOPED_TRACE(name_of(kind));
        const auto quad = make_shape<MeshQuad>(kind);
        ASSERT_TRUE(quad->build(nullptr));
        MeshData& store = *quad->get_mesh_data();
        store.faces_need_update = false;
        quad->set_vertex_color(0, vec4(0.5f, 0.0f, 0.0f, 1.0f));
        quad->update_params(2.0f, 4.0f);
        EXPECT_TRUE(store.positions_need_update);
        EXPECT_FALSE(store.faces_need_update);
        EXPECT_FALSE(quad->get_build_state());
        expect_extent(*quad, {-1.0f, -2.0f, 0.0f}, {1.0f, 2.0f, 0.0f});
        EXPECT_EQ(faces_of(*quad), (Faces{{0, 1, 2}, {2, 3, 0}}));
        EXPECT_EQ(quad->get_vertex_color(0), kept_color(kind.format, vec4(0.5f, 0.0f, 0.0f, 1.0f)));
    }
}

TEST(MeshQuad, goes_back_to_its_own_size_with_the_next_build) {
    const auto quad = make_shape<MeshQuad>();
    quad->set_build_params(6.0f, 8.0f);
    quad->build(nullptr);
    quad->update_params(2.0f, 4.0f);
    quad->update_build_state(true);
    ASSERT_TRUE(quad->build(nullptr));
    expect_extent(*quad, {-3.0f, -4.0f, 0.0f}, {3.0f, 4.0f, 0.0f});
}

TEST(MeshQuad, only_notes_another_size_before_it_is_built) {
    const auto quad = make_shape<MeshQuad>();
    quad->update_params(2.0f, 4.0f);
    EXPECT_TRUE(quad->get_mesh_data()->positions_need_update);
    EXPECT_EQ(quad->get_num_vertices(nullptr), 0u);
    quad->cleanup_mesh_data(nullptr);
    quad->update_params(2.0f, 4.0f);
    EXPECT_EQ(quad->get_num_vertices(nullptr), 0u);
}

} // namespace

} // namespace orvex_test
