#include "orvex/geometry/shapes/mesh_box.h"

#include <gtest/gtest.h>

#include "shapes.h"

namespace orvex_test {

using namespace orvex;

namespace {

TEST(MeshBox, writes_its_sides_one_after_the_other) {
    const std::vector<ShapeVertex> vertices{
        {{1.0f, 2.0f, 3.0f}, {1.0f, 0.0f, 0.0f}, {1.0f, 0.0f}},
        {{1.0f, -2.0f, 3.0f}, {1.0f, 0.0f, 0.0f}, {0.0f, 0.0f}},
        {{1.0f, -2.0f, -3.0f}, {1.0f, 0.0f, 0.0f}, {0.0f, 1.0f}},
        {{1.0f, 2.0f, 3.0f}, {1.0f, 0.0f, 0.0f}, {1.0f, 0.0f}},
        {{1.0f, -2.0f, -3.0f}, {1.0f, 0.0f, 0.0f}, {0.0f, 1.0f}},
        {{1.0f, 2.0f, -3.0f}, {1.0f, 0.0f, 0.0f}, {1.0f, 1.0f}},
        {{-1.0f, -2.0f, -3.0f}, {-1.0f, 0.0f, 0.0f}, {0.0f, 0.0f}},
        {{-1.0f, -2.0f, 3.0f}, {-1.0f, 0.0f, 0.0f}, {0.0f, 1.0f}},
        {{-1.0f, 2.0f, 3.0f}, {-1.0f, 0.0f, 0.0f}, {1.0f, 1.0f}},
        {{-1.0f, -2.0f, -3.0f}, {-1.0f, 0.0f, 0.0f}, {0.0f, 0.0f}},
        {{-1.0f, 2.0f, 3.0f}, {-1.0f, 0.0f, 0.0f}, {1.0f, 1.0f}},
        {{-1.0f, 2.0f, -3.0f}, {-1.0f, 0.0f, 0.0f}, {1.0f, 0.0f}},
        {{-1.0f, 2.0f, -3.0f}, {0.0f, 1.0f, 0.0f}, {0.0f, 1.0f}},
        {{-1.0f, 2.0f, 3.0f}, {0.0f, 1.0f, 0.0f}, {0.0f, 0.0f}},
        {{1.0f, 2.0f, 3.0f}, {0.0f, 1.0f, 0.0f}, {1.0f, 0.0f}},
        {{-1.0f, 2.0f, -3.0f}, {0.0f, 1.0f, 0.0f}, {0.0f, 1.0f}},
        {{1.0f, 2.0f, 3.0f}, {0.0f, 1.0f, 0.0f}, {1.0f, 0.0f}},
        {{1.0f, 2.0f, -3.0f}, {0.0f, 1.0f, 0.0f}, {1.0f, 1.0f}},
        {{1.0f, -2.0f, 3.0f}, {0.0f, -1.0f, 0.0f}, {1.0f, 1.0f}},
        {{-1.0f, -2.0f, 3.0f}, {0.0f, -1.0f, 0.0f}, {0.0f, 1.0f}},
        {{-1.0f, -2.0f, -3.0f}, {0.0f, -1.0f, 0.0f}, {0.0f, 0.0f}},
        {{1.0f, -2.0f, -3.0f}, {0.0f, -1.0f, 0.0f}, {1.0f, 0.0f}},
        {{1.0f, -2.0f, 3.0f}, {0.0f, -1.0f, 0.0f}, {1.0f, 1.0f}},
        {{-1.0f, -2.0f, -3.0f}, {0.0f, -1.0f, 0.0f}, {0.0f, 0.0f}},
        {{1.0f, 2.0f, 3.0f}, {0.0f, 0.0f, 1.0f}, {1.0f, 1.0f}},
        {{-1.0f, 2.0f, 3.0f}, {0.0f, 0.0f, 1.0f}, {0.0f, 1.0f}},
        {{-1.0f, -2.0f, 3.0f}, {0.0f, 0.0f, 1.0f}, {0.0f, 0.0f}},
        {{1.0f, -2.0f, 3.0f}, {0.0f, 0.0f, 1.0f}, {1.0f, 0.0f}},
        {{1.0f, 2.0f, 3.0f}, {0.0f, 0.0f, 1.0f}, {1.0f, 1.0f}},
        {{-1.0f, -2.0f, 3.0f}, {0.0f, 0.0f, 1.0f}, {0.0f, 0.0f}},
        {{-1.0f, -2.0f, -3.0f}, {0.0f, 0.0f, -1.0f}, {1.0f, 0.0f}},
        {{-1.0f, 2.0f, -3.0f}, {0.0f, 0.0f, -1.0f}, {1.0f, 1.0f}},
        {{1.0f, 2.0f, -3.0f}, {0.0f, 0.0f, -1.0f}, {0.0f, 1.0f}},
        {{-1.0f, -2.0f, -3.0f}, {0.0f, 0.0f, -1.0f}, {1.0f, 0.0f}},
        {{1.0f, 2.0f, -3.0f}, {0.0f, 0.0f, -1.0f}, {0.0f, 1.0f}},
        {{1.0f, -2.0f, -3.0f}, {0.0f, 0.0f, -1.0f}, {0.0f, 0.0f}},
    };
    for (const StoreKind& kind : all_store_kinds()) {
        SCOPED_TRACE(name_of(kind));
        const auto box = make_shape<MeshBox>(kind);
        EXPECT_TRUE(box->set_build_params(2.0f, 4.0f, 6.0f, 1, 1, 1));
        ASSERT_TRUE(box->build(nullptr));
        expect_vertices(*box, vertices);
        EXPECT_EQ(box->get_mesh_data()->index_bits, 16);
        EXPECT_EQ(faces_of(*box), (Faces{{0, 1, 2},
                                         {3, 4, 5},
                                         {6, 7, 8},
                                         {9, 10, 11},
                                         {12, 13, 14},
                                         {15, 16, 17},
                                         {18, 19, 20},
                                         {21, 22, 23},
                                         {24, 25, 26},
                                         {27, 28, 29},
                                         {30, 31, 32},
                                         {33, 34, 35}}));
        EXPECT_EQ(box->get_mesh_data()->num_quad_edges, 0u);
        EXPECT_EQ(windings_of(*box).with_normal, 12);
    }
}

TEST(MeshBox, has_48_faces_and_144_vertices_at_first) {
    const auto box = make_shape<MeshBox>();
    ASSERT_TRUE(box->build(nullptr));
    EXPECT_EQ(box->get_num_faces(nullptr), 48u);
    EXPECT_EQ(box->get_num_vertices(nullptr), 144u);
    EXPECT_EQ(windings_of(*box).with_normal, 48);
    expect_extent(*box, {-1.0f, -1.0f, -1.0f}, {1.0f, 1.0f, 1.0f});
}

TEST(MeshBox, raises_segment_counts_below_one) {
    const auto box = make_shape<MeshBox>();
    box->set_build_params(1.0f, 1.0f, 1.0f, 0, 0, 0);
    ASSERT_TRUE(box->build(nullptr));
    EXPECT_EQ(box->get_num_faces(nullptr), 12u);
    EXPECT_EQ(box->get_num_vertices(nullptr), 36u);
    box->set_build_params(1.0f, 1.0f, 1.0f, -7, 2, 1);
    ASSERT_TRUE(box->build(nullptr));
    EXPECT_EQ(box->get_num_faces(nullptr), 20u);
}

// Three columns of Y by two rows of Z on the first side: cells go row by row.
TEST(MeshBox, writes_the_cells_of_a_side_row_by_row) {
    const auto box = make_shape<MeshBox>();
    box->set_build_params(2.0f, 3.0f, 2.0f, 1, 3, 2);
    ASSERT_TRUE(box->build(nullptr));
    const vec3 right(1.0f, 0.0f, 0.0f);
    // The lower corner (0, 0) of a cell is its third vertex.
    const float third = 1.0f * (1.0f / 3.0f);
    const float two_thirds = 2.0f * (1.0f / 3.0f);
    const TexturePoint uv[6] = {{0.0f, 1.0f}, {third, 1.0f}, {two_thirds, 1.0f},
                                {0.0f, 0.5f}, {third, 0.5f}, {two_thirds, 0.5f}};
    for (unsigned long cell = 0; cell < 6; ++cell) {
        const float y = 3.0f * static_cast<float>(cell % 3) * (1.0f / 3.0f) - 1.5f;
        const float z = cell < 3 ? -1.0f : 0.0f;
        expect_vertex(*box, cell * 6 + 2, {{1.0f, y, z}, right, uv[cell]});
    }
    expect_vertex(*box, 36, {{-1.0f, -1.5f, -1.0f}, {-1.0f, 0.0f, 0.0f}, {0.0f, 0.0f}});
    EXPECT_EQ(windings_of(*box).with_normal, 4 * (2 * (1 + 3) + 3));
}

TEST(MeshBox, has_32_bit_indices_from_65536_vertices_on) {
    const auto box = make_shape<MeshBox>();
    box->set_build_params(1.0f, 1.0f, 1.0f, 43, 43, 43);
    ASSERT_TRUE(box->build(nullptr));
    EXPECT_EQ(box->get_num_vertices(nullptr), 66564u);
    EXPECT_EQ(box->get_mesh_data()->index_bits, 32);
    EXPECT_EQ(face_of(*box, 0), (Face{0, 1, 2}));
    EXPECT_EQ(face_of(*box, 22187), (Face{66561, 66562, 66563}));
    expect_vertex(*box, 0,
                  {{0.5f, 1.0f * (1.0f / 43.0f) - 0.5f, 1.0f * (1.0f / 43.0f) - 0.5f},
                   {1.0f, 0.0f, 0.0f},
                   {1.0f / 43.0f, 1.0f - 1.0f / 43.0f}});
    const float last = 42.0f * (1.0f / 43.0f);
    const float end = 43.0f * (1.0f / 43.0f);
    expect_vertex(*box, 66563,
                  {{end - 0.5f, last - 0.5f, -0.5f}, {0.0f, 0.0f, -1.0f}, {1.0f - end, last}});
    EXPECT_EQ(windings_of(*box).against_normal, 0);
}

TEST(MeshBox, colours_its_vertices_through_the_operation_for_all) {
    const auto box = make_shape<MeshBox>();
    ASSERT_TRUE(box->build(nullptr));
    EXPECT_TRUE(box->get_mesh_data()->colors_need_update);
}

} // namespace

} // namespace orvex_test
