#include "orvex/geometry/mesh/mesh.h"

#include <gtest/gtest.h>

#include "owned_mesh.h"
#include "tests/orvex/geometry/printers.h"
#include "tests/support/log_capture.h"

namespace orvex_test {

using namespace orvex;

namespace {

class MeshUserGeometry : public testing::Test {
protected:
    /// Lists a triangle.
    void list_triangle() {
        mesh->user_geometry_add_vertex(vec4(0, 0, 0, 1));
        mesh->user_geometry_add_vertex(vec4(1, 0, 0, 1));
        mesh->user_geometry_add_vertex(vec4(0, 1, 0, 1));
        mesh->user_geometry_add_face32(2, 1, 0);
    }

    OwnedMesh mesh = make_mesh();
};

TEST_F(MeshUserGeometry, counts_listed_vertices) {
    mesh->update_build_state(false);
    EXPECT_EQ(mesh->user_geometry_add_vertex(vec4()), 0u);
    EXPECT_EQ(mesh->user_geometry_add_vertex(vec4()), 1u);
    EXPECT_EQ(mesh->user_geometry_add_vertex(vec4()), 2u);
    EXPECT_TRUE(mesh->get_build_state());
    EXPECT_EQ(mesh->get_num_vertices(nullptr), 0u) << "until the build";
}

TEST_F(MeshUserGeometry, becomes_the_mesh_at_the_build) {
    list_triangle();
    EXPECT_TRUE(mesh->user_geometry_set_vertex_position(1, vec4(2, 3, 4, 9)));
    EXPECT_TRUE(mesh->user_geometry_set_vertex_normal(1, vec4(0, 0, 1, 0)));
    EXPECT_TRUE(mesh->user_geometry_set_vertex_uv0(1, vec4(0.5f, 0.25f, 0, 1)));
    EXPECT_TRUE(mesh->user_geometry_set_vertex_color(2, vec4(0.1f, 0.2f, 0.3f, 1)));
    EXPECT_TRUE(mesh->_build());
    EXPECT_FALSE(mesh->get_build_state());
    EXPECT_EQ(mesh->get_num_vertices(nullptr), 3u);
    EXPECT_EQ(mesh->get_mesh_data()->get_position_4f(1), vec4(2, 3, 4, 1));
    EXPECT_EQ(mesh->get_vertex_normal(1), vec4(0, 0, 1, 0));
    EXPECT_EQ(mesh->get_vertex_uv(1, 0), vec4(0.5f, 0.25f, 0, 1));
    EXPECT_EQ(mesh->get_vertex_color(1), vec4(1, 1, 1, 1)) << "white unless told otherwise";
    EXPECT_EQ(mesh->get_vertex_color(2), vec4(0.1f, 0.2f, 0.3f, 1));
    unsigned int a = 0;
    mesh->get_face_indexes(0, &a, nullptr, nullptr);
    EXPECT_EQ(a, 2u);
    EXPECT_GT(mesh->get_bounding_sphere_radius(), 0.0f) << "the object's own build ran as well";
    EXPECT_FALSE(mesh->user_geometry_cleanup()) << "the lists are gone";
}

TEST_F(MeshUserGeometry, narrows_or_keeps_face_indexes_by_the_vertex_count) {
    for (unsigned long i = 0; i < 0x10000; ++i)
        mesh->user_geometry_add_vertex(vec4());
    mesh->user_geometry_add_face32(0xFFFF, 1, 0);
    ASSERT_TRUE(mesh->_build());
    EXPECT_EQ(mesh->get_mesh_data()->index_bits, 32);
    EXPECT_EQ(mesh->get_mesh_data()->faces_u32[0].a, 0xFFFFu);
}

TEST_F(MeshUserGeometry, needs_vertices_and_faces) {
    mesh->user_geometry_add_vertex(vec4());
    EXPECT_FALSE(mesh->_build());
    EXPECT_FALSE(mesh->get_build_state());
    EXPECT_TRUE(mesh->_build()) << "nothing is asked for any more";
    EXPECT_TRUE(mesh->user_geometry_cleanup()) << "the lists stayed";
    mesh->user_geometry_add_face32(0, 0, 0);
    EXPECT_FALSE(mesh->_build());
    mesh->user_geometry_add_vertex(vec4());
    EXPECT_TRUE(mesh->_build()) << "and are completed";
}

TEST_F(MeshUserGeometry, fails_to_build_from_nothing) {
    EXPECT_TRUE(mesh->get_build_state());
    EXPECT_FALSE(mesh->_build());
    EXPECT_TRUE(mesh->build(nullptr)) << "the traversal doesn't tell";
}

TEST_F(MeshUserGeometry, is_changed_in_range_only) {
    EXPECT_FALSE(mesh->user_geometry_set_vertex_position(0, vec4()));
    mesh->user_geometry_add_vertex(vec4());
    mesh->update_build_state(false);
    EXPECT_FALSE(mesh->user_geometry_set_vertex_position(1, vec4()));
    EXPECT_FALSE(mesh->user_geometry_set_vertex_color(1, vec4()));
    EXPECT_FALSE(mesh->user_geometry_set_vertex_normal(1, vec4()));
    EXPECT_FALSE(mesh->user_geometry_set_vertex_uv0(1, vec4()));
    EXPECT_FALSE(mesh->get_build_state());
    const auto changes_ask_for_a_build = [&](bool (Mesh::*change)(unsigned long, const vec4&)) {
        mesh->update_build_state(false);
        return (mesh.get()->*change)(0, vec4()) && mesh->get_build_state();
    };
    EXPECT_TRUE(changes_ask_for_a_build(&Mesh::user_geometry_set_vertex_position));
    EXPECT_TRUE(changes_ask_for_a_build(&Mesh::user_geometry_set_vertex_color));
    EXPECT_TRUE(changes_ask_for_a_build(&Mesh::user_geometry_set_vertex_normal));
    EXPECT_TRUE(changes_ask_for_a_build(&Mesh::user_geometry_set_vertex_uv0));
    mesh->update_build_state(false);
    EXPECT_TRUE(mesh->user_geometry_add_face32(0, 0, 0));
    EXPECT_TRUE(mesh->get_build_state());
}

TEST_F(MeshUserGeometry, is_emptied) {
    EXPECT_FALSE(mesh->user_geometry_cleanup());
    list_triangle();
    EXPECT_TRUE(mesh->user_geometry_cleanup());
    EXPECT_FALSE(mesh->user_geometry_cleanup());
    EXPECT_EQ(mesh->user_geometry_add_vertex(vec4()), 0u);
}

TEST_F(MeshUserGeometry, replaces_what_the_store_held) {
    mesh->alloc_vertex_data(100);
    mesh->alloc_face_data(50, true);
    list_triangle();
    ASSERT_TRUE(mesh->_build());
    EXPECT_EQ(mesh->get_num_vertices(nullptr), 3u);
    EXPECT_EQ(mesh->get_num_faces(nullptr), 1u);
    EXPECT_EQ(mesh->get_mesh_data()->index_bits, 16);
}

TEST_F(MeshUserGeometry, marks_a_mesh_that_was_drawn_before_for_upload) {
    MeshData& store = *mesh->get_mesh_data();
    list_triangle();
    ASSERT_TRUE(mesh->_build());
    EXPECT_FALSE(store.positions_need_update) << "a first prepare uploads everything anyway";
    store.vertex_buffer_id = 1;
    store.index_buffer_id = 2;
    list_triangle();
    ASSERT_TRUE(mesh->_build());
    EXPECT_TRUE(store.positions_need_update && store.normals_need_update &&
                store.colors_need_update && store.uv0_need_update && store.faces_need_update);
}

TEST_F(MeshUserGeometry, fails_to_build_without_a_store) {
    LogCapture log;
    mesh->init_mesh_data(nullptr, static_cast<VERTEX_FORMAT>(5));
    list_triangle();
    EXPECT_FALSE(mesh->_build());
}

} // namespace

} // namespace orvex_test
